// Base of all work that the timer thread runs after a delay or at a fixed
// period (the client-ack rate task, the idle commit of transacted sessions).
//
// A subclass implements runImpl(). The timer thread calls run(), which skips
// a cancelled task and turns a one-shot task into a cancelled one after its
// run. runImpl() runs on the timer thread, must not throw, must not call
// TimerThread::cancel (that would wait on itself), and may call
// TimerThread::schedule.
//
// Ownership: the scheduler does not own a task unless markForDeletion() was
// called; then the timer thread deletes it once it has left the schedule.
//
// Threads: cancel(), isCanceled(), markForDeletion() and markedForDeletion()
// may be used from any thread. The run time, interval and handle belong to
// whoever schedules the task and to the timer thread, which hand them over
// under the timer's lock: a task must not be scheduled again from another
// thread while it is still scheduled.
#pragma once

#include <atomic>

#include "common/dataTypes.h"

namespace zorvane::pubsub {

class AbstractTimerTask {
  public:
    AbstractTimerTask() = default;
    virtual ~AbstractTimerTask() = default;
    AbstractTimerTask(const AbstractTimerTask&) = delete;
    AbstractTimerTask& operator=(const AbstractTimerTask&) = delete;

    // Runs runImpl() unless the task is cancelled; a task without an
    // interval is cancelled afterwards, so it runs once.
    void run();

    // The task must not run again.
    void cancel() { canceled_m.store(true, std::memory_order_release); }
    bool isCanceled() const { return canceled_m.load(std::memory_order_acquire); }

    // Hands ownership to the timer thread, which deletes the task once it
    // has left the schedule.
    void markForDeletion() { markedForDeletion_m.store(true, std::memory_order_release); }
    bool markedForDeletion() const { return markedForDeletion_m.load(std::memory_order_acquire); }

    // Clears both flags and sets run time, interval and handle to 0.
    void reset();

    // Period in milliseconds; 0 means run once.
    UINT64 getInterval() const { return intervalInMs_m; }
    void setInterval(UINT64 intervalInMs) { intervalInMs_m = intervalInMs; }
    // Next due time in milliseconds on the wall clock.
    UINT64 getRunTime() const { return runTimeInMs_m; }
    void setRunTime(UINT64 runTimeInMs) { runTimeInMs_m = runTimeInMs; }
    // Free for the subclass: the handle of its scheduling, for a later
    // cancel. The scheduler itself never sets it (reset() clears it).
    UINT64 getTaskHandle() const { return taskHandle_m; }
    void setTaskHandle(UINT64 handle) { taskHandle_m = handle; }

  protected:
    virtual void runImpl() = 0;

  private:
    // Atomic rather than plain flags: any thread may cancel while the timer
    // thread tests them.
    std::atomic<bool> canceled_m{false};
    std::atomic<bool> markedForDeletion_m{false};
    UINT64 runTimeInMs_m = 0;
    UINT64 intervalInMs_m = 0;
    UINT64 taskHandle_m = 0;
};

}  // namespace zorvane::pubsub
