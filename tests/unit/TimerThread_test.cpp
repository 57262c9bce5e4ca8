#include "common/TimerThread.h"

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <functional>
#include <mutex>
#include <string>
#include <thread>
#include <utility>
#include <vector>

namespace zorvane::pubsub {
namespace {

using namespace std::chrono_literals;

constexpr UINT64 BASE_MS = 5000000;

// Time moves only when the test says so; each tick sleep of the loop counts
// as a pass, so a test can wait for passes instead of time.
class FakeClock : public TimerTimeSource {
  public:
    UINT64 nowInUs() override { return nowUs_m.load(); }
    void sleepInUs(UINT64) override {
        ++passes_m;
        std::this_thread::sleep_for(50us);
    }
    void setUs(UINT64 us) { nowUs_m = us; }
    void advanceMs(UINT64 ms) { nowUs_m += ms * 1000; }
    std::atomic<UINT64> nowUs_m{BASE_MS * 1000};
    std::atomic<UINT64> passes_m{0};
};

bool waitFor(const std::function<bool()>& done) {
    const auto end = std::chrono::steady_clock::now() + 5s;
    while (!done() && std::chrono::steady_clock::now() < end) {
        std::this_thread::sleep_for(100us);
    }
    return done();
}

void letPassesGo(const FakeClock& clock) {
    const UINT64 start = clock.passes_m;
    ASSERT_TRUE(waitFor([&] { return clock.passes_m >= start + 10; }));
}

// Names and fake times (ms) of the runs of all tasks of a test.
struct Journal {
    void add(const std::string& name, UINT64 atMs) {
        std::lock_guard<std::mutex> lock(mutex_m);
        runs_m.emplace_back(name, atMs);
    }
    std::vector<std::pair<std::string, UINT64>> runs() {
        std::lock_guard<std::mutex> lock(mutex_m);
        return runs_m;
    }
    size_t size() { return runs().size(); }
    std::mutex mutex_m;
    std::vector<std::pair<std::string, UINT64>> runs_m;
};

class Task : public AbstractTimerTask {
  public:
    Task(std::string name, Journal& journal, FakeClock* clock_p = nullptr,
         std::atomic<bool>* deleted_p = nullptr)
        : name_m(std::move(name)), journal_m(journal), clock_mp(clock_p), deleted_mp(deleted_p) {}
    ~Task() override {
        if (deleted_mp != nullptr) {
            *deleted_mp = true;
        }
    }
    std::function<void()> onRun_m;

  protected:
    void runImpl() override {
        journal_m.add(name_m, clock_mp != nullptr ? clock_mp->nowUs_m / 1000 : 0);
        if (onRun_m) {
            onRun_m();
        }
    }

