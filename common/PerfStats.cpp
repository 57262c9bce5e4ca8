#include "common/PerfStats.h"

#include <algorithm>
#include <cmath>
#include <iomanip>
#include <iostream>
#include <limits>
#include <sstream>

#include "common/Log.h"
#include "common/PubSubException.h"

namespace zorvane::pubsub {

namespace {

constexpr UINT64 UINT64_MAX_s = std::numeric_limits<UINT64>::max();

bool isPriority(INT32 priority) {
    return priority >= 0 && priority <= 9;
}

// Double to UINT64 without the undefined cases: negative or NaN gives 0, too
// large gives the maximum.
UINT64 toUint64Saturated(double value) {
    if (!(value > 0.0)) {
        return 0;
    }
    if (value >= 18446744073709551615.0) {
        return std::numeric_limits<UINT64>::max();
    }
    return static_cast<UINT64>(value);
}

}  // namespace

PerfStats::PerfStats() {
    resetCounters();
}

PerfStats::PerfStats(const std::string& name, UINT64 secDivisor, UINT32 numBuckets,
                     UINT32 granularity, double warmUpSecs)
    : subName_m(name) {
    applyConfiguration(secDivisor, numBuckets, granularity, warmUpSecs);
    resetCounters();
}

void PerfStats::configure(const std::string& name, UINT64 secDivisor, UINT32 numBuckets,
                          UINT32 granularity, double warmUpSecs) {
    applyConfiguration(secDivisor, numBuckets, granularity, warmUpSecs);
    subName_m = name;
}

void PerfStats::configure(const PerfStats& other) {
    subName_m = other.subName_m;
    applyConfiguration(other.secDivisor_m, static_cast<UINT32>(other.latencyBucketsVect_m.size()),
                       other.latencyGranularityFactor_m, other.latencyWarmUpSecs_m);
    toUs_m = other.toUs_m;
}

void PerfStats::applyConfiguration(UINT64 secDivisor, UINT32 numBuckets, UINT32 granularity,
                                   double warmUpSecs) {
    // Checked before anything changes, so a refused configuration leaves the
    // object as it was. A shift of 64 or more would be undefined, and a zero
    // divisor would make every rate and microsecond figure meaningless.
    if (granularity > MAX_GRANULARITY_FACTOR) {
        throw PubSubException("PerfStats: latency granularity factor " +
                              std::to_string(granularity) + " is out of range 0 to " +
                              std::to_string(MAX_GRANULARITY_FACTOR));
    }
    if (secDivisor == 0) {
        throw PubSubException("PerfStats: clock ticks per second must not be 0");
    }
    if (!(warmUpSecs >= 0.0)) {
        throw PubSubException("PerfStats: latency warm-up of " + std::to_string(warmUpSecs) +
                              " seconds must not be negative");
    }
    secDivisor_m = secDivisor;
    latencyBucketsVect_m.resize(numBuckets, 0);
    latencyGranularityFactor_m = granularity;
    latencyWarmUpSecs_m = warmUpSecs;
    toUs_m = static_cast<double>(secDivisor) / 1000000.0;
    warmUpTicks_m = static_cast<double>(secDivisor) * warmUpSecs;
}

void PerfStats::configureInitialSubscriberOrderOffsets(const std::map<int, UINT64>& offsets) {
    for (const auto& [stream, offset] : offsets) {
        checkOrderPublisherStreamNumber(stream, offset, false, false);
    }
}

void PerfStats::resetCounters() {
    stats_m.fill(0);
    stats_m[LATENCY_MIN] = UINT64_MAX_s;
}

void PerfStats::resetStats() {
    resetCounters();
    receiveStartTime_m = 0;
    receiveEndTime_m = 0;
    totalLatency_m = 0;
    std::fill(latencyBucketsVect_m.begin(), latencyBucketsVect_m.end(), 0);
    orderMemory_m.clear();
    oooData_m.clear();
    lastPublisherStream_m = StreamCache();
    lastTopicStream_m = StreamCache();
    cidStats_m.clear();
    demuxStats_m.clear();
    sessionEventStats_m.clear();
    priorityPubStats_m.clear();
    prioritySubStats_m.clear();
}

void PerfStats::logBadStat(const char* operation, INT64 stat) const {
    LOG_ERROR("PerfStats %s: %s with unknown stat type %lld (valid 0 to %d)", subName_m.c_str(),
              operation, static_cast<long long>(stat), NUM_STAT_TYPES - 1);
}

void PerfStats::setStat(INT32 stat, UINT64 value) {
    if (!isValidStat(stat)) {
        logBadStat("setStat", stat);
        return;
    }
    stats_m[stat] = value;
}

bool PerfStats::incPriorityStat(INT32 priority, INT64 n) {
    if (!isPriority(priority)) {
        return false;
    }
    stats_m[NUM_MSGS_PRI_0 + priority] += static_cast<UINT64>(n);
    return true;
}

void PerfStats::incPubPriorityStat(INT32 priority, INT64 n) {
    priorityPubStats_m[priority] += n;
}

void PerfStats::incSubPriorityStat(INT32 priority, INT64 n) {
    prioritySubStats_m[priority] += n;
}

void PerfStats::incCidStats(const std::vector<unsigned int>& cids) {
    for (unsigned int cid : cids) {
        ++cidStats_m[cid];
    }
}

void PerfStats::incDemuxStats(const std::string& name) {
    ++demuxStats_m[name];
}

void PerfStats::incSessionEventStat(INT32 event, UINT64 n) {
    sessionEventStats_m[event] += n;
}

void PerfStats::startStream(INT32 stream, UINT64 msgId) {
    oooData_m.emplace(stream, SingleStreamOrderStats(subName_m, msgId));
}

void PerfStats::commit() {
    for (auto& entry : oooData_m) {
        entry.second.commit();
    }
}

void PerfStats::rollback() {
    for (auto& entry : oooData_m) {
        entry.second.rollback();
    }
}

UINT64 PerfStats::getStat(INT32 stat) const {
    if (stat == LATENCY_MIN || stat == LATENCY_AVG || stat == LATENCY_MAX) {
        std::cout << "ERROR: Call to method getStat() with latency stat type: " << stat
                  << ". Use getLatencyStat() instead." << std::endl;
        return 0;
    }
    if (!isValidStat(stat)) {
        logBadStat("getStat", stat);
        return 0;
    }
    return stats_m[stat];
}

UINT64 PerfStats::getStatElement(UINT32 stat) const {
    if (stat >= NUM_STAT_TYPES) {
        logBadStat("getStatElement", stat);
        return 0;
    }
    return stats_m[stat];
}

double PerfStats::getStatInUSec(INT32 stat) const {
    if (!isValidStat(stat)) {
        logBadStat("getStatInUSec", stat);
        return 0.0;
    }
    return static_cast<double>(stats_m[stat]) / toUs_m;
}

double PerfStats::getLatencyStatInUSec(INT32 stat) const {
    switch (stat) {
        case LATENCY_MIN:
        case LATENCY_MAX:
            return static_cast<double>(stats_m[stat]) / toUs_m;
        case LATENCY_AVG:
            if (stats_m[NUM_LATENCY_MSGS] == 0) {
                return 0.0;
            }
            return static_cast<double>(totalLatency_m) /
                   (static_cast<double>(stats_m[NUM_LATENCY_MSGS]) * toUs_m);
        default:
            std::cout << "ERROR: Call to method getLatencyStat() with unsupported type: " << stat
                      << std::endl;
            return 0.0;
    }
}

double PerfStats::getLatencyBucketSizeInUs() const {
    return static_cast<double>(UINT64{1} << latencyGranularityFactor_m) / toUs_m;
}

double PerfStats::getPercentileLatencyInUSec(double percentile) const {
    const double wanted = percentile * static_cast<double>(stats_m[NUM_LATENCY_MSGS]) / 100.0;
    // Below 0 (or NaN) behaves as 0; above 100 finds nothing.
    const UINT64 target = toUint64Saturated(wanted);
    const double size = getLatencyBucketSizeInUs();
    const std::size_t last = latencyBucketsVect_m.empty() ? 0 : latencyBucketsVect_m.size() - 1;
    double upperEdge = 0.0;
    UINT64 runningSum = 0;
    for (std::size_t i = 0; i < latencyBucketsVect_m.size(); ++i) {
        // Edges by repeated addition, the way the report's figures have
        // always been derived; products could differ in the last digit.
        upperEdge += size;
        const UINT64 count = latencyBucketsVect_m[i];
        runningSum += count;
        if (count != 0 && runningSum >= target && i != last) {
            return upperEdge;
        }
    }
    return 0.0;
}

double PerfStats::getLatencyStdDevInUSec() const {
    const UINT64 samples = stats_m[NUM_LATENCY_MSGS];
    if (samples == 0) {
        return 0.0;
    }
    const double average = getLatencyStatInUSec(LATENCY_AVG);
    const double size = getLatencyBucketSizeInUs();
    double upperEdge = 0.0;
    double sumOfSquares = 0.0;
    for (UINT64 count : latencyBucketsVect_m) {
        upperEdge += size;
        if (count != 0) {
            const double deviation = upperEdge - average;
            sumOfSquares += deviation * deviation * static_cast<double>(count);
        }
    }
    return std::sqrt(sumOfSquares / static_cast<double>(samples));
}

double PerfStats::getThruPut(INT32 stat) const {
    if (!isValidStat(stat)) {
        logBadStat("getThruPut", stat);
        return 0.0;
    }
    UINT64 start = receiveStartTime_m;
    if (stat == NUM_LATENCY_MSGS) {
        // Latency samples only begin after the warm-up.
        const UINT64 warmUp =
            toUint64Saturated(static_cast<double>(secDivisor_m) * latencyWarmUpSecs_m);
        start = warmUp > UINT64_MAX_s - start ? UINT64_MAX_s : start + warmUp;
    }
    if (start >= receiveEndTime_m) {
        return 0.0;
    }
    const double seconds =
        static_cast<double>(receiveEndTime_m - start) / static_cast<double>(secDivisor_m);
    return static_cast<double>(stats_m[stat]) / seconds;
}

double PerfStats::getPriorityThruPut(INT32 priority) const {
    if (!isPriority(priority)) {
        LOG_ERROR("Could not fetch thruput statistic with priority=%d", priority);
        return 0.0;
    }
    return getThruPut(NUM_MSGS_PRI_0 + priority);
}

UINT64 PerfStats::getPriorityStat(INT32 priority) const {
    if (!isPriority(priority)) {
        LOG_ERROR("Could not fetch statistic with priority=%d", priority);
        return 0;
    }
    return getStat(NUM_MSGS_PRI_0 + priority);
}

INT32 PerfStats::getPriorityStatEnum(INT32 priority) {
    return isPriority(priority) ? NUM_MSGS_PRI_0 + priority : -1;
}

UINT64 PerfStats::getSessionEventStat(INT32 event) const {
    auto found = sessionEventStats_m.find(event);
    return found == sessionEventStats_m.end() ? 0 : found->second;
}

bool PerfStats::aggregate(const PerfStats& input) {
    if (receiveStartTime_m == 0 ||
        (input.receiveStartTime_m != 0 && input.receiveStartTime_m < receiveStartTime_m)) {
        receiveStartTime_m = input.receiveStartTime_m;
    }
    receiveEndTime_m = std::max(receiveEndTime_m, input.receiveEndTime_m);

    for (int stat = 0; stat < NUM_STAT_TYPES; ++stat) {
        if (stat == LATENCY_MAX || stat == PSM_MAX_CYCLES_BEHIND) {
            stats_m[stat] = std::max(stats_m[stat], input.stats_m[stat]);
        } else if (stat == LATENCY_MIN) {
            stats_m[stat] = std::min(stats_m[stat], input.stats_m[stat]);
        } else {
            stats_m[stat] += input.stats_m[stat];
        }
    }

    // Buckets of different width or range cannot be added meaningfully; the
    // counts still are, so the totals of a mixed run stay complete.
    if (secDivisor_m == input.secDivisor_m &&
        latencyBucketsVect_m.size() == input.latencyBucketsVect_m.size() &&
        latencyGranularityFactor_m == input.latencyGranularityFactor_m) {
        totalLatency_m += input.totalLatency_m;
        for (std::size_t i = 0; i < latencyBucketsVect_m.size(); ++i) {
            latencyBucketsVect_m[i] += input.latencyBucketsVect_m[i];
        }
    } else {
        std::cout << "ERROR: Stats not setup equally.  Unable to aggregate latency component of "
                     "stats. "
                  << std::endl
                  << "Sec Divisor (Aggr: " << secDivisor_m << "), (Input: " << input.secDivisor_m
                  << ")" << std::endl
                  << "Gran Factor (Aggr: " << latencyGranularityFactor_m
                  << "), (Input: " << input.latencyGranularityFactor_m << ")" << std::endl
                  << "Num Buckets (Aggr: " << latencyBucketsVect_m.size()
                  << "), (Input: " << input.latencyBucketsVect_m.size() << ")" << std::endl;
    }

    for (const auto& [stream, order] : input.oooData_m) {
        auto found = oooData_m.find(stream);
        if (found == oooData_m.end()) {
            oooData_m.emplace(stream, order);
        } else {
            found->second.aggregate(order);
        }
    }
    orderMemory_m.insert(orderMemory_m.end(), input.orderMemory_m.begin(),
                         input.orderMemory_m.end());

    auto addAll = [](auto& to, const auto& from) {
        for (const auto& [key, value] : from) {
            to[key] += value;
        }
    };
    addAll(cidStats_m, input.cidStats_m);
    addAll(demuxStats_m, input.demuxStats_m);
    addAll(sessionEventStats_m, input.sessionEventStats_m);
    addAll(priorityPubStats_m, input.priorityPubStats_m);
    addAll(prioritySubStats_m, input.prioritySubStats_m);
    return true;
}

std::string PerfStats::toString() const {
    std::ostringstream out;
    for (std::size_t i = 0; i < latencyBucketsVect_m.size(); ++i) {
        if (latencyBucketsVect_m[i] == 0) {
            continue;
        }
        const UINT64 lowerEdgeTicks = static_cast<UINT64>(i) << latencyGranularityFactor_m;
        const UINT64 lowerEdgeUs = toUint64Saturated(static_cast<double>(lowerEdgeTicks) / toUs_m);
        out << " BI: " << std::setw(8) << i << " LAT: " << std::setw(16) << lowerEdgeUs
            << " NUM: " << std::setw(8) << latencyBucketsVect_m[i] << "\n";
    }
    return out.str();
}

}  // namespace zorvane::pubsub
