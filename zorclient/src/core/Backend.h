// The one interface through which core reaches a broker. Each backend implements it: the
// embedded broker (embedded/EmbeddedBackend) and, later, the network backends. Nothing above
// core knows which one a session uses; core knows only this file and BackendFactory.
//
// One Backend object serves one session for one entry of its host list ("SESSION_HOST"
// "a,b,c" gives up to three, tried in order). It lives as long as the session.
//
// Results and errors: every operation returns a zorClient_returnCode_t. On failure it has set
// the calling thread's error info (LastError) with a subcode and a text a user can act on;
// core passes that on unchanged, or copies it into an event. ZORCLIENT_IN_PROGRESS means the
// outcome follows through the BackendListener.
//
// Threads: core serialises connect, disconnect, rename and dropConnection of one backend (they
// run under the session's mutex). Every other operation may be called from any thread, also
// concurrently with each other and with those four; called while not connected it fails with
// ZORCLIENT_SUBCODE_SESSION_NOT_ESTABLISHED. No operation calls the application, and none calls
// the BackendListener while the caller would deadlock on it (listener methods only queue).
// Operations may block (a network backend waits for its broker) but never on the context
// thread's progress, so core may call them from inside a callback.
//
// The request structs describe what the application asked for; their fields grow with the
// features that use them.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "api/PropertyList.h"
#include "core/Event.h"
#include "zorClient.h"

namespace zorvane::zorclient {

class Message;         // core/Message: the application's message behind zorClient_opaqueMsg_pt
struct WireOverrides;  // core/WireMessage: what a request or reply carries instead

// Who the session is on the broker, as the broker sees it after a connect or rename.
struct SessionIdentity {
    std::string clientName;  // unique on the broker among connected sessions
    std::string inboxTopic;  // "SESSION_REPLY_TO_DEFAULT_DEST": replies to the session
};

// The peer as zorClient_session_getCapability reports it.
struct PeerInfo {
    std::string routerName;
    std::string platform;
    std::string softwareVersion;
    std::string softwareDate;
    std::string portType;
    std::uint32_t portSpeed = 0;
    std::uint32_t maxGuaranteedMsgSize = 0;
    std::uint32_t maxDirectMsgSize = 0;
};

struct ConnectRequest {
    std::string clientName;  // never empty: core generates one when the application gave none
    std::string username;
    std::string password;
    std::string vpnName;
    std::string applicationDescription;
    std::string authenticationScheme;  // "AUTHENTICATION_SCHEME_..."
    std::string oauth2AccessToken;
    std::string oidcIdToken;
    bool noLocal = false;  // "SESSION_NO_LOCAL"
    std::int64_t subscriberLocalPriority = 1;
    std::int64_t subscriberNetworkPriority = 1;
    std::int64_t connectTimeoutMs = 0;
    // Bytes of direct messages that may wait for the session at once; beyond them the broker
    // discards and marks the next delivered message. A single message always fits.
    std::int64_t egressLimitBytes = 0;
    // Backend configuration keys ("EMBEDDED_..."): the global array's first, then the
    // session's; the last of a key wins. A backend that creates shared state (a broker
    // instance) configures it from these.
    std::vector<PropertyList::Entry> backendProperties;
};

// Why an established connection ended without the application asking for it.
struct ConnectionLoss {
    zorClient_subCode_t subCode = ZORCLIENT_SUBCODE_COMMUNICATION_ERROR;
    zorClient_session_responseCode_t responseCode = 0;
    std::string reason;
};

// A direct topic subscription of the session, or a topic subscription added to an endpoint
// ("ENDPOINT_ID" "2": a queue) or to another client's session ("ENDPOINT_ID" "4").
struct SubscriptionRequest {
    std::string_view topic;
    zorClient_subscribeFlags_t flags = 0;
    std::string_view queueName;         // non-empty: subscribe this queue
    std::string_view onBehalfOfClient;  // non-empty: subscribe that client's session
    void* correlation_p = nullptr;      // SUBSCRIPTION_OK / _ERROR events carry it
};

// What the broker did with a published message, for the sender's statistics.
struct PublishResult {
    std::uint64_t bytes = 0;  // the message's size as the statistics count it
    bool noMatch = false;     // no subscriber matched: the broker discarded it
};

// One message to publish, direct or guaranteed by its delivery mode. The backend copies what it
// needs before it returns; the message is the sender's again at once.
struct PublishRequest {
    const Message* message_p = nullptr;
    // Fields the broker copy carries instead of the message's (replies); null for none.
    const WireOverrides* overrides_p = nullptr;
    // Filled on success when not null.
    PublishResult* result_p = nullptr;
    // Guaranteed messages: the publisher's sequence number (acknowledged in order) and the
    // correlation tag the application's acknowledgement event carries.
    std::uint64_t publishId = 0;
    void* correlationTag_p = nullptr;
    // Non-zero: staged in that transaction until commit (core's transacted session id).
    std::uint64_t transactionId = 0;
};

// A flow to bind: to a queue or durable topic endpoint, to a new temporary endpoint, or as a
// browser. The backend addresses the flow's deliveries and events to flowTarget_p.
struct FlowBindRequest {
    EventTarget* flowTarget_p = nullptr;
    std::string bindName;  // empty with durable false: a temporary endpoint
    bool isQueue = true;   // false: a topic endpoint
    bool durable = true;
    std::string topic;  // topic endpoints
    std::string selector;
    bool browser = false;
    bool noLocal = false;
    bool activeFlowIndication = false;
    bool clientAck = false;
    bool started = true;
    std::uint32_t windowSize = 255;
    std::int64_t maxUnackedMessages = -1;  // -1: unlimited
    bool requiredOutcomeFailed = false;
    bool requiredOutcomeRejected = false;
    std::string replayStartLocation;  // "", "BEGINNING", "DATE:...", or a message id text
    std::uint64_t transactionId = 0;  // non-zero: consumption belongs to that transaction
    std::vector<PropertyList::Entry> endpointProperties;  // "ENDPOINT_..." of a temporary one
};

struct FlowBinding {
    std::uint64_t flowId = 0;  // the backend's name of the bound flow
    std::string bindName;      // the endpoint's name (generated for temporary endpoints)
};

// Creating or deleting a durable endpoint.
struct EndpointRequest {
    std::string name;
    bool isQueue = true;
    bool ignoreExistsErrors = false;
    std::vector<PropertyList::Entry> properties;  // "ENDPOINT_..." keys as given
};

struct CacheRequest {
    EventTarget* cacheTarget_p = nullptr;  // receives the outcome (CacheEvent)
    std::string cacheName;
    std::string topic;
    std::uint64_t requestId = 0;
    zorClient_cacheRequestFlags_t flags = 0;
    zorClient_subscribeFlags_t subscribeFlags = 0;
    std::int64_t minSequence = -1;  // -1: open
    std::int64_t maxSequence = -1;
    std::int64_t maxMessages = 1;    // 0: all
    std::int64_t maxAgeSeconds = 0;  // 0: any age
    std::int64_t timeoutMs = 10000;
};

// What a backend reports outside of an operation. Implemented by core's Session. The embedded
// broker calls it on the sending thread under its own locks, a network backend on its I/O
// thread: implementations only record and queue, never block, never call the application and
// never call the backend.
class BackendListener {
  public:
    // The established connection ended (broker gone, transport lost, session taken down);
    // core runs the reconnect logic on the context thread.
    virtual void onConnectionLost(const ConnectionLoss& loss) noexcept = 0;

