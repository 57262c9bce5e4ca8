// Portable floor of the tool: clocks, sleeps, locks, random numbers, CPU
// facts. Static operations only; all of it is Linux on x86-64.
//
// Threads: every operation may be called from any thread. The cached CPU
// speed is measured once by the main thread during start-up, before other
// threads run; after that it is only read.
#pragma once

#include <string>

#include "common/dataTypes.h"

namespace zorvane::pubsub {

class OS {
  public:
    // ---- time ----

    // Wall clock (CLOCK_REALTIME) in microseconds.
    static UINT64 getTimeInUs();

    // The clock of all latency and rate measurement ("ticks"): the processor's
    // time stamp counter, or wall-clock microseconds once
    // configureClockCyclesCheck(false) was called ("-tod"). Never blocks.
    static inline UINT64 numClockCycles() {
        if (USE_CLOCK_TICKS) {
            return __builtin_ia32_rdtsc();
        }
        return getTimeInUs();
    }

    // Chooses what numClockCycles reads. Called while options are parsed,
    // before the first getCpuSpeedInHz.
    static void configureClockCyclesCheck(bool useClockTicks);

    // Ticks per second. The first call measures it (one second of sleep) and
    // caches the result.
    static UINT64 getCpuSpeedInHz();

    // Measures ticks per second over one second of sleep; never cached.
    static UINT64 estimateCpuSpeedInHz();

    // User plus system CPU time of the process in microseconds; 0 on failure.
    static UINT64 getCpuUsageInUs();

    // ---- sleeping ----

    static void sleepInSec(int seconds);

    // Sleeps the whole time: a signal that interrupts the sleep does not
    // shorten it.
    static void sleepInUs(int microseconds);

    // Sleeps until the wall-clock time timeInNs. Returns the time left before
    // the sleep in nanoseconds (positive), or, when the time has passed, the
    // negative lateness at once without sleeping. Never returns early.
    static INT64 waitUntil(UINT64 timeInNs);

    static void threadYield();

    // ---- locks: log a failure at error level and return false ----

    static bool mutexInit(mutex_t* mutex_p);
    static bool mutexDestroy(mutex_t* mutex_p);
    static bool mutexLock(mutex_t* mutex_p);
    static bool mutexUnlock(mutex_t* mutex_p);
    static bool condInit(condition_t* cond_p);
    static bool condDestroy(condition_t* cond_p);
    static bool condSignal(condition_t* cond_p);
    // Waits on cond_p with mutex_p held. A negative timeout waits without
    // limit; otherwise true when signalled within timeoutInSec whole seconds,
    // false (and a log line) on time-out or error.
    static bool condTimedWait(condition_t* cond_p, mutex_t* mutex_p, int timeoutInSec);

    // ---- random numbers (erand48); a state is owned by its one user ----

    // Allocates a generator state (three words) on the heap; the caller frees
    // it with delete[]. A seed of 0 takes the low 48 bits of the clock.
    static UINT16* randomInitState(INT64 seed);
    // An integer from low up to but not including high.
    static INT32 randomGetNum(UINT16* state_p, INT32 low, INT32 high);
    // A number from 0.0 up to but not including 1.0.
    static double randomGetDouble(UINT16* state_p);

    // ---- misc ----

    // Carry a number through a pointer-sized field (library correlation tags).
    static void* stashTruncatedUint64ValueIntoPointer(UINT64 value) {
        return reinterpret_cast<void*>(static_cast<uintptr_t>(value));
    }
    static UINT64 readTruncatedUint64ValueFromPointer(void* value_p) {
        return static_cast<UINT64>(reinterpret_cast<uintptr_t>(value_p));
    }

    // The argument vector the option parser reads; unchanged on this platform.
    static charPtr32* getArgVOS(charPtr32* argV, int argC);

    // The calling thread's CPU affinity (CPUs 0 to 31) as the text the tool
    // prints at start.
    static std::string getCpuMaskStr();

    static bool USE_CLOCK_TICKS;
    static UINT64 m_cpuSpeedInHz;
};

}  // namespace zorvane::pubsub
