#include "core/SessionStats.h"

namespace zorvane::zorclient {

void SessionStats::foldRx(
    const std::array<std::uint64_t, ZORCLIENT_STATS_RX_NUM_STATS>& flowCounters) noexcept {
    for (std::size_t id = 0; id < flowCounters.size(); ++id) {
        if (id == ZORCLIENT_STATS_RX_TOTAL_DATA_MSGS || id == ZORCLIENT_STATS_RX_TOTAL_DATA_BYTES) {
            continue;  // read as sums
        }
        rx_m.counters[id].fetch_add(flowCounters[id], std::memory_order_relaxed);
    }
}

void SessionStats::clear() noexcept {
    rx_m.clear();
    tx_m.clear();
}

}  // namespace zorvane::zorclient
