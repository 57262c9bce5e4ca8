#include "client/zcore/LibraryError.h"

namespace zorvane::pubsub {

LibraryError LibraryError::fetch() {
    LibraryError error;
    const zorClient_errorInfo* info_p = zorClient_getLastErrorInfo();
    if (info_p != nullptr) {
        error.subCode_m = info_p->subCode;
        error.responseCode_m = info_p->responseCode;
        error.errorStr_m = info_p->errorStr;
    }
    return error;
}

std::string LibraryError::details() const {
    return std::string("Sub Code: ") + subCodeText() +
           ", Response Code: " + std::to_string(responseCode_m) + ", Error String: " + errorStr_m;
}

}  // namespace zorvane::pubsub
