// Subscriptions as a session keeps them: dispatch entries, duplicates, confirmations, and what
// happens to them across a reconnect.
#include <gtest/gtest.h>

#include "DirectTestSupport.h"

namespace {

using namespace zctest;

zorClient_session_rxMsgDispatchFuncInfo_t dispatchTo(DispatchTag* tag_p) {
    return {ZORCLIENT_DISPATCH_TYPE_CALLBACK, &Peer::dispatchCallback, tag_p, nullptr};
}

TEST_F(DirectTest, DispatchEntriesTakeTheirMessagesFromTheSessionCallback) {
    Peer peer(context());
    DispatchTag shared{&peer, 1};
    DispatchTag other{&peer, 2};
    DispatchTag localOnly{&peer, 3};
    auto sharedInfo = dispatchTo(&shared);
    auto otherInfo = dispatchTo(&other);
    auto localInfo = dispatchTo(&localOnly);
    const auto sub = &zorClient_session_topicSubscribeWithDispatch;
    ASSERT_EQ(ZORCLIENT_OK, sub(peer.session, 0, "d/a", &sharedInfo, nullptr));
    ASSERT_EQ(ZORCLIENT_OK, sub(peer.session, 0, "d/*", &sharedInfo, nullptr));  // same record
    ASSERT_EQ(ZORCLIENT_OK, sub(peer.session, 0, "d/a", &otherInfo, nullptr));
    ASSERT_EQ(ZORCLIENT_OK, sub(peer.session, ZORCLIENT_SUBSCRIBE_FLAGS_LOCAL_DISPATCH_ONLY, "l/x",
                                &localInfo, nullptr));
    Peer sender(context());
    ASSERT_EQ(ZORCLIENT_OK, send(sender.session, "l/x"));  // nothing brings it in yet
    peer.subscribe("l/>");
    for (const char* topic_p : {"d/a", "d/b", "l/x", "l/y"}) {
        ASSERT_EQ(ZORCLIENT_OK, send(sender.session, topic_p));
    }
    ASSERT_TRUE(peer.waitFor(5));
    std::vector<std::pair<std::string, int>> seen;
    for (const Received& r : peer.received()) {
        seen.emplace_back(r.topic,
                          r.dispatchUser ? static_cast<DispatchTag*>(r.dispatchUser)->tag : 0);
    }
    EXPECT_EQ((std::vector<std::pair<std::string, int>>{
                  {"d/a", 1}, {"d/a", 2}, {"d/b", 1}, {"l/x", 3}, {"l/y", 0}}),
              seen);
    // The broker keeps "d/a" while the other record's entry holds it.
    const auto unsub = &zorClient_session_topicUnsubscribeWithDispatch;
    ASSERT_EQ(ZORCLIENT_OK, unsub(peer.session, 0, "d/a", &sharedInfo, nullptr));
    ASSERT_EQ(ZORCLIENT_OK, unsub(peer.session, 0, "d/*", &sharedInfo, nullptr));
    ASSERT_EQ(ZORCLIENT_OK, send(sender.session, "d/a"));
    ASSERT_EQ(ZORCLIENT_OK, send(sender.session, "d/b"));
    ASSERT_TRUE(peer.waitFor(6));
    EXPECT_EQ(2, static_cast<DispatchTag*>(peer.received()[5].dispatchUser)->tag);
    EXPECT_EQ(2u, sender.tx(ZORCLIENT_STATS_TX_DISCARD_NO_MATCH));  // the first "l/x", "d/b"
}

TEST_F(DirectTest, DuplicatesFailUnlessIgnoredAndConfirmationsAreEmitted) {
    Peer strict(context());
    Peer lenient(context(), {"SESSION_IGNORE_DUP_SUBSCRIPTION_ERROR", "1"});
    for (Peer* peer_p : {&strict, &lenient}) {
        const bool ignore = peer_p == &lenient;
        peer_p->subscribe("u/x", ZORCLIENT_SUBSCRIBE_FLAGS_REQUEST_CONFIRM);
        EXPECT_EQ(ignore ? ZORCLIENT_OK : ZORCLIENT_FAIL,
                  zorClient_session_topicSubscribeExt(peer_p->session, 0, "u/x"));
        if (!ignore) {
            EXPECT_EQ(ZORCLIENT_SUBCODE_SUBSCRIPTION_ALREADY_PRESENT, lastError().subCode);
        }
        EXPECT_EQ(ZORCLIENT_OK, zorClient_session_topicUnsubscribeExt(peer_p->session, 0, "u/x"));
        EXPECT_EQ(ignore ? ZORCLIENT_OK : ZORCLIENT_FAIL,
                  zorClient_session_topicUnsubscribeExt(peer_p->session, 0, "u/x"));
        ASSERT_TRUE(peer_p->events.waitForCount(2));
        const RecordedEvent confirm = peer_p->events.events()[1];
        EXPECT_EQ(ZORCLIENT_SESSION_EVENT_SUBSCRIPTION_OK, confirm.event);
        EXPECT_EQ("u/x", confirm.info);
    }
    Peer nonBlocking(context(), {"SESSION_SUBSCRIBE_BLOCKING", "0"});
    EXPECT_EQ(ZORCLIENT_IN_PROGRESS,
              zorClient_session_topicSubscribeExt(nonBlocking.session, 0, "n"));
    EXPECT_EQ(ZORCLIENT_OK,
              zorClient_session_topicSubscribeExt(nonBlocking.session,
                                                  ZORCLIENT_SUBSCRIBE_FLAGS_WAITFORCONFIRM, "m"));
}

TEST_F(DirectTest, SubscriptionsComeBackAfterAReconnectOnlyWhenReapplied) {
    const char* wait[] = {"SESSION_RECONNECT_RETRY_WAIT_MS", "50"};
    Peer reapplied(context(), {wait[0], wait[1], "SESSION_REAPPLY_SUBSCRIPTIONS", "1"});
    Peer forgotten(context(), {wait[0], wait[1], "SESSION_REAPPLY_SUBSCRIPTIONS", "0"});
    reapplied.subscribe("r/a");
    forgotten.subscribe("r/a");
    for (Peer* peer_p : {&reapplied, &forgotten}) {
        ASSERT_EQ(ZORCLIENT_OK, _zorClient_session_forceFailure(peer_p->session));
        ASSERT_TRUE(peer_p->events.waitForCount(2));  // UP, RECONNECTING
    }
    // Taken along while reconnecting by the one that reapplies; refused by the other.
    reapplied.subscribe("r/b");
    EXPECT_EQ(ZORCLIENT_NOT_READY,
              zorClient_session_topicSubscribeExt(forgotten.session, 0, "r/b"));
    ASSERT_TRUE(reapplied.events.waitForCount(3));
    ASSERT_TRUE(forgotten.events.waitForCount(3));
    Peer sender(context());
    ASSERT_EQ(ZORCLIENT_OK, send(sender.session, "r/a"));
    ASSERT_EQ(ZORCLIENT_OK, send(sender.session, "r/b"));
    ASSERT_TRUE(reapplied.waitFor(2));
    EXPECT_EQ((std::vector<zorClient_uint32_t>{2}), reapplied.received()[1].consumerIds);
    std::this_thread::sleep_for(50ms);
    EXPECT_EQ(0u, forgotten.count());
}

}  // namespace
