// A readable record of one received message: its destinations, headers
// and flags as the library reports them, for whoever drives a client object
// and wants to see what arrived last. The client keeps the current record
// and a bounded history of copies.
//
// Three-state flags (INT8): 0 not set, 1 true, -1 false. Some fields
// (custom properties, type, object type, payload, the trace contexts and
// the baggage) are carried and printed but not filled by the receive path.
//
// A plain value: copies are independent; one thread at a time.
#pragma once

#include <string>

#include "common/dataTypes.h"

namespace zorvane::pubsub {

class LastMessageDetails {
  public:
    // The cleared record (see clear()).
    LastMessageDetails() = default;
    LastMessageDetails(const LastMessageDetails&) = default;
    LastMessageDetails& operator=(const LastMessageDetails&) = default;
    LastMessageDetails(LastMessageDetails&&) = default;
    LastMessageDetails& operator=(LastMessageDetails&&) = default;
    ~LastMessageDetails() = default;

    // Every field back to empty or 0, except the binary payload size, which
    // goes to -1 (unknown) so that an empty attachment can be told from a
    // message that was never read.
    void clear() { *this = LastMessageDetails(); }

    // "{", one labelled line per field, "}". Numbers print in decimal; an
    // INT8 flag prints as the single raw byte of its value.
    std::string toString() const;

    // One getter and one setter per field.
    const std::string& getReplyToDestination() const { return replyToDestination_m; }
    void setReplyToDestination(const std::string& value) { replyToDestination_m = value; }
    SubscriptionType getReplyToDestinationType() const { return replyToDestinationType_m; }
    void setReplyToDestinationType(SubscriptionType value) { replyToDestinationType_m = value; }
    const std::string& getDestination() const { return destination_m; }
    void setDestination(const std::string& value) { destination_m = value; }
    SubscriptionType getDestinationType() const { return destinationType_m; }
    void setDestinationType(SubscriptionType value) { destinationType_m = value; }
    const std::string& getHttpContentType() const { return httpContentType_m; }
    void setHttpContentType(const std::string& value) { httpContentType_m = value; }
    const std::string& getHttpContentEncoding() const { return httpContentEncoding_m; }
    void setHttpContentEncoding(const std::string& value) { httpContentEncoding_m = value; }
    const std::string& getCorrelationId() const { return correlationId_m; }
    void setCorrelationId(const std::string& value) { correlationId_m = value; }
    const std::string& getCustomPropertyList() const { return customPropertyList_m; }
    void setCustomPropertyList(const std::string& value) { customPropertyList_m = value; }
    UINT64 getExpiration() const { return expiration_m; }
    void setExpiration(UINT64 value) { expiration_m = value; }
    INT32 getPriority() const { return priority_m; }
    void setPriority(INT32 value) { priority_m = value; }
    const std::string& getAppMessageId() const { return appMessageId_m; }
    void setAppMessageId(const std::string& value) { appMessageId_m = value; }
    const std::string& getAppMessageType() const { return appMessageType_m; }
    void setAppMessageType(const std::string& value) { appMessageType_m = value; }
    UINT64 getSenderTimestamp() const { return senderTimestamp_m; }
    void setSenderTimestamp(UINT64 value) { senderTimestamp_m = value; }
    const std::string& getCos() const { return cos_m; }
    void setCos(const std::string& value) { cos_m = value; }
    const std::string& getDeliveryMode() const { return deliveryMode_m; }
    void setDeliveryMode(const std::string& value) { deliveryMode_m = value; }
    INT32 getDeliverCount() const { return deliverCount_m; }
    void setDeliverCount(INT32 value) { deliverCount_m = value; }
    INT8 getRedelivered() const { return redelivered_m; }
    void setRedelivered(INT8 value) { redelivered_m = value; }
    const std::string& getReplicationGroupMessageId() const { return replicationGroupMessageId_m; }
    void setReplicationGroupMessageId(const std::string& value) {
        replicationGroupMessageId_m = value;
    }
    const std::string& getType() const { return type_m; }
    void setType(const std::string& value) { type_m = value; }
    const std::string& getObjectType() const { return objectType_m; }
    void setObjectType(const std::string& value) { objectType_m = value; }
    const std::string& getMessageId() const { return messageId_m; }
    void setMessageId(const std::string& value) { messageId_m = value; }
    const std::string& getPayload() const { return payload_m; }
    void setPayload(const std::string& value) { payload_m = value; }
    INT8 getIsAckImmediately() const { return isAckImmediately_m; }
    void setIsAckImmediately(INT8 value) { isAckImmediately_m = value; }
    INT8 getIsDmqEligible() const { return isDmqEligible_m; }
    void setIsDmqEligible(INT8 value) { isDmqEligible_m = value; }
    const std::string& getCreationContextTraceId() const { return creationContextTraceId_m; }
    void setCreationContextTraceId(const std::string& value) { creationContextTraceId_m = value; }
    const std::string& getCreationContextSpanId() const { return creationContextSpanId_m; }
    void setCreationContextSpanId(const std::string& value) { creationContextSpanId_m = value; }
    INT8 getCreationContextSampled() const { return creationContextSampled_m; }
    void setCreationContextSampled(INT8 value) { creationContextSampled_m = value; }
    const std::string& getCreationContextTraceState() const { return creationContextTraceState_m; }
    void setCreationContextTraceState(const std::string& value) {
        creationContextTraceState_m = value;
    }
    const std::string& getTransportContextTraceId() const { return transportContextTraceId_m; }
    void setTransportContextTraceId(const std::string& value) { transportContextTraceId_m = value; }
    const std::string& getTransportContextSpanId() const { return transportContextSpanId_m; }
    void setTransportContextSpanId(const std::string& value) { transportContextSpanId_m = value; }
    INT8 getTransportContextSampled() const { return transportContextSampled_m; }
    void setTransportContextSampled(INT8 value) { transportContextSampled_m = value; }
    const std::string& getTransportContextTraceState() const {
        return transportContextTraceState_m;
    }
    void setTransportContextTraceState(const std::string& value) {
        transportContextTraceState_m = value;
    }
    const std::string& getBaggage() const { return baggage_m; }
    void setBaggage(const std::string& value) { baggage_m = value; }
    INT32 getBinaryPayloadSize() const { return binaryPayloadSize_m; }
    void setBinaryPayloadSize(INT32 value) { binaryPayloadSize_m = value; }

