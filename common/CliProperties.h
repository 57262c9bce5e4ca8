// The typed property store: the one place where the command line lands.
//
// Filled in three stages on the main thread before any other thread exists:
// the constructor writes every default, parseOptions overwrites what the
// command line names, and the checks at the end of the parse reject bad
// combinations. From then on it is read only, without locks, by the run
// sequence and by the constructors of the configuration records.
//
// Each value type has its own map, and a key lives in the one map its type
// names (see keyTable()). A getter returns a copy; an absent key yields the
// getter's empty value and is not created by the read. A setter inserts or
// overwrites and never fails; list values are replaced as a whole.
#pragma once

#include <map>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "common/CliPropertyKey.h"
#include "common/cliWords.h"
#include "common/dataTypes.h"

namespace zorvane::pubsub {

struct CliParseState;

class CliProperties {
  public:
    // ---- names of the tool; not store keys ----
    static constexpr char VEX_LOAD[] = "vexload_c";
    static constexpr char QUAD_MIX_TR[] = "quadmix_tr";

    // A key the publisher looks up inside the EXTRA_PROPS_LIST value; not a
    // store key and not an environment variable.
    static constexpr char ZORVANE_VEXLOAD_MTR_CATCHUP_NS[] = "ZORVANE_VEXLOAD_MTR_CATCHUP_NS";

    // ---- store keys ----
    // Code names a key by its constant; the string is what the maps hold.
    // Each string equals its identifier except for PRINT_VERSION_AND_EXIT,
    // PE_DISCARD_NOTIFY_SENDER, GLOBAL_DBQUANTA0_SIZE and WANT_SUB_ADDR.

    // Message content
    static constexpr char SDM_AUTO_GEN_FLAG[] = "SDM_AUTO_GEN_FLAG";
    static constexpr char SDM_FILE_LIST[] = "SDM_FILE_LIST";
    static constexpr char MSG_DMQ_ELIGIBLE[] = "MSG_DMQ_ELIGIBLE";
    static constexpr char MSG_TTL[] = "MSG_TTL";
    static constexpr char MSG_ELIDING_ELIGIBLE[] = "MSG_ELIDING_ELIGIBLE";
    static constexpr char WANT_MSG_DUMP[] = "WANT_MSG_DUMP";
    static constexpr char WANT_MSG_DUMP_TIME_STAMP[] = "WANT_MSG_DUMP_TIME_STAMP";
    static constexpr char MSG_DUMP_BUFFER_SIZE[] = "MSG_DUMP_BUFFER_SIZE";
    static constexpr char WANT_UNIQUE_BINARY_ATTACH[] = "WANT_UNIQUE_BINARY_ATTACH";
    static constexpr char MSG_OBJ_TYPE_PATTERN[] = "MSG_OBJ_TYPE_PATTERN";
    static constexpr char MSG_OBJ_TYPE_CHECK[] = "MSG_OBJ_TYPE_CHECK";
    static constexpr char XML_PAYLOAD_SIZE_LIST[] = "XML_PAYLOAD_SIZE_LIST";
    static constexpr char BINARY_ATTACH_SIZE_LIST[] = "BINARY_ATTACH_SIZE_LIST";
    static constexpr char BINARY_ATTACH_SIZE_WEIGHTS_LIST[] = "BINARY_ATTACH_SIZE_WEIGHTS_LIST";
    static constexpr char RANDOM_ATTACH_SIZE_MIN[] = "RANDOM_ATTACH_SIZE_MIN";
    static constexpr char RANDOM_ATTACH_SIZE_MAX[] = "RANDOM_ATTACH_SIZE_MAX";
    static constexpr char PUBLISH_FILE_LIST[] = "PUBLISH_FILE_LIST";
    static constexpr char PUBLISH_ATTACH_LIST[] = "PUBLISH_ATTACH_LIST";
    static constexpr char JSON_DOC_FILE_LIST[] = "JSON_DOC_FILE_LIST";
    static constexpr char CUSTOM_PROPERTIES_LIST[] = "CUSTOM_PROPERTIES_LIST";
    static constexpr char HTTP_CONTENT_ENCODING[] = "HTTP_CONTENT_ENCODING";
    static constexpr char HTTP_CONTENT_TYPE[] = "HTTP_CONTENT_TYPE";
    static constexpr char PARTITION_KEY_LIST[] = "PARTITION_KEY_LIST";

