#include "api/Handles.h"

namespace zorvane::zorclient {

namespace {

// Constant-initialised, so that a signal handler that looks a session up never meets a table
// under construction.
constinit HandleTable<Context> contexts_s{HandleKind::Context};
constinit HandleTable<Session> sessions_s{HandleKind::Session};

}  // namespace

HandleTable<Context>& Handles::contexts() noexcept {
    return contexts_s;
}

HandleTable<Session>& Handles::sessions() noexcept {
    return sessions_s;
}

void Handles::failLookup(const void* handle_p, const char* function_p,
                         const char* argName_p) noexcept {
    if (handle_p == nullptr) {
        LastError::failNullArgument(function_p, argName_p);
    } else {
        LastError::fail(ZORCLIENT_SUBCODE_INVALID_HANDLE,
                        "%s: %s %p is not a valid handle (destroyed, or of another kind)",
                        function_p, argName_p, handle_p);
    }
}

}  // namespace zorvane::zorclient
