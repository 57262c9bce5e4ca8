// What a client measures: a plain value record built once from the finished
// property store. Each client keeps two copies, one for what it sends and one
// for what it receives.
//
// Ownership and threads: a plain value; copies share only the immutable
// texts of the structured message descriptions. Each copy is read without
// locks by the thread that owns it. The constructor from the store reads the
// description files on the main thread; nothing else blocks.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "common/SdmProperties.h"
#include "common/dataTypes.h"

namespace zorvane::pubsub {

class CliProperties;

class StatsCustomizationProperties {
  public:
    // All flags false, all numbers 0, the rate interval 1.
    StatsCustomizationProperties();
    // Copies every field from the store; see the .cpp for the derived ones.
    // A faulty structured message description file throws PubSubException.
    explicit StatsCustomizationProperties(const CliProperties& cliProperties);

    StatsCustomizationProperties(const StatsCustomizationProperties&) = default;
    StatsCustomizationProperties& operator=(const StatsCustomizationProperties&) = default;
    StatsCustomizationProperties(StatsCustomizationProperties&&) = default;
    StatsCustomizationProperties& operator=(StatsCustomizationProperties&&) = default;
    ~StatsCustomizationProperties() = default;

    // A copy on the heap; the caller owns it.
    std::unique_ptr<StatsCustomizationProperties> clone() const;

    // Debug text: "{\n", one labelled line per field, "}".
    std::string toString() const;

    bool getWantLatency() const { return wantLatency_m; }
    void setWantLatency(bool value) { wantLatency_m = value; }
    INT32 getFirstLastLatencyFanout() const { return firstLastLatencyFanout_m; }
    void setFirstLastLatencyFanout(INT32 value) { firstLastLatencyFanout_m = value; }
    bool getWantPayloadCheck() const { return wantPayloadCheck_m; }
    void setWantPayloadCheck(bool value) { wantPayloadCheck_m = value; }
    bool getWantOrderCheckPublisherStreamNumber() const {
        return wantOrderCheckPublisherStreamNumber_m;
    }
    void setWantOrderCheckPublisherStreamNumber(bool value) {
        wantOrderCheckPublisherStreamNumber_m = value;
    }
    bool getWantOrderCheckTopicSequenceNumber() const {
        return wantOrderCheckTopicSequenceNumber_m;
    }
    void setWantOrderCheckTopicSequenceNumber(bool value) {
        wantOrderCheckTopicSequenceNumber_m = value;
    }
    bool getWantOrderMemory() const { return wantOrderMemory_m; }
    void setWantOrderMemory(bool value) { wantOrderMemory_m = value; }
    bool getWantPerPriorityStats() const { return wantPerPriorityStats_m; }
    void setWantPerPriorityStats(bool value) { wantPerPriorityStats_m = value; }
    bool getWantPriorityStats() const { return wantPriorityStats_m; }
    void setWantPriorityStats(bool value) { wantPriorityStats_m = value; }
    bool getWantCidStats() const { return wantCidStats_m; }
    void setWantCidStats(bool value) { wantCidStats_m = value; }
    bool getWantFullMsgInspection() const { return wantFullMsgInspection_m; }
    void setWantFullMsgInspection(bool value) { wantFullMsgInspection_m = value; }
    UINT32 getNumLatencyBuckets() const { return latencyNumBuckets_m; }
    void setNumLatencyBuckets(UINT32 value) { latencyNumBuckets_m = value; }
    UINT32 getLatencyGranularityFactor() const { return latencyGranularityFactor_m; }
    void setLatencyGranularityFactor(UINT32 value) { latencyGranularityFactor_m = value; }
    INT32 getRateStatsInterval() const { return thruputRateStatsInterval_m; }
    void setRateStatsInterval(INT32 value) { thruputRateStatsInterval_m = value; }
    double getLatencyWarmupInSec() const { return latencyWarmupSecs_m; }
    void setLatencyWarmupInSec(double value) { latencyWarmupSecs_m = value; }
    bool getWantUD() const { return wantUD_m; }
    void setWantUD(bool value) { wantUD_m = value; }
    bool getWantResponseCheck() const { return wantResponseCheck_m; }
    void setWantResponseCheck(bool value) { wantResponseCheck_m = value; }
    bool getWantStructMsgCheck() const { return wantStructMsgCheck_m; }
    void setWantStructMsgCheck(bool value) { wantStructMsgCheck_m = value; }
    // User-defined structured messages to check received ones against; the
    // description with id 50 + i is element i.
    const std::vector<SdmProperties>& getSdmPropsList() const { return sdmPropsList_m; }
    void setSdmPropsList(const std::vector<SdmProperties>& value) { sdmPropsList_m = value; }
    bool getWantCacheMsgStats() const { return wantCacheMsgStats_m; }
    void setWantCacheMsgStats(bool value) { wantCacheMsgStats_m = value; }
    bool getWantDIStats() const { return wantDIStats_m; }
    void setWantDIStats(bool value) { wantDIStats_m = value; }
    bool getWantLatencyPerMsg() const { return wantLatencyPerMsg_m; }
    void setWantLatencyPerMsg(bool value) { wantLatencyPerMsg_m = value; }
    bool getWantUniqueBinaryAttachments() const { return wantUniqueBinaryAttachments_m; }
    void setWantUniqueBinaryAttachments(bool value) { wantUniqueBinaryAttachments_m = value; }
    bool getWantPerMessageDetails() const { return wantPerMessageDetails_m; }
    void setWantPerMessageDetails(bool value) { wantPerMessageDetails_m = value; }
    UINT32 getPerMessageDetailsQueueDepth() const { return perMessageDetailsQueueDepth_m; }
    void setPerMessageDetailsQueueDepth(UINT32 value) { perMessageDetailsQueueDepth_m = value; }

  private:
    bool wantLatency_m;
    INT32 firstLastLatencyFanout_m;
    bool wantPayloadCheck_m;
    bool wantOrderCheckPublisherStreamNumber_m;
    bool wantOrderCheckTopicSequenceNumber_m;
    bool wantOrderMemory_m;
    bool wantPerPriorityStats_m;
    bool wantPriorityStats_m;
    bool wantCidStats_m;
    bool wantFullMsgInspection_m;
    UINT32 latencyNumBuckets_m;
    UINT32 latencyGranularityFactor_m;
    INT32 thruputRateStatsInterval_m;  // carried only; the receive path does not read it
    double latencyWarmupSecs_m;
    bool wantUD_m;
    bool wantResponseCheck_m;  // no option sets it
    bool wantStructMsgCheck_m;
    std::vector<SdmProperties> sdmPropsList_m;
    bool wantCacheMsgStats_m;
    bool wantDIStats_m;
    bool wantLatencyPerMsg_m;
    bool wantUniqueBinaryAttachments_m;
    bool wantPerMessageDetails_m;  // no option sets it
    UINT32 perMessageDetailsQueueDepth_m;
};

}  // namespace zorvane::pubsub
