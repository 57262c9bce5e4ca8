// One part of a message: a header text, the user data, the body, the binary attachment or the
// user property map. A part is absent, or present with 0 or more bytes, so that an empty
// correlation id is told apart from none. Its bytes live in one of four places:
//
//   INLINE  inside the part (small copies: no data block for a short header text)
//   BLOCK   in a data block of the part's own, accounted to the application
//   CALLER  in the caller's memory (the "...Ptr" setters), valid until the message is sent
//   SHARED  in the immutable broker copy a received message was made from (the message holds a
//           reference on that copy), never written
//
// Text parts keep a NUL behind their bytes (not counted in size), so text() is a C string.
// Containers grow a part in place with reserve()/commit(); a part that is CALLER or SHARED is
// copied into a block first, so a container never writes into memory it does not own.
//
// Not thread-safe: a part belongs to one message, used by one thread at a time.
#pragma once

#include <cstdint>

#include "core/DataBlock.h"

namespace zorvane::zorclient {

enum class PartStorage : std::uint8_t { NONE, INLINE, BLOCK, CALLER, SHARED };

class Part {
  public:
    static constexpr std::uint32_t INLINE_CAPACITY = 40;

    Part() = default;
    Part(const Part&) = delete;
    Part& operator=(const Part&) = delete;
    ~Part() { clear(); }

    bool present() const noexcept { return storage_m != PartStorage::NONE; }
    PartStorage storage() const noexcept { return storage_m; }
    // Non-null while present (an empty part points at a NUL byte); null when absent.
    const std::uint8_t* data() const noexcept { return data_mp; }
    const char* text() const noexcept { return reinterpret_cast<const char*>(data_mp); }
    std::uint32_t size() const noexcept { return size_m; }

    // Absent again; an own block goes back to its pool. Inline: a message's reset clears every
    // part, most of them absent already.
    void clear() noexcept {
        if (block_mp != nullptr) {
            releaseBlock();
        }
        data_mp = nullptr;
        size_m = 0;
        storage_m = PartStorage::NONE;
    }

    // Present, pointing at size bytes of data_p (null allowed when size is 0), which must stay
    // valid as long as the part refers to them. storage is CALLER or SHARED.
    void setView(const void* data_p, std::uint32_t size, PartStorage storage) noexcept;

    // Present, holding a copy of size bytes of data_p, plus a NUL behind them when terminate.
    // data_p may point into this part. Reuses the own block when it is large enough. Throws
    // std::bad_alloc when no block can be had; the part is then unchanged.
    void setCopy(const void* data_p, std::uint32_t size, bool terminate);

    // Empty and absent, but an own block is kept for the next reserve(): recreating a container
    // on the same part then takes no block from the pools.
    void emptyForWrite() noexcept;

    // Makes the part present and writable in a block of its own with room for extra bytes
    // behind its size, keeping its bytes; returns the start of its bytes (valid until the next
    // change). Throws std::bad_alloc as setCopy.
    std::uint8_t* reserve(std::size_t extra);
    // Counts extra more bytes, written behind size() after reserve().
    void commit(std::uint32_t extra) noexcept { size_m += extra; }
    // The bytes for writing in place; the part must be INLINE or BLOCK.
    std::uint8_t* writableData() noexcept { return const_cast<std::uint8_t*>(data_mp); }

  private:
    void releaseBlock() noexcept;
    // Holds the bytes in a new block of at least capacity bytes (copying size_m of them).
    void moveToNewBlock(std::size_t capacity, const void* from_p, std::uint32_t copySize);

    const std::uint8_t* data_mp = nullptr;
    std::uint32_t size_m = 0;
    PartStorage storage_m = PartStorage::NONE;
    DataBlock* block_mp = nullptr;
    std::uint8_t inline_m[INLINE_CAPACITY];
};

}  // namespace zorvane::zorclient
