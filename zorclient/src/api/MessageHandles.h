// Turns the application's message and container handles into objects for an entry point. A null
// handle fails with ZORCLIENT_SUBCODE_PARAM_NULL_PTR, a freed, reused or foreign one with
// ZORCLIENT_SUBCODE_INVALID_HANDLE; either way the error info names the function and the result
// is null.
#pragma once

#include <utility>

#include "api/ApiGuard.h"
#include "core/Container.h"
#include "core/Message.h"

namespace zorvane::zorclient {

Message* messageOf(zorClient_opaqueMsg_pt msg, const char* function_p) noexcept;
Container* containerOf(zorClient_opaqueContainer_pt container, const char* function_p) noexcept;

// Runs body(T&) for the object that messageOf() or containerOf() found, with exceptions turned
// into failures (ApiGuard); fails at once when it found none.
template <typename T, typename Body>
zorClient_returnCode_t withObject(T* object_p, const char* function_p, Body&& body) noexcept {
    if (object_p == nullptr) {
        return ZORCLIENT_FAIL;
    }
    return guarded(function_p, [&]() -> zorClient_returnCode_t { return body(*object_p); });
}

// Runs body(Message&) for a live message handle.
template <typename Body>
zorClient_returnCode_t withMessage(zorClient_opaqueMsg_pt msg, const char* function_p,
                                   Body&& body) noexcept {
    return withObject(messageOf(msg, function_p), function_p, std::forward<Body>(body));
}

// Runs body(Container&) for a live container handle.
template <typename Body>
zorClient_returnCode_t withContainer(zorClient_opaqueContainer_pt container, const char* function_p,
                                     Body&& body) noexcept {
    return withObject(containerOf(container, function_p), function_p, std::forward<Body>(body));
}

}  // namespace zorvane::zorclient
