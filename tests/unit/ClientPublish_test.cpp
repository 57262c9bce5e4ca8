// The send path as far as the library message it builds: each test
// publishes once and reads the reused library message back. While the
// library cannot send yet, the send itself fails with its reason, which is
// what the client must then throw.
#include <gtest/gtest.h>

#include <cstring>
#include <memory>
#include <string>
#include <vector>

#include "client/zcore/Message.h"
#include "common/MessagePriorityGenerator.h"
#include "common/MsgProperties.h"
#include "common/PubSubException.h"
#include "tests/unit/ClientProbe.h"
#include "tests/unit/ZcoreTestSupport.h"
#include "zorClientMsg.h"

namespace zorvane::pubsub {
namespace {

bool sendIsMissing() {
    return zorClient_session_sendMsg(nullptr, nullptr) == ZORCLIENT_FAIL &&
           zorClient_getLastErrorInfo()->subCode == ZORCLIENT_SUBCODE_NOT_SUPPORTED;
}

class ClientPublishTest : public LibraryFixture {
  protected:
    void destroyClients() override { client_m.reset(); }

    ClientProbe& make(const ClientProperties& props, const PublishProperties& pub,
                      const StatsCustomizationProperties& tx = {}) {
        client_m = std::make_unique<ClientProbe>(1, 1000000, props, context_mp.get(),
                                                 StatsCustomizationProperties(), nullptr, 1);
        client_m->setPublishStatsProps(tx);
        client_m->setPublishProps(pub, 0, "");
        client_m->connect();
        return *client_m;
    }

    // Publishes msg; with a library that cannot send yet the client must
    // throw the library's reason. Returns the library message it built.
    zorClient_opaqueMsg_pt publish(MsgProperties& msg) {
        if (sendIsMissing()) {
            try {
                client_m->publishMsg(&msg, 0);
                ADD_FAILURE() << "the failed send was not reported";
            } catch (const PubSubException& e) {
                EXPECT_EQ(std::string(e.what()).rfind(
                              "CLIENT 000001: Error details - RC: ZORCLIENT_FAIL, Sub Code: "
                              "ZORCLIENT_SUBCODE_NOT_SUPPORTED",
                              0),
                          0U)
                    << e.what();
            }
        } else {
            client_m->publishMsg(&msg, 0);
        }
        return client_m->getPublishMsg(0);
    }

