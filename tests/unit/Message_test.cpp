// The view on library messages, over messages built with the library's own
// setters (a received message answers the same getters).
#include "client/zcore/Message.h"

#include <gtest/gtest.h>

#include <stdexcept>
#include <string>
#include <vector>

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
    static std::string encoded(const ToolData& record) {
        char buffer[ToolData::MAX_ENCODED_SIZE];
        return std::string(buffer, record.encode(buffer, sizeof buffer));
    }

    LogCapture log_m;
    zorClient_opaqueMsg_pt msg_m = nullptr;
};

TEST_F(MessageTest, PartsReadThroughTheViewAndAbsentOnesAreNull) {
    Message view("000003", msg_m);
    EXPECT_EQ(view.getPayloadBegin(), nullptr);
    EXPECT_EQ(view.getPayloadEnd(), nullptr);
    EXPECT_EQ(view.getAttachBegin(), nullptr);
    EXPECT_EQ(view.getPriority(), -1);
    EXPECT_TRUE(view.getCids().empty());
    EXPECT_EQ(view.getMsgId(), "");  // a direct message has no id

    const std::string userData(36, 'u');
    zorClient_msg_setUserData(msg_m, userData.data(), 36);
    EXPECT_EQ(view.getUserData(), userData);
    zorClient_msg_setUserData(msg_m, "ab\0cd", 5);  // text ends at the zero byte
    EXPECT_EQ(view.getUserData(), "ab");
    zorClient_msg_setXml(msg_m, "<x/>", 4);
    attach("att");
    zorClient_msg_setTopicPtr(msg_m, "t/1");
    zorClient_msg_setPriority(msg_m, 4);
    EXPECT_EQ(std::string(view.getPayloadBegin(), view.getPayloadEnd()), "<x/>");
    EXPECT_EQ(std::string(view.getAttachBegin(), view.getAttachEnd()), "att");
    EXPECT_EQ(view.getPriority(), 4);

    PerfStats stats;
    view.fullMsgUpdateStats(&stats);
    for (auto stat : {PerfStats::NUM_MSGS_W_XML_PAYLOAD, PerfStats::NUM_MSGS_W_BIN_ATTACH,
                      PerfStats::NUM_MSGS_W_USERDATA, PerfStats::NUM_MSGS_W_TOPIC}) {
        EXPECT_EQ(stats.getStat(stat), 1U) << stat;
    }
    EXPECT_EQ(stats.getStat(PerfStats::NUM_MSGS_W_CID), 0U);
}

TEST_F(MessageTest, AnUnboundViewAnswersNoAndSaysSo) {
    Message view("000003", nullptr);
    EXPECT_FALSE(view.isRedelivered());
    EXPECT_FALSE(view.isCacheMsg());
    EXPECT_FALSE(view.isSuspectMsg());
    EXPECT_FALSE(view.hasDiscardIndication());
    EXPECT_EQ(view.getTopicSequence(), 0);
    EXPECT_EQ(view.getDump(0), "");
    for (const char* line : {"CLIENT 000003: currentMsgGetRedelivered called on null message",
                             "CLIENT 000003: currentMsgIsCacheMsg called on null message",
                             "CLIENT 000003: currentMsgIsSuspectMsg called on null message",
                             "CLIENT 000003: currentMsgDiscardIndication called on null message",
                             "CLIENT 000003: currentMsgGetTopicSequence called on null message",
                             "CLIENT 000003: Unable to print null message"}) {
        EXPECT_TRUE(log_m.contains(log::LEVEL_ERROR, line)) << line;
    }
    view.setMsgPointer(msg_m);
    EXPECT_EQ(view.getMsgPointer(), msg_m);
    EXPECT_FALSE(view.isCacheMsg());  // a live message
}

