// One client connection as the rest of the tool sees it.
//
// AbstractClient holds everything about a connection that does not depend
// on the messaging library: its configuration records, its receive
// statistics, its connection state, its last-error slot and its last-message
// records. Each operation that needs the library is a public non-virtual
// wrapper (connect) that does the work common to every binding and then
// calls a protected virtual with the suffix Impl (connectImpl). Client, the
// binding to the library, is the one subclass; every caller holds an
// AbstractClient*.
//
// Two layers of connection state:
//  - isAdminConnected(): what the tool asked for. Changes only in connect()
//    and disconnect(); it makes a repeated connect() harmless, so the
//    traffic threads and the session event handler may all call it.
//  - getChannelState(): what the session reports (ClientStateType). Set to
//    CONNECTING by connect() and otherwise by the binding's event handler
//    through setChannelState(). Code that works on a client tests it for
//    CLIENT_STATE_CONNECTED first.
//
// Ownership: the client owns its records, statistics, first-to-last data,
// last-message records and last error. The timer thread and the reusable
// message view (currentMsg_mp, created and freed by the binding) are not
// owned. getLastError() and getLastMessageDetails() return copies that the
// caller owns.
//
// Threads: the library's context thread runs the receive path and the
// session events, and with them stats_m, msgsRecv_m, currentMsg_mp,
// reflectTaskStarted_m, clientState_m and asyncExceptionOccured_m; the main
// thread reads stats_m for the report without a lock (PerfStats accepts
// figures that are a moment old). The publishing operations, the send
// vector and the publish record belong to the client's one publisher thread.
// Only the last error and the last-message records are under a mutex; the
// flags that cross threads are atomics. The wrappers catch nothing: a
// PubSubException from an Impl reaches the caller.
#pragma once

#include <atomic>
#include <deque>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "common/ClientProperties.h"
#include "common/FirstLastData.h"
#include "common/FlowStatus.h"
#include "common/LastMessageDetails.h"
#include "common/PerfStats.h"
#include "common/PubSubErrorResponseException.h"
#include "common/PublishProperties.h"
#include "common/StatsCustomizationProperties.h"
#include "common/ToolData.h"
#include "common/dataTypes.h"

// The library's result type, declared opaquely (its fixed base is int) so
// that this layer names it without including the library's headers. 0 is
// ZORCLIENT_OK.
enum zorClient_returnCode : int;
typedef enum zorClient_returnCode zorClient_returnCode_t;

namespace zorvane::pubsub {

class AbstractMessage;
class EpConfigProperties;
class MsgProperties;
class QueueBrowserProperties;
class TimerThread;

class AbstractClient {
  public:
    // A getSdkStat id of this or more selects the library's transmit
    // statistic id - TX_STAT_OFFSET; a smaller id a receive statistic.
    static constexpr int TX_STAT_OFFSET = 1000;
    // What a message without a topic sequence number reports. Only values of
    // 1 or more are order-checked.
    static constexpr INT64 INVALID_TOPIC_SEQUENCE = 0;

    enum ClientStateType {
        CLIENT_STATE_DISCONNECTED = 0,
        CLIENT_STATE_CONNECTING = 1,
        CLIENT_STATE_RECONNECTING = 2,
        CLIENT_STATE_CONNECTED = 3,
    };
    // The state's name ("CLIENT_STATE_CONNECTED"); "UNKNOWN_CLIENT_STATE"
    // for a value outside the type.
    static const char* ClientStateTypeToString(ClientStateType state);

    // Copies the records and sets up the statistics for client number
    // clientId (counted from 1) with secDivisor ticks per second.
    // timerThread_p is shared and not owned; it may be null for a client
    // that needs no timed work.
    //
    // Subscriber order offsets that do not name an entry for this client
    // (clientId below 1, or fewer entries than clientId) end the process
    // with status -1 and a message on standard error: a resumed order check
    // against the wrong offsets would report nonsense for the whole run.
    // Throws PubSubException for statistics settings that PerfStats refuses.
    AbstractClient(const ClientProperties& props, INT32 clientId, UINT64 secDivisor,
                   const StatsCustomizationProperties& statsCust, TimerThread* timerThread_p);
    virtual ~AbstractClient();

