// Entry points whose behaviour is not built yet. Each one fails the same way: the thread's
// error info gets ZORCLIENT_SUBCODE_NOT_SUPPORTED and a text naming the function, and the
// result is the failure value of its type. They touch no argument, so null handles and null
// pointers are harmless. The files of this folder are grouped by object, so that the work
// that builds an object deletes its group here.
#pragma once

#include "api/LastError.h"
#include "zorClientMsg.h"

namespace zorvane::zorclient {

template <typename Result>
Result notSupported(const char* function_p, Result failValue) noexcept {
    LastError::set(ZORCLIENT_SUBCODE_NOT_SUPPORTED, 0,
                   "%s is not available in this build of the library", function_p);
    return failValue;
}

}  // namespace zorvane::zorclient

// Defines entry point name with parameter list params (types only) and the result type's
// failure value.
#define ZC_NOT_SUPPORTED(resultType, failValue, name, params)                    \
    resultType name params {                                                     \
        return ::zorvane::zorclient::notSupported<resultType>(#name, failValue); \
    }
#define ZC_NOT_SUPPORTED_RC(name, params) \
    ZC_NOT_SUPPORTED(zorClient_returnCode_t, ZORCLIENT_FAIL, name, params)
#define ZC_NOT_SUPPORTED_BOOL(name, params) \
    ZC_NOT_SUPPORTED(zorClient_bool_t, zorClient_bool_t{0}, name, params)
