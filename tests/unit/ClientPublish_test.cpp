// The send path as far as the library message it builds: each test
// publishes and reads the reused library message back. While the library
// cannot send yet, the send fails with its reason, which the client must
// then throw.
#include <gtest/gtest.h>

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

    // Publishes msg (stamped with msgId when given) and returns the library
    // message built for it.
    zorClient_opaqueMsg_pt publish(MsgProperties& msg, UINT64 msgId = 0) {
        if (msgId != 0) {
            client_m->updateToolData(&msg, msgId, 0);
        }
        // What is checked is the library message the client built. The send
        // itself may be refused by a library that does not carry this kind
        // of message yet (queues come with guaranteed messaging); any other
        // failure is a fault.
        try {
            client_m->publishMsg(&msg, 0);
        } catch (const PubSubException& e) {
            EXPECT_EQ(std::string(e.what()).rfind("CLIENT 000001: Error details - RC: "
                                                  "ZORCLIENT_FAIL, Sub Code: "
                                                  "ZORCLIENT_SUBCODE_NOT_SUPPORTED",
                                                  0),
                      0U)
                << e.what();
        }
        return client_m->getPublishMsg(0);
    }

    std::unique_ptr<ClientProbe> client_m;
};

std::string destinationOf(zorClient_opaqueMsg_pt msg, bool replyTo = false) {
    zorClient_destination_t dest{};
    const zorClient_returnCode_t rc = replyTo
                                          ? zorClient_msg_getReplyTo(msg, &dest, sizeof dest)
                                          : zorClient_msg_getDestination(msg, &dest, sizeof dest);
    if (rc != ZORCLIENT_OK) {
        return "<none>";
    }
    return std::string(dest.destType == ZORCLIENT_QUEUE_DESTINATION ? "queue:" : "topic:") +
           dest.dest;
}

zorClient_uint32_t deliveryModeOf(zorClient_opaqueMsg_pt msg) {
    zorClient_uint32_t mode = 99;
    zorClient_msg_getDeliveryMode(msg, &mode);
    return mode;
}

TEST_F(ClientPublishTest, ADirectMessageCarriesItsPartsAndAToolDataRecordStampedAtSend) {
    PublishProperties pub;
    pub.setStreamIdOffset(10);
    pub.setMessagePriorityGenerator(
        std::make_unique<MessagePriorityGenerator>(std::vector<int>{7, 1}));
    pub.setHttpContentType("text/plain");
    StatsCustomizationProperties tx;
    tx.setWantLatency(true);
    tx.setWantOrderCheckPublisherStreamNumber(true);
    make(defaultClientProps(), pub, tx);

    MsgProperties msg;
    msg.setTopic("t/direct");
    msg.setMsgBody("<b/>");
    msg.setAttachment(std::string(40, 'a'));
    msg.setUserdata("ud");
    const UINT64 before = OS::numClockCycles();
    zorClient_opaqueMsg_pt built = publish(msg, 42);

    EXPECT_EQ(destinationOf(built), "topic:t/direct");
    EXPECT_EQ(deliveryModeOf(built), ZORCLIENT_RX_DELIVERY_MODE_DIRECT);
    Message view("000001", built);
    EXPECT_EQ(view.getUserData(), "ud");
    EXPECT_EQ(std::string(view.getPayloadBegin(), view.getPayloadEnd()), "<b/>");
    EXPECT_EQ(view.getPriority(), 7);
    const char* text = nullptr;
    zorClient_msg_getHttpContentType(built, &text);
    EXPECT_STREQ(text, "text/plain");

    // The record lies over the start of the attachment, which keeps its size.
    ASSERT_EQ(view.getAttachEnd() - view.getAttachBegin(), 40);
    view.decodeToolData(TOOL_DATA_TYPE_BIN_ATTACH);
    const ToolData& sent = *view.getToolData();
    EXPECT_EQ(sent.getMsgId(), 42U);
    EXPECT_EQ(sent.getStreamId(), 11);  // offset + client id
    EXPECT_GE(sent.getLatency(), before);
    EXPECT_EQ(sent.getLatency(), msg.getToolData()->getLatency());
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
    StatsCustomizationProperties tx;
    tx.setWantOrderMemory(true);
    make(defaultClientProps(), pub, tx);
    MsgProperties msg;
    msg.setQueue("q1");
    msg.setAckImmediately(true);
    zorClient_opaqueMsg_pt built = publish(msg, 7);

    EXPECT_EQ(destinationOf(built), "queue:q1");
    EXPECT_EQ(deliveryModeOf(built), ZORCLIENT_RX_DELIVERY_MODE_PERSISTENT);
    zorClient_uint32_t cos = 99;
    zorClient_msg_getClassOfService(built, &cos);
    EXPECT_EQ(cos, ZORCLIENT_COS_3);
    EXPECT_EQ(zorClient_msg_isDMQEligible(built), 1);
    EXPECT_EQ(zorClient_msg_isAckImmediately(built), 1);
    void* tag_p = nullptr;
    zorClient_uint32_t tagSize = 9;
    ASSERT_EQ(zorClient_msg_getCorrelationTagPtr(built, &tag_p, &tagSize), ZORCLIENT_OK);
    EXPECT_EQ(OS::readTruncatedUint64ValueFromPointer(tag_p), 7U);
    EXPECT_EQ(tagSize, 0U);

    pub.setMsgType(PUBSUB_MSG_TYPE_NON_PERSISTENT);
    client_m->setPublishProps(pub, 0, "");
    EXPECT_EQ(deliveryModeOf(publish(msg)), ZORCLIENT_RX_DELIVERY_MODE_NON_PERSISTENT);
}

