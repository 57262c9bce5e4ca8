// Construction, destruction, connection and the figures of the collection.
// Starting and stopping traffic is in PerfClientCollectionTraffic.cpp.
#include "vexload/PerfClientCollection.h"

#include <algorithm>
#include <iomanip>
#include <memory>
#include <sstream>

#include "client/zcore/Client.h"
#include "client/zcore/Context.h"
#include "common/Log.h"
#include "common/OS.h"
#include "common/PubSubException.h"
#include "common/TimerThread.h"

namespace zorvane::pubsub {

std::vector<std::size_t> PerfClientCollection::contextPlan(const ClientProperties& props) {
    const std::size_t numClients = static_cast<std::size_t>(std::max(0, props.getNumClients()));
    std::vector<std::size_t> plan(numClients, 0);
    std::size_t context = 0;
    if (props.getNumClientsPerContext() > 0) {
        // The count is a ceiling turned into an even share: 10 clients at
        // most 3 per context make 4 contexts' worth, shared out 2 per
        // context, which gives 5 contexts of 2.
        const std::size_t perContext = static_cast<std::size_t>(props.getNumClientsPerContext());
        const std::size_t numContexts = (numClients + perContext - 1) / perContext;
        const std::size_t clientsPerContext = numContexts == 0 ? 1 : numClients / numContexts;
        for (std::size_t i = 0; i < numClients; ++i) {
            if (i != 0 && i % clientsPerContext == 0) {
                ++context;
            }
            plan[i] = context;
        }
    } else if (props.getWantContextPerClient()) {
        for (std::size_t i = 0; i < numClients; ++i) {
            plan[i] = i;
        }
    }
    return plan;
}

PerfClientCollection::PerfClientCollection(const ClientProperties& clientProps,
                                           const StatsCustomizationProperties& rxStatsProps)
    : AbstractClientCollection(clientProps, rxStatsProps) {
    try {
        const UINT64 osSpeed = OS::getCpuSpeedInHz();

        if (clientProps_m.getRandomizationSeed() == 0) {
            std::unique_ptr<UINT16[]> state(OS::randomInitState(0));
            clientProps_m.setRandomizationSeed(OS::randomGetNum(state.get(), 0, 0xfffffff));
        }
        const INT64 masterRandomSeed = clientProps_m.getRandomizationSeed();
        LOG_NOTICE("Master random seed used : %s", std::to_string(masterRandomSeed).c_str());

        const std::vector<std::size_t> plan = contextPlan(clientProps_m);
        Context* currentContext = nullptr;
        INT64 seedOffset = 0;
        for (std::size_t i = 0; i < plan.size(); ++i) {
            if (i == 0 || plan[i] != plan[i - 1]) {
                auto context = std::make_unique<Context>(clientProps_m);
                if (clientProps_m.getContextThreadAffinity() != -1) {
                    context->setAffinity(
                        static_cast<long>(clientProps_m.getContextThreadAffinity()));
                }
                // With its own thread the library runs the events itself.
                if (!clientProps_m.getWantCreateContextThread()) {
                    context->start();
                }
                currentContext = context.get();
                contextVect_m.push_back(context.release());
            }
            auto client = std::make_unique<Client>(static_cast<INT32>(i + 1), osSpeed,
                                                   clientProps_m, currentContext, rxStatsProps_m,
                                                   timerThread_mp, masterRandomSeed + seedOffset);
            ++seedOffset;
            clientVect_m.push_back(client.release());
            for (INT32 p = 0; p < clientProps_m.getNumPubsPerClient(); ++p) {
                pubThreadsVect_m.push_back(
                    new ClientPubThread(clientVect_m.back(), p, masterRandomSeed + seedOffset));
                ++seedOffset;
            }
            // Cache request and bind threads join here once they exist.
        }
    } catch (...) {
        destroyAll();
        throw;
    }
}

PerfClientCollection::~PerfClientCollection() {
    try {
        stopCacheRequesting();
    } catch (const std::exception& e) {
        LOG_ERROR("~PerfClientCollection: Error stopping publish threads. Details: %s", e.what());
    }
    try {
        stopPublishing();
    } catch (const std::exception& e) {
        LOG_ERROR("~PerfClientCollection: Error stopping publish threads. Details: %s", e.what());
    }
    try {
        disconnect();
    } catch (const std::exception& e) {
        LOG_ERROR("~PerfClientCollection: Error disconnecting clients. Details: %s", e.what());
    }
    destroyAll();
}

void PerfClientCollection::destroyAll() {
    // Threads before their clients, clients before their contexts.
    for (ClientPubThread* thread : pubThreadsVect_m) {
        delete thread;
    }
    pubThreadsVect_m.clear();
    for (AbstractClient* client : clientVect_m) {
        delete client;
    }
    clientVect_m.clear();
    for (AbstractContext* context : contextVect_m) {
        context->stop();
        delete context;
    }
    contextVect_m.clear();
}

// ---- connection ----

void PerfClientCollection::connect() {
    LOG_DEBUG("Connecting data channels");
    if (_isAdminConnected()) {
        throw PubSubException("Already connected.  Must disconnect before calling start connect.");
    }
    try {
        for (AbstractClient* client : clientVect_m) {
            client->connect();
        }
    } catch (const std::exception& e) {
        throw PubSubException("Exception while connecting clients", e);
    }
    if (!clientProps_m.getWantNonBlockingConnect()) {
        int polls = 0;
        while (getChannelState() != AbstractClient::CLIENT_STATE_CONNECTED) {
            if (polls++ >= START_STOP_POLLS) {
                throw PubSubException("Clients did not startup within 3 min.");
            }
            OS::sleepInUs(POLL_INTERVAL_IN_US);
        }
        _logCapabilitiesStr();
    }
    LOG_DEBUG("Clients connected ok");
}

void PerfClientCollection::disconnect() {
    // A context thread asleep in a slow-subscriber delay would hold the
    // disconnect up.
    _slowSubEnableAll(false);
    for (AbstractClient* client : clientVect_m) {
        client->disconnect();
    }
    _slowSubEnableAll(true);
    if (clientVect_m.empty()) {
        return;
    }
    int polls = 0;
    for (AbstractClient* client : clientVect_m) {
        while (client->getChannelState() != AbstractClient::CLIENT_STATE_DISCONNECTED) {
            OS::sleepInUs(POLL_INTERVAL_IN_US);
            if (++polls >= DISCONNECT_POLLS) {
                throw PubSubException("Clients did not disconnect in time.");
            }
        }
    }
    // Let the last session events of the disconnect drain, and make sure
    // each running context finished a whole round after the clients went
    // down: from then on its receive statistics no longer move, and what it
    // wrote is visible here, so the report reads settled figures.
    std::vector<UINT64> roundsBefore;
    for (const AbstractContext* context : contextVect_m) {
        roundsBefore.push_back(context->getRoundsDone());
    }
    OS::sleepInUs(POLL_INTERVAL_IN_US);
    for (std::size_t c = 0; c < contextVect_m.size(); ++c) {
        const AbstractContext* context = contextVect_m[c];
        for (int waits = 0; context->isStarted() && waits < DISCONNECT_POLLS &&
                            context->getRoundsDone() < roundsBefore[c] + 2;
             ++waits) {
            OS::sleepInUs(POLL_INTERVAL_IN_US / 10);
        }
    }
}

// ---- figures ----

bool PerfClientCollection::_isPublishing() const {
    return std::any_of(pubThreadsVect_m.begin(), pubThreadsVect_m.end(),
                       [](const ClientPubThread* t) { return t->isPublishing(); });
}

bool PerfClientCollection::_donePublishing() const {
    return std::all_of(pubThreadsVect_m.begin(), pubThreadsVect_m.end(),
                       [](const ClientPubThread* t) { return t->isDonePublishing(); });
}

// No cache request or bind thread exists in this build: the lists are
// empty, so nothing runs and everything is done.
bool PerfClientCollection::_isCacheRequesting() const {
    return false;
}
bool PerfClientCollection::_doneCacheRequesting() const {
    return true;
}
bool PerfClientCollection::_isBinding() const {
    return false;
}
bool PerfClientCollection::_doneBinding() const {
    return true;
}
UINT64 PerfClientCollection::_getCacheStartTime() const {
    return 0;
}
UINT64 PerfClientCollection::_getCacheEndTime() const {
    return 0;
}

UINT64 PerfClientCollection::_getPubStartTime() const {
    UINT64 start = 0;
    for (const ClientPubThread* thread : pubThreadsVect_m) {
        const UINT64 time = thread->getStartTime();
        if (time != 0 && (start == 0 || time < start)) {
            start = time;
        }
    }
    return start;
}

UINT64 PerfClientCollection::_getPubEndTime() const {
    UINT64 end = 0;
    for (const ClientPubThread* thread : pubThreadsVect_m) {
        end = std::max(end, thread->getEndTime());
    }
    return end;
}

UINT64 PerfClientCollection::_getLastPubTime() {
    UINT64 last = 0;
    for (const ClientPubThread* thread : pubThreadsVect_m) {
        last = std::max(last, thread->getLastPubTime());
    }
    return last;
}

void PerfClientCollection::_setLastPubTime(UINT64 timeInUs, int index) {
    if (index < 0 || static_cast<std::size_t>(index) >= pubThreadsVect_m.size()) {
        return;  // a client without publisher threads has no time to keep
    }
    pubThreadsVect_m[static_cast<std::size_t>(index)]->setLastPubTime(timeInUs);
}

double PerfClientCollection::getTxThroughPut() {
    const UINT64 pubStart = _getPubStartTime();
    const UINT64 cacheStart = _getCacheStartTime();
    if (pubStart == 0 && cacheStart == 0) {
        return 0.0;
    }
    const UINT64 start = pubStart == 0     ? cacheStart
                         : cacheStart == 0 ? pubStart
                                           : std::min(pubStart, cacheStart);
    const UINT64 end = std::max(_getPubEndTime(), _getCacheEndTime());
    const UINT64 until = end != 0 ? end : OS::getTimeInUs();
    if (until <= start) {
        return 0.0;
    }
    const UINT64 duration = until - start;
    return static_cast<double>(getSdkStat(AbstractClient::TX_STAT_OFFSET + 1, ALL_CLIENTS_INDEX)) *
           1e6 / static_cast<double>(duration);
}

PerfStats PerfClientCollection::getTxStats(int clientIndex) {
    if (clientIndex == ALL_CLIENTS_INDEX) {
        PerfStats aggregate(
            "aggregate", OS::getCpuSpeedInHz(), rxStatsProps_m.getNumLatencyBuckets(),
            rxStatsProps_m.getLatencyGranularityFactor(), rxStatsProps_m.getLatencyWarmupInSec());
        for (const ClientPubThread* thread : pubThreadsVect_m) {
            aggregate.aggregate(thread->getTxStats());
        }
        return aggregate;
    }
    if (clientIndex < 0 || static_cast<std::size_t>(clientIndex) >= pubThreadsVect_m.size()) {
        std::ostringstream text;
        text << "Client Index out of range. Range (0-"
             << static_cast<long>(pubThreadsVect_m.size()) - 1 << "), Index used: " << clientIndex;
        throw PubSubException(text.str());
    }
    return pubThreadsVect_m[static_cast<std::size_t>(clientIndex)]->getTxStats();
}

void PerfClientCollection::resetStats(int clientIndex) {
    cpuUsageBaseAmount_m = OS::getCpuUsageInUs();
    AbstractClientCollection::resetStats(clientIndex);
    if (clientIndex == ALL_CLIENTS_INDEX) {
        for (ClientPubThread* thread : pubThreadsVect_m) {
            thread->resetStats();
        }
    } else if (static_cast<std::size_t>(clientIndex) < pubThreadsVect_m.size()) {
        // The index is applied to each list as it stands; a list shorter
        // than the index has nothing to reset.
        pubThreadsVect_m[static_cast<std::size_t>(clientIndex)]->resetStats();
    }
}

double PerfClientCollection::getCpuUsage() {
    const UINT64 start = _getPubStartTime();
    UINT64 end = _getPubEndTime();
    if (end == 0 && start != 0) {
        end = OS::getTimeInUs();
    }
    double duration = end > start ? static_cast<double>(end - start) : 0.0;
    const PerfStats rx = getRxStats(ALL_CLIENTS_INDEX, false);
    if (rx.getStat(PerfStats::NUM_MSGS_RECV) > 0 && rx.getSecDivisor() != 0 &&
        rx.getEndTime() > rx.getStartTime()) {
        const double rxDuration = static_cast<double>(rx.getEndTime() - rx.getStartTime()) *
                                  1000000.0 / static_cast<double>(rx.getSecDivisor());
        duration = std::max(duration, rxDuration);
    }
    if (duration <= 0.0) {
        return 0.0;
    }
    const UINT64 used = OS::getCpuUsageInUs();
    return static_cast<double>(used > cpuUsageBaseAmount_m ? used - cpuUsageBaseAmount_m : 0) /
           duration;
}

std::string PerfClientCollection::toString() {
    std::ostringstream text;
    text << AbstractClientCollection::toString();
    if (clientProps_m.wantSmoothPubCalcLat()) {
        text << "Smooth Pub Calculated Latency: \n";
        for (ClientPubThread* thread : pubThreadsVect_m) {
            const PerfStats& stats = thread->getTxStats();
            text << std::left << std::setw(50) << "Client Name"
                 << " = " << thread->getClientName() << "\n"
                 << std::setw(50) << "Num Times Behind"
                 << " = " << stats.getStat(PerfStats::PSM_NUM_TIMES_BEHIND) << "\n"
                 << std::setw(50) << "Max Time Behind (us)"
                 << " = " << stats.getStatInUSec(PerfStats::PSM_MAX_CYCLES_BEHIND) << "\n";
        }
    }
    return text.str();
}

}  // namespace zorvane::pubsub
