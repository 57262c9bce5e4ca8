// Turns the application's message and container handles into objects for an entry point. A null
// handle fails with ZORCLIENT_SUBCODE_PARAM_NULL_PTR, a freed, reused or foreign one with
// ZORCLIENT_SUBCODE_INVALID_HANDLE; either way the error info names the function and the result
// is null.
#pragma once

#include "api/ApiGuard.h"
#include "core/Container.h"
#include "core/Message.h"

namespace zorvane::zorclient {

Message* messageOf(zorClient_opaqueMsg_pt msg, const char* function_p) noexcept;
Container* containerOf(zorClient_opaqueContainer_pt container, const char* function_p) noexcept;

// Runs body(Message&) for a live handle, with exceptions turned into failures (ApiGuard).
template <typename Body>
zorClient_returnCode_t withMessage(zorClient_opaqueMsg_pt msg, const char* function_p,
                                   Body&& body) noexcept {
    Message* msg_p = messageOf(msg, function_p);
    if (msg_p == nullptr) {
        return ZORCLIENT_FAIL;
    }
    return guarded(function_p, [&]() -> zorClient_returnCode_t { return body(*msg_p); });
}

// The same for a container handle.
template <typename Body>
zorClient_returnCode_t withContainer(zorClient_opaqueContainer_pt container, const char* function_p,
                                     Body&& body) noexcept {
    Container* container_p = containerOf(container, function_p);
    if (container_p == nullptr) {
        return ZORCLIENT_FAIL;
    }
    return guarded(function_p, [&]() -> zorClient_returnCode_t { return body(*container_p); });
}

}  // namespace zorvane::zorclient
