// The pool behind the broker's per-message objects (the copies of sent messages and the
// envelopes of their deliveries): fixed objects made CHUNK at a time and never given back to the
// system, handed out through a per-thread cache (ThreadCache) in front of a shared free list
// (FreeStack). These objects are made on senders' threads and released on receivers', so they
// travel between threads through the shared list in batches.
//
// They are not application objects: they have no handles and are not counted as allocated,
// only their memory shows, in ZORCLIENT_MSG_STATS_TOTAL_MEMORY.
//
// Item must be default-constructible; acquire() hands out an object as its last user left it,
// so the caller writes every field it reads later.
//
// Threads: every member, any thread. The pool of each Item is never destroyed: objects may be
// released by threads that run past static destruction.
#pragma once

#include <cstddef>
#include <cstdint>
#include <new>

#include "core/FreeStack.h"
#include "core/PoolStats.h"
#include "core/ThreadCache.h"

namespace zorvane::zorclient {

template <typename Item>
class ChunkPool {
  public:
    static constexpr std::size_t CHUNK = 256;

    // An object. Throws std::bad_alloc.
    static Item* acquire() {
        Item* item_p = nullptr;
        if (!cache().take(instance(), &item_p)) {
            throw std::bad_alloc();
        }
        return item_p;
    }

    static void release(Item* item_p) noexcept { cache().give(instance(), item_p); }

    // The object this thread's next acquire() will hand out, when that takes no lock; null
    // otherwise. For prefetching only: the object is not reserved.
    static Item* peekNext() noexcept {
        Item* item_p = nullptr;
        return cache().peek(&item_p) ? item_p : nullptr;
    }

    // For ThreadCache.
    std::size_t takeBatch(Item** out_p, std::size_t most) {
        std::size_t count = free_m.takeBatch(out_p, most);
        if (count == 0) {
            grow();
            count = free_m.takeBatch(out_p, most);
        }
        return count;
    }
    void giveBatch(Item* const* items_p, std::size_t count) noexcept {
        free_m.giveBatch(items_p, count);
    }

  private:
    static ChunkPool& instance() {
        static auto* pool_s = new ChunkPool();
        return *pool_s;
    }
    static ThreadCache<ChunkPool, Item*>& cache() noexcept {
        [[gnu::tls_model("initial-exec")]] static thread_local ThreadCache<ChunkPool, Item*>
            cache_s;
        return cache_s;
    }

    void grow() {
        auto* chunk_p = new Item[CHUNK];
        try {
            free_m.reserveMore(CHUNK);
        } catch (...) {
            delete[] chunk_p;
            throw;
        }
        Item* added[CHUNK];
        for (std::size_t i = 0; i < CHUNK; ++i) {
            added[i] = &chunk_p[i];
        }
        free_m.giveBatch(added, CHUNK);
        PoolStats::add(ZORCLIENT_MSG_STATS_TOTAL_MEMORY, 0,
                       static_cast<std::int64_t>(sizeof(Item) * CHUNK));
    }

    FreeStack<Item*> free_m;
};

}  // namespace zorvane::zorclient
