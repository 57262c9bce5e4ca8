#include "client/zcore/SessionProperties.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "common/PubSubException.h"
#include "tests/unit/ZcoreTestSupport.h"

namespace zorvane::pubsub {
namespace {

// The keys in order, and the value of each (the last one of a key).
struct Built {
    std::vector<std::string> keys;
    std::map<std::string, std::string> values;
    std::string operator[](const std::string& key) const {
        const auto found = values.find(key);
        return found == values.end() ? "<absent>" : found->second;
    }
};

Built build(const ClientProperties& props, bool reflect = false, bool taskThread = false) {
    PropertyArray array;
    SessionProperties::fill(props, {7, props.generateClientIdStr(7), reflect, taskThread}, array);
    Built built{array.keys(), {}};
    for (int i = 0; i + 1 < array.size(); i += 2) {
        built.values[array.at(i)] = array.at(i + 1);
    }
    return built;
}

TEST(SessionProperties, DefaultRecordGivesTheFixedPairsInOrder) {
    const Built built = build(defaultClientProps());
    EXPECT_EQ(
        built.keys,
        (std::vector<std::string>{
            "SESSION_HOST", "SESSION_USERNAME", "SESSION_PASSWORD", "SESSION_TCP_NODELAY",
            "SESSION_IGNORE_DUP_SUBSCRIPTION_ERROR", "SESSION_CONNECT_BLOCKING",
            "SESSION_SUBSCRIBE_BLOCKING", "SESSION_SEND_BLOCKING", "SESSION_REAPPLY_SUBSCRIPTIONS",
            "SESSION_RECONNECT_RETRIES", "SESSION_RECONNECT_RETRY_WAIT_MS",
            "SESSION_SSL_VALIDATE_CERTIFICATE", "SESSION_SSL_VALIDATE_CERTIFICATE_DATE",
            "SESSION_SSL_VALIDATE_CERTIFICATE_HOST"}));
    EXPECT_EQ(built["SESSION_USERNAME"], "perf_client000007");
    EXPECT_EQ(built["SESSION_SSL_VALIDATE_CERTIFICATE"], "0");
}

TEST(SessionProperties, UsernameSendBlockingAndClientNameFollowTheirRules) {
    ClientProperties props = defaultClientProps();
    props.setAuthenticationScheme("basic");
    EXPECT_EQ(build(props)["SESSION_USERNAME"], "perf_client000007");
    for (const char* scheme : {"oauth2", "kerberos", "client-certificate"}) {
        props.setAuthenticationScheme(scheme);
        EXPECT_EQ(build(props)["SESSION_USERNAME"], "<absent>") << scheme;
    }
    EXPECT_EQ(build(props)["SESSION_AUTHENTICATION_SCHEME"],
              "AUTHENTICATION_SCHEME_CLIENT_CERTIFICATE");
    props.setClientUsername("alice");
    EXPECT_EQ(build(props)["SESSION_USERNAME"], "alice");

    EXPECT_EQ(build(props, true, false)["SESSION_SEND_BLOCKING"], "0");
    EXPECT_EQ(build(props, true, true)["SESSION_SEND_BLOCKING"], "1");

    props.setClientPrefix("pfx");
    EXPECT_EQ(build(props)["SESSION_CLIENT_NAME"], "pfx000007");
    props.setChangeClientNameFlag(true);  // named on connect instead
    EXPECT_EQ(build(props)["SESSION_CLIENT_NAME"], "<absent>");
}

TEST(SessionProperties, NumbersAndWordsFollowTheirNotSetRulesAndMappings) {
    ClientProperties props = defaultClientProps();
    props.setReconnectRetries(-1);  // for ever: a value, not "unset"
    props.setReconnectRetryWaitInMillis(-2);
    props.setSessionBufSize(0);
    props.setSocketRcvBuf(0);  // only above 0
    props.setAckEventMode("windowed");
    props.setReconnectFailAction("AUTO-RETRY");
    Built built = build(props);
    EXPECT_EQ(built["SESSION_RECONNECT_RETRIES"], "-1");
    EXPECT_EQ(built["SESSION_RECONNECT_RETRY_WAIT_MS"], "<absent>");
    EXPECT_EQ(built["SESSION_BUFFER_SIZE"], "0");
    EXPECT_EQ(built["SESSION_SOCKET_RCV_BUF_SIZE"], "<absent>");
    EXPECT_EQ(built["SESSION_ACK_EVENT_MODE"], "SESSION_ACK_EVENT_MODE_WINDOWED");
    EXPECT_EQ(built["SESSION_GD_RECONNECT_FAIL_ACTION"], "GD_RECONNECT_FAIL_ACTION_AUTO_RETRY");
    props.setReconnectFailAction("SOMETHING");
    EXPECT_EQ(build(props)["SESSION_GD_RECONNECT_FAIL_ACTION"], "SOMETHING");
}

TEST(SessionProperties, ExtrasStandBehindAndAreRefusedWhenTheyDoNotFit) {
    ClientProperties props = defaultClientProps();
    props.setMaxFlows(10);
    props.setExtraPropsList({"SESSION_MAX_FLOWS", "501", "SESSION_CONNECT_TIMEOUT_MS", "180000"});
    const Built built = build(props);
    EXPECT_EQ(built.keys.back(), "SESSION_CONNECT_TIMEOUT_MS");
    EXPECT_EQ(std::count(built.keys.begin(), built.keys.end(), "SESSION_MAX_FLOWS"), 2);
    EXPECT_EQ(built["SESSION_MAX_FLOWS"], "501");  // the extra one, behind

    props.setExtraPropsList(std::vector<std::string>(70, "K"));  // 30 + 70: exactly full
    EXPECT_EQ(build(props).keys.size(), 15U + 35U);
    props.setExtraPropsList(std::vector<std::string>(72, "K"));
    try {
        build(props);
        FAIL() << "no exception";
    } catch (const PubSubException& e) {
        EXPECT_STREQ(e.what(),
                     "CLIENT 000007: Unable to add extra props.  Array not large enough. Index: 30 "
                     "Max size: 100 Num Props: 72\n");
    }
}

}  // namespace
}  // namespace zorvane::pubsub
