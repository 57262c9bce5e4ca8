#include "core/ContextConfig.h"

#include <sched.h>

#include <algorithm>
#include <string_view>

#include "api/LastError.h"
#include "api/Logger.h"

namespace zorvane::zorclient {

namespace {

constexpr std::string_view KNOWN_KEYS[] = {ZORCLIENT_CONTEXT_PROP_MAX_SESSIONS,
                                           ZORCLIENT_CONTEXT_PROP_MAX_FLOWS,
                                           ZORCLIENT_CONTEXT_PROP_CREATE_THREAD,
                                           ZORCLIENT_CONTEXT_PROP_THREAD_AFFINITY,
                                           ZORCLIENT_CONTEXT_PROP_THREAD_AFFINITY_CPU_LIST,
                                           ZORCLIENT_CONTEXT_PROP_BUSY_POLL_US};

constexpr std::int64_t MAX_CPU = CPU_SETSIZE - 1;

}  // namespace

bool ContextConfig::parseCpuList(const std::string& text, std::vector<int>* cpus_p) {
    std::vector<int> cpus;
    std::string_view rest = text;
    while (true) {
        const std::size_t comma = rest.find(',');
        const std::string_view item = rest.substr(0, comma);
        const std::size_t dash = item.find('-');
        std::int64_t first = 0;
        std::int64_t last = 0;
        if (!PropertyList::parseDecimal(item.substr(0, dash), &first)) {
            return false;
        }
        last = first;
        if (dash != std::string_view::npos &&
            !PropertyList::parseDecimal(item.substr(dash + 1), &last)) {
            return false;
        }
        if (first < 0 || last < first || last > MAX_CPU) {
            return false;
        }
        for (std::int64_t cpu = first; cpu <= last; ++cpu) {
            cpus.push_back(static_cast<int>(cpu));
        }
        if (comma == std::string_view::npos) {
            break;
        }
        rest.remove_prefix(comma + 1);
    }
    std::sort(cpus.begin(), cpus.end());
    cpus.erase(std::unique(cpus.begin(), cpus.end()), cpus.end());
    *cpus_p = std::move(cpus);
    return true;
}

zorClient_returnCode_t ContextConfig::parse(const PropertyList& list, const char* function_p,
                                            ContextConfig* config_p) {
    ContextConfig next = *config_p;
    zorClient_returnCode_t rc = list.getInteger(ZORCLIENT_CONTEXT_PROP_MAX_SESSIONS, 1, 1000000,
                                                &next.maxSessions, function_p);
    if (rc == ZORCLIENT_OK) {
        rc = list.getInteger(ZORCLIENT_CONTEXT_PROP_MAX_FLOWS, 1, 100000000, &next.maxFlows,
                             function_p);
    }
    if (rc == ZORCLIENT_OK) {
        rc = list.getFlag(ZORCLIENT_CONTEXT_PROP_CREATE_THREAD, &next.createThread, function_p);
    }
    std::int64_t busyPollUs = next.busyPoll.count();
    if (rc == ZORCLIENT_OK) {
        rc = list.getInteger(ZORCLIENT_CONTEXT_PROP_BUSY_POLL_US, 0, 1000000, &busyPollUs,
                             function_p);
    }
    std::int64_t mask = 0;
    if (rc == ZORCLIENT_OK) {
        rc = list.getInteger(ZORCLIENT_CONTEXT_PROP_THREAD_AFFINITY, 0, INT64_MAX, &mask,
                             function_p);
    }
    if (rc != ZORCLIENT_OK) {
        return rc;
    }
    next.busyPoll = std::chrono::microseconds(busyPollUs);
    next.cpus.clear();
    for (int cpu = 0; cpu < 63; ++cpu) {
        if ((mask >> cpu) & 1) {
            next.cpus.push_back(cpu);
        }
    }
    if (const std::string* cpuList_p = list.find(ZORCLIENT_CONTEXT_PROP_THREAD_AFFINITY_CPU_LIST);
        cpuList_p != nullptr && !cpuList_p->empty()) {
        if (!parseCpuList(*cpuList_p, &next.cpus)) {
            return LastError::fail(ZORCLIENT_SUBCODE_PARAM_OUT_OF_RANGE,
                                   "%s: property %s has the value \"%s\"; expected CPU numbers "
                                   "from 0 to %lld and ranges, such as \"0,2-3\"",
                                   function_p, ZORCLIENT_CONTEXT_PROP_THREAD_AFFINITY_CPU_LIST,
                                   cpuList_p->c_str(), static_cast<long long>(MAX_CPU));
        }
    }
    for (const PropertyList::Entry& entry : list.entries()) {
        if (PropertyList::hasPrefix(entry.first, "CONTEXT_") &&
            std::find(std::begin(KNOWN_KEYS), std::end(KNOWN_KEYS), entry.first) ==
                std::end(KNOWN_KEYS)) {
            ZC_LOG(ZORCLIENT_LOG_NOTICE, "%s: unknown context property %s ignored", function_p,
                   entry.first.c_str());
        }
    }
    *config_p = std::move(next);
    return ZORCLIENT_OK;
}

}  // namespace zorvane::zorclient
