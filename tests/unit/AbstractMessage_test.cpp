#include "client/AbstractMessage.h"

#include <gtest/gtest.h>

#include <stdexcept>
#include <string>
#include <vector>

#include "common/PubSubException.h"
#include "tests/unit/LogCapture.h"
#include "tests/unit/TestMessage.h"

namespace zorvane::pubsub {
namespace {

std::string encoded(const ToolData& td) {
    char buffer[ToolData::MAX_ENCODED_SIZE];
    return std::string(buffer, td.encode(buffer, sizeof buffer));
}

TEST(AbstractMessageToolData, AttachmentFormReplacesTheRecordOfTheMessageBefore) {
    TestMessage msg("000004");
    ToolData sent;
    sent.setMsgId(42);
    sent.setStreamId(0);
    msg.attachment_m = encoded(sent) + "user contents";
    msg.decodeToolData(TOOL_DATA_TYPE_BIN_ATTACH);
    EXPECT_EQ(msg.getToolData()->getMsgId(), 42U);
    EXPECT_EQ(msg.getToolData()->getDecodedSize(), 20U);

    // The view is rebound: a message without an attachment shows nothing.
    msg.attachment_m.clear();
    msg.decodeToolData(TOOL_DATA_TYPE_BIN_ATTACH);
    EXPECT_FALSE(msg.getToolData()->hasData());
}

TEST(AbstractMessageToolData, DamagedBlockThrowsAndLeavesTheRecordEmpty) {
    TestMessage msg("000004");
    ToolData sent;
    sent.setMsgId(42);
    msg.attachment_m = encoded(sent);
    msg.decodeToolData(TOOL_DATA_TYPE_BIN_ATTACH);
    ASSERT_TRUE(msg.getToolData()->hasMsgId());
    msg.attachment_m.resize(12);  // the message id promised but cut short
    EXPECT_THROW(msg.decodeToolData(TOOL_DATA_TYPE_BIN_ATTACH), std::invalid_argument);
    EXPECT_FALSE(msg.getToolData()->hasData());
}

TEST(AbstractMessageToolData, PropertyFormTakesKnownNamesAndLogsTheRest) {
    LogCapture captured(log::LEVEL_ERROR);
    TestMessage msg("000004");
    msg.userProps_m = {{"m", 9}, {"JMSXGroupID", 1}, {"s", 3}, {"q", 5}, {"l", 0}, {"x", -1}};
    msg.decodeToolData(TOOL_DATA_TYPE_USER_PROP);
    const ToolData& td = *msg.getToolData();
    EXPECT_EQ(td.getMsgId(), 9U);
    EXPECT_EQ(td.getStreamId(), 3);
    EXPECT_TRUE(td.hasLatency());
    EXPECT_EQ(td.getCrcXmlPayload(), 0xFFFFFFFFU) << "a CRC travels bit for bit in an Int32";
    EXPECT_EQ(td.getDecodedSize(), 0U);
    EXPECT_EQ(captured.all(),
              (std::vector<std::string>{
                  "CLIENT 000004: Unrecognized user property 'JMSXGroupID' while reading tool data",
                  "CLIENT 000004: Unrecognized user property 'q' while reading tool data"}));
}

TEST(AbstractMessageToolData, UnknownFormIsRefusedByNumber) {
    TestMessage msg("000004");
    try {
        msg.decodeToolData(static_cast<ToolDataType>(5));
        FAIL() << "no exception";
    } catch (const PubSubException& e) {
        EXPECT_STREQ(e.what(), "Unsupported tool data type 5");
    }
}

}  // namespace
}  // namespace zorvane::pubsub
