// The last-error slot: the record of the client's last library error,
// written by the binding on whatever thread the error came and read by the
// traffic threads and the collection.
#include "client/AbstractClient.h"
#include "common/MutexScope.h"

namespace zorvane::pubsub {

void AbstractClient::clearLastError() {
    std::unique_ptr<PubSubErrorResponseException> old;
    {
        MutexScope lock(&lastExceptionMutex_m);
        old.swap(lastException_m);
    }
}

void AbstractClient::updateLastError(const std::string& subCode, INT32 responseCode,
                                     const std::string& responsePhrase, INT32 returnCode) {
    // Built and freed outside the lock: readers wait only for the swap.
    auto replacement = std::make_unique<PubSubErrorResponseException>(subCode, responseCode,
                                                                      responsePhrase, returnCode);
    {
        MutexScope lock(&lastExceptionMutex_m);
        replacement.swap(lastException_m);
    }
}

std::unique_ptr<PubSubErrorResponseException> AbstractClient::getLastError() const {
    MutexScope lock(&lastExceptionMutex_m);
    if (!lastException_m) {
        return nullptr;
    }
    return std::make_unique<PubSubErrorResponseException>(*lastException_m);
}

}  // namespace zorvane::pubsub
