// zorClient_msg_dump: the text shows the message's headers and parts, and a text that does not
// fit fills the buffer and still succeeds (readers tell truncation by the length).
#include <cstdint>
#include <cstring>
#include <string>
#include <vector>

#include "MsgTestSupport.h"

namespace {

using namespace zorclient_test;

std::string dumpOf(zorClient_opaqueMsg_pt msg, size_t size = 100000) {
    std::vector<char> buffer(size, '#');
    EXPECT_EQ(ZORCLIENT_OK, zorClient_msg_dump(msg, buffer.data(), size));
    return buffer.data();
}

class MsgDumpTest : public NoLeakTest {};

TEST_F(MsgDumpTest, ShowsHeadersPayloadsAndStructuredFields) {
    ScopedMsg msg;
    zorClient_opaqueContainer_pt map = nullptr, sub = nullptr;
    ASSERT_EQ(ZORCLIENT_OK, zorClient_msg_setTopicPtr(msg, "orders/eu"));
    ASSERT_EQ(ZORCLIENT_OK, zorClient_msg_setDeliveryMode(msg, ZORCLIENT_DELIVERY_MODE_PERSISTENT));
    ASSERT_EQ(ZORCLIENT_OK, zorClient_msg_setCorrelationId(msg, ""));
    ASSERT_EQ(ZORCLIENT_OK, zorClient_msg_setPriority(msg, 4));
    ASSERT_EQ(ZORCLIENT_OK, zorClient_msg_setXml(msg, "<test>\x01</test>", 14));
    ASSERT_EQ(ZORCLIENT_OK, zorClient_msg_createBinaryAttachmentMap(msg, &map, 0));
    // Integers of every width show their whole range.
    ASSERT_EQ(ZORCLIENT_OK, zorClient_container_addInt8(map, INT8_MIN, "i8"));
    ASSERT_EQ(ZORCLIENT_OK, zorClient_container_addInt16(map, INT16_MIN, "i16"));
    ASSERT_EQ(ZORCLIENT_OK, zorClient_container_addInt32(map, INT32_MIN, "i32"));
    ASSERT_EQ(ZORCLIENT_OK, zorClient_container_addInt64(map, INT64_MIN, "i64"));
    ASSERT_EQ(ZORCLIENT_OK, zorClient_container_addInt8(map, INT8_MAX, "p8"));
    ASSERT_EQ(ZORCLIENT_OK, zorClient_container_addInt64(map, INT64_MAX, "p64"));
    ASSERT_EQ(ZORCLIENT_OK, zorClient_container_addUint8(map, UINT8_MAX, "u8"));
    ASSERT_EQ(ZORCLIENT_OK, zorClient_container_addUint16(map, UINT16_MAX, "u16"));
    ASSERT_EQ(ZORCLIENT_OK, zorClient_container_addUint32(map, UINT32_MAX, "u32"));
    ASSERT_EQ(ZORCLIENT_OK, zorClient_container_addUint64(map, UINT64_MAX, "u64"));
    ASSERT_EQ(ZORCLIENT_OK, zorClient_container_openSubStream(map, &sub, "list"));
    ASSERT_EQ(ZORCLIENT_OK, zorClient_container_addString(sub, "STREAM_MESSAGE", nullptr));
    const std::string text = dumpOf(msg);
    for (const char* expected :
         {"Destination:", "Topic 'orders/eu'", "PERSISTENT", "Correlation Id:", "''",
          "Priority:", "XML:", "len=14", "00000000: 3c 74 65 73 74 3e 01", "<test>.</test>",
          "Binary Attachment Map:", "'list' STREAM", "    STRING      'STREAM_MESSAGE'"}) {
        EXPECT_NE(std::string::npos, text.find(expected)) << expected << " in\n" << text;
    }
    for (const char* expected :
         {"'i8' INT8        -128\n", "'i16' INT16       -32768\n",
          "'i32' INT32       -2147483648\n", "'i64' INT64       -9223372036854775808\n",
          "'p8' INT8        127\n", "'p64' INT64       9223372036854775807\n",
          "'u8' UINT8       255\n", "'u16' UINT16      65535\n", "'u32' UINT32      4294967295\n",
          "'u64' UINT64      18446744073709551615\n"}) {
        EXPECT_NE(std::string::npos, text.find(expected)) << expected << " in\n" << text;
    }
    // Absent fields leave no line.
    EXPECT_EQ(std::string::npos, text.find("Reply To:")) << text;
    EXPECT_EQ(std::string::npos, text.find("Sender Id:")) << text;
}

TEST_F(MsgDumpTest, TextThatDoesNotFitFillsTheBufferAndSucceeds) {
    ScopedMsg msg;
    const std::string payload(1000000, 'p');
    ASSERT_EQ(ZORCLIENT_OK, zorClient_msg_setBinaryAttachmentPtr(msg, payload.data(), 1000000));
    const std::string full = dumpOf(msg, 5000000);
    ASSERT_GT(full.size(), 4000000u);  // one 70-character line per 16 bytes
    for (size_t size : {1u, 2u, 50u, 1000000u}) {
        const std::string cut = dumpOf(msg, size);
        EXPECT_EQ(size - 1, cut.size());
        EXPECT_EQ(full.substr(0, size - 1), cut);
    }
    char buffer[8];
    EXPECT_EQ(ZORCLIENT_FAIL, zorClient_msg_dump(msg, buffer, 0));
    EXPECT_EQ(ZORCLIENT_SUBCODE_INSUFFICIENT_SPACE, lastError().subCode);
    EXPECT_EQ(ZORCLIENT_FAIL, zorClient_msg_dump(msg, nullptr, 8));
    // Callers print the buffer after a failure too: it holds an empty text.
    std::strcpy(buffer, "stale");
    EXPECT_EQ(ZORCLIENT_FAIL, zorClient_msg_dump(nullptr, buffer, sizeof buffer));
    EXPECT_STREQ("", buffer);
}

TEST(ReplicationGroupMessageId, TextRoundTripsAndIdsCompareWithinOneSpool) {
    using Id = zorClient_replicationGroupMessageId_t;
    Id a{}, b{}, c{}, zero{};
    ASSERT_EQ(ZORCLIENT_OK, zorClient_replicationGroupMessageId_fromString(
                                &a, sizeof a, "rg1:00000000000000ab:0000000000000010"));
    ASSERT_EQ(ZORCLIENT_OK, zorClient_replicationGroupMessageId_fromString(
                                &b, sizeof b, "RG1:00000000000000AB:0000000000000002"));
    ASSERT_EQ(ZORCLIENT_OK, zorClient_replicationGroupMessageId_fromString(
                                &c, sizeof c, "rg1:00000000000000ac:0000000000000010"));
    char text[ZORCLIENT_REPLICATION_GROUP_MESSAGE_ID_STRING_LENGTH];
    ASSERT_EQ(ZORCLIENT_OK,
              zorClient_replicationGroupMessageId_toString(&b, sizeof b, text, sizeof text));
    EXPECT_STREQ("rg1:00000000000000ab:0000000000000002", text);
    Id back{};
    ASSERT_EQ(ZORCLIENT_OK,
              zorClient_replicationGroupMessageId_fromString(&back, sizeof back, text));
    EXPECT_EQ(0, std::memcmp(&b, &back, sizeof b));
    int order = 0;
    ASSERT_EQ(ZORCLIENT_OK, zorClient_replicationGroupMessageId_compare(&a, &b, &order));
    EXPECT_GT(order, 0);
    ASSERT_EQ(ZORCLIENT_OK, zorClient_replicationGroupMessageId_compare(&b, &a, &order));
    EXPECT_LT(order, 0);
    ASSERT_EQ(ZORCLIENT_OK, zorClient_replicationGroupMessageId_compare(&a, &a, &order));
    EXPECT_EQ(0, order);
    EXPECT_EQ(ZORCLIENT_FAIL, zorClient_replicationGroupMessageId_compare(&a, &c, &order));
    EXPECT_EQ(ZORCLIENT_SUBCODE_MESSAGE_ID_NOT_COMPARABLE, lastError().subCode);
    EXPECT_EQ(ZORCLIENT_FAIL, zorClient_replicationGroupMessageId_compare(&a, &zero, &order));
    for (const char* bad :
         {"", "rg1:00000000000000ab:000000000000001", "rg1:00000000000000ab-0000000000000010",
          "rg1:00000000000000ag:0000000000000010", "rg1:00000000000000ab:00000000000000100"}) {
        EXPECT_EQ(ZORCLIENT_FAIL,
                  zorClient_replicationGroupMessageId_fromString(&back, sizeof back, bad))
            << bad;
        EXPECT_EQ(ZORCLIENT_SUBCODE_PARAM_OUT_OF_RANGE, lastError().subCode);
    }
    EXPECT_EQ(ZORCLIENT_FAIL, zorClient_replicationGroupMessageId_toString(&a, sizeof a, text, 37));
    EXPECT_EQ(ZORCLIENT_SUBCODE_INSUFFICIENT_SPACE, lastError().subCode);
}

}  // namespace
