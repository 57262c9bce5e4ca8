// Messages from one client to another through the embedded broker. These
// need the library's sending and topic subscriptions; each test skips with
// the reason while they are missing.
#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "common/LastMessageDetails.h"
#include "common/MessagePriorityGenerator.h"
#include "common/MsgProperties.h"
#include "tests/unit/ClientProbe.h"
#include "tests/unit/ZcoreTestSupport.h"

namespace zorvane::pubsub {
namespace {

class ClientTrafficTest : public DirectMessagingFixture {
  protected:
    ClientProbe& make(const ClientProperties& props, INT32 clientId,
                      StatsCustomizationProperties stats = {}, const std::string& topic = "") {
        stats.setWantPerMessageDetails(true);
        stats.setPerMessageDetailsQueueDepth(100);
        stats.setWantOrderCheckPublisherStreamNumber(true);  // the details come on the slow path
        return connectProbe(clientId, props, stats, topic);
    }
    static std::vector<LastMessageDetails> awaitDetails(const ClientProbe& client,
                                                        std::size_t count) {
        // Until the first message the history holds the cleared record, which
        // has no destination; only filled records count.
        std::vector<LastMessageDetails> details;
        waitFor([&] {
            details.clear();
            for (const LastMessageDetails& record : client.getLastMessagesDetails(100)) {
                if (!record.getDestination().empty()) {
                    details.push_back(record);
                }
            }
            return details.size() >= count;
        });
        return details;
    }
};

TEST_F(ClientTrafficTest, EachAttributeGroupArrivesIntact) {
    ClientProperties props = defaultClientProps();
    props.setWantReplyTo(true);
    props.setReplyToPostfix("/r");
    ClientProbe& rx = make(props, 2, {}, "t/attr");
    PublishProperties pub;
    pub.setCos(PUBSUB_COS_2);
    pub.setDMQEligible(true);
    pub.setHttpContentType("text/plain");
    pub.setMessagePriorityGenerator(
        std::make_unique<MessagePriorityGenerator>(std::vector<int>{5, 1}));
    ClientProbe& tx = make(props, 1);
    tx.setPublishProps(pub, 0, "");
    MsgProperties plain;
    plain.setTopic("t/attr");
    plain.setMsgBody("<body/>");
    plain.setAttachment("attachment");
    MsgProperties typed = plain;
    typed.setAttachment("");
    typed.setMsgObjType(PUBSUB_MSG_OBJ_TYPE_TEXT);
    tx.publishMsg(&plain, 0);
    tx.publishMsg(&typed, 0);

    const auto details = awaitDetails(rx, 2);
    ASSERT_EQ(details.size(), 2U);
    for (const LastMessageDetails& got : details) {
        EXPECT_EQ(got.getDestination() + " " + got.getReplyToDestination(), "t/attr t/attr/r");
        EXPECT_EQ(got.getCos() + " " + got.getDeliveryMode(), "USER_COS_2 DIRECT");
        EXPECT_EQ(got.getPriority(), 5);
        EXPECT_EQ(got.getHttpContentType(), "text/plain");
        EXPECT_EQ(got.getIsDmqEligible(), 1);
    }
    EXPECT_EQ(details[0].getBinaryPayloadSize(), 10);
    EXPECT_EQ(details[1].getAppMessageType(), "t");
}

TEST_F(ClientTrafficTest, TheReceiverDecodesTheStreamIdMessageIdAndTimestampThatWereSent) {
    for (const bool inProperties : {false, true}) {
        SCOPED_TRACE(inProperties ? "user properties" : "attachment");
        ClientProperties props = defaultClientProps();
        props.setWantUserPropToolData(inProperties);
        StatsCustomizationProperties stats;
        stats.setWantLatency(true);
        stats.setWantOrderCheckPublisherStreamNumber(true);
        ClientProbe& rx = make(props, 2, stats, "t/tool");
        ClientProbe& tx = make(props, 1);
        tx.setPublishStatsProps(stats);
        PublishProperties pub;
        pub.setStreamIdOffset(4);
        pub.setSendVectorSize(2);
        tx.setPublishProps(pub, 0, "");
        std::vector<ToolData> sent;
        std::vector<MsgProperties> msgs(2);
        for (MsgProperties& msg : msgs) {
            msg.setTopic("t/tool");
            msg.setAttachment(std::string(64, 'p'));
        }
        for (UINT64 id = 1; id <= 3; ++id) {  // single sends
            tx.updateToolData(&msgs[0], id, 0);
            tx.publishMsg(&msgs[0], 0);
            sent.push_back(*msgs[0].getToolData());
        }
        for (UINT64 id = 4; id <= 5; ++id) {  // one vectored send, as the publisher batches
            tx.updateToolData(&msgs[(id - 1) % 2], id, 0);
            tx.sendVectorPushBack(static_cast<INT64>(id), 0);
        }
        tx.publishSendMultiple(msgs, true, 0);
        sent.push_back(*msgs[1].getToolData());
        sent.push_back(*msgs[0].getToolData());
        ASSERT_TRUE(waitFor([&] { return rx.receivedToolData().size() >= 5; }));
        const std::vector<ToolData> received = rx.receivedToolData();
        for (std::size_t i = 0; i < 5; ++i) {
            EXPECT_EQ(received[i].getStreamId(), 5);
            EXPECT_EQ(received[i].getMsgId(), sent[i].getMsgId());
            EXPECT_EQ(received[i].getLatency(), sent[i].getLatency());
        }
        EXPECT_EQ(rx.getSubOrderOffsets().at(5), 5U);
        clients_m.clear();
    }
}

TEST_F(ClientTrafficTest, AReflectingClientSendsEachMessageOnToItsTopic) {
    ClientProperties reflecting = defaultClientProps();
    reflecting.setClientMode("reflect");
    reflecting.setClientReflectTopic("t/back");
    make(reflecting, 3, {}, "t/out");
    ClientProbe& rx = make(defaultClientProps(), 2, {}, "t/back");
    ClientProbe& tx = make(defaultClientProps(), 1);
    tx.setPublishProps(PublishProperties(), 0, "");
    MsgProperties msg;
    msg.setTopic("t/out");
    msg.setAttachment("ping");
    tx.publishMsg(&msg, 0);
    const auto details = awaitDetails(rx, 1);
    ASSERT_EQ(details.size(), 1U);
    EXPECT_EQ(details[0].getDestination(), "t/back");
    EXPECT_EQ(details[0].getBinaryPayloadSize(), 4);
}

}  // namespace
}  // namespace zorvane::pubsub
