// Message entry points: what a delivery adds to a received message (message id, redelivery,
// discard indication, cache status, consumer ids, replication group message id). On messages
// the application built these read as "none".
#include "api/LastError.h"
#include "api/MessageHandles.h"

using namespace zorvane::zorclient;

namespace {
using Msg = zorClient_opaqueMsg_pt;
}  // namespace

extern "C" {

zorClient_returnCode_t zorClient_msg_getMsgId(Msg msg, zorClient_msgId_t* msgId_p) {
    if (msgId_p == nullptr) {
        return LastError::failNullArgument(__func__, "msgId_p");
    }
    return withMessage(msg, __func__, [&](Message& m) {
        if (!m.delivery().hasMsgId) {
            return LastError::failWithResult(ZORCLIENT_NOT_FOUND, ZORCLIENT_SUBCODE_OK,
                                             "%s: the message was not delivered as a guaranteed "
                                             "message, so it has no message id",
                                             __func__);
        }
        *msgId_p = m.delivery().msgId;
        return ZORCLIENT_OK;
    });
}

zorClient_bool_t zorClient_msg_isRedelivered(Msg msg) {
    const Message* m = messageOf(msg, __func__);
    return m != nullptr && m->delivery().redelivered ? 1 : 0;
}

zorClient_returnCode_t zorClient_msg_getDeliveryCount(Msg msg, zorClient_int32_t* count_p) {
    if (count_p == nullptr) {
        return LastError::failNullArgument(__func__, "count_p");
    }
    return withMessage(msg, __func__, [&](Message& m) {
        if (!m.delivery().delivered) {
            return LastError::failWithResult(ZORCLIENT_NOT_FOUND, ZORCLIENT_SUBCODE_OK,
                                             "%s: the message was not received, so it has no "
                                             "delivery count",
                                             __func__);
        }
        *count_p = m.delivery().deliveryCount;
        return ZORCLIENT_OK;
    });
}

zorClient_bool_t zorClient_msg_isDiscardIndication(Msg msg) {
    const Message* m = messageOf(msg, __func__);
    return m != nullptr && m->delivery().discardIndication ? 1 : 0;
}

zorClient_cacheStatus_t zorClient_msg_isCacheMsg(Msg msg) {
    const Message* m = messageOf(msg, __func__);
    return m != nullptr ? m->delivery().cacheStatus : ZORCLIENT_CACHE_INVALID_MESSAGE;
}

zorClient_returnCode_t zorClient_msg_getCacheRequestId(Msg msg, zorClient_uint64_t* requestId_p) {
    if (requestId_p == nullptr) {
        return LastError::failNullArgument(__func__, "requestId_p");
    }
    return withMessage(msg, __func__, [&](Message& m) {
        if (m.delivery().cacheStatus != ZORCLIENT_CACHE_MESSAGE &&
            m.delivery().cacheStatus != ZORCLIENT_CACHE_SUSPECT_MESSAGE) {
            return LastError::failWithResult(ZORCLIENT_NOT_FOUND, ZORCLIENT_SUBCODE_OK,
                                             "%s: the message is live, not from a cache", __func__);
        }
        *requestId_p = m.delivery().cacheRequestId;
        return ZORCLIENT_OK;
    });
}

zorClient_returnCode_t zorClient_msg_getConsumerIdCount(Msg msg, zorClient_uint32_t* count_p) {
    if (count_p == nullptr) {
        return LastError::failNullArgument(__func__, "count_p");
    }
    return withMessage(msg, __func__, [&](Message& m) {
        *count_p = m.consumerIdCount();
        return ZORCLIENT_OK;
    });
}

zorClient_returnCode_t zorClient_msg_getConsumerId(Msg msg, zorClient_uint32_t index,
                                                   zorClient_consumerId_t* id_p) {
    if (id_p == nullptr) {
        return LastError::failNullArgument(__func__, "id_p");
    }
    // Readers loop until they see the end marker, so it is written whatever happens.
    *id_p = ZORCLIENT_CONSUMER_ID_NONE;
    return withMessage(msg, __func__, [&](Message& m) {
        if (index >= m.consumerIdCount()) {
            return LastError::failWithResult(ZORCLIENT_NOT_FOUND, ZORCLIENT_SUBCODE_OK,
                                             "%s: the message has %u consumer ids, none at "
                                             "index %u",
                                             __func__, m.consumerIdCount(), index);
        }
        *id_p = m.consumerId(index);
        return ZORCLIENT_OK;
    });
}

zorClient_returnCode_t zorClient_msg_getReplicationGroupMessageId(
    Msg msg, zorClient_replicationGroupMessageId_t* id_p, size_t idSize) {
    if (id_p == nullptr) {
        return LastError::failNullArgument(__func__, "id_p");
    }
    if (idSize < sizeof(zorClient_replicationGroupMessageId_t)) {
        return LastError::fail(ZORCLIENT_SUBCODE_INSUFFICIENT_SPACE,
                               "%s: idSize %zu is less than %zu", __func__, idSize,
                               sizeof(zorClient_replicationGroupMessageId_t));
    }
    return withMessage(msg, __func__, [&](Message& m) {
        if (!m.delivery().hasReplicationGroupMessageId) {
            return LastError::failWithResult(ZORCLIENT_NOT_FOUND, ZORCLIENT_SUBCODE_OK,
                                             "%s: the message was not delivered from a message "
                                             "spool, so it has no replication group message id",
                                             __func__);
        }
        *id_p = m.delivery().replicationGroupMessageId;
        return ZORCLIENT_OK;
    });
}

}  // extern "C"
