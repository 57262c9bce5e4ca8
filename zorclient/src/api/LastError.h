// The calling thread's error info: the one path by which every failing call of the library
// says why it failed. Thread-local, so threads never see each other's failures; nothing here
// allocates or locks.
#pragma once

#include <cstdarg>

#include "zorClient.h"

namespace zorvane::zorclient {

class LastError {
  public:
    // The calling thread's record; lives as long as the thread.
    static zorClient_errorInfo& get() noexcept;

    // Fills the calling thread's record: subcode, response code, and the text made from
    // format_p and its printf-style arguments, cut to ZORCLIENT_ERRORINFO_STR_SIZE - 1 chars.
    static void set(zorClient_subCode_t subCode, zorClient_session_responseCode_t responseCode,
                    const char* format_p, ...) noexcept ZORCLIENT_PRINTF_LIKE(3, 4);
    static void setV(zorClient_subCode_t subCode, zorClient_session_responseCode_t responseCode,
                     const char* format_p, va_list args) noexcept;

    // As set(), with a plain text instead of a format. Async-signal-safe: no formatting, no
    // allocation.
    static void setText(zorClient_subCode_t subCode, zorClient_session_responseCode_t responseCode,
                        const char* text_p) noexcept;

    // Copies the fields of error into the calling thread's record.
    static void copyFrom(const zorClient_errorInfo& error) noexcept;

    // set() with response code 0, then ZORCLIENT_FAIL: "fail with subcode and message".
    static zorClient_returnCode_t fail(zorClient_subCode_t subCode, const char* format_p,
                                       ...) noexcept ZORCLIENT_PRINTF_LIKE(2, 3);

    // As fail(), for failures that a call reports with another result (ZORCLIENT_NOT_FOUND,
    // ZORCLIENT_INCOMPLETE, ...).
    static zorClient_returnCode_t failWithResult(zorClient_returnCode_t result,
                                                 zorClient_subCode_t subCode, const char* format_p,
                                                 ...) noexcept ZORCLIENT_PRINTF_LIKE(3, 4);

    // Fails with ZORCLIENT_SUBCODE_PARAM_NULL_PTR: argument argName_p of function_p is null.
    static zorClient_returnCode_t failNullArgument(const char* function_p,
                                                   const char* argName_p) noexcept;

    // Back to "no error" (subcode OK, response code 0, empty text).
    static void clear() noexcept;
};

}  // namespace zorvane::zorclient
