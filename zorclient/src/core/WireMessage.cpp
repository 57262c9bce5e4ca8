#include "core/WireMessage.h"

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <cstring>
#include <new>

#include "api/ApiGuard.h"
#include "api/LastError.h"
#include "core/ChunkPool.h"
#include "core/FieldCodec.h"
#include "core/MessagePool.h"
#include "core/Prefetch.h"

namespace zorvane::zorclient {

using WirePool = ChunkPool<WireMessage>;

static_assert(sizeof(WireMessage) == 512, "a copy is eight cache lines, most of them bytes");

namespace {

zorClient_destinationType_t family(zorClient_destinationType_t type) noexcept {
    switch (type) {
        case ZORCLIENT_TOPIC_TEMP_DESTINATION:
            return ZORCLIENT_TOPIC_DESTINATION;
        case ZORCLIENT_QUEUE_TEMP_DESTINATION:
            return ZORCLIENT_QUEUE_DESTINATION;
        default:
            return type;
    }
}

zorClient_uint64_t nowMs() noexcept {
    return static_cast<zorClient_uint64_t>(std::chrono::duration_cast<std::chrono::milliseconds>(
                                               std::chrono::system_clock::now().time_since_epoch())
                                               .count());
}

}  // namespace

bool WireMessage::isPlain(const CarriedHeader& header) noexcept {
    return header.destinationType >= ZORCLIENT_NULL_DESTINATION &&
           header.destinationType <= ZORCLIENT_QUEUE_TEMP_DESTINATION &&
           header == plainHeader(header.destinationType);
}

WireMessage* WireMessage::snapshot(const Message& msg) {
    static const WireOverrides none_s;
    return snapshot(msg, none_s);
}

WireMessage* WireMessage::snapshot(const Message& msg, const WireOverrides& overrides) {
    constexpr int DESTINATION = static_cast<int>(PartId::DESTINATION);
    constexpr int REPLY_TO = static_cast<int>(PartId::REPLY_TO);
    // The bytes of each present part as the copy carries them: the message's own, or an
    // override. Only parts the message touched can be present, typically two or three.
    struct Source {
        const void* data_p;
        std::uint32_t size;
        int index;
    };
    Source sources[NUM_PARTS];
    int count = 0;
    std::uint32_t present = 0;
    std::size_t total = 0;  // texts with their NUL
    std::size_t content = 0;
    std::uint32_t candidates = msg.touchedParts();
    if (overrides.destination_p != nullptr) {
        candidates |= 1u << DESTINATION;
    }
    if (overrides.replyTo_p != nullptr) {
        candidates |= 1u << REPLY_TO;
    }
    for (std::uint32_t rest = candidates; rest != 0; rest &= rest - 1) {
        const int i = __builtin_ctz(rest);
        Source& source = sources[count];
        if (i == DESTINATION && overrides.destination_p != nullptr) {
            source = {overrides.destination_p,
                      static_cast<std::uint32_t>(std::strlen(overrides.destination_p)), i};
        } else if (i == REPLY_TO && overrides.replyTo_p != nullptr) {
            source = {overrides.replyTo_p,
                      static_cast<std::uint32_t>(std::strlen(overrides.replyTo_p)), i};
        } else {
            const Part& part = msg.part(static_cast<PartId>(i));
            if (!part.present()) {
                continue;
            }
            source = {part.data(), part.size(), i};
        }
        ++count;
        present |= 1u << i;
        total += source.size + (isTextPart(static_cast<PartId>(i)) ? 1 : 0);
        content += source.size;
    }
    static_assert(offsetof(WireMessage, area_m) == FIXED_BYTES,
                  "the views follow the fixed fields at once");
    static_assert(countParts(0xFFFu) == 12 && countParts(0x801u) == 2 && countParts(0) == 0);
    // One place for all parts, texts with their NUL, so a receiver reads C strings in place:
    // behind the views in the copy itself, or a block when they do not fit.
    const std::size_t viewBytes = sizeof(View) * static_cast<std::size_t>(count);
    WireMessage* wire_p = WirePool::acquire();
    DataBlock* block_p = nullptr;
    if (viewBytes + total > AREA_BYTES) {
        try {
            block_p = DataBlockPools::acquire(total, BlockOwner::BROKER);
        } catch (...) {
            WirePool::release(wire_p);
            throw;
        }
    }
    // The next send on this thread most likely takes the next copy of this thread's cache, last
    // read by a receiver on another processor: ask for its lines now, so that they are here by
    // then (a send of the same size touches the same lines).
    if (const WireMessage* next_p = WirePool::peekNext(); next_p != nullptr) {
        prefetchForWrite(next_p, FIXED_BYTES + std::min(viewBytes + total, AREA_BYTES));
    }
    wire_p->block_mp = block_p;
    std::uint8_t* const start_p =
        block_p != nullptr ? block_p->bytes() : wire_p->area_m + viewBytes;
    std::uint8_t* out_p = start_p;
    for (int k = 0; k < count; ++k) {
        const Source& part = sources[k];
        if (part.size > 0) {
            std::memcpy(out_p, part.data_p, part.size);
        }
        new (wire_p->area_m + sizeof(View) * static_cast<std::size_t>(k))
            View{static_cast<std::uint32_t>(out_p - start_p), part.size};
        out_p += part.size;
        if (isTextPart(static_cast<PartId>(part.index))) {
            *out_p++ = 0;
        }
    }
    wire_p->present_m = static_cast<std::uint16_t>(present);
    if (!msg.headerTouched() && overrides.replyTo_p == nullptr && !overrides.markAsReply &&
        overrides.requestCorrelation == 0) {
        // The header is CarriedHeader{} with a destination type: nothing to compare or copy.
        wire_p->fullHeader_m = false;
        wire_p->plainDestinationType_m = overrides.destination_p != nullptr
                                             ? overrides.destinationType
                                             : msg.header().destinationType;
    } else {
        CarriedHeader header = msg.header();
        if (overrides.destination_p != nullptr) {
            header.destinationType = overrides.destinationType;
        }
        if (overrides.replyTo_p != nullptr) {
            header.replyToType = overrides.replyToType;
        }
        if (overrides.markAsReply) {
            header.isReply = true;
        }
        if (overrides.requestCorrelation != 0) {
            header.requestCorrelation = overrides.requestCorrelation;
        }
        wire_p->fullHeader_m = !isPlain(header);
        if (wire_p->fullHeader_m) {
            wire_p->header_m = header;
        } else {
            wire_p->plainDestinationType_m = header.destinationType;
        }
    }
    wire_p->hasCorrelationTag_m = msg.hasCorrelationTag();
    wire_p->correlationTag_mp = msg.correlationTag();
    // Saturated: a copy too large for any broker must still read as too large.
    wire_p->contentSize_m = static_cast<std::uint32_t>(std::min<std::size_t>(content, UINT32_MAX));
    wire_p->expirationMs_m =
        msg.header().timeToLiveMs > 0
            ? nowMs() + static_cast<zorClient_uint64_t>(msg.header().timeToLiveMs)
            : 0;
    wire_p->references_m.store(1, std::memory_order_relaxed);
    return wire_p;
}

zorClient_returnCode_t WireMessage::snapshot(zorClient_opaqueMsg_pt msg,
                                             WireMessage** wire_p) noexcept {
    static constexpr const char* FUNCTION = "send";
    if (wire_p == nullptr) {
        return LastError::failNullArgument(FUNCTION, "wire_p");
    }
    *wire_p = nullptr;
    const Message* msg_p = MessagePool::lookup(msg);
    if (msg_p == nullptr) {
        return msg == nullptr
                   ? LastError::failNullArgument(FUNCTION, "msg")
                   : LastError::fail(ZORCLIENT_SUBCODE_INVALID_HANDLE,
                                     "%s: msg is not a live message handle (freed?)", FUNCTION);
    }
    return guarded(FUNCTION, [&]() -> zorClient_returnCode_t {
        *wire_p = snapshot(*msg_p);
        return ZORCLIENT_OK;
    });
}

void WireMessage::release() noexcept {
    if (references_m.fetch_sub(1, std::memory_order_acq_rel) == 1) {
        // The next snapshot writes every field it reads, so only the block needs giving back.
        if (block_mp != nullptr) {
            DataBlockPools::release(block_mp);
            block_mp = nullptr;
        }
        WirePool::release(this);
    }
}

zorClient_returnCode_t WireMessage::materialize(const DeliveryInfo& delivery,
                                                zorClient_opaqueMsg_pt* msg_p) noexcept {
    static constexpr const char* FUNCTION = "deliver";
    if (msg_p == nullptr) {
        return LastError::failNullArgument(FUNCTION, "msg_p");
    }
    *msg_p = nullptr;
    if (delivery.consumerIdCount > 0 && delivery.consumerIds_p == nullptr) {
        return LastError::failNullArgument(FUNCTION, "consumerIds_p");
    }
    return guarded(FUNCTION, [&]() -> zorClient_returnCode_t {
        *msg_p = materializeMessage(delivery, false)->handle();
        return ZORCLIENT_OK;
    });
}

Message* WireMessage::materializeMessage(const DeliveryInfo& delivery, bool adoptReference) {
    Message* msg = MessagePool::allocate();
    try {
        msg->attachWire(this, adoptReference);
        const std::uint8_t* const start_p = bytes();
        const View* view_p = views();
        for (std::uint32_t rest = present_m; rest != 0; rest &= rest - 1, ++view_p) {
            msg->part(static_cast<PartId>(__builtin_ctz(rest)))
                .setView(start_p + view_p->offset, view_p->size, PartStorage::SHARED);
        }
        CarriedHeader& header = msg->header();
        header = this->header();
        header.destinationType = family(header.destinationType);
        header.replyToType = family(header.replyToType);
        if (delivery.destination_p != nullptr) {
            msg->part(PartId::DESTINATION)
                .setCopy(delivery.destination_p,
                         static_cast<std::uint32_t>(std::strlen(delivery.destination_p)), true);
            header.destinationType = family(delivery.destinationType);
        }
        if (delivery.deliveryMode != DeliveryInfo::KEEP_DELIVERY_MODE) {
            header.deliveryMode = static_cast<zorClient_uint32_t>(delivery.deliveryMode);
        }
        DeliveryState& state = msg->delivery();
        state.delivered = true;
        state.hasMsgId = delivery.hasMsgId;
        state.msgId = delivery.msgId;
        state.redelivered = delivery.redelivered;
        state.deliveryCount = delivery.deliveryCount;
        state.discardIndication = delivery.discardIndication;
        state.topicSequenceNumber = delivery.topicSequenceNumber != 0
                                        ? delivery.topicSequenceNumber
                                        : header.senderTopicSequenceNumber;
        state.cacheStatus = delivery.cacheStatus;
        state.cacheRequestId = delivery.cacheRequestId;
        state.hasReplicationGroupMessageId = delivery.hasReplicationGroupMessageId;
        state.replicationGroupMessageId = delivery.replicationGroupMessageId;
        state.expirationMs = expirationMs_m;
        msg->setConsumerIds(delivery.consumerIds_p, delivery.consumerIdCount);
    } catch (...) {
        if (adoptReference) {
            msg->detachWire();  // the reference goes back to the caller
        }
        MessagePool::free(msg);
        throw;
    }
    return msg;
}

const char* WireMessage::text(PartId id) const noexcept {
    const int index = static_cast<int>(id);
    return isTextPart(id) && has(index)
               ? reinterpret_cast<const char*>(bytes() + viewOf(index).offset)
               : nullptr;
}

bool WireMessage::part(PartId id, const std::uint8_t** data_p,
                       std::uint32_t* size_p) const noexcept {
    const int index = static_cast<int>(id);
    if (!has(index)) {
        *data_p = nullptr;
        *size_p = 0;
        return false;
    }
    const View& view = viewOf(index);
    *data_p = bytes() + view.offset;
    *size_p = view.size;
    return true;
}

bool WireMessage::findUserProperty(const char* name_p, zorClient_field_t* field_p) const noexcept {
    const std::uint8_t* map_p = nullptr;
    std::uint32_t mapSize = 0;
    FieldCodec::RawField whole;
    if (name_p == nullptr || !part(PartId::USER_PROPERTIES, &map_p, &mapSize) ||
        FieldCodec::read(map_p, mapSize, &whole) != FieldCodec::Result::OK ||
        whole.code != ZORCLIENT_MAP) {
        return false;
    }
    const std::uint8_t* at_p = whole.value_p;
    const std::uint8_t* end_p = whole.value_p + whole.valueSize;
    while (at_p < end_p) {
        FieldCodec::RawField name;
        FieldCodec::RawField value;
        if (FieldCodec::read(at_p, static_cast<std::size_t>(end_p - at_p), &name) !=
                FieldCodec::Result::OK ||
            name.code != ZORCLIENT_STRING ||
            FieldCodec::read(at_p + name.size, static_cast<std::size_t>(end_p - at_p - name.size),
                             &value) != FieldCodec::Result::OK) {
            return false;
        }
        if (std::strcmp(reinterpret_cast<const char*>(name.value_p), name_p) == 0) {
            return FieldCodec::toPublicField(value, field_p);
        }
        at_p += name.size + value.size;
    }
    return false;
}

}  // namespace zorvane::zorclient
