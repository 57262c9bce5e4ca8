#include "client/zcore/Client.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <memory>
#include <string>
#include <vector>

#include "common/MsgProperties.h"
#include "common/OS.h"
#include "common/PubSubException.h"
#include "common/QueueBrowserProperties.h"
#include "tests/unit/ClientProbe.h"
#include "tests/unit/ZcoreTestSupport.h"

namespace zorvane::pubsub {
namespace {

using State = AbstractClient::ClientStateType;

class ClientTest : public LibraryFixture {
  protected:
    ClientProbe& make(const ClientProperties& props, INT32 clientId = 1,
                      const StatsCustomizationProperties& stats = {}) {
        clients_m.push_back(std::make_unique<ClientProbe>(clientId, 1000000, props,
                                                          context_mp.get(), stats, nullptr, 1));
        return *clients_m.back();
    }
    void destroyClients() override { clients_m.clear(); }

    static bool reaches(const AbstractClient& client, State state) {
        return waitFor([&] { return client.getChannelState() == state; });
    }
    std::string sessionProperty(const ClientProbe& client, const char* name) {
        char buffer[ZORCLIENT_REPLY_TO_MAX_SIZE] = {0};
        zorClient_session_getProperty(client.session(), name, buffer, sizeof buffer);
        return buffer;
    }

