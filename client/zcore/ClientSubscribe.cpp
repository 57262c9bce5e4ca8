// Direct topic subscriptions: the session's own, those on behalf of
// another client, and those dispatched by a demultiplexing id.
#include <string>

#include "client/zcore/Client.h"
#include "client/zcore/ClientCallbacks.h"
#include "client/zcore/TopicExpression.h"
#include "common/PubSubException.h"

namespace zorvane::pubsub {

void Client::subscriptionUpdateImpl(const std::vector<std::string>& topics, bool isAdding,
                                    const std::string& clientName,
                                    SubscriptionType subscriptionType) {
    if (subscriptionType == SUBSCRIPTION_TYPE_XPE) {
        throw PubSubException("Unsupported subscription type: XPE.");
    }
    std::string topic;
    std::string demuxId;
    for (std::size_t i = 0; i < topics.size(); ++i) {
        // Only the last of a list waits for the broker's confirmation, which
        // then covers the whole list; a session that is not up cannot wait.
        zorClient_subscribeFlags_t flags = 0;
        if (i + 1 == topics.size() && getChannelState() == CLIENT_STATE_CONNECTED) {
            flags = ZORCLIENT_SUBSCRIBE_FLAGS_WAITFORCONFIRM;
        }
        TopicExpression::build(topics[i], topic, flags, demuxId);

        zorClient_returnCode_t rc = ZORCLIENT_OK;
        if (demuxId.empty() && clientName.empty()) {
            rc = isAdding ? zorClient_session_topicSubscribeExt(session_mp, flags, topic.c_str())
                          : zorClient_session_topicUnsubscribeExt(session_mp, flags, topic.c_str());
        } else if (demuxId.empty()) {
            PropertyArray endpoint;
            endpoint.add("ENDPOINT_ID", "4");
            endpoint.add("ENDPOINT_NAME", clientName);
            rc = isAdding ? zorClient_session_endpointTopicSubscribe(endpoint.get(), session_mp,
                                                                     flags, topic.c_str(), nullptr)
                          : zorClient_session_endpointTopicUnsubscribe(
                                endpoint.get(), session_mp, flags, topic.c_str(), nullptr);
        } else {
            auto entry = demuxDataMap_m.try_emplace(demuxId, DemuxCallbackData{demuxId, this});
            zorClient_session_rxMsgDispatchFuncInfo_t dispatch{};
            dispatch.dispatchType = ZORCLIENT_DISPATCH_TYPE_CALLBACK;
            dispatch.callback_p = &clientExtern_dispatchMsgRxFunc;
            dispatch.user_p = &entry.first->second;
            rc = isAdding ? zorClient_session_topicSubscribeWithDispatch(
                                session_mp, flags, topic.c_str(), &dispatch, nullptr)
                          : zorClient_session_topicUnsubscribeWithDispatch(
                                session_mp, flags, topic.c_str(), &dispatch, nullptr);
        }
        // Anything else (an existing subscription, one in progress) counts
        // as done.
        if (rc == ZORCLIENT_NOT_READY || rc == ZORCLIENT_FAIL) {
            handleErrorWithException(rc);
        }
    }
}

}  // namespace zorvane::pubsub
