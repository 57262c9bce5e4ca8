#include "core/DeliveryEnvelope.h"

#include <cstring>
#include <new>

#include "api/Logger.h"
#include "core/ChunkPool.h"

namespace zorvane::zorclient {

using EnvelopePool = ChunkPool<DeliveryEnvelope>;

static_assert(sizeof(DeliveryEnvelope) == 64, "an envelope is one cache line");

const PayloadOps DeliveryEnvelope::OPS = {&DeliveryEnvelope::makeRxMessage,
                                          &DeliveryEnvelope::release};

MessagePayload DeliveryEnvelope::make(WireMessage* wire_p, const Direct& delivery, Egress* egress_p,
                                      std::int64_t size) {
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
    if (egress_p != nullptr) {
        // Callers serialise, so a plain add does: no locked instruction on the sending path.
        egress_p->queued.store(egress_p->queued.load(std::memory_order_relaxed) + size,
                               std::memory_order_relaxed);
    }
    return MessagePayload{envelope_p, &OPS};
}

Message* DeliveryEnvelope::makeRxMessage(void* object_p, bool lastUse) noexcept {
    auto* envelope_p = static_cast<DeliveryEnvelope*>(object_p);
    DeliveryInfo info;
    info.topicSequenceNumber = envelope_p->topicSequenceNumber_m;
    info.discardIndication = envelope_p->discardIndication_m;
    info.consumerIdCount = envelope_p->idCount_m;
    info.consumerIds_p =
        envelope_p->idBlock_mp != nullptr
            ? reinterpret_cast<const zorClient_uint32_t*>(envelope_p->idBlock_mp->bytes())
            : envelope_p->ids_m;
    try {
        Message* msg_p = envelope_p->wire_mp->materializeMessage(info, lastUse);
        if (lastUse) {
            envelope_p->wire_mp = nullptr;  // the message holds the reference now
        }
        return msg_p;
    } catch (const std::bad_alloc&) {
        ZC_LOG(ZORCLIENT_LOG_ERROR, "%s", "no memory for a received message; it is dropped");
        return nullptr;
    }
}

void DeliveryEnvelope::release(void* object_p) noexcept {
    auto* envelope_p = static_cast<DeliveryEnvelope*>(object_p);
    // The sender's next make() writes every field, so nothing here needs resetting.
    if (envelope_p->egress_mp != nullptr) {
        envelope_p->egress_mp->released.fetch_add(envelope_p->size_m, std::memory_order_relaxed);
    }
    if (envelope_p->idBlock_mp != nullptr) {
        DataBlockPools::release(envelope_p->idBlock_mp);
    }
    if (envelope_p->wire_mp != nullptr) {
        envelope_p->wire_mp->release();
    }
    EnvelopePool::release(envelope_p);
}

}  // namespace zorvane::zorclient
