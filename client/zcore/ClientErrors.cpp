// The two exits of a failed library call: thrown on a caller's thread,
// recorded on the context thread.
#include <string>

#include "client/zcore/Client.h"
#include "client/zcore/LibraryError.h"
#include "common/Log.h"
#include "common/PubSubException.h"

namespace zorvane::pubsub {

void Client::handleErrorWithException(zorClient_returnCode_t rc) {
    const LibraryError error = LibraryError::fetch();
    updateLastError(error.subCodeText(), error.responseCode_m, error.errorStr_m,
                    static_cast<INT32>(rc));
    const std::string text = "CLIENT " + clientIdStr_m + ": " +
                             "Error details - RC: " + zorClient_returnCodeToString(rc) + ", " +
                             error.details();
    LOG_DEBUG("%s", text.c_str());
    throw PubSubException(text);
}

void Client::handleErrorForAsync(zorClient_log_level_t level, const std::string& info) {
    const LibraryError error = LibraryError::fetch();
    updateLastError(error.subCodeText(), error.responseCode_m, error.errorStr_m, 0);
    asyncExceptionOccured_m.store(true);
    VEXLOAD_LOG(static_cast<int>(level), "CLIENT %s: Error details (Info: %s) - %s",
                clientIdStr_m.c_str(), info.c_str(), error.details().c_str());
}

}  // namespace zorvane::pubsub
