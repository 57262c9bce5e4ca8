// The collection's own rules over clients that reach no library: channel
// state, index checks, the slow-subscriber guard and the dealing of the
// command line's subscription lists.
#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "common/AbstractClientCollection.h"
#include "common/EpConfigProperties.h"
#include "common/PubSubException.h"
#include "tests/unit/CliTestSupport.h"
#include "tests/unit/NullClient.h"
#include "tests/unit/ThrownText.h"

namespace zorvane::pubsub {
namespace {

std::string join(const std::vector<std::string>& list) {
    std::string text;
    for (const std::string& item : list) {
        text += (text.empty() ? "" : ",") + item;
    }
    return text;
}

// Records each subscription call as one line of text, with whether its
// slow-subscriber delay was enabled at the time.
class RecordingClient : public NullClient {
  public:
    using NullClient::NullClient;
    void setState(ClientStateType state) { setChannelState(state); }
    bool slowSubEnabled() const { return slowSubDelayEnabled_m.load(); }

    std::vector<std::string> calls_m;
    bool throwOnSubscribe_m = false;
    bool slowSubEnabledInCall_m = true;

  protected:
    void subscriptionUpdateImpl(const std::vector<std::string>& topics, bool isAdding,
                                const std::string&, SubscriptionType) override {
        slowSubEnabledInCall_m = slowSubDelayEnabled_m.load();
        calls_m.push_back(std::string(isAdding ? "sub " : "unsub ") + join(topics));
        if (throwOnSubscribe_m) {
            throw PubSubException("refused");
        }
    }
    void topicUpdateImpl(const EpConfigProperties& ep) override {
        calls_m.push_back(std::string(ep.getIsAdding() ? "dte " : "undte ") +
                          join(ep.getEpNames()) + "/" + join(ep.getSubscriptions()));
    }
    void queueUpdateImpl(const EpConfigProperties& ep) override {
        calls_m.push_back(std::string(ep.getIsAdding() ? "queue " : "unqueue ") +
                          join(ep.getEpNames()));
    }
};

class FakeCollection : public AbstractClientCollection {
  public:
    explicit FakeCollection(
        int numClients, const StatsCustomizationProperties& stats = StatsCustomizationProperties())
        : AbstractClientCollection(NullClient::defaultProps(), stats) {
        for (int i = 0; i < numClients; ++i) {
            clientVect_m.push_back(new RecordingClient(NullClient::defaultProps(), i + 1, 1000000,
                                                       StatsCustomizationProperties(), nullptr));
        }
    }
    ~FakeCollection() override {
        for (AbstractClient* client : clientVect_m) {
            delete client;
        }
    }
    RecordingClient& client(int i) { return *static_cast<RecordingClient*>(clientVect_m.at(i)); }

