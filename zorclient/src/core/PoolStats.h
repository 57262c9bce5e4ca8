// Counters behind zorClient_msg_getStat. The message pools update them as the application
// allocates and frees messages, containers and data blocks; readers may be any thread.
// Each counter is a relaxed atomic on a cache line of its own, so that threads that allocate
// at a high rate do not fight over one line.
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
