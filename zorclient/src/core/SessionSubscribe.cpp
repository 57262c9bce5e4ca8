// Session: direct topic subscriptions and dispatch entries, and applying them again after a
// reconnect.
#include <cstring>

#include "api/LastError.h"
#include "api/Logger.h"
#include "core/Session.h"
#include "core/TopicSyntax.h"

namespace zorvane::zorclient {

namespace {

constexpr zorClient_session_responseCode_t RESPONSE_OK = 200;

}  // namespace

zorClient_returnCode_t Session::changeSubscription(
    bool add, const char* topic_p, zorClient_subscribeFlags_t flags,
    const SessionSubscriptions::DispatchTarget* dispatch_p, void* correlation_p,
    const char* function_p) {
    if (topic_p == nullptr) {
        return LastError::failNullArgument(function_p, "topic_p");
    }
    const std::string_view topic(topic_p);
    zorClient_returnCode_t rc = TopicSyntax::checkSubscription(topic, function_p);
    if (rc != ZORCLIENT_OK) {
        return rc;
    }
    const bool localOnly = (flags & ZORCLIENT_SUBSCRIBE_FLAGS_LOCAL_DISPATCH_ONLY) != 0;
    if (localOnly && dispatch_p == nullptr) {
        // A local dispatch entry without a callback to dispatch to steers nothing.
        ZC_LOG(ZORCLIENT_LOG_DEBUG,
               "%s: \"%s\" with LOCAL_DISPATCH_ONLY and no dispatch callback "
               "changes nothing",
               function_p, topic_p);
        return ZORCLIENT_OK;
    }
    std::lock_guard<std::mutex> lock(subscriptionsMutex_m);
    const State state = state_m.load(std::memory_order_acquire);
    // While reconnecting, a session that applies its subscriptions again takes new ones along.
    const bool atBrokerLater = state == State::Reconnecting && reapplySubscriptions_m;
    if (!localOnly && state != State::Up && !atBrokerLater) {
        return LastError::failWithResult(
            ZORCLIENT_NOT_READY, ZORCLIENT_SUBCODE_SESSION_NOT_ESTABLISHED,
            "%s: the session is not connected; topic subscriptions need a connected session (or "
            "a reconnecting one with \"%s\" \"1\")",
            function_p, ZORCLIENT_SESSION_PROP_REAPPLY_SUBSCRIPTIONS);
    }
    SessionSubscriptions::Outcome outcome;
    if (dispatch_p != nullptr) {
        outcome = add ? subscriptions_m.addDispatch(topic, flags, *dispatch_p, localOnly)
                      : subscriptions_m.removeDispatch(topic, *dispatch_p);
    } else {
        outcome = add ? subscriptions_m.addPlain(topic, flags) : subscriptions_m.removePlain(topic);
    }
    dispatchEntries_m.store(subscriptions_m.dispatchEntries(), std::memory_order_release);
    if (outcome.alreadyThere && !ignoreDuplicates_m) {
        return add ? LastError::fail(ZORCLIENT_SUBCODE_SUBSCRIPTION_ALREADY_PRESENT,
                                     "%s: the session already has subscription \"%s\" (set \"%s\" "
                                     "\"1\" to have this succeed)",
                                     function_p, topic_p,
                                     ZORCLIENT_SESSION_PROP_IGNORE_DUP_SUBSCRIPTION_ERROR)
                   : LastError::fail(ZORCLIENT_SUBCODE_SUBSCRIPTION_NOT_FOUND,
                                     "%s: the session has no subscription \"%s\" (set \"%s\" \"1\" "
                                     "to have this succeed)",
                                     function_p, topic_p,
                                     ZORCLIENT_SESSION_PROP_IGNORE_DUP_SUBSCRIPTION_ERROR);
    }
    Backend* backend_p = active_m.load(std::memory_order_acquire);
    if (outcome.broker != SessionSubscriptions::BrokerChange::NONE && state == State::Up &&
        backend_p != nullptr) {
        SubscriptionRequest request;
        request.topic = topic;
        request.flags = add ? outcome.brokerFlags : flags;
        request.correlation_p = correlation_p;
        rc = add ? backend_p->subscribe(request) : backend_p->unsubscribe(request);
        const bool connectionGone =
            LastError::get().subCode == ZORCLIENT_SUBCODE_SESSION_NOT_ESTABLISHED;
        if (rc != ZORCLIENT_OK && !(connectionGone && (reapplySubscriptions_m || !add))) {
            // Nothing must stay that the broker does not have.
            if (add) {
                if (dispatch_p != nullptr) {
                    subscriptions_m.removeDispatch(topic, *dispatch_p);
                } else {
                    subscriptions_m.removePlain(topic);
                }
                dispatchEntries_m.store(subscriptions_m.dispatchEntries(),
                                        std::memory_order_release);
            }
            const zorClient_errorInfo failure = LastError::get();
            LastError::set(failure.subCode, failure.responseCode, "%s: \"%s\": %s", function_p,
                           topic_p, failure.errorStr);
            return connectionGone ? ZORCLIENT_NOT_READY : rc;
        }
        stats_m.addTx(ZORCLIENT_STATS_TX_CTL_MSGS);
        stats_m.addTx(ZORCLIENT_STATS_TX_CTL_BYTES, topic.size());
    }
    if ((flags & ZORCLIENT_SUBSCRIBE_FLAGS_REQUEST_CONFIRM) != 0) {
        emitEvent(ZORCLIENT_SESSION_EVENT_SUBSCRIPTION_OK, RESPONSE_OK, topic_p, nullptr,
                  correlation_p);
    }
    // The embedded broker confirms at once; a session that does not block says so.
    return subscribeBlocking_m || (flags & ZORCLIENT_SUBSCRIBE_FLAGS_WAITFORCONFIRM) != 0
               ? ZORCLIENT_OK
               : ZORCLIENT_IN_PROGRESS;
}

void Session::becomeUp() noexcept {
    std::lock_guard<std::mutex> lock(subscriptionsMutex_m);
    Backend* backend_p = active_m.load(std::memory_order_acquire);
    if (reapplySubscriptions_m && backend_p != nullptr) {
        std::vector<std::pair<std::string, zorClient_subscribeFlags_t>> topics;
        try {
            topics = subscriptions_m.brokerTopics();
        } catch (const std::bad_alloc&) {
            const zorClient_errorInfo error{ZORCLIENT_SUBCODE_OUT_OF_MEMORY, 0,
                                            "no memory to apply the subscriptions again"};
            emitEvent(ZORCLIENT_SESSION_EVENT_SUBSCRIPTION_ERROR, 0, error.errorStr, &error);
        }
        for (const auto& [topic, flags] : topics) {
            SubscriptionRequest request;
            request.topic = topic;
            request.flags = flags;
            if (backend_p->subscribe(request) != ZORCLIENT_OK) {
                zorClient_errorInfo error = LastError::get();
                std::snprintf(error.errorStr, sizeof error.errorStr,
                              "subscription \"%.80s\" could not be applied again: %.120s",
                              topic.c_str(), LastError::get().errorStr);
                emitEvent(ZORCLIENT_SESSION_EVENT_SUBSCRIPTION_ERROR, error.responseCode,
                          error.errorStr, &error);
            } else {
                stats_m.addTx(ZORCLIENT_STATS_TX_CTL_MSGS);
                stats_m.addTx(ZORCLIENT_STATS_TX_CTL_BYTES, topic.size());
            }
        }
    }
    // Under the subscription mutex, so that a subscription made meanwhile is either among those
    // applied or sees the session up and goes to the broker itself.
    setState(State::Up);
}

void Session::connectionEnded() noexcept {
    if (reapplySubscriptions_m) {
        return;
    }
    std::lock_guard<std::mutex> lock(subscriptionsMutex_m);
    subscriptions_m.forgetBroker();
}

}  // namespace zorvane::zorclient