    // Publishing
    static constexpr char PUBLISH_END_DELAY_IN_SEC[] = "PUBLISH_END_DELAY_IN_SEC";
    static constexpr char PUBLISH_RATE[] = "PUBLISH_RATE";
    static constexpr char NUM_MSGS_TO_PUBLISH[] = "NUM_MSGS_TO_PUBLISH";
    static constexpr char WANT_TCP_NODELAY[] = "WANT_TCP_NODELAY";
    static constexpr char PUB_TOPICS_ARRAY[] = "PUB_TOPICS_ARRAY";
    static constexpr char PUB_TOPICS_WEIGHTS_ARRAY[] = "PUB_TOPICS_WEIGHTS_ARRAY";
    static constexpr char PUB_QUEUES_LIST[] = "PUB_QUEUES_LIST";
    static constexpr char PUB_QUEUES_WEIGHTS_LIST[] = "PUB_QUEUES_WEIGHTS_LIST";
    static constexpr char WANT_RESPONSE_CHECK[] = "WANT_RESPONSE_CHECK";
    static constexpr char WANT_STOP_ON_ERROR[] = "WANT_STOP_ON_ERROR";
    static constexpr char PUB_SEND_VECTOR[] = "PUB_SEND_VECTOR";
    static constexpr char RATE_CHECK_INTERVAL[] = "RATE_CHECK_INTERVAL";
    static constexpr char PUB_COS[] = "PUB_COS";
    static constexpr char PUB_TO_ONE[] = "PUB_TO_ONE";
    static constexpr char PUB_STREAM_ID_OFFSET[] = "PUB_STREAM_ID_OFFSET";
    static constexpr char PUB_ORDER_OFFSET[] = "PUB_ORDER_OFFSET";
    static constexpr char PUB_ORDER_OFFSETS[] = "PUB_ORDER_OFFSETS";
    static constexpr char BURST_DURATION[] = "BURST_DURATION";
    static constexpr char INTER_BURST_DURATION[] = "INTER_BURST_DURATION";
    static constexpr char MSG_RATE_IS_MAX[] = "MSG_RATE_IS_MAX";
    static constexpr char WANT_REPLY_TOPIC[] = "WANT_REPLY_TOPIC";
    static constexpr char PUB_REPLY_POSTFIX[] = "PUB_REPLY_POSTFIX";
    static constexpr char PUB_PRIORITY_LIST[] = "PUB_PRIORITY_LIST";
    static constexpr char WANT_MIX_MSGS_PROPS[] = "WANT_MIX_MSGS_PROPS";
    static constexpr char TRANSACTION_REDELIVERY_LIMIT[] = "TRANSACTION_REDELIVERY_LIMIT";

    // Subscribing, client acknowledgement and binding
    static constexpr char WANT_SUB_ADDR[] = "WANT_SUBSCRIBER_ADDR";
    static constexpr char WANT_REMOVE_SUBSCRIBER[] = "WANT_REMOVE_SUBSCRIBER";
    static constexpr char WANT_SUBSCRIPTION_MEMORY[] = "WANT_SUBSCRIPTION_MEMORY";
    static constexpr char SLOW_SUB_DELAY_IN_MS[] = "SLOW_SUB_DELAY_IN_MS";
    static constexpr char SLOW_SUB_DELAY_COUNT[] = "SLOW_SUB_DELAY_COUNT";
    static constexpr char SUB_RATE_INTERVAL[] = "SUB_RATE_INTERVAL";
    static constexpr char SUB_ORDER_OFFSETS[] = "SUB_ORDER_OFFSETS";
    static constexpr char SUB_ORDER_OFFSETS_PRINT_RESUMING_ARG_AT_EXIT[] =
        "SUB_ORDER_OFFSETS_PRINT_RESUMING_ARG_AT_EXIT";
    static constexpr char WANT_ADD_SUBSCRIPTIONS[] = "WANT_ADD_SUBSCRIPTIONS";
    static constexpr char SUB_MSG_QUEUE_DEPTH[] = "SUB_MSG_QUEUE_DEPTH";
    static constexpr char NUM_TEMP_QUEUE_ENDPOINTS[] = "NUM_TEMP_QUEUE_ENDPOINTS";
    static constexpr char NUM_TEMP_TOPIC_ENDPOINTS[] = "NUM_TEMP_TOPIC_ENDPOINTS";
    static constexpr char SUBSCRIPTION_CLIENT_NAME[] = "SUBSCRIPTION_CLIENT_NAME";
    static constexpr char WANT_CLIENT_ACK[] = "WANT_CLIENT_ACK";
    static constexpr char WANT_SUB_MSG_QUEUE_FLUSH[] = "WANT_SUB_MSG_QUEUE_FLUSH";
    static constexpr char SUB_MSG_QUEUE_REVERSE[] = "SUB_MSG_QUEUE_REVERSE";
    static constexpr char CLIENT_ACK_SKIP_NUM[] = "CLIENT_ACK_SKIP_NUM";
    static constexpr char CLIENT_ACK_RANDOM_DEPTH[] = "CLIENT_ACK_RANDOM_DEPTH";
    static constexpr char WANT_CLIENT_ACK_THREAD[] = "WANT_CLIENT_ACK_THREAD";
    static constexpr char WANT_CUT_THROUGH_PERSISTENCE[] = "WANT_CUT_THROUGH_PERSISTENCE";
    static constexpr char CLIENT_ACK_RATE_LIMIT[] = "CLIENT_ACK_RATE_LIMIT";
    static constexpr char WANT_PRIORITY_STATS[] = "WANT_PRIORITY_STATS";
    static constexpr char BIND_RATE[] = "BIND_RATE";
    static constexpr char WANT_NON_BLOCKING_BIND[] = "WANT_NON_BLOCKING_BIND";
    static constexpr char FLOW_FLAP_COUNT[] = "FLOW_FLAP_COUNT";
    static constexpr char WAIT_AFTER_BIND[] = "WAIT_AFTER_BIND";
    static constexpr char SETTLEMENT_PATTERN[] = "SETTLEMENT_PATTERN";
    static constexpr char REQUIRED_SETTLEMENTS[] = "REQUIRED_SETTLEMENTS";

