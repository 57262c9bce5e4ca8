#include "common/EpConfigProperties.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace zorvane::pubsub {
namespace {

using Strings = std::vector<std::string>;

TEST(EpConfigPropertiesFactories, SubscriptionAddAndRemoveBuildTheSameRecord) {
    const EpConfigProperties add =
        EpConfigProperties::CreateForSubscriptionAdd({"a", "b"}, "other", SUBSCRIPTION_TYPE_TOPIC);
    const EpConfigProperties remove = EpConfigProperties::CreateForSubscriptionRemove(
        {"a", "b"}, "other", SUBSCRIPTION_TYPE_TOPIC);
    EXPECT_EQ(add.toString(), remove.toString());
    EXPECT_FALSE(add.getIsAdding());
    EXPECT_EQ(add.getClientName(), "other");
    EXPECT_EQ(add.getSubscriptionType(), SUBSCRIPTION_TYPE_TOPIC);
}

// The factories take long runs of values of one type; each value below is
// distinct so that two parameters passed on in swapped places show.

TEST(EpConfigPropertiesFactories, ProvisioningPutsEachNumberInItsField) {
    const EpConfigProperties props = EpConfigProperties::CreateForEndpointProvisioning(
        {"q1"}, true, false, 1, 2000, "50", "consume", 0, 3, 4);
    EXPECT_TRUE(props.getIsTopic() && !props.getIsAdding());
    EXPECT_EQ((std::vector<int>{props.getAccessType(), props.getMaxMsgSize(), props.getRespectTTL(),
                                props.getDiscardNotifySender(), props.getMaxMsgRedelivery()}),
              (std::vector<int>{1, 2000, 0, 3, 4}));
    EXPECT_EQ(props.getQuota() + "|" + props.getPermission(), "50|consume");
}

TEST(EpConfigPropertiesFactories, TopicUpdateLeavesIsTopicFalse) {
    const EpConfigProperties props = EpConfigProperties::CreateForTopicUpdate(
        {"dte1", "dte2"}, {"t1"}, {}, true, false, true, false, true, "xa1", true, "2024-01-01",
        "rmid1", 3, 250, {"accepted"}, {"failed", "rejected"});
    EXPECT_FALSE(props.getIsTopic());
    EXPECT_EQ(props.getSubscriptions(), Strings{"t1"});
    EXPECT_TRUE(props.getIsAdding() && !props.getWantTopicUnsubscribe() && props.getNoLocal() &&
                !props.getWantActiveFlowInd() && props.getWantCutThroughPersistence());
    EXPECT_EQ(props.getReplayDate() + "|" + props.getReplayMsgId(), "2024-01-01|rmid1");
    EXPECT_EQ(props.getFlowReconnectAttempts(), 3);
    EXPECT_EQ(props.getFlowReconnectIntervalInMsecs(), 250);
    EXPECT_EQ(props.getRequiredSettelments(), (Strings{"failed", "rejected"}));
}

TEST(EpConfigPropertiesFactories, QueueUpdateHasNoSubscriptions) {
    const EpConfigProperties props = EpConfigProperties::CreateForQueueUpdate(
        {"q1"}, {}, false, true, false, true, "", false, "", "", 7, 8, {}, {"accepted"});
    EXPECT_TRUE(props.getSubscriptions().empty());
    EXPECT_TRUE(!props.getIsAdding() && props.getNoLocal() && !props.getWantActiveFlowInd() &&
                props.getWantCutThroughPersistence());
    EXPECT_EQ((std::vector<int>{props.getFlowReconnectAttempts(),
                                props.getFlowReconnectIntervalInMsecs()}),
              (std::vector<int>{7, 8}));
    EXPECT_TRUE(props.getSettlementPatterns().empty());
}

TEST(EpConfigPropertiesFactories, TempEndpointUpdateHasNoNamesAndIsNotAdding) {
    const EpConfigProperties props = EpConfigProperties::CreateForTempEndpointUpdate(
        true, 5, {"t1"}, {}, 1000, "20", "delete", 1, false, true, false, 2, 9, "xa2", false, "",
        "", 4, 600, {"rejected"}, {});
    EXPECT_TRUE(props.getEpNames().empty());
    EXPECT_FALSE(props.getIsAdding());
    EXPECT_TRUE(props.getIsTopic());
    EXPECT_EQ((std::vector<int>{props.getNumTempEndpoints(), props.getMaxMsgSize(),
                                props.getRespectTTL(), props.getDiscardNotifySender(),
                                props.getMaxMsgRedelivery(), props.getFlowReconnectAttempts(),
                                props.getFlowReconnectIntervalInMsecs()}),
              (std::vector<int>{5, 1000, 1, 2, 9, 4, 600}));
    EXPECT_TRUE(!props.getNoLocal() && props.getWantActiveFlowInd());
    EXPECT_EQ(props.getTransactedSessionName(), "xa2");
}

}  // namespace
}  // namespace zorvane::pubsub
