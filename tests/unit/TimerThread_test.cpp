#include "common/TimerThread.h"

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <functional>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include "common/OS.h"

namespace zorvane::pubsub {
namespace {

using namespace std::chrono_literals;

constexpr UINT64 BASE_MS = 5000000;  // an arbitrary wall-clock start

// Time that moves only when the test says so. Each loop pass that ends in a
// tick sleep is counted, so a test can wait for passes instead of time.
class FakeClock : public TimerTimeSource {
  public:
    UINT64 nowInUs() override { return nowUs_m.load(); }
    void sleepInUs(UINT64) override {
        passes_m.fetch_add(1);
        std::this_thread::sleep_for(50us);
    }
    void setMs(UINT64 ms, UINT64 extraUs = 0) { nowUs_m.store(ms * 1000 + extraUs); }
    void advanceMs(UINT64 ms) { nowUs_m.fetch_add(ms * 1000); }
    UINT64 nowMs() const { return nowUs_m.load() / 1000; }
    UINT64 passes() const { return passes_m.load(); }

  private:
    std::atomic<UINT64> nowUs_m{BASE_MS * 1000};
    std::atomic<UINT64> passes_m{0};
};

bool waitFor(const std::function<bool()>& done, std::chrono::milliseconds limit = 5000ms) {
    auto end = std::chrono::steady_clock::now() + limit;
    while (!done()) {
        if (std::chrono::steady_clock::now() > end) {
            return false;
        }
        std::this_thread::sleep_for(100us);
    }
    return true;
}

// Lets the loop make some passes (it must have something scheduled).
void letPassesGo(const FakeClock& clock, UINT64 count = 10) {
    const UINT64 start = clock.passes();
    ASSERT_TRUE(waitFor([&] { return clock.passes() >= start + count; }));
}

// Appends its name and the fake time of each run to a shared journal.
struct Journal {
    void add(const std::string& name, UINT64 atMs) {
        std::lock_guard<std::mutex> lock(mutex_m);
        entries_m.push_back({name, atMs});
    }
    size_t size() {
        std::lock_guard<std::mutex> lock(mutex_m);
        return entries_m.size();
    }
    std::vector<std::pair<std::string, UINT64>> entries() {
        std::lock_guard<std::mutex> lock(mutex_m);
        return entries_m;
    }
    std::mutex mutex_m;
    std::vector<std::pair<std::string, UINT64>> entries_m;
};

class RecordingTask : public AbstractTimerTask {
  public:
    RecordingTask(std::string name, Journal& journal, FakeClock* clock_p)
        : name_m(std::move(name)), journal_m(journal), clock_mp(clock_p) {}
    std::function<void()> onRun_m;

  protected:
    void runImpl() override {
        journal_m.add(name_m, clock_mp != nullptr ? clock_mp->nowMs() : 0);
        if (onRun_m) {
            onRun_m();
        }
    }

  private:
    std::string name_m;
    Journal& journal_m;
    FakeClock* clock_mp;
};

// Tells through a flag when it is destroyed.
class DeletionTask : public AbstractTimerTask {
  public:
    explicit DeletionTask(std::atomic<bool>& deleted) : deleted_m(deleted) {}
    ~DeletionTask() override { deleted_m.store(true); }

  protected:
    void runImpl() override {}