    // Client sessions
    static constexpr char NUM_CLIENTS[] = "NUM_CLIENTS";
    static constexpr char NUM_PUBS_PER_SESSION[] = "NUM_PUBS_PER_SESSION";
    static constexpr char CLIENT_IP_ADDR[] = "CLIENT_IP_ADDR";
    static constexpr char CLIENT_USERNAME[] = "CLIENT_USERNAME";
    static constexpr char CLIENT_NAME_PREFIX[] = "CLIENT_NAME_PREFIX";
    static constexpr char CLIENT_PASSWORD[] = "CLIENT_PASSWORD";
    static constexpr char CLIENT_PASSWORD_FILE[] = "CLIENT_PASSWORD_FILE";
    static constexpr char CLIENT_PORT[] = "CLIENT_PORT";
    static constexpr char CLIENT_VPN[] = "CLIENT_VPN";
    static constexpr char CLIENT_DTO_LOCAL_PRIORITY[] = "CLIENT_DTO_LOCAL_PRIORITY";
    static constexpr char CLIENT_DTO_NETWORK_PRIORITY[] = "CLIENT_DTO_NETWORK_PRIORITY";
    static constexpr char SOCKET_RCV_BUF_SIZE[] = "SOCKET_RCV_BUF_SIZE";
    static constexpr char SOCKET_SND_BUF_SIZE[] = "SOCKET_SND_BUF_SIZE";
    static constexpr char SESSION_BUF_SIZE[] = "SESSION_BUF_SIZE";
    static constexpr char GLOBAL_DBQUANTA0_SIZE[] = "GLOBAL_QUANTA0_SIZE";
    static constexpr char BLOCK_WRITE_TIMEOUT[] = "BLOCK_WRITE_TIMEOUT";
    static constexpr char KEEP_ALIVE_INT_MS[] = "KEEP_ALIVE_INT_MS";
    static constexpr char KEEP_ALIVE_LIMIT[] = "KEEP_ALIVE_LIMIT";
    static constexpr char RECONNECT_INTERVAL[] = "RECONNECT_INTERVAL";
    static constexpr char COMPRESSION_LEVEL[] = "COMPRESSION_LEVEL";
    static constexpr char PAYLOAD_COMPRESSION_LEVEL[] = "PAYLOAD_COMPRESSION_LEVEL";
    static constexpr char CHANGE_CLIENT_NAMES_FLAG[] = "CHANGE_CLIENT_NAMES_FLAG";
    static constexpr char CONTEXT_AFFINITY_MASK[] = "CONTEXT_AFFINITY_MASK";
    static constexpr char PUBTHREAD_AFFINITY_MASK[] = "PUBTHREAD_AFFINITY_MASK";
    static constexpr char SMOOTHTHREAD_AFFINITY_MASK[] = "SMOOTHTHREAD_AFFINITY_MASK";
    static constexpr char CLIENT_MODE[] = "CLIENT_MODE";
    static constexpr char WANT_CONTEXT_PER_CLIENT[] = "WANT_CONTEXT_PER_CLIENT";
    static constexpr char NUM_CLIENTS_PER_CONTEXT[] = "NUM_CLIENTS_PER_CONTEXT";
    static constexpr char WANT_DISPATCH_SESSION[] = "WANT_DISPATCH_SESSION";
    static constexpr char WANT_NON_BLOCKING_CONNECT[] = "WANT_NON_BLOCKING_CONNECT";
    static constexpr char WANT_NO_LOCAL[] = "WANT_NO_LOCAL";
    static constexpr char TRANSPORT_PROTOCOL[] = "TRANSPORT_PROTOCOL";
    static constexpr char WANT_REPLICATION_RECONNECT[] = "WANT_REPLICATION_RECONNECT";
    static constexpr char CHURN_DISCONNECT_RATE[] = "CHURN_DISCONNECT_RATE";
    static constexpr char CHURN_DISCONNECT_INTERVAL[] = "CHURN_DISCONNECT_INTERVAL";
    static constexpr char WEB_TRANSPORT_PROTOCOL_LIST[] = "WEB_TRANSPORT_PROTOCOL_LIST";
    static constexpr char TRANSPORT_PROTOCOL_DOWNGRADE_TIMEOUT_MS[] =
        "TRANSPORT_PROTOCOL_DOWNGRADE_TIMEOUT_MS";
    static constexpr char SESSION_BIND_IP[] = "SESSION_BIND_IP";
    static constexpr char WANT_CLIENT_TASK_THREAD[] = "WANT_CLIENT_TASK_THREAD";
    static constexpr char EXTRA_PROPS_LIST[] = "EXTRA_PROPS_LIST";

