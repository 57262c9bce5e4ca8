// Message header fields and parts through the public API: absent is told apart from empty,
// values are checked, pointer setters refer to the caller's memory while copy setters do not,
// reset and duplication, and null or stale handles.
#include <cstring>
#include <string>

#include "MsgTestSupport.h"

namespace {

using namespace zorclient_test;
using Msg = zorClient_opaqueMsg_pt;

class MsgHeaderTest : public NoLeakTest {};

TEST_F(MsgHeaderTest, TextFieldsTellAbsentFromEmpty) {
    const std::string longText(300, 'x');  // beyond what a part keeps inline
    for (const TextField& field : textFields()) {
        ScopedMsg msg;
        const char* text = "stale";
        EXPECT_EQ(ZORCLIENT_NOT_FOUND, field.get(msg, &text)) << field.name;
        EXPECT_EQ(nullptr, text) << field.name;
        ASSERT_EQ(ZORCLIENT_OK, field.set(msg, "")) << field.name;
        ASSERT_EQ(ZORCLIENT_OK, field.get(msg, &text)) << field.name;
        EXPECT_STREQ("", text) << field.name;
        ASSERT_EQ(ZORCLIENT_OK, field.set(msg, longText.c_str())) << field.name;
        ASSERT_EQ(ZORCLIENT_OK, field.get(msg, &text)) << field.name;
        EXPECT_EQ(longText, text) << field.name;
        // Set again from its own value: the copy must survive the replacement.
        ASSERT_EQ(ZORCLIENT_OK, field.set(msg, text + 290)) << field.name;
        ASSERT_EQ(ZORCLIENT_OK, field.get(msg, &text)) << field.name;
        EXPECT_STREQ("xxxxxxxxxx", text) << field.name;
        EXPECT_EQ(ZORCLIENT_FAIL, field.set(msg, nullptr)) << field.name;
        EXPECT_EQ(ZORCLIENT_SUBCODE_PARAM_NULL_PTR, lastError().subCode);
    }
}

TEST_F(MsgHeaderTest, NumbersTellAbsentFromZeroAndRefuseValuesOutOfRange) {
    ScopedMsg msg;
    zorClient_int64_t value = -5;
    EXPECT_EQ(ZORCLIENT_NOT_FOUND, zorClient_msg_getSenderTimestamp(msg, &value));
    EXPECT_EQ(ZORCLIENT_NOT_FOUND, zorClient_msg_getSequenceNumber(msg, &value));
    EXPECT_EQ(ZORCLIENT_NOT_FOUND, zorClient_msg_getTopicSequenceNumber(msg, &value));
    EXPECT_EQ(0, value);
    ASSERT_EQ(ZORCLIENT_OK, zorClient_msg_setSenderTimestamp(msg, 0));
    ASSERT_EQ(ZORCLIENT_OK, zorClient_msg_setSequenceNumber(msg, 0));
    EXPECT_EQ(ZORCLIENT_OK, zorClient_msg_getSenderTimestamp(msg, &value));
    EXPECT_EQ(ZORCLIENT_OK, zorClient_msg_getSequenceNumber(msg, &value));
    ASSERT_EQ(ZORCLIENT_OK, zorClient_msg_deleteSenderTimestamp(msg));
    EXPECT_EQ(ZORCLIENT_NOT_FOUND, zorClient_msg_getSenderTimestamp(msg, &value));

    zorClient_int32_t priority = 0;
    zorClient_uint32_t mode = 9, cos = 9;
    ASSERT_EQ(ZORCLIENT_OK, zorClient_msg_getPriority(msg, &priority));
    EXPECT_EQ(ZORCLIENT_PRIORITY_NONE, priority);
    ASSERT_EQ(ZORCLIENT_OK, zorClient_msg_getDeliveryMode(msg, &mode));
    EXPECT_EQ(ZORCLIENT_RX_DELIVERY_MODE_DIRECT, mode);
    // Delivery modes are set as 0x10/0x20 and read as 1/2.
    ASSERT_EQ(ZORCLIENT_OK, zorClient_msg_setDeliveryMode(msg, ZORCLIENT_DELIVERY_MODE_PERSISTENT));
    ASSERT_EQ(ZORCLIENT_OK, zorClient_msg_getDeliveryMode(msg, &mode));
    EXPECT_EQ(ZORCLIENT_RX_DELIVERY_MODE_PERSISTENT, mode);
    ASSERT_EQ(ZORCLIENT_OK,
              zorClient_msg_setDeliveryMode(msg, ZORCLIENT_DELIVERY_MODE_NONPERSISTENT));
    ASSERT_EQ(ZORCLIENT_OK, zorClient_msg_getDeliveryMode(msg, &mode));
    EXPECT_EQ(ZORCLIENT_RX_DELIVERY_MODE_NON_PERSISTENT, mode);

    const auto expectRefused = [](zorClient_returnCode_t rc, zorClient_subCode_t subCode,
                                  const char* what_p) {
        EXPECT_EQ(ZORCLIENT_FAIL, rc) << what_p;
        EXPECT_EQ(subCode, lastError().subCode) << what_p;
    };
    const auto OUT_OF_RANGE = ZORCLIENT_SUBCODE_PARAM_OUT_OF_RANGE;
    const zorClient_destination_t noType = {ZORCLIENT_NULL_DESTINATION, "t"};
    const zorClient_destination_t noName = {ZORCLIENT_TOPIC_DESTINATION, ""};
    const char userData[37] = {};
    expectRefused(zorClient_msg_setDeliveryMode(msg, 1), OUT_OF_RANGE, "delivery mode 1");
    expectRefused(zorClient_msg_setClassOfService(msg, 3), OUT_OF_RANGE, "class of service 3");
    expectRefused(zorClient_msg_setPriority(msg, 256), OUT_OF_RANGE, "priority 256");
    expectRefused(zorClient_msg_setTimeToLive(msg, -1), OUT_OF_RANGE, "negative ttl");
    expectRefused(zorClient_msg_setUserData(msg, userData, 37),
                  ZORCLIENT_SUBCODE_USER_DATA_TOO_LARGE, "37 bytes of user data");
    expectRefused(zorClient_msg_setDestination(msg, &noType, sizeof noType), OUT_OF_RANGE,
                  "null destination type");
    expectRefused(zorClient_msg_setReplyTo(msg, &noName, sizeof noName), OUT_OF_RANGE,
                  "empty destination");
    expectRefused(zorClient_msg_setDestination(msg, &noName, 4),
                  ZORCLIENT_SUBCODE_INSUFFICIENT_SPACE, "small destination struct");
    expectRefused(zorClient_msg_setBinaryAttachment(msg, nullptr, 3),
                  ZORCLIENT_SUBCODE_PARAM_NULL_PTR, "null attachment bytes");
    // The refusals changed nothing.
    ASSERT_EQ(ZORCLIENT_OK, zorClient_msg_getDeliveryMode(msg, &mode));
    EXPECT_EQ(ZORCLIENT_RX_DELIVERY_MODE_NON_PERSISTENT, mode);
    ASSERT_EQ(ZORCLIENT_OK, zorClient_msg_getClassOfService(msg, &cos));
    EXPECT_EQ(ZORCLIENT_COS_1, cos);
    void* data = nullptr;
    zorClient_uint32_t size = 0;
    EXPECT_EQ(ZORCLIENT_NOT_FOUND, zorClient_msg_getUserDataPtr(msg, &data, &size));
}

TEST_F(MsgHeaderTest, PointerSettersReferToTheCallersMemoryCopySettersDoNot) {
    ScopedMsg msg;
    char topic[] = "a/b";
    char payload[] = "payload";
    ASSERT_EQ(ZORCLIENT_OK, zorClient_msg_setTopicPtr(msg, topic));
    ASSERT_EQ(ZORCLIENT_OK, zorClient_msg_setBinaryAttachmentPtr(msg, payload, 7));
    ASSERT_EQ(ZORCLIENT_OK, zorClient_msg_setXml(msg, payload, 7));
    topic[0] = 'z';
    payload[0] = 'P';
    zorClient_destination_t dest{};
    void* data = nullptr;
    zorClient_uint32_t size = 0;
    ASSERT_EQ(ZORCLIENT_OK, zorClient_msg_getDestination(msg, &dest, sizeof dest));
    EXPECT_EQ(ZORCLIENT_TOPIC_DESTINATION, dest.destType);
    EXPECT_STREQ("z/b", dest.dest);
    ASSERT_EQ(ZORCLIENT_OK, zorClient_msg_getBinaryAttachmentPtr(msg, &data, &size));
    EXPECT_EQ(static_cast<void*>(payload), data);
    ASSERT_EQ(ZORCLIENT_OK, zorClient_msg_getXmlPtr(msg, &data, &size));
    EXPECT_EQ(0, std::memcmp("payload", data, 7));

    const zorClient_destination_t queue = {ZORCLIENT_QUEUE_DESTINATION, topic};
    ASSERT_EQ(ZORCLIENT_OK, zorClient_msg_setDestination(msg, &queue, sizeof queue));
    topic[0] = 'q';
    ASSERT_EQ(ZORCLIENT_OK, zorClient_msg_getDestination(msg, &dest, sizeof dest));
    EXPECT_EQ(ZORCLIENT_QUEUE_DESTINATION, dest.destType);
    EXPECT_STREQ("z/b", dest.dest);
    ASSERT_EQ(ZORCLIENT_OK, zorClient_msg_deleteReplyTo(msg));
    EXPECT_EQ(ZORCLIENT_NOT_FOUND, zorClient_msg_getReplyTo(msg, &dest, sizeof dest));
    EXPECT_EQ(ZORCLIENT_NULL_DESTINATION, dest.destType);
}

TEST_F(MsgHeaderTest, ResetMakesAMessageFreshAgain) {
    ScopedMsg msg;
    const std::string attachment(5000, 'a');
    fillEverything(msg, attachment.c_str());
    ASSERT_EQ(ZORCLIENT_OK, zorClient_msg_setDeliveryMode(msg, ZORCLIENT_DELIVERY_MODE_PERSISTENT));
    ASSERT_EQ(ZORCLIENT_OK, zorClient_msg_setAsReplyMsg(msg, 1));
    ASSERT_EQ(ZORCLIENT_OK, zorClient_msg_setBinaryAttachment(msg, attachment.data(), 5000));
    ASSERT_EQ(ZORCLIENT_OK, zorClient_msg_reset(msg));
    for (const TextField& field : textFields()) {
        const char* text = nullptr;
        EXPECT_EQ(ZORCLIENT_NOT_FOUND, field.get(msg, &text)) << field.name;
    }
    zorClient_destination_t dest{};
    void* data = nullptr;
    zorClient_uint32_t size = 0, mode = 9;
    zorClient_int32_t priority = 0;
    zorClient_int64_t topicSequence = 0;
    zorClient_opaqueContainer_pt map = nullptr;
    void* tag = nullptr;
    EXPECT_EQ(ZORCLIENT_NOT_FOUND, zorClient_msg_getDestination(msg, &dest, sizeof dest));
    EXPECT_EQ(ZORCLIENT_NOT_FOUND, zorClient_msg_getReplyTo(msg, &dest, sizeof dest));
    EXPECT_EQ(ZORCLIENT_NOT_FOUND, zorClient_msg_getBinaryAttachmentPtr(msg, &data, &size));
    EXPECT_EQ(ZORCLIENT_NOT_FOUND, zorClient_msg_getXmlPtr(msg, &data, &size));
    EXPECT_EQ(ZORCLIENT_NOT_FOUND, zorClient_msg_getUserDataPtr(msg, &data, &size));
    EXPECT_EQ(ZORCLIENT_NOT_FOUND, zorClient_msg_getUserPropertyMap(msg, &map));
    EXPECT_EQ(ZORCLIENT_NOT_FOUND, zorClient_msg_getCorrelationTagPtr(msg, &tag, &size));
    EXPECT_EQ(ZORCLIENT_NOT_FOUND, zorClient_msg_getTopicSequenceNumber(msg, &topicSequence));
    ASSERT_EQ(ZORCLIENT_OK, zorClient_msg_getDeliveryMode(msg, &mode));
    EXPECT_EQ(ZORCLIENT_RX_DELIVERY_MODE_DIRECT, mode);
    ASSERT_EQ(ZORCLIENT_OK, zorClient_msg_getPriority(msg, &priority));
    EXPECT_EQ(ZORCLIENT_PRIORITY_NONE, priority);
    EXPECT_EQ(0, zorClient_msg_isDMQEligible(msg));
    EXPECT_EQ(0, zorClient_msg_isReplyMsg(msg));
    EXPECT_EQ(0, zorClient_msg_isAckImmediately(msg));
    // Its blocks and containers went back to the pools; only the message is left.
    EXPECT_EQ(1u, allocated());
}

TEST_F(MsgHeaderTest, DuplicatesAreIndependentOfTheOriginalAndTheCallersBuffers) {
    char attachment[] = "binary attachment";
    ScopedMsg original;
    fillEverything(original, attachment);
    const zorClient_uint64_t dupsBefore = stat(ZORCLIENT_MSG_STATS_MSG_DUPS);
    Msg copy = nullptr;
    ASSERT_EQ(ZORCLIENT_OK, zorClient_msg_dup(original, &copy));
    EXPECT_EQ(dupsBefore + 1, stat(ZORCLIENT_MSG_STATS_MSG_DUPS));
    attachment[0] = 'B';
    ASSERT_EQ(ZORCLIENT_OK, zorClient_msg_reset(original));
    expectEverything(copy, "binary attachment", false);
    zorClient_uint32_t size = 0;
    void* tag = nullptr;
    ASSERT_EQ(ZORCLIENT_OK, zorClient_msg_getCorrelationTagPtr(copy, &tag, &size));
    EXPECT_EQ(reinterpret_cast<void*>(42), tag);
    EXPECT_EQ(ZORCLIENT_OK, zorClient_msg_free(&copy));
    EXPECT_EQ(nullptr, copy);
}

TEST_F(MsgHeaderTest, ReceiveOnlyFieldsReadAsNoneOnABuiltMessage) {
    ScopedMsg msg;
    zorClient_msgId_t id = 0;
    zorClient_int32_t count = 0;
    zorClient_uint64_t requestId = 0;
    zorClient_uint32_t ids = 9;
    zorClient_consumerId_t cid = 0;
    zorClient_replicationGroupMessageId_t rgmid;
    EXPECT_EQ(ZORCLIENT_NOT_FOUND, zorClient_msg_getMsgId(msg, &id));
    EXPECT_EQ(ZORCLIENT_NOT_FOUND, zorClient_msg_getDeliveryCount(msg, &count));
    EXPECT_EQ(ZORCLIENT_NOT_FOUND, zorClient_msg_getCacheRequestId(msg, &requestId));
    EXPECT_EQ(ZORCLIENT_NOT_FOUND,
              zorClient_msg_getReplicationGroupMessageId(msg, &rgmid, sizeof rgmid));
    EXPECT_EQ(ZORCLIENT_CACHE_LIVE_MESSAGE, zorClient_msg_isCacheMsg(msg));
    EXPECT_EQ(0, zorClient_msg_isRedelivered(msg));
    EXPECT_EQ(0, zorClient_msg_isDiscardIndication(msg));
    ASSERT_EQ(ZORCLIENT_OK, zorClient_msg_getConsumerIdCount(msg, &ids));
    EXPECT_EQ(0u, ids);
    EXPECT_EQ(ZORCLIENT_NOT_FOUND, zorClient_msg_getConsumerId(msg, 0, &cid));
    EXPECT_EQ(ZORCLIENT_CONSUMER_ID_NONE, cid);
    zorClient_uint64_t expiration = 7;
    ASSERT_EQ(ZORCLIENT_OK, zorClient_msg_setTimeToLive(msg, 0));
    ASSERT_EQ(ZORCLIENT_OK, zorClient_msg_getExpiration(msg, &expiration));
    EXPECT_EQ(0u, expiration);
}

TEST_F(MsgHeaderTest, NullAndStaleHandlesFailWithoutHarm) {
    Msg msg = nullptr;
    ASSERT_EQ(ZORCLIENT_OK, zorClient_msg_alloc(&msg));
    Msg stale = msg;
    ASSERT_EQ(ZORCLIENT_OK, zorClient_msg_free(&msg));
    // The slot is reused at once; the old handle must not reach the new message.
    ScopedMsg reused;
    for (Msg bad : {Msg{nullptr}, stale}) {
        const zorClient_subCode_t expected =
            bad == nullptr ? ZORCLIENT_SUBCODE_PARAM_NULL_PTR : ZORCLIENT_SUBCODE_INVALID_HANDLE;
        zorClient_destination_t dest{};
        const char* text = nullptr;
        zorClient_consumerId_t cid = 0;
        EXPECT_EQ(ZORCLIENT_FAIL, zorClient_msg_setTopicPtr(bad, "t"));
        EXPECT_EQ(expected, lastError().subCode);
        EXPECT_EQ(ZORCLIENT_FAIL, zorClient_msg_getDestination(bad, &dest, sizeof dest));
        EXPECT_EQ(ZORCLIENT_FAIL, zorClient_msg_getCorrelationId(bad, &text));
        EXPECT_EQ(ZORCLIENT_FAIL, zorClient_msg_reset(bad));
        EXPECT_EQ(ZORCLIENT_FAIL, zorClient_msg_free(&bad));
        EXPECT_EQ(expected, lastError().subCode);
        EXPECT_EQ(0, zorClient_msg_isRedelivered(bad));
        EXPECT_EQ(ZORCLIENT_CACHE_INVALID_MESSAGE, zorClient_msg_isCacheMsg(bad));
        EXPECT_NE(ZORCLIENT_OK, zorClient_msg_getConsumerId(bad, 0, &cid));
        EXPECT_EQ(ZORCLIENT_CONSUMER_ID_NONE, cid);
    }
    const char* text = nullptr;
    EXPECT_EQ(ZORCLIENT_NOT_FOUND, zorClient_msg_getCorrelationId(reused, &text));
    EXPECT_EQ(ZORCLIENT_FAIL, zorClient_msg_alloc(nullptr));
    EXPECT_EQ(ZORCLIENT_FAIL, zorClient_msg_free(nullptr));
    EXPECT_EQ(ZORCLIENT_FAIL, zorClient_msg_dup(reused, nullptr));
}

}  // namespace
