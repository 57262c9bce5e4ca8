// One connection of the tool to the broker: the binding of AbstractClient
// to the messaging library. It owns one library session, created on the
// Context it is given, and the library messages its publisher threads
// reuse; it turns the session's events into the client's connection state
// and hands every received message to the receive analysis.
//
// Construction builds the session property array from the client record
// and creates the session; a failed creation is logged and leaves the
// session null, so that a later connect() fails in the library and says
// why. Features that this build does not provide yet (cache sessions,
// client acknowledgement threads and timers, background send tasks, queued
// message release) are refused by the constructor with a PubSubException
// that names them, before anything is created.
//
// Failures: a failed library call on a caller's thread throws
// PubSubException (handleErrorWithException), with the details also in the
// last-error slot; on the context thread nothing is thrown
// (handleErrorForAsync records the error and raises the client's
// asynchronous-error flag instead).
//
// Ownership: the Context must outlive the client. The client owns its
// session, its library messages and its reusable Message view; the
// destructor destroys the session first, so that no callback runs into a
// half-destroyed client.
//
// Threads: construction, connect, disconnect and destruction on the
// collection's thread; eventFunc and messageRxFunc on the context thread;
// publishMsgImpl and publishSendMultipleImpl on the publisher thread of
// their producer index, which alone uses that index's messages. The
// replication reconnect is the one connect that runs on the context thread.
#pragma once

#include <array>
#include <atomic>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "client/AbstractClient.h"
#include "client/zcore/Context.h"
#include "client/zcore/LibraryError.h"
#include "client/zcore/Message.h"
#include "client/zcore/PropertyArray.h"
#include "common/MsgProperties.h"
#include "common/StatsCustomizationProperties.h"
#include "common/TimerThread.h"
#include "zorClient.h"
#include "zorClientMsg.h"

namespace zorvane::pubsub {

class Client : public AbstractClient {
  public:
    // A demultiplexing id of topic subscriptions and its client: the user
    // pointer of the dispatch callback. One per id, in demuxDataMap_m, so its
    // address stays valid while subscriptions name it.
    struct DemuxCallbackData {
        std::string demuxId_m;
        Client* client_mp;
    };

    // Client number clientId (from 1) on context_p. randomSeed seeds the
    // client's random state (0 takes the clock). Throws PubSubException for
    // settings this build cannot serve, for a session property array that
    // does not fit, and when a publisher message cannot be allocated.
    Client(INT32 clientId, UINT64 secDivisor, const ClientProperties& props, Context* context_p,
           const StatsCustomizationProperties& statsCust, TimerThread* timerThread_p,
           INT64 randomSeed);
    ~Client() override;

    // ---- library callbacks (context thread) ----

    // One session event: keeps the connection state in step, counts the
    // event, reacts to errors and publish acknowledgements.
    void eventFunc(zorClient_opaqueSession_pt session,
                   zorClient_session_eventCallbackInfo_pt eventInfo_p);
    // One message from the session's direct path: bound to the reusable
    // view and analysed. The library keeps the message.
    zorClient_rxMsgCallback_returnCode_t messageRxFunc(zorClient_opaqueMsg_pt msg);
    // Counts a message that arrived through a demultiplexing id.
    void incDemuxStats(const std::string& name) { stats_m.incDemuxStats(name); }

    // The session property array as it was given to the library.
    const PropertyArray& getSessionProperties() const { return sdkprops_m; }
    // The library message that single sends of producerIndex go through;
    // it holds the last message built until the next one. Null for an index
    // without a publisher.
    zorClient_opaqueMsg_pt getPublishMsg(INT32 producerIndex) const {
        return producerIndex >= 0 && static_cast<std::size_t>(producerIndex) < pubMsgsList_m.size()
                   ? pubMsgsList_m[static_cast<std::size_t>(producerIndex)]
                   : nullptr;
    }

  protected:
    // ---- connection and session (ClientConnect.cpp, ClientSession.cpp) ----
    void connectImpl() override;
    void disconnectImpl() override;
    void startDataImpl() override;
    void stopDataImpl() override;
    std::string getClientNameImpl() override;
    void setClientNameImpl(std::string name) override;
    void updateAuthOnReconnectImpl(std::string accessToken, std::string idToken) override;
    void sigalrmActionImpl() override;
    std::map<std::string, std::string> getRtrCapabilitiesImpl() override;
    std::string toStringImpl() override;

