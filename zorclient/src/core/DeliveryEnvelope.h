// One direct delivery of a broker copy to one receiver, as it waits in the receiver's context
// queue: a reference to the shared, immutable WireMessage plus what belongs to this delivery
// alone (discard indication, topic sequence number, consumer ids). It is the payload of a
// Delivery event; its PayloadOps make the receive message on the context thread right before
// the callback (WireMessage::materialize) and give everything back after. Deliveries from
// endpoints, which carry more (message id, redelivery), are payloads of their own kind.
//
// Most deliveries (at most one consumer id) keep these details in the payload itself, which
// travels inside the queue slot: the sender writes and the receiver reads no further cache line.
// A delivery with more consumer ids has an envelope object of one cache line, from a ChunkPool
// like broker copies: made on the sender's thread, released on the receiver's, no allocation
// per message once warm.
//
// Egress accounting: a delivery may count its size against the receiver's bounded egress
// (Egress): added by the broker when it queues the delivery, taken off when the payload is
// released, whichever thread does that. The Egress must outlive the payload (the receiving
// session owns it, and its queued deliveries keep the session alive).
#pragma once

#include <atomic>
#include <cstdint>

#include "core/Event.h"
#include "core/WireMessage.h"

namespace zorvane::zorclient {

class alignas(64) DeliveryEnvelope {
  public:
    // Bytes of one receiver's deliveries that are queued or being handled, as two running
    // totals on lines of their own: the producer adds to one and the receiver to the other, so
    // that neither takes the other's line for every message. The producer reads the
    // receiver's total only when its own view says the limit is near (admits()).
    struct Egress {
        // Producer side: written by make() only, which its callers serialise (the broker's
        // lock).
        alignas(64) std::atomic<std::int64_t> queued{0};
        std::int64_t releasedSeen = 0;  // released as the producer last read it
        // Receiver side: whoever releases a payload.
        alignas(64) std::atomic<std::int64_t> released{0};

        // Producer: whether a delivery of size bytes fits under limit. A receiver with nothing
        // waiting takes any single message.
        bool admits(std::int64_t size, std::int64_t limit) noexcept {
            const std::int64_t queuedNow = queued.load(std::memory_order_relaxed);
            std::int64_t waiting = queuedNow - releasedSeen;
            if (waiting > 0 && waiting + size > limit) {
                releasedSeen = released.load(std::memory_order_relaxed);
                waiting = queuedNow - releasedSeen;
            }
            return waiting <= 0 || waiting + size <= limit;
        }
    };

    // What a direct delivery adds to the message.
    struct Direct {
        zorClient_int64_t topicSequenceNumber = 0;  // 0: the sender's, if it set one
        bool discardIndication = false;
        const zorClient_uint32_t* consumerIds_p = nullptr;  // copied
        std::uint32_t consumerIdCount = 0;
    };

    // Consumer ids kept in the envelope itself; more go to a data block.
    static constexpr std::uint32_t INLINE_CONSUMER_IDS = 4;

    // A payload for one delivery of wire: takes over one reference on wire that the caller
    // holds. egress_p may be null (no accounting), else size is added to it here and taken off
    // at release; calls with the same egress_p must not overlap. Throws std::bad_alloc (nothing
    // is then taken; the reference stays the caller's).
    static MessagePayload make(WireMessage* wire_p, const Direct& delivery, Egress* egress_p,
                               std::int64_t size);

  private:
    // The operations of envelope payloads, and of payloads that carry the details themselves.
    static const PayloadOps OPS;
    static const PayloadOps INLINE_OPS;

    static MessagePayload makeEnvelope(WireMessage* wire_p, const Direct& delivery,
                                       Egress* egress_p, std::int64_t size);
    static Message* makeRxMessage(MessagePayload& payload, bool lastUse) noexcept;
    static void release(MessagePayload& payload) noexcept;
    static Message* makeRxMessageInline(MessagePayload& payload, bool lastUse) noexcept;
    static void releaseInline(MessagePayload& payload) noexcept;

    WireMessage* wire_mp = nullptr;  // null once a message took over the reference
    Egress* egress_mp = nullptr;
    zorClient_int64_t topicSequenceNumber_m = 0;
    std::uint32_t size_m = 0;
    std::uint32_t idCount_m = 0;
    DataBlock* idBlock_mp = nullptr;  // consumer ids beyond INLINE_CONSUMER_IDS
    zorClient_uint32_t ids_m[INLINE_CONSUMER_IDS] = {};
    bool discardIndication_m = false;
};

}  // namespace zorvane::zorclient
