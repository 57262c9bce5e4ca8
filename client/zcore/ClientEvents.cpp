// The session's events on the context thread: connection state, errors,
// publish acknowledgements, and the reconnect after a replication
// fail-over.
#include <exception>

#include "client/zcore/Client.h"
#include "client/zcore/ClientCallbacks.h"
#include "client/zcore/LibraryError.h"
#include "common/Log.h"
#include "common/OS.h"

namespace zorvane::pubsub {

void clientExtern_eventFunc(zorClient_opaqueSession_pt session,
                            zorClient_session_eventCallbackInfo_pt eventInfo_p, void* user_p) {
    static_cast<Client*>(user_p)->eventFunc(session, eventInfo_p);
}

void Client::eventFunc(zorClient_opaqueSession_pt /*session*/,
                       zorClient_session_eventCallbackInfo_pt eventInfo_p) {
    const zorClient_session_event_t event = eventInfo_p->sessionEvent;
    LOG_DEBUG("CLIENT %s: Recv session event %d", clientIdStr_m.c_str(), static_cast<int>(event));
    // Copied now: the library fills it for this event, and any call made
    // below may overwrite it.
    const LibraryError error = LibraryError::fetch();
    stats_m.incSessionEventStat(static_cast<INT32>(event), 1);

    switch (event) {
        case ZORCLIENT_SESSION_EVENT_UP_NOTICE:
            LOG_INFO("CLIENT %s: Recv ZORCLIENT_SESSION_EVENT_UP_NOTICE.", clientIdStr_m.c_str());
            setChannelState(CLIENT_STATE_CONNECTED);
            break;
        case ZORCLIENT_SESSION_EVENT_RECONNECTED_NOTICE:
            LOG_INFO("CLIENT %s: Recv ZORCLIENT_SESSION_EVENT_RECONNECTED_NOTICE.",
                     clientIdStr_m.c_str());
            setChannelState(CLIENT_STATE_CONNECTED);
            break;
        case ZORCLIENT_SESSION_EVENT_RECONNECTING_NOTICE:
            LOG_INFO("CLIENT %s: Recv ZORCLIENT_SESSION_EVENT_RECONNECTING_NOTICE.",
                     clientIdStr_m.c_str());
            setChannelState(CLIENT_STATE_RECONNECTING);
            break;
        case ZORCLIENT_SESSION_EVENT_DOWN_ERROR:
        case ZORCLIENT_SESSION_EVENT_CONNECT_FAILED_ERROR:
            LOG_INFO("CLIENT %s: Recv channel down event", clientIdStr_m.c_str());
            handleErrorForAsync(ZORCLIENT_LOG_DEBUG, "Event: Channel Down");
            setChannelState(CLIENT_STATE_DISCONNECTED);
            onChannelDown(error);
            break;
        case ZORCLIENT_SESSION_EVENT_REJECTED_MSG_ERROR:
            onPublishRejected(eventInfo_p, error);
            LOG_WARNING("CLIENT %s: Router rejected published message due to %s.",
                        clientIdStr_m.c_str(), eventInfo_p->info_p);
            handleErrorForAsync(ZORCLIENT_LOG_DEBUG, "Event: Msg Rejected");
            break;
        case ZORCLIENT_SESSION_EVENT_SUBSCRIPTION_ERROR:
            LOG_WARNING("CLIENT %s: Router rejected subscription due to %s. ",
                        clientIdStr_m.c_str(), eventInfo_p->info_p);
            break;
        case ZORCLIENT_SESSION_EVENT_RX_MSG_TOO_BIG_ERROR:
            LOG_WARNING("CLIENT %s: Received message that was too large. ", clientIdStr_m.c_str());
            handleErrorForAsync(ZORCLIENT_LOG_DEBUG, "Event: Msg Too Big");
            break;
        case ZORCLIENT_SESSION_EVENT_ACKNOWLEDGEMENT:
            onPublishAcknowledgement(eventInfo_p);
            break;
        case ZORCLIENT_SESSION_EVENT_ASSURED_PUBLISHING_UP:
        case ZORCLIENT_SESSION_EVENT_ASSURED_DELIVERY_DOWN:
        case ZORCLIENT_SESSION_EVENT_TE_UNSUBSCRIBE_OK:
        case ZORCLIENT_SESSION_EVENT_CAN_SEND:
        case ZORCLIENT_SESSION_EVENT_VIRTUAL_ROUTER_NAME_CHANGED:
            LOG_DEBUG("CLIENT %s: Session Event: %d", clientIdStr_m.c_str(),
                      static_cast<int>(event));
            break;
        case ZORCLIENT_SESSION_EVENT_TE_UNSUBSCRIBE_ERROR:
            handleErrorForAsync(ZORCLIENT_LOG_INFO, "TE Unsubscribe Error");
            break;
        case ZORCLIENT_SESSION_EVENT_SUBSCRIPTION_OK:
            LOG_DEBUG("CLIENT %s: Session Event: %s; Topic: %s; Correlation Pointer: %p",
                      clientIdStr_m.c_str(), zorClient_session_eventToString(event),
                      eventInfo_p->info_p, eventInfo_p->correlation_p);
            break;
        case ZORCLIENT_SESSION_EVENT_REPUBLISH_UNACKED_MESSAGES:
            LOG_NOTICE("CLIENT %s: Session Event: %s; Info: %s; Correlation Pointer: %p",
                       clientIdStr_m.c_str(), zorClient_session_eventToString(event),
                       eventInfo_p->info_p, eventInfo_p->correlation_p);
            break;
        default:
            // Provisioning and property changes are made synchronously by
            // this tool, so their events are as unexpected as unknown ones.
            LOG_ERROR("CLIENT %s: Unknown session event %d", clientIdStr_m.c_str(),
                      static_cast<int>(event));
            break;
    }
}

void Client::onChannelDown(const LibraryError& error) {
    if (error.subCode_m != ZORCLIENT_SUBCODE_UNKNOWN_FLOW_NAME) {
        return;
    }
    LOG_INFO("CLIENT %s: Received ZORCLIENT_SUBCODE_UNKNOWN_FLOW_NAME.", clientIdStr_m.c_str());
    if (!props_m.getWantReplicationReconnect()) {
        return;
    }
    // After a replication fail-over the session is gone for good; the
    // publisher goes on behind the last acknowledged id once it is back.
    isChannelAdminConnected_m.store(false);
    setReplicationReconnecting(true);
    try {
        connect();
    } catch (const std::exception& e) {
        // Nothing may leave a callback: the failure is on record, and the
        // client stays disconnected for the run to see.
        LOG_ERROR("CLIENT %s: Replication reconnect failed: %s", clientIdStr_m.c_str(), e.what());
        asyncExceptionOccured_m.store(true);
    }
}

bool Client::wantPubAckOrderCheck() const {
    return txStatsProps_m.getWantOrderCheckPublisherStreamNumber() &&
           props_m.getWantPubAckOrderCheck();
}

void Client::onPublishAcknowledgement(zorClient_session_eventCallbackInfo_pt eventInfo_p) {
    stats_m.incStat(PerfStats::NUM_ACK_EVENTS);
    if (wantPubAckOrderCheck()) {
        const UINT64 tag = OS::readTruncatedUint64ValueFromPointer(eventInfo_p->correlation_p);
        const UINT64 highest = highestCorrelationTagValueAcked_m.load();
        if (tag <= highest) {
            LOG_ERROR("CLIENT %s: Received ACK for %llu after %llu", clientIdStr_m.c_str(),
                      static_cast<unsigned long long>(tag),
                      static_cast<unsigned long long>(highest));
        } else {
            // One event may cover every id up to its tag (windowed mode).
            stats_m.incStat(PerfStats::NUM_PUB_MSGS_ACKED, static_cast<INT64>(tag - highest));
            highestCorrelationTagValueAcked_m.store(tag);
        }
        LOG_DEBUG("CLIENT %s: ZORCLIENT_SESSION_EVENT_ACKNOWLEDGEMENT for msg: %llu.",
                  clientIdStr_m.c_str(), static_cast<unsigned long long>(tag));
    }
    numMsgsAcked_m.fetch_add(1);
}

void Client::onPublishRejected(zorClient_session_eventCallbackInfo_pt eventInfo_p,
                               const LibraryError& error) {
    if (eventInfo_p->correlation_p == nullptr) {
        return;
    }
    stats_m.incStat(PerfStats::NUM_NACK_EVENTS);
    if (!wantPubAckOrderCheck()) {
        return;
    }
    const UINT64 tag = OS::readTruncatedUint64ValueFromPointer(eventInfo_p->correlation_p);
    if (tag == 0) {
        return;
    }
    const UINT64 highest = highestCorrelationTagValueAcked_m.load();
    if (tag <= highest) {
        LOG_ERROR("CLIENT %s: Received NACK for %llu after %llu", clientIdStr_m.c_str(),
                  static_cast<unsigned long long>(tag), static_cast<unsigned long long>(highest));
        return;
    }
    stats_m.incStat(PerfStats::NUM_PUB_MSGS_ACKED);
    // A standby's refusal is answered by the active broker later: the
    // highest acknowledged id must not move past it.
    if (error.subCode_m != ZORCLIENT_SUBCODE_REPLICATION_IS_STANDBY) {
        if (tag != highest + 1) {
            LOG_ERROR("CLIENT %s: Received NACK for %llu after %llu", clientIdStr_m.c_str(),
                      static_cast<unsigned long long>(tag),
                      static_cast<unsigned long long>(highest));
        }
        highestCorrelationTagValueAcked_m.store(tag);
    }
}

}  // namespace zorvane::pubsub
