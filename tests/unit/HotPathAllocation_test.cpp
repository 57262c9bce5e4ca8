// Per-message work must not touch the heap: this program counts the
// allocations made while the hot calls run.
#include <gtest/gtest.h>

#include <memory>
#include <vector>

#include "common/CRC.h"
#include "common/CliProperties.h"
#include "common/DiskUtils.h"
#include "common/OS.h"
#include "common/PerfStats.h"
#include "common/PublishMessageCycle.h"
#include "common/PublishProperties.h"
#include "common/ToolData.h"
#include "tests/unit/NullClient.h"
#include "tests/unit/TestClient.h"
#include "vexload/ClientPubThread.h"
#include "zorclient/tests/CountingAllocator.h"

namespace zorvane::pubsub {
namespace {

using zctest::AllocationCount;

TEST(HotPathAllocation, DecodeLatencyAndInOrderChecksAllocateNothing) {
    PerfStats stats("hot", 1000000, 1024, 11, 0.0);
    ToolData td, decoded;
    td.setStreamId(3);
    td.setLatency(1);
    char block[ToolData::MAX_ENCODED_SIZE];
    stats.checkOrderPublisherStreamNumber(3, 1, false, false);  // known streams from here on
    stats.checkOrderTopicSequenceNumber(1, false, false);

    AllocationCount count;
    for (UINT64 id = 2; id < 10000; ++id) {
        td.setMsgId(id);
        decoded.decode(block, block + td.encode(block, sizeof block));
        stats.incLatency(id * 100, id * 100 - decoded.getLatency());
        ASSERT_TRUE(stats.checkOrderPublisherStreamNumber(decoded.getStreamId(), decoded.getMsgId(),
                                                          false, false));
        ASSERT_TRUE(stats.checkOrderTopicSequenceNumber(static_cast<INT64>(id), false, false));
    }
    EXPECT_EQ(count.allocations(), 0);
    EXPECT_EQ(stats.getStatElement(PerfStats::NUM_LATENCY_MSGS), 9998u);

    stats.checkOrderPublisherStreamNumber(4, 1, false, false);  // the counter does count
    EXPECT_GT(count.allocations(), 0);
}

TEST(HotPathAllocation, WarmMessageCycleWithJitterAndUniqueContentsAllocatesNothing) {
    std::unique_ptr<UINT16[]> state_p(OS::randomInitState(3));
    std::vector<MsgProperties> msgs(3);
    for (MsgProperties& msg : msgs) {
        msg.setAttachment(DiskUtils::generateAttachment(100));
        msg.setOriginalAttachmentSize(100);
        msg.setWantUniqueAttachmentContents(true);
    }
    msgs[0].setTopicProbabilityWeight(3.0);
    PublishProperties props;
    props.setUseRandomMessageOrder(true);
    props.setAttachmentSizeJitterFactor(0.5);
    props.setPartitionKeyList({"key-1", "key-2"});
    props.setMsgObjTypeList("bt");
    PublishMessageCycle cycle;
    cycle.configure(msgs, props, state_p.get());
    INT64 id = 1;
    for (; id <= 2000; ++id) {  // every attachment reaches its largest size
        cycle.nextMessage(id, 1, id);
    }
    AllocationCount count;
    for (; id <= 12000; ++id) {
        cycle.nextMessage(id, 1, id);
    }
    EXPECT_EQ(count.allocations(), 0);
}

// The receive path of a client: the fast path (latency and first-to-last
// samples) and the slow path with order and CRC checks of in-order
// messages. The message double itself allocates nothing for them.
TEST(HotPathAllocation, ProcessMessageAllocatesNothingOnEitherPath) {
    const ClientProperties props(CliProperties(CliProperties::VEX_LOAD, "1.0.0"));
    StatsCustomizationProperties fast;
    fast.setNumLatencyBuckets(1024);
    fast.setLatencyGranularityFactor(11);
    fast.setWantLatency(true);
    fast.setFirstLastLatencyFanout(1);
    StatsCustomizationProperties slow = fast;
    slow.setFirstLastLatencyFanout(0);
    slow.setWantOrderCheckPublisherStreamNumber(true);
    slow.setWantOrderCheckTopicSequenceNumber(true);
    slow.setWantPayloadCheck(true);

    for (const StatsCustomizationProperties& rx : {fast, slow}) {
        TestClient client(props, 1, 1000000, rx, nullptr);
        TestMessage msg;
        msg.payload_m = "<body/>";
        const std::string userBytes(64, 'u');
        ToolData td;
        td.setStreamId(1);
        td.setLatency(1);
        td.setCrcXmlPayload(CRC::crc32(msg.payload_m));
        td.setCrcBinAttach(CRC::crc32(userBytes));
        auto receive = [&](UINT64 id) {
            td.setMsgId(id);
            msg.setAttachmentRecord(td, userBytes);
            msg.topicSequence_m = static_cast<INT64>(id);
            client.processMessage(&msg, client.receiveStats());
        };
        receive(1);  // the streams' first messages create their order state

        AllocationCount count;
        for (UINT64 id = 2; id < 1000; ++id) {
            receive(id);
        }
        EXPECT_EQ(count.allocations(), 0) << "slow path: " << client.wantSlowPath();
        const PerfStats& stats = client.getRxStats(false);
        EXPECT_EQ(stats.getStatElement(PerfStats::NUM_LATENCY_MSGS), 999U);
        EXPECT_EQ(stats.getStatElement(PerfStats::NUM_MSGS_CRC_OK),
                  client.wantSlowPath() ? 999U : 0U);
    }
}

// Notes the allocation count at the first and the last send of a run.
class AllocationWatchingClient : public NullClient {
  public:
    using NullClient::NullClient;
    long atFirstSend_m = -1, atLastSend_m = -1;

