#include "common/AbstractTimerTask.h"

namespace zorvane::pubsub {

void AbstractTimerTask::run() {
    if (isCanceled()) {
        return;
    }
    runImpl();
    // A one-shot task ends here; marking it cancelled is what tells the
    // timer thread not to put it back on the schedule.
    if (intervalInMs_m == 0) {
        cancel();
    }
}

void AbstractTimerTask::reset() {
    canceled_m.store(false, std::memory_order_release);
    markedForDeletion_m.store(false, std::memory_order_release);
    runTimeInMs_m = 0;
    intervalInMs_m = 0;
    taskHandle_m = 0;
}

}  // namespace zorvane::pubsub
