/*
 * zorClient.h: the public C interface of libzorclient.so.1, part one: types, return codes,
 * subcodes, events, statistic ids, property names, and the process, logging, error, context,
 * session, flow, transacted session and cache session functions. Messages, containers and
 * replication group message ids are in zorClientMsg.h.
 *
 * Rules that hold for every function unless its comment says otherwise:
 * - Results are zorClient_returnCode_t. After any result other than ZORCLIENT_OK, the calling
 *   thread's error info (zorClient_getLastErrorInfo) says why, in words a user can act on.
 *   ZORCLIENT_OK leaves the error info as it was.
 * - Every function accepts a null or destroyed handle and a null argument: it fails with
 *   ZORCLIENT_FAIL (or the failure value of its result type) and a subcode; it never crashes.
 *   Destroy functions take the address of the handle and set the handle to null.
 * - Property arrays are char* arrays of key, value, key, value, ... closed by a null key. All
 *   values are text: decimal numbers, "1"/"0" flags. The library copies what it keeps, so the
 *   caller may free the array when the call returns. For a repeated key the last one wins. Keys
 *   of another object's prefix and keys the library does not know are ignored; a known key with a
 *   bad value fails the call with a parameter subcode and an error string that names the key.
 *   Keys beginning with "EMBEDDED_" configure the embedded broker and are accepted in any array.
 * - A struct-size argument is sizeof the struct of this header; a smaller size is refused.
 * - Callbacks run on the thread of the session's context, one at a time. Any library call,
 *   blocking ones included, may be made from inside a callback.
 * - A function whose behaviour this build does not provide yet fails with
 *   ZORCLIENT_SUBCODE_NOT_SUPPORTED and an error string that names it.
 */
#ifndef ZORCLIENT_H
#define ZORCLIENT_H

#include <stddef.h>
#include <stdint.h>

#if defined(__GNUC__)
#define ZORCLIENT_API __attribute__((visibility("default")))
#define ZORCLIENT_PRINTF_LIKE(formatIndex, firstArg) \
    __attribute__((format(printf, formatIndex, firstArg)))
#else
#define ZORCLIENT_API
#define ZORCLIENT_PRINTF_LIKE(formatIndex, firstArg)
#endif

/* In C++ every enumeration of this interface has int as its fixed underlying type, as it has in
 * C in effect: any int that a caller passes is then a valid value of the type, which the library
 * can check and refuse. */
#ifdef __cplusplus
#define ZORCLIENT_ENUM_BASE : int
#else
#define ZORCLIENT_ENUM_BASE
#endif

