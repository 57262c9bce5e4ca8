// The statistics of one receiver (a client, a transacted session, the
// first-to-last fan-out): counters indexed by StatType, a latency histogram
// of power-of-two bucket width, the order state of each stream, and a few
// keyed counters. The report works on aggregates of these objects.
//
// Time is kept in clock ticks of OS::numClockCycles; secDivisor (ticks per
// second) converts only when a figure is read out, so counting never
// divides.
//
// Threads: no lock. One thread writes an object (its client's context
// thread, or the publisher thread for publisher-side counters); the main
// thread reads and aggregates without a lock while traffic runs and at the
// end, accepting figures that are a moment old.
//
// Hot paths: incLatency and the in-order case of the order checks allocate
// nothing (the stream lookup is a map search; only a stream's first message
// inserts).
#pragma once

#include <array>
#include <map>
#include <string>
#include <vector>

#include "common/SingleStreamOrderStats.h"
#include "common/dataTypes.h"

namespace zorvane::pubsub {

class PerfStats {
  public:
    enum StatType {
        NUM_MSGS_RECV = 0,
        NUM_MSGS_PRI_0 = 1,
        NUM_MSGS_PRI_1 = 2,
        NUM_MSGS_PRI_2 = 3,
        NUM_MSGS_PRI_3 = 4,
        NUM_MSGS_PRI_4 = 5,
        NUM_MSGS_PRI_5 = 6,
        NUM_MSGS_PRI_6 = 7,
        NUM_MSGS_PRI_7 = 8,
        NUM_MSGS_PRI_8 = 9,
        NUM_MSGS_PRI_9 = 10,
        LATENCY_MIN = 11,
        LATENCY_AVG = 12,  // no value of its own: the id for reading the average
        LATENCY_MAX = 13,
        NUM_LATENCY_MSGS = 14,
        NUM_TPUT_MSGS = 15,
        NUM_MSGS_CRC_OK = 16,
        NUM_MSGS_CRC_FAIL = 17,
        NUM_MSGS_CRC_XMLPAYLOAD_OK = 18,
        NUM_MSGS_CRC_XMLPAYLOAD_FAIL = 19,
        NUM_MSGS_CRC_BINATTACH_OK = 20,
        NUM_MSGS_CRC_BINATTACH_FAIL = 21,
        NUM_MSGS_CRC_USERDATA_OK = 22,
        NUM_MSGS_CRC_USERDATA_FAIL = 23,
        NUM_MSGS_CRC_SDM_OK = 24,
        NUM_MSGS_CRC_SDM_FAIL = 25,
        NUM_MSGS_DI_SET = 26,
        NUM_MSGS_W_XML_PAYLOAD = 27,
        NUM_MSGS_W_BIN_ATTACH = 28,
        NUM_MSGS_W_USERDATA = 29,
        NUM_MSGS_W_CID = 30,
        NUM_MSGS_W_TOPIC = 31,
        NUM_MSGS_ORDER_CHECKED = 32,
        NUM_MSGS_REDELIVERED = 33,
        NUM_MSGS_RECEIVED_OBJECT_TYPE_OK = 34,
        NUM_MSGS_RECEIVED_OBJECT_TYPE_FAIL = 35,
        NUM_CACHE_REQ_SENT = 36,
        NUM_CACHE_RESP_RECV = 37,
        NUM_LIVE_MSGS_RECV = 38,
        NUM_CACHE_MSGS_RECV = 39,
        NUM_CACHE_SUSPECT_RECV = 40,
        NUM_CACHE_REQ_OK = 41,
        NUM_CACHE_REQ_INCOMP_NODATA = 42,
        NUM_CACHE_REQ_INCOMP_SUSPECT = 43,
        NUM_CACHE_REQ_INCOMP_TIMEOUT = 44,
        NUM_CACHE_REQ_INCOMP_CANCELLED = 45,
        NUM_CACHE_REQ_ERROR = 46,
        NUM_MSGS_DISCARD_INDICATION = 47,
        PSM_MAX_CYCLES_BEHIND = 48,
        PSM_NUM_TIMES_BEHIND = 49,
        NUM_MSGS_CLIENT_ACKED = 50,
        NUM_ACK_EVENTS = 51,
        NUM_NACK_EVENTS = 52,
        NUM_PUB_MSGS_ACKED = 53,
        NUM_REPLICATION_GROUP_MESSAGE_ID_DUPLICATES = 54,
        NUM_REPLICATION_GROUP_MESSAGE_ID_SPOOL_ID_CHANGES = 55,
        NUM_STAT_TYPES = 56
    };

