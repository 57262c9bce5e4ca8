#include "vexload/Report.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>
#include <sstream>
#include <stdexcept>
#include <string>
#include <vector>

#include "common/CliProperties.h"

namespace zorvane::pubsub {
namespace {

using ::testing::HasSubstr;
using ::testing::Not;

// The collection's figures, set by each test.
class FakeSource : public ReportSource {
  public:
    double txThroughput() const override { return txRate; }
    INT64 sdkStat(int id) const override { return sdk ? sdk(id) : 0; }
    PerfStats rxStats(int index, bool firstLast) const override {
        if (aggregateFails && index == ALL_CLIENTS_INDEX && !firstLast) {
            throw std::runtime_error("collection gone");
        }
        if (firstLast) {
            return firstLastStats;
        }
        return index == ALL_CLIENTS_INDEX ? aggregate : clients.at(index);
    }
    std::map<INT32, UINT64> lastAckedMsgIdByPubStreamId() const override { return lastAcked; }
    std::vector<std::map<INT32, UINT64>> subOrderOffsets() const override { return subOffsets; }
    double cpuUsage() const override { return cpu; }
    INT64 numAlarms() const override { return alarms; }

    double txRate = 0.0;
    std::function<INT64(int)> sdk;
    PerfStats aggregate, firstLastStats;
    std::vector<PerfStats> clients;
    std::map<INT32, UINT64> lastAcked;
    std::vector<std::map<INT32, UINT64>> subOffsets;
    double cpu = 0.0;
    INT64 alarms = 0;
    bool aggregateFails = false;
};

struct ReportTest : ::testing::Test {
    std::string report() {
        std::ostringstream out;
        displayClientStats(cli, source, out);
        return out.str();
    }
    bool shows(const std::string& text) { return report().find(text) != std::string::npos; }

