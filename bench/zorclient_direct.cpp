// Direct messaging through the messaging library's embedded broker, as a load run drives it:
// one publisher thread sending 100-byte messages to sessions on one receiving context whose
// events run on the library's own thread. With two processors or more, the publisher runs on
// CPU 0 and the context thread on CPU 1, so that the two never share a processor nor migrate.
//
//   BM_DirectThroughput/N/P  messages per second to N receiving sessions (N deliveries per
//                          send), the receiving context sleeping when idle (P 0) or spinning
//                          (P 1). The publisher keeps at most WINDOW sends ahead of the
//                          deliveries, so the figure is what the path sustains without
//                          discards; it yields while it waits, so that on a busy machine it does
//                          not take the processor from the receiver. The counters sender_cpu_ns
//                          and receiver_cpu_ns give the processor time per message of the
//                          publisher thread and of the rest of the process (the receiving
//                          context's thread), which a busy machine changes less than the rate.
//   BM_DirectLatency       one-way latency from the send to the receive callback at 100,000
//                          messages per second, with the receiving context spinning
//                          ("CONTEXT_BUSY_POLL_US") instead of sleeping; median and 99th
//                          percentile in nanoseconds.
//   BM_DirectPathCost      the same path with sender and receiver on one thread (the bench
//                          thread sends a batch, then runs the context's events): the processor
//                          time of one message from send to the end of its callback, without
//                          the wake-ups and cache transfers between two threads.
#include <benchmark/benchmark.h>
#include <pthread.h>
#include <sched.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstdint>
#include <cstring>
#include <ctime>
#include <string>
#include <thread>
#include <vector>

#include "zorClient.h"
#include "zorClientMsg.h"

