// Counters behind zorClient_msg_getStat. The message pools update them as the application
// allocates and frees messages, containers and data blocks; readers may be any thread.
// Each thread counts in a block of its own (no locked instruction, no shared cache line, so
// threads that allocate at a high rate do not slow each other down), and a read sums the blocks
// of all threads and what ended threads left behind. add() costs a few plain instructions;
// read() takes a lock.
#pragma once

#include <cstdint>

#include "zorClientMsg.h"

namespace zorvane::zorclient {

class PoolStats {
  public:
    // True for pool 0 of every statistic, pools 0..4 of FREE_DATA_BLOCKS (the pools with a free
    // list) and pools 0..5 of ALLOC_DATA_BLOCKS.
    static bool isValid(zorClient_msg_stats_t stat, zorClient_uint32_t poolIndex) noexcept;

    // Adds delta (negative to take away) to a statistic. stat and poolIndex must be valid.
    static void add(zorClient_msg_stats_t stat, zorClient_uint32_t poolIndex,
                    std::int64_t delta) noexcept;

    // Current value of a statistic; stat and poolIndex must be valid.
    static zorClient_uint64_t read(zorClient_msg_stats_t stat,
                                   zorClient_uint32_t poolIndex) noexcept;
};

}  // namespace zorvane::zorclient