    CliProperties cli{CliProperties::VEX_LOAD, "1.0.0"};
    FakeSource source;
};

TEST_F(ReportTest, ARunThatReceivedNothingPrintsOnlyTheAlwaysSections) {
    const std::string rule(53, '-');
    EXPECT_EQ(report(), "\n" + rule +
                            "\nAggregate Msgs Sent Stats (Total # clients: 1)\n"
                            "Total Messages transmitted                 = 0\n"
                            "Computed publish rate (msg/sec)            = 0.00\n\n" +
                            rule +
                            "\nAggregate Msgs Recv Stats (Total # clients: 1)\n"
                            "Total Messages received across all clients = 0\n"
                            "Computed receive rate (msg/sec aggregate)  = 0.00\n"
                            "Messages received with discard indication  = 0\n"
                            "\nCPU usage = 0.000%\n\n\n");
}

TEST_F(ReportTest, ThroughputWrittenAfterThePublishRateKeepsItsNotation) {
    cli.setIntegerProperty(CliProperties::NUM_CLIENTS, 2);
    cli.setBooleanProperty(CliProperties::WANT_PER_SUB_THRU_STATS, true);
    cli.setBooleanProperty(CliProperties::WANT_PER_PRI_THRU_STATS, true);
    source.txRate = 1234.5678;
    source.cpu = 0.123456;
    source.clients = {PerfStats("c1", 1000000, 4, 1, 0.0), PerfStats("c2", 1000000, 4, 1, 0.0)};
    source.clients[0].incStatWithTime(PerfStats::NUM_MSGS_RECV, 1, 1000000);
    source.clients[0].incStatWithTime(PerfStats::NUM_MSGS_RECV, 4, 3000000);
    source.aggregate = source.clients[0];
    source.aggregate.incPriorityStat(3, 4);

    std::ostringstream out;
    displayClientStats(cli, source, out);
    EXPECT_THAT(out.str(), HasSubstr("= 1234.57\n"));
    EXPECT_THAT(out.str(), HasSubstr("\nClient,Msgs,Throughput:\nc1,5,2.50\nc2,0,0.00\n\nCoS Stats "
                                     "(Message Class, Messages Received, Message Rage (msg/sec)\n"
                                     "Priority 3,4,2.00\n\nCPU usage = 12.346%\n"));
    out.str("");  // the stream stays as the report left it
    out << 0.5;
    EXPECT_EQ(out.str(), "0.500");
}

TEST_F(ReportTest, OrderBlockListsFaultyClientsAndTheResumeArguments) {
    cli.setIntegerProperty(CliProperties::NUM_CLIENTS, 2);
    cli.setBooleanProperty(CliProperties::WANT_ORDER_CHECK_TOPIC_SEQUENCE_NUMBER, true);
    source.clients = {PerfStats("clean", 1000000, 4, 1, 0.0),
                      PerfStats("lossy", 1000000, 4, 1, 0.0)};
    for (UINT64 id : {1, 2}) {
        source.clients[0].checkOrderTopicSequenceNumber(id, false, false);
    }
    source.clients[1].checkOrderTopicSequenceNumber(1, false, false);
    source.clients[1].checkOrderTopicSequenceNumber(4, false, false);
    source.aggregate = source.clients[1];
    source.lastAcked = {{2, 11}, {1, 10}};
    source.subOffsets = {{{1, 5}}, {{1, 6}, {2, 7}}};

    const std::string details =
        "Spool Id Changes : 0\n\nOut-of-Order Msgs by Client:\n"
        "Message Order Details Client: lossy\n  Stream: TOPIC_SEQUENCE \n    lost: (2-3)\n";
    std::string text = report();
    EXPECT_THAT(text, HasSubstr("= 0\n\nMessage Order Check Summary:\nTotal Msgs Order Checked"));
    EXPECT_THAT(text, HasSubstr(details + "\nCPU usage"));

    cli.setMsgType(PUBSUB_MSG_TYPE_PERSISTENT);
    cli.setBooleanProperty(CliProperties::SUB_ORDER_OFFSETS_PRINT_RESUMING_ARG_AT_EXIT, true);
    cli.setBooleanProperty(CliProperties::WANT_ORDER_MEMORY, true);
    text = report();
    EXPECT_THAT(
        text,
        HasSubstr(details +
                  "\nTo resume publishing at this point on all publisher streams, use the "
                  "argument\n    -poo='1@10,2@11'\n\n\nTo resume the subscriber message order "
                  "tracking next time, use the following argument.\n    -soo='1@5 ; 1@6,2@7'"
                  "\n\nMessage Order Memory:\n\n"));
}

TEST_F(ReportTest, ConditionalSectionsAppearOnlyWhenTheirConditionHolds) {
    source.sdk = [](int id) -> INT64 { return id == 3 ? 2 : id + 100; };
    using Enable = std::function<void(ReportTest&)>;
    auto flag = [](const char* key) -> Enable {
        return [key](ReportTest& t) { t.cli.setBooleanProperty(key, true); };
    };
    auto text = [](const char* key) -> Enable {
        return [key](ReportTest& t) { t.cli.setStringProperty(key, "x"); };
    };
    const std::vector<std::pair<Enable, std::string>> cases = {
        {flag(CliProperties::WANT_DI_STATS), "  Reported by SDK: 2\n  Reported by Tool: 0\n"},
        {text(CliProperties::AD_ACK_EVENT_MODE), "ACK stats:\n  Total ACK Events     = 0\n"},
        {text(CliProperties::REQUIRED_SETTLEMENTS),
         "AD Sub ACK/NACK stats:\n  Messages Received Accepted  = 137\n"
         "  Messages Received Rejected  = 139\n  Messages Received Failed    = 138\n"},
        {flag(CliProperties::WANT_PER_PRI_THRU_STATS),
         "\n\nCoS Stats (Message Class, Messages Received, Message Rage (msg/sec)\n\nCPU"},
        {[](ReportTest& t) { t.cli.setVectorProperty(CliProperties::SDM_FILE_LIST, {"f"}); },
         "\n\nMessage Integrity Checking:\n"},
        {flag(CliProperties::SDM_AUTO_GEN_FLAG), ""},  // already shown
        {flag(CliProperties::WANT_PAYLOAD_CHECK), ""},
        {flag(CliProperties::MSG_OBJ_TYPE_CHECK),
         "\n\nMessage Object Type Checking:\nTotal Messages OK         = 0\n"},
        {flag(CliProperties::WANT_CID_STATS), "\n\nMsgs Received Per Consumer ID:\n"},
        {flag(CliProperties::WANT_FULL_MSG_INSPECTION),
         "\n\nMessage Content Inspection Stats:\nReceived Total         = 0\n"},
        {flag(CliProperties::WANT_PRIORITY_STATS), "\n\nMessage Priority Stats:\n"},
        {text(CliProperties::CACHE_PROP_NAME), ""},  // no request sent: no section
        {[](ReportTest& t) { t.source.aggregate.incStat(PerfStats::NUM_CACHE_REQ_SENT); },
         "\n\nCache Stats:\nNum Requests Sent           = 1\n"},
        {[](ReportTest& t) { t.source.aggregate.incDemuxStats("sub"); },
         "\n\nMsgs Received Per Demux ID:\nID:        sub - Msgs: 1\n"},
        {[](ReportTest& t) { t.cli.setIntegerProperty(CliProperties::SIGALRM_INTERVAL_IN_US, 1); },
         "SIGALRM events handled: 4\n\nCPU usage"},
        {flag(CliProperties::WANT_API_STATS), "%\n\n\nZCORE RX STATS:\n\tRX_STAT_0 : 100\n"},
    };
    source.alarms = 4;
    for (const auto& [enable, expected] : cases) {
        const std::string before = report();
        enable(*this);
        const std::string after = report();
        EXPECT_EQ(before.find(expected) == std::string::npos, !expected.empty()) << expected;
        EXPECT_EQ(after == before, expected.empty()) << after;
        EXPECT_THAT(after, HasSubstr(expected));
    }
    // Equal discard counts print no discrepancy; the ACKED line needs
    // publisher stream order checking.
    source.aggregate.incStat(PerfStats::NUM_MSGS_DISCARD_INDICATION, 2);
    EXPECT_FALSE(shows("discrepancy"));
    EXPECT_FALSE(shows("Total ACKED Messages"));
    cli.setBooleanProperty(CliProperties::WANT_ORDER_CHECK_PUBLISHER_STREAM_NUMBER, true);
    source.clients.emplace_back();  // the order block reads each client
    EXPECT_TRUE(shows("  Total NACK Events    = 0\n  Total ACKED Messages = 0\n"));
}

TEST_F(ReportTest, EverySectionComesInItsPlaceWithItsBlankLines) {
    source.sdk = [](int id) -> INT64 { return id == 3 ? 2 : 0; };
    for (const char* key :
         {CliProperties::WANT_DI_STATS, CliProperties::WANT_ORDER_CHECK_PUBLISHER_STREAM_NUMBER,
          CliProperties::WANT_ORDER_MEMORY, CliProperties::WANT_PER_SUB_THRU_STATS,
          CliProperties::WANT_PER_PRI_THRU_STATS, CliProperties::SDM_AUTO_GEN_FLAG,
          CliProperties::WANT_LATENCY_MEASUREMENT, CliProperties::MSG_OBJ_TYPE_CHECK,
          CliProperties::WANT_CID_STATS, CliProperties::WANT_FULL_MSG_INSPECTION,
          CliProperties::WANT_PRIORITY_STATS, CliProperties::WANT_API_STATS}) {
        cli.setBooleanProperty(key, true);
    }
    for (const char* key : {CliProperties::AD_ACK_EVENT_MODE, CliProperties::SETTLEMENT_PATTERN,
                            CliProperties::CACHE_PROP_NAME}) {
        cli.setStringProperty(key, "x");
    }
    cli.setIntegerProperty(CliProperties::SIGALRM_INTERVAL_IN_US, 10);
    cli.setIntegerProperty(CliProperties::LATENCY_FIRST_TO_LAST_FANOUT, 1);
    source.aggregate.incStat(PerfStats::NUM_CACHE_REQ_SENT);
    source.aggregate.incDemuxStats("s");
    source.clients.emplace_back();

    const char* sections[] = {
        "\n-----",
        "-\nAggregate Msgs Sent Stats (Total # clients: 1)\n",
        "\n\n-----",
        "-\nAggregate Msgs Recv Stats (Total # clients: 1)\n",
        "\nMessages received with discard indication  = 2\nDiscard indication discrepancy:\n",
        "\nAD Pub ACK/NACK stats:\n",
        "\n  Total ACKED Messages = 0\nAD Sub ACK/NACK stats:\n",
        "\n\nMessage Order Check Summary:\n",
        "\n\nOut-of-Order Msgs by Client:\nMessage Order Memory:\n\n",
        "\nClient,Msgs,Throughput:\n",
        "\n\nCoS Stats (",
        "\n\nMessage Integrity Checking:\n",
        " = 0\nNo latency samples collected\nNo first to last latency samples collected\n\n"
        "Message Object Type Checking:\n",
        "\n\nMsgs Received Per Consumer ID:\n",
        "\n\nMessage Content Inspection Stats:\n",
        "\n\nCache Stats:\n",
        "\n\nMessage Priority Stats:\n",
        "\n\nMsgs Received Per Demux ID:\n",
        "\nSIGALRM events handled: 0\n\nCPU usage = 0.000%\n\n\nZCORE RX STATS:\n",
        "\n\nZCORE TX STATS:\n",
    };
    const std::string text = report();
    size_t at = 0;
    for (const char* section : sections) {
        at = text.find(section, at);
        ASSERT_NE(at, std::string::npos) << section << "\nin order in\n" << text;
    }
    EXPECT_TRUE(text.ends_with(" : 0\n\n\n")) << "the last library statistic, two blanks";
}

TEST_F(ReportTest, LatencyPrecisionAndFullStatsReachBothLatencySections) {
    cli.setBooleanProperty(CliProperties::WANT_LATENCY_MEASUREMENT, true);
    cli.setIntegerProperty(CliProperties::LATENCY_FIRST_TO_LAST_FANOUT, 2);
    // Buckets of 2 us: samples of 5 and 7 us average 6, the median bucket
    // ends at 6 us. The first-to-last statistics hold one sample of 3 us.
    source.aggregate = PerfStats("aggregate", 1000000, 16, 1, 0.0);
    source.aggregate.incLatency(10, 5);
    source.aggregate.incLatency(20, 7);
    source.firstLastStats = PerfStats("fl", 1000000, 16, 1, 0.0);
    source.firstLastStats.incLatency(10, 3);
    cli.setBooleanProperty(CliProperties::WANT_LATENCY_FULL_STATS, false);

    std::string text = report();
    EXPECT_THAT(text, HasSubstr("Individual latency bucket size = 2.00 us\n"));
    EXPECT_THAT(text, HasSubstr("\nLatency Stats: \nAverage latency for subs       = 6 us\n"
                                "50th percentile latency        = 6 us\n"));
    EXPECT_THAT(text, HasSubstr("\n\nLatency Info: \n")) << "a blank before each";
    EXPECT_THAT(text,
                HasSubstr("\nFirst Last Latency Stats: \nAverage latency for subs       = 3 us\n"));
    EXPECT_THAT(text, Not(HasSubstr("Minimum")));
    EXPECT_THAT(text, Not(HasSubstr("Debug information")));

    cli.setIntegerProperty(CliProperties::LATENCY_PRECISION, 3);
    cli.setBooleanProperty(CliProperties::WANT_LATENCY_FULL_STATS, true);
    cli.setBooleanProperty(CliProperties::WANT_VERBOSE, true);
    text = report();
    EXPECT_THAT(text, HasSubstr("Individual latency bucket size = 2.000 us\n"));
    EXPECT_THAT(text, HasSubstr("\nLatency Stats: \nMinimum latency for subs       = 5.000 us\n"
                                "Average latency for subs       = 6.000 us\n"));
    EXPECT_THAT(
        text,
        HasSubstr("\nFirst Last Latency Stats: \nMinimum latency for subs       = 3.000 us\n"));
    EXPECT_THAT(text,
                HasSubstr(" us\nDebug information for First Last latency: \n BI:        1 LAT:"));
    // The rates and the warm-up stay at 2 decimals whatever the precision.
    EXPECT_THAT(text, HasSubstr("Latency warmup                 = 0.00 s\n"));
}

TEST_F(ReportTest, AFailingCollectionLeavesWhatWasPrinted) {
    source.txRate = 3.0;
    source.aggregateFails = true;
    std::ostringstream out;
    EXPECT_THROW(displayClientStats(cli, source, out), std::runtime_error);
    EXPECT_TRUE(out.str().ends_with("Computed publish rate (msg/sec)            = 3.00\n\n"))
        << out.str();
}

}  // namespace
}  // namespace zorvane::pubsub
