// Replication group message ids: 16 bytes that name a guaranteed message within the message spool
// that stored it. Bytes 0..7 are the spool (origin) number, bytes 8..15 the message's position in
// that spool, both big-endian, so ids of one spool order by their position and ids of two spools
// do not compare. Origin 0 is not a spool: an all-zero id is no id.
//
// The text form is "rg1:" followed by the origin and the position as 16 lowercase hexadecimal
// digits each, separated by ':' (37 characters), accepted back by parse() in either case; the
// broker takes the same text as a replay start location.
//
// Stateless; any thread.
#pragma once

#include <cstddef>
#include <cstdint>

#include "zorClientMsg.h"

namespace zorvane::zorclient {

class ReplicationGroupMessageId {
  public:
    static constexpr std::size_t TEXT_LENGTH = 37;  // without the NUL

    static zorClient_replicationGroupMessageId_t make(std::uint64_t origin,
                                                      std::uint64_t position) noexcept;
    static std::uint64_t origin(const zorClient_replicationGroupMessageId_t& id) noexcept;
    static std::uint64_t position(const zorClient_replicationGroupMessageId_t& id) noexcept;

    // Writes the text form and its NUL into buffer_p (TEXT_LENGTH + 1 bytes).
    static void format(const zorClient_replicationGroupMessageId_t& id, char* buffer_p) noexcept;
    // Reads a text form; false (and *id_p untouched) when text_p is not one.
    static bool parse(const char* text_p, zorClient_replicationGroupMessageId_t* id_p) noexcept;
};

}  // namespace zorvane::zorclient
