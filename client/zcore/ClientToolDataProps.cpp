// The user-property form of the tool data, and the descriptive trace
// fields that go with it for a decoder to compare.
#include <cstdio>
#include <string>

#include "client/zcore/Client.h"
#include "common/ToolDataFill.h"

namespace zorvane::pubsub {

void Client::setToolDataAsPropertiesImpl(MsgProperties* msg_p, zorClient_opaqueMsg_pt msgPtr) {
    ToolData& toolData = *msg_p->getToolData();
    // As late as possible: the time stamp is the moment of sending.
    ToolDataFill::stampSendTime(toolData, txStatsProps_m.getWantLatency());
    const bool wantTrace = props_m.getWantTraceDecodeCheck();
    if (!toolData.hasData() && !wantTrace) {
        return;
    }
    zorClient_opaqueContainer_pt map = nullptr;
    zorClient_returnCode_t rc = zorClient_msg_createUserPropertyMap(msgPtr, &map, 100);
    if (rc != ZORCLIENT_OK) {
        handleErrorWithException(rc);
    }
    if (toolData.hasData()) {
        ToolDataUserProp fields[ToolData::MAX_USER_PROPS];
        const UINT32 count = toolData.getUserProperties(txStatsProps_m.getWantPayloadCheck(),
                                                        txStatsProps_m.getWantLatency(), fields);
        for (UINT32 i = 0; i < count; ++i) {
            const ToolDataUserProp& field = fields[i];
            rc = field.isInt64_m
                     ? zorClient_container_addInt64(map, field.value_m, field.name_mp)
                     : zorClient_container_addInt32(
                           map, static_cast<zorClient_int32_t>(field.value_m), field.name_mp);
            if (rc != ZORCLIENT_OK) {
                handleErrorWithException(rc);
            }
        }
    }
    if (wantTrace) {
        addTraceInfo(map, msg_p);
    }
    rc = zorClient_container_closeMapStream(&map);
    if (rc != ZORCLIENT_OK) {
        handleErrorWithException(rc);
    }
}

void Client::addTraceInfo(zorClient_opaqueContainer_pt container, MsgProperties* msg_p) {
    auto must = [this](zorClient_returnCode_t rc) {
        if (rc != ZORCLIENT_OK) {
            handleErrorWithException(rc);
        }
    };
    const PubSubMessageType msgType = publishProps_m.getMsgType();

    const std::string& destination =
        !msg_p->getTopic().empty() ? msg_p->getTopic() : msg_p->getQueue();
    if (!destination.empty()) {
        must(zorClient_container_addString(container, destination.c_str(), "topic"));
    }
    zorClient_int32_t deliveryMode = 2;  // direct
    if (msgType == PUBSUB_MSG_TYPE_PERSISTENT) {
        deliveryMode = 0;
    } else if (msgType == PUBSUB_MSG_TYPE_NON_PERSISTENT) {
        deliveryMode = 1;
    }
    must(zorClient_container_addInt32(container, deliveryMode, "deliveryMode"));
    if (props_m.getWantReplyTo()) {
        char replyTo[ZORCLIENT_REPLY_TO_MAX_SIZE];
        if (replyToTopic(msg_p, replyTo, sizeof replyTo)) {
            must(zorClient_container_addString(container, replyTo, "replyToTopic"));
        }
    }
    if (!props_m.getClientVpn().empty()) {
        must(zorClient_container_addString(container, props_m.getClientVpn().c_str(),
                                           "messageVpnName"));
    }
    // Read into the stack, as everything else here: this runs for every
    // message.
    char clientName[ZORCLIENT_CLIENT_NAME_MAX_SIZE] = {0};
    must(zorClient_session_getProperty(session_mp, "SESSION_CLIENT_NAME", clientName,
                                       sizeof clientName));
    must(zorClient_container_addString(container, clientName, "clientName"));
    if (!props_m.getClientUsername().empty()) {
        must(zorClient_container_addString(container, props_m.getClientUsername().c_str(),
                                           "clientUsername"));
    }
    if (publishProps_m.getDMQEligible() != 0) {
        must(zorClient_container_addBoolean(container, 1, "dmqEligible"));
    }
    if (publishProps_m.getTTL() != -1) {
        must(zorClient_container_addInt64(container, publishProps_m.getTTL(), "ttl"));
    }
    if (!msg_p->getAttachment().empty()) {
        must(zorClient_container_addInt32(
            container, static_cast<zorClient_int32_t>(msg_p->getAttachment().size()),
            "binaryAttachmentSize"));
    }
    if (!msg_p->getMsgBody().empty()) {
        must(zorClient_container_addInt32(
            container, static_cast<zorClient_int32_t>(msg_p->getMsgBody().size()),
            "xmlAttachmentSize"));
    }
    const UINT64 msgId = msg_p->getToolData()->getMsgId();
    if (msgId != 0 && msgType != PUBSUB_MSG_TYPE_DIRECT) {
        char correlationId[24];
        std::snprintf(correlationId, sizeof correlationId, "%llu",
                      static_cast<unsigned long long>(msgId));
        must(zorClient_container_addString(container, correlationId, "correlationId"));
    }
}

}  // namespace zorvane::pubsub