    void connect() override {}
    void disconnect() override {}
    void startBinding(const EpConfigProperties&) override {}
    void stopBinding() override {}
    bool isBinding() override { return false; }
    void startPublishing(const PublishProperties&, const StatsCustomizationProperties&) override {}
    void stopPublishing() override {}
    bool isPublishing() override { return false; }
    void startCacheRequesting(const CacheProperties&) override {}
    void stopCacheRequesting() override {}
    bool isCacheRequesting() override { return false; }
    double getTxThroughPut() override { return 0.0; }
    PerfStats getTxStats(int) override { return PerfStats(); }
    UINT64 _getLastPubTime() override { return 0; }
    void _setLastPubTime(UINT64, int) override {}
};

using test::messageOf;

TEST(ClientCollectionState, OneLostClientIsALostRun) {
    FakeCollection empty(0);
    EXPECT_EQ(empty.getChannelState(), AbstractClient::CLIENT_STATE_CONNECTED);

    FakeCollection clients(3);
    for (int i = 0; i < 3; ++i) {
        clients.client(i).setState(AbstractClient::CLIENT_STATE_CONNECTED);
    }
    EXPECT_EQ(clients.getChannelState(), AbstractClient::CLIENT_STATE_CONNECTED);
    clients.client(0).setState(AbstractClient::CLIENT_STATE_CONNECTING);
    clients.client(1).setState(AbstractClient::CLIENT_STATE_RECONNECTING);
    // The last client seen on its way up decides.
    EXPECT_EQ(clients.getChannelState(), AbstractClient::CLIENT_STATE_RECONNECTING);
    clients.client(2).setState(AbstractClient::CLIENT_STATE_DISCONNECTED);
    EXPECT_EQ(clients.getChannelState(), AbstractClient::CLIENT_STATE_DISCONNECTED);
}

TEST(ClientCollectionIndex, BadIndexesAreRefusedWithTheirTexts) {
    FakeCollection clients(3);
    const std::string outOfRange =
        "AbstractClientCollection: Client Index out of range. Range (0-2), Index used: ";
    EXPECT_EQ(messageOf([&] { clients.getRxStats(3, false); }), outOfRange + "3");
    EXPECT_EQ(messageOf([&] { clients.topicUpdate(EpConfigProperties(), -2); }), outOfRange + "-2");
    // One-client operations do not take ALL_CLIENTS_INDEX.
    EXPECT_EQ(messageOf([&] { clients.setClientName(-1, "x"); }), outOfRange + "-1");
    EXPECT_EQ(messageOf([&] { clients.getFlowStatus("q", ENDPOINT_TYPE_DQE, -1); }),
              "AbstractClientCollection: getFlowState only avaialble on specific client index.  "
              "Not ALL_CLIENTS_INDEX.");
    EXPECT_EQ(messageOf([&] { clients.getLastError(-1); }),
              "AbstractClientCollection: Cannot request last error on all clients if there is "
              "more than 1 client in object");
    EXPECT_EQ(messageOf([&] { clients.getLastMessagesDetails(-1, 2); }),
              "AbstractClientCollection: Cannot request last messages details on all clients if "
              "there is more than 1 client in object");
    EXPECT_EQ(messageOf([&] { clients.getClientProperties(3); }),
              "Invalid client index specified in AbstractClientCollection::getClientProperties.");
    EXPECT_EQ(clients.getClientName(-1).size(), 3U);
    EXPECT_EQ(clients.getClientName(1), std::vector<std::string>{"000002"});

    FakeCollection single(1);
    EXPECT_NO_THROW(single.getLastError(-1));
}

TEST(ClientCollectionConstruction, StructuredMessagesRefuseToolDataFeatures) {
    StatsCustomizationProperties stats;
    stats.setWantStructMsgCheck(true);
    stats.setWantLatency(true);
    EXPECT_EQ(messageOf([&] { FakeCollection refusing(0, stats); }),
              "Cannot use order check, latency or payload check with structured messages.");
    stats.setWantLatency(false);
    EXPECT_NO_THROW(FakeCollection accepted(0, stats));
}

TEST(ClientCollectionGuard, SlowSubscriberDelayIsRestoredWhenAnUpdateThrows) {
    FakeCollection clients(2);
    clients.client(1).throwOnSubscribe_m = true;
    EXPECT_EQ(messageOf([&] {
                  clients.subscriptionUpdate({"a"}, true, "", SUBSCRIPTION_TYPE_TOPIC, -1, false);
              }),
              "refused");
    EXPECT_FALSE(clients.client(0).slowSubEnabledInCall_m);
    EXPECT_FALSE(clients.client(1).slowSubEnabledInCall_m);
    EXPECT_TRUE(clients.client(0).slowSubEnabled());
    EXPECT_TRUE(clients.client(1).slowSubEnabled());
}

TEST(ClientCollectionSubscriptions, TopicsAreDealtRoundRobinWhenDistributed) {
    FakeCollection clients(2);
    clients.subscriptionUpdate({"a", "b", "c"}, true, "", SUBSCRIPTION_TYPE_TOPIC, -1, true);
    EXPECT_EQ(clients.client(0).calls_m, std::vector<std::string>{"sub a,c"});
    EXPECT_EQ(clients.client(1).calls_m, std::vector<std::string>{"sub b"});
    clients.subscriptionUpdate({"x", "y"}, false, "", SUBSCRIPTION_TYPE_TOPIC, -1, false);
    EXPECT_EQ(clients.client(1).calls_m.back(), "unsub x,y");
}

// The refusals and list lengths are the message array builder's; here only
// that the collection hands its arguments on.
TEST(ClientCollectionMsgArray, BuildsThroughTheSharedBuilder) {
    FakeCollection clients(1);
    std::vector<std::vector<MsgProperties>> lists;
    PublishProperties pub;
    pub.setTopicsArray({{"t"}});
    pub.setTopicsWeightsArray({{1.0}});
    pub.setSendVectorSize(5);
    clients._buildMsgArray(pub, StatsCustomizationProperties(), false, lists);
    ASSERT_EQ(lists.size(), 1U);
    EXPECT_GT(lists[0].size(), 5U) << "a send vector lengthens the list";
    clients._buildMsgArray(pub, StatsCustomizationProperties(), true, lists);
    EXPECT_EQ(lists.at(0).size(), 1U) << "one message wanted";
}

class FromCommandLine : public ::testing::Test {
  protected:
    static CliProperties parse(std::vector<std::string> args) {
        return test::parsedStore(std::move(args));
    }
    PublishProperties publishProps_m;
};

TEST_F(FromCommandLine, TopicListsGoRoundRobinAndComeBackInTheSameOrder) {
    CliProperties cli = parse({"-cc=2", "-stl=a,b,c"});
    FakeCollection clients(2);
    clients.addSubscriptionsFromCliProps(cli, publishProps_m, {});
    clients.removeSubscriptionsFromCliProps(cli, {});
    EXPECT_EQ(clients.client(0).calls_m, (std::vector<std::string>{"sub a,c", "unsub a,c"}));
    EXPECT_EQ(clients.client(1).calls_m, (std::vector<std::string>{"sub b", "unsub b"}));

    // One list for more clients: each client takes list i modulo the
    // number of lists, so all of them subscribe.
    CliProperties shared = parse({"-cc=3", "-stl=t1"});
    FakeCollection three(3);
    three.addSubscriptionsFromCliProps(shared, publishProps_m, {});
    for (int i = 0; i < 3; ++i) {
        EXPECT_EQ(three.client(i).calls_m, std::vector<std::string>{"sub t1"});
    }
}

TEST_F(FromCommandLine, DurableEndpointsPairWithTopicsByPosition) {
    CliProperties cli = parse({"-cc=1", "-stl=t0,t1", "-sdl=e0,e1,e2,e3,e4"});
    FakeCollection clients(1);
    clients.addSubscriptionsFromCliProps(cli, publishProps_m, {});
    clients.removeSubscriptionsFromCliProps(cli, {});
    EXPECT_EQ(clients.client(0).calls_m,
              (std::vector<std::string>{"dte e0,e1,e2,e3,e4/t0,t1,t0,t1,t0",
                                        "undte e0,e1,e2,e3,e4/t0,t1,t0,t1,t0"}));

    // More topics than endpoints go through as given.
    CliProperties wide = parse({"-cc=1", "-stl=t0,t1,t2", "-sdl=e0"});
    FakeCollection one(1);
    one.addSubscriptionsFromCliProps(wide, publishProps_m, {});
    EXPECT_EQ(one.client(0).calls_m, std::vector<std::string>{"dte e0/t0,t1,t2"});
}

TEST_F(FromCommandLine, QueuesOutrankTopicsAndNoRemovalWhenAsked) {
    CliProperties cli = parse({"-cc=3", "-sql=q0,q1", "-nsr"});
    FakeCollection clients(3);
    clients.addSubscriptionsFromCliProps(cli, publishProps_m, {});
    clients.removeSubscriptionsFromCliProps(cli, {});
    EXPECT_EQ(clients.client(0).calls_m, std::vector<std::string>{"queue q0"});
    EXPECT_EQ(clients.client(1).calls_m, std::vector<std::string>{"queue q1"});
    EXPECT_EQ(clients.client(2).calls_m, std::vector<std::string>{"queue q0"});
}

TEST_F(FromCommandLine, ARefusalWhileRemovingLeavesTheOtherClientsServed) {
    CliProperties cli = parse({"-cc=2", "-stl=a"});
    FakeCollection clients(2);
    clients.client(0).throwOnSubscribe_m = true;
    EXPECT_NO_THROW(clients.removeSubscriptionsFromCliProps(cli, {}));
    EXPECT_EQ(clients.client(1).calls_m, std::vector<std::string>{"unsub a"});
    // Adding stops at a failure that is not the broker's refusal.
    EXPECT_EQ(messageOf([&] { clients.addSubscriptionsFromCliProps(cli, publishProps_m, {}); }),
              "refused");
    EXPECT_EQ(clients.client(1).calls_m.size(), 1U);
}

}  // namespace
}  // namespace zorvane::pubsub
