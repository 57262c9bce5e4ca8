#include "vexload/Driver.h"

#include <signal.h>
#include <unistd.h>

#include <cstdio>
#include <iostream>
#include <sstream>

#include "client/zcore/LibraryVersion.h"
#include "common/CacheProperties.h"
#include "common/CliProperties.h"
#include "common/ClientProperties.h"
#include "common/DisplayUtils.h"
#include "common/EpConfigProperties.h"
#include "common/FlowSettings.h"
#include "common/OS.h"
#include "common/PubSubException.h"
#include "common/PublishProperties.h"
#include "common/QueueBrowserProperties.h"
#include "common/StatsCustomizationProperties.h"
#include "common/genReleaseVersion.h"
#include "vexload/CollectionReportSource.h"
#include "vexload/PerfClientCollection.h"

namespace zorvane::pubsub {

std::atomic<bool> shutdownFlag_s{false};
std::atomic<INT64> numAlarms_s{0};
std::atomic<bool> wantSessionAction_s{false};
std::atomic<PerfClientCollection*> clients_sp{nullptr};

static_assert(std::atomic<bool>::is_always_lock_free && std::atomic<INT64>::is_always_lock_free &&
                  std::atomic<PerfClientCollection*>::is_always_lock_free,
              "the signal handler may only touch lock-free state");

std::string getVersionStr() {
    const std::string rule(50, '=');
    GenReleaseVersion* release_p = GenReleaseVersion::onlyInstance();
    LibraryVersion library = LibraryVersion::get();
    std::ostringstream text;
    text << "\n"
         << rule << "\n"
         << "vexload Version Information: \n"
         << "\tVersion      : " << release_p->getVersion() << "\n"
         << "\tBuild Date   : " << release_p->getDateTime() << "\n"
         << "\n\n"
         << rule << "\n"
         << "Dependency Build Information:\n"
         << "\n"
         << "zorClient Version Information:\n"
         << "\tVersion      : " << library.version << "\n"
         << "\tBuild Date   : " << library.dateTime << "\n"
         << "\tBuild Variant: " << library.variant << "\n"
         << "\n";
    return text.str();
}

extern "C" void sigHdlr(int sig) {
    if (sig == SIGINT) {
        signal(SIGINT, SIG_DFL);
        shutdownFlag_s.store(true);
    } else if (sig == SIGALRM) {
        signal(SIGALRM, sigHdlr);
        numAlarms_s.fetch_add(1);
        // The pointer is published once, after the collection is complete,
        // and taken back before it is deleted, so a handler that loads it
        // finds either nothing or a whole collection whose client list no
        // longer changes. What remains is an alarm caught on another thread
        // at the very moment main takes the pointer back: the deletion
        // first stops publishing and disconnects, which takes far longer
        // than one pass over the clients, before any client is freed.
        PerfClientCollection* collection_p = clients_sp.load();
        if (wantSessionAction_s.load() && collection_p != nullptr) {
            collection_p->sigalrmAction();
        }
    } else {
        // Only async-signal-safe calls here: format the number by hand.
        char text[48] = "Unexpected signal: ";
        std::size_t length = 19;
        char digits[12];
        int count = 0;
        unsigned value = static_cast<unsigned>(sig);
        do {
            digits[count++] = static_cast<char>('0' + value % 10);
            value /= 10;
        } while (value != 0 && count < 11);
        while (count > 0) {
            text[length++] = digits[--count];
        }
        text[length++] = '\n';
        ssize_t written = write(STDOUT_FILENO, text, length);
        (void)written;
        signal(sig, SIG_DFL);
    }
}

void deleteClientCollection() {
    delete clients_sp.exchange(nullptr);
}

namespace {

using P = CliProperties;

// Opens the transacted sessions: one per client for receiving, then
// numPubsPerSession per client, client by client, for the publishers.
// Returns the receivers' names; the publishers' go into publishProps.
std::vector<std::string> openTransactedSessions(PerfClientCollection& clients,
                                                const CliProperties& cli,
                                                const ClientProperties& clientProps,
                                                PublishProperties& publishProps) {
    std::vector<std::string> clientTransactedSessionNames;
    const UINT32 size = static_cast<UINT32>(cli.getIntegerProperty(P::AD_TRANSACTION_SIZE));
    const UINT32 rollbackInterval =
        static_cast<UINT32>(cli.getIntegerProperty(P::AD_TRANSACTION_ROLLBACK_INTERVAL));
    const UINT32 idleTime =
        static_cast<UINT32>(cli.getIntegerProperty(P::AD_TRANSACTION_IDLE_TIME));
    const INT32 numClients = clientProps.getNumClients();
    const INT32 numPubsPerSession = cli.getIntegerProperty(P::NUM_PUBS_PER_SESSION);
    for (INT32 i = 0; i < numClients; ++i) {
        clientTransactedSessionNames.push_back(
            clients.openTransactedSession(i, size, rollbackInterval, idleTime));
    }
    std::vector<std::string> pubTransactedSessionNames;
    for (INT32 i = 0; i < numClients; ++i) {
        for (INT32 j = 0; j < numPubsPerSession; ++j) {
            pubTransactedSessionNames.push_back(
                clients.openTransactedSession(i, size, rollbackInterval, idleTime));
        }
    }
    publishProps.setTransactedSessionNameList(pubTransactedSessionNames);
    return clientTransactedSessionNames;
}

void startQueueBrowsing(PerfClientCollection& clients, const CliProperties& cli) {
    const std::vector<std::vector<std::string>> clientQueues = cli.getQueues();
    const std::vector<std::vector<std::string>> clientSelectors = cli.getSelectors();
    if (clientQueues.empty()) {
        throw PubSubException(
            "Error setting up queue browsing.  Subscriptions not of type queues.");
    }
    QueueBrowserProperties browseProps;
    browseProps.setQueuesList(clientQueues[0]);
    browseProps.setDeleteFrequency(cli.getIntegerProperty(P::QB_DELETE_FREQUENCY));
    browseProps.setDeleteBufSize(cli.getIntegerProperty(P::QB_MSG_BUFFER_SIZE));
    browseProps.setWantCutThroughPersistence(
        cli.getBooleanProperty(P::WANT_CUT_THROUGH_PERSISTENCE));
    browseProps.setFlowReconnectAttempts(cli.getIntegerProperty(P::AD_FLOW_RECONNECT_ATTEMPTS));
    browseProps.setFlowReconnectIntervalInMsecs(
        cli.getIntegerProperty(P::AD_FLOW_RECONNECT_INTERVAL_IN_MSECS));
    if (!clientSelectors.empty() && !clientSelectors[0].empty()) {
        browseProps.setSelector(clientSelectors[0][0]);
    }
    clients.startQueueBrowsing(browseProps);
}

void startBinding(PerfClientCollection& clients, const CliProperties& cli) {
    const std::vector<std::vector<std::string>> clientTopics = cli.getTopics();
    const std::vector<std::vector<std::string>> clientDTEs = cli.getDTEs();
    const std::vector<std::vector<std::string>> clientQueues = cli.getQueues();
    const std::vector<std::vector<std::string>> clientSelectors = cli.getSelectors();
    const std::vector<std::string> selectors =
        clientSelectors.empty() ? std::vector<std::string>() : clientSelectors[0];
    const FlowSettings flow(cli);
    EpConfigProperties props;
    if (!clientQueues.empty()) {
        props = flow.queueBind(clientQueues[0], selectors, "");
    } else if (!clientTopics.empty() && !clientDTEs.empty()) {
        props = flow.topicEndpointBind(clientDTEs[0], clientTopics[0], selectors, "");
        props.setIsTopic(true);
    } else {
        return;
    }
    props.setBindRate(cli.getIntegerProperty(P::BIND_RATE));
    props.setWantNonBlocking(cli.getBooleanProperty(P::WANT_NON_BLOCKING_BIND));
    props.setFlowFlapCount(cli.getIntegerProperty(P::FLOW_FLAP_COUNT));
    clients.startBinding(props);
}

}  // namespace

void runTraffic(const CliProperties& cliProperties) {
    // 1, 2
    ClientProperties clientProps(cliProperties);
    PublishProperties publishProps(cliProperties);
    StatsCustomizationProperties statsCust(cliProperties);

    std::cout << DisplayUtils::clientNameDetails(clientProps) << std::endl;

    // 3: published at once, so that an alarm from here on finds it.
    clients_sp.store(new PerfClientCollection(clientProps, statsCust));
    PerfClientCollection& clients = *clients_sp.load();

    // 4
    const INT64 kernelLoops = cliProperties.getInt64Property(P::WANT_KERNEL_INTERRUPTS_DEBUG);
    if (kernelLoops > 0) {
        clients.runKernelInterruptTest(kernelLoops,
                                       cliProperties.getIntegerProperty(P::LATENCY_PRECISION));
        return;
    }

    // 5, 6
    clients.connect();
    if (cliProperties.getBooleanProperty(P::WANT_NON_BLOCKING_CONNECT)) {
        // At most 60 one-second waits; whatever connected by then runs.
        for (int guard = 61;;) {
            if (clients.getChannelState() == AbstractClient::CLIENT_STATE_CONNECTED) {
                break;
            }
            if (--guard == 0 || shutdownFlag_s.load()) {
                break;
            }
            OS::sleepInSec(1);
        }
    }

    // 7, 8
    std::vector<std::string> clientTransactedSessionNames;
    const bool wantTransactions = cliProperties.getIntegerProperty(P::AD_TRANSACTION_SIZE) > 0;
    if (wantTransactions) {
        clientTransactedSessionNames =
            openTransactedSessions(clients, cliProperties, clientProps, publishProps);
    }

    // 9, 10, 11
    const bool wantQueueBrowser = cliProperties.getBooleanProperty(P::WANT_QUEUE_BROWSER);
    const INT32 bindRate = cliProperties.getIntegerProperty(P::BIND_RATE);
    if (wantQueueBrowser) {
        startQueueBrowsing(clients, cliProperties);
    } else if (bindRate < 1) {
        clients.addSubscriptionsFromCliProps(cliProperties, publishProps,
                                             clientTransactedSessionNames);
    }
    if (bindRate > 0) {
        startBinding(clients, cliProperties);
    }

    // 12, 13
    const INT64 numMsgs = cliProperties.getInt64Property(P::NUM_MSGS_TO_PUBLISH);
    const INT64 numCacheReqs = cliProperties.getInt64Property(P::CACHE_NUM_REQ);
    if (numMsgs > 0) {
        clients.startPublishing(publishProps, statsCust);
    }
    if (numCacheReqs > 0) {
        clients.startCacheRequesting(CacheProperties(cliProperties));
    }

    // 14: the publish wait, ended only by completion or Ctrl-C.
    bool waitOnReceivers = true;
    if (numMsgs > 0 || numCacheReqs > 0 || bindRate > 0) {
        std::cerr << "Waiting for publishing to complete.  Ctrl-c to exit. " << std::endl;
        const INT32 numClients = cliProperties.getIntegerProperty(P::NUM_CLIENTS);
        for (;;) {
            OS::sleepInUs(AbstractClientCollection::POLL_INTERVAL_IN_US);
            if (numClients > 0 && !clients.isPublishing() && !clients.isCacheRequesting() &&
                !clients.isBinding()) {
                break;
            }
            if (shutdownFlag_s.load()) {
                break;
            }
        }
        std::cout << std::endl;
        clients.stopPublishing();
        clients.stopCacheRequesting();
        clients.stopBinding();
        waitOnReceivers = cliProperties.getBooleanProperty(P::WAIT_AFTER_BIND);
    }

    // 15: the receive wait, ended by Ctrl-C or a lost client.
    if (waitOnReceivers) {
        std::cerr << "Receiving messages.  Ctrl-c to exit. " << std::endl;
        for (;;) {
            OS::sleepInUs(AbstractClientCollection::POLL_INTERVAL_IN_US);
            if (shutdownFlag_s.load() ||
                clients.getChannelState() == AbstractClient::CLIENT_STATE_DISCONNECTED) {
                break;
            }
        }
        std::cout << std::endl;
        if (wantQueueBrowser) {
            clients.stopQueueBrowsing();
        }
    }

    // 16, 17: let messages in flight arrive.
    const INT32 endDelay = cliProperties.getIntegerProperty(P::PUBLISH_END_DELAY_IN_SEC);
    if (!shutdownFlag_s.load() &&
        clients.getChannelState() != AbstractClient::CLIENT_STATE_DISCONNECTED) {
        std::cout << "Allow clients to finish receiving. Waiting: " << endDelay << " secs"
                  << std::endl;
        OS::sleepInSec(endDelay);
    }
    if (cliProperties.getBooleanProperty(P::WANT_CLIENT_ACK)) {
        clients.stopData();
        std::cout << "Allow flows to stop. Waiting (-ped): " << endDelay << " secs" << std::endl;
        OS::sleepInSec(endDelay);
    }

    // 18 to 21
    if (cliProperties.getBooleanProperty(P::WANT_VERBOSE)) {
        std::cout << clients.toString() << std::endl;
    }
    if (!wantQueueBrowser) {
        clients.removeSubscriptionsFromCliProps(cliProperties, clientTransactedSessionNames);
    }
    if (wantTransactions) {
        OS::sleepInSec(1);
        const bool wantRollback =
            cliProperties.getIntegerProperty(P::AD_TRANSACTION_ROLLBACK_INTERVAL) == 1;
        for (std::size_t i = 0; i < clientTransactedSessionNames.size(); ++i) {
            clients.commitTransaction(clientTransactedSessionNames[i], wantRollback,
                                      static_cast<int>(i));
        }
        clients.closeAllTransactedSessions(ALL_CLIENTS_INDEX);
    }
    clients.disconnect();

    // 22
    displayClientStats(cliProperties, CollectionReportSource(clients, numAlarms_s));
}

}  // namespace zorvane::pubsub
