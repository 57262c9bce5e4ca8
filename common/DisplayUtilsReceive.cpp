// Receive figures of the report: totals, checks, keyed counts, cache and
// priority counts.
#include <iomanip>
#include <sstream>

#include "common/DisplayUtils.h"
#include "common/PerfStats.h"

namespace zorvane::pubsub {

namespace {

struct StatLine {
    const char* label;
    PerfStats::StatType stat;
};

// The title as a line, then one labelled counter per line.
template <std::size_t N>
void titledCounters(std::ostringstream& text, const PerfStats& stats, const std::string& title,
                    const StatLine (&lines)[N]) {
    text << title << "\n";
    for (const StatLine& line : lines) {
        text << line.label << stats.getStat(line.stat) << "\n";
    }
}

// Keyed counts, right-aligned in a column of 10 so that short ids line up;
// a longer key just pushes the rest of its line along.
template <typename Map>
std::string keyedCounts(const Map& counts, const char* keyLabel, const std::string& title) {
    std::ostringstream text;
    text << title << "\n";
    for (const auto& [key, count] : counts) {
        text << keyLabel << std::setw(10) << key << " - Msgs: " << count << "\n";
    }
    return text.str();
}

}  // namespace

std::string DisplayUtils::summary(const PerfStats& stats, const std::string& title) {
    std::ostringstream text;
    text << RULE << "\n" << title << "\n";
    text << "Total Messages received across all clients = "
         << stats.getStat(PerfStats::NUM_MSGS_RECV) << "\n";
    text << "Computed receive rate (msg/sec aggregate)  = " << std::fixed << std::setprecision(2)
         << stats.getThruPut(PerfStats::NUM_TPUT_MSGS) << "\n";
    // Only runs with client acknowledgement count these; others would show
    // a line of 0 that means nothing.
    const UINT64 clientAcked = stats.getStat(PerfStats::NUM_MSGS_CLIENT_ACKED);
    if (clientAcked != 0) {
        text << "Messages client acked                      = " << clientAcked << "\n";
    }
    return text.str();
}

std::string DisplayUtils::msgIntegrity(const PerfStats& stats, const std::string& title) {
    static const StatLine kLines[] = {
        {"Total Messages with OK          = ", PerfStats::NUM_MSGS_CRC_OK},
        {"Total Messages with ERRORS      = ", PerfStats::NUM_MSGS_CRC_FAIL},
        {"Msgs with xml payload OK        = ", PerfStats::NUM_MSGS_CRC_XMLPAYLOAD_OK},
        {"Msgs with xml payload ERRORS    = ", PerfStats::NUM_MSGS_CRC_XMLPAYLOAD_FAIL},
        {"Msgs with attachment OK         = ", PerfStats::NUM_MSGS_CRC_BINATTACH_OK},
        {"Msgs with attachment ERRORS     = ", PerfStats::NUM_MSGS_CRC_BINATTACH_FAIL},
        {"Msgs with userdata OK           = ", PerfStats::NUM_MSGS_CRC_USERDATA_OK},
        {"Msgs with userdata ERRORS       = ", PerfStats::NUM_MSGS_CRC_USERDATA_FAIL},
        {"Msgs with stuctured data OK     = ", PerfStats::NUM_MSGS_CRC_SDM_OK},
        {"Msgs with stuctured data ERRORS = ", PerfStats::NUM_MSGS_CRC_SDM_FAIL},
    };
    std::ostringstream text;
    titledCounters(text, stats, title, kLines);
    return text.str();
}

std::string DisplayUtils::msgObjTypeCheck(const PerfStats& stats, const std::string& title) {
    static const StatLine kLines[] = {
        {"Total Messages OK         = ", PerfStats::NUM_MSGS_RECEIVED_OBJECT_TYPE_OK},
        {"Total Messages FAIL       = ", PerfStats::NUM_MSGS_RECEIVED_OBJECT_TYPE_FAIL},
    };
    std::ostringstream text;
    titledCounters(text, stats, title, kLines);
    text << "\n";
    return text.str();
}

std::string DisplayUtils::cid(const PerfStats& stats, const std::string& title) {
    return keyedCounts(stats.getCidStatsMap(), "CID: ", title);
}

std::string DisplayUtils::demux(const PerfStats& stats, const std::string& title) {
    return keyedCounts(stats.getDemuxStatsMap(), "ID: ", title);
}

std::string DisplayUtils::msgContentCheck(const PerfStats& stats, const std::string& title) {
    static const StatLine kLines[] = {
        {"Received Total         = ", PerfStats::NUM_MSGS_RECV},
        {"With XML payload       = ", PerfStats::NUM_MSGS_W_XML_PAYLOAD},
        {"With Binary Attachment = ", PerfStats::NUM_MSGS_W_BIN_ATTACH},
        {"With user data         = ", PerfStats::NUM_MSGS_W_USERDATA},
        {"With consumer IDs      = ", PerfStats::NUM_MSGS_W_CID},
        {"With topics            = ", PerfStats::NUM_MSGS_W_TOPIC},
    };
    std::ostringstream text;
    titledCounters(text, stats, title, kLines);
    return text.str();
}

std::string DisplayUtils::cacheStats(const PerfStats& stats, INT64 numRespDisc,
                                     const std::string& title) {
    // Cancelled requests are counted but have no line of their own.
    static const StatLine kLines[] = {
        {"Num Requests Sent           = ", PerfStats::NUM_CACHE_REQ_SENT},
        {"Num Responses Recv          = ", PerfStats::NUM_CACHE_RESP_RECV},
        {"Num Requests Completed OK   = ", PerfStats::NUM_CACHE_REQ_OK},
        {"Num Requests Incomp no data = ", PerfStats::NUM_CACHE_REQ_INCOMP_NODATA},
        {"Num Requests Incomp suspect = ", PerfStats::NUM_CACHE_REQ_INCOMP_SUSPECT},
        {"Num Requests Incomp timeout = ", PerfStats::NUM_CACHE_REQ_INCOMP_TIMEOUT},
        {"Num Requests Errored        = ", PerfStats::NUM_CACHE_REQ_ERROR},
        {"Num Live Data Msgs Recv     = ", PerfStats::NUM_LIVE_MSGS_RECV},
        {"Num Cached Data Msgs Recv   = ", PerfStats::NUM_CACHE_MSGS_RECV},
        {"Num Msgs Recv Suspect       = ", PerfStats::NUM_CACHE_SUSPECT_RECV},
    };
    std::ostringstream text;
    titledCounters(text, stats, title, kLines);
    text << "Num Resp Discarded          = " << numRespDisc << "\n";
    return text.str();
}

std::string DisplayUtils::priorityStats(const PerfStats& stats) {
    std::ostringstream text;
    text << "Message Priority Stats:\n";
    auto direction = [&text](const char* heading, const std::map<int, long long>& counts) {
        if (counts.empty()) {
            return;
        }
        text << heading << "\n";
        for (const auto& [priority, count] : counts) {
            text << "    Priority #" << priority << " : " << count << "\n";
        }
        text << "\n";
    };
    direction("  Published:", stats.getPubPriorityStatMap());
    direction("  Received:", stats.getSubPriorityStatMap());
    return text.str();
}

}  // namespace zorvane::pubsub
