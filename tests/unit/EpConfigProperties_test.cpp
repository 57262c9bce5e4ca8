#include "common/EpConfigProperties.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace zorvane::pubsub {
namespace {

using Strings = std::vector<std::string>;

TEST(EpConfigPropertiesRecord, DefaultTextShowsEveryFieldUnset) {
    EXPECT_EQ(EpConfigProperties().toString(),
              "{\n"
              "  EP Names Size = 0\n"
              "  Subscriptions Size = 0\n"
              "  Is Adding = 0\n"
              "  Want Topic Unsubscribe = 0\n"
              "  No Local = 0\n"
              "  Client Name = \n"
              "  Subscription Type = 0\n"
              "  Number of Temporary Endpoints = 0\n"
              "  Respect TTL = -1\n"
              "  Transacted Session Name = \n"
              "  Discard Notify Sender = -1\n"
              "  Is Topic = 0\n"
              "  Access Type = -1\n"
              "  Max Msg Size = -1\n"
              "  Quota = \n"
              "  Permission = \n"
              "  Want Active Flow Ind 0\n"
              "  Want Cut Through Persistence 0\n"
              "  Max Msg Redelivery -1\n"
              "  Want Replay 0\n"
              "  Replay Date \n"
              "  Replay Msg Id \n"
              "  Number of flow reconnect attempts -1\n"
              "  Flow reconnect interval in miliseconds -1\n"
              "  Bind Rate 0\n"
              "  Want Non-Blocking Bind 0\n"
              "  Flow Flap Count 0\n"
              "  Settlement Patterns Size 0\n"
              "  Required Settlemts Size 0\n"
              "}");
}

TEST(EpConfigPropertiesFactories, SubscriptionAddAndRemoveBuildTheSameRecord) {
    const EpConfigProperties add =
        EpConfigProperties::CreateForSubscriptionAdd({"a", "b"}, "other", SUBSCRIPTION_TYPE_TOPIC);
    const EpConfigProperties remove = EpConfigProperties::CreateForSubscriptionRemove(
        {"a", "b"}, "other", SUBSCRIPTION_TYPE_TOPIC);
    EXPECT_EQ(add.toString(), remove.toString());
    EXPECT_FALSE(add.getIsAdding());
    EXPECT_EQ(add.getSubscriptions(), (Strings{"a", "b"}));
    EXPECT_EQ(add.getClientName(), "other");
    EXPECT_EQ(add.getSubscriptionType(), SUBSCRIPTION_TYPE_TOPIC);
    EXPECT_TRUE(add.getEpNames().empty());
}

TEST(EpConfigPropertiesFactories, ProvisioningPutsEachNumberInItsField) {
    const EpConfigProperties props = EpConfigProperties::CreateForEndpointProvisioning(
        {"q1"}, true, true, 1, 2000, "50", "consume", 0, 3, 4);
    EXPECT_EQ(props.getEpNames(), Strings{"q1"});
    EXPECT_TRUE(props.getIsTopic());
    EXPECT_TRUE(props.getIsAdding());
    EXPECT_EQ(props.getAccessType(), 1);
    EXPECT_EQ(props.getMaxMsgSize(), 2000);
    EXPECT_EQ(props.getQuota(), "50");
    EXPECT_EQ(props.getPermission(), "consume");
    EXPECT_EQ(props.getRespectTTL(), 0);
    EXPECT_EQ(props.getDiscardNotifySender(), 3);
    EXPECT_EQ(props.getMaxMsgRedelivery(), 4);
    EXPECT_EQ(props.getFlowReconnectAttempts(), -1);
}

TEST(EpConfigPropertiesFactories, TopicUpdateLeavesIsTopicFalse) {
    EpConfigProperties props = EpConfigProperties::CreateForTopicUpdate(
        {"dte1", "dte2"}, {"t1", "t2"}, {"sel"}, true, true, false, true, false, "xa1", true,
        "2024-01-01T00:00:00Z", "rmid1:0a-0b", 3, 250, {"accepted"}, {"failed", "rejected"});
    EXPECT_FALSE(props.getIsTopic());
    EXPECT_EQ(props.getEpNames(), (Strings{"dte1", "dte2"}));
    EXPECT_EQ(props.getSubscriptions(), (Strings{"t1", "t2"}));
    EXPECT_EQ(props.getSelectors(), Strings{"sel"});
    EXPECT_TRUE(props.getIsAdding());
    EXPECT_TRUE(props.getWantTopicUnsubscribe());
    EXPECT_FALSE(props.getNoLocal());
    EXPECT_TRUE(props.getWantActiveFlowInd());
    EXPECT_FALSE(props.getWantCutThroughPersistence());
    EXPECT_EQ(props.getTransactedSessionName(), "xa1");
    EXPECT_TRUE(props.getWantReplay());
    EXPECT_EQ(props.getReplayDate(), "2024-01-01T00:00:00Z");
    EXPECT_EQ(props.getReplayMsgId(), "rmid1:0a-0b");
    EXPECT_EQ(props.getFlowReconnectAttempts(), 3);
    EXPECT_EQ(props.getFlowReconnectIntervalInMsecs(), 250);
    EXPECT_EQ(props.getSettlementPatterns(), Strings{"accepted"});
    EXPECT_EQ(props.getRequiredSettelments(), (Strings{"failed", "rejected"}));

    props.setIsTopic(true);
    EXPECT_TRUE(props.getIsTopic());
}

TEST(EpConfigPropertiesFactories, QueueUpdateHasNoSubscriptions) {
    const EpConfigProperties props = EpConfigProperties::CreateForQueueUpdate(
        {"q1"}, {}, false, true, false, true, "", false, "", "", 7, 8, {}, {"accepted"});
    EXPECT_TRUE(props.getSubscriptions().empty());
    EXPECT_FALSE(props.getIsAdding());
    EXPECT_TRUE(props.getNoLocal());
    EXPECT_FALSE(props.getWantActiveFlowInd());
    EXPECT_TRUE(props.getWantCutThroughPersistence());
    EXPECT_EQ(props.getFlowReconnectAttempts(), 7);
    EXPECT_EQ(props.getFlowReconnectIntervalInMsecs(), 8);
    EXPECT_TRUE(props.getSettlementPatterns().empty());
    EXPECT_EQ(props.getRequiredSettelments(), Strings{"accepted"});
}

TEST(EpConfigPropertiesFactories, TempEndpointUpdateHasNoNamesAndIsNotAdding) {
    const EpConfigProperties props = EpConfigProperties::CreateForTempEndpointUpdate(
        true, 5, {"t1"}, {}, 1000, "20", "delete", 1, false, true, false, 2, 9, "xa2", false, "",
        "", 4, 600, {"rejected"}, {});
    EXPECT_TRUE(props.getEpNames().empty());
    EXPECT_FALSE(props.getIsAdding());
    EXPECT_TRUE(props.getIsTopic());
    EXPECT_EQ(props.getNumTempEndpoints(), 5);
    EXPECT_EQ(props.getMaxMsgSize(), 1000);
    EXPECT_EQ(props.getQuota(), "20");
    EXPECT_EQ(props.getPermission(), "delete");
    EXPECT_EQ(props.getRespectTTL(), 1);
    EXPECT_TRUE(props.getWantActiveFlowInd());
    EXPECT_EQ(props.getDiscardNotifySender(), 2);
    EXPECT_EQ(props.getMaxMsgRedelivery(), 9);
    EXPECT_EQ(props.getTransactedSessionName(), "xa2");
    EXPECT_EQ(props.getFlowReconnectAttempts(), 4);
    EXPECT_EQ(props.getFlowReconnectIntervalInMsecs(), 600);
    EXPECT_EQ(props.getSettlementPatterns(), Strings{"rejected"});
}

TEST(EpConfigPropertiesRecord, CloneCarriesBindFieldsAndIsIndependent) {
    EpConfigProperties original = EpConfigProperties::CreateForTopicUpdate(
        {"dte1"}, {"t1"}, {}, true, false, false, false, false, "", false, "", "", -1, -1,
        {"accepted"}, {"failed"});
    original.setBindRate(100);
    original.setWantNonBlocking(true);
    original.setFlowFlapCount(6);

    std::unique_ptr<EpConfigProperties> copy = original.clone();
    EXPECT_EQ(copy->toString(), original.toString());
    EXPECT_EQ(copy->getBindRate(), 100);
    EXPECT_EQ(copy->getFlowFlapCount(), 6);
    EXPECT_EQ(copy->getRequiredSettelments(), Strings{"failed"});

    copy->setEpNames({});
    copy->setSettlementPatterns({"a", "b"});
    copy->setFlowFlapCount(0);
    EXPECT_EQ(original.getEpNames(), Strings{"dte1"});
    EXPECT_EQ(original.getSettlementPatterns(), Strings{"accepted"});
    EXPECT_EQ(original.getFlowFlapCount(), 6);
}

}  // namespace
}  // namespace zorvane::pubsub