    AbstractClient(const AbstractClient&) = delete;
    AbstractClient& operator=(const AbstractClient&) = delete;

    // Releases messages kept for later acknowledgement until at most
    // desiredSize are left, acknowledging them when enableAcking. Without
    // client acknowledgement there is nothing to release: returns 0 (OK).
    virtual zorClient_returnCode_t processKeptMsgs(int desiredSize, bool enableAcking);

    // ---- connection ----

    // Connects unless already admin-connected (then only a debug line).
    // The state is CONNECTING while connectImpl runs; the admin flag is set
    // only when it returns, so a connectImpl that throws leaves it clear and
    // connect() can be tried again.
    void connect();
    // Disconnects unless already admin-disconnected (then only a debug
    // line). The admin flag is cleared before disconnectImpl, so that a
    // slow-subscriber delay in progress stops.
    void disconnect();
    void startData() { startDataImpl(); }
    void stopData() { stopDataImpl(); }

    bool isAdminConnected() const { return isChannelAdminConnected_m.load(); }
    ClientStateType getChannelState() const { return clientState_m.load(); }
    void setChannelState(ClientStateType state) { clientState_m.store(state); }
    // Set by the session event handler when a replication fail-over made
    // the client reconnect; read and cleared by the publisher thread.
    bool getReplicationReconnecting() const { return replicationReconnecting_m.load(); }
    void setReplicationReconnecting(bool value) { replicationReconnecting_m.store(value); }

    // ---- publishing (the client's publisher thread) ----

    // Takes the publish record: the order offset of this client's publisher
    // stream when "-poo=" names it, the last acknowledged id reset to that
    // offset, and a clean slate for errors from callback threads.
    void setPublishProps(const PublishProperties& publishProps, INT32 producerIndex,
                         std::string xaSessionName);
    // What the publish side must put into messages; decides anew whether
    // messages carry tool data.
    void setPublishStatsProps(const StatsCustomizationProperties& statsProps);
    const StatsCustomizationProperties& getPublishStatsProps() const { return txStatsProps_m; }
    // True when latency, payload check, order check or order memory of the
    // publish statistics, or the trace decode check, needs tool data.
    bool publishWantToolData() const;

    // With "-soe" and an error reported from a callback thread since the
    // last setPublishProps, throws PubSubException instead of sending.
    void publishMsg(MsgProperties* msg_p, INT32 producerIndex);
    void publishSendMultiple(std::vector<MsgProperties>& msgsVect, bool wantToolData,
                             INT32 producerIndex);

    // Rebuilds the message's tool data for message number msgNum: message
    // id (order offset + msgNum) and stream id with order checking or order
    // memory, the time stamp latTimestamp with latency (0: stamped at send),
    // and the CRCs with the payload check. Allocates nothing.
    void updateToolData(MsgProperties* msg_p, UINT64 msgNum, UINT64 latTimestamp);
    // The send path's last step in the binary form: stamps the send time if
    // still needed and writes the encoded record over the start of the
    // attachment (a shorter attachment becomes the record).
    void setToolDataAsAttachment(MsgProperties* msg_p);

    // This client's publisher stream id: stream id offset + client id.
    INT32 getPubStreamIdInPublishProperties() const {
        return publishProps_m.getStreamIdOffset() + clientIdInt_m;
    }
    INT32 getPubOrderOffsetInPublishProperties() const { return publishProps_m.getOrderOffset(); }

    // The message numbers collected for one vectored send. There is one list
    // per client; the producer index does not select anything.
    std::vector<long long>& getSendVector(INT32 /*producerIndex*/) { return sendVector_m; }
    void clearSendVector(INT32 /*producerIndex*/) { sendVector_m.clear(); }
    // Allocates nothing up to PUB_SEND_VECTOR_MAX_SIZE entries.
    void sendVectorPushBack(INT64 msgNum, INT32 /*producerIndex*/) {
        sendVector_m.push_back(msgNum);
    }

    UINT64 getLastAckedMsgId() { return getLastAckedMsgIdImpl(); }
    void setLastAckedMsgId(UINT64 msgId) { setLastAckedMsgIdImpl(msgId); }

    // ---- transacted sessions ----

