// The end-of-run report: everything a run measured, printed once after the
// traffic has stopped and the clients are down.
//
// The report reads its figures from the client collection only through
// ReportSource, so that its text can be checked without clients or a
// broker. The collection provides a small adapter that forwards each call:
//
//   class CollectionReportSource : public ReportSource {
//     public:
//       explicit CollectionReportSource(PerfClientCollection& c) : c_m(c) {}
//       double txThroughput() const override { return c_m.getTxThroughPut(); }
//       INT64 sdkStat(int id) const override { return c_m.getSdkStat(id, -1); }
//       ... one line per entry below ...
//     private:
//       PerfClientCollection& c_m;
//   };
//
// Threads: main thread only, after disconnect(), so no counter moves while
// the report reads it.
#pragma once

#include <iostream>
#include <map>
#include <vector>

#include "common/PerfStats.h"
#include "common/dataTypes.h"

namespace zorvane::pubsub {

class CliProperties;

// The figures the report reads from the client collection. Each call is made
// when its section is printed, at most as often as that section needs it,
// so a figure for a section that is not printed is never asked for.
// Exceptions pass through the report to its caller; what was printed until
// then stays printed.
class ReportSource {
  public:
    virtual ~ReportSource() = default;

    // Messages per second published by all clients, from the first to the
    // last message sent. Collection: getTxThroughPut().
    virtual double txThroughput() const = 0;

    // One of the library's session statistics summed over all clients, by
    // the id AbstractClient::getSdkStat takes: below
    // CommonUtils::SDK_TX_STAT_OFFSET a receive statistic, from it the
    // offset plus a transmit statistic. The report asks for 1001 (messages
    // sent), 3 (discard indications), 20 (replies matching no request), 37,
    // 38 and 39 (settlement outcomes), and all of them for the library
    // statistics section. Collection: getSdkStat(id, -1).
    virtual INT64 sdkStat(int sdkStatId) const = 0;

    // Receive statistics of client clientIndex (from 0), or with
    // ALL_CLIENTS_INDEX the aggregate of all clients.
    // With wantFirstLastStats the first-to-last fan-out statistics instead
    // (asked for only with ALL_CLIENTS_INDEX). Collection:
    // getRxStats(clientIndex, wantFirstLastStats).
    virtual PerfStats rxStats(int clientIndex, bool wantFirstLastStats) const = 0;

    // Publisher stream id to the last message id the broker acknowledged on
    // it, over all clients: the "-poo=" a later run resumes publishing with.
    // Collection: getLastAckedMsgIdByPubStreamId(-1).
    virtual std::map<INT32, UINT64> lastAckedMsgIdByPubStreamId() const = 0;

    // One entry per client, in client order: publisher stream id to the last
    // message id that client received on it, the "-soo=" a later run
    // resumes order checking with. Collection: getSubOrderOffsets(-1).
    virtual std::vector<std::map<INT32, UINT64>> subOrderOffsets() const = 0;

    // The process's processor time over the run as a fraction of the wall
    // time (1.0 is one core busy all the time). Collection: getCpuUsage().
    virtual double cpuUsage() const = 0;

    // SIGALRM deliveries handled during the run. Driver: numAlarms_s.
    virtual INT64 numAlarms() const = 0;
};

// Prints the whole report to out (standard output in a run).
//
// Format of out: the publish rate switches it to fixed notation with 2
// decimals, which the later throughput figures written straight to out (per
// client, per priority) keep, and the CPU usage sets 3 decimals. The report
// leaves out that way; nothing restores its earlier format. The texts from
// DisplayUtils are formatted apart and are not affected.
void displayClientStats(const CliProperties& cliProperties, const ReportSource& source,
                        std::ostream& out = std::cout);

}  // namespace zorvane::pubsub
