#include "api/MessageHandles.h"

#include "api/LastError.h"
#include "core/MessagePool.h"

namespace zorvane::zorclient {

namespace {

// object_p as the table found it for handle; when it found none, the error info says whether
// the handle was null or not (or no longer) one of what.
template <typename T>
T* found(T* object_p, const void* handle, const char* function_p, const char* argName_p,
         const char* what_p) noexcept {
    if (object_p == nullptr) {
        if (handle == nullptr) {
            LastError::failNullArgument(function_p, argName_p);
        } else {
            LastError::fail(ZORCLIENT_SUBCODE_INVALID_HANDLE, "%s: %s is not the handle of %s",
                            function_p, argName_p, what_p);
        }
    }
    return object_p;
}

}  // namespace

Message* messageOf(zorClient_opaqueMsg_pt msg, const char* function_p) noexcept {
    return found(MessagePool::lookup(msg), msg, function_p, "msg", "a message (freed already?)");
}

Container* containerOf(zorClient_opaqueContainer_pt container, const char* function_p) noexcept {
    return found(Container::lookup(container), container, function_p, "container",
                 "an open map or stream (closed, or its message reset or freed?)");
}

}  // namespace zorvane::zorclient
