#include "common/TimerThread.h"

#include <set>

namespace zorvane::pubsub {

TimerThread::TimerThread() : TimerThread(nullptr) {}

TimerThread::TimerThread(TimerTimeSource* timeSource_p) : timeSource_mp(timeSource_p) {
    OS::mutexInit(&taskQueueMutex_m);
    OS::mutexInit(&runQueueMutex_m);
    OS::condInit(&taskQueueCondition_m);
    // The flag is cleared here, before the thread exists, rather than by the
    // loop when it starts: a stop() that came before the new thread got
    // going would otherwise be wiped out, and the thread would then sleep
    // on the empty schedule for ever.
    shutdownFlag_m.store(false);
    start();
}

TimerThread::~TimerThread() {
    stop();
    wait();
    // Tasks handed over by markForDeletion that never left the schedule
    // (still waiting at stop, or scheduled after it) are ours to free. A task
    // scheduled under several handles appears more than once.
    std::set<AbstractTimerTask*> owned;
    for (const auto& [index, task_p] : taskMap_m) {
        if (task_p != nullptr && task_p->markedForDeletion()) {
            owned.insert(task_p);
        }
    }
    for (AbstractTimerTask* task_p : owned) {
        delete task_p;
    }
    OS::condDestroy(&taskQueueCondition_m);
    OS::mutexDestroy(&runQueueMutex_m);
    OS::mutexDestroy(&taskQueueMutex_m);
}

UINT64 TimerThread::schedule(AbstractTimerTask* timerTask_p, UINT64 delayInMs,
                             UINT64 intervalInMs) {
    OS::mutexLock(&taskQueueMutex_m);
    timerTask_p->reset();
    timerTask_p->setInterval(intervalInMs);
    const UINT64 runTimeInMs = nowInMs() + delayInMs;
    timerTask_p->setRunTime(runTimeInMs);
    const UINT64 handle = ++currentTaskIndex_m;
    taskQueue_m.push(PriorityQueueStruct{handle, runTimeInMs});
    taskMap_m[handle] = timerTask_p;
    // Only an empty schedule lets the thread sleep on the condition; with
    // entries waiting it polls every tick and finds the new one by itself.
    if (taskQueue_m.size() == 1) {
        OS::condSignal(&taskQueueCondition_m);
    }
    OS::mutexUnlock(&taskQueueMutex_m);
    return handle;
}

void TimerThread::cancel(UINT64 handle) {
    // The run queue lock first: it is held while tasks run, so once we have
    // it no task of this timer is running, and none will run under this
    // handle after we let go.
    OS::mutexLock(&runQueueMutex_m);
    OS::mutexLock(&taskQueueMutex_m);
    auto found = taskMap_m.find(handle);
    if (found != taskMap_m.end()) {
        // The queue entry stays; the loop drops it when it comes due.
        found->second = nullptr;
    }
    OS::mutexUnlock(&taskQueueMutex_m);
    OS::mutexUnlock(&runQueueMutex_m);
}

void TimerThread::stop() {
    shutdownFlag_m.store(true);
    OS::mutexLock(&taskQueueMutex_m);
    while (!taskQueue_m.empty()) {
        auto found = taskMap_m.find(taskQueue_m.top().taskIndex_m);
        if (found != taskMap_m.end() && found->second != nullptr) {
            found->second->cancel();
        }
        taskQueue_m.pop();
    }
    OS::mutexUnlock(&taskQueueMutex_m);
    OS::condSignal(&taskQueueCondition_m);
}

void* TimerThread::runImpl() {
    while (!shutdownFlag_m.load()) {
        // One clock read per pass: every task due at this instant is taken
        // in this pass, in run time order.
        const UINT64 now = nowInMs();
        OS::mutexLock(&runQueueMutex_m);
        moveDueTasks(now);
        runDueTasks();
        OS::mutexUnlock(&runQueueMutex_m);
        waitForWork();
    }
    return nullptr;
}

void TimerThread::moveDueTasks(UINT64 now) {
    OS::mutexLock(&taskQueueMutex_m);
    while (!taskQueue_m.empty() && now > taskQueue_m.top().runTimeInMs_m) {
        const UINT64 index = taskQueue_m.top().taskIndex_m;
        taskQueue_m.pop();
        auto found = taskMap_m.find(index);
        if (found == taskMap_m.end()) {
            continue;
        }
        if (found->second == nullptr) {
            // A cancelled handle ends here, when its entry comes due.
            taskMap_m.erase(found);
        } else {
            runQueue_m.push(index);
        }
    }
    OS::mutexUnlock(&taskQueueMutex_m);
}

AbstractTimerTask* TimerThread::takeTaskForRun(UINT64 taskIndex) {
    OS::mutexLock(&taskQueueMutex_m);
    AbstractTimerTask* task_p = nullptr;
    auto found = taskMap_m.find(taskIndex);
    if (found != taskMap_m.end()) {
        task_p = found->second;
        if (task_p == nullptr) {
            // Cancelled after it came due (while a task was being deleted
            // with the run queue lock let go): it has no queue entry left
            // that would remove it later.
            taskMap_m.erase(found);
        }
    }
    OS::mutexUnlock(&taskQueueMutex_m);
    return task_p;
}

void TimerThread::runDueTasks() {
    while (!runQueue_m.empty()) {
        const UINT64 index = runQueue_m.front();
        runQueue_m.pop();
        AbstractTimerTask* task_p = takeTaskForRun(index);
        if (task_p == nullptr) {
            continue;
        }
        task_p->run();
        if (!task_p->isCanceled()) {
            // From the old run time, not from now: the task keeps its phase,
            // and one that is late comes due again on the next pass until
            // it has caught up with the clock.
            const UINT64 nextRunTime = task_p->getRunTime() + task_p->getInterval();
            task_p->setRunTime(nextRunTime);
            OS::mutexLock(&taskQueueMutex_m);
            taskQueue_m.push(PriorityQueueStruct{index, nextRunTime});
            OS::mutexUnlock(&taskQueueMutex_m);
            continue;
        }
        OS::mutexLock(&taskQueueMutex_m);
        taskMap_m.erase(index);
        OS::mutexUnlock(&taskQueueMutex_m);
        if (task_p->markedForDeletion()) {
            // Let go of the run lock while the task is destroyed: its
            // destructor may cancel other handles, which takes that lock.
            OS::mutexUnlock(&runQueueMutex_m);
            delete task_p;
            OS::mutexLock(&runQueueMutex_m);
        }
    }
}

void TimerThread::waitForWork() {
    OS::mutexLock(&taskQueueMutex_m);
    if (taskQueue_m.empty()) {
        // Idle: sleep without a limit until schedule() puts in a first task
        // or stop() ends the thread. A spurious wake-up only costs a pass.
        if (!shutdownFlag_m.load()) {
            OS::condTimedWait(&taskQueueCondition_m, &taskQueueMutex_m, -1);
        }
        OS::mutexUnlock(&taskQueueMutex_m);
        return;
    }
    OS::mutexUnlock(&taskQueueMutex_m);
    sleepTick();
}

void TimerThread::sleepTick() const {
    if (timeSource_mp == nullptr) {
        OS::sleepInUs(static_cast<int>(TIMER_TIC_IN_USEC));
    } else {
        timeSource_mp->sleepInUs(TIMER_TIC_IN_USEC);
    }
}

}  // namespace zorvane::pubsub
