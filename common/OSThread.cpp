#include "common/OSThread.h"

#include <sched.h>

#include "common/Log.h"

namespace zorvane::pubsub {

extern "C" {
static void* osThreadExtern_run(void* thread_p) {
    static_cast<OSThread*>(thread_p)->run();
    return nullptr;
}
}

int OSThread::start() {
    LOG_INFO("Starting thread");
    if (pthread_create(&threadId_m, nullptr, &osThreadExtern_run, this) != 0) {
        LOG_ERROR("Could not create context thread");
        threadId_m = 0;
        return 0;
    }
    return 1;
}

void OSThread::run() {
    if (cpu_m != -1) {
        // A set of 1024 CPUs; a number outside it leaves the set empty, which
        // the kernel refuses, so the thread then runs unpinned.
        cpu_set_t set;
        CPU_ZERO(&set);
        if (cpu_m >= 0 && cpu_m < CPU_SETSIZE) {
            CPU_SET(static_cast<int>(cpu_m), &set);
        }
        int rc = sched_setaffinity(0, sizeof set, &set);
        if (rc != 0) {
            LOG_WARNING("OSThread: Could not set CPU affinity (%i).  Continuing....", rc);
        }
    }
    runImpl();
}

int OSThread::wait() {
    LOG_INFO("Stopping thread");
    if (threadId_m != 0) {
        pthread_join(threadId_m, nullptr);
        threadId_m = 0;
    } else {
        LOG_DEBUG("OSThread: Skipping wait on thread.  Thread ID is null.");
    }
    return 0;
}

}  // namespace zorvane::pubsub
