// Who receives a direct message: fan-out, no-local, deliver-to-one with priorities and
// deliver-always, topic sequence numbers, the bounded egress with its discard indication, and
// deliveries still queued when their session goes.
#include <gtest/gtest.h>

#include "DirectTestSupport.h"

namespace {

using namespace zctest;

TEST_F(DirectTest, EverySessionGetsAMessageOnceAndNoLocalSkipsTheSender) {
    Peer overlapping(context());
    overlapping.subscribe("f/>");
    overlapping.subscribe("f/a");
    Peer exact(context());
    exact.subscribe("f/a");
    Peer elsewhere(context());
    elsewhere.subscribe("g/>");
    Peer local(context());  // receives its own messages
    local.subscribe("f/>");
    Peer noLocal(context(), {"SESSION_NO_LOCAL", "1"});
    noLocal.subscribe("f/>");
    for (int i = 0; i < 10; ++i) {
        ASSERT_EQ(ZORCLIENT_OK, send(local.session, "f/a"));
        ASSERT_EQ(ZORCLIENT_OK, send(noLocal.session, "f/a"));
    }
    for (Peer* peer_p : {&overlapping, &exact, &local, &noLocal}) {
        ASSERT_TRUE(peer_p->waitFor(peer_p == &noLocal ? 10 : 20));
    }
    std::this_thread::sleep_for(50ms);
    EXPECT_EQ(20u, overlapping.count());
    EXPECT_EQ((std::vector<zorClient_uint32_t>{1, 2}), overlapping.received()[0].consumerIds);
    EXPECT_EQ(20u, exact.count());
    EXPECT_EQ(0u, elsewhere.count());
    EXPECT_EQ(20u, local.count());
    EXPECT_EQ(10u, noLocal.count());
    EXPECT_EQ(20u, overlapping.rx(ZORCLIENT_STATS_RX_DIRECT_MSGS));
    EXPECT_EQ(0u, noLocal.tx(ZORCLIENT_STATS_TX_DISCARD_NO_MATCH));
}

TEST_F(DirectTest, SmallAndLargeMessagesArriveIntactAtEveryReceiver) {
    Peer first(context());
    first.subscribe("s/>");
    Peer second(context());
    second.subscribe("s/x");
    // Around and far beyond what a broker copy holds without a data block of its own.
    std::vector<std::string> attachments;
    for (std::size_t size : {0u, 250u, 291u, 292u, 293u, 400u, 70000u}) {
        std::string attachment(size, '\0');
        for (std::size_t i = 0; i < size; ++i) {
            attachment[i] = static_cast<char>('a' + (i * 7 + size) % 26);
        }
        attachments.push_back(attachment);
        ASSERT_EQ(ZORCLIENT_OK, send(first.session, "s/x", attachment));
    }
    for (Peer* peer_p : {&first, &second}) {
        ASSERT_TRUE(peer_p->waitFor(attachments.size()));
        const std::vector<Received> received = peer_p->received();
        for (std::size_t i = 0; i < attachments.size(); ++i) {
            EXPECT_EQ("s/x", received[i].topic);
            EXPECT_EQ(attachments[i], received[i].attachment) << "message " << i;
        }
    }
}

TEST_F(DirectTest, DeliverToOneGoesToTheHighestPriorityInTurnsAndToDeliverAlways) {
    Peer low(context(), {"SESSION_SUBSCRIBER_LOCAL_PRIORITY", "1"});
    Peer highA(context(), {"SESSION_SUBSCRIBER_LOCAL_PRIORITY", "3"});
    Peer highB(context(), {"SESSION_SUBSCRIBER_LOCAL_PRIORITY", "3"});
    Peer always(context(), {"SESSION_SUBSCRIBER_LOCAL_PRIORITY", "1"});
    low.subscribe("d/*");
    highA.subscribe("d/*");
    highB.subscribe("d/x");
    always.subscribe("d/>", ZORCLIENT_SUBSCRIBE_FLAGS_RX_ALL_DELIVER_TO_ONE);
    // The best-placed subscriber is also the sender, and takes no messages of its own.
    Peer sender(context(), {"SESSION_SUBSCRIBER_LOCAL_PRIORITY", "4", "SESSION_NO_LOCAL", "1"});
    sender.subscribe("d/x");
    OutMsg msg("d/x");
    ASSERT_EQ(ZORCLIENT_OK, zorClient_msg_setDeliverToOne(msg, 1));
    for (int i = 0; i < 6; ++i) {
        ASSERT_EQ(ZORCLIENT_OK, zorClient_session_sendMsg(sender.session, msg));
    }
    ASSERT_TRUE(always.waitFor(6));
    ASSERT_TRUE(waitUntil([&] { return highA.count() + highB.count() == 6; }));
    EXPECT_EQ(3u, highA.count());
    EXPECT_EQ(3u, highB.count());
    EXPECT_EQ(0u, low.count());
    EXPECT_EQ(0u, sender.count());
}

TEST_F(DirectTest, TopicSequenceNumbersCountPerTopicUnlessTheSenderSetsOne) {
    Peer receiver(context());
    receiver.subscribe("s/*");
    Peer sender(context());
    for (const char* topic_p : {"s/a", "s/a", "s/b", "s/a"}) {
        ASSERT_EQ(ZORCLIENT_OK, send(sender.session, topic_p));
    }
    OutMsg own("s/a");
    ASSERT_EQ(ZORCLIENT_OK, _zorClient_msg_setTopicSequenceNumber(own, 77));
    ASSERT_EQ(ZORCLIENT_OK, zorClient_session_sendMsg(sender.session, own));
    ASSERT_EQ(ZORCLIENT_OK, send(sender.session, "s/a"));
    ASSERT_TRUE(receiver.waitFor(6));
    std::vector<zorClient_int64_t> numbers;
    for (const Received& r : receiver.received()) {
        numbers.push_back(r.topicSequence);
    }
    EXPECT_EQ((std::vector<zorClient_int64_t>{1, 2, 1, 3, 77, 4}), numbers);
}

TEST_F(DirectTest, AReceiverThatFallsBehindLosesMessagesAndLearnsOfIt) {
    // A context nobody processes yet: deliveries pile up in the receiver's egress, which holds
    // 1000 bytes: three messages of 200 bytes and their overhead.
    IdleContext slow;
    const std::string payload(200, 'p');
    // A broker of its own that queues nothing beyond the session's buffers.
    Peer receiver(slow.get(),
                  {"SESSION_HOST", "embedded://tight-egress", "SESSION_SOCKET_RCV_BUF_SIZE", "0",
                   "SESSION_BUFFER_SIZE", "1000", "EMBEDDED_EGRESS_QUEUE_SIZE", "0"});
    receiver.subscribe("e/x");
    Peer sender(context(), {"SESSION_HOST", "embedded://tight-egress"});
    for (int i = 0; i < 10; ++i) {
        ASSERT_EQ(ZORCLIENT_OK, send(sender.session, "e/x", payload + std::to_string(i)));
    }
    slow.process(3);
    ASSERT_EQ(3u, receiver.count());
    EXPECT_EQ(payload + "2", receiver.received()[2].attachment);
    ASSERT_EQ(ZORCLIENT_OK, send(sender.session, "e/x", "after"));
    ASSERT_EQ(ZORCLIENT_OK, send(sender.session, "e/x", "later"));
    slow.process(3);
    const std::vector<Received> received = receiver.received();
    ASSERT_EQ(5u, received.size());
    EXPECT_FALSE(received[2].discardIndication);
    EXPECT_TRUE(received[3].discardIndication);
    EXPECT_EQ("after", received[3].attachment);
    EXPECT_FALSE(received[4].discardIndication);
    EXPECT_EQ(1u, receiver.rx(ZORCLIENT_STATS_RX_DISCARD_IND));
    EXPECT_EQ(5u, receiver.rx(ZORCLIENT_STATS_RX_DIRECT_MSGS));
    EXPECT_EQ(12u, sender.tx(ZORCLIENT_STATS_TX_DIRECT_MSGS));
}

std::atomic<int> lateCallbacks_s{0};

zorClient_rxMsgCallback_returnCode_t countLate(zorClient_opaqueSession_pt, zorClient_opaqueMsg_pt,
                                               void*) {
    lateCallbacks_s.fetch_add(1);
    return ZORCLIENT_CALLBACK_OK;
}

TEST_F(DirectTest, DeliveriesStillQueuedWhenTheirSessionGoesAreDroppedUnseen) {
    IdleContext idle;
    EventLog log;
    Peer sender(context());
    auto receiverWithQueued = [&](int messages) {
        zorClient_opaqueSession_pt session = nullptr;
        EXPECT_EQ(ZORCLIENT_OK, createSession(idle.get(), {}, &log, &session, &countLate));
        EXPECT_EQ(ZORCLIENT_OK, zorClient_session_connect(session));
        EXPECT_EQ(ZORCLIENT_OK, zorClient_session_topicSubscribeExt(session, 0, "late/x"));
        for (int i = 0; i < messages; ++i) {
            EXPECT_EQ(ZORCLIENT_OK, send(sender.session, "late/x"));
        }
        return session;
    };
    // Gone before its context ran: the context's next passes drop what was queued for it.
    zorClient_opaqueSession_pt gone = receiverWithQueued(5);
    ASSERT_EQ(ZORCLIENT_OK, zorClient_session_destroy(&gone));
    idle.process(3);
    // Still there when its context is destroyed, with deliveries queued: the destroy drops them.
    receiverWithQueued(4);
    ASSERT_EQ(ZORCLIENT_OK, idle.destroy());
    EXPECT_EQ(0, lateCallbacks_s.load());
}

}  // namespace
