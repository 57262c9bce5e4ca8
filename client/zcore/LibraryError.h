// The calling thread's last error of the messaging library, copied out of
// the library's thread-local record so that later calls cannot change it
// while it is being reported.
//
// Only client/zcore includes this header (it names the library's types).
#pragma once

#include <string>

#include "common/dataTypes.h"
#include "zorClient.h"

namespace zorvane::pubsub {

struct LibraryError {
    zorClient_subCode_t subCode_m = ZORCLIENT_SUBCODE_OK;
    INT32 responseCode_m = 0;
    std::string errorStr_m;

    // A copy of zorClient_getLastErrorInfo() of this thread.
    static LibraryError fetch();

    // The subcode's constant name, e.g. "ZORCLIENT_SUBCODE_TIMEOUT".
    const char* subCodeText() const { return zorClient_subCodeToString(subCode_m); }

    // "Sub Code: <name>, Response Code: <n>, Error String: <text>": the tail
    // that every error line of the client layer ends with.
    std::string details() const;
};

}  // namespace zorvane::pubsub
