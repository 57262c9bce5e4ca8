// The shared free list behind a pool's per-thread caches (ThreadCache), as an array of pointers
// under a mutex. Taking or giving a batch copies pointers and never touches the entries: an
// entry released on a receiving thread has its memory in that processor's cache, and a list
// linked through the entries would make the sending thread wait for each of them in turn
// before it can even see the next one.
//
// Giving back never allocates: whoever makes a new entry first reserves room for it
// (reserveMore), so the array can always hold every entry there is.
//
// Threads: every member, any thread.
#pragma once

#include <algorithm>
#include <cstddef>
#include <mutex>
#include <vector>

namespace zorvane::zorclient {

template <typename Item>
class FreeStack {
  public:
    // Makes room for count more entries in existence. Throws std::bad_alloc.
    void reserveMore(std::size_t count) {
        std::lock_guard<std::mutex> lock(mutex_m);
        existing_m += count;
        if (items_m.capacity() < existing_m) {
            items_m.reserve(std::max(existing_m, 2 * items_m.capacity()));
        }
    }

    // Up to most entries into out_p, newest first; 0 when empty.
    std::size_t takeBatch(Item* out_p, std::size_t most) noexcept {
        std::lock_guard<std::mutex> lock(mutex_m);
        const std::size_t count = std::min(most, items_m.size());
        std::copy(items_m.end() - static_cast<std::ptrdiff_t>(count), items_m.end(), out_p);
        items_m.resize(items_m.size() - count);
        return count;
    }

    // Entries made with reserveMore, given back.
    void giveBatch(const Item* items_p, std::size_t count) noexcept {
        std::lock_guard<std::mutex> lock(mutex_m);
        items_m.insert(items_m.end(), items_p, items_p + count);  // within the reserved room
    }

  private:
    std::mutex mutex_m;
    std::vector<Item> items_m;
    std::size_t existing_m = 0;
};

}  // namespace zorvane::zorclient
