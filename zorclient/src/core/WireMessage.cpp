#include "core/WireMessage.h"

#include <chrono>
#include <cstring>
#include <new>

#include "api/ApiGuard.h"
#include "api/LastError.h"
#include "core/FieldCodec.h"
#include "core/FreeStack.h"
#include "core/MessagePool.h"
#include "core/PoolStats.h"
#include "core/ThreadCache.h"

namespace zorvane::zorclient {

// Broker copies are not application objects: they have no handles and are not counted as
// allocated, only their memory in TOTAL_MEMORY. Copies are made on senders' threads and
// released on receivers', so they travel through the shared list in batches.
class WirePool {
  public:
    static WireMessage* acquire() {
        WireMessage* wire_p = nullptr;
        if (!cache().take(instance(), &wire_p)) {
            throw std::bad_alloc();
        }
        return wire_p;
    }

    // The next snapshot writes every field, so only the block needs giving back.
    static void release(WireMessage* wire_p) noexcept {
        DataBlockPools::release(wire_p->block_mp);
        wire_p->block_mp = nullptr;
        cache().give(instance(), wire_p);
    }

    // For ThreadCache.
    std::size_t takeBatch(WireMessage** out_p, std::size_t most) {
        std::size_t count = free_m.takeBatch(out_p, most);
        if (count == 0) {
            grow();
            count = free_m.takeBatch(out_p, most);
        }
        return count;
    }
    void giveBatch(WireMessage* const* wires_p, std::size_t count) noexcept {
        free_m.giveBatch(wires_p, count);
    }

  private:
    static constexpr int CHUNK = 256;

    // Never destroyed, as the other pools.
    static WirePool& instance() {
        static auto* pool_s = new WirePool();
        return *pool_s;
    }
    static ThreadCache<WirePool, WireMessage*>& cache() noexcept {
        [[gnu::tls_model("initial-exec")]] static thread_local ThreadCache<WirePool, WireMessage*>
            cache_s;
        return cache_s;
    }

    // Chunks are never given back: copies are few compared with their traffic.
    void grow() {
        auto* chunk_p = new WireMessage[CHUNK];
        try {
            free_m.reserveMore(CHUNK);
        } catch (...) {
            delete[] chunk_p;
            throw;
        }
        WireMessage* added[CHUNK];
        for (int i = 0; i < CHUNK; ++i) {
            added[i] = &chunk_p[i];
        }
        free_m.giveBatch(added, CHUNK);
        PoolStats::add(ZORCLIENT_MSG_STATS_TOTAL_MEMORY, 0,
                       static_cast<std::int64_t>(sizeof(WireMessage) * CHUNK));
    }