    // ---- statistics (ClientStats.cpp) ----
    UINT64 getLastAckedMsgIdImpl() override { return highestCorrelationTagValueAcked_m.load(); }
    void setLastAckedMsgIdImpl(UINT64 msgId) override {
        highestCorrelationTagValueAcked_m.store(msgId);
    }
    INT64 getSdkStatImpl(int statId) override;
    void resetStatsImpl() override;
    const PerfStats& getRxStatsImpl(bool wantFirstLastStats) override;

    // ---- send path (ClientPublish.cpp, ClientBuildMsg.cpp, ClientReflect.cpp) ----
    void setPublishPropsImpl(const PublishProperties& publishProps, INT32 producerIndex,
                             std::string xaSessionName) override;
    void publishMsgImpl(MsgProperties* msg_p, INT32 producerIndex) override;
    void publishSendMultipleImpl(std::vector<MsgProperties>& msgsVect, bool wantToolData,
                                 INT32 producerIndex) override;
    void reflectMsgImpl(AbstractMessage* msg_p) override;
    std::string requestReplyImpl(const std::string& topic, const std::string& body) override;

    // ---- receive path (ClientReceive.cpp) ----
    void setLastMessageDetails(AbstractMessage* msg_p) override;
    bool checkStructuredMsgImpl(AbstractMessage* msg_p) override;
    void readMsgObjectTypeImpl(AbstractMessage* msg_p, MsgObjectTypeReading& reading) override;

    // ---- direct subscriptions (ClientSubscribe.cpp) ----
    void subscriptionUpdateImpl(const std::vector<std::string>& topics, bool isAdding,
                                const std::string& clientName,
                                SubscriptionType subscriptionType) override;

    // ---- later work (ClientNotAvailable.cpp): each throws PubSubException ----
    void startQueueBrowsingImpl(const QueueBrowserProperties& browserProps) override;
    void stopQueueBrowsingImpl() override;
    bool isQueueBrowsingImpl() override;
    void cacheRequestImpl(const std::vector<std::string>& topics, bool subscribe,
                          std::string cacheName, bool waitForConfirm, INT64 requestId,
                          INT64 maxMsgs) override;
    void cancelCacheRequestsImpl() override;
    void commitTransactionImpl(std::string name, bool wantRollback) override;
    void commitTransactionOnCurrPubImpl(INT32 producerIndex, bool wantRollback) override;
    std::string openTransactedSessionImpl(UINT32 transactionSize, UINT32 rollbackInterval,
                                          UINT32 redeliveryLimit) override;
    void closeTransactedSessionImpl(std::string name) override;
    void topicUpdateImpl(const EpConfigProperties& epProps) override;
    void queueUpdateImpl(const EpConfigProperties& epProps) override;
    std::vector<std::string> tempEndpointUpdateImpl(const EpConfigProperties& epProps) override;
    void mapTopicsImpl(const std::string& queueName, const std::vector<std::string>& topics,
                       bool isAdding) override;
    FlowStatus getFlowStatusImpl(const std::string& name, EndpointType endpointType) override;
    void endpointProvisioningImpl(const EpConfigProperties& epProps) override;
    // Without flows there is nothing to unbind or forget: these two are
    // complete as they stand until flows exist.
    void unbindAllTempEndpointsImpl() override;
    void clearSubscriptionMemoryImpl() override;
    // The default flow of a broker that demultiplexes topics onto flows;
    // called by connectImpl when the broker offers that.
    void registerDefaultFlow();

    // ---- helpers ----

    // Fills sdkprops_m from the client record (ClientSessionProperties.cpp).
    void populateZMPLProperties();
    // Records the calling thread's last library error for rc in the
    // last-error slot, logs it at debug level and throws it as
    // PubSubException.
    [[noreturn]] void handleErrorWithException(zorClient_returnCode_t rc);
    // For the context thread, where nothing may be thrown: records the last
    // library error, raises the asynchronous-error flag and logs at level.
    void handleErrorForAsync(zorClient_log_level_t level, const std::string& info);