    // Authentication and SSL
    static constexpr char AUTHENTICATION_SCHEME[] = "AUTHENTICATION_SCHEME";
    static constexpr char SSL_PROTOCOL[] = "SSL_PROTOCOL";
    static constexpr char SSL_EXCLUDED_PROTOCOLS[] = "SSL_EXCLUDED_PROTOCOLS";
    static constexpr char SSL_MAX_PROTOCOL_VERSION[] = "SSL_MAX_PROTOCOL_VERSION";
    static constexpr char SSL_MIN_PROTOCOL_VERSION[] = "SSL_MIN_PROTOCOL_VERSION";
    static constexpr char SSL_VALIDATE_CERTIFICATE[] = "SSL_VALIDATE_CERTIFICATE";
    static constexpr char SSL_VALIDATE_CERTIFICATE_DATE[] = "SSL_VALIDATE_CERTIFICATE_DATE";
    static constexpr char SSL_VALIDATE_CERTIFICATE_HOSTNAME[] = "SSL_VALIDATE_CERTIFICATE_HOSTNAME";
    static constexpr char SSL_CIPHER_SUITES[] = "SSL_CIPHER_SUITES";
    static constexpr char SSL_TRUST_STORE_DIR[] = "SSL_TRUST_STORE_DIR";
    static constexpr char SSL_TRUSTED_COMMON_NAME_LIST[] = "SSL_TRUSTED_COMMON_NAME_LIST";
    static constexpr char SSL_CLIENT_CERTIFICATE_FILE[] = "SSL_CLIENT_CERTIFICATE_FILE";
    static constexpr char SSL_CLIENT_PRIVATE_KEY_FILE[] = "SSL_CLIENT_PRIVATE_KEY_FILE";
    static constexpr char SSL_CLIENT_PRIVATE_KEY_FILE_PASSWORD[] =
        "SSL_CLIENT_PRIVATE_KEY_FILE_PASSWORD";
    static constexpr char SSL_CONNECTION_DOWNGRADE_TO[] = "SSL_CONNECTION_DOWNGRADE_TO";
    static constexpr char GLOBAL_GSS_KRB_LIB[] = "GLOBAL_GSS_KRB_LIB";
    static constexpr char GLOBAL_SSL_LIB[] = "GLOBAL_SSL_LIB";
    static constexpr char GLOBAL_CRYPTO_LIB[] = "GLOBAL_CRYPTO_LIB";
    static constexpr char OAUTH_ACCESS_TOKEN[] = "OAUTH_ACCESS_TOKEN";
    static constexpr char OIDC_ID_TOKEN[] = "OIDC_ID_TOKEN";
    static constexpr char OAUTH_ISSUER_ID[] = "OAUTH_ISSUER_ID";

