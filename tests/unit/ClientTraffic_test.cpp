// Messages from one client to another through the embedded broker: what
// the receiver's analysis sees of each attribute group and of the tool
// data in both forms. These need the library's sending and topic
// subscriptions; each test skips with the reason while they are missing.
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

class ClientTrafficTest : public LibraryFixture {
  protected:
    void SetUp() override {
        LibraryFixture::SetUp();
        const std::string missing = directMessagingMissing();
        if (!missing.empty()) {
            GTEST_SKIP() << missing;
        }
    }
    void destroyClients() override { clients_m.clear(); }

    ClientProbe& make(const ClientProperties& props, INT32 clientId,
                      const StatsCustomizationProperties& stats = {}) {
        clients_m.push_back(std::make_unique<ClientProbe>(clientId, 1000000, props,
                                                          context_mp.get(), stats, nullptr, 1));
        ClientProbe& client = *clients_m.back();
        client.connect();
        EXPECT_TRUE(waitFor(
            [&] { return client.getChannelState() == AbstractClient::CLIENT_STATE_CONNECTED; }));
        return client;
    }

    // A receiver that keeps the details of every message on topic.
    ClientProbe& receiver(const ClientProperties& props, const std::string& topic,
                          StatsCustomizationProperties stats = {}) {
        stats.setWantPerMessageDetails(true);
        stats.setPerMessageDetailsQueueDepth(100);
        stats.setWantOrderCheckPublisherStreamNumber(true);  // the details come on the slow path
        ClientProbe& client = make(props, 2, stats);
        client.subscriptionUpdate({topic}, true, "", SUBSCRIPTION_TYPE_TOPIC);
        return client;
    }

    static std::vector<LastMessageDetails> awaitDetails(const ClientProbe& client,
                                                        std::size_t count) {
        std::vector<LastMessageDetails> details;
        waitFor([&] {
            details = client.getLastMessagesDetails(static_cast<int>(count));
            return details.size() >= count;
        });
        return details;
    }

    std::vector<std::unique_ptr<ClientProbe>> clients_m;
};

TEST_F(ClientTrafficTest, EachAttributeGroupArrivesIntact) {
    ClientProperties props = defaultClientProps();
    props.setWantReplyTo(true);
    props.setReplyToPostfix("/r");
    ClientProbe& rx = receiver(props, "t/attr");
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
    plain.setUserdata("abc");
    MsgProperties typed = plain;
    typed.setAttachment("");
    typed.setMsgObjType(PUBSUB_MSG_OBJ_TYPE_TEXT);
    tx.publishMsg(&plain, 0);
    tx.publishMsg(&typed, 0);

    const auto details = awaitDetails(rx, 2);
    ASSERT_EQ(details.size(), 2U);
    for (const LastMessageDetails& got : details) {
        EXPECT_EQ(got.getDestination(), "t/attr");
        EXPECT_EQ(got.getDestinationType(), SUBSCRIPTION_TYPE_TOPIC);
        EXPECT_EQ(got.getReplyToDestination(), "t/attr/r");
        EXPECT_EQ(got.getCos(), "USER_COS_2");
        EXPECT_EQ(got.getDeliveryMode(), "DIRECT");
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
        ClientProbe& rx = receiver(props, "t/tool", stats);
        ClientProbe& tx = make(props, 1);
        tx.setPublishStatsProps(stats);
        PublishProperties pub;
        pub.setStreamIdOffset(4);
        tx.setPublishProps(pub, 0, "");

        std::vector<ToolData> sent;
        MsgProperties msg;
        msg.setTopic("t/tool");
        msg.setAttachment(std::string(64, 'p'));
        for (UINT64 id = 1; id <= 3; ++id) {
            tx.updateToolData(&msg, id, 0);
            tx.publishMsg(&msg, 0);
            sent.push_back(*msg.getToolData());
        }
        ASSERT_TRUE(waitFor([&] { return rx.receivedToolData().size() >= 3; }));
        const std::vector<ToolData> received = rx.receivedToolData();
        for (std::size_t i = 0; i < 3; ++i) {
            EXPECT_EQ(received[i].getStreamId(), 5);
            EXPECT_EQ(received[i].getMsgId(), sent[i].getMsgId());
            EXPECT_EQ(received[i].getLatency(), sent[i].getLatency());
        }
        EXPECT_EQ(rx.getSubOrderOffsets().at(5), 3U);
        clients_m.clear();
    }
}

TEST_F(ClientTrafficTest, AReflectingClientSendsEachMessageOnToItsTopic) {
    ClientProperties reflecting = defaultClientProps();
    reflecting.setClientMode("reflect");
    reflecting.setClientReflectTopic("t/back");
    ClientProbe& reflector = make(reflecting, 3);
    reflector.subscriptionUpdate({"t/out"}, true, "", SUBSCRIPTION_TYPE_TOPIC);
    ClientProbe& rx = receiver(defaultClientProps(), "t/back");
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
