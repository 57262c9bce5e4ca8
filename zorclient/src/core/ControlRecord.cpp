#include <cstdio>
#include <cstring>

#include "api/LastError.h"
#include "core/Event.h"

namespace zorvane::zorclient {

namespace {

void copyText(char* target_p, std::size_t size, const char* text_p) noexcept {
    std::snprintf(target_p, size, "%s", text_p != nullptr ? text_p : "");
}

}  // namespace

void ControlRecord::setInfo(const char* text_p) noexcept {
    copyText(info, sizeof info, text_p);
}

void ControlRecord::setError(zorClient_subCode_t code, zorClient_session_responseCode_t response,
                             const char* text_p) noexcept {
    hasError = true;
    subCode = code;
    responseCode = response;
    copyText(errorStr, sizeof errorStr, text_p);
}

void ControlRecord::setErrorFromLastError() noexcept {
    const zorClient_errorInfo& error = LastError::get();
    setError(error.subCode, error.responseCode, error.errorStr);
}

}  // namespace zorvane::zorclient
