// A session: one connection of the application to a broker, through the Backend that its host
// list selects, with its events delivered on its context's thread.
//
// States (state()):
//   Idle          created, disconnected by the application, or a connect failed
//   Up            connected
//   Reconnecting  the connection was lost; retries run on timers of the context
//   Down          the connection was lost for good (DOWN_ERROR was emitted)
// Events: UP_NOTICE after every successful connect (blocking or not), CONNECT_FAILED_ERROR for
// a failed non-blocking connect, RECONNECTING_NOTICE then RECONNECTED_NOTICE or DOWN_ERROR after
// a loss ("SESSION_RECONNECT_RETRIES" 0: DOWN_ERROR at once). A disconnect by the application
// emits nothing and drops the session events still queued from before it (its epoch ends).
// CAN_SEND follows a send that returned ZORCLIENT_WOULD_BLOCK once the session can send again;
// SUBSCRIPTION_OK confirms a subscription change made with REQUEST_CONFIRM.
//
// Direct messaging: sends go through the active backend; while the session reconnects a
// blocking send waits for the end of it (up to "SESSION_WRITE_TIMEOUT_MS") and a non-blocking
// one returns ZORCLIENT_WOULD_BLOCK. Subscriptions are kept in SessionSubscriptions, applied to
// the broker, and applied again after a reconnect with "SESSION_REAPPLY_SUBSCRIPTIONS" "1".
// Deliveries run the dispatch callback of the matching dispatch entries, or else the session's
// receive callback. Requests wait in a RequestTable, answered straight from the broker.
//
// Threads: the API operations are thread-safe (a mutex guards configuration, backends and
// state changes; it is never held while the application is called). Sends take no mutex: they
// read the state and the active backend atomically. Subscription changes are serialised by a
// mutex of their own, taken after the session mutex where both are needed (connect and
// reconnect apply subscriptions again) and before broker locks. requestFailure() is
// async-signal-safe. onAttention(), onTimer() and the EventTarget methods run on the context
// thread. BackendListener methods run on any thread (a broker's, under its locks) and only set
// flags and queue: they never take the session's mutexes, so the order session mutex ->
// subscription mutex -> broker locks cannot deadlock with them.
#pragma once

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

#include "core/Backend.h"
#include "core/Context.h"
#include "core/Event.h"
#include "core/RequestTable.h"
#include "core/SessionConfig.h"
#include "core/SessionStats.h"
#include "core/SessionSubscriptions.h"

namespace zorvane::zorclient {

class Session final : public EventTarget, private BackendListener {
  public:
    enum class State : std::uint8_t { Idle, Up, Reconnecting, Down };

    struct Callbacks {
        zorClient_session_eventCallbackFunc_t event_p = nullptr;
        void* eventUser_p = nullptr;
        zorClient_session_rxMsgCallbackFunc_t rx_p = nullptr;
        void* rxUser_p = nullptr;
    };

    // A session on context with the checked creation properties; generates a client name when
    // none is given. backendProperties: the backend configuration keys ("EMBEDDED_..."), the
    // global array's first.
    Session(Context& context, const SessionConfig::Changes& properties,
            std::vector<PropertyList::Entry> backendProperties, const Callbacks& callbacks);

    // Set once, right after the handle table gave the session its handle.
    void setHandle(zorClient_opaqueSession_pt handle) noexcept { handle_m = handle; }
    zorClient_opaqueSession_pt handle() const noexcept { return handle_m; }
    Context& context() noexcept { return *context_m; }
    State state() const noexcept { return state_m.load(std::memory_order_acquire); }
    SessionStats& stats() noexcept { return stats_m; }

    // --- API operations (error info naming function_p on failure) -------------------------