    // Measurement
    static constexpr char WANT_LATENCY_MEASUREMENT[] = "WANT_LATENCY_MEASUREMENT";
    static constexpr char WANT_LATENCY_FULL_STATS[] = "WANT_LATENCY_FULL_STATS";
    static constexpr char LATENCY_FIRST_TO_LAST_FANOUT[] = "LATENCY_FIRST_TO_LAST_FANOUT";
    static constexpr char LATENCY_PRECISION[] = "LATENCY_PRECISION";
    static constexpr char LATENCY_WARMUP_IN_SEC[] = "LATENCY_WARMUP_IN_SEC";
    static constexpr char WANT_LATENCY_PRINT_PER_MSG[] = "WANT_LATENCY_PRINT_PER_MSG";
    static constexpr char WANT_PER_SUB_THRU_STATS[] = "WANT_PER_SUB_THRU_STATS";
    static constexpr char WANT_PER_PRI_THRU_STATS[] = "WANT_PER_PRI_THRU_STATS";
    static constexpr char WANT_PAYLOAD_CHECK[] = "WANT_PAYLOAD_CHECK";
    static constexpr char WANT_ORDER_CHECK_PUBLISHER_STREAM_NUMBER[] =
        "WANT_ORDER_CHECK_PUBLISHER_STREAM_NUMBER";
    static constexpr char WANT_ORDER_CHECK_TOPIC_SEQUENCE_NUMBER[] =
        "WANT_ORDER_CHECK_TOPIC_SEQUENCE_NUMBER";
    static constexpr char WANT_ORDER_MEMORY[] = "WANT_ORDER_MEMORY";
    static constexpr char WANT_UD[] = "WANT_UD";
    static constexpr char WANT_CID_STATS[] = "WANT_CID_STATS";
    static constexpr char WANT_FULL_MSG_INSPECTION[] = "WANT_FULL_MSG_INSPECTION";
    static constexpr char WANT_SUBSCRIPTION_RATE_STATS[] = "WANT_SUBSCRIPTION_RATE_STATS";
    static constexpr char WANT_SMOOTH_PUB_CALC_LAT[] = "WANT_SMOOTH_PUB_CALC_LAT";
    static constexpr char WANT_DI_STATS[] = "WANT_DI_STATS";
    static constexpr char WANT_USER_PROP_TOOL_DATA[] = "WANT_USER_PROP_TOOL_DATA";

    // Assured delivery
    static constexpr char AD_PUB_WINDOW_SIZE[] = "AD_PUB_WINDOW_SIZE";
    static constexpr char AD_PUB_ACK_TIMEOUT[] = "AD_PUB_ACK_TIMEOUT";
    static constexpr char AD_SUB_WINDOW_SIZE[] = "AD_SUB_WINDOW_SIZE";
    static constexpr char AD_SUB_ACK_TIMEOUT[] = "AD_SUB_ACK_TIMEOUT";
    static constexpr char AD_SUB_WINDOW_THRESHOLD[] = "AD_SUB_WINDOW_THRESHOLD";
    static constexpr char AD_PUB_MAX_RESEND[] = "AD_PUB_MAX_RESEND";
    static constexpr char WANT_ACTIVE_FLOW_INDICATION[] = "WANT_ACTIVE_FLOW_INDICATION";
    static constexpr char AD_TRANSACTION_SIZE[] = "AD_TRANSACTION_SIZE";
    static constexpr char AD_TRANSACTION_ROLLBACK_INTERVAL[] = "AD_TRANSACTION_ROLLBACK_INTERVAL";
    static constexpr char AD_TRANSACTION_IDLE_TIME[] = "AD_TRANSACTION_IDLE_TIME";
    static constexpr char AD_ACK_EVENT_MODE[] = "AD_ACK_EVENT_MODE";
    static constexpr char AD_ACK_IMMEDIATELY_INTERVAL[] = "AD_ACK_IMMEDIATELY_INTERVAL";
    static constexpr char AD_WANT_PUB_ACK_ORDER_CHECK[] = "AD_WANT_PUB_ACK_ORDER_CHECK";
    static constexpr char AD_WANT_REPLAY[] = "AD_WANT_REPLAY";
    static constexpr char AD_REPLAY_DATE[] = "AD_REPLAY_DATE";
    static constexpr char AD_REPLAY_MSG_ID[] = "AD_REPLAY_MSG_ID";
    static constexpr char AD_FLOW_RECONNECT_ATTEMPTS[] = "AD_FLOW_RECONNECT_ATTEMPTS";
    static constexpr char AD_FLOW_RECONNECT_INTERVAL_IN_MSECS[] =
        "AD_FLOW_RECONNECT_INTERVAL_IN_MSECS";

