#include "common/CliProperties.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <map>
#include <set>
#include <string>
#include <vector>

namespace zorvane::pubsub {
namespace {

using ::testing::ExitedWithCode;
using ::testing::StrEq;

// Every store key with the type and default users rely on, written out here
// on purpose rather than read from the production table, so that a wrong
// type or default in either one shows up. KEY expects the string to equal the
// identifier; RENAMED_KEY names the string explicitly.
struct KeyRow {
    const char* constant;
    const char* expectedName;
    const char* type;
    const char* defaultValue;  // "absent": not written; "empty": "" or empty list
};
#define KEY(id, type, def) \
    { CliProperties::id, #id, type, def }
#define RENAMED_KEY(id, name, type, def) \
    { CliProperties::id, name, type, def }

const KeyRow KEY_ROWS[] = {
    // Message content
    KEY(SDM_AUTO_GEN_FLAG, "bool", "false"),
    KEY(SDM_FILE_LIST, "list of string", "empty"),
    KEY(MSG_DMQ_ELIGIBLE, "bool", "false"),
    KEY(MSG_TTL, "int64", "-1"),
    KEY(MSG_ELIDING_ELIGIBLE, "bool", "false"),
    KEY(WANT_MSG_DUMP, "bool", "false"),
    KEY(WANT_MSG_DUMP_TIME_STAMP, "bool", "absent"),
    KEY(MSG_DUMP_BUFFER_SIZE, "int32", "absent"),
    KEY(WANT_UNIQUE_BINARY_ATTACH, "bool", "false"),
    KEY(MSG_OBJ_TYPE_PATTERN, "string", "empty"),
    KEY(MSG_OBJ_TYPE_CHECK, "bool", "false"),
    KEY(XML_PAYLOAD_SIZE_LIST, "list of int32", "empty"),
    KEY(BINARY_ATTACH_SIZE_LIST, "list of int32", "empty"),
    KEY(BINARY_ATTACH_SIZE_WEIGHTS_LIST, "list of double", "empty"),
    KEY(RANDOM_ATTACH_SIZE_MIN, "int64", "absent"),
    KEY(RANDOM_ATTACH_SIZE_MAX, "int64", "absent"),
    KEY(PUBLISH_FILE_LIST, "list of string", "empty"),
    KEY(PUBLISH_ATTACH_LIST, "list of string", "empty"),
    KEY(JSON_DOC_FILE_LIST, "list of string", "absent"),
    KEY(CUSTOM_PROPERTIES_LIST, "list of string", "absent"),
    KEY(HTTP_CONTENT_ENCODING, "string", "absent"),
    KEY(HTTP_CONTENT_TYPE, "string", "absent"),
    KEY(PARTITION_KEY_LIST, "list of string", "absent"),
    // Publishing
    KEY(PUBLISH_END_DELAY_IN_SEC, "int32", "2"),
    KEY(PUBLISH_RATE, "double", "1.0"),
    KEY(NUM_MSGS_TO_PUBLISH, "int64", "0"),
    KEY(WANT_TCP_NODELAY, "bool", "true"),
    KEY(PUB_TOPICS_ARRAY, "list of list of string", "empty"),
    KEY(PUB_TOPICS_WEIGHTS_ARRAY, "list of list of double", "empty"),
    KEY(PUB_QUEUES_LIST, "list of string", "empty"),
    KEY(PUB_QUEUES_WEIGHTS_LIST, "list of double", "empty"),
    KEY(WANT_RESPONSE_CHECK, "bool", "false"),
    KEY(WANT_STOP_ON_ERROR, "bool", "false"),
    KEY(PUB_SEND_VECTOR, "int32", "0"),
    KEY(RATE_CHECK_INTERVAL, "int32", "10"),
    KEY(PUB_COS, "int32", "-1"),
    KEY(PUB_TO_ONE, "bool", "false"),
    KEY(PUB_STREAM_ID_OFFSET, "int32", "-1"),
    KEY(PUB_ORDER_OFFSET, "int32", "0"),
    KEY(PUB_ORDER_OFFSETS, "map of int32 to int32", "absent"),
    KEY(BURST_DURATION, "double", "0.0"),
    KEY(INTER_BURST_DURATION, "double", "0.0"),
    KEY(MSG_RATE_IS_MAX, "bool", "false"),
    KEY(WANT_REPLY_TOPIC, "bool", "false"),
    KEY(PUB_REPLY_POSTFIX, "string", "empty"),
    KEY(PUB_PRIORITY_LIST, "list of int32", "empty"),
    KEY(WANT_MIX_MSGS_PROPS, "bool", "absent"),
    KEY(TRANSACTION_REDELIVERY_LIMIT, "int32", "-1"),
    // Subscribing, client acknowledgement and binding
    RENAMED_KEY(WANT_SUB_ADDR, "WANT_SUBSCRIBER_ADDR", "bool", "false"),
    KEY(WANT_REMOVE_SUBSCRIBER, "bool", "true"),
    KEY(WANT_SUBSCRIPTION_MEMORY, "bool", "true"),
    KEY(SLOW_SUB_DELAY_IN_MS, "int32", "0"),
    KEY(SLOW_SUB_DELAY_COUNT, "int32", "-1"),
    KEY(SUB_RATE_INTERVAL, "int32", "1"),
    KEY(SUB_ORDER_OFFSETS, "list of map of int32 to uint64", "absent"),
    KEY(SUB_ORDER_OFFSETS_PRINT_RESUMING_ARG_AT_EXIT, "bool", "absent"),
    KEY(WANT_ADD_SUBSCRIPTIONS, "bool", "false"),
    KEY(SUB_MSG_QUEUE_DEPTH, "int32", "0"),
    KEY(NUM_TEMP_QUEUE_ENDPOINTS, "int32", "0"),
    KEY(NUM_TEMP_TOPIC_ENDPOINTS, "int32", "0"),
    KEY(SUBSCRIPTION_CLIENT_NAME, "string", "empty"),
    KEY(WANT_CLIENT_ACK, "bool", "false"),
    KEY(WANT_SUB_MSG_QUEUE_FLUSH, "bool", "false"),
    KEY(SUB_MSG_QUEUE_REVERSE, "bool", "false"),
    KEY(CLIENT_ACK_SKIP_NUM, "int32", "0"),
    KEY(CLIENT_ACK_RANDOM_DEPTH, "int32", "0"),
    KEY(WANT_CLIENT_ACK_THREAD, "bool", "absent"),
    KEY(WANT_CUT_THROUGH_PERSISTENCE, "bool", "absent"),
    KEY(CLIENT_ACK_RATE_LIMIT, "double", "0.0"),
    KEY(WANT_PRIORITY_STATS, "bool", "false"),
    KEY(BIND_RATE, "int32", "absent"),
    KEY(WANT_NON_BLOCKING_BIND, "bool", "absent"),
    KEY(FLOW_FLAP_COUNT, "int32", "absent"),
    KEY(WAIT_AFTER_BIND, "bool", "absent"),
    KEY(SETTLEMENT_PATTERN, "string", "absent"),
    KEY(REQUIRED_SETTLEMENTS, "string", "absent"),
    // Client sessions
    KEY(NUM_CLIENTS, "int32", "1"),
    KEY(NUM_PUBS_PER_SESSION, "int32", "1"),
    KEY(CLIENT_IP_ADDR, "string", "absent"),
    KEY(CLIENT_USERNAME, "string", "empty"),
    KEY(CLIENT_NAME_PREFIX, "string", "empty"),
    KEY(CLIENT_PASSWORD, "string", "empty"),
    KEY(CLIENT_PASSWORD_FILE, "string", "empty"),
    KEY(CLIENT_PORT, "int32", "-1"),
    KEY(CLIENT_VPN, "string", "empty"),
    KEY(CLIENT_DTO_LOCAL_PRIORITY, "int32", "-1"),
    KEY(CLIENT_DTO_NETWORK_PRIORITY, "int32", "-1"),
    KEY(SOCKET_RCV_BUF_SIZE, "int32", "0"),
    KEY(SOCKET_SND_BUF_SIZE, "int32", "0"),
    KEY(SESSION_BUF_SIZE, "int32", "-1"),
    RENAMED_KEY(GLOBAL_DBQUANTA0_SIZE, "GLOBAL_QUANTA0_SIZE", "int32", "-1"),
    KEY(BLOCK_WRITE_TIMEOUT, "int32", "-1"),
    KEY(KEEP_ALIVE_INT_MS, "int32", "-1"),
    KEY(KEEP_ALIVE_LIMIT, "int32", "10"),
    KEY(RECONNECT_INTERVAL, "int32", "3000"),
    KEY(COMPRESSION_LEVEL, "int32", "-1"),
    KEY(PAYLOAD_COMPRESSION_LEVEL, "int32", "-1"),
    KEY(CHANGE_CLIENT_NAMES_FLAG, "bool", "false"),
    KEY(CONTEXT_AFFINITY_MASK, "int64", "-1"),
    KEY(PUBTHREAD_AFFINITY_MASK, "int32", "-1"),
    KEY(SMOOTHTHREAD_AFFINITY_MASK, "int32", "-1"),
    KEY(CLIENT_MODE, "string", "sink"),
    KEY(WANT_CONTEXT_PER_CLIENT, "bool", "false"),
    KEY(NUM_CLIENTS_PER_CONTEXT, "int32", "-1"),
    KEY(WANT_DISPATCH_SESSION, "bool", "false"),
    KEY(WANT_NON_BLOCKING_CONNECT, "bool", "false"),
    KEY(WANT_NO_LOCAL, "bool", "false"),
    KEY(TRANSPORT_PROTOCOL, "string", "empty"),
    KEY(WANT_REPLICATION_RECONNECT, "bool", "false"),
    KEY(CHURN_DISCONNECT_RATE, "int32", "0"),
    KEY(CHURN_DISCONNECT_INTERVAL, "int32", "0"),
    KEY(WEB_TRANSPORT_PROTOCOL_LIST, "string", "empty"),
    KEY(TRANSPORT_PROTOCOL_DOWNGRADE_TIMEOUT_MS, "string", "empty"),
    KEY(SESSION_BIND_IP, "string", "empty"),
    KEY(WANT_CLIENT_TASK_THREAD, "bool", "absent"),
    KEY(EXTRA_PROPS_LIST, "list of string", "absent"),
    // Authentication and SSL
    KEY(AUTHENTICATION_SCHEME, "string", "empty"),
    KEY(SSL_PROTOCOL, "string", "empty"),
    KEY(SSL_EXCLUDED_PROTOCOLS, "string", "empty"),
    KEY(SSL_MAX_PROTOCOL_VERSION, "string", "absent"),
    KEY(SSL_MIN_PROTOCOL_VERSION, "string", "absent"),
    KEY(SSL_VALIDATE_CERTIFICATE, "bool", "false"),
    KEY(SSL_VALIDATE_CERTIFICATE_DATE, "bool", "false"),
    KEY(SSL_VALIDATE_CERTIFICATE_HOSTNAME, "bool", "absent"),
    KEY(SSL_CIPHER_SUITES, "string", "empty"),
    KEY(SSL_TRUST_STORE_DIR, "string", "empty"),
    KEY(SSL_TRUSTED_COMMON_NAME_LIST, "string", "empty"),
    KEY(SSL_CLIENT_CERTIFICATE_FILE, "string", "empty"),
    KEY(SSL_CLIENT_PRIVATE_KEY_FILE, "string", "empty"),
    KEY(SSL_CLIENT_PRIVATE_KEY_FILE_PASSWORD, "string", "empty"),
    KEY(SSL_CONNECTION_DOWNGRADE_TO, "string", "empty"),
    KEY(GLOBAL_GSS_KRB_LIB, "string", "empty"),
    KEY(GLOBAL_SSL_LIB, "string", "empty"),
    KEY(GLOBAL_CRYPTO_LIB, "string", "empty"),
    KEY(OAUTH_ACCESS_TOKEN, "string", "absent"),
    KEY(OIDC_ID_TOKEN, "string", "absent"),
    KEY(OAUTH_ISSUER_ID, "string", "absent"),
    // Measurement
    KEY(WANT_LATENCY_MEASUREMENT, "bool", "false"),
    KEY(WANT_LATENCY_FULL_STATS, "bool", "true"),
    KEY(LATENCY_FIRST_TO_LAST_FANOUT, "int32", "0"),
    KEY(LATENCY_PRECISION, "int32", "-1"),
    KEY(LATENCY_WARMUP_IN_SEC, "double", "0.5"),
    KEY(WANT_LATENCY_PRINT_PER_MSG, "bool", "absent"),
    KEY(WANT_PER_SUB_THRU_STATS, "bool", "false"),
    KEY(WANT_PER_PRI_THRU_STATS, "bool", "false"),
    KEY(WANT_PAYLOAD_CHECK, "bool", "false"),
    KEY(WANT_ORDER_CHECK_PUBLISHER_STREAM_NUMBER, "bool", "false"),
    KEY(WANT_ORDER_CHECK_TOPIC_SEQUENCE_NUMBER, "bool", "false"),
    KEY(WANT_ORDER_MEMORY, "bool", "false"),
    KEY(WANT_UD, "bool", "false"),
    KEY(WANT_CID_STATS, "bool", "false"),
    KEY(WANT_FULL_MSG_INSPECTION, "bool", "false"),
    KEY(WANT_SUBSCRIPTION_RATE_STATS, "bool", "false"),
    KEY(WANT_SMOOTH_PUB_CALC_LAT, "bool", "false"),
    KEY(WANT_DI_STATS, "bool", "absent"),
    KEY(WANT_USER_PROP_TOOL_DATA, "bool", "false"),
    // Assured delivery
    KEY(AD_PUB_WINDOW_SIZE, "int32", "-1"),
    KEY(AD_PUB_ACK_TIMEOUT, "int32", "-1"),
    KEY(AD_SUB_WINDOW_SIZE, "int32", "-1"),
    KEY(AD_SUB_ACK_TIMEOUT, "int32", "-1"),
    KEY(AD_SUB_WINDOW_THRESHOLD, "int32", "-1"),
    KEY(AD_PUB_MAX_RESEND, "int32", "-1"),
    KEY(WANT_ACTIVE_FLOW_INDICATION, "bool", "false"),
    KEY(AD_TRANSACTION_SIZE, "int32", "0"),
    KEY(AD_TRANSACTION_ROLLBACK_INTERVAL, "int32", "0"),
    KEY(AD_TRANSACTION_IDLE_TIME, "int32", "0"),
    KEY(AD_ACK_EVENT_MODE, "string", "empty"),
    KEY(AD_ACK_IMMEDIATELY_INTERVAL, "int32", "absent"),
    KEY(AD_WANT_PUB_ACK_ORDER_CHECK, "bool", "true"),
    KEY(AD_WANT_REPLAY, "bool", "false"),
    KEY(AD_REPLAY_DATE, "string", "empty"),
    KEY(AD_REPLAY_MSG_ID, "string", "empty"),
    KEY(AD_FLOW_RECONNECT_ATTEMPTS, "int32", "-1"),
    KEY(AD_FLOW_RECONNECT_INTERVAL_IN_MSECS, "int32", "-1"),
    // Cache
    KEY(CACHE_PROP_NAME, "string", "empty"),
    KEY(CACHE_PROP_MAX_MSGS_PER_TOPIC, "int32", "-1"),
    KEY(CACHE_PROP_MAX_AGE, "int32", "-1"),
    KEY(CACHE_PROP_TIMEOUT_IN_MSEC, "int32", "-1"),
    KEY(CACHE_WANT_REQUESTS_ON_SUBSCRIBE, "bool", "false"),
    KEY(CACHE_REQ_MSG_RATE, "double", "1.0"),
    KEY(CACHE_NUM_REQ, "int64", "0"),
    KEY(CACHE_LIVE_DATA_ACTION, "string", "empty"),
    KEY(CACHE_REQ_MIN_SEQ, "int64", "-1"),
    KEY(CACHE_REQ_MAX_SEQ, "int64", "-1"),
    KEY(CACHE_REQ_WAIT_FOR_CONFIRM, "bool", "false"),
    // Randomization, queue browsing and endpoint provisioning
    KEY(RANDOMIZATION_MESSAGE_ORDER_FLAG, "bool", "false"),
    KEY(RANDOMIZATION_SEED, "int64", "0"),
    KEY(RANDOMIZATION_ATTACHMENT_SIZE_JITTER_FACTOR, "double", "0.0"),
    KEY(RANDOMIZATION_MESSAGE_ATTACHMENT_CONTENTS, "bool", "absent"),
    KEY(WANT_QUEUE_BROWSER, "bool", "false"),
    KEY(QB_DELETE_FREQUENCY, "int32", "-1"),
    KEY(QB_MSG_BUFFER_SIZE, "int32", "-1"),
    KEY(WANT_PROVISIONED_ENDPOINT, "bool", "false"),
    KEY(PE_PERMISSION, "string", "empty"),
    KEY(PE_ACCESS_TYPE, "int32", "-1"),
    KEY(PE_QUOTA_MB, "string", "empty"),
    KEY(PE_MAXMSG_SIZE, "int32", "-1"),
    KEY(PE_RESPECT_TTL, "int32", "-1"),
    RENAMED_KEY(PE_DISCARD_NOTIFY_SENDER, "DISCARD_NOTIFY_SENDER", "int32", "-1"),
    KEY(PE_MAX_MSG_REDELIVERY, "int32", "-1"),
    // Process, diagnostics and threads
    KEY(WANT_VERBOSE, "bool", "false"),
    KEY(WANT_KERNEL_INTERRUPTS_DEBUG, "int64", "-1"),
    RENAMED_KEY(PRINT_VERSION_AND_EXIT, "PRINT_VERSION", "bool", "false"),
    KEY(WANT_QUIET, "bool", "false"),
    KEY(RETRY_COUNT, "int32", "3"),
    KEY(RECONNECT_FAIL_ACTION, "string", "empty"),
    KEY(SIGALRM_INTERVAL_IN_US, "int32", "0"),
    KEY(WANT_SIGALRM_SESSION_ACTION, "bool", "false"),
    KEY(LOG_LEVEL, "string", "empty"),
    KEY(LOG_FILE, "string", "empty"),
    KEY(WANT_API_STATS, "bool", "absent"),
    KEY(WANT_TRACE_DECODE_CHECK, "bool", "false"),
    KEY(WANT_CONTEXT_CREATE_THREAD, "bool", "absent"),
    KEY(CONTEXT_THREAD_AFFINITY_LIST, "string", "absent"),
};
#undef KEY
#undef RENAMED_KEY

constexpr size_t KEY_COUNT = 214;
constexpr size_t ABSENT_KEY_COUNT = 37;

CliPropertyType typeOf(const std::string& word) {
    static const std::map<std::string, CliPropertyType> types = {
        {"bool", CliPropertyType::BOOLEAN},
        {"int32", CliPropertyType::INTEGER},
        {"int64", CliPropertyType::INT64},
        {"double", CliPropertyType::DOUBLE},
        {"string", CliPropertyType::STRING},
        {"list of string", CliPropertyType::VECTOR},
        {"list of list of string", CliPropertyType::VECTOR_VECTOR},
        {"list of int32", CliPropertyType::INT_VECTOR},
        {"list of double", CliPropertyType::DOUBLE_VECTOR},
        {"list of list of double", CliPropertyType::VECTOR_DOUBLE_VECTOR},
        {"list of map of int32 to uint64", CliPropertyType::VECTOR_MAP_INT32_UINT64},
        {"map of int32 to int32", CliPropertyType::MAP_INT_INT},
    };
    return types.at(word);
}

// True when the getter of the given type finds nothing under the key.
bool getterYieldsEmpty(const CliProperties& props, const std::string& key, CliPropertyType type) {
    switch (type) {
        case CliPropertyType::BOOLEAN:
            return !props.getBooleanProperty(key) && props.getBooleanProperty(key, true);
        case CliPropertyType::INTEGER:
            return props.getIntegerProperty(key) == 0;
        case CliPropertyType::INT64:
            return props.getInt64Property(key) == 0;
        case CliPropertyType::DOUBLE:
            return props.getDoubleProperty(key) == 0.0;
        case CliPropertyType::STRING:
            return props.getStringProperty(key).empty();
        case CliPropertyType::VECTOR:
            return props.getVectorProperty(key).empty();
        case CliPropertyType::VECTOR_VECTOR:
            return props.getVectorVectorProperty(key).empty();
        case CliPropertyType::INT_VECTOR:
            return props.getIntVectorProperty(key).empty();
        case CliPropertyType::DOUBLE_VECTOR:
            return props.getDoubleVectorProperty(key).empty();
        case CliPropertyType::VECTOR_DOUBLE_VECTOR:
            return props.getVectorDoubleVectorProperty(key).empty();
        case CliPropertyType::VECTOR_MAP_INT32_UINT64:
            return props.getVectorMapInt32Uint64Property(key).empty();
        case CliPropertyType::MAP_INT_INT:
            return props.getMapIntIntProperty(key).empty();
    }
    return false;
}

void expectDefault(const CliProperties& props, const KeyRow& row, CliPropertyType type) {
    const std::string key = row.expectedName;
    const std::string def = row.defaultValue;
    switch (type) {
        case CliPropertyType::BOOLEAN:
            EXPECT_EQ(props.getBooleanProperty(key, def != "true"), def == "true");
            break;
        case CliPropertyType::INTEGER:
            EXPECT_EQ(props.getIntegerProperty(key), std::stoi(def));
            break;
        case CliPropertyType::INT64:
            EXPECT_EQ(props.getInt64Property(key), std::stoll(def));
            break;
        case CliPropertyType::DOUBLE:
            EXPECT_DOUBLE_EQ(props.getDoubleProperty(key), std::stod(def));
            break;
        case CliPropertyType::STRING:
            EXPECT_EQ(props.getStringProperty(key), def == "empty" ? "" : def);
            break;
        default:  // every list and map default is an empty one
            EXPECT_EQ(def, "empty");
            EXPECT_TRUE(getterYieldsEmpty(props, key, type));
    }
}

TEST(CliPropertiesTest, EveryKeyLivesInItsMapWithItsDefault) {
    const CliProperties props(TOOL_NAME, "1.2.3");
    ASSERT_EQ(std::size(KEY_ROWS), KEY_COUNT);
    ASSERT_EQ(CliProperties::keyTable().size(), KEY_COUNT);

    std::set<std::string> names;
    size_t absent = 0;
    for (const KeyRow& row : KEY_ROWS) {
        SCOPED_TRACE(row.expectedName);
        const std::string key = row.expectedName;
        EXPECT_EQ(key, row.constant);
        EXPECT_TRUE(names.insert(key).second) << "duplicate row";
        const CliPropertyType type = typeOf(row.type);
        const CliPropertyKey* tableRow = CliProperties::findKey(key);
        ASSERT_NE(tableRow, nullptr);
        EXPECT_EQ(tableRow->type_m, type);

        const bool isAbsent = std::string(row.defaultValue) == "absent";
        absent += isAbsent ? 1 : 0;
        for (int t = 0; t < CLI_PROPERTY_TYPE_COUNT; ++t) {
            const auto other = static_cast<CliPropertyType>(t);
            const bool home = other == type && !isAbsent;
            EXPECT_EQ(props.hasProperty(key, other), home) << "map " << t;
            if (!home) {
                EXPECT_TRUE(getterYieldsEmpty(props, key, other)) << "map " << t;
            }
        }
        if (!isAbsent) {
            expectDefault(props, row, type);
        }
    }
    EXPECT_EQ(absent, ABSENT_KEY_COUNT);
    // All those reads created nothing, and no default is written beyond the rows.
    EXPECT_EQ(props.propertyCount(), KEY_COUNT - ABSENT_KEY_COUNT);
    for (int t = 0; t < CLI_PROPERTY_TYPE_COUNT; ++t) {
        EXPECT_FALSE(props.hasProperty("BIND_RATE", static_cast<CliPropertyType>(t)));
    }
    EXPECT_EQ(CliProperties::findKey("NO_SUCH_KEY"), nullptr);
    // The tool names and the extra-property key are no store keys.
    EXPECT_STREQ(TOOL_NAME, "vexload_c");
    EXPECT_STREQ(CliProperties::QUAD_MIX_TR, "quadmix_tr");
    EXPECT_STREQ(CliProperties::ZORVANE_VEXLOAD_MTR_CATCHUP_NS, "ZORVANE_VEXLOAD_MTR_CATCHUP_NS");
    EXPECT_EQ(CliProperties::findKey(CliProperties::ZORVANE_VEXLOAD_MTR_CATCHUP_NS), nullptr);

    EXPECT_EQ(props.getMsgType(), PUBSUB_MSG_TYPE_DIRECT);
    EXPECT_EQ(props.getLatencyGranularity(), 11u);
    EXPECT_EQ(props.getNumLatencyBuckets(), 1024u);
    EXPECT_TRUE(props.getTopics().empty() && props.getQueues().empty() && props.getDTEs().empty() &&
                props.getSelectors().empty());
}

TEST(CliPropertiesTest, ReadsAndWritesFollowTheStoreRules) {
    CliProperties props(TOOL_NAME, "1.2.3");
    // Defaults users meet on a bare command line.
    EXPECT_EQ(props.getStringProperty(CliProperties::CLIENT_MODE), "sink");
    EXPECT_EQ(props.getDoubleProperty(CliProperties::PUBLISH_RATE), 1.0);
    EXPECT_EQ(props.getIntegerProperty(CliProperties::RECONNECT_INTERVAL), 3000);
    EXPECT_TRUE(props.getBooleanProperty(CliProperties::WANT_TCP_NODELAY));
    EXPECT_EQ(props.getInt64Property(CliProperties::CONTEXT_AFFINITY_MASK), -1);
    EXPECT_EQ(props.getIntegerProperty(CliProperties::CONTEXT_AFFINITY_MASK), 0);

    // The caller's default only counts for a key that is absent.
    EXPECT_TRUE(props.getBooleanProperty(CliProperties::WANT_CLIENT_ACK_THREAD, true));
    EXPECT_FALSE(props.getBooleanProperty(CliProperties::WANT_VERBOSE, true));
    props.setBooleanProperty(CliProperties::WANT_CLIENT_ACK_THREAD, false);
    EXPECT_FALSE(props.getBooleanProperty(CliProperties::WANT_CLIENT_ACK_THREAD, true));

    // Lists are replaced whole, never merged.
    props.setVectorProperty(CliProperties::SDM_FILE_LIST, {"a", "b", "c"});
    props.setVectorProperty(CliProperties::SDM_FILE_LIST, {"d"});
    EXPECT_EQ(props.getVectorProperty(CliProperties::SDM_FILE_LIST), std::vector<std::string>{"d"});
    props.setMapIntIntProperty(CliProperties::PUB_ORDER_OFFSETS, {{1, 10}, {2, 20}});
    props.setMapIntIntProperty(CliProperties::PUB_ORDER_OFFSETS, {{3, 30}});
    EXPECT_EQ(props.getMapIntIntProperty(CliProperties::PUB_ORDER_OFFSETS),
              (std::map<INT32, INT32>{{3, 30}}));

    // Rewriting the defaults restores overwritten keys and leaves keys that
    // have no default as they are.
    props.setIntegerProperty(CliProperties::NUM_CLIENTS, 5);
    props.setIntegerProperty(CliProperties::BIND_RATE, 7);
    props.setDefaultProperties();
    EXPECT_EQ(props.getIntegerProperty(CliProperties::NUM_CLIENTS), 1);
    EXPECT_EQ(props.getIntegerProperty(CliProperties::BIND_RATE), 7);
    EXPECT_TRUE(props.getVectorProperty(CliProperties::SDM_FILE_LIST).empty());
}

// ---- the first-step command-line parser ----

class CliPropertiesParseTest : public ::testing::Test {
  protected:
    void SetUp() override { GTEST_FLAG_SET(death_test_style, "threadsafe"); }

    void parse(std::vector<std::string> args) {
        args.insert(args.begin(), "vexload_c");
        std::vector<char*> argV;
        for (std::string& arg : args) {
            argV.push_back(arg.data());
        }
        argV.push_back(nullptr);
        props_m.parseOptions(static_cast<int>(args.size()), argV.data());
    }

    CliProperties props_m{TOOL_NAME, "1.2.3"};
};

TEST_F(CliPropertiesParseTest, AcceptedOptionsLandInTheStore) {
    parse({});
    props_m.parseOptions(0, nullptr);
    EXPECT_EQ(props_m.propertyCount(), KEY_COUNT - ABSENT_KEY_COUNT);
    EXPECT_FALSE(props_m.getBooleanProperty(CliProperties::PRINT_VERSION_AND_EXIT));

    parse({"-log=debug", "-LOGF=/tmp/a=b.log", "-V"});
    EXPECT_EQ(props_m.getStringProperty(CliProperties::LOG_LEVEL), "debug");
    EXPECT_EQ(props_m.getStringProperty(CliProperties::LOG_FILE), "/tmp/a=b.log");
    EXPECT_TRUE(props_m.getBooleanProperty(CliProperties::PRINT_VERSION_AND_EXIT));

    CliProperties second(TOOL_NAME, "1.2.3");
    props_m = second;
    parse({"-LOG=info", "-logf=", "-v", "-log=notice"});
    EXPECT_EQ(props_m.getStringProperty(CliProperties::LOG_LEVEL), "notice");
    EXPECT_TRUE(props_m.hasProperty(CliProperties::LOG_FILE, CliPropertyType::STRING));
    EXPECT_EQ(props_m.getStringProperty(CliProperties::LOG_FILE), "");
    EXPECT_TRUE(props_m.getBooleanProperty(CliProperties::PRINT_VERSION_AND_EXIT));
}

TEST_F(CliPropertiesParseTest, UnknownOptionEndsTheProcessNamingTheArgument) {
    const std::vector<std::vector<std::string>> lines = {
        {"-x"}, {"-vx"}, {"-Log=info"}, {"-log"}, {"-logfile"}, {"-v", "-zz"},
    };
    for (const auto& line : lines) {
        const std::string& bad = line.back();
        SCOPED_TRACE(bad);
        EXPECT_EXIT(parse(line), ExitedWithCode(255),
                    StrEq("ERROR: Unknown option '" + bad +
                          "'\n\ntype vexload_c -h for the option list\n"));
    }
}

}  // namespace
}  // namespace zorvane::pubsub
