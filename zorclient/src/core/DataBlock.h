// Data blocks: the memory behind message payloads, copied header texts, containers and broker
// copies of sent messages. Five pools hand out blocks of one quantum each ("GLOBAL_DBQUANTA_SIZE_0"
// to "_4") and keep released blocks on a free list, so that a warm process allocates nothing per
// message; a sixth pool serves requests above the largest quantum with blocks of their own size
// that go back to the system when released.
//
// Accounting: a block is acquired for the APPLICATION (parts of messages the application holds:
// counted in ZORCLIENT_MSG_STATS_ALLOC_DATA_BLOCKS and _ALLOC_MEMORY) or for the BROKER (the
// immutable copy of a sent message: not counted as allocated, since the application cannot see
// it and a clean run must end with every ALLOC counter at 0 even while a broker still stores
// messages). Free lists and TOTAL_MEMORY count both.
//
// Threads: acquire and release may be called from any thread, also for the same block on
// different threads (a broker copy is released by whichever receiver lets go last). Free blocks
// pass through a small cache per thread (ThreadCache), so most calls take no lock.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

#include "zorClientMsg.h"

namespace zorvane::zorclient {

enum class BlockOwner : std::uint8_t { APPLICATION, BROKER };

class DataBlock {
  public:
    std::uint8_t* bytes() noexcept { return reinterpret_cast<std::uint8_t*>(this + 1); }
    const std::uint8_t* bytes() const noexcept {
        return reinterpret_cast<const std::uint8_t*>(this + 1);
    }
    std::uint32_t capacity() const noexcept { return capacity_m; }
    int poolIndex() const noexcept { return poolIndex_m; }
    BlockOwner owner() const noexcept { return owner_m; }
    // The link of the free list the block is on, for the pools.
    DataBlock*& nextFree() noexcept { return next_mp; }

  private:
    friend class DataBlockPools;
    DataBlock* next_mp = nullptr;  // free list link
    std::uint32_t capacity_m = 0;
    std::uint8_t poolIndex_m = 0;
    BlockOwner owner_m = BlockOwner::APPLICATION;
};
static_assert(sizeof(DataBlock) % 16 == 0, "block bytes stay 16-byte aligned");

class DataBlockPools {
  public:
    // Largest request served: parts are sized by 32-bit lengths.
    static constexpr std::size_t MAX_BLOCK_SIZE = 0xFFFFFFFFu;

    // A block of at least size bytes (size may be 0), accounted to owner. Throws std::bad_alloc
    // when the system has no memory or size is above MAX_BLOCK_SIZE.
    static DataBlock* acquire(std::size_t size, BlockOwner owner);

    // Gives a block back (null is ignored). Blocks of a quantum that is no longer configured go
    // back to the system instead of a free list.
    static void release(DataBlock* block_p) noexcept;

    // Sets the quanta (rising byte sizes), as zorClient_initialize read them. Blocks already out
    // keep their size; free blocks of an old size are dropped as they come up.
    static void configure(const std::array<std::uint32_t, ZORCLIENT_MSG_NUM_DBQUANTA>& quanta);

    // The pool that serves a request of size bytes: 0..4 by quantum, 5 above the largest.
    static int poolIndexFor(std::size_t size) noexcept;

    // Current quantum of pool index (0..4).
    static std::uint32_t quantum(int index) noexcept;
};

}  // namespace zorvane::zorclient
