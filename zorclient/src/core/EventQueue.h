// A context's event queue: many producers (the threads that send, the broker, the application
// threads that connect or post callbacks), one consumer (the context thread), bounded, drained
// in batches, no allocation per event.
//
// The ring is a bounded array of slots, each with a sequence number that tells producers and
// the consumer whose turn it is; a producer claims a slot with one compare-and-swap and
// publishes it with one release store. It never waits for the consumer.
//
// When the ring is full, deliveries are refused (the caller counts the discard) while events
// that must not be lost (session events, callbacks) go to an overflow list behind a mutex. As
// long as that list is not empty every such event goes there too and deliveries are refused,
// so that events of one producer are never taken out of order.
//
// Threads: push functions from any thread (not from a signal handler); drain and discardAll from
// the consumer only.
#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <memory>
#include <mutex>

#include "core/Event.h"

namespace zorvane::zorclient {

class EventQueue {
  public:
    // capacity: slots of the ring, rounded up to a power of two.
    explicit EventQueue(std::size_t capacity);
    EventQueue(const EventQueue&) = delete;
    EventQueue& operator=(const EventQueue&) = delete;

    // A delivery (or anything that may be dropped): false when there is no room; the event
    // then still belongs to the caller.
    bool tryPush(const Event& event) noexcept;
    // An event that must arrive: into the ring, or the overflow list. Throws std::bad_alloc only
    // when the overflow list cannot grow.
    void push(const Event& event);

    // Consumer: true when drain() would find something.
    bool hasEvents() const noexcept;

    // Consumer: takes up to max events out, oldest first, and hands each to handler. The handler
    // may push (the new events come behind). Returns the number handled.
    template <typename Handler>
    std::size_t drain(std::size_t max, Handler&& handler) {
        std::size_t handled = 0;
        Event event;
        while (handled < max && popRing(&event)) {
            prefetchNext();
            handler(event);
            ++handled;
        }
        if (handled < max && overflowSize_m.load(std::memory_order_acquire) != 0 && ringIsEmpty()) {
            // Every slot ever claimed has been taken, so everything in the list is newer than
            // what was taken and older than what comes into the ring from now on. (A slot
            // claimed but not yet published may hold an older event of a producer whose next
            // event went to the list: then the list waits.)
            takeOverflow();
            while (!overflowBatch_m.empty()) {
                handler(overflowBatch_m.front());
                overflowBatch_m.pop_front();
                ++handled;
            }
        }
        return handled;
    }

    std::size_t capacity() const noexcept { return mask_m + 1; }

  private:
    // A line each: the producer writes a slot while the consumer reads the one before, and a
    // slot split over two lines would cost two transfers between their processors.
    struct alignas(64) Cell {
        std::atomic<std::uint64_t> sequence;
        Event event;
    };
    static_assert(sizeof(Cell) == 64, "a slot is one cache line");

    bool tryPushRing(const Event& event) noexcept;
    // When the next slot is already filled with a delivery, asks for its payload's first lines,
    // so that they arrive from the sender's processor while the current event is handled.
    void prefetchNext() const noexcept;
    bool popRing(Event* event_p) noexcept;
    bool ringHasEvent() const noexcept;
    bool ringIsEmpty() const noexcept { return tail_m.load(std::memory_order_acquire) == head_m; }
    void takeOverflow();

    const std::size_t mask_m;
    std::unique_ptr<Cell[]> cells_m;
    alignas(64) std::atomic<std::uint64_t> tail_m{0};  // next slot to claim (producers)
    alignas(64) std::uint64_t head_m = 0;              // next slot to take (consumer)
    alignas(64) std::atomic<std::size_t> overflowSize_m{0};
    std::mutex overflowMutex_m;
    std::deque<Event> overflow_m;       // under overflowMutex_m
    std::deque<Event> overflowBatch_m;  // consumer only
};

}  // namespace zorvane::zorclient
