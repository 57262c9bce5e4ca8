#include "common/FirstLastData.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "common/PubSubException.h"
#include "tests/unit/LogCapture.h"

namespace zorvane::pubsub {
namespace {

using P = PerfStats;

// 64 buckets of 2 ticks, no warm-up.
std::unique_ptr<FirstLastData> configured(INT32 fanout) {
    auto data = std::make_unique<FirstLastData>();
    data->configure("fl", 1000000, 64, 1, 0.0, fanout);
    return data;
}

UINT64 samples(const FirstLastData& data) {
    return data.getRxStats().getStatElement(P::NUM_LATENCY_MSGS);
}

TEST(FirstLastData, EachIdCompletesWithItsLastCopyAndTheSampleIsFirstToLast) {
    auto data = configured(3);
    const UINT64 ids[] = {41, 41, 42, 41, 42, 42};
    UINT64 completedAfter[6];
    for (int i = 0; i < 6; ++i) {
        data->incStats(ids[i], 10 * (i + 1));  // the first id sets the base, whatever it is
        completedAfter[i] = samples(*data);
    }
    EXPECT_EQ(completedAfter[2], 0U);
    EXPECT_EQ(completedAfter[3], 1U) << "41 on its third copy";
    EXPECT_EQ(completedAfter[4], 1U);
    EXPECT_EQ(completedAfter[5], 2U);
    const PerfStats& stats = data->getRxStats();
    EXPECT_EQ(stats.getTotalLatency(), 60U);  // 40 - 10 and 60 - 30
    EXPECT_EQ(stats.getStatElement(P::LATENCY_MAX), 30U);

    auto single = configured(1);
    single->incStats(5, 100);
    single->incStats(6, 200);
    EXPECT_EQ(samples(*single), 2U);
    EXPECT_EQ(single->getRxStats().getTotalLatency(), 0U) << "a fan-out of 1 samples 0";
}

TEST(FirstLastData, GapsAndStaleCopiesAreLoggedAndIgnored) {
    LogCapture log;
    auto data = configured(2);
    data->incStats(1, 10);
    data->incStats(3, 20);  // 2 was skipped: no slot for 3
    EXPECT_TRUE(log.contains(log::LEVEL_ERROR,
                             "Error incrementing First Last stats.  Msg Gap detected. Base Id: 1 "
                             "Curr Id: 3 Data Buff Size: 1 Ignoring msg."));
    data->incStats(1, 30);
    EXPECT_EQ(samples(*data), 1U);
    EXPECT_EQ(data->getRxStats().getTotalLatency(), 20U) << "the gap changed nothing";

    data->incStats(1, 40);  // the ring is empty: a new entry
    data->incStats(2, 50);
    data->incStats(1, 60);
    EXPECT_EQ(samples(*data), 2U);
    data->incStats(1, 70);
    EXPECT_TRUE(log.contains(log::LEVEL_ERROR,
                             "Error incrementing First Last stats.  Stale msg received. Base Id: 2 "
                             "Curr Id: 1 Ignoring msg."));
    EXPECT_EQ(samples(*data), 2U);
}

TEST(FirstLastData, IdCompletingBeforeTheHeadEndsTheMeasurement) {
    LogCapture log;
    auto data = configured(2);
    data->incStats(7, 1);
    data->incStats(8, 2);
    const std::string text =
        "Error incrementing First Last stats.  Received all msgs for msgId that is not head of "
        "queue. Index: 1 Base Id: 7 Curr Id: 8 Aborting.";
    try {
        data->incStats(8, 3);
        ADD_FAILURE() << "no exception";
    } catch (const PubSubException& e) {
        EXPECT_EQ(e.what(), text);
    }
    EXPECT_TRUE(log.contains(log::LEVEL_ERROR, text));
}

TEST(FirstLastData, FullRingDropsTheOldestId) {
    LogCapture log(log::LEVEL_ERROR);
    auto data = configured(2);
    const UINT64 inFlight = FirstLastData::MAX_IDS_IN_FLIGHT;
    for (UINT64 id = 1; id <= inFlight + 1; ++id) {
        data->incStats(id, id);
    }
    data->incStats(1, 0);  // its sample is lost; now stale
    EXPECT_TRUE(log.contains(
        "Error incrementing First Last stats.  Stale msg received. Base Id: 2 Curr Id: 1 Ignoring "
        "msg."));
    data->incStats(2, inFlight + 10);
    EXPECT_EQ(samples(*data), 1U);
    EXPECT_EQ(data->getRxStats().getTotalLatency(), inFlight + 8);
}

}  // namespace
}  // namespace zorvane::pubsub