namespace {

using Clock = std::chrono::steady_clock;

constexpr const char* TOPIC = "bench/direct/one";
constexpr std::size_t ATTACHMENT_SIZE = 100;

void relax() {
#if defined(__x86_64__) || defined(__i386__)
    __builtin_ia32_pause();
#endif
}

std::int64_t nowNs() {
    return std::chrono::duration_cast<std::chrono::nanoseconds>(Clock::now().time_since_epoch())
        .count();
}

// What the receive callbacks write: only the context thread writes, the publisher reads.
struct ReceiveSide {
    alignas(64) std::atomic<std::uint64_t> delivered{0};
    // Latency runs: one slot per message, written before delivered is raised.
    std::vector<std::int64_t> latencyNs;
};

zorClient_rxMsgCallback_returnCode_t countMessage(zorClient_opaqueSession_pt,
                                                  zorClient_opaqueMsg_pt, void* user_p) {
    auto* side_p = static_cast<ReceiveSide*>(user_p);
    side_p->delivered.store(side_p->delivered.load(std::memory_order_relaxed) + 1,
                            std::memory_order_release);
    return ZORCLIENT_CALLBACK_OK;
}

zorClient_rxMsgCallback_returnCode_t timeMessage(zorClient_opaqueSession_pt,
                                                 zorClient_opaqueMsg_pt msg, void* user_p) {
    const std::int64_t received = nowNs();
    auto* side_p = static_cast<ReceiveSide*>(user_p);
    void* data_p = nullptr;
    zorClient_uint32_t size = 0;
    std::int64_t sent = 0;
    if (zorClient_msg_getBinaryAttachmentPtr(msg, &data_p, &size) == ZORCLIENT_OK &&
        size >= sizeof sent) {
        std::memcpy(&sent, data_p, sizeof sent);
    }
    const std::uint64_t index = side_p->delivered.load(std::memory_order_relaxed);
    if (index < side_p->latencyNs.size()) {
        side_p->latencyNs[index] = received - sent;
    }
    side_p->delivered.store(index + 1, std::memory_order_release);
    return ZORCLIENT_CALLBACK_OK;
}

void ignoreEvent(zorClient_opaqueSession_pt, zorClient_session_eventCallbackInfo_pt, void*) {}

// A receiving context on the library's thread, its receivers and a publisher session. Fails the
// benchmark (state.SkipWithError) when the library refuses something.
class Rig {
  public:
    Rig(benchmark::State& state, int receivers, zorClient_session_rxMsgCallbackFunc_t callback_p,
        const char* busyPollUs, const char* ownThread = "1") {
        zorClient_initialize(ZORCLIENT_LOG_WARNING, nullptr);
        const bool pin = std::thread::hardware_concurrency() >= 2 && std::string(ownThread) == "1";
        std::vector<const char*> contextProps = {"CONTEXT_CREATE_THREAD", ownThread,
                                                 "CONTEXT_BUSY_POLL_US", busyPollUs};
        if (pin) {
            contextProps.insert(contextProps.end(), {"CONTEXT_THREAD_AFFINITY_CPU_LIST", "1"});
            pthread_getaffinity_np(pthread_self(), sizeof savedCpus_m, &savedCpus_m);
            cpu_set_t first;
            CPU_ZERO(&first);
            CPU_SET(0, &first);
            pinned_m = pthread_setaffinity_np(pthread_self(), sizeof first, &first) == 0;
        }
        contextProps.push_back(nullptr);
        zorClient_context_createFuncInfo_t contextInfo{};
        if (zorClient_context_create(contextProps.data(), &context_m, &contextInfo,
                                     sizeof contextInfo) != ZORCLIENT_OK) {
            fail(state);
            return;
        }
        // Room for the whole window, so that the broker never has to discard.
        const char* sessionProps[] = {"SESSION_SOCKET_RCV_BUF_SIZE", "16000000", nullptr};
        for (int i = 0; i <= receivers; ++i) {
            zorClient_session_createFuncInfo_t info{};
            info.eventInfo.callback_p = &ignoreEvent;
            info.rxMsgInfo.callback_p = callback_p;
            info.rxMsgInfo.user_p = &side_m;
            zorClient_opaqueSession_pt session = nullptr;
            if (zorClient_session_create(sessionProps, context_m, &session, &info, sizeof info) !=
                    ZORCLIENT_OK ||
                zorClient_session_connect(session) != ZORCLIENT_OK ||
                (i > 0 && zorClient_session_topicSubscribeExt(session, 0, TOPIC) != ZORCLIENT_OK)) {
                fail(state);
                return;
            }
            sessions_m.push_back(session);
        }
        zorClient_msg_alloc(&msg_m);
        zorClient_msg_setTopicPtr(msg_m, TOPIC);
        attachment_m.assign(ATTACHMENT_SIZE, 'a');
    }
    ~Rig() {
        zorClient_msg_free(&msg_m);
        for (zorClient_opaqueSession_pt& session : sessions_m) {
            zorClient_session_destroy(&session);
        }
        zorClient_context_destroy(&context_m);
        if (pinned_m) {
            pthread_setaffinity_np(pthread_self(), sizeof savedCpus_m, &savedCpus_m);
        }
    }

    zorClient_opaqueContext_pt context() const { return context_m; }

    // Waits until count messages were delivered. It looks seldom: each look takes the
    // counter's line from the receiver, which then waits for it on its next message.
    void awaitDeliveries(std::uint64_t count) const {
        while (side_m.delivered.load(std::memory_order_acquire) < count) {
            for (int i = 0; i < 256; ++i) {
                relax();
            }
            std::this_thread::yield();
        }
    }

    bool send() {
        zorClient_msg_setBinaryAttachmentPtr(msg_m, attachment_m.data(), ATTACHMENT_SIZE);
        return zorClient_session_sendMsg(sessions_m[0], msg_m) == ZORCLIENT_OK;
    }

    ReceiveSide side_m;
    std::string attachment_m;
    bool ok_m = true;

  private:
    void fail(benchmark::State& state) {
        ok_m = false;
        state.SkipWithError(zorClient_getLastErrorInfo()->errorStr);
    }