TEST_F(ClientPublishTest, ReplyToIsTheTopicWithItsPostfixOrTheSessionsInbox) {
    ClientProperties props = defaultClientProps();
    props.setWantReplyTo(true);
    props.setReplyToPostfix("/reply");
    make(props, PublishProperties());
    MsgProperties msg;
    msg.setTopic("t/req");
    EXPECT_EQ(destinationOf(publish(msg), true), "topic:t/req/reply");
    MsgProperties toQueue;
    toQueue.setQueue("q");
    EXPECT_EQ(destinationOf(publish(toQueue), true), "topic:/reply");

    props.setReplyToPostfix("");
    ClientProbe& client = make(props, PublishProperties());
    char inbox[ZORCLIENT_REPLY_TO_MAX_SIZE] = {0};
    ASSERT_EQ(zorClient_session_getProperty(client.session(), "SESSION_REPLY_TO_DEFAULT_DEST",
                                            inbox, sizeof inbox),
              ZORCLIENT_OK);
    EXPECT_EQ(destinationOf(publish(msg), true), std::string("topic:") + inbox);
}

TEST_F(ClientPublishTest, CustomPropertiesKeepTheFirstValueAndShortsLoseTheirHighBits) {
    PublishProperties pub;
    pub.setCustomPropertiesList({"short", "s", "300", "string", "name", "first", "String", "name",
                                 "second", "Boolean", "flag", "TRUE", "double", "d", "2"});
    make(defaultClientProps(), pub);
    MsgProperties msg;
    msg.setTopic("t/custom");
    zorClient_opaqueContainer_pt map = nullptr;
    ASSERT_EQ(zorClient_msg_getUserPropertyMap(publish(msg), &map), ZORCLIENT_OK);
    zorClient_int8_t shortValue = 0;
    zorClient_container_getInt8(map, &shortValue, "s");
    EXPECT_EQ(shortValue, 44);  // 300 in 8 bits
    const char* name = nullptr;
    zorClient_container_getStringPtr(map, &name, "name");
    EXPECT_STREQ(name, "first");
    zorClient_bool_t flag = 0;
    zorClient_container_getBoolean(map, &flag, "flag");
    EXPECT_EQ(flag, 1);
    double unknown = 0;
    EXPECT_EQ(zorClient_container_getDouble(map, &unknown, "d"), ZORCLIENT_NOT_FOUND);
    zorClient_container_closeMapStream(&map);
    EXPECT_TRUE(log_m.contains(log::LEVEL_ERROR, "Unknown type for user property: double"));
}

TEST_F(ClientPublishTest, PropertyToolDataSharesTheMapUntilATypedBodyTakesIt) {
    ClientProperties props = defaultClientProps();
    props.setWantUserPropToolData(true);
    props.setWantTraceDecodeCheck(true);
    PublishProperties pub;
    pub.setStreamIdOffset(0);
    StatsCustomizationProperties tx;
    tx.setWantLatency(true);
    tx.setWantOrderCheckPublisherStreamNumber(true);
    make(props, pub, tx);
    MsgProperties msg;
    msg.setTopic("t/props");
    msg.setPartitionKey("pk-1");
    const UINT64 before = OS::numClockCycles();
    zorClient_opaqueMsg_pt built = publish(msg, 9);

    Message view("000001", built);
    view.decodeToolData(TOOL_DATA_TYPE_USER_PROP);
    EXPECT_EQ(view.getToolData()->getMsgId(), 9U);
    EXPECT_EQ(view.getToolData()->getStreamId(), 1);
    EXPECT_GE(view.getToolData()->getLatency(), before);  // stamped at send
    EXPECT_EQ(view.getToolData()->getLatency(), msg.getToolData()->getLatency());
    for (const char* other : {"JMSXGroupID", "topic", "clientName"}) {
        EXPECT_TRUE(log_m.contains(std::string("CLIENT 000001: Unrecognized user property '") +
                                   other + "' while reading tool data"))
            << other;
    }
    zorClient_opaqueContainer_pt map = nullptr;
    ASSERT_EQ(zorClient_msg_getUserPropertyMap(built, &map), ZORCLIENT_OK);
    zorClient_int32_t deliveryMode = -1;
    zorClient_container_getInt32(map, &deliveryMode, "deliveryMode");
    EXPECT_EQ(deliveryMode, 2);  // direct
    zorClient_container_closeMapStream(&map);

    // Typed messages read back as the object type check expects; the typed
    // body comes after the tool data and takes its map away.
    const std::pair<PubSubMessageObjectType, std::string> kinds[] = {
        {PUBSUB_MSG_OBJ_TYPE_BYTES, "b=123"},
        {PUBSUB_MSG_OBJ_TYPE_TEXT, "t=TEXT_MESSAGE"},
        {PUBSUB_MSG_OBJ_TYPE_STREAM, "s=STREAM_MESSAGE"},
        {PUBSUB_MSG_OBJ_TYPE_MAP, "m=MESSAGE"}};
    for (const auto& [type, expected] : kinds) {
        msg.setMsgObjType(type);
        built = publish(msg, 3);
        Message typed("000001", built);
        ClientProbe::MsgObjectTypeReading reading;
        client_m->readObjectType(&typed, reading);
        EXPECT_EQ(reading.outcome_m, ClientProbe::MsgObjectTypeReading::READ) << expected;
        EXPECT_EQ(reading.type_m + "=" + reading.content_m, expected);
        EXPECT_EQ(zorClient_msg_getUserPropertyMap(built, &map), ZORCLIENT_NOT_FOUND);
    }
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
}

}  // namespace
}  // namespace zorvane::pubsub