    std::unique_ptr<ClientProbe> client_m;
};

std::string destinationOf(zorClient_opaqueMsg_pt msg, zorClient_destinationType_t* type_p) {
    zorClient_destination_t destination{};
    if (zorClient_msg_getDestination(msg, &destination, sizeof destination) != ZORCLIENT_OK) {
        return "<none>";
    }
    *type_p = destination.destType;
    return destination.dest;
}

std::string attachmentOf(zorClient_opaqueMsg_pt msg) {
    void* data_p = nullptr;
    zorClient_uint32_t size = 0;
    if (zorClient_msg_getBinaryAttachmentPtr(msg, &data_p, &size) != ZORCLIENT_OK) {
        return "<none>";
    }
    return std::string(static_cast<const char*>(data_p), size);
}

TEST_F(ClientPublishTest, ADirectMessageCarriesItsPartsAndAToolDataRecordStampedAtSend) {
    PublishProperties pub;
    pub.setStreamIdOffset(10);
    StatsCustomizationProperties tx;
    tx.setWantLatency(true);
    tx.setWantOrderCheckPublisherStreamNumber(true);
    ClientProbe& client = make(defaultClientProps(), pub, tx);

    MsgProperties msg;
    msg.setTopic("t/direct");
    msg.setMsgBody("<b/>");
    msg.setAttachment(std::string(40, 'a'));
    msg.setUserdata("ud");
    client.updateToolData(&msg, 42, 0);
    const UINT64 before = OS::numClockCycles();
    zorClient_opaqueMsg_pt built = publish(msg);

    zorClient_destinationType_t type = ZORCLIENT_NULL_DESTINATION;
    EXPECT_EQ(destinationOf(built, &type), "t/direct");
    EXPECT_EQ(type, ZORCLIENT_TOPIC_DESTINATION);
    zorClient_uint32_t mode = 9;
    zorClient_msg_getDeliveryMode(built, &mode);
    EXPECT_EQ(mode, ZORCLIENT_RX_DELIVERY_MODE_DIRECT);
    Message view("000001", built);
    EXPECT_EQ(view.getUserData(), "ud");
    EXPECT_EQ(std::string(view.getPayloadBegin(), view.getPayloadEnd()), "<b/>");

    const std::string attachment = attachmentOf(built);
    ASSERT_EQ(attachment.size(), 40U);  // the record lies over the start
    view.decodeToolData(TOOL_DATA_TYPE_BIN_ATTACH);
    const ToolData& sent = *view.getToolData();
    EXPECT_EQ(sent.getMsgId(), 42U);
    EXPECT_EQ(sent.getStreamId(), 11);  // offset + client id
    EXPECT_GE(sent.getLatency(), before);
    EXPECT_EQ(sent.getLatency(), msg.getToolData()->getLatency());
    EXPECT_EQ(attachment.substr(sent.getDecodedSize()),
              std::string(40 - sent.getDecodedSize(), 'a'));
    void* tag_p = nullptr;
    zorClient_uint32_t tagSize = 0;
    EXPECT_EQ(zorClient_msg_getCorrelationTagPtr(built, &tag_p, &tagSize), ZORCLIENT_NOT_FOUND);
}

TEST_F(ClientPublishTest, AGuaranteedMessageCarriesTheRunsFieldsAndItsIdAsCorrelationTag) {
    PublishProperties pub;
    pub.setMsgType(PUBSUB_MSG_TYPE_PERSISTENT);
    pub.setCos(PUBSUB_COS_3);
    pub.setDMQEligible(true);
    pub.setTTL(0);
    pub.setEliding(true);
    pub.setPubToOne(true);
    StatsCustomizationProperties tx;
    tx.setWantOrderMemory(true);
    ClientProbe& client = make(defaultClientProps(), pub, tx);

    MsgProperties msg;
    msg.setQueue("q1");
    msg.setAckImmediately(true);
    client.updateToolData(&msg, 7, 0);
    zorClient_opaqueMsg_pt built = publish(msg);

    zorClient_destinationType_t type = ZORCLIENT_NULL_DESTINATION;
    EXPECT_EQ(destinationOf(built, &type), "q1");
    EXPECT_EQ(type, ZORCLIENT_QUEUE_DESTINATION);
    zorClient_uint32_t value = 9;
    zorClient_msg_getDeliveryMode(built, &value);
    EXPECT_EQ(value, ZORCLIENT_RX_DELIVERY_MODE_PERSISTENT);
    zorClient_msg_getClassOfService(built, &value);
    EXPECT_EQ(value, ZORCLIENT_COS_3);
    EXPECT_EQ(zorClient_msg_isDMQEligible(built), 1);
    EXPECT_EQ(zorClient_msg_isAckImmediately(built), 1);
    void* tag_p = nullptr;
    zorClient_uint32_t tagSize = 9;
    ASSERT_EQ(zorClient_msg_getCorrelationTagPtr(built, &tag_p, &tagSize), ZORCLIENT_OK);
    EXPECT_EQ(OS::readTruncatedUint64ValueFromPointer(tag_p), 7U);
    EXPECT_EQ(tagSize, 0U);
    // The tool data went into the attachment, which was empty: it is the
    // record alone now.
    EXPECT_EQ(attachmentOf(built).size(), msg.getToolData()->getEncodedSize());

    pub.setMsgType(PUBSUB_MSG_TYPE_NON_PERSISTENT);
    client.setPublishProps(pub, 0, "");
    built = publish(msg);
    zorClient_msg_getDeliveryMode(built, &value);
    EXPECT_EQ(value, ZORCLIENT_RX_DELIVERY_MODE_NON_PERSISTENT);
}

TEST_F(ClientPublishTest, ReplyToIsTheTopicWithItsPostfixOrTheSessionsInbox) {
    ClientProperties props = defaultClientProps();
    props.setWantReplyTo(true);
    props.setReplyToPostfix("/reply");
    make(props, PublishProperties());
    auto replyTo = [](zorClient_opaqueMsg_pt built) {
        zorClient_destination_t destination{};
        return zorClient_msg_getReplyTo(built, &destination, sizeof destination) == ZORCLIENT_OK
                   ? std::string(destination.dest)
                   : std::string("<none>");
    };
    MsgProperties msg;
    msg.setTopic("t/req");
    EXPECT_EQ(replyTo(publish(msg)), "t/req/reply");
    MsgProperties toQueue;
    toQueue.setQueue("q");
    EXPECT_EQ(replyTo(publish(toQueue)), "/reply");

    props.setReplyToPostfix("");
    ClientProbe& inboxed = make(props, PublishProperties());
    char inbox[ZORCLIENT_REPLY_TO_MAX_SIZE] = {0};
    ASSERT_EQ(zorClient_session_getProperty(inboxed.session(), "SESSION_REPLY_TO_DEFAULT_DEST",
                                            inbox, sizeof inbox),
              ZORCLIENT_OK);
    EXPECT_EQ(replyTo(publish(msg)), inbox);
}

TEST_F(ClientPublishTest, CustomPropertiesKeepTheFirstValueAndShortsLoseTheirHighBits) {
    PublishProperties pub;
    pub.setCustomPropertiesList({"short",  "s",    "300",           "string",  "name", "first",
                                 "String", "name", "second",        "INT",     "i",    "-5",
                                 "long",   "l",    "1234567890123", "Boolean", "flag", "TRUE",
                                 "float",  "f",    "1.5",           "double",  "d",    "2"});
    make(defaultClientProps(), pub);
    MsgProperties msg;
    msg.setTopic("t/custom");
    zorClient_opaqueMsg_pt built = publish(msg);

    zorClient_opaqueContainer_pt map = nullptr;
    ASSERT_EQ(zorClient_msg_getUserPropertyMap(built, &map), ZORCLIENT_OK);
    zorClient_int8_t shortValue = 0;
    EXPECT_EQ(zorClient_container_getInt8(map, &shortValue, "s"), ZORCLIENT_OK);
    EXPECT_EQ(shortValue, 44);  // 300 in 8 bits
    const char* name = nullptr;
    ASSERT_EQ(zorClient_container_getStringPtr(map, &name, "name"), ZORCLIENT_OK);
    EXPECT_STREQ(name, "first");
    zorClient_int32_t intValue = 0;
    zorClient_container_getInt32(map, &intValue, "i");
    EXPECT_EQ(intValue, -5);
    zorClient_int64_t longValue = 0;
    zorClient_container_getInt64(map, &longValue, "l");
    EXPECT_EQ(longValue, 1234567890123LL);
    zorClient_bool_t flag = 0;
    zorClient_container_getBoolean(map, &flag, "flag");
    EXPECT_EQ(flag, 1);
    float floatValue = 0;
    zorClient_container_getFloat(map, &floatValue, "f");
    EXPECT_FLOAT_EQ(floatValue, 1.5F);
    EXPECT_EQ(zorClient_container_getDouble(map, nullptr, "d"), ZORCLIENT_FAIL);
    zorClient_container_closeMapStream(&map);
    EXPECT_TRUE(log_m.contains(log::LEVEL_ERROR, "Unknown type for user property: double"));
}

TEST_F(ClientPublishTest, PropertyToolDataSharesTheMapWithThePartitionKeyAndTheTraceFields) {
    ClientProperties props = defaultClientProps();
    props.setWantUserPropToolData(true);
    props.setWantTraceDecodeCheck(true);
    PublishProperties pub;
    pub.setStreamIdOffset(0);
    StatsCustomizationProperties tx;
    tx.setWantLatency(true);
    tx.setWantOrderCheckPublisherStreamNumber(true);
    ClientProbe& client = make(props, pub, tx);
    MsgProperties msg;
    msg.setTopic("t/props");
    msg.setPartitionKey("pk-1");
    client.updateToolData(&msg, 9, 0);
    const UINT64 before = OS::numClockCycles();
    zorClient_opaqueMsg_pt built = publish(msg);

    Message view("000001", built);
    view.decodeToolData(TOOL_DATA_TYPE_USER_PROP);
    const ToolData& read = *view.getToolData();
    EXPECT_EQ(read.getMsgId(), 9U);
    EXPECT_EQ(read.getStreamId(), 1);
    EXPECT_GE(read.getLatency(), before);  // stamped at send
    EXPECT_EQ(read.getLatency(), msg.getToolData()->getLatency());
    EXPECT_EQ(read.getDecodedSize(), 0U);
    // Everything else on the map is logged as not being tool data.
    EXPECT_TRUE(log_m.contains(
        "CLIENT 000001: Unrecognized user property 'JMSXGroupID' while reading tool data"));
    EXPECT_TRUE(log_m.contains(
        "CLIENT 000001: Unrecognized user property 'topic' while reading tool data"));
    EXPECT_TRUE(log_m.contains(
        "CLIENT 000001: Unrecognized user property 'clientName' while reading tool data"));

    zorClient_opaqueContainer_pt map = nullptr;
    ASSERT_EQ(zorClient_msg_getUserPropertyMap(built, &map), ZORCLIENT_OK);
    zorClient_int32_t deliveryMode = -1;
    EXPECT_EQ(zorClient_container_getInt32(map, &deliveryMode, "deliveryMode"), ZORCLIENT_OK);
    EXPECT_EQ(deliveryMode, 2);  // direct
    const char* key = nullptr;
    ASSERT_EQ(zorClient_container_getStringPtr(map, &key, "JMSXGroupID"), ZORCLIENT_OK);
    EXPECT_STREQ(key, "pk-1");
    zorClient_container_closeMapStream(&map);
}

TEST_F(ClientPublishTest, TypedMessagesCarryTheirKindAndReadBackAsTheCheckExpects) {
    make(defaultClientProps(), PublishProperties());
    const struct {
        PubSubMessageObjectType type;
        const char* letter;
        const char* content;
    } kinds[] = {{PUBSUB_MSG_OBJ_TYPE_BYTES, "b", "123"},
                 {PUBSUB_MSG_OBJ_TYPE_TEXT, "t", "TEXT_MESSAGE"},
                 {PUBSUB_MSG_OBJ_TYPE_STREAM, "s", "STREAM_MESSAGE"},
                 {PUBSUB_MSG_OBJ_TYPE_MAP, "m", "MESSAGE"}};
    for (const auto& kind : kinds) {
        MsgProperties msg;
        msg.setTopic("t/typed");
        msg.setMsgObjType(kind.type);
        Message view("000001", publish(msg));
        ClientProbe::MsgObjectTypeReading reading;
        client_m->readObjectType(&view, reading);
        EXPECT_EQ(reading.outcome_m, ClientProbe::MsgObjectTypeReading::READ) << kind.letter;
        EXPECT_EQ(reading.type_m, kind.letter);
        EXPECT_EQ(reading.content_m, kind.content);
    }
}

TEST_F(ClientPublishTest, ATypedMessageDropsPropertyToolDataButKeepsItInTheAttachment) {
    PublishProperties pub;
    pub.setStreamIdOffset(0);
    StatsCustomizationProperties tx;
    tx.setWantOrderCheckPublisherStreamNumber(true);
    ClientProperties props = defaultClientProps();
    props.setWantUserPropToolData(true);
    ClientProbe& inProps = make(props, pub, tx);
    MsgProperties msg;
    msg.setTopic("t/typed");
    msg.setMsgObjType(PUBSUB_MSG_OBJ_TYPE_MAP);
    inProps.updateToolData(&msg, 3, 0);
    zorClient_opaqueContainer_pt map = nullptr;
    EXPECT_EQ(zorClient_msg_getUserPropertyMap(publish(msg), &map), ZORCLIENT_NOT_FOUND);

    ClientProbe& inAttachment = make(defaultClientProps(), pub, tx);
    msg.setMsgObjType(PUBSUB_MSG_OBJ_TYPE_BYTES);
    msg.setAttachment("payload-bytes");
    inAttachment.updateToolData(&msg, 3, 0);
    Message view("000001", publish(msg));
    view.decodeToolData(TOOL_DATA_TYPE_BIN_ATTACH);
    EXPECT_EQ(view.getToolData()->getMsgId(), 3U);
    const char* type = nullptr;
    zorClient_msg_getApplicationMsgType(client_m->getPublishMsg(0), &type);
    EXPECT_STREQ(type, "b");
}

TEST_F(ClientPublishTest, PriorityAndHttpFieldsAreSetForEachMessage) {
    PublishProperties pub;
    pub.setMessagePriorityGenerator(
        std::make_unique<MessagePriorityGenerator>(std::vector<int>{7, 1}));
    pub.setHttpContentType("text/plain");
    pub.setHttpContentEncoding("gzip");
    make(defaultClientProps(), pub);
    MsgProperties msg;
    msg.setTopic("t/http");
    zorClient_opaqueMsg_pt built = publish(msg);
    zorClient_int32_t priority = -1;
    zorClient_msg_getPriority(built, &priority);
    EXPECT_EQ(priority, 7);
    const char* text = nullptr;
    ASSERT_EQ(zorClient_msg_getHttpContentType(built, &text), ZORCLIENT_OK);
    EXPECT_STREQ(text, "text/plain");
    ASSERT_EQ(zorClient_msg_getHttpContentEncoding(built, &text), ZORCLIENT_OK);
    EXPECT_STREQ(text, "gzip");
}

TEST_F(ClientPublishTest, VectoredSendsNeedTheirMessagesPreparedFirst) {
    ClientProbe& client = make(defaultClientProps(), PublishProperties());
    std::vector<MsgProperties> msgs(2);
    msgs[0].setTopic("t/v");
    msgs[1].setTopic("t/v");
    client.sendVectorPushBack(1, 0);
    try {
        client.publishSendMultiple(msgs, false, 0);
        FAIL() << "no exception";
    } catch (const PubSubException& e) {
        EXPECT_STREQ(e.what(),
                     "CLIENT 000001: Vectored sends were not prepared: the publish properties "
                     "have no send vector\n");
    }
    PublishProperties pub;
    pub.setSendVectorSize(3);
    client.setPublishProps(pub, 0, "");
    for (INT64 n = 2; n <= 3; ++n) {
        client.sendVectorPushBack(n, 0);
    }
    if (sendIsMissing()) {
        EXPECT_THROW(client.publishSendMultiple(msgs, false, 0), PubSubException);
    } else {
        EXPECT_NO_THROW(client.publishSendMultiple(msgs, false, 0));
    }
}

}  // namespace
}  // namespace zorvane::pubsub
