// Sending: what a message carries, batches, blocking and non-blocking sends while reconnecting,
// what cannot be sent, statistics, and library calls from inside callbacks.
#include <gtest/gtest.h>

#include <mutex>
#include <vector>

#include "DirectTestSupport.h"

namespace {

using namespace zctest;

TEST_F(DirectTest, EveryFieldArrivesAndTheSenderMayReuseItsMessageAtOnce) {
    Peer receiver(context());
    receiver.subscribe("t/>");
    std::atomic<zorClient_opaqueMsg_pt> kept{nullptr};
    receiver.onMessage = [&](zorClient_opaqueMsg_pt msg) {
        zorClient_opaqueMsg_pt none = nullptr;
        return kept.compare_exchange_strong(none, msg);  // keep the first one only
    };
    Peer sender(context());
    std::string attachment(100, 'a');
    OutMsg msg("t/1");
    zorclient_test::fillEverything(msg, attachment.c_str());
    ASSERT_EQ(ZORCLIENT_OK, zorClient_session_sendMsg(sender.session, msg));
    // The send copied: the caller's buffer and message change, the received message does not.
    attachment.assign(100, 'Z');
    zorClient_msg_reset(msg);
    ASSERT_TRUE(waitUntil([&] { return kept.load() != nullptr; }));
    zorClient_opaqueMsg_pt got = kept.load();
    zorclient_test::expectEverything(got, std::string(100, 'a'), true);
    zorClient_uint32_t mode = 9;
    zorClient_uint64_t expiration = 0;
    EXPECT_EQ(ZORCLIENT_OK, zorClient_msg_getDeliveryMode(got, &mode) |
                                zorClient_msg_getExpiration(got, &expiration));
    EXPECT_EQ(ZORCLIENT_RX_DELIVERY_MODE_DIRECT, mode);
    EXPECT_GT(expiration, 0u);
    EXPECT_EQ(0, zorClient_msg_isReplyMsg(got));
    // A received message goes on as it is, to another topic (reflection).
    Peer reflected(context());
    reflected.subscribe("r/x");
    ASSERT_EQ(ZORCLIENT_OK, zorClient_msg_setTopicPtr(got, "r/x"));
    ASSERT_EQ(ZORCLIENT_OK, zorClient_session_sendMsg(receiver.session, got));
    ASSERT_TRUE(reflected.waitFor(1));
    EXPECT_EQ(std::string(100, 'a'), reflected.received()[0].attachment);
    zorClient_msg_free(&got);
}

// A copy carries the header only when the message sets a field besides its destination type;
// copies are reused, so a plain message must not show what an earlier one on the same copy set.
TEST_F(DirectTest, PlainAndFullHeadersAlternateWithoutLeakingIntoEachOther) {
    struct Seen {
        zorClient_returnCode_t rc;
        zorClient_int32_t priority;
        zorClient_uint8_t dmq;
    };
    auto read = [](zorClient_opaqueMsg_pt msg) {
        Seen seen{ZORCLIENT_FAIL, 0, 0};
        seen.rc = zorClient_msg_getPriority(msg, &seen.priority);
        seen.dmq = static_cast<zorClient_uint8_t>(zorClient_msg_isDMQEligible(msg));
        return seen;
    };
    Peer receiver(context());
    receiver.subscribe("h/>");
    std::mutex mutex;
    std::vector<Seen> got;
    receiver.onMessage = [&](zorClient_opaqueMsg_pt msg) {
        std::lock_guard<std::mutex> lock(mutex);
        got.push_back(read(msg));
        return false;
    };
    Peer sender(context());
    OutMsg msg("h/1");
    std::vector<Seen> sent;
    for (int i = 0; i < 300; ++i) {
        zorClient_msg_reset(msg);
        zorClient_msg_setTopicPtr(msg, i % 2 == 0 ? "h/plain" : "h/full");
        if (i % 2 == 1) {
            zorClient_msg_setPriority(msg, i % 10);
            zorClient_msg_setDMQEligible(msg, 1);
        }
        sent.push_back(read(msg));
        ASSERT_EQ(ZORCLIENT_OK, zorClient_session_sendMsg(sender.session, msg));
    }
    ASSERT_TRUE(receiver.waitFor(sent.size()));
    std::lock_guard<std::mutex> lock(mutex);
    for (std::size_t i = 0; i < sent.size(); ++i) {
        EXPECT_EQ(sent[i].rc, got[i].rc) << i;
        EXPECT_EQ(sent[i].priority, got[i].priority) << i;
        EXPECT_EQ(sent[i].dmq, got[i].dmq) << i;
    }
}

TEST_F(DirectTest, SendMultipleGoesInOrderAndStopsAtTheFirstFailure) {
    Peer receiver(context());
    receiver.subscribe("v/>");
    Peer sender(context());
    OutMsg a("v/1", "a"), b("v/2", "b"), c("v/3", "c");
    zorClient_opaqueMsg_pt batch[] = {a, b, c};
    zorClient_uint32_t written = 0;
    ASSERT_EQ(ZORCLIENT_OK, zorClient_session_sendMultipleMsg(sender.session, batch, 3, &written));
    EXPECT_EQ(3u, written);
    zorClient_opaqueMsg_pt stale = nullptr;
    zorClient_msg_alloc(&stale);
    zorClient_opaqueMsg_pt freed = stale;
    zorClient_msg_free(&stale);
    zorClient_opaqueMsg_pt broken[] = {a, freed, c};
    EXPECT_EQ(ZORCLIENT_FAIL,
              zorClient_session_sendMultipleMsg(sender.session, broken, 3, &written));
    EXPECT_EQ(ZORCLIENT_SUBCODE_INVALID_HANDLE, lastError().subCode);
    EXPECT_EQ(1u, written);
    EXPECT_EQ(ZORCLIENT_FAIL,
              zorClient_session_sendMultipleMsg(sender.session, batch, 51, &written));
    ASSERT_TRUE(receiver.waitFor(4));
    std::string order;
    for (const Received& r : receiver.received()) {
        order += r.attachment;
    }
    EXPECT_EQ("abca", order);
}

TEST_F(DirectTest, WhileReconnectingBlockingSendsWaitAndOthersGetWouldBlockThenCanSend) {
    const std::vector<const char*> reconnect = {"SESSION_RECONNECT_RETRY_WAIT_MS", "200"};
    auto with = [&](std::vector<const char*> more) {
        more.insert(more.end(), reconnect.begin(), reconnect.end());
        return more;
    };
    Peer blocking(context(), with({}));
    Peer nonBlocking(context(), with({"SESSION_SEND_BLOCKING", "0"}));
    Peer impatient(context(), with({"SESSION_WRITE_TIMEOUT_MS", "20"}));
    for (Peer* peer_p : {&blocking, &nonBlocking, &impatient}) {
        ASSERT_EQ(ZORCLIENT_OK, _zorClient_session_forceFailure(peer_p->session));
        ASSERT_TRUE(peer_p->events.waitForCount(2));  // UP, RECONNECTING
    }
    EXPECT_EQ(ZORCLIENT_WOULD_BLOCK, send(nonBlocking.session, "b/x"));
    EXPECT_EQ(1u, nonBlocking.tx(ZORCLIENT_STATS_TX_WOULD_BLOCK));
    EXPECT_EQ(ZORCLIENT_FAIL, send(impatient.session, "b/x"));
    EXPECT_EQ(ZORCLIENT_SUBCODE_TIMEOUT, lastError().subCode);
    const auto start = std::chrono::steady_clock::now();
    EXPECT_EQ(ZORCLIENT_OK, send(blocking.session, "b/x"));
    EXPECT_GT(std::chrono::steady_clock::now() - start, 50ms);
    EXPECT_EQ(1u, blocking.tx(ZORCLIENT_STATS_TX_BLOCKED_ON_SEND));
    ASSERT_TRUE(nonBlocking.events.waitForCount(4));
    EXPECT_EQ((std::vector<zorClient_session_event_t>{
                  ZORCLIENT_SESSION_EVENT_UP_NOTICE, ZORCLIENT_SESSION_EVENT_RECONNECTING_NOTICE,
                  ZORCLIENT_SESSION_EVENT_RECONNECTED_NOTICE, ZORCLIENT_SESSION_EVENT_CAN_SEND}),
              nonBlocking.events.kinds());
    EXPECT_EQ(ZORCLIENT_OK, send(nonBlocking.session, "b/x"));
}

TEST_F(DirectTest, WhatCannotBeSentFailsWithAReason) {
    Peer peer(context());
    OutMsg queued("q");
    zorClient_msg_setQueueNamePtr(queued, "q");
    EXPECT_EQ(ZORCLIENT_FAIL, zorClient_session_sendMsg(peer.session, queued));
    EXPECT_EQ(ZORCLIENT_SUBCODE_NOT_SUPPORTED, lastError().subCode);
    EXPECT_NE(nullptr, std::strstr(lastError().errorStr, "queue")) << lastError().errorStr;
    OutMsg persistent("p/x");
    zorClient_msg_setDeliveryMode(persistent, ZORCLIENT_DELIVERY_MODE_PERSISTENT);
    EXPECT_EQ(ZORCLIENT_FAIL, zorClient_session_sendMsg(peer.session, persistent));
    EXPECT_EQ(ZORCLIENT_SUBCODE_NOT_SUPPORTED, lastError().subCode);
    zorclient_test::ScopedMsg empty;
    EXPECT_EQ(ZORCLIENT_FAIL, zorClient_session_sendMsg(peer.session, empty));
    EXPECT_EQ(ZORCLIENT_SUBCODE_PARAM_NULL_PTR, lastError().subCode);
    ASSERT_EQ(ZORCLIENT_OK, zorClient_session_disconnect(peer.session));
    EXPECT_EQ(ZORCLIENT_FAIL, send(peer.session, "x"));
    EXPECT_EQ(ZORCLIENT_SUBCODE_SESSION_NOT_ESTABLISHED, lastError().subCode);
    EXPECT_EQ(ZORCLIENT_NOT_READY, zorClient_session_topicSubscribeExt(peer.session, 0, "x"));
    // A null message or topic.
    EXPECT_EQ(ZORCLIENT_FAIL, zorClient_session_sendMsg(peer.session, nullptr));
    EXPECT_EQ(ZORCLIENT_FAIL, zorClient_session_topicSubscribeExt(peer.session, 0, nullptr));
    EXPECT_EQ(ZORCLIENT_SUBCODE_PARAM_NULL_PTR, lastError().subCode);
}

TEST_F(DirectTest, StatisticsCountAKnownPatternOfTraffic) {
    Peer receiverA(context());
    Peer receiverB(context());
    receiverA.subscribe("t/>");
    receiverB.subscribe("t/a");
    Peer sender(context());
    const std::string payload(50, 'x');
    const std::uint64_t size = payload.size() + std::strlen("t/a");  // all parts, topic included
    for (int i = 0; i < 5; ++i) {
        ASSERT_EQ(ZORCLIENT_OK, send(sender.session, "t/a", payload));
    }
    ASSERT_EQ(ZORCLIENT_OK, send(sender.session, "t/b", payload));
    ASSERT_TRUE(receiverA.waitFor(6));
    ASSERT_TRUE(receiverB.waitFor(5));
    EXPECT_EQ(6u, sender.tx(ZORCLIENT_STATS_TX_TOTAL_DATA_MSGS));
    EXPECT_EQ(6u, sender.tx(ZORCLIENT_STATS_TX_DIRECT_MSGS));
    EXPECT_EQ(6 * size, sender.tx(ZORCLIENT_STATS_TX_DIRECT_BYTES));
    EXPECT_EQ(6 * size, sender.tx(ZORCLIENT_STATS_TX_TOTAL_DATA_BYTES));
    EXPECT_EQ(1u, receiverA.tx(ZORCLIENT_STATS_TX_CTL_MSGS));
    EXPECT_EQ(6u, receiverA.rx(ZORCLIENT_STATS_RX_DIRECT_MSGS));
    EXPECT_EQ(6 * size, receiverA.rx(ZORCLIENT_STATS_RX_TOTAL_DATA_BYTES));
    EXPECT_EQ(5u, receiverB.rx(ZORCLIENT_STATS_RX_TOTAL_DATA_MSGS));
    EXPECT_EQ(5 * size, receiverB.rx(ZORCLIENT_STATS_RX_DIRECT_BYTES));
    EXPECT_EQ(0u, receiverB.rx(ZORCLIENT_STATS_RX_DISCARD_IND));
    ASSERT_EQ(ZORCLIENT_OK, zorClient_session_clearStats(sender.session));
    EXPECT_EQ(0u, sender.tx(ZORCLIENT_STATS_TX_TOTAL_DATA_MSGS));
}

TEST_F(DirectTest, ACallbackMaySubscribeAndSendAndKeepItsMessage) {
    Peer peer(context());
    peer.subscribe("in/x");
    std::vector<zorClient_opaqueMsg_pt> taken;  // filled on the context thread
    std::atomic<std::size_t> takenCount{0};
    peer.onMessage = [&](zorClient_opaqueMsg_pt msg) {
        if (peer.count() == 1) {
            EXPECT_EQ(ZORCLIENT_OK, zorClient_session_topicSubscribeExt(peer.session, 0, "more/>"));
            EXPECT_EQ(ZORCLIENT_OK, send(peer.session, "more/x", "from the callback"));
        }
        taken.push_back(msg);
        takenCount.store(taken.size());
        return true;
    };
    Peer sender(context());
    ASSERT_EQ(ZORCLIENT_OK, send(sender.session, "in/x"));
    ASSERT_TRUE(waitUntil([&] { return takenCount.load() == 2; }));
    EXPECT_EQ("from the callback", peer.received()[1].attachment);
    // Only the taken messages count: the broker copies they keep alive are not the application's.
    EXPECT_EQ(2u, zorclient_test::allocated());
    for (zorClient_opaqueMsg_pt msg : taken) {
        zorClient_msg_free(&msg);
    }
}

}  // namespace
