#include "api/MessageHandles.h"

#include "api/LastError.h"
#include "core/MessagePool.h"

namespace zorvane::zorclient {

Message* messageOf(zorClient_opaqueMsg_pt msg, const char* function_p) noexcept {
    Message* msg_p = MessagePool::lookup(msg);
    if (msg_p == nullptr) {
        if (msg == nullptr) {
            LastError::failNullArgument(function_p, "msg");
        } else {
            LastError::fail(ZORCLIENT_SUBCODE_INVALID_HANDLE,
                            "%s: msg is not the handle of a message (freed already?)", function_p);
        }
    }
    return msg_p;
}

Container* containerOf(zorClient_opaqueContainer_pt container, const char* function_p) noexcept {
    Container* container_p = Container::lookup(container);
    if (container_p == nullptr) {
        if (container == nullptr) {
            LastError::failNullArgument(function_p, "container");
        } else {
            LastError::fail(ZORCLIENT_SUBCODE_INVALID_HANDLE,
                            "%s: container is not the handle of an open map or stream (closed, or "
                            "its message reset or freed?)",
                            function_p);
        }
    }
    return container_p;
}

}  // namespace zorvane::zorclient