  private:
    std::string name_m;
    Journal& journal_m;
    FakeClock* clock_mp;
    std::atomic<bool>* deleted_mp;
};

TEST(TimerThreadOrder, DueTasksRunByRunTimeOnceEachAndMayScheduleOthers) {
    FakeClock clock;
    Journal journal;
    Task a("a", journal, &clock), b("b", journal, &clock), c("c", journal, &clock);
    Task later("later", journal, &clock), keepAlive("k", journal, &clock);
    TimerThread timer(&clock);  // declared after the tasks: its stop() reaches them
    c.onRun_m = [&] { timer.schedule(&later, 0, 0); };
    timer.schedule(&a, 30, 0);
    timer.schedule(&b, 10, 0);
    timer.schedule(&c, 20, 0);
    timer.schedule(&keepAlive, 1000000, 1000);  // keeps the loop polling
    clock.setUs((BASE_MS + 10) * 1000 + 999);
    letPassesGo(clock);
    EXPECT_EQ(journal.size(), 0U) << "a task due in the current millisecond waits for the next";

    clock.advanceMs(100);
    ASSERT_TRUE(waitFor([&] { return journal.size() == 3; }));
    clock.advanceMs(1);
    ASSERT_TRUE(waitFor([&] { return journal.size() == 4; }));
    clock.advanceMs(5000);
    letPassesGo(clock);
    auto runs = journal.runs();
    ASSERT_EQ(runs.size(), 4U) << "one-shot tasks run once";
    EXPECT_EQ(runs[0].first + runs[1].first + runs[2].first + runs[3].first, "bcalater");
    EXPECT_TRUE(a.isCanceled());
}

TEST(TimerThreadPeriodic, LateTaskCatchesUpWithoutPauseAndKeepsItsPhase) {
    FakeClock clock;
    Journal journal;
    Task task("p", journal, &clock);
    bool first = true;
    task.onRun_m = [&] {  // the first run takes 2500 ms
        if (std::exchange(first, false)) {
            clock.advanceMs(2500);
        }
    };
    TimerThread timer(&clock);
    timer.schedule(&task, 0, 1000);
    clock.advanceMs(1);
    ASSERT_TRUE(waitFor([&] { return journal.size() == 3; }));
    letPassesGo(clock);
    auto runs = journal.runs();
    ASSERT_EQ(runs.size(), 3U) << "due at +1000 and +2000, not yet at +3000";
    EXPECT_EQ(runs[0].second, BASE_MS + 1);
    EXPECT_EQ(runs[1].second, BASE_MS + 2501) << "caught up while the clock stood still";
    EXPECT_EQ(runs[2].second, BASE_MS + 2501);
    EXPECT_EQ(task.getRunTime(), BASE_MS + 3000);
    clock.advanceMs(500);
    EXPECT_TRUE(waitFor([&] { return journal.size() == 4; }));
}

TEST(TimerThreadCancel, HandleStopsRunningOnceCancelReturnsAndTaskIsLeftAlone) {
    FakeClock clock;
    Journal journal;
    Task slow("s", journal, &clock), other("o", journal, &clock), once("x", journal, &clock);
    std::atomic<bool> running{false}, finished{false};
    slow.onRun_m = [&] {
        running = true;
        std::this_thread::sleep_for(30ms);
        finished = true;
    };
    TimerThread timer(&clock);
    const UINT64 handle = timer.schedule(&slow, 0, 1);
    const UINT64 onceHandle = timer.schedule(&once, 0, 0);
    timer.schedule(&other, 0, 1);
    clock.advanceMs(1);
    ASSERT_TRUE(waitFor([&] { return running.load(); }));
    timer.cancel(handle);
    EXPECT_TRUE(finished.load()) << "cancel returned while the task still ran";
    timer.cancel(onceHandle);  // already run out
    timer.cancel(987654);      // never given out
    const size_t before = journal.size();
    clock.advanceMs(50);
    ASSERT_TRUE(waitFor([&] { return journal.size() >= before + 10; }));
    for (const auto& [name, at] : journal.runs()) {
        EXPECT_TRUE(name != "s" || at == BASE_MS + 1) << "cancelled handle ran at " << at;
    }
    EXPECT_FALSE(slow.isCanceled());
}

TEST(TimerThreadOwnership, StopCancelsAllAndHandedOverTasksAreFreed) {
    FakeClock clock;
    Journal journal;
    std::atomic<bool> ranOut{false}, cancelled{false}, pending{false};
    Task kept("kept", journal, &clock);
    {
        TimerThread timer(&clock);
        auto* oneShot = new Task("1", journal, &clock, &ranOut);
        auto* periodic = new Task("p", journal, &clock, &cancelled);
        auto* waiting = new Task("w", journal, &clock, &pending);
        timer.schedule(oneShot, 0, 0);
        timer.schedule(periodic, 0, 5);
        timer.schedule(waiting, 1000000, 0);
        timer.schedule(&kept, 1000000, 0);
        for (AbstractTimerTask* task : {oneShot, periodic, waiting}) {
            task->markForDeletion();  // after schedule, which resets the mark
        }
        clock.advanceMs(1);
        ASSERT_TRUE(waitFor([&] { return ranOut.load(); }));
        EXPECT_FALSE(cancelled.load());
        periodic->cancel();
        clock.advanceMs(10);
        ASSERT_TRUE(waitFor([&] { return cancelled.load(); }));
        timer.stop();
        EXPECT_TRUE(kept.isCanceled());
        EXPECT_FALSE(pending.load());
    }
    EXPECT_TRUE(pending.load()) << "the destructor frees what was handed over";
}

TEST(TimerThreadWallClock, SchedulingWakesAnIdleTimerAndStopEndsItAtOnce) {
    Journal journal;
    Task task("w", journal);
    auto timer = std::make_unique<TimerThread>();
    std::this_thread::sleep_for(20ms);  // idle on its condition by now
    timer->schedule(&task, 0, 0);
    EXPECT_TRUE(waitFor([&] { return journal.size() == 1; }));
    std::this_thread::sleep_for(20ms);
    const auto start = std::chrono::steady_clock::now();
    timer.reset();
    { TimerThread shortLived; }  // stopped before its thread got going
    EXPECT_LT(std::chrono::steady_clock::now() - start, 1s);
}

}  // namespace
}  // namespace zorvane::pubsub
