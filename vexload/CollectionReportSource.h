// The report's view of the client collection: each figure the report asks
// for, forwarded to the collection that produced the run.
//
// Ownership: refers to the collection and to the alarm counter; both must
// outlive the adapter (it lives for one call of displayClientStats).
// Threads: main thread, after the traffic has stopped.
#pragma once

#include <atomic>

#include "vexload/PerfClientCollection.h"
#include "vexload/Report.h"

namespace zorvane::pubsub {

class CollectionReportSource : public ReportSource {
  public:
    CollectionReportSource(PerfClientCollection& collection, const std::atomic<INT64>& numAlarms)
        : collection_m(collection), numAlarms_m(numAlarms) {}

    double txThroughput() const override { return collection_m.getTxThroughPut(); }
    INT64 sdkStat(int sdkStatId) const override {
        return collection_m.getSdkStat(sdkStatId, ALL_CLIENTS_INDEX);
    }
    PerfStats rxStats(int clientIndex, bool wantFirstLastStats) const override {
        return collection_m.getRxStats(clientIndex, wantFirstLastStats);
    }
    std::map<INT32, UINT64> lastAckedMsgIdByPubStreamId() const override {
        return collection_m.getLastAckedMsgIdByPubStreamId(ALL_CLIENTS_INDEX);
    }
    std::vector<std::map<INT32, UINT64>> subOrderOffsets() const override {
        return collection_m.getSubOrderOffsets(ALL_CLIENTS_INDEX);
    }
    double cpuUsage() const override { return collection_m.getCpuUsage(); }
    INT64 numAlarms() const override { return numAlarms_m.load(); }

  private:
    PerfClientCollection& collection_m;
    const std::atomic<INT64>& numAlarms_m;
};

}  // namespace zorvane::pubsub
