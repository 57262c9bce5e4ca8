/*
 * zorClientMsg.h: the public C interface of libzorclient.so.1, part two: messages, containers
 * (maps and streams) and replication group message ids. The rules of zorClient.h hold here too.
 *
 * A message is used by one thread at a time. Pointer setters ("...Ptr") keep the caller's
 * pointer until the message is sent (the send copies); other setters copy at once. Pointers that
 * getters hand out point into the message and live until it is changed, reset or freed.
 * Containers obtained from a message belong to it: close them when done; freeing the message
 * releases any still open.
 */
#ifndef ZORCLIENT_MSG_H
#define ZORCLIENT_MSG_H

#include "zorClient.h"

#ifdef __cplusplus
extern "C" {
#endif

/* ---------------------------------------------------------------------------------------------
 * Types and constants
 * ------------------------------------------------------------------------------------------- */

/* Delivery modes given to zorClient_msg_setDeliveryMode. */
#define ZORCLIENT_DELIVERY_MODE_DIRECT 0x00u
#define ZORCLIENT_DELIVERY_MODE_PERSISTENT 0x10u
#define ZORCLIENT_DELIVERY_MODE_NONPERSISTENT 0x20u

/* Delivery modes read by zorClient_msg_getDeliveryMode. */
#define ZORCLIENT_RX_DELIVERY_MODE_DIRECT 0u
#define ZORCLIENT_RX_DELIVERY_MODE_PERSISTENT 1u
#define ZORCLIENT_RX_DELIVERY_MODE_NON_PERSISTENT 2u

/* Classes of service. */
#define ZORCLIENT_COS_1 0u
#define ZORCLIENT_COS_2 1u
#define ZORCLIENT_COS_3 2u

/* Message priority when none was set. */
#define ZORCLIENT_PRIORITY_NONE (-1)

/* At most this many bytes of user data per message. */
#define ZORCLIENT_USER_DATA_MAX_SIZE 36u

/* Written by zorClient_msg_getConsumerId behind the last consumer id. */
typedef zorClient_uint32_t zorClient_consumerId_t;
#define ZORCLIENT_CONSUMER_ID_NONE 0xFFFFFFFFu

/* Whether a received message came from a cache. */
typedef enum zorClient_cacheStatus ZORCLIENT_ENUM_BASE {
    ZORCLIENT_CACHE_INVALID_MESSAGE = -1,
    ZORCLIENT_CACHE_LIVE_MESSAGE = 0,
    ZORCLIENT_CACHE_MESSAGE = 1,
    ZORCLIENT_CACHE_SUSPECT_MESSAGE = 2
} zorClient_cacheStatus_t;

/* Message pool statistics (zorClient_msg_getStat). They count only what the application can
 * see: messages it allocated or was given, containers, and the data blocks behind them. */
typedef enum zorClient_msg_stats ZORCLIENT_ENUM_BASE {
    ZORCLIENT_MSG_STATS_TOTAL_MEMORY = 0, /* bytes held by the pools */
    ZORCLIENT_MSG_STATS_ALLOC_MEMORY = 1, /* bytes in use by the application */
    ZORCLIENT_MSG_STATS_MSG_ALLOCS = 2,   /* messages allocated so far */
    ZORCLIENT_MSG_STATS_MSG_FREES = 3,    /* messages freed so far */
    ZORCLIENT_MSG_STATS_MSG_DUPS = 4,     /* messages duplicated so far */
    ZORCLIENT_MSG_STATS_MSG_REALLOCS = 5, /* message parts replaced by larger ones so far */
    ZORCLIENT_MSG_STATS_FREE_MSGS = 6,    /* messages on the free list */
    ZORCLIENT_MSG_STATS_ALLOC_MSGS = 7,   /* messages the application holds now */
    ZORCLIENT_MSG_STATS_FREE_CONTAINERS = 8,
    ZORCLIENT_MSG_STATS_ALLOC_CONTAINERS = 9,
    ZORCLIENT_MSG_STATS_FREE_DATA_BLOCKS = 10,  /* per pool 0..4 */
    ZORCLIENT_MSG_STATS_ALLOC_DATA_BLOCKS = 11, /* per pool 0..5 */
    ZORCLIENT_MSG_STATS_NUM_STATS = 12          /* the number of message pool statistics */
} zorClient_msg_stats_t;

/* Data block pools: one per quantum ("GLOBAL_DBQUANTA_SIZE_0".."_4"), and one for larger blocks
 * that has no free list. */
#define ZORCLIENT_MSG_NUM_DBQUANTA 5
#define ZORCLIENT_MSG_NUM_DATA_BLOCK_POOLS 6

/* A replication group message id: 16 opaque bytes, ordered within one message spool. */
#define ZORCLIENT_REPLICATION_GROUP_MESSAGE_ID_SIZE 16
/* Bytes its text form needs, with the NUL. */
#define ZORCLIENT_REPLICATION_GROUP_MESSAGE_ID_STRING_LENGTH 46

typedef struct zorClient_replicationGroupMessageId {
    zorClient_uint8_t bytes[ZORCLIENT_REPLICATION_GROUP_MESSAGE_ID_SIZE];
} zorClient_replicationGroupMessageId, zorClient_replicationGroupMessageId_t,
    *zorClient_replicationGroupMessageId_pt;

/* =============================================================================================
 * Message: life, pool, dump
 * =========================================================================================== */

/* Allocates an empty message (no fields, delivery mode direct) into *msg_p. Owned by the caller
 * until zorClient_msg_free. Counted in the pool statistics. Any thread. */
ZORCLIENT_API zorClient_returnCode_t zorClient_msg_alloc(zorClient_opaqueMsg_pt* msg_p);

/* Frees a message the application allocated or took from a receive callback
 * (ZORCLIENT_CALLBACK_TAKE_MSG), with its containers, and sets *msg_p to null. May run on any
 * thread, also after the flow or session that delivered it is gone. */
ZORCLIENT_API zorClient_returnCode_t zorClient_msg_free(zorClient_opaqueMsg_pt* msg_p);

/* Clears every part of the message (headers, payloads, containers, correlation tag; delivery
 * mode back to direct); the message stays allocated. */
ZORCLIENT_API zorClient_returnCode_t zorClient_msg_reset(zorClient_opaqueMsg_pt msg);

/* Allocates into *newMsg_p an independent copy of msg: every header field and part (the bytes
 * of pointer parts are copied), the contents of its maps and streams (not their open handles),
 * the correlation tag and, for a received message, what its delivery added. Owned by the caller
 * until zorClient_msg_free; counted in ZORCLIENT_MSG_STATS_MSG_DUPS. Any thread. */
ZORCLIENT_API zorClient_returnCode_t zorClient_msg_dup(zorClient_opaqueMsg_pt msg,
                                                       zorClient_opaqueMsg_pt* newMsg_p);

/* Writes a readable text of the whole message (one header per line, then the payloads in hex
 * and ASCII) into buffer_p of bufferSize bytes, NUL-terminated. A text that does not fit fills
 * the buffer (bufferSize - 1 characters) and still returns ZORCLIENT_OK. */
ZORCLIENT_API zorClient_returnCode_t zorClient_msg_dump(zorClient_opaqueMsg_pt msg, char* buffer_p,
                                                        size_t bufferSize);

/* Reads message pool statistic stat of pool poolIndex into *value_p. poolIndex is 0 for all
 * statistics but the data block ones: 0..4 for FREE_DATA_BLOCKS, 0..5 for ALLOC_DATA_BLOCKS.
 * Another index or statistic fails with ZORCLIENT_SUBCODE_PARAM_OUT_OF_RANGE. Any thread; works
 * before zorClient_initialize. */
ZORCLIENT_API zorClient_returnCode_t zorClient_msg_getStat(zorClient_msg_stats_t stat,
                                                           zorClient_uint32_t poolIndex,
                                                           zorClient_uint64_t* value_p);

/* =============================================================================================
 * Message: destination, delivery, header fields
 * =========================================================================================== */

/* Destination = topic topic_p, by pointer (valid until the send returns). */
ZORCLIENT_API zorClient_returnCode_t zorClient_msg_setTopicPtr(zorClient_opaqueMsg_pt msg,
                                                               const char* topic_p);

/* Destination = queue queueName_p, by pointer (valid until the send returns). */
ZORCLIENT_API zorClient_returnCode_t zorClient_msg_setQueueNamePtr(zorClient_opaqueMsg_pt msg,
                                                                   const char* queueName_p);

/* Destination = *destination_p, copied; destSize = sizeof(zorClient_destination_t). */
ZORCLIENT_API zorClient_returnCode_t zorClient_msg_setDestination(
    zorClient_opaqueMsg_pt msg, const zorClient_destination_t* destination_p, size_t destSize);

/* Reads the destination into *destination_p (destSize = its sizeof). Received destinations read
 * as ZORCLIENT_TOPIC_DESTINATION or ZORCLIENT_QUEUE_DESTINATION. ZORCLIENT_NOT_FOUND if none. */
ZORCLIENT_API zorClient_returnCode_t zorClient_msg_getDestination(
    zorClient_opaqueMsg_pt msg, zorClient_destination_t* destination_p, size_t destSize);

/* Delivery mode: ZORCLIENT_DELIVERY_MODE_DIRECT (default), _PERSISTENT or _NONPERSISTENT. */
ZORCLIENT_API zorClient_returnCode_t zorClient_msg_setDeliveryMode(zorClient_opaqueMsg_pt msg,
                                                                   zorClient_uint32_t mode);

/* Reads the delivery mode as ZORCLIENT_RX_DELIVERY_MODE_DIRECT (0), _PERSISTENT (1) or
 * _NON_PERSISTENT (2). */
ZORCLIENT_API zorClient_returnCode_t zorClient_msg_getDeliveryMode(zorClient_opaqueMsg_pt msg,
                                                                   zorClient_uint32_t* mode_p);

/* Class of service ZORCLIENT_COS_1..3 (0..2). */
ZORCLIENT_API zorClient_returnCode_t zorClient_msg_setClassOfService(zorClient_opaqueMsg_pt msg,
                                                                     zorClient_uint32_t cos);
ZORCLIENT_API zorClient_returnCode_t zorClient_msg_getClassOfService(zorClient_opaqueMsg_pt msg,
                                                                     zorClient_uint32_t* cos_p);

/* Deliver-to-one: of the matching direct subscribers one receives the message (plus those that
 * subscribed with RX_ALL_DELIVER_TO_ONE). */
ZORCLIENT_API zorClient_returnCode_t zorClient_msg_setDeliverToOne(zorClient_opaqueMsg_pt msg,
                                                                   zorClient_bool_t value);

/* Dead message queue eligible: an expired or too often redelivered guaranteed message goes to
 * "#DEAD_MSG_QUEUE" instead of being dropped. */
ZORCLIENT_API zorClient_returnCode_t zorClient_msg_setDMQEligible(zorClient_opaqueMsg_pt msg,
                                                                  zorClient_bool_t value);
/* 1 when the message is dead message queue eligible; 0 otherwise or on failure. */
ZORCLIENT_API zorClient_bool_t zorClient_msg_isDMQEligible(zorClient_opaqueMsg_pt msg);

/* Time to live in ms (0 allowed: none); endpoints that respect TTL expire it. */
ZORCLIENT_API zorClient_returnCode_t zorClient_msg_setTimeToLive(zorClient_opaqueMsg_pt msg,
                                                                 zorClient_int64_t ttlMs);
/* Reads the expiration time (ms since the epoch; 0 when none). */
ZORCLIENT_API zorClient_returnCode_t zorClient_msg_getExpiration(zorClient_opaqueMsg_pt msg,
                                                                 zorClient_uint64_t* expiration_p);

/* Eliding eligible: carried. */
ZORCLIENT_API zorClient_returnCode_t zorClient_msg_setElidingEligible(zorClient_opaqueMsg_pt msg,
                                                                      zorClient_bool_t value);

/* Priority 0..255. */
ZORCLIENT_API zorClient_returnCode_t zorClient_msg_setPriority(zorClient_opaqueMsg_pt msg,
                                                               zorClient_uint32_t priority);
/* Reads the priority; ZORCLIENT_OK with ZORCLIENT_PRIORITY_NONE (-1) when none was set. */
ZORCLIENT_API zorClient_returnCode_t zorClient_msg_getPriority(zorClient_opaqueMsg_pt msg,
                                                               zorClient_int32_t* priority_p);

/* Ack immediately: the broker acknowledges this message without batching. */
ZORCLIENT_API zorClient_returnCode_t zorClient_msg_setAckImmediately(zorClient_opaqueMsg_pt msg,
                                                                     zorClient_bool_t value);
/* 1 when ack-immediately is set; 0 otherwise or on failure. */
ZORCLIENT_API zorClient_bool_t zorClient_msg_isAckImmediately(zorClient_opaqueMsg_pt msg);

/* Correlation tag: local only, never sent. The pointer value itself (size 0: no memory behind
 * it) comes back as correlation_p of the message's ACKNOWLEDGEMENT or REJECTED_MSG_ERROR event.
 * Captured at send time, so the message may be reused at once. */
ZORCLIENT_API zorClient_returnCode_t zorClient_msg_setCorrelationTagPtr(zorClient_opaqueMsg_pt msg,
                                                                        void* tag_p,
                                                                        zorClient_uint32_t size);
/* Reads the correlation tag; ZORCLIENT_NOT_FOUND when none (always on received messages). */
ZORCLIENT_API zorClient_returnCode_t zorClient_msg_getCorrelationTagPtr(zorClient_opaqueMsg_pt msg,
                                                                        void** tag_p,
                                                                        zorClient_uint32_t* size_p);

/* Correlation id, copied and carried; "" is a present, empty id. */
ZORCLIENT_API zorClient_returnCode_t zorClient_msg_setCorrelationId(zorClient_opaqueMsg_pt msg,
                                                                    const char* correlationId_p);
/* Reads the correlation id into *correlationId_p; ZORCLIENT_NOT_FOUND when absent. */
ZORCLIENT_API zorClient_returnCode_t zorClient_msg_getCorrelationId(zorClient_opaqueMsg_pt msg,
                                                                    const char** correlationId_p);

/* Application message id, copied and carried; "" is present and empty. */
ZORCLIENT_API zorClient_returnCode_t
zorClient_msg_setApplicationMessageId(zorClient_opaqueMsg_pt msg, const char* messageId_p);
/* Reads it; ZORCLIENT_NOT_FOUND when absent. */
ZORCLIENT_API zorClient_returnCode_t
zorClient_msg_getApplicationMessageId(zorClient_opaqueMsg_pt msg, const char** messageId_p);

/* Application message type, copied and carried; "" is present and empty. */
ZORCLIENT_API zorClient_returnCode_t zorClient_msg_setApplicationMsgType(zorClient_opaqueMsg_pt msg,
                                                                         const char* msgType_p);
/* Reads it; ZORCLIENT_NOT_FOUND when absent. */
ZORCLIENT_API zorClient_returnCode_t zorClient_msg_getApplicationMsgType(zorClient_opaqueMsg_pt msg,
                                                                         const char** msgType_p);

/* Sender timestamp in ms since the epoch, carried unchanged; the library never sets one. */
ZORCLIENT_API zorClient_returnCode_t zorClient_msg_setSenderTimestamp(zorClient_opaqueMsg_pt msg,
                                                                      zorClient_int64_t timestamp);
/* Reads it; ZORCLIENT_NOT_FOUND when absent. */
ZORCLIENT_API zorClient_returnCode_t
zorClient_msg_getSenderTimestamp(zorClient_opaqueMsg_pt msg, zorClient_int64_t* timestamp_p);
/* Removes the sender timestamp. */
ZORCLIENT_API zorClient_returnCode_t
zorClient_msg_deleteSenderTimestamp(zorClient_opaqueMsg_pt msg);

/* Application sequence number, carried unchanged. */
ZORCLIENT_API zorClient_returnCode_t zorClient_msg_setSequenceNumber(zorClient_opaqueMsg_pt msg,
                                                                     zorClient_int64_t seqNum);
/* Reads it; ZORCLIENT_NOT_FOUND when absent. */
ZORCLIENT_API zorClient_returnCode_t zorClient_msg_getSequenceNumber(zorClient_opaqueMsg_pt msg,
                                                                     zorClient_int64_t* seqNum_p);

/* Sender id, copied and carried; "" is present and empty. */
ZORCLIENT_API zorClient_returnCode_t zorClient_msg_setSenderId(zorClient_opaqueMsg_pt msg,
                                                               const char* senderId_p);
/* Reads it; ZORCLIENT_NOT_FOUND when absent. */
ZORCLIENT_API zorClient_returnCode_t zorClient_msg_getSenderId(zorClient_opaqueMsg_pt msg,
                                                               const char** senderId_p);

/* Sets the topic sequence number; a sender-set number arrives unchanged instead of the
 * broker's. */
ZORCLIENT_API zorClient_returnCode_t
_zorClient_msg_setTopicSequenceNumber(zorClient_opaqueMsg_pt msg, zorClient_int64_t seqNum);
/* Reads the topic sequence number: consecutive per topic from 1, assigned by the broker; 0 when
 * none. */
ZORCLIENT_API zorClient_returnCode_t
zorClient_msg_getTopicSequenceNumber(zorClient_opaqueMsg_pt msg, zorClient_int64_t* seqNum_p);

/* Reply-to destination, copied; destSize = sizeof(zorClient_destination_t). */
ZORCLIENT_API zorClient_returnCode_t zorClient_msg_setReplyTo(
    zorClient_opaqueMsg_pt msg, const zorClient_destination_t* replyTo_p, size_t destSize);
/* Reads the reply-to destination; ZORCLIENT_NOT_FOUND when absent. */
ZORCLIENT_API zorClient_returnCode_t zorClient_msg_getReplyTo(zorClient_opaqueMsg_pt msg,
                                                              zorClient_destination_t* replyTo_p,
                                                              size_t destSize);
/* Removes the reply-to destination. */
ZORCLIENT_API zorClient_returnCode_t zorClient_msg_deleteReplyTo(zorClient_opaqueMsg_pt msg);

/* Marks the message as a reply; sent to a requester's inbox it completes its sendRequest. */
ZORCLIENT_API zorClient_returnCode_t zorClient_msg_setAsReplyMsg(zorClient_opaqueMsg_pt msg,
                                                                 zorClient_bool_t isReply);
/* 1 when the message is a reply; 0 otherwise or on failure. */
ZORCLIENT_API zorClient_bool_t zorClient_msg_isReplyMsg(zorClient_opaqueMsg_pt msg);

/* HTTP content type and encoding, copied and carried. */
ZORCLIENT_API zorClient_returnCode_t zorClient_msg_setHttpContentType(zorClient_opaqueMsg_pt msg,
                                                                      const char* type_p);
ZORCLIENT_API zorClient_returnCode_t
zorClient_msg_setHttpContentEncoding(zorClient_opaqueMsg_pt msg, const char* encoding_p);
/* Read them; ZORCLIENT_NOT_FOUND when absent. */
ZORCLIENT_API zorClient_returnCode_t zorClient_msg_getHttpContentType(zorClient_opaqueMsg_pt msg,
                                                                      const char** type_p);
ZORCLIENT_API zorClient_returnCode_t
zorClient_msg_getHttpContentEncoding(zorClient_opaqueMsg_pt msg, const char** encoding_p);

/* Reads the id of a received guaranteed message, the key for zorClient_flow_sendAck and
 * zorClient_flow_settleMsg; ZORCLIENT_NOT_FOUND for a direct message. */
ZORCLIENT_API zorClient_returnCode_t zorClient_msg_getMsgId(zorClient_opaqueMsg_pt msg,
                                                            zorClient_msgId_t* msgId_p);

/* 1 when the message was delivered before (unacknowledged at unbind, failed settlement,
 * rollback); 0 otherwise or on failure. */
ZORCLIENT_API zorClient_bool_t zorClient_msg_isRedelivered(zorClient_opaqueMsg_pt msg);

/* Reads how often the message was delivered, 1 on the first delivery. */
ZORCLIENT_API zorClient_returnCode_t zorClient_msg_getDeliveryCount(zorClient_opaqueMsg_pt msg,
                                                                    zorClient_int32_t* count_p);

/* 1 on the first message delivered after messages for the same receiver were discarded; 0
 * otherwise or on failure. */
ZORCLIENT_API zorClient_bool_t zorClient_msg_isDiscardIndication(zorClient_opaqueMsg_pt msg);

/* Whether the message came from a cache: ZORCLIENT_CACHE_LIVE_MESSAGE, _MESSAGE or
 * _SUSPECT_MESSAGE; ZORCLIENT_CACHE_INVALID_MESSAGE on failure. */
ZORCLIENT_API zorClient_cacheStatus_t zorClient_msg_isCacheMsg(zorClient_opaqueMsg_pt msg);

/* Reads the request id of a cache message; ZORCLIENT_NOT_FOUND for a live message. */
ZORCLIENT_API zorClient_returnCode_t
zorClient_msg_getCacheRequestId(zorClient_opaqueMsg_pt msg, zorClient_uint64_t* requestId_p);

/* Reads how many consumer ids the message carries: the 1-based numbers, in subscription order,
 * of the receiving session's subscriptions that matched it. */
ZORCLIENT_API zorClient_returnCode_t zorClient_msg_getConsumerIdCount(zorClient_opaqueMsg_pt msg,
                                                                      zorClient_uint32_t* count_p);

/* Reads consumer id number index (from 0) into *id_p. Past the last one, and on any failure,
 * *id_p is ZORCLIENT_CONSUMER_ID_NONE (0xFFFFFFFF) and the result ZORCLIENT_NOT_FOUND or
 * ZORCLIENT_FAIL. */
ZORCLIENT_API zorClient_returnCode_t zorClient_msg_getConsumerId(zorClient_opaqueMsg_pt msg,
                                                                 zorClient_uint32_t index,
                                                                 zorClient_consumerId_t* id_p);

/* Reads the replication group message id of a guaranteed message (idSize = its sizeof); fails
 * for direct messages. */
ZORCLIENT_API zorClient_returnCode_t zorClient_msg_getReplicationGroupMessageId(
    zorClient_opaqueMsg_pt msg, zorClient_replicationGroupMessageId_t* id_p, size_t idSize);

/* =============================================================================================
 * Message: payload parts and message containers
 * =========================================================================================== */

/* Body by pointer (valid until the send returns) or copied; size in bytes. */
ZORCLIENT_API zorClient_returnCode_t zorClient_msg_setXmlPtr(zorClient_opaqueMsg_pt msg,
                                                             const void* data_p,
                                                             zorClient_uint32_t size);
ZORCLIENT_API zorClient_returnCode_t zorClient_msg_setXml(zorClient_opaqueMsg_pt msg,
                                                          const void* data_p,
                                                          zorClient_uint32_t size);
/* Reads the body; ZORCLIENT_NOT_FOUND (null, 0) when there is none. */
ZORCLIENT_API zorClient_returnCode_t zorClient_msg_getXmlPtr(zorClient_opaqueMsg_pt msg,
                                                             void** data_p,
                                                             zorClient_uint32_t* size_p);

/* Binary attachment by pointer (valid until the send returns) or copied; replaces any earlier
 * attachment, a structured one too. */
ZORCLIENT_API zorClient_returnCode_t zorClient_msg_setBinaryAttachmentPtr(
    zorClient_opaqueMsg_pt msg, const void* data_p, zorClient_uint32_t size);
ZORCLIENT_API zorClient_returnCode_t zorClient_msg_setBinaryAttachment(zorClient_opaqueMsg_pt msg,
                                                                       const void* data_p,
                                                                       zorClient_uint32_t size);
/* Reads the attachment's bytes (for a structured attachment, its encoding); ZORCLIENT_NOT_FOUND
 * when there is none. */
ZORCLIENT_API zorClient_returnCode_t zorClient_msg_getBinaryAttachmentPtr(
    zorClient_opaqueMsg_pt msg, void** data_p, zorClient_uint32_t* size_p);

/* Attachment = a structured string, copied. */
ZORCLIENT_API zorClient_returnCode_t
zorClient_msg_setBinaryAttachmentString(zorClient_opaqueMsg_pt msg, const char* string_p);
/* Reads a structured string attachment; fails when the attachment is not one. */
ZORCLIENT_API zorClient_returnCode_t
zorClient_msg_getBinaryAttachmentString(zorClient_opaqueMsg_pt msg, const char** string_p);

/* Attachment = a new, empty map or stream, open for adding into *container_p; sizeHint (bytes,
 * 0 for a default) only sizes the first allocation. */
ZORCLIENT_API zorClient_returnCode_t zorClient_msg_createBinaryAttachmentMap(
    zorClient_opaqueMsg_pt msg, zorClient_opaqueContainer_pt* map_p, zorClient_uint32_t sizeHint);
ZORCLIENT_API zorClient_returnCode_t zorClient_msg_createBinaryAttachmentStream(
    zorClient_opaqueMsg_pt msg, zorClient_opaqueContainer_pt* stream_p,
    zorClient_uint32_t sizeHint);

/* Opens the attachment as a map or stream for reading; ZORCLIENT_NOT_FOUND or ZORCLIENT_FAIL
 * when it is not one. */
ZORCLIENT_API zorClient_returnCode_t zorClient_msg_getBinaryAttachmentMap(
    zorClient_opaqueMsg_pt msg, zorClient_opaqueContainer_pt* map_p);
ZORCLIENT_API zorClient_returnCode_t zorClient_msg_getBinaryAttachmentStream(
    zorClient_opaqueMsg_pt msg, zorClient_opaqueContainer_pt* stream_p);

/* Attachment = a copy of a container built apart (zorClient_container_createMap/Stream). */
ZORCLIENT_API zorClient_returnCode_t zorClient_msg_setBinaryAttachmentContainer(
    zorClient_opaqueMsg_pt msg, zorClient_opaqueContainer_pt container);

/* Creates the message's user property map, open for adding; sizeHint as above. */
ZORCLIENT_API zorClient_returnCode_t zorClient_msg_createUserPropertyMap(
    zorClient_opaqueMsg_pt msg, zorClient_opaqueContainer_pt* map_p, zorClient_uint32_t sizeHint);
/* Opens the user property map; ZORCLIENT_NOT_FOUND when the message has none. On a message being
 * built the map accepts further adds. */
ZORCLIENT_API zorClient_returnCode_t
zorClient_msg_getUserPropertyMap(zorClient_opaqueMsg_pt msg, zorClient_opaqueContainer_pt* map_p);

/* User data (at most ZORCLIENT_USER_DATA_MAX_SIZE bytes) by pointer (valid until the send
 * returns) or copied; more fails with ZORCLIENT_SUBCODE_USER_DATA_TOO_LARGE. */
ZORCLIENT_API zorClient_returnCode_t zorClient_msg_setUserDataPtr(zorClient_opaqueMsg_pt msg,
                                                                  const void* data_p,
                                                                  zorClient_uint32_t size);
ZORCLIENT_API zorClient_returnCode_t zorClient_msg_setUserData(zorClient_opaqueMsg_pt msg,
                                                               const void* data_p,
                                                               zorClient_uint32_t size);
/* Reads the user data; ZORCLIENT_NOT_FOUND when there is none. */
ZORCLIENT_API zorClient_returnCode_t zorClient_msg_getUserDataPtr(zorClient_opaqueMsg_pt msg,
                                                                  void** data_p,
                                                                  zorClient_uint32_t* size_p);

/* =============================================================================================
 * Containers: maps (fields by name, walked in insertion order) and streams (fields in order,
 * name null). Adding: value first, then the name (null in a stream). A container is used by one
 * thread at a time.
 * =========================================================================================== */

ZORCLIENT_API zorClient_returnCode_t zorClient_container_addBoolean(
    zorClient_opaqueContainer_pt container, zorClient_bool_t value, const char* name_p);
ZORCLIENT_API zorClient_returnCode_t zorClient_container_addUint8(
    zorClient_opaqueContainer_pt container, zorClient_uint8_t value, const char* name_p);
ZORCLIENT_API zorClient_returnCode_t zorClient_container_addInt8(
    zorClient_opaqueContainer_pt container, zorClient_int8_t value, const char* name_p);
ZORCLIENT_API zorClient_returnCode_t zorClient_container_addUint16(
    zorClient_opaqueContainer_pt container, zorClient_uint16_t value, const char* name_p);
ZORCLIENT_API zorClient_returnCode_t zorClient_container_addInt16(
    zorClient_opaqueContainer_pt container, zorClient_int16_t value, const char* name_p);
ZORCLIENT_API zorClient_returnCode_t zorClient_container_addUint32(
    zorClient_opaqueContainer_pt container, zorClient_uint32_t value, const char* name_p);
ZORCLIENT_API zorClient_returnCode_t zorClient_container_addInt32(
    zorClient_opaqueContainer_pt container, zorClient_int32_t value, const char* name_p);
ZORCLIENT_API zorClient_returnCode_t zorClient_container_addUint64(
    zorClient_opaqueContainer_pt container, zorClient_uint64_t value, const char* name_p);
ZORCLIENT_API zorClient_returnCode_t zorClient_container_addInt64(
    zorClient_opaqueContainer_pt container, zorClient_int64_t value, const char* name_p);
/* An 8-bit character (type ZORCLIENT_CHAR). */
ZORCLIENT_API zorClient_returnCode_t
zorClient_container_addChar(zorClient_opaqueContainer_pt container, char value, const char* name_p);
/* A 32-bit wide character (type ZORCLIENT_WCHAR). */
ZORCLIENT_API zorClient_returnCode_t zorClient_container_addWchar(
    zorClient_opaqueContainer_pt container, zorClient_wchar_t value, const char* name_p);
/* A NUL-terminated string, copied. */
ZORCLIENT_API zorClient_returnCode_t zorClient_container_addString(
    zorClient_opaqueContainer_pt container, const char* value_p, const char* name_p);
/* length bytes from array_p, copied; length 0 is allowed. */
ZORCLIENT_API zorClient_returnCode_t zorClient_container_addByteArray(
    zorClient_opaqueContainer_pt container, const zorClient_uint8_t* array_p,
    zorClient_uint32_t length, const char* name_p);
ZORCLIENT_API zorClient_returnCode_t zorClient_container_addFloat(
    zorClient_opaqueContainer_pt container, float value, const char* name_p);
ZORCLIENT_API zorClient_returnCode_t zorClient_container_addDouble(
    zorClient_opaqueContainer_pt container, double value, const char* name_p);
/* A field without value (type ZORCLIENT_NULL). */
ZORCLIENT_API zorClient_returnCode_t
zorClient_container_addNull(zorClient_opaqueContainer_pt container, const char* name_p);
/* A destination, copied (destSize = its sizeof); read back as a plain topic or queue. */
ZORCLIENT_API zorClient_returnCode_t zorClient_container_addDestination(
    zorClient_opaqueContainer_pt container, const zorClient_destination_t* destination_p,
    size_t destSize, const char* name_p);
/* Opaque pre-encoded bytes, copied; read back as ZORCLIENT_QWF with the same bytes. */
ZORCLIENT_API zorClient_returnCode_t
zorClient_container_addQwf(zorClient_opaqueContainer_pt container, const zorClient_uint8_t* data_p,
                           zorClient_uint32_t length, const char* name_p);
/* A complete encoded field (tag, length, value), inserted verbatim; read back as
 * ZORCLIENT_UNKNOWN with its raw bytes when its type is not one the library knows. */
ZORCLIENT_API zorClient_returnCode_t zorClient_container_addUnknownField(
    zorClient_opaqueContainer_pt container, const zorClient_uint8_t* field_p,
    zorClient_uint32_t length, const char* name_p);

/* Opens a new sub-map or sub-stream in container, for adding, into *subContainer_p. Close it
 * before the container that holds it. */
ZORCLIENT_API zorClient_returnCode_t
zorClient_container_openSubMap(zorClient_opaqueContainer_pt container,
                               zorClient_opaqueContainer_pt* subContainer_p, const char* name_p);
ZORCLIENT_API zorClient_returnCode_t
zorClient_container_openSubStream(zorClient_opaqueContainer_pt container,
                                  zorClient_opaqueContainer_pt* subContainer_p, const char* name_p);

/* Opens the sub-map or sub-stream named name_p (in a stream, name null: the next entry) for
 * reading. ZORCLIENT_NOT_FOUND when absent, ZORCLIENT_FAIL when of another type. */
ZORCLIENT_API zorClient_returnCode_t
zorClient_container_getSubMap(zorClient_opaqueContainer_pt container,
                              zorClient_opaqueContainer_pt* subContainer_p, const char* name_p);
ZORCLIENT_API zorClient_returnCode_t
zorClient_container_getSubStream(zorClient_opaqueContainer_pt container,
                                 zorClient_opaqueContainer_pt* subContainer_p, const char* name_p);

/* Creates a map or stream apart from any message, in the caller's buffer_p of bufferSize bytes
 * (which must outlive it); copy it into a message with zorClient_msg_setBinaryAttachmentContainer.
 */
ZORCLIENT_API zorClient_returnCode_t zorClient_container_createMap(
    zorClient_opaqueContainer_pt* container_p, char* buffer_p, size_t bufferSize);
ZORCLIENT_API zorClient_returnCode_t zorClient_container_createStream(
    zorClient_opaqueContainer_pt* container_p, char* buffer_p, size_t bufferSize);

/* Finishes a container handle and sets *container_p to null: a container being built becomes
 * part of its message or parent; a container being read is released. */
ZORCLIENT_API zorClient_returnCode_t
zorClient_container_closeMapStream(zorClient_opaqueContainer_pt* container_p);

/* 1 when a walk of the container has a field left; 0 otherwise or on failure. */
ZORCLIENT_API zorClient_bool_t
zorClient_container_hasNextField(zorClient_opaqueContainer_pt container);

/* Reads the next field of a walk into *field_p (fieldSize = its sizeof) and its name into
 * *name_p (null in a stream; name_p may be null). ZORCLIENT_EOS at the end. For MAP and STREAM
 * fields value holds a container handle for reading. */
ZORCLIENT_API zorClient_returnCode_t
zorClient_container_getNextField(zorClient_opaqueContainer_pt container, zorClient_field_t* field_p,
                                 size_t fieldSize, const char** name_p);

/* Reads field name_p of a map, or with name null the next entry of a stream, into *field_p.
 * ZORCLIENT_NOT_FOUND when absent; ZORCLIENT_EOS past the last entry of a stream. */
ZORCLIENT_API zorClient_returnCode_t
zorClient_container_getField(zorClient_opaqueContainer_pt container, zorClient_field_t* field_p,
                             size_t fieldSize, const char* name_p);

/* Reads the container's encoded size in bytes, its own 5-byte header included. */
ZORCLIENT_API zorClient_returnCode_t
zorClient_container_getSize(zorClient_opaqueContainer_pt container, size_t* size_p);

/* Typed reads of field name_p (in a stream, name null: the next entry, taken whatever its type;
 * ZORCLIENT_EOS past the last). ZORCLIENT_NOT_FOUND when absent; ZORCLIENT_FAIL with
 * ZORCLIENT_SUBCODE_FIELD_TYPE_MISMATCH when of another type (a char and a wide char below 256
 * read as each other). */
ZORCLIENT_API zorClient_returnCode_t zorClient_container_getBoolean(
    zorClient_opaqueContainer_pt container, zorClient_bool_t* value_p, const char* name_p);
ZORCLIENT_API zorClient_returnCode_t zorClient_container_getUint8(
    zorClient_opaqueContainer_pt container, zorClient_uint8_t* value_p, const char* name_p);
ZORCLIENT_API zorClient_returnCode_t zorClient_container_getInt8(
    zorClient_opaqueContainer_pt container, zorClient_int8_t* value_p, const char* name_p);
ZORCLIENT_API zorClient_returnCode_t zorClient_container_getUint16(
    zorClient_opaqueContainer_pt container, zorClient_uint16_t* value_p, const char* name_p);
ZORCLIENT_API zorClient_returnCode_t zorClient_container_getInt16(
    zorClient_opaqueContainer_pt container, zorClient_int16_t* value_p, const char* name_p);
ZORCLIENT_API zorClient_returnCode_t zorClient_container_getUint32(
    zorClient_opaqueContainer_pt container, zorClient_uint32_t* value_p, const char* name_p);
ZORCLIENT_API zorClient_returnCode_t zorClient_container_getInt32(
    zorClient_opaqueContainer_pt container, zorClient_int32_t* value_p, const char* name_p);
ZORCLIENT_API zorClient_returnCode_t zorClient_container_getUint64(
    zorClient_opaqueContainer_pt container, zorClient_uint64_t* value_p, const char* name_p);
ZORCLIENT_API zorClient_returnCode_t zorClient_container_getInt64(
    zorClient_opaqueContainer_pt container, zorClient_int64_t* value_p, const char* name_p);
ZORCLIENT_API zorClient_returnCode_t zorClient_container_getChar(
    zorClient_opaqueContainer_pt container, char* value_p, const char* name_p);
ZORCLIENT_API zorClient_returnCode_t zorClient_container_getWchar(
    zorClient_opaqueContainer_pt container, zorClient_wchar_t* value_p, const char* name_p);
ZORCLIENT_API zorClient_returnCode_t zorClient_container_getFloat(
    zorClient_opaqueContainer_pt container, float* value_p, const char* name_p);
ZORCLIENT_API zorClient_returnCode_t zorClient_container_getDouble(
    zorClient_opaqueContainer_pt container, double* value_p, const char* name_p);
/* Copies a string field, NUL-terminated, into buffer_p of bufferSize bytes; a string that does
 * not fit fails with ZORCLIENT_SUBCODE_INSUFFICIENT_SPACE. */
ZORCLIENT_API zorClient_returnCode_t zorClient_container_getString(
    zorClient_opaqueContainer_pt container, char* buffer_p, size_t bufferSize, const char* name_p);
/* Points *value_p at a string field inside the container. */
ZORCLIENT_API zorClient_returnCode_t zorClient_container_getStringPtr(
    zorClient_opaqueContainer_pt container, const char** value_p, const char* name_p);
/* Points *array_p at a byte array field inside the container; *length_p its length. */
ZORCLIENT_API zorClient_returnCode_t zorClient_container_getByteArrayPtr(
    zorClient_opaqueContainer_pt container, zorClient_uint8_t** array_p,
    zorClient_uint32_t* length_p, const char* name_p);
/* Reads a destination field (destSize = its sizeof); dest points into the container. */
ZORCLIENT_API zorClient_returnCode_t zorClient_container_getDestination(
    zorClient_opaqueContainer_pt container, zorClient_destination_t* destination_p, size_t destSize,
    const char* name_p);
/* ZORCLIENT_OK when field name_p is a null field. */
ZORCLIENT_API zorClient_returnCode_t
zorClient_container_getNull(zorClient_opaqueContainer_pt container, const char* name_p);

/* =============================================================================================
 * Replication group message ids
 * =========================================================================================== */

/* Writes the text form of *id_p (idSize = its sizeof) into buffer_p of bufferSize bytes
 * (ZORCLIENT_REPLICATION_GROUP_MESSAGE_ID_STRING_LENGTH is enough). The text is accepted by
 * zorClient_replicationGroupMessageId_fromString and as "FLOW_REPLAY_START_LOCATION". */
ZORCLIENT_API zorClient_returnCode_t
zorClient_replicationGroupMessageId_toString(const zorClient_replicationGroupMessageId_t* id_p,
                                             size_t idSize, char* buffer_p, size_t bufferSize);

/* Reads text string_p, as written by _toString, into *id_p (idSize = its sizeof); malformed text
 * fails with ZORCLIENT_SUBCODE_PARAM_OUT_OF_RANGE. */
ZORCLIENT_API zorClient_returnCode_t zorClient_replicationGroupMessageId_fromString(
    zorClient_replicationGroupMessageId_t* id_p, size_t idSize, const char* string_p);

/* Compares two ids of one message spool: *compare_p < 0, 0 or > 0 when id1 is earlier than,
 * the same as or later than id2. Ids of different spools fail with
 * ZORCLIENT_SUBCODE_MESSAGE_ID_NOT_COMPARABLE. */
ZORCLIENT_API zorClient_returnCode_t zorClient_replicationGroupMessageId_compare(
    const zorClient_replicationGroupMessageId_t* id1_p,
    const zorClient_replicationGroupMessageId_t* id2_p, int* compare_p);

#ifdef __cplusplus
}
#endif

#endif /* ZORCLIENT_MSG_H */
