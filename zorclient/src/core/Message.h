// A library message (zorClient_opaqueMsg_pt): the header fields and parts an application sets
// before a send, or reads after a delivery. Messages live in MessagePool slots and are reused;
// a reset brings one back to the state of a fresh allocation.
//
// What a send carries is split from what a delivery adds: CarriedHeader and the parts travel in
// the broker copy (WireMessage); DeliveryState is written only when a message is made for a
// delivery and never travels, so a received message that is changed and sent on carries no
// message id, redelivered flag or broker-assigned topic sequence number of its earlier life.
//
// Not thread-safe: a message is used by one thread at a time (the application's rule); it may
// be freed on another thread than the one that made it.
#pragma once

#include <cstdint>

#include "core/DataBlock.h"
#include "core/Part.h"
#include "zorClientMsg.h"

namespace zorvane::zorclient {

class Container;
class WireMessage;

// The parts of a message, in the order a dump shows them. The first ones are texts.
enum class PartId : std::uint8_t {
    DESTINATION,
    REPLY_TO,
    CORRELATION_ID,
    APP_MESSAGE_ID,
    APP_MSG_TYPE,
    SENDER_ID,
    HTTP_CONTENT_TYPE,
    HTTP_CONTENT_ENCODING,
    USER_DATA,
    USER_PROPERTIES,
    XML,
    ATTACHMENT,
    COUNT
};
constexpr int NUM_PARTS = static_cast<int>(PartId::COUNT);
constexpr bool isTextPart(PartId id) noexcept {
    return id <= PartId::HTTP_CONTENT_ENCODING;
}

// What the binary attachment holds: raw bytes, or the encoding of a structured value.
enum class AttachmentKind : std::uint8_t { RAW, MAP, STREAM, STRING };

// Header fields a send carries to every receiver; plain values.
struct CarriedHeader {
    zorClient_destinationType_t destinationType = ZORCLIENT_NULL_DESTINATION;
    zorClient_destinationType_t replyToType = ZORCLIENT_NULL_DESTINATION;
    zorClient_uint32_t deliveryMode = ZORCLIENT_DELIVERY_MODE_DIRECT;  // 0, 0x10 or 0x20
    zorClient_uint32_t classOfService = ZORCLIENT_COS_1;
    zorClient_int32_t priority = ZORCLIENT_PRIORITY_NONE;
    zorClient_int64_t timeToLiveMs = 0;  // 0: none
    bool dmqEligible = false;
    bool elidingEligible = false;
    bool deliverToOne = false;
    bool ackImmediately = false;
    bool isReply = false;
    bool hasSenderTimestamp = false;
    bool hasSequenceNumber = false;
    AttachmentKind attachmentKind = AttachmentKind::RAW;
    zorClient_int64_t senderTimestamp = 0;
    zorClient_int64_t sequenceNumber = 0;
    zorClient_int64_t senderTopicSequenceNumber = 0;  // set by the sender; 0: none
    // The library's correlation of a request (zorClient_session_sendRequest), 0 for none. A
    // reply made from the received request (sent back as it is, or by
    // zorClient_session_sendReply) carries it back, which is how the requester knows its reply
    // from any other message on its inbox. Not visible through the API, so that the
    // application's own correlation id stays the application's.
    std::uint64_t requestCorrelation = 0;

    bool operator==(const CarriedHeader&) const = default;
};

// What one delivery adds to a received message.
struct DeliveryState {
    bool delivered = false;  // made for a delivery, not by zorClient_msg_alloc
    bool hasMsgId = false;
    bool redelivered = false;
    bool discardIndication = false;
    bool hasReplicationGroupMessageId = false;
    zorClient_msgId_t msgId = 0;
    zorClient_int32_t deliveryCount = 0;
    zorClient_int64_t topicSequenceNumber = 0;  // as delivered (the sender's or the broker's)
    zorClient_cacheStatus_t cacheStatus = ZORCLIENT_CACHE_LIVE_MESSAGE;
    zorClient_uint64_t cacheRequestId = 0;
    zorClient_uint64_t expirationMs = 0;
    zorClient_replicationGroupMessageId_t replicationGroupMessageId = {};
};

class Message {
  public:
    static constexpr std::uint32_t INLINE_CONSUMER_IDS = 8;

    Message() = default;
    Message(const Message&) = delete;
    Message& operator=(const Message&) = delete;

