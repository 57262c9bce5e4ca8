#include "common/OS.h"

#include <errno.h>
#include <sched.h>
#include <stdlib.h>
#include <sys/resource.h>
#include <sys/select.h>
#include <time.h>
#include <unistd.h>

#include <cstdio>
#include <iomanip>
#include <sstream>

#include "common/Log.h"

namespace zorvane::pubsub {

bool OS::USE_CLOCK_TICKS = true;
UINT64 OS::m_cpuSpeedInHz = 0;

UINT64 OS::getTimeInUs() {
    struct timespec now;
    clock_gettime(CLOCK_REALTIME, &now);
    return static_cast<UINT64>(now.tv_sec) * 1000000ULL + static_cast<UINT64>(now.tv_nsec) / 1000;
}

void OS::configureClockCyclesCheck(bool useClockTicks) {
    USE_CLOCK_TICKS = useClockTicks;
}

UINT64 OS::getCpuSpeedInHz() {
    if (m_cpuSpeedInHz == 0) {
        m_cpuSpeedInHz = estimateCpuSpeedInHz();
    }
    return m_cpuSpeedInHz;
}

UINT64 OS::estimateCpuSpeedInHz() {
    // Measured against the wall clock rather than read from the system's CPU
    // information: what matters is the rate of the counter the tool reads,
    // which need not be the nominal clock of the processor.
    UINT64 startUs = getTimeInUs();
    UINT64 startTicks = numClockCycles();
    sleep(1);
    UINT64 endUs = getTimeInUs();
    UINT64 endTicks = numClockCycles();
    UINT64 elapsedUs = endUs - startUs;
    if (elapsedUs == 0) {
        return 0;
    }
    return static_cast<UINT64>(static_cast<long double>(endTicks - startTicks) * 1000000.0L /
                               static_cast<long double>(elapsedUs));
}

UINT64 OS::getCpuUsageInUs() {
    struct rusage usage;
    if (getrusage(RUSAGE_SELF, &usage) != 0) {
        perror("getrusage");
        return 0;
    }
    UINT64 user = static_cast<UINT64>(usage.ru_utime.tv_sec) * 1000000ULL +
                  static_cast<UINT64>(usage.ru_utime.tv_usec);
    UINT64 sys = static_cast<UINT64>(usage.ru_stime.tv_sec) * 1000000ULL +
                 static_cast<UINT64>(usage.ru_stime.tv_usec);
    return user + sys;
}

void OS::sleepInSec(int seconds) {
    sleep(static_cast<unsigned>(seconds < 0 ? 0 : seconds));
}

void OS::sleepInUs(int microseconds) {
    if (microseconds <= 0) {
        return;
    }
    struct timespec request;
    request.tv_sec = microseconds / 1000000;
    request.tv_nsec = static_cast<long>(microseconds % 1000000) * 1000;
    struct timespec remaining;
    // A signal (SIGALRM with "-alm=", a first Ctrl-C) must not cut a pacing
    // or polling sleep short, so an interrupted sleep goes on for what is left.
    while (nanosleep(&request, &remaining) != 0) {
        if (errno != EINTR) {
            LOG_ERROR("Could not nanosleep, error = %d", errno);
            return;
        }
        request = remaining;
    }
}

INT64 OS::waitUntil(UINT64 timeInNs) {
    INT64 diffNs = static_cast<INT64>(timeInNs - getTimeInUs() * 1000ULL);
    if (diffNs <= 0) {
        return diffNs;
    }
    // select() with no descriptors sleeps to microsecond resolution. It may
    // return early on a signal; the remainder is slept out so that a caller
    // pacing an open-loop schedule never sends before its time.
    UINT64 wakeUs = timeInNs / 1000 + ((timeInNs % 1000) != 0 ? 1 : 0);
    for (;;) {
        UINT64 nowUs = getTimeInUs();
        if (nowUs >= wakeUs) {
            break;
        }
        UINT64 leftUs = wakeUs - nowUs;
        struct timeval timeout;
        timeout.tv_sec = static_cast<time_t>(leftUs / 1000000);
        timeout.tv_usec = static_cast<suseconds_t>(leftUs % 1000000);
        select(0, nullptr, nullptr, nullptr, &timeout);
    }
    return diffNs;
}

void OS::threadYield() {
    sched_yield();
}

bool OS::mutexInit(mutex_t* mutex_p) {
    int rc = pthread_mutex_init(mutex_p, nullptr);
    if (rc != 0) {
        LOG_ERROR("Could not initialize mutex, error = %i", rc);
        return false;
    }
    return true;
}

bool OS::mutexDestroy(mutex_t* mutex_p) {
    int rc = pthread_mutex_destroy(mutex_p);
    if (rc != 0) {
        LOG_ERROR("Could not destroy mutex, error = %i", rc);
        return false;
    }
    return true;
}

bool OS::mutexLock(mutex_t* mutex_p) {
    int rc = pthread_mutex_lock(mutex_p);
    if (rc != 0) {
        LOG_ERROR("Could not lock mutex, error = %i", rc);
        return false;
    }
    return true;
}

bool OS::mutexUnlock(mutex_t* mutex_p) {
    int rc = pthread_mutex_unlock(mutex_p);
    if (rc != 0) {
        LOG_ERROR("Could not unlock mutex, error = %i", rc);
        return false;
    }
    return true;
}

bool OS::condInit(condition_t* cond_p) {
    int rc = pthread_cond_init(cond_p, nullptr);
    if (rc != 0) {
        LOG_ERROR("Could not create init condition, error = %i", rc);
        return false;
    }
    return true;
}

bool OS::condDestroy(condition_t* cond_p) {
    int rc = pthread_cond_destroy(cond_p);
    if (rc != 0) {
        LOG_ERROR("Could not create destroy condition, error = %i", rc);
        return false;
    }
    return true;
}

bool OS::condSignal(condition_t* cond_p) {
    int rc = pthread_cond_signal(cond_p);
    if (rc != 0) {
        LOG_ERROR("Could not signal condition, error = %d", rc);
        return false;
    }
    return true;
}

bool OS::condTimedWait(condition_t* cond_p, mutex_t* mutex_p, int timeoutInSec) {
    int rc;
    if (timeoutInSec < 0) {
        rc = pthread_cond_wait(cond_p, mutex_p);
    } else {
        struct timespec deadline;
        if (clock_gettime(CLOCK_REALTIME, &deadline) != 0) {
            LOG_ERROR("Could not get time for condition wait, error = %i", errno);
            return false;
        }
        deadline.tv_sec += timeoutInSec;
        rc = pthread_cond_timedwait(cond_p, mutex_p, &deadline);
    }
    if (rc == ETIMEDOUT) {
        LOG_ERROR("Wait on condition timed out, timeout = %d sec", timeoutInSec);
        return false;
    }
    if (rc != 0) {
        LOG_ERROR("Could not wait on condition, error = %d", rc);
        return false;
    }
    return true;
}

UINT16* OS::randomInitState(INT64 seed) {
    UINT64 bits = static_cast<UINT64>(seed);
    if (bits == 0) {
        bits = numClockCycles() & 0xFFFFFFFFFFFFULL;
    }
    UINT16* state_p = new UINT16[3];
    state_p[0] = static_cast<UINT16>(bits & 0xFFFF);
    state_p[1] = static_cast<UINT16>((bits >> 16) & 0xFFFF);
    state_p[2] = static_cast<UINT16>((bits >> 32) & 0xFFFF);
    // The first draw after seeding is dropped, as every generator made here
    // has always done, so that a given seed keeps giving the same sequence.
    erand48(state_p);
    return state_p;
}

INT32 OS::randomGetNum(UINT16* state_p, INT32 low, INT32 high) {
    double span = static_cast<double>(high) - static_cast<double>(low);
    return static_cast<INT32>(low + span * erand48(state_p));
}

double OS::randomGetDouble(UINT16* state_p) {
    return erand48(state_p);
}

charPtr32* OS::getArgVOS(charPtr32* argV, int /*argC*/) {
    return argV;
}

std::string OS::getCpuMaskStr() {
    cpu_set_t set;
    CPU_ZERO(&set);
    if (sched_getaffinity(0, sizeof set, &set) != 0) {
        return "Could not determine cpu affinity.\n";
    }
    unsigned long mask = 0;
    for (int cpu = 0; cpu < 32; ++cpu) {
        if (CPU_ISSET(cpu, &set)) {
            mask |= 1UL << cpu;
        }
    }
    std::ostringstream text;
    text << "\nCPU mask currently set to: 0x" << std::hex << std::setw(4) << std::setfill('0')
         << mask << ".  To modify use linux cmd: taskset\n";
    return text.str();
}

}  // namespace zorvane::pubsub