    FreeStack<WireMessage*> free_m;
};

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

WireMessage* WireMessage::snapshot(const Message& msg) {
    static const WireOverrides none_s;
    return snapshot(msg, none_s);
}

WireMessage* WireMessage::snapshot(const Message& msg, const WireOverrides& overrides) {
    // The bytes of each part as the copy carries them: the message's own, or an override.
    struct Source {
        const void* data_p;
        std::uint32_t size;
    };
    Source sources[NUM_PARTS];
    for (int i = 0; i < NUM_PARTS; ++i) {
        const Part& part = msg.part(static_cast<PartId>(i));
        sources[i] = {part.data(), part.size()};  // data() is null when absent
    }
    if (overrides.destination_p != nullptr) {
        sources[static_cast<int>(PartId::DESTINATION)] = {
            overrides.destination_p,
            static_cast<std::uint32_t>(std::strlen(overrides.destination_p))};
    }
    if (overrides.replyTo_p != nullptr) {
        sources[static_cast<int>(PartId::REPLY_TO)] = {
            overrides.replyTo_p, static_cast<std::uint32_t>(std::strlen(overrides.replyTo_p))};
    }
    // One block for all parts, texts with their NUL, so a receiver reads C strings in place.
    std::size_t total = 0;
    std::size_t content = 0;
    for (int i = 0; i < NUM_PARTS; ++i) {
        if (sources[i].data_p != nullptr) {
            total += sources[i].size + (isTextPart(static_cast<PartId>(i)) ? 1 : 0);
            content += sources[i].size;
        }
    }
    DataBlock* block_p = total > 0 ? DataBlockPools::acquire(total, BlockOwner::BROKER) : nullptr;
    WireMessage* wire_p = nullptr;
    try {
        wire_p = WirePool::acquire();
    } catch (...) {
        DataBlockPools::release(block_p);
        throw;
    }
    std::uint8_t* out_p = block_p != nullptr ? block_p->bytes() : nullptr;
    for (int i = 0; i < NUM_PARTS; ++i) {
        const Source& part = sources[i];
        if (part.data_p == nullptr) {
            wire_p->parts_m[i] = View();
            continue;
        }
        if (part.size > 0) {
            std::memcpy(out_p, part.data_p, part.size);
        }
        wire_p->parts_m[i].data_p = out_p;
        wire_p->parts_m[i].size = part.size;
        out_p += part.size;
        if (isTextPart(static_cast<PartId>(i))) {
            *out_p++ = 0;
        }
    }
    wire_p->block_mp = block_p;
    wire_p->header_m = msg.header();
    if (overrides.destination_p != nullptr) {
        wire_p->header_m.destinationType = overrides.destinationType;
    }
    if (overrides.replyTo_p != nullptr) {
        wire_p->header_m.replyToType = overrides.replyToType;
    }
    if (overrides.markAsReply) {
        wire_p->header_m.isReply = true;
    }
    if (overrides.requestCorrelation != 0) {
        wire_p->header_m.requestCorrelation = overrides.requestCorrelation;
    }
    wire_p->hasCorrelationTag_m = msg.hasCorrelationTag();
    wire_p->correlationTag_mp = msg.correlationTag();
    wire_p->contentSize_m = content;
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
        Message* msg = MessagePool::allocate();
        try {
            msg->attachWire(this);
            for (int i = 0; i < NUM_PARTS; ++i) {
                if (parts_m[i].data_p != nullptr) {
                    msg->part(static_cast<PartId>(i))
                        .setView(parts_m[i].data_p, parts_m[i].size, PartStorage::SHARED);
                }
            }
            CarriedHeader& header = msg->header();
            header = header_m;
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
                                            : header_m.senderTopicSequenceNumber;
            state.cacheStatus = delivery.cacheStatus;
            state.cacheRequestId = delivery.cacheRequestId;
            state.hasReplicationGroupMessageId = delivery.hasReplicationGroupMessageId;
            state.replicationGroupMessageId = delivery.replicationGroupMessageId;
            state.expirationMs = expirationMs_m;
            msg->setConsumerIds(delivery.consumerIds_p, delivery.consumerIdCount);
        } catch (...) {
            MessagePool::free(msg);
            throw;
        }
        *msg_p = msg->handle();
        return ZORCLIENT_OK;
    });
}

const char* WireMessage::text(PartId id) const noexcept {
    return isTextPart(id) ? reinterpret_cast<const char*>(parts_m[static_cast<int>(id)].data_p)
                          : nullptr;
}

bool WireMessage::part(PartId id, const std::uint8_t** data_p,
                       std::uint32_t* size_p) const noexcept {
    const View& view = parts_m[static_cast<int>(id)];
    *data_p = view.data_p;
    *size_p = view.size;
    return view.data_p != nullptr;
}

bool WireMessage::findUserProperty(const char* name_p, zorClient_field_t* field_p) const noexcept {
    const View& map = parts_m[static_cast<int>(PartId::USER_PROPERTIES)];
    FieldCodec::RawField whole;
    if (name_p == nullptr || map.data_p == nullptr ||
        FieldCodec::read(map.data_p, map.size, &whole) != FieldCodec::Result::OK ||
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
