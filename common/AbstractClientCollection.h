// The fan-out over all clients of a run: the one object through which the
// run sequence and the report reach the traffic.
//
// AbstractClientCollection holds what needs only the clients: the channel
// state of the whole run, the operations that go to every client or to one
// (data, transactions, subscriptions, endpoints, cache requests, browsing,
// names, errors, figures), the distribution of the command line's
// subscription lists over the clients, and the message lists that
// publishing starts from. The subclass adds client and context construction,
// connection with its time limits and the traffic threads.
//
// Client indexes count from 0; ALL_CLIENTS_INDEX (-1) means every client,
// in creation order, where an operation accepts it. Any other index outside
// 0 to size - 1 raises PubSubException "AbstractClientCollection: Client
// Index out of range. Range (0-<size-1>), Index used: <index>".
//
// The slow-subscriber guard: operations that change subscriptions switch
// every client's slow-subscriber delay off first and on again afterwards,
// also when they raise, because a context thread sleeping in that delay
// would hold the control operation up behind it.
//
// Ownership: the collection owns its clients, contexts and the timer thread
// shared by the clients; the subclass creates the clients and contexts and
// deletes them in its destructor, this class deletes the timer thread.
// Records passed in are copied.
//
// Threads: every operation runs on the main thread, except sigalrmAction,
// which runs in signal context. No lock of its own: the state of clients
// and traffic threads is polled.
#pragma once

#include <map>
#include <memory>
#include <string>
#include <vector>

#include "client/AbstractClient.h"
#include "common/ClientProperties.h"
#include "common/FlowStatus.h"
#include "common/LastMessageDetails.h"
#include "common/MsgProperties.h"
#include "common/PerfStats.h"
#include "common/PubSubErrorResponseException.h"
#include "common/PublishProperties.h"
#include "common/StatsCustomizationProperties.h"
#include "common/dataTypes.h"

namespace zorvane::pubsub {

class AbstractContext;
class CacheProperties;
class CliProperties;
class EpConfigProperties;
class QueueBrowserProperties;
class TimerThread;

class AbstractClientCollection {
  public:
    // Every wait of the collection polls at this interval.
    static constexpr int POLL_INTERVAL_IN_US = 100000;
    // Polls of a start or stop of traffic (3 minutes) and of a disconnect
    // (10 seconds).
    static constexpr int START_STOP_POLLS = 1800;
    static constexpr int DISCONNECT_POLLS = 100;

    // Copies both records and starts the timer thread. Throws
    // PubSubException when structured message checking is asked for
    // together with order checking, latency, payload checking or order
    // memory, which all need the tool data that a structured message has no
    // room for.
    AbstractClientCollection(const ClientProperties& clientProps,
                             const StatsCustomizationProperties& rxStatsProps);
    // Stops and deletes the timer thread. The subclass has deleted the
    // clients by then.
    virtual ~AbstractClientCollection();

    AbstractClientCollection(const AbstractClientCollection&) = delete;
    AbstractClientCollection& operator=(const AbstractClientCollection&) = delete;

    // ---- connection ----

    virtual void connect() = 0;
    virtual void disconnect() = 0;
    // Always all clients. A failure becomes "Exception while starting data
    // on clients" (or stopping) with the cause.
    virtual void startData();
    virtual void stopData();

    // ---- transacted sessions (one client each, except close all) ----

    // The new session's name; the empty string (and an info line) when no
    // client is connected.
    virtual std::string openTransactedSession(int clientIndex, UINT32 transactionSize,
                                              UINT32 rollbackInterval, UINT32 transactionIdleTime);
    virtual void closeTransactedSession(const std::string& name, int clientIndex);
    virtual void closeAllTransactedSessions(int clientIndex);
    virtual void commitTransaction(const std::string& sessionName, bool wantRollback,
                                   int clientIndex);

    // ---- subscriptions (AbstractClientCollectionSubscriptions.cpp) ----

