#include "common/OS.h"

#include <gtest/gtest.h>
#include <signal.h>
#include <sys/time.h>

#include <memory>
#include <set>

using namespace zorvane::pubsub;

namespace {

std::unique_ptr<UINT16[]> makeState(INT64 seed) {
    return std::unique_ptr<UINT16[]>(OS::randomInitState(seed));
}

extern "C" void ignoreAlarm(int) {}

}  // namespace

TEST(OSTime, WaitUntilNeverReturnsEarlyAndReportsLateness) {
    for (int i = 0; i < 20; ++i) {
        UINT64 target = OS::getTimeInUs() * 1000 + 1500000 + i * 1777;  // 1.5 ms ahead
        INT64 left = OS::waitUntil(target);
        EXPECT_GT(left, 0);
        EXPECT_GE(OS::getTimeInUs() * 1000, target);
    }
    UINT64 past = OS::getTimeInUs() * 1000 - 5000000;
    UINT64 before = OS::getTimeInUs();
    EXPECT_LE(OS::waitUntil(past), -5000000);
    EXPECT_LT(OS::getTimeInUs() - before, 1000U) << "a time in the past must not sleep";
}

TEST(OSTime, SleepInUsSleepsOutTheFullTimeThroughSignals) {
    struct sigaction action {};
    action.sa_handler = ignoreAlarm;
    struct sigaction previous {};
    ASSERT_EQ(sigaction(SIGALRM, &action, &previous), 0);
    struct itimerval timer {};
    timer.it_interval.tv_usec = 2000;
    timer.it_value.tv_usec = 2000;
    setitimer(ITIMER_REAL, &timer, nullptr);

    UINT64 start = OS::getTimeInUs();
    OS::sleepInUs(50000);
    UINT64 slept = OS::getTimeInUs() - start;

    struct itimerval off {};
    setitimer(ITIMER_REAL, &off, nullptr);
    sigaction(SIGALRM, &previous, nullptr);
    EXPECT_GE(slept, 50000U);
}

TEST(OSTime, TickCounterAdvancesAndWallClockModeCountsMicroseconds) {
    UINT64 a = OS::numClockCycles();
    UINT64 b = OS::numClockCycles();
    EXPECT_LE(a, b);

    OS::configureClockCyclesCheck(false);
    UINT64 wall = OS::getTimeInUs();
    UINT64 ticks = OS::numClockCycles();
    OS::configureClockCyclesCheck(true);
    EXPECT_LE(wall, ticks);
    EXPECT_LT(ticks - wall, 1000000U);
}

TEST(OSRandom, GetNumStaysInItsHalfOpenRange) {
    auto state = makeState(12345);
    EXPECT_EQ(OS::randomGetNum(state.get(), 5, 6), 5);
    std::set<INT32> seen;
    for (int i = 0; i < 10000; ++i) {
        INT32 value = OS::randomGetNum(state.get(), 3, 10);
        ASSERT_GE(value, 3);
        ASSERT_LT(value, 10);
        seen.insert(value);
        double d = OS::randomGetDouble(state.get());
        ASSERT_GE(d, 0.0);
        ASSERT_LT(d, 1.0);
    }
    EXPECT_EQ(seen.size(), 7U) << "every value of the range should come up";
}

TEST(OSRandom, SameSeedGivesSameSequenceAndZeroSeedUsesTheClock) {
    auto first = makeState(987654321);
    auto second = makeState(987654321);
    auto other = makeState(987654322);
    bool differs = false;
    for (int i = 0; i < 100; ++i) {
        INT32 a = OS::randomGetNum(first.get(), 0, 1 << 30);
        EXPECT_EQ(a, OS::randomGetNum(second.get(), 0, 1 << 30));
        differs |= a != OS::randomGetNum(other.get(), 0, 1 << 30);
    }
    EXPECT_TRUE(differs);

    auto zero = makeState(0);
    EXPECT_FALSE(zero[0] == 0 && zero[1] == 0 && zero[2] == 0);
}

TEST(OSLocks, TimedWaitTimesOutAndSignalWakes) {
    mutex_t mutex;
    condition_t cond;
    ASSERT_TRUE(OS::mutexInit(&mutex));
    ASSERT_TRUE(OS::condInit(&cond));
    OS::mutexLock(&mutex);
    EXPECT_FALSE(OS::condTimedWait(&cond, &mutex, 0));
    OS::mutexUnlock(&mutex);
    EXPECT_TRUE(OS::condDestroy(&cond));
    EXPECT_TRUE(OS::mutexDestroy(&mutex));
}

TEST(OSInfo, CpuMaskLineShowsAtLeastFourHexDigits) {
    std::string mask = OS::getCpuMaskStr();
    ASSERT_EQ(mask.rfind("\nCPU mask currently set to: 0x", 0), 0U) << mask;
    std::string digits = mask.substr(30, mask.find('.') - 30);
    EXPECT_GE(digits.size(), 4U);
    EXPECT_EQ(digits.find_first_not_of("0123456789abcdef"), std::string::npos) << digits;
    EXPECT_NE(mask.find(".  To modify use linux cmd: taskset\n"), std::string::npos);
}
