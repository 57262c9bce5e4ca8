// Per-message cost of the measurement core: what every received message
// pays with latency measurement and order checking on.
#include <benchmark/benchmark.h>

#include <cstring>
#include <string>

#include "common/CRC.h"
#include "common/OS.h"
#include "common/PerfStats.h"
#include "common/ToolData.h"

namespace zorvane::pubsub {
namespace {

// The usual record of a latency and order run: stream id, message id and
// send time stamp, 28 bytes, at the start of a 100-byte attachment.
ToolData typicalRecord(UINT64 msgId) {
    ToolData td;
    td.setStreamId(1);
    td.setMsgId(msgId);
    td.setLatency(0x0102030405060708ULL);
    return td;
}

// Offset of the message id inside that record: header, stream id.
constexpr std::size_t MSG_ID_OFFSET = 12;

void writeMsgId(char* block, UINT64 msgId) {
    const UINT64 bigEndian = __builtin_bswap64(msgId);
    std::memcpy(block + MSG_ID_OFFSET, &bigEndian, sizeof bigEndian);
}

void BM_ToolDataDecode(benchmark::State& state) {
    char attachment[100] = {};
    typicalRecord(7).encode(attachment, sizeof attachment);
    ToolData td;
    for (auto _ : state) {
        benchmark::DoNotOptimize(attachment);
        td.decode(attachment, attachment + sizeof attachment);
        benchmark::DoNotOptimize(td);
    }
}
BENCHMARK(BM_ToolDataDecode);

void BM_ToolDataEncode(benchmark::State& state) {
    ToolData td = typicalRecord(7);
    char buffer[ToolData::MAX_ENCODED_SIZE];
    for (auto _ : state) {
        benchmark::DoNotOptimize(td);
        benchmark::DoNotOptimize(td.encode(buffer, sizeof buffer));
        benchmark::ClobberMemory();
    }
}
BENCHMARK(BM_ToolDataEncode);

void BM_Crc32(benchmark::State& state) {
    std::string data(static_cast<std::size_t>(state.range(0)), '\0');
    for (std::size_t i = 0; i < data.size(); ++i) {
        data[i] = static_cast<char>(i * 31 + 7);
    }
    for (auto _ : state) {
        benchmark::DoNotOptimize(data.data());
        benchmark::DoNotOptimize(CRC::crc32(data));
    }
    state.SetBytesProcessed(state.iterations() * state.range(0));
}
BENCHMARK(BM_Crc32)->Arg(100)->Arg(1024);

void BM_IncLatency(benchmark::State& state) {
    // The report's defaults: 1024 buckets of 2^11 ticks, at a 3 GHz clock.
    PerfStats stats("bench", 3000000000ULL, 1024, 11, 0.0);
    UINT64 now = 1;
    for (auto _ : state) {
        now += 997;
        stats.incLatency(now, now & 0xFFFFF);  // spread over the buckets
    }
    benchmark::DoNotOptimize(stats.getTotalLatency());
}
BENCHMARK(BM_IncLatency);

void BM_CheckOrderInOrder(benchmark::State& state) {
    PerfStats stats("bench", 3000000000ULL, 1024, 11, 0.0);
    UINT64 msgId = 1;
    stats.checkOrderPublisherStreamNumber(1, msgId, false, false);
    for (auto _ : state) {
        benchmark::DoNotOptimize(stats.checkOrderPublisherStreamNumber(1, ++msgId, false, false));
    }
    if (!stats.getOrderData().at(1).getLostMsgs().empty()) {
        state.SkipWithError("in-order stream reported loss");
    }
}
BENCHMARK(BM_CheckOrderInOrder);

// decode + incLatency + in-order check of each message. Each iteration
// stores the next message id into the attachment (a byte swap and a store)
// so that every message is a new, in-order one. withClock also reads the
// receive time stamp as the receive path does.
template <bool withClock>
void BM_ReceiveHotPath(benchmark::State& state) {
    PerfStats stats("bench", 3000000000ULL, 1024, 11, 0.0);
    char attachment[100] = {};
    UINT64 msgId = 1;
    typicalRecord(msgId).encode(attachment, sizeof attachment);
    stats.checkOrderPublisherStreamNumber(1, msgId, false, false);
    ToolData td;
    UINT64 now = 0x0102030405060708ULL;
    for (auto _ : state) {
        writeMsgId(attachment, ++msgId);
        now = withClock ? OS::numClockCycles() : now + 1000;
        td.decode(attachment, attachment + sizeof attachment);
        if (td.hasLatency()) {
            stats.incLatency(now, now - td.getLatency());
        }
        if (td.hasMsgId()) {
            benchmark::DoNotOptimize(stats.checkOrderPublisherStreamNumber(
                td.getStreamId(), td.getMsgId(), false, false));
        }
    }
    if (!stats.getOrderData().at(1).getLostMsgs().empty()) {
        state.SkipWithError("in-order stream reported loss");
    }
}
BENCHMARK(BM_ReceiveHotPath<false>)->Name("BM_ReceiveHotPath");
BENCHMARK(BM_ReceiveHotPath<true>)->Name("BM_ReceiveHotPathWithClockRead");

}  // namespace
}  // namespace zorvane::pubsub