    // Deals the command line's topic, endpoint, queue and selector lists
    // out to the clients round robin (client i takes list i modulo the
    // number of lists) and sets up, per client, temporary endpoints, queue
    // flows, topic subscriptions or durable topic endpoints, the first kind
    // that the options give. With temporary queues and no topics the
    // publishers are pointed at the queues through publishProperties.
    // transactedSessionNames holds one name per client when transactions
    // are used.
    //
    // A broker's refusal for one client (PubSubErrorResponseException) is
    // logged and the next client is served; any other failure, such as a
    // kind of subscription this build cannot set up, ends the call, since a
    // run whose receivers are missing would measure nothing.
    virtual void addSubscriptionsFromCliProps(const CliProperties& cliProperties,
                                              PublishProperties& publishProperties,
                                              std::vector<std::string> transactedSessionNames);
    // Undoes the above in mirror order. A failure for one client is logged
    // and the others are still served.
    virtual void removeSubscriptionsFromCliProps(const CliProperties& cliProperties,
                                                 std::vector<std::string> transactedSessionNames);

    // ---- subscriptions and endpoints (all under the slow-subscriber guard) ----

    // With ALL_CLIENTS_INDEX and distributeTopics, topic t goes to client t
    // modulo the number of clients, one call per client; otherwise each
    // client addressed gets the whole list.
    virtual void subscriptionUpdate(const std::vector<std::string>& topics, bool isAdding,
                                    const std::string& clientName,
                                    SubscriptionType subscriptionType, int clientIndex,
                                    bool distributeTopics);
    virtual void topicUpdate(const EpConfigProperties& epProps, int clientIndex);
    virtual void queueUpdate(const EpConfigProperties& epProps, int clientIndex);
    // The endpoint names of the client or clients, in client order.
    virtual std::vector<std::string> tempEndpointUpdate(const EpConfigProperties& epProps,
                                                        int clientIndex);
    virtual void unbindAllTempEndpoints(int clientIndex);
    // One client only: ALL_CLIENTS_INDEX raises.
    virtual FlowStatus getFlowStatus(const std::string& name, EndpointType endpointType,
                                     int clientIndex);
    virtual void clearSubscriptionMemory();
    virtual void endpointProvisioning(const EpConfigProperties& epProps, int clientIndex);
    virtual void mapTopics(const std::string& endpointName, const std::vector<std::string>& topics,
                           bool isAdding, int clientIndex);

    // ---- traffic threads (bodies in the subclass) ----

    virtual void startBinding(const EpConfigProperties& epProps) = 0;
    virtual void stopBinding() = 0;
    virtual bool isBinding() = 0;
    virtual void startPublishing(const PublishProperties& publishProps,
                                 const StatsCustomizationProperties& statsCust) = 0;
    virtual void stopPublishing() = 0;
    virtual bool isPublishing() = 0;
    // One message from each client, on the main thread. Refused while
    // publishing.
    virtual void publishMsgOnAllClients(const PublishProperties& publishProps,
                                        const StatsCustomizationProperties& statsCust);
    virtual void cacheRequest(const std::vector<std::string>& topics, bool subscribe,
                              const std::string& liveDataAction, bool waitForConfirm, INT64 minSeq,
                              INT64 maxSeq, int clientIndex);
    virtual void startCacheRequesting(const CacheProperties& cacheProps) = 0;
    virtual void stopCacheRequesting() = 0;
    virtual bool isCacheRequesting() = 0;
    virtual void cancelCacheRequests(int clientIndex);

    // ---- queue browsing (always all clients) ----

    virtual void startQueueBrowsing(const QueueBrowserProperties& props);
    virtual void stopQueueBrowsing();
    // True when any client browses.
    virtual bool isQueueBrowsing();
    // One client only; the reply's text.
    virtual std::string requestReply(const std::string& topic, const std::string& content,
                                     int clientIndex);

    // ---- figures ----

    // A copy of one client's receive statistics, or with ALL_CLIENTS_INDEX
    // an aggregate named "aggregate" over all clients.
    virtual PerfStats getRxStats(int clientIndex, bool wantFirstLastStats);
    virtual void resetStats(int clientIndex);
    // ALL_CLIENTS_INDEX sums over the clients.
    virtual INT64 getSdkStat(int statName, int clientIndex);
    virtual double getTxThroughPut() = 0;
    virtual PerfStats getTxStats(int clientIndex) = 0;
    // One element per client addressed.
    virtual std::vector<UINT64> getLastAckedMsgId(int clientIndex);
    // Publisher stream id to its last acknowledged message id.
    virtual std::map<INT32, UINT64> getLastAckedMsgIdByPubStreamId(int clientIndex);
    // One map per client addressed.
    virtual std::vector<std::map<INT32, UINT64>> getSubOrderOffsets(int clientIndex);

