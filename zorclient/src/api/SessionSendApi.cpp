// Session entry points: sending messages, requests and replies.
#include "api/ApiGuard.h"
#include "api/Handles.h"
#include "api/LastError.h"
#include "zorClient.h"

using namespace zorvane::zorclient;

extern "C" {

zorClient_returnCode_t zorClient_session_sendMsg(zorClient_opaqueSession_pt session,
                                                 zorClient_opaqueMsg_pt msg) {
    const char* const function_p = __func__;
    return guarded(function_p, [&]() -> zorClient_returnCode_t {
        auto lease = Handles::lookup(Handles::sessions(), session, function_p, "session");
        return lease ? lease->send(msg, function_p) : ZORCLIENT_FAIL;
    });
}

zorClient_returnCode_t zorClient_session_sendMultipleMsg(
    zorClient_opaqueSession_pt session, zorClient_opaqueMsg_pt* msgArray_p,
    zorClient_uint32_t numberOfMessages, zorClient_uint32_t* numberOfMessagesWritten_p) {
    const char* const function_p = __func__;
    return guarded(function_p, [&]() -> zorClient_returnCode_t {
        if (numberOfMessagesWritten_p == nullptr) {
            return LastError::failNullArgument(function_p, "numberOfMessagesWritten_p");
        }
        *numberOfMessagesWritten_p = 0;
        auto lease = Handles::lookup(Handles::sessions(), session, function_p, "session");
        if (!lease) {
            return ZORCLIENT_FAIL;
        }
        if (msgArray_p == nullptr) {
            return LastError::failNullArgument(function_p, "msgArray_p");
        }
        return lease->sendMultiple(msgArray_p, numberOfMessages, numberOfMessagesWritten_p,
                                   function_p);
    });
}

zorClient_returnCode_t zorClient_session_sendRequest(zorClient_opaqueSession_pt session,
                                                     zorClient_opaqueMsg_pt msg,
                                                     zorClient_opaqueMsg_pt* reply_p,
                                                     zorClient_uint32_t timeoutMs) {
    const char* const function_p = __func__;
    return guarded(function_p, [&]() -> zorClient_returnCode_t {
        if (reply_p == nullptr) {
            return LastError::failNullArgument(function_p, "reply_p");
        }
        *reply_p = nullptr;
        auto lease = Handles::lookup(Handles::sessions(), session, function_p, "session");
        return lease ? lease->sendRequest(msg, reply_p, timeoutMs, function_p) : ZORCLIENT_FAIL;
    });
}

zorClient_returnCode_t zorClient_session_sendReply(zorClient_opaqueSession_pt session,
                                                   zorClient_opaqueMsg_pt request,
                                                   zorClient_opaqueMsg_pt reply) {
    const char* const function_p = __func__;
    return guarded(function_p, [&]() -> zorClient_returnCode_t {
        auto lease = Handles::lookup(Handles::sessions(), session, function_p, "session");
        return lease ? lease->sendReply(request, reply, function_p) : ZORCLIENT_FAIL;
    });
}

}  // extern "C"
