// Construction, connection state and the parts of a client that every
// binding shares.
#include "client/AbstractClient.h"

#include <cstdio>
#include <cstdlib>
#include <memory>
#include <string>

#include "common/CommonUtils.h"
#include "common/Log.h"
#include "common/OS.h"

namespace zorvane::pubsub {

const char* AbstractClient::ClientStateTypeToString(ClientStateType state) {
    switch (state) {
        case CLIENT_STATE_DISCONNECTED:
            return "CLIENT_STATE_DISCONNECTED";
        case CLIENT_STATE_CONNECTING:
            return "CLIENT_STATE_CONNECTING";
        case CLIENT_STATE_RECONNECTING:
            return "CLIENT_STATE_RECONNECTING";
        case CLIENT_STATE_CONNECTED:
            return "CLIENT_STATE_CONNECTED";
    }
    return "UNKNOWN_CLIENT_STATE";
}

AbstractClient::AbstractClient(const ClientProperties& props, INT32 clientId, UINT64 secDivisor,
                               const StatsCustomizationProperties& statsCust,
                               TimerThread* timerThread_p)
    : props_m(props),
      subRateInterval_m(1),
      slowSubDelayInMillis_m(props.getSlowSubDelayInMillis()),
      slowSubDelayCount_m(props.getSlowSubDelayCount()),
      slowSubDelayEnabled_m(true),
      stats_m(),
      clientIdStr_m(props.generateClientIdStr(clientId)),
      clientIdInt_m(clientId),
      txStatsProps_m(statsCust),
      rxStatsProps_m(statsCust),
      timerThread_mp(timerThread_p) {
    OS::mutexInit(&lastMessageDetailsMutex_m);
    OS::mutexInit(&lastExceptionMutex_m);
    try {
        stats_m.configure(clientIdStr_m, secDivisor, rxStatsProps_m.getNumLatencyBuckets(),
                          rxStatsProps_m.getLatencyGranularityFactor(),
                          rxStatsProps_m.getLatencyWarmupInSec());

        const auto& subOrderOffsets = props_m.getSubOrderOffsets();
        if (!subOrderOffsets.empty()) {
            // Clients are numbered from 1, so client 1 takes the first entry.
            if (clientId >= 1 && subOrderOffsets.size() >= static_cast<size_t>(clientId)) {
                const auto& mine = subOrderOffsets[static_cast<size_t>(clientId - 1)];
                stats_m.configureInitialSubscriberOrderOffsets(
                    std::map<int, UINT64>(mine.begin(), mine.end()));
            } else {
                std::fprintf(stderr, "ERROR: Illegal values used for subscriber order offsets.\n");
                std::fprintf(
                    stderr, "       What was read is equivalent to %s\n",
                    CommonUtils::serializeFullArgumentForSubscriberOrderOffsets(subOrderOffsets)
                        .c_str());
                std::exit(-1);
            }
        }

        if (rxStatsProps_m.getFirstLastLatencyFanout() > 0) {
            firstLastData_mp = std::make_unique<FirstLastData>();
            firstLastData_mp->configure(
                clientIdStr_m, secDivisor, rxStatsProps_m.getNumLatencyBuckets(),
                rxStatsProps_m.getLatencyGranularityFactor(),
                rxStatsProps_m.getLatencyWarmupInSec(), rxStatsProps_m.getFirstLastLatencyFanout());
        }

        wantMsgReflect_m = props_m.getClientMode() != "sink";
        wantClientTaskThread_m = props_m.getWantClientTaskThread();
        wantSlowPathMsgProcess_m.store(computeWantSlowPathMsgProcess());
        pubWantToolData_m = publishWantToolData();

        if (rxStatsProps_m.getWantPerMessageDetails()) {
            lastMessageDetails_m = std::make_unique<LastMessageDetails>();
            lastMessagesDetailsSize_m = rxStatsProps_m.getPerMessageDetailsQueueDepth();
        }
    } catch (...) {
        // The destructor does not run for an object that never finished
        // construction.
        OS::mutexDestroy(&lastExceptionMutex_m);
        OS::mutexDestroy(&lastMessageDetailsMutex_m);
        throw;
    }
    // A vectored send collects at most this many numbers; reserving now
    // keeps the publisher's pushes free of allocation.
    sendVector_m.reserve(PUB_SEND_VECTOR_MAX_SIZE);
}

AbstractClient::~AbstractClient() {
    clearLastError();
    OS::mutexDestroy(&lastExceptionMutex_m);
    OS::mutexDestroy(&lastMessageDetailsMutex_m);
}

zorClient_returnCode_t AbstractClient::processKeptMsgs(int /*desiredSize*/, bool /*enableAcking*/) {
    return static_cast<zorClient_returnCode_t>(0);
}

void AbstractClient::connect() {
    if (isChannelAdminConnected_m.load()) {
        LOG_DEBUG("CLIENT %s: Skipping connect because channel is already admin connected",
                  clientIdStr_m.c_str());
        return;
    }
    clientState_m.store(CLIENT_STATE_CONNECTING);
    connectImpl();
    // Only now: a connectImpl that threw leaves the client admin-disconnected,
    // so the next connect() tries again instead of skipping.
    isChannelAdminConnected_m.store(true);
}

void AbstractClient::disconnect() {
    if (!isChannelAdminConnected_m.load()) {
        LOG_DEBUG("CLIENT %s: Skipping connect because channel is already admin disconnected",
                  clientIdStr_m.c_str());
        return;
    }
    // Cleared first, so that a slow-subscriber delay blocking the context
    // thread stops before the session is taken down.
    isChannelAdminConnected_m.store(false);
    disconnectImpl();
}

}  // namespace zorvane::pubsub
