// The collection with real clients on the embedded broker: contexts,
// publisher threads, the publishing latch and a whole round of traffic.
#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "common/CacheProperties.h"
#include "common/PubSubException.h"
#include "tests/unit/CliTestSupport.h"
#include "tests/unit/ThrownText.h"
#include "tests/unit/ZcoreTestSupport.h"
#include "vexload/PerfClientCollection.h"

namespace zorvane::pubsub {
namespace {

using test::messageOf;

ClientProperties withClients(INT32 numClients, INT32 perContext, bool perClient) {
    ClientProperties props = defaultClientProps();
    props.setNumClients(numClients);
    props.setNumClientsPerContext(perContext);
    props.setWantContextPerClient(perClient);
    return props;
}

TEST(ContextPlan, ClientsPerContextIsACeilingSharedOutEvenly) {
    using Plan = std::vector<std::size_t>;
    EXPECT_EQ(PerfClientCollection::contextPlan(withClients(10, 3, false)),
              (Plan{0, 0, 1, 1, 2, 2, 3, 3, 4, 4}));
    // The count wins over the per-client flag.
    EXPECT_EQ(PerfClientCollection::contextPlan(withClients(4, 2, true)), (Plan{0, 0, 1, 1}));
    EXPECT_EQ(PerfClientCollection::contextPlan(withClients(3, 0, true)), (Plan{0, 1, 2}));
    EXPECT_EQ(PerfClientCollection::contextPlan(withClients(3, 0, false)), (Plan{0, 0, 0}));
}

class PerfCollectionTest : public LibraryFixture {
  protected:
    void destroyClients() override { collection_m.reset(); }

    std::unique_ptr<PerfClientCollection> collection_m;
};

TEST_F(PerfCollectionTest, TenClientsAtThreePerContextMakeFiveContexts) {
    collection_m = std::make_unique<PerfClientCollection>(withClients(10, 3, false),
                                                          StatsCustomizationProperties());
    EXPECT_EQ(collection_m->getNumContexts(), 5U);
    ASSERT_EQ(collection_m->getClientVector().size(), 10U);
    EXPECT_EQ(collection_m->getClientVector()[9]->getClientId(), 10);
}

TEST_F(PerfCollectionTest, TransmitStatsCountPublisherThreadsNotClients) {
    ClientProperties props = withClients(2, 0, false);
    props.setNumPubsPerClient(2);
    collection_m = std::make_unique<PerfClientCollection>(props, StatsCustomizationProperties());
    ASSERT_EQ(collection_m->getPubThreads().size(), 4U);
    // Position 1 is the second thread of the first client, 2 the first of
    // the second.
    EXPECT_EQ(collection_m->getTxStats(1).getName(), collection_m->getClient(0)->getName());
    EXPECT_EQ(collection_m->getTxStats(2).getName(), collection_m->getClient(1)->getName());
    EXPECT_EQ(collection_m->getTxStats(-1).getName(), "aggregate");
    EXPECT_EQ(messageOf([&] { collection_m->getTxStats(4); }),
              "Client Index out of range. Range (0-3), Index used: 4");
    // Nothing has run yet: no thread publishes, and none is done either.
    EXPECT_FALSE(collection_m->isPublishing());
    EXPECT_FALSE(collection_m->_donePublishing());
    EXPECT_DOUBLE_EQ(collection_m->getTxThroughPut(), 0.0);
    EXPECT_EQ(messageOf([&] { collection_m->startCacheRequesting(CacheProperties()); }),
              "Cache requesting is not available in this build.");
    EXPECT_FALSE(collection_m->isCacheRequesting());
    EXPECT_TRUE(collection_m->_doneCacheRequesting());
}

TEST_F(PerfCollectionTest, PublishedMessagesReachEverySubscriberAndTheLatchHolds) {
    const std::string missing = directMessagingMissing();
    if (!missing.empty()) {
        GTEST_SKIP() << missing;
    }
    const CliProperties cli = test::parsedStore(
        {"-cc=2", "-mn=400", "-mr=2000", "-ptl=coll/t", "-stl=coll/t", "-pso=0", "-oc"});
    const ClientProperties clientProps(cli);
    const StatsCustomizationProperties stats(cli);
    PublishProperties publishProps(cli);
    collection_m = std::make_unique<PerfClientCollection>(clientProps, stats);

    collection_m->connect();
    EXPECT_EQ(collection_m->getChannelState(), AbstractClient::CLIENT_STATE_CONNECTED);
    EXPECT_EQ(messageOf([&] { collection_m->connect(); }),
              "Already connected.  Must disconnect before calling start connect.");
    collection_m->addSubscriptionsFromCliProps(cli, publishProps, {});

    collection_m->startPublishing(publishProps, stats);
    ASSERT_TRUE(waitFor([&] { return collection_m->_donePublishing(); }));
    // Ended by itself, but not stopped: a restart is refused until then.
    EXPECT_EQ(messageOf([&] { collection_m->startPublishing(publishProps, stats); }),
              "Pubs currently stopped.  However, call to stop publishing required to be able to "
              "restart the pubs.");
    collection_m->stopPublishing();

    // 200 messages from each client, each received by both. The receive
    // statistics belong to the context threads until the clients are down;
    // the library's own count may be watched meanwhile.
    constexpr int SDK_RX_DIRECT_MSGS = 1;
    ASSERT_TRUE(waitFor([&] { return collection_m->getSdkStat(SDK_RX_DIRECT_MSGS, -1) == 800; }))
        << collection_m->getSdkStat(SDK_RX_DIRECT_MSGS, -1);
    EXPECT_EQ(collection_m->getSdkStat(AbstractClient::TX_STAT_OFFSET + 1, -1), 400);
    EXPECT_GT(collection_m->getTxThroughPut(), 0.0);
    EXPECT_GT(collection_m->_getPubEndTime(), collection_m->_getPubStartTime());

    collection_m->removeSubscriptionsFromCliProps(cli, {});
    collection_m->disconnect();
    EXPECT_EQ(collection_m->getChannelState(), AbstractClient::CLIENT_STATE_DISCONNECTED);

    const PerfStats rx = collection_m->getRxStats(-1, false);
    EXPECT_EQ(rx.getStat(PerfStats::NUM_MSGS_RECV), 800U);
    EXPECT_EQ(collection_m->getRxStats(1, false).getStat(PerfStats::NUM_MSGS_RECV), 400U);
    std::size_t faults = 0;
    for (const auto& [stream, order] : rx.getOrderData()) {
        faults += order.getLostMsgs().size() + order.getOoOMsgs().size() +
                  order.getDuplicateMsgs().size();
    }
    EXPECT_EQ(faults, 0U);
}

}  // namespace
}  // namespace zorvane::pubsub