    // Cache
    static constexpr char CACHE_PROP_NAME[] = "CACHE_PROP_NAME";
    static constexpr char CACHE_PROP_MAX_MSGS_PER_TOPIC[] = "CACHE_PROP_MAX_MSGS_PER_TOPIC";
    static constexpr char CACHE_PROP_MAX_AGE[] = "CACHE_PROP_MAX_AGE";
    static constexpr char CACHE_PROP_TIMEOUT_IN_MSEC[] = "CACHE_PROP_TIMEOUT_IN_MSEC";
    static constexpr char CACHE_WANT_REQUESTS_ON_SUBSCRIBE[] = "CACHE_WANT_REQUESTS_ON_SUBSCRIBE";
    static constexpr char CACHE_REQ_MSG_RATE[] = "CACHE_REQ_MSG_RATE";
    static constexpr char CACHE_NUM_REQ[] = "CACHE_NUM_REQ";
    static constexpr char CACHE_LIVE_DATA_ACTION[] = "CACHE_LIVE_DATA_ACTION";
    static constexpr char CACHE_REQ_MIN_SEQ[] = "CACHE_REQ_MIN_SEQ";
    static constexpr char CACHE_REQ_MAX_SEQ[] = "CACHE_REQ_MAX_SEQ";
    static constexpr char CACHE_REQ_WAIT_FOR_CONFIRM[] = "CACHE_REQ_WAIT_FOR_CONFIRM";

    // Randomization, queue browsing and endpoint provisioning
    static constexpr char RANDOMIZATION_MESSAGE_ORDER_FLAG[] = "RANDOMIZATION_MESSAGE_ORDER_FLAG";
    static constexpr char RANDOMIZATION_SEED[] = "RANDOMIZATION_SEED";
    static constexpr char RANDOMIZATION_ATTACHMENT_SIZE_JITTER_FACTOR[] =
        "RANDOMIZATION_ATTACHMENT_SIZE_JITTER_FACTOR";
    static constexpr char RANDOMIZATION_MESSAGE_ATTACHMENT_CONTENTS[] =
        "RANDOMIZATION_MESSAGE_ATTACHMENT_CONTENTS";
    static constexpr char WANT_QUEUE_BROWSER[] = "WANT_QUEUE_BROWSER";
    static constexpr char QB_DELETE_FREQUENCY[] = "QB_DELETE_FREQUENCY";
    static constexpr char QB_MSG_BUFFER_SIZE[] = "QB_MSG_BUFFER_SIZE";
    static constexpr char WANT_PROVISIONED_ENDPOINT[] = "WANT_PROVISIONED_ENDPOINT";
    static constexpr char PE_PERMISSION[] = "PE_PERMISSION";
    static constexpr char PE_ACCESS_TYPE[] = "PE_ACCESS_TYPE";
    static constexpr char PE_QUOTA_MB[] = "PE_QUOTA_MB";
    static constexpr char PE_MAXMSG_SIZE[] = "PE_MAXMSG_SIZE";
    static constexpr char PE_RESPECT_TTL[] = "PE_RESPECT_TTL";
    static constexpr char PE_DISCARD_NOTIFY_SENDER[] = "DISCARD_NOTIFY_SENDER";
    static constexpr char PE_MAX_MSG_REDELIVERY[] = "PE_MAX_MSG_REDELIVERY";

    // Process, diagnostics and threads
    static constexpr char WANT_VERBOSE[] = "WANT_VERBOSE";
    static constexpr char WANT_KERNEL_INTERRUPTS_DEBUG[] = "WANT_KERNEL_INTERRUPTS_DEBUG";
    static constexpr char PRINT_VERSION_AND_EXIT[] = "PRINT_VERSION";
    static constexpr char WANT_QUIET[] = "WANT_QUIET";
    static constexpr char RETRY_COUNT[] = "RETRY_COUNT";
    static constexpr char RECONNECT_FAIL_ACTION[] = "RECONNECT_FAIL_ACTION";
    static constexpr char SIGALRM_INTERVAL_IN_US[] = "SIGALRM_INTERVAL_IN_US";
    static constexpr char WANT_SIGALRM_SESSION_ACTION[] = "WANT_SIGALRM_SESSION_ACTION";
    static constexpr char LOG_LEVEL[] = "LOG_LEVEL";
    static constexpr char LOG_FILE[] = "LOG_FILE";
    static constexpr char WANT_API_STATS[] = "WANT_API_STATS";
    static constexpr char WANT_TRACE_DECODE_CHECK[] = "WANT_TRACE_DECODE_CHECK";
    static constexpr char WANT_CONTEXT_CREATE_THREAD[] = "WANT_CONTEXT_CREATE_THREAD";
    static constexpr char CONTEXT_THREAD_AFFINITY_LIST[] = "CONTEXT_THREAD_AFFINITY_LIST";

