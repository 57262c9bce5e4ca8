// Per-message cost of AbstractClient::processMessage through the test
// doubles: the fast path of a sink measuring latency, and the slow path
// with order and CRC checks. The message double costs no more than a
// binding's view (pointer bounds, a decode of the attachment).
#include <benchmark/benchmark.h>

#include <cstring>
#include <string>

#include "common/CRC.h"
#include "common/CliProperties.h"
#include "common/OS.h"
#include "tests/unit/TestClient.h"

namespace zorvane::pubsub {
namespace {

// The report's histogram defaults at a 3 GHz clock, no warm-up.
StatsCustomizationProperties latencyRun() {
    StatsCustomizationProperties rx;
    rx.setNumLatencyBuckets(1024);
    rx.setLatencyGranularityFactor(11);
    rx.setWantLatency(true);
    return rx;
}

// Where the message id sits in the binary record: behind the header and
// whichever of body CRC, stream id and attachment CRC are present.
std::size_t msgIdOffset(const ToolData& td) {
    return ToolData::HEADER_SIZE + (td.hasCrcXmlPayload() ? 4 : 0) + (td.hasStreamId() ? 4 : 0) +
           (td.hasCrcBinAttach() ? 4 : 0);
}

void writeMsgId(std::string& attachment, std::size_t offset, UINT64 msgId) {
    const UINT64 bigEndian = __builtin_bswap64(msgId);
    std::memcpy(attachment.data() + offset, &bigEndian, sizeof bigEndian);
}

// Each iteration receives the next message of one publisher stream (the id
// is stored into the record in place: a byte swap and a store).
void runStream(benchmark::State& state, const StatsCustomizationProperties& rx,
               bool withPayloadCheck) {
    const ClientProperties props(CliProperties(CliProperties::VEX_LOAD, "1.0.0"));
    TestClient client(props, 1, 3000000000ULL, rx, nullptr);
    TestMessage msg;
    const std::string userBytes(100, 'a');
    ToolData td;
    td.setStreamId(1);
    td.setMsgId(1);
    td.setLatency(OS::numClockCycles());
    if (withPayloadCheck) {
        msg.payload_m = std::string(100, 'b');
        td.setCrcXmlPayload(CRC::crc32(msg.payload_m));
        td.setCrcBinAttach(CRC::crc32(userBytes));
    }
    msg.setAttachmentRecord(td, userBytes);
    const std::size_t offset = msgIdOffset(td);
    UINT64 msgId = 1;
    for (auto _ : state) {
        writeMsgId(msg.attachment_m, offset, ++msgId);
        client.processMessage(&msg, client.receiveStats());
    }
    const PerfStats& stats = client.getRxStats(false);
    const auto& orderData = stats.getOrderData();
    if (!orderData.empty() && !orderData.at(1).getLostMsgs().empty()) {
        state.SkipWithError("in-order stream reported loss");
    }
    if (withPayloadCheck && stats.getStatElement(PerfStats::NUM_MSGS_CRC_FAIL) != 0) {
        state.SkipWithError("CRC check failed");
    }
    state.counters["slowPath"] = client.wantSlowPath() ? 1 : 0;
}

void BM_ProcessMessageFastPath(benchmark::State& state) {
    runStream(state, latencyRun(), false);
}
BENCHMARK(BM_ProcessMessageFastPath);

void BM_ProcessMessageSlowPathOrderAndCrc(benchmark::State& state) {
    StatsCustomizationProperties rx = latencyRun();
    rx.setWantOrderCheckPublisherStreamNumber(true);
    rx.setWantPayloadCheck(true);
    runStream(state, rx, true);
}
BENCHMARK(BM_ProcessMessageSlowPathOrderAndCrc);

}  // namespace
}  // namespace zorvane::pubsub
