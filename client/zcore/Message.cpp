// The header and part accessors of a received message.
#include "client/zcore/Message.h"

#include <cstring>

#include "common/Log.h"
#include "common/PerfStats.h"

namespace zorvane::pubsub {

Message::Message(std::string clientId, zorClient_opaqueMsg_pt msg)
    : AbstractMessage(std::move(clientId)), msg_mp(msg) {}

std::string Message::getMsgId() {
    zorClient_msgId_t id = 0;
    if (zorClient_msg_getMsgId(msg_mp, &id) != ZORCLIENT_OK) {
        return std::string();
    }
    return std::to_string(id);
}

std::string Message::getUserData() {
    void* data_p = nullptr;
    zorClient_uint32_t size = 0;
    if (zorClient_msg_getUserDataPtr(msg_mp, &data_p, &size) != ZORCLIENT_OK || data_p == nullptr ||
        size < 1 || size > MAX_USER_DATA_TEXT) {
        return std::string();
    }
    // Text up to the first zero byte, as a sender that wrote a C string
    // meant it.
    const char* text = static_cast<const char*>(data_p);
    return std::string(text, strnlen(text, size));
}

INT32 Message::getPriority() {
    zorClient_int32_t priority = -1;
    if (zorClient_msg_getPriority(msg_mp, &priority) != ZORCLIENT_OK) {
        LOG_ERROR("Failed to retrieve priority from message.");
        return -1;
    }
    return priority;
}

std::vector<unsigned int> Message::getCids() {
    std::vector<unsigned int> cids;
    zorClient_consumerId_t id = 0;
    // The library writes ZORCLIENT_CONSUMER_ID_NONE behind the last id and on
    // any failure, which ends the walk.
    for (zorClient_uint32_t index = 0;; ++index) {
        id = ZORCLIENT_CONSUMER_ID_NONE;
        zorClient_msg_getConsumerId(msg_mp, index, &id);
        if (id == ZORCLIENT_CONSUMER_ID_NONE) {
            break;
        }
        cids.push_back(id);
    }
    return cids;
}

void Message::fullMsgUpdateStats(PerfStats* perfStats_p) {
    void* data_p = nullptr;
    zorClient_uint32_t size = 0;
    if (zorClient_msg_getXmlPtr(msg_mp, &data_p, &size) == ZORCLIENT_OK) {
        perfStats_p->incStat(PerfStats::NUM_MSGS_W_XML_PAYLOAD);
    }
    if (zorClient_msg_getBinaryAttachmentPtr(msg_mp, &data_p, &size) == ZORCLIENT_OK) {
        perfStats_p->incStat(PerfStats::NUM_MSGS_W_BIN_ATTACH);
    }
    if (zorClient_msg_getUserDataPtr(msg_mp, &data_p, &size) == ZORCLIENT_OK) {
        perfStats_p->incStat(PerfStats::NUM_MSGS_W_USERDATA);
    }
    zorClient_uint32_t count = 0;
    if (zorClient_msg_getConsumerIdCount(msg_mp, &count) == ZORCLIENT_OK && count > 0) {
        perfStats_p->incStat(PerfStats::NUM_MSGS_W_CID);
    }
    zorClient_destination_t destination{};
    if (zorClient_msg_getDestination(msg_mp, &destination, sizeof destination) == ZORCLIENT_OK) {
        perfStats_p->incStat(PerfStats::NUM_MSGS_W_TOPIC);
    }
}

Message::Bounds Message::payloadBounds() const {
    void* data_p = nullptr;
    zorClient_uint32_t size = 0;
    if (zorClient_msg_getXmlPtr(msg_mp, &data_p, &size) != ZORCLIENT_OK || data_p == nullptr) {
        return Bounds{};
    }
    const char* begin = static_cast<const char*>(data_p);
    return Bounds{begin, begin + size};
}

Message::Bounds Message::attachBounds() const {
    void* data_p = nullptr;
    zorClient_uint32_t size = 0;
    if (zorClient_msg_getBinaryAttachmentPtr(msg_mp, &data_p, &size) != ZORCLIENT_OK ||
        data_p == nullptr) {
        return Bounds{};
    }
    const char* begin = static_cast<const char*>(data_p);
    return Bounds{begin, begin + size};
}

const char* Message::getPayloadBegin() {
    return payloadBounds().begin_m;
}

const char* Message::getPayloadEnd() {
    return payloadBounds().end_m;
}

const char* Message::getAttachBegin() {
    return attachBounds().begin_m;
}

const char* Message::getAttachEnd() {
    return attachBounds().end_m;
}

bool Message::isRedelivered() {
    if (msg_mp == nullptr) {
        LOG_ERROR("CLIENT %s: currentMsgGetRedelivered called on null message",
                  clientIdStr_m.c_str());
        return false;
    }
    return zorClient_msg_isRedelivered(msg_mp) != 0;
}

bool Message::isCacheMsg() {
    if (msg_mp == nullptr) {
        LOG_ERROR("CLIENT %s: currentMsgIsCacheMsg called on null message", clientIdStr_m.c_str());
        return false;
    }
    const zorClient_cacheStatus_t status = zorClient_msg_isCacheMsg(msg_mp);
    if (status != ZORCLIENT_CACHE_MESSAGE && status != ZORCLIENT_CACHE_SUSPECT_MESSAGE) {
        return false;
    }
    zorClient_uint64_t requestId = 0;
    zorClient_msg_getCacheRequestId(msg_mp, &requestId);
    LOG_DEBUG("CLIENT %s: currentMsgIsCacheMsg cached msg recv, request ID: %llu",
              clientIdStr_m.c_str(), static_cast<unsigned long long>(requestId));
    return true;
}

bool Message::isSuspectMsg() {
    if (msg_mp == nullptr) {
        LOG_ERROR("CLIENT %s: currentMsgIsSuspectMsg called on null message",
                  clientIdStr_m.c_str());
        return false;
    }
    return zorClient_msg_isCacheMsg(msg_mp) == ZORCLIENT_CACHE_SUSPECT_MESSAGE;
}

bool Message::hasDiscardIndication() {
    if (msg_mp == nullptr) {
        LOG_ERROR("CLIENT %s: currentMsgDiscardIndication called on null message",
                  clientIdStr_m.c_str());
        return false;
    }
    return zorClient_msg_isDiscardIndication(msg_mp) != 0;
}

INT64 Message::getTopicSequence() {
    zorClient_int64_t sequence = 0;
    if (msg_mp == nullptr) {
        LOG_ERROR("CLIENT %s: currentMsgGetTopicSequence called on null message",
                  clientIdStr_m.c_str());
        return 0;
    }
    zorClient_msg_getTopicSequenceNumber(msg_mp, &sequence);
    return sequence;
}

}  // namespace zorvane::pubsub
