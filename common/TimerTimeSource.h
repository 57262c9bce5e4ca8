// The clock and the sleep of the timer thread, as a seam for tests.
//
// The production timer thread has no time source object: it reads
// OS::getTimeInUs and sleeps with OS::sleepInUs directly, behind one test of
// a null pointer per pass. A test hands its own source to the TimerThread
// constructor to step time by hand, so that due times, ordering and catch-up
// can be checked without waiting for the wall clock.
//
// Threads: nowInUs and sleepInUs are called by the timer thread; nowInUs
// also by any thread that calls TimerThread::schedule. An implementation
// must be safe for that.
#pragma once

#include "common/dataTypes.h"

namespace zorvane::pubsub {

class TimerTimeSource {
  public:
    virtual ~TimerTimeSource() = default;

    // Wall-clock time in microseconds.
    virtual UINT64 nowInUs() = 0;

    // The pause between two passes of the timer loop.
    virtual void sleepInUs(UINT64 microseconds) = 0;
};

}  // namespace zorvane::pubsub
