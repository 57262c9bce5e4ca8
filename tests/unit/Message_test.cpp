// The view on library messages, over messages built with the library's own
// setters (a received message answers the same getters).
#include "client/zcore/Message.h"

#include <gtest/gtest.h>

#include <stdexcept>
#include <string>

#include "client/zcore/CannedMessages.h"
#include "client/zcore/SdmMessageBuilder.h"
#include "common/PerfStats.h"
#include "common/PubSubException.h"
#include "common/SdmProperties.h"
#include "tests/unit/ZcoreTestSupport.h"
#include "zorClientMsg.h"

namespace zorvane::pubsub {
namespace {

class MessageTest : public ::testing::Test {
  protected:
    void SetUp() override {
        ASSERT_EQ(ZORCLIENT_OK, zorClient_initialize(ZORCLIENT_LOG_ERROR, nullptr));
        ASSERT_EQ(ZORCLIENT_OK, zorClient_msg_alloc(&msg_m));
    }
    void TearDown() override {
        zorClient_msg_free(&msg_m);
        zorClient_cleanup();
    }
    void attach(const std::string& bytes) {
        zorClient_msg_setBinaryAttachment(msg_m, bytes.data(),
                                          static_cast<zorClient_uint32_t>(bytes.size()));
    }

    LogCapture log_m;
    zorClient_opaqueMsg_pt msg_m = nullptr;
    Message view_m{"000003", nullptr};
};

TEST_F(MessageTest, PartsReadThroughTheViewAndAnUnboundViewAnswersNo) {
    EXPECT_FALSE(view_m.isRedelivered());
    EXPECT_EQ(view_m.getTopicSequence(), 0);
    EXPECT_EQ(view_m.getDump(0), "");
    EXPECT_TRUE(log_m.contains(log::LEVEL_ERROR,
                               "CLIENT 000003: currentMsgGetRedelivered called on null message"));
    EXPECT_TRUE(log_m.contains("CLIENT 000003: Unable to print null message"));

    view_m.setMsgPointer(msg_m);
    EXPECT_EQ(view_m.getPayloadBegin(), nullptr);
    EXPECT_EQ(view_m.getPayloadEnd(), nullptr);
    EXPECT_EQ(view_m.getPriority(), -1);
    EXPECT_EQ(view_m.getMsgId(), "");  // a direct message has none
    const std::string userData(36, 'u');
    zorClient_msg_setUserData(msg_m, userData.data(), 36);
    EXPECT_EQ(view_m.getUserData(), userData);
    zorClient_msg_setUserData(msg_m, "ab\0cd", 5);  // text ends at the zero byte
    EXPECT_EQ(view_m.getUserData(), "ab");
    zorClient_msg_setXml(msg_m, "<x/>", 4);
    zorClient_msg_setTopicPtr(msg_m, "t/1");
    EXPECT_EQ(std::string(view_m.getPayloadBegin(), view_m.getPayloadEnd()), "<x/>");

    PerfStats stats;
    view_m.fullMsgUpdateStats(&stats);
    EXPECT_EQ(stats.getStat(PerfStats::NUM_MSGS_W_XML_PAYLOAD), 1U);
    EXPECT_EQ(stats.getStat(PerfStats::NUM_MSGS_W_TOPIC), 1U);
    EXPECT_EQ(stats.getStat(PerfStats::NUM_MSGS_W_BIN_ATTACH), 0U);
}

TEST_F(MessageTest, BinaryToolDataIsReadFromTheAttachmentAndClearedWhenAbsent) {
    view_m.setMsgPointer(msg_m);
    ToolData record;
    record.setStreamId(2);
    record.setMsgId(7);
    record.setLatency(0x0102030405060708ULL);
    char buffer[ToolData::MAX_ENCODED_SIZE];
    const std::string encoded(buffer, record.encode(buffer, sizeof buffer));
    attach(encoded + "user");
    view_m.decodeToolData(TOOL_DATA_TYPE_BIN_ATTACH);
    EXPECT_EQ(view_m.getToolData()->getMsgId(), 7U);
    EXPECT_EQ(view_m.getToolData()->getLatency(), 0x0102030405060708ULL);
    EXPECT_EQ(view_m.getToolData()->getDecodedSize(), 28U);

    attach(encoded.substr(0, 20));  // ends inside a field
    EXPECT_THROW(view_m.decodeToolData(TOOL_DATA_TYPE_BIN_ATTACH), std::invalid_argument);
    EXPECT_FALSE(view_m.getToolData()->hasData()) << "nothing of either record stays";
    attach(encoded);
    view_m.decodeToolData(TOOL_DATA_TYPE_BIN_ATTACH);
    attach("");  // an empty attachment leaves no stale record behind
    view_m.decodeToolData(TOOL_DATA_TYPE_BIN_ATTACH);
    EXPECT_FALSE(view_m.getToolData()->hasData());
    attach("not tool data at all");
    EXPECT_NO_THROW(view_m.decodeToolData(TOOL_DATA_TYPE_BIN_ATTACH));
    try {
        view_m.decodeToolData(static_cast<ToolDataType>(7));
        FAIL() << "no exception";
    } catch (const PubSubException& e) {
        EXPECT_STREQ(e.what(), "Unsupported tool data type 7");
    }
}

TEST_F(MessageTest, PropertyToolDataTakesTheOneLetterFieldsAndLogsTheRest) {
    view_m.setMsgPointer(msg_m);
    try {
        view_m.decodeToolData(TOOL_DATA_TYPE_USER_PROP);
        FAIL() << "no exception";
    } catch (const PubSubException& e) {
        EXPECT_STREQ(e.what(),
                     "Message::readToolDataFromProperties: Failed to read user property map");
    }
    zorClient_opaqueContainer_pt map = nullptr;
    ASSERT_EQ(zorClient_msg_createUserPropertyMap(msg_m, &map, 100), ZORCLIENT_OK);
    zorClient_container_addInt32(map, -1, "b");  // a CRC above 2^31 travels as a negative
    zorClient_container_addInt32(map, 5, "s");
    zorClient_container_addInt64(map, 123456789012LL, "m");
    zorClient_container_addString(map, "t/1", "topic");
    zorClient_container_addString(map, "text", "l");
    zorClient_container_addInt32(map, 7, "JMSXGroupID");  // an integer, but no tool data name
    zorClient_container_closeMapStream(&map);

    view_m.decodeToolData(TOOL_DATA_TYPE_USER_PROP);
    EXPECT_EQ(view_m.getToolData()->getCrcBinAttach(), 0xFFFFFFFFU);
    EXPECT_EQ(view_m.getToolData()->getStreamId(), 5);
    EXPECT_EQ(view_m.getToolData()->getMsgId(), 123456789012ULL);
    EXPECT_FALSE(view_m.getToolData()->hasLatency());
    EXPECT_EQ(view_m.getToolData()->getDecodedSize(), 0U);
    for (const char* name : {"topic", "l", "JMSXGroupID"}) {
        EXPECT_TRUE(log_m.contains(log::LEVEL_ERROR, std::string("CLIENT 000003: Unrecognized "
                                                                 "user property '") +
                                                         name + "' while reading tool data"));
    }
}

TEST_F(MessageTest, DumpsAreCutAtAGivenLimitButNeverAtTheDefaultOne) {
    view_m.setMsgPointer(msg_m);
    attach(std::string(2000, 'z'));
    const std::string whole = view_m.getDump(0);
    EXPECT_EQ(whole.find("[truncated]"), std::string::npos);
    const std::string cut = view_m.getDump(100);
    EXPECT_EQ(cut, whole.substr(0, 99) + "\n... [truncated] ...");

    attach(std::string(600000, 'z'));  // a text of more than 1000000 bytes
    EXPECT_EQ(view_m.getDump(0), "");
    EXPECT_TRUE(log_m.contains(log::LEVEL_ERROR,
                               "CLIENT 000003: Could not fit message within max size of: 1000000"));
}

TEST_F(MessageTest, TheStructuredMessageIdComesFromTheFirstUserDataByte) {
    view_m.setMsgPointer(msg_m);
    EXPECT_FALSE(view_m.getCheckStructuredMsg({}));  // no user data
    const unsigned char userDefined = 50;
    zorClient_msg_setUserData(msg_m, &userDefined, 1);
    EXPECT_FALSE(view_m.getCheckStructuredMsg({}));
    EXPECT_TRUE(log_m.contains(log::LEVEL_DEBUG,
                               "CLIENT 000003: sdm message ID received out of range. 50. "));

    SdmProperties described;
    described.parseInputString(
        {"msg:type=map", "msg:useBinaryAttachment=1", "int8 name=n value=1"});
    described.setSdmMsgId(50);
    zorClient_msg_reset(msg_m);
    ASSERT_EQ(SdmMessageBuilder::buildMsg(described, msg_m), 0);
    EXPECT_TRUE(view_m.getCheckStructuredMsg({described}));
    described.setSdmMsgId(51);  // the byte names the list entry, the entry must agree
    EXPECT_FALSE(view_m.getCheckStructuredMsg({described}));
}

TEST_F(MessageTest, ACannedMessageMayLackOnlyItsSenderTimestamp) {
    view_m.setMsgPointer(msg_m);
    ASSERT_EQ(createStructuredMsg(12, msg_m), 0);
    zorClient_msg_deleteSenderTimestamp(msg_m);
    EXPECT_TRUE(view_m.getCheckStructuredMsg({}));
    zorClient_msg_setCorrelationId(msg_m, "other");
    EXPECT_FALSE(view_m.getCheckStructuredMsg({}));
    EXPECT_TRUE(log_m.contains(log::LEVEL_ERROR, "Msg 12: Found CorrelationID=other"));
}

}  // namespace
}  // namespace zorvane::pubsub
