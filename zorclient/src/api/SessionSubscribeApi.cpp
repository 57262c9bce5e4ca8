// Session entry points: direct topic subscriptions and dispatch entries.
#include "api/ApiGuard.h"
#include "api/Handles.h"
#include "api/LastError.h"
#include "zorClient.h"

using namespace zorvane::zorclient;

namespace {

zorClient_returnCode_t changeSubscription(zorClient_opaqueSession_pt session, bool add,
                                          zorClient_subscribeFlags_t flags, const char* topic_p,
                                          const char* function_p) {
    return guarded(function_p, [&]() -> zorClient_returnCode_t {
        auto lease = Handles::lookup(Handles::sessions(), session, function_p, "session");
        return lease ? lease->changeSubscription(add, topic_p, flags, nullptr, nullptr, function_p)
                     : ZORCLIENT_FAIL;
    });
}

zorClient_returnCode_t changeDispatch(zorClient_opaqueSession_pt session, bool add,
                                      zorClient_subscribeFlags_t flags, const char* topic_p,
                                      const zorClient_session_rxMsgDispatchFuncInfo_t* dispatch_p,
                                      void* correlation_p, const char* function_p) {
    return guarded(function_p, [&]() -> zorClient_returnCode_t {
        auto lease = Handles::lookup(Handles::sessions(), session, function_p, "session");
        if (!lease) {
            return ZORCLIENT_FAIL;
        }
        if (dispatch_p == nullptr) {
            return LastError::failNullArgument(function_p, "dispatch_p");
        }
        if (dispatch_p->dispatchType != ZORCLIENT_DISPATCH_TYPE_CALLBACK) {
            return LastError::fail(ZORCLIENT_SUBCODE_PARAM_OUT_OF_RANGE,
                                   "%s: dispatch_p->dispatchType is %u; only "
                                   "ZORCLIENT_DISPATCH_TYPE_CALLBACK (%u) is known",
                                   function_p, dispatch_p->dispatchType,
                                   ZORCLIENT_DISPATCH_TYPE_CALLBACK);
        }
        if (dispatch_p->callback_p == nullptr) {
            return LastError::failNullArgument(function_p, "dispatch_p->callback_p");
        }
        const SessionSubscriptions::DispatchTarget target{dispatch_p->callback_p,
                                                          dispatch_p->user_p};
        return lease->changeSubscription(add, topic_p, flags, &target, correlation_p, function_p);
    });
}

}  // namespace

extern "C" {

zorClient_returnCode_t zorClient_session_topicSubscribeExt(zorClient_opaqueSession_pt session,
                                                           zorClient_subscribeFlags_t flags,
                                                           const char* topic_p) {
    return changeSubscription(session, true, flags, topic_p, __func__);
}

zorClient_returnCode_t zorClient_session_topicUnsubscribeExt(zorClient_opaqueSession_pt session,
                                                             zorClient_subscribeFlags_t flags,
                                                             const char* topic_p) {
    return changeSubscription(session, false, flags, topic_p, __func__);
}

zorClient_returnCode_t zorClient_session_topicSubscribeWithDispatch(
    zorClient_opaqueSession_pt session, zorClient_subscribeFlags_t flags, const char* topic_p,
    zorClient_session_rxMsgDispatchFuncInfo_t* dispatch_p, void* correlationTag_p) {
    return changeDispatch(session, true, flags, topic_p, dispatch_p, correlationTag_p, __func__);
}

zorClient_returnCode_t zorClient_session_topicUnsubscribeWithDispatch(
    zorClient_opaqueSession_pt session, zorClient_subscribeFlags_t flags, const char* topic_p,
    zorClient_session_rxMsgDispatchFuncInfo_t* dispatch_p, void* correlationTag_p) {
    return changeDispatch(session, false, flags, topic_p, dispatch_p, correlationTag_p, __func__);
}

}  // extern "C"
