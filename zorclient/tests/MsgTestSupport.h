// Helpers shared by the message and container tests: statistics reads, a fixture that fails a
// test which leaves a message, container or data block allocated, and a message with every
// field set, for the tests of what a copy carries.
#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>
#include <functional>
#include <string>
#include <vector>

#include "zorClient.h"
#include "zorClientMsg.h"

namespace zorclient_test {

inline const zorClient_errorInfo& lastError() {
    return *zorClient_getLastErrorInfo();
}

inline zorClient_uint64_t stat(zorClient_msg_stats_t which, zorClient_uint32_t pool = 0) {
    zorClient_uint64_t value = 0;
    EXPECT_EQ(ZORCLIENT_OK, zorClient_msg_getStat(which, pool, &value));
    return value;
}

// Everything the application holds: messages, containers and data blocks of every pool.
inline zorClient_uint64_t allocated() {
    zorClient_uint64_t sum = stat(ZORCLIENT_MSG_STATS_ALLOC_MSGS) +
                             stat(ZORCLIENT_MSG_STATS_ALLOC_CONTAINERS) +
                             stat(ZORCLIENT_MSG_STATS_ALLOC_MEMORY);
    for (zorClient_uint32_t pool = 0; pool < ZORCLIENT_MSG_NUM_DATA_BLOCK_POOLS; ++pool) {
        sum += stat(ZORCLIENT_MSG_STATS_ALLOC_DATA_BLOCKS, pool);
    }
    return sum;
}

// Each test must give back all it took.
class NoLeakTest : public ::testing::Test {
  protected:
    void TearDown() override { EXPECT_EQ(0u, allocated()) << "a test leaked pool objects"; }
};

// The message's attachment, or "(none)" when it has none.
inline std::string attachmentOf(zorClient_opaqueMsg_pt msg) {
    void* data_p = nullptr;
    zorClient_uint32_t size = 0;
    if (zorClient_msg_getBinaryAttachmentPtr(msg, &data_p, &size) != ZORCLIENT_OK) {
        return "(none)";
    }
    return std::string(static_cast<const char*>(data_p), size);
}

// A message freed at the end of the scope.
class ScopedMsg {
  public:
    ScopedMsg() { EXPECT_EQ(ZORCLIENT_OK, zorClient_msg_alloc(&msg_m)); }
    ~ScopedMsg() {
        if (msg_m != nullptr) {
            zorClient_msg_free(&msg_m);
        }
    }
    ScopedMsg(const ScopedMsg&) = delete;
    ScopedMsg& operator=(const ScopedMsg&) = delete;
    operator zorClient_opaqueMsg_pt() const { return msg_m; }
    zorClient_opaqueMsg_pt* address() { return &msg_m; }

