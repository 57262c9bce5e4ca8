// The binding's part of receiving must not touch the heap per message: this
// program replaces the global allocation functions with counting ones and
// reads the count around the receive callback.
#include <gtest/gtest.h>

#include <atomic>
#include <cstdlib>
#include <new>

#include "client/zcore/Client.h"
#include "client/zcore/Context.h"
#include "tests/unit/ZcoreTestSupport.h"
#include "zorClientMsg.h"

namespace {
std::atomic<long> allocations_s{0};
}

#pragma GCC diagnostic ignored "-Wmismatched-new-delete"

void* operator new(std::size_t size) {
    allocations_s.fetch_add(1, std::memory_order_relaxed);
    if (void* p = std::malloc(size == 0 ? 1 : size)) {
        return p;
    }
    throw std::bad_alloc();
}
// The array forms fall back on these.
void operator delete(void* p) noexcept {
    std::free(p);
}
void operator delete(void* p, std::size_t) noexcept {
    std::free(p);
}

namespace zorvane::pubsub {
namespace {

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

        const long before = allocations_s.load();
        for (UINT64 id = 2; id <= 1000; ++id) {
            receive(id);
        }
        EXPECT_EQ(allocations_s.load() - before, 0);
        const PerfStats& stats = client.getRxStats(false);
        EXPECT_EQ(stats.getStat(PerfStats::NUM_MSGS_ORDER_CHECKED), 1000U);
        EXPECT_EQ(stats.getStat(PerfStats::NUM_MSGS_W_XML_PAYLOAD), 1000U);
        zorClient_msg_free(&msg);
    }
    zorClient_cleanup();
}

}  // namespace
}  // namespace zorvane::pubsub
