// The receive path of a client from the library's callback on: messages
// built with the library are handed to the callback as the context thread
// would, so that the binding's part runs without the broker delivering.
#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "client/zcore/ClientCallbacks.h"
#include "client/zcore/TopicExpression.h"
#include "common/MsgProperties.h"
#include "common/PubSubException.h"
#include "tests/unit/ClientProbe.h"
#include "tests/unit/ZcoreTestSupport.h"
#include "zorClientMsg.h"

namespace zorvane::pubsub {
namespace {

class ClientReceiveTest : public LibraryFixture {
  protected:
    void SetUp() override {
        LibraryFixture::SetUp();
        ASSERT_EQ(zorClient_msg_alloc(&msg_m), ZORCLIENT_OK);
        zorClient_msg_setTopicPtr(msg_m, "t/in");
    }
    void destroyClients() override {
        client_m.reset();
        zorClient_msg_free(&msg_m);
    }
    ClientProbe& make(const ClientProperties& props, const StatsCustomizationProperties& stats) {
        client_m =
            std::make_unique<ClientProbe>(1, 1000000, props, context_mp.get(), stats, nullptr, 1);
        return *client_m;
    }
    void attachRecord(UINT64 msgId) {
        ToolData record;
        record.setMsgId(msgId);
        char buffer[ToolData::MAX_ENCODED_SIZE];
        zorClient_msg_setBinaryAttachment(msg_m, buffer, record.encode(buffer, sizeof buffer));
    }

