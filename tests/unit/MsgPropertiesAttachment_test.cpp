#include <gtest/gtest.h>

#include <memory>
#include <set>
#include <string>

#include "common/MsgProperties.h"
#include "common/OS.h"

namespace zorvane::pubsub {
namespace {

TEST(MsgPropertiesAttachment, ContentsHaveTheirLayoutAndSizesTheirRange) {
    MsgProperties msg;
    msg.generateNewAttachmentNonRepeating(16);
    EXPECT_EQ(msg.getAttachment(), ":0000000:0000001");
    msg.generateNewAttachmentNonRepeating(7);
    EXPECT_EQ(msg.getAttachment(), "AAAAAAA");
    msg.generateNewAttachmentUnique(40, 0x1234, 0x1ABCDEF01ULL);
    EXPECT_EQ(msg.getAttachment().substr(0, 17) + msg.getAttachment().substr(32),
              ":234:000abcdef01:ABCDEFGH");
    EXPECT_NEAR(static_cast<double>(std::stoull(msg.getAttachment().substr(17, 15), nullptr, 16)),
                static_cast<double>(OS::getTimeInUs()), 60e6);

    std::unique_ptr<UINT16[]> state(OS::randomInitState(4242));
    msg.setOriginalAttachmentSize(100);
    std::set<size_t> sizes;
    for (int i = 0; i < 2000; ++i) {
        msg.generateNewAttachment(state.get(), 0.5, -1, -1, 1, 1);
        sizes.insert(msg.getAttachmentSize());
    }
    EXPECT_EQ(*sizes.begin() * 1000 + *sizes.rbegin(), 50149u) << "jitter 0.5: 50 to 149";
    msg.setOriginalAttachmentSize(0);
    msg.generateNewAttachment(state.get(), 0.5, -1, -1, 1, 1);
    EXPECT_EQ(msg.getAttachmentSize(), 1u) << "jitter never removes an attachment";
    msg.generateNewAttachment(state.get(), 0.0, 5, 5, 1, 1);
    EXPECT_EQ(msg.getAttachment(), "AAAAA");
    msg.setWantRandomNoiseAttachmentContents(true);
    msg.generateNewAttachment(state.get(), 0.0, 4096, 4096, 7, 9);
    EXPECT_GT(std::set<char>(msg.getAttachment().begin(), msg.getAttachment().end()).size(), 200u);
}

}  // namespace
}  // namespace zorvane::pubsub