    std::string openTransactedSession(UINT32 transactionSize, UINT32 rollbackInterval,
                                      UINT32 redeliveryLimit) {
        return openTransactedSessionImpl(transactionSize, rollbackInterval, redeliveryLimit);
    }
    void closeTransactedSession(std::string name) { closeTransactedSessionImpl(std::move(name)); }
    void closeAllTransactedSessions() { closeAllTransactedSessionsImpl(); }
    void commitTransaction(std::string name, bool wantRollback) {
        commitTransactionImpl(std::move(name), wantRollback);
    }
    void commitTransactionOnCurrPub(INT32 producerIndex, bool wantRollback) {
        commitTransactionOnCurrPubImpl(producerIndex, wantRollback);
    }

    // ---- subscriptions, endpoints, browsing, cache, requests ----

    void subscriptionUpdate(const std::vector<std::string>& topics, bool isAdding,
                            const std::string& queueName, SubscriptionType subscriptionType) {
        subscriptionUpdateImpl(topics, isAdding, queueName, subscriptionType);
    }
    void topicUpdate(const EpConfigProperties& epProps) { topicUpdateImpl(epProps); }
    void queueUpdate(const EpConfigProperties& epProps) { queueUpdateImpl(epProps); }
    std::vector<std::string> tempEndpointUpdate(const EpConfigProperties& epProps) {
        return tempEndpointUpdateImpl(epProps);
    }
    void unbindAllTempEndpoints() { unbindAllTempEndpointsImpl(); }
    void clearSubscriptionMemory() { clearSubscriptionMemoryImpl(); }
    void endpointProvisioning(const EpConfigProperties& epProps) {
        endpointProvisioningImpl(epProps);
    }
    void mapTopics(const std::string& queueName, const std::vector<std::string>& topics,
                   bool isAdding) {
        mapTopicsImpl(queueName, topics, isAdding);
    }
    FlowStatus getFlowStatus(const std::string& name, EndpointType endpointType) {
        return getFlowStatusImpl(name, endpointType);
    }

    void startQueueBrowsing(const QueueBrowserProperties& browserProps) {
        startQueueBrowsingImpl(browserProps);
    }
    void stopQueueBrowsing() { stopQueueBrowsingImpl(); }
    bool isQueueBrowsing() { return isQueueBrowsingImpl(); }

    void cacheRequest(const std::vector<std::string>& topics, bool subscribe, std::string cacheName,
                      bool waitForConfirm, INT64 requestId, INT64 maxMsgs) {
        cacheRequestImpl(topics, subscribe, std::move(cacheName), waitForConfirm, requestId,
                         maxMsgs);
    }
    void cancelCacheRequests() { cancelCacheRequestsImpl(); }

    std::string requestReply(const std::string& topic, const std::string& body) {
        return requestReplyImpl(topic, body);
    }

    // ---- statistics and the receive path ----

    // Zeroes the received count, then the binding's statistics.
    void resetStats();
    // With true, the first-to-last statistics; else an aggregate of the
    // client's and its transacted sessions' statistics.
    const PerfStats& getRxStats(bool wantFirstLastStats) {
        return getRxStatsImpl(wantFirstLastStats);
    }
    INT64 getSdkStat(int statId) { return getSdkStatImpl(statId); }
    // Publisher stream id to the last message id seen on it: what a later
    // run takes as its subscriber order offsets ("-soo=").
    std::map<INT32, UINT64> getSubOrderOffsets() const;

    // Remembers when the first subscriptions were added, so that the
    // receive path reports the time to the first message, once.
    void setFirstSubscriptionAddTime(UINT64 timeInUs, UINT32 numSubscriptions);
    // Switches the slow-subscriber delay on or off from any thread; a delay
    // in progress ends within one 100 ms piece.
    void slowSubEnable(bool enable) { slowSubDelayEnabled_m.store(enable); }

