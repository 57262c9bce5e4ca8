#include "core/PoolStats.h"

#include <atomic>
#include <mutex>

namespace zorvane::zorclient {

namespace {

constexpr int FREE_BLOCK_POOLS = ZORCLIENT_MSG_NUM_DBQUANTA;
constexpr int ALLOC_BLOCK_POOLS = ZORCLIENT_MSG_NUM_DATA_BLOCK_POOLS;
constexpr int NUM_SLOTS = PoolStats::NUM_SLOTS;

// Every thread that counts has a block of its own: it alone writes it (a plain load and store,
// no locked instruction, no shared cache line), and a reader sums all blocks. A message taken on
// one thread and freed on another leaves +1 in one block and -1 in the other.
struct ThreadCounters {
    std::atomic<std::int64_t> values[NUM_SLOTS] = {};
    ThreadCounters* next_mp = nullptr;
};

// The blocks of running threads, and what ended threads counted. Never destroyed: threads may
// count after static destruction.
struct Registry {
    std::mutex mutex_m;
    ThreadCounters* threads_mp = nullptr;
    std::atomic<std::int64_t> ended_m[NUM_SLOTS] = {};
};

Registry& registry() {
    static auto* registry_s = new Registry();
    return *registry_s;
}

// Counts after this thread's end go to the registry directly.
[[gnu::tls_model("initial-exec")]] thread_local bool threadEnded_s = false;
[[gnu::tls_model("initial-exec")]] thread_local ThreadCounters* counters_s = nullptr;

}  // namespace

constinit thread_local std::atomic<std::int64_t>* PoolStats::threadSlots_s = nullptr;

namespace {

// Folds a thread's block into the registry when the thread ends.
struct ThreadEnd {
    ~ThreadEnd() {
        ThreadCounters* mine_p = counters_s;
        Registry& reg = registry();
        {
            std::lock_guard<std::mutex> lock(reg.mutex_m);
            for (int i = 0; i < NUM_SLOTS; ++i) {
                reg.ended_m[i].fetch_add(mine_p->values[i].load(std::memory_order_relaxed),
                                         std::memory_order_relaxed);
            }
            ThreadCounters** link_pp = &reg.threads_mp;
            while (*link_pp != mine_p) {
                link_pp = &(*link_pp)->next_mp;
            }
            *link_pp = mine_p->next_mp;
        }
        PoolStats::threadSlots_s = nullptr;
        delete mine_p;
        counters_s = nullptr;
        threadEnded_s = true;
    }
};

ThreadCounters* registerThread() {
    [[gnu::tls_model("initial-exec")]] static thread_local ThreadEnd end_s;
    (void)&end_s;  // constructs it, so its destructor runs when the thread ends
    auto* mine_p = new ThreadCounters();
    Registry& reg = registry();
    std::lock_guard<std::mutex> lock(reg.mutex_m);
    mine_p->next_mp = reg.threads_mp;
    reg.threads_mp = mine_p;
    counters_s = mine_p;
    PoolStats::threadSlots_s = mine_p->values;
    return mine_p;
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

void PoolStats::addFirst(int slot, std::int64_t delta) noexcept {
    if (threadEnded_s) {
        registry().ended_m[slot].fetch_add(delta, std::memory_order_relaxed);
        return;
    }
    ThreadCounters* mine_p = nullptr;
    try {
        mine_p = registerThread();
    } catch (...) {  // no memory for a block: count in the shared one
        registry().ended_m[slot].fetch_add(delta, std::memory_order_relaxed);
        return;
    }
    mine_p->values[slot].store(mine_p->values[slot].load(std::memory_order_relaxed) + delta,
                               std::memory_order_relaxed);
}

zorClient_uint64_t PoolStats::read(zorClient_msg_stats_t stat,
                                   zorClient_uint32_t poolIndex) noexcept {
    const int slot = slotOf(stat, poolIndex);
    Registry& reg = registry();
    std::lock_guard<std::mutex> lock(reg.mutex_m);
    std::int64_t sum = reg.ended_m[slot].load(std::memory_order_relaxed);
    for (const ThreadCounters* thread_p = reg.threads_mp; thread_p != nullptr;
         thread_p = thread_p->next_mp) {
        sum += thread_p->values[slot].load(std::memory_order_relaxed);
    }
    return static_cast<zorClient_uint64_t>(sum);
}

}  // namespace zorvane::zorclient
