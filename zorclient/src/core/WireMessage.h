// The boundary between library messages and the broker: how a sent message becomes one
// immutable broker copy, and how a receiver gets a library message from that copy.
//
// SEND. A send (zorClient_session_sendMsg, sendMultipleMsg, a transacted send, a request or a
// reply) calls WireMessage::snapshot(msg, &wire) once, before anything else looks at the message.
// The snapshot copies every carried header field and every part (pointer parts included) into
// the copy (parts that do not fit: into one data block) and returns the copy with one
// reference, owned by the caller. From then on the
// application's message is untouched by the library and may be reset, refilled or freed at once,
// even before the broker has routed the copy; pointers given to "...Ptr" setters are not used
// again. The correlation tag is captured in the copy for the sender's acknowledgement events
// (correlationTag()) and is never given to a receiver. A message with neither a destination nor
// a delivery mode that the broker accepts is still copied: deciding that is the sender's job
// (destination() is null when none was set).
//
// FAN-OUT. The copy is immutable: any number of threads may read it at the same time without a
// lock. Each holder of the copy (an endpoint spooling it, a context queue entry, a cache, a
// replay log, a received message made from it) holds a reference: taken with retain(), or
// handed over (the router gives a fresh copy one reference per delivery with shareAmong(), and
// a received message may take over its delivery's), and given back with release(); the last
// release returns the copy and its block to the pools. retain() and release() may be called
// from any thread, also concurrently for the same copy.
//
// DELIVERY. For each delivery the receiving side calls wire->materialize(delivery, &msg): it
// makes a library message that shares the copy's bytes (no payload is copied; the message holds
// its own reference on the copy) and sets what belongs to this one delivery from DeliveryInfo.
// The message counts as allocated in the pool statistics until it is freed. Hand it to the
// receive callback; afterwards, with ZORCLIENT_CALLBACK_OK the library frees it
// (zorClient_msg_free, on the context thread), with ZORCLIENT_CALLBACK_TAKE_MSG the application
// owns it and frees it later, on any thread, also after the session and the broker are gone
// (the reference keeps the bytes alive). A received message may be changed and sent again:
// changed parts get blocks of their own, shared parts stay shared until the next snapshot
// copies them; nothing of DeliveryInfo travels on.
//
// The copy is not counted in ZORCLIENT_MSG_STATS_ALLOC_*: a broker that still stores messages at
// the end of a run does not make the application's pool check fail. A warm process allocates
// nothing per message on this path: the copy and the received message come from free lists.
// The copy holds up to AREA_BYTES of part views and parts in itself; larger ones take a data
// block from the same pools as the application's parts. Materialising is best done
// on the receiving context's thread, right before the callback, so that a queued delivery holds
// only a reference and a DeliveryInfo, never a library message.
#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <new>
#include <string_view>

#include "core/Message.h"

namespace zorvane::zorclient {

// What the broker attaches to one delivery of a copy. Pointers are read during materialize()
// only; what the message keeps is copied.
struct DeliveryInfo {
    static constexpr int KEEP_DELIVERY_MODE = -1;

