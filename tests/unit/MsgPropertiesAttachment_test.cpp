#include <gtest/gtest.h>

#include <memory>
#include <set>
#include <string>

#include "common/MsgProperties.h"
#include "common/OS.h"

namespace zorvane::pubsub {
namespace {

TEST(MsgPropertiesAttachment, PatternAndUniqueContentsHaveTheirLayout) {
    MsgProperties msg;
    msg.generateNewAttachmentNonRepeating(16);
    EXPECT_EQ(msg.getAttachment(), ":0000000:0000001");
    msg.generateNewAttachmentNonRepeating(7);
    EXPECT_EQ(msg.getAttachment(), "AAAAAAA");
    msg.generateNewAttachmentNonRepeating(8 * 0x1b + 3);
    EXPECT_EQ(msg.getAttachment().substr(8 * 0x1a), ":000001aAAA");

    msg.generateNewAttachmentUnique(40, 0x1234, 0x1ABCDEF01ULL);
    const std::string unique = msg.getAttachment();
    ASSERT_EQ(unique.size(), 40u);
    EXPECT_EQ(unique.substr(0, 17), ":234:000abcdef01:");
    EXPECT_EQ(unique.substr(32), "ABCDEFGH");
    const UINT64 stamp = std::stoull(unique.substr(17, 15), nullptr, 16);
    EXPECT_LE(stamp, OS::getTimeInUs());
    EXPECT_GT(stamp, OS::getTimeInUs() - 60000000ULL);
}

TEST(MsgPropertiesAttachment, SizesFollowJitterOrRangeAndContentsFollowTheFlags) {
    std::unique_ptr<UINT16[]> state(OS::randomInitState(4242));
    MsgProperties msg;
    msg.setOriginalAttachmentSize(100);
    std::set<size_t> sizes;
    for (int i = 0; i < 2000; ++i) {
        msg.generateNewAttachment(state.get(), 0.5, -1, -1, 1, 1);
        sizes.insert(msg.getAttachmentSize());
    }
    EXPECT_GE(*sizes.begin(), 50u);
    EXPECT_LE(*sizes.rbegin(), 149u);
    EXPECT_GT(sizes.size(), 50u) << "the sizes spread over the range";

    msg.setOriginalAttachmentSize(0);
    msg.generateNewAttachment(state.get(), 0.5, -1, -1, 1, 1);
    EXPECT_EQ(msg.getAttachmentSize(), 1u) << "jitter never removes an attachment";
    msg.generateNewAttachment(state.get(), 0.0, 5, 5, 1, 1);
    EXPECT_EQ(msg.getAttachment(), "AAAAA");

    msg.setWantUniqueAttachmentContents(true);
    msg.generateNewAttachment(state.get(), 0.0, 64, 64, 7, 9);
    EXPECT_EQ(msg.getAttachment().substr(0, 17), ":007:00000000009:");
    msg.setWantRandomNoiseAttachmentContents(true);  // noise wins over unique
    msg.generateNewAttachment(state.get(), 0.0, 4096, 4096, 7, 9);
    std::set<char> bytes(msg.getAttachment().begin(), msg.getAttachment().end());
    EXPECT_GT(bytes.size(), 200u);
}

}  // namespace
}  // namespace zorvane::pubsub
