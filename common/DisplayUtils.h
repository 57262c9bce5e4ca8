// Texts of the report and of the start of a run. Static operations only,
// each returning finished text; nothing is printed here and no state is
// kept, so every function may be called from any thread.
//
// Every text is built in a string stream of its own, so the fixed notation
// and precisions chosen here never reach the stream the caller prints to.
// The labels are padded so that the "=" and ":" of a block line up; they
// are part of the tool's output that people and scripts read, so they do
// not change. Every line ends in a line end.
#pragma once

#include <functional>
#include <string>

#include "common/dataTypes.h"

namespace zorvane::pubsub {

class ClientProperties;
class PerfStats;

class DisplayUtils {
  public:
    DisplayUtils() = delete;

    // The rule above the transmit and the receive totals of the report.
    static constexpr char RULE[] = "-----------------------------------------------------";

    // The block that shows what client number 1 will be called: its id in
    // log lines, its user name, its VPN and its client name. Each line ends
    // in a line end.
    static std::string clientNameDetails(const ClientProperties& props);

    // The messaging library's message pool statistics under a title, one
    // line each; a statistic the library does not give shows as 0.
    static std::string displayPoolStats(const std::string& title);

    // ---- receive figures (DisplayUtilsReceive.cpp) ----

    // A rule of dashes, the title, the received count and the receive rate
    // (2 decimals); the client-acknowledged count only when it is not 0.
    static std::string summary(const PerfStats& stats, const std::string& title);
    // The title and the CRC check counters, overall and by message part.
    static std::string msgIntegrity(const PerfStats& stats, const std::string& title);
    // The title, the object type check counters and a blank line.
    static std::string msgObjTypeCheck(const PerfStats& stats, const std::string& title);
    // The title and one line per consumer id, ascending.
    static std::string cid(const PerfStats& stats, const std::string& title);
    // The title and one line per subscription name, in name order.
    static std::string demux(const PerfStats& stats, const std::string& title);
    // The title and the counts of message parts seen by full inspection.
    static std::string msgContentCheck(const PerfStats& stats, const std::string& title);
    // The title, the cache request counters and numRespDisc, the library's
    // count of replies that matched no outstanding request.
    static std::string cacheStats(const PerfStats& stats, INT64 numRespDisc,
                                  const std::string& title);
    // Published and received counts by priority. A direction without any
    // message prints nothing, not even its heading.
    static std::string priorityStats(const PerfStats& stats);

    // ---- order figures (DisplayUtilsOrder.cpp) ----

    // The title and the totals of the order check over all streams.
    static std::string orderCheckSummary(const PerfStats& stats, const std::string& title);
    // The order findings of one client, stream by stream (topic sequence,
    // default, then publisher streams ascending). Empty when the client saw
    // nothing out of order, lost, duplicated or redelivered twice, so a
    // clean client adds no line to the report; republished duplicates are
    // expected and do not count.
    static std::string orderCheckDetails(const PerfStats& stats);
    // The title and one line with every order memory entry in arrival
    // order, each as " 0x" + 16 hex digits + ",".
    static std::string orderMemory(const PerfStats& stats, const std::string& title);

    // ---- latency (DisplayUtilsLatency.cpp) ----

    // The histogram set-up, the sample count and rate, then under the title
    // the average, the percentiles 50, 95, 99 and 99.9 and the standard
    // deviation; minimum and maximum too with fullStats. A percentile that
    // cannot be computed (it falls into the overflow bucket) gets a line
    // saying so in its place.
    // precision is the number of decimals of latencies and of the bucket
    // size. A negative precision (the default of the option) shows
    // latencies in whole microseconds and the bucket size, often below one
    // microsecond, with 2 decimals.
    static std::string latency(const PerfStats& stats, const std::string& title, bool fullStats,
                               int precision);

    // ---- the library's own statistics ----

    // The library's session statistics summed over all clients: every
    // receive statistic, a blank line, every transmit statistic, each with
    // the library's name for it (CommonUtils::readSdkStatName).
    //
    // sdkStatSum gives the sum over all clients of one statistic by the id
    // that AbstractClient::getSdkStat takes: a receive statistic below
    // CommonUtils::SDK_TX_STAT_OFFSET, a transmit statistic at the offset
    // plus its id. The client collection passes its getSdkStat(id, -1).
    // It is called once per statistic, in the order printed, on the
    // caller's thread.
    static std::string allApiStats(const std::function<INT64(int sdkStatId)>& sdkStatSum);
};

}  // namespace zorvane::pubsub
