#include "core/Message.h"

#include <cstring>

#include "core/Container.h"
#include "core/WireMessage.h"

namespace zorvane::zorclient {

namespace {
// Copied from memory rather than built in place: a temporary's narrow stores followed by wide
// loads stall a reset that runs for every message.
const CarriedHeader freshHeader_s{};
const DeliveryState freshDelivery_s{};
}  // namespace

void Message::setCorrelationTag(void* tag_p, zorClient_uint32_t size) noexcept {
    hasCorrelationTag_m = tag_p != nullptr;
    correlationTag_mp = tag_p;
    correlationTagSize_m = tag_p != nullptr ? size : 0;
}

void Message::setConsumerIds(const zorClient_uint32_t* ids_p, std::uint32_t count) {
    zorClient_uint32_t* target_p = consumerIds_m;
    if (count > INLINE_CONSUMER_IDS) {
        DataBlock* block_p =
            DataBlockPools::acquire(sizeof(zorClient_uint32_t) * count, BlockOwner::APPLICATION);
        DataBlockPools::release(consumerIdBlock_mp);
        consumerIdBlock_mp = block_p;
        target_p = reinterpret_cast<zorClient_uint32_t*>(block_p->bytes());
    }
    if (count > 0) {
        std::memcpy(target_p, ids_p, sizeof(zorClient_uint32_t) * count);
    }
    consumerIdCount_m = count;
}

zorClient_uint32_t Message::consumerId(std::uint32_t index) const noexcept {
    if (index >= consumerIdCount_m) {
        return ZORCLIENT_CONSUMER_ID_NONE;
    }
    if (consumerIdCount_m > INLINE_CONSUMER_IDS) {
        return reinterpret_cast<const zorClient_uint32_t*>(consumerIdBlock_mp->bytes())[index];
    }
    return consumerIds_m[index];
}

void Message::attachWire(WireMessage* wire_p, bool adopt) noexcept {
    if (wire_p != nullptr && !adopt) {
        wire_p->retain();
    }
    if (wire_mp != nullptr) {
        wire_mp->release();
    }
    wire_mp = wire_p;
}

void Message::clearAttachment() noexcept {
    Container::closeAll(*this, PartId::ATTACHMENT);
    part(PartId::ATTACHMENT).clear();
    header_m.attachmentKind = AttachmentKind::RAW;
}

void Message::clear() noexcept {
    if (firstContainer_mp != nullptr) {
        Container::closeAll(*this);
    }
    for (std::uint32_t rest = touched_m; rest != 0; rest &= rest - 1) {
        parts_m[__builtin_ctz(rest)].clear();
    }
    touched_m = 0;
    header_m = freshHeader_s;
    headerTouched_m = false;
    if (delivery_m.delivered) {
        delivery_m = freshDelivery_s;
    }
    setCorrelationTag(nullptr, 0);
    if (consumerIdBlock_mp != nullptr) {
        DataBlockPools::release(consumerIdBlock_mp);
        consumerIdBlock_mp = nullptr;
    }
    consumerIdCount_m = 0;
    if (wire_mp != nullptr) {
        attachWire(nullptr);
    }
}

void Message::copyFrom(const Message& other) {
    header_m = other.header_m;
    headerTouched_m = other.headerTouched_m;
    delivery_m = other.delivery_m;
    setCorrelationTag(other.correlationTag_mp, other.correlationTagSize_m);
    attachWire(other.wire_mp);
    if (other.consumerIdCount_m > INLINE_CONSUMER_IDS) {
        setConsumerIds(
            reinterpret_cast<const zorClient_uint32_t*>(other.consumerIdBlock_mp->bytes()),
            other.consumerIdCount_m);
    } else {
        setConsumerIds(other.consumerIds_m, other.consumerIdCount_m);
    }
    for (std::uint32_t rest = other.touched_m; rest != 0; rest &= rest - 1) {
        const auto id = static_cast<PartId>(__builtin_ctz(rest));
        const Part& from = other.part(id);
        if (from.storage() == PartStorage::SHARED) {
            // Immutable and kept alive by the broker copy both messages now hold.
            part(id).setView(from.data(), from.size(), PartStorage::SHARED);
        } else if (from.present()) {
            // Own bytes and the caller's pointers are both copied: the duplicate must not
            // change when the original or the caller's buffer does.
            part(id).setCopy(from.data(), from.size(), isTextPart(id));
        }
    }
}

}  // namespace zorvane::zorclient