    zorClient_opaqueSession_pt session_mp = nullptr;
    // Tries of a background send: pubMaxResends_m, or 3 below 1.
    INT32 maxPubRetries_m = 3;

  private:
    // Library messages: one reused per producer index for single sends, and
    // PUB_SEND_VECTOR_MAX_SIZE per index for vectored sends (null until a
    // publish record with a send vector asks for them).
    using MsgVector = std::vector<zorClient_opaqueMsg_pt>;

    void refuseFeaturesNotInThisBuild() const;
    void freeMessages();
    // The producer's message list, or PubSubException for an index this
    // client has no publisher for.
    std::size_t checkedProducerIndex(INT32 producerIndex) const;

    // Send path steps (see the .cpp files for the order of the fields).
    void resetMsg(std::size_t producerIndex);
    void preLoadMsg(zorClient_opaqueMsg_pt msg);
    void buildMsg(zorClient_opaqueMsg_pt msgPtr, MsgProperties* msg_p);
    void buildPersistentMsg(zorClient_opaqueMsg_pt msgPtr, MsgProperties* msg_p);
    void addMessageObjectType(zorClient_opaqueMsg_pt msgPtr, MsgProperties* msg_p);
    void addCustomProperties(zorClient_opaqueMsg_pt msgPtr);
    void addReplyTo(zorClient_opaqueMsg_pt msgPtr, const MsgProperties* msg_p);
    void addCorrelationTag(zorClient_opaqueMsg_pt msgPtr, MsgProperties* msg_p);
    // The structured contents of a message whose description has an id:
    // a user description (id from PUBSUB_SDM_ID_USER_DEF_BASE) or a canned
    // message. Resets the message first; throws when it cannot be built.
    void addStructuredContent(zorClient_opaqueMsg_pt pubMsg, std::size_t producerIndex,
                              const SdmProperties& sdm);
    void addPartitionKey(zorClient_opaqueMsg_pt msgPtr, const MsgProperties* msg_p);
    void addPriorityAndHttpFields(zorClient_opaqueMsg_pt msgPtr);
    // The reply-to topic of msg_p into buffer (ZORCLIENT_REPLY_TO_MAX_SIZE
    // bytes): the topic and the postfix, or the session's own inbox. False
    // when the postfixed topic does not fit (logged); a failure to read the
    // inbox throws.
    bool replyToTopic(const MsgProperties* msg_p, char* buffer, std::size_t size);
    void setToolDataAsPropertiesImpl(MsgProperties* msg_p, zorClient_opaqueMsg_pt msgPtr);
    void addTraceInfo(zorClient_opaqueContainer_pt container, MsgProperties* msg_p);
    // "CLIENT <id>: <text>\n" as a PubSubException.
    [[noreturn]] void throwClientError(const std::string& text) const;

    // Event handler parts (ClientEvents.cpp).
    void onChannelDown(const LibraryError& error);
    void onPublishAcknowledgement(zorClient_session_eventCallbackInfo_pt eventInfo_p);
    void onPublishRejected(zorClient_session_eventCallbackInfo_pt eventInfo_p,
                           const LibraryError& error);
    bool wantPubAckOrderCheck() const;

    std::vector<zorClient_opaqueMsg_pt> pubMsgsList_m;
    std::vector<MsgVector> psvMsgsList_m;
    // The session property array, kept for the life of the client.
    PropertyArray sdkprops_m;
    // Dispatch records by demultiplexing id; std::map keeps their addresses.
    std::map<std::string, DemuxCallbackData> demuxDataMap_m;
    // Publish acknowledgement events since the last statistics reset.
    std::atomic<INT64> numMsgsAcked_m{0};
    // Highest message id the broker acknowledged; the publisher resumes
    // behind it after a replication reconnect.
    std::atomic<UINT64> highestCorrelationTagValueAcked_m{0};
    std::unique_ptr<UINT16[]> randomNumOpaqueStateClientAck_mp;
    // Scratch aggregate handed out by getRxStatsImpl (caller's thread).
    PerfStats rxStats_m;
    // Owns what currentMsg_mp of the base points at.
    std::unique_ptr<Message> currentMessage_m;
};

}  // namespace zorvane::pubsub
