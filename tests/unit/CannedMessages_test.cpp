// The canned catalogue: every number that builds passes its own check (also
// on a duplicate), the reserved numbers fail and single changes are caught.
// The round trip through the broker is the structured-message run's test.
#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "client/zcore/CannedMessages.h"
#include "tests/unit/LogCapture.h"
#include "zorclient/tests/MsgTestSupport.h"

namespace zorvane::pubsub {
namespace {

using zorclient_test::NoLeakTest;
using zorclient_test::ScopedMsg;

// Numbers that build: the supported list, plus 16 (built, never published).
std::vector<int> buildableNumbers() {
    std::vector<int> numbers;
    for (int n = 0; n <= SDK_MAX_MSG_NUM + 1; ++n) {
        if (structuredMsgNumIsSupported(n) != 0 || n == 16)
            numbers.push_back(n);
    }
    return numbers;
}

class CannedMessagesTest : public NoLeakTest {};

// The fixture fails a test that leaks: containers left open go with the
// message.
TEST_F(CannedMessagesTest, EveryBuildableNumberPassesItsOwnCheckAndOnADuplicate) {
    LogCapture log(log::LEVEL_ERROR);
    ASSERT_EQ(19u + 1u, buildableNumbers().size());
    for (int n : buildableNumbers()) {
        SCOPED_TRACE(n);
        ScopedMsg msg, dup, open, modified;
        ASSERT_EQ(0, createStructuredMsg(n, msg));
        EXPECT_EQ(0, checkStructuredMsg(msg, 0));
        // Checking reads only: a second check of the same object passes too.
        EXPECT_EQ(0, checkStructuredMsgWithCloseOption(msg, 0, 1));
        zorClient_msg_free(dup.address());
        ASSERT_EQ(ZORCLIENT_OK, zorClient_msg_dup(msg, dup.address()));
        EXPECT_EQ(0, checkStructuredMsg(dup, 0));
        EXPECT_EQ(0, createStructuredMsgWithCloseOption(n, open, 0));
        EXPECT_EQ(0, modifyStructuredMsgWithCloseOption(n, modified, 0));
    }
    EXPECT_TRUE(log.all().empty()) << log.all().front();
}

TEST_F(CannedMessagesTest, ReservedAndUnknownNumbersFailToBuild) {
    LogCapture log(log::LEVEL_ERROR);
    for (int n : {0, 5, 10, 17, 23, 25, 300}) {
        ScopedMsg msg;
        EXPECT_EQ(-1, createStructuredMsg(n, msg)) << n;
    }
    EXPECT_TRUE(log.contains("Msg 25: Unrecognized test message"));
    EXPECT_FALSE(log.contains("Msg 5: Unrecognized test message"));
}

TEST_F(CannedMessagesTest, NumbersOneToThreeGoOutAsFourAndTwentyThreeAlwaysPasses) {
    ScopedMsg msg;
    ASSERT_EQ(0, createStructuredMsg(2, msg));
    void* data_p = nullptr;
    zorClient_uint32_t size = 0;
    ASSERT_EQ(ZORCLIENT_OK, zorClient_msg_getUserDataPtr(msg, &data_p, &size));
    EXPECT_EQ(4, *static_cast<zorClient_uint8_t*>(data_p));

    LogCapture log(log::LEVEL_ERROR);
    const zorClient_uint8_t numbers[] = {23, 0};
    ScopedMsg bare;
    ASSERT_EQ(ZORCLIENT_OK, zorClient_msg_setUserData(bare, &numbers[0], 1));
    EXPECT_EQ(0, checkStructuredMsg(bare, 0));
    ASSERT_EQ(ZORCLIENT_OK, zorClient_msg_setUserData(bare, &numbers[1], 1));
    EXPECT_EQ(-1, checkStructuredMsg(bare, 0));
    EXPECT_TRUE(log.contains("Msg 0: Unrecognized test message"));
    ScopedMsg none;
    EXPECT_EQ(-1, checkStructuredMsg(none, 0));
}

TEST_F(CannedMessagesTest, OneChangedFieldFailsTheCheckWithItsLine) {
    LogCapture log(log::LEVEL_ERROR);
    {
        ScopedMsg msg;
        ASSERT_EQ(0, createStructuredMsg(12, msg));
        ASSERT_EQ(ZORCLIENT_OK, zorClient_msg_setSenderId(msg, "other"));
        EXPECT_EQ(-1, checkStructuredMsg(msg, 0));
        EXPECT_TRUE(log.contains("Msg 12: Found SenderID=other"));
    }
    {
        ScopedMsg msg;
        ASSERT_EQ(0, createStructuredMsg(4, msg));
        ASSERT_EQ(ZORCLIENT_OK, zorClient_msg_setSequenceNumber(msg, 1));
        ASSERT_EQ(ZORCLIENT_OK, zorClient_msg_setSenderTimestamp(msg, 5));
        EXPECT_EQ(-1, checkStructuredMsg(msg, 0));
        EXPECT_TRUE(log.contains("Msg 4: Found SequenceNum header in null message"));
        EXPECT_TRUE(
            log.contains("Msg 4: Send Timestamp (5) in message not as expected (376099200000) "));
    }
    {
        // A number whose container was replaced by the other table's values.
        ScopedMsg msg;
        ASSERT_EQ(0, modifyStructuredMsgWithCloseOption(19, msg, 1));
        EXPECT_EQ(-1, checkStructuredMsg(msg, 0));
        EXPECT_TRUE(log.contains("Uint8: expected 42, got 77 for field 2"));
        EXPECT_TRUE(log.contains("ByteArray: expected length 12, got length 13 for field 29"));
    }
    {
        ScopedMsg msg;
        ASSERT_EQ(0, modifyStructuredMsgWithCloseOption(22, msg, 1));
        EXPECT_EQ(-1, checkStructuredMsg(msg, 0));
        EXPECT_TRUE(log.contains("Msg 22: Found value 77112609, expected 43112609"));
        EXPECT_TRUE(log.contains("Msg 22: Cannot get big array ptr"));
    }
}

TEST_F(CannedMessagesTest, OnlyTheToleratedHeaderMayBeMissing) {
    LogCapture log(log::LEVEL_ERROR);
    ScopedMsg msg;
    // The modified number 11 carries no sender timestamp.
    ASSERT_EQ(0, modifyStructuredMsgWithCloseOption(11, msg, 1));
    ASSERT_EQ(ZORCLIENT_OK, zorClient_msg_setApplicationMsgType(msg, "myAppMsgType"));
    ASSERT_EQ(ZORCLIENT_OK, zorClient_msg_setApplicationMessageId(msg, "myAppMsgID"));
    ASSERT_EQ(ZORCLIENT_OK, zorClient_msg_setCorrelationId(msg, "myCorrelationID"));
    ASSERT_EQ(ZORCLIENT_OK, zorClient_msg_setSenderId(msg, "mySenderID"));
    ASSERT_EQ(ZORCLIENT_OK, zorClient_msg_setSequenceNumber(msg, 7777777));
    zorClient_destination_t replyTo{ZORCLIENT_TOPIC_DESTINATION, "mytopic"};
    ASSERT_EQ(ZORCLIENT_OK, zorClient_msg_setReplyTo(msg, &replyTo, sizeof(replyTo)));
    EXPECT_EQ(-1, checkStructuredMsg(msg, 0));
    EXPECT_TRUE(log.contains("Msg 11: Did not find senderTimestamp"));
    EXPECT_EQ(0, checkStructuredMsg(msg, MISSING_OK_SENDER_TIMESTAMP));
}

TEST_F(CannedMessagesTest, BadRowsAreLoggedAndSkippedWithoutUsingAName) {
    LogCapture log(log::LEVEL_ERROR);
    const sdkTestContainerElement table[] = {{API_INT32, "12x"},
                                             {API_DESTINATION, "7 nowhere"},
                                             {API_UINT8, "7"},
                                             {API_ARRAYPTR, "abc"},
                                             {EOG_TYPE, nullptr}};
    ScopedMsg msg;
    zorClient_opaqueContainer_pt map = nullptr;
    ASSERT_EQ(ZORCLIENT_OK, zorClient_msg_createBinaryAttachmentMap(msg, &map, 0));
    EXPECT_EQ(2, fillContainer(map, 1, table));
    zorClient_uint8_t value = 0;
    EXPECT_EQ(ZORCLIENT_OK, zorClient_container_getUint8(map, &value, "field_0"));
    EXPECT_EQ(7, value);
    zorClient_uint8_t* bytes_p = nullptr;
    zorClient_uint32_t length = 0;
    EXPECT_EQ(ZORCLIENT_OK, zorClient_container_getByteArrayPtr(map, &bytes_p, &length, "field_1"));
    EXPECT_EQ(1u, length);
    zorClient_container_closeMapStream(&map);
    EXPECT_TRUE(log.contains("element type 6 has bad value 12x"));
    EXPECT_TRUE(log.contains("Invalid destination string 7 nowhere"));
    EXPECT_TRUE(log.contains("byte array string has odd length value abc"));
}

TEST_F(CannedMessagesTest, HeaderAndContentFindingsOfEachGroupAreNamed) {
    LogCapture log(log::LEVEL_ERROR);
    const zorClient_int64_t nowMs = getTimeInUs() / 1000;
    {
        // An empty-header message: headers that must be there, and a time
        // stamp that must be recent.
        ScopedMsg msg;
        const zorClient_uint8_t nine = 9;
        ASSERT_EQ(ZORCLIENT_OK, zorClient_msg_setUserData(msg, &nine, 1));
        ASSERT_EQ(ZORCLIENT_OK, zorClient_msg_setSenderTimestamp(msg, nowMs + 60000));
        EXPECT_EQ(-1, checkStructuredMsg(msg, 0));
        EXPECT_TRUE(log.contains("Msg 9: Did not find MsgType header in message"));
        EXPECT_TRUE(log.contains("Msg 9: Did not find Property Map header in message"));
        EXPECT_EQ(1u, log.count("Msg 9: Send Timestamp ("));
        ASSERT_EQ(ZORCLIENT_OK, zorClient_msg_setSenderTimestamp(msg, nowMs - 259300000));
        EXPECT_EQ(-1, checkStructuredMsg(msg, 0x31));
        EXPECT_EQ(2u, log.count("Msg 9: Send Timestamp ("));
        const auto lines = log.all();
        EXPECT_EQ(1, std::count_if(lines.begin(), lines.end(), [](const std::string& line) {
                      return line.find("in message more than 3 days before current time(") !=
                             std::string::npos;
                  }));
    }
    {
        ScopedMsg msg;
        ASSERT_EQ(0, createStructuredMsg(6, msg));
        zorClient_opaqueContainer_pt props = nullptr;
        ASSERT_EQ(ZORCLIENT_OK, zorClient_msg_getUserPropertyMap(msg, &props));
        zorClient_container_closeMapStream(&props);
        zorClient_opaqueContainer_pt map = nullptr;
        ASSERT_EQ(ZORCLIENT_OK, zorClient_msg_createBinaryAttachmentMap(msg, &map, 0));
        ASSERT_EQ(ZORCLIENT_OK, zorClient_container_addNull(map, "x"));
        zorClient_container_closeMapStream(&map);
        EXPECT_EQ(-1, checkStructuredMsg(msg, 0));
        EXPECT_TRUE(log.contains("Msg 6: Found data in  container that should be empty"));
    }
    {
        ScopedMsg msg;
        ASSERT_EQ(0, createStructuredMsg(13, msg));
        zorClient_destination_t queue{ZORCLIENT_QUEUE_DESTINATION, "mytopic"};
        ASSERT_EQ(ZORCLIENT_OK, zorClient_msg_setReplyTo(msg, &queue, sizeof(queue)));
        ASSERT_EQ(ZORCLIENT_OK, zorClient_msg_setXml(msg, "<a/>", 4));
        EXPECT_EQ(-1, checkStructuredMsg(msg, 0));
        EXPECT_TRUE(log.contains("Msg 13: Did not find topic Destination"));
        EXPECT_TRUE(log.contains("Msg 13: Found Xml attachment in header test message"));
    }
    {
        ScopedMsg msg;
        ASSERT_EQ(0, createStructuredMsg(2, msg));
        zorClient_opaqueContainer_pt props = nullptr;
        ASSERT_EQ(ZORCLIENT_OK, zorClient_msg_createUserPropertyMap(msg, &props, 0));
        zorClient_container_closeMapStream(&props);
        EXPECT_EQ(-1, checkStructuredMsg(msg, 0));
        EXPECT_TRUE(log.contains("Msg 4: Found User Property Map header in null message"));
    }
}

TEST_F(CannedMessagesTest, EveryRowOfAStreamIsComparedAndNamed) {
    LogCapture log(log::LEVEL_ERROR);
    ScopedMsg msg;
    zorClient_opaqueContainer_pt stream = nullptr;
    ASSERT_EQ(ZORCLIENT_OK, zorClient_msg_createBinaryAttachmentStream(msg, &stream, 0));
    EXPECT_EQ(0, fillContainer(stream, 0, sdkContainer2));
    zorClient_container_closeMapStream(&stream);
    ASSERT_EQ(ZORCLIENT_OK, zorClient_msg_getBinaryAttachmentStream(msg, &stream));
    int next = -1;
    EXPECT_EQ(-1, checkContainer(stream, 0, &next));
    zorClient_container_closeMapStream(&stream);
    EXPECT_EQ(40, next);
    EXPECT_TRUE(log.contains("Int64: expected 43112609, got 431126097777 for field 26"));
    EXPECT_TRUE(
        log.contains("String: expected level1/level2, got level1/level2/modified for field 38"));
    EXPECT_TRUE(log.contains("Char: expected 82, got 87 for field 27"));
    // Rows that agree (the two booleans and the null) log nothing.
    EXPECT_EQ(0u, log.count("Boolean"));
}

}  // namespace
}  // namespace zorvane::pubsub
