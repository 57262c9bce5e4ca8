#include "core/Waker.h"

#include <linux/futex.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <ctime>

namespace zorvane::zorclient {

namespace {

// The futex word is the atomic's object representation; std::atomic<uint32_t> is lock-free and
// has the size and alignment of uint32_t, as the futex call needs.
static_assert(sizeof(std::atomic<std::uint32_t>) == sizeof(std::uint32_t));
static_assert(std::atomic<std::uint32_t>::is_always_lock_free);

std::uint32_t* futexWord(std::atomic<std::uint32_t>& word) noexcept {
    return reinterpret_cast<std::uint32_t*>(&word);
}

}  // namespace

void Waker::wake() noexcept {
    // Both sides touch sleeping_m with read-modify-writes, which the flag's modification order
    // puts one after the other: either this one comes later and sees the consumer asleep, or it
    // comes first and the consumer's exchange in prepareSleep() synchronises with it, so that the
    // consumer's last check sees the work published before this call. Taking the flag down here
    // leaves the system call to the first producer: those that follow before the consumer is up
    // again find it down, and the consumer, once awake, takes their work with the first one's.
    if (sleeping_m.exchange(0, std::memory_order_acq_rel) != 0) {
        word_m.fetch_add(1, std::memory_order_release);
        syscall(SYS_futex, futexWord(word_m), FUTEX_WAKE_PRIVATE, 1, nullptr, nullptr, 0);
    }
}

std::uint32_t Waker::prepareSleep() noexcept {
    std::uint32_t ticket = word_m.load(std::memory_order_acquire);
    sleeping_m.exchange(1, std::memory_order_acq_rel);
    return ticket;
}

void Waker::sleep(std::uint32_t ticket, std::chrono::nanoseconds timeout) noexcept {
    if (timeout.count() <= 0) {
        return;
    }
    timespec relative{};
    relative.tv_sec = static_cast<time_t>(timeout.count() / 1000000000);
    relative.tv_nsec = static_cast<long>(timeout.count() % 1000000000);
    // Returns at once when a wake-up came after prepareSleep() (the word no longer equals
    // ticket), so no wake-up is lost between the last check and the wait.
    syscall(SYS_futex, futexWord(word_m), FUTEX_WAIT_PRIVATE, ticket, &relative, nullptr, 0);
}

}  // namespace zorvane::zorclient
