// What a context's event queue carries: one Event per callback to run on the context thread.
//
// Kinds:
// - Delivery: "a message for session S / flow F". The target is the session or the flow; the
//   payload is an owning reference to an immutable broker message, opaque to core: core only
//   hands it to the payload's operations (make the application's receive message, release).
//   Fan-out to N receivers queues N deliveries, each with a payload of its own that refers to
//   the one shared broker message.
// - SessionEvent, FlowEvent, CacheEvent: a zorClient event with its texts and error info in a
//   ControlRecord from the context's pool.
// - UserCallback: an application function to run on the context thread
//   (_zorClient_messageDispatcher_invokeUserCallback).
// - Retire: the context's own reference to a session that was removed from it. It queues
//   behind every delivery that borrowed that reference (see below), so the session lives until
//   they are all taken out; it runs no callback.
//
// Ownership: a queued Event owns one counted reference to its target, its payload (Delivery) or
// its record (the others). Whoever takes it out of the queue ends them: the target's
// dispatchEvent() or discardEvent() runs, then the context releases record and target.
// A delivery to a session borrows the context's reference instead (borrowsTarget): the sender
// and the context thread would otherwise both write the session's count for every message, a
// cache line taken back and forth between their processors. It is safe because a session's
// broker connection ends before the session leaves its context, and its Retire event comes
// behind every delivery queued before that.
//
// The struct is trivially copyable and small (56 bytes) so that a queue slot with its sequence
// number is one cache line.
#pragma once

#include <cstddef>
#include <cstdint>

#include "core/RefCounted.h"
#include "zorClient.h"

namespace zorvane::zorclient {

class Session;

enum class EventKind : std::uint8_t {
    Delivery,
    SessionEvent,
    FlowEvent,
    CacheEvent,
    UserCallback,
    Retire
};

class Message;
struct MessagePayload;

// How core treats a payload it cannot look into. The functions are given by the message layer;
// all are noexcept and may run on any thread.
struct PayloadOps {
    // Makes the message the receive callback gets (counted in the message pool statistics);
    // null when that is not possible (the delivery is then dropped). With lastUse the caller
    // makes no further message from this payload and releases it right after: the message may
    // then take over what the payload holds on the broker message instead of sharing it. The
    // payload must be released either way.
    Message* (*makeRxMessage_p)(MessagePayload& payload, bool lastUse) noexcept;
    // Gives up what the payload holds.
    void (*release_p)(MessagePayload& payload) noexcept;
    // Bytes from object_p that making the message reads first: the context thread asks for
    // them while it handles the event before (a hint; 0 for none).
    std::size_t prefetchBytes;
};

// An owning reference to a broker message. What differs per receiver (consumer ids, discard
// indication, redelivery, the flow's message id) cannot live in a shared message: a payload
// kind keeps it by value in words, or in a per-receiver envelope that object_p points to.
// Only ops_p interprets object_p and words; a payload without ops_p holds nothing.
struct MessagePayload {
    void* object_p;
    const PayloadOps* ops_p;
    std::uint64_t words[3] = {};

    void release() noexcept {
        if (ops_p != nullptr && ops_p->release_p != nullptr) {
            ops_p->release_p(*this);
        }
        object_p = nullptr;
        ops_p = nullptr;
    }
};

// The texts and numbers of a session, flow or cache event. Records come from the context's
// pool (no allocation once the pool is warm); the producer fills one, the context thread reads
// it and gives it back.
struct ControlRecord {
    static constexpr std::size_t TEXT_SIZE = 256;

    int event = 0;  // zorClient_session_event_t, zorClient_flow_event_t or zorCache_event
    zorClient_session_responseCode_t responseCode = 0;
    // With hasError the context thread's error info is set to these before the callback runs;
    // without, it is cleared.
    bool hasError = false;
    zorClient_subCode_t subCode = ZORCLIENT_SUBCODE_OK;
    char errorStr[ZORCLIENT_ERRORINFO_STR_SIZE] = {0};
    char info[TEXT_SIZE] = {0};  // info_p of the callback
    void* correlation_p = nullptr;
    // Events that end an operation (a cache request): its id and result.
    std::uint64_t requestId = 0;
    zorClient_returnCode_t rc = ZORCLIENT_OK;

    void reset() noexcept { *this = ControlRecord(); }
    // Copies text into info (cut to fit).
    void setInfo(const char* text_p) noexcept;
    // hasError with subCode, responseCode and the text.
    void setError(zorClient_subCode_t code, zorClient_session_responseCode_t response,
                  const char* text_p) noexcept;
    // hasError from the calling thread's error info.
    void setErrorFromLastError() noexcept;
};

class EventTarget;

struct Event {
    EventKind kind = EventKind::SessionEvent;
    // target_p is not counted: the event borrows the context's reference (deliveries to a
    // session only).
    bool borrowsTarget = false;
    // The session's connection epoch when the event was made: events of an epoch that a user
    // disconnect ended are dropped (see Session).
    std::uint32_t epoch = 0;
    EventTarget* target_p = nullptr;  // counted reference unless borrowsTarget
    union {
        MessagePayload delivery;
        ControlRecord* control_p;
        struct {
            zorClient_messageDispatcher_userCallbackFunc_t function_p;
            zorClient_opaqueTransactedSession_pt handle_p;  // handed back to the function
            void* user_p;
        } callback;
    };

    Event() noexcept : delivery{nullptr, nullptr} {}
};

// Something events are addressed to: a session, or (later) a flow or cache session. All
// methods run on the context thread.
class EventTarget : public RefCounted {
  public:
    // The session that the target belongs to (itself for a session): destroying it waits
    // until no callback of it runs.
    virtual Session* ownerSession() noexcept = 0;
    // False when the event must be dropped (target destroyed, epoch over).
    virtual bool acceptsEvent(const Event& event) const noexcept = 0;
    // Runs the event's callback. Must not keep the event's payload or record.
    virtual void dispatchEvent(Event& event) noexcept = 0;
    // The event is dropped: give up what it owns besides record and target (the payload).
    virtual void discardEvent(Event& event) noexcept {
        if (event.kind == EventKind::Delivery) {
            event.delivery.release();
        }
    }
    // A timer this target set (Context::addTimer) is due; token as given.
    virtual void onTimer(std::uint64_t /*token*/) noexcept {}
};

}  // namespace zorvane::zorclient
