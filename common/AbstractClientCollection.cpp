// Construction, channel state, data, transactions, the message lists and
// the kernel interrupt test of the collection.
#include "common/AbstractClientCollection.h"

#include <iostream>
#include <sstream>

#include "common/DisplayUtils.h"
#include "common/Log.h"
#include "common/MessageArrayBuilder.h"
#include "common/OS.h"
#include "common/PubSubException.h"
#include "common/TimerThread.h"

namespace zorvane::pubsub {

AbstractClientCollection::AbstractClientCollection(const ClientProperties& clientProps,
                                                   const StatsCustomizationProperties& rxStatsProps)
    : clientProps_m(clientProps), rxStatsProps_m(rxStatsProps), timerThread_mp(nullptr) {
    refuseStructuredMsgWithToolData(rxStatsProps_m);
    timerThread_mp = new TimerThread();
}

AbstractClientCollection::~AbstractClientCollection() {
    if (timerThread_mp != nullptr) {
        timerThread_mp->stop();
        delete timerThread_mp;
    }
}

void AbstractClientCollection::refuseStructuredMsgWithToolData(
    const StatsCustomizationProperties& statsCust) {
    if (statsCust.getWantStructMsgCheck() &&
        (statsCust.getWantOrderCheckPublisherStreamNumber() || statsCust.getWantLatency() ||
         statsCust.getWantPayloadCheck() || statsCust.getWantOrderMemory())) {
        throw PubSubException(
            "Cannot use order check, latency or payload check with structured messages.");
    }
}

// ---- indexes ----

void AbstractClientCollection::_checkIndex(int clientIndex) const {
    if (clientIndex < 0 || static_cast<std::size_t>(clientIndex) >= clientVect_m.size()) {
        std::ostringstream text;
        text << "AbstractClientCollection: Client Index out of range. Range (0-"
             << static_cast<long>(clientVect_m.size()) - 1 << "), Index used: " << clientIndex;
        throw PubSubException(text.str());
    }
}

std::vector<AbstractClient*> AbstractClientCollection::_clientsFor(int clientIndex,
                                                                   bool allowAll) const {
    if (allowAll && clientIndex == ALL_CLIENTS_INDEX) {
        return clientVect_m;
    }
    _checkIndex(clientIndex);
    return {clientVect_m[static_cast<std::size_t>(clientIndex)]};
}

AbstractClient* AbstractClientCollection::getClient(int clientIndex) const {
    _checkIndex(clientIndex);
    return clientVect_m[static_cast<std::size_t>(clientIndex)];
}

void AbstractClientCollection::_slowSubEnableAll(bool enable) {
    for (AbstractClient* client : clientVect_m) {
        client->slowSubEnable(enable);
    }
}

// ---- connection ----

AbstractClient::ClientStateType AbstractClientCollection::getChannelState() const {
    AbstractClient::ClientStateType state = AbstractClient::CLIENT_STATE_CONNECTED;
    for (const AbstractClient* client : clientVect_m) {
        const AbstractClient::ClientStateType clientState = client->getChannelState();
        if (clientState == AbstractClient::CLIENT_STATE_DISCONNECTED) {
            // One lost client is a lost run: the wait loops end on it.
            return AbstractClient::CLIENT_STATE_DISCONNECTED;
        }
        if (clientState == AbstractClient::CLIENT_STATE_CONNECTING ||
            clientState == AbstractClient::CLIENT_STATE_RECONNECTING) {
            state = clientState;
        }
    }
    return state;
}

bool AbstractClientCollection::_isAdminConnected() const {
    for (const AbstractClient* client : clientVect_m) {
        if (client->isAdminConnected()) {
            return true;
        }
    }
    return false;
}

void AbstractClientCollection::_logCapabilitiesStr() {
    std::map<std::string, std::string> capabilities = getRtrCapabilities();
    const std::string text = "(PFG=" + capabilities["SESSION_CAPABILITY_PUB_GUARANTEED"] +
                             ", SFG=" + capabilities["SESSION_CAPABILITY_SUB_FLOW_GUARANTEED"] +
                             ", TEMP=" + capabilities["SESSION_CAPABILITY_TEMP_ENDPOINT"] +
                             ", JNDI=" + capabilities["SESSION_CAPABILITY_JNDI"] +
                             ", Z=" + capabilities["SESSION_CAPABILITY_COMPRESSION"] + ")";
    LOG_NOTICE("Router capabilities: %s", text.c_str());
}

void AbstractClientCollection::startData() {
    try {
        for (AbstractClient* client : clientVect_m) {
            client->startData();
        }
    } catch (const std::exception& e) {
        throw PubSubException("Exception while starting data on clients", e);
    }
}

void AbstractClientCollection::stopData() {
    try {
        for (AbstractClient* client : clientVect_m) {
            client->stopData();
        }
    } catch (const std::exception& e) {
        throw PubSubException("Exception while stopping data on clients", e);
    }
}

// ---- transacted sessions ----

std::string AbstractClientCollection::openTransactedSession(int clientIndex, UINT32 transactionSize,
                                                            UINT32 rollbackInterval,
                                                            UINT32 transactionIdleTime) {
    if (!_isAdminConnected()) {
        LOG_INFO("Called openTransactedSession, clients are not connected.  Returning.");
        return std::string();
    }
    return getClient(clientIndex)
        ->openTransactedSession(transactionSize, rollbackInterval, transactionIdleTime);
}

void AbstractClientCollection::closeTransactedSession(const std::string& name, int clientIndex) {
    getClient(clientIndex)->closeTransactedSession(name);
}

void AbstractClientCollection::closeAllTransactedSessions(int clientIndex) {
    for (AbstractClient* client : _clientsFor(clientIndex, true)) {
        client->closeAllTransactedSessions();
    }
}

void AbstractClientCollection::commitTransaction(const std::string& sessionName, bool wantRollback,
                                                 int clientIndex) {
    getClient(clientIndex)->commitTransaction(sessionName, wantRollback);
}

// ---- message lists ----

void AbstractClientCollection::_buildMsgArray(
    const PublishProperties& publishProps, const StatsCustomizationProperties& statsCust,
    bool publishSingleMsgFlag, std::vector<std::vector<MsgProperties>>& msgsToPublishArray) const {
    MessageArrayBuilder::buildMsgArray(publishProps, statsCust, publishSingleMsgFlag,
                                       msgsToPublishArray);
}

void AbstractClientCollection::_waitForAdPubAcks(const PublishProperties& publishProps) {
    if (!clientProps_m.getWantPubAckOrderCheck() ||
        publishProps.getMsgType() == PUBSUB_MSG_TYPE_DIRECT) {
        return;
    }
    const UINT64 lastPubTime = _getLastPubTime();
    if (lastPubTime == 0) {
        return;
    }
    const UINT64 until = lastPubTime + 1100000;
    const UINT64 now = OS::getTimeInUs();
    if (until > now) {
        OS::sleepInUs(static_cast<int>(until - now));
    }
}

void AbstractClientCollection::publishMsgOnAllClients(
    const PublishProperties& publishProps, const StatsCustomizationProperties& statsCust) {
    LOG_INFO("Publishing Message");
    if (isPublishing()) {
        throw PubSubException("Already publishing.  Must stop before calling  publish message.");
    }
    _waitForAdPubAcks(publishProps);
    std::vector<std::vector<MsgProperties>> msgs;
    _buildMsgArray(publishProps, statsCust, true, msgs);
    if (msgs.size() != 1 || msgs[0].size() != 1) {
        throw PubSubException(
            "Properties generated message list when trying to publish a single message.");
    }
    const std::vector<std::string>& xaNames = publishProps.getTransactedSessionNameList();
    if (publishProps.getXaSize() > 0 && xaNames.empty()) {
        throw PubSubException(
            "Error trying to publish using transaction size but no transacted session name(s) "
            "given.");
    }
    if (!xaNames.empty() && xaNames.size() != clientVect_m.size()) {
        throw PubSubException(
            "Error trying to publishing using transacted sessions.  Session names list not equal "
            "to num clients");
    }
    for (std::size_t i = 0; i < clientVect_m.size(); ++i) {
        AbstractClient* client = clientVect_m[i];
        MsgProperties msg = msgs[0][0];
        client->setPublishStatsProps(statsCust);
        client->setPublishProps(publishProps, 0, xaNames.empty() ? std::string() : xaNames[i]);
        client->updateToolData(&msg, 1, 0);
        // A single message is not followed by others that would carry its
        // acknowledgement along.
        msg.setAckImmediately(true);
        client->publishMsg(&msg, 0);
        _setLastPubTime(OS::getTimeInUs(), static_cast<int>(i));
    }
}

// ---- the rest ----

void AbstractClientCollection::runKernelInterruptTest(INT64 loops, int precision) {
    PerfStats stats(
        "Kernel Interrupt Latency", OS::getCpuSpeedInHz(), rxStatsProps_m.getNumLatencyBuckets(),
        rxStatsProps_m.getLatencyGranularityFactor(), rxStatsProps_m.getLatencyWarmupInSec());
    // Each gap between two readings is time the loop did not run: what the
    // kernel took for interrupts and scheduling.
    UINT64 last = OS::numClockCycles();
    for (INT64 i = 0; i < loops; ++i) {
        const UINT64 now = OS::numClockCycles();
        stats.incLatency(now, now - last);
        last = now;
    }
    std::cout << "\n"
              << DisplayUtils::latency(stats, "Tight Loop Latency: ", true,
                                       precision == -1 ? 2 : precision);
}

ClientProperties AbstractClientCollection::getClientProperties(int clientIndex) {
    if (clientIndex == ALL_CLIENTS_INDEX) {
        return clientProps_m;
    }
    if (clientIndex < 0 || static_cast<std::size_t>(clientIndex) >= clientVect_m.size()) {
        throw PubSubException(
            "Invalid client index specified in AbstractClientCollection::getClientProperties.");
    }
    return clientVect_m[static_cast<std::size_t>(clientIndex)]->getClientProps();
}

std::string AbstractClientCollection::toString() {
    std::string text;
    for (AbstractClient* client : clientVect_m) {
        text += client->toString();
    }
    return text + "\n";
}

}  // namespace zorvane::pubsub