    std::vector<std::unique_ptr<ClientProbe>> clients_m;
};

TEST_F(ClientTest, ConnectsThroughTheContextAndASecondConnectDoesNothing) {
    ClientProperties props = defaultClientProps();
    props.setClientPrefix("zc");
    ClientProbe& client = make(props);
    EXPECT_EQ(client.getChannelState(), AbstractClient::CLIENT_STATE_DISCONNECTED);

    client.connect();
    ASSERT_TRUE(reaches(client, AbstractClient::CLIENT_STATE_CONNECTED));
    EXPECT_TRUE(log_m.contains(log::LEVEL_INFO,
                               "CLIENT zc000001: Recv ZORCLIENT_SESSION_EVENT_UP_NOTICE."));
    EXPECT_EQ(client.getClientName(), "zc000001");
    EXPECT_EQ(client.getRxStats(false).getSessionEventStat(ZORCLIENT_SESSION_EVENT_UP_NOTICE), 1U);

    client.connect();
    EXPECT_TRUE(log_m.contains(
        "CLIENT zc000001: Skipping connect because channel is already admin connected"));
    EXPECT_EQ(client.getSdkStat(AbstractClient::TX_STAT_OFFSET +
                                ZORCLIENT_STATS_TX_TOTAL_CONNECTION_ATTEMPTS),
              1);

    client.disconnect();
    EXPECT_EQ(client.getChannelState(), AbstractClient::CLIENT_STATE_DISCONNECTED);
    EXPECT_FALSE(client.isAdminConnected());
    client.disconnect();
    EXPECT_TRUE(log_m.contains(
        "CLIENT zc000001: Skipping connect because channel is already admin disconnected"));
    // The counters survive the disconnect until they are reset.
    client.resetStats();
    EXPECT_EQ(client.getSdkStat(AbstractClient::TX_STAT_OFFSET +
                                ZORCLIENT_STATS_TX_TOTAL_CONNECTION_ATTEMPTS),
              0);
}

TEST_F(ClientTest, ThePropertyArrayReachesTheSessionAndRenamingFollowsEachConnect) {
    ClientProperties reflecting = defaultClientProps();
    reflecting.setClientMode("reflect");
    reflecting.setPubMaxResends(0);
    ClientProbe& reflector = make(reflecting, 1);
    EXPECT_EQ(sessionProperty(reflector, "SESSION_SEND_BLOCKING"), "0");
    EXPECT_EQ(reflector.maxPubRetries(), 3);

    ClientProperties renamed = defaultClientProps();
    renamed.setClientPrefix("ren");
    renamed.setChangeClientNameFlag(true);
    renamed.setPubMaxResends(1);
    ClientProbe& client = make(renamed, 2);
    EXPECT_EQ(client.maxPubRetries(), 1);
    EXPECT_EQ(sessionProperty(client, "SESSION_SEND_BLOCKING"), "1");
    EXPECT_NE(client.getClientName(), "ren000002");  // the library made one up

    client.connect();
    EXPECT_EQ(client.getClientName(), "ren000002");
    client.setClientName("someone-else");
    client.disconnect();
    client.connect();
    EXPECT_EQ(client.getClientName(), "ren000002");
}

TEST_F(ClientTest, AFailedConnectThrowsWithTheLibrarysReasonAndFillsTheLastError) {
    ClientProperties props = defaultClientProps();
    props.setHost("nosuch://x");
    ClientProbe& client = make(props);
    try {
        client.connect();
        FAIL() << "no exception";
    } catch (const PubSubException& e) {
        const std::string text = e.what();
        EXPECT_EQ(text.rfind("CLIENT 000001: Error details - RC: ZORCLIENT_FAIL, Sub Code: "
                             "ZORCLIENT_SUBCODE_NOT_SUPPORTED, Response Code: 0, Error String: ",
                             0),
                  0U)
            << text;
        EXPECT_NE(text.find("nosuch"), std::string::npos) << text;
    }
    auto error = client.getLastError();
    ASSERT_NE(error, nullptr);
    EXPECT_EQ(error->getSubCode(), "ZORCLIENT_SUBCODE_NOT_SUPPORTED");
    EXPECT_EQ(error->getReturnCode(), ZORCLIENT_FAIL);
    // Left for another try.
    EXPECT_EQ(client.getChannelState(), AbstractClient::CLIENT_STATE_CONNECTING);
    EXPECT_FALSE(client.isAdminConnected());
}

TEST_F(ClientTest, ANonBlockingConnectFailsThroughItsEventAndStopsPublishingOnError) {
    ClientProperties props = defaultClientProps();
    props.setHost("nosuch://x");
    props.setWantNonBlockingConnect(true);
    props.setStopOnError(true);
    ClientProbe& client = make(props);
    client.connect();  // in progress: no exception
    EXPECT_TRUE(client.isAdminConnected());
    ASSERT_TRUE(waitFor([&] { return log_m.contains("CLIENT 000001: Recv channel down event"); }));
    EXPECT_TRUE(reaches(client, AbstractClient::CLIENT_STATE_DISCONNECTED));
    auto error = client.getLastError();
    ASSERT_NE(error, nullptr);
    EXPECT_EQ(error->getSubCode(), "ZORCLIENT_SUBCODE_NOT_SUPPORTED");
    EXPECT_EQ(error->getReturnCode(), 0);

    MsgProperties msg;
    try {
        client.publishMsg(&msg, 0);
        FAIL() << "no exception";
    } catch (const PubSubException& e) {
        EXPECT_STREQ(e.what(),
                     "CLIENT 000001: Async exception occurred.  Aborting publish of message.\n");
    }
}

TEST_F(ClientTest, AForcedFailureReconnectsOrGoesDownWithoutRetries) {
    ClientProperties props = defaultClientProps();
    props.setReconnectRetries(2);
    props.setReconnectRetryWaitInMillis(10);
    ClientProbe& retrying = make(props, 1);
    props.setReconnectRetries(0);
    ClientProbe& giving = make(props, 2);
    retrying.connect();
    giving.connect();
    ASSERT_TRUE(reaches(retrying, AbstractClient::CLIENT_STATE_CONNECTED));
    ASSERT_TRUE(reaches(giving, AbstractClient::CLIENT_STATE_CONNECTED));

    retrying.sigalrmAction();
    giving.sigalrmAction();
    ASSERT_TRUE(waitFor([&] {
        return log_m.contains("CLIENT 000001: Recv ZORCLIENT_SESSION_EVENT_RECONNECTED_NOTICE.");
    }));
    EXPECT_TRUE(log_m.contains("CLIENT 000001: Recv ZORCLIENT_SESSION_EVENT_RECONNECTING_NOTICE."));
    EXPECT_EQ(retrying.getChannelState(), AbstractClient::CLIENT_STATE_CONNECTED);
    const PerfStats& stats = retrying.getRxStats(false);
    EXPECT_EQ(stats.getSessionEventStat(ZORCLIENT_SESSION_EVENT_RECONNECTING_NOTICE), 1U);
    EXPECT_EQ(stats.getSessionEventStat(ZORCLIENT_SESSION_EVENT_RECONNECTED_NOTICE), 1U);

    EXPECT_TRUE(reaches(giving, AbstractClient::CLIENT_STATE_DISCONNECTED));
    EXPECT_TRUE(waitFor([&] { return giving.getLastError() != nullptr; }));
    // Still admin-connected: the tool asked for a connection it lost.
    EXPECT_TRUE(giving.isAdminConnected());
}

TEST_F(ClientTest, SessionEventsCountAcknowledgementsAndReportErrors) {
    ClientProperties props = defaultClientProps();
    props.setStopOnError(true);
    ClientProbe& client = make(props);
    StatsCustomizationProperties tx;
    tx.setWantOrderCheckPublisherStreamNumber(true);  // with "-apo", the default
    client.setPublishStatsProps(tx);
    client.setLastAckedMsgId(5);
    auto feed = [&](zorClient_session_event_t event, UINT64 tag, const char* info) {
        zorClient_session_eventCallbackInfo_t eventInfo{
            event, 0, info, OS::stashTruncatedUint64ValueIntoPointer(tag)};
        client.eventFunc(client.session(), &eventInfo);
    };

    feed(ZORCLIENT_SESSION_EVENT_ACKNOWLEDGEMENT, 8, "");  // windowed: covers 6..8
    feed(ZORCLIENT_SESSION_EVENT_ACKNOWLEDGEMENT, 7, "");
    EXPECT_EQ(client.getLastAckedMsgId(), 8U);
    EXPECT_TRUE(log_m.contains(log::LEVEL_ERROR, "CLIENT 000001: Received ACK for 7 after 8"));
    feed(ZORCLIENT_SESSION_EVENT_REJECTED_MSG_ERROR, 10, "quota");
    EXPECT_TRUE(log_m.contains(log::LEVEL_ERROR, "CLIENT 000001: Received NACK for 10 after 8"));
    EXPECT_TRUE(log_m.contains(log::LEVEL_WARNING,
                               "CLIENT 000001: Router rejected published message due to quota."));
    EXPECT_EQ(client.getLastAckedMsgId(), 10U);
    const PerfStats& stats = client.getRxStats(false);
    EXPECT_EQ(stats.getStat(PerfStats::NUM_ACK_EVENTS), 2U);
    EXPECT_EQ(stats.getStat(PerfStats::NUM_NACK_EVENTS), 1U);
    EXPECT_EQ(stats.getStat(PerfStats::NUM_PUB_MSGS_ACKED), 4U);
    // The rejection is an error of a callback thread: publishing stops.
    MsgProperties msg;
    EXPECT_THROW(client.publishMsg(&msg, 0), PubSubException);

    feed(ZORCLIENT_SESSION_EVENT_RECONNECTING_NOTICE, 0, "");
    EXPECT_EQ(client.getChannelState(), AbstractClient::CLIENT_STATE_RECONNECTING);
    feed(ZORCLIENT_SESSION_EVENT_RECONNECTED_NOTICE, 0, "");
    EXPECT_EQ(client.getChannelState(), AbstractClient::CLIENT_STATE_CONNECTED);
    feed(ZORCLIENT_SESSION_EVENT_DOWN_ERROR, 0, "");
    EXPECT_EQ(client.getChannelState(), AbstractClient::CLIENT_STATE_DISCONNECTED);
    EXPECT_EQ(log_m.count("CLIENT 000001: Error details (Info: Event: Channel Down) - Sub Code: "),
              1U);

    feed(ZORCLIENT_SESSION_EVENT_SUBSCRIPTION_ERROR, 0, "bad topic");
    feed(ZORCLIENT_SESSION_EVENT_PROVISION_OK, 0, "");
    feed(static_cast<zorClient_session_event_t>(42), 0, "");
    EXPECT_TRUE(log_m.contains(log::LEVEL_WARNING,
                               "CLIENT 000001: Router rejected subscription due to bad topic. "));
    EXPECT_TRUE(log_m.contains(log::LEVEL_ERROR, "CLIENT 000001: Unknown session event 15"));
    EXPECT_TRUE(log_m.contains(log::LEVEL_ERROR, "CLIENT 000001: Unknown session event 42"));
    EXPECT_EQ(client.getRxStats(false).getSessionEventStat(42), 1U);
}

TEST_F(ClientTest, CapabilitiesAndTheVerboseBlockComeFromTheSession) {
    ClientProbe& client = make(defaultClientProps());
    client.connect();
    const auto capabilities = client.getRtrCapabilities();
    EXPECT_EQ(capabilities.size(), 32U);
    EXPECT_EQ(capabilities.at("SESSION_CAPABILITY_PUB_GUARANTEED"), "0");
    EXPECT_FALSE(capabilities.at("SESSION_PEER_ROUTER_NAME").empty());
    const std::string& maxSize = capabilities.at("SESSION_CAPABILITY_MAX_DIRECT_MSG_SIZE");
    EXPECT_FALSE(maxSize.empty());
    EXPECT_EQ(maxSize.find_first_not_of("0123456789"), std::string::npos) << maxSize;

    const std::string text = client.toString();
    EXPECT_EQ(text.rfind(std::string(63, '^') + "\nClient name: 000001\nNumber DTEs: 0\n", 0), 0U);
    char line[128];
    std::snprintf(line, sizeof line, "\n%-50s = 1\n", "TX_TOTAL_CONNECTION_ATTEMPTS");
    EXPECT_NE(text.find(line), std::string::npos) << text;
    EXPECT_NE(text.find("RX_SETTLE_REJECTED"), std::string::npos);
}

TEST_F(ClientTest, FeaturesOfLaterWorkAreRefusedByName) {
    ClientProperties cached = defaultClientProps();
    cached.setCacheName("dc1");
    try {
        make(cached);
        FAIL() << "no exception";
    } catch (const PubSubException& e) {
        EXPECT_STREQ(e.what(), "CLIENT 000001: Cache sessions are not available in this build\n");
    }

    ClientProbe& client = make(defaultClientProps(), 2);
    EXPECT_THROW(client.startQueueBrowsing(QueueBrowserProperties()), PubSubException);
    EXPECT_THROW(client.openTransactedSession(10, 0, 0), PubSubException);
    EXPECT_NO_THROW(client.unbindAllTempEndpoints());
    try {
        client.subscriptionUpdate({"a/b"}, true, "", SUBSCRIPTION_TYPE_XPE);
        FAIL() << "no exception";
    } catch (const PubSubException& e) {
        EXPECT_STREQ(e.what(), "Unsupported subscription type: XPE.");
    }
    try {
        client.setPublishProps(PublishProperties(), 0, "xa1");
        FAIL() << "no exception";
    } catch (const PubSubException& e) {
        EXPECT_STREQ(e.what(), "CLIENT 000002: Transacted Session not found (xa1)\n");
    }
    MsgProperties msg;
    try {
        client.publishMsg(&msg, 1);
        FAIL() << "no exception";
    } catch (const PubSubException& e) {
        EXPECT_STREQ(e.what(),
                     "CLIENT 000002: No publisher with index 1 (publishers per client: 1)\n");
    }
}

}  // namespace
}  // namespace zorvane::pubsub
