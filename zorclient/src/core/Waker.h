// Puts one consumer thread to sleep until a producer has something for it, with a time limit.
// Producers wake it only when it really sleeps, so a busy consumer costs them one atomic
// read-modify-write per wake() and no system call.
//
// The consumer's side, on one thread:
//     auto ticket = waker.prepareSleep();
//     if (nothing to do) waker.sleep(ticket, timeout);
//     waker.endSleep();
// A producer calls wake() after it has published its work.
//
// wake() is async-signal-safe: it uses only atomics and the futex system call.
#pragma once

#include <atomic>
#include <chrono>
#include <cstdint>

namespace zorvane::zorclient {

class Waker {
  public:
    // Any thread, also a signal handler.
    void wake() noexcept;

    // Consumer only. After prepareSleep() the consumer checks for work once more: either it
    // sees the work, or the producer sees it sleeping and wakes it.
    std::uint32_t prepareSleep() noexcept;
    // Returns on wake(), at the timeout, or spuriously.
    void sleep(std::uint32_t ticket, std::chrono::nanoseconds timeout) noexcept;
    void endSleep() noexcept { sleeping_m.store(0, std::memory_order_relaxed); }

  private:
    std::atomic<std::uint32_t> word_m{0};      // the futex word: changes on every wake-up
    std::atomic<std::uint32_t> sleeping_m{0};  // 1 while the consumer may sleep
};

}  // namespace zorvane::zorclient
