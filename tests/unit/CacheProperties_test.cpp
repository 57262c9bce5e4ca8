#include "common/CacheProperties.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "common/CliProperties.h"
#include "common/PubSubException.h"

namespace zorvane::pubsub {
namespace {

using Strings = std::vector<std::string>;

CliProperties makeStore() {
    return CliProperties(CliProperties::VEX_LOAD, "1.0.0");
}

TEST(CachePropertiesFromStore, RequestsAreSharedOutAndTheRemainderDropped) {
    struct Case {
        INT64 requests;
        INT32 clients;
        INT64 perClient;
    };
    for (const Case& c : {Case{10, 3, 3}, Case{2, 3, 0}, Case{0, 1, 0}, Case{12, 4, 3}}) {
        CliProperties cli = makeStore();
        cli.setInt64Property(CliProperties::CACHE_NUM_REQ, c.requests);
        cli.setIntegerProperty(CliProperties::NUM_CLIENTS, c.clients);
        EXPECT_EQ(CacheProperties(cli).getNumMsgsPerClient(), c.perClient)
            << c.requests << "/" << c.clients;
    }
}

TEST(CachePropertiesFromStore, NoClientsStopsOnlyWhenRequestsAreAskedFor) {
    CliProperties cli = makeStore();
    cli.setIntegerProperty(CliProperties::NUM_CLIENTS, 0);
    EXPECT_EQ(CacheProperties(cli).getNumMsgsPerClient(), 0);
    cli.setInt64Property(CliProperties::CACHE_NUM_REQ, 5);
    EXPECT_THROW(CacheProperties props(cli), PubSubException);
}

TEST(CachePropertiesFromStore, OnlyTheFirstTopicGroupIsRequested) {
    CliProperties cli = makeStore();
    EXPECT_TRUE(CacheProperties(cli).getTopicsList().empty());
    cli.setVectorVectorProperty(CliProperties::PUB_TOPICS_ARRAY, {{"a", "b"}, {"c"}, {"d"}});
    EXPECT_EQ(CacheProperties(cli).getTopicsList(), (Strings{"a", "b"}));
}

TEST(CachePropertiesFromStore, LiveDataActionIsTakenAsStored) {
    // The empty record names an action; built from a store without "-chld="
    // the action is empty, and the request will say so when it is made.
    EXPECT_EQ(CacheProperties().getLiveDataAction(), "FLOW_THRU");
    EXPECT_EQ(CacheProperties(makeStore()).getLiveDataAction(), "");

    CliProperties cli = makeStore();
    cli.setInt64Property(CliProperties::CACHE_REQ_MIN_SEQ, 100);
    cli.setInt64Property(CliProperties::CACHE_REQ_MAX_SEQ, 200);
    const CacheProperties props(cli);
    EXPECT_EQ(props.getMinTopicSequence(), 100);
    EXPECT_EQ(props.getMaxTopicSequence(), 200);
}

TEST(CachePropertiesRecord, TextAndCloneOfAStoreRecord) {
    CliProperties cli = makeStore();
    cli.setVectorVectorProperty(CliProperties::PUB_TOPICS_ARRAY, {{"a", "b"}});
    cli.setDoubleProperty(CliProperties::CACHE_REQ_MSG_RATE, 2.5);
    cli.setInt64Property(CliProperties::CACHE_NUM_REQ, 7);
    cli.setStringProperty(CliProperties::CACHE_LIVE_DATA_ACTION, "FULFILL");
    const CacheProperties original(cli);
    EXPECT_EQ(original.toString(),
              "{\n"
              "  Topics list size       = 2\n"
              "  Msg Rate               = 2.5\n"
              "  Num Msgs               = 7\n"
              "  Min Topic Sequence Num = -1\n"
              "  Max Topic Sequence Num = -1\n"
              "  Wait For Confirm       = 0\n"
              "  Live Data Action       = FULFILL\n"
              "}");

    std::unique_ptr<CacheProperties> copy = original.clone();
    EXPECT_EQ(copy->toString(), original.toString());
    copy->setTopicsList({});
    copy->setLiveDataAction("QUEUE");
    EXPECT_EQ(original.getTopicsList().size(), 2u);
    EXPECT_EQ(original.getLiveDataAction(), "FULFILL");
}

}  // namespace
}  // namespace zorvane::pubsub
