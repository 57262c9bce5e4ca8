// A per-thread stack of free pool entries in front of a pool's shared free list, so that taking
// and giving back an entry costs no lock while the thread's stack has room: only every
// CAPACITY / 2 operations does a thread move a batch to or from the shared list, under the
// pool's lock. Entries given back on another thread than the one that took them (a broker copy
// released by its last receiver) simply travel through the shared list.
//
// Pool must offer, each under its own lock:
//   std::size_t takeBatch(Item* out_p, std::size_t most);   // 0..most entries; may throw
//   void giveBatch(const Item* items_p, std::size_t count) noexcept;
// The pool must outlive every thread (pools are never destroyed): a thread's stack goes back to
// the shared list when the thread ends.
#pragma once

#include <cstddef>

namespace zorvane::zorclient {

template <typename Pool, typename Item, std::size_t CAPACITY = 32>
class ThreadCache {
    static_assert(CAPACITY >= 2 && CAPACITY % 2 == 0, "batches are half the stack");

  public:
    ThreadCache() = default;
    ThreadCache(const ThreadCache&) = delete;
    ThreadCache& operator=(const ThreadCache&) = delete;
    ~ThreadCache() {
        if (count_m > 0) {
            pool_mp->giveBatch(items_m, count_m);
        }
        count_m = 0;
        ended_m = true;
    }

    // An entry, or false when neither this stack nor the shared list had one.
    bool take(Pool& pool, Item* item_p) {
        if (ended_m) {  // used by another thread-local's destructor after this one's
            return pool.takeBatch(item_p, 1) == 1;
        }
        pool_mp = &pool;
        if (count_m == 0) {
            count_m = pool.takeBatch(items_m, CAPACITY / 2);
            if (count_m == 0) {
                return false;
            }
        }
        *item_p = items_m[--count_m];
        return true;
    }

    // The entry the next take() hands out without going to the pool, if there is one.
    bool peek(Item* item_p) const noexcept {
        if (count_m == 0) {
            return false;
        }
        *item_p = items_m[count_m - 1];
        return true;
    }

    void give(Pool& pool, Item item) noexcept {
        if (ended_m) {
            pool.giveBatch(&item, 1);
            return;
        }
        pool_mp = &pool;
        if (count_m == CAPACITY) {
            pool.giveBatch(items_m + CAPACITY / 2, CAPACITY / 2);
            count_m = CAPACITY / 2;
        }
        items_m[count_m++] = item;
    }

  private:
    Pool* pool_mp = nullptr;
    std::size_t count_m = 0;
    bool ended_m = false;
    Item items_m[CAPACITY];
};

}  // namespace zorvane::zorclient