    // The destination as delivered (say, the queue a topic message was spooled to); null keeps
    // the sender's. Received destinations read back as a plain topic or queue.
    const char* destination_p = nullptr;
    zorClient_destinationType_t destinationType = ZORCLIENT_TOPIC_DESTINATION;
    // ZORCLIENT_DELIVERY_MODE_... as delivered (a direct message spooled by a queue arrives
    // non-persistent); KEEP_DELIVERY_MODE keeps the sender's.
    int deliveryMode = KEEP_DELIVERY_MODE;
    // The id for acknowledgement and settlement of a guaranteed delivery.
    bool hasMsgId = false;
    zorClient_msgId_t msgId = 0;
    bool redelivered = false;
    zorClient_int32_t deliveryCount = 1;
    // The first delivery after messages for this receiver were discarded.
    bool discardIndication = false;
    // The broker's topic sequence number; 0 lets the sender's number (if it set one) through.
    // The broker numbers only copies whose senderTopicSequenceNumber is 0.
    zorClient_int64_t topicSequenceNumber = 0;
    // The receiving session's subscriptions that matched (1-based, in subscription order).
    const zorClient_uint32_t* consumerIds_p = nullptr;
    std::uint32_t consumerIdCount = 0;
    zorClient_cacheStatus_t cacheStatus = ZORCLIENT_CACHE_LIVE_MESSAGE;
    zorClient_uint64_t cacheRequestId = 0;
    bool hasReplicationGroupMessageId = false;
    zorClient_replicationGroupMessageId_t replicationGroupMessageId = {};
};

// What a request or a reply carries instead of the sender's own fields: the library addresses
// them (a request's reply-to is the session's inbox; a reply goes to its request's reply-to)
// without touching the application's message. Texts are read during snapshot() only.
struct WireOverrides {
    const char* destination_p = nullptr;  // null: the message's own destination
    zorClient_destinationType_t destinationType = ZORCLIENT_TOPIC_DESTINATION;
    const char* replyTo_p = nullptr;  // null: the message's own reply-to
    zorClient_destinationType_t replyToType = ZORCLIENT_TOPIC_DESTINATION;
    bool markAsReply = false;
    std::uint64_t requestCorrelation = 0;  // 0: the message's own
};

class alignas(64) WireMessage {
  public:
    // Room in a copy for the views of its present parts (8 bytes each) and their bytes (texts
    // with their NUL): a typical message goes from sender to receiver as one object, with no
    // data block to take and give back and no further cache lines to move between their
    // processors. A message of about a hundred bytes spans three lines of the copy.
    static constexpr std::size_t AREA_BYTES = 400;
    // The lines a receiver reads first: the copy's fixed fields, the views and the parts of a
    // message of up to about two hundred bytes.
    static constexpr std::size_t PREFETCH_BYTES = 256;

    // The broker copy of message msg, with one reference for the caller. Fails (error info set)
    // for a null or stale handle or when memory runs out; *wire_p is then null.
    static zorClient_returnCode_t snapshot(zorClient_opaqueMsg_pt msg,
                                           WireMessage** wire_p) noexcept;
    // The same for a message already looked up. Throws std::bad_alloc.
    static WireMessage* snapshot(const Message& msg);
    // The same with fields replaced by overrides.
    static WireMessage* snapshot(const Message& msg, const WireOverrides& overrides);

    // A library message for one delivery of this copy, into *msg_p (see DELIVERY above). Fails
    // (error info set, *msg_p null) only when memory runs out or delivery is not valid.
    zorClient_returnCode_t materialize(const DeliveryInfo& delivery,
                                       zorClient_opaqueMsg_pt* msg_p) noexcept;
    // The same for the library's own receive path. With adoptReference the message takes over
    // one reference the caller holds instead of taking one of its own: the receiver of a
    // single delivery then makes one change to the count, when it frees the message. Throws
    // std::bad_alloc (the caller's reference then stays the caller's).
    Message* materializeMessage(const DeliveryInfo& delivery, bool adoptReference);

    void retain() noexcept { references_m.fetch_add(1, std::memory_order_relaxed); }
    // Only while the copy is still its maker's alone (one reference, not yet handed to anyone):
    // makes that one reference count (count >= 1, typically one per delivery about to be
    // queued). A plain store, as nobody else can see the copy yet; queueing a delivery
    // publishes it.
    void shareAmong(std::uint32_t count) noexcept {
        references_m.store(count, std::memory_order_relaxed);
    }
    // Gives a reference back; the last one returns the copy to the pools.
    void release() noexcept;
    std::uint32_t references() const noexcept {
        return references_m.load(std::memory_order_acquire);
    }

    // ---- The content, immutable; any thread.

    const CarriedHeader& header() const noexcept {
        return fullHeader_m ? header_m : plainHeader(plainDestinationType_m);
    }
    // Persistent or non-persistent (acknowledged, spooled), not direct.
    bool isGuaranteed() const noexcept {
        return header().deliveryMode != ZORCLIENT_DELIVERY_MODE_DIRECT;
    }
    // Destination and reply-to names as the sender set them (their types in header()); null
    // when not set.
    const char* destination() const noexcept { return text(PartId::DESTINATION); }
    // The destination with its length, which the copy knows (empty when not set).
    std::string_view destinationView() const noexcept {
        constexpr int index = static_cast<int>(PartId::DESTINATION);
        if (!has(index)) {
            return std::string_view();
        }
        const View& view = viewOf(index);
        return std::string_view(reinterpret_cast<const char*>(bytes()) + view.offset, view.size);
    }
    const char* replyTo() const noexcept { return text(PartId::REPLY_TO); }
    // A text part (DESTINATION .. HTTP_CONTENT_ENCODING) as a C string; null when absent.
    const char* text(PartId id) const noexcept;
    // Any part's bytes; false when absent.
    bool part(PartId id, const std::uint8_t** data_p, std::uint32_t* size_p) const noexcept;
    // Milliseconds since the epoch at which the message expires (send time plus time to live);
    // 0 when it does not.
    zorClient_uint64_t expirationMs() const noexcept { return expirationMs_m; }
    // The sender's correlation tag, for its acknowledgement events; never delivered.
    bool hasCorrelationTag() const noexcept { return hasCorrelationTag_m; }
    void* correlationTag() const noexcept { return correlationTag_mp; }
    // Bytes of all parts: what a maximum message size or a quota is compared with.
    std::size_t contentSize() const noexcept { return contentSize_m; }
    // One user property by name, for selectors: scalar, string, byte array and destination
    // fields; a MAP or STREAM field is found with a null handle. False when there is no user
    // property map, no such name, or the map is malformed.
    bool findUserProperty(const char* name_p, zorClient_field_t* field_p) const noexcept;