    // Analyses one received message into perfStats_p (stats_m, or the
    // statistics of the transacted session that received it). Called by
    // the binding on the context thread after binding currentMsg_mp and
    // clearing reflectTaskStarted_m; one message at a time per client.
    //
    // The fast path (receive count, clock, tool data, latency, first-to-last
    // sample, throughput count) allocates nothing and takes no lock. The
    // slow path runs only when the constructor found a feature that needs
    // it (see computeWantSlowPathMsgProcess); it may block in the
    // slow-subscriber delay and takes lastMessageDetailsMutex_m with
    // per-message details.
    //
    // Damaged tool data and failed checks are logged and counted, never
    // thrown. The one exception that leaves is the PubSubException of the
    // first-to-last measurement when an id completes out of turn: the
    // binding must catch it before it returns into the library, and stop
    // the run with its text.
    void processMessage(AbstractMessage* msg_p, PerfStats* perfStats_p);

    // ---- last error (any thread) ----

    void clearLastError();
    // Replaces the stored error. Called by the binding when a library call
    // fails.
    void updateLastError(const std::string& subCode, INT32 responseCode,
                         const std::string& responsePhrase, INT32 returnCode);
    // A copy of the stored error, or null when there is none.
    std::unique_ptr<PubSubErrorResponseException> getLastError() const;

    // ---- last-message records (any thread) ----

    // A copy of the record of the last received message, or null without
    // per-message details.
    std::unique_ptr<LastMessageDetails> getLastMessageDetails() const;
    // Copies of the last num records, oldest first: at most as many as the
    // history holds. With no history, or num of 1 or less, the one current
    // record. Empty without per-message details (there is no record).
    std::vector<LastMessageDetails> getLastMessagesDetails(int num) const;

    // ---- naming and the rest ----

    std::string getClientName() { return getClientNameImpl(); }
    void setClientName(std::string name) { setClientNameImpl(std::move(name)); }
    void updateAuthOnReconnect(std::string username, std::string password) {
        updateAuthOnReconnectImpl(std::move(username), std::move(password));
    }
    void sigalrmAction() { sigalrmActionImpl(); }
    std::map<std::string, std::string> getRtrCapabilities() { return getRtrCapabilitiesImpl(); }
    std::string toString() { return toStringImpl(); }

    // The client id text of log lines and reports.
    const std::string& getName() const { return clientIdStr_m; }
    INT32 getClientId() const { return clientIdInt_m; }
    const ClientProperties& getClientProps() const { return props_m; }
    TimerThread* getTimerThread() const { return timerThread_mp; }

  protected:
    // What a binding read of a typed message (built by a peer through the
    // typed send path), for the object type check.
    struct MsgObjectTypeReading {
        enum Outcome {
            // The kind could not be read: nothing is counted.
            TYPE_UNREADABLE,
            // The kind was read, its contents could not be (the binding
            // logged the failing call): counts as a failure.
            CONTENT_UNREADABLE,
            // type_m and content_m hold what was read.
            READ,
        };
        Outcome outcome_m = TYPE_UNREADABLE;
        std::string type_m;     // "b", "t", "s", "m", or another text
        std::string content_m;  // the bytes or string of the kind's contents
    };

