// Counters behind zorClient_msg_getStat. The message pools update them as the application
// allocates and frees messages, containers and data blocks; readers may be any thread.
// Each thread counts in a block of its own (no locked instruction, no shared cache line, so
// threads that allocate at a high rate do not slow each other down), and a read sums the blocks
// of all threads and what ended threads left behind. add() is inline: once a thread has its
// block, a count is a thread-local load and a plain add; read() takes a lock.
#pragma once

#include <atomic>
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
                    std::int64_t delta) noexcept {
        const int slot = slotOf(stat, poolIndex);
        std::atomic<std::int64_t>* mine_p = threadSlots_s;
        if (mine_p == nullptr) {
            addFirst(slot, delta);
            return;
        }
        // Only this thread writes its block: no locked instruction.
        mine_p[slot].store(mine_p[slot].load(std::memory_order_relaxed) + delta,
                           std::memory_order_relaxed);
    }

    // Current value of a statistic; stat and poolIndex must be valid.
    static zorClient_uint64_t read(zorClient_msg_stats_t stat,
                                   zorClient_uint32_t poolIndex) noexcept;

  private:
    static constexpr int FREE_BLOCK_SLOTS = ZORCLIENT_MSG_NUM_DBQUANTA;
    static constexpr int ALLOC_BLOCK_SLOTS = ZORCLIENT_MSG_NUM_DATA_BLOCK_POOLS;
    // Slots: one per statistic up to ALLOC_CONTAINERS, then the per-pool block counters.
    static constexpr int FIRST_FREE_BLOCK_SLOT = ZORCLIENT_MSG_STATS_FREE_DATA_BLOCKS;
    static constexpr int FIRST_ALLOC_BLOCK_SLOT = FIRST_FREE_BLOCK_SLOT + FREE_BLOCK_SLOTS;

  public:
    static constexpr int NUM_SLOTS = FIRST_ALLOC_BLOCK_SLOT + ALLOC_BLOCK_SLOTS;

  private:
    static constexpr int slotOf(zorClient_msg_stats_t stat, zorClient_uint32_t poolIndex) noexcept {
        return stat == ZORCLIENT_MSG_STATS_FREE_DATA_BLOCKS
                   ? FIRST_FREE_BLOCK_SLOT + static_cast<int>(poolIndex)
               : stat == ZORCLIENT_MSG_STATS_ALLOC_DATA_BLOCKS
                   ? FIRST_ALLOC_BLOCK_SLOT + static_cast<int>(poolIndex)
                   : static_cast<int>(stat);
    }
    // The first count of a thread (which gets its block here), and counts of a thread whose
    // block was already folded into the registry at its end.
    static void addFirst(int slot, std::int64_t delta) noexcept;

  public:
    // The calling thread's block (NUM_SLOTS values); null until its first count and after its
    // end. Set only by the registration in PoolStats.cpp.
    static constinit thread_local std::atomic<std::int64_t>* threadSlots_s;
};

}  // namespace zorvane::zorclient