    using StatCollection = std::array<UINT64, NUM_STAT_TYPES>;

    // Order-state keys besides publisher stream ids (0 or more).
    static constexpr INT32 STREAM_ID_DEFAULT = -1;         // message id, no stream id
    static constexpr INT32 STREAM_ID_TOPIC_SEQUENCE = -2;  // broker's topic sequence numbers

    // Largest granularity factor: a bucket width of 2^63 ticks.
    static constexpr UINT32 MAX_GRANULARITY_FACTOR = 63;

    // Empty name, 1000000 ticks per second, no buckets, granularity 1,
    // warm-up 2 s.
    PerfStats();
    // numBuckets zeroed buckets, each 2^granularity ticks wide; no latency
    // is sampled in the first warmUpSecs after this object's first message.
    // Throws PubSubException for a granularity above MAX_GRANULARITY_FACTOR,
    // a secDivisor of 0 or a negative warm-up.
    PerfStats(const std::string& name, UINT64 secDivisor, UINT32 numBuckets, UINT32 granularity,
              double warmUpSecs);

    // Reconfigures a live object: the buckets grow with zeros or shrink.
    // Same check as the constructor.
    void configure(const std::string& name, UINT64 secDivisor, UINT32 numBuckets,
                   UINT32 granularity, double warmUpSecs);
    // Takes the configuration of other (name included), none of its counts.
    void configure(const PerfStats& other);

    // Starts each stream at the given id, as if it had been seen: a
    // subscriber of a second run goes on where the first run ended.
    void configureInitialSubscriberOrderOffsets(const std::map<int, UINT64>& offsets);

    // All counts, times, buckets, maps and order state back to empty; name
    // and configuration stay.
    void resetStats();

    void setSubName(const std::string& name) { subName_m = name; }
    const std::string& getName() const { return subName_m; }

    // ---- counting (the owning thread) ----

    // Stat ids outside StatType are logged and ignored.
    void incStat(INT32 stat) { incStat(stat, 1); }
    void incStat(INT32 stat, const INT64& n) {
        if (isValidStat(stat)) [[likely]] {
            stats_m[stat] += static_cast<UINT64>(n);
        } else {
            logBadStat("incStat", stat);
        }
    }
    void incStatWithTime(INT32 stat, const UINT64& now) { incStatWithTime(stat, 1, now); }
    void incStatWithTime(INT32 stat, const INT64& n, const UINT64& now) {
        incStat(stat, n);
        updateTimeRecvd(now);
    }
    void setStat(INT32 stat, UINT64 value);

    // The end time moves to now and the rate's count catches up with the
    // received count; the first call also sets the start time.
    void updateTimeRecvd(const UINT64& now) {
        receiveEndTime_m = now;
        stats_m[NUM_TPUT_MSGS] = stats_m[NUM_MSGS_RECV];
        if (receiveStartTime_m == 0) {
            receiveStartTime_m = now;
        }
    }

    // Adds n to the counter of priority 0 to 9 and returns true; false and
    // nothing counted for any other priority.
    bool incPriorityStat(INT32 priority, INT64 n = 1);
    // Keyed by priority without limit.
    void incPubPriorityStat(INT32 priority, INT64 n);
    void incSubPriorityStat(INT32 priority, INT64 n);

