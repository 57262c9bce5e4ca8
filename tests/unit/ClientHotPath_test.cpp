// The binding's part of sending and receiving must not touch the heap per
// message: this program counts the allocations made while messages pass
// through a client, and through the embedded broker between two clients.
#include <gtest/gtest.h>

#include <chrono>
#include <thread>

#include "client/zcore/Client.h"
#include "client/zcore/Context.h"
#include "common/MsgProperties.h"
#include "common/PublishProperties.h"
#include "tests/unit/ClientProbe.h"
#include "tests/unit/ZcoreTestSupport.h"
#include "zorClientMsg.h"
#include "zorclient/tests/CountingAllocator.h"

namespace zorvane::pubsub {
namespace {

using zctest::AllocationCount;

TEST(ClientHotPath, ReceivingAMessageAllocatesNothing) {
    ASSERT_EQ(ZORCLIENT_OK, zorClient_initialize(ZORCLIENT_LOG_ERROR, nullptr));
    {
        // No context thread: the test thread plays it.
        Context context(defaultClientProps());
        StatsCustomizationProperties rx;
        rx.setNumLatencyBuckets(1024);
        rx.setLatencyGranularityFactor(11);
        rx.setWantLatency(true);
        rx.setWantOrderCheckPublisherStreamNumber(true);  // the slow path as well
        rx.setWantFullMsgInspection(true);
        Client client(1, 1000000, defaultClientProps(), &context, rx, nullptr, 1);

        zorClient_opaqueMsg_pt msg = nullptr;
        ASSERT_EQ(zorClient_msg_alloc(&msg), ZORCLIENT_OK);
        zorClient_msg_setTopicPtr(msg, "t/hot");
        zorClient_msg_setXml(msg, "<b/>", 4);
        ToolData record;
        record.setStreamId(1);
        char buffer[ToolData::MAX_ENCODED_SIZE + 64] = {0};
        auto receive = [&](UINT64 msgId) {
            record.setMsgId(msgId);
            record.setLatency(OS::numClockCycles());
            const UINT32 size = record.encode(buffer, ToolData::MAX_ENCODED_SIZE);
            zorClient_msg_setBinaryAttachment(msg, buffer, size + 64);
            client.messageRxFunc(msg);
        };
        receive(1);  // the stream's first message creates its order state

        AllocationCount count;
        for (UINT64 id = 2; id <= 1000; ++id) {
            receive(id);
        }
        EXPECT_EQ(count.allocations(), 0);
        const PerfStats& stats = client.getRxStats(false);
        EXPECT_EQ(stats.getStat(PerfStats::NUM_MSGS_ORDER_CHECKED), 1000U);
        EXPECT_EQ(stats.getStat(PerfStats::NUM_MSGS_W_XML_PAYLOAD), 1000U);
        zorClient_msg_free(&msg);
    }
    zorClient_cleanup();
}

class ClientSendHotPathTest : public DirectMessagingFixture {
  protected:
    void destroyClients() override {
        tx_mp.reset();
        rx_mp.reset();
    }

    // A sink and a publisher on the topic the messages go to.
    void connectPair(const ClientProperties& props, const StatsCustomizationProperties& stats) {
        rx_mp =
            std::make_unique<ClientProbe>(2, 1000000, props, context_mp.get(), stats, nullptr, 1);
        tx_mp =
            std::make_unique<ClientProbe>(1, 1000000, props, context_mp.get(), stats, nullptr, 1);
        for (ClientProbe* client_p : {rx_mp.get(), tx_mp.get()}) {
            client_p->connect();
            ASSERT_TRUE(waitFor([&] {
                return client_p->getChannelState() == AbstractClient::CLIENT_STATE_CONNECTED;
            }));
        }
        rx_mp->subscriptionUpdate({"hot/send"}, true, "", SUBSCRIPTION_TYPE_TOPIC);
        tx_mp->setPublishStatsProps(stats);
        tx_mp->setPublishProps(PublishProperties(), 0, "");
    }

    // The receiver measures latency and stream order (so it decodes every
    // message), and the publisher stamps the same into each message.
    void connectToolDataPair(bool toolDataInProperties) {
        ClientProperties props = defaultClientProps();
        props.setClientMode("sink");
        props.setWantUserPropToolData(toolDataInProperties);
        StatsCustomizationProperties stats;
        stats.setNumLatencyBuckets(1024);
        stats.setLatencyGranularityFactor(11);
        stats.setWantLatency(true);
        stats.setWantOrderCheckPublisherStreamNumber(true);
        stats.setWantPayloadCheck(true);
        connectPair(props, stats);
        msgs_m.assign(1, MsgProperties());
        msgs_m[0].setTopic("hot/send");
        msgs_m[0].setAttachment(std::string(100, 'a'));
    }

    // The publisher sends structured messages of each description in turn;
    // the receiver checks each against the user descriptions given (the
    // canned ones it knows by number).
    void connectStructuredPair(const std::vector<SdmProperties>& sent,
                               const std::vector<SdmProperties>& userDescriptions) {
        ClientProperties props = defaultClientProps();
        props.setClientMode("sink");
        StatsCustomizationProperties stats;
        stats.setWantStructMsgCheck(true);
        stats.setSdmPropsList(userDescriptions);
        connectPair(props, stats);
        msgs_m.assign(sent.size(), MsgProperties());
        for (std::size_t i = 0; i < sent.size(); ++i) {
            msgs_m[i].setTopic("hot/send");
            msgs_m[i].setSdmMsgProps(sent[i]);
        }
    }

