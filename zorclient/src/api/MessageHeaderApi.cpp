// Message entry points: destination, reply-to and the header fields a send carries.
#include <cstring>

#include "api/LastError.h"
#include "api/MessageHandles.h"
#include "api/RecordArgs.h"

using namespace zorvane::zorclient;

namespace {

using Msg = zorClient_opaqueMsg_pt;

std::uint32_t lengthOf(const char* text_p) {
    const std::size_t length = std::strlen(text_p);
    if (length >= DataBlockPools::MAX_BLOCK_SIZE) {
        throw std::bad_alloc();
    }
    return static_cast<std::uint32_t>(length);
}

zorClient_returnCode_t setText(Msg msg, PartId id, const char* text_p, const char* function_p,
                               const char* argName_p) {
    if (text_p == nullptr) {
        return LastError::failNullArgument(function_p, argName_p);
    }
    return withMessage(msg, function_p, [&](Message& m) {
        m.part(id).setCopy(text_p, lengthOf(text_p), true);
        return ZORCLIENT_OK;
    });
}

// ZORCLIENT_NOT_FOUND (and a null text) when the field is absent; "" when it is set empty.
zorClient_returnCode_t getText(Msg msg, PartId id, const char** text_p, const char* function_p,
                               const char* fieldName_p) {
    if (text_p == nullptr) {
        return LastError::failNullArgument(function_p, "the result pointer");
    }
    *text_p = nullptr;
    return withMessage(msg, function_p, [&](Message& m) {
        const Part& part = m.part(id);
        if (!part.present()) {
            return LastError::failWithResult(ZORCLIENT_NOT_FOUND, ZORCLIENT_SUBCODE_OK,
                                             "%s: the message has no %s", function_p, fieldName_p);
        }
        *text_p = part.text();
        return ZORCLIENT_OK;
    });
}

zorClient_returnCode_t checkDestination(const zorClient_destination_t* dest_p, size_t destSize,
                                        const char* function_p, const char* argName_p) {
    const zorClient_returnCode_t rc =
        checkRecord(dest_p, argName_p, destSize, "destSize", "zorClient_destination_t", function_p);
    if (rc != ZORCLIENT_OK) {
        return rc;
    }
    if (dest_p->destType < ZORCLIENT_TOPIC_DESTINATION ||
        dest_p->destType > ZORCLIENT_QUEUE_TEMP_DESTINATION) {
        return LastError::fail(ZORCLIENT_SUBCODE_PARAM_OUT_OF_RANGE,
                               "%s: destination type %d is not a topic or queue type", function_p,
                               static_cast<int>(dest_p->destType));
    }
    if (dest_p->dest == nullptr) {
        return LastError::fail(ZORCLIENT_SUBCODE_PARAM_NULL_PTR, "%s: %s->dest is null", function_p,
                               argName_p);
    }
    if (dest_p->dest[0] == '\0') {
        return LastError::fail(ZORCLIENT_SUBCODE_PARAM_OUT_OF_RANGE,
                               "%s: the destination name is empty", function_p);
    }
    return ZORCLIENT_OK;
}

zorClient_returnCode_t getDestinationPart(Msg msg, PartId id, zorClient_destination_t* dest_p,
                                          size_t destSize, const char* function_p,
                                          const char* fieldName_p) {
    const zorClient_returnCode_t rc =
        checkRecord(dest_p, "the destination pointer", destSize, "destSize",
                    "zorClient_destination_t", function_p);
    if (rc != ZORCLIENT_OK) {
        return rc;
    }
    return withMessage(msg, function_p, [&](Message& m) {
        const Part& part = m.part(id);
        if (!part.present()) {
            dest_p->destType = ZORCLIENT_NULL_DESTINATION;
            dest_p->dest = "";
            return LastError::failWithResult(ZORCLIENT_NOT_FOUND, ZORCLIENT_SUBCODE_OK,
                                             "%s: the message has no %s", function_p, fieldName_p);
        }
        dest_p->destType =
            id == PartId::DESTINATION ? m.header().destinationType : m.header().replyToType;
        dest_p->dest = part.text();
        return ZORCLIENT_OK;
    });
}

// Sets a flag of the carried header.
template <typename Field>
zorClient_returnCode_t setFlag(Msg msg, const char* function_p, Field field,
                               zorClient_bool_t value) {
    return withMessage(msg, function_p, [&](Message& m) {
        m.header().*field = value != 0;
        return ZORCLIENT_OK;
    });
}

// Reads a flag; 0 also when the handle is bad (error info set).
template <typename Field>
zorClient_bool_t readFlag(Msg msg, const char* function_p, Field field) {
    const Message* m = messageOf(msg, function_p);
    return m != nullptr && m->header().*field ? 1 : 0;
}

}  // namespace

