// The receive-side state of a client that lives outside the per-message
// analysis: which features need the slow path, the slow-subscriber delay,
// the time to the first message, and what a later run resumes from.
#include "client/AbstractClient.h"
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
