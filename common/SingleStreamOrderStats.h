// Order check of one stream of ascending message ids (a publisher stream or
// a client's topic sequence numbers): tells whether each id arrived exactly
// once and in sequence, and keeps the ids that did not.
//
// Ids must rise by exactly 1. The check always compares against the highest
// id seen so far, so a message that fills an earlier gap is out of order,
// not a duplicate. The event lists hold one entry per event in order of
// arrival (the same id can appear more than once).
//
// Threads: no lock; one writing thread per object (the owner's context
// thread). The in-order case is one compare and one store and allocates
// nothing; the other cases append to the lists.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "common/dataTypes.h"

namespace zorvane::pubsub {

class SingleStreamOrderStats {
  public:
    // Largest jump in ids whose skipped ids are all listed as lost. A bigger
    // jump lists only the first skipped id and prints a message: one wild id
    // must not make the list take gigabytes.
    static constexpr UINT64 MAX_LOST_IDS_PER_GAP = 10000;

    SingleStreamOrderStats() = default;
    // Starts the stream as if prevMsgId had just arrived and not yet been
    // committed: a rollback before any commit makes prevMsgId arrive again
    // as the next id in order.
    SingleStreamOrderStats(const std::string& clientName, UINT64 prevMsgId);

    // True means no order error: the next id in order, or a repeat excused by
    // the redelivered flag (which wins) or the republished mark.
    bool checkOrder(UINT64 msgId, bool redelivered, bool republished) {
        if (msgId == prevMsgId_m + 1) [[likely]] {
            prevMsgId_m = msgId;
            return true;
        }
        return checkOrderOutOfSequence(msgId, redelivered, republished);
    }

    // Transactions keep receipts tentative: commit marks the current id as
    // final, rollback moves back to it (the lists keep what they hold), so
    // the rolled-back ids arrive again in order rather than as duplicates.
    void commit() { prevCommittedMsgId_m = prevMsgId_m; }
    void rollback() { prevMsgId_m = prevCommittedMsgId_m; }

    // Adds the findings of the same stream seen by another client or
    // session: out-of-order values are summed by id, the lists appended.
    // Ids are not merged, so a message lost by both counts twice. This
    // stream's position and name stay. Returns true.
    bool aggregate(const SingleStreamOrderStats& input);

    const std::vector<UINT64>& getLostMsgs() const { return lostMsgIds_m; }
    const std::vector<UINT64>& getDuplicateMsgs() const { return dupMsgIds_m; }
    const std::vector<UINT64>& getRedeliveredDuplicateMsgs() const {
        return redeliveredDupMsgIds_m;
    }
    const std::vector<UINT64>& getRepublishedDuplicateMsgs() const {
        return republishedDupMsgIds_m;
    }
    // Late id -> highest id already seen when it came.
    const std::map<UINT64, UINT64>& getOoOMsgs() const { return oooMsgIds_m; }
    UINT64 getPrevMsgId() const { return prevMsgId_m; }

    // Up to five lines (ooo, lost as ranges, dup, red dup, rpub dup), each
    // left out when empty.
    std::string toString() const;

  private:
    bool checkOrderOutOfSequence(UINT64 msgId, bool redelivered, bool republished);
    bool classifyRepeat(UINT64 msgId, bool redelivered, bool republished);

    std::vector<UINT64> lostMsgIds_m;
    std::vector<UINT64> dupMsgIds_m;
    std::vector<UINT64> redeliveredDupMsgIds_m;
    std::vector<UINT64> republishedDupMsgIds_m;
    std::map<UINT64, UINT64> oooMsgIds_m;
    UINT64 prevMsgId_m = 0;
    std::string clientName_m;
    UINT64 prevCommittedMsgId_m = 0;
};

}  // namespace zorvane::pubsub
