// The last-message records of a client: the current record and its history,
// written on the context thread (through the binding's
// setLastMessageDetails) and read as copies from any thread.
#include <algorithm>
#include <memory>
#include <vector>

#include "client/AbstractClient.h"
#include "common/MutexScope.h"

namespace zorvane::pubsub {

void AbstractClient::appendLastMessageDetailsToHistory() {
    if (lastMessagesDetailsSize_m == 0 || !lastMessageDetails_m) {
        return;
    }
    while (lastMessagesDetails_m.size() >= lastMessagesDetailsSize_m) {
        lastMessagesDetails_m.pop_front();
    }
    lastMessagesDetails_m.push_back(*lastMessageDetails_m);
}

std::unique_ptr<LastMessageDetails> AbstractClient::getLastMessageDetails() const {
    MutexScope lock(&lastMessageDetailsMutex_m);
    if (!lastMessageDetails_m) {
        return nullptr;
    }
    return std::make_unique<LastMessageDetails>(*lastMessageDetails_m);
}

std::vector<LastMessageDetails> AbstractClient::getLastMessagesDetails(int num) const {
    std::vector<LastMessageDetails> details;
    // The emptiness test is made under the lock as well: the context thread
    // may be appending at this moment.
    MutexScope lock(&lastMessageDetailsMutex_m);
    if (lastMessagesDetails_m.empty() || num <= 1) {
        // Without per-message details there is no record to give.
        if (lastMessageDetails_m) {
            details.push_back(*lastMessageDetails_m);
        }
        return details;
    }
    const std::size_t msgsToPull =
        std::min(static_cast<std::size_t>(num), lastMessagesDetails_m.size());
    const std::size_t offset = lastMessagesDetails_m.size() - msgsToPull;
    details.assign(lastMessagesDetails_m.begin() + static_cast<std::ptrdiff_t>(offset),
                   lastMessagesDetails_m.end());
    return details;
}

}  // namespace zorvane::pubsub