extern "C" {

// ---- Destination and reply-to ----------------------------------------------------------

zorClient_returnCode_t zorClient_msg_setTopicPtr(Msg msg, const char* topic_p) {
    if (topic_p == nullptr) {
        return LastError::failNullArgument(__func__, "topic_p");
    }
    return withMessage(msg, __func__, [&](Message& m) {
        m.part(PartId::DESTINATION).setView(topic_p, lengthOf(topic_p), PartStorage::CALLER);
        m.setDestinationType(ZORCLIENT_TOPIC_DESTINATION);
        return ZORCLIENT_OK;
    });
}

zorClient_returnCode_t zorClient_msg_setQueueNamePtr(Msg msg, const char* queueName_p) {
    if (queueName_p == nullptr) {
        return LastError::failNullArgument(__func__, "queueName_p");
    }
    return withMessage(msg, __func__, [&](Message& m) {
        m.part(PartId::DESTINATION)
            .setView(queueName_p, lengthOf(queueName_p), PartStorage::CALLER);
        m.setDestinationType(ZORCLIENT_QUEUE_DESTINATION);
        return ZORCLIENT_OK;
    });
}

zorClient_returnCode_t zorClient_msg_setDestination(Msg msg,
                                                    const zorClient_destination_t* destination_p,
                                                    size_t destSize) {
    zorClient_returnCode_t rc =
        checkDestination(destination_p, destSize, __func__, "destination_p");
    if (rc != ZORCLIENT_OK) {
        return rc;
    }
    return withMessage(msg, __func__, [&](Message& m) {
        m.part(PartId::DESTINATION)
            .setCopy(destination_p->dest, lengthOf(destination_p->dest), true);
        m.setDestinationType(destination_p->destType);
        return ZORCLIENT_OK;
    });
}

zorClient_returnCode_t zorClient_msg_getDestination(Msg msg, zorClient_destination_t* destination_p,
                                                    size_t destSize) {
    return getDestinationPart(msg, PartId::DESTINATION, destination_p, destSize, __func__,
                              "destination");
}

zorClient_returnCode_t zorClient_msg_setReplyTo(Msg msg, const zorClient_destination_t* replyTo_p,
                                                size_t destSize) {
    zorClient_returnCode_t rc = checkDestination(replyTo_p, destSize, __func__, "replyTo_p");
    if (rc != ZORCLIENT_OK) {
        return rc;
    }
    return withMessage(msg, __func__, [&](Message& m) {
        m.part(PartId::REPLY_TO).setCopy(replyTo_p->dest, lengthOf(replyTo_p->dest), true);
        m.header().replyToType = replyTo_p->destType;
        return ZORCLIENT_OK;
    });
}

zorClient_returnCode_t zorClient_msg_getReplyTo(Msg msg, zorClient_destination_t* replyTo_p,
                                                size_t destSize) {
    return getDestinationPart(msg, PartId::REPLY_TO, replyTo_p, destSize, __func__,
                              "reply-to destination");
}

zorClient_returnCode_t zorClient_msg_deleteReplyTo(Msg msg) {
    return withMessage(msg, __func__, [&](Message& m) {
        m.part(PartId::REPLY_TO).clear();
        m.header().replyToType = ZORCLIENT_NULL_DESTINATION;
        return ZORCLIENT_OK;
    });
}

zorClient_returnCode_t zorClient_msg_setAsReplyMsg(Msg msg, zorClient_bool_t isReply) {
    return setFlag(msg, __func__, &CarriedHeader::isReply, isReply);
}

zorClient_bool_t zorClient_msg_isReplyMsg(Msg msg) {
    return readFlag(msg, __func__, &CarriedHeader::isReply);
}

// ---- Delivery ----------------------------------------------------------------------------

zorClient_returnCode_t zorClient_msg_setDeliveryMode(Msg msg, zorClient_uint32_t mode) {
    if (mode != ZORCLIENT_DELIVERY_MODE_DIRECT && mode != ZORCLIENT_DELIVERY_MODE_PERSISTENT &&
        mode != ZORCLIENT_DELIVERY_MODE_NONPERSISTENT) {
        return LastError::fail(ZORCLIENT_SUBCODE_PARAM_OUT_OF_RANGE,
                               "%s: delivery mode 0x%x is not 0x%x (direct), 0x%x (persistent) "
                               "or 0x%x (non-persistent)",
                               __func__, mode, ZORCLIENT_DELIVERY_MODE_DIRECT,
                               ZORCLIENT_DELIVERY_MODE_PERSISTENT,
                               ZORCLIENT_DELIVERY_MODE_NONPERSISTENT);
    }
    return withMessage(msg, __func__, [&](Message& m) {
        m.header().deliveryMode = mode;
        return ZORCLIENT_OK;
    });
}

zorClient_returnCode_t zorClient_msg_getDeliveryMode(Msg msg, zorClient_uint32_t* mode_p) {
    if (mode_p == nullptr) {
        return LastError::failNullArgument(__func__, "mode_p");
    }
    return withMessage(msg, __func__, [&](Message& m) {
        switch (m.header().deliveryMode) {
            case ZORCLIENT_DELIVERY_MODE_PERSISTENT:
                *mode_p = ZORCLIENT_RX_DELIVERY_MODE_PERSISTENT;
                break;
            case ZORCLIENT_DELIVERY_MODE_NONPERSISTENT:
                *mode_p = ZORCLIENT_RX_DELIVERY_MODE_NON_PERSISTENT;
                break;
            default:
                *mode_p = ZORCLIENT_RX_DELIVERY_MODE_DIRECT;
                break;
        }
        return ZORCLIENT_OK;
    });
}

zorClient_returnCode_t zorClient_msg_setClassOfService(Msg msg, zorClient_uint32_t cos) {
    if (cos > ZORCLIENT_COS_3) {
        return LastError::fail(ZORCLIENT_SUBCODE_PARAM_OUT_OF_RANGE,
                               "%s: class of service %u is not 0, 1 or 2", __func__, cos);
    }
    return withMessage(msg, __func__, [&](Message& m) {
        m.header().classOfService = cos;
        return ZORCLIENT_OK;
    });
}

zorClient_returnCode_t zorClient_msg_getClassOfService(Msg msg, zorClient_uint32_t* cos_p) {
    if (cos_p == nullptr) {
        return LastError::failNullArgument(__func__, "cos_p");
    }
    return withMessage(msg, __func__, [&](Message& m) {
        *cos_p = m.header().classOfService;
        return ZORCLIENT_OK;
    });
}

zorClient_returnCode_t zorClient_msg_setDeliverToOne(Msg msg, zorClient_bool_t value) {
    return setFlag(msg, __func__, &CarriedHeader::deliverToOne, value);
}

zorClient_returnCode_t zorClient_msg_setDMQEligible(Msg msg, zorClient_bool_t value) {
    return setFlag(msg, __func__, &CarriedHeader::dmqEligible, value);
}

zorClient_bool_t zorClient_msg_isDMQEligible(Msg msg) {
    return readFlag(msg, __func__, &CarriedHeader::dmqEligible);
}

zorClient_returnCode_t zorClient_msg_setTimeToLive(Msg msg, zorClient_int64_t ttlMs) {
    if (ttlMs < 0) {
        return LastError::fail(ZORCLIENT_SUBCODE_PARAM_OUT_OF_RANGE,
                               "%s: time to live %lld ms is negative", __func__,
                               static_cast<long long>(ttlMs));
    }
    return withMessage(msg, __func__, [&](Message& m) {
        m.header().timeToLiveMs = ttlMs;
        return ZORCLIENT_OK;
    });
}

zorClient_returnCode_t zorClient_msg_getExpiration(Msg msg, zorClient_uint64_t* expiration_p) {
    if (expiration_p == nullptr) {
        return LastError::failNullArgument(__func__, "expiration_p");
    }
    return withMessage(msg, __func__, [&](Message& m) {
        // Fixed when the message is sent; a message being built has none yet.
        *expiration_p = m.delivery().expirationMs;
        return ZORCLIENT_OK;
    });
}

zorClient_returnCode_t zorClient_msg_setElidingEligible(Msg msg, zorClient_bool_t value) {
    return setFlag(msg, __func__, &CarriedHeader::elidingEligible, value);
}

zorClient_returnCode_t zorClient_msg_setPriority(Msg msg, zorClient_uint32_t priority) {
    if (priority > 255) {
        return LastError::fail(ZORCLIENT_SUBCODE_PARAM_OUT_OF_RANGE,
                               "%s: priority %u is not 0..255", __func__, priority);
    }
    return withMessage(msg, __func__, [&](Message& m) {
        m.header().priority = static_cast<zorClient_int32_t>(priority);
        return ZORCLIENT_OK;
    });
}

zorClient_returnCode_t zorClient_msg_getPriority(Msg msg, zorClient_int32_t* priority_p) {
    if (priority_p == nullptr) {
        return LastError::failNullArgument(__func__, "priority_p");
    }
    return withMessage(msg, __func__, [&](Message& m) {
        *priority_p = m.header().priority;
        return ZORCLIENT_OK;
    });
}

zorClient_returnCode_t zorClient_msg_setAckImmediately(Msg msg, zorClient_bool_t value) {
    return setFlag(msg, __func__, &CarriedHeader::ackImmediately, value);
}

zorClient_bool_t zorClient_msg_isAckImmediately(Msg msg) {
    return readFlag(msg, __func__, &CarriedHeader::ackImmediately);
}

// ---- Correlation ---------------------------------------------------------------------------

zorClient_returnCode_t zorClient_msg_setCorrelationTagPtr(Msg msg, void* tag_p,
                                                          zorClient_uint32_t size) {
    return withMessage(msg, __func__, [&](Message& m) {
        m.setCorrelationTag(tag_p, size);
        return ZORCLIENT_OK;
    });
}

zorClient_returnCode_t zorClient_msg_getCorrelationTagPtr(Msg msg, void** tag_p,
                                                          zorClient_uint32_t* size_p) {
    if (tag_p == nullptr || size_p == nullptr) {
        return LastError::failNullArgument(__func__, tag_p == nullptr ? "tag_p" : "size_p");
    }
    *tag_p = nullptr;
    *size_p = 0;
    return withMessage(msg, __func__, [&](Message& m) {
        if (!m.hasCorrelationTag()) {
            return LastError::failWithResult(ZORCLIENT_NOT_FOUND, ZORCLIENT_SUBCODE_OK,
                                             "%s: the message has no correlation tag", __func__);
        }
        *tag_p = m.correlationTag();
        *size_p = m.correlationTagSize();
        return ZORCLIENT_OK;
    });
}

zorClient_returnCode_t zorClient_msg_setCorrelationId(Msg msg, const char* correlationId_p) {
    return setText(msg, PartId::CORRELATION_ID, correlationId_p, __func__, "correlationId_p");
}

zorClient_returnCode_t zorClient_msg_getCorrelationId(Msg msg, const char** correlationId_p) {
    return getText(msg, PartId::CORRELATION_ID, correlationId_p, __func__, "correlation id");
}

// ---- Application fields ----------------------------------------------------------------------

zorClient_returnCode_t zorClient_msg_setApplicationMessageId(Msg msg, const char* messageId_p) {
    return setText(msg, PartId::APP_MESSAGE_ID, messageId_p, __func__, "messageId_p");
}

zorClient_returnCode_t zorClient_msg_getApplicationMessageId(Msg msg, const char** messageId_p) {
    return getText(msg, PartId::APP_MESSAGE_ID, messageId_p, __func__, "application message id");
}

zorClient_returnCode_t zorClient_msg_setApplicationMsgType(Msg msg, const char* msgType_p) {
    return setText(msg, PartId::APP_MSG_TYPE, msgType_p, __func__, "msgType_p");
}

zorClient_returnCode_t zorClient_msg_getApplicationMsgType(Msg msg, const char** msgType_p) {
    return getText(msg, PartId::APP_MSG_TYPE, msgType_p, __func__, "application message type");
}

zorClient_returnCode_t zorClient_msg_setSenderId(Msg msg, const char* senderId_p) {
    return setText(msg, PartId::SENDER_ID, senderId_p, __func__, "senderId_p");
}

zorClient_returnCode_t zorClient_msg_getSenderId(Msg msg, const char** senderId_p) {
    return getText(msg, PartId::SENDER_ID, senderId_p, __func__, "sender id");
}

zorClient_returnCode_t zorClient_msg_setHttpContentType(Msg msg, const char* type_p) {
    return setText(msg, PartId::HTTP_CONTENT_TYPE, type_p, __func__, "type_p");
}

zorClient_returnCode_t zorClient_msg_setHttpContentEncoding(Msg msg, const char* encoding_p) {
    return setText(msg, PartId::HTTP_CONTENT_ENCODING, encoding_p, __func__, "encoding_p");
}

zorClient_returnCode_t zorClient_msg_getHttpContentType(Msg msg, const char** type_p) {
    return getText(msg, PartId::HTTP_CONTENT_TYPE, type_p, __func__, "HTTP content type");
}

zorClient_returnCode_t zorClient_msg_getHttpContentEncoding(Msg msg, const char** encoding_p) {
    return getText(msg, PartId::HTTP_CONTENT_ENCODING, encoding_p, __func__,
                   "HTTP content encoding");
}

zorClient_returnCode_t zorClient_msg_setSenderTimestamp(Msg msg, zorClient_int64_t timestamp) {
    return withMessage(msg, __func__, [&](Message& m) {
        m.header().hasSenderTimestamp = true;
        m.header().senderTimestamp = timestamp;
        return ZORCLIENT_OK;
    });
}

zorClient_returnCode_t zorClient_msg_getSenderTimestamp(Msg msg, zorClient_int64_t* timestamp_p) {
    if (timestamp_p == nullptr) {
        return LastError::failNullArgument(__func__, "timestamp_p");
    }
    return withMessage(msg, __func__, [&](Message& m) {
        if (!m.header().hasSenderTimestamp) {
            return LastError::failWithResult(ZORCLIENT_NOT_FOUND, ZORCLIENT_SUBCODE_OK,
                                             "%s: the message has no sender timestamp", __func__);
        }
        *timestamp_p = m.header().senderTimestamp;
        return ZORCLIENT_OK;
    });
}

zorClient_returnCode_t zorClient_msg_deleteSenderTimestamp(Msg msg) {
    return withMessage(msg, __func__, [&](Message& m) {
        m.header().hasSenderTimestamp = false;
        m.header().senderTimestamp = 0;
        return ZORCLIENT_OK;
    });
}

zorClient_returnCode_t zorClient_msg_setSequenceNumber(Msg msg, zorClient_int64_t seqNum) {
    return withMessage(msg, __func__, [&](Message& m) {
        m.header().hasSequenceNumber = true;
        m.header().sequenceNumber = seqNum;
        return ZORCLIENT_OK;
    });
}

zorClient_returnCode_t zorClient_msg_getSequenceNumber(Msg msg, zorClient_int64_t* seqNum_p) {
    if (seqNum_p == nullptr) {
        return LastError::failNullArgument(__func__, "seqNum_p");
    }
    return withMessage(msg, __func__, [&](Message& m) {
        if (!m.header().hasSequenceNumber) {
            return LastError::failWithResult(ZORCLIENT_NOT_FOUND, ZORCLIENT_SUBCODE_OK,
                                             "%s: the message has no sequence number", __func__);
        }
        *seqNum_p = m.header().sequenceNumber;
        return ZORCLIENT_OK;
    });
}

zorClient_returnCode_t _zorClient_msg_setTopicSequenceNumber(Msg msg, zorClient_int64_t seqNum) {
    if (seqNum < 0) {
        return LastError::fail(ZORCLIENT_SUBCODE_PARAM_OUT_OF_RANGE,
                               "%s: topic sequence number %lld is negative", __func__,
                               static_cast<long long>(seqNum));
    }
    return withMessage(msg, __func__, [&](Message& m) {
        m.header().senderTopicSequenceNumber = seqNum;
        if (m.delivery().delivered) {
            m.delivery().topicSequenceNumber = seqNum;
        }
        return ZORCLIENT_OK;
    });
}

zorClient_returnCode_t zorClient_msg_getTopicSequenceNumber(Msg msg, zorClient_int64_t* seqNum_p) {
    if (seqNum_p == nullptr) {
        return LastError::failNullArgument(__func__, "seqNum_p");
    }
    *seqNum_p = 0;
    return withMessage(msg, __func__, [&](Message& m) {
        const zorClient_int64_t value = m.delivery().delivered
                                            ? m.delivery().topicSequenceNumber
                                            : m.header().senderTopicSequenceNumber;
        if (value == 0) {
            return LastError::failWithResult(ZORCLIENT_NOT_FOUND, ZORCLIENT_SUBCODE_OK,
                                             "%s: the message has no topic sequence number",
                                             __func__);
        }
        *seqNum_p = value;
        return ZORCLIENT_OK;
    });
}

}  // extern "C"
