// _zorClient_messageDispatcher_invokeUserCallback: a function to run on a context thread.
#include "api/ApiGuard.h"
#include "api/Handles.h"
#include "api/LastError.h"
#include "zorClient.h"

using namespace zorvane::zorclient;

extern "C" {

zorClient_returnCode_t _zorClient_messageDispatcher_invokeUserCallback(
    zorClient_opaqueTransactedSession_pt transactedSession,
    zorClient_messageDispatcher_userCallbackFunc_t callback_p, void* user_p) {
    const char* const function_p = __func__;
    return guarded(function_p, [&]() -> zorClient_returnCode_t {
        if (callback_p == nullptr) {
            return LastError::failNullArgument(function_p, "callback_p");
        }
        // A transacted session's flows are dispatched by the context of the session it was
        // made on; a plain session stands for its own context.
        if (handleKindOf(transactedSession) == HandleKind::Session) {
            auto lease = Handles::lookup(Handles::sessions(), transactedSession, function_p,
                                         "transactedSession");
            if (!lease) {
                return ZORCLIENT_FAIL;
            }
            lease->postUserCallback(callback_p, transactedSession, user_p);
            return ZORCLIENT_OK;
        }
        Handles::failLookup(transactedSession, function_p, "transactedSession");
        return ZORCLIENT_FAIL;
    });
}

}  // extern "C"