  private:
    std::atomic<bool>& deleted_m;
};

TEST(TimerThreadOrder, TasksDueInOnePassRunByRunTimeAndOneShotsRunOnce) {
    FakeClock clock;
    Journal journal;
    RecordingTask a("a", journal, &clock), b("b", journal, &clock), c("c", journal, &clock);
    RecordingTask keepAlive("k", journal, &clock);
    TimerThread timer(&clock);  // after the tasks: its stop() still reaches them
    timer.schedule(&a, 30, 0);
    timer.schedule(&b, 10, 0);
    timer.schedule(&c, 20, 0);
    letPassesGo(clock);
    EXPECT_EQ(journal.size(), 0U) << "nothing is due while the clock stands";

    clock.advanceMs(100);
    ASSERT_TRUE(waitFor([&] { return journal.size() == 3; }));
    auto runs = journal.entries();
    EXPECT_EQ(runs[0].first, "b");
    EXPECT_EQ(runs[1].first, "c");
    EXPECT_EQ(runs[2].first, "a");
    EXPECT_TRUE(a.isCanceled() && b.isCanceled() && c.isCanceled());

    // The one-shots are gone: a later periodic task keeps the loop polling,
    // and they do not come back.
    timer.schedule(&keepAlive, 1000000, 1000);
    clock.advanceMs(5000);
    letPassesGo(clock);
    EXPECT_EQ(journal.size(), 3U);
}

TEST(TimerThreadOrder, ATaskDueInTheCurrentMillisecondWaitsForTheNext) {
    FakeClock clock;
    Journal journal;
    RecordingTask task("t", journal, &clock);
    TimerThread timer(&clock);
    timer.schedule(&task, 5, 0);
    EXPECT_EQ(task.getRunTime(), BASE_MS + 5);

    clock.setMs(BASE_MS + 5, 999);
    letPassesGo(clock);
    EXPECT_EQ(journal.size(), 0U);

    clock.setMs(BASE_MS + 6);
    ASSERT_TRUE(waitFor([&] { return journal.size() == 1; }));
}

TEST(TimerThreadPeriodic, LateTaskCatchesUpWithoutPauseAndKeepsItsPhase) {
    FakeClock clock;
    Journal journal;
    RecordingTask task("p", journal, &clock);
    bool first = true;
    // The first run takes 2500 ms of the (fake) clock.
    task.onRun_m = [&] {
        if (first) {
            first = false;
            clock.advanceMs(2500);
        }
    };
    TimerThread timer(&clock);
    timer.schedule(&task, 0, 1000);

    clock.advanceMs(1);  // BASE + 1: the task (due at BASE) runs
    ASSERT_TRUE(waitFor([&] { return journal.size() == 3; }));
    letPassesGo(clock);
    auto runs = journal.entries();
    ASSERT_EQ(runs.size(), 3U) << "due at BASE+1000 and BASE+2000, not at BASE+3000";
    EXPECT_EQ(runs[0].second, BASE_MS + 1);
    // Both catch-up runs came while the clock stood at BASE+2501.
    EXPECT_EQ(runs[1].second, BASE_MS + 2501);
    EXPECT_EQ(runs[2].second, BASE_MS + 2501);
    EXPECT_EQ(task.getRunTime(), BASE_MS + 3000);

    clock.setMs(BASE_MS + 3001);
    ASSERT_TRUE(waitFor([&] { return journal.size() == 4; }));
    EXPECT_EQ(task.getRunTime(), BASE_MS + 4000);
}

TEST(TimerThreadCancel, CancelledHandleNeverRunsAndLeavesTheTaskAlone) {
    FakeClock clock;
    Journal journal;
    RecordingTask periodic("p", journal, &clock), other("o", journal, &clock);
    RecordingTask once("x", journal, &clock);
    TimerThread timer(&clock);
    const UINT64 handle = timer.schedule(&periodic, 0, 10);
    const UINT64 otherHandle = timer.schedule(&other, 0, 10);
    EXPECT_EQ(otherHandle, handle + 1);

    clock.advanceMs(1);
    ASSERT_TRUE(waitFor([&] { return journal.size() == 2; }));
    timer.cancel(handle);
    timer.cancel(987654);  // never given out
    clock.advanceMs(100);
    ASSERT_TRUE(waitFor([&] { return journal.size() >= 12; }));
    for (const auto& [name, at] : journal.entries()) {
        if (at > BASE_MS + 1) {
            EXPECT_EQ(name, "o") << "the cancelled handle ran at " << at;
        }
    }
    EXPECT_FALSE(periodic.isCanceled()) << "cancel by handle does not touch the task";

    // A handle that has run out: cancelling it does nothing to the others.
    const UINT64 onceHandle = timer.schedule(&once, 0, 0);
    clock.advanceMs(1);
    ASSERT_TRUE(waitFor([&] { return once.isCanceled(); }));
    const size_t before = journal.size();
    timer.cancel(onceHandle);
    clock.advanceMs(50);
    ASSERT_TRUE(waitFor([&] { return journal.size() > before; }));
}

TEST(TimerThreadCancel, CancelWaitsForTheRunningTask) {
    FakeClock clock;
    Journal journal;
    RecordingTask slow("s", journal, &clock);
    std::atomic<bool> started{false}, finished{false};
    slow.onRun_m = [&] {
        started = true;
        std::this_thread::sleep_for(50ms);
        finished = true;
    };
    TimerThread timer(&clock);
    const UINT64 handle = timer.schedule(&slow, 0, 1);
    clock.advanceMs(1);
    ASSERT_TRUE(waitFor([&] { return started.load(); }));
    timer.cancel(handle);
    EXPECT_TRUE(finished.load()) << "cancel returned while the task was still running";
    const size_t runs = journal.size();
    clock.advanceMs(100);
    std::this_thread::sleep_for(20ms);
    EXPECT_EQ(journal.size(), runs);
}

TEST(TimerThreadCancel, StopCancelsEveryScheduledTask) {
    FakeClock clock;
    Journal journal;
    RecordingTask a("a", journal, &clock), b("b", journal, &clock);
    TimerThread timer(&clock);
    timer.schedule(&a, 100, 0);
    timer.schedule(&b, 0, 50);
    timer.stop();
    EXPECT_TRUE(a.isCanceled());
    EXPECT_TRUE(b.isCanceled());
    clock.advanceMs(1000);
    std::this_thread::sleep_for(20ms);
    EXPECT_EQ(journal.size(), 0U);
}

TEST(TimerThreadOwnership, TasksMarkedForDeletionAreFreedAfterTheirLastRunOrAtTheEnd) {
    FakeClock clock;
    std::atomic<bool> ranOutDeleted{false}, cancelledDeleted{false}, pendingDeleted{false};
    {
        TimerThread timer(&clock);
        auto* ranOut = new DeletionTask(ranOutDeleted);
        timer.schedule(ranOut, 0, 0);
        ranOut->markForDeletion();  // after schedule: schedule resets the mark

        auto* periodic = new DeletionTask(cancelledDeleted);
        timer.schedule(periodic, 0, 5);
        periodic->markForDeletion();

        auto* pending = new DeletionTask(pendingDeleted);
        timer.schedule(pending, 1000000, 0);
        pending->markForDeletion();

        clock.advanceMs(1);
        ASSERT_TRUE(waitFor([&] { return ranOutDeleted.load(); }));
        EXPECT_FALSE(cancelledDeleted.load());
        periodic->cancel();  // its own flag: it leaves the schedule after the next run
        clock.advanceMs(10);
        ASSERT_TRUE(waitFor([&] { return cancelledDeleted.load(); }));
        EXPECT_FALSE(pendingDeleted.load());
    }
    EXPECT_TRUE(pendingDeleted.load()) << "the destructor frees what was handed over";
}

TEST(TimerThreadReentry, TaskMayScheduleAnotherFromItsRun) {
    FakeClock clock;
    Journal journal;
    RecordingTask second("second", journal, &clock);
    RecordingTask first("first", journal, &clock);
    TimerThread timer(&clock);
    first.onRun_m = [&] { timer.schedule(&second, 0, 0); };
    timer.schedule(&first, 0, 0);
    clock.advanceMs(1);
    ASSERT_TRUE(waitFor([&] { return journal.size() == 1; }));
    clock.advanceMs(1);
    ASSERT_TRUE(waitFor([&] { return journal.size() == 2; }));
    EXPECT_EQ(journal.entries()[1].first, "second");
}

TEST(TimerThreadWallClock, SchedulingWakesAnIdleTimerAndStopEndsItAtOnce) {
    Journal journal;
    RecordingTask task("w", journal, nullptr);
    auto timer = std::make_unique<TimerThread>();
    std::this_thread::sleep_for(20ms);  // idle on its condition by now
    const UINT64 before = OS::getTimeInUs();
    timer->schedule(&task, 0, 0);
    ASSERT_TRUE(waitFor([&] { return journal.size() == 1; }));
    // Delay 0 is due after the current millisecond: within a few ticks.
    EXPECT_LT(OS::getTimeInUs() - before, 1000000U);

    std::this_thread::sleep_for(20ms);  // idle again
    const auto start = std::chrono::steady_clock::now();
    timer.reset();
    EXPECT_LT(std::chrono::steady_clock::now() - start, 1s);

    // Stopped before the thread could even get going.
    const auto start2 = std::chrono::steady_clock::now();
    { TimerThread shortLived; }
    EXPECT_LT(std::chrono::steady_clock::now() - start2, 1s);
}

}  // namespace
}  // namespace zorvane::pubsub