    zorClient_returnCode_t connect(const char* function_p);
    zorClient_returnCode_t disconnect(const char* function_p);
    // The start of zorClient_session_destroy, before the handle is retired: calls that wait
    // (blocking sends, requests) end now, so that retiring does not wait for them.
    void markClosing() noexcept;
    // The end of zorClient_session_destroy, after the handle was retired: disconnects, and
    // returns when no callback of the session runs or will run (at once on the context thread).
    void close() noexcept;
    zorClient_returnCode_t getProperty(const char* name_p, char* buffer_p, std::size_t size,
                                       const char* function_p);
    zorClient_returnCode_t modifyProperties(const PropertyList& list, const char* function_p);
    // 1, 0, or -1 with the error info set.
    int isCapable(const char* name_p, const char* function_p);
    zorClient_returnCode_t getCapability(const char* name_p, zorClient_field_t* field_p,
                                         const char* function_p);
    // Async-signal-safe: flags the failure and wakes the context. False when the session is not
    // up.
    bool requestFailure() noexcept;
    void logPublisherState(zorClient_log_level_t level);
    void postUserCallback(zorClient_messageDispatcher_userCallbackFunc_t function_p,
                          zorClient_opaqueTransactedSession_pt handle_p, void* user_p);

    // Direct messaging (SessionSend.cpp, SessionSubscribe.cpp). msg handles are checked here.
    zorClient_returnCode_t send(zorClient_opaqueMsg_pt msg, const char* function_p);
    zorClient_returnCode_t sendMultiple(const zorClient_opaqueMsg_pt* msgs_p, std::uint32_t count,
                                        std::uint32_t* written_p, const char* function_p);
    zorClient_returnCode_t sendRequest(zorClient_opaqueMsg_pt msg, zorClient_opaqueMsg_pt* reply_p,
                                       std::uint32_t timeoutMs, const char* function_p);
    zorClient_returnCode_t sendReply(zorClient_opaqueMsg_pt request, zorClient_opaqueMsg_pt reply,
                                     const char* function_p);
    // Adds (add) or removes a subscription to topic_p; with dispatch_p a dispatch entry.
    zorClient_returnCode_t changeSubscription(
        bool add, const char* topic_p, zorClient_subscribeFlags_t flags,
        const SessionSubscriptions::DispatchTarget* dispatch_p, void* correlation_p,
        const char* function_p);

    // --- Context thread ---------------------------------------------------------------------

    // Acts on a failure flagged by requestFailure() or by the backend.
    void onAttention() noexcept;

    Session* ownerSession() noexcept override { return this; }
    bool acceptsEvent(const Event& event) const noexcept override;
    void dispatchEvent(Event& event) noexcept override;
    void onTimer(std::uint64_t token) noexcept override;

  private:
    ~Session() override = default;

    // BackendListener
    void onConnectionLost(const ConnectionLoss& loss) noexcept override;
    bool onDelivery(EventTarget* flowTarget_p, MessagePayload payload) noexcept override;
    bool onReply(std::uint64_t requestId, MessagePayload payload) noexcept override;
    void onPublishOutcome(std::uint64_t publishId, void* correlationTag_p,
                          zorClient_subCode_t subCode, const char* reason_p) noexcept override;
    void onFlowEvent(EventTarget* flowTarget_p, zorClient_flow_event_t event,
                     zorClient_subCode_t subCode, const char* info_p) noexcept override;
    void onCacheOutcome(EventTarget* cacheTarget_p, std::uint64_t requestId,
                        zorClient_returnCode_t rc, zorClient_subCode_t subCode) noexcept override;

