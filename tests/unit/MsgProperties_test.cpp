#include "common/MsgProperties.h"

#include <gtest/gtest.h>

#include <string>

namespace zorvane::pubsub {
namespace {

TEST(MsgPropertiesWeights, AggregateWeightIsTheProductOfTheThree) {
    MsgProperties msg;
    EXPECT_DOUBLE_EQ(msg.getAggregateProbabilityWeight(), 1.0);
    msg.setTopicProbabilityWeight(95.0);
    msg.setAttachmentProbabilityWeight(0.5);
    EXPECT_DOUBLE_EQ(msg.getAggregateProbabilityWeight(), 47.5);
    msg.setQueueProbabilityWeight(0.0);
    EXPECT_DOUBLE_EQ(msg.getAggregateProbabilityWeight(), 0.0);
}

TEST(MsgPropertiesToolData, HeaderOverwritesTheStartAndKeepsTheLength) {
    MsgProperties msg;
    msg.setAttachment("abcdefgh");
    const std::string header("X\0Z", 3);
    msg.updateAttachmentForToolData(header.data(), header.data() + header.size());
    EXPECT_EQ(msg.getAttachment(), std::string("X\0Zdefgh", 8));
    EXPECT_EQ(msg.getAttachmentSize(), 8u);
}

TEST(MsgPropertiesToolData, OversizedOrEmptyRangesDoNotChangeTheLength) {
    MsgProperties msg;
    msg.setAttachment("abc");
    const std::string longer = "0123456789";
    msg.updateAttachmentForToolData(longer.data(), longer.data() + longer.size());
    EXPECT_EQ(msg.getAttachment(), "012");

    msg.updateAttachmentForToolData(longer.data() + 5, longer.data());
    EXPECT_EQ(msg.getAttachment(), "012");

    MsgProperties noAttachment;
    noAttachment.updateAttachmentForToolData(longer.data(), longer.data() + 4);
    EXPECT_EQ(noAttachment.getAttachmentSize(), 0u);
}

TEST(MsgPropertiesRecord, CloneIsIndependentAndComplete) {
    MsgProperties original;
    original.setTopic("t/1");
    original.setAttachment("payload");
    original.setRepublished(true);
    std::unique_ptr<MsgProperties> copy = original.clone();
    EXPECT_EQ(copy->toString(), original.toString());
    EXPECT_TRUE(copy->getRepublished());  // not part of the text

    const std::string header = "HDR";
    copy->updateAttachmentForToolData(header.data(), header.data() + header.size());
    copy->setRepublished(false);
    EXPECT_EQ(original.getAttachment(), "payload");
    EXPECT_TRUE(original.getRepublished());
}

TEST(MsgPropertiesRecord, ToStringHeadsEachPartInOrder) {
    MsgProperties msg;
    msg.setMsgBody("<x/>");
    msg.setTopic("t/1");
    msg.setMsgObjType(PUBSUB_MSG_OBJ_TYPE_MAP);
    msg.setTopicProbabilityWeight(2.5);
    msg.setAckImmediately(true);
    EXPECT_EQ(msg.toString(),
              "----  MsgBody   ----\n<x/>\n"
              "---- Attachment ----\n\n"
              "----   Topic    ----\nt/1\n"
              "----   Queue    ----\n\n"
              "----- Userdata -----\n\n"
              "--- Partition Key --\n\n"
              "---- SDM Props -----\n\n"
              "---- Message Object Type -----\n4\n"
              "---- Aggregate probability weight -----\n2.5\n"
              "---- Using Random Noise Attachment Contents -----\n0\n"
              "---- Using Unique Attachment Contents -----\n0\n"
              "-- ACK Immediately--\n1\n");
}

}  // namespace
}  // namespace zorvane::pubsub
