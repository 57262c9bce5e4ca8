// Keeps C++ exceptions inside the library: an entry point runs its body through guarded(), so
// that an allocation failure or an internal fault becomes ZORCLIENT_FAIL with a subcode instead
// of unwinding into a C caller.
#pragma once

#include <exception>
#include <new>

#include "api/LastError.h"

namespace zorvane::zorclient {

template <typename Body>
zorClient_returnCode_t guarded(const char* function_p, Body&& body) noexcept {
    try {
        return body();
    } catch (const std::bad_alloc&) {
        return LastError::fail(ZORCLIENT_SUBCODE_OUT_OF_MEMORY, "%s: out of memory", function_p);
    } catch (const std::exception& e) {
        return LastError::fail(ZORCLIENT_SUBCODE_INTERNAL_ERROR, "%s: internal error: %s",
                               function_p, e.what());
    } catch (...) {
        return LastError::fail(ZORCLIENT_SUBCODE_INTERNAL_ERROR, "%s: internal error", function_p);
    }
}

}  // namespace zorvane::zorclient
