#include "core/TimerQueue.h"

#include <algorithm>

namespace zorvane::zorclient {

bool TimerQueue::add(Clock::time_point due, Ref<EventTarget> target, std::uint64_t token) {
    std::lock_guard<std::mutex> lock(mutex_m);
    heap_m.push_back(Timer{due, std::move(target), token});
    std::push_heap(heap_m.begin(), heap_m.end(), later);
    noteEarliest();
    return heap_m.front().due == due;
}

TimerQueue::Clock::time_point TimerQueue::nextDue() {
    std::lock_guard<std::mutex> lock(mutex_m);
    return heap_m.empty() ? Clock::time_point::max() : heap_m.front().due;
}

void TimerQueue::takeDue(Clock::time_point now, std::vector<Timer>* due_p) {
    std::lock_guard<std::mutex> lock(mutex_m);
    while (!heap_m.empty() && heap_m.front().due <= now) {
        std::pop_heap(heap_m.begin(), heap_m.end(), later);
        due_p->push_back(std::move(heap_m.back()));
        heap_m.pop_back();
    }
    noteEarliest();
}

void TimerQueue::noteEarliest() noexcept {
    const Clock::time_point earliest =
        heap_m.empty() ? Clock::time_point::max() : heap_m.front().due;
    earliest_m.store(earliest.time_since_epoch().count(), std::memory_order_release);
}

void TimerQueue::clear() {
    std::vector<Timer> old;
    {
        std::lock_guard<std::mutex> lock(mutex_m);
        old.swap(heap_m);
        noteEarliest();
    }
    // The targets' references are dropped here, outside the lock: a last reference may delete
    // a session, whose destructor must not run under this mutex.
}

}  // namespace zorvane::zorclient
