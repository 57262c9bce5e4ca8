// Message entry points not built yet (zorClient_msg_getStat is built: api/MsgStatApi.cpp).
#include "api/stubs/NotSupported.h"

using Msg = zorClient_opaqueMsg_pt;
using Container = zorClient_opaqueContainer_pt;

extern "C" {

ZC_NOT_SUPPORTED_RC(zorClient_msg_alloc, (zorClient_opaqueMsg_pt*))
ZC_NOT_SUPPORTED_RC(zorClient_msg_free, (zorClient_opaqueMsg_pt*))
ZC_NOT_SUPPORTED_RC(zorClient_msg_reset, (Msg))

// Callers print the buffer even after a failure, so it is left holding an empty text.
zorClient_returnCode_t zorClient_msg_dump(Msg, char* buffer_p, size_t bufferSize) {
    if (buffer_p != nullptr && bufferSize > 0) {
        buffer_p[0] = '\0';
    }
    return zorvane::zorclient::notSupported(__func__, ZORCLIENT_FAIL);
}

ZC_NOT_SUPPORTED_RC(zorClient_msg_setTopicPtr, (Msg, const char*))
ZC_NOT_SUPPORTED_RC(zorClient_msg_setQueueNamePtr, (Msg, const char*))
ZC_NOT_SUPPORTED_RC(zorClient_msg_setDestination, (Msg, const zorClient_destination_t*, size_t))
ZC_NOT_SUPPORTED_RC(zorClient_msg_getDestination, (Msg, zorClient_destination_t*, size_t))
ZC_NOT_SUPPORTED_RC(zorClient_msg_setDeliveryMode, (Msg, zorClient_uint32_t))
ZC_NOT_SUPPORTED_RC(zorClient_msg_getDeliveryMode, (Msg, zorClient_uint32_t*))
ZC_NOT_SUPPORTED_RC(zorClient_msg_setClassOfService, (Msg, zorClient_uint32_t))
ZC_NOT_SUPPORTED_RC(zorClient_msg_getClassOfService, (Msg, zorClient_uint32_t*))
ZC_NOT_SUPPORTED_RC(zorClient_msg_setDeliverToOne, (Msg, zorClient_bool_t))
ZC_NOT_SUPPORTED_RC(zorClient_msg_setDMQEligible, (Msg, zorClient_bool_t))
ZC_NOT_SUPPORTED_BOOL(zorClient_msg_isDMQEligible, (Msg))
ZC_NOT_SUPPORTED_RC(zorClient_msg_setTimeToLive, (Msg, zorClient_int64_t))
ZC_NOT_SUPPORTED_RC(zorClient_msg_getExpiration, (Msg, zorClient_uint64_t*))
ZC_NOT_SUPPORTED_RC(zorClient_msg_setElidingEligible, (Msg, zorClient_bool_t))
ZC_NOT_SUPPORTED_RC(zorClient_msg_setPriority, (Msg, zorClient_uint32_t))
ZC_NOT_SUPPORTED_RC(zorClient_msg_getPriority, (Msg, zorClient_int32_t*))
ZC_NOT_SUPPORTED_RC(zorClient_msg_setAckImmediately, (Msg, zorClient_bool_t))
ZC_NOT_SUPPORTED_BOOL(zorClient_msg_isAckImmediately, (Msg))
ZC_NOT_SUPPORTED_RC(zorClient_msg_setCorrelationTagPtr, (Msg, void*, zorClient_uint32_t))
ZC_NOT_SUPPORTED_RC(zorClient_msg_getCorrelationTagPtr, (Msg, void**, zorClient_uint32_t*))
ZC_NOT_SUPPORTED_RC(zorClient_msg_setCorrelationId, (Msg, const char*))
ZC_NOT_SUPPORTED_RC(zorClient_msg_getCorrelationId, (Msg, const char**))
ZC_NOT_SUPPORTED_RC(zorClient_msg_setApplicationMessageId, (Msg, const char*))
ZC_NOT_SUPPORTED_RC(zorClient_msg_getApplicationMessageId, (Msg, const char**))
ZC_NOT_SUPPORTED_RC(zorClient_msg_setApplicationMsgType, (Msg, const char*))
ZC_NOT_SUPPORTED_RC(zorClient_msg_getApplicationMsgType, (Msg, const char**))
ZC_NOT_SUPPORTED_RC(zorClient_msg_setSenderTimestamp, (Msg, zorClient_int64_t))
ZC_NOT_SUPPORTED_RC(zorClient_msg_getSenderTimestamp, (Msg, zorClient_int64_t*))
ZC_NOT_SUPPORTED_RC(zorClient_msg_deleteSenderTimestamp, (Msg))
ZC_NOT_SUPPORTED_RC(zorClient_msg_setSequenceNumber, (Msg, zorClient_int64_t))
ZC_NOT_SUPPORTED_RC(zorClient_msg_getSequenceNumber, (Msg, zorClient_int64_t*))
ZC_NOT_SUPPORTED_RC(zorClient_msg_setSenderId, (Msg, const char*))
ZC_NOT_SUPPORTED_RC(zorClient_msg_getSenderId, (Msg, const char**))
ZC_NOT_SUPPORTED_RC(_zorClient_msg_setTopicSequenceNumber, (Msg, zorClient_int64_t))
ZC_NOT_SUPPORTED_RC(zorClient_msg_getTopicSequenceNumber, (Msg, zorClient_int64_t*))
ZC_NOT_SUPPORTED_RC(zorClient_msg_setReplyTo, (Msg, const zorClient_destination_t*, size_t))
ZC_NOT_SUPPORTED_RC(zorClient_msg_getReplyTo, (Msg, zorClient_destination_t*, size_t))
ZC_NOT_SUPPORTED_RC(zorClient_msg_deleteReplyTo, (Msg))
ZC_NOT_SUPPORTED_RC(zorClient_msg_setAsReplyMsg, (Msg, zorClient_bool_t))
ZC_NOT_SUPPORTED_BOOL(zorClient_msg_isReplyMsg, (Msg))
ZC_NOT_SUPPORTED_RC(zorClient_msg_setHttpContentType, (Msg, const char*))
ZC_NOT_SUPPORTED_RC(zorClient_msg_setHttpContentEncoding, (Msg, const char*))
ZC_NOT_SUPPORTED_RC(zorClient_msg_getHttpContentType, (Msg, const char**))
ZC_NOT_SUPPORTED_RC(zorClient_msg_getHttpContentEncoding, (Msg, const char**))
ZC_NOT_SUPPORTED_RC(zorClient_msg_getMsgId, (Msg, zorClient_msgId_t*))
ZC_NOT_SUPPORTED_BOOL(zorClient_msg_isRedelivered, (Msg))
ZC_NOT_SUPPORTED_RC(zorClient_msg_getDeliveryCount, (Msg, zorClient_int32_t*))
ZC_NOT_SUPPORTED_BOOL(zorClient_msg_isDiscardIndication, (Msg))
ZC_NOT_SUPPORTED(zorClient_cacheStatus_t, ZORCLIENT_CACHE_INVALID_MESSAGE, zorClient_msg_isCacheMsg,
                 (Msg))
ZC_NOT_SUPPORTED_RC(zorClient_msg_getCacheRequestId, (Msg, zorClient_uint64_t*))
ZC_NOT_SUPPORTED_RC(zorClient_msg_getConsumerIdCount, (Msg, zorClient_uint32_t*))

// Readers loop until they see the end marker, so it is written even on failure.
zorClient_returnCode_t zorClient_msg_getConsumerId(Msg, zorClient_uint32_t,
                                                   zorClient_consumerId_t* id_p) {
    if (id_p != nullptr) {
        *id_p = ZORCLIENT_CONSUMER_ID_NONE;
    }
    return zorvane::zorclient::notSupported(__func__, ZORCLIENT_FAIL);
}

ZC_NOT_SUPPORTED_RC(zorClient_msg_getReplicationGroupMessageId,
                    (Msg, zorClient_replicationGroupMessageId_t*, size_t))

ZC_NOT_SUPPORTED_RC(zorClient_msg_setXmlPtr, (Msg, const void*, zorClient_uint32_t))
ZC_NOT_SUPPORTED_RC(zorClient_msg_setXml, (Msg, const void*, zorClient_uint32_t))
ZC_NOT_SUPPORTED_RC(zorClient_msg_getXmlPtr, (Msg, void**, zorClient_uint32_t*))
ZC_NOT_SUPPORTED_RC(zorClient_msg_setBinaryAttachmentPtr, (Msg, const void*, zorClient_uint32_t))
ZC_NOT_SUPPORTED_RC(zorClient_msg_setBinaryAttachment, (Msg, const void*, zorClient_uint32_t))
ZC_NOT_SUPPORTED_RC(zorClient_msg_getBinaryAttachmentPtr, (Msg, void**, zorClient_uint32_t*))
ZC_NOT_SUPPORTED_RC(zorClient_msg_setBinaryAttachmentString, (Msg, const char*))
ZC_NOT_SUPPORTED_RC(zorClient_msg_getBinaryAttachmentString, (Msg, const char**))
ZC_NOT_SUPPORTED_RC(zorClient_msg_createBinaryAttachmentMap, (Msg, Container*, zorClient_uint32_t))
ZC_NOT_SUPPORTED_RC(zorClient_msg_createBinaryAttachmentStream,
                    (Msg, Container*, zorClient_uint32_t))
ZC_NOT_SUPPORTED_RC(zorClient_msg_getBinaryAttachmentMap, (Msg, Container*))
ZC_NOT_SUPPORTED_RC(zorClient_msg_getBinaryAttachmentStream, (Msg, Container*))
ZC_NOT_SUPPORTED_RC(zorClient_msg_setBinaryAttachmentContainer, (Msg, Container))
ZC_NOT_SUPPORTED_RC(zorClient_msg_createUserPropertyMap, (Msg, Container*, zorClient_uint32_t))
ZC_NOT_SUPPORTED_RC(zorClient_msg_getUserPropertyMap, (Msg, Container*))
ZC_NOT_SUPPORTED_RC(zorClient_msg_setUserDataPtr, (Msg, const void*, zorClient_uint32_t))
ZC_NOT_SUPPORTED_RC(zorClient_msg_setUserData, (Msg, const void*, zorClient_uint32_t))
ZC_NOT_SUPPORTED_RC(zorClient_msg_getUserDataPtr, (Msg, void**, zorClient_uint32_t*))

}  // extern "C"
