#include "client/AbstractMessage.h"

#include <gtest/gtest.h>

#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "common/PubSubException.h"
#include "tests/unit/LogCapture.h"

namespace zorvane::pubsub {
namespace {

// A received message without a library: an attachment and a user property
// map, decoded through the view's own helpers as a binding does.
class FakeMessage : public AbstractMessage {
  public:
    FakeMessage() : AbstractMessage("000004") {}
    std::string attachment_m;
    std::vector<std::pair<std::string, INT64>> userProps_m;

    void decodeToolData(ToolDataType type) override {
        switch (type) {
            case TOOL_DATA_TYPE_BIN_ATTACH:
                decodeToolDataFromAttachment(getAttachBegin(), getAttachEnd());
                return;
            case TOOL_DATA_TYPE_USER_PROP:
                toolData_m.clear();
                for (const auto& [name, value] : userProps_m) {
                    takeToolDataUserProperty(name.c_str(), value);
                }
                return;
        }
        throwUnsupportedToolDataType(type);
    }
    const char* getAttachBegin() override {
        return attachment_m.empty() ? nullptr : attachment_m.data();
    }
    const char* getAttachEnd() override {
        return attachment_m.empty() ? nullptr : attachment_m.data() + attachment_m.size();
    }

    std::string getMsgId() override { return ""; }
    std::string getUserData() override { return ""; }
    INT32 getPriority() override { return -1; }
    std::vector<unsigned int> getCids() override { return {}; }
    void fullMsgUpdateStats(PerfStats*) override {}
    const char* getPayloadBegin() override { return nullptr; }
    const char* getPayloadEnd() override { return nullptr; }
    bool isRedelivered() override { return false; }
    bool getCheckStructuredMsg(const std::vector<SdmProperties>&) override { return false; }
    void* getMsgPointer() override { return nullptr; }
    void setMsgPointer(void*) override {}
};

std::string encoded(const ToolData& td) {
    char buffer[ToolData::MAX_ENCODED_SIZE];
    return std::string(buffer, td.encode(buffer, sizeof buffer));
}

TEST(AbstractMessageToolData, AttachmentFormReplacesTheRecordOfTheMessageBefore) {
    FakeMessage msg;
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
    FakeMessage msg;
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
    FakeMessage msg;
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
    FakeMessage msg;
    try {
        msg.decodeToolData(static_cast<ToolDataType>(5));
        FAIL() << "no exception";
    } catch (const PubSubException& e) {
        EXPECT_STREQ(e.what(), "Unsupported tool data type 5");
    }
}

}  // namespace
}  // namespace zorvane::pubsub
