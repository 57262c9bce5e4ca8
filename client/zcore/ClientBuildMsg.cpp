// Filling a reused library message from a message's properties. A failed
// setter of per-message content is logged and the building goes on: one
// odd message must not end a run.
#include <cstdlib>
#include <cstring>
#include <string>

#include "client/zcore/Client.h"
#include "common/Log.h"
#include "common/OS.h"

namespace zorvane::pubsub {

namespace {

// Logs a failed call of the library in the one form all of them share.
void check(zorClient_returnCode_t rc, const char* call) {
    if (rc != ZORCLIENT_OK) {
        LOG_ERROR("%s() did not return successfully; rc=\"%s\"", call,
                  zorClient_returnCodeToString(rc));
    }
}

zorClient_uint32_t sizeOf(const std::string& text) {
    return static_cast<zorClient_uint32_t>(text.size());
}

bool typeIs(const std::string& type, const char* lower, const char* capitalised,
            const char* upper) {
    return type == lower || type == capitalised || type == upper;
}

}  // namespace

void Client::buildMsg(zorClient_opaqueMsg_pt msgPtr, MsgProperties* msg_p) {
    // Pointer setters: the library reads the property strings when the
    // message is sent, so nothing is copied here.
    if (msg_p->getMsgObjType() != PUBSUB_MSG_OBJ_TYPE_NONE) {
        addMessageObjectType(msgPtr, msg_p);
    }
    const std::string& body = msg_p->getMsgBody();
    if (!body.empty()) {
        check(zorClient_msg_setXmlPtr(msgPtr, body.data(), sizeOf(body)),
              "zorClient_msg_setXmlPtr");
    }
    const std::string& attachment = msg_p->getAttachment();
    if (!attachment.empty()) {
        check(zorClient_msg_setBinaryAttachmentPtr(msgPtr, attachment.data(), sizeOf(attachment)),
              "zorClient_msg_setBinaryAttachmentPtr");
    }
    if (!msg_p->getTopic().empty()) {
        check(zorClient_msg_setTopicPtr(msgPtr, msg_p->getTopic().c_str()),
              "zorClient_msg_setTopicPtr");
    } else if (!msg_p->getQueue().empty()) {
        check(zorClient_msg_setQueueNamePtr(msgPtr, msg_p->getQueue().c_str()),
              "zorClient_msg_setQueueNamePtr");
    }
    const std::string& userData = msg_p->getUserdata();
    if (!userData.empty()) {
        check(zorClient_msg_setUserDataPtr(msgPtr, userData.data(), sizeOf(userData)),
              "zorClient_msg_setUserDataPtr");
    }
    addReplyTo(msgPtr, msg_p);
    addCustomProperties(msgPtr);
    addCorrelationTag(msgPtr, msg_p);
}

void Client::buildPersistentMsg(zorClient_opaqueMsg_pt msgPtr, MsgProperties* msg_p) {
    if (msg_p->getMsgObjType() != PUBSUB_MSG_OBJ_TYPE_NONE) {
        addMessageObjectType(msgPtr, msg_p);
    }
    const zorClient_uint32_t mode = publishProps_m.getMsgType() == PUBSUB_MSG_TYPE_PERSISTENT
                                        ? ZORCLIENT_DELIVERY_MODE_PERSISTENT
                                        : ZORCLIENT_DELIVERY_MODE_NONPERSISTENT;
    check(zorClient_msg_setDeliveryMode(msgPtr, mode), "zorClient_msg_setDeliveryMode");
    const std::string& body = msg_p->getMsgBody();
    if (!body.empty()) {
        check(zorClient_msg_setXml(msgPtr, body.data(), sizeOf(body)), "zorClient_msg_setXml");
    }
    const std::string& attachment = msg_p->getAttachment();
    if (!attachment.empty()) {
        check(zorClient_msg_setBinaryAttachment(msgPtr, attachment.data(), sizeOf(attachment)),
              "zorClient_msg_setBinaryAttachment");
    }
    // Like the direct path, a message with neither topic nor queue gets no
    // destination.
    zorClient_destination_t destination{};
    if (!msg_p->getTopic().empty()) {
        destination.destType = ZORCLIENT_TOPIC_DESTINATION;
        destination.dest = msg_p->getTopic().c_str();
    } else if (!msg_p->getQueue().empty()) {
        destination.destType = ZORCLIENT_QUEUE_DESTINATION;
        destination.dest = msg_p->getQueue().c_str();
    }
    if (destination.dest != nullptr) {
        check(zorClient_msg_setDestination(msgPtr, &destination, sizeof destination),
              "zorClient_msg_setDestination");
    }
    const std::string& userData = msg_p->getUserdata();
    if (!userData.empty()) {
        check(zorClient_msg_setUserData(msgPtr, userData.data(), sizeOf(userData)),
              "zorClient_msg_setUserData");
    }
    addReplyTo(msgPtr, msg_p);
    check(zorClient_msg_setAckImmediately(msgPtr, msg_p->getAckImmediately() ? 1 : 0),
          "zorClient_msg_setAckImmediately");
    addCustomProperties(msgPtr);
    addCorrelationTag(msgPtr, msg_p);
}

bool Client::replyToTopic(const MsgProperties* msg_p, char* buffer, std::size_t size) {
    const std::string& postfix = props_m.getReplyToPostfix();
    if (postfix.empty()) {
        const zorClient_returnCode_t rc = zorClient_session_getProperty(
            session_mp, "SESSION_REPLY_TO_DEFAULT_DEST", buffer, size);
        if (rc != ZORCLIENT_OK) {
            handleErrorWithException(rc);
        }
        return true;
    }
    // A message to a queue has no topic: its reply-to is the postfix alone.
    const std::string& topic = msg_p->getTopic();
    if (topic.size() + postfix.size() + 1 > size) {
        LOG_ERROR(
            "CLIENT %s: Reply-to topic of %zu characters does not fit %zu bytes; no reply-to "
            "set",
            clientIdStr_m.c_str(), topic.size() + postfix.size(), size);
        return false;
    }
    std::memcpy(buffer, topic.data(), topic.size());
    std::memcpy(buffer + topic.size(), postfix.data(), postfix.size());
    buffer[topic.size() + postfix.size()] = '\0';
    return true;
}

void Client::addReplyTo(zorClient_opaqueMsg_pt msgPtr, const MsgProperties* msg_p) {
    if (!props_m.getWantReplyTo()) {
        return;
    }
    // On the stack: each publisher thread builds its own messages.
    char p2pBuf[ZORCLIENT_REPLY_TO_MAX_SIZE];
    if (!replyToTopic(msg_p, p2pBuf, sizeof p2pBuf)) {
        return;
    }
    zorClient_destination_t replyDest{};
    replyDest.destType = ZORCLIENT_TOPIC_DESTINATION;
    replyDest.dest = p2pBuf;
    check(zorClient_msg_setReplyTo(msgPtr, &replyDest, sizeof replyDest),
          "zorClient_msg_setReplyTo");
}

void Client::addCorrelationTag(zorClient_opaqueMsg_pt msgPtr, MsgProperties* msg_p) {
    const UINT64 msgId = msg_p->getToolData()->getMsgId();
    if (msgId == 0 || publishProps_m.getMsgType() == PUBSUB_MSG_TYPE_DIRECT) {
        return;
    }
    // The pointer carries the id itself (length 0): it comes back with the
    // message's acknowledgement.
    check(zorClient_msg_setCorrelationTagPtr(msgPtr,
                                             OS::stashTruncatedUint64ValueIntoPointer(msgId), 0),
          "zorClient_msg_setCorrelationTagPtr");
}

void Client::addMessageObjectType(zorClient_opaqueMsg_pt msgPtr, MsgProperties* msg_p) {
    // A typed body replaces whatever the message carried, user properties
    // (and tool data in them) included; the run's constant fields go back.
    zorClient_msg_reset(msgPtr);
    preLoadMsg(msgPtr);
    const char* letter = "x";
    switch (msg_p->getMsgObjType()) {
        case PUBSUB_MSG_OBJ_TYPE_BYTES:
            check(zorClient_msg_setBinaryAttachment(msgPtr, "123", 3),
                  "zorClient_msg_setBinaryAttachment");
            letter = "b";
            break;
        case PUBSUB_MSG_OBJ_TYPE_TEXT:
            check(zorClient_msg_setBinaryAttachmentString(msgPtr, "TEXT_MESSAGE"),
                  "zorClient_msg_setBinaryAttachmentString");
            letter = "t";
            break;
        case PUBSUB_MSG_OBJ_TYPE_STREAM: {
            zorClient_opaqueContainer_pt stream = nullptr;
            const zorClient_returnCode_t rc =
                zorClient_msg_createBinaryAttachmentStream(msgPtr, &stream, 0);
            check(rc, "zorClient_msg_createBinaryAttachmentStream");
            if (rc == ZORCLIENT_OK) {
                check(zorClient_container_addString(stream, "STREAM_MESSAGE", nullptr),
                      "zorClient_container_addString");
                check(zorClient_container_closeMapStream(&stream),
                      "zorClient_container_closeMapStream");
            }
            letter = "s";
            break;
        }
        case PUBSUB_MSG_OBJ_TYPE_MAP: {
            zorClient_opaqueContainer_pt map = nullptr;
            const zorClient_returnCode_t rc =
                zorClient_msg_createBinaryAttachmentMap(msgPtr, &map, 0);
            check(rc, "zorClient_msg_createBinaryAttachmentMap");
            if (rc == ZORCLIENT_OK) {
                check(zorClient_container_addString(map, "MESSAGE", "MAP"),
                      "zorClient_container_addString");
                check(zorClient_container_closeMapStream(&map),
                      "zorClient_container_closeMapStream");
            }
            letter = "m";
            break;
        }
        default:
            LOG_ERROR(
                "Client::addMessageObjectType() did not return successfully; could not detect "
                "bytes/text/stream/map.");
            break;
    }
    check(zorClient_msg_setApplicationMsgType(msgPtr, letter),
          "zorClient_msg_setApplicationMsgType");
}

void Client::addCustomProperties(zorClient_opaqueMsg_pt msgPtr) {
    const std::vector<std::string>& list = publishProps_m.getCustomPropertiesList();
    LOG_DEBUG("Custom props list size: %zu", list.size());
    LOG_DEBUG("Publish properties: %s", publishProps_m.toString().c_str());
    if (list.empty()) {
        return;
    }
    zorClient_opaqueContainer_pt map = nullptr;
    zorClient_returnCode_t rc = zorClient_msg_getUserPropertyMap(msgPtr, &map);
    if (rc == ZORCLIENT_NOT_FOUND) {
        rc = zorClient_msg_createUserPropertyMap(msgPtr, &map, 10240);
        if (rc != ZORCLIENT_OK) {
            check(rc, "zorClient_msg_createUserPropertyMap");
            return;
        }
    } else if (rc != ZORCLIENT_OK) {
        check(rc, "zorClient_msg_getUserPropertyMap");
        return;
    }

    // Triples of type, name and value; a trailing incomplete one is ignored.
    for (std::size_t i = 0; i + 2 < list.size(); i += 3) {
        const std::string& type = list[i];
        const char* name = list[i + 1].c_str();
        const std::string& value = list[i + 2];
        LOG_DEBUG("Adding user property: type=\"%s\", name=\"%s\", value=\"%s\"", type.c_str(),
                  name, value.c_str());
        // A property already on the map (from an earlier message through the
        // same library message) keeps its first value: only a name the
        // getter does not find is added.
        auto absent = [](zorClient_returnCode_t getRc) {
            return getRc != ZORCLIENT_OK && getRc != ZORCLIENT_FAIL;
        };
        if (typeIs(type, "boolean", "Boolean", "BOOLEAN")) {
            zorClient_bool_t current = 0;
            if (absent(zorClient_container_getBoolean(map, &current, name))) {
                const bool flag = value == "true" || value == "TRUE" || value == "1";
                check(zorClient_container_addBoolean(map, flag ? 1 : 0, name),
                      "zorClient_container_addBoolean");
            }
        } else if (typeIs(type, "string", "String", "STRING")) {
            char current[2];
            if (absent(zorClient_container_getString(map, current, sizeof current, name))) {
                check(zorClient_container_addString(map, value.c_str(), name),
                      "zorClient_container_addString");
            }
        } else if (typeIs(type, "short", "Short", "SHORT")) {
            zorClient_int8_t current = 0;
            if (absent(zorClient_container_getInt8(map, &current, name))) {
                // Stored in 8 bits, as the peers that read it expect.
                const auto number =
                    static_cast<zorClient_int8_t>(std::strtol(value.c_str(), nullptr, 10));
                check(zorClient_container_addInt8(map, number, name),
                      "zorClient_container_addInt8");
            }
        } else if (typeIs(type, "int", "Int", "INT")) {
            zorClient_int32_t current = 0;
            if (absent(zorClient_container_getInt32(map, &current, name))) {
                const auto number =
                    static_cast<zorClient_int32_t>(std::strtol(value.c_str(), nullptr, 10));
                check(zorClient_container_addInt32(map, number, name),
                      "zorClient_container_addInt32");
            }
        } else if (typeIs(type, "long", "Long", "LONG")) {
            zorClient_int64_t current = 0;
            if (absent(zorClient_container_getInt64(map, &current, name))) {
                const auto number =
                    static_cast<zorClient_int64_t>(std::strtoll(value.c_str(), nullptr, 10));
                check(zorClient_container_addInt64(map, number, name),
                      "zorClient_container_addInt64");
            }
        } else if (typeIs(type, "float", "Float", "FLOAT")) {
            float current = 0;
            if (absent(zorClient_container_getFloat(map, &current, name))) {
                const auto number = static_cast<float>(std::strtod(value.c_str(), nullptr));
                check(zorClient_container_addFloat(map, number, name),
                      "zorClient_container_addFloat");
            }
        } else {
            LOG_ERROR("Unknown type for user property: %s", type.c_str());
        }
    }
    check(zorClient_container_closeMapStream(&map), "zorClient_container_closeMapStream");
}

}  // namespace zorvane::pubsub
