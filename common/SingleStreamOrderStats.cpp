#include "common/SingleStreamOrderStats.h"

#include <algorithm>
#include <iostream>
#include <sstream>

namespace zorvane::pubsub {

SingleStreamOrderStats::SingleStreamOrderStats(const std::string& clientName, UINT64 prevMsgId)
    : prevMsgId_m(prevMsgId), clientName_m(clientName), prevCommittedMsgId_m(prevMsgId - 1) {}

bool SingleStreamOrderStats::checkOrderOutOfSequence(UINT64 msgId, bool redelivered,
                                                     bool republished) {
    const UINT64 prev = prevMsgId_m;
    const UINT64 expected = prev + 1;
    if (msgId < prev) {
        // Linear search, but only for ids below the highest seen, and the
        // list only holds ids still missing.
        auto lost = std::find(lostMsgIds_m.begin(), lostMsgIds_m.end(), msgId);
        if (lost != lostMsgIds_m.end()) {
            // Counted as missing and has turned up late, whatever its flags.
            lostMsgIds_m.erase(lost);
            oooMsgIds_m[msgId] = prev;
            return false;
        }
        return classifyRepeat(msgId, redelivered, republished);
    }
    if (msgId > expected) {
        if (msgId - prev <= MAX_LOST_IDS_PER_GAP) {
            for (UINT64 id = expected; id < msgId; ++id) {
                lostMsgIds_m.push_back(id);
            }
        } else {
            std::cout << "STATS " << clientName_m << ": "
                      << "Error during lost msg check. > 10000 msgs lost. "
                      << "Current msg ID: " << prev << " Next msg ID received: " << msgId
                      << std::endl;
            lostMsgIds_m.push_back(expected);
        }
        prevMsgId_m = msgId;
        return false;
    }
    // msgId == prev: the latest again; it cannot be on the lost list.
    return classifyRepeat(msgId, redelivered, republished);
}

bool SingleStreamOrderStats::classifyRepeat(UINT64 msgId, bool redelivered, bool republished) {
    // A redelivery or a deliberate republish is an expected repeat, so it
    // is recorded apart and not reported as an error.
    if (redelivered) {
        redeliveredDupMsgIds_m.push_back(msgId);
        return true;
    }
    if (republished) {
        republishedDupMsgIds_m.push_back(msgId);
        return true;
    }
    dupMsgIds_m.push_back(msgId);
    return false;
}

bool SingleStreamOrderStats::aggregate(const SingleStreamOrderStats& input) {
    for (const auto& [id, highest] : input.oooMsgIds_m) {
        oooMsgIds_m[id] += highest;
    }
    auto append = [](std::vector<UINT64>& to, const std::vector<UINT64>& from) {
        to.insert(to.end(), from.begin(), from.end());
    };
    append(lostMsgIds_m, input.lostMsgIds_m);
    append(dupMsgIds_m, input.dupMsgIds_m);
    append(redeliveredDupMsgIds_m, input.redeliveredDupMsgIds_m);
    append(republishedDupMsgIds_m, input.republishedDupMsgIds_m);
    return true;
}

std::string SingleStreamOrderStats::toString() const {
    std::ostringstream out;
    if (!oooMsgIds_m.empty()) {
        out << "    ooo : ";
        for (const auto& [id, highest] : oooMsgIds_m) {
            out << "(" << id << ":" << highest << ") ";
        }
        out << "\n";
    }
    if (!lostMsgIds_m.empty()) {
        // Gaps are usually runs of ids; ranges keep a long loss on one line.
        out << "    lost: ";
        std::size_t i = 0;
        while (i < lostMsgIds_m.size()) {
            const UINT64 first = lostMsgIds_m[i];
            UINT64 last = first;
            while (i + 1 < lostMsgIds_m.size() && lostMsgIds_m[i + 1] == last + 1) {
                last = lostMsgIds_m[++i];
            }
            out << "(" << first << "-" << last << ")";
            ++i;
        }
        out << "\n";
    }
    auto list = [&out](const char* label, const std::vector<UINT64>& ids) {
        if (ids.empty()) {
            return;
        }
        out << label;
        for (UINT64 id : ids) {
            out << id << " ";
        }
        out << "\n";
    };
    list("    dup : ", dupMsgIds_m);
    list(" red dup: ", redeliveredDupMsgIds_m);
    list("rpub dup: ", republishedDupMsgIds_m);
    return out.str();
}

}  // namespace zorvane::pubsub