    std::unique_ptr<ClientProbe> client_m;
    zorClient_opaqueMsg_pt msg_m = nullptr;
};

TEST_F(ClientReceiveTest, AMessageFillsTheLastMessageRecordAndItsHistory) {
    StatsCustomizationProperties stats;
    stats.setWantPerMessageDetails(true);
    stats.setPerMessageDetailsQueueDepth(2);
    stats.setWantOrderCheckPublisherStreamNumber(true);  // the details come on the slow path
    ClientProbe& client = make(defaultClientProps(), stats);
    const zorClient_destination_t replyTo{ZORCLIENT_QUEUE_DESTINATION, "q/back"};
    zorClient_msg_setReplyTo(msg_m, &replyTo, sizeof replyTo);
    zorClient_msg_setClassOfService(msg_m, ZORCLIENT_COS_2);
    zorClient_msg_setCorrelationId(msg_m, "corr");
    zorClient_msg_setSenderTimestamp(msg_m, 1234);
    zorClient_msg_setDMQEligible(msg_m, 1);
    attachRecord(9);

    EXPECT_EQ(client.messageRxFunc(msg_m), ZORCLIENT_CALLBACK_OK);
    auto details = client.getLastMessageDetails();
    ASSERT_NE(details, nullptr);
    EXPECT_EQ(details->getDestination() + "/" + details->getReplyToDestination(), "t/in/q/back");
    EXPECT_EQ(details->getDestinationType(), SUBSCRIPTION_TYPE_TOPIC);
    EXPECT_EQ(details->getReplyToDestinationType(), SUBSCRIPTION_TYPE_QUEUE);
    EXPECT_EQ(details->getCos() + " " + details->getDeliveryMode(), "USER_COS_2 DIRECT");
    EXPECT_EQ(details->getCorrelationId(), "corr");
    EXPECT_EQ(details->getSenderTimestamp(), 1234U);
    EXPECT_EQ(details->getIsDmqEligible(), 1);
    EXPECT_EQ(details->getRedelivered(), -1);
    EXPECT_EQ(details->getBinaryPayloadSize(), 16);  // the record alone
    EXPECT_EQ(client.receivedToolData().at(0).getMsgId(), 9U);
}

TEST_F(ClientReceiveTest, AnErrorOutOfTheAnalysisStaysInTheCallback) {
    StatsCustomizationProperties stats;
    stats.setFirstLastLatencyFanout(2);
    ClientProperties props = defaultClientProps();
    props.setStopOnError(true);
    ClientProbe& client = make(props, stats);
    for (UINT64 msgId : {1, 2, 2}) {  // id 2 completes while id 1 waits for its copy
        attachRecord(msgId);
        EXPECT_EQ(client.messageRxFunc(msg_m), ZORCLIENT_CALLBACK_OK);
    }
    EXPECT_EQ(log_m.count("CLIENT 000001: Error processing received message: Error incrementing "
                          "First Last stats."),
              1U);
    MsgProperties msg;
    EXPECT_THROW(client.publishMsg(&msg, 0), PubSubException);
}

TEST_F(ClientReceiveTest, ReflectionAndRepliesReportFailuresWithoutThrowing) {
    ClientProperties props = defaultClientProps();
    props.setClientMode("reflect");
    props.setClientReflectTopic("t/reflected");
    make(props, {}).messageRxFunc(msg_m);
    zorClient_destination_t destination{};
    zorClient_msg_getDestination(msg_m, &destination, sizeof destination);
    EXPECT_STREQ(destination.dest, "t/reflected");
    if (!directMessagingMissing().empty()) {
        EXPECT_TRUE(log_m.contains(log::LEVEL_ERROR, "Error reflecting message: ZORCLIENT_FAIL"));
        EXPECT_NE(client_m->getLastError(), nullptr);
    }

    props.setClientMode("reply");
    ClientProbe& replier = make(props, {});
    zorClient_msg_setTopicPtr(msg_m, "t/in");  // the reflector's topic text went with it
    replier.messageRxFunc(msg_m);              // no reply-to: not answered
    EXPECT_TRUE(log_m.contains(
        log::LEVEL_WARNING,
        "Could not reflect message, no reply-to destination set; rc=\"ZORCLIENT_NOT_FOUND\""));
    EXPECT_EQ(replier.getLastError(), nullptr);
    const zorClient_destination_t inbox{ZORCLIENT_TOPIC_DESTINATION, "inbox/42"};
    zorClient_msg_setReplyTo(msg_m, &inbox, sizeof inbox);
    replier.messageRxFunc(msg_m);
    zorClient_msg_getDestination(msg_m, &destination, sizeof destination);
    EXPECT_STREQ(destination.dest, "inbox/42");
    EXPECT_EQ(zorClient_msg_isReplyMsg(msg_m), 1);
    EXPECT_EQ(zorClient_msg_getReplyTo(msg_m, &destination, sizeof destination),
              ZORCLIENT_NOT_FOUND);
}

TEST_F(ClientReceiveTest, DispatchedMessagesAreCountedByTheirDemultiplexingId) {
    ClientProbe& client = make(defaultClientProps(), {});
    Client::DemuxCallbackData data{"d1", &client};
    for (int i = 0; i < 2; ++i) {
        EXPECT_EQ(clientExtern_dispatchMsgRxFunc(nullptr, msg_m, &data), ZORCLIENT_CALLBACK_OK);
    }
    EXPECT_EQ(client.getRxStats(false).getDemuxStatsMap().at("d1"), 2U);
}

TEST(TopicExpression, SplitsTheDemuxIdTheTopicAndItsFlags) {
    std::string topic;
    std::string demuxId = "stale";
    zorClient_subscribeFlags_t flags = ZORCLIENT_SUBSCRIBE_FLAGS_WAITFORCONFIRM;
    TopicExpression::build("a/b/>", topic, flags, demuxId);
    EXPECT_EQ(topic + "|" + demuxId, "a/b/>|");
    TopicExpression::build("d7<DEMUX_ID/>x/y<TOPIC_END/>DA=1,RC=1,DLO=0,ZZ=1", topic, flags,
                           demuxId);
    EXPECT_EQ(topic + "|" + demuxId, "x/y|d7");
    EXPECT_EQ(flags, ZORCLIENT_SUBSCRIBE_FLAGS_WAITFORCONFIRM |
                         ZORCLIENT_SUBSCRIBE_FLAGS_RX_ALL_DELIVER_TO_ONE |
                         ZORCLIENT_SUBSCRIBE_FLAGS_REQUEST_CONFIRM);
    flags = 0;
    TopicExpression::build("x<TOPIC_END/>DLO=1", topic, flags, demuxId);
    EXPECT_EQ(flags, ZORCLIENT_SUBSCRIBE_FLAGS_LOCAL_DISPATCH_ONLY);
}

}  // namespace
}  // namespace zorvane::pubsub