    // Publishes count messages as the publisher thread does (tool data, then
    // the send), with at most window of them not yet received.
    // A message that never arrives fails the test instead of hanging it.
    void publish(int count, UINT64 window) {
        const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(30);
        auto awaitReceived = [&](UINT64 atLeast) {
            while (rx_mp->msgsRecv() < atLeast) {
                if (std::chrono::steady_clock::now() > deadline) {
                    return false;
                }
                std::this_thread::yield();
            }
            return true;
        };
        for (int i = 0; i < count; ++i) {
            MsgProperties& msg = msgs_m[sent_m % msgs_m.size()];
            ++sent_m;
            tx_mp->updateToolData(&msg, sent_m, 0);
            tx_mp->publishMsg(&msg, 0);
            if (sent_m > window && !awaitReceived(sent_m - window)) {
                break;
            }
        }
        ASSERT_TRUE(awaitReceived(sent_m))
            << rx_mp->msgsRecv() << " of " << sent_m << " messages arrived";
    }

    // Allocations in the first of up to five rounds of count messages that
    // allocated nothing, or in the last round when none did. A free list
    // that grows once when the threads are scheduled unluckily shows in one
    // round; an allocation per message shows in every one.
    long allocationsOfAWarmRound(int count) {
        long allocated = -1;
        for (int round = 0; round < 5 && allocated != 0 && !HasFatalFailure(); ++round) {
            AllocationCount all;
            publish(count, 100);
            allocated = all.allocations();
        }
        return allocated;
    }

    void expectWarmPublishingAllocatesNothing(bool toolDataInProperties);

    // The receiver's statistics once the context thread has ended: that
    // thread writes them without a lock.
    const PerfStats& finalRxStats() {
        context_mp->stop();
        return rx_mp->getRxStats(false);
    }

    // A run's filter level, set before the context thread starts: debug
    // lines are formatted only when asked for, and then they may allocate.
    LogCapture runLevel_m{log::LEVEL_NOTICE};
    std::unique_ptr<ClientProbe> rx_mp;
    std::unique_ptr<ClientProbe> tx_mp;
    std::vector<MsgProperties> msgs_m;
    UINT64 sent_m = 0;
};

void ClientSendHotPathTest::expectWarmPublishingAllocatesNothing(bool toolDataInProperties) {
    {
        AllocationCount setUp;
        connectToolDataPair(toolDataInProperties);
        EXPECT_GT(setUp.allocations(), 0) << "the counting allocator does not count";
    }
    // Warm-up: bursts that put many messages in flight at once, so that the
    // library's pools hold more than a paced round can need.
    publish(1000, 1000);
    publish(10000, 1000);
    EXPECT_EQ(allocationsOfAWarmRound(10000), 0);

    // Every message arrived whole, in order, with its tool data.
    const PerfStats& stats = finalRxStats();
    EXPECT_EQ(stats.getStat(PerfStats::NUM_MSGS_ORDER_CHECKED), sent_m);
    EXPECT_EQ(stats.getStat(PerfStats::NUM_MSGS_CRC_OK), sent_m);
    EXPECT_EQ(stats.getStat(PerfStats::NUM_LATENCY_MSGS), sent_m);
}

TEST_F(ClientSendHotPathTest, PublishingWithToolDataInTheAttachmentAllocatesNothingPerMessage) {
    expectWarmPublishingAllocatesNothing(false);
}

TEST_F(ClientSendHotPathTest, PublishingWithToolDataInPropertiesAllocatesNothingPerMessage) {
    expectWarmPublishingAllocatesNothing(true);
}

// Building a structured message and checking it on receipt read the
// description, parsed once, in place (field names longer than a short string
// included), and the canned catalogue's constant tables.
TEST_F(ClientSendHotPathTest, StructuredMessagesAllocateNothingPerMessage) {
    SdmProperties described;
    described.parseInputString({"msg:type=map", "msg:useBinaryAttachment=1",
                                "int64 name=a field name longer than any short string value=-5",
                                "map name=nested value=2", "qwf name=q value=40",
                                "destination name=d value=q/x<TOPIC_END/>DT=queue",
                                "hdr:correlationId=a correlation id of some length"});
    described.setSdmMsgId(PUBSUB_SDM_ID_USER_DEF_BASE);
    std::vector<SdmProperties> sent = {described};
    for (int number = PUBSUB_SDM_ID_MIN; number <= PUBSUB_SDM_ID_MAX; ++number) {
        if (number != 5 && number != 10 && number != 16 && number != 17) {  // as a run sends
            sent.emplace_back().setSdmMsgId(number);
        }
    }
    connectStructuredPair(sent, {described});
    // Larger messages: bursts of 1000 would overrun what the broker holds for
    // a subscriber, and it would discard some of them.
    publish(3000, 200);
    EXPECT_EQ(allocationsOfAWarmRound(3600), 0);
    EXPECT_EQ(finalRxStats().getStat(PerfStats::NUM_MSGS_CRC_SDM_OK), sent_m);
}

}  // namespace
}  // namespace zorvane::pubsub
