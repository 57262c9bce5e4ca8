// Per-message cost of the publish loop at full speed: everything the
// publisher thread does around a send, against a client whose sends do
// nothing. One benchmark iteration is a whole run of MSGS_PER_RUN messages
// on a started thread; "per_msg" is the wall time per message.
#include <benchmark/benchmark.h>

#include <string>
#include <vector>

#include "common/MsgProperties.h"
#include "common/OS.h"
#include "common/PublishProperties.h"
#include "common/StatsCustomizationProperties.h"
#include "tests/unit/NullClient.h"
#include "vexload/ClientPubThread.h"

namespace zorvane::pubsub {
namespace {

constexpr INT64 MSGS_PER_RUN = 200000;

struct LoopSetup {
    double rate = 0.0;  // 0: unpaced
    bool toolData = false;
    INT32 sendVector = 0;
    bool randomOrder = false;
};

void runLoop(benchmark::State& state, const LoopSetup& setup) {
    ClientProperties clientProps = NullClient::defaultProps();
    clientProps.setRateCheckInterval(1);
    StatsCustomizationProperties stats;
    stats.setWantOrderCheckPublisherStreamNumber(setup.toolData);
    stats.setWantLatency(setup.toolData);
    NullClient client(clientProps, 1, OS::getCpuSpeedInHz(), stats, nullptr);
    ClientPubThread thread(&client, 0, 1);

    std::vector<MsgProperties> msgs(64);
    for (MsgProperties& msg : msgs) {
        msg.setTopic("bench/topic");
        msg.setAttachment(std::string(100, 'x'));
        msg.setOriginalAttachmentSize(100);
    }
    PublishProperties props;
    props.setNumMsgsPerClient(MSGS_PER_RUN);
    props.setMsgRate(setup.rate);
    props.setSendVectorSize(setup.sendVector);
    props.setUseRandomMessageOrder(setup.randomOrder);
    if (setup.randomOrder) {
        props.setPartitionKeyList({"key-a", "key-b", "key-c"});
    }
    for (auto _ : state) {
        state.PauseTiming();
        thread.configurePublish(msgs, props, stats, "");
        state.ResumeTiming();
        thread.start();
        thread.wait();
    }
    state.SetItemsProcessed(state.iterations() * MSGS_PER_RUN);
    state.counters["per_msg"] = benchmark::Counter(
        static_cast<double>(MSGS_PER_RUN),
        benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
}

// The bare loop: id, list position, one send call.
void BM_PubLoopUnpaced(benchmark::State& state) {
    runLoop(state, {});
}
BENCHMARK(BM_PubLoopUnpaced)->Unit(benchmark::kMillisecond)->UseRealTime();

// Plus the tool data of each message (message id, stream id, time stamp).
void BM_PubLoopToolData(benchmark::State& state) {
    runLoop(state, {.toolData = true});
}
BENCHMARK(BM_PubLoopToolData)->Unit(benchmark::kMillisecond)->UseRealTime();

// Plus a wait for every message on the real clock, always already due: the
// cost of reading the schedule when the rate is checked per message.
void BM_PubLoopRateCheckedEveryMsg(benchmark::State& state) {
    runLoop(state, {.rate = 1e9, .toolData = true});
}
BENCHMARK(BM_PubLoopRateCheckedEveryMsg)->Unit(benchmark::kMillisecond)->UseRealTime();

// Messages collected 50 at a time for vectored sends.
void BM_PubLoopSendVector50(benchmark::State& state) {
    runLoop(state, {.toolData = true, .sendVector = 50});
}
BENCHMARK(BM_PubLoopSendVector50)->Unit(benchmark::kMillisecond)->UseRealTime();

// Weighted random order, which also regenerates each 100-byte attachment,
// and partition keys.
void BM_PubLoopRandomOrder(benchmark::State& state) {
    runLoop(state, {.toolData = true, .randomOrder = true});
}
BENCHMARK(BM_PubLoopRandomOrder)->Unit(benchmark::kMillisecond)->UseRealTime();

}  // namespace
}  // namespace zorvane::pubsub
