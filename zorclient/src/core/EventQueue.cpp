#include "core/EventQueue.h"

#include <bit>

#include "core/Prefetch.h"

namespace zorvane::zorclient {

EventQueue::EventQueue(std::size_t capacity)
    : mask_m(std::bit_ceil(capacity < 2 ? std::size_t{2} : capacity) - 1),
      cells_m(new Cell[mask_m + 1]) {
    for (std::size_t i = 0; i <= mask_m; ++i) {
        cells_m[i].sequence.store(i, std::memory_order_relaxed);
    }
}

bool EventQueue::tryPushRing(const Event& event) noexcept {
    std::uint64_t position = tail_m.load(std::memory_order_relaxed);
    for (;;) {
        Cell& cell = cells_m[position & mask_m];
        const std::uint64_t sequence = cell.sequence.load(std::memory_order_acquire);
        const auto lag = static_cast<std::int64_t>(sequence - position);
        if (lag == 0) {
            if (tail_m.compare_exchange_weak(position, position + 1, std::memory_order_relaxed)) {
                cell.event = event;
                cell.sequence.store(position + 1, std::memory_order_release);
                return true;
            }
        } else if (lag < 0) {
            return false;  // the consumer has not freed this slot yet: full
        } else {
            position = tail_m.load(std::memory_order_relaxed);
        }
    }
}

bool EventQueue::tryPush(const Event& event) noexcept {
    if (overflowSize_m.load(std::memory_order_acquire) != 0) {
        return false;
    }
    return tryPushRing(event);
}

void EventQueue::push(const Event& event) {
    if (overflowSize_m.load(std::memory_order_acquire) == 0 && tryPushRing(event)) {
        return;
    }
    std::lock_guard<std::mutex> lock(overflowMutex_m);
    overflow_m.push_back(event);
    overflowSize_m.fetch_add(1, std::memory_order_release);
}

bool EventQueue::ringHasEvent() const noexcept {
    const Cell& cell = cells_m[head_m & mask_m];
    return cell.sequence.load(std::memory_order_acquire) == head_m + 1;
}

bool EventQueue::hasEvents() const noexcept {
    return ringHasEvent() || overflowSize_m.load(std::memory_order_acquire) != 0;
}

bool EventQueue::popRing(Event* event_p) noexcept {
    Cell& cell = cells_m[head_m & mask_m];
    if (cell.sequence.load(std::memory_order_acquire) != head_m + 1) {
        return false;
    }
    *event_p = cell.event;
    cell.sequence.store(head_m + mask_m + 1, std::memory_order_release);
    ++head_m;
    return true;
}

void EventQueue::prefetchNext() const noexcept {
    const Cell& cell = cells_m[head_m & mask_m];
    if (cell.sequence.load(std::memory_order_acquire) != head_m + 1 ||
        cell.event.kind != EventKind::Delivery || cell.event.delivery.ops_p == nullptr) {
        return;
    }
    prefetchForRead(cell.event.delivery.object_p, cell.event.delivery.ops_p->prefetchBytes);
}

void EventQueue::takeOverflow() {
    std::lock_guard<std::mutex> lock(overflowMutex_m);
    overflowBatch_m.swap(overflow_m);
    overflowSize_m.store(0, std::memory_order_release);
}

}  // namespace zorvane::zorclient
