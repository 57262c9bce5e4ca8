// The clocks and sleeps of a publisher thread, as a seam for tests.
//
// A publisher reads time in three forms: wall-clock microseconds (start and
// end times, bursts, rebasing the schedule), an absolute wake-up time in
// nanoseconds (the open-loop schedule) and the processor's cycle counter
// (smooth publishing). PubTimeSource bundles them with the sleeps, so that
// a test can step time by hand and check send times exactly, without
// waiting for the wall clock and without depending on the machine's load.
//
// The production publisher has no PubTimeSource object: its loop is a
// template over OsPubTimeSource, whose members are inline calls of OS, so
// the real schedule pays nothing for the seam. A thread given a
// PubTimeSource runs the same template over the virtual interface instead
// (one test of a null pointer per run, not per message).
//
// Threads: a source is used by the one publisher thread it was given to,
// and nowInUs also by the thread that calls ClientPubThread::resetStats.
#pragma once

#include "common/OS.h"
#include "common/dataTypes.h"

namespace zorvane::pubsub {

class PubTimeSource {
  public:
    virtual ~PubTimeSource() = default;

    // Cycle counter ticks per second.
    virtual UINT64 cpuSpeedInHz() = 0;
    // Wall-clock time in microseconds.
    virtual UINT64 nowInUs() = 0;
    // Sleeps until the wall-clock time timeInNs. Returns the time that was
    // left in nanoseconds, or at once the negative lateness when it has
    // passed. Never returns before timeInNs.
    virtual INT64 waitUntil(UINT64 timeInNs) = 0;
    // The cycle counter.
    virtual UINT64 numClockCycles() = 0;
    // Returns once the cycle counter has reached targetCycles, without
    // giving up the processor.
    virtual void spinUntilCycles(UINT64 targetCycles) = 0;
    virtual void sleepInUs(int microseconds) = 0;
    virtual void sleepInSec(int seconds) = 0;
};

// The real clocks. Not derived from PubTimeSource: the publish loop is
// instantiated on this type directly, so every call is inlined.
struct OsPubTimeSource {
    UINT64 cpuSpeedInHz() { return OS::getCpuSpeedInHz(); }
    UINT64 nowInUs() { return OS::getTimeInUs(); }
    INT64 waitUntil(UINT64 timeInNs) { return OS::waitUntil(timeInNs); }
    UINT64 numClockCycles() { return OS::numClockCycles(); }
    void spinUntilCycles(UINT64 targetCycles) {
        // A busy wait on purpose: smooth publishing trades a processor for
        // a message spacing that no sleep can give.
        while (OS::numClockCycles() < targetCycles) {
        }
    }
    void sleepInUs(int microseconds) { OS::sleepInUs(microseconds); }
    void sleepInSec(int seconds) { OS::sleepInSec(seconds); }
};

}  // namespace zorvane::pubsub
