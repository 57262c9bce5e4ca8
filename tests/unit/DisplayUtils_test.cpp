#include "common/DisplayUtils.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <sstream>
#include <string>
#include <vector>

#include "common/CliProperties.h"
#include "common/ClientProperties.h"
#include "common/CommonUtils.h"
#include "common/PerfStats.h"

namespace zorvane::pubsub {
namespace {

using ::testing::HasSubstr;
using ::testing::Not;

ClientProperties makeProps(const std::string& prefix, const std::string& user,
                           const std::string& vpn, const std::string& scheme = "") {
    CliProperties cli(CliProperties::VEX_LOAD, "1.0.0");
    cli.setStringProperty(CliProperties::CLIENT_NAME_PREFIX, prefix);
    cli.setStringProperty(CliProperties::CLIENT_USERNAME, user);
    cli.setStringProperty(CliProperties::CLIENT_VPN, vpn);
    cli.setStringProperty(CliProperties::AUTHENTICATION_SCHEME, scheme);
    return ClientProperties(cli);
}

TEST(DisplayUtilsClientNameDetails, NamesOfClientOneAndWhatIsLeftToTheLibraryOrRouter) {
    EXPECT_EQ(DisplayUtils::clientNameDetails(makeProps("abc", "me", "vpn1")),
              "Client naming used:\n\tlogging ID   = abc000001\n\tusername     = me\n"
              "\tvpn          = vpn1\n\tclient names = abc000001\n");
    EXPECT_EQ(DisplayUtils::clientNameDetails(makeProps("", "", "")),
              "Client naming used:\n\tlogging ID   = 000001\n\tusername     = perf_client000001\n"
              "\tvpn          = \n\tclient names = sdk generated.\n");

    // Credential schemes without a user name let the router name the user.
    const struct {
        const char* user;
        const char* scheme;
        const char* shown;
    } users[] = {{"", "client-certificate", "router generated."},
                 {"", "kerberos", "router generated."},
                 {"me", "client-certificate", "me"},
                 {"me", "kerberos", "me"},
                 {"", "basic", "abc000001"},
                 {"", "oauth2", "abc000001"},
                 {"", "tls-psk", "abc000001"}};
    for (const auto& c : users) {
        const std::string block =
            DisplayUtils::clientNameDetails(makeProps("abc", c.user, "v", c.scheme));
        EXPECT_THAT(block, HasSubstr(std::string("\tusername     = ") + c.shown + "\n"))
            << c.user << "/" << c.scheme;
    }
}

// The figures after the separator of each line that has one, in order.
std::vector<std::string> valuesOf(const std::string& text, const std::string& sep = " = ") {
    std::vector<std::string> values;
    std::istringstream lines(text);
    for (std::string line; std::getline(lines, line);) {
        if (const size_t at = line.find(sep); at != std::string::npos) {
            values.push_back(line.substr(at + sep.size()));
        }
    }
    return values;
}
using Values = std::vector<std::string>;

// Ten latency samples in ticks of a clock of 3 ticks per us, in buckets 4
// ticks wide: one in bucket 0, five in 1, two in 2 and two in the last one,
// which holds everything beyond the histogram. Average 348 / 30 us.
PerfStats latencyStats() {
    PerfStats stats("lat", 3000000, 8, 2, 0.5);
    stats.incLatency(1, 999);  // starts the 1.5e6-tick warm-up, not sampled
    UINT64 now = 1500001;
    for (UINT64 sample : {3, 5, 6, 10, 4, 4, 7, 9, 100, 200}) {
        stats.incLatency(now, sample);
        now += 300000;  // the ten samples span 0.9 s
    }
    return stats;
}

TEST(DisplayUtilsLatency, PrecisionAppliesToBucketSizeAndLatenciesAndPercentilesMayFail) {
    const std::string text = DisplayUtils::latency(latencyStats(), "Latency Stats: ", true, -1);
    EXPECT_EQ(valuesOf(text), (Values{"1.33 us", "0.50 s", "10", "11.11", "1 us", "12 us", "3 us",
                                      "67 us", "8 us"}));
    EXPECT_THAT(text, HasSubstr("11.11\n\nLatency Stats: \nMinimum"));
    EXPECT_THAT(text,
                HasSubstr("= 3 us\nCannot compute 95th percentile; not enough latency buckets\n"
                          "Cannot compute 99th percentile; not enough latency buckets\n"
                          "Cannot compute 99.9th percentile; not enough latency buckets\nMax"));
    // Without full stats there is no minimum and maximum; rates keep 2.
    EXPECT_EQ(valuesOf(DisplayUtils::latency(latencyStats(), "T", false, 3)),
              (Values{"1.333 us", "0.50 s", "10", "11.11", "11.600 us", "2.667 us", "7.885 us"}));
}

// Stream 0: 5, 8, 6, 5 (7 lost, 6 late, 5 again); topic sequence: 1, 2, 2
// redelivered; default stream: 1, 3 (2 lost); stream 3: 10, 10 republished.
TEST(DisplayUtilsOrder, SummaryCountsEveryKindAndDetailsListStreamsSpecialOnesFirst) {
    PerfStats stats("client1", 1000000, 4, 1, 0.0);
    for (UINT64 id : {5, 8, 6, 5}) {
        stats.checkOrderPublisherStreamNumber(0, id, false, false);
    }
    stats.checkOrderTopicSequenceNumber(1, false, false);
    stats.checkOrderTopicSequenceNumber(2, false, false);
    stats.checkOrderTopicSequenceNumber(2, true, false);
    stats.checkOrderPublisherStreamNumber(PerfStats::STREAM_ID_DEFAULT, 1, false, false);
    stats.checkOrderPublisherStreamNumber(PerfStats::STREAM_ID_DEFAULT, 3, false, false);
    stats.checkOrderPublisherStreamNumber(3, 10, false, false);
    stats.checkOrderPublisherStreamNumber(3, 10, false, true);
    stats.incStat(PerfStats::NUM_MSGS_ORDER_CHECKED, 11);
    stats.incStat(PerfStats::NUM_MSGS_REDELIVERED, 4);
    stats.incStat(PerfStats::NUM_REPLICATION_GROUP_MESSAGE_ID_SPOOL_ID_CHANGES, 2);

    EXPECT_EQ(valuesOf(DisplayUtils::orderCheckSummary(stats, "Sum:"), ": "),
              (Values{"11", "1", "2", "1", "4", "1", "1", "0", "2"}));
    EXPECT_EQ(DisplayUtils::orderCheckDetails(stats),
              "Message Order Details Client: client1\n"
              "  Stream: TOPIC_SEQUENCE \n red dup: 2 \n"
              "  Stream: DEFAULT \n    lost: (2-2)\n"
              "  Stream: 0\n    ooo : (6:8) \n    lost: (7-7)\n    dup : 5 \n"
              "  Stream: 3\nrpub dup: 10 \n");
}

TEST(DisplayUtilsOrder, OnlyRepublishedDuplicatesLeaveTheDetailsEmpty) {
    PerfStats stats("c", 1000000, 4, 1, 0.0);
    stats.checkOrderPublisherStreamNumber(1, 4, false, false);
    stats.checkOrderPublisherStreamNumber(1, 4, false, true);
    EXPECT_EQ(DisplayUtils::orderCheckDetails(stats), "");
    EXPECT_EQ(valuesOf(DisplayUtils::orderCheckSummary(stats, ""), ": ")[6], "1");
}

TEST(DisplayUtilsOrder, MemoryEntriesAreFullWidthHexWithStreamInTheTopBits) {
    PerfStats stats;
    EXPECT_EQ(DisplayUtils::orderMemory(stats, "M:"), "M:\n\n");
    stats.updateOrderMemory(0x1234567, 2);
    stats.updateOrderMemory(5, PerfStats::STREAM_ID_DEFAULT);
    EXPECT_EQ(DisplayUtils::orderMemory(stats, "M:"),
              "M:\n 0x0002000000234567, 0xffff000000000005,\n");
}

TEST(DisplayUtilsReceive, CounterBlocksShowTheirStatsInOrder) {
    PerfStats stats("s", 1000000, 4, 1, 0.0);
    for (int stat = PerfStats::NUM_MSGS_CRC_OK; stat < PerfStats::NUM_STAT_TYPES; ++stat) {
        stats.incStat(stat, 100 + stat);
    }
    stats.incStatWithTime(PerfStats::NUM_MSGS_RECV, 3, 1000000);
    stats.incStatWithTime(PerfStats::NUM_MSGS_RECV, 4, 2500000);  // 7 in 1.5 s
    EXPECT_EQ(DisplayUtils::summary(stats, "Title"),
              std::string(53, '-') + "\nTitle\n" +
                  "Total Messages received across all clients = 7\n"
                  "Computed receive rate (msg/sec aggregate)  = 4.67\n"
                  "Messages client acked                      = 150\n");
    stats.setStat(PerfStats::NUM_MSGS_CLIENT_ACKED, 0);
    EXPECT_EQ(valuesOf(DisplayUtils::summary(stats, "Title")), (Values{"7", "4.67"}));

    EXPECT_EQ(valuesOf(DisplayUtils::msgIntegrity(stats, "I")),
              (Values{"116", "117", "118", "119", "120", "121", "122", "123", "124", "125"}));
    EXPECT_EQ(valuesOf(DisplayUtils::msgContentCheck(stats, "C")),
              (Values{"7", "127", "128", "129", "130", "131"}));
    EXPECT_EQ(DisplayUtils::msgObjTypeCheck(stats, "O"),
              "O\nTotal Messages OK         = 134\nTotal Messages FAIL       = 135\n\n");
    // Cancelled requests (145) have no line; the discarded replies close it.
    EXPECT_EQ(valuesOf(DisplayUtils::cacheStats(stats, -3, "Cache")),
              (Values{"136", "137", "141", "142", "143", "144", "146", "138", "139", "140", "-3"}));
}

TEST(DisplayUtilsReceive, KeyedCountsAlignInTenColumnsAndPrioritiesSkipEmptyDirections) {
    PerfStats stats;
    stats.incCidStats({7, 4000000000U, 7});
    stats.incDemuxStats("q1");
    stats.incDemuxStats("a-long-subscription");
    EXPECT_EQ(DisplayUtils::cid(stats, "CIDs"),
              "CIDs\nCID:          7 - Msgs: 2\nCID: 4000000000 - Msgs: 1\n");
    EXPECT_EQ(DisplayUtils::demux(stats, "D"),
              "D\nID: a-long-subscription - Msgs: 1\nID:         q1 - Msgs: 1\n");

    EXPECT_EQ(DisplayUtils::priorityStats(stats), "Message Priority Stats:\n");
    stats.incSubPriorityStat(9, 2);
    stats.incSubPriorityStat(0, 1);
    EXPECT_EQ(DisplayUtils::priorityStats(stats),
              "Message Priority Stats:\n  Received:\n    Priority #0 : 1\n    Priority #9 : 2\n\n");
}

TEST(DisplayUtilsApiStats, EveryLibraryStatisticByItsNameWithTheSummedValue) {
    auto sum = [](int id) -> INT64 { return id * 2; };
    std::string text = DisplayUtils::allApiStats(sum);
    EXPECT_EQ(text.rfind("ZCORE RX STATS:\n\tRX_STAT_0 : 0\n", 0), 0U) << text;
    EXPECT_THAT(text, HasSubstr("\tRX_STAT_39 : 78\n\nZCORE TX STATS:\n\tTX_STAT_0 : 2000\n"));
    EXPECT_TRUE(text.ends_with("\tTX_STAT_27 : 2054\n"));
    EXPECT_EQ(std::count(text.begin(), text.end(), '\n'), 1 + 40 + 1 + 1 + 28);

    CommonUtils::setSdkStatNameReader(
        [](int id) { return id >= CommonUtils::SDK_TX_STAT_OFFSET ? "TX_NAME" : "RX_NAME"; });
    text = DisplayUtils::allApiStats(sum);
    CommonUtils::setSdkStatNameReader(nullptr);
    EXPECT_THAT(text, HasSubstr("\tRX_NAME : 78\n\nZCORE TX STATS:\n\tTX_NAME : 2000\n"));
}

}  // namespace

TEST(DisplayUtilsPoolStats, EveryStatisticOnItsLineWithSixAllocatedPools) {
    static UINT64 base_s = 100;
    CommonUtils::setPoolStatReader([](CommonUtils::PoolStat stat, int index, UINT64* value_p) {
        if (stat == CommonUtils::POOL_STAT_MSG_DUPS) {
            return false;  // shown as 0
        }
        *value_p = base_s + static_cast<UINT64>(stat) * 10 + static_cast<UINT64>(index);
        return true;
    });
    std::string text = DisplayUtils::displayPoolStats("End of test msg pool stats:");
    CommonUtils::setPoolStatReader(nullptr);

    EXPECT_EQ(text.rfind("End of test msg pool stats:\n\tTOTAL_MEMORY     : 100\n", 0), 0U) << text;
    EXPECT_THAT(text, HasSubstr("\tMSG_DUPS         : 0\n"));
    EXPECT_THAT(text, HasSubstr("\tALLOC_CONTAINERS : 190\n"));
    EXPECT_THAT(text, HasSubstr("\tPool 4 : FREE_DATA_BLOCKS  : 204\n"));
    EXPECT_THAT(text, Not(HasSubstr("\tPool 5 : FREE_DATA_BLOCKS")));
    EXPECT_THAT(text, HasSubstr("\tPool 5 : ALLOC_DATA_BLOCKS : 215\n"));
    EXPECT_EQ(std::count(text.begin(), text.end(), '\n'), 1 + 10 + 5 + 6);
}

}  // namespace zorvane::pubsub
