// Session: the events it queues on its context and how they reach the application.
#include <cstring>

#include "api/LastError.h"
#include "api/Logger.h"
#include "core/MessagePool.h"
#include "core/Session.h"
#include "core/WireMessage.h"

namespace zorvane::zorclient {

void Session::emitEvent(zorClient_session_event_t event, zorClient_session_responseCode_t response,
                        const char* info_p, const zorClient_errorInfo* error_p,
                        void* correlation_p) noexcept {
    ControlRecord* record_p = nullptr;
    try {
        record_p = context_m->takeRecord();
    } catch (const std::bad_alloc&) {
        ZC_LOG(ZORCLIENT_LOG_ERROR, "no memory for session event %s of client %s; event lost",
               zorClient_session_eventToString(event), config_m.clientName().c_str());
        return;
    }
    record_p->event = event;
    record_p->responseCode = response;
    record_p->setInfo(info_p);
    record_p->correlation_p = correlation_p;
    if (error_p != nullptr) {
        record_p->setError(error_p->subCode, error_p->responseCode, error_p->errorStr);
    }
    emitTargetEvent(EventKind::SessionEvent, this, record_p);
}

void Session::emitTargetEvent(EventKind kind, EventTarget* target_p,
                              ControlRecord* record_p) noexcept {
    Event queued;
    queued.kind = kind;
    queued.epoch = epoch_m.load(std::memory_order_acquire);
    queued.target_p = target_p;
    queued.control_p = record_p;
    target_p->retain();
    try {
        context_m->post(queued);
    } catch (const std::bad_alloc&) {
        ZC_LOG(ZORCLIENT_LOG_ERROR, "no memory to queue an event of session %p; event lost",
               static_cast<void*>(handle_m));
        context_m->giveRecord(record_p);
        target_p->release();
    }
}

void Session::postUserCallback(zorClient_messageDispatcher_userCallbackFunc_t function_p,
                               zorClient_opaqueTransactedSession_pt handle_p, void* user_p) {
    Event queued;
    queued.kind = EventKind::UserCallback;
    queued.epoch = epoch_m.load(std::memory_order_acquire);
    queued.target_p = this;
    queued.callback.function_p = function_p;
    queued.callback.handle_p = handle_p;
    queued.callback.user_p = user_p;
    retain();
    try {
        context_m->post(queued);
    } catch (...) {
        release();
        throw;
    }
}

bool Session::acceptsEvent(const Event& event) const noexcept {
    if (closed_m.load(std::memory_order_seq_cst)) {
        return false;
    }
    // Only the session's own notices belong to a connection; messages already delivered and
    // callbacks the application asked for still count after a disconnect.
    return event.kind != EventKind::SessionEvent ||
           event.epoch == epoch_m.load(std::memory_order_acquire);
}

void Session::dispatchEvent(Event& event) noexcept {
    switch (event.kind) {
        case EventKind::SessionEvent: {
            const ControlRecord& record = *event.control_p;
            // The application reads the error info inside the callback.
            if (record.hasError) {
                LastError::setText(record.subCode, record.responseCode, record.errorStr);
            } else {
                LastError::clear();
            }
            if (callbacks_m.event_p != nullptr) {
                zorClient_session_eventCallbackInfo_t info{
                    static_cast<zorClient_session_event_t>(record.event), record.responseCode,
                    record.info, record.correlation_p};
                callbacks_m.event_p(handle_m, &info, callbacks_m.eventUser_p);
            }
            break;
        }
        case EventKind::UserCallback:
            event.callback.function_p(event.callback.handle_p, event.callback.user_p);
            break;
        case EventKind::Delivery:
            dispatchDelivery(event.delivery);
            break;
        case EventKind::FlowEvent:
        case EventKind::CacheEvent:
            // Addressed to flows and cache sessions, never to the session itself.
            break;
        case EventKind::Retire:
            break;  // what it carries is the reference the context drops after it
    }
}

void Session::countReceived(const Message& msg) noexcept {
    const std::uint64_t bytes = msg.wire() != nullptr ? msg.wire()->contentSize() : 0;
    switch (msg.header().deliveryMode) {
        case ZORCLIENT_DELIVERY_MODE_DIRECT:
            stats_m.addRxFromDispatch(ZORCLIENT_STATS_RX_DIRECT_MSGS);
            stats_m.addRxFromDispatch(ZORCLIENT_STATS_RX_DIRECT_BYTES, bytes);
            break;
        case ZORCLIENT_DELIVERY_MODE_PERSISTENT:
            stats_m.addRxFromDispatch(ZORCLIENT_STATS_RX_PERSISTENT_MSGS);
            stats_m.addRxFromDispatch(ZORCLIENT_STATS_RX_PERSISTENT_BYTES, bytes);
            break;
        default:
            stats_m.addRxFromDispatch(ZORCLIENT_STATS_RX_NONPERSISTENT_MSGS);
            stats_m.addRxFromDispatch(ZORCLIENT_STATS_RX_NONPERSISTENT_BYTES, bytes);
            break;
    }
    if (msg.delivery().discardIndication) {
        stats_m.addRxFromDispatch(ZORCLIENT_STATS_RX_DISCARD_IND);
    }
}

void Session::dispatchDelivery(MessagePayload& payload) noexcept {
    const PayloadOps* ops_p = payload.ops_p;
    if (ops_p == nullptr || ops_p->makeRxMessage_p == nullptr) {
        payload.release();
        return;
    }
    // Without dispatch entries the session's callback is the only one: its message may take
    // over the payload's hold on the broker copy.
    const bool single = dispatchEntries_m.load(std::memory_order_acquire) == 0;
    Message* msg_p = ops_p->makeRxMessage_p(payload, single);
    if (msg_p == nullptr) {
        payload.release();
        return;
    }
    countReceived(*msg_p);
    dispatchScratch_m.clear();
    if (!single) {
        const Part& destination = msg_p->part(PartId::DESTINATION);
        if (destination.present()) {
            std::lock_guard<std::mutex> lock(subscriptionsMutex_m);
            try {
                subscriptions_m.matchDispatch(destination.text(), &dispatchScratch_m);
            } catch (const std::bad_alloc&) {
                // The session's callback gets it, as if no entry matched.
                dispatchScratch_m.clear();
            }
        }
    }
    if (dispatchScratch_m.empty()) {
        if (callbacks_m.rx_p == nullptr ||
            callbacks_m.rx_p(handle_m, msg_p->handle(), callbacks_m.rxUser_p) !=
                ZORCLIENT_CALLBACK_TAKE_MSG) {
            MessagePool::free(msg_p);
        }
        payload.release();
        return;
    }
    // Each matching dispatch record gets a message of its own, so that each may keep it.
    for (std::size_t i = 0; i < dispatchScratch_m.size(); ++i) {
        const SessionSubscriptions::DispatchTarget target = dispatchScratch_m[i];
        Message* own_p = i == 0 ? msg_p : ops_p->makeRxMessage_p(payload, false);
        if (own_p != nullptr && target.callback_p(handle_m, own_p->handle(), target.user_p) !=
                                    ZORCLIENT_CALLBACK_TAKE_MSG) {
            MessagePool::free(own_p);
        }
    }
    payload.release();
}

bool Session::onDelivery(EventTarget* flowTarget_p, MessagePayload payload) noexcept {
    EventTarget* target_p = flowTarget_p != nullptr ? flowTarget_p : this;
    Event queued;
    queued.kind = EventKind::Delivery;
    queued.epoch = epoch_m.load(std::memory_order_acquire);
    queued.target_p = target_p;
    queued.delivery = payload;
    // The session's own deliveries borrow the context's reference (see Event): only a broker
    // connection calls this, and it ends before the session leaves the context.
    queued.borrowsTarget = flowTarget_p == nullptr;
    if (!queued.borrowsTarget) {
        target_p->retain();
    }
    if (!context_m->tryPost(queued)) {
        if (!queued.borrowsTarget) {
            target_p->release();
        }
        return false;
    }
    return true;
}

bool Session::onReply(std::uint64_t requestId, MessagePayload payload) noexcept {
    if (requests_m.answer(requestId, payload)) {
        return true;
    }
    // Too late (timed out), a second reply, or not for this session's requests at all.
    stats_m.addRx(ZORCLIENT_STATS_RX_REPLY_MSG_DISCARD);
    return false;
}

void Session::onPublishOutcome(std::uint64_t /*publishId*/, void* correlationTag_p,
                               zorClient_subCode_t subCode, const char* reason_p) noexcept {
    ControlRecord* record_p = nullptr;
    try {
        record_p = context_m->takeRecord();
    } catch (const std::bad_alloc&) {
        ZC_LOG(ZORCLIENT_LOG_ERROR, "no memory for a publish acknowledgement of session %p",
               static_cast<void*>(handle_m));
        return;
    }
    record_p->correlation_p = correlationTag_p;
    record_p->setInfo(reason_p);
    if (subCode == ZORCLIENT_SUBCODE_OK) {
        record_p->event = ZORCLIENT_SESSION_EVENT_ACKNOWLEDGEMENT;
    } else {
        record_p->event = ZORCLIENT_SESSION_EVENT_REJECTED_MSG_ERROR;
        record_p->setError(subCode, 0, reason_p);
    }
    emitTargetEvent(EventKind::SessionEvent, this, record_p);
}

void Session::onFlowEvent(EventTarget* flowTarget_p, zorClient_flow_event_t event,
                          zorClient_subCode_t subCode, const char* info_p) noexcept {
    ControlRecord* record_p = nullptr;
    try {
        record_p = context_m->takeRecord();
    } catch (const std::bad_alloc&) {
        ZC_LOG(ZORCLIENT_LOG_ERROR, "no memory for flow event %d of session %p", event,
               static_cast<void*>(handle_m));
        return;
    }
    record_p->event = event;
    record_p->setInfo(info_p);
    if (subCode != ZORCLIENT_SUBCODE_OK) {
        record_p->setError(subCode, 0, info_p);
    }
    emitTargetEvent(EventKind::FlowEvent, flowTarget_p, record_p);
}

void Session::onCacheOutcome(EventTarget* cacheTarget_p, std::uint64_t requestId,
                             zorClient_returnCode_t rc, zorClient_subCode_t subCode) noexcept {
    ControlRecord* record_p = nullptr;
    try {
        record_p = context_m->takeRecord();
    } catch (const std::bad_alloc&) {
        ZC_LOG(ZORCLIENT_LOG_ERROR, "no memory for the end of cache request %llu of session %p",
               static_cast<unsigned long long>(requestId), static_cast<void*>(handle_m));
        return;
    }
    record_p->requestId = requestId;
    record_p->rc = rc;
    record_p->subCode = subCode;
    emitTargetEvent(EventKind::CacheEvent, cacheTarget_p, record_p);
}

}  // namespace zorvane::zorclient
