// Session: sending direct messages, requests and replies.
#include <cstring>
#include <string_view>

#include "api/LastError.h"
#include "core/MessagePool.h"
#include "core/Session.h"
#include "core/TopicSyntax.h"
#include "core/WireMessage.h"

namespace zorvane::zorclient {

namespace {

const Message* lookupMessage(zorClient_opaqueMsg_pt msg, const char* function_p,
                             const char* argName_p) {
    const Message* msg_p = MessagePool::lookup(msg);
    if (msg_p == nullptr) {
        if (msg == nullptr) {
            LastError::failNullArgument(function_p, argName_p);
        } else {
            LastError::fail(ZORCLIENT_SUBCODE_INVALID_HANDLE,
                            "%s: %s %p is not a live message handle (freed?)", function_p,
                            argName_p, static_cast<void*>(msg));
        }
    }
    return msg_p;
}

// What a send can tell before the broker sees the message: it has a destination, and a topic
// is well formed (whether the broker takes a queue is the broker's to say).
zorClient_returnCode_t checkDestination(const Message& msg, const WireOverrides* overrides_p,
                                        const char* function_p) {
    std::string_view destination;
    bool hasDestination = false;
    zorClient_destinationType_t type = ZORCLIENT_NULL_DESTINATION;
    if (overrides_p != nullptr && overrides_p->destination_p != nullptr) {
        destination = overrides_p->destination_p;
        hasDestination = true;
        type = overrides_p->destinationType;
    } else if (const Part& part = msg.part(PartId::DESTINATION); part.present()) {
        destination = std::string_view(part.text(), part.size());  // no strlen per send
        hasDestination = true;
        type = msg.header().destinationType;
    }
    if (!hasDestination || type == ZORCLIENT_NULL_DESTINATION) {
        return LastError::fail(ZORCLIENT_SUBCODE_PARAM_NULL_PTR,
                               "%s: the message has no destination; give it a topic "
                               "(zorClient_msg_setTopicPtr or zorClient_msg_setDestination)",
                               function_p);
    }
    if (type == ZORCLIENT_TOPIC_DESTINATION || type == ZORCLIENT_TOPIC_TEMP_DESTINATION) {
        return TopicSyntax::checkPublish(destination, function_p);
    }
    return ZORCLIENT_OK;
}

}  // namespace

void Session::countSent(const PublishResult& result) noexcept {
    // The totals are read as sums of the kinds (SessionStats).
    stats_m.addTx(ZORCLIENT_STATS_TX_DIRECT_MSGS);
    stats_m.addTx(ZORCLIENT_STATS_TX_DIRECT_BYTES, result.bytes);
    if (result.noMatch) {
        stats_m.addTx(ZORCLIENT_STATS_TX_DISCARD_NO_MATCH);
    }
}

zorClient_returnCode_t Session::awaitTransport(std::chrono::steady_clock::time_point deadline,
                                               bool* blockedCounted_p, const char* function_p) {
    if (closed_m.load(std::memory_order_acquire)) {
        return LastError::fail(ZORCLIENT_SUBCODE_INVALID_SESSION_OPERATION,
                               "%s: the session is being destroyed", function_p);
    }
    const State state = state_m.load(std::memory_order_acquire);
    if (state == State::Up) {
        return ZORCLIENT_OK;  // came up meanwhile: try again
    }
    if (state != State::Reconnecting) {
        stats_m.addTx(ZORCLIENT_STATS_TX_DISCARD_CHANNEL_ERROR);
        return LastError::fail(
            ZORCLIENT_SUBCODE_SESSION_NOT_ESTABLISHED, "%s: the session is not connected (%s)",
            function_p,
            state == State::Down ? "its connection was lost for good" : "connect it first");
    }
    // Waiting on the context thread would wait for that thread's own reconnect timer.
    if (!sendBlocking_m || context_m->isDispatchThread()) {
        stats_m.addTx(ZORCLIENT_STATS_TX_WOULD_BLOCK);
        canSendOwed_m.store(true, std::memory_order_release);
        // Had the reconnect ended before the flag was set, nobody would emit the event.
        if (state_m.load(std::memory_order_acquire) == State::Up) {
            emitCanSendIfOwed();
        }
        return LastError::failWithResult(ZORCLIENT_WOULD_BLOCK,
                                         ZORCLIENT_SUBCODE_SESSION_NOT_ESTABLISHED,
                                         "%s: the session is reconnecting; a CAN_SEND event "
                                         "follows when it can send again",
                                         function_p);
    }
    if (!*blockedCounted_p) {
        stats_m.addTx(ZORCLIENT_STATS_TX_BLOCKED_ON_SEND);
        *blockedCounted_p = true;
    }
    std::unique_lock<std::mutex> lock(mutex_m);
    const bool ended = stateChanged_m.wait_until(lock, deadline, [this] {
        return closed_m.load(std::memory_order_acquire) ||
               state_m.load(std::memory_order_acquire) != State::Reconnecting;
    });
    if (!ended) {
        return LastError::fail(ZORCLIENT_SUBCODE_TIMEOUT,
                               "%s: the session was still reconnecting after %lld ms (\"%s\")",
                               function_p, static_cast<long long>(writeTimeout_m.count()),
                               ZORCLIENT_SESSION_PROP_WRITE_TIMEOUT_MS);
    }
    return ZORCLIENT_OK;
}

zorClient_returnCode_t Session::publishOne(const Message& msg, const WireOverrides* overrides_p,
                                           std::uint64_t requestId, const char* function_p) {
    PublishResult result;
    PublishRequest request;
    request.message_p = &msg;
    request.overrides_p = overrides_p;
    request.result_p = &result;
    bool blockedCounted = false;
    std::chrono::steady_clock::time_point deadline{};
    for (;;) {
        if (Backend* backend_p = sendingBackend(); backend_p != nullptr) {
            const zorClient_returnCode_t rc =
                requestId != 0           ? backend_p->request(request, requestId)
                : overrides_p != nullptr ? backend_p->reply(request)
                                         : backend_p->publish(request);
            if (rc == ZORCLIENT_OK) {
                countSent(result);
                return ZORCLIENT_OK;
            }
            const zorClient_errorInfo failure = LastError::get();
            if (failure.subCode != ZORCLIENT_SUBCODE_SESSION_NOT_ESTABLISHED) {
                LastError::set(failure.subCode, failure.responseCode, "%s: %s", function_p,
                               failure.errorStr);
                return rc;
            }
            // The connection went between the state check and the broker: as if not up.
        }
        if (deadline == std::chrono::steady_clock::time_point{}) {
            deadline = std::chrono::steady_clock::now() + writeTimeout_m;
        }
        const zorClient_returnCode_t rc = awaitTransport(deadline, &blockedCounted, function_p);
        if (rc != ZORCLIENT_OK) {
            return rc;
        }
    }
}

zorClient_returnCode_t Session::send(zorClient_opaqueMsg_pt msg, const char* function_p) {
    const Message* msg_p = lookupMessage(msg, function_p, "msg");
    if (msg_p == nullptr) {
        return ZORCLIENT_FAIL;
    }
    const zorClient_returnCode_t rc = checkDestination(*msg_p, nullptr, function_p);
    return rc == ZORCLIENT_OK ? publishOne(*msg_p, nullptr, 0, function_p) : rc;
}

zorClient_returnCode_t Session::sendMultiple(const zorClient_opaqueMsg_pt* msgs_p,
                                             std::uint32_t count, std::uint32_t* written_p,
                                             const char* function_p) {
    *written_p = 0;
    if (count > ZORCLIENT_SEND_MULTIPLE_MAX_MSGS) {
        return LastError::fail(ZORCLIENT_SUBCODE_PARAM_OUT_OF_RANGE,
                               "%s: %u messages in one call; at most %u", function_p, count,
                               ZORCLIENT_SEND_MULTIPLE_MAX_MSGS);
    }
    for (std::uint32_t i = 0; i < count; ++i) {
        const zorClient_returnCode_t rc = send(msgs_p[i], function_p);
        if (rc != ZORCLIENT_OK) {
            return rc;  // those before it went; *written_p says how many
        }
        *written_p = i + 1;
    }
    return ZORCLIENT_OK;
}

zorClient_returnCode_t Session::sendRequest(zorClient_opaqueMsg_pt msg,
                                            zorClient_opaqueMsg_pt* reply_p,
                                            std::uint32_t timeoutMs, const char* function_p) {
    *reply_p = nullptr;
    if (timeoutMs == 0) {
        return LastError::fail(ZORCLIENT_SUBCODE_PARAM_OUT_OF_RANGE,
                               "%s: timeoutMs is 0; a request waits at least 1 ms for its reply",
                               function_p);
    }
    const Message* msg_p = lookupMessage(msg, function_p, "msg");
    if (msg_p == nullptr) {
        return ZORCLIENT_FAIL;
    }
    zorClient_returnCode_t rc = checkDestination(*msg_p, nullptr, function_p);
    if (rc != ZORCLIENT_OK) {
        return rc;
    }
    // Open before the send: the reply may come back before the send returns.
    const std::uint64_t id = requests_m.open();
    rc = publishOne(*msg_p, nullptr, id, function_p);
    if (rc != ZORCLIENT_OK) {
        requests_m.abandon(id);
        return rc;
    }
    stats_m.addTx(ZORCLIENT_STATS_TX_REQUEST_SENT);
    MessagePayload payload{nullptr, nullptr};
    const RequestTable::Outcome outcome = requests_m.wait(
        id, std::chrono::steady_clock::now() + std::chrono::milliseconds(timeoutMs), &payload);
    if (outcome != RequestTable::Outcome::ANSWERED) {
        if (Backend* backend_p = active_m.load(std::memory_order_acquire); backend_p != nullptr) {
            backend_p->endRequest(id);
        }
        if (outcome == RequestTable::Outcome::CLOSED) {
            return LastError::fail(ZORCLIENT_SUBCODE_INVALID_SESSION_OPERATION,
                                   "%s: the session was destroyed while the request waited",
                                   function_p);
        }
        stats_m.addTx(ZORCLIENT_STATS_TX_REQUEST_TIMEOUT);
        return LastError::failWithResult(ZORCLIENT_INCOMPLETE, ZORCLIENT_SUBCODE_TIMEOUT,
                                         "%s: no reply within %u ms", function_p, timeoutMs);
    }
    Message* replyMsg_p = payload.ops_p->makeRxMessage_p(payload, true);
    payload.release();
    if (replyMsg_p == nullptr) {
        return LastError::fail(ZORCLIENT_SUBCODE_OUT_OF_MEMORY,
                               "%s: the reply came but no message could be made for it",
                               function_p);
    }
    stats_m.addRx(ZORCLIENT_STATS_RX_REPLY_MSG);
    *reply_p = replyMsg_p->handle();
    return ZORCLIENT_OK;
}

zorClient_returnCode_t Session::sendReply(zorClient_opaqueMsg_pt request,
                                          zorClient_opaqueMsg_pt reply, const char* function_p) {
    const Message* request_p = lookupMessage(request, function_p, "request");
    if (request_p == nullptr) {
        return ZORCLIENT_FAIL;
    }
    const Message* reply_p = lookupMessage(reply, function_p, "reply");
    if (reply_p == nullptr) {
        return ZORCLIENT_FAIL;
    }
    const Part& replyTo = request_p->part(PartId::REPLY_TO);
    if (!replyTo.present() || request_p->header().replyToType == ZORCLIENT_NULL_DESTINATION) {
        return LastError::fail(ZORCLIENT_SUBCODE_PARAM_CONFLICT,
                               "%s: the request has no reply-to destination to answer to",
                               function_p);
    }
    WireOverrides overrides;
    overrides.destination_p = replyTo.text();
    overrides.destinationType = request_p->header().replyToType;
    overrides.markAsReply = true;
    overrides.requestCorrelation = request_p->header().requestCorrelation;
    const zorClient_returnCode_t rc = checkDestination(*reply_p, &overrides, function_p);
    return rc == ZORCLIENT_OK ? publishOne(*reply_p, &overrides, 0, function_p) : rc;
}

}  // namespace zorvane::zorclient
