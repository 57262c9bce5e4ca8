#include "core/DataBlock.h"

#include <atomic>
#include <new>

#include "api/ProcessConfig.h"
#include "core/FreeStack.h"
#include "core/PoolStats.h"
#include "core/ThreadCache.h"

#if defined(__SANITIZE_ADDRESS__)
#include <sanitizer/asan_interface.h>
// Blocks on a free list are poisoned, so that a read through a stale pointer into a released
// part is reported as the use after free it is, although the memory stays with the pool.
#define ZC_POISON(address, size) ASAN_POISON_MEMORY_REGION(address, size)
#define ZC_UNPOISON(address, size) ASAN_UNPOISON_MEMORY_REGION(address, size)
#else
#define ZC_POISON(address, size) ((void)(address), (void)(size))
#define ZC_UNPOISON(address, size) ((void)(address), (void)(size))
#endif

namespace zorvane::zorclient {

namespace {

constexpr int LARGE_POOL = ZORCLIENT_MSG_NUM_DBQUANTA;

// The shared free list of one quantum; threads take and give blocks through their ThreadCache.
// Blocks of broker copies are taken on the sending thread and given back on the receiving one:
// the list holds pointers, so that taking a batch does not read the blocks themselves.
struct QuantumPool {
    FreeStack<DataBlock*> free_m;
    std::atomic<std::uint32_t> quantum_m{0};

    std::size_t takeBatch(DataBlock** out_p, std::size_t most) noexcept {
        return free_m.takeBatch(out_p, most);
    }
    void giveBatch(DataBlock* const* blocks_p, std::size_t count) noexcept {
        free_m.giveBatch(blocks_p, count);
    }
};

using BlockCache = ThreadCache<QuantumPool, DataBlock*>;

BlockCache& cacheOf(int index) noexcept {
    [[gnu::tls_model(
        "initial-exec")]] static thread_local BlockCache caches_s[ZORCLIENT_MSG_NUM_DBQUANTA];
    return caches_s[index];
}

// Never destroyed: blocks may still be released by threads that outlive static destruction.
QuantumPool* pools() {
    static QuantumPool* pools_s = [] {
        auto* created_p = new QuantumPool[ZORCLIENT_MSG_NUM_DBQUANTA];
        for (int i = 0; i < ZORCLIENT_MSG_NUM_DBQUANTA; ++i) {
            created_p[i].quantum_m.store(ProcessConfig::DEFAULT_QUANTA[i]);
        }
        return created_p;
    }();
    return pools_s;
}

std::int64_t signedSize(std::uint32_t capacity) noexcept {
    return static_cast<std::int64_t>(capacity);
}

void countOut(const DataBlock* block_p, int sign) noexcept {
    if (block_p->owner() == BlockOwner::APPLICATION) {
        PoolStats::add(ZORCLIENT_MSG_STATS_ALLOC_DATA_BLOCKS,
                       static_cast<zorClient_uint32_t>(block_p->poolIndex()), sign);
        PoolStats::add(ZORCLIENT_MSG_STATS_ALLOC_MEMORY, 0, sign * signedSize(block_p->capacity()));
    }
}

}  // namespace

int DataBlockPools::poolIndexFor(std::size_t size) noexcept {
    QuantumPool* pools_p = pools();
    for (int i = 0; i < ZORCLIENT_MSG_NUM_DBQUANTA; ++i) {
        if (size <= pools_p[i].quantum_m.load(std::memory_order_relaxed)) {
            return i;
        }
    }
    return LARGE_POOL;
}

std::uint32_t DataBlockPools::quantum(int index) noexcept {
    return pools()[index].quantum_m.load(std::memory_order_relaxed);
}

void DataBlockPools::configure(
    const std::array<std::uint32_t, ZORCLIENT_MSG_NUM_DBQUANTA>& quanta) {
    QuantumPool* pools_p = pools();
    for (int i = 0; i < ZORCLIENT_MSG_NUM_DBQUANTA; ++i) {
        pools_p[i].quantum_m.store(quanta[static_cast<std::size_t>(i)]);
    }
}

DataBlock* DataBlockPools::acquire(std::size_t size, BlockOwner owner) {
    if (size > MAX_BLOCK_SIZE) {
        throw std::bad_alloc();
    }
    const int index = poolIndexFor(size);
    DataBlock* block_p = nullptr;
    std::uint32_t capacity = static_cast<std::uint32_t>(size);
    if (index < LARGE_POOL) {
        QuantumPool& pool = pools()[index];
        capacity = pool.quantum_m.load(std::memory_order_relaxed);
        DataBlock* free_p = nullptr;
        while (block_p == nullptr && cacheOf(index).take(pool, &free_p)) {
            PoolStats::add(ZORCLIENT_MSG_STATS_FREE_DATA_BLOCKS,
                           static_cast<zorClient_uint32_t>(index), -1);
            if (free_p->capacity_m == capacity) {
                block_p = free_p;
            } else {  // left over from quanta configured before
                PoolStats::add(ZORCLIENT_MSG_STATS_TOTAL_MEMORY, 0,
                               -signedSize(free_p->capacity_m));
                ZC_UNPOISON(free_p->bytes(), free_p->capacity_m);
                free_p->~DataBlock();
                ::operator delete(free_p);
            }
        }
    }
    if (block_p == nullptr) {
        void* memory_p = ::operator new(sizeof(DataBlock) + capacity);
        if (index < LARGE_POOL) {
            try {
                pools()[index].free_m.reserveMore(1);  // its place on the free list
            } catch (...) {
                ::operator delete(memory_p);
                throw;
            }
        }
        block_p = new (memory_p) DataBlock();
        block_p->capacity_m = capacity;
        block_p->poolIndex_m = static_cast<std::uint8_t>(index);
        PoolStats::add(ZORCLIENT_MSG_STATS_TOTAL_MEMORY, 0, signedSize(capacity));
    } else {
        ZC_UNPOISON(block_p->bytes(), block_p->capacity_m);
    }
    block_p->next_mp = nullptr;
    block_p->owner_m = owner;
    countOut(block_p, +1);
    return block_p;
}

void DataBlockPools::release(DataBlock* block_p) noexcept {
    if (block_p == nullptr) {
        return;
    }
    countOut(block_p, -1);
    const int index = block_p->poolIndex_m;
    if (index < LARGE_POOL) {
        QuantumPool& pool = pools()[index];
        if (block_p->capacity_m == pool.quantum_m.load(std::memory_order_relaxed)) {
            ZC_POISON(block_p->bytes(), block_p->capacity_m);
            PoolStats::add(ZORCLIENT_MSG_STATS_FREE_DATA_BLOCKS,
                           static_cast<zorClient_uint32_t>(index), +1);
            cacheOf(index).give(pool, block_p);
            return;
        }
    }
    PoolStats::add(ZORCLIENT_MSG_STATS_TOTAL_MEMORY, 0, -signedSize(block_p->capacity_m));
    block_p->~DataBlock();
    ::operator delete(block_p);
}

}  // namespace zorvane::zorclient
