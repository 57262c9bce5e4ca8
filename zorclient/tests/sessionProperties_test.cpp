// Session properties and brokers: property arrays, host strings, client names, renames,
// capabilities and the configuration of broker instances.
#include <gtest/gtest.h>

#include <cstring>

#include "SessionTestSupport.h"

namespace {

using namespace zctest;

class SessionPropertiesTest : public PumpedTest {
  protected:
    void TearDown() override {
        for (zorClient_opaqueSession_pt& session : sessions_m) {
            zorClient_session_destroy(&session);
        }
        PumpedTest::TearDown();
    }

    // A session destroyed at the end of the test; null when creation failed.
    zorClient_opaqueSession_pt make(std::vector<const char*> props) {
        zorClient_opaqueSession_pt session = nullptr;
        if (createSession(context(), std::move(props), &log_m, &session) == ZORCLIENT_OK) {
            sessions_m.push_back(session);
        }
        return session;
    }

    // Modifies session's properties with props (closed here by a null).
    static zorClient_returnCode_t modify(zorClient_opaqueSession_pt session,
                                         std::vector<const char*> props) {
        props.push_back(nullptr);
        return zorClient_session_modifyProperties(session, props.data());
    }

    std::string peerName(zorClient_opaqueSession_pt session) {
        zorClient_field_t field{};
        if (zorClient_session_getCapability(session, "SESSION_PEER_ROUTER_NAME", &field,
                                            sizeof field) != ZORCLIENT_OK ||
            field.type != ZORCLIENT_STRING) {
            return "<none>";
        }
        return field.value.string;
    }

