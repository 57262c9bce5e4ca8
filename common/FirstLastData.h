// First-to-last fan-out latency: every message id is expected to arrive a
// fixed number of times (the fan-out), and the sample of an id is the time
// from its first copy to its last. The ids in flight wait in a ring, oldest
// at the head; an id that has all its copies leaves the ring and its sample
// goes into a PerfStats of its own, which the report reads instead of the
// ordinary latency.
//
// Ownership: AbstractClient owns one when the fan-out is above 0.
//
// Threads: incStats runs on the one thread that delivers the client's
// messages, without a lock; the report reads getRxStats after traffic has
// stopped. The ring is allocated once, at full size, so incStats allocates
// nothing but its error texts.
#pragma once

#include <string>

#include "common/CircularBuffer.h"
#include "common/PerfStats.h"
#include "common/dataTypes.h"

namespace zorvane::pubsub {

// One id in flight: how many copies arrived, and when the first did.
class FirstLastElement {
  public:
    FirstLastElement() = default;
    FirstLastElement(UINT32 numMsgs, UINT64 timeOfFirst)
        : numMsgs_m(numMsgs), timeOfFirst_m(timeOfFirst) {}

    UINT32 getNumMsgs() const { return numMsgs_m; }
    UINT64 getTimeOfFirstMsg() const { return timeOfFirst_m; }
    void resetElement() {
        numMsgs_m = 0;
        timeOfFirst_m = 0;
    }
    void incMsgCount() { ++numMsgs_m; }
    void setTime(UINT64 timeOfFirst) { timeOfFirst_m = timeOfFirst; }

  private:
    UINT32 numMsgs_m = 0;
    UINT64 timeOfFirst_m = 0;  // clock ticks of the first copy
};

class FirstLastData {
  public:
    // Ids that can be in flight at once. A further new id pushes the oldest
    // one out, and that id's sample is lost.
    static constexpr std::size_t MAX_IDS_IN_FLIGHT = 200000;

    // An empty ring, base id 0, fan-out 0.
    FirstLastData();
    FirstLastData(const FirstLastData&) = delete;
    FirstLastData& operator=(const FirstLastData&) = delete;

    // The first five go to the statistics (PerfStats::configure, which
    // throws PubSubException for settings it refuses); fanout is the number
    // of copies expected of each id.
    void configure(const std::string& name, UINT64 secDivisor, UINT32 numBuckets,
                   UINT32 granularity, double warmupSec, INT32 fanout);

    // One received copy of msgId at timestamp (the receive clock reading).
    // An id above the next new one (a gap) or below the head (finished or
    // dropped already) costs an error line and is ignored. An id that
    // completes while it is not at the head throws PubSubException: the
    // copies then no longer arrive in an order this measurement can follow.
    void incStats(UINT64 msgId, UINT64 timestamp);

    // The first-to-last samples.
    const PerfStats& getRxStats() const { return latStats_m; }

  private:
    CircularBuffer<FirstLastElement> dataBuffer_m;
    UINT64 baseMsgId_m = 0;  // id of the head entry; entry i is id base + i
    UINT32 expNumMsg_m = 0;  // the fan-out
    PerfStats latStats_m;
};

}  // namespace zorvane::pubsub
