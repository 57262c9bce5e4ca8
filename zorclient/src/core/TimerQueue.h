// The timers of one context: "call target->onTimer(token) on the context thread at time t".
// Used for reconnect waits now and for flow reconnects and acknowledgement timers later.
// A timer cannot be cancelled; its target checks the token when it fires and ignores a stale
// one, which keeps this queue simple and lets any thread set timers.
//
// Threads: add() from any thread; nextDue() and takeDue() from the context thread. clear() when
// the context ends.
#pragma once

#include <atomic>
#include <chrono>
#include <cstdint>
#include <mutex>
#include <vector>

#include "core/Event.h"
#include "core/RefCounted.h"

namespace zorvane::zorclient {

class TimerQueue {
  public:
    using Clock = std::chrono::steady_clock;

    struct Timer {
        Clock::time_point due;
        Ref<EventTarget> target;
        std::uint64_t token;
    };

    // Returns true when the new timer is now the earliest (the context must then be woken so
    // that it sleeps no longer than until it).
    bool add(Clock::time_point due, Ref<EventTarget> target, std::uint64_t token);

    // Time of the earliest timer, or Clock::time_point::max().
    Clock::time_point nextDue();
    // The same without the lock, for the context's every pass: a timer added meanwhile may
    // be missed, which the context learns from add()'s result anyway.
    Clock::time_point nextDueHint() const noexcept {
        return Clock::time_point(Clock::duration(earliest_m.load(std::memory_order_acquire)));
    }

    // Moves the timers due at now into due_p (appended, earliest first).
    void takeDue(Clock::time_point now, std::vector<Timer>* due_p);

    void clear();

  private:
    static bool later(const Timer& a, const Timer& b) noexcept { return a.due > b.due; }

    // Under mutex_m: keeps earliest_m current.
    void noteEarliest() noexcept;

    std::mutex mutex_m;
    std::vector<Timer> heap_m;  // a min-heap by due
    // heap_m's earliest due in clock ticks (max when empty), written under mutex_m: the context
    // thread looks here on every pass instead of taking the lock and reading the clock.
    std::atomic<Clock::rep> earliest_m{Clock::time_point::max().time_since_epoch().count()};
};

}  // namespace zorvane::zorclient
