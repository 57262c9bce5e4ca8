// The settings of a context from its "CONTEXT_..." properties.
//
//   "CONTEXT_MAX_SESSIONS"  sessions at once, 1..1000000, default 10000
//   "CONTEXT_MAX_FLOWS"     flows at once over all sessions, 1..100000000, default 20000
//   "CONTEXT_CREATE_THREAD" "1": the library runs the event loop on a thread of its own
//   "CONTEXT_THREAD_AFFINITY" CPU bit mask of that thread (bit n = CPU n), 0 = not pinned
//   "CONTEXT_THREAD_AFFINITY_CPU_LIST" CPUs of that thread, e.g. "0,2-3"; wins over the mask
//   "CONTEXT_BUSY_POLL_US"  microseconds to spin for events before sleeping, 0..1000000, default 0
//
// Other "CONTEXT_..." keys are logged and ignored, keys of other prefixes ignored silently.
#pragma once

#include <chrono>
#include <cstdint>
#include <vector>

#include "api/PropertyList.h"

namespace zorvane::zorclient {

struct ContextConfig {
    std::int64_t maxSessions = 10000;
    std::int64_t maxFlows = 20000;
    bool createThread = false;
    std::vector<int> cpus;  // the own thread's CPUs; empty: not pinned
    std::chrono::microseconds busyPoll{0};

    // Reads list into *config_p. A bad value fails (error info naming function_p and the key)
    // and leaves *config_p as it was.
    static zorClient_returnCode_t parse(const PropertyList& list, const char* function_p,
                                        ContextConfig* config_p);

    // "0,2-3" into CPU numbers (sorted, no repeats); false for a malformed list.
    static bool parseCpuList(const std::string& text, std::vector<int>* cpus_p);
};

}  // namespace zorvane::zorclient
