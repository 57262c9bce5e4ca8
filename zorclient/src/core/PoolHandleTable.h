// A pool of objects of one kind behind opaque handles. The application sees a handle, never a
// pointer: a handle carries the object's slot, the slot's generation at the time it was handed
// out and a tag for the kind, so that a null, freed, reused or foreign handle is recognised and
// refused instead of being followed. Slots live in chunks that are never given back while the
// process runs, so even a stale handle only ever reads pool memory.
//
// Objects are constructed once per slot and reused: T must be default-constructible, and the
// owner resets an object before releasing it.
//
// Threads: acquire, release and lookup may be called from any thread; free slots pass through a
// small cache per thread (ThreadCache), so most calls take no lock. An object itself is used
// by one thread at a time (its owner's rule), so lookup only guarantees that the handle was live
// when it was checked.
//
// Why not api/HandleTable (the contexts' and sessions' table): messages and containers come and
// go at message rate, so a lock and a free-list push per create and destroy, and an atomic
// read-modify-write on a shared slot word per lookup (its Lease), would cost on every message;
// an object here has one user at a time, so no Lease is needed to keep it alive; and objects are
// reused in place instead of allocated, which keeps the sending path free of allocation.
#pragma once

#include <atomic>
#include <cstdint>
#include <mutex>
#include <new>

#include "core/PoolStats.h"
#include "core/ThreadCache.h"

namespace zorvane::zorclient {

template <typename T>
class PoolHandleTable {
  public:
    // tag: 8 bits that tell this kind's handles from another's; stats: the FREE_ and ALLOC_
    // statistics that count this kind's slots.
    PoolHandleTable(std::uint8_t tag, zorClient_msg_stats_t freeStat,
                    zorClient_msg_stats_t allocStat) noexcept
        : tag_m(tag), freeStat_m(freeStat), allocStat_m(allocStat) {}
    PoolHandleTable(const PoolHandleTable&) = delete;
    PoolHandleTable& operator=(const PoolHandleTable&) = delete;

    // A free object and its handle. Throws std::bad_alloc when a new chunk cannot be had or the
    // table is full.
    T* acquire(std::uintptr_t* handle_p) {
        std::uint32_t index = NO_SLOT;
        if (!cache().take(*this, &index)) {
            throw std::bad_alloc();
        }
        Slot* slot_p = slotAt(index);
        std::uint32_t generation = (slot_p->lastGeneration_m + 1) & GENERATION_MASK;
        if (generation == 0) {
            generation = 1;
        }
        slot_p->lastGeneration_m = generation;
        slot_p->liveGeneration_m.store(generation, std::memory_order_release);
        PoolStats::add(freeStat_m, 0, -1);
        PoolStats::add(allocStat_m, 0, +1);
        *handle_p = encode(index, generation);
        return &slot_p->object_m;
    }

    // Makes handle stale and puts its slot back on the free list. The handle must be live.
    void release(std::uintptr_t handle) noexcept {
        const std::uint32_t index = indexOf(handle);
        slotAt(index)->liveGeneration_m.store(0, std::memory_order_release);
        PoolStats::add(allocStat_m, 0, -1);
        PoolStats::add(freeStat_m, 0, +1);
        cache().give(*this, index);
    }

    // For ThreadCache, under the table's lock: up to most free slots (a new chunk when there
    // are none), and slots back.
    std::size_t takeBatch(std::uint32_t* out_p, std::size_t most) {
        std::lock_guard<std::mutex> lock(mutex_m);
        if (freeHead_m == NO_SLOT) {
            grow();
        }
        std::size_t count = 0;
        while (count < most && freeHead_m != NO_SLOT) {
            out_p[count++] = freeHead_m;
            freeHead_m = slotAt(freeHead_m)->nextFree_m;
        }
        return count;
    }
    void giveBatch(const std::uint32_t* indexes_p, std::size_t count) noexcept {
        std::lock_guard<std::mutex> lock(mutex_m);
        for (std::size_t i = 0; i < count; ++i) {
            slotAt(indexes_p[i])->nextFree_m = freeHead_m;
            freeHead_m = indexes_p[i];
        }
    }

