#include "common/CacheProperties.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "common/CliProperties.h"
#include "common/PubSubException.h"
#include "tests/unit/CliTestSupport.h"

namespace zorvane::pubsub {
namespace {

using Strings = std::vector<std::string>;

using test::defaultStore;

TEST(CachePropertiesFromStore, RequestsAreSharedOutAndTheRemainderDropped) {
    struct Case {
        INT64 requests;
        INT32 clients;
        INT64 perClient;
    };
    for (const Case& c : {Case{10, 3, 3}, Case{2, 3, 0}, Case{0, 1, 0}, Case{12, 4, 3}}) {
        CliProperties cli = defaultStore();
        cli.setInt64Property(CliProperties::CACHE_NUM_REQ, c.requests);
        cli.setIntegerProperty(CliProperties::NUM_CLIENTS, c.clients);
        EXPECT_EQ(CacheProperties(cli).getNumMsgsPerClient(), c.perClient)
            << c.requests << "/" << c.clients;
    }
}

TEST(CachePropertiesFromStore, NoClientsStopsOnlyWhenRequestsAreAskedFor) {
    CliProperties cli = defaultStore();
    cli.setIntegerProperty(CliProperties::NUM_CLIENTS, 0);
    EXPECT_EQ(CacheProperties(cli).getNumMsgsPerClient(), 0);
    cli.setInt64Property(CliProperties::CACHE_NUM_REQ, 5);
    EXPECT_THROW(CacheProperties props(cli), PubSubException);
}

TEST(CachePropertiesFromStore, OnlyTheFirstTopicGroupIsRequested) {
    CliProperties cli = defaultStore();
    EXPECT_TRUE(CacheProperties(cli).getTopicsList().empty());
    cli.setVectorVectorProperty(CliProperties::PUB_TOPICS_ARRAY, {{"a", "b"}, {"c"}, {"d"}});
    EXPECT_EQ(CacheProperties(cli).getTopicsList(), (Strings{"a", "b"}));
}

TEST(CachePropertiesFromStore, LiveDataActionRateAndSequencesAreTakenAsStored) {
    // The empty record names an action; built from a store without "-chld="
    // the action is empty, and the request will say so when it is made.
    EXPECT_EQ(CacheProperties().getLiveDataAction(), "FLOW_THRU");
    EXPECT_EQ(CacheProperties(defaultStore()).getLiveDataAction(), "");

    CliProperties cli = defaultStore();
    cli.setInt64Property(CliProperties::CACHE_REQ_MIN_SEQ, 100);
    cli.setInt64Property(CliProperties::CACHE_REQ_MAX_SEQ, 200);
    cli.setDoubleProperty(CliProperties::CACHE_REQ_MSG_RATE, 2.5);
    const CacheProperties props(cli);
    EXPECT_EQ(props.getMinTopicSequence(), 100);
    EXPECT_EQ(props.getMaxTopicSequence(), 200);
    EXPECT_EQ(props.getMsgRate(), 2.5);
}

}  // namespace
}  // namespace zorvane::pubsub
