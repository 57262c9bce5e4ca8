#include "api/LastError.h"

#include <cstdio>

namespace zorvane::zorclient {

namespace {
// Constant-initialised, so access needs no guard and the first use on a thread costs nothing.
// In the static TLS block, so that reaching it never allocates: signal handlers set it too.
thread_local zorClient_errorInfo errorInfo_s
    __attribute__((tls_model("initial-exec"))) = {ZORCLIENT_SUBCODE_OK, 0, {0}};
}  // namespace

zorClient_errorInfo& LastError::get() noexcept {
    return errorInfo_s;
}

void LastError::setV(zorClient_subCode_t subCode, zorClient_session_responseCode_t responseCode,
                     const char* format_p, va_list args) noexcept {
    errorInfo_s.subCode = subCode;
    errorInfo_s.responseCode = responseCode;
    if (format_p == nullptr ||
        std::vsnprintf(errorInfo_s.errorStr, sizeof errorInfo_s.errorStr, format_p, args) < 0) {
        errorInfo_s.errorStr[0] = '\0';
    }
}

void LastError::setText(zorClient_subCode_t subCode, zorClient_session_responseCode_t responseCode,
                        const char* text_p) noexcept {
    errorInfo_s.subCode = subCode;
    errorInfo_s.responseCode = responseCode;
    std::size_t length = 0;
    if (text_p != nullptr) {
        while (length + 1 < sizeof errorInfo_s.errorStr && text_p[length] != '\0') {
            errorInfo_s.errorStr[length] = text_p[length];
            ++length;
        }
    }
    errorInfo_s.errorStr[length] = '\0';
}

void LastError::copyFrom(const zorClient_errorInfo& error) noexcept {
    if (&error != &errorInfo_s) {
        setText(error.subCode, error.responseCode, error.errorStr);
    }
}

void LastError::set(zorClient_subCode_t subCode, zorClient_session_responseCode_t responseCode,
                    const char* format_p, ...) noexcept {
    va_list args;
    va_start(args, format_p);
    setV(subCode, responseCode, format_p, args);
    va_end(args);
}

zorClient_returnCode_t LastError::fail(zorClient_subCode_t subCode, const char* format_p,
                                       ...) noexcept {
    va_list args;
    va_start(args, format_p);
    setV(subCode, 0, format_p, args);
    va_end(args);
    return ZORCLIENT_FAIL;
}

zorClient_returnCode_t LastError::failWithResult(zorClient_returnCode_t result,
                                                 zorClient_subCode_t subCode, const char* format_p,
                                                 ...) noexcept {
    va_list args;
    va_start(args, format_p);
    setV(subCode, 0, format_p, args);
    va_end(args);
    return result;
}

zorClient_returnCode_t LastError::failNullArgument(const char* function_p,
                                                   const char* argName_p) noexcept {
    return fail(ZORCLIENT_SUBCODE_PARAM_NULL_PTR, "%s: %s is null", function_p, argName_p);
}

void LastError::clear() noexcept {
    errorInfo_s.subCode = ZORCLIENT_SUBCODE_OK;
    errorInfo_s.responseCode = 0;
    errorInfo_s.errorStr[0] = '\0';
}

}  // namespace zorvane::zorclient