  private:
    zorClient_opaqueMsg_pt msg_m = nullptr;
};

// The text header fields, with their setter and getter and the value fillEverything gives them:
// its own name, or for the correlation id the empty text, which is not absent.
struct TextField {
    const char* name;
    const char* value;
    std::function<zorClient_returnCode_t(zorClient_opaqueMsg_pt, const char*)> set;
    std::function<zorClient_returnCode_t(zorClient_opaqueMsg_pt, const char**)> get;
};

inline const std::vector<TextField>& textFields() {
    static const std::vector<TextField> fields = {
        {"correlation id", "", zorClient_msg_setCorrelationId, zorClient_msg_getCorrelationId},
        {"application message id", "application message id", zorClient_msg_setApplicationMessageId,
         zorClient_msg_getApplicationMessageId},
        {"application message type", "application message type",
         zorClient_msg_setApplicationMsgType, zorClient_msg_getApplicationMsgType},
        {"sender id", "sender id", zorClient_msg_setSenderId, zorClient_msg_getSenderId},
        {"HTTP content type", "HTTP content type", zorClient_msg_setHttpContentType,
         zorClient_msg_getHttpContentType},
        {"HTTP content encoding", "HTTP content encoding", zorClient_msg_setHttpContentEncoding,
         zorClient_msg_getHttpContentEncoding},
    };
    return fields;
}

// Sets every header field and part that a duplicate, a broker copy and a send carry: the
// attachment by pointer, the rest by copy. The correlation tag too, which only a duplicate keeps.
inline void fillEverything(zorClient_opaqueMsg_pt msg, const char* attachment_p) {
    const zorClient_destination_t reply = {ZORCLIENT_TOPIC_TEMP_DESTINATION, "#inbox/1"};
    zorClient_opaqueContainer_pt map = nullptr;
    ASSERT_EQ(ZORCLIENT_OK, zorClient_msg_setTopicPtr(msg, "t/1"));
    ASSERT_EQ(ZORCLIENT_OK, zorClient_msg_setReplyTo(msg, &reply, sizeof reply));
    ASSERT_EQ(ZORCLIENT_OK, zorClient_msg_setClassOfService(msg, ZORCLIENT_COS_3));
    ASSERT_EQ(ZORCLIENT_OK, zorClient_msg_setPriority(msg, 9));
    ASSERT_EQ(ZORCLIENT_OK, zorClient_msg_setTimeToLive(msg, 60000));
    ASSERT_EQ(ZORCLIENT_OK, zorClient_msg_setDMQEligible(msg, 1));
    ASSERT_EQ(ZORCLIENT_OK, zorClient_msg_setAckImmediately(msg, 1));
    ASSERT_EQ(ZORCLIENT_OK,
              zorClient_msg_setCorrelationTagPtr(msg, reinterpret_cast<void*>(42), 0));
    for (const TextField& field : textFields()) {
        ASSERT_EQ(ZORCLIENT_OK, field.set(msg, field.value));
    }
    ASSERT_EQ(ZORCLIENT_OK, zorClient_msg_setSenderTimestamp(msg, 376099200000));
    ASSERT_EQ(ZORCLIENT_OK, zorClient_msg_setSequenceNumber(msg, 7777777));
    ASSERT_EQ(ZORCLIENT_OK, _zorClient_msg_setTopicSequenceNumber(msg, 12));
    ASSERT_EQ(ZORCLIENT_OK, zorClient_msg_setUserData(msg, "user", 4));
    ASSERT_EQ(ZORCLIENT_OK, zorClient_msg_setXml(msg, "<test></test>", 13));
    ASSERT_EQ(ZORCLIENT_OK,
              zorClient_msg_setBinaryAttachmentPtr(
                  msg, attachment_p, static_cast<zorClient_uint32_t>(std::strlen(attachment_p))));
    ASSERT_EQ(ZORCLIENT_OK, zorClient_msg_createUserPropertyMap(msg, &map, 0));
    ASSERT_EQ(ZORCLIENT_OK, zorClient_container_addUint8(map, 255, "propfield"));
    ASSERT_EQ(ZORCLIENT_OK, zorClient_container_addString(map, "key", "JMSXGroupID"));
}

// Checks that msg carries what fillEverything set, with attachment as its attachment. A message
// received from the broker reads its temporary reply-to as the plain family.
inline void expectEverything(zorClient_opaqueMsg_pt msg, const std::string& attachment,
                             bool received) {
    void* data_p = nullptr;
    zorClient_uint32_t size = 0;
    const auto bytes = [&] { return std::string(static_cast<char*>(data_p), size); };
    EXPECT_EQ(attachment, attachmentOf(msg));
    ASSERT_EQ(ZORCLIENT_OK, zorClient_msg_getXmlPtr(msg, &data_p, &size));
    EXPECT_EQ("<test></test>", bytes());
    ASSERT_EQ(ZORCLIENT_OK, zorClient_msg_getUserDataPtr(msg, &data_p, &size));
    EXPECT_EQ("user", bytes());
    zorClient_destination_t replyTo{};
    ASSERT_EQ(ZORCLIENT_OK, zorClient_msg_getReplyTo(msg, &replyTo, sizeof replyTo));
    EXPECT_EQ(received ? ZORCLIENT_TOPIC_DESTINATION : ZORCLIENT_TOPIC_TEMP_DESTINATION,
              replyTo.destType);
    EXPECT_STREQ("#inbox/1", replyTo.dest);
    for (const TextField& field : textFields()) {
        const char* text_p = nullptr;
        ASSERT_EQ(ZORCLIENT_OK, field.get(msg, &text_p)) << field.name;
        EXPECT_STREQ(field.value, text_p) << field.name;
    }
    zorClient_uint32_t cos = 0;
    zorClient_int32_t priority = 0;
    zorClient_int64_t stamp = 0, sequence = 0, topicSequence = 0;
    EXPECT_EQ(ZORCLIENT_OK, zorClient_msg_getClassOfService(msg, &cos) |
                                zorClient_msg_getPriority(msg, &priority) |
                                zorClient_msg_getSenderTimestamp(msg, &stamp) |
                                zorClient_msg_getSequenceNumber(msg, &sequence) |
                                zorClient_msg_getTopicSequenceNumber(msg, &topicSequence));
    EXPECT_EQ((std::vector<std::int64_t>{ZORCLIENT_COS_3, 9, 376099200000, 7777777, 12}),
              (std::vector<std::int64_t>{cos, priority, stamp, sequence, topicSequence}));
    EXPECT_EQ(1, zorClient_msg_isDMQEligible(msg));
    EXPECT_EQ(1, zorClient_msg_isAckImmediately(msg));
    zorClient_opaqueContainer_pt map = nullptr;
    zorClient_uint8_t u8 = 0;
    ASSERT_EQ(ZORCLIENT_OK, zorClient_msg_getUserPropertyMap(msg, &map));
    EXPECT_EQ(ZORCLIENT_OK, zorClient_container_getUint8(map, &u8, "propfield"));
    EXPECT_EQ(255, u8);
}

}  // namespace zorclient_test
