#include "common/PublishProperties.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "common/CliProperties.h"
#include "common/PubSubException.h"
#include "tests/unit/CliTestSupport.h"
#include "tests/unit/LogCapture.h"

namespace zorvane::pubsub {
namespace {

using test::defaultStore;

// ---- built from the store ----

TEST(PublishPropertiesFromStore, StoreDefaultsDifferFromTheEmptyRecord) {
    const PublishProperties fromStore(defaultStore());
    const PublishProperties empty;
    // A run without topics still publishes: one empty group, one weight list.
    EXPECT_EQ(fromStore.getTopicsArray(), std::vector<std::vector<std::string>>(1));
    EXPECT_EQ(fromStore.getTopicsWeightsArray(), std::vector<std::vector<double>>(1));
    EXPECT_TRUE(empty.getTopicsArray().empty());
    // The store's class of service is "not set"; an empty record has class 1.
    EXPECT_EQ(fromStore.getCos(), PUBSUB_COS_NO);
    EXPECT_EQ(empty.getCos(), PUBSUB_COS_1);
}

// ---- messages per publish thread ----

TEST(PublishPropertiesLog, MessagesPerThreadAreCutTwiceAndOnlyTheClientCutWarns) {
    struct Case {
        INT64 numMsgs;
        INT32 numClients;
        INT32 numPubs;
        INT64 perThread;
        bool warns;
    };
    const Case cases[] = {
        {0, 1, 1, 0, false}, {10, 3, 1, 3, true},   {10, 2, 2, 2, false},
        {7, 1, 2, 3, false}, {100, 4, 3, 8, false}, {1000001, 2, 1, 500000, true},
    };
    for (const Case& c : cases) {
        LogCapture log;
        CliProperties cli = defaultStore();
        cli.setInt64Property(CliProperties::NUM_MSGS_TO_PUBLISH, c.numMsgs);
        cli.setIntegerProperty(CliProperties::NUM_CLIENTS, c.numClients);
        cli.setIntegerProperty(CliProperties::NUM_PUBS_PER_SESSION, c.numPubs);
        EXPECT_EQ(PublishProperties(cli).getNumMsgsPerClient(), c.perThread) << c.numMsgs;
        EXPECT_EQ(log.all().size(), c.warns ? 1u : 0u) << c.numMsgs;
        EXPECT_EQ(log.contains(log::LEVEL_WARNING,
                               "Invalid values for -mn and -cc.  The -mn value must be evenly "
                               "divisible by -cc"),
                  c.warns)
            << c.numMsgs;
    }
}

TEST(PublishPropertiesLog, ZeroClientsIsLoggedAndStopsTheBuild) {
    LogCapture log;
    CliProperties cli = defaultStore();
    cli.setInt64Property(CliProperties::NUM_MSGS_TO_PUBLISH, 10);
    cli.setIntegerProperty(CliProperties::NUM_CLIENTS, 0);
    EXPECT_THROW(PublishProperties props(cli), PubSubException);
    EXPECT_TRUE(log.contains(log::LEVEL_ERROR, "Invalid value for -cc"));

    cli.setIntegerProperty(CliProperties::NUM_CLIENTS, 1);
    cli.setIntegerProperty(CliProperties::NUM_PUBS_PER_SESSION, 0);
    EXPECT_THROW(PublishProperties props(cli), PubSubException);
}

// ---- derived fields ----

TEST(PublishPropertiesDerived, ObjectTypePatternTakesKnownLettersInOrder) {
    CliProperties cli = defaultStore();
    cli.setStringProperty(CliProperties::MSG_OBJ_TYPE_PATTERN, "tsbbms");
    EXPECT_EQ(PublishProperties(cli).getMsgObjTypeList(),
              (std::vector<PubSubMessageObjectType>{
                  PUBSUB_MSG_OBJ_TYPE_TEXT, PUBSUB_MSG_OBJ_TYPE_STREAM, PUBSUB_MSG_OBJ_TYPE_BYTES,
                  PUBSUB_MSG_OBJ_TYPE_BYTES, PUBSUB_MSG_OBJ_TYPE_MAP, PUBSUB_MSG_OBJ_TYPE_STREAM}));

    PublishProperties props;
    props.setMsgObjTypeList("xB-m?T");
    EXPECT_EQ(props.getMsgObjTypeList(),
              (std::vector<PubSubMessageObjectType>{
                  PUBSUB_MSG_OBJ_TYPE_BYTES, PUBSUB_MSG_OBJ_TYPE_MAP, PUBSUB_MSG_OBJ_TYPE_TEXT}));
}

TEST(PublishPropertiesDerived, ZeroRandomSizeRangeMeansNoRandomSizes) {
    CliProperties cli = defaultStore();
    cli.setInt64Property(CliProperties::RANDOM_ATTACH_SIZE_MIN, 0);
    cli.setInt64Property(CliProperties::RANDOM_ATTACH_SIZE_MAX, 0);
    EXPECT_EQ(PublishProperties(cli).getAttachSizeMin(), -1);

    cli.setInt64Property(CliProperties::RANDOM_ATTACH_SIZE_MAX, 100);
    const PublishProperties ranged(cli);
    EXPECT_EQ(ranged.getAttachSizeMin(), 0);
    EXPECT_EQ(ranged.getAttachSizeMax(), 100);
}

TEST(PublishPropertiesDerived, OrderOffsetIsTakenOnlyForAKnownStream) {
    CliProperties cli = defaultStore();
    cli.setIntegerProperty(CliProperties::PUB_ORDER_OFFSET, 5);
    cli.setMapIntIntProperty(CliProperties::PUB_ORDER_OFFSETS, {{1, 10}, {3, 11}});
    PublishProperties props(cli);
    props.setOrderOffsetToThatOfGivenPublisherStream(2);
    EXPECT_EQ(props.getOrderOffset(), 5);
    props.setOrderOffsetToThatOfGivenPublisherStream(3);
    EXPECT_EQ(props.getOrderOffset(), 11);
    props.setOrderOffsetToThatOfGivenPublisherStream(7);
    EXPECT_EQ(props.getOrderOffset(), 11);
}

TEST(PublishPropertiesDerived, PriorityListMeansAPrioritySource) {
    CliProperties cli = defaultStore();
    cli.setIntVectorProperty(CliProperties::PUB_PRIORITY_LIST, {0, 2, 9, 1});
    const PublishProperties props(cli);
    ASSERT_NE(props.getMessagePriorityGenerator(), nullptr);
    EXPECT_EQ(props.getMessagePriorityGenerator()->getMsgPrioritiesVector(),
              (std::vector<int>{0, 0, 9}));
    EXPECT_NE(props.toString().find("\n  Pub Priority Generator = YES\n}"), std::string::npos);
    EXPECT_NE(
        PublishProperties(defaultStore()).toString().find("\n  Pub Priority Generator = NO\n}"),
        std::string::npos);
}

// ---- copies and text ----

TEST(PublishPropertiesRecord, CloneIsIndependentAndComplete) {
    CliProperties cli = defaultStore();
    cli.setVectorVectorProperty(CliProperties::PUB_TOPICS_ARRAY, {{"a"}});
    cli.setMapIntIntProperty(CliProperties::PUB_ORDER_OFFSETS, {{1, 10}});
    cli.setIntVectorProperty(CliProperties::PUB_PRIORITY_LIST, {1, 1});
    const PublishProperties original(cli);
    std::unique_ptr<PublishProperties> copy = original.clone();
    EXPECT_EQ(copy->toString(), original.toString());

    // The copy has a generator of its own.
    ASSERT_NE(copy->getMessagePriorityGenerator(), nullptr);
    EXPECT_NE(copy->getMessagePriorityGenerator(), original.getMessagePriorityGenerator());
    PublishProperties assigned;
    assigned = original;
    EXPECT_NE(assigned.getMessagePriorityGenerator(), original.getMessagePriorityGenerator());
    EXPECT_EQ(assigned.getMessagePriorityGenerator()->getMsgPrioritiesVector(),
              std::vector<int>{1});

    copy->setTopicsArray({{"x"}, {"y"}});
    copy->setOrderOffsetToThatOfGivenPublisherStream(1);
    copy->setMessagePriorityGenerator(nullptr);
    EXPECT_EQ(original.getTopicsArray(), (std::vector<std::vector<std::string>>{{"a"}}));
    EXPECT_EQ(original.getOrderOffset(), 0);
    EXPECT_NE(original.getMessagePriorityGenerator(), nullptr);
}

TEST(PublishPropertiesLog, ReplacingAPriorityGeneratorIsLoggedOnlyWhenOneExisted) {
    LogCapture log;
    PublishProperties props;
    props.setMessagePriorityGenerator(
        std::make_unique<MessagePriorityGenerator>(std::vector<int>{3, 1}));
    EXPECT_TRUE(log.all().empty());
    props.setMessagePriorityGenerator(
        std::make_unique<MessagePriorityGenerator>(std::vector<int>{4, 1}));
    EXPECT_EQ(props.getMessagePriorityGenerator()->getRandomPriority(), 4);
    EXPECT_TRUE(log.contains(log::LEVEL_INFO,
                             "Replacing MessagePriorityGenerator with new one, deleting existing "
                             "one."));
}

}  // namespace
}  // namespace zorvane::pubsub