    // One latency sample (ticks) of a message received at timeRecvd (ticks).
    // Samples in the warm-up after this object's first message are not
    // taken; a sample at its exact end is. A sample beyond the histogram
    // lands in the last bucket, so that bucket counts everything from its
    // lower edge up (a sender clock ahead of ours gives a huge unsigned
    // sample and ends there too).
    void incLatency(UINT64 timeRecvd, UINT64 latency) {
        updateTimeRecvd(timeRecvd);
        if (static_cast<double>(receiveStartTime_m) + warmUpTicks_m >
            static_cast<double>(timeRecvd)) {
            return;
        }
        if (latency < stats_m[LATENCY_MIN]) {
            stats_m[LATENCY_MIN] = latency;
        }
        if (latency > stats_m[LATENCY_MAX]) {
            stats_m[LATENCY_MAX] = latency;
        }
        totalLatency_m += latency;
        ++stats_m[NUM_LATENCY_MSGS];
        const std::size_t numBuckets = latencyBucketsVect_m.size();
        if (numBuckets == 0) [[unlikely]] {
            return;
        }
        UINT64 index = latency >> latencyGranularityFactor_m;
        if (index >= numBuckets) {
            index = numBuckets - 1;
        }
        ++latencyBucketsVect_m[index];
    }

    void incCidStats(const std::vector<unsigned int>& cids);
    void incDemuxStats(const std::string& name);
    void incSessionEventStat(INT32 event, UINT64 n);

    // Appends (stream << 48) | low 24 bits of msgId.
    void updateOrderMemory(UINT64 msgId, INT32 stream) {
        orderMemory_m.push_back((static_cast<UINT64>(static_cast<INT64>(stream)) << 48) |
                                (msgId & 0xFFFFFFULL));
    }

    // Order check of a publisher stream (STREAM_ID_DEFAULT for messages with
    // a message id but no stream id). A stream's first message starts it,
    // whatever its id, and is never an error. True means no order error.
    bool checkOrderPublisherStreamNumber(INT32 stream, UINT64 msgId, bool redelivered,
                                         bool republished) {
        return checkOrderOf(lastPublisherStream_m, stream, msgId, redelivered, republished);
    }
    // The same over the broker's topic sequence numbers, as one stream
    // under STREAM_ID_TOPIC_SEQUENCE.
    bool checkOrderTopicSequenceNumber(INT64 topicSequence, bool redelivered, bool republished) {
        return checkOrderOf(lastTopicStream_m, STREAM_ID_TOPIC_SEQUENCE,
                            static_cast<UINT64>(topicSequence), redelivered, republished);
    }
    void commit();
    void rollback();

    // ---- reading (any thread, see above) ----

    // The counter. Latency ids print an error and give 0: their values need
    // getLatencyStatInUSec.
    UINT64 getStat(INT32 stat) const;
    // The raw counter, latency ids included.
    UINT64 getStatElement(UINT32 stat) const;
    double getStatInUSec(INT32 stat) const;
    // LATENCY_MIN, LATENCY_AVG (0.0 without samples) or LATENCY_MAX.
    double getLatencyStatInUSec(INT32 stat) const;
    double getLatencyBucketSizeInUs() const;
    // The upper edge of the bucket that holds the percentile; never
    // interpolated. 0.0 when it falls into the last bucket (which cannot be
    // told from overflow) or there are no samples.
    double getPercentileLatencyInUSec(double percentile) const;
    // Over bucket upper edges; 0.0 without samples.
    double getLatencyStdDevInUSec() const;
    // Messages per second from the first to the last counted message
    // (after the warm-up for NUM_LATENCY_MSGS); 0.0 without a time span.
    double getThruPut(INT32 stat) const;
    double getPriorityThruPut(INT32 priority) const;
    UINT64 getPriorityStat(INT32 priority) const;
    // The StatType of a priority, -1 outside 0 to 9.
    static INT32 getPriorityStatEnum(INT32 priority);
    UINT64 getSessionEventStat(INT32 event) const;