    // toolName selects the help texts; version is what "-v" prints. Writes
    // every default through setDefaultProperties().
    CliProperties(const std::string& toolName, const std::string& version);
    virtual ~CliProperties() = default;

    // ---- key table ----

    // Every store key with its type and default, grouped by area; inside a
    // group in the order the defaults are written.
    static std::span<const CliPropertyKey> keyTable();
    // The table row of the key string, or null for a string that is no key.
    // A linear search: meant for parsing and checks, not for hot paths.
    static const CliPropertyKey* findKey(std::string_view key);

    // Writes the default of every key that has one. Keys without a default
    // are left as they are.
    void setDefaultProperties();

    // True when the map of the given type holds the key.
    bool hasProperty(const std::string& key, CliPropertyType type) const;
    // Number of keys held over all maps.
    size_t propertyCount() const;

    // ---- command line ----

    // Fills the store from the command line, option by option from left to
    // right through the option table (cliOptionTable()), then spreads the
    // held-back subscription and publish-topic lists over the clients and
    // runs the cross-checks. Returns when the line is accepted. On a fault
    // prints the reason to standard error and ends the process with status
    // 255; "-h", "-?", "-hm" and "-he" print their help to standard output
    // and end it the same way. Both go through processExit, so a test can
    // intercept them. Files named by list options are read here.
    void parseOptions(int argC, char** argV);

    // The short help ("-h", "-?"), the advanced options ("-hm") and the
    // examples ("-he"), to standard output. Lines that depend on the tool
    // name follow the name given to the constructor.
    void printHelp() const;
    void printMoreHelp() const;
    void printExampleHelp() const;

    // ---- list notations that fill the per-client lists ----

    // Cuts value at "," and deals the items out to the clients in turn:
    // item i starts a new outer entry while i is below NUM_CLIENTS, later
    // items join entry i modulo NUM_CLIENTS. Sets WANT_ADD_SUBSCRIPTIONS.
    void loadSubscriptionsFromList(std::vector<std::vector<std::string>>& outer,
                                   const std::string& value);
    // Appends one outer entry with the lines of the file, at most num of
    // them (0 or below: all). Faults when the file cannot be opened.
    void loadSubscriptionsFromFile(std::vector<std::vector<std::string>>& outer,
                                   const std::string& filename, int num);
    // max(NUM_CLIENTS, count) names prefix000001.. (the number cycling
    // through 1..count), dealt out as by loadSubscriptionsFromList. Faults
    // for a count below 1 or a list longer than the generation limit.
    void loadSubscriptionsFromPrefixAndCount(std::vector<std::vector<std::string>>& outer,
                                             const std::string& prefix, INT64 count);
    // The same names as one group of PUB_TOPICS_ARRAY, each with weight 1.0,
    // replacing what was there.
    void loadPublishTopicsFromPrefixAndCount(const std::string& prefix, INT64 count);

    // ---- two-part values ----

    // "user[@vpn]": user to userKey, the part after the first "@" to vpnKey
    // (left alone without an "@").
    void parseUsernameVpn(const char* value, const std::string& userKey, const std::string& vpnKey);
    // "L[:N]": deliver-to-one local and network priority; N is -1 without ":".
    void parseDTOPriority(const char* value);
    // "F[,B]": queue browser delete frequency and buffer; B is -1 without ",".
    void parseQBDelete(const char* value);
    // "begin:end": topic sequence range of cache requests; faults without ":".
    void parseMinMaxTopicSeq(const char* value);

    // ---- typed getters ----

    bool getBooleanProperty(const std::string& key) const;
    bool getBooleanProperty(const std::string& key, bool defaultValue) const;
    INT32 getIntegerProperty(const std::string& key) const;
    INT64 getInt64Property(const std::string& key) const;
    double getDoubleProperty(const std::string& key) const;
    std::string getStringProperty(const std::string& key) const;
    std::vector<std::string> getVectorProperty(const std::string& key) const;
    std::vector<std::vector<std::string>> getVectorVectorProperty(const std::string& key) const;
    std::vector<INT32> getIntVectorProperty(const std::string& key) const;
    std::vector<double> getDoubleVectorProperty(const std::string& key) const;
    std::vector<std::vector<double>> getVectorDoubleVectorProperty(const std::string& key) const;
    std::vector<std::map<INT32, UINT64>> getVectorMapInt32Uint64Property(
        const std::string& key) const;
    std::map<INT32, INT32> getMapIntIntProperty(const std::string& key) const;

