// Dealing the command line's subscription lists out to the clients, once
// after connecting, and taking them back before disconnecting.
#include <iostream>

#include "common/AbstractClientCollection.h"
#include "common/CliProperties.h"
#include "common/EpConfigProperties.h"
#include "common/FlowSettings.h"
#include "common/Log.h"
#include "common/OS.h"
#include "common/PubSubException.h"

namespace zorvane::pubsub {

namespace {

using P = CliProperties;
using StringLists = std::vector<std::vector<std::string>>;

// Client i takes list i modulo the number of lists; an empty outer list
// gives nothing.
const std::vector<std::string>& roundRobin(const StringLists& lists, std::size_t clientIndex) {
    static const std::vector<std::string> none;
    return lists.empty() ? none : lists[clientIndex % lists.size()];
}

// With fewer topics than endpoints every endpoint still gets one: endpoint
// e takes topic e modulo the number of topics. More topics go through as
// they are.
std::vector<std::string> pairTopicsWithEndpoints(const std::vector<std::string>& topics,
                                                 const std::vector<std::string>& endpoints) {
    if (topics.empty() || topics.size() >= endpoints.size()) {
        return topics;
    }
    std::vector<std::string> paired;
    paired.reserve(endpoints.size());
    for (std::size_t e = 0; e < endpoints.size(); ++e) {
        paired.push_back(topics[e % topics.size()]);
    }
    return paired;
}

// Settlement lists are not given on the command line for these flows.
const std::vector<std::string> NO_SETTLEMENTS_s;

}  // namespace

void AbstractClientCollection::addSubscriptionsFromCliProps(
    const CliProperties& cliProperties, PublishProperties& publishProperties,
    std::vector<std::string> transactedSessionNames) {
    if (!cliProperties.getBooleanProperty(P::WANT_ADD_SUBSCRIPTIONS)) {
        LOG_DEBUG("AbstractClientCollection: %s", "No subscriptions to add.");
        return;
    }
    const StringLists clientTopics = cliProperties.getTopics();
    const StringLists clientDTEs = cliProperties.getDTEs();
    const StringLists clientQueues = cliProperties.getQueues();
    const StringLists clientSelectors = cliProperties.getSelectors();
    const FlowSettings flow(cliProperties);
    const bool wantTransactions = cliProperties.getIntegerProperty(P::AD_TRANSACTION_SIZE) > 0;
    const bool wantProvisioned = cliProperties.getBooleanProperty(P::WANT_PROVISIONED_ENDPOINT);
    const INT32 numTempTopics = cliProperties.getIntegerProperty(P::NUM_TEMP_TOPIC_ENDPOINTS);
    const INT32 numTempQueues = cliProperties.getIntegerProperty(P::NUM_TEMP_QUEUE_ENDPOINTS);
    const bool wantSubscriptionRateStats =
        cliProperties.getBooleanProperty(P::WANT_SUBSCRIPTION_RATE_STATS);
    const INT32 numClients = cliProperties.getIntegerProperty(P::NUM_CLIENTS);

    // Carried from client to client when a branch does not set it.
    UINT32 numSubscriptions = 0;
    for (INT32 i = 0; i < numClients; ++i) {
        const std::size_t ci = static_cast<std::size_t>(i);
        const UINT64 startTime = OS::getTimeInUs();
        const std::string transactedSessionName =
            wantTransactions && ci < transactedSessionNames.size() ? transactedSessionNames[ci]
                                                                   : std::string();
        const std::vector<std::string>& selectors = roundRobin(clientSelectors, ci);
        try {
            if (numTempTopics > 0) {
                tempEndpointUpdate(
                    EpConfigProperties::CreateForTempEndpointUpdate(
                        true, numTempTopics, roundRobin(clientTopics, ci), selectors,
                        flow.maxMsgSize, flow.quota, flow.permission, flow.respectTTL, flow.noLocal,
                        flow.wantActiveFlowInd, flow.wantCutThroughPersistence,
                        flow.discardNotifySender, flow.maxMsgRedelivery, transactedSessionName,
                        flow.wantReplay, flow.replayDate, flow.replayMsgId,
                        flow.flowReconnectAttempts, flow.flowReconnectIntervalInMsecs,
                        NO_SETTLEMENTS_s, NO_SETTLEMENTS_s),
                    i);
            } else if (numTempQueues > 0) {
                const std::vector<std::string> names = tempEndpointUpdate(
                    EpConfigProperties::CreateForTempEndpointUpdate(
                        false, numTempQueues, {}, selectors, flow.maxMsgSize, flow.quota,
                        flow.permission, flow.respectTTL, flow.noLocal, flow.wantActiveFlowInd,
                        flow.wantCutThroughPersistence, flow.discardNotifySender,
                        flow.maxMsgRedelivery, transactedSessionName, flow.wantReplay,
                        flow.replayDate, flow.replayMsgId, flow.flowReconnectAttempts,
                        flow.flowReconnectIntervalInMsecs, NO_SETTLEMENTS_s, NO_SETTLEMENTS_s),
                    i);
                if (clientTopics.empty()) {
                    // Publishers send to the temporary queues; with several
                    // clients the last one's stand.
                    publishProperties.setQueuesList(names);
                } else {
                    for (const std::string& name : names) {
                        mapTopics(name, roundRobin(clientTopics, ci), true, i);
                    }
                }
            } else if (!clientQueues.empty()) {
                const std::vector<std::string>& queues = roundRobin(clientQueues, ci);
                if (wantProvisioned) {
                    endpointProvisioning(flow.provisioning(queues, false, true), i);
                }
                queueUpdate(flow.queueBind(queues, selectors, transactedSessionName), i);
                numSubscriptions = static_cast<UINT32>(queues.size());
                if (!clientTopics.empty()) {
                    for (const std::string& name : queues) {
                        mapTopics(name, roundRobin(clientTopics, ci), true, i);
                    }
                }
            } else if (clientTopics.empty()) {
                LOG_ERROR(
                    "Error in subscriptions configuration.  Unexpected parameter setup.  Skipping "
                    "subscriptions provisioning.");
            } else if (clientDTEs.empty()) {
                const std::vector<std::string>& topics = roundRobin(clientTopics, ci);
                if (cliProperties.getBooleanProperty(P::CACHE_WANT_REQUESTS_ON_SUBSCRIBE)) {
                    cacheRequest(topics, true,
                                 cliProperties.getStringProperty(P::CACHE_LIVE_DATA_ACTION), true,
                                 -1, -1, i);
                } else {
                    subscriptionUpdate(topics, true,
                                       cliProperties.getStringProperty(P::SUBSCRIPTION_CLIENT_NAME),
                                       SUBSCRIPTION_TYPE_TOPIC, i, false);
                    numSubscriptions = static_cast<UINT32>(topics.size());
                }
            } else {
                const std::vector<std::string>& dtes = roundRobin(clientDTEs, ci);
                if (wantProvisioned) {
                    endpointProvisioning(flow.provisioning(dtes, true, true), i);
                }
                topicUpdate(flow.topicEndpointBind(
                                dtes, pairTopicsWithEndpoints(roundRobin(clientTopics, ci), dtes),
                                selectors, transactedSessionName),
                            i);
                numSubscriptions = static_cast<UINT32>(dtes.size());
            }
        } catch (const PubSubErrorResponseException& e) {
            // The broker refused this client's set-up: the others may
            // still be served. Other failures leave the call.
            const std::string text =
                std::string("Error received while updating subscriptions.") + e.what() + "\n";
            LOG_ERROR("AbstractClientCollection: %s", text.c_str());
        }

        const UINT64 stopTime = OS::getTimeInUs();
        if (wantSubscriptionRateStats) {
            const UINT64 timeDiff = stopTime - startTime;
            const double subRate = timeDiff == 0 ? 0.0
                                                 : static_cast<double>(numSubscriptions) * 1e6 /
                                                       static_cast<double>(timeDiff);
            std::cout << getRxStats(i, false).getName() << ": Added " << numSubscriptions
                      << " subscriptions, time = " << timeDiff << " us, rate = " << subRate
                      << " subscriptions/sec" << std::endl;
            if (numClients == 1) {
                setFirstSubscriptionAddTime(startTime, numSubscriptions, i);
            }
        }
    }
}

void AbstractClientCollection::removeSubscriptionsFromCliProps(
    const CliProperties& cliProperties, std::vector<std::string> transactedSessionNames) {
    if (!cliProperties.getBooleanProperty(P::WANT_REMOVE_SUBSCRIBER) ||
        !cliProperties.getBooleanProperty(P::WANT_ADD_SUBSCRIPTIONS)) {
        LOG_DEBUG("AbstractClientCollection: %s", "No subscriptions to remove.");
        return;
    }
    const StringLists clientTopics = cliProperties.getTopics();
    const StringLists clientDTEs = cliProperties.getDTEs();
    const StringLists clientQueues = cliProperties.getQueues();
    const std::string clientName = cliProperties.getStringProperty(P::SUBSCRIPTION_CLIENT_NAME);
    const bool wantCutThroughPersistence =
        cliProperties.getBooleanProperty(P::WANT_CUT_THROUGH_PERSISTENCE);
    const bool wantTransactions = cliProperties.getIntegerProperty(P::AD_TRANSACTION_SIZE) > 0;
    const bool wantProvisioned = cliProperties.getBooleanProperty(P::WANT_PROVISIONED_ENDPOINT);
    const INT32 numTempEndpoints = cliProperties.getIntegerProperty(P::NUM_TEMP_TOPIC_ENDPOINTS) +
                                   cliProperties.getIntegerProperty(P::NUM_TEMP_QUEUE_ENDPOINTS);
    const INT32 numClients = cliProperties.getIntegerProperty(P::NUM_CLIENTS);
    const FlowSettings flow(cliProperties);

    for (INT32 i = 0; i < numClients; ++i) {
        const std::size_t ci = static_cast<std::size_t>(i);
        const std::string transactedSessionName =
            wantTransactions && ci < transactedSessionNames.size() ? transactedSessionNames[ci]
                                                                   : std::string();
        try {
            if (!clientTopics.empty() && clientDTEs.empty() && clientQueues.empty() &&
                clientName.empty() && numTempEndpoints <= 0) {
                subscriptionUpdate(roundRobin(clientTopics, ci), false, clientName,
                                   SUBSCRIPTION_TYPE_TOPIC, i, false);
            } else if (!clientQueues.empty()) {
                const std::vector<std::string>& queues = roundRobin(clientQueues, ci);
                if (!clientTopics.empty()) {
                    for (const std::string& name : queues) {
                        mapTopics(name, roundRobin(clientTopics, ci), false, i);
                    }
                }
                queueUpdate(EpConfigProperties::CreateForQueueUpdate(
                                queues, {}, false, false, false, wantCutThroughPersistence,
                                transactedSessionName, false, "", "", -1, -1, NO_SETTLEMENTS_s,
                                NO_SETTLEMENTS_s),
                            i);
                // A queue list shared by several clients goes away with the
                // last client that holds it, after the others have unbound.
                if (wantProvisioned && i >= numClients - static_cast<INT32>(clientQueues.size())) {
                    endpointProvisioning(flow.provisioning(queues, false, false), i);
                }
            } else if (!clientDTEs.empty()) {
                const std::vector<std::string>& dtes = roundRobin(clientDTEs, ci);
                topicUpdate(
                    EpConfigProperties::CreateForTopicUpdate(
                        dtes, pairTopicsWithEndpoints(roundRobin(clientTopics, ci), dtes), {},
                        false, true, false, false, wantCutThroughPersistence, transactedSessionName,
                        false, "", "", -1, -1, NO_SETTLEMENTS_s, NO_SETTLEMENTS_s),
                    i);
                if (wantProvisioned) {
                    endpointProvisioning(flow.provisioning(dtes, true, false), i);
                }
            } else if (!clientName.empty()) {
                subscriptionUpdate(roundRobin(clientTopics, ci), false, clientName,
                                   SUBSCRIPTION_TYPE_TOPIC, i, false);
            }
            if (numTempEndpoints > 0) {
                unbindAllTempEndpoints(i);
            }
        } catch (const std::exception& e) {
            // One client's trouble must not leave the others' subscriptions
            // behind on the broker.
            LOG_ERROR("Error received while removing subscriptions. %s", e.what());
            LOG_ERROR("Another kind of exception than PubSubErrorResponseException was thrown.");
        }
    }
}

}  // namespace zorvane::pubsub
