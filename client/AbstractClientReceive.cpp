// The receive-side state of a client and the fast path of the per-message
// analysis: which features need the slow path, the receive count, clock,
// tool data and latency of each message, the slow-subscriber delay, and
// what a later run resumes from.
#include <atomic>
#include <cstdio>
#include <exception>
#include <string>

#include "client/AbstractClient.h"
#include "client/AbstractMessage.h"
#include "common/Log.h"
#include "common/OS.h"

namespace zorvane::pubsub {

bool AbstractClient::computeWantSlowPathMsgProcess() const {
    const StatsCustomizationProperties& rx = rxStatsProps_m;
    // With a first-to-last fan-out the copies of one id arrive many times
    // over, so order checking would only report duplicates: it is off then.
    const bool noFanout = rx.getFirstLastLatencyFanout() == 0;
    return wantTimeToFirstMsg_m.load() || rx.getWantPayloadCheck() ||
           (rx.getWantOrderCheckPublisherStreamNumber() && noFanout) ||
           (rx.getWantOrderCheckTopicSequenceNumber() && noFanout) || rx.getWantOrderMemory() ||
           wantMsgReflect_m || rx.getWantPerPriorityStats() || rx.getWantPriorityStats() ||
           rx.getWantCidStats() || rx.getWantFullMsgInspection() || rx.getWantStructMsgCheck() ||
           rx.getWantCacheMsgStats() || rx.getWantDIStats() || props_m.getWantMsgDump() ||
           slowSubDelayInMillis_m >= 1 || slowSubDelayCount_m > 0;
}

void AbstractClient::processMessage(AbstractMessage* msg_p, PerfStats* perfStats_p) {
    LOG_DEBUG("CLIENT %s: processMessage called for message: %s", clientIdStr_m.c_str(),
              msg_p->getMsgId().c_str());
    // One writer (this thread): a relaxed load and store instead of a locked
    // read-modify-write.
    const UINT64 msgNum = msgsRecv_m.load(std::memory_order_relaxed) + 1;
    msgsRecv_m.store(msgNum, std::memory_order_relaxed);

    // The clock is read before anything else is done with the message, so
    // that our own work does not count as latency.
    UINT64 currTime = 0;
    bool toolDataDecoded = false;
    if (rxStatsProps_m.getWantLatency() || rxStatsProps_m.getFirstLastLatencyFanout() != 0) {
        currTime = OS::numClockCycles();
        toolDataDecoded = processMessageLatency(msg_p, currTime, perfStats_p);
    }
    if (wantSlowPathMsgProcess_m.load(std::memory_order_relaxed)) {
        processMessageSlowPath(msg_p, perfStats_p, toolDataDecoded);
    }
    if (props_m.getMsgObjTypeCheck()) {
        processMessageObjectType(msg_p, perfStats_p);
    }

    // The rate is based on the time of the last counted message. The clock
    // is read for every subRateInterval_m-th message, and whenever it was
    // read anyway.
    if (currTime != 0 || msgNum % static_cast<UINT64>(subRateInterval_m) == 0) {
        if (currTime == 0) {
            currTime = OS::numClockCycles();
        }
        perfStats_p->incStatWithTime(PerfStats::NUM_MSGS_RECV, currTime);
    } else {
        perfStats_p->incStat(PerfStats::NUM_MSGS_RECV);
    }
}

bool AbstractClient::decodeReceivedToolData(AbstractMessage* msg_p) {
    try {
        msg_p->decodeToolData(props_m.getWantUserPropToolData() ? TOOL_DATA_TYPE_USER_PROP
                                                                : TOOL_DATA_TYPE_BIN_ATTACH);
        LOG_DEBUG("CLIENT %s: ToolData \n %s", clientIdStr_m.c_str(),
                  msg_p->getToolData()->toString().c_str());
        return true;
    } catch (const std::exception& e) {
        // A damaged record costs its measurements, not the message: the
        // rest of the analysis goes on without tool data.
        msg_p->getToolData()->clear();
        const std::string text =
            "CLIENT " + clientIdStr_m + ": " + "Error decoding tool data. Cause: " + e.what();
        LOG_ERROR("%s", text.c_str());
        std::printf("\n\n%s\n\n", text.c_str());
        return false;
    }
}

bool AbstractClient::processMessageLatency(AbstractMessage* msg_p, UINT64 currTime,
                                           PerfStats* perfStats_p) {
    const bool decoded = decodeReceivedToolData(msg_p);
    const ToolData& toolData = *msg_p->getToolData();

    if (toolData.hasLatency()) {
        const UINT64 sendTime = toolData.getLatency();
        if (sendTime > currTime) {
            // The sender's clock is ahead of ours (another host, or another
            // socket's counter). Reported, and still sampled: the unsigned
            // difference lands in the last bucket, where it shows.
            LOG_ERROR(
                "CLIENT %s: Odd latency. Msg Recv:%llu Curr Time:%llu Send Time:%llu Diff:%lld",
                clientIdStr_m.c_str(),
                static_cast<unsigned long long>(msgsRecv_m.load(std::memory_order_relaxed)),
                static_cast<unsigned long long>(currTime),
                static_cast<unsigned long long>(sendTime),
                static_cast<long long>(currTime - sendTime));
        }
        const UINT64 latency = currTime - sendTime;
        perfStats_p->incLatency(currTime, latency);
        if (rxStatsProps_m.getWantLatencyPerMsg()) {
            LOG_NOTICE("CLIENT %s: Lat ID (recv ts) : %llx Lat (us) %10.2f", clientIdStr_m.c_str(),
                       static_cast<unsigned long long>(sendTime),
                       static_cast<double>(latency) /
                           static_cast<double>(perfStats_p->getSecDivisor()) * 1000000.0);
        }
        LOG_DEBUG("CLIENT %s: Send: %llu, Receive: %llu, Latency: %llu", clientIdStr_m.c_str(),
                  static_cast<unsigned long long>(sendTime),
                  static_cast<unsigned long long>(currTime),
                  static_cast<unsigned long long>(latency));
    }

    // The fan-out sample needs only the id: its time is first copy to last
    // copy on this clock, whatever the sender stamped.
    if (firstLastData_mp && toolData.hasMsgId()) {
        firstLastData_mp->incStats(toolData.getMsgId(), currTime);
    }
    return decoded;
}

void AbstractClient::setFirstSubscriptionAddTime(UINT64 timeInUs, UINT32 numSubscriptions) {
    firstSubscriptionAddTime_m = timeInUs;
    numSubscriptions_m = numSubscriptions;
    // Release order: the context thread that sees the flag also sees the
    // two values above.
    wantTimeToFirstMsg_m.store(true, std::memory_order_release);
    wantSlowPathMsgProcess_m.store(true, std::memory_order_release);
}

void AbstractClient::slowSubDelayImpl() {
    // Cut into pieces so that a disconnect or slowSubEnable(false) can end a
    // long delay: up to 500 ms it is one piece, above that pieces of 100 ms
    // (a remainder below 100 ms is not slept).
    constexpr INT32 SINGLE_PIECE_LIMIT_MS = 500;
    constexpr INT32 PIECE_MS = 100;
    INT32 pieces = 1;
    INT32 pieceMs = slowSubDelayInMillis_m;
    if (slowSubDelayInMillis_m > SINGLE_PIECE_LIMIT_MS) {
        pieces = slowSubDelayInMillis_m / PIECE_MS;
        pieceMs = PIECE_MS;
    }
    for (INT32 piece = 0; piece < pieces; ++piece) {
        if (!isChannelAdminConnected_m.load() || !slowSubDelayEnabled_m.load()) {
            break;
        }
        OS::sleepInUs(pieceMs * 1000);
    }
    if (slowSubDelayCount_m > 0) {
        --slowSubDelayCount_m;
    }
    LOG_DEBUG("CLIENT %s: Done Sleeping for slow subscriber.", clientIdStr_m.c_str());
}

void AbstractClient::resetStats() {
    msgsRecv_m.store(0);
    resetStatsImpl();
}

std::map<INT32, UINT64> AbstractClient::getSubOrderOffsets() const {
    std::map<INT32, UINT64> offsets;
    for (const auto& [streamId, order] : stats_m.getOrderData()) {
        offsets[streamId] = order.getPrevMsgId();
    }
    return offsets;
}

}  // namespace zorvane::pubsub
