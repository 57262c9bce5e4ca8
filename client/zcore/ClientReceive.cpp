// The receive path from the library's callback to the receive analysis,
// and the reads of a received message that the analysis asks the binding
// for. All of it runs on the context thread.
#include <cstdio>
#include <exception>
#include <string>

#include "client/zcore/Client.h"
#include "client/zcore/ClientCallbacks.h"
#include "common/Log.h"
#include "common/MutexScope.h"

namespace zorvane::pubsub {

zorClient_rxMsgCallback_returnCode_t clientExtern_messageRxFunc(zorClient_opaqueSession_pt,
                                                                zorClient_opaqueMsg_pt msg,
                                                                void* user_p) {
    return static_cast<Client*>(user_p)->messageRxFunc(msg);
}

zorClient_rxMsgCallback_returnCode_t clientExtern_dispatchMsgRxFunc(zorClient_opaqueSession_pt,
                                                                    zorClient_opaqueMsg_pt msg,
                                                                    void* user_p) {
    auto* data_p = static_cast<Client::DemuxCallbackData*>(user_p);
    const std::string demuxId = data_p->demuxId_m;
    const zorClient_rxMsgCallback_returnCode_t result = data_p->client_mp->messageRxFunc(msg);
    data_p->client_mp->incDemuxStats(demuxId);
    return result;
}

zorClient_rxMsgCallback_returnCode_t Client::messageRxFunc(zorClient_opaqueMsg_pt msg) {
    currentMsg_mp->setMsgPointer(msg);
    reflectTaskStarted_m = false;
    try {
        processMessage(currentMsg_mp, &stats_m);
    } catch (const std::exception& e) {
        // Nothing may unwind into the library. What the analysis lets pass
        // ends its measurement: the text goes to the user, the error is on
        // record, and a run with "-soe" stops publishing.
        const std::string text =
            "CLIENT " + clientIdStr_m + ": " + "Error processing received message: " + e.what();
        LOG_CRITICAL("%s", text.c_str());
        std::printf("\n\n%s\n\n", text.c_str());
        updateLastError("", 0, e.what(), 0);
        asyncExceptionOccured_m.store(true);
    }
    currentMsg_mp->setMsgPointer(nullptr);
    // The library keeps the message: this build takes none over (no kept
    // message queue, no background reflection task).
    return ZORCLIENT_CALLBACK_OK;
}

void Client::setLastMessageDetails(AbstractMessage* msg_p) {
    MutexScope lock(&lastMessageDetailsMutex_m);
    if (!lastMessageDetails_m) {
        return;
    }
    LastMessageDetails& details = *lastMessageDetails_m;
    details.clear();
    auto msg = static_cast<zorClient_opaqueMsg_pt>(msg_p->getMsgPointer());

    auto subscriptionType = [](zorClient_destinationType_t type) {
        switch (type) {
            case ZORCLIENT_TOPIC_DESTINATION:
            case ZORCLIENT_TOPIC_TEMP_DESTINATION:
                return SUBSCRIPTION_TYPE_TOPIC;
            case ZORCLIENT_QUEUE_DESTINATION:
            case ZORCLIENT_QUEUE_TEMP_DESTINATION:
                return SUBSCRIPTION_TYPE_QUEUE;
            default:
                return SUBSCRIPTION_TYPE_UNKNOWN;
        }
    };
    auto flag = [](zorClient_bool_t value) { return static_cast<INT8>(value != 0 ? 1 : -1); };

    zorClient_destination_t destination{};
    if (zorClient_msg_getReplyTo(msg, &destination, sizeof destination) == ZORCLIENT_OK) {
        details.setReplyToDestination(destination.dest != nullptr ? destination.dest : "");
        details.setReplyToDestinationType(subscriptionType(destination.destType));
    }
    if (zorClient_msg_getDestination(msg, &destination, sizeof destination) == ZORCLIENT_OK) {
        details.setDestination(destination.dest != nullptr ? destination.dest : "");
        details.setDestinationType(subscriptionType(destination.destType));
    }
    const char* text = nullptr;
    if (zorClient_msg_getHttpContentEncoding(msg, &text) == ZORCLIENT_OK && text != nullptr) {
        details.setHttpContentEncoding(text);
    }
    if (zorClient_msg_getHttpContentType(msg, &text) == ZORCLIENT_OK && text != nullptr) {
        details.setHttpContentType(text);
    }
    if (zorClient_msg_getCorrelationId(msg, &text) == ZORCLIENT_OK && text != nullptr) {
        details.setCorrelationId(text);
    }
    zorClient_uint64_t expiration = 0;
    if (zorClient_msg_getExpiration(msg, &expiration) == ZORCLIENT_OK) {
        details.setExpiration(expiration);
    }
    zorClient_int32_t priority = 0;
    if (zorClient_msg_getPriority(msg, &priority) == ZORCLIENT_OK) {
        details.setPriority(priority);
    }
    if (zorClient_msg_getApplicationMessageId(msg, &text) == ZORCLIENT_OK && text != nullptr) {
        details.setAppMessageId(text);
    }
    if (zorClient_msg_getApplicationMsgType(msg, &text) == ZORCLIENT_OK && text != nullptr) {
        details.setAppMessageType(text);
    }
    zorClient_int64_t timestamp = 0;
    if (zorClient_msg_getSenderTimestamp(msg, &timestamp) == ZORCLIENT_OK) {
        details.setSenderTimestamp(static_cast<UINT64>(timestamp));
    }
    zorClient_uint32_t cos = 0;
    if (zorClient_msg_getClassOfService(msg, &cos) == ZORCLIENT_OK) {
        static const char* const COS_NAMES[] = {"USER_COS_1", "USER_COS_2", "USER_COS_3"};
        if (cos < 3) {
            details.setCos(COS_NAMES[cos]);
        }
    }
    zorClient_uint32_t mode = 0;
    if (zorClient_msg_getDeliveryMode(msg, &mode) == ZORCLIENT_OK) {
        static const char* const MODE_NAMES[] = {"DIRECT", "PERSISTENT", "NON_PERSISTENT"};
        if (mode < 3) {
            details.setDeliveryMode(MODE_NAMES[mode]);
        }
    }
    zorClient_msgId_t msgId = 0;
    if (zorClient_msg_getMsgId(msg, &msgId) == ZORCLIENT_OK) {
        char idText[32];
        std::snprintf(idText, sizeof idText, "%lld", static_cast<long long>(msgId));
        details.setMessageId(idText);
    }
    zorClient_int32_t deliveryCount = 0;
    if (zorClient_msg_getDeliveryCount(msg, &deliveryCount) == ZORCLIENT_OK) {
        details.setDeliverCount(deliveryCount);
    }
    // The three yes/no reads have no failure result of their own: a failed
    // read reads as "no".
    details.setRedelivered(flag(zorClient_msg_isRedelivered(msg)));
    details.setIsAckImmediately(flag(zorClient_msg_isAckImmediately(msg)));
    details.setIsDmqEligible(flag(zorClient_msg_isDMQEligible(msg)));
    zorClient_replicationGroupMessageId_t rgmid{};
    if (zorClient_msg_getReplicationGroupMessageId(msg, &rgmid, sizeof rgmid) == ZORCLIENT_OK) {
        char rgmidText[ZORCLIENT_REPLICATION_GROUP_MESSAGE_ID_STRING_LENGTH] = {0};
        zorClient_replicationGroupMessageId_toString(&rgmid, sizeof rgmid, rgmidText,
                                                     sizeof rgmidText);
        details.setReplicationGroupMessageId(rgmidText);
    }
    const char* attachBegin = msg_p->getAttachBegin();
    const char* attachEnd = msg_p->getAttachEnd();
    details.setBinaryPayloadSize(static_cast<INT32>(attachEnd - attachBegin));

    appendLastMessageDetailsToHistory();
}

bool Client::checkStructuredMsgImpl(AbstractMessage* msg_p) {
    return msg_p->getCheckStructuredMsg(rxStatsProps_m.getSdmPropsList());
}

void Client::readMsgObjectTypeImpl(AbstractMessage* msg_p, MsgObjectTypeReading& reading) {
    auto msg = static_cast<zorClient_opaqueMsg_pt>(msg_p->getMsgPointer());
    const char* type = nullptr;
    zorClient_returnCode_t rc = zorClient_msg_getApplicationMsgType(msg, &type);
    if (rc != ZORCLIENT_OK || type == nullptr) {
        LOG_DEBUG("zorClient_msg_getApplicationMsgType() did not return successfully; rc=\"%s\"",
                  zorClient_returnCodeToString(rc));
        reading.outcome_m = MsgObjectTypeReading::TYPE_UNREADABLE;
        return;
    }
    reading.type_m = type;
    reading.outcome_m = MsgObjectTypeReading::READ;

    auto failed = [&reading](const char* call, zorClient_returnCode_t callRc) {
        LOG_ERROR("%s() did not return successfully; rc=\"%s\"", call,
                  zorClient_returnCodeToString(callRc));
        reading.outcome_m = MsgObjectTypeReading::CONTENT_UNREADABLE;
    };
    if (reading.type_m == "b") {
        void* data_p = nullptr;
        zorClient_uint32_t size = 0;
        rc = zorClient_msg_getBinaryAttachmentPtr(msg, &data_p, &size);
        if (rc != ZORCLIENT_OK) {
            failed("zorClient_msg_getBinaryAttachmentPtr", rc);
            return;
        }
        reading.content_m.assign(static_cast<const char*>(data_p), size);
    } else if (reading.type_m == "t") {
        const char* text = nullptr;
        rc = zorClient_msg_getBinaryAttachmentString(msg, &text);
        if (rc != ZORCLIENT_OK || text == nullptr) {
            failed("zorClient_msg_getBinaryAttachmentString", rc);
            return;
        }
        reading.content_m = text;
    } else if (reading.type_m == "s" || reading.type_m == "m") {
        const bool isStream = reading.type_m == "s";
        zorClient_opaqueContainer_pt container = nullptr;
        rc = isStream ? zorClient_msg_getBinaryAttachmentStream(msg, &container)
                      : zorClient_msg_getBinaryAttachmentMap(msg, &container);
        if (rc != ZORCLIENT_OK) {
            failed(isStream ? "zorClient_msg_getBinaryAttachmentStream"
                            : "zorClient_msg_getBinaryAttachmentMap",
                   rc);
            return;
        }
        const char* text = nullptr;
        // A stream's first entry; a map's field "MAP".
        rc = zorClient_container_getStringPtr(container, &text, isStream ? nullptr : "MAP");
        if (rc != ZORCLIENT_OK || text == nullptr) {
            failed("zorClient_container_getStringPtr", rc);
        } else {
            reading.content_m = text;
        }
        zorClient_container_closeMapStream(&container);
    }
}

}  // namespace zorvane::pubsub
