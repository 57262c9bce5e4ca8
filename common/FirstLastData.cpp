#include "common/FirstLastData.h"

#include <string>

#include "common/Log.h"
#include "common/PubSubException.h"

namespace zorvane::pubsub {

FirstLastData::FirstLastData() : dataBuffer_m(MAX_IDS_IN_FLIGHT) {}

void FirstLastData::configure(const std::string& name, UINT64 secDivisor, UINT32 numBuckets,
                              UINT32 granularity, double warmupSec, INT32 fanout) {
    latStats_m.configure(name, secDivisor, numBuckets, granularity, warmupSec);
    expNumMsg_m = static_cast<UINT32>(fanout);
}

void FirstLastData::incStats(UINT64 msgId, UINT64 timestamp) {
    if (dataBuffer_m.empty()) {
        // Whatever id comes first starts the ring; it is counted below like
        // any other copy of an id in the ring.
        baseMsgId_m = msgId;
        dataBuffer_m.push_back(FirstLastElement(0, timestamp));
    }
    LOG_DEBUG("FirstLastData::incStats msgId %llu, timestamp %llu",
              static_cast<unsigned long long>(msgId), static_cast<unsigned long long>(timestamp));
    LOG_DEBUG("FirstLastData::incStats Buff Size at start %d, BaseMsgId %llu",
              static_cast<int>(dataBuffer_m.size()), static_cast<unsigned long long>(baseMsgId_m));

    const UINT64 nextNewId = baseMsgId_m + dataBuffer_m.size();
    if (msgId > nextNewId) {
        // Ids in the ring are consecutive, so a skipped id has no slot.
        LOG_ERROR(
            "Error incrementing First Last stats.  Msg Gap detected. Base Id: %llu Curr Id: %llu "
            "Data Buff Size: %d Ignoring msg.",
            static_cast<unsigned long long>(baseMsgId_m), static_cast<unsigned long long>(msgId),
            static_cast<int>(dataBuffer_m.size()));
        return;
    }
    if (msgId < baseMsgId_m) {
        LOG_ERROR(
            "Error incrementing First Last stats.  Stale msg received. Base Id: %llu Curr Id: %llu "
            "Ignoring msg.",
            static_cast<unsigned long long>(baseMsgId_m), static_cast<unsigned long long>(msgId));
        return;
    }

    UINT32 index = static_cast<UINT32>(msgId - baseMsgId_m);
    if (msgId == nextNewId) {
        const bool wasFull = dataBuffer_m.full();
        dataBuffer_m.push_back(FirstLastElement(1, timestamp));
        if (wasFull) {
            // The oldest id went to make room; its sample is lost.
            ++baseMsgId_m;
            index = static_cast<UINT32>(msgId - baseMsgId_m);
        }
    } else {
        dataBuffer_m[index].incMsgCount();
    }

    const FirstLastElement& entry = dataBuffer_m[index];
    if (entry.getNumMsgs() >= expNumMsg_m) {
        if (index != 0) {
            const std::string text =
                std::string(
                    "Error incrementing First Last stats.  Received all msgs for msgId "
                    "that is not head of queue. ") +
                "Index: " + std::to_string(index) + " Base Id: " + std::to_string(baseMsgId_m) +
                " Curr Id: " + std::to_string(msgId) + " Aborting.";
            LOG_ERROR("%s", text.c_str());
            throw PubSubException(text);
        }
        const UINT64 latency = timestamp - entry.getTimeOfFirstMsg();
        LOG_DEBUG("FirstLastData::incStats Latency %llu", static_cast<unsigned long long>(latency));
        latStats_m.incLatency(timestamp, latency);
        dataBuffer_m.pop_front();
        ++baseMsgId_m;
    }
    LOG_DEBUG("FirstLastData::incStats Buff Size at end   %d, BaseMsgId %llu",
              static_cast<int>(dataBuffer_m.size()), static_cast<unsigned long long>(baseMsgId_m));
}

}  // namespace zorvane::pubsub
