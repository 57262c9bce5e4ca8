#include "core/MessageDump.h"

#include <cinttypes>

#include "core/FieldCodec.h"
#include "core/ReplicationGroupMessageId.h"

namespace zorvane::zorclient {

namespace {

// Deeper containers are shown as "..." : the bytes could nest further than a stack can follow.
constexpr int MAX_DEPTH = 16;
constexpr int BYTES_PER_LINE = 16;

void label(TextWriter& out, const char* label_p) noexcept {
    out.appendf("%-40s", label_p);
}

const char* destinationTypeName(zorClient_destinationType_t type) noexcept {
    switch (type) {
        case ZORCLIENT_TOPIC_DESTINATION:
            return "Topic";
        case ZORCLIENT_QUEUE_DESTINATION:
            return "Queue";
        case ZORCLIENT_TOPIC_TEMP_DESTINATION:
            return "Temporary Topic";
        case ZORCLIENT_QUEUE_TEMP_DESTINATION:
            return "Temporary Queue";
        default:
            return "Destination";
    }
}

const char* deliveryModeName(zorClient_uint32_t mode) noexcept {
    switch (mode) {
        case ZORCLIENT_DELIVERY_MODE_PERSISTENT:
            return "PERSISTENT";
        case ZORCLIENT_DELIVERY_MODE_NONPERSISTENT:
            return "NON_PERSISTENT";
        default:
            return "DIRECT";
    }
}

const char* typeName(std::uint8_t code) noexcept {
    static const char* const names_s[] = {"BOOL",   "UINT8",     "INT8",        "UINT16", "INT16",
                                          "UINT32", "INT32",     "UINT64",      "INT64",  "WCHAR",
                                          "STRING", "BYTEARRAY", "FLOAT",       "DOUBLE", "MAP",
                                          "STREAM", "NULL",      "DESTINATION", "QWF",    "CHAR"};
    return FieldCodec::isKnownCode(code) ? names_s[code] : "UNKNOWN";
}

void hexLines(TextWriter& out, const std::uint8_t* bytes_p, std::uint32_t size,
              int indent) noexcept {
    for (std::uint32_t line = 0; line < size && !out.full(); line += BYTES_PER_LINE) {
        out.appendf("%*s%08" PRIx32 ": ", indent, "", line);
        for (std::uint32_t i = line; i < line + BYTES_PER_LINE; ++i) {
            if (i < size) {
                out.appendf("%02x ", bytes_p[i]);
            } else {
                out.append("   ");
            }
        }
        out.append(" ");
        const std::uint32_t count = size - line < BYTES_PER_LINE ? size - line : BYTES_PER_LINE;
        out.appendPrintable(bytes_p + line, count);
        out.append("\n");
    }
}

// A signed integer field's value: its big-endian bytes (as many as the type is wide), with the
// sign of the top one.
std::int64_t signedValue(const FieldCodec::RawField& raw) noexcept {
    const int unused = 64 - 8 * static_cast<int>(raw.valueSize);
    return static_cast<std::int64_t>(
               FieldCodec::getBigEndian(raw.value_p, static_cast<int>(raw.valueSize)) << unused) >>
           unused;
}

void fieldLines(TextWriter& out, const FieldCodec::RawField& container, int depth) noexcept;

void fieldValue(TextWriter& out, const FieldCodec::RawField& raw, int depth) noexcept {
    zorClient_field_t field;
    FieldCodec::toPublicField(raw, &field);
    const zorClient_fieldValue_t& v = field.value;
    out.appendf("%-12s", typeName(raw.code));
    switch (field.type) {
        case ZORCLIENT_BOOL:
            out.append(v.boolean ? "true" : "false");
            break;
        case ZORCLIENT_UINT8:
        case ZORCLIENT_UINT16:
        case ZORCLIENT_UINT32:
        case ZORCLIENT_UINT64:
            out.appendf("%" PRIu64,
                        FieldCodec::getBigEndian(raw.value_p, static_cast<int>(raw.valueSize)));
            break;
        case ZORCLIENT_INT8:
        case ZORCLIENT_INT16:
        case ZORCLIENT_INT32:
        case ZORCLIENT_INT64:
            out.appendf("%" PRId64, signedValue(raw));
            break;
        case ZORCLIENT_WCHAR:
            out.appendf("U+%04" PRIX32, v.wchar);
            break;
        case ZORCLIENT_CHAR:
            out.append("'");
            out.appendPrintable(&v.char8, 1);
            out.append("'");
            break;
        case ZORCLIENT_FLOAT:
            out.appendf("%.9g", static_cast<double>(v.float32));
            break;
        case ZORCLIENT_DOUBLE:
            out.appendf("%.17g", v.float64);
            break;
        case ZORCLIENT_STRING:
            out.append("'");
            out.appendPrintable(v.string, field.length - 1);
            out.append("'");
            break;
        case ZORCLIENT_DESTINATION:
            out.appendf("%s '", destinationTypeName(v.dest.destType));
            out.appendPrintable(v.dest.dest, field.length - 1);
            out.append("'");
            break;
        case ZORCLIENT_NULL:
            break;
        case ZORCLIENT_MAP:
        case ZORCLIENT_STREAM:
            out.appendf("len=%" PRIu32 "\n", raw.size);
            fieldLines(out, raw, depth + 1);
            return;
        default:  // byte arrays, QWF, unknown fields
            out.appendf("len=%" PRIu32 "\n", field.length);
            hexLines(out, field.value.bytes, field.length, 2 + 2 * (depth + 1));
            return;
    }
    out.append("\n");
}

// The fields of the map or stream that container is, each on a line of its own.
void fieldLines(TextWriter& out, const FieldCodec::RawField& container, int depth) noexcept {
    const int indent = 2 + 2 * depth;
    if (depth > MAX_DEPTH) {
        out.appendf("%*s...\n", indent, "");
        return;
    }
    const bool isMap = container.code == ZORCLIENT_MAP;
    const std::uint8_t* at_p = container.value_p;
    const std::uint8_t* end_p = container.value_p + container.valueSize;
    while (at_p < end_p && !out.full()) {
        FieldCodec::RawField name;
        if (isMap) {
            if (FieldCodec::read(at_p, static_cast<std::size_t>(end_p - at_p), &name) !=
                    FieldCodec::Result::OK ||
                name.code != ZORCLIENT_STRING) {
                break;
            }
            at_p += name.size;
        }
        FieldCodec::RawField value;
        if (FieldCodec::read(at_p, static_cast<std::size_t>(end_p - at_p), &value) !=
            FieldCodec::Result::OK) {
            break;
        }
        out.appendf("%*s", indent, "");
        if (isMap) {
            out.append("'");
            out.appendPrintable(name.value_p, name.valueSize - 1);
            out.append("' ");
        }
        fieldValue(out, value, depth);
        at_p += value.size;
    }
    if (at_p < end_p) {
        out.appendf("%*s(malformed from here: %zu bytes)\n", indent, "",
                    static_cast<std::size_t>(end_p - at_p));
    }
}

void textLine(TextWriter& out, const Message& msg, PartId id, const char* label_p) noexcept {
    const Part& part = msg.part(id);
    if (part.present()) {
        label(out, label_p);
        out.append("'");
        out.appendPrintable(part.data(), part.size());
        out.append("'\n");
    }
}

void flagLine(TextWriter& out, bool set, const char* label_p) noexcept {
    if (set) {
        out.appendf("%s\n", label_p);
    }
}

void destinationLine(TextWriter& out, const Message& msg, PartId id,
                     zorClient_destinationType_t type, const char* label_p) noexcept {
    const Part& part = msg.part(id);
    if (part.present()) {
        label(out, label_p);
        out.appendf("%s '", destinationTypeName(type));
        out.appendPrintable(part.data(), part.size());
        out.append("'\n");
    }
}

void headerLines(TextWriter& out, const Message& msg) noexcept {
    const CarriedHeader& header = msg.header();
    destinationLine(out, msg, PartId::DESTINATION, header.destinationType, "Destination:");
    destinationLine(out, msg, PartId::REPLY_TO, header.replyToType, "Reply To:");
    label(out, "Delivery Mode:");
    out.appendf("%s\n", deliveryModeName(header.deliveryMode));
    label(out, "Class Of Service:");
    out.appendf("USER_COS_%u\n", header.classOfService + 1);
    if (header.priority != ZORCLIENT_PRIORITY_NONE) {
        label(out, "Priority:");
        out.appendf("%" PRId32 "\n", header.priority);
    }
    if (header.timeToLiveMs > 0) {
        label(out, "Time To Live:");
        out.appendf("%" PRId64 "\n", header.timeToLiveMs);
    }
    flagLine(out, header.dmqEligible, "DMQ Eligible");
    flagLine(out, header.elidingEligible, "Eliding Eligible");
    flagLine(out, header.deliverToOne, "Deliver To One");
    flagLine(out, header.ackImmediately, "Ack Immediately");
    flagLine(out, header.isReply, "Reply Message");
    if (msg.hasCorrelationTag()) {
        label(out, "Correlation Tag:");
        out.appendf("%p\n", msg.correlationTag());
    }
    textLine(out, msg, PartId::CORRELATION_ID, "Correlation Id:");
    textLine(out, msg, PartId::APP_MESSAGE_ID, "Application Message Id:");
    textLine(out, msg, PartId::APP_MSG_TYPE, "Application Message Type:");
    textLine(out, msg, PartId::SENDER_ID, "Sender Id:");
    textLine(out, msg, PartId::HTTP_CONTENT_TYPE, "HTTP Content Type:");
    textLine(out, msg, PartId::HTTP_CONTENT_ENCODING, "HTTP Content Encoding:");
    if (header.hasSenderTimestamp) {
        label(out, "Sender Timestamp:");
        out.appendf("%" PRId64 "\n", header.senderTimestamp);
    }
    if (header.hasSequenceNumber) {
        label(out, "Sequence Number:");
        out.appendf("%" PRId64 "\n", header.sequenceNumber);
    }
}

void deliveryLines(TextWriter& out, const Message& msg) noexcept {
    const DeliveryState& state = msg.delivery();
    const zorClient_int64_t topicSequence =
        state.delivered ? state.topicSequenceNumber : msg.header().senderTopicSequenceNumber;
    if (topicSequence != 0) {
        label(out, "Topic Sequence Number:");
        out.appendf("%" PRId64 "\n", topicSequence);
    }
    if (!state.delivered) {
        return;
    }
    if (state.hasMsgId) {
        label(out, "Message Id:");
        out.appendf("%" PRIu64 "\n", state.msgId);
    }
    if (state.expirationMs != 0) {
        label(out, "Expiration:");
        out.appendf("%" PRIu64 "\n", state.expirationMs);
    }
    flagLine(out, state.redelivered, "Redelivered");
    label(out, "Delivery Count:");
    out.appendf("%" PRId32 "\n", state.deliveryCount);
    flagLine(out, state.discardIndication, "Discard Indication");
    if (state.cacheStatus == ZORCLIENT_CACHE_MESSAGE ||
        state.cacheStatus == ZORCLIENT_CACHE_SUSPECT_MESSAGE) {
        label(out, "Cache Message:");
        out.appendf("%s, request id %" PRIu64 "\n",
                    state.cacheStatus == ZORCLIENT_CACHE_SUSPECT_MESSAGE ? "suspect" : "cached",
                    state.cacheRequestId);
    }
    if (msg.consumerIdCount() > 0) {
        label(out, "Consumer Ids:");
        for (std::uint32_t i = 0; i < msg.consumerIdCount() && !out.full(); ++i) {
            out.appendf(i == 0 ? "%" PRIu32 : ", %" PRIu32, msg.consumerId(i));
        }
        out.append("\n");
    }
    if (state.hasReplicationGroupMessageId) {
        char text[ReplicationGroupMessageId::TEXT_LENGTH + 1];
        ReplicationGroupMessageId::format(state.replicationGroupMessageId, text);
        label(out, "Replication Group Message Id:");
        out.appendf("%s\n", text);
    }
}

// A structured part: its fields, or its bytes when they are not a container of kind code.
void structuredPart(TextWriter& out, const Part& part, std::uint8_t code) noexcept {
    FieldCodec::RawField whole;
    if (FieldCodec::read(part.data(), part.size(), &whole) == FieldCodec::Result::OK &&
        whole.code == code) {
        fieldLines(out, whole, 0);
    } else {
        hexLines(out, part.data(), part.size(), 2);
    }
}

void partLines(TextWriter& out, const Message& msg) noexcept {
    const Part& userData = msg.part(PartId::USER_DATA);
    if (userData.present()) {
        label(out, "User Data:");
        out.appendf("len=%" PRIu32 "\n", userData.size());
        hexLines(out, userData.data(), userData.size(), 2);
    }
    const Part& properties = msg.part(PartId::USER_PROPERTIES);
    if (properties.present()) {
        label(out, "User Property Map:");
        out.appendf("len=%" PRIu32 "\n", properties.size());
        structuredPart(out, properties, ZORCLIENT_MAP);
    }
    const Part& xml = msg.part(PartId::XML);
    if (xml.present()) {
        label(out, "XML:");
        out.appendf("len=%" PRIu32 "\n", xml.size());
        hexLines(out, xml.data(), xml.size(), 2);
    }
    const Part& attachment = msg.part(PartId::ATTACHMENT);
    if (!attachment.present()) {
        return;
    }
    switch (msg.header().attachmentKind) {
        case AttachmentKind::MAP:
            label(out, "Binary Attachment Map:");
            out.appendf("len=%" PRIu32 "\n", attachment.size());
            structuredPart(out, attachment, ZORCLIENT_MAP);
            break;
        case AttachmentKind::STREAM:
            label(out, "Binary Attachment Stream:");
            out.appendf("len=%" PRIu32 "\n", attachment.size());
            structuredPart(out, attachment, ZORCLIENT_STREAM);
            break;
        case AttachmentKind::STRING: {
            FieldCodec::RawField text;
            label(out, "Binary Attachment String:");
            if (FieldCodec::read(attachment.data(), attachment.size(), &text) ==
                    FieldCodec::Result::OK &&
                text.code == ZORCLIENT_STRING) {
                out.appendf("len=%" PRIu32 " '", text.valueSize - 1);
                out.appendPrintable(text.value_p, text.valueSize - 1);
                out.append("'\n");
            } else {
                out.appendf("len=%" PRIu32 "\n", attachment.size());
                hexLines(out, attachment.data(), attachment.size(), 2);
            }
            break;
        }
        default:
            label(out, "Binary Attachment:");
            out.appendf("len=%" PRIu32 "\n", attachment.size());
            hexLines(out, attachment.data(), attachment.size(), 2);
            break;
    }
}

}  // namespace

void MessageDump::write(const Message& msg, TextWriter& out) noexcept {
    headerLines(out, msg);
    deliveryLines(out, msg);
    partLines(out, msg);
}

}  // namespace zorvane::zorclient
