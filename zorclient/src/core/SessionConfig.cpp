#include "core/SessionConfig.h"

#include <algorithm>
#include <array>

#include "api/LastError.h"
#include "api/Logger.h"
#include "zorClient.h"

namespace zorvane::zorclient {

namespace {

enum class Kind { Text, Flag, Integer, Choice, Name, ReadOnly };

struct KeyRule {
    const char* name_p;
    Kind kind;
    const char* default_p;
    std::int64_t min = 0;
    std::int64_t max = 0;
    std::array<const char*, 5> choices = {};  // Choice: the values allowed (null-terminated)
    bool modifiable = false;                  // may change on an existing session
    bool secret = false;                      // not given out by getProperty
};

constexpr std::int64_t MAX_INT32 = 2147483647;
// A client name and its NUL must fit ZORCLIENT_CLIENT_NAME_MAX_SIZE.
constexpr std::int64_t MAX_CLIENT_NAME = ZORCLIENT_CLIENT_NAME_MAX_SIZE - 1;
constexpr std::int64_t DEFAULT_RECONNECT_WAIT_MS = 3000;

KeyRule text(const char* name_p, const char* default_p = "") {
    return KeyRule{name_p, Kind::Text, default_p};
}
KeyRule secret(const char* name_p) {
    KeyRule rule = text(name_p);
    rule.secret = true;
    return rule;
}
KeyRule flag(const char* name_p, const char* default_p) {
    return KeyRule{name_p, Kind::Flag, default_p};
}
KeyRule integer(const char* name_p, const char* default_p, std::int64_t min, std::int64_t max) {
    return KeyRule{name_p, Kind::Integer, default_p, min, max};
}
KeyRule choice(const char* name_p, const char* default_p, std::array<const char*, 5> choices) {
    KeyRule rule{name_p, Kind::Choice, default_p};
    rule.choices = choices;
    return rule;
}
KeyRule modifiable(KeyRule rule) {
    rule.modifiable = true;
    return rule;
}

// Ranges are what the library can act on; defaults are what a session gets when the
// application leaves a key out.
const std::vector<KeyRule>& keyRules() {
    static const std::vector<KeyRule> rules_s = {
        text(ZORCLIENT_SESSION_PROP_HOST),
        modifiable(text(ZORCLIENT_SESSION_PROP_USERNAME)),
        modifiable(secret(ZORCLIENT_SESSION_PROP_PASSWORD)),
        modifiable(KeyRule{ZORCLIENT_SESSION_PROP_CLIENT_NAME, Kind::Name, "", 0, MAX_CLIENT_NAME}),
        text(ZORCLIENT_SESSION_PROP_VPN_NAME),
        modifiable(text(ZORCLIENT_SESSION_PROP_APPLICATION_DESCRIPTION)),
        flag(ZORCLIENT_SESSION_PROP_TCP_NODELAY, "1"),
        flag(ZORCLIENT_SESSION_PROP_IGNORE_DUP_SUBSCRIPTION_ERROR, "0"),
        flag(ZORCLIENT_SESSION_PROP_CONNECT_BLOCKING, "1"),
        flag(ZORCLIENT_SESSION_PROP_SUBSCRIBE_BLOCKING, "1"),
        flag(ZORCLIENT_SESSION_PROP_SEND_BLOCKING, "1"),
        flag(ZORCLIENT_SESSION_PROP_REAPPLY_SUBSCRIPTIONS, "0"),
        integer(ZORCLIENT_SESSION_PROP_BUFFER_SIZE, "90000", 0, MAX_INT32),
        integer(ZORCLIENT_SESSION_PROP_WRITE_TIMEOUT_MS, "3000", 0, MAX_INT32),
        integer(ZORCLIENT_SESSION_PROP_KEEP_ALIVE_INTERVAL_MS, "3000", 0, MAX_INT32),
        integer(ZORCLIENT_SESSION_PROP_SOCKET_RCV_BUF_SIZE, "150000", 0, MAX_INT32),
        integer(ZORCLIENT_SESSION_PROP_SOCKET_SEND_BUF_SIZE, "90000", 0, MAX_INT32),
        integer(ZORCLIENT_SESSION_PROP_PUB_WINDOW_SIZE, "50", 1, 255),
        integer(ZORCLIENT_SESSION_PROP_PUB_ACK_TIMER, "2000", 0, 60000),
        integer(ZORCLIENT_SESSION_PROP_SUBSCRIBER_LOCAL_PRIORITY, "1", 1, 4),
        integer(ZORCLIENT_SESSION_PROP_SUBSCRIBER_NETWORK_PRIORITY, "1", 1, 4),
        integer(ZORCLIENT_SESSION_PROP_COMPRESSION_LEVEL, "0", 0, 9),
        integer(ZORCLIENT_SESSION_PROP_PAYLOAD_COMPRESSION_LEVEL, "0", 0, 9),
        // -1: retry for ever.
        modifiable(integer(ZORCLIENT_SESSION_PROP_RECONNECT_RETRIES, "3", -1, MAX_INT32)),
        // -1: the default wait.
        modifiable(integer(ZORCLIENT_SESSION_PROP_RECONNECT_RETRY_WAIT_MS, "3000", -1, MAX_INT32)),
        integer(ZORCLIENT_SESSION_PROP_MAX_FLOWS, "1000", 1, 1000000),
        flag(ZORCLIENT_SESSION_PROP_TOPIC_DISPATCH, "0"),
        flag(ZORCLIENT_SESSION_PROP_NO_LOCAL, "0"),
        choice(ZORCLIENT_SESSION_PROP_ACK_EVENT_MODE, ZORCLIENT_SESSION_PROP_ACK_EVENT_MODE_PER_MSG,
               {ZORCLIENT_SESSION_PROP_ACK_EVENT_MODE_PER_MSG,
                ZORCLIENT_SESSION_PROP_ACK_EVENT_MODE_WINDOWED}),
        text(ZORCLIENT_SESSION_PROP_WEB_TRANSPORT_PROTOCOL),
        text(ZORCLIENT_SESSION_PROP_SSL_PROTOCOL),
        text(ZORCLIENT_SESSION_PROP_SSL_EXCLUDED_PROTOCOLS),
        text(ZORCLIENT_SESSION_PROP_MAXIMUM_TLS_PROTOCOL_VERSION),
        text(ZORCLIENT_SESSION_PROP_MINIMUM_TLS_PROTOCOL_VERSION),
        flag(ZORCLIENT_SESSION_PROP_SSL_VALIDATE_CERTIFICATE, "1"),
        flag(ZORCLIENT_SESSION_PROP_SSL_VALIDATE_CERTIFICATE_DATE, "1"),
        flag(ZORCLIENT_SESSION_PROP_SSL_VALIDATE_CERTIFICATE_HOST, "1"),
        text(ZORCLIENT_SESSION_PROP_SSL_CIPHER_SUITES),
        text(ZORCLIENT_SESSION_PROP_SSL_TRUST_STORE_DIR),
        text(ZORCLIENT_SESSION_PROP_SSL_TRUSTED_COMMON_NAME_LIST),
        text(ZORCLIENT_SESSION_PROP_SSL_CLIENT_CERTIFICATE_FILE),
        text(ZORCLIENT_SESSION_PROP_SSL_CLIENT_PRIVATE_KEY_FILE),
        secret(ZORCLIENT_SESSION_PROP_SSL_CLIENT_PRIVATE_KEY_FILE_PASSWORD),
        choice(ZORCLIENT_SESSION_PROP_SSL_CONNECTION_DOWNGRADE_TO, "",
               {"", ZORCLIENT_SESSION_PROP_SSL_CONNECTION_DOWNGRADE_TO_PLAIN_TEXT}),
        choice(ZORCLIENT_SESSION_PROP_AUTHENTICATION_SCHEME,
               ZORCLIENT_SESSION_PROP_AUTHENTICATION_SCHEME_BASIC,
               {ZORCLIENT_SESSION_PROP_AUTHENTICATION_SCHEME_BASIC,
                ZORCLIENT_SESSION_PROP_AUTHENTICATION_SCHEME_CLIENT_CERTIFICATE,
                ZORCLIENT_SESSION_PROP_AUTHENTICATION_SCHEME_TLS_PSK,
                ZORCLIENT_SESSION_PROP_AUTHENTICATION_SCHEME_GSS_KRB,
                ZORCLIENT_SESSION_PROP_AUTHENTICATION_SCHEME_OAUTH2}),
        text(ZORCLIENT_SESSION_PROP_WEB_TRANSPORT_PROTOCOL_LIST),
        integer(ZORCLIENT_SESSION_PROP_TRANSPORT_PROTOCOL_DOWNGRADE_TIMEOUT_MS, "3000", 0,
                MAX_INT32),
        text(ZORCLIENT_SESSION_PROP_BIND_IP),
        choice(ZORCLIENT_SESSION_PROP_GD_RECONNECT_FAIL_ACTION,
               ZORCLIENT_SESSION_PROP_GD_RECONNECT_FAIL_ACTION_AUTO_RETRY,
               {ZORCLIENT_SESSION_PROP_GD_RECONNECT_FAIL_ACTION_AUTO_RETRY,
                ZORCLIENT_SESSION_PROP_GD_RECONNECT_FAIL_ACTION_DISCONNECT}),
        modifiable(secret(ZORCLIENT_SESSION_PROP_OAUTH2_ACCESS_TOKEN)),
        modifiable(secret(ZORCLIENT_SESSION_PROP_OIDC_ID_TOKEN)),
        text(ZORCLIENT_SESSION_PROP_OAUTH2_ISSUER_IDENTIFIER),
        integer(ZORCLIENT_SESSION_PROP_CONNECT_TIMEOUT_MS, "30000", 0, MAX_INT32),
        integer(ZORCLIENT_SESSION_PROP_SUBCONFIRM_TIMEOUT_MS, "10000", 0, MAX_INT32),
        KeyRule{ZORCLIENT_SESSION_PROP_REPLY_TO_DEFAULT_DEST, Kind::ReadOnly, ""},
    };
    return rules_s;
}

const KeyRule* findRule(std::string_view key) {
    for (const KeyRule& rule : keyRules()) {
        if (key == rule.name_p) {
            return &rule;
        }
    }
    return nullptr;
}

zorClient_returnCode_t checkValue(const KeyRule& rule, const std::string& value,
                                  SessionConfig::Purpose purpose, const char* function_p) {
    const char* key_p = rule.name_p;
    switch (rule.kind) {
        case Kind::ReadOnly:
            return LastError::fail(ZORCLIENT_SUBCODE_PARAM_CONFLICT, "%s: property %s is read only",
                                   function_p, key_p);
        case Kind::Text:
            break;
        case Kind::Flag:
            if (value != "0" && value != "1") {
                return LastError::fail(ZORCLIENT_SUBCODE_PARAM_OUT_OF_RANGE,
                                       "%s: property %s has the value \"%s\"; expected \"1\" or "
                                       "\"0\"",
                                       function_p, key_p, value.c_str());
            }
            break;
        case Kind::Integer: {
            std::int64_t number = 0;
            if (!PropertyList::parseDecimal(value, &number) || number < rule.min ||
                number > rule.max) {
                return LastError::fail(ZORCLIENT_SUBCODE_PARAM_OUT_OF_RANGE,
                                       "%s: property %s has the value \"%s\"; expected a decimal "
                                       "number from %lld to %lld",
                                       function_p, key_p, value.c_str(),
                                       static_cast<long long>(rule.min),
                                       static_cast<long long>(rule.max));
            }
            break;
        }
        case Kind::Choice: {
            bool allowed = false;
            std::string expected;
            for (const char* choice_p : rule.choices) {
                if (choice_p == nullptr) {
                    break;
                }
                allowed = allowed || value == choice_p;
                expected += expected.empty() ? "\"" : ", \"";
                expected += choice_p;
                expected += "\"";
            }
            if (!allowed) {
                return LastError::fail(ZORCLIENT_SUBCODE_PARAM_OUT_OF_RANGE,
                                       "%s: property %s has the value \"%s\"; expected one of %s",
                                       function_p, key_p, value.c_str(), expected.c_str());
            }
            break;
        }
        case Kind::Name:
            // At creation an empty name asks for a generated one; a rename needs a name.
            if ((value.empty() && purpose == SessionConfig::Purpose::Modify) ||
                static_cast<std::int64_t>(value.size()) > rule.max) {
                return LastError::fail(ZORCLIENT_SUBCODE_PARAM_OUT_OF_RANGE,
                                       "%s: property %s has the value \"%.40s%s\"; expected 1 to "
                                       "%lld characters",
                                       function_p, key_p, value.c_str(),
                                       value.size() > 40 ? "..." : "",
                                       static_cast<long long>(rule.max));
            }
            break;
    }
    if (purpose == SessionConfig::Purpose::Modify && !rule.modifiable) {
        return LastError::fail(ZORCLIENT_SUBCODE_PARAM_CONFLICT,
                               "%s: property %s cannot be changed on an existing session",
                               function_p, key_p);
    }
    return ZORCLIENT_OK;
}

}  // namespace

SessionConfig::SessionConfig() {
    for (const KeyRule& rule : keyRules()) {
        if (rule.kind != Kind::ReadOnly) {
            values_m.emplace(rule.name_p, rule.default_p);
        }
    }
}

zorClient_returnCode_t SessionConfig::check(const PropertyList& list, Purpose purpose,
                                            const char* function_p, Changes* changes_p) {
    changes_p->clear();
    for (const PropertyList::Entry& entry : list.entries()) {
        if (!PropertyList::hasPrefix(entry.first, "SESSION_")) {
            continue;
        }
        // Only the last occurrence counts: an earlier bad value that a later one replaces is
        // not an error.
        if (list.find(entry.first) != &entry.second) {
            continue;
        }
        const KeyRule* rule_p = findRule(entry.first);
        if (rule_p == nullptr) {
            ZC_LOG(ZORCLIENT_LOG_NOTICE, "%s: unknown session property %s ignored", function_p,
                   entry.first.c_str());
            continue;
        }
        zorClient_returnCode_t rc = checkValue(*rule_p, entry.second, purpose, function_p);
        if (rc != ZORCLIENT_OK) {
            return rc;
        }
        changes_p->push_back(entry);
    }
    return ZORCLIENT_OK;
}

void SessionConfig::commit(const Changes& changes) {
    for (const PropertyList::Entry& change : changes) {
        values_m[change.first] = change.second;
    }
}

const std::string* SessionConfig::value(std::string_view key) const {
    auto it = values_m.find(key);
    return it != values_m.end() ? &it->second : nullptr;
}

bool SessionConfig::isSecret(std::string_view key) {
    const KeyRule* rule_p = findRule(key);
    return rule_p != nullptr && rule_p->secret;
}

const std::string& SessionConfig::text(std::string_view key) const {
    return values_m.find(key)->second;
}

bool SessionConfig::flag(std::string_view key) const {
    return text(key) == "1";
}

std::int64_t SessionConfig::integer(std::string_view key) const {
    std::int64_t number = 0;
    PropertyList::parseDecimal(text(key), &number);
    return number;
}

const std::string& SessionConfig::host() const {
    return text(ZORCLIENT_SESSION_PROP_HOST);
}

const std::string& SessionConfig::clientName() const {
    return text(ZORCLIENT_SESSION_PROP_CLIENT_NAME);
}

bool SessionConfig::connectBlocking() const {
    return flag(ZORCLIENT_SESSION_PROP_CONNECT_BLOCKING);
}

std::int64_t SessionConfig::reconnectRetries() const {
    return integer(ZORCLIENT_SESSION_PROP_RECONNECT_RETRIES);
}

std::chrono::milliseconds SessionConfig::reconnectRetryWait() const {
    const std::int64_t wait = integer(ZORCLIENT_SESSION_PROP_RECONNECT_RETRY_WAIT_MS);
    return std::chrono::milliseconds(wait < 0 ? DEFAULT_RECONNECT_WAIT_MS : wait);
}

}  // namespace zorvane::zorclient
