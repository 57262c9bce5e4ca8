// A map or stream handle (zorClient_opaqueContainer_pt) over encoded fields (FieldCodec). The
// bytes live in a message part (the binary attachment or the user property map) or, for a
// container created apart, in the caller's buffer. A container never holds a pointer into its
// bytes, only offsets, so a part that grows into a larger block or is copied before its first
// change keeps every container on it valid.
//
// A container is a writer (being built: fields are appended at its end, and the length in its
// header and in every enclosing container's header is kept current, so getSize and a send are
// right at any moment) or a read view with a cursor for walks. Handles form trees: sub-containers
// opened for adding, and views handed out for MAP and STREAM fields, are children of the
// container they came from and are closed with it; the roots on a message are closed when the
// message is reset or freed or the part they are on is replaced. Every open container counts in
// ZORCLIENT_MSG_STATS_ALLOC_CONTAINERS.
//
// Failures set the calling thread's error info; function_p names the entry point for the text.
// Not thread-safe: containers are used by the thread that uses their message.
#pragma once

#include <cstddef>
#include <cstdint>

#include "core/FieldCodec.h"
#include "core/Message.h"

namespace zorvane::zorclient {

class Container {
  public:
    Container() = default;
    Container(const Container&) = delete;
    Container& operator=(const Container&) = delete;

    // ---- Making and closing handles. Makers throw std::bad_alloc.

    // A root on part of msg, whose bytes must already start with a container header of kind
    // (ZORCLIENT_MAP or ZORCLIENT_STREAM). A writer appends at the end of the part.
    static Container* openOnMessage(Message& msg, PartId part, std::uint8_t kind, bool writer);
    // A new, empty writer in the caller's buffer of capacity bytes (at least the header).
    static Container* createInBuffer(std::uint8_t* buffer_p, std::size_t capacity,
                                     std::uint8_t kind);
    // The container of a live handle; null otherwise.
    static Container* lookup(zorClient_opaqueContainer_pt handle) noexcept;
    // Closes the container and all containers opened from it; their handles go stale.
    static void close(Container* container_p) noexcept;
    // Closes every container tree on msg, or only those on part.
    static void closeAll(Message& msg) noexcept;
    static void closeAll(Message& msg, PartId part) noexcept;

    zorClient_opaqueContainer_pt handle() const noexcept { return handle_m; }
    std::uint8_t kind() const noexcept { return kind_m; }
    bool isMap() const noexcept { return kind_m == ZORCLIENT_MAP; }
    // The message whose part holds the bytes; null for a container in a caller's buffer.
    Message* message() const noexcept { return msg_mp; }
    PartId part() const noexcept { return part_m; }

    // This container's whole encoding (header included), or false when the bytes it stands on
    // are no longer well formed.
    bool encoding(const std::uint8_t** bytes_p, std::uint32_t* size_p) const noexcept;

    // ---- Adding (writers only).

    // Appends a field of code whose value is value_p[0..valueSize) followed by
    // tail_p[0..tailSize), under name_p in a map (streams take no name).
    zorClient_returnCode_t add(const char* function_p, const char* name_p, std::uint8_t code,
                               const void* value_p, std::size_t valueSize,
                               const void* tail_p = nullptr, std::size_t tailSize = 0);
    // Appends an encoded field byte for byte.
    zorClient_returnCode_t addEncoded(const char* function_p, const char* name_p,
                                      const std::uint8_t* field_p, std::size_t size);
    // Appends an empty sub-container of kind and opens it for adding.
    zorClient_returnCode_t openSub(const char* function_p, const char* name_p, std::uint8_t kind,
                                   Container** sub_p);

    // ---- Reading.

    bool hasNext() const noexcept;
    // The field at the cursor and its name (null in a stream); ZORCLIENT_EOS at the end.
    zorClient_returnCode_t next(const char* function_p, zorClient_field_t* field_p,
                                const char** name_p);
    // In a map, the first field named name_p (ZORCLIENT_NOT_FOUND when none); in a stream, with
    // name_p null, the next field (ZORCLIENT_EOS at the end).
    zorClient_returnCode_t find(const char* function_p, const char* name_p,
                                zorClient_field_t* field_p);

  private:
    struct Storage {
        const std::uint8_t* bytes_p;
        std::size_t size;
    };
    static Container* acquireHandle();
    Storage storage() const noexcept;
    bool bodyRange(std::size_t* begin_p, std::size_t* end_p) const noexcept;
    zorClient_returnCode_t checkWritable(const char* function_p, const char* name_p) const;
    // Room for size more bytes at the end of this container; *out_p is where they go.
    zorClient_returnCode_t reserve(const char* function_p, std::size_t size, std::uint8_t** out_p);
    // Counts size appended bytes in this container and all that enclose it.
    void commit(std::size_t size) noexcept;
    struct NameField;
    // The one way a field is appended: room for the name field (a map's) and payloadSize bytes
    // after it, the name written, fill(payload_p, moved) to write the payload, then the bytes
    // counted. moved finds a caller's pointer into this container's bytes again after the room
    // was made, which may have moved them.
    template <typename Fill>
    zorClient_returnCode_t appendNamed(const char* function_p, const NameField& name,
                                       std::size_t payloadSize, Fill&& fill);
    // Reads the entry at byte at of a body that ends at byte end (both checked by the caller).
    zorClient_returnCode_t readAt(const char* function_p, std::size_t at, std::size_t end,
                                  const char** name_p, FieldCodec::RawField* field_p,
                                  std::size_t* next_p) const;
    zorClient_returnCode_t toField(const FieldCodec::RawField& raw, zorClient_field_t* field_p);
    void linkChild(Container* child_p) noexcept;
    void resetFields() noexcept;

    zorClient_opaqueContainer_pt handle_m = nullptr;
    std::uint8_t kind_m = ZORCLIENT_MAP;
    bool writer_m = false;
    Message* msg_mp = nullptr;  // storage: a part of this message...
    PartId part_m = PartId::ATTACHMENT;
    std::uint8_t* buffer_mp = nullptr;  // ...or the caller's buffer
    std::size_t bufferCapacity_m = 0;
    std::size_t offset_m = 0;  // of this container's header in the storage
    std::size_t cursor_m = 0;  // of the next field a walk reads
    std::uint32_t openWriters_m = 0;
    Container* parent_mp = nullptr;
    Container* firstChild_mp = nullptr;
    Container* prev_mp = nullptr;  // siblings (or roots of one message)
    Container* next_mp = nullptr;
};

}  // namespace zorvane::zorclient