    // The object of a live handle of this kind; null for null, stale or foreign handles.
    T* lookup(std::uintptr_t handle) const noexcept {
        if ((handle >> TAG_SHIFT) != tag_m) {
            return nullptr;
        }
        const std::uint32_t index = indexOf(handle);
        const std::uint32_t chunk = index >> CHUNK_BITS;
        if (index == NO_SLOT || chunk >= MAX_CHUNKS) {
            return nullptr;
        }
        Slot* chunk_p = chunks_m[chunk].load(std::memory_order_acquire);
        if (chunk_p == nullptr) {
            return nullptr;
        }
        Slot* slot_p = &chunk_p[index & CHUNK_MASK];
        const std::uint32_t generation =
            static_cast<std::uint32_t>(handle >> GENERATION_SHIFT) & GENERATION_MASK;
        if (slot_p->liveGeneration_m.load(std::memory_order_acquire) != generation) {
            return nullptr;
        }
        return &slot_p->object_m;
    }

  private:
    static_assert(sizeof(std::uintptr_t) == 8, "handles need 64 bits");
    // Handle layout: bits 0..31 slot index + 1 (never 0, so a handle is never null), bits
    // 32..55 generation, bits 56..63 tag.
    static constexpr int GENERATION_SHIFT = 32;
    static constexpr int TAG_SHIFT = 56;
    static constexpr std::uint32_t GENERATION_MASK = 0xFFFFFFu;
    static constexpr int CHUNK_BITS = 8;
    static constexpr std::uint32_t CHUNK_SIZE = 1u << CHUNK_BITS;
    static constexpr std::uint32_t CHUNK_MASK = CHUNK_SIZE - 1;
    static constexpr std::uint32_t MAX_CHUNKS = 1u << 14;  // 4 million objects
    static constexpr std::uint32_t NO_SLOT = 0xFFFFFFFFu;

    struct Slot {
        std::atomic<std::uint32_t> liveGeneration_m{0};  // 0 while free
        std::uint32_t lastGeneration_m = 0;
        std::uint32_t nextFree_m = NO_SLOT;
        T object_m;
    };

    // One per thread and kind of object (tables are one per kind).
    static ThreadCache<PoolHandleTable, std::uint32_t>& cache() noexcept {
        [[gnu::tls_model(
            "initial-exec")]] static thread_local ThreadCache<PoolHandleTable, std::uint32_t>
            cache_s;
        return cache_s;
    }

    std::uintptr_t encode(std::uint32_t index, std::uint32_t generation) const noexcept {
        return (static_cast<std::uintptr_t>(tag_m) << TAG_SHIFT) |
               (static_cast<std::uintptr_t>(generation) << GENERATION_SHIFT) |
               (static_cast<std::uintptr_t>(index) + 1);
    }
    static std::uint32_t indexOf(std::uintptr_t handle) noexcept {
        return static_cast<std::uint32_t>(handle & 0xFFFFFFFFu) - 1;
    }
    Slot* slotAt(std::uint32_t index) const noexcept {
        return &chunks_m[index >> CHUNK_BITS].load(std::memory_order_acquire)[index & CHUNK_MASK];
    }

    // Under mutex_m: adds a chunk of free slots.
    void grow() {
        if (numChunks_m == MAX_CHUNKS) {
            throw std::bad_alloc();
        }
        Slot* chunk_p = new Slot[CHUNK_SIZE];
        const std::uint32_t first = numChunks_m << CHUNK_BITS;
        for (std::uint32_t i = 0; i < CHUNK_SIZE; ++i) {
            chunk_p[i].nextFree_m = i + 1 < CHUNK_SIZE ? first + i + 1 : freeHead_m;
        }
        chunks_m[numChunks_m].store(chunk_p, std::memory_order_release);
        ++numChunks_m;
        freeHead_m = first;
        PoolStats::add(freeStat_m, 0, CHUNK_SIZE);
        PoolStats::add(ZORCLIENT_MSG_STATS_TOTAL_MEMORY, 0,
                       static_cast<std::int64_t>(sizeof(Slot) * CHUNK_SIZE));
    }

    const std::uint8_t tag_m;
    const zorClient_msg_stats_t freeStat_m;
    const zorClient_msg_stats_t allocStat_m;
    std::mutex mutex_m;
    std::uint32_t freeHead_m = NO_SLOT;
    std::uint32_t numChunks_m = 0;
    std::atomic<Slot*> chunks_m[MAX_CHUNKS] = {};
};

}  // namespace zorvane::zorclient
