// Per-message cost of the broker boundary: the copy a send makes and the message a delivery
// makes from it, with the pools warm.
#include <benchmark/benchmark.h>

#include <string>

#include "core/WireMessage.h"
#include "zorClientMsg.h"

namespace {

using zorvane::zorclient::DeliveryInfo;
using zorvane::zorclient::WireMessage;

const std::string attachment_s(100, 'a');

// A publisher's message as a throughput run fills it.
zorClient_opaqueMsg_pt typicalMessage() {
    zorClient_opaqueMsg_pt msg = nullptr;
    zorClient_msg_alloc(&msg);
    zorClient_msg_setTopicPtr(msg, "bench/topic/0001");
    zorClient_msg_setBinaryAttachmentPtr(msg, attachment_s.data(), 100);
    return msg;
}

// One send to one receiver: snapshot, delivery, the receiver's free, the broker's release.
void BM_SnapshotMaterializeFree(benchmark::State& state) {
    zorClient_opaqueMsg_pt msg = typicalMessage();
    const DeliveryInfo delivery;
    for (auto _ : state) {
        WireMessage* wire = nullptr;
        WireMessage::snapshot(msg, &wire);
        zorClient_opaqueMsg_pt received = nullptr;
        wire->materialize(delivery, &received);
        wire->release();
        zorClient_msg_free(&received);
    }
    zorClient_msg_free(&msg);
}
BENCHMARK(BM_SnapshotMaterializeFree);

// One send to state.range(0) receivers sharing the copy.
void BM_SnapshotFanOut(benchmark::State& state) {
    zorClient_opaqueMsg_pt msg = typicalMessage();
    const DeliveryInfo delivery;
    const auto receivers = state.range(0);
    for (auto _ : state) {
        WireMessage* wire = nullptr;
        WireMessage::snapshot(msg, &wire);
        for (int64_t r = 0; r < receivers; ++r) {
            zorClient_opaqueMsg_pt received = nullptr;
            wire->materialize(delivery, &received);
            zorClient_msg_free(&received);
        }
        wire->release();
    }
    state.SetItemsProcessed(state.iterations() * receivers);
    zorClient_msg_free(&msg);
}
BENCHMARK(BM_SnapshotFanOut)->Arg(1)->Arg(8);

}  // namespace
