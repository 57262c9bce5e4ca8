#include "common/SingleStreamOrderStats.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <string>
#include <vector>

#include "common/PerfStats.h"

namespace zorvane::pubsub {
namespace {

using Ids = std::vector<UINT64>;

// Checks ids without flags; the results as "1" (no error) and "0".
std::string feed(SingleStreamOrderStats& s, const Ids& ids) {
    std::string results;
    for (UINT64 id : ids) {
        results += s.checkOrder(id, false, false) ? '1' : '0';
    }
    return results;
}

TEST(OrderCheck, GapIsLostUntilLateMessagesFillIt) {
    SingleStreamOrderStats s("sub", 5);
    EXPECT_EQ(feed(s, {6, 9}), "10");
    EXPECT_EQ(s.getLostMsgs(), (Ids{7, 8}));
    EXPECT_FALSE(s.checkOrder(7, true, true));  // flags do not excuse a late message
    EXPECT_EQ(feed(s, {8, 10}), "01");
    EXPECT_TRUE(s.getLostMsgs().empty() && s.getDuplicateMsgs().empty());
    EXPECT_EQ(s.getOoOMsgs(), (std::map<UINT64, UINT64>{{7, 9}, {8, 9}}));
}

TEST(OrderCheck, RepeatsAreClassifiedByFlagsAndIdsBelowTheStartAreDuplicates) {
    SingleStreamOrderStats s("sub", 5);
    EXPECT_FALSE(s.checkOrder(5, false, false));
    EXPECT_TRUE(s.checkOrder(5, true, false));
    EXPECT_TRUE(s.checkOrder(5, false, true));
    EXPECT_TRUE(s.checkOrder(5, true, true));  // redelivered wins
    EXPECT_FALSE(s.checkOrder(3, false, false));
    EXPECT_EQ(s.toString(), "    dup : 5 3 \n red dup: 5 5 \nrpub dup: 5 \n");
}

TEST(OrderCheck, GapAboveTheCapListsOnlyTheFirstIdAndSaysSo) {
    SingleStreamOrderStats atCap("c1", 1), above("c1", 1);
    testing::internal::CaptureStdout();
    EXPECT_EQ(feed(atCap, {10001}) + feed(above, {10002}), "00");
    EXPECT_EQ(testing::internal::GetCapturedStdout(),
              "STATS c1: Error during lost msg check. > 10000 msgs lost. Current msg ID: 1 Next "
              "msg ID received: 10002\n");
    EXPECT_EQ(atCap.getLostMsgs().size(), 9999u);
    EXPECT_EQ(atCap.getLostMsgs().back(), 10000u);
    EXPECT_EQ(above.getLostMsgs(), (Ids{2}));
    EXPECT_EQ(above.getPrevMsgId(), 10002u);
}

TEST(OrderCheck, ResumeOffsetsCommitAndRollbackMoveTheExpectedId) {
    PerfStats stats("sub", 1000000, 16, 1, 0.0);
    stats.configureInitialSubscriberOrderOffsets({{2, 100}, {3, 100}});
    EXPECT_TRUE(stats.checkOrderPublisherStreamNumber(2, 101, false, false));
    EXPECT_FALSE(stats.checkOrderPublisherStreamNumber(3, 99, false, false));
    EXPECT_EQ(stats.getOrderData().at(3).getDuplicateMsgs(), (Ids{99}));

    // A stream's first message starts it, whatever its id; rolled back
    // before any commit, that id arrives again in order.
    EXPECT_TRUE(stats.checkOrderTopicSequenceNumber(7, false, false));
    stats.rollback();
    for (INT64 id : {7, 8, 9}) {
        EXPECT_TRUE(stats.checkOrderTopicSequenceNumber(id, false, false)) << id;
    }
    stats.commit();
    EXPECT_TRUE(stats.checkOrderTopicSequenceNumber(10, false, false));
    stats.rollback();
    EXPECT_TRUE(stats.checkOrderTopicSequenceNumber(10, false, false));
    EXPECT_TRUE(stats.getOrderData().at(-2).getDuplicateMsgs().empty());
}

TEST(OrderCheck, AggregateSumsLateValuesAppendsListsAndPrintsRanges) {
    SingleStreamOrderStats a("a", 1), b("b", 1);
    feed(a, {4, 2});        // lost 3; 2 late, seen with 4
    feed(b, {5, 2, 7, 1});  // lost 3, 4, 6; 2 late with 5; 1 again
    EXPECT_TRUE(a.aggregate(b));
    EXPECT_EQ(a.getPrevMsgId(), 4u);
    EXPECT_EQ(a.toString(), "    ooo : (2:9) \n    lost: (3-3)(3-4)(6-6)\n    dup : 1 \n");
}

// Random streams with known damage: each id 1..n arrives in place, is
// dropped, or is delayed behind a later id; some ids that arrived are
// repeated later with random flags. The check must find exactly that.
TEST(OrderCheckProperty, InjectedLossDelayAndDuplicationAreCountedExactly) {
    std::mt19937_64 random(20240611);
    for (int round = 0; round < 20; ++round) {
        const UINT64 n = 2000 + random() % 3000;
        struct Delivery {
            double at;
            UINT64 id;
            bool redelivered, republished;
        };
        std::vector<Delivery> deliveries;
        Ids dropped, delayed, dups, redeliveredDups, republishedDups;
        UINT64 nextInPlace = n;
        for (UINT64 id = n; id >= 1; --id) {  // backwards, to know the next id in place
            const auto roll = random() % 100;
            const bool inner = id > 1 && id < n, flagA = random() % 2, flagB = random() % 2;
            if (inner && roll < 4) {
                dropped.insert(dropped.begin(), id);
            } else if (inner && roll < 8) {
                delayed.insert(delayed.begin(), id);
                deliveries.push_back({nextInPlace + 0.5, id, flagA, flagB});
            } else {
                deliveries.push_back({static_cast<double>(id), id, flagA, flagB});
                nextInPlace = id;
                if (roll >= 95) {
                    const bool red = random() % 2, rep = random() % 2;
                    deliveries.push_back(
                        {id + 0.25 + static_cast<double>(random() % 20), id, red, rep});
                    (red ? redeliveredDups : rep ? republishedDups : dups).push_back(id);
                }
            }
        }
        std::stable_sort(deliveries.begin(), deliveries.end(),
                         [](const Delivery& x, const Delivery& y) { return x.at < y.at; });
        PerfStats stats("prop", 1000000, 16, 1, 0.0);
        for (const Delivery& d : deliveries) {
            stats.checkOrderPublisherStreamNumber(0, d.id, d.redelivered, d.republished);
        }
        const SingleStreamOrderStats& s = stats.getOrderData().at(0);
        auto sorted = [](Ids ids) {
            std::sort(ids.begin(), ids.end());
            return ids;
        };
        Ids late;
        for (const auto& entry : s.getOoOMsgs()) {
            late.push_back(entry.first);
        }
        ASSERT_EQ(sorted(s.getLostMsgs()), dropped) << round;
        ASSERT_EQ(late, delayed) << round;
        ASSERT_EQ(sorted(s.getDuplicateMsgs()), sorted(dups)) << round;
        ASSERT_EQ(sorted(s.getRedeliveredDuplicateMsgs()), sorted(redeliveredDups)) << round;
        ASSERT_EQ(sorted(s.getRepublishedDuplicateMsgs()), sorted(republishedDups)) << round;
        ASSERT_EQ(s.getPrevMsgId(), n);
    }
}

}  // namespace
}  // namespace zorvane::pubsub
