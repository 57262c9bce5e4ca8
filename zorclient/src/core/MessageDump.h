// The text of zorClient_msg_dump: one line per header field that the message has ("Label:"
// padded to a column, then the value), then each part: user data, body and raw attachments as
// hexadecimal and printable characters, 16 bytes a line; the user property map and structured
// attachments as one line per field, nested containers indented. Reads the message only and
// allocates nothing, so a dump can be taken of any message at any time.
#pragma once

#include "core/Message.h"
#include "core/TextWriter.h"

namespace zorvane::zorclient {

class MessageDump {
  public:
    // Writes the text of msg; stops early once out is full.
    static void write(const Message& msg, TextWriter& out) noexcept;
};

}  // namespace zorvane::zorclient
