// The fixed-layout records that an application hands in or has filled (zorClient_field_t,
// zorClient_destination_t) come with their size in the caller's build: one smaller than this
// build's record is refused instead of being read or written past its end.
#pragma once

#include <cstddef>

#include "api/LastError.h"

namespace zorvane::zorclient {

// Checks record argument recordName_p of function_p: not null, and its size (argument
// sizeName_p) at least that of a T, which the error text calls typeName_p.
template <typename T>
zorClient_returnCode_t checkRecord(const T* record_p, const char* recordName_p, std::size_t size,
                                   const char* sizeName_p, const char* typeName_p,
                                   const char* function_p) noexcept {
    if (record_p == nullptr) {
        return LastError::failNullArgument(function_p, recordName_p);
    }
    if (size < sizeof(T)) {
        return LastError::fail(ZORCLIENT_SUBCODE_INSUFFICIENT_SPACE,
                               "%s: %s %zu is less than sizeof(%s) %zu", function_p, sizeName_p,
                               size, typeName_p, sizeof(T));
    }
    return ZORCLIENT_OK;
}

}  // namespace zorvane::zorclient
