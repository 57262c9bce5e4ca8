#include "common/PublishMessageCycle.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "common/DiskUtils.h"
#include "common/OS.h"
#include "common/PubSubException.h"
#include "common/PublishProperties.h"

namespace zorvane::pubsub {
namespace {

std::vector<MsgProperties> topics(const std::vector<std::string>& names,
                                  const std::vector<double>& weights) {
    std::vector<MsgProperties> msgs(names.size());
    for (size_t i = 0; i < names.size(); ++i) {
        msgs[i].setTopic(names[i]);
        msgs[i].setTopicProbabilityWeight(weights[i]);
        msgs[i].setAttachment(DiskUtils::generateAttachment(16));
        msgs[i].setOriginalAttachmentSize(16);
    }
    return msgs;
}

class PublishMessageCycleTest : public ::testing::Test {
  protected:
    std::unique_ptr<UINT16[]> state_p{OS::randomInitState(5)};
    PublishMessageCycle cycle;
};

TEST_F(PublishMessageCycleTest, InTurnWalkFollowsTheIdAndKeysAndTypesRotate) {
    PublishProperties props;
    props.setPartitionKeyList({"k1", "k2", "k3"});
    props.setMsgObjTypeList("tm");
    cycle.configure(topics({"a", "b"}, {1.0, 1.0}), props, state_p.get());
    EXPECT_FALSE(cycle.getGenerateNewAttachment());
    std::string walk;
    for (INT64 id : {1, 2, 3, 2, 4}) {  // a rewind to 2 rewinds the walk
        const MsgProperties& msg = cycle.nextMessage(id, 1, static_cast<UINT64>(id));
        walk += msg.getTopic() + msg.getPartitionKey() + std::to_string(msg.getMsgObjType()) + " ";
        EXPECT_EQ(msg.getAttachment(), ":0000000:0000001");
    }
    EXPECT_EQ(walk, "ak12 bk24 ak32 bk14 bk22 ");
}

TEST_F(PublishMessageCycleTest, RandomOrderDrawsByWeightAndRegeneratesAttachments) {
    PublishProperties props;
    props.setUseRandomMessageOrder(true);
    props.setAttachSizeMin(3);
    props.setAttachSizeMax(3);
    cycle.configure(topics({"a", "b", "c"}, {1.0, 0.0, 3.0}), props, state_p.get());
    EXPECT_TRUE(cycle.getUseSomeFormOfRandomization());
    int countC = 0;
    for (INT64 id = 1; id <= 4000; ++id) {
        const MsgProperties& msg = cycle.nextMessage(id, 1, id);
        ASSERT_NE(msg.getTopic(), "b");
        countC += msg.getTopic() == "c";
        ASSERT_EQ(msg.getAttachment(), "AAA");
    }
    EXPECT_NEAR(countC / 4000.0, 0.75, 0.05);

    props = PublishProperties();
    props.setWantUniqueAttachmentContents(true);
    // The message's own flag picks the contents; the record's asks for them.
    std::vector<MsgProperties> unique = topics({"a"}, {1.0});
    unique[0].setWantUniqueAttachmentContents(true);
    cycle.configure(unique, props, state_p.get());
    EXPECT_FALSE(cycle.getUseSomeFormOfRandomization());
    EXPECT_EQ(cycle.nextMessage(1, 2, 3).getAttachment(), "ABCDEFGHIJKLMNOP");

    cycle.configure({}, props, state_p.get());
    EXPECT_THROW(cycle.nextMessage(1, 1, 1), PubSubException);
}

}  // namespace
}  // namespace zorvane::pubsub