  protected:
    void publishMsgImpl(MsgProperties*, INT32) override { note(); }
    void publishSendMultipleImpl(std::vector<MsgProperties>&, bool, INT32) override { note(); }

  private:
    void note() {
        atLastSend_m = zctest::countedAllocations();
        if (atFirstSend_m < 0) {
            atFirstSend_m = atLastSend_m;
        }
    }
};

TEST(HotPathAllocation, PublishLoopAllocatesNothingPerMessage) {
    ClientProperties clientProps = NullClient::defaultProps();
    clientProps.setRateCheckInterval(1);  // the real clock is read for every message
    StatsCustomizationProperties stats;
    stats.setWantOrderCheckPublisherStreamNumber(true);
    stats.setWantLatency(true);
    stats.setWantPayloadCheck(true);
    std::vector<MsgProperties> msgs(10);
    for (MsgProperties& msg : msgs) {
        msg.setTopic("hot/path");
        msg.setOriginalAttachmentSize(100);
        msg.setWantUniqueAttachmentContents(true);
    }
    for (INT32 sendVector : {0, 10}) {
        AllocationWatchingClient client(clientProps, 1, 1000000, stats, nullptr);
        ClientPubThread thread(&client, 0, 5);
        PublishProperties props;
        props.setNumMsgsPerClient(20000);
        props.setMsgRate(1e9);  // always behind: every wait returns at once
        props.setSendVectorSize(sendVector);
        props.setUseRandomMessageOrder(true);
        props.setAttachmentSizeJitterFactor(0.5);
        props.setWantUniqueAttachmentContents(true);
        props.setPartitionKeyList({"a partition key too long for any short string", "k"});
        props.setMsgObjTypeList("bm");
        props.setAckImmediatelyInterval(7);
        thread.configurePublish(msgs, props, stats, "");
        const AllocationCount armed;  // the client reads the running count itself
        thread.start();
        thread.wait();
        EXPECT_EQ(client.atLastSend_m - client.atFirstSend_m, 0) << "send vector " << sendVector;
    }
}

}  // namespace
}  // namespace zorvane::pubsub
