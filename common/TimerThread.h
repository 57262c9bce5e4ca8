// The one timer thread of the process: runs delayed and periodic
// AbstractTimerTasks for all clients, one after the other.
//
// Time is the wall clock in milliseconds (OS::getTimeInUs / 1000), not the
// tick counter. Resolution comes from polling: while anything is scheduled
// the thread wakes every TIMER_TIC_IN_USEC; with nothing scheduled it sleeps
// on a condition until schedule() or stop() wakes it. A task is due once
// the clock in whole milliseconds has passed its run time, so one due in
// the current millisecond waits for the next pass.
//
// A periodic task keeps its phase: its next run time is the old run time
// plus the interval, not the time it actually ran. A task that fell behind
// (a slow task before it, a long run of its own) therefore runs once per
// pass, without pause, until its run time is ahead of the clock again.
//
// Ownership: tasks are not owned, except those marked for deletion, which
// the thread deletes when they leave the schedule (and the destructor
// deletes those still scheduled); such a task must be scheduled under one
// handle only. A task that is not handed over must stay alive while it is
// scheduled: cancel its handle before destroying it, since stop() still
// reaches every scheduled task. The collection owns the TimerThread.
//
// Threads and locks: schedule(), cancel() and stop() may be called from any
// thread. Lock order is runQueueMutex_m before taskQueueMutex_m everywhere.
// runQueueMutex_m is held while tasks run, so cancel() returns only when no
// task runs; it may therefore be called from a task's owner right before
// the task is destroyed, but never from inside a runImpl(). schedule() takes
// only taskQueueMutex_m, so a running task may schedule others.
#pragma once

#include <atomic>
#include <map>
#include <queue>
#include <vector>

#include "common/AbstractTimerTask.h"
#include "common/OS.h"
#include "common/OSThread.h"
#include "common/TimerTimeSource.h"
#include "common/dataTypes.h"

namespace zorvane::pubsub {

// One entry of the schedule: which handle is due when.
struct PriorityQueueStruct {
    UINT64 taskIndex_m;
    UINT64 runTimeInMs_m;
};

// Puts the earliest run time on top of the priority queue. Equal run times
// go in the order they were scheduled (lower handle first).
struct CompareNextRunTimes {
    bool operator()(const PriorityQueueStruct& a, const PriorityQueueStruct& b) const {
        if (a.runTimeInMs_m != b.runTimeInMs_m) {
            return a.runTimeInMs_m > b.runTimeInMs_m;
        }
        return a.taskIndex_m > b.taskIndex_m;
    }
};

// final: the thread starts in the constructor, so a subclass would still be
// under construction while the loop already runs.
class TimerThread final : public OSThread {
  public:
    // The pause between two passes while tasks wait.
    static constexpr UINT64 TIMER_TIC_IN_USEC = 1000;

    // Starts the thread on the wall clock.
    TimerThread();
    // Starts the thread on the given clock (tests). Not owned; it must
    // outlive this object.
    explicit TimerThread(TimerTimeSource* timeSource_p);

    // stop(), joins the thread, and deletes the tasks marked for deletion
    // that are still scheduled.
    ~TimerThread() override;

    TimerThread(const TimerThread&) = delete;
    TimerThread& operator=(const TimerThread&) = delete;

    // Resets the task, gives it the interval (0: run once) and the run time
    // now + delayInMs, and returns its new handle. Handles start at 1 and
    // are never reused. Scheduling the same task again without cancelling
    // the old handle runs it under both.
    UINT64 schedule(AbstractTimerTask* timerTask_p, UINT64 delayInMs, UINT64 intervalInMs);

    // Takes the handle out of service: its task will not be run by it any
    // more once this returns (a run in progress is waited for). The task
    // object is not touched. Unknown or used-up handles are ignored.
    void cancel(UINT64 handle);

    // Ends the loop: cancels every scheduled task and empties the schedule.
    // Does not wait for the thread; the destructor does.
    void stop();

  protected:
    void* runImpl() override;

  private:
    UINT64 nowInMs() const {
        return (timeSource_mp == nullptr ? OS::getTimeInUs() : timeSource_mp->nowInUs()) / 1000;
    }
    void sleepTick() const;
    void moveDueTasks(UINT64 nowInMs);
    void runDueTasks();
    void waitForWork();
    // Under taskQueueMutex_m: the task of a handle, or null when the handle
    // was cancelled (its entry is then removed).
    AbstractTimerTask* takeTaskForRun(UINT64 taskIndex);

    TimerTimeSource* timeSource_mp = nullptr;  // null: wall clock; not owned

    std::priority_queue<PriorityQueueStruct, std::vector<PriorityQueueStruct>, CompareNextRunTimes>
        taskQueue_m;
    std::queue<UINT64> runQueue_m;
    // Handle to task; a null task marks a cancelled handle whose entry is
    // still in taskQueue_m.
    std::map<UINT64, AbstractTimerTask*> taskMap_m;
    mutex_t taskQueueMutex_m;          // taskQueue_m, taskMap_m, currentTaskIndex_m
    condition_t taskQueueCondition_m;  // first task arrives, or stop
    mutex_t runQueueMutex_m;           // runQueue_m; held while tasks run
    std::atomic<bool> shutdownFlag_m{false};
    UINT64 currentTaskIndex_m = 0;  // last handle given out
};

}  // namespace zorvane::pubsub
