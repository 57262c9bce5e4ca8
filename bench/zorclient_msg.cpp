// Per-message cost of the messaging library's message objects, as a publisher and a receiver
// pay it: a message taken from the pool, filled and given back, and the tool data map read.
#include <benchmark/benchmark.h>

#include <string>

#include "zorClient.h"
#include "zorClientMsg.h"

namespace {

// The usual payload of a throughput run.
const std::string attachment_s(100, 'a');

void BM_MsgAllocCopyAttachmentFree(benchmark::State& state) {
    for (auto _ : state) {
        zorClient_opaqueMsg_pt msg = nullptr;
        zorClient_msg_alloc(&msg);
        zorClient_msg_setBinaryAttachment(msg, attachment_s.data(), 100);
        zorClient_msg_free(&msg);
    }
}
BENCHMARK(BM_MsgAllocCopyAttachmentFree);

void BM_MsgAllocPointAttachmentFree(benchmark::State& state) {
    for (auto _ : state) {
        zorClient_opaqueMsg_pt msg = nullptr;
        zorClient_msg_alloc(&msg);
        zorClient_msg_setTopicPtr(msg, "bench/topic/0001");
        zorClient_msg_setBinaryAttachmentPtr(msg, attachment_s.data(), 100);
        zorClient_msg_free(&msg);
    }
}
BENCHMARK(BM_MsgAllocPointAttachmentFree);

// Tool data in user properties: five fields written, then walked as a receiver reads them.
void BM_MsgToolDataMapWriteAndWalk(benchmark::State& state) {
    zorClient_opaqueMsg_pt msg = nullptr;
    zorClient_msg_alloc(&msg);
    for (auto _ : state) {
        zorClient_opaqueContainer_pt map = nullptr;
        zorClient_msg_createUserPropertyMap(msg, &map, 100);
        zorClient_container_addInt64(map, 123456789, "l");
        zorClient_container_addInt32(map, 1, "x");
        zorClient_container_addInt32(map, 2, "b");
        zorClient_container_addInt64(map, 42, "m");
        zorClient_container_addInt32(map, 7, "s");
        zorClient_container_closeMapStream(&map);
        zorClient_msg_getUserPropertyMap(msg, &map);
        zorClient_field_t field;
        const char* name = nullptr;
        while (zorClient_container_hasNextField(map)) {
            zorClient_container_getNextField(map, &field, sizeof field, &name);
            benchmark::DoNotOptimize(field.value.int64);
        }
        zorClient_container_closeMapStream(&map);
    }
    zorClient_msg_free(&msg);
}
BENCHMARK(BM_MsgToolDataMapWriteAndWalk);

}  // namespace
