#include "common/PerfStats.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <tuple>

#include "common/PubSubException.h"

namespace zorvane::pubsub {
namespace {

constexpr UINT64 ALL_ONES = std::numeric_limits<UINT64>::max();

TEST(PerfStatsLatency, EmptyHistogramReadsAsNoSamples) {
    PerfStats stats("empty", 3000000000ULL, 1024, 11, 0.5);
    EXPECT_EQ(stats.getStatElement(PerfStats::LATENCY_MIN), ALL_ONES);
    EXPECT_EQ(stats.getLatencyStatInUSec(PerfStats::LATENCY_AVG) + stats.getLatencyStdDevInUSec(),
              0.0);
    for (double p : {0.0, 50.0, 99.9, 100.0}) {
        EXPECT_EQ(stats.getPercentileLatencyInUSec(p), 0.0) << p;
    }
}

TEST(PerfStatsLatency, WarmUpStartsAtTheFirstMessageAndItsEndCounts) {
    PerfStats stats("w", 1000, 4, 1, 0.5);  // 500 ticks of warm-up
    stats.incLatency(1000, 3);
    stats.incLatency(1499, 3);
    EXPECT_EQ(stats.getStatElement(PerfStats::NUM_LATENCY_MSGS), 0u);
    EXPECT_EQ(stats.getThruPut(PerfStats::NUM_LATENCY_MSGS), 0.0);  // shorter than warm-up
    stats.incLatency(1500, 3);
    stats.incLatency(2500, 3);
    EXPECT_EQ(stats.getLatencyBuckets()[1], 2u);
    EXPECT_DOUBLE_EQ(stats.getThruPut(PerfStats::NUM_LATENCY_MSGS), 2.0);

    PerfStats noWarmUp("n", 1000, 4, 1, 0.0);
    noWarmUp.incLatency(7, 1);
    EXPECT_EQ(noWarmUp.getStatElement(PerfStats::NUM_LATENCY_MSGS), 1u);
}

TEST(PerfStatsLatency, PercentilesAreUpperBucketEdgesAndTheLastBucketGivesZero) {
    PerfStats stats("p", 1000000, 4, 1, 0.0);  // buckets 2 us wide, last from 6 us
    for (UINT64 sample : {0, 2, 2, 100}) {
        stats.incLatency(10, sample);
    }
    EXPECT_EQ(stats.getLatencyBuckets(), (std::vector<UINT64>{1, 2, 0, 1}));
    EXPECT_EQ(stats.getPercentileLatencyInUSec(10), 2.0);  // target 0: first non-empty
    EXPECT_EQ(stats.getPercentileLatencyInUSec(25), 2.0);
    EXPECT_EQ(stats.getPercentileLatencyInUSec(50), 4.0);
    EXPECT_EQ(stats.getPercentileLatencyInUSec(99), 4.0);  // 3.96 samples truncate to 3
    EXPECT_EQ(stats.getPercentileLatencyInUSec(100), 0.0);
    EXPECT_EQ(stats.getLatencyStatInUSec(PerfStats::LATENCY_AVG), 26.0);
    // Edges 2, 4, 4, 8 around the average 26.
    EXPECT_DOUBLE_EQ(stats.getLatencyStdDevInUSec(), std::sqrt((576.0 + 968.0 + 324.0) / 4));
    EXPECT_EQ(stats.toString(),
              " BI:        0 LAT:                0 NUM:        1\n"
              " BI:        1 LAT:                2 NUM:        2\n"
              " BI:        3 LAT:                6 NUM:        1\n");

    // Just past the range, and a wrapped sample from a sender clock ahead of
    // ours: both in the last bucket.
    PerfStats wrapped("w", 2000000, 4, 1, 0.0);
    wrapped.incLatency(10, 8);
    wrapped.incLatency(10, 0 - UINT64{5});
    EXPECT_EQ(wrapped.getStatElement(PerfStats::LATENCY_MAX), ALL_ONES - 4);
    EXPECT_EQ(wrapped.toString(), " BI:        3 LAT:                3 NUM:        2\n");
}

TEST(PerfStatsCounters, RatesPrioritiesAndMisuseOfLatencyIds) {
    PerfStats stats("c", 1000, 4, 1, 0.0);
    stats.incStatWithTime(PerfStats::NUM_MSGS_RECV, 1000);
    EXPECT_EQ(stats.getThruPut(PerfStats::NUM_TPUT_MSGS), 0.0);  // one message: no span
    stats.incStatWithTime(PerfStats::NUM_MSGS_RECV, 2, 3000);
    EXPECT_EQ(stats.getStat(PerfStats::NUM_TPUT_MSGS), 3u);
    EXPECT_DOUBLE_EQ(stats.getThruPut(PerfStats::NUM_TPUT_MSGS), 1.5);

    EXPECT_FALSE(stats.incPriorityStat(10, 1));
    EXPECT_TRUE(stats.incPriorityStat(9, 1));
    stats.incSubPriorityStat(10, 1);
    EXPECT_EQ(stats.getPriorityStat(9) + stats.getSubPriorityStatMap().at(10), 2u);

    testing::internal::CaptureStdout();
    EXPECT_EQ(stats.getStat(PerfStats::LATENCY_AVG), 0u);
    EXPECT_EQ(stats.getLatencyStatInUSec(PerfStats::NUM_MSGS_RECV), 0.0);
    EXPECT_EQ(testing::internal::GetCapturedStdout(),
              "ERROR: Call to method getStat() with latency stat type: 12. Use getLatencyStat() "
              "instead.\nERROR: Call to method getLatencyStat() with unsupported type: 0\n");

    stats.updateOrderMemory(0x1234567, 3);
    stats.incLatency(5000, 2);
    stats.resetStats();
    EXPECT_EQ(stats.getStartTime() + stats.getStat(PerfStats::NUM_MSGS_RECV), 0u);
    EXPECT_EQ(stats.getStatElement(PerfStats::LATENCY_MIN), ALL_ONES);
    EXPECT_EQ(stats.getLatencyBuckets(), (std::vector<UINT64>(4, 0)));
    EXPECT_TRUE(stats.getOrderMemory().empty());
}

TEST(PerfStatsConfigure, BucketsResizeAndBadValuesAreRefusedWithoutChange) {
    PerfStats stats("c", 1000000, 4, 1, 0.0);
    stats.incLatency(1, 7);
    stats.configure("c", 1000000, 6, 1, 0.0);
    EXPECT_EQ(stats.getLatencyBuckets(), (std::vector<UINT64>{0, 0, 0, 1, 0, 0}));
    EXPECT_THROW(stats.configure("c", 1000000, 9, 64, 0.0), PubSubException);
    EXPECT_THROW(stats.configure("c", 0, 9, 1, 0.0), PubSubException);
    EXPECT_THROW(PerfStats("c", 1000, 9, 1, -1.0), PubSubException);
    EXPECT_EQ(stats.getLatencyBuckets().size(), 6u);
}

TEST(PerfStatsAggregate, MergesCountersTimesMapsAndOrderState) {
    PerfStats total("aggregate", 1000, 4, 1, 0.0);
    total.aggregate(PerfStats("e", 1000, 4, 1, 0.0));
    EXPECT_EQ(total.getStartTime(), 0u);

    PerfStats a("a", 1000, 4, 1, 0.0), b("b", 1000, 4, 1, 0.0);
    a.incLatency(500, 2);
    a.incLatency(900, 6);
    b.incLatency(300, 4);
    b.incLatency(700, 5);
    a.setStat(PerfStats::PSM_MAX_CYCLES_BEHIND, 9);
    b.setStat(PerfStats::PSM_MAX_CYCLES_BEHIND, 4);
    b.incStat(PerfStats::NUM_MSGS_RECV, 3);
    for (auto [stats, stream, id] :
         {std::tuple{&a, 1, 5}, {&a, 1, 7}, {&b, 1, 1}, {&b, 1, 3}, {&b, 2, 1}}) {
        stats->checkOrderPublisherStreamNumber(stream, id, false, false);
    }
    a.incCidStats({1, 2});
    b.incCidStats({2});
    b.incSessionEventStat(3, 2);

    total.aggregate(a);
    total.aggregate(b);
    EXPECT_EQ(total.getStartTime(), 300u);
    EXPECT_EQ(total.getEndTime(), 900u);
    EXPECT_EQ(total.getStatElement(PerfStats::LATENCY_MIN), 2u);
    EXPECT_EQ(total.getStatElement(PerfStats::LATENCY_MAX), 6u);
    EXPECT_EQ(total.getStat(PerfStats::PSM_MAX_CYCLES_BEHIND), 9u);
    EXPECT_EQ(total.getStat(PerfStats::NUM_MSGS_RECV), 3u);
    EXPECT_EQ(total.getTotalLatency(), 17u);
    EXPECT_EQ(total.getLatencyBuckets(), (std::vector<UINT64>{0, 1, 2, 1}));
    EXPECT_EQ(total.getOrderData().at(1).getLostMsgs(), (std::vector<UINT64>{6, 2}));
    EXPECT_EQ(total.getOrderData().at(1).getPrevMsgId(), 7u);  // first copy wins
    EXPECT_EQ(total.getOrderData().count(2), 1u);
    EXPECT_EQ(total.getCidStatsMap().at(2) + total.getSessionEventStat(3), 4u);
}

TEST(PerfStatsAggregate, MismatchedHistogramSaysSoAndKeepsTheTargetBuckets) {
    PerfStats total("aggregate", 1000, 4, 1, 0.0);
    total.incLatency(10, 1);
    PerfStats other("o", 1000, 4, 2, 0.0);
    other.incLatency(20, 5);
    testing::internal::CaptureStdout();
    EXPECT_TRUE(total.aggregate(other));
    EXPECT_EQ(testing::internal::GetCapturedStdout(),
              "ERROR: Stats not setup equally.  Unable to aggregate latency component of stats. \n"
              "Sec Divisor (Aggr: 1000), (Input: 1000)\n"
              "Gran Factor (Aggr: 1), (Input: 2)\n"
              "Num Buckets (Aggr: 4), (Input: 4)\n");
    EXPECT_EQ(total.getLatencyBuckets(), (std::vector<UINT64>{1, 0, 0, 0}));
    EXPECT_EQ(total.getTotalLatency(), 1u);  // counters merged all the same:
    EXPECT_EQ(total.getStatElement(PerfStats::NUM_LATENCY_MSGS), 2u);
    EXPECT_EQ(total.getStatElement(PerfStats::LATENCY_MAX), 5u);
}

}  // namespace
}  // namespace zorvane::pubsub
