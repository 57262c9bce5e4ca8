// The table of store keys: the single source of each key's type and default.
// setDefaultProperties() and the generic key look-up read it, so adding a key
// is one row here plus its constant in CliProperties.h.
#include <algorithm>
#include <iterator>
#include <string_view>

#include "common/CliProperties.h"

namespace zorvane::pubsub {

namespace {

using P = CliProperties;
using T = CliPropertyType;

constexpr CliPropertyKey boolKey(const char* name, bool value) {
    return {name, T::BOOLEAN, true, value, 0, 0.0, ""};
}
constexpr CliPropertyKey int32Key(const char* name, INT32 value) {
    return {name, T::INTEGER, true, false, value, 0.0, ""};
}
constexpr CliPropertyKey int64Key(const char* name, INT64 value) {
    return {name, T::INT64, true, false, value, 0.0, ""};
}
constexpr CliPropertyKey doubleKey(const char* name, double value) {
    return {name, T::DOUBLE, true, false, 0, value, ""};
}
constexpr CliPropertyKey stringKey(const char* name, const char* value) {
    return {name, T::STRING, true, false, 0, 0.0, value};
}
// An empty string or an empty container of the given type.
constexpr CliPropertyKey emptyKey(const char* name, CliPropertyType type) {
    return {name, type, true, false, 0, 0.0, ""};
}
// No default: the store starts without the key.
constexpr CliPropertyKey absentKey(const char* name, CliPropertyType type) {
    return {name, type, false, false, 0, 0.0, ""};
}

constexpr CliPropertyKey KEY_TABLE_s[] = {
    // Message content
    boolKey(P::SDM_AUTO_GEN_FLAG, false),
    emptyKey(P::SDM_FILE_LIST, T::VECTOR),
    boolKey(P::MSG_DMQ_ELIGIBLE, false),
    int64Key(P::MSG_TTL, -1),
    boolKey(P::MSG_ELIDING_ELIGIBLE, false),
    boolKey(P::WANT_MSG_DUMP, false),
    absentKey(P::WANT_MSG_DUMP_TIME_STAMP, T::BOOLEAN),
    absentKey(P::MSG_DUMP_BUFFER_SIZE, T::INTEGER),
    boolKey(P::WANT_UNIQUE_BINARY_ATTACH, false),
    emptyKey(P::MSG_OBJ_TYPE_PATTERN, T::STRING),
    boolKey(P::MSG_OBJ_TYPE_CHECK, false),
    emptyKey(P::XML_PAYLOAD_SIZE_LIST, T::INT_VECTOR),
    emptyKey(P::BINARY_ATTACH_SIZE_LIST, T::INT_VECTOR),
    emptyKey(P::BINARY_ATTACH_SIZE_WEIGHTS_LIST, T::DOUBLE_VECTOR),
    absentKey(P::RANDOM_ATTACH_SIZE_MIN, T::INT64),
    absentKey(P::RANDOM_ATTACH_SIZE_MAX, T::INT64),
    emptyKey(P::PUBLISH_FILE_LIST, T::VECTOR),
    emptyKey(P::PUBLISH_ATTACH_LIST, T::VECTOR),
    absentKey(P::JSON_DOC_FILE_LIST, T::VECTOR),
    absentKey(P::CUSTOM_PROPERTIES_LIST, T::VECTOR),
    absentKey(P::HTTP_CONTENT_ENCODING, T::STRING),
    absentKey(P::HTTP_CONTENT_TYPE, T::STRING),
    absentKey(P::PARTITION_KEY_LIST, T::VECTOR),
    // Publishing
    int32Key(P::PUBLISH_END_DELAY_IN_SEC, 2),
    doubleKey(P::PUBLISH_RATE, 1.0),
    int64Key(P::NUM_MSGS_TO_PUBLISH, 0),
    boolKey(P::WANT_TCP_NODELAY, true),
    emptyKey(P::PUB_TOPICS_ARRAY, T::VECTOR_VECTOR),
    emptyKey(P::PUB_TOPICS_WEIGHTS_ARRAY, T::VECTOR_DOUBLE_VECTOR),
    emptyKey(P::PUB_QUEUES_LIST, T::VECTOR),
    emptyKey(P::PUB_QUEUES_WEIGHTS_LIST, T::DOUBLE_VECTOR),
    boolKey(P::WANT_RESPONSE_CHECK, false),
    boolKey(P::WANT_STOP_ON_ERROR, false),
    int32Key(P::PUB_SEND_VECTOR, 0),
    int32Key(P::RATE_CHECK_INTERVAL, 10),
    int32Key(P::PUB_COS, -1),
    boolKey(P::PUB_TO_ONE, false),
    int32Key(P::PUB_STREAM_ID_OFFSET, -1),
    int32Key(P::PUB_ORDER_OFFSET, 0),
    absentKey(P::PUB_ORDER_OFFSETS, T::MAP_INT_INT),
    doubleKey(P::BURST_DURATION, 0.0),
    doubleKey(P::INTER_BURST_DURATION, 0.0),
    boolKey(P::MSG_RATE_IS_MAX, false),
    boolKey(P::WANT_REPLY_TOPIC, false),
    emptyKey(P::PUB_REPLY_POSTFIX, T::STRING),
    emptyKey(P::PUB_PRIORITY_LIST, T::INT_VECTOR),
    absentKey(P::WANT_MIX_MSGS_PROPS, T::BOOLEAN),
    int32Key(P::TRANSACTION_REDELIVERY_LIMIT, -1),
    // Subscribing, client acknowledgement and binding
    boolKey(P::WANT_SUB_ADDR, false),
    boolKey(P::WANT_REMOVE_SUBSCRIBER, true),
    boolKey(P::WANT_SUBSCRIPTION_MEMORY, true),
    int32Key(P::SLOW_SUB_DELAY_IN_MS, 0),
    int32Key(P::SLOW_SUB_DELAY_COUNT, -1),
    int32Key(P::SUB_RATE_INTERVAL, 1),
    absentKey(P::SUB_ORDER_OFFSETS, T::VECTOR_MAP_INT32_UINT64),
    absentKey(P::SUB_ORDER_OFFSETS_PRINT_RESUMING_ARG_AT_EXIT, T::BOOLEAN),
    boolKey(P::WANT_ADD_SUBSCRIPTIONS, false),
    int32Key(P::SUB_MSG_QUEUE_DEPTH, 0),
    int32Key(P::NUM_TEMP_QUEUE_ENDPOINTS, 0),
    int32Key(P::NUM_TEMP_TOPIC_ENDPOINTS, 0),
    emptyKey(P::SUBSCRIPTION_CLIENT_NAME, T::STRING),
    boolKey(P::WANT_CLIENT_ACK, false),
    boolKey(P::WANT_SUB_MSG_QUEUE_FLUSH, false),
    boolKey(P::SUB_MSG_QUEUE_REVERSE, false),
    int32Key(P::CLIENT_ACK_SKIP_NUM, 0),
    int32Key(P::CLIENT_ACK_RANDOM_DEPTH, 0),
    absentKey(P::WANT_CLIENT_ACK_THREAD, T::BOOLEAN),
    absentKey(P::WANT_CUT_THROUGH_PERSISTENCE, T::BOOLEAN),
    doubleKey(P::CLIENT_ACK_RATE_LIMIT, 0.0),
    boolKey(P::WANT_PRIORITY_STATS, false),
    absentKey(P::BIND_RATE, T::INTEGER),
    absentKey(P::WANT_NON_BLOCKING_BIND, T::BOOLEAN),
    absentKey(P::FLOW_FLAP_COUNT, T::INTEGER),
    absentKey(P::WAIT_AFTER_BIND, T::BOOLEAN),
    absentKey(P::SETTLEMENT_PATTERN, T::STRING),
    absentKey(P::REQUIRED_SETTLEMENTS, T::STRING),
    // Client sessions
    int32Key(P::NUM_CLIENTS, 1),
    int32Key(P::NUM_PUBS_PER_SESSION, 1),
    absentKey(P::CLIENT_IP_ADDR, T::STRING),
    emptyKey(P::CLIENT_USERNAME, T::STRING),
    emptyKey(P::CLIENT_NAME_PREFIX, T::STRING),
    emptyKey(P::CLIENT_PASSWORD, T::STRING),
    emptyKey(P::CLIENT_PASSWORD_FILE, T::STRING),
    int32Key(P::CLIENT_PORT, -1),
    emptyKey(P::CLIENT_VPN, T::STRING),
    int32Key(P::CLIENT_DTO_LOCAL_PRIORITY, -1),
    int32Key(P::CLIENT_DTO_NETWORK_PRIORITY, -1),
    int32Key(P::SOCKET_RCV_BUF_SIZE, 0),
    int32Key(P::SOCKET_SND_BUF_SIZE, 0),
    int32Key(P::SESSION_BUF_SIZE, -1),
    int32Key(P::GLOBAL_DBQUANTA0_SIZE, -1),
    int32Key(P::BLOCK_WRITE_TIMEOUT, -1),
    int32Key(P::KEEP_ALIVE_INT_MS, -1),
    int32Key(P::KEEP_ALIVE_LIMIT, 10),
    int32Key(P::RECONNECT_INTERVAL, 3000),
    int32Key(P::COMPRESSION_LEVEL, -1),
    int32Key(P::PAYLOAD_COMPRESSION_LEVEL, -1),
    boolKey(P::CHANGE_CLIENT_NAMES_FLAG, false),
    int64Key(P::CONTEXT_AFFINITY_MASK, -1),
    int32Key(P::PUBTHREAD_AFFINITY_MASK, -1),
    int32Key(P::SMOOTHTHREAD_AFFINITY_MASK, -1),
    stringKey(P::CLIENT_MODE, "sink"),
    boolKey(P::WANT_CONTEXT_PER_CLIENT, false),
    int32Key(P::NUM_CLIENTS_PER_CONTEXT, -1),
    boolKey(P::WANT_DISPATCH_SESSION, false),
    boolKey(P::WANT_NON_BLOCKING_CONNECT, false),
    boolKey(P::WANT_NO_LOCAL, false),
    emptyKey(P::TRANSPORT_PROTOCOL, T::STRING),
    boolKey(P::WANT_REPLICATION_RECONNECT, false),
    int32Key(P::CHURN_DISCONNECT_RATE, 0),
    int32Key(P::CHURN_DISCONNECT_INTERVAL, 0),
    emptyKey(P::WEB_TRANSPORT_PROTOCOL_LIST, T::STRING),
    emptyKey(P::TRANSPORT_PROTOCOL_DOWNGRADE_TIMEOUT_MS, T::STRING),
    emptyKey(P::SESSION_BIND_IP, T::STRING),
    absentKey(P::WANT_CLIENT_TASK_THREAD, T::BOOLEAN),
    absentKey(P::EXTRA_PROPS_LIST, T::VECTOR),
    // Authentication and SSL
    emptyKey(P::AUTHENTICATION_SCHEME, T::STRING),
    emptyKey(P::SSL_PROTOCOL, T::STRING),
    emptyKey(P::SSL_EXCLUDED_PROTOCOLS, T::STRING),
    absentKey(P::SSL_MAX_PROTOCOL_VERSION, T::STRING),
    absentKey(P::SSL_MIN_PROTOCOL_VERSION, T::STRING),
    boolKey(P::SSL_VALIDATE_CERTIFICATE, false),
    boolKey(P::SSL_VALIDATE_CERTIFICATE_DATE, false),
    absentKey(P::SSL_VALIDATE_CERTIFICATE_HOSTNAME, T::BOOLEAN),
    emptyKey(P::SSL_CIPHER_SUITES, T::STRING),
    emptyKey(P::SSL_TRUST_STORE_DIR, T::STRING),
    emptyKey(P::SSL_TRUSTED_COMMON_NAME_LIST, T::STRING),
    emptyKey(P::SSL_CLIENT_CERTIFICATE_FILE, T::STRING),
    emptyKey(P::SSL_CLIENT_PRIVATE_KEY_FILE, T::STRING),
    emptyKey(P::SSL_CLIENT_PRIVATE_KEY_FILE_PASSWORD, T::STRING),
    emptyKey(P::SSL_CONNECTION_DOWNGRADE_TO, T::STRING),
    emptyKey(P::GLOBAL_GSS_KRB_LIB, T::STRING),
    emptyKey(P::GLOBAL_SSL_LIB, T::STRING),
    emptyKey(P::GLOBAL_CRYPTO_LIB, T::STRING),
    absentKey(P::OAUTH_ACCESS_TOKEN, T::STRING),
    absentKey(P::OIDC_ID_TOKEN, T::STRING),
    absentKey(P::OAUTH_ISSUER_ID, T::STRING),
    // Measurement
    boolKey(P::WANT_LATENCY_MEASUREMENT, false),
    boolKey(P::WANT_LATENCY_FULL_STATS, true),
    int32Key(P::LATENCY_FIRST_TO_LAST_FANOUT, 0),
    int32Key(P::LATENCY_PRECISION, -1),
    doubleKey(P::LATENCY_WARMUP_IN_SEC, 0.5),
    absentKey(P::WANT_LATENCY_PRINT_PER_MSG, T::BOOLEAN),
    boolKey(P::WANT_PER_SUB_THRU_STATS, false),
    boolKey(P::WANT_PER_PRI_THRU_STATS, false),
    boolKey(P::WANT_PAYLOAD_CHECK, false),
    boolKey(P::WANT_ORDER_CHECK_PUBLISHER_STREAM_NUMBER, false),
    boolKey(P::WANT_ORDER_CHECK_TOPIC_SEQUENCE_NUMBER, false),
    boolKey(P::WANT_ORDER_MEMORY, false),
    boolKey(P::WANT_UD, false),
    boolKey(P::WANT_CID_STATS, false),
    boolKey(P::WANT_FULL_MSG_INSPECTION, false),
    boolKey(P::WANT_SUBSCRIPTION_RATE_STATS, false),
    boolKey(P::WANT_SMOOTH_PUB_CALC_LAT, false),
    absentKey(P::WANT_DI_STATS, T::BOOLEAN),
    boolKey(P::WANT_USER_PROP_TOOL_DATA, false),
    // Assured delivery
    int32Key(P::AD_PUB_WINDOW_SIZE, -1),
    int32Key(P::AD_PUB_ACK_TIMEOUT, -1),
    int32Key(P::AD_SUB_WINDOW_SIZE, -1),
    int32Key(P::AD_SUB_ACK_TIMEOUT, -1),
    int32Key(P::AD_SUB_WINDOW_THRESHOLD, -1),
    int32Key(P::AD_PUB_MAX_RESEND, -1),
    boolKey(P::WANT_ACTIVE_FLOW_INDICATION, false),
    int32Key(P::AD_TRANSACTION_SIZE, 0),
    int32Key(P::AD_TRANSACTION_ROLLBACK_INTERVAL, 0),
    int32Key(P::AD_TRANSACTION_IDLE_TIME, 0),
    emptyKey(P::AD_ACK_EVENT_MODE, T::STRING),
    absentKey(P::AD_ACK_IMMEDIATELY_INTERVAL, T::INTEGER),
    boolKey(P::AD_WANT_PUB_ACK_ORDER_CHECK, true),
    boolKey(P::AD_WANT_REPLAY, false),
    emptyKey(P::AD_REPLAY_DATE, T::STRING),
    emptyKey(P::AD_REPLAY_MSG_ID, T::STRING),
    int32Key(P::AD_FLOW_RECONNECT_ATTEMPTS, -1),
    int32Key(P::AD_FLOW_RECONNECT_INTERVAL_IN_MSECS, -1),
    // Cache
    emptyKey(P::CACHE_PROP_NAME, T::STRING),
    int32Key(P::CACHE_PROP_MAX_MSGS_PER_TOPIC, -1),
    int32Key(P::CACHE_PROP_MAX_AGE, -1),
    int32Key(P::CACHE_PROP_TIMEOUT_IN_MSEC, -1),
    boolKey(P::CACHE_WANT_REQUESTS_ON_SUBSCRIBE, false),
    doubleKey(P::CACHE_REQ_MSG_RATE, 1.0),
    int64Key(P::CACHE_NUM_REQ, 0),
    emptyKey(P::CACHE_LIVE_DATA_ACTION, T::STRING),
    int64Key(P::CACHE_REQ_MIN_SEQ, -1),
    int64Key(P::CACHE_REQ_MAX_SEQ, -1),
    boolKey(P::CACHE_REQ_WAIT_FOR_CONFIRM, false),
    // Randomization, queue browsing and endpoint provisioning
    boolKey(P::RANDOMIZATION_MESSAGE_ORDER_FLAG, false),
    int64Key(P::RANDOMIZATION_SEED, 0),
    doubleKey(P::RANDOMIZATION_ATTACHMENT_SIZE_JITTER_FACTOR, 0.0),
    absentKey(P::RANDOMIZATION_MESSAGE_ATTACHMENT_CONTENTS, T::BOOLEAN),
    boolKey(P::WANT_QUEUE_BROWSER, false),
    int32Key(P::QB_DELETE_FREQUENCY, -1),
    int32Key(P::QB_MSG_BUFFER_SIZE, -1),
    boolKey(P::WANT_PROVISIONED_ENDPOINT, false),
    emptyKey(P::PE_PERMISSION, T::STRING),
    int32Key(P::PE_ACCESS_TYPE, -1),
    emptyKey(P::PE_QUOTA_MB, T::STRING),
    int32Key(P::PE_MAXMSG_SIZE, -1),
    int32Key(P::PE_RESPECT_TTL, -1),
    int32Key(P::PE_DISCARD_NOTIFY_SENDER, -1),
    int32Key(P::PE_MAX_MSG_REDELIVERY, -1),
    // Process, diagnostics and threads
    boolKey(P::WANT_VERBOSE, false),
    int64Key(P::WANT_KERNEL_INTERRUPTS_DEBUG, -1),
    boolKey(P::PRINT_VERSION_AND_EXIT, false),
    boolKey(P::WANT_QUIET, false),
    int32Key(P::RETRY_COUNT, 3),
    emptyKey(P::RECONNECT_FAIL_ACTION, T::STRING),
    int32Key(P::SIGALRM_INTERVAL_IN_US, 0),
    boolKey(P::WANT_SIGALRM_SESSION_ACTION, false),
    emptyKey(P::LOG_LEVEL, T::STRING),
    emptyKey(P::LOG_FILE, T::STRING),
    absentKey(P::WANT_API_STATS, T::BOOLEAN),
    boolKey(P::WANT_TRACE_DECODE_CHECK, false),
    absentKey(P::WANT_CONTEXT_CREATE_THREAD, T::BOOLEAN),
    absentKey(P::CONTEXT_THREAD_AFFINITY_LIST, T::STRING),
};

// A key in two rows would get two defaults and live in two maps; catch that
// when the table is built rather than at run time.
constexpr bool keysAreUnique() {
    constexpr size_t count = sizeof(KEY_TABLE_s) / sizeof(KEY_TABLE_s[0]);
    for (size_t i = 0; i < count; ++i) {
        for (size_t j = i + 1; j < count; ++j) {
            if (std::string_view(KEY_TABLE_s[i].name_mp) == KEY_TABLE_s[j].name_mp) {
                return false;
            }
        }
    }
    return true;
}
static_assert(keysAreUnique(), "a key appears twice in the key table");

}  // namespace

std::span<const CliPropertyKey> CliProperties::keyTable() {
    return KEY_TABLE_s;
}

const CliPropertyKey* CliProperties::findKey(std::string_view key) {
    const auto* found =
        std::find_if(std::begin(KEY_TABLE_s), std::end(KEY_TABLE_s),
                     [key](const CliPropertyKey& row) { return key == row.name_mp; });
    return found == std::end(KEY_TABLE_s) ? nullptr : found;
}

}  // namespace zorvane::pubsub
