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
#include "tests/unit/ThrownText.h"
#include "tests/unit/ZcoreTestSupport.h"

namespace zorvane::pubsub {
namespace {

using State = AbstractClient::ClientStateType;
using test::messageOf;

class ClientTest : public LibraryFixture {
  protected:
    ClientProbe& make(const ClientProperties& props, INT32 clientId = 1) {
        clients_m.push_back(
            std::make_unique<ClientProbe>(clientId, 1000000, props, context_mp.get(),
                                          StatsCustomizationProperties(), nullptr, 1));
        return *clients_m.back();
    }
    void destroyClients() override { clients_m.clear(); }
    static bool reaches(const AbstractClient& client, State state) {
        return waitFor([&] { return client.getChannelState() == state; });
    }
    std::vector<std::unique_ptr<ClientProbe>> clients_m;
};

TEST_F(ClientTest, ConnectsThroughTheContextReportsItsSessionAndConnectsOnlyOnce) {
    ClientProperties props = defaultClientProps();
    props.setClientPrefix("zc");
    ClientProbe& client = make(props);
    client.connect();
    ASSERT_TRUE(reaches(client, AbstractClient::CLIENT_STATE_CONNECTED));
    EXPECT_TRUE(log_m.contains(log::LEVEL_INFO,
                               "CLIENT zc000001: Recv ZORCLIENT_SESSION_EVENT_UP_NOTICE."));
    EXPECT_EQ(client.getClientName(), "zc000001");
    client.connect();
    EXPECT_TRUE(log_m.contains(
        "CLIENT zc000001: Skipping connect because channel is already admin connected"));
    const int attempts =
        AbstractClient::TX_STAT_OFFSET + ZORCLIENT_STATS_TX_TOTAL_CONNECTION_ATTEMPTS;
    EXPECT_EQ(client.getSdkStat(attempts), 1);

    const auto capabilities = client.getRtrCapabilities();
    EXPECT_EQ(capabilities.size(), 32U);
    EXPECT_EQ(capabilities.at("SESSION_CAPABILITY_PUB_GUARANTEED"), "0");
    EXPECT_FALSE(capabilities.at("SESSION_PEER_ROUTER_NAME").empty());
    const std::string& maxSize = capabilities.at("SESSION_CAPABILITY_MAX_DIRECT_MSG_SIZE");
    EXPECT_TRUE(!maxSize.empty() && maxSize.find_first_not_of("0123456789") == std::string::npos);
    const std::string text = client.toString();
    EXPECT_EQ(text.rfind(std::string(63, '^') + "\nClient name: zc000001\nNumber DTEs: 0\n", 0),
              0U);
    char line[128];
    std::snprintf(line, sizeof line, "\n%-50s = 1\n", "TX_TOTAL_CONNECTION_ATTEMPTS");
    EXPECT_NE(text.find(line), std::string::npos) << text;

    client.disconnect();
    EXPECT_EQ(client.getChannelState(), AbstractClient::CLIENT_STATE_DISCONNECTED);
    client.disconnect();
    EXPECT_TRUE(log_m.contains(
        "CLIENT zc000001: Skipping connect because channel is already admin disconnected"));
    client.resetStats();  // the session's counters survive a disconnect until reset
    EXPECT_EQ(client.getSdkStat(attempts), 0);
}

TEST_F(ClientTest, ThePropertyArrayReachesTheSessionAndRenamingFollowsEachConnect) {
    auto property = [](const ClientProbe& client, const char* name) {
        char buffer[ZORCLIENT_REPLY_TO_MAX_SIZE] = {0};
        zorClient_session_getProperty(client.session(), name, buffer, sizeof buffer);
        return std::string(buffer);
    };
    ClientProperties reflecting = defaultClientProps();
    reflecting.setClientMode("reflect");
    reflecting.setPubMaxResends(0);
    ClientProbe& reflector = make(reflecting, 1);
    EXPECT_EQ(property(reflector, "SESSION_SEND_BLOCKING"), "0");
    EXPECT_EQ(reflector.maxPubRetries(), 3);

    ClientProperties renamed = defaultClientProps();
    renamed.setClientPrefix("ren");
    renamed.setChangeClientNameFlag(true);
    renamed.setPubMaxResends(1);
    ClientProbe& client = make(renamed, 2);
    EXPECT_EQ(client.maxPubRetries(), 1);
    EXPECT_EQ(property(client, "SESSION_SEND_BLOCKING"), "1");
    EXPECT_NE(client.getClientName(), "ren000002");  // the library made one up
    client.connect();
    EXPECT_EQ(client.getClientName(), "ren000002");
    client.setClientName("someone-else");
    client.disconnect();
    client.connect();
    EXPECT_EQ(client.getClientName(), "ren000002");
}

TEST_F(ClientTest, AFailedConnectThrowsTheLibrarysReasonAndANonBlockingOneReportsIt) {
    ClientProperties props = defaultClientProps();
    props.setHost("nosuch://x");
    ClientProbe& blocking = make(props, 1);
    const std::string text = messageOf([&] { blocking.connect(); });
    EXPECT_EQ(text.rfind("CLIENT 000001: Error details - RC: ZORCLIENT_FAIL, Sub Code: "
                         "ZORCLIENT_SUBCODE_NOT_SUPPORTED, Response Code: 0, Error String: ",
                         0),
              0U)
        << text;
    EXPECT_NE(text.find("nosuch"), std::string::npos) << text;
    auto error = blocking.getLastError();
    ASSERT_NE(error, nullptr);
    EXPECT_EQ(error->getSubCode() + " " + std::to_string(error->getReturnCode()),
              "ZORCLIENT_SUBCODE_NOT_SUPPORTED -1");
    EXPECT_EQ(blocking.getChannelState(), AbstractClient::CLIENT_STATE_CONNECTING);
    EXPECT_FALSE(blocking.isAdminConnected());  // left for another try

    props.setWantNonBlockingConnect(true);
    props.setStopOnError(true);
    ClientProbe& client = make(props, 2);
    client.connect();  // in progress: no exception
    ASSERT_TRUE(waitFor([&] { return log_m.contains("CLIENT 000002: Recv channel down event"); }));
    EXPECT_TRUE(reaches(client, AbstractClient::CLIENT_STATE_DISCONNECTED));
    error = client.getLastError();
    ASSERT_NE(error, nullptr);
    EXPECT_EQ(error->getSubCode() + " " + std::to_string(error->getReturnCode()),
              "ZORCLIENT_SUBCODE_NOT_SUPPORTED 0");
    MsgProperties msg;
    EXPECT_EQ(messageOf([&] { client.publishMsg(&msg, 0); }),
              "CLIENT 000002: Async exception occurred.  Aborting publish of message.\n");
}

TEST_F(ClientTest, AForcedFailureReconnectsOrGoesDownWithoutRetries) {
    ClientProperties props = defaultClientProps();
    props.setReconnectRetries(2);
    props.setReconnectRetryWaitInMillis(10);
    ClientProbe& retrying = make(props, 1);
    props.setReconnectRetries(0);
    ClientProbe& giving = make(props, 2);
    for (ClientProbe* client : {&retrying, &giving}) {
        client->connect();
        ASSERT_TRUE(reaches(*client, AbstractClient::CLIENT_STATE_CONNECTED));
        client->sigalrmAction();
    }
    ASSERT_TRUE(waitFor([&] {
        return log_m.contains("CLIENT 000001: Recv ZORCLIENT_SESSION_EVENT_RECONNECTED_NOTICE.");
    }));
    EXPECT_EQ(retrying.getChannelState(), AbstractClient::CLIENT_STATE_CONNECTED);
    const PerfStats& stats = retrying.getRxStats(false);
    EXPECT_EQ(stats.getSessionEventStat(ZORCLIENT_SESSION_EVENT_RECONNECTING_NOTICE), 1U);
    EXPECT_EQ(stats.getSessionEventStat(ZORCLIENT_SESSION_EVENT_RECONNECTED_NOTICE), 1U);

    EXPECT_TRUE(reaches(giving, AbstractClient::CLIENT_STATE_DISCONNECTED));
    EXPECT_TRUE(waitFor([&] { return giving.getLastError() != nullptr; }));
    EXPECT_TRUE(giving.isAdminConnected());  // the tool still wants the connection
}

TEST_F(ClientTest, SessionEventsMoveTheStateCountAcknowledgementsAndReportErrors) {
    ClientProperties props = defaultClientProps();
    props.setStopOnError(true);
    ClientProbe& client = make(props);
    StatsCustomizationProperties tx;
    tx.setWantOrderCheckPublisherStreamNumber(true);  // acknowledgements are order-checked
    client.setPublishStatsProps(tx);
    client.setLastAckedMsgId(5);
    auto feed = [&](int event, UINT64 tag = 0, const char* info = "") {
        zorClient_session_eventCallbackInfo_t eventInfo{
            static_cast<zorClient_session_event_t>(event), 0, info,
            OS::stashTruncatedUint64ValueIntoPointer(tag)};
        client.eventFunc(client.session(), &eventInfo);
    };
    const std::pair<int, State> moves[] = {
        {ZORCLIENT_SESSION_EVENT_RECONNECTING_NOTICE, AbstractClient::CLIENT_STATE_RECONNECTING},
        {ZORCLIENT_SESSION_EVENT_RECONNECTED_NOTICE, AbstractClient::CLIENT_STATE_CONNECTED},
        {ZORCLIENT_SESSION_EVENT_DOWN_ERROR, AbstractClient::CLIENT_STATE_DISCONNECTED}};
    for (const auto& [event, state] : moves) {
        feed(event);
        EXPECT_EQ(client.getChannelState(), state) << event;
    }
    EXPECT_EQ(log_m.count("CLIENT 000001: Error details (Info: Event: Channel Down) - Sub Code: "),
              1U);

    feed(ZORCLIENT_SESSION_EVENT_ACKNOWLEDGEMENT, 8);  // windowed: covers 6..8
    feed(ZORCLIENT_SESSION_EVENT_ACKNOWLEDGEMENT, 7);
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

    feed(ZORCLIENT_SESSION_EVENT_SUBSCRIPTION_ERROR, 0, "bad topic");
    feed(ZORCLIENT_SESSION_EVENT_PROVISION_OK);  // made synchronously: unexpected
    feed(42);
    EXPECT_TRUE(log_m.contains(log::LEVEL_WARNING,
                               "CLIENT 000001: Router rejected subscription due to bad topic. "));
    EXPECT_TRUE(log_m.contains(log::LEVEL_ERROR, "CLIENT 000001: Unknown session event 15"));
    EXPECT_TRUE(log_m.contains(log::LEVEL_ERROR, "CLIENT 000001: Unknown session event 42"));
    EXPECT_EQ(client.getRxStats(false).getSessionEventStat(42), 1U);
}

TEST_F(ClientTest, FeaturesOfLaterWorkAndBadArgumentsAreRefusedByName) {
    ClientProperties cached = defaultClientProps();
    cached.setCacheName("dc1");
    EXPECT_EQ(messageOf([&] { make(cached); }),
              "CLIENT 000001: Cache sessions are not available in this build\n");
    ClientProbe& client = make(defaultClientProps(), 2);
    EXPECT_EQ(messageOf([&] { client.startQueueBrowsing(QueueBrowserProperties()); }),
              "CLIENT 000002: Queue browsing is not available in this build\n");
    EXPECT_EQ(messageOf([&] { client.openTransactedSession(10, 0, 0); }),
              "CLIENT 000002: Transacted sessions are not available in this build\n");
    EXPECT_EQ(messageOf([&] { client.unbindAllTempEndpoints(); }), "(nothing thrown)");
    EXPECT_EQ(
        messageOf([&] { client.subscriptionUpdate({"a/b"}, true, "", SUBSCRIPTION_TYPE_XPE); }),
        "Unsupported subscription type: XPE.");
    EXPECT_EQ(messageOf([&] { client.setPublishProps(PublishProperties(), 0, "xa1"); }),
              "CLIENT 000002: Transacted Session not found (xa1)\n");
    MsgProperties msg;
    EXPECT_EQ(messageOf([&] { client.publishMsg(&msg, 1); }),
              "CLIENT 000002: No publisher with index 1 (publishers per client: 1)\n");
}

}  // namespace
}  // namespace zorvane::pubsub