    // A message for the session (flowTarget_p null) or for one of its flows. On true the
    // payload now belongs to core; on false (no room: the receiver is too slow) it is still the
    // backend's, which counts the discard and marks the next delivered message.
    virtual bool onDelivery(EventTarget* flowTarget_p, MessagePayload payload) noexcept = 0;

    // A reply to request requestId (see Backend::request), handed straight to the waiting
    // requester. False when no request of that id waits (it timed out, was answered, or is
    // not this session's): core counts it in RX_REPLY_MSG_DISCARD and the payload is still the
    // backend's to release.
    virtual bool onReply(std::uint64_t requestId, MessagePayload payload) noexcept = 0;

    // A guaranteed message was accepted (subCode OK) or refused by the broker, in publish
    // order. correlationTag_p as given in the PublishRequest.
    virtual void onPublishOutcome(std::uint64_t publishId, void* correlationTag_p,
                                  zorClient_subCode_t subCode, const char* reason_p) noexcept = 0;

    // A flow event (up after a non-blocking bind, down, active, inactive, ...) for flowTarget_p.
    virtual void onFlowEvent(EventTarget* flowTarget_p, zorClient_flow_event_t event,
                             zorClient_subCode_t subCode, const char* info_p) noexcept = 0;

    // The end of a cache request that returned ZORCLIENT_IN_PROGRESS.
    virtual void onCacheOutcome(EventTarget* cacheTarget_p, std::uint64_t requestId,
                                zorClient_returnCode_t rc,
                                zorClient_subCode_t subCode) noexcept = 0;

  protected:
    ~BackendListener() = default;
};

class Backend {
  public:
    virtual ~Backend() = default;