    // ---- naming, errors and the rest ----

    virtual std::vector<std::string> getClientName(int clientIndex);
    // One client only.
    virtual void setClientName(int clientIndex, const std::string& name);
    virtual void updateAuthOnReconnect(int clientIndex, const std::string& user,
                                       const std::string& password);
    // Every client's alarm action. Runs in signal context: it only walks
    // the client list, which does not change while the collection lives.
    virtual void sigalrmAction();
    // One client only.
    virtual void setFirstSubscriptionAddTime(UINT64 timeInUs, UINT32 numSubscriptions,
                                             int clientIndex);
    // Every client's text, one after the other, and a line end.
    virtual std::string toString();
    virtual void clearLastError(int clientIndex);
    // ALL_CLIENTS_INDEX is accepted only in a collection of one client.
    virtual std::unique_ptr<PubSubErrorResponseException> getLastError(int clientIndex);
    virtual std::unique_ptr<LastMessageDetails> getLastMessageDetails(int clientIndex);
    virtual std::vector<LastMessageDetails> getLastMessagesDetails(int clientIndex, int count);
    // The first client's; empty without clients.
    virtual std::map<std::string, std::string> getRtrCapabilities();
    // Measures how long a tight loop on the tick counter takes between
    // readings, loops times, and prints the latency figures of that (with
    // 2 decimals when precision is -1). No connection is involved.
    virtual void runKernelInterruptTest(INT64 loops, int precision);
    // A copy of one client's record, or of the collection's with
    // ALL_CLIENTS_INDEX.
    virtual ClientProperties getClientProperties(int clientIndex);
    virtual TimerThread* getTimerThread() { return timerThread_mp; }
    virtual UINT64 _getLastPubTime() = 0;
    virtual void _setLastPubTime(UINT64 timeInUs, int index) = 0;

    // ---- not virtual ----

    // CONNECTED for an empty collection; DISCONNECTED as soon as any one
    // client is; otherwise the state of the last client seen connecting or
    // reconnecting, or CONNECTED when none is.
    AbstractClient::ClientStateType getChannelState() const;
    const std::vector<AbstractClient*>& getClientVector() const { return clientVect_m; }
    // The client at index (checked).
    AbstractClient* getClient(int clientIndex) const;

    // Builds the lists of messages to publish, one per group of publish
    // topics, after refusing combinations the send path cannot serve (see
    // the .cpp for the texts). publishSingleMsgFlag: the lists are for one
    // message per client, so a send vector does not lengthen them.
    void _buildMsgArray(const PublishProperties& publishProps,
                        const StatsCustomizationProperties& statsCust, bool publishSingleMsgFlag,
                        std::vector<std::vector<MsgProperties>>& msgsToPublishArray) const;
    // Logs the first client's broker capabilities at notice level.
    void _logCapabilitiesStr();
    // True when any client was asked to connect and not to disconnect.
    bool _isAdminConnected() const;
    // With acknowledgement order checking on guaranteed messages, lets the
    // acknowledgements of an earlier publish run arrive (up to 1.1 s after
    // its last message) before a new run starts counting them.
    void _waitForAdPubAcks(const PublishProperties& publishProps);

  protected:
    // Raises the out-of-range text unless index is a client's.
    void _checkIndex(int clientIndex) const;
    // The clients clientIndex addresses: all of them for ALL_CLIENTS_INDEX
    // when allowAll, else the one (checked).
    std::vector<AbstractClient*> _clientsFor(int clientIndex, bool allowAll) const;
    // Switches every client's slow-subscriber delay.
    void _slowSubEnableAll(bool enable);

    ClientProperties clientProps_m;
    std::vector<AbstractClient*> clientVect_m;  // owned; element i has client id i + 1
    StatsCustomizationProperties rxStatsProps_m;
    std::vector<AbstractContext*> contextVect_m;  // owned
    TimerThread* timerThread_mp;                  // owned

  private:
    // The refusal shared by the constructor and _buildMsgArray.
    static void refuseStructuredMsgWithToolData(const StatsCustomizationProperties& statsCust);
};

}  // namespace zorvane::pubsub
