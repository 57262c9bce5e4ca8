// Per-message work must not touch the heap: this program replaces the global
// allocation functions with counting ones and reads the count around the
// hot calls.
#include <gtest/gtest.h>

#include <atomic>
#include <cstdlib>
#include <memory>
#include <new>
#include <vector>

#include "common/DiskUtils.h"
#include "common/OS.h"
#include "common/PerfStats.h"
#include "common/PublishMessageCycle.h"
#include "common/PublishProperties.h"
#include "common/ToolData.h"

namespace {
std::atomic<long> allocations_s{0};
}

// The replacements come as a whole (new takes from malloc, every delete gives
// back to free); once inlined into each other the compiler cannot see that.
#pragma GCC diagnostic ignored "-Wmismatched-new-delete"

void* operator new(std::size_t size) {
    allocations_s.fetch_add(1, std::memory_order_relaxed);
    if (void* p = std::malloc(size == 0 ? 1 : size)) {
        return p;
    }
    throw std::bad_alloc();
}
void* operator new[](std::size_t size) {
    return operator new(size);
}
void operator delete(void* p) noexcept {
    std::free(p);
}
void operator delete[](void* p) noexcept {
    std::free(p);
}
void operator delete(void* p, std::size_t) noexcept {
    std::free(p);
}
void operator delete[](void* p, std::size_t) noexcept {
    std::free(p);
}

namespace zorvane::pubsub {
namespace {

TEST(HotPathAllocation, DecodeLatencyAndInOrderChecksAllocateNothing) {
    PerfStats stats("hot", 1000000, 1024, 11, 0.0);
    ToolData td, decoded;
    td.setStreamId(3);
    td.setLatency(1);
    char block[ToolData::MAX_ENCODED_SIZE];
    stats.checkOrderPublisherStreamNumber(3, 1, false, false);  // known streams from here on
    stats.checkOrderTopicSequenceNumber(1, false, false);

    const long before = allocations_s.load();
    for (UINT64 id = 2; id < 10000; ++id) {
        td.setMsgId(id);
        decoded.decode(block, block + td.encode(block, sizeof block));
        stats.incLatency(id * 100, id * 100 - decoded.getLatency());
        ASSERT_TRUE(stats.checkOrderPublisherStreamNumber(decoded.getStreamId(), decoded.getMsgId(),
                                                          false, false));
        ASSERT_TRUE(stats.checkOrderTopicSequenceNumber(static_cast<INT64>(id), false, false));
    }
    EXPECT_EQ(allocations_s.load() - before, 0);
    EXPECT_EQ(stats.getStatElement(PerfStats::NUM_LATENCY_MSGS), 9998u);

    stats.checkOrderPublisherStreamNumber(4, 1, false, false);  // the counter does count
    EXPECT_GT(allocations_s.load() - before, 0);
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
    const long before = allocations_s.load();
    for (; id <= 12000; ++id) {
        cycle.nextMessage(id, 1, id);
    }
    EXPECT_EQ(allocations_s.load() - before, 0);
}

}  // namespace
}  // namespace zorvane::pubsub
