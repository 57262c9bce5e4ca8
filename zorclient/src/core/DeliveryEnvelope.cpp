#include "core/DeliveryEnvelope.h"

#include <cstring>
#include <new>

#include "api/Logger.h"
#include "core/ChunkPool.h"

namespace zorvane::zorclient {

using EnvelopePool = ChunkPool<DeliveryEnvelope>;

static_assert(sizeof(DeliveryEnvelope) == 64, "an envelope is one cache line");

namespace {

// A delivery with at most one consumer id keeps its details in the payload itself, so that the
// sender makes and the receiver reads no object besides the queue slot:
//   object_p  the broker copy; null once a message took over the reference
//   words[0]  the Egress, 0 for none
//   words[1]  the topic sequence number
//   words[2]  bits 0..30 the size counted against the egress, bit 31 the discard indication,
//             bits 32..63 the consumer id (0: none; ids start at 1)
constexpr std::uint64_t DISCARD_BIT = std::uint64_t{1} << 31;
constexpr std::uint64_t SIZE_MASK = DISCARD_BIT - 1;

// What releasing a delivery gives back: its size to the receiver's egress, and its reference on
// the copy unless a message took that over (wire_p null).
void giveBack(DeliveryEnvelope::Egress* egress_p, std::int64_t size, WireMessage* wire_p) noexcept {
    if (egress_p != nullptr) {
        egress_p->released.fetch_add(size, std::memory_order_relaxed);
    }
    if (wire_p != nullptr) {
        wire_p->release();
    }
}

// A receive message for one delivery of wire_p (see WireMessage::materializeMessage); null
// when memory runs out.
Message* materializeOrLog(WireMessage* wire_p, const DeliveryInfo& info, bool adopt) noexcept {
    try {
        return wire_p->materializeMessage(info, adopt);
    } catch (const std::bad_alloc&) {
        ZC_LOG(ZORCLIENT_LOG_ERROR, "%s", "no memory for a received message; it is dropped");
        return nullptr;
    }
}

}  // namespace

const PayloadOps DeliveryEnvelope::OPS = {&DeliveryEnvelope::makeRxMessage,
                                          &DeliveryEnvelope::release, sizeof(DeliveryEnvelope)};
// The copy's header and the first bytes of its parts: all of a typical message.
const PayloadOps DeliveryEnvelope::INLINE_OPS = {&DeliveryEnvelope::makeRxMessageInline,
                                                 &DeliveryEnvelope::releaseInline,
                                                 WireMessage::PREFETCH_BYTES};

MessagePayload DeliveryEnvelope::make(WireMessage* wire_p, const Direct& delivery, Egress* egress_p,
                                      std::int64_t size) {
    MessagePayload payload{nullptr, nullptr};
    if (delivery.consumerIdCount <= 1 && size >= 0 &&
        static_cast<std::uint64_t>(size) <= SIZE_MASK) {
        payload.object_p = wire_p;
        payload.ops_p = &INLINE_OPS;
        payload.words[0] = reinterpret_cast<std::uintptr_t>(egress_p);
        payload.words[1] = static_cast<std::uint64_t>(delivery.topicSequenceNumber);
        const std::uint64_t id = delivery.consumerIdCount == 1 ? delivery.consumerIds_p[0] : 0;
        payload.words[2] = static_cast<std::uint64_t>(size) |
                           (delivery.discardIndication ? DISCARD_BIT : 0) | (id << 32);
    } else {
        payload = makeEnvelope(wire_p, delivery, egress_p, size);
    }
    if (egress_p != nullptr) {
        // Callers serialise, so a plain add does: no locked instruction on the sending path.
        egress_p->queued.store(egress_p->queued.load(std::memory_order_relaxed) + size,
                               std::memory_order_relaxed);
    }
    return payload;
}

MessagePayload DeliveryEnvelope::makeEnvelope(WireMessage* wire_p, const Direct& delivery,
                                              Egress* egress_p, std::int64_t size) {
    DeliveryEnvelope* envelope_p = EnvelopePool::acquire();
    envelope_p->idBlock_mp = nullptr;
    zorClient_uint32_t* ids_p = envelope_p->ids_m;
    if (delivery.consumerIdCount > INLINE_CONSUMER_IDS) {
        try {
            envelope_p->idBlock_mp = DataBlockPools::acquire(
                sizeof(zorClient_uint32_t) * delivery.consumerIdCount, BlockOwner::BROKER);
        } catch (...) {
            EnvelopePool::release(envelope_p);
            throw;
        }
        ids_p = reinterpret_cast<zorClient_uint32_t*>(envelope_p->idBlock_mp->bytes());
    }
    if (delivery.consumerIdCount > 0) {
        std::memcpy(ids_p, delivery.consumerIds_p,
                    sizeof(zorClient_uint32_t) * delivery.consumerIdCount);
    }
    envelope_p->idCount_m = delivery.consumerIdCount;
    envelope_p->topicSequenceNumber_m = delivery.topicSequenceNumber;
    envelope_p->discardIndication_m = delivery.discardIndication;
    envelope_p->wire_mp = wire_p;
    envelope_p->egress_mp = egress_p;
    envelope_p->size_m = static_cast<std::uint32_t>(size);
    return MessagePayload{envelope_p, &OPS};
}

Message* DeliveryEnvelope::makeRxMessageInline(MessagePayload& payload, bool lastUse) noexcept {
    const std::uint64_t bits = payload.words[2];
    const auto id = static_cast<zorClient_uint32_t>(bits >> 32);
    DeliveryInfo info;
    info.topicSequenceNumber = static_cast<zorClient_int64_t>(payload.words[1]);
    info.discardIndication = (bits & DISCARD_BIT) != 0;
    info.consumerIds_p = &id;
    info.consumerIdCount = id != 0 ? 1 : 0;
    Message* msg_p = materializeOrLog(static_cast<WireMessage*>(payload.object_p), info, lastUse);
    if (msg_p != nullptr && lastUse) {
        payload.object_p = nullptr;  // the message holds the reference now
    }
    return msg_p;
}

void DeliveryEnvelope::releaseInline(MessagePayload& payload) noexcept {
    giveBack(reinterpret_cast<Egress*>(payload.words[0]),
             static_cast<std::int64_t>(payload.words[2] & SIZE_MASK),
             static_cast<WireMessage*>(payload.object_p));
}

Message* DeliveryEnvelope::makeRxMessage(MessagePayload& payload, bool lastUse) noexcept {
    auto* envelope_p = static_cast<DeliveryEnvelope*>(payload.object_p);
    DeliveryInfo info;
    info.topicSequenceNumber = envelope_p->topicSequenceNumber_m;
    info.discardIndication = envelope_p->discardIndication_m;
    info.consumerIdCount = envelope_p->idCount_m;
    info.consumerIds_p =
        envelope_p->idBlock_mp != nullptr
            ? reinterpret_cast<const zorClient_uint32_t*>(envelope_p->idBlock_mp->bytes())
            : envelope_p->ids_m;
    Message* msg_p = materializeOrLog(envelope_p->wire_mp, info, lastUse);
    if (msg_p != nullptr && lastUse) {
        envelope_p->wire_mp = nullptr;  // the message holds the reference now
    }
    return msg_p;
}

void DeliveryEnvelope::release(MessagePayload& payload) noexcept {
    auto* envelope_p = static_cast<DeliveryEnvelope*>(payload.object_p);
    // The sender's next make() writes every field, so nothing here needs resetting.
    if (envelope_p->idBlock_mp != nullptr) {
        DataBlockPools::release(envelope_p->idBlock_mp);
    }
    giveBack(envelope_p->egress_mp, envelope_p->size_m, envelope_p->wire_mp);
    EnvelopePool::release(envelope_p);
}

}  // namespace zorvane::zorclient
