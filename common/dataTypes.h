// Shared scalar types, enums and limits used across the tool.
#pragma once

#include <pthread.h>

#include <cstdint>

namespace zorvane::pubsub {

using INT8 = std::int8_t;
using UINT16 = std::uint16_t;
using INT32 = std::int32_t;
using UINT32 = std::uint32_t;
using INT64 = std::int64_t;
using UINT64 = std::uint64_t;

// POSIX primitives with default attributes; see OS for the wrappers.
using mutex_t = pthread_mutex_t;
using condition_t = pthread_cond_t;

// Element type of the argument vector handed to the option parser.
using charPtr32 = char*;

enum PubSubMessageType {
    PUBSUB_MSG_TYPE_NON_PERSISTENT = 0,
    PUBSUB_MSG_TYPE_PERSISTENT = 1,
    PUBSUB_MSG_TYPE_DIRECT = 2,
};

enum PubSubMessageObjectType {
    PUBSUB_MSG_OBJ_TYPE_NONE = 0,
    PUBSUB_MSG_OBJ_TYPE_BYTES = 1,
    PUBSUB_MSG_OBJ_TYPE_TEXT = 2,
    PUBSUB_MSG_OBJ_TYPE_STREAM = 3,
    PUBSUB_MSG_OBJ_TYPE_MAP = 4,
};

enum PubSubCosType {
    PUBSUB_COS_NO = -1,
    PUBSUB_COS_1 = 1,
    PUBSUB_COS_2 = 2,
    PUBSUB_COS_3 = 3,
};

enum SubscriptionType {
    SUBSCRIPTION_TYPE_UNKNOWN = 0,
    SUBSCRIPTION_TYPE_XPE = 1,
    SUBSCRIPTION_TYPE_TOPIC = 2,
    SUBSCRIPTION_TYPE_QUEUE = 3,
};

// Durable and temporary topic and queue endpoints.
enum EndpointType {
    ENDPOINT_TYPE_UNKNOWN = 0,
    ENDPOINT_TYPE_DTE = 1,
    ENDPOINT_TYPE_TTE = 2,
    ENDPOINT_TYPE_DQE = 3,
    ENDPOINT_TYPE_TQE = 4,
};

// Structured message ids. Ids below PUBSUB_SDM_ID_USER_DEF_BASE name the
// canned catalogue; from it on, user descriptions. The id travels as the
// first byte of a message's user data.
constexpr int PUBSUB_SDM_ID_NULL = -1;
constexpr int PUBSUB_SDM_ID_ALL = 0;
constexpr int PUBSUB_SDM_ID_MIN = 1;
constexpr int PUBSUB_SDM_ID_MAX = 21;
constexpr int PUBSUB_SDM_ID_USER_DEF_BASE = 50;

// Most entries in one property array handed to the messaging library.
constexpr int ZCORE_MAX_PROPS = 100;
// Most messages in one vectored send.
constexpr int PUB_SEND_VECTOR_MAX_SIZE = 50;
// A client index that stands for every client of the collection.
constexpr int ALL_CLIENTS_INDEX = -1;

}  // namespace zorvane::pubsub