  private:
    std::string replyToDestination_m;
    SubscriptionType replyToDestinationType_m = SUBSCRIPTION_TYPE_UNKNOWN;
    std::string destination_m;
    SubscriptionType destinationType_m = SUBSCRIPTION_TYPE_UNKNOWN;
    std::string httpContentType_m;
    std::string httpContentEncoding_m;
    std::string correlationId_m;
    std::string customPropertyList_m;
    UINT64 expiration_m = 0;
    INT32 priority_m = 0;
    std::string appMessageId_m;
    std::string appMessageType_m;
    UINT64 senderTimestamp_m = 0;
    std::string cos_m;
    std::string deliveryMode_m;
    INT32 deliverCount_m = 0;
    INT8 redelivered_m = 0;
    std::string replicationGroupMessageId_m;
    std::string type_m;
    std::string objectType_m;
    std::string messageId_m;
    std::string payload_m;
    INT8 isAckImmediately_m = 0;
    INT8 isDmqEligible_m = 0;
    std::string creationContextTraceId_m;
    std::string creationContextSpanId_m;
    INT8 creationContextSampled_m = 0;
    std::string creationContextTraceState_m;
    std::string transportContextTraceId_m;
    std::string transportContextSpanId_m;
    INT8 transportContextSampled_m = 0;
    std::string transportContextTraceState_m;
    std::string baggage_m;
    INT32 binaryPayloadSize_m = -1;
};

}  // namespace zorvane::pubsub
