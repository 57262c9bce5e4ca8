#include "core/PoolStats.h"

#include <atomic>

namespace zorvane::zorclient {

namespace {

constexpr int FREE_BLOCK_POOLS = ZORCLIENT_MSG_NUM_DBQUANTA;
constexpr int ALLOC_BLOCK_POOLS = ZORCLIENT_MSG_NUM_DATA_BLOCK_POOLS;
// Slots: one per statistic up to ALLOC_CONTAINERS, then the per-pool block counters.
constexpr int FIRST_FREE_BLOCK_SLOT = ZORCLIENT_MSG_STATS_FREE_DATA_BLOCKS;
constexpr int FIRST_ALLOC_BLOCK_SLOT = FIRST_FREE_BLOCK_SLOT + FREE_BLOCK_POOLS;
constexpr int NUM_SLOTS = FIRST_ALLOC_BLOCK_SLOT + ALLOC_BLOCK_POOLS;

struct alignas(64) Counter {
    std::atomic<zorClient_uint64_t> value{0};
};
Counter counters_s[NUM_SLOTS];

int slotOf(zorClient_msg_stats_t stat, zorClient_uint32_t poolIndex) noexcept {
    if (stat == ZORCLIENT_MSG_STATS_FREE_DATA_BLOCKS) {
        return FIRST_FREE_BLOCK_SLOT + static_cast<int>(poolIndex);
    }
    if (stat == ZORCLIENT_MSG_STATS_ALLOC_DATA_BLOCKS) {
        return FIRST_ALLOC_BLOCK_SLOT + static_cast<int>(poolIndex);
    }
    return static_cast<int>(stat);
}

}  // namespace

bool PoolStats::isValid(zorClient_msg_stats_t stat, zorClient_uint32_t poolIndex) noexcept {
    switch (stat) {
        case ZORCLIENT_MSG_STATS_FREE_DATA_BLOCKS:
            return poolIndex < static_cast<zorClient_uint32_t>(FREE_BLOCK_POOLS);
        case ZORCLIENT_MSG_STATS_ALLOC_DATA_BLOCKS:
            return poolIndex < static_cast<zorClient_uint32_t>(ALLOC_BLOCK_POOLS);
        default:
            return stat >= ZORCLIENT_MSG_STATS_TOTAL_MEMORY &&
                   stat < ZORCLIENT_MSG_STATS_FREE_DATA_BLOCKS && poolIndex == 0;
    }
}

void PoolStats::add(zorClient_msg_stats_t stat, zorClient_uint32_t poolIndex,
                    std::int64_t delta) noexcept {
    // Unsigned wrap-around makes a negative delta a subtraction.
    counters_s[slotOf(stat, poolIndex)].value.fetch_add(static_cast<zorClient_uint64_t>(delta),
                                                        std::memory_order_relaxed);
}

zorClient_uint64_t PoolStats::read(zorClient_msg_stats_t stat,
                                   zorClient_uint32_t poolIndex) noexcept {
    return counters_s[slotOf(stat, poolIndex)].value.load(std::memory_order_relaxed);
}

}  // namespace zorvane::zorclient