  private:
    // Where a present part's bytes are, from bytes().
    struct View {
        std::uint32_t offset = 0;
        std::uint32_t size = 0;
    };
    static constexpr std::size_t FIXED_BYTES = 40;  // the fields in front of area_m

    static_assert(NUM_PARTS <= 16, "presence is a 16-bit mask");
    bool has(int index) const noexcept { return (present_m & (1u << index)) != 0; }
    int presentCount() const noexcept { return countParts(present_m); }
    // The views of the present parts, in part order: present part i has the view at the number
    // of present parts before it.
    const View* views() const noexcept {
        return std::launder(reinterpret_cast<const View*>(area_m));
    }
    const View& viewOf(int index) const noexcept {
        return views()[countParts(present_m & ((1u << index) - 1))];
    }
    const std::uint8_t* bytes() const noexcept {
        return block_mp != nullptr
                   ? block_mp->bytes()
                   : area_m + sizeof(View) * static_cast<std::size_t>(presentCount());
    }
    static constexpr CarriedHeader plainOf(zorClient_destinationType_t type) noexcept {
        CarriedHeader header;
        header.destinationType = type;
        return header;
    }
    // CarriedHeader{} with destinationType type, for the types a header may have.
    static const CarriedHeader& plainHeader(std::int32_t type) noexcept {
        static constexpr CarriedHeader HEADERS[] = {
            plainOf(ZORCLIENT_NULL_DESTINATION), plainOf(ZORCLIENT_TOPIC_DESTINATION),
            plainOf(ZORCLIENT_QUEUE_DESTINATION), plainOf(ZORCLIENT_TOPIC_TEMP_DESTINATION),
            plainOf(ZORCLIENT_QUEUE_TEMP_DESTINATION)};
        return HEADERS[type - ZORCLIENT_NULL_DESTINATION];
    }
    // Bits set in a part mask, without a library call on processors of any generation.
    static constexpr int countParts(std::uint32_t mask) noexcept {
        mask = mask - ((mask >> 1) & 0x5555u);
        mask = (mask & 0x3333u) + ((mask >> 2) & 0x3333u);
        mask = (mask + (mask >> 4)) & 0x0F0Fu;
        return static_cast<int>((mask + (mask >> 8)) & 0x1Fu);
    }
    // Whether header is plainHeader(header.destinationType), so that a copy need not carry it.
    static bool isPlain(const CarriedHeader& header) noexcept;

    // What a receiver reads of a typical message comes first and is contiguous: these fields,
    // the views of the present parts, then the parts themselves. The header fields of a message
    // that sets none of them besides its destination type are not copied at all; header_m, at
    // the far end, is written only for a message that does.
    std::atomic<std::uint32_t> references_m{0};
    std::uint16_t present_m = 0;  // bit i: part i is present
    bool fullHeader_m = false;    // header_m holds the header; else plainHeader(...)
    bool hasCorrelationTag_m = false;
    std::uint32_t contentSize_m = 0;
    std::int32_t plainDestinationType_m = ZORCLIENT_NULL_DESTINATION;
    DataBlock* block_mp = nullptr;  // null: the bytes are in area_m behind the views
    zorClient_uint64_t expirationMs_m = 0;
    void* correlationTag_mp = nullptr;
    alignas(8) std::uint8_t area_m[AREA_BYTES];
    CarriedHeader header_m;
};

}  // namespace zorvane::zorclient