    zorClient_opaqueMsg_pt handle() const noexcept { return handle_m; }
    void setHandle(zorClient_opaqueMsg_pt handle) noexcept { handle_m = handle; }

    // The mutable accessor marks the part as touched (see touchedParts()).
    Part& part(PartId id) noexcept {
        touched_m |= static_cast<std::uint16_t>(1u << static_cast<int>(id));
        return parts_m[static_cast<int>(id)];
    }
    const Part& part(PartId id) const noexcept { return parts_m[static_cast<int>(id)]; }
    // Bit i: part i was handed out for writing since the last clear(). Every part that is present
    // or keeps a block is among them, so a reset and a send look at these parts only; a
    // message carries two or three of its twelve parts, each on a cache line of its own.
    std::uint32_t touchedParts() const noexcept { return touched_m; }
    // The mutable accessor marks the header as touched (see headerTouched()).
    CarriedHeader& header() noexcept {
        headerTouched_m = true;
        return header_m;
    }
    const CarriedHeader& header() const noexcept { return header_m; }
    // Sets the destination type alone, leaving the header untouched.
    void setDestinationType(zorClient_destinationType_t type) noexcept {
        header_m.destinationType = type;
    }
    // False while no header field but the destination type was handed out for writing since
    // the last clear(): the header is then CarriedHeader{} with that type, and a send need
    // not compare nor copy it.
    bool headerTouched() const noexcept { return headerTouched_m; }
    DeliveryState& delivery() noexcept { return delivery_m; }
    const DeliveryState& delivery() const noexcept { return delivery_m; }

    // Correlation tag: local to the sender, never carried.
    bool hasCorrelationTag() const noexcept { return hasCorrelationTag_m; }
    void* correlationTag() const noexcept { return correlationTag_mp; }
    zorClient_uint32_t correlationTagSize() const noexcept { return correlationTagSize_m; }
    void setCorrelationTag(void* tag_p, zorClient_uint32_t size) noexcept;

    // Consumer ids of a delivery. setConsumerIds copies them (into a data block beyond
    // INLINE_CONSUMER_IDS); throws std::bad_alloc.
    void setConsumerIds(const zorClient_uint32_t* ids_p, std::uint32_t count);
    std::uint32_t consumerIdCount() const noexcept { return consumerIdCount_m; }
    zorClient_uint32_t consumerId(std::uint32_t index) const noexcept;

    // The broker copy this message's SHARED parts point into; the message holds a reference.
    WireMessage* wire() const noexcept { return wire_mp; }
    // Refers to wire_p (null: to none) instead of the current copy, whose reference is given
    // back. The message takes a reference of its own, or with adopt takes over one the caller
    // holds.
    void attachWire(WireMessage* wire_p, bool adopt = false) noexcept;
    // Lets go of the copy without giving back its reference, which goes to the caller.
    void detachWire() noexcept { wire_mp = nullptr; }

    // Replaces the attachment: closes its containers and sets its kind.
    void clearAttachment() noexcept;

    // Back to a fresh message: containers closed, blocks and the broker copy let go.
    void clear() noexcept;

    // Makes this (fresh) message an independent copy of other: own parts are copied, parts of
    // a broker copy are shared with it. Throws std::bad_alloc.
    void copyFrom(const Message& other);

    // Open containers on this message's parts (roots of container trees), for Container.
    Container*& firstContainer() noexcept { return firstContainer_mp; }

  private:
    zorClient_opaqueMsg_pt handle_m = nullptr;
    CarriedHeader header_m;
    DeliveryState delivery_m;
    bool hasCorrelationTag_m = false;
    zorClient_uint32_t correlationTagSize_m = 0;
    void* correlationTag_mp = nullptr;
    std::uint32_t consumerIdCount_m = 0;
    zorClient_uint32_t consumerIds_m[INLINE_CONSUMER_IDS] = {};
    DataBlock* consumerIdBlock_mp = nullptr;
    WireMessage* wire_mp = nullptr;
    Container* firstContainer_mp = nullptr;
    std::uint16_t touched_m = 0;
    bool headerTouched_m = false;
    static_assert(NUM_PARTS <= 16, "touched parts are a 16-bit mask");
    Part parts_m[NUM_PARTS];
};

}  // namespace zorvane::zorclient
