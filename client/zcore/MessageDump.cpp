// The text form of a received message, for the message dump and for the
// log of a failed integrity check.
#include <cstring>
#include <vector>

#include "client/zcore/LibraryError.h"
#include "client/zcore/Message.h"
#include "common/Log.h"

namespace zorvane::pubsub {

std::string Message::getDump(size_t maxBufferSize) {
    if (msg_mp == nullptr) {
        LOG_ERROR("CLIENT %s: Unable to print null message", clientIdStr_m.c_str());
        return std::string();
    }
    const std::size_t limit = maxBufferSize != 0 ? maxBufferSize : DEFAULT_DUMP_SIZE;
    // Without a limit of the caller's the text must come whole.
    const bool allowTruncation = maxBufferSize != 0;
    std::size_t desiredBufSize = limit;
    std::vector<char> buffer(desiredBufSize);

    for (int attempt = 0; attempt < DUMP_TRIES; ++attempt) {
        if (zorClient_msg_dump(msg_mp, buffer.data(), buffer.size()) != ZORCLIENT_OK) {
            const LibraryError error = LibraryError::fetch();
            LOG_ERROR("CLIENT %s: Error details - %s", clientIdStr_m.c_str(),
                      error.details().c_str());
            return std::string();
        }
        const std::size_t length = strnlen(buffer.data(), buffer.size());
        // The library fills a buffer that is too small to its last byte, so
        // a text that reaches near the end may have been cut.
        if (length + 2 < buffer.size()) {
            return std::string(buffer.data(), length);
        }
        if (allowTruncation) {
            return std::string(buffer.data(), length) + "\n... [truncated] ...";
        }
        desiredBufSize = std::min(desiredBufSize + DUMP_GROWTH, limit);
        buffer.resize(desiredBufSize);
    }
    LOG_ERROR("CLIENT %s: Could not fit message within max size of: %zu", clientIdStr_m.c_str(),
              desiredBufSize);
    return std::string();
}

}  // namespace zorvane::pubsub