    // --- Connection -------------------------------------------------------------------------

    // Connects (synchronously) under request.clientName. A name another connected session of
    // the same broker uses fails with ZORCLIENT_SUBCODE_CLIENT_NAME_ALREADY_IN_USE. On success
    // *identity_p tells who the session now is.
    virtual zorClient_returnCode_t connect(const ConnectRequest& request,
                                           SessionIdentity* identity_p) = 0;
    // Ends the connection gracefully; the listener hears nothing of it. Idempotent.
    virtual void disconnect() noexcept = 0;
    // Changes the client name of the connected session, keeping names unique on the broker.
    virtual zorClient_returnCode_t rename(const std::string& clientName,
                                          SessionIdentity* identity_p) = 0;
    // Ends the connection as a failure would (transport lost), e.g. for a forced failure, and
    // tells why into *loss_p. When the connection was already lost, tells the reason of that
    // loss. The listener hears nothing of it.
    virtual void dropConnection(ConnectionLoss* loss_p) noexcept = 0;

    virtual bool isConnected() const noexcept = 0;
    virtual const PeerInfo& peer() const noexcept = 0;

    // 1 when the broker offers capability name ("SESSION_CAPABILITY_..."), 0 when not, -1 for
    // a name the backend does not know.
    virtual int capability(std::string_view name) const noexcept = 0;

    // --- Direct messaging -------------------------------------------------------------------

    virtual zorClient_returnCode_t subscribe(const SubscriptionRequest& request) = 0;
    virtual zorClient_returnCode_t unsubscribe(const SubscriptionRequest& request) = 0;
    // Thread-safe: several threads publish on one session at once.
    virtual zorClient_returnCode_t publish(const PublishRequest& request) = 0;
    // Publishes request's message as a request: the broker gives it the session's inbox as
    // reply-to and requestId as its correlation; the reply comes through
    // BackendListener::onReply. The application's message keeps its own fields (the broker's
    // copy carries the inbox and correlation).
    virtual zorClient_returnCode_t request(const PublishRequest& request,
                                           std::uint64_t requestId) = 0;
    // Ends request requestId (answered, timed out or abandoned): later replies are discarded.
    virtual void endRequest(std::uint64_t requestId) noexcept = 0;
    // Publishes request's message as the reply to a received request message: core puts the
    // request's reply-to, the reply mark and its correlation in request.overrides_p.
    virtual zorClient_returnCode_t reply(const PublishRequest& request) = 0;

    // --- Guaranteed messaging ---------------------------------------------------------------

    // Binds a flow; blocking or not as the request's flow properties say (IN_PROGRESS: an
    // UP_NOTICE or BIND_FAILED_ERROR flow event follows).
    virtual zorClient_returnCode_t bindFlow(const FlowBindRequest& request,
                                            FlowBinding* binding_p) = 0;
    // Unbinds; unacknowledged messages go back to the endpoint; a temporary endpoint goes away.
    virtual zorClient_returnCode_t unbindFlow(std::uint64_t flowId) = 0;
    // Start or stop delivery to the flow.
    virtual zorClient_returnCode_t setFlowStarted(std::uint64_t flowId, bool started) = 0;
    virtual zorClient_returnCode_t ack(std::uint64_t flowId, std::uint64_t msgId) = 0;
    virtual zorClient_returnCode_t settle(std::uint64_t flowId, std::uint64_t msgId,
                                          zorClient_msgOutcome_t outcome) = 0;
    virtual zorClient_returnCode_t provision(const EndpointRequest& request) = 0;
    virtual zorClient_returnCode_t deprovision(const EndpointRequest& request) = 0;

    // --- Transactions (ids chosen by core, one per transacted session) -----------------------

    // ZORCLIENT_OK, ZORCLIENT_ROLLBACK, or a failure (COMMIT_STATUS_UNKNOWN, TIMEOUT, ...).
    virtual zorClient_returnCode_t commit(std::uint64_t transactionId) = 0;
    // Also used to end a transacted session: its open transaction is rolled back.
    virtual zorClient_returnCode_t rollback(std::uint64_t transactionId) = 0;

    // --- Cache ------------------------------------------------------------------------------

    // Cached messages arrive through onDelivery (marked as cache messages); the end is the
    // result (ZORCLIENT_OK, ZORCLIENT_INCOMPLETE with a subcode) or, with IN_PROGRESS,
    // BackendListener::onCacheOutcome.
    virtual zorClient_returnCode_t cacheRequest(const CacheRequest& request) = 0;
};

}  // namespace zorvane::zorclient