    // The slow-subscriber delay of one message: slowSubDelayInMillis_m, cut
    // into pieces of 100 ms above 500 ms, ended early when the client is
    // disconnected or the delay switched off. Counts down a positive
    // slowSubDelayCount_m. Blocks the calling (context) thread.
    virtual void slowSubDelayImpl();
    virtual void connectImpl() = 0;
    virtual void disconnectImpl() = 0;
    virtual void startDataImpl() = 0;
    virtual void stopDataImpl() = 0;
    virtual void setPublishPropsImpl(const PublishProperties& publishProps, INT32 producerIndex,
                                     std::string xaSessionName) = 0;
    virtual void publishMsgImpl(MsgProperties* msg_p, INT32 producerIndex) = 0;
    virtual void publishSendMultipleImpl(std::vector<MsgProperties>& msgsVect, bool wantToolData,
                                         INT32 producerIndex) = 0;
    virtual void startQueueBrowsingImpl(const QueueBrowserProperties& browserProps) = 0;
    virtual void stopQueueBrowsingImpl() = 0;
    virtual bool isQueueBrowsingImpl() = 0;
    virtual void cacheRequestImpl(const std::vector<std::string>& topics, bool subscribe,
                                  std::string cacheName, bool waitForConfirm, INT64 requestId,
                                  INT64 maxMsgs) = 0;
    virtual void cancelCacheRequestsImpl() = 0;
    virtual std::string requestReplyImpl(const std::string& topic, const std::string& body) = 0;
    virtual void reflectMsgImpl(AbstractMessage* msg_p) = 0;
    virtual UINT64 getLastAckedMsgIdImpl() = 0;
    virtual void setLastAckedMsgIdImpl(UINT64 msgId) = 0;
    // Transactions are optional for a binding: without them these do
    // nothing (and opening gives an empty name).
    virtual void commitTransactionImpl(std::string /*name*/, bool /*wantRollback*/) {}
    virtual void commitTransactionOnCurrPubImpl(INT32 /*producerIndex*/, bool /*wantRollback*/) {}
    virtual std::string openTransactedSessionImpl(UINT32 /*transactionSize*/,
                                                  UINT32 /*rollbackInterval*/,
                                                  UINT32 /*redeliveryLimit*/) {
        return std::string();
    }
    virtual void closeTransactedSessionImpl(std::string /*name*/) {}
    virtual void closeAllTransactedSessionsImpl() {}
    virtual INT64 getSdkStatImpl(int statId) = 0;
    virtual void resetStatsImpl() = 0;
    virtual void subscriptionUpdateImpl(const std::vector<std::string>& topics, bool isAdding,
                                        const std::string& queueName,
                                        SubscriptionType subscriptionType) = 0;
    virtual void topicUpdateImpl(const EpConfigProperties& epProps) = 0;
    virtual void queueUpdateImpl(const EpConfigProperties& epProps) = 0;
    virtual std::vector<std::string> tempEndpointUpdateImpl(const EpConfigProperties& epProps) = 0;
    virtual void unbindAllTempEndpointsImpl() = 0;
    virtual void mapTopicsImpl(const std::string& queueName, const std::vector<std::string>& topics,
                               bool isAdding) = 0;
    virtual FlowStatus getFlowStatusImpl(const std::string& name, EndpointType endpointType) = 0;
    virtual void clearSubscriptionMemoryImpl() = 0;
    virtual void endpointProvisioningImpl(const EpConfigProperties& epProps) = 0;
    virtual std::string getClientNameImpl() = 0;
    virtual void setClientNameImpl(std::string name) = 0;
    virtual void updateAuthOnReconnectImpl(std::string username, std::string password) = 0;
    virtual void sigalrmActionImpl() = 0;
    virtual std::string toStringImpl() = 0;
    virtual std::map<std::string, std::string> getRtrCapabilitiesImpl() = 0;
    // Fills the last-message record from msg_p (receive path, with
    // per-message details): under lastMessageDetailsMutex_m, clear()
    // *lastMessageDetails_m, fill it from the library message, then call
    // appendLastMessageDetailsToHistory() before unlocking.
    virtual void setLastMessageDetails(AbstractMessage* msg_p) = 0;
    virtual const PerfStats& getRxStatsImpl(bool wantFirstLastStats) = 0;
    // The structured message check of one received message against the
    // client's structured message descriptions (msg_p->getCheckStructuredMsg
    // with the parsed list, which the binding holds). Context thread.
    virtual bool checkStructuredMsgImpl(AbstractMessage* msg_p) = 0;
    // Reads the message's application type and, for the kinds "b", "t", "s"
    // and "m", the contents the check compares: the attachment bytes, the
    // attachment string, the first string of the attachment stream, the
    // string field "MAP" of the attachment map. A failed read of the kind is
    // logged at debug level, a failed read of the contents at error level
    // with the name of the failing call. reading is reused from message to
    // message. Context thread.
    virtual void readMsgObjectTypeImpl(AbstractMessage* msg_p, MsgObjectTypeReading& reading) = 0;

    // Whether a received message needs more than the fast path: true when
    // any measured or acted-on feature asks for it (see the .cpp).
    bool computeWantSlowPathMsgProcess() const;

    // The parts of processMessage, in the order it runs them.
    // processMessageLatency returns whether it decoded the tool data
    // cleanly; the slow path then reads it as it stands instead of decoding
    // it a second time (a damaged record is decoded and reported again).
    bool processMessageLatency(AbstractMessage* msg_p, UINT64 currTime, PerfStats* perfStats_p);
    void processMessageSlowPath(AbstractMessage* msg_p, PerfStats* perfStats_p,
                                bool toolDataDecoded);
    void processMessageObjectType(AbstractMessage* msg_p, PerfStats* perfStats_p);