    zorClient_opaqueContext_pt context_m = nullptr;
    std::vector<zorClient_opaqueSession_pt> sessions_m;  // [0] publishes
    zorClient_opaqueMsg_pt msg_m = nullptr;
    cpu_set_t savedCpus_m{};
    bool pinned_m = false;
};

std::int64_t threadCpuNs() {
    timespec now{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
    return static_cast<std::int64_t>(now.tv_sec) * 1000000000 + now.tv_nsec;
}

std::int64_t processCpuNs() {
    timespec now{};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &now);
    return static_cast<std::int64_t>(now.tv_sec) * 1000000000 + now.tv_nsec;
}

void BM_DirectThroughput(benchmark::State& state) {
    constexpr std::uint64_t BATCH = 20000;
    constexpr std::uint64_t WINDOW = 2048;  // sends ahead of the deliveries
    const auto receivers = static_cast<std::uint64_t>(state.range(0));
    Rig rig(state, static_cast<int>(receivers), &countMessage, state.range(1) != 0 ? "1000" : "0");
    if (!rig.ok_m) {
        return;
    }
    std::uint64_t sent = 0;
    const std::int64_t threadStart = threadCpuNs();
    const std::int64_t processStart = processCpuNs();
    for (auto _ : state) {
        for (std::uint64_t i = 0; i < BATCH; ++i) {
            if ((i & 255) == 0 &&
                sent * receivers - rig.side_m.delivered.load(std::memory_order_acquire) >
                    WINDOW * receivers) {
                rig.awaitDeliveries((sent - WINDOW / 2) * receivers);
            }
            if (!rig.send()) {
                state.SkipWithError(zorClient_getLastErrorInfo()->errorStr);
                return;
            }
            ++sent;
        }
        rig.awaitDeliveries(sent * receivers);
    }
    const double sender = static_cast<double>(threadCpuNs() - threadStart);
    const double all = static_cast<double>(processCpuNs() - processStart);
    state.counters["sender_cpu_ns"] = sender / static_cast<double>(sent);
    state.counters["receiver_cpu_ns"] = (all - sender) / static_cast<double>(sent);
    state.SetItemsProcessed(static_cast<std::int64_t>(sent));
    state.counters["deliveries/s"] =
        benchmark::Counter(static_cast<double>(sent * receivers), benchmark::Counter::kIsRate);
}
BENCHMARK(BM_DirectThroughput)
    ->ArgsProduct({{1, 2, 3, 4}, {0, 1}})
    ->ArgNames({"receivers", "spin"})
    ->UseRealTime();

void BM_DirectPathCost(benchmark::State& state) {
    constexpr std::uint64_t BATCH = 1000;  // within the context queue and the egress
    Rig rig(state, 1, &countMessage, "0", "0");
    if (!rig.ok_m) {
        return;
    }
    std::uint64_t sent = 0;
    for (auto _ : state) {
        for (std::uint64_t i = 0; i < BATCH; ++i) {
            rig.send();
        }
        sent += BATCH;
        while (rig.side_m.delivered.load(std::memory_order_relaxed) < sent) {
            zorClient_context_processEvents(rig.context());
        }
    }
    state.SetItemsProcessed(static_cast<std::int64_t>(sent));
}
BENCHMARK(BM_DirectPathCost);

void BM_DirectLatency(benchmark::State& state) {
    constexpr auto INTERVAL = std::chrono::microseconds(10);  // 100,000 messages per second
    Rig rig(state, 1, &timeMessage, "1000");
    if (!rig.ok_m) {
        return;
    }
    rig.side_m.latencyNs.assign(static_cast<std::size_t>(state.max_iterations), 0);
    std::uint64_t sent = 0;
    auto next = Clock::now();
    for (auto _ : state) {
        while (Clock::now() < next) {
        }
        next += INTERVAL;
        const std::int64_t stamp = nowNs();
        std::memcpy(rig.attachment_m.data(), &stamp, sizeof stamp);
        if (!rig.send()) {
            state.SkipWithError(zorClient_getLastErrorInfo()->errorStr);
            return;
        }
        ++sent;
    }
    rig.awaitDeliveries(sent);
    std::vector<std::int64_t>& latencies = rig.side_m.latencyNs;
    latencies.resize(sent);
    std::sort(latencies.begin(), latencies.end());
    state.counters["median_ns"] = static_cast<double>(latencies[sent / 2]);
    state.counters["p99_ns"] = static_cast<double>(latencies[sent * 99 / 100]);
    state.counters["max_ns"] = static_cast<double>(latencies.back());
}
BENCHMARK(BM_DirectLatency)->Iterations(200000)->UseRealTime();

}  // namespace