#ifdef __cplusplus
extern "C" {
#endif

/* ---------------------------------------------------------------------------------------------
 * Plain types
 * ------------------------------------------------------------------------------------------- */

typedef uint8_t zorClient_uint8_t;
typedef int8_t zorClient_int8_t;
typedef uint16_t zorClient_uint16_t;
typedef int16_t zorClient_int16_t;
typedef uint32_t zorClient_uint32_t;
typedef int32_t zorClient_int32_t;
typedef uint64_t zorClient_uint64_t;
typedef int64_t zorClient_int64_t;
typedef uint32_t zorClient_wchar_t;           /* a 32-bit wide character */
typedef zorClient_uint8_t zorClient_bool_t;   /* 0 false, 1 true */
typedef zorClient_uint64_t zorClient_stats_t; /* value of a session or flow statistic */
typedef zorClient_uint64_t zorClient_msgId_t; /* id of a guaranteed message, for acks */

/* A property array: key, value, ..., closed by a null key (see the rules above). A char** array
 * converts to it implicitly in C++. */
typedef const char* const* zorClient_propertyArray_pt;

/* A broker's response code (HTTP-like: 200, 400, 401, 403, 404, 503); 0 when the failure did not
 * come from a broker. Printed as a number only. */
typedef zorClient_int32_t zorClient_session_responseCode_t;

/* Opaque handles. */
typedef struct zorClient_opaqueContext_s* zorClient_opaqueContext_pt;
typedef struct zorClient_opaqueSession_s* zorClient_opaqueSession_pt;
typedef struct zorClient_opaqueFlow_s* zorClient_opaqueFlow_pt;
typedef struct zorClient_opaqueMsg_s* zorClient_opaqueMsg_pt;
typedef struct zorClient_opaqueContainer_s* zorClient_opaqueContainer_pt;
typedef struct zorClient_opaqueCacheSession_s* zorClient_opaqueCacheSession_pt;
typedef struct zorClient_opaqueTransactedSession_s* zorClient_opaqueTransactedSession_pt;

/* ---------------------------------------------------------------------------------------------
 * Return codes and subcodes
 * ------------------------------------------------------------------------------------------- */

typedef enum zorClient_returnCode ZORCLIENT_ENUM_BASE {
    ZORCLIENT_OK = 0,
    ZORCLIENT_WOULD_BLOCK = 1, /* a non-blocking send found no room; CAN_SEND follows */
    ZORCLIENT_IN_PROGRESS = 2, /* a non-blocking operation started; an event tells the end */
    ZORCLIENT_NOT_READY = 3,   /* the session is not in a state for this operation */
    ZORCLIENT_EOS = 4,         /* end of a map or stream */
    ZORCLIENT_NOT_FOUND = 5,   /* the field, header or container asked for is absent */
    ZORCLIENT_NOEVENT = 6,     /* nothing to do (never returned by processEvents) */
    ZORCLIENT_INCOMPLETE = 7,  /* a cache request ended without all data; see the subcode */
    ZORCLIENT_ROLLBACK = 8,    /* a commit was rolled back by the broker */
    ZORCLIENT_FAIL = -1
} zorClient_returnCode_t;

/* Why a call failed. Six values are fixed (51, 52, 55, 94, 95, 107); the library's own codes run
 * from 1 to 46, and further ones take numbers from 200 on, away from the fixed ones.
 * zorClient_subCodeToString gives each code its constant's name. */
typedef enum zorClient_subCode ZORCLIENT_ENUM_BASE {
    ZORCLIENT_SUBCODE_OK = 0,
    ZORCLIENT_SUBCODE_PARAM_OUT_OF_RANGE = 1, /* a value (argument or property) is not valid */
    ZORCLIENT_SUBCODE_PARAM_NULL_PTR = 2,     /* a required pointer or handle is null */
    ZORCLIENT_SUBCODE_PARAM_CONFLICT = 3,     /* values that are valid alone do not fit together */
    ZORCLIENT_SUBCODE_INSUFFICIENT_SPACE = 4, /* a caller's buffer or struct is too small */
    ZORCLIENT_SUBCODE_OUT_OF_RESOURCES = 5,
    ZORCLIENT_SUBCODE_INTERNAL_ERROR = 6,
    ZORCLIENT_SUBCODE_OUT_OF_MEMORY = 7,
    ZORCLIENT_SUBCODE_INIT_NOT_CALLED = 8,
    ZORCLIENT_SUBCODE_NOT_SUPPORTED = 9,   /* not built, or not offered by the broker in use */
    ZORCLIENT_SUBCODE_INVALID_HANDLE = 10, /* the handle is stale or of another object */
    ZORCLIENT_SUBCODE_OS_ERROR = 11,       /* a system call failed; the text has its reason */
    ZORCLIENT_SUBCODE_TIMEOUT = 12,
    ZORCLIENT_SUBCODE_SESSION_NOT_ESTABLISHED = 13,
    ZORCLIENT_SUBCODE_COMMUNICATION_ERROR = 14,
    ZORCLIENT_SUBCODE_INVALID_SESSION_OPERATION = 15,
    ZORCLIENT_SUBCODE_INVALID_FLOW_OPERATION = 16,
    ZORCLIENT_SUBCODE_FLOW_UNBOUND = 17,
    ZORCLIENT_SUBCODE_TOO_MANY_SESSIONS = 18,
    ZORCLIENT_SUBCODE_TOO_MANY_FLOWS = 19,
    ZORCLIENT_SUBCODE_INVALID_TOPIC_SYNTAX = 20,
    ZORCLIENT_SUBCODE_TOPIC_TOO_LARGE = 21,
    ZORCLIENT_SUBCODE_USER_DATA_TOO_LARGE = 22,
    ZORCLIENT_SUBCODE_MESSAGE_TOO_BIG = 23,
    ZORCLIENT_SUBCODE_NO_SUBSCRIPTION_MATCH = 24,
    ZORCLIENT_SUBCODE_SUBSCRIPTION_ALREADY_PRESENT = 25,
    ZORCLIENT_SUBCODE_SUBSCRIPTION_NOT_FOUND = 26,
    ZORCLIENT_SUBCODE_LOGIN_FAILURE = 27,
    ZORCLIENT_SUBCODE_CLIENT_NAME_ALREADY_IN_USE = 28,
    ZORCLIENT_SUBCODE_UNKNOWN_CLIENT_NAME = 29,
    ZORCLIENT_SUBCODE_PERMISSION_NOT_ALLOWED = 30,
    ZORCLIENT_SUBCODE_UNKNOWN_QUEUE_NAME = 31,
    ZORCLIENT_SUBCODE_UNKNOWN_TE_NAME = 32, /* no such durable topic endpoint */
    ZORCLIENT_SUBCODE_ENDPOINT_ALREADY_EXISTS = 33,
    ZORCLIENT_SUBCODE_ENDPOINT_DELETED = 34,
    ZORCLIENT_SUBCODE_QUOTA_EXCEEDED = 35,
    ZORCLIENT_SUBCODE_INVALID_SELECTOR = 36,
    ZORCLIENT_SUBCODE_OUTCOME_NOT_ENABLED = 37, /* settlement outcome not enabled on the flow */
    ZORCLIENT_SUBCODE_UNKNOWN_MESSAGE_ID = 38,  /* no outstanding message with that id */
    ZORCLIENT_SUBCODE_COMMIT_STATUS_UNKNOWN = 39,
    ZORCLIENT_SUBCODE_TRANSACTION_ROLLED_BACK = 40,
    ZORCLIENT_SUBCODE_UNKNOWN_TRANSACTED_SESSION = 41,
    ZORCLIENT_SUBCODE_REPLAY_START_NOT_AVAILABLE = 42,
    ZORCLIENT_SUBCODE_MESSAGE_ID_NOT_COMPARABLE = 43, /* ids of different message spools */
    ZORCLIENT_SUBCODE_FIELD_TYPE_MISMATCH = 44,       /* a container field of another type */
    ZORCLIENT_SUBCODE_MALFORMED_DATA = 45,
    ZORCLIENT_SUBCODE_CACHE_ERROR_RESPONSE = 46,
    ZORCLIENT_SUBCODE_CACHE_NO_DATA = 51,
    ZORCLIENT_SUBCODE_CACHE_SUSPECT_DATA = 52,
    ZORCLIENT_SUBCODE_CACHE_TIMEOUT = 55,
    ZORCLIENT_SUBCODE_UNKNOWN_FLOW_NAME = 94,
    ZORCLIENT_SUBCODE_REPLICATION_IS_STANDBY = 95,
    ZORCLIENT_SUBCODE_CACHE_REQUEST_CANCELLED = 107
} zorClient_subCode_t;

/* What a receive callback does with the message it was given. */
typedef enum zorClient_rxMsgCallback_returnCode ZORCLIENT_ENUM_BASE {
    ZORCLIENT_CALLBACK_OK = 0,      /* the library keeps the message and frees it afterwards */
    ZORCLIENT_CALLBACK_TAKE_MSG = 1 /* the application owns it and frees it (zorClient_msg_free) */
} zorClient_rxMsgCallback_returnCode_t;

#define ZORCLIENT_ERRORINFO_STR_SIZE 256

/* The calling thread's last error. */
typedef struct zorClient_errorInfo {
    zorClient_subCode_t subCode;
    zorClient_session_responseCode_t responseCode;
    char errorStr[ZORCLIENT_ERRORINFO_STR_SIZE]; /* NUL-terminated */
} zorClient_errorInfo, zorClient_errorInfo_t, *zorClient_errorInfo_pt;

/* ---------------------------------------------------------------------------------------------
 * Logging
 * ------------------------------------------------------------------------------------------- */

/* Filter levels: a line is written when its level is at most the filter level of its
 * category. Int-sized, so that the filter level can be read through an int pointer. */
typedef enum zorClient_log_level ZORCLIENT_ENUM_BASE {
    ZORCLIENT_LOG_EMERGENCY = 0,
    ZORCLIENT_LOG_ALERT = 1,
    ZORCLIENT_LOG_CRITICAL = 2,
    ZORCLIENT_LOG_ERROR = 3,
    ZORCLIENT_LOG_WARNING = 4,
    ZORCLIENT_LOG_NOTICE = 5,
    ZORCLIENT_LOG_INFO = 6,
    ZORCLIENT_LOG_DEBUG = 7
} zorClient_log_level_t;

typedef enum zorClient_log_category ZORCLIENT_ENUM_BASE {
    ZORCLIENT_LOG_CATEGORY_ALL = 0, /* every category: only for zorClient_log_setFilterLevel */
    ZORCLIENT_LOG_CATEGORY_SDK = 1, /* the library's own lines */
    ZORCLIENT_LOG_CATEGORY_APP = 2  /* the application's lines */
} zorClient_log_category_t;

/* ---------------------------------------------------------------------------------------------
 * Session and flow events
 * ------------------------------------------------------------------------------------------- */

typedef enum zorClient_session_event ZORCLIENT_ENUM_BASE {
    ZORCLIENT_SESSION_EVENT_UP_NOTICE = 0,
    ZORCLIENT_SESSION_EVENT_DOWN_ERROR = 1,
    ZORCLIENT_SESSION_EVENT_CONNECT_FAILED_ERROR = 2,
    ZORCLIENT_SESSION_EVENT_REJECTED_MSG_ERROR = 3,
    ZORCLIENT_SESSION_EVENT_SUBSCRIPTION_ERROR = 4,
    ZORCLIENT_SESSION_EVENT_RX_MSG_TOO_BIG_ERROR = 5,
    ZORCLIENT_SESSION_EVENT_ACKNOWLEDGEMENT = 6,
    ZORCLIENT_SESSION_EVENT_ASSURED_PUBLISHING_UP = 7,
    ZORCLIENT_SESSION_EVENT_ASSURED_DELIVERY_DOWN = 8,
    ZORCLIENT_SESSION_EVENT_ASSURED_CONNECT_FAILED = 8,
    ZORCLIENT_SESSION_EVENT_TE_UNSUBSCRIBE_ERROR = 9,
    ZORCLIENT_SESSION_EVENT_DTE_UNSUBSCRIBE_ERROR = 9,
    ZORCLIENT_SESSION_EVENT_TE_UNSUBSCRIBE_OK = 10,
    ZORCLIENT_SESSION_EVENT_DTE_UNSUBSCRIBE_OK = 10,
    ZORCLIENT_SESSION_EVENT_CAN_SEND = 11,
    ZORCLIENT_SESSION_EVENT_RECONNECTING_NOTICE = 12,
    ZORCLIENT_SESSION_EVENT_RECONNECTED_NOTICE = 13,
    ZORCLIENT_SESSION_EVENT_PROVISION_ERROR = 14,
    ZORCLIENT_SESSION_EVENT_PROVISION_OK = 15,
    ZORCLIENT_SESSION_EVENT_SUBSCRIPTION_OK = 16,
    ZORCLIENT_SESSION_EVENT_VIRTUAL_ROUTER_NAME_CHANGED = 17,
    ZORCLIENT_SESSION_EVENT_MODIFYPROP_OK = 18,
    ZORCLIENT_SESSION_EVENT_MODIFYPROP_FAIL = 19,
    ZORCLIENT_SESSION_EVENT_REPUBLISH_UNACKED_MESSAGES = 20
} zorClient_session_event_t;

typedef enum zorClient_flow_event ZORCLIENT_ENUM_BASE {
    ZORCLIENT_FLOW_EVENT_UP_NOTICE = 0,
    ZORCLIENT_FLOW_EVENT_DOWN_ERROR = 1,
    ZORCLIENT_FLOW_EVENT_BIND_FAILED_ERROR = 2,
    ZORCLIENT_FLOW_EVENT_REJECTED_MSG_ERROR = 3,
    ZORCLIENT_FLOW_EVENT_SESSION_DOWN = 4,
    ZORCLIENT_FLOW_EVENT_ACTIVE = 5,
    ZORCLIENT_FLOW_EVENT_INACTIVE = 6,
    ZORCLIENT_FLOW_EVENT_RECONNECTING = 7,
    ZORCLIENT_FLOW_EVENT_RECONNECTED = 8
} zorClient_flow_event_t;

/* Handed to a session event callback; valid for the duration of the callback. Before an error
 * event the library fills the context thread's error info with the reason. */
typedef struct zorClient_session_eventCallbackInfo {
    zorClient_session_event_t sessionEvent;
    zorClient_session_responseCode_t responseCode;
    const char* info_p;  /* never null; "" when there is nothing to say */
    void* correlation_p; /* ACKNOWLEDGEMENT, REJECTED_MSG_ERROR: the message's correlation tag */
} zorClient_session_eventCallbackInfo, zorClient_session_eventCallbackInfo_t,
    *zorClient_session_eventCallbackInfo_pt;

/* Handed to a flow event callback; valid for the duration of the callback. */
typedef struct zorClient_flow_eventCallbackInfo {
    zorClient_flow_event_t flowEvent;
    zorClient_session_responseCode_t responseCode;
    const char* info_p; /* never null */
} zorClient_flow_eventCallbackInfo, zorClient_flow_eventCallbackInfo_t,
    *zorClient_flow_eventCallbackInfo_pt;

/* ---------------------------------------------------------------------------------------------
 * Statistics of sessions and flows
 * ------------------------------------------------------------------------------------------- */

typedef enum zorClient_stats_rx ZORCLIENT_ENUM_BASE {
    ZORCLIENT_STATS_RX_DIRECT_BYTES = 0,
    ZORCLIENT_STATS_RX_BYTES = 0,
    ZORCLIENT_STATS_RX_DIRECT_MSGS = 1,
    ZORCLIENT_STATS_RX_MSGS = 1,
    ZORCLIENT_STATS_RX_READS = 2,
    ZORCLIENT_STATS_RX_DISCARD_IND = 3, /* delivered messages that carried a discard indication */
    ZORCLIENT_STATS_RX_DISCARD_QWF_UNKNOWN_ELEMENT = 4,
    ZORCLIENT_STATS_RX_DISCARD_MSG_HDR_ERROR = 4,
    ZORCLIENT_STATS_RX_DISCARD_MSG_TOO_BIG = 5,
    ZORCLIENT_STATS_RX_ACKED = 6,
    ZORCLIENT_STATS_RX_DISCARD_DUPLICATE = 7,
    ZORCLIENT_STATS_RX_DISCARD_NO_MATCHING_FLOW = 8,
    ZORCLIENT_STATS_RX_DISCARD_OUTOFORDER = 9,
    ZORCLIENT_STATS_RX_PERSISTENT_BYTES = 10,
    ZORCLIENT_STATS_RX_PERSISTENT_MSGS = 11,
    ZORCLIENT_STATS_RX_NONPERSISTENT_BYTES = 12,
    ZORCLIENT_STATS_RX_NONPERSISTENT_MSGS = 13,
    ZORCLIENT_STATS_RX_CTL_MSGS = 14,
    ZORCLIENT_STATS_RX_CTL_BYTES = 15,
    ZORCLIENT_STATS_RX_TOTAL_DATA_BYTES = 16,
    ZORCLIENT_STATS_RX_TOTAL_DATA_MSGS = 17,
    ZORCLIENT_STATS_RX_COMPRESSED_BYTES = 18,
    ZORCLIENT_STATS_RX_REPLY_MSG = 19,
    ZORCLIENT_STATS_RX_REPLY_MSG_DISCARD = 20, /* replies that matched no outstanding request */
    ZORCLIENT_STATS_RX_CACHEREQUEST_OK_RESPONSE = 21,
    ZORCLIENT_STATS_RX_CACHEREQUEST_FULFILL_DATA = 22,
    ZORCLIENT_STATS_RX_CACHEREQUEST_ERROR_RESPONSE = 23,
    ZORCLIENT_STATS_RX_CACHEREQUEST_DISCARD_RESPONSE = 24,
    ZORCLIENT_STATS_RX_CACHEMSG = 25,
    ZORCLIENT_STATS_RX_FOUND_CTSYNC = 26,
    ZORCLIENT_STATS_RX_LOST_CTSYNC = 27,
    ZORCLIENT_STATS_RX_LOST_CTSYNC_GM = 28,
    ZORCLIENT_STATS_RX_OVERFLOW_CTSYNC_BUFFER = 29,
    ZORCLIENT_STATS_RX_ALREADY_CUT_THROUGH = 30,
    ZORCLIENT_STATS_RX_DISCARD_FROM_CTSYNC = 31,
    ZORCLIENT_STATS_RX_DISCARD_MSG_FLOW_UNBOUND_PENDING = 32,
    ZORCLIENT_STATS_RX_DISCARD_MSG_TRANSACTION_ROLLBACK = 33,
    ZORCLIENT_STATS_RX_DISCARD_TRANSACTION_RESPONSE = 34,
    ZORCLIENT_STATS_RX_SSL_READ_EVENTS = 35,
    ZORCLIENT_STATS_RX_SSL_READ_CALLS = 36,
    ZORCLIENT_STATS_RX_SETTLE_ACCEPTED = 37,
    ZORCLIENT_STATS_RX_SETTLE_FAILED = 38,
    ZORCLIENT_STATS_RX_SETTLE_REJECTED = 39,
    ZORCLIENT_STATS_RX_NUM_STATS = 40 /* the number of receive statistics */
} zorClient_stats_rx;

typedef enum zorClient_stats_tx ZORCLIENT_ENUM_BASE {
    ZORCLIENT_STATS_TX_TOTAL_DATA_BYTES = 0,
    ZORCLIENT_STATS_TX_BYTES = 0,
    ZORCLIENT_STATS_TX_TOTAL_DATA_MSGS = 1, /* every data message sent, of whatever kind */
    ZORCLIENT_STATS_TX_MSGS = 1,
    ZORCLIENT_STATS_TX_WOULD_BLOCK = 2,
    ZORCLIENT_STATS_TX_SOCKET_FULL = 3,
    ZORCLIENT_STATS_TX_DIRECT_BYTES = 4,
    ZORCLIENT_STATS_TX_DIRECT_MSGS = 5,
    ZORCLIENT_STATS_TX_PERSISTENT_BYTES = 6,
    ZORCLIENT_STATS_TX_NONPERSISTENT_BYTES = 7,
    ZORCLIENT_STATS_TX_PERSISTENT_MSGS = 8,
    ZORCLIENT_STATS_TX_NONPERSISTENT_MSGS = 9,
    ZORCLIENT_STATS_TX_PERSISTENT_REDELIVERED = 10,
    ZORCLIENT_STATS_TX_NONPERSISTENT_REDELIVERED = 11,
    ZORCLIENT_STATS_TX_PERSISTENT_BYTES_REDELIVERED = 12,
    ZORCLIENT_STATS_TX_NONPERSISTENT_BYTES_REDELIVERED = 13,
    ZORCLIENT_STATS_TX_ACKS_RXED = 14,
    ZORCLIENT_STATS_TX_WINDOW_CLOSE = 15,
    ZORCLIENT_STATS_TX_ACK_TIMEOUT = 16,
    ZORCLIENT_STATS_TX_CTL_MSGS = 17,
    ZORCLIENT_STATS_TX_CTL_BYTES = 18,
    ZORCLIENT_STATS_TX_COMPRESSED_BYTES = 19,
    ZORCLIENT_STATS_TX_TOTAL_CONNECTION_ATTEMPTS = 20,
    ZORCLIENT_STATS_TX_REQUEST_SENT = 21,
    ZORCLIENT_STATS_TX_REQUEST_TIMEOUT = 22,
    ZORCLIENT_STATS_TX_CACHEREQUEST_SENT = 23,
    ZORCLIENT_STATS_TX_GUARANTEED_MSGS_SENT_CONFIRMED = 24,
    ZORCLIENT_STATS_TX_DISCARD_NO_MATCH = 25,
    ZORCLIENT_STATS_TX_DISCARD_CHANNEL_ERROR = 26,
    ZORCLIENT_STATS_TX_BLOCKED_ON_SEND = 27,
    ZORCLIENT_STATS_TX_NUM_STATS = 28 /* the number of transmit statistics */
} zorClient_stats_tx;

/* ---------------------------------------------------------------------------------------------
 * Flags and small enumerations
 * ------------------------------------------------------------------------------------------- */

/* Flags of topic subscriptions (session, flow, endpoint, cache requests). */
typedef zorClient_uint32_t zorClient_subscribeFlags_t;
/* Return once this and every earlier subscription is confirmed. */
#define ZORCLIENT_SUBSCRIBE_FLAGS_WAITFORCONFIRM 0x02u
/* Also receive every deliver-to-one message that matches. */
#define ZORCLIENT_SUBSCRIBE_FLAGS_RX_ALL_DELIVER_TO_ONE 0x04u
/* A dispatch entry only: no subscription at the broker. */
#define ZORCLIENT_SUBSCRIBE_FLAGS_LOCAL_DISPATCH_ONLY 0x08u
/* Emit a SUBSCRIPTION_OK event with info_p = the topic. */
#define ZORCLIENT_SUBSCRIBE_FLAGS_REQUEST_CONFIRM 0x10u

/* Flags of cache requests. */
typedef zorClient_uint32_t zorClient_cacheRequestFlags_t;
#define ZORCLIENT_CACHEREQUEST_FLAGS_NO_SUBSCRIBE 0x01u      /* do not add the subscription */
#define ZORCLIENT_CACHEREQUEST_FLAGS_LIVEDATA_FULFILL 0x02u  /* live data can fulfil it */
#define ZORCLIENT_CACHEREQUEST_FLAGS_LIVEDATA_QUEUE 0x04u    /* hold live data until done */
#define ZORCLIENT_CACHEREQUEST_FLAGS_LIVEDATA_FLOWTHRU 0x08u /* pass live data at once */
#define ZORCLIENT_CACHEREQUEST_FLAGS_NOWAIT_REPLY 0x10u      /* do not block; a callback ends it */

/* Flags of endpoint provisioning and deprovisioning. */
typedef zorClient_uint32_t zorClient_provisionFlags_t;
#define ZORCLIENT_PROVISION_FLAGS_WAITFORCONFIRM 0x01u      /* block until the broker answers */
#define ZORCLIENT_PROVISION_FLAGS_IGNORE_EXIST_ERRORS 0x02u /* an existing endpoint is success */

/* How a dispatch subscription hands over its messages. */
typedef zorClient_uint32_t zorClient_dispatchType_t;
#define ZORCLIENT_DISPATCH_TYPE_CALLBACK 1

/* Settlement outcome of a guaranteed message on a client-acknowledged flow. */
typedef enum zorClient_msgOutcome ZORCLIENT_ENUM_BASE {
    ZORCLIENT_OUTCOME_ACCEPTED = 0, /* processed: remove it (same as zorClient_flow_sendAck) */
    ZORCLIENT_OUTCOME_FAILED = 2,   /* not processed: deliver it again */
    ZORCLIENT_OUTCOME_REJECTED = 3  /* refused: remove it (to the dead message queue if eligible) */
} zorClient_msgOutcome,
    zorClient_msgOutcome_t;

/* ---------------------------------------------------------------------------------------------
 * Destinations and fields
 * ------------------------------------------------------------------------------------------- */

typedef enum zorClient_destinationType ZORCLIENT_ENUM_BASE {
    ZORCLIENT_NULL_DESTINATION = -1,
    ZORCLIENT_TOPIC_DESTINATION = 0,
    ZORCLIENT_QUEUE_DESTINATION = 1,
    ZORCLIENT_TOPIC_TEMP_DESTINATION = 2,
    ZORCLIENT_QUEUE_TEMP_DESTINATION = 3
} zorClient_destinationType,
    zorClient_destinationType_t;

/* A topic or queue. When the library fills one, dest points into library memory that lives as
 * long as the object it was read from (message, flow, container). */
typedef struct zorClient_destination {
    zorClient_destinationType_t destType;
    const char* dest;
} zorClient_destination, zorClient_destination_t;

typedef enum zorClient_fieldType ZORCLIENT_ENUM_BASE {
    ZORCLIENT_BOOL = 0,
    ZORCLIENT_UINT8 = 1,
    ZORCLIENT_INT8 = 2,
    ZORCLIENT_UINT16 = 3,
    ZORCLIENT_INT16 = 4,
    ZORCLIENT_UINT32 = 5,
    ZORCLIENT_INT32 = 6,
    ZORCLIENT_UINT64 = 7,
    ZORCLIENT_INT64 = 8,
    ZORCLIENT_WCHAR = 9,
    ZORCLIENT_STRING = 10,
    ZORCLIENT_BYTEARRAY = 11,
    ZORCLIENT_FLOAT = 12,
    ZORCLIENT_DOUBLE = 13,
    ZORCLIENT_MAP = 14,
    ZORCLIENT_STREAM = 15,
    ZORCLIENT_NULL = 16,
    ZORCLIENT_DESTINATION = 17,
    ZORCLIENT_QWF = 18,    /* opaque pre-encoded bytes, carried as they are */
    ZORCLIENT_CHAR = 19,   /* an 8-bit character (zorClient_container_addChar) */
    ZORCLIENT_UNKNOWN = -1 /* an encoded field of a type the library does not know */
} zorClient_fieldType,
    zorClient_fieldType_t;

/* The value of a field; the member that counts is the one of the field's type. */
typedef union zorClient_fieldValue {
    zorClient_bool_t boolean;
    zorClient_uint8_t uint8;
    zorClient_int8_t int8;
    zorClient_uint16_t uint16;
    zorClient_int16_t int16;
    zorClient_uint32_t uint32;
    zorClient_int32_t int32;
    zorClient_uint64_t uint64;
    zorClient_int64_t int64;
    zorClient_wchar_t wchar;
    char char8;
    const char* string;             /* ZORCLIENT_STRING: NUL-terminated */
    const zorClient_uint8_t* bytes; /* ZORCLIENT_BYTEARRAY, ZORCLIENT_QWF, ZORCLIENT_UNKNOWN */
    float float32;
    double float64;
    zorClient_opaqueContainer_pt map;    /* ZORCLIENT_MAP: a handle usable with the getters */
    zorClient_opaqueContainer_pt stream; /* ZORCLIENT_STREAM: likewise */
    zorClient_destination_t dest;
} zorClient_fieldValue_t;

/* A field read from a container (or a capability). length counts the bytes of byte arrays, QWF
 * and unknown fields, and of strings including their NUL. Pointers in value point into the
 * container and live as long as it, or until a field is next added to it (the bytes may then
 * move). */
typedef struct zorClient_field {
    zorClient_fieldType_t type;
    zorClient_uint32_t length;
    zorClient_fieldValue_t value;
} zorClient_field, zorClient_field_t;

/* ---------------------------------------------------------------------------------------------
 * Callbacks and creation records
 * ------------------------------------------------------------------------------------------- */

/* Receive callback of a session (also the shape of session dispatch callbacks). */
typedef zorClient_rxMsgCallback_returnCode_t (*zorClient_session_rxMsgCallbackFunc_t)(
    zorClient_opaqueSession_pt session, zorClient_opaqueMsg_pt msg, void* user_p);

/* Event callback of a session. */
typedef void (*zorClient_session_eventCallbackFunc_t)(
    zorClient_opaqueSession_pt session, zorClient_session_eventCallbackInfo_pt eventInfo_p,
    void* user_p);

/* Receive callback of a flow (also the shape of flow dispatch callbacks). */
typedef zorClient_rxMsgCallback_returnCode_t (*zorClient_flow_rxMsgCallbackFunc_t)(
    zorClient_opaqueFlow_pt flow, zorClient_opaqueMsg_pt msg, void* user_p);

/* Event callback of a flow. */
typedef void (*zorClient_flow_eventCallbackFunc_t)(zorClient_opaqueFlow_pt flow,
                                                   zorClient_flow_eventCallbackInfo_pt eventInfo_p,
                                                   void* user_p);

/* A callback run on the dispatching thread of a transacted session
 * (_zorClient_messageDispatcher_invokeUserCallback). */
typedef void (*zorClient_messageDispatcher_userCallbackFunc_t)(
    zorClient_opaqueTransactedSession_pt transactedSession, void* user_p);

/* Raw receive callback: reserved. The rxInfo slots of the creation records must be zero. */
typedef void (*zorClient_rxCallbackFunc_t)(void* reserved_p, void* user_p);

/* Descriptor registration of an application event loop: reserved. The library manages its own
 * descriptors and timers, so the regFdInfo slots of a context creation record must be zero. */
typedef void (*zorClient_context_fdCallbackFunc_t)(zorClient_opaqueContext_pt context, int fd,
                                                   zorClient_uint32_t events, void* user_p);
typedef zorClient_returnCode_t (*zorClient_context_registerFdFunc_t)(
    void* app_p, int fd, zorClient_uint32_t events, zorClient_context_fdCallbackFunc_t callback_p,
    void* user_p);
typedef zorClient_returnCode_t (*zorClient_context_unregisterFdFunc_t)(void* app_p, int fd,
                                                                       zorClient_uint32_t events);

typedef struct zorClient_context_createRegisterFdFuncInfo {
    zorClient_context_registerFdFunc_t regFdFunc_p;
    zorClient_context_unregisterFdFunc_t unregFdFunc_p;
    void* user_p;
} zorClient_context_createRegisterFdFuncInfo, zorClient_context_createRegisterFdFuncInfo_t;

typedef struct zorClient_context_createFuncInfo {
    zorClient_context_createRegisterFdFuncInfo_t regFdInfo; /* all zero */
} zorClient_context_createFuncInfo, zorClient_context_createFuncInfo_t;

typedef struct zorClient_createRxCallbackFuncInfo {
    zorClient_rxCallbackFunc_t callback_p; /* reserved: null */
    void* user_p;                          /* reserved: null */
} zorClient_createRxCallbackFuncInfo, zorClient_createRxCallbackFuncInfo_t;

typedef struct zorClient_session_createEventCallbackFuncInfo {
    zorClient_session_eventCallbackFunc_t callback_p;
    void* user_p;
} zorClient_session_createEventCallbackFuncInfo, zorClient_session_createEventCallbackFuncInfo_t;

typedef struct zorClient_session_createRxMsgCallbackFuncInfo {
    zorClient_session_rxMsgCallbackFunc_t callback_p;
    void* user_p;
} zorClient_session_createRxMsgCallbackFuncInfo, zorClient_session_createRxMsgCallbackFuncInfo_t;

typedef struct zorClient_session_createFuncInfo {
    zorClient_createRxCallbackFuncInfo_t rxInfo; /* reserved: all zero */
    zorClient_session_createEventCallbackFuncInfo_t eventInfo;
    zorClient_session_createRxMsgCallbackFuncInfo_t rxMsgInfo;
} zorClient_session_createFuncInfo, zorClient_session_createFuncInfo_t;

typedef struct zorClient_flow_createEventCallbackFuncInfo {
    zorClient_flow_eventCallbackFunc_t callback_p;
    void* user_p;
} zorClient_flow_createEventCallbackFuncInfo, zorClient_flow_createEventCallbackFuncInfo_t;

typedef struct zorClient_flow_createRxMsgCallbackFuncInfo {
    zorClient_flow_rxMsgCallbackFunc_t callback_p;
    void* user_p;
} zorClient_flow_createRxMsgCallbackFuncInfo, zorClient_flow_createRxMsgCallbackFuncInfo_t;

typedef struct zorClient_flow_createFuncInfo {
    zorClient_createRxCallbackFuncInfo_t rxInfo; /* reserved: all zero */
    zorClient_flow_createEventCallbackFuncInfo_t eventInfo;
    zorClient_flow_createRxMsgCallbackFuncInfo_t rxMsgInfo;
} zorClient_flow_createFuncInfo, zorClient_flow_createFuncInfo_t;

/* A dispatch subscription: its messages go to callback_p instead of the receive callback. */
typedef struct zorClient_session_rxMsgDispatchFuncInfo {
    zorClient_dispatchType_t dispatchType; /* ZORCLIENT_DISPATCH_TYPE_CALLBACK */
    zorClient_session_rxMsgCallbackFunc_t callback_p;
    void* user_p;
    void* rfu_p; /* reserved: null */
} zorClient_session_rxMsgDispatchFuncInfo, zorClient_session_rxMsgDispatchFuncInfo_t;

typedef struct zorClient_flow_rxMsgDispatchFuncInfo {
    zorClient_dispatchType_t dispatchType; /* ZORCLIENT_DISPATCH_TYPE_CALLBACK */
    zorClient_flow_rxMsgCallbackFunc_t callback_p;
    void* user_p;
    void* rfu_p; /* reserved: null */
} zorClient_flow_rxMsgDispatchFuncInfo, zorClient_flow_rxMsgDispatchFuncInfo_t;

/* ---------------------------------------------------------------------------------------------
 * Cache
 * ------------------------------------------------------------------------------------------- */

typedef enum zorCache_event ZORCLIENT_ENUM_BASE {
    ZORCACHE_EVENT_REQUEST_COMPLETED_NOTICE = 0
} zorCache_event,
    zorCache_event_t;

/* The end of an asynchronous cache request. */
typedef struct zorCache_eventCallbackInfo {
    zorCache_event cacheEvent;
    const char* topic;         /* the requested topic */
    zorClient_returnCode_t rc; /* ZORCLIENT_OK, ZORCLIENT_INCOMPLETE or ZORCLIENT_FAIL */
    zorClient_subCode_t subCode;
    zorClient_uint64_t cacheRequestId;
} zorCache_eventCallbackInfo, zorCache_eventCallbackInfo_t, *zorCache_eventCallbackInfo_pt;

/* Called on the context thread once per asynchronous request, after the request's cached
 * messages went to the session's receive callback. */
typedef void (*zorClient_cacheSession_eventCallbackFunc_t)(zorClient_opaqueSession_pt session,
                                                           zorCache_eventCallbackInfo_pt info_p,
                                                           void* user_p);

/* ---------------------------------------------------------------------------------------------
 * Version
 * ------------------------------------------------------------------------------------------- */

typedef struct zorClient_version_info {
    const char* version_p;  /* e.g. "1.0.0" */
    const char* dateTime_p; /* build time, "YYYY-MM-DD hh:mm:ss" UTC */
    const char* variant_p;  /* build type and sanitizers, e.g. "Debug+address,undefined" */
} zorClient_version_info, zorClient_version_info_t, *zorClient_version_info_pt;

/* ---------------------------------------------------------------------------------------------
 * Sizes and fixed values
 * ------------------------------------------------------------------------------------------- */

#define ZORCLIENT_CLIENT_NAME_MAX_SIZE 165   /* client names, with their NUL */
#define ZORCLIENT_REPLY_TO_MAX_SIZE 255      /* a session's reply topic, with its NUL */
#define ZORCLIENT_TOPIC_MAX_SIZE 256         /* topics, with their NUL */
#define ZORCLIENT_ENDPOINT_NAME_MAX_SIZE 256 /* queue and topic endpoint names, with NUL */
#define ZORCLIENT_TRANSACTED_SESSION_NAME_MAX_SIZE 64
#define ZORCLIENT_SEND_MULTIPLE_MAX_MSGS 50 /* messages per zorClient_session_sendMultipleMsg */
#define ZORCLIENT_DEAD_MESSAGE_QUEUE_NAME "#DEAD_MSG_QUEUE"

/* Values of flag properties. */
#define ZORCLIENT_PROP_ENABLE_VAL "1"
#define ZORCLIENT_PROP_DISABLE_VAL "0"

/* ---------------------------------------------------------------------------------------------
 * Property names: global (zorClient_initialize)
 * ------------------------------------------------------------------------------------------- */

/* Byte sizes of the five data block quanta, each larger than the one before. Blocks above the
 * largest come from a sixth pool. */
#define ZORCLIENT_GLOBAL_PROP_DBQUANTASIZE_0 "GLOBAL_DBQUANTA_SIZE_0"
#define ZORCLIENT_GLOBAL_PROP_DBQUANTASIZE_1 "GLOBAL_DBQUANTA_SIZE_1"
#define ZORCLIENT_GLOBAL_PROP_DBQUANTASIZE_2 "GLOBAL_DBQUANTA_SIZE_2"
#define ZORCLIENT_GLOBAL_PROP_DBQUANTASIZE_3 "GLOBAL_DBQUANTA_SIZE_3"
#define ZORCLIENT_GLOBAL_PROP_DBQUANTASIZE_4 "GLOBAL_DBQUANTA_SIZE_4"
#define ZORCLIENT_GLOBAL_PROP_GSS_KRB_LIB "GLOBAL_GSS_KRB_LIB" /* path of a Kerberos library */
#define ZORCLIENT_GLOBAL_PROP_SSL_LIB "GLOBAL_SSL_LIB"         /* path of a TLS library */
#define ZORCLIENT_GLOBAL_PROP_CRYPTO_LIB "GLOBAL_CRYPTO_LIB"   /* path of a crypto library */

/* Embedded broker configuration: accepted in every property array; the first session that
 * creates an instance fixes its configuration. */
#define ZORCLIENT_EMBEDDED_PROP_PREFIX "EMBEDDED_"
#define ZORCLIENT_EMBEDDED_PROP_AUTO_PROVISION "EMBEDDED_AUTO_PROVISION" /* "1" default, "0" */
#define ZORCLIENT_EMBEDDED_PROP_CACHE_DEPTH "EMBEDDED_CACHE_DEPTH"       /* per topic, default 10 */
/* Bytes of direct messages the broker queues for one session beyond that session's own buffers
 * ("SESSION_SOCKET_RCV_BUF_SIZE" + "SESSION_BUFFER_SIZE"), 0..2^40, default 16777216. */
#define ZORCLIENT_EMBEDDED_PROP_EGRESS_QUEUE_SIZE "EMBEDDED_EGRESS_QUEUE_SIZE"

/* ---------------------------------------------------------------------------------------------
 * Property names: context
 * ------------------------------------------------------------------------------------------- */

#define ZORCLIENT_CONTEXT_PROP_MAX_SESSIONS "CONTEXT_MAX_SESSIONS"
#define ZORCLIENT_CONTEXT_PROP_MAX_FLOWS "CONTEXT_MAX_FLOWS"
/* "1": the library runs the event loop on a thread of its own. */
#define ZORCLIENT_CONTEXT_PROP_CREATE_THREAD "CONTEXT_CREATE_THREAD"
/* Affinity of that thread: a CPU bit mask, or a CPU list such as "0,2-3". */
#define ZORCLIENT_CONTEXT_PROP_THREAD_AFFINITY "CONTEXT_THREAD_AFFINITY"
#define ZORCLIENT_CONTEXT_PROP_THREAD_AFFINITY_CPU_LIST "CONTEXT_THREAD_AFFINITY_CPU_LIST"
/* Microseconds to spin for events before sleeping; default 0. */
#define ZORCLIENT_CONTEXT_PROP_BUSY_POLL_US "CONTEXT_BUSY_POLL_US"

/* ---------------------------------------------------------------------------------------------
 * Property names: session
 * ------------------------------------------------------------------------------------------- */

/* "", "embedded", "embedded://NAME", "SCHEME://host[:port]", or a list a,b,c. */
#define ZORCLIENT_SESSION_PROP_HOST "SESSION_HOST"
#define ZORCLIENT_SESSION_PROP_USERNAME "SESSION_USERNAME"
#define ZORCLIENT_SESSION_PROP_PASSWORD "SESSION_PASSWORD"
#define ZORCLIENT_SESSION_PROP_CLIENT_NAME "SESSION_CLIENT_NAME"
#define ZORCLIENT_SESSION_PROP_VPN_NAME "SESSION_VPN_NAME"
#define ZORCLIENT_SESSION_PROP_APPLICATION_DESCRIPTION "SESSION_APPLICATION_DESCRIPTION"
#define ZORCLIENT_SESSION_PROP_TCP_NODELAY "SESSION_TCP_NODELAY"
#define ZORCLIENT_SESSION_PROP_IGNORE_DUP_SUBSCRIPTION_ERROR "SESSION_IGNORE_DUP_SUBSCRIPTION_ERROR"
#define ZORCLIENT_SESSION_PROP_CONNECT_BLOCKING "SESSION_CONNECT_BLOCKING"
#define ZORCLIENT_SESSION_PROP_SUBSCRIBE_BLOCKING "SESSION_SUBSCRIBE_BLOCKING"
#define ZORCLIENT_SESSION_PROP_SEND_BLOCKING "SESSION_SEND_BLOCKING"
#define ZORCLIENT_SESSION_PROP_REAPPLY_SUBSCRIPTIONS "SESSION_REAPPLY_SUBSCRIPTIONS"
#define ZORCLIENT_SESSION_PROP_BUFFER_SIZE "SESSION_BUFFER_SIZE"
#define ZORCLIENT_SESSION_PROP_WRITE_TIMEOUT_MS "SESSION_WRITE_TIMEOUT_MS"
#define ZORCLIENT_SESSION_PROP_KEEP_ALIVE_INTERVAL_MS "SESSION_KEEP_ALIVE_INTERVAL_MS"
#define ZORCLIENT_SESSION_PROP_SOCKET_RCV_BUF_SIZE "SESSION_SOCKET_RCV_BUF_SIZE"
#define ZORCLIENT_SESSION_PROP_SOCKET_SEND_BUF_SIZE "SESSION_SOCKET_SEND_BUF_SIZE"
#define ZORCLIENT_SESSION_PROP_PUB_WINDOW_SIZE "SESSION_PUB_WINDOW_SIZE"
#define ZORCLIENT_SESSION_PROP_PUB_ACK_TIMER "SESSION_PUB_ACK_TIMER"
#define ZORCLIENT_SESSION_PROP_SUBSCRIBER_LOCAL_PRIORITY "SESSION_SUBSCRIBER_LOCAL_PRIORITY"
#define ZORCLIENT_SESSION_PROP_SUBSCRIBER_NETWORK_PRIORITY "SESSION_SUBSCRIBER_NETWORK_PRIORITY"
#define ZORCLIENT_SESSION_PROP_COMPRESSION_LEVEL "SESSION_COMPRESSION_LEVEL"
#define ZORCLIENT_SESSION_PROP_PAYLOAD_COMPRESSION_LEVEL "SESSION_PAYLOAD_COMPRESSION_LEVEL"
#define ZORCLIENT_SESSION_PROP_RECONNECT_RETRIES "SESSION_RECONNECT_RETRIES"
#define ZORCLIENT_SESSION_PROP_RECONNECT_RETRY_WAIT_MS "SESSION_RECONNECT_RETRY_WAIT_MS"
#define ZORCLIENT_SESSION_PROP_MAX_FLOWS "SESSION_MAX_FLOWS"
#define ZORCLIENT_SESSION_PROP_TOPIC_DISPATCH "SESSION_TOPIC_DISPATCH"
#define ZORCLIENT_SESSION_PROP_NO_LOCAL "SESSION_NO_LOCAL"
#define ZORCLIENT_SESSION_PROP_ACK_EVENT_MODE "SESSION_ACK_EVENT_MODE"
#define ZORCLIENT_SESSION_PROP_WEB_TRANSPORT_PROTOCOL "SESSION_WEB_TRANSPORT_PROTOCOL"
#define ZORCLIENT_SESSION_PROP_SSL_PROTOCOL "SESSION_SSL_PROTOCOL"
#define ZORCLIENT_SESSION_PROP_SSL_EXCLUDED_PROTOCOLS "SESSION_SSL_EXCLUDED_PROTOCOLS"
#define ZORCLIENT_SESSION_PROP_MAXIMUM_TLS_PROTOCOL_VERSION "SESSION_MAXIMUM_TLS_PROTOCOL_VERSION"
#define ZORCLIENT_SESSION_PROP_MINIMUM_TLS_PROTOCOL_VERSION "SESSION_MINIMUM_TLS_PROTOCOL_VERSION"
#define ZORCLIENT_SESSION_PROP_SSL_VALIDATE_CERTIFICATE "SESSION_SSL_VALIDATE_CERTIFICATE"
#define ZORCLIENT_SESSION_PROP_SSL_VALIDATE_CERTIFICATE_DATE "SESSION_SSL_VALIDATE_CERTIFICATE_DATE"
#define ZORCLIENT_SESSION_PROP_SSL_VALIDATE_CERTIFICATE_HOST "SESSION_SSL_VALIDATE_CERTIFICATE_HOST"
#define ZORCLIENT_SESSION_PROP_SSL_CIPHER_SUITES "SESSION_SSL_CIPHER_SUITES"
#define ZORCLIENT_SESSION_PROP_SSL_TRUST_STORE_DIR "SESSION_SSL_TRUST_STORE_DIR"
#define ZORCLIENT_SESSION_PROP_SSL_TRUSTED_COMMON_NAME_LIST "SESSION_SSL_TRUSTED_COMMON_NAME_LIST"
#define ZORCLIENT_SESSION_PROP_SSL_CLIENT_CERTIFICATE_FILE "SESSION_SSL_CLIENT_CERTIFICATE_FILE"
#define ZORCLIENT_SESSION_PROP_SSL_CLIENT_PRIVATE_KEY_FILE "SESSION_SSL_CLIENT_PRIVATE_KEY_FILE"
#define ZORCLIENT_SESSION_PROP_SSL_CLIENT_PRIVATE_KEY_FILE_PASSWORD \
    "SESSION_SSL_CLIENT_PRIVATE_KEY_FILE_PASSWORD"
#define ZORCLIENT_SESSION_PROP_SSL_CONNECTION_DOWNGRADE_TO "SESSION_SSL_CONNECTION_DOWNGRADE_TO"
#define ZORCLIENT_SESSION_PROP_AUTHENTICATION_SCHEME "SESSION_AUTHENTICATION_SCHEME"
#define ZORCLIENT_SESSION_PROP_WEB_TRANSPORT_PROTOCOL_LIST "SESSION_WEB_TRANSPORT_PROTOCOL_LIST"
#define ZORCLIENT_SESSION_PROP_TRANSPORT_PROTOCOL_DOWNGRADE_TIMEOUT_MS \
    "SESSION_TRANSPORT_PROTOCOL_DOWNGRADE_TIMEOUT_MS"
#define ZORCLIENT_SESSION_PROP_BIND_IP "SESSION_BIND_IP"
#define ZORCLIENT_SESSION_PROP_GD_RECONNECT_FAIL_ACTION "SESSION_GD_RECONNECT_FAIL_ACTION"
#define ZORCLIENT_SESSION_PROP_OAUTH2_ACCESS_TOKEN "SESSION_OAUTH2_ACCESS_TOKEN"
#define ZORCLIENT_SESSION_PROP_OIDC_ID_TOKEN "SESSION_OIDC_ID_TOKEN"
#define ZORCLIENT_SESSION_PROP_OAUTH2_ISSUER_IDENTIFIER "SESSION_OAUTH2_ISSUER_IDENTIFIER"
#define ZORCLIENT_SESSION_PROP_CONNECT_TIMEOUT_MS "SESSION_CONNECT_TIMEOUT_MS"
#define ZORCLIENT_SESSION_PROP_SUBCONFIRM_TIMEOUT_MS "SESSION_SUBCONFIRM_TIMEOUT_MS"
/* Read only: the session's inbox topic. */
#define ZORCLIENT_SESSION_PROP_REPLY_TO_DEFAULT_DEST "SESSION_REPLY_TO_DEFAULT_DEST"

/* Values of session properties. */
#define ZORCLIENT_SESSION_PROP_ACK_EVENT_MODE_PER_MSG "SESSION_ACK_EVENT_MODE_PER_MSG"
#define ZORCLIENT_SESSION_PROP_ACK_EVENT_MODE_WINDOWED "SESSION_ACK_EVENT_MODE_WINDOWED"
#define ZORCLIENT_SESSION_PROP_AUTHENTICATION_SCHEME_BASIC "AUTHENTICATION_SCHEME_BASIC"
#define ZORCLIENT_SESSION_PROP_AUTHENTICATION_SCHEME_CLIENT_CERTIFICATE \
    "AUTHENTICATION_SCHEME_CLIENT_CERTIFICATE"
#define ZORCLIENT_SESSION_PROP_AUTHENTICATION_SCHEME_TLS_PSK "AUTHENTICATION_SCHEME_TLS_PSK"
#define ZORCLIENT_SESSION_PROP_AUTHENTICATION_SCHEME_GSS_KRB "AUTHENTICATION_SCHEME_GSS_KRB"
#define ZORCLIENT_SESSION_PROP_AUTHENTICATION_SCHEME_OAUTH2 "AUTHENTICATION_SCHEME_OAUTH2"
#define ZORCLIENT_SESSION_PROP_GD_RECONNECT_FAIL_ACTION_AUTO_RETRY \
    "GD_RECONNECT_FAIL_ACTION_AUTO_RETRY"
#define ZORCLIENT_SESSION_PROP_GD_RECONNECT_FAIL_ACTION_DISCONNECT \
    "GD_RECONNECT_FAIL_ACTION_DISCONNECT"
#define ZORCLIENT_SESSION_PROP_SSL_CONNECTION_DOWNGRADE_TO_PLAIN_TEXT "PLAIN_TEXT"

/* Capabilities answered by zorClient_session_isCapable ("1"/"0" in meaning). */
#define ZORCLIENT_SESSION_CAPABILITY_PUB_GUARANTEED "SESSION_CAPABILITY_PUB_GUARANTEED"
#define ZORCLIENT_SESSION_CAPABILITY_SUB_FLOW_GUARANTEED "SESSION_CAPABILITY_SUB_FLOW_GUARANTEED"
#define ZORCLIENT_SESSION_CAPABILITY_TEMP_ENDPOINT "SESSION_CAPABILITY_TEMP_ENDPOINT"
#define ZORCLIENT_SESSION_CAPABILITY_JNDI "SESSION_CAPABILITY_JNDI"
#define ZORCLIENT_SESSION_CAPABILITY_COMPRESSION "SESSION_CAPABILITY_COMPRESSION"
#define ZORCLIENT_SESSION_CAPABILITY_SUPPORTS_XPE_SUBSCRIPTIONS \
    "SESSION_CAPABILITY_SUPPORTS_XPE_SUBSCRIPTIONS"
#define ZORCLIENT_SESSION_CAPABILITY_BROWSER "SESSION_CAPABILITY_BROWSER"
#define ZORCLIENT_SESSION_CAPABILITY_SELECTOR "SESSION_CAPABILITY_SELECTOR"
#define ZORCLIENT_SESSION_CAPABILITY_ENDPOINT_MANAGEMENT "SESSION_CAPABILITY_ENDPOINT_MANAGEMENT"
#define ZORCLIENT_SESSION_CAPABILITY_ENDPOINT_MESSAGE_TTL "SESSION_CAPABILITY_ENDPOINT_MESSAGE_TTL"
#define ZORCLIENT_SESSION_CAPABILITY_QUEUE_SUBSCRIPTIONS "SESSION_CAPABILITY_QUEUE_SUBSCRIPTIONS"
#define ZORCLIENT_SESSION_CAPABILITY_SUBSCRIPTION_MANAGER "SESSION_CAPABILITY_SUBSCRIPTION_MANAGER"
#define ZORCLIENT_SESSION_CAPABILITY_MESSAGE_ELIDING "SESSION_CAPABILITY_MESSAGE_ELIDING"
#define ZORCLIENT_SESSION_CAPABILITY_NO_LOCAL "SESSION_CAPABILITY_NO_LOCAL"
#define ZORCLIENT_SESSION_CAPABILITY_ACTIVE_FLOW_INDICATION \
    "SESSION_CAPABILITY_ACTIVE_FLOW_INDICATION"
#define ZORCLIENT_SESSION_CAPABILITY_PER_TOPIC_SEQUENCE_NUMBERING \
    "SESSION_CAPABILITY_PER_TOPIC_SEQUENCE_NUMBERING"
#define ZORCLIENT_SESSION_CAPABILITY_ENDPOINT_DISCARD_BEHAVIOR \
    "SESSION_CAPABILITY_ENDPOINT_DISCARD_BEHAVIOR"
#define ZORCLIENT_SESSION_CAPABILITY_CUT_THROUGH "SESSION_CAPABILITY_CUT_THROUGH"
#define ZORCLIENT_SESSION_CAPABILITY_TRANSACTED_SESSION "SESSION_CAPABILITY_TRANSACTED_SESSION"
#define ZORCLIENT_SESSION_CAPABILITY_OPENMAMA "SESSION_CAPABILITY_OPENMAMA"
#define ZORCLIENT_SESSION_CAPABILITY_MESSAGE_REPLAY "SESSION_CAPABILITY_MESSAGE_REPLAY"
#define ZORCLIENT_SESSION_CAPABILITY_COMPRESSED_SSL "SESSION_CAPABILITY_COMPRESSED_SSL"
#define ZORCLIENT_SESSION_CAPABILITY_LONG_SELECTORS "SESSION_CAPABILITY_LONG_SELECTORS"
#define ZORCLIENT_SESSION_CAPABILITY_SHARED_SUBSCRIPTIONS "SESSION_CAPABILITY_SHARED_SUBSCRIPTIONS"

/* Capability fields read by zorClient_session_getCapability. */
#define ZORCLIENT_SESSION_PEER_ROUTER_NAME "SESSION_PEER_ROUTER_NAME"           /* string */
#define ZORCLIENT_SESSION_PEER_PLATFORM "SESSION_PEER_PLATFORM"                 /* string */
#define ZORCLIENT_SESSION_PEER_SOFTWARE_DATE "SESSION_PEER_SOFTWARE_DATE"       /* string */
#define ZORCLIENT_SESSION_PEER_SOFTWARE_VERSION "SESSION_PEER_SOFTWARE_VERSION" /* string */
#define ZORCLIENT_SESSION_PEER_PORT_TYPE "SESSION_PEER_PORT_TYPE"               /* string */
#define ZORCLIENT_SESSION_PEER_PORT_SPEED "SESSION_PEER_PORT_SPEED"             /* uint32 */
/* uint32, bytes: */
#define ZORCLIENT_SESSION_CAPABILITY_MAX_GUARANTEED_MSG_SIZE \
    "SESSION_CAPABILITY_MAX_GUARANTEED_MSG_SIZE"
#define ZORCLIENT_SESSION_CAPABILITY_MAX_DIRECT_MSG_SIZE "SESSION_CAPABILITY_MAX_DIRECT_MSG_SIZE"

/* ---------------------------------------------------------------------------------------------
 * Property names: flows and endpoints
 * ------------------------------------------------------------------------------------------- */

#define ZORCLIENT_FLOW_PROP_BIND_NAME "FLOW_BIND_NAME"
#define ZORCLIENT_FLOW_PROP_BIND_ENTITY_ID "FLOW_BIND_ENTITY_ID"
#define ZORCLIENT_FLOW_PROP_BIND_ENTITY_SUB "1" /* the session's own subscriptions */
#define ZORCLIENT_FLOW_PROP_BIND_ENTITY_QUEUE "2"
#define ZORCLIENT_FLOW_PROP_BIND_ENTITY_TE "3"                             /* a topic endpoint */
#define ZORCLIENT_FLOW_PROP_BIND_ENTITY_DURABLE "FLOW_BIND_ENTITY_DURABLE" /* "0": temporary */
#define ZORCLIENT_FLOW_PROP_BIND_BLOCKING "FLOW_BIND_BLOCKING"
#define ZORCLIENT_FLOW_PROP_TOPIC "FLOW_TOPIC"
#define ZORCLIENT_FLOW_PROP_BROWSER "FLOW_BROWSER"
#define ZORCLIENT_FLOW_PROP_NO_LOCAL "FLOW_NO_LOCAL"
#define ZORCLIENT_FLOW_PROP_ACTIVE_FLOW_IND "FLOW_ACTIVE_FLOW_IND"
#define ZORCLIENT_FLOW_PROP_SELECTOR "FLOW_SELECTOR"
#define ZORCLIENT_FLOW_PROP_WINDOWSIZE "FLOW_WINDOWSIZE"       /* 1..255 */
#define ZORCLIENT_FLOW_PROP_ACK_TIMER_MS "FLOW_ACK_TIMER_MS"   /* 0..1500 */
#define ZORCLIENT_FLOW_PROP_ACK_THRESHOLD "FLOW_ACK_THRESHOLD" /* 1..75 percent */
#define ZORCLIENT_FLOW_PROP_ACKMODE "FLOW_ACKMODE"
#define ZORCLIENT_FLOW_PROP_ACKMODE_AUTO "1"
#define ZORCLIENT_FLOW_PROP_ACKMODE_CLIENT "2"
#define ZORCLIENT_FLOW_PROP_MAX_UNACKED_MESSAGES "FLOW_MAX_UNACKED_MESSAGES"
#define ZORCLIENT_FLOW_PROP_FORWARDING_MODE "FLOW_FORWARDING_MODE"
#define ZORCLIENT_FLOW_PROP_FORWARDING_MODE_STORE_AND_FORWARD "1"
#define ZORCLIENT_FLOW_PROP_FORWARDING_MODE_CUT_THROUGH "2"
#define ZORCLIENT_FLOW_PROP_REPLAY_START_LOCATION "FLOW_REPLAY_START_LOCATION"
#define ZORCLIENT_FLOW_PROP_REPLAY_START_LOCATION_BEGINNING "BEGINNING"
#define ZORCLIENT_FLOW_PROP_REPLAY_START_LOCATION_DATE_PREFIX "DATE:"
#define ZORCLIENT_FLOW_PROP_MAX_RECONNECT_TRIES "FLOW_MAX_RECONNECT_TRIES" /* -1 for ever */
#define ZORCLIENT_FLOW_PROP_RECONNECT_RETRY_INTERVAL_MS "FLOW_RECONNECT_RETRY_INTERVAL_MS"
#define ZORCLIENT_FLOW_PROP_REQUIRED_OUTCOME_FAILED "FLOW_REQUIRED_OUTCOME_FAILED"
#define ZORCLIENT_FLOW_PROP_REQUIRED_OUTCOME_REJECTED "FLOW_REQUIRED_OUTCOME_REJECTED"
#define ZORCLIENT_FLOW_PROP_START_STATE "FLOW_START_STATE" /* "0": created stopped */

#define ZORCLIENT_ENDPOINT_PROP_NAME "ENDPOINT_NAME"
#define ZORCLIENT_ENDPOINT_PROP_ID "ENDPOINT_ID"
#define ZORCLIENT_ENDPOINT_PROP_QUEUE "2"
#define ZORCLIENT_ENDPOINT_PROP_TE "3"
#define ZORCLIENT_ENDPOINT_PROP_CLIENT_NAME "4" /* another client's session, by name */
#define ZORCLIENT_ENDPOINT_PROP_ACCESSTYPE "ENDPOINT_ACCESSTYPE"
#define ZORCLIENT_ENDPOINT_PROP_ACCESSTYPE_NONEXCLUSIVE "0"
#define ZORCLIENT_ENDPOINT_PROP_ACCESSTYPE_EXCLUSIVE "1"
#define ZORCLIENT_ENDPOINT_PROP_QUOTA_MB "ENDPOINT_QUOTA_MB"
#define ZORCLIENT_ENDPOINT_PROP_MAXMSG_SIZE "ENDPOINT_MAXMSG_SIZE"
#define ZORCLIENT_ENDPOINT_PROP_PERMISSION "ENDPOINT_PERMISSION"
#define ZORCLIENT_ENDPOINT_PERM_NONE "n"
#define ZORCLIENT_ENDPOINT_PERM_READ_ONLY "r"
#define ZORCLIENT_ENDPOINT_PERM_CONSUME "c"
#define ZORCLIENT_ENDPOINT_PERM_MODIFY_TOPIC "m"
#define ZORCLIENT_ENDPOINT_PERM_DELETE "d"
#define ZORCLIENT_ENDPOINT_PROP_RESPECTS_MSG_TTL "ENDPOINT_RESPECTS_MSG_TTL"
#define ZORCLIENT_ENDPOINT_PROP_DISCARD_BEHAVIOR "ENDPOINT_DISCARD_BEHAVIOR"
#define ZORCLIENT_ENDPOINT_PROP_DISCARD_NOTIFY_SENDER_ON "1"
#define ZORCLIENT_ENDPOINT_PROP_DISCARD_NOTIFY_SENDER_OFF "2"
#define ZORCLIENT_ENDPOINT_PROP_MAXMSG_REDELIVERY "ENDPOINT_MAXMSG_REDELIVERY" /* 0: for ever */

/* ---------------------------------------------------------------------------------------------
 * Property names: cache session
 * ------------------------------------------------------------------------------------------- */

#define ZORCLIENT_CACHESESSION_PROP_CACHE_NAME "CACHESESSION_CACHE_NAME"
#define ZORCLIENT_CACHESESSION_PROP_MAX_MSGS "CACHESESSION_MAX_MSGS"
#define ZORCLIENT_CACHESESSION_PROP_MAX_AGE "CACHESESSION_MAX_AGE" /* seconds */
#define ZORCLIENT_CACHESESSION_PROP_RR_TIMEOUT_MS "CACHESESSION_RR_TIMEOUT_MS"

/* =============================================================================================
 * Process
 * =========================================================================================== */

/* Starts the library for the process. initialLogLevel becomes the filter level of every log
 * category. props_p is the global property array, closed by two nulls, or null:
 * "GLOBAL_DBQUANTA_SIZE_0".."_4" (positive decimal byte sizes up to 2147483647, each larger than
 * the one before; defaults 1024, 4096, 16384, 65536, 262144), "GLOBAL_GSS_KRB_LIB",
 * "GLOBAL_SSL_LIB", "GLOBAL_CRYPTO_LIB" (paths, kept) and any "EMBEDDED_..." key (kept for the
 * embedded broker). Keys of other prefixes are ignored. A bad value fails the call with
 * ZORCLIENT_SUBCODE_PARAM_OUT_OF_RANGE or _PARAM_CONFLICT and an error string naming the key;
 * nothing is changed then. A second call without zorClient_cleanup in between changes nothing
 * and returns ZORCLIENT_OK. Call once, first, before other threads use the library. */
ZORCLIENT_API zorClient_returnCode_t zorClient_initialize(zorClient_log_level_t initialLogLevel,
                                                          zorClient_propertyArray_pt props_p);

/* Stops the library: forgets the global properties and closes a log file set by
 * zorClient_log_setFile (lines go to standard error again). Call last, after every context,
 * session and flow is destroyed and every message freed. zorClient_initialize may follow. */
ZORCLIENT_API zorClient_returnCode_t zorClient_cleanup(void);

/* Fills *info_p with the library's version, build time and build variant: library-owned
 * static texts, never null. Works at any time, also before zorClient_initialize; any thread. */
ZORCLIENT_API zorClient_returnCode_t zorClient_version_get(zorClient_version_info_pt info_p);

/* =============================================================================================
 * Logging
 * =========================================================================================== */

/* Filter level of category ZORCLIENT_LOG_CATEGORY_APP, ZORCLIENT_LOG_NOTICE until changed.
 * Applications test "level <= _zorClient_log_appFilterLevel_g" before formatting a line. Written
 * only by zorClient_initialize and zorClient_log_setFilterLevel; read without a lock. */
ZORCLIENT_API extern zorClient_log_level_t _zorClient_log_appFilterLevel_g;

/* Sends every log line, the library's and the application's, to the file logFileName_p
 * (created, or appended to). Null or "" sends them to standard error again, where they go until
 * a file is set. A file that cannot be opened fails with ZORCLIENT_SUBCODE_OS_ERROR, naming the
 * path and the reason; the output stays where it was. Any thread. */
ZORCLIENT_API zorClient_returnCode_t zorClient_log_setFile(const char* logFileName_p);

/* Sets the filter level of one category, or of all with ZORCLIENT_LOG_CATEGORY_ALL. Category
 * ALL and category APP also set _zorClient_log_appFilterLevel_g. An unknown category or a level
 * outside EMERGENCY..DEBUG fails with ZORCLIENT_SUBCODE_PARAM_OUT_OF_RANGE. Any thread. */
ZORCLIENT_API zorClient_returnCode_t zorClient_log_setFilterLevel(zorClient_log_category_t category,
                                                                  zorClient_log_level_t level);

/* Writes one log line: time (UTC, ISO 8601 with microseconds), level, category, file:line (the
 * file's last path element), and the text from format_p and its printf-style arguments; a
 * trailing line end of the text is dropped. A level above the category's filter level writes
 * nothing. category and level take the zorClient_log_category_t and zorClient_log_level_t
 * values; they are plain ints so that the function fits an int-typed function pointer.
 * Thread-safe: lines of concurrent calls never mix. */
ZORCLIENT_API void _zorClient_log_output_detail(int category, int level, const char* filename_p,
                                                int lineNum, const char* format_p, ...)
    ZORCLIENT_PRINTF_LIKE(5, 6);

/* =============================================================================================
 * Errors and names
 * =========================================================================================== */

/* The calling thread's error info, filled by the last failed call on this thread, and by the
 * library on the context thread before it calls an error event callback. Thread-local storage:
 * never null, valid for the thread's life, overwritten by the thread's next failure. */
ZORCLIENT_API zorClient_errorInfo_pt zorClient_getLastErrorInfo(void);

/* The constant's name of a return code, e.g. "ZORCLIENT_FAIL"; "Unknown return code" for any
 * other value. Static text, never null; any thread. */
ZORCLIENT_API const char* zorClient_returnCodeToString(zorClient_returnCode_t returnCode);

/* The constant's name of a subcode, e.g. "ZORCLIENT_SUBCODE_TIMEOUT"; distinct for every code,
 * stable, so it may be compared as text. "Unknown subcode" for any other value. Static text,
 * never null; any thread. */
ZORCLIENT_API const char* zorClient_subCodeToString(zorClient_subCode_t subCode);

/* The name of a session event without its prefix, e.g. "UP_NOTICE" (the first name where two
 * constants share a value); "Unknown session event" for any other value. Static text, never
 * null; any thread. */
ZORCLIENT_API const char* zorClient_session_eventToString(zorClient_session_event_t sessionEvent);

/* The name of a receive statistic, e.g. "RX_DIRECT_BYTES"; "Unknown receive statistic" for an
 * id outside 0..39. Static text, never null; any thread. */
ZORCLIENT_API const char* zorClient_rxStatToString(zorClient_stats_rx rxStat);

/* The name of a transmit statistic, e.g. "TX_TOTAL_DATA_MSGS"; "Unknown transmit statistic" for
 * an id outside 0..27. Static text, never null; any thread. */
ZORCLIENT_API const char* zorClient_txStatToString(zorClient_stats_tx txStat);

/* =============================================================================================
 * Context
 * =========================================================================================== */

/* Creates a context: an event queue and the thread rules of its sessions. props_p: "CONTEXT_..."
 * keys (max sessions, max flows, own thread, affinity, busy poll). funcInfo_p: must be all zero
 * (the library manages its own descriptors and timers); funcInfoSize = its sizeof. On success
 * *context_p is the new context, else null. With "CONTEXT_CREATE_THREAD" "1" the library runs
 * the event loop on a thread of its own and the application does not call processEvents. */
ZORCLIENT_API zorClient_returnCode_t
zorClient_context_create(zorClient_propertyArray_pt props_p, zorClient_opaqueContext_pt* context_p,
                         zorClient_context_createFuncInfo_t* funcInfo_p, size_t funcInfoSize);

/* Waits for events of the context for at most 50 ms and runs every callback that is due: receive
 * callbacks, session, flow and cache events, dispatcher callbacks, one after another. Returns
 * ZORCLIENT_OK also when nothing came, so that the caller can look at its stop flag; fails only
 * for an invalid context. Call from one thread only, in a loop. */
ZORCLIENT_API zorClient_returnCode_t
zorClient_context_processEvents(zorClient_opaqueContext_pt context);

/* Destroys the context (and stops its own thread, if it has one) and sets *context_p to null.
 * Destroy its sessions first (sessions left behind are destroyed with it); call after the
 * thread that ran processEvents has stopped, and not from inside one of its callbacks. */
ZORCLIENT_API zorClient_returnCode_t
zorClient_context_destroy(zorClient_opaqueContext_pt* context_p);

/* Runs callback_p(transactedSession, user_p) soon, on the thread that dispatches the transacted
 * session's flows (its context's thread), and returns at once. For commits and rollbacks that
 * another thread wants done where the flow's messages are delivered. transactedSession may also
 * be a session handle cast to this type: the callback then runs on that session's context
 * thread and gets the same handle back. Callbacks of a session destroyed before they ran do not
 * run. Any thread. */
ZORCLIENT_API zorClient_returnCode_t _zorClient_messageDispatcher_invokeUserCallback(
    zorClient_opaqueTransactedSession_pt transactedSession,
    zorClient_messageDispatcher_userCallbackFunc_t callback_p, void* user_p);

/* =============================================================================================
 * Session: life, properties, capabilities, statistics
 * =========================================================================================== */

/* Creates a session on a context; it does not connect. props_p: "SESSION_..." keys; "SESSION_HOST"
 * chooses the broker ("" or "embedded" for the embedded broker "default", "embedded://NAME" for
 * another instance). funcInfo_p: the event and receive callbacks with their user pointers
 * (rxInfo zero); funcInfoSize = its sizeof. On success *session_p is the new session, else null.
 * Any thread; the context's thread may already be in processEvents. */
ZORCLIENT_API zorClient_returnCode_t
zorClient_session_create(zorClient_propertyArray_pt props_p, zorClient_opaqueContext_pt context,
                         zorClient_opaqueSession_pt* session_p,
                         zorClient_session_createFuncInfo_t* funcInfo_p, size_t funcInfoSize);

/* Connects. With "SESSION_CONNECT_BLOCKING" "1" (default) it blocks until the session is up and
 * returns ZORCLIENT_OK; with "0" it returns ZORCLIENT_IN_PROGRESS. In both cases an UP_NOTICE
 * event follows success; a failed non-blocking connect gives CONNECT_FAILED_ERROR. May be called
 * again on a session that went down, also from inside its event callback. */
ZORCLIENT_API zorClient_returnCode_t zorClient_session_connect(zorClient_opaqueSession_pt session);

/* Disconnects gracefully and blocks until done; no DOWN_ERROR event follows. Statistics stay
 * readable and the session's flows can still be destroyed afterwards. */
ZORCLIENT_API zorClient_returnCode_t
zorClient_session_disconnect(zorClient_opaqueSession_pt session);

/* Destroys the session with everything still attached (flows, transacted sessions, cache
 * sessions) and sets *session_p to null. When it returns no callback of the session runs or will
 * run (called from inside one of the session's own callbacks: none after that callback). Any
 * thread, also the context thread inside a callback. */
ZORCLIENT_API zorClient_returnCode_t
zorClient_session_destroy(zorClient_opaqueSession_pt* session_p);

/* Copies the value of session property name_p as NUL-terminated text into buffer_p of
 * bufferSize bytes. Also "SESSION_CLIENT_NAME" (generated when none was given) and
 * "SESSION_REPLY_TO_DEFAULT_DEST" (the session's inbox topic). A value that does not fit fails
 * with ZORCLIENT_SUBCODE_INSUFFICIENT_SPACE. Cheap; any thread. */
ZORCLIENT_API zorClient_returnCode_t zorClient_session_getProperty(
    zorClient_opaqueSession_pt session, const char* name_p, char* buffer_p, size_t bufferSize);

/* Changes properties of a session, connected or not ("SESSION_CLIENT_NAME", tokens, ...).
 * Synchronous: blocks until done and emits no event. */
ZORCLIENT_API zorClient_returnCode_t zorClient_session_modifyProperties(
    zorClient_opaqueSession_pt session, zorClient_propertyArray_pt props_p);

/* 1 when the broker in use offers capability name_p ("SESSION_CAPABILITY_..."), else 0; 0 too
 * (with the error info set) for an unknown name or an invalid session. Any thread. */
ZORCLIENT_API zorClient_bool_t zorClient_session_isCapable(zorClient_opaqueSession_pt session,
                                                           const char* name_p);

/* Reads capability field name_p ("SESSION_PEER_..." texts as ZORCLIENT_STRING, numbers as
 * ZORCLIENT_UINT32) into *field_p; fieldSize = sizeof(zorClient_field_t). Strings live as long
 * as the session. */
ZORCLIENT_API zorClient_returnCode_t
zorClient_session_getCapability(zorClient_opaqueSession_pt session, const char* name_p,
                                zorClient_field_t* field_p, size_t fieldSize);

/* Reads one receive statistic of the session into *value_p. The session's counters hold what
 * its destroyed flows counted, not what live flows count (read those with
 * zorClient_flow_getRxStat). Counters survive a disconnect. Any thread. */
ZORCLIENT_API zorClient_returnCode_t zorClient_session_getRxStat(zorClient_opaqueSession_pt session,
                                                                 zorClient_stats_rx rxStat,
                                                                 zorClient_stats_t* value_p);

/* Reads one transmit statistic of the session into *value_p. Any thread. */
ZORCLIENT_API zorClient_returnCode_t zorClient_session_getTxStat(zorClient_opaqueSession_pt session,
                                                                 zorClient_stats_tx txStat,
                                                                 zorClient_stats_t* value_p);

/* Copies the first arraySize receive statistics (at most ZORCLIENT_STATS_RX_NUM_STATS) into
 * values_p, in id order. Any thread. */
ZORCLIENT_API zorClient_returnCode_t zorClient_session_getRxStats(
    zorClient_opaqueSession_pt session, zorClient_stats_t* values_p, zorClient_uint32_t arraySize);

/* Copies the first arraySize transmit statistics (at most ZORCLIENT_STATS_TX_NUM_STATS) into
 * values_p, in id order. Any thread. */
ZORCLIENT_API zorClient_returnCode_t zorClient_session_getTxStats(
    zorClient_opaqueSession_pt session, zorClient_stats_t* values_p, zorClient_uint32_t arraySize);

/* Sets every statistic of the session and of its flows to zero. Any thread. */
ZORCLIENT_API zorClient_returnCode_t
zorClient_session_clearStats(zorClient_opaqueSession_pt session);

/* Simulates the loss of the session's transport; the reconnect machinery then runs on the
 * context thread (RECONNECTING_NOTICE, then RECONNECTED_NOTICE or DOWN_ERROR). Only sets a flag
 * and wakes the context: async-signal-safe, may be called from a signal handler. */
ZORCLIENT_API zorClient_returnCode_t
_zorClient_session_forceFailure(zorClient_opaqueSession_pt session);

/* Writes the guaranteed publisher's state (window, unacknowledged messages) to the library log
 * at the given level. Any thread. */
ZORCLIENT_API zorClient_returnCode_t
_zorClient_session_logRelPub(zorClient_opaqueSession_pt session, zorClient_log_level_t level);

/* =============================================================================================
 * Session: sending
 * =========================================================================================== */

/* Sends msg (direct, persistent or non-persistent by its delivery mode) to its destination.
 * Everything needed is copied before the call returns: the message, and memory its pointer
 * setters referenced, may be reused at once. One copy is made per send, shared by all receivers.
 * The message may be one that was received (sent on again, or back as a reply).
 * A direct message to a topic goes to every session with a matching subscription, once per
 * session; with deliver-to-one to one of them (see "SESSION_SUBSCRIBER_LOCAL_PRIORITY") plus
 * those whose matching subscription asked for every deliver-to-one message. A receiver that
 * falls behind by more than its buffers ("SESSION_SOCKET_RCV_BUF_SIZE" + "SESSION_BUFFER_SIZE")
 * loses messages; its next message carries the discard indication.
 * While the session reconnects, "SESSION_SEND_BLOCKING" "1" waits for the reconnect, up to
 * "SESSION_WRITE_TIMEOUT_MS" (then ZORCLIENT_SUBCODE_TIMEOUT); "0" returns
 * ZORCLIENT_WOULD_BLOCK and a CAN_SEND event follows when the session can send again. A send
 * from inside a callback of the session's context never waits: it returns ZORCLIENT_WOULD_BLOCK
 * too. A session that is not connected fails with ZORCLIENT_SUBCODE_SESSION_NOT_ESTABLISHED.
 * A message without destination fails with ZORCLIENT_SUBCODE_PARAM_NULL_PTR, a malformed topic
 * with ZORCLIENT_SUBCODE_INVALID_TOPIC_SYNTAX or _TOPIC_TOO_LARGE; what the broker cannot carry
 * (the embedded broker: queue destinations, guaranteed delivery modes) fails with
 * ZORCLIENT_SUBCODE_NOT_SUPPORTED. Thread-safe: sends on one session from several threads are
 * atomic with respect to each other. */
ZORCLIENT_API zorClient_returnCode_t zorClient_session_sendMsg(zorClient_opaqueSession_pt session,
                                                               zorClient_opaqueMsg_pt msg);

/* Sends msgArray_p[0..numberOfMessages-1] in order (at most ZORCLIENT_SEND_MULTIPLE_MAX_MSGS),
 * as zorClient_session_sendMsg would; *numberOfMessagesWritten_p tells how many went. The first
 * message that cannot go ends the call with its result (ZORCLIENT_WOULD_BLOCK or a failure);
 * the ones before it were sent. With blocking sends all are written when it returns
 * ZORCLIENT_OK. */
ZORCLIENT_API zorClient_returnCode_t zorClient_session_sendMultipleMsg(
    zorClient_opaqueSession_pt session, zorClient_opaqueMsg_pt* msgArray_p,
    zorClient_uint32_t numberOfMessages, zorClient_uint32_t* numberOfMessagesWritten_p);

/* Sends msg as a request and blocks up to timeoutMs (at least 1) for the reply. The request
 * carries the session's inbox ("SESSION_REPLY_TO_DEFAULT_DEST") as reply-to and a correlation of
 * the library's; msg itself is not changed. A reply is a message marked as reply
 * (zorClient_msg_setAsReplyMsg) made from the received request: the request sent back to its
 * reply-to, or zorClient_session_sendReply. On ZORCLIENT_OK *reply_p is the reply, owned by the
 * caller (free it with zorClient_msg_free). No reply in time: ZORCLIENT_INCOMPLETE with
 * ZORCLIENT_SUBCODE_TIMEOUT; a reply that comes later is discarded and counted in
 * ZORCLIENT_STATS_RX_REPLY_MSG_DISCARD. Any thread; from the context thread of the replier's
 * session it can only time out, since the replier cannot run. */
ZORCLIENT_API zorClient_returnCode_t
zorClient_session_sendRequest(zorClient_opaqueSession_pt session, zorClient_opaqueMsg_pt msg,
                              zorClient_opaqueMsg_pt* reply_p, zorClient_uint32_t timeoutMs);

/* Sends reply as the reply to request, a received message: to the request's reply-to, marked
 * as reply, with the request's correlation, so that it ends the requester's
 * zorClient_session_sendRequest. reply itself is not changed; it may be request itself. A
 * request without reply-to fails with ZORCLIENT_SUBCODE_PARAM_CONFLICT. Otherwise as
 * zorClient_session_sendMsg. */
ZORCLIENT_API zorClient_returnCode_t zorClient_session_sendReply(zorClient_opaqueSession_pt session,
                                                                 zorClient_opaqueMsg_pt request,
                                                                 zorClient_opaqueMsg_pt reply);

/* =============================================================================================
 * Session: subscriptions, endpoints, sub-objects
 * =========================================================================================== */

/* Adds a direct topic subscription with flags (ZORCLIENT_SUBSCRIBE_FLAGS_...). Topics are text
 * levels separated by "/" (1 to 255 bytes, no empty level); in a subscription a level "*"
 * matches any one level, a level ending in "*" ("ab*") any one level with that prefix, and a
 * last level ">" one or more further levels. A malformed topic fails with
 * ZORCLIENT_SUBCODE_INVALID_TOPIC_SYNTAX or _TOPIC_TOO_LARGE.
 * Flags: WAITFORCONFIRM returns once this and all earlier subscriptions are confirmed (with
 * "SESSION_SUBSCRIBE_BLOCKING" "0" the call otherwise returns ZORCLIENT_IN_PROGRESS);
 * RX_ALL_DELIVER_TO_ONE receives every deliver-to-one message that matches; REQUEST_CONFIRM
 * emits a SUBSCRIPTION_OK event with info_p = the topic; LOCAL_DISPATCH_ONLY alone changes
 * nothing (it is meant for dispatch entries). A session receives a message once however many of
 * its subscriptions match; the consumer ids of a received message are the 1-based numbers, in
 * subscription order, of the subscriptions that matched. An existing subscription is success
 * while "SESSION_IGNORE_DUP_SUBSCRIPTION_ERROR" is "1", else fails with
 * ZORCLIENT_SUBCODE_SUBSCRIPTION_ALREADY_PRESENT. With "SESSION_REAPPLY_SUBSCRIPTIONS" "1"
 * subscriptions are applied again after a reconnect (and after a disconnect and connect), and may
 * be added while reconnecting. ZORCLIENT_NOT_READY (ZORCLIENT_SUBCODE_SESSION_NOT_ESTABLISHED) when
 * the session is not in a state to subscribe. Thread-safe; may be called from inside callbacks. */
ZORCLIENT_API zorClient_returnCode_t zorClient_session_topicSubscribeExt(
    zorClient_opaqueSession_pt session, zorClient_subscribeFlags_t flags, const char* topic_p);

/* Removes a direct topic subscription; flags as for subscribe. Removing one that is not there is
 * success while "SESSION_IGNORE_DUP_SUBSCRIPTION_ERROR" is "1", else
 * ZORCLIENT_SUBCODE_SUBSCRIPTION_NOT_FOUND. A topic that dispatch entries also subscribe stays at
 * the broker until the last of them goes. Thread-safe. */
ZORCLIENT_API zorClient_returnCode_t zorClient_session_topicUnsubscribeExt(
    zorClient_opaqueSession_pt session, zorClient_subscribeFlags_t flags, const char* topic_p);

/* Adds a dispatch entry: messages the session receives whose topic matches topic_p go to
 * dispatch_p->callback_p with dispatch_p->user_p instead of the session's receive callback.
 * Entries with the same callback and user pointer share one record: a message matching several
 * of its topics reaches it once; a message matching entries of several records reaches each
 * (each with a message of its own). The topic is also subscribed at the broker, unless flags has
 * LOCAL_DISPATCH_ONLY (then only messages that other subscriptions bring in are steered).
 * dispatch_p->dispatchType must be ZORCLIENT_DISPATCH_TYPE_CALLBACK. correlationTag_p comes back
 * as correlation_p of the SUBSCRIPTION_OK event. Otherwise as zorClient_session_topicSubscribeExt;
 * "SESSION_TOPIC_DISPATCH" is not needed. */
ZORCLIENT_API zorClient_returnCode_t zorClient_session_topicSubscribeWithDispatch(
    zorClient_opaqueSession_pt session, zorClient_subscribeFlags_t flags, const char* topic_p,
    zorClient_session_rxMsgDispatchFuncInfo_t* dispatch_p, void* correlationTag_p);

/* Removes a dispatch entry added by zorClient_session_topicSubscribeWithDispatch (same topic,
 * callback and user pointer), and the subscription with the last entry of the topic. */
ZORCLIENT_API zorClient_returnCode_t zorClient_session_topicUnsubscribeWithDispatch(
    zorClient_opaqueSession_pt session, zorClient_subscribeFlags_t flags, const char* topic_p,
    zorClient_session_rxMsgDispatchFuncInfo_t* dispatch_p, void* correlationTag_p);

/* Adds topic subscription topic_p to an endpoint named by props_p: "ENDPOINT_ID" "2" and
 * "ENDPOINT_NAME" a queue (durable or temporary), or "ENDPOINT_ID" "4" and the name of another
 * client, whose session then gets the subscription. correlationTag_p: reserved, null. */
ZORCLIENT_API zorClient_returnCode_t zorClient_session_endpointTopicSubscribe(
    zorClient_propertyArray_pt props_p, zorClient_opaqueSession_pt session,
    zorClient_subscribeFlags_t flags, const char* topic_p, void* correlationTag_p);

/* Removes what zorClient_session_endpointTopicSubscribe added. */
ZORCLIENT_API zorClient_returnCode_t zorClient_session_endpointTopicUnsubscribe(
    zorClient_propertyArray_pt props_p, zorClient_opaqueSession_pt session,
    zorClient_subscribeFlags_t flags, const char* topic_p, void* correlationTag_p);

/* Creates a durable endpoint: "ENDPOINT_NAME", "ENDPOINT_ID" ("2" queue, "3" topic endpoint) and
 * "ENDPOINT_..." properties (access type, quota, maximum message size, permission, respect TTL,
 * discard behaviour, maximum redelivery). flags: ZORCLIENT_PROVISION_FLAGS_...; with
 * WAITFORCONFIRM it blocks and emits no event; with IGNORE_EXIST_ERRORS an existing endpoint is
 * ZORCLIENT_OK. correlationTag_p: reserved, null. queueNetworkName_p: if not null, receives the
 * endpoint's network name (qnnSize bytes). */
ZORCLIENT_API zorClient_returnCode_t zorClient_session_endpointProvision(
    zorClient_propertyArray_pt props_p, zorClient_opaqueSession_pt session,
    zorClient_provisionFlags_t flags, void* correlationTag_p, char* queueNetworkName_p,
    size_t qnnSize);

/* Deletes a durable endpoint ("ENDPOINT_NAME", "ENDPOINT_ID") with its messages; its flows go
 * down. A missing endpoint fails with ZORCLIENT_SUBCODE_UNKNOWN_QUEUE_NAME or _UNKNOWN_TE_NAME.
 * flags as for provisioning. correlationTag_p: reserved, null. */
ZORCLIENT_API zorClient_returnCode_t zorClient_session_endpointDeprovision(
    zorClient_propertyArray_pt props_p, zorClient_opaqueSession_pt session,
    zorClient_provisionFlags_t flags, void* correlationTag_p);

/* Removes the subscription of durable topic endpoint dteName_p and its messages. Returns
 * ZORCLIENT_OK when the request is taken; the outcome follows as a TE_UNSUBSCRIBE_OK or
 * TE_UNSUBSCRIBE_ERROR event. correlationTag_p: reserved, null. */
ZORCLIENT_API zorClient_returnCode_t zorClient_session_dteUnsubscribe(
    zorClient_opaqueSession_pt session, const char* dteName_p, void* correlationTag_p);

/* Writes a topic name unique to this session, for a temporary topic endpoint, into buffer_p
 * (bufferSize bytes, ZORCLIENT_TOPIC_MAX_SIZE is always enough). */
ZORCLIENT_API zorClient_returnCode_t zorClient_session_createTemporaryTopicName(
    zorClient_opaqueSession_pt session, char* buffer_p, size_t bufferSize);

/* Creates a flow and binds it: to a queue or topic endpoint ("FLOW_BIND_NAME",
 * "FLOW_BIND_ENTITY_ID", "FLOW_TOPIC"), a new temporary endpoint (no bind name,
 * "FLOW_BIND_ENTITY_DURABLE" "0"), or as a browser ("FLOW_BROWSER" "1"); other "FLOW_..." and
 * "ENDPOINT_..." keys set acknowledgement, window, selector, replay, reconnect and start state.
 * funcInfo_p: flow event and receive callbacks (rxInfo zero); funcInfoSize = its sizeof. With
 * "FLOW_BIND_BLOCKING" "1" (default) it blocks until bound and returns ZORCLIENT_OK; with "0"
 * it returns ZORCLIENT_IN_PROGRESS. An UP_NOTICE flow event follows every successful bind;
 * BIND_FAILED_ERROR a failed non-blocking one. On success *flow_p is the flow, else null.
 * Thread-safe. */
ZORCLIENT_API zorClient_returnCode_t
zorClient_session_createFlow(zorClient_propertyArray_pt props_p, zorClient_opaqueSession_pt session,
                             zorClient_opaqueFlow_pt* flow_p,
                             zorClient_flow_createFuncInfo_t* funcInfo_p, size_t funcInfoSize);

/* Creates a transacted session on a connected session; the library names it. props_p: none
 * needed (null). rfu_p: reserved, null. On success *transactedSession_p is it, else null. */
ZORCLIENT_API zorClient_returnCode_t zorClient_session_createTransactedSession(
    zorClient_propertyArray_pt props_p, zorClient_opaqueSession_pt session,
    zorClient_opaqueTransactedSession_pt* transactedSession_p, void* rfu_p);

/* Creates a cache session on a session, connected or not. props_p: "CACHESESSION_CACHE_NAME"
 * (required), "_MAX_MSGS", "_MAX_AGE", "_RR_TIMEOUT_MS"; closed by two nulls. On success
 * *cacheSession_p is it, else null. */
ZORCLIENT_API zorClient_returnCode_t zorClient_session_createCacheSession(
    zorClient_propertyArray_pt props_p, zorClient_opaqueSession_pt session,
    zorClient_opaqueCacheSession_pt* cacheSession_p);

/* =============================================================================================
 * Flow
 * =========================================================================================== */

/* Unbinds and destroys the flow and sets *flow_p to null. Unacknowledged messages go back to
 * the endpoint; a temporary endpoint goes away. Messages taken from the flow stay valid. Works
 * after the session disconnected. When it returns no callback of the flow runs or will run.
 * Any thread but the context thread. */
ZORCLIENT_API zorClient_returnCode_t zorClient_flow_destroy(zorClient_opaqueFlow_pt* flow_p);

/* Resumes delivery to the application. Idempotent; any thread, also inside callbacks. */
ZORCLIENT_API zorClient_returnCode_t zorClient_flow_start(zorClient_opaqueFlow_pt flow);

/* Stops delivery to the application; messages wait at the endpoint. Idempotent; any thread. */
ZORCLIENT_API zorClient_returnCode_t zorClient_flow_stop(zorClient_opaqueFlow_pt flow);

/* Acknowledges guaranteed message msgId (from zorClient_msg_getMsgId) on a client-acknowledged
 * flow: the endpoint removes it. On a browser flow it deletes the message from the queue. Acks
 * may come in any order, from any thread. */
ZORCLIENT_API zorClient_returnCode_t zorClient_flow_sendAck(zorClient_opaqueFlow_pt flow,
                                                            zorClient_msgId_t msgId);

/* Settles message msgId with an outcome: ACCEPTED as zorClient_flow_sendAck; FAILED delivers it
 * again; REJECTED removes it. FAILED and REJECTED need "FLOW_REQUIRED_OUTCOME_FAILED" /
 * "_REJECTED" "1" on the flow, else ZORCLIENT_SUBCODE_OUTCOME_NOT_ENABLED. Any thread. */
ZORCLIENT_API zorClient_returnCode_t zorClient_flow_settleMsg(zorClient_opaqueFlow_pt flow,
                                                              zorClient_msgId_t msgId,
                                                              zorClient_msgOutcome_t outcome);

/* Fills *destination_p with the flow's endpoint (destSize = its sizeof): for a temporary queue
 * its generated name, usable to publish to and to subscribe topics on. dest lives as long as
 * the flow. */
ZORCLIENT_API zorClient_returnCode_t zorClient_flow_getDestination(
    zorClient_opaqueFlow_pt flow, zorClient_destination_t* destination_p, size_t destSize);

/* Copies flow property name_p as NUL-terminated text into buffer_p (bufferSize bytes); for
 * "FLOW_BIND_NAME" of a temporary topic endpoint its generated name. */
ZORCLIENT_API zorClient_returnCode_t zorClient_flow_getProperty(zorClient_opaqueFlow_pt flow,
                                                                const char* name_p, char* buffer_p,
                                                                size_t bufferSize);

/* Reads one receive statistic of the flow into *value_p. Any thread. */
ZORCLIENT_API zorClient_returnCode_t zorClient_flow_getRxStat(zorClient_opaqueFlow_pt flow,
                                                              zorClient_stats_rx rxStat,
                                                              zorClient_stats_t* value_p);

/* Writes the flow's statistics to the library log at the given level. */
ZORCLIENT_API zorClient_returnCode_t zorClient_flow_logStats(zorClient_opaqueFlow_pt flow,
                                                             zorClient_log_level_t level);

/* Writes the flow's internal state (binding, window, unacknowledged messages) to the library
 * log at the given level. */
ZORCLIENT_API zorClient_returnCode_t _zorClient_flow_logState(zorClient_opaqueFlow_pt flow,
                                                              zorClient_log_level_t level);

/* Adds topic_p to the flow's queue (unless flags has LOCAL_DISPATCH_ONLY) and hands the flow's
 * messages that match it to dispatch_p->callback_p instead of the flow's receive callback.
 * correlationTag_p: reserved, null. */
ZORCLIENT_API zorClient_returnCode_t zorClient_flow_topicSubscribeWithDispatch(
    zorClient_opaqueFlow_pt flow, zorClient_subscribeFlags_t flags, const char* topic_p,
    zorClient_flow_rxMsgDispatchFuncInfo_t* dispatch_p, void* correlationTag_p);

/* Removes what zorClient_flow_topicSubscribeWithDispatch added. */
ZORCLIENT_API zorClient_returnCode_t zorClient_flow_topicUnsubscribeWithDispatch(
    zorClient_opaqueFlow_pt flow, zorClient_subscribeFlags_t flags, const char* topic_p,
    zorClient_flow_rxMsgDispatchFuncInfo_t* dispatch_p, void* correlationTag_p);

/* =============================================================================================
 * Transacted session
 * =========================================================================================== */

/* Copies the library-given name of the transacted session (unique, shorter than
 * ZORCLIENT_TRANSACTED_SESSION_NAME_MAX_SIZE) into buffer_p of bufferSize bytes. */
ZORCLIENT_API zorClient_returnCode_t zorClient_transactedSession_getSessionName(
    zorClient_opaqueTransactedSession_pt transactedSession, char* buffer_p, size_t bufferSize);

/* Stages msg in the open transaction: nobody sees it before the commit, a rollback discards it.
 * Copies as zorClient_session_sendMsg does. Thread-safe. */
ZORCLIENT_API zorClient_returnCode_t zorClient_transactedSession_sendMsg(
    zorClient_opaqueTransactedSession_pt transactedSession, zorClient_opaqueMsg_pt msg);

/* Creates a flow whose consumption belongs to the transaction (acknowledged by commit,
 * redelivered after rollback); arguments as zorClient_session_createFlow, without "FLOW_ACKMODE".
 */
ZORCLIENT_API zorClient_returnCode_t zorClient_transactedSession_createFlow(
    zorClient_propertyArray_pt props_p, zorClient_opaqueTransactedSession_pt transactedSession,
    zorClient_opaqueFlow_pt* flow_p, zorClient_flow_createFuncInfo_t* funcInfo_p,
    size_t funcInfoSize);

/* Commits the staged sends and the consumed messages; blocks for the broker's answer. Returns
 * ZORCLIENT_OK, ZORCLIENT_ROLLBACK (the broker rolled it back), or ZORCLIENT_FAIL with
 * ZORCLIENT_SUBCODE_COMMIT_STATUS_UNKNOWN or _TIMEOUT when the outcome is not known. Any thread,
 * also the context thread inside a callback. */
ZORCLIENT_API zorClient_returnCode_t
zorClient_transactedSession_commit(zorClient_opaqueTransactedSession_pt transactedSession);

/* Rolls back: discards the staged sends and delivers the consumed messages again (redelivered
 * flag set). Blocks; any thread, also inside a callback. */
ZORCLIENT_API zorClient_returnCode_t
zorClient_transactedSession_rollback(zorClient_opaqueTransactedSession_pt transactedSession);

/* Rolls back an open transaction, destroys the transacted session and its flows, and sets
 * *transactedSession_p to null. */
ZORCLIENT_API zorClient_returnCode_t
zorClient_transactedSession_destroy(zorClient_opaqueTransactedSession_pt* transactedSession_p);

/* =============================================================================================
 * Cache session
 * =========================================================================================== */

/* Asks the cache for the messages it keeps on topic_p, with the application's requestId.
 * cacheFlags: ZORCLIENT_CACHEREQUEST_FLAGS_...; subscribeFlags apply to the topic subscription
 * the request adds (unless NO_SUBSCRIBE). Cached messages arrive through the session's receive
 * callback, marked as cache messages with requestId. With NOWAIT_REPLY: returns
 * ZORCLIENT_IN_PROGRESS and later calls callback_p(session, info, user_p) once on the context
 * thread. Without it (callback_p may be null): blocks, and the result is the outcome: ZORCLIENT_OK,
 * ZORCLIENT_INCOMPLETE with subcode CACHE_NO_DATA, CACHE_SUSPECT_DATA, CACHE_TIMEOUT or
 * CACHE_REQUEST_CANCELLED, or ZORCLIENT_FAIL. ZORCLIENT_NOT_READY before the session is up. */
ZORCLIENT_API zorClient_returnCode_t zorClient_cacheSession_sendCacheRequest(
    zorClient_opaqueCacheSession_pt cacheSession, const char* topic_p, zorClient_uint64_t requestId,
    zorClient_cacheSession_eventCallbackFunc_t callback_p, void* user_p,
    zorClient_cacheRequestFlags_t cacheFlags, zorClient_subscribeFlags_t subscribeFlags);

/* As zorClient_cacheSession_sendCacheRequest, limited to topic sequence numbers
 * minSeq..maxSeq; -1 leaves that end open. */
ZORCLIENT_API zorClient_returnCode_t zorClient_cacheSession_sendCacheRequestSequence(
    zorClient_opaqueCacheSession_pt cacheSession, const char* topic_p, zorClient_uint64_t requestId,
    zorClient_cacheSession_eventCallbackFunc_t callback_p, void* user_p,
    zorClient_cacheRequestFlags_t cacheFlags, zorClient_subscribeFlags_t subscribeFlags,
    zorClient_int64_t minSeq, zorClient_int64_t maxSeq);

/* Ends every outstanding request of the cache session with ZORCLIENT_INCOMPLETE and
 * ZORCLIENT_SUBCODE_CACHE_REQUEST_CANCELLED. */
ZORCLIENT_API zorClient_returnCode_t
zorClient_cacheSession_cancelCacheRequests(zorClient_opaqueCacheSession_pt cacheSession);

/* Cancels outstanding requests, destroys the cache session and sets *cacheSession_p to null. */
ZORCLIENT_API zorClient_returnCode_t
zorClient_cacheSession_destroy(zorClient_opaqueCacheSession_pt* cacheSession_p);

#ifdef __cplusplus
}
#endif

#endif /* ZORCLIENT_H */
