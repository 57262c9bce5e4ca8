// Publishing: preparing the reused library messages for a run, and the
// single and vectored sends of the publisher threads. Nothing here
// allocates per message: every message goes out through a library message
// allocated once, and the tool data is written in place.
#include <array>
#include <string>

#include "client/zcore/CannedMessages.h"
#include "client/zcore/Client.h"
#include "client/zcore/SdmMessageBuilder.h"
#include "common/Log.h"
#include "common/MessagePriorityGenerator.h"
#include "common/PubSubException.h"

namespace zorvane::pubsub {

namespace {

// The library's classes of service count from 0.
zorClient_uint32_t libraryClassOfService(PubSubCosType cos) {
    switch (cos) {
        case PUBSUB_COS_2:
            return 1;
        case PUBSUB_COS_3:
            return 2;
        default:
            return 0;
    }
}

void logSetterFailure(const char* call, zorClient_returnCode_t rc) {
    LOG_ERROR("%s() did not return successfully; rc=\"%s\"", call,
              zorClient_returnCodeToString(rc));
}

}  // namespace

void Client::setPublishPropsImpl(const PublishProperties& publishProps, INT32 producerIndex,
                                 std::string xaSessionName) {
    const std::size_t index = checkedProducerIndex(producerIndex);
    if (publishProps.getSendVectorSize() >= 1) {
        MsgVector& vector = psvMsgsList_m[index];
        for (zorClient_opaqueMsg_pt& msg : vector) {
            if (msg != nullptr) {
                zorClient_msg_free(&msg);
            }
        }
        for (zorClient_opaqueMsg_pt& msg : vector) {
            if (zorClient_msg_alloc(&msg) != ZORCLIENT_OK) {
                msg = nullptr;
                throwClientError("Unable to allocate message to transmit");
            }
        }
    }
    resetMsg(index);
    // No transacted session can be open in this build, so any name is
    // unknown.
    if (!xaSessionName.empty()) {
        throwClientError("Transacted Session not found (" + xaSessionName + ")");
    }
}

void Client::resetMsg(std::size_t producerIndex) {
    zorClient_msg_reset(pubMsgsList_m[producerIndex]);
    preLoadMsg(pubMsgsList_m[producerIndex]);
    for (zorClient_opaqueMsg_pt msg : psvMsgsList_m[producerIndex]) {
        if (msg != nullptr) {
            zorClient_msg_reset(msg);
            preLoadMsg(msg);
        }
    }
}

void Client::preLoadMsg(zorClient_opaqueMsg_pt msg) {
    // What is the same for every message of the run is written once here,
    // out of the per-message work.
    const PublishProperties& pub = publishProps_m;
    if (pub.getCos() != PUBSUB_COS_NO) {
        const zorClient_uint32_t cos = libraryClassOfService(pub.getCos());
        if (zorClient_msg_setClassOfService(msg, cos) != ZORCLIENT_OK) {
            throwClientError("Unable to set class of service in message to:" + std::to_string(cos));
        }
    }
    if (pub.getPubToOne() && zorClient_msg_setDeliverToOne(msg, 1) != ZORCLIENT_OK) {
        throwClientError("Unable to set DTO in message");
    }
    if (pub.getDMQEligible() != 0 && zorClient_msg_setDMQEligible(msg, 1) != ZORCLIENT_OK) {
        throwClientError("Unable to set DMQ eligible in message");
    }
    if (pub.getTTL() != -1 && zorClient_msg_setTimeToLive(msg, pub.getTTL()) != ZORCLIENT_OK) {
        throwClientError("Unable to set TTL in message");
    }
    if (pub.getEliding() != 0 && zorClient_msg_setElidingEligible(msg, 1) != ZORCLIENT_OK) {
        throwClientError("Unable to set Eliding Eligible in message");
    }
}

void Client::publishMsgImpl(MsgProperties* msg_p, INT32 producerIndex) {
    const std::size_t index = checkedProducerIndex(producerIndex);
    zorClient_opaqueMsg_pt pubMsg = pubMsgsList_m[index];

    addStructuredContent(pubMsg, index, msg_p->getSdmMsgProps());

    if (pubWantToolData_m) {
        if (props_m.getWantUserPropToolData()) {
            setToolDataAsPropertiesImpl(msg_p, pubMsg);
        } else {
            // Stamps the send time and lays the record over the attachment,
            // which the build below hands to the library.
            setToolDataAsAttachment(msg_p);
            if (props_m.getWantTraceDecodeCheck()) {
                zorClient_opaqueContainer_pt map = nullptr;
                if (zorClient_msg_createUserPropertyMap(pubMsg, &map, 100) == ZORCLIENT_OK) {
                    addTraceInfo(map, msg_p);
                    zorClient_container_closeMapStream(&map);
                }
            }
        }
    }

    addPartitionKey(pubMsg, msg_p);

    if (publishProps_m.getMsgType() == PUBSUB_MSG_TYPE_DIRECT) {
        buildMsg(pubMsg, msg_p);
    } else {
        buildPersistentMsg(pubMsg, msg_p);
    }

    addPriorityAndHttpFields(pubMsg);

    const zorClient_returnCode_t rc = zorClient_session_sendMsg(session_mp, pubMsg);
    if (rc != ZORCLIENT_OK) {
        handleErrorWithException(rc);
    }
}

void Client::addStructuredContent(zorClient_opaqueMsg_pt pubMsg, std::size_t producerIndex,
                                  const SdmProperties& sdm) {
    const int sdmId = sdm.getSdmId();
    if (sdmId == PUBSUB_SDM_ID_NULL) {
        return;
    }
    // A structured message is built from nothing each time: what the last
    // one left on the reused message (containers, headers) must not leak
    // into this one. The description itself was parsed once, before the
    // run, and is only read here.
    resetMsg(producerIndex);
    if (sdmId >= PUBSUB_SDM_ID_USER_DEF_BASE) {
        if (SdmMessageBuilder::buildMsg(sdm, pubMsg) != 0) {
            throwClientError("Unable to build msg contents in SDM message type: " +
                             std::to_string(sdmId));
        }
    } else if (createStructuredMsg(sdmId, pubMsg) != 0) {
        throwClientError("Unable to set msg contents in SDM message type: " +
                         std::to_string(sdmId));
    }
}

void Client::addPartitionKey(zorClient_opaqueMsg_pt pubMsg, const MsgProperties* msg_p) {
    if (msg_p->getPartitionKey().empty()) {
        return;
    }
    zorClient_opaqueContainer_pt map = nullptr;
    zorClient_returnCode_t rc = ZORCLIENT_FAIL;
    // The tool data may have opened the map already: the key joins it.
    if (props_m.getWantUserPropToolData()) {
        rc = zorClient_msg_getUserPropertyMap(pubMsg, &map);
    }
    if (rc != ZORCLIENT_OK) {
        rc = zorClient_msg_createUserPropertyMap(pubMsg, &map, 100);
        if (rc != ZORCLIENT_OK) {
            logSetterFailure("zorClient_msg_createUserPropertyMap", rc);
            return;
        }
    }
    rc = zorClient_container_addString(map, msg_p->getPartitionKey().c_str(), "JMSXGroupID");
    if (rc != ZORCLIENT_OK) {
        logSetterFailure("zorClient_container_addString", rc);
    }
    rc = zorClient_container_closeMapStream(&map);
    if (rc != ZORCLIENT_OK) {
        logSetterFailure("zorClient_container_closeMapStream", rc);
    }
}

void Client::addPriorityAndHttpFields(zorClient_opaqueMsg_pt pubMsg) {
    const MessagePriorityGenerator* priorities_p = publishProps_m.getMessagePriorityGenerator();
    if (priorities_p != nullptr) {
        const int priority = priorities_p->getRandomPriority();
        if (zorClient_msg_setPriority(pubMsg, static_cast<zorClient_uint32_t>(priority)) ==
            ZORCLIENT_OK) {
            stats_m.incPubPriorityStat(priority, 1);
        } else {
            LOG_WARNING("Failed to set priority on message.");
        }
    }
    if (!publishProps_m.getHttpContentEncoding().empty() &&
        zorClient_msg_setHttpContentEncoding(
            pubMsg, publishProps_m.getHttpContentEncoding().c_str()) != ZORCLIENT_OK) {
        LOG_WARNING("Failed to set http content encoding on message.");
    }
    if (!publishProps_m.getHttpContentType().empty() &&
        zorClient_msg_setHttpContentType(pubMsg, publishProps_m.getHttpContentType().c_str()) !=
            ZORCLIENT_OK) {
        LOG_WARNING("Failed to set http content type on message.");
    }
}

void Client::publishSendMultipleImpl(std::vector<MsgProperties>& msgsVect, bool wantToolData,
                                     INT32 producerIndex) {
    const std::size_t index = checkedProducerIndex(producerIndex);
    MsgVector& msgs = psvMsgsList_m[index];
    const std::size_t count = sendVector_m.size();
    if (count > msgs.size()) {
        throwClientError("Send vector too large: " + std::to_string(count));
    }
    if (count > 0 && msgsVect.empty()) {
        throwClientError("No messages to send in call to sendMultiple");
    }
    const bool direct = publishProps_m.getMsgType() == PUBSUB_MSG_TYPE_DIRECT;
    std::array<zorClient_opaqueMsg_pt, PUB_SEND_VECTOR_MAX_SIZE> sendArray{};
    for (std::size_t i = 0; i < count; ++i) {
        zorClient_opaqueMsg_pt msg = msgs[i];
        if (msg == nullptr) {
            throwClientError(
                "Vectored sends were not prepared: the publish properties have no "
                "send vector");
        }
        const long long msgNum = sendVector_m[i];
        MsgProperties& props = msgsVect[static_cast<std::size_t>(msgNum - 1) % msgsVect.size()];
        if (wantToolData) {
            if (props_m.getWantUserPropToolData()) {
                setToolDataAsPropertiesImpl(&props, msg);
            } else {
                setToolDataAsAttachment(&props);
            }
        }
        if (direct) {
            buildMsg(msg, &props);
        } else {
            buildPersistentMsg(msg, &props);
        }
        sendArray[i] = msg;
    }
    if (count == 0) {
        return;
    }
    zorClient_uint32_t written = 0;
    const zorClient_returnCode_t rc = zorClient_session_sendMultipleMsg(
        session_mp, sendArray.data(), static_cast<zorClient_uint32_t>(count), &written);
    if (rc != ZORCLIENT_OK) {
        handleErrorWithException(rc);
    }
    if (written < count) {
        LOG_ERROR("CLIENT %s: Not able to send all messages in call to sendMultiple: %u",
                  clientIdStr_m.c_str(), static_cast<unsigned>(written));
        throwClientError("Not able to send all messages in call to sendMultiple: " +
                         std::to_string(written));
    }
}

}  // namespace zorvane::pubsub
