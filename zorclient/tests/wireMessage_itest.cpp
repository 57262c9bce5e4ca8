// The broker boundary: a snapshot for a send and messages made from it for deliveries. A round
// trip carries every field and part, shares the payload instead of copying it and adds only what
// the delivery says; copies are released safely from many threads. (That broker copies stay out
// of the application's pool counters and take no new memory once warm, the direct messaging
// tests check on the public path.)
#include <cstring>
#include <string>
#include <thread>
#include <vector>

#include "MsgTestSupport.h"
#include "core/Message.h"
#include "core/MessagePool.h"
#include "core/ReplicationGroupMessageId.h"
#include "core/WireMessage.h"

namespace {

using namespace zorclient_test;
using zorvane::zorclient::DeliveryInfo;
using zorvane::zorclient::PartId;
using zorvane::zorclient::ReplicationGroupMessageId;
using zorvane::zorclient::WireMessage;
using Msg = zorClient_opaqueMsg_pt;

WireMessage* snapshotOf(Msg msg) {
    WireMessage* wire = nullptr;
    EXPECT_EQ(ZORCLIENT_OK, WireMessage::snapshot(msg, &wire));
    return wire;
}

Msg deliver(WireMessage* wire, const DeliveryInfo& delivery = DeliveryInfo()) {
    Msg msg = nullptr;
    EXPECT_EQ(ZORCLIENT_OK, wire->materialize(delivery, &msg));
    return msg;
}

class WireMessageTest : public NoLeakTest {};

TEST_F(WireMessageTest, ARoundTripCarriesEveryFieldAndSharesThePayload) {
    ScopedMsg sender;
    char attachment[] = "attachment bytes";
    fillEverything(sender, attachment);
    ASSERT_EQ(ZORCLIENT_OK, zorClient_msg_setQueueNamePtr(sender, "q1"));
    ASSERT_EQ(ZORCLIENT_OK,
              zorClient_msg_setDeliveryMode(sender, ZORCLIENT_DELIVERY_MODE_NONPERSISTENT));
    ASSERT_EQ(ZORCLIENT_OK, zorClient_msg_setElidingEligible(sender, 1));

    WireMessage* wire = snapshotOf(sender);
    // The sender may refill its message at once; its pointers are not used again.
    ASSERT_EQ(ZORCLIENT_OK, zorClient_msg_reset(sender));
    std::memset(attachment, 'X', 16);
    ASSERT_NE(nullptr, wire);
    EXPECT_TRUE(wire->isGuaranteed());
    EXPECT_STREQ("q1", wire->destination());
    EXPECT_EQ(reinterpret_cast<void*>(42), wire->correlationTag());
    // Destination 2, reply-to 8, texts 0 + 22 + 24 + 9 + 17 + 21, user data 4, property map 40,
    // XML 13, attachment 16.
    EXPECT_EQ(176u, wire->contentSize());
    zorClient_field_t property;
    ASSERT_TRUE(wire->findUserProperty("JMSXGroupID", &property));
    EXPECT_STREQ("key", property.value.string);
    EXPECT_FALSE(wire->findUserProperty("absent", &property));

    Msg received = deliver(wire);
    expectEverything(received, "attachment bytes", true);
    const std::uint8_t* shared = nullptr;
    std::uint32_t size = 0;
    ASSERT_TRUE(wire->part(PartId::ATTACHMENT, &shared, &size));
    void* data = nullptr;
    ASSERT_EQ(ZORCLIENT_OK, zorClient_msg_getBinaryAttachmentPtr(received, &data, &size));
    EXPECT_EQ(shared, data) << "the payload was copied instead of shared";
    zorClient_destination_t dest{};
    ASSERT_EQ(ZORCLIENT_OK, zorClient_msg_getDestination(received, &dest, sizeof dest));
    EXPECT_EQ(ZORCLIENT_QUEUE_DESTINATION, dest.destType);
    EXPECT_STREQ("q1", dest.dest);
    zorClient_uint32_t mode = 0;
    zorClient_uint64_t expiration = 0;
    ASSERT_EQ(ZORCLIENT_OK, zorClient_msg_getDeliveryMode(received, &mode));
    EXPECT_EQ(ZORCLIENT_RX_DELIVERY_MODE_NON_PERSISTENT, mode);
    ASSERT_EQ(ZORCLIENT_OK, zorClient_msg_getExpiration(received, &expiration));
    EXPECT_EQ(wire->expirationMs(), expiration);
    EXPECT_NE(0u, expiration);
    // The correlation tag stays with the sender.
    void* tag = nullptr;
    EXPECT_EQ(ZORCLIENT_NOT_FOUND, zorClient_msg_getCorrelationTagPtr(received, &tag, &size));

    ASSERT_EQ(ZORCLIENT_OK, zorClient_msg_free(&received));
    wire->release();
}

TEST_F(WireMessageTest, WhatADeliveryAddsComesFromTheDeliveryOnly) {
    ScopedMsg sender;
    ASSERT_EQ(ZORCLIENT_OK, zorClient_msg_setTopicPtr(sender, "a/b"));
    ASSERT_EQ(ZORCLIENT_OK, _zorClient_msg_setTopicSequenceNumber(sender, 41));
    WireMessage* wire = snapshotOf(sender);

    std::vector<zorClient_uint32_t> ids;
    for (zorClient_uint32_t i = 1; i <= 12; ++i) {
        ids.push_back(i * 10);
    }
    DeliveryInfo delivery;
    delivery.destination_p = "#tq/7";
    delivery.destinationType = ZORCLIENT_QUEUE_TEMP_DESTINATION;
    delivery.deliveryMode = ZORCLIENT_DELIVERY_MODE_NONPERSISTENT;
    delivery.hasMsgId = true;
    delivery.msgId = 99;
    delivery.redelivered = true;
    delivery.deliveryCount = 3;
    delivery.discardIndication = true;
    delivery.consumerIds_p = ids.data();
    delivery.consumerIdCount = static_cast<std::uint32_t>(ids.size());
    delivery.cacheStatus = ZORCLIENT_CACHE_SUSPECT_MESSAGE;
    delivery.cacheRequestId = 5;
    delivery.hasReplicationGroupMessageId = true;
    delivery.replicationGroupMessageId = ReplicationGroupMessageId::make(3, 17);
    Msg received = deliver(wire, delivery);

    zorClient_destination_t dest{};
    ASSERT_EQ(ZORCLIENT_OK, zorClient_msg_getDestination(received, &dest, sizeof dest));
    EXPECT_EQ(ZORCLIENT_QUEUE_DESTINATION, dest.destType);
    EXPECT_STREQ("#tq/7", dest.dest);
    zorClient_msgId_t msgId = 0;
    zorClient_int32_t count = 0;
    zorClient_uint64_t requestId = 0;
    zorClient_int64_t sequence = 0;
    zorClient_uint32_t idCount = 0, mode = 0;
    ASSERT_EQ(ZORCLIENT_OK, zorClient_msg_getMsgId(received, &msgId));
    EXPECT_EQ(99u, msgId);
    ASSERT_EQ(ZORCLIENT_OK, zorClient_msg_getDeliveryCount(received, &count));
    EXPECT_EQ(3, count);
    ASSERT_EQ(ZORCLIENT_OK, zorClient_msg_getDeliveryMode(received, &mode));
    EXPECT_EQ(ZORCLIENT_RX_DELIVERY_MODE_NON_PERSISTENT, mode);
    EXPECT_TRUE(zorClient_msg_isRedelivered(received));
    EXPECT_TRUE(zorClient_msg_isDiscardIndication(received));
    EXPECT_EQ(ZORCLIENT_CACHE_SUSPECT_MESSAGE, zorClient_msg_isCacheMsg(received));
    ASSERT_EQ(ZORCLIENT_OK, zorClient_msg_getCacheRequestId(received, &requestId));
    EXPECT_EQ(5u, requestId);
    // No broker number: the sender's arrives unchanged.
    ASSERT_EQ(ZORCLIENT_OK, zorClient_msg_getTopicSequenceNumber(received, &sequence));
    EXPECT_EQ(41, sequence);
    ASSERT_EQ(ZORCLIENT_OK, zorClient_msg_getConsumerIdCount(received, &idCount));
    ASSERT_EQ(12u, idCount);
    std::vector<zorClient_uint32_t> read;
    zorClient_consumerId_t id = 0;
    for (zorClient_uint32_t i = 0;
         zorClient_msg_getConsumerId(received, i, &id), id != ZORCLIENT_CONSUMER_ID_NONE; ++i) {
        read.push_back(id);
    }
    EXPECT_EQ(ids, read);
    zorClient_replicationGroupMessageId_t rgmid;
    ASSERT_EQ(ZORCLIENT_OK,
              zorClient_msg_getReplicationGroupMessageId(received, &rgmid, sizeof rgmid));
    EXPECT_EQ(17u, ReplicationGroupMessageId::position(rgmid));
    // The same copy delivered plainly to another receiver knows none of it.
    Msg plain = deliver(wire);
    ASSERT_EQ(ZORCLIENT_OK, zorClient_msg_getDestination(plain, &dest, sizeof dest));
    EXPECT_STREQ("a/b", dest.dest);
    EXPECT_EQ(ZORCLIENT_NOT_FOUND, zorClient_msg_getMsgId(plain, &msgId));
    const char* text = nullptr;  // absent stays absent
    EXPECT_EQ(ZORCLIENT_NOT_FOUND, zorClient_msg_getCorrelationId(plain, &text));
    EXPECT_FALSE(zorClient_msg_isRedelivered(plain));
    ASSERT_EQ(ZORCLIENT_OK, zorClient_msg_getConsumerIdCount(plain, &idCount));
    EXPECT_EQ(0u, idCount);
    wire->release();  // the receivers' references keep the copy
    EXPECT_EQ("(none)", attachmentOf(plain));
    ASSERT_EQ(ZORCLIENT_OK, zorClient_msg_free(&plain));
    ASSERT_EQ(ZORCLIENT_OK, zorClient_msg_free(&received));
}

TEST_F(WireMessageTest, AReceivedMessageSentOnCarriesNothingOfItsDelivery) {
    ScopedMsg sender;
    ASSERT_EQ(ZORCLIENT_OK, zorClient_msg_setTopicPtr(sender, "in"));
    ASSERT_EQ(ZORCLIENT_OK, zorClient_msg_setBinaryAttachment(sender, "payload", 7));
    WireMessage* first = snapshotOf(sender);
    DeliveryInfo delivery;
    delivery.hasMsgId = true;
    delivery.msgId = 1;
    delivery.redelivered = true;
    delivery.topicSequenceNumber = 8;
    Msg received = deliver(first, delivery);
    first->release();
    zorClient_opaqueContainer_pt map = nullptr;
    ASSERT_EQ(ZORCLIENT_OK, zorClient_msg_setTopicPtr(received, "out"));
    ASSERT_EQ(ZORCLIENT_OK, zorClient_msg_createUserPropertyMap(received, &map, 0));
    ASSERT_EQ(ZORCLIENT_OK, zorClient_container_addBoolean(map, 1, "reflected"));

    WireMessage* second = snapshotOf(received);
    ASSERT_EQ(ZORCLIENT_OK, zorClient_msg_free(&received));
    EXPECT_STREQ("out", second->destination());
    EXPECT_EQ(0, second->header().senderTopicSequenceNumber);
    Msg again = deliver(second);
    zorClient_msgId_t msgId = 0;
    zorClient_int64_t sequence = 0;
    zorClient_bool_t reflected = 0;
    EXPECT_EQ("payload", attachmentOf(again));
    EXPECT_EQ(ZORCLIENT_NOT_FOUND, zorClient_msg_getMsgId(again, &msgId));
    EXPECT_EQ(ZORCLIENT_NOT_FOUND, zorClient_msg_getTopicSequenceNumber(again, &sequence));
    EXPECT_FALSE(zorClient_msg_isRedelivered(again));
    ASSERT_EQ(ZORCLIENT_OK, zorClient_msg_getUserPropertyMap(again, &map));
    EXPECT_EQ(ZORCLIENT_OK, zorClient_container_getBoolean(map, &reflected, "reflected"));
    EXPECT_TRUE(reflected);
    ASSERT_EQ(ZORCLIENT_OK, zorClient_msg_free(&again));
    second->release();
}

TEST_F(WireMessageTest, ChangesToAReceivedMessageNeverReachTheSharedCopy) {
    ScopedMsg sender;
    zorClient_opaqueContainer_pt map = nullptr;
    ASSERT_EQ(ZORCLIENT_OK, zorClient_msg_createUserPropertyMap(sender, &map, 0));
    ASSERT_EQ(ZORCLIENT_OK, zorClient_container_addInt32(map, 1, "a"));
    WireMessage* wire = snapshotOf(sender);
    Msg first = deliver(wire);
    Msg second = deliver(wire);
    wire->release();
    ASSERT_EQ(ZORCLIENT_OK, zorClient_msg_getUserPropertyMap(first, &map));
    ASSERT_EQ(ZORCLIENT_OK, zorClient_container_addInt32(map, 2, "b"));
    ASSERT_EQ(ZORCLIENT_OK, zorClient_msg_setBinaryAttachment(first, "own", 3));
    zorClient_int32_t value = 0;
    EXPECT_EQ(ZORCLIENT_OK, zorClient_container_getInt32(map, &value, "b"));
    ASSERT_EQ(ZORCLIENT_OK, zorClient_msg_getUserPropertyMap(second, &map));
    EXPECT_EQ(ZORCLIENT_NOT_FOUND, zorClient_container_getInt32(map, &value, "b"));
    EXPECT_EQ("(none)", attachmentOf(second));
    ASSERT_EQ(ZORCLIENT_OK, zorClient_msg_free(&first));
    ASSERT_EQ(ZORCLIENT_OK, zorClient_msg_free(&second));
}

TEST_F(WireMessageTest, ReferencesAreTakenAndGivenBackFromManyThreads) {
    ScopedMsg sender;
    const std::string payload(3000, 'm');
    ASSERT_EQ(ZORCLIENT_OK, zorClient_msg_setBinaryAttachmentPtr(sender, payload.data(), 3000));
    constexpr int RECEIVERS = 6;
    constexpr int MESSAGES = 300;
    std::vector<WireMessage*> wires;
    for (int i = 0; i < MESSAGES; ++i) {
        wires.push_back(snapshotOf(sender));
        for (int r = 0; r < RECEIVERS; ++r) {
            wires.back()->retain();  // one per queued delivery
        }
        wires.back()->release();  // the sender's
    }
    std::vector<std::thread> receivers;
    std::vector<int> mismatches(RECEIVERS, 0);
    for (int r = 0; r < RECEIVERS; ++r) {
        receivers.emplace_back([&, r] {
            for (WireMessage* wire : wires) {
                Msg msg = deliver(wire);
                wire->release();  // the queue entry's, before the message is looked at
                mismatches[r] += attachmentOf(msg) != payload;
                zorClient_msg_free(&msg);
            }
        });
    }
    for (std::thread& receiver : receivers) {
        receiver.join();
    }
    for (int r = 0; r < RECEIVERS; ++r) {
        EXPECT_EQ(0, mismatches[r]);
    }
}

TEST_F(WireMessageTest, BadHandlesAndDeliveriesAreRefused) {
    WireMessage* wire = nullptr;
    EXPECT_EQ(ZORCLIENT_FAIL, WireMessage::snapshot(nullptr, &wire));
    EXPECT_EQ(ZORCLIENT_SUBCODE_PARAM_NULL_PTR, lastError().subCode);
    Msg freed = nullptr;
    ASSERT_EQ(ZORCLIENT_OK, zorClient_msg_alloc(&freed));
    Msg stale = freed;
    ASSERT_EQ(ZORCLIENT_OK, zorClient_msg_free(&freed));
    EXPECT_EQ(ZORCLIENT_FAIL, WireMessage::snapshot(stale, &wire));
    EXPECT_EQ(ZORCLIENT_SUBCODE_INVALID_HANDLE, lastError().subCode);
    EXPECT_EQ(nullptr, wire);
    ScopedMsg empty;
    wire = snapshotOf(empty);
    EXPECT_EQ(nullptr, wire->destination());
    EXPECT_EQ(0u, wire->contentSize());
    DeliveryInfo delivery;
    delivery.consumerIdCount = 2;  // without the ids
    Msg msg = nullptr;
    EXPECT_EQ(ZORCLIENT_FAIL, wire->materialize(delivery, &msg));
    EXPECT_EQ(nullptr, msg);
    wire->release();
}

}  // namespace