    EventLog log_m;
    std::vector<zorClient_opaqueSession_pt> sessions_m;
};

TEST_F(SessionPropertiesTest, BadValuesFailNamingTheKeyWhileForeignKeysAreIgnored) {
    const std::vector<std::pair<const char*, const char*>> bad = {
        {"SESSION_CONNECT_BLOCKING", "true"},
        {"SESSION_PUB_WINDOW_SIZE", "256"},
        {"SESSION_RECONNECT_RETRIES", "-2"},
        {"SESSION_SUBSCRIBER_LOCAL_PRIORITY", "1.5"},
        {"SESSION_ACK_EVENT_MODE", "per-message"},
        {"SESSION_AUTHENTICATION_SCHEME", "basic"},
        {"SESSION_GD_RECONNECT_FAIL_ACTION", "RETRY"},
        {"SESSION_SSL_CONNECTION_DOWNGRADE_TO", "NONE"},
        {"EMBEDDED_CACHE_DEPTH", "0"},
        {"EMBEDDED_EGRESS_QUEUE_SIZE", "-1"},
        {"EMBEDDED_FAULT_SESSION_DOWN_SUBCODE", "47"},
    };
    for (const auto& [key, value] : bad) {
        EXPECT_EQ(nullptr, make({key, value})) << key;
        EXPECT_EQ(ZORCLIENT_SUBCODE_PARAM_OUT_OF_RANGE, lastError().subCode) << key;
        EXPECT_NE(nullptr, std::strstr(lastError().errorStr, key)) << lastError().errorStr;
    }
    const std::string longName(ZORCLIENT_CLIENT_NAME_MAX_SIZE, 'n');
    EXPECT_EQ(nullptr, make({"SESSION_CLIENT_NAME", longName.c_str()}));
    EXPECT_NE(nullptr, std::strstr(lastError().errorStr, "SESSION_CLIENT_NAME"));
    EXPECT_EQ(nullptr, make({"SESSION_REPLY_TO_DEFAULT_DEST", "#INBOX/x"}));
    EXPECT_EQ(ZORCLIENT_SUBCODE_PARAM_CONFLICT, lastError().subCode);

    // As an application builds it: every key of its table, then an extra list that repeats a
    // key (the last wins, so the bad first value does not count) and brings keys of other
    // objects and of the application itself.
    const std::vector<std::pair<const char*, const char*>> appProps = {
        {"SESSION_HOST", ""},
        {"SESSION_USERNAME", "perf_client000001"},
        {"SESSION_PASSWORD", ""},
        {"SESSION_CLIENT_NAME", "props-first"},
        {"SESSION_VPN_NAME", "default"},
        {"SESSION_TCP_NODELAY", "1"},
        {"SESSION_IGNORE_DUP_SUBSCRIPTION_ERROR", "1"},
        {"SESSION_CONNECT_BLOCKING", "maybe"},
        {"SESSION_SUBSCRIBE_BLOCKING", "1"},
        {"SESSION_SEND_BLOCKING", "0"},
        {"SESSION_REAPPLY_SUBSCRIPTIONS", "1"},
        {"SESSION_BUFFER_SIZE", "90000"},
        {"SESSION_WRITE_TIMEOUT_MS", "3000"},
        {"SESSION_KEEP_ALIVE_INTERVAL_MS", "0"},
        {"SESSION_SOCKET_RCV_BUF_SIZE", "150000"},
        {"SESSION_SOCKET_SEND_BUF_SIZE", "90000"},
        {"SESSION_PUB_WINDOW_SIZE", "255"},
        {"SESSION_PUB_ACK_TIMER", "5000"},
        {"SESSION_SUBSCRIBER_LOCAL_PRIORITY", "4"},
        {"SESSION_SUBSCRIBER_NETWORK_PRIORITY", "1"},
        {"SESSION_COMPRESSION_LEVEL", "9"},
        {"SESSION_PAYLOAD_COMPRESSION_LEVEL", "0"},
        {"SESSION_RECONNECT_RETRIES", "-1"},
        {"SESSION_RECONNECT_RETRY_WAIT_MS", "-1"},
        {"SESSION_MAX_FLOWS", "501"},
        {"SESSION_TOPIC_DISPATCH", "1"},
        {"SESSION_NO_LOCAL", "1"},
        {"SESSION_ACK_EVENT_MODE", "SESSION_ACK_EVENT_MODE_WINDOWED"},
        {"SESSION_SSL_VALIDATE_CERTIFICATE", "0"},
        {"SESSION_SSL_TRUST_STORE_DIR", "/certs"},
        {"SESSION_AUTHENTICATION_SCHEME", "AUTHENTICATION_SCHEME_OAUTH2"},
        {"SESSION_GD_RECONNECT_FAIL_ACTION", "GD_RECONNECT_FAIL_ACTION_DISCONNECT"},
        {"SESSION_OAUTH2_ACCESS_TOKEN", "t0ken"},
        {"SESSION_CONNECT_TIMEOUT_MS", "180000"},
        {"SESSION_SUBCONFIRM_TIMEOUT_MS", "20000"},
        {"SESSION_CLIENT_NAME", "props-last"},
        {"FLOW_WINDOWSIZE", "junk"},
        {"CONTEXT_MAX_FLOWS", "-3"},
        {"ZORVANE_VEXLOAD_MTR_CATCHUP_NS", "100"},
        {"SESSION_NOT_A_KEY", "x"},
        {"SESSION_CONNECT_BLOCKING", "0"}};
    std::vector<const char*> props;
    for (const auto& [key, value] : appProps) {
        props.insert(props.end(), {key, value});
    }
    zorClient_opaqueSession_pt session = make(props);
    ASSERT_NE(nullptr, session) << lastError().errorStr;
    EXPECT_EQ("props-last", property(session, "SESSION_CLIENT_NAME"));
    EXPECT_EQ("0", property(session, "SESSION_CONNECT_BLOCKING"));
    EXPECT_EQ("501", property(session, "SESSION_MAX_FLOWS"));
    EXPECT_EQ("1", property(session, "SESSION_TCP_NODELAY"));
    // Left out: the library's default. Secrets are not given out.
    EXPECT_EQ("3", property(make({}), "SESSION_RECONNECT_RETRIES"));
    char buffer[64];
    EXPECT_EQ(ZORCLIENT_FAIL, zorClient_session_getProperty(session, "SESSION_OAUTH2_ACCESS_TOKEN",
                                                            buffer, sizeof buffer));
    EXPECT_EQ(ZORCLIENT_SUBCODE_PERMISSION_NOT_ALLOWED, lastError().subCode);
    EXPECT_EQ(ZORCLIENT_FAIL,
              zorClient_session_getProperty(session, "SESSION_NOT_A_KEY", buffer, sizeof buffer));
    EXPECT_EQ(ZORCLIENT_FAIL, zorClient_session_getProperty(session, "SESSION_CLIENT_NAME", buffer,
                                                            std::strlen("props-last")));
    EXPECT_EQ(ZORCLIENT_SUBCODE_INSUFFICIENT_SPACE, lastError().subCode);
    EXPECT_EQ(ZORCLIENT_IN_PROGRESS, zorClient_session_connect(session));
}

TEST_F(SessionPropertiesTest, HostStringsSelectTheBroker) {
    zorClient_opaqueSession_pt byDefault = make({});
    zorClient_opaqueSession_pt byWord = make({"SESSION_HOST", "embedded"});
    zorClient_opaqueSession_pt named = make({"SESSION_HOST", " embedded://alpha "});
    zorClient_opaqueSession_pt list =
        make({"SESSION_HOST", "tcps://x:55443,broker:55555,EMBEDDED://beta"});
    for (zorClient_opaqueSession_pt session : {byDefault, byWord, named, list}) {
        ASSERT_EQ(ZORCLIENT_OK, zorClient_session_connect(session)) << lastError().errorStr;
    }
    EXPECT_EQ("default", peerName(byDefault));
    EXPECT_EQ("default", peerName(byWord));
    EXPECT_EQ("alpha", peerName(named));
    EXPECT_EQ("beta", peerName(list));

    // A blocking connect fails at once, with the reason in the error info.
    struct Failing {
        const char* host;
        zorClient_subCode_t subCode;
        std::vector<std::string> texts;
    };
    const std::vector<Failing> failing = {
        {"amqp://h", ZORCLIENT_SUBCODE_NOT_SUPPORTED, {"scheme \"amqp\""}},
        {"broker:55555", ZORCLIENT_SUBCODE_NOT_SUPPORTED, {"scheme \"tcp\"", "broker:55555"}},
        {"tcp://broker:55555", ZORCLIENT_SUBCODE_NOT_SUPPORTED, {"scheme \"tcp\""}},
        {"embedded://no space", ZORCLIENT_SUBCODE_PARAM_OUT_OF_RANGE, {"\"no space\""}},
        {",amqp://z", ZORCLIENT_SUBCODE_NOT_SUPPORTED, {"empty entry", "scheme \"amqp\""}},
        {"tcp://a,ws://b",
         ZORCLIENT_SUBCODE_NOT_SUPPORTED,
         {"scheme \"tcp\"", "scheme \"ws\"", "tcp://a,ws://b"}},
    };
    for (const auto& [host, subCode, texts] : failing) {
        zorClient_opaqueSession_pt session = make({"SESSION_HOST", host});
        EXPECT_EQ(ZORCLIENT_FAIL, zorClient_session_connect(session)) << host;
        EXPECT_EQ(subCode, lastError().subCode) << host;
        for (const std::string& text : texts) {
            EXPECT_NE(nullptr, std::strstr(lastError().errorStr, text.c_str()))
                << host << ": " << lastError().errorStr;
        }
    }
}

TEST_F(SessionPropertiesTest, ClientNamesAreUniquePerBrokerInstance) {
    zorClient_opaqueSession_pt first = make({"SESSION_CLIENT_NAME", "twin"});
    zorClient_opaqueSession_pt second = make({"SESSION_CLIENT_NAME", "twin"});
    zorClient_opaqueSession_pt elsewhere =
        make({"SESSION_CLIENT_NAME", "twin", "SESSION_HOST", "embedded://names-other"});
    ASSERT_EQ(ZORCLIENT_OK, zorClient_session_connect(first));
    EXPECT_EQ(ZORCLIENT_FAIL, zorClient_session_connect(second));
    EXPECT_EQ(ZORCLIENT_SUBCODE_CLIENT_NAME_ALREADY_IN_USE, lastError().subCode);
    EXPECT_NE(nullptr, std::strstr(lastError().errorStr, "\"twin\"")) << lastError().errorStr;
    EXPECT_EQ(ZORCLIENT_OK, zorClient_session_connect(elsewhere));
    // The name is free again once its holder disconnects.
    ASSERT_EQ(ZORCLIENT_OK, zorClient_session_disconnect(first));
    EXPECT_EQ(ZORCLIENT_OK, zorClient_session_connect(second));

    // Sessions without a name get distinct generated ones, readable before connecting.
    zorClient_opaqueSession_pt anonymous1 = make({});
    zorClient_opaqueSession_pt anonymous2 = make({"SESSION_CLIENT_NAME", ""});
    const std::string name1 = property(anonymous1, "SESSION_CLIENT_NAME");
    const std::string name2 = property(anonymous2, "SESSION_CLIENT_NAME");
    EXPECT_EQ(0u, name1.rfind("client-", 0)) << name1;
    EXPECT_NE(name1, name2);
    EXPECT_EQ(ZORCLIENT_OK, zorClient_session_connect(anonymous1));
    EXPECT_EQ(ZORCLIENT_OK, zorClient_session_connect(anonymous2));
}

TEST_F(SessionPropertiesTest, RenamingIsSynchronousSilentAndKeepsNamesUnique) {
    zorClient_opaqueSession_pt holder = make({"SESSION_CLIENT_NAME", "held"});
    zorClient_opaqueSession_pt session = make({"SESSION_CLIENT_NAME", "before"});
    ASSERT_EQ(ZORCLIENT_OK, zorClient_session_connect(holder));
    // The reply topic is the session's inbox, known from the connect on.
    EXPECT_EQ('<', property(session, "SESSION_REPLY_TO_DEFAULT_DEST")[0]);
    ASSERT_EQ(ZORCLIENT_OK, zorClient_session_connect(session));
    EXPECT_EQ("#INBOX/default/before", property(session, "SESSION_REPLY_TO_DEFAULT_DEST"));

    ASSERT_EQ(ZORCLIENT_OK, modify(session, {"SESSION_CLIENT_NAME", "after"}));
    EXPECT_EQ("after", property(session, "SESSION_CLIENT_NAME"));
    EXPECT_EQ("#INBOX/default/after", property(session, "SESSION_REPLY_TO_DEFAULT_DEST"));
    // The old name is free, the holder's is not.
    zorClient_opaqueSession_pt reuser = make({"SESSION_CLIENT_NAME", "before"});
    EXPECT_EQ(ZORCLIENT_OK, zorClient_session_connect(reuser));
    EXPECT_EQ(ZORCLIENT_FAIL,
              modify(session, {"SESSION_CLIENT_NAME", "held", "SESSION_RECONNECT_RETRIES", "7"}));
    EXPECT_EQ(ZORCLIENT_SUBCODE_CLIENT_NAME_ALREADY_IN_USE, lastError().subCode);
    EXPECT_EQ("after", property(session, "SESSION_CLIENT_NAME"));
    EXPECT_EQ("3", property(session, "SESSION_RECONNECT_RETRIES"));  // all or nothing

    EXPECT_EQ(ZORCLIENT_FAIL, modify(session, {"SESSION_HOST", "embedded://elsewhere"}));
    EXPECT_EQ(ZORCLIENT_SUBCODE_PARAM_CONFLICT, lastError().subCode);
    EXPECT_NE(nullptr, std::strstr(lastError().errorStr, "SESSION_HOST"));
    EXPECT_EQ(ZORCLIENT_FAIL, modify(session, {"SESSION_CLIENT_NAME", ""}));
    EXPECT_EQ(ZORCLIENT_OK,
              modify(session, {"SESSION_OAUTH2_ACCESS_TOKEN", "a", "EMBEDDED_CACHE_DEPTH", "5",
                               "SESSION_OIDC_ID_TOKEN", "b"}));

    // A rename of a session that is not connected waits for its next connect.
    ASSERT_EQ(ZORCLIENT_OK, zorClient_session_disconnect(session));
    EXPECT_EQ(ZORCLIENT_OK, modify(session, {"SESSION_CLIENT_NAME", "held"}));
    EXPECT_EQ(ZORCLIENT_FAIL, zorClient_session_connect(session));
    EXPECT_EQ(ZORCLIENT_SUBCODE_CLIENT_NAME_ALREADY_IN_USE, lastError().subCode);

    // Only connects spoke: no MODIFYPROP events.
    std::this_thread::sleep_for(100ms);
    for (const RecordedEvent& event : log_m.events()) {
        EXPECT_EQ(ZORCLIENT_SESSION_EVENT_UP_NOTICE, event.event);
    }
}

TEST_F(SessionPropertiesTest, CapabilitiesDescribeTheEmbeddedBroker) {
    zorClient_opaqueSession_pt session = make({"SESSION_HOST", "embedded://caps"});
    EXPECT_EQ(0, zorClient_session_isCapable(session, "SESSION_CAPABILITY_PUB_GUARANTEED"));
    EXPECT_EQ(ZORCLIENT_SUBCODE_SESSION_NOT_ESTABLISHED, lastError().subCode);
    ASSERT_EQ(ZORCLIENT_OK, zorClient_session_connect(session));

    zorClient_field_t field{};
    ASSERT_EQ(ZORCLIENT_OK, zorClient_session_getCapability(session, "SESSION_PEER_PLATFORM",
                                                            &field, sizeof field));
    ASSERT_EQ(ZORCLIENT_STRING, field.type);
    EXPECT_STREQ("embedded", field.value.string);
    EXPECT_EQ("caps", peerName(session));
    ASSERT_EQ(ZORCLIENT_OK,
              zorClient_session_getCapability(session, "SESSION_CAPABILITY_MAX_DIRECT_MSG_SIZE",
                                              &field, sizeof field));
    EXPECT_EQ(ZORCLIENT_UINT32, field.type);
    EXPECT_EQ(30u * 1024u * 1024u, field.value.uint32);
    zorClient_version_info_t version{};
    zorClient_version_get(&version);
    ASSERT_EQ(ZORCLIENT_OK, zorClient_session_getCapability(
                                session, "SESSION_PEER_SOFTWARE_VERSION", &field, sizeof field));
    EXPECT_STREQ(version.version_p, field.value.string);
    EXPECT_EQ(ZORCLIENT_FAIL, zorClient_session_getCapability(session, "SESSION_PEER_PLATFORM",
                                                              &field, sizeof field - 1));

    // Every name an application asks is answered without an error; what an in-process broker
    // never offers is 0, and a default flow is never asked for.
    for (const char* name :
         {"SESSION_CAPABILITY_PUB_GUARANTEED", "SESSION_CAPABILITY_SUB_FLOW_GUARANTEED",
          "SESSION_CAPABILITY_TEMP_ENDPOINT", "SESSION_CAPABILITY_BROWSER",
          "SESSION_CAPABILITY_SELECTOR", "SESSION_CAPABILITY_NO_LOCAL",
          "SESSION_CAPABILITY_TRANSACTED_SESSION", "SESSION_CAPABILITY_MESSAGE_REPLAY",
          "SESSION_CAPABILITY_SHARED_SUBSCRIPTIONS"}) {
        zorClient_getLastErrorInfo()->subCode = ZORCLIENT_SUBCODE_OK;
        const zorClient_bool_t answer = zorClient_session_isCapable(session, name);
        EXPECT_LE(answer, 1) << name;
        EXPECT_EQ(ZORCLIENT_SUBCODE_OK, lastError().subCode) << name;
    }
    for (const char* never :
         {"SESSION_CAPABILITY_JNDI", "SESSION_CAPABILITY_COMPRESSION",
          "SESSION_CAPABILITY_SUPPORTS_XPE_SUBSCRIPTIONS", "SESSION_CAPABILITY_CUT_THROUGH",
          "SESSION_CAPABILITY_OPENMAMA", "SESSION_CAPABILITY_COMPRESSED_SSL"}) {
        EXPECT_EQ(0, zorClient_session_isCapable(session, never)) << never;
        ASSERT_EQ(ZORCLIENT_OK,
                  zorClient_session_getCapability(session, never, &field, sizeof field));
        EXPECT_EQ(ZORCLIENT_BOOL, field.type);
    }
    EXPECT_EQ(0, zorClient_session_isCapable(session, "SESSION_CAPABILITY_TELEPATHY"));
    EXPECT_EQ(ZORCLIENT_SUBCODE_PARAM_OUT_OF_RANGE, lastError().subCode);
    // Still answered after a disconnect: the report reads them late.
    ASSERT_EQ(ZORCLIENT_OK, zorClient_session_disconnect(session));
    EXPECT_EQ("caps", peerName(session));
}

TEST_F(SessionPropertiesTest, TheFirstSessionOfAnInstanceFixesItsConfiguration) {
    const char* configured[] = {"EMBEDDED_FAULT_SESSION_DOWN_SUBCODE", "95", nullptr, nullptr};
    // Broker keys of the global array count too, behind which the session's own stand.
    zorClient_cleanup();
    ASSERT_EQ(ZORCLIENT_OK, zorClient_initialize(ZORCLIENT_LOG_ERROR, configured));
    pumped_m = std::make_unique<PumpedContext>();
    LoggedSession first(context(), {"SESSION_HOST", "embedded://fixed", "SESSION_RECONNECT_RETRIES",
                                    "0", "EMBEDDED_FAULT_SESSION_DOWN_SUBCODE", "94"});
    LoggedSession second(context(),
                         {"SESSION_HOST", "embedded://fixed", "SESSION_RECONNECT_RETRIES", "0"});
    ASSERT_EQ(ZORCLIENT_OK, zorClient_session_connect(first));
    ASSERT_EQ(ZORCLIENT_OK, zorClient_session_connect(second));
    for (LoggedSession* session_p : {&first, &second}) {
        ASSERT_EQ(ZORCLIENT_OK, _zorClient_session_forceFailure(*session_p));
        ASSERT_TRUE(session_p->log.waitForCount(2));
        EXPECT_EQ(ZORCLIENT_SUBCODE_UNKNOWN_FLOW_NAME, session_p->log.events()[1].subCode);
    }
}

}  // namespace
