#include "client/zcore/SessionProperties.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <string>
#include <vector>

#include "common/PubSubException.h"
#include "tests/unit/ZcoreTestSupport.h"

namespace zorvane::pubsub {
namespace {

struct Built {
    std::vector<std::string> keys;
    std::string value(const std::string& key) const {
        const char* value_p = array_m->valueOf(key);
        return value_p != nullptr ? value_p : "<absent>";
    }
    std::shared_ptr<PropertyArray> array_m;
};

Built build(const ClientProperties& props, INT32 clientId = 7, bool reflect = false,
            bool taskThread = false) {
    SessionPropertyInputs inputs;
    inputs.clientId_m = clientId;
    inputs.clientIdStr_m = props.generateClientIdStr(clientId);
    inputs.wantMsgReflect_m = reflect;
    inputs.wantClientTaskThread_m = taskThread;
    Built built;
    built.array_m = std::make_shared<PropertyArray>();
    SessionProperties::fill(props, inputs, *built.array_m);
    built.keys = built.array_m->keys();
    return built;
}

TEST(SessionProperties, DefaultRecordGivesTheFixedPairsInOrder) {
    // The defaults of the command line: no host, certificates not
    // validated, three reconnect tries of 3000 ms.
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
    EXPECT_EQ(built.value("SESSION_USERNAME"), "perf_client000007");
    EXPECT_EQ(built.value("SESSION_CONNECT_BLOCKING"), "1");
    EXPECT_EQ(built.value("SESSION_SSL_VALIDATE_CERTIFICATE"), "0");
}

TEST(SessionProperties, UsernameIsLeftOutOnlyForSchemesWithoutOne) {
    ClientProperties props = defaultClientProps();
    props.setAuthenticationScheme("basic");
    EXPECT_EQ(build(props).value("SESSION_USERNAME"), "perf_client000007");
    EXPECT_EQ(build(props).value("SESSION_AUTHENTICATION_SCHEME"), "AUTHENTICATION_SCHEME_BASIC");
    for (const char* scheme : {"oauth2", "kerberos", "client-certificate"}) {
        props.setAuthenticationScheme(scheme);
        EXPECT_EQ(build(props).value("SESSION_USERNAME"), "<absent>") << scheme;
    }
    EXPECT_EQ(build(props).value("SESSION_AUTHENTICATION_SCHEME"),
              "AUTHENTICATION_SCHEME_CLIENT_CERTIFICATE");
    props.setClientUsername("alice");  // a configured name always goes
    EXPECT_EQ(build(props).value("SESSION_USERNAME"), "alice");
}

TEST(SessionProperties, SendsBlockUnlessAReflectingClientHasNoTaskThread) {
    const ClientProperties props = defaultClientProps();
    EXPECT_EQ(build(props, 7, false, false).value("SESSION_SEND_BLOCKING"), "1");
    EXPECT_EQ(build(props, 7, true, false).value("SESSION_SEND_BLOCKING"), "0");
    EXPECT_EQ(build(props, 7, true, true).value("SESSION_SEND_BLOCKING"), "1");
}

TEST(SessionProperties, ClientNameGoesAtCreationUnlessItIsChangedOnConnect) {
    ClientProperties props = defaultClientProps();
    props.setClientPrefix("pfx");
    EXPECT_EQ(build(props).value("SESSION_CLIENT_NAME"), "pfx000007");
    props.setChangeClientNameFlag(true);
    EXPECT_EQ(build(props).value("SESSION_CLIENT_NAME"), "<absent>");
}

TEST(SessionProperties, NumbersFollowTheirNotSetRules) {
    ClientProperties props = defaultClientProps();
    props.setReconnectRetries(-1);  // for ever: a value, not "unset"
    props.setReconnectRetryWaitInMillis(-2);
    props.setSessionBufSize(0);
    props.setSocketRcvBuf(0);  // only above 0
    props.setPubAckWinSize(255);
    props.setMaxFlows(-1);
    props.setAckEventMode("windowed");
    props.setReconnectFailAction("AUTO-RETRY");
    const Built built = build(props);
    EXPECT_EQ(built.value("SESSION_RECONNECT_RETRIES"), "-1");
    EXPECT_EQ(built.value("SESSION_RECONNECT_RETRY_WAIT_MS"), "<absent>");
    EXPECT_EQ(built.value("SESSION_BUFFER_SIZE"), "0");
    EXPECT_EQ(built.value("SESSION_SOCKET_RCV_BUF_SIZE"), "<absent>");
    EXPECT_EQ(built.value("SESSION_PUB_WINDOW_SIZE"), "255");
    EXPECT_EQ(built.value("SESSION_MAX_FLOWS"), "<absent>");
    EXPECT_EQ(built.value("SESSION_ACK_EVENT_MODE"), "SESSION_ACK_EVENT_MODE_WINDOWED");
    EXPECT_EQ(built.value("SESSION_GD_RECONNECT_FAIL_ACTION"),
              "GD_RECONNECT_FAIL_ACTION_AUTO_RETRY");
    props.setReconnectFailAction("SOMETHING");
    EXPECT_EQ(build(props).value("SESSION_GD_RECONNECT_FAIL_ACTION"), "SOMETHING");
}

TEST(SessionProperties, ExtrasStandBehindAndARepeatedKeyAppearsTwice) {
    ClientProperties props = defaultClientProps();
    props.setMaxFlows(10);
    props.setExtraPropsList({"SESSION_MAX_FLOWS", "501", "SESSION_CONNECT_TIMEOUT_MS", "180000"});
    const Built built = build(props);
    ASSERT_GE(built.keys.size(), 2U);
    EXPECT_EQ(built.keys[built.keys.size() - 2], "SESSION_MAX_FLOWS");
    EXPECT_EQ(built.keys.back(), "SESSION_CONNECT_TIMEOUT_MS");
    EXPECT_EQ(std::count(built.keys.begin(), built.keys.end(), "SESSION_MAX_FLOWS"), 2);
    EXPECT_EQ(built.value("SESSION_MAX_FLOWS"), "501");  // the last one wins
}

TEST(SessionProperties, ExtrasThatDoNotFitAreRefusedWithTheirCount) {
    ClientProperties props = defaultClientProps();
    props.setExtraPropsList(std::vector<std::string>(74, "K"));  // 28 + 74 > 100
    try {
        build(props);
        FAIL() << "no exception";
    } catch (const PubSubException& e) {
        EXPECT_STREQ(e.what(),
                     "CLIENT 000007: Unable to add extra props.  Array not large enough. Index: 28 "
                     "Max size: 100 Num Props: 74\n");
    }
    props.setExtraPropsList(std::vector<std::string>(72, "K"));  // exactly 100
    EXPECT_EQ(build(props).array_m->size(), 100);
}

}  // namespace
}  // namespace zorvane::pubsub