    // Keeps a copy of the current record at the end of the history, the
    // oldest copy dropped when the history is full. The caller holds
    // lastMessageDetailsMutex_m (see setLastMessageDetails).
    void appendLastMessageDetailsToHistory();

    ClientProperties props_m;
    // Every how many received messages the receive end time is refreshed;
    // always 1.
    INT32 subRateInterval_m;
    INT32 slowSubDelayInMillis_m;  // 0: no delay
    // Messages left to delay: counts down when positive; a negative value
    // never reaches 0, so the delay goes on for ever.
    INT32 slowSubDelayCount_m;
    std::atomic<bool> slowSubDelayEnabled_m;  // master switch, any thread
    // What the context thread writes for every message comes first, from a
    // cache line of its own to the next: the publisher thread reads this
    // client's settings for every message it sends, and a line shared with a
    // receive counter would travel between their processors each time.
    alignas(64) PerfStats stats_m;  // receive statistics outside transacted sessions
    // Owned; exists only with a first-to-last fan-out above 0.
    std::unique_ptr<FirstLastData> firstLastData_mp;
    // Messages that entered processMessage since the last resetStats. One
    // writer (the context thread); atomic so that a reset from another
    // thread is not a data race. Increment with a relaxed load and store.
    std::atomic<UINT64> msgsRecv_m{0};
    bool reflectTaskStarted_m = false;  // a background task took the message over
    alignas(64) std::string clientIdStr_m;
    INT32 clientIdInt_m;
    StatsCustomizationProperties txStatsProps_m;  // what the publish side sends
    StatsCustomizationProperties rxStatsProps_m;  // what the receive side measures
    std::vector<long long> sendVector_m;
    std::atomic<bool> isChannelAdminConnected_m{false};
    PublishProperties publishProps_m;
    // Set (release) after firstSubscriptionAddTime_m and numSubscriptions_m
    // are written; the receive path reads it with acquire before them.
    std::atomic<bool> wantTimeToFirstMsg_m{false};
    UINT64 firstSubscriptionAddTime_m = 0;  // microseconds
    UINT32 numSubscriptions_m = 0;
    bool wantMsgReflect_m = false;  // not a sink: every message is reflected
    // An error arrived on a library callback thread; cleared by
    // setPublishProps.
    std::atomic<bool> asyncExceptionOccured_m{false};
    std::atomic<ClientStateType> clientState_m{CLIENT_STATE_DISCONNECTED};
    std::atomic<bool> wantSlowPathMsgProcess_m{false};
    bool pubWantToolData_m = false;  // publishWantToolData(), for the send path
    std::atomic<bool> replicationReconnecting_m{false};
    bool wantClientTaskThread_m = false;
    AbstractMessage* currentMsg_mp = nullptr;  // created and freed by the binding
    TimerThread* timerThread_mp;               // shared, not owned
    // The last received message and a history of the last
    // lastMessagesDetailsSize_m ones (oldest first), under
    // lastMessageDetailsMutex_m. The record is owned and exists only with
    // per-message details.
    std::unique_ptr<LastMessageDetails> lastMessageDetails_m;
    UINT32 lastMessagesDetailsSize_m = 0;  // 0: no history
    std::deque<LastMessageDetails> lastMessagesDetails_m;
    mutable mutex_t lastMessageDetailsMutex_m;
    std::unique_ptr<PubSubErrorResponseException> lastException_m;  // under the mutex below
    mutable mutex_t lastExceptionMutex_m;

  private:
    // Decodes the message's tool data in the form of this run; a damaged
    // record is reported (log and standard output), left empty, and gives
    // false.
    bool decodeReceivedToolData(AbstractMessage* msg_p);
    void reportTimeToFirstMsg();
    // CRC and user data check of the slow path.
    void checkPayload(AbstractMessage* msg_p, const ToolData& toolData, PerfStats* perfStats_p);
    void dumpMessage(AbstractMessage* msg_p, const ToolData& toolData);

    // Reused by processMessageObjectType, so that the check does not build
    // new strings for every message.
    MsgObjectTypeReading objectTypeReading_m;
};

}  // namespace zorvane::pubsub