    UINT64 getStartTime() const { return receiveStartTime_m; }
    UINT64 getEndTime() const { return receiveEndTime_m; }
    UINT64 getSecDivisor() const { return secDivisor_m; }
    UINT64 getTotalLatency() const { return totalLatency_m; }
    const std::map<INT32, SingleStreamOrderStats>& getOrderData() const { return oooData_m; }
    const std::vector<UINT64>& getOrderMemory() const { return orderMemory_m; }
    const std::vector<UINT64>& getLatencyBuckets() const { return latencyBucketsVect_m; }
    UINT32 getLatencyGranularityFactor() const { return latencyGranularityFactor_m; }
    double getLatencyWarmUpInSec() const { return latencyWarmUpSecs_m; }
    const std::map<unsigned int, int>& getCidStatsMap() const { return cidStats_m; }
    const std::map<std::string, UINT64>& getDemuxStatsMap() const { return demuxStats_m; }
    const std::map<int, UINT64>& getSessionEventStatsMap() const { return sessionEventStats_m; }
    const std::map<int, long long>& getPubPriorityStatMap() const { return priorityPubStats_m; }
    const std::map<int, long long>& getSubPriorityStatMap() const { return prioritySubStats_m; }

    // Adds input to this object and returns true. The histogram is added
    // only when divisor, bucket count and granularity match; otherwise an
    // error goes to standard output and the rest is still added.
    bool aggregate(const PerfStats& input);

    // One line per non-empty bucket: index, lower edge in us, count.
    std::string toString() const;

  private:
    static bool isValidStat(INT32 stat) { return stat >= 0 && stat < NUM_STAT_TYPES; }
    void logBadStat(const char* operation, INT64 stat) const;
    // The stream looked up last by one kind of order check. Messages come in
    // runs of one stream (and the topic sequence check has only one), so
    // this spares the map search per message. Map nodes never move, so the
    // pointer stays good until the map is cleared; a copy starts empty
    // because it would point into the other object's map.
    struct StreamCache {
        INT32 stream_m = 0;
        SingleStreamOrderStats* order_mp = nullptr;
        StreamCache() = default;
        StreamCache(const StreamCache&) {}
        StreamCache& operator=(const StreamCache&) {
            order_mp = nullptr;
            return *this;
        }
    };
    bool checkOrderOf(StreamCache& cache, INT32 stream, UINT64 msgId, bool redelivered,
                      bool republished) {
        if (cache.order_mp == nullptr || cache.stream_m != stream) [[unlikely]] {
            auto found = oooData_m.find(stream);
            if (found == oooData_m.end()) [[unlikely]] {
                startStream(stream, msgId);
                return true;
            }
            cache.stream_m = stream;
            cache.order_mp = &found->second;
        }
        return cache.order_mp->checkOrder(msgId, redelivered, republished);
    }
    void startStream(INT32 stream, UINT64 msgId);
    void applyConfiguration(UINT64 secDivisor, UINT32 numBuckets, UINT32 granularity,
                            double warmUpSecs);
    void resetCounters();

    std::string subName_m;
    StatCollection stats_m{};
    std::vector<UINT64> orderMemory_m;
    std::map<INT32, SingleStreamOrderStats> oooData_m;
    StreamCache lastPublisherStream_m;
    StreamCache lastTopicStream_m;
    std::map<unsigned int, int> cidStats_m;
    std::map<std::string, UINT64> demuxStats_m;
    UINT64 receiveStartTime_m = 0;  // 0: nothing counted yet
    UINT64 receiveEndTime_m = 0;
    UINT64 secDivisor_m = 1000000;
    UINT64 totalLatency_m = 0;
    std::vector<UINT64> latencyBucketsVect_m;
    UINT32 latencyGranularityFactor_m = 1;
    double toUs_m = 1.0;  // ticks per microsecond
    double latencyWarmUpSecs_m = 2.0;
    std::map<int, UINT64> sessionEventStats_m;
    std::map<int, long long> priorityPubStats_m;
    std::map<int, long long> prioritySubStats_m;
    // secDivisor_m * latencyWarmUpSecs_m, kept so incLatency does not
    // multiply per message.
    double warmUpTicks_m = 2000000.0;
};

}  // namespace zorvane::pubsub
