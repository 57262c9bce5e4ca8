#include "common/LastMessageDetails.h"

#include <string>

namespace zorvane::pubsub {

namespace {

void addLine(std::string& out, const char* label, const std::string& value) {
    out += label;
    out += value;
    out += '\n';
}

template <typename Number>
void addLine(std::string& out, const char* label, Number value) {
    addLine(out, label, std::to_string(value));
}

// A three-state flag goes out as the one byte of its value (0, 1 or 0xFF),
// not as digits.
void addFlagLine(std::string& out, const char* label, INT8 value) {
    addLine(out, label, std::string(1, static_cast<char>(value)));
}

}  // namespace

std::string LastMessageDetails::toString() const {
    std::string out = "{\n";
    addLine(out, "  Reply To Destination          = ", replyToDestination_m);
    addLine(out, "  Reply To Destination Type     = ", static_cast<int>(replyToDestinationType_m));
    addLine(out, "  Destination                   = ", destination_m);
    addLine(out, "  Destination Type              = ", static_cast<int>(destinationType_m));
    addLine(out, "  HTTP Content Type             = ", httpContentType_m);
    addLine(out, "  HTTP Content Encoding         = ", httpContentEncoding_m);
    addLine(out, "  Correlation Id                = ", correlationId_m);
    addLine(out, "  Custom Property List          = ", customPropertyList_m);
    addLine(out, "  Expiration                    = ", expiration_m);
    addLine(out, "  Priority                      = ", priority_m);
    addLine(out, "  Application Message Id        = ", appMessageId_m);
    addLine(out, "  Application Message Type      = ", appMessageType_m);
    addLine(out, "  Sender Timestamp              = ", senderTimestamp_m);
    addLine(out, "  COS                           = ", cos_m);
    addLine(out, "  Delivery Mode                 = ", deliveryMode_m);
    addLine(out, "  Delivery Count                = ", deliverCount_m);
    addFlagLine(out, "  Redelivered                   = ", redelivered_m);
    addLine(out, "  Replication Group Message Id  = ", replicationGroupMessageId_m);
    addLine(out, "  Type                          = ", type_m);
    addLine(out, "  Object Type                   = ", objectType_m);
    addLine(out, "  Message Id                    = ", messageId_m);
    addLine(out, "  Payload                       = ", payload_m);
    addFlagLine(out, "  Is Ack Immediately            = ", isAckImmediately_m);
    addFlagLine(out, "  Is DMQ Eligible               = ", isDmqEligible_m);
    addLine(out, "  Creation Context Trace ID     = ", creationContextTraceId_m);
    addLine(out, "  Creation Context Span ID      = ", creationContextSpanId_m);
    addFlagLine(out, "  Creation Context Sampled      = ", creationContextSampled_m);
    addLine(out, "  Creation Context Trace State  = ", creationContextTraceState_m);
    addLine(out, "  Transport Context Trace ID    = ", transportContextTraceId_m);
    addLine(out, "  Transport Context Span ID     = ", transportContextSpanId_m);
    addFlagLine(out, "  Transport Context Sampled     = ", transportContextSampled_m);
    addLine(out, "  Transport Context Trace State = ", transportContextTraceState_m);
    addLine(out, "  Baggage                       = ", baggage_m);
    addLine(out, "  Binary Payload Size           = ", binaryPayloadSize_m);
    out += "}";
    return out;
}

}  // namespace zorvane::pubsub
