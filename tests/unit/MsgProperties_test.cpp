#include "common/MsgProperties.h"

#include <gtest/gtest.h>

#include <memory>
#include <regex>
#include <set>
#include <string>

#include "common/DiskUtils.h"
#include "common/OS.h"

namespace zorvane::pubsub {
namespace {

TEST(MsgPropertiesToolData, HeaderOverwritesTheStartAndNeverChangesTheLength) {
    MsgProperties msg;
    msg.setAttachment("abcdefgh");
    const std::string header("X\0Z", 3);
    msg.updateAttachmentForToolData(header.data(), header.data() + header.size());
    EXPECT_EQ(msg.getAttachment(), std::string("X\0Zdefgh", 8));

    const std::string longer = "0123456789";
    msg.updateAttachmentForToolData(longer.data(), longer.data() + longer.size());
    EXPECT_EQ(msg.getAttachment(), "01234567");
    msg.updateAttachmentForToolData(longer.data() + 5, longer.data());  // an empty range
    EXPECT_EQ(msg.getAttachment(), "01234567");
    MsgProperties noAttachment;
    noAttachment.updateAttachmentForToolData(longer.data(), longer.data() + 4);
    EXPECT_EQ(noAttachment.getAttachmentSize(), 0u);
}

// ---- new attachments for each send ----

struct Generator {
    std::unique_ptr<UINT16[]> state_p{OS::randomInitState(99)};
};

MsgProperties withAttachment(INT32 size) {
    MsgProperties msg;
    msg.setAttachment(DiskUtils::generateAttachment(size));
    msg.setOriginalAttachmentSize(size);
    return msg;
}

TEST(MsgPropertiesNewAttachment, JitterAndRandomSizesStayInTheirRange) {
    Generator gen;
    MsgProperties msg = withAttachment(100);
    std::set<size_t> sizes;
    for (int send = 0; send < 20000; ++send) {
        msg.generateNewAttachment(gen.state_p.get(), 0.5, -1, -1, 1, send);
        sizes.insert(msg.getAttachmentSize());
    }
    EXPECT_EQ(*sizes.begin(), 50u);
    EXPECT_EQ(*sizes.rbegin(), 149u);
    EXPECT_EQ(sizes.size(), 100u);
    EXPECT_EQ(msg.getAttachment(), DiskUtils::generateAttachment(msg.getAttachmentSize()));

    // Jitter wins over a size range, and never removes an attachment.
    MsgProperties none = withAttachment(0);
    none.generateNewAttachment(gen.state_p.get(), 0.5, 5, 5, 1, 1);
    EXPECT_EQ(none.getAttachment(), "A");
    msg.generateNewAttachment(gen.state_p.get(), 0.0, 5, 5, 1, 1);
    EXPECT_EQ(msg.getAttachment(), "AAAAA");
    msg.generateNewAttachment(gen.state_p.get(), 0.0, -1, -1, 1, 1);
    EXPECT_EQ(msg.getAttachmentSize(), 100u);  // back to the original size
}

TEST(MsgPropertiesNewAttachment, ContentsFollowTheWantedKind) {
    Generator gen;
    MsgProperties unique = withAttachment(40);
    unique.setWantUniqueAttachmentContents(true);
    unique.generateNewAttachment(gen.state_p.get(), 0.0, -1, -1, 0x1abc, 0x123456789ULL);
    EXPECT_TRUE(std::regex_match(unique.getAttachment(),
                                 std::regex(":abc:00023456789:[0-9a-f]{15}ABCDEFGH")))
        << unique.getAttachment();
    // The third part is the time of writing in microseconds.
    EXPECT_NEAR(
        static_cast<double>(std::stoull(unique.getAttachment().substr(17, 15), nullptr, 16)),
        static_cast<double>(OS::getTimeInUs()), 60e6);
    unique.generateNewAttachmentUnique(64, 1, 2);
    EXPECT_EQ(unique.getAttachment().substr(32, 17), ":001:00000000002:");

    MsgProperties noise = withAttachment(4096);
    noise.setWantRandomNoiseAttachmentContents(true);
    noise.setWantUniqueAttachmentContents(true);  // noise wins
    noise.generateNewAttachment(gen.state_p.get(), 0.0, -1, -1, 1, 1);
    const std::string bytes = noise.getAttachment();
    EXPECT_EQ(std::set<char>(bytes.begin(), bytes.end()).size(), 256u);
}

}  // namespace
}  // namespace zorvane::pubsub