    // Under mutex_m: tries the hosts in order; on success the active backend and identity are
    // set. On failure the error info says why (naming function_p).
    zorClient_returnCode_t attemptConnect(const char* function_p);
    ConnectRequest makeConnectRequest() const;
    // Under mutex_m, on the context thread: the connection is gone.
    void handleLoss(const ConnectionLoss& loss);
    void scheduleReconnect();
    // Queues a session event for this session. error_p: the error info it carries, or null.
    void emitEvent(zorClient_session_event_t event, zorClient_session_responseCode_t response,
                   const char* info_p, const zorClient_errorInfo* error_p,
                   void* correlation_p = nullptr) noexcept;
    // Queues an event with a record for target (a flow or cache session).
    void emitTargetEvent(EventKind kind, EventTarget* target_p, ControlRecord* record_p) noexcept;
    Backend* connectedBackend() const noexcept;
    // Under mutex_m: stores state and wakes the sends that wait for it.
    void setState(State state) noexcept;
    // Under mutex_m, after a (re)connect: applies the subscriptions the broker must hold again
    // (failures become SUBSCRIPTION_ERROR events), then the state becomes Up.
    void becomeUp() noexcept;
    // Under mutex_m, when the connection is gone: without reapplying, the broker's copy of the
    // subscriptions is gone for good.
    void connectionEnded() noexcept;
    // A CAN_SEND event when a send returned ZORCLIENT_WOULD_BLOCK since the last one.
    void emitCanSendIfOwed() noexcept;

    // Send path (SessionSend.cpp).
    // The backend a send may use now, or null.
    Backend* sendingBackend() const noexcept {
        return state_m.load(std::memory_order_acquire) == State::Up
                   ? active_m.load(std::memory_order_acquire)
                   : nullptr;
    }
    // Publishes one message (a request when requestId is not 0), waiting for the transport as
    // the send mode says. overrides_p: what a reply carries instead.
    zorClient_returnCode_t publishOne(const Message& msg, const WireOverrides* overrides_p,
                                      std::uint64_t requestId, const char* function_p);
    // The session cannot send right now: waits for the end of a reconnect (blocking sends) and
    // returns ZORCLIENT_OK to try again, or fails / returns ZORCLIENT_WOULD_BLOCK.
    zorClient_returnCode_t awaitTransport(std::chrono::steady_clock::time_point deadline,
                                          bool* blockedCounted_p, const char* function_p);
    void countSent(const PublishResult& result) noexcept;

    // Receive path (SessionEvents.cpp).
    void dispatchDelivery(MessagePayload& payload) noexcept;
    void countReceived(const Message& msg) noexcept;

    const Ref<Context> context_m;
    zorClient_opaqueSession_pt handle_m = nullptr;
    const Callbacks callbacks_m;
    const std::vector<PropertyList::Entry> backendProperties_m;

    std::atomic<State> state_m{State::Idle};
    std::atomic<Backend*> active_m{nullptr};  // the backend of the last successful connect
    std::atomic<bool> failurePending_m{false};
    std::atomic<bool> canSendOwed_m{false};
    std::atomic<bool> closed_m{false};
    std::atomic<std::uint32_t> epoch_m{0};
    SessionStats stats_m;

    mutable std::mutex mutex_m;
    std::condition_variable stateChanged_m;  // with mutex_m
    SessionConfig config_m;
    // Settings that cannot change on an existing session, read once.
    bool sendBlocking_m = true;
    bool subscribeBlocking_m = true;
    bool ignoreDuplicates_m = false;
    bool reapplySubscriptions_m = false;
    std::chrono::milliseconds writeTimeout_m{0};
    // One backend per host entry, made when first tried; they live as long as the session so
    // that the peer texts handed out by getCapability stay valid.
    std::vector<std::unique_ptr<Backend>> backends_m;
    SessionIdentity identity_m;
    std::uint64_t reconnectToken_m = 0;
    std::int64_t reconnectAttempts_m = 0;

    std::mutex subscriptionsMutex_m;
    SessionSubscriptions subscriptions_m;           // under subscriptionsMutex_m
    std::atomic<std::size_t> dispatchEntries_m{0};  // read without the mutex
    std::vector<SessionSubscriptions::DispatchTarget> dispatchScratch_m;  // context thread

    RequestTable requests_m;
};

}  // namespace zorvane::zorclient