    // ---- typed setters ----

    void setBooleanProperty(const std::string& key, bool value);
    void setIntegerProperty(const std::string& key, INT32 value);
    void setInt64Property(const std::string& key, INT64 value);
    void setDoubleProperty(const std::string& key, double value);
    void setStringProperty(const std::string& key, const std::string& value);
    void setVectorProperty(const std::string& key, const std::vector<std::string>& value);
    void setVectorVectorProperty(const std::string& key,
                                 const std::vector<std::vector<std::string>>& value);
    void setIntVectorProperty(const std::string& key, const std::vector<INT32>& value);
    void setDoubleVectorProperty(const std::string& key, const std::vector<double>& value);
    void setVectorDoubleVectorProperty(const std::string& key,
                                       const std::vector<std::vector<double>>& value);
    void setVectorMapInt32Uint64Property(const std::string& key,
                                         const std::vector<std::map<INT32, UINT64>>& value);
    void setMapIntIntProperty(const std::string& key, const std::map<INT32, INT32>& value);

    // ---- plain fields ----

    PubSubMessageType getMsgType() const { return msgType_m; }
    void setMsgType(PubSubMessageType msgType) { msgType_m = msgType; }
    UINT32 getLatencyGranularity() const { return latencyGranularity_m; }
    UINT32 getNumLatencyBuckets() const { return numLatencyBuckets_m; }
    const std::string& getToolName() const { return toolNameStr_m; }
    const std::string& getVersion() const { return versionStr_m; }

    // Per-client lists: one outer entry per client.
    const std::vector<std::vector<std::string>>& getDTEs() const { return dtesVector_m; }
    const std::vector<std::vector<std::string>>& getTopics() const { return topicsVector_m; }
    const std::vector<std::vector<std::string>>& getQueues() const { return queuesVector_m; }
    const std::vector<std::vector<std::string>>& getSelectors() const { return selectorVector_m; }

  private:
    friend class CliOptionHandlers;

    // After the option loop: the held-back lists, in their fixed order.
    void applyHeldBackLists(const CliParseState& state);
    // After the lists: the checks that need the whole line.
    void runCrossChecks() const;
    // NUM_CLIENTS, refused below 1 because lists are dealt out by it.
    INT32 clientCountForLists() const;

    // std::less<std::string> compares through char_traits<char>, which orders
    // by unsigned byte value: plain byte order of the key, as wanted.
    template <typename T>
    using PropsMap = std::map<std::string, T>;

    std::string toolNameStr_m;
    UINT32 latencyGranularity_m;
    UINT32 numLatencyBuckets_m;
    std::vector<std::vector<std::string>> dtesVector_m;
    std::vector<std::vector<std::string>> topicsVector_m;
    std::vector<std::vector<std::string>> queuesVector_m;
    std::vector<std::vector<std::string>> selectorVector_m;
    std::string versionStr_m;
    PubSubMessageType msgType_m;
    PropsMap<bool> boolPropsMap_m;
    PropsMap<INT32> intPropsMap_m;
    PropsMap<INT64> int64PropsMap_m;
    PropsMap<double> doublePropsMap_m;
    PropsMap<std::string> stringPropsMap_m;
    PropsMap<std::vector<std::string>> stringVectorPropsMap_m;
    PropsMap<std::vector<std::vector<std::string>>> vectorStringVectorPropsMap_m;
    PropsMap<std::vector<INT32>> intVectorPropsMap_m;
    PropsMap<std::vector<double>> doubleVectorPropsMap_m;
    PropsMap<std::vector<std::vector<double>>> vectorDoubleVectorPropsMap_m;
    PropsMap<std::vector<std::map<INT32, UINT64>>> vectorMapInt32Uint64PropsMap_m;
    PropsMap<std::map<INT32, INT32>> mapIntIntPropsMap_m;
    // True once a selector file ("-ssf=") has been seen on the command line.
    bool selectorFile_m;
};

// The tool name of this build.
inline constexpr const char* TOOL_NAME = CliProperties::VEX_LOAD;

}  // namespace zorvane::pubsub
