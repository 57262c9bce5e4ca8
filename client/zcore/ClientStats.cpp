// The client's statistics as the report reads them, and the per-client
// block of the verbose report.
#include <cstdio>
#include <string>

#include "client/zcore/Client.h"
#include "common/Log.h"

namespace zorvane::pubsub {

namespace {

// One "name = value" line of the library's statistics, the name padded to
// a column.
void appendStatLine(std::string& out, const char* name, zorClient_stats_t value) {
    char line[128];
    std::snprintf(line, sizeof line, "%-50s = %llu\n", name,
                  static_cast<unsigned long long>(value));
    out += line;
}

}  // namespace

INT64 Client::getSdkStatImpl(int statId) {
    zorClient_stats_t value = 0;
    if (statId >= TX_STAT_OFFSET) {
        zorClient_session_getTxStat(
            session_mp, static_cast<zorClient_stats_tx>(statId - TX_STAT_OFFSET), &value);
        return static_cast<INT64>(value);
    }
    // The session counts what its destroyed flows counted; live flows count
    // their own, and this build binds none.
    zorClient_session_getRxStat(session_mp, static_cast<zorClient_stats_rx>(statId), &value);
    return static_cast<INT64>(value);
}

void Client::resetStatsImpl() {
    stats_m.resetStats();
    zorClient_session_clearStats(session_mp);
    numMsgsAcked_m.store(0);
}

const PerfStats& Client::getRxStatsImpl(bool wantFirstLastStats) {
    if (wantFirstLastStats && firstLastData_mp != nullptr) {
        return firstLastData_mp->getRxStats();
    }
    rxStats_m.resetStats();
    if (!wantFirstLastStats) {
        // Transacted sessions add theirs here once they exist.
        rxStats_m.aggregate(stats_m);
    }
    return rxStats_m;
}

std::string Client::toStringImpl() {
    std::string out(63, '^');
    out += "\nClient name: " + clientIdStr_m + "\n";
    // The flows of the four endpoint kinds; this build binds none.
    for (const char* kind : {"DTEs", "DQEs", "TTEs", "TQEs"}) {
        out += std::string("Number ") + kind + ": 0\n";
    }
    _zorClient_session_logRelPub(session_mp, ZORCLIENT_LOG_DEBUG);

    zorClient_stats_t txStats[ZORCLIENT_STATS_TX_NUM_STATS] = {};
    zorClient_session_getTxStats(session_mp, txStats, ZORCLIENT_STATS_TX_NUM_STATS);
    for (int id = 0; id < ZORCLIENT_STATS_TX_NUM_STATS; ++id) {
        appendStatLine(out, zorClient_txStatToString(static_cast<zorClient_stats_tx>(id)),
                       txStats[id]);
    }
    zorClient_stats_t rxStats[ZORCLIENT_STATS_RX_NUM_STATS] = {};
    zorClient_session_getRxStats(session_mp, rxStats, ZORCLIENT_STATS_RX_NUM_STATS);
    for (int id = 0; id < ZORCLIENT_STATS_RX_NUM_STATS; ++id) {
        appendStatLine(out, zorClient_rxStatToString(static_cast<zorClient_stats_rx>(id)),
                       rxStats[id]);
    }
    return out;
}

}  // namespace zorvane::pubsub