TEST_F(MessageTest, BinaryToolDataIsReadFromTheAttachmentAndClearedWhenAbsent) {
    Message view("000003", msg_m);
    ToolData record;
    record.setStreamId(2);
    record.setMsgId(7);
    record.setLatency(0x0102030405060708ULL);
    attach(encoded(record) + "user");
    view.decodeToolData(TOOL_DATA_TYPE_BIN_ATTACH);
    EXPECT_EQ(view.getToolData()->getStreamId(), 2);
    EXPECT_EQ(view.getToolData()->getMsgId(), 7U);
    EXPECT_EQ(view.getToolData()->getLatency(), 0x0102030405060708ULL);
    EXPECT_EQ(view.getToolData()->getDecodedSize(), 28U);

    // Rebinding keeps the record until the next decode, which clears it
    // for a message without an attachment.
    zorClient_opaqueMsg_pt other = nullptr;
    ASSERT_EQ(zorClient_msg_alloc(&other), ZORCLIENT_OK);
    view.setMsgPointer(other);
    EXPECT_EQ(view.getToolData()->getMsgId(), 7U);
    view.decodeToolData(TOOL_DATA_TYPE_BIN_ATTACH);
    EXPECT_FALSE(view.getToolData()->hasData());
    zorClient_msg_free(&other);

    view.setMsgPointer(msg_m);
    attach("not tool data at all");
    EXPECT_NO_THROW(view.decodeToolData(TOOL_DATA_TYPE_BIN_ATTACH));
    EXPECT_FALSE(view.getToolData()->hasData());
    attach(encoded(record).substr(0, 20));  // ends inside the message id
    EXPECT_THROW(view.decodeToolData(TOOL_DATA_TYPE_BIN_ATTACH), std::invalid_argument);
    try {
        view.decodeToolData(static_cast<ToolDataType>(7));
        FAIL() << "no exception";
    } catch (const PubSubException& e) {
        EXPECT_STREQ(e.what(), "Unsupported tool data type 7");
    }
}

TEST_F(MessageTest, PropertyToolDataTakesTheOneLetterFieldsAndLogsTheRest) {
    Message view("000003", msg_m);
    try {
        view.decodeToolData(TOOL_DATA_TYPE_USER_PROP);
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
    zorClient_container_addInt64(map, 99, "l");
    zorClient_container_addString(map, "t/1", "topic");
    zorClient_container_addString(map, "text", "x");
    zorClient_container_closeMapStream(&map);

    view.decodeToolData(TOOL_DATA_TYPE_USER_PROP);
    const ToolData& read = *view.getToolData();
    EXPECT_EQ(read.getCrcBinAttach(), 0xFFFFFFFFU);
    EXPECT_EQ(read.getStreamId(), 5);
    EXPECT_EQ(read.getMsgId(), 123456789012ULL);
    EXPECT_EQ(read.getLatency(), 99U);
    EXPECT_FALSE(read.hasCrcXmlPayload());
    EXPECT_TRUE(log_m.contains(log::LEVEL_ERROR,
                               "CLIENT 000003: Unrecognized user property 'topic' while reading "
                               "tool data"));
    EXPECT_TRUE(
        log_m.contains("CLIENT 000003: Unrecognized user property 'x' while reading tool data"));
}

TEST_F(MessageTest, DumpsAreCutAtAGivenLimitAndNeverAtTheDefaultOne) {
    Message view("000003", msg_m);
    attach(std::string(2000, 'z'));
    const std::string whole = view.getDump(0);
    EXPECT_GT(whole.size(), 2000U);
    EXPECT_EQ(whole.find("[truncated]"), std::string::npos);

    const std::string cut = view.getDump(100);
    const std::string mark = "\n... [truncated] ...";
    ASSERT_GT(cut.size(), mark.size());
    EXPECT_EQ(cut.substr(cut.size() - mark.size()), mark);
    EXPECT_EQ(cut.substr(0, 99), whole.substr(0, 99));

    attach(std::string(600000, 'z'));  // a text of more than 1000000 bytes
    EXPECT_EQ(view.getDump(0), "");
    EXPECT_TRUE(log_m.contains(log::LEVEL_ERROR,
                               "CLIENT 000003: Could not fit message within max size of: 1000000"));
}

TEST_F(MessageTest, TheStructuredMessageIdComesFromTheFirstUserDataByte) {
    Message view("000003", msg_m);
    EXPECT_FALSE(view.getCheckStructuredMsg({}));  // no user data
    const unsigned char userDefined = 50;
    zorClient_msg_setUserData(msg_m, &userDefined, 1);
    EXPECT_FALSE(view.getCheckStructuredMsg({}));
    EXPECT_TRUE(log_m.contains(log::LEVEL_DEBUG,
                               "CLIENT 000003: sdm message ID received out of range. 50. "));
    const unsigned char canned = 3;
    zorClient_msg_setUserData(msg_m, &canned, 1);
    EXPECT_FALSE(view.getCheckStructuredMsg({}));
    EXPECT_TRUE(log_m.contains(
        "CLIENT 000003: Checking structured message 3 is not available in this build"));
}

}  // namespace
}  // namespace zorvane::pubsub
