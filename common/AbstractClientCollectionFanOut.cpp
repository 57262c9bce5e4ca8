// The operations that go to every client or to one: subscriptions and
// endpoints under the slow-subscriber guard, cache requests, browsing,
// figures, names and errors.
#include "common/AbstractClientCollection.h"

#include "common/EpConfigProperties.h"
#include "common/OS.h"
#include "common/PubSubException.h"
#include "common/QueueBrowserProperties.h"

namespace zorvane::pubsub {

namespace {

// Switches the slow-subscriber delay of every client off for the life of
// the guard, and on again however the guarded operation ends.
class SlowSubGuard {
  public:
    explicit SlowSubGuard(const std::vector<AbstractClient*>& clients) : clients_m(clients) {
        for (AbstractClient* client : clients_m) {
            client->slowSubEnable(false);
        }
    }
    ~SlowSubGuard() {
        for (AbstractClient* client : clients_m) {
            client->slowSubEnable(true);
        }
    }
    SlowSubGuard(const SlowSubGuard&) = delete;
    SlowSubGuard& operator=(const SlowSubGuard&) = delete;

  private:
    const std::vector<AbstractClient*>& clients_m;
};

}  // namespace

// ---- subscriptions and endpoints ----

void AbstractClientCollection::subscriptionUpdate(const std::vector<std::string>& topics,
                                                  bool isAdding, const std::string& clientName,
                                                  SubscriptionType subscriptionType,
                                                  int clientIndex, bool distributeTopics) {
    const std::vector<AbstractClient*> clients = _clientsFor(clientIndex, true);
    SlowSubGuard guard(clientVect_m);
    if (clientIndex == ALL_CLIENTS_INDEX && distributeTopics && !topics.empty()) {
        std::vector<std::vector<std::string>> dealt(clients.size());
        for (std::size_t t = 0; t < topics.size(); ++t) {
            dealt[t % clients.size()].push_back(topics[t]);
        }
        for (std::size_t i = 0; i < clients.size(); ++i) {
            clients[i]->subscriptionUpdate(dealt[i], isAdding, clientName, subscriptionType);
        }
        return;
    }
    for (AbstractClient* client : clients) {
        client->subscriptionUpdate(topics, isAdding, clientName, subscriptionType);
    }
}

void AbstractClientCollection::topicUpdate(const EpConfigProperties& epProps, int clientIndex) {
    const std::vector<AbstractClient*> clients = _clientsFor(clientIndex, true);
    SlowSubGuard guard(clientVect_m);
    for (AbstractClient* client : clients) {
        client->topicUpdate(epProps);
    }
}

void AbstractClientCollection::queueUpdate(const EpConfigProperties& epProps, int clientIndex) {
    const std::vector<AbstractClient*> clients = _clientsFor(clientIndex, true);
    SlowSubGuard guard(clientVect_m);
    for (AbstractClient* client : clients) {
        client->queueUpdate(epProps);
    }
}

std::vector<std::string> AbstractClientCollection::tempEndpointUpdate(
    const EpConfigProperties& epProps, int clientIndex) {
    const std::vector<AbstractClient*> clients = _clientsFor(clientIndex, true);
    SlowSubGuard guard(clientVect_m);
    std::vector<std::string> names;
    for (AbstractClient* client : clients) {
        for (std::string& name : client->tempEndpointUpdate(epProps)) {
            names.push_back(std::move(name));
        }
    }
    return names;
}

void AbstractClientCollection::unbindAllTempEndpoints(int clientIndex) {
    const std::vector<AbstractClient*> clients = _clientsFor(clientIndex, true);
    SlowSubGuard guard(clientVect_m);
    for (AbstractClient* client : clients) {
        client->unbindAllTempEndpoints();
    }
}

FlowStatus AbstractClientCollection::getFlowStatus(const std::string& name,
                                                   EndpointType endpointType, int clientIndex) {
    if (clientIndex == ALL_CLIENTS_INDEX) {
        throw PubSubException(
            "AbstractClientCollection: getFlowState only avaialble on specific client index.  Not "
            "ALL_CLIENTS_INDEX.");
    }
    return getClient(clientIndex)->getFlowStatus(name, endpointType);
}

void AbstractClientCollection::clearSubscriptionMemory() {
    SlowSubGuard guard(clientVect_m);
    for (AbstractClient* client : clientVect_m) {
        client->clearSubscriptionMemory();
    }
}

void AbstractClientCollection::endpointProvisioning(const EpConfigProperties& epProps,
                                                    int clientIndex) {
    const std::vector<AbstractClient*> clients = _clientsFor(clientIndex, true);
    SlowSubGuard guard(clientVect_m);
    for (AbstractClient* client : clients) {
        client->endpointProvisioning(epProps);
    }
}

void AbstractClientCollection::mapTopics(const std::string& endpointName,
                                         const std::vector<std::string>& topics, bool isAdding,
                                         int clientIndex) {
    const std::vector<AbstractClient*> clients = _clientsFor(clientIndex, true);
    SlowSubGuard guard(clientVect_m);
    for (AbstractClient* client : clients) {
        client->mapTopics(endpointName, topics, isAdding);
    }
}

// ---- cache requests, browsing, requests ----

void AbstractClientCollection::cacheRequest(const std::vector<std::string>& topics, bool subscribe,
                                            const std::string& liveDataAction, bool waitForConfirm,
                                            INT64 minSeq, INT64 maxSeq, int clientIndex) {
    for (AbstractClient* client : _clientsFor(clientIndex, true)) {
        client->cacheRequest(topics, subscribe, liveDataAction, waitForConfirm, minSeq, maxSeq);
    }
}

void AbstractClientCollection::cancelCacheRequests(int clientIndex) {
    for (AbstractClient* client : _clientsFor(clientIndex, true)) {
        client->cancelCacheRequests();
    }
}

void AbstractClientCollection::startQueueBrowsing(const QueueBrowserProperties& props) {
    for (AbstractClient* client : clientVect_m) {
        client->startQueueBrowsing(props);
    }
}

void AbstractClientCollection::stopQueueBrowsing() {
    for (AbstractClient* client : clientVect_m) {
        client->stopQueueBrowsing();
    }
}

bool AbstractClientCollection::isQueueBrowsing() {
    for (AbstractClient* client : clientVect_m) {
        if (client->isQueueBrowsing()) {
            return true;
        }
    }
    return false;
}

std::string AbstractClientCollection::requestReply(const std::string& topic,
                                                   const std::string& content, int clientIndex) {
    return getClient(clientIndex)->requestReply(topic, content);
}

// ---- figures ----

PerfStats AbstractClientCollection::getRxStats(int clientIndex, bool wantFirstLastStats) {
    if (clientIndex != ALL_CLIENTS_INDEX) {
        return getClient(clientIndex)->getRxStats(wantFirstLastStats);
    }
    PerfStats aggregate("aggregate", OS::getCpuSpeedInHz(), rxStatsProps_m.getNumLatencyBuckets(),
                        rxStatsProps_m.getLatencyGranularityFactor(),
                        rxStatsProps_m.getLatencyWarmupInSec());
    for (AbstractClient* client : clientVect_m) {
        aggregate.aggregate(client->getRxStats(wantFirstLastStats));
    }
    return aggregate;
}

void AbstractClientCollection::resetStats(int clientIndex) {
    for (AbstractClient* client : _clientsFor(clientIndex, true)) {
        client->resetStats();
    }
}

INT64 AbstractClientCollection::getSdkStat(int statName, int clientIndex) {
    INT64 sum = 0;
    for (AbstractClient* client : _clientsFor(clientIndex, true)) {
        sum += client->getSdkStat(statName);
    }
    return sum;
}

std::vector<UINT64> AbstractClientCollection::getLastAckedMsgId(int clientIndex) {
    std::vector<UINT64> ids;
    for (AbstractClient* client : _clientsFor(clientIndex, true)) {
        ids.push_back(client->getLastAckedMsgId());
    }
    return ids;
}

std::map<INT32, UINT64> AbstractClientCollection::getLastAckedMsgIdByPubStreamId(int clientIndex) {
    std::map<INT32, UINT64> ids;
    for (AbstractClient* client : _clientsFor(clientIndex, true)) {
        ids[client->getPubStreamIdInPublishProperties()] = client->getLastAckedMsgId();
    }
    return ids;
}

std::vector<std::map<INT32, UINT64>> AbstractClientCollection::getSubOrderOffsets(int clientIndex) {
    std::vector<std::map<INT32, UINT64>> offsets;
    for (AbstractClient* client : _clientsFor(clientIndex, true)) {
        offsets.push_back(client->getSubOrderOffsets());
    }
    return offsets;
}

// ---- naming, errors and the rest ----

std::vector<std::string> AbstractClientCollection::getClientName(int clientIndex) {
    std::vector<std::string> names;
    for (AbstractClient* client : _clientsFor(clientIndex, true)) {
        names.push_back(client->getClientName());
    }
    return names;
}

void AbstractClientCollection::setClientName(int clientIndex, const std::string& name) {
    getClient(clientIndex)->setClientName(name);
}

void AbstractClientCollection::updateAuthOnReconnect(int clientIndex, const std::string& user,
                                                     const std::string& password) {
    for (AbstractClient* client : _clientsFor(clientIndex, true)) {
        client->updateAuthOnReconnect(user, password);
    }
}

void AbstractClientCollection::sigalrmAction() {
    // Signal context: no allocation here, only the walk over the list.
    for (AbstractClient* client : clientVect_m) {
        client->sigalrmAction();
    }
}

void AbstractClientCollection::setFirstSubscriptionAddTime(UINT64 timeInUs, UINT32 numSubscriptions,
                                                           int clientIndex) {
    getClient(clientIndex)->setFirstSubscriptionAddTime(timeInUs, numSubscriptions);
}

void AbstractClientCollection::clearLastError(int clientIndex) {
    for (AbstractClient* client : _clientsFor(clientIndex, true)) {
        client->clearLastError();
    }
}

std::unique_ptr<PubSubErrorResponseException> AbstractClientCollection::getLastError(
    int clientIndex) {
    if (clientIndex == ALL_CLIENTS_INDEX && clientVect_m.size() > 1) {
        throw PubSubException(
            "AbstractClientCollection: Cannot request last error on all clients if there is more "
            "than 1 client in object");
    }
    return getClient(clientIndex == ALL_CLIENTS_INDEX ? 0 : clientIndex)->getLastError();
}

std::unique_ptr<LastMessageDetails> AbstractClientCollection::getLastMessageDetails(
    int clientIndex) {
    if (clientIndex == ALL_CLIENTS_INDEX && clientVect_m.size() > 1) {
        throw PubSubException(
            "AbstractClientCollection: Cannot request last message details on all clients if "
            "there is more than 1 client in object");
    }
    return getClient(clientIndex == ALL_CLIENTS_INDEX ? 0 : clientIndex)->getLastMessageDetails();
}

std::vector<LastMessageDetails> AbstractClientCollection::getLastMessagesDetails(int clientIndex,
                                                                                 int count) {
    if (clientIndex == ALL_CLIENTS_INDEX && clientVect_m.size() > 1) {
        throw PubSubException(
            "AbstractClientCollection: Cannot request last messages details on all clients if "
            "there is more than 1 client in object");
    }
    return getClient(clientIndex == ALL_CLIENTS_INDEX ? 0 : clientIndex)
        ->getLastMessagesDetails(count);
}

std::map<std::string, std::string> AbstractClientCollection::getRtrCapabilities() {
    if (clientVect_m.empty()) {
        return {};
    }
    return clientVect_m.front()->getRtrCapabilities();
}

}  // namespace zorvane::pubsub
