// Requests and replies: the reply ends the requester's wait, a reply made by sending the request
// back works as well as zorClient_session_sendReply, and a reply that comes too late is
// discarded and counted.
#include <gtest/gtest.h>

#include "DirectTestSupport.h"

namespace {

using namespace zctest;

using zorclient_test::attachmentOf;

TEST_F(DirectTest, ARequestGetsItsReplyBothWaysOfReplying) {
    Peer replier(context());
    replier.subscribe("svc/>");
    replier.onMessage = [&](zorClient_opaqueMsg_pt request) {
        if (attachmentOf(request) == "by reply") {
            OutMsg reply("ignored", "pong");
            EXPECT_EQ(ZORCLIENT_OK, zorClient_session_sendReply(replier.session, request, reply));
            return false;
        }
        // The request itself goes back, as a replier that reflects does it.
        zorClient_destination_t replyTo{};
        EXPECT_EQ(ZORCLIENT_OK, zorClient_msg_getReplyTo(request, &replyTo, sizeof replyTo));
        zorClient_msg_setAsReplyMsg(request, 1);
        zorClient_msg_setDestination(request, &replyTo, sizeof replyTo);
        zorClient_msg_deleteReplyTo(request);
        EXPECT_EQ(ZORCLIENT_OK, zorClient_session_sendMsg(replier.session, request));
        return false;
    };
    Peer requester(context());
    for (const char* payload_p : {"by reply", "reflected"}) {
        OutMsg request("svc/echo", payload_p);
        zorClient_opaqueMsg_pt reply = nullptr;
        ASSERT_EQ(ZORCLIENT_OK,
                  zorClient_session_sendRequest(requester.session, request, &reply, 5000))
            << lastError().errorStr;
        EXPECT_EQ(std::string(payload_p) == "by reply" ? "pong" : payload_p, attachmentOf(reply));
        EXPECT_EQ(1, zorClient_msg_isReplyMsg(reply));
        // The request the application built is as it was: no reply-to was put on it.
        zorClient_destination_t replyTo{};
        EXPECT_EQ(ZORCLIENT_NOT_FOUND, zorClient_msg_getReplyTo(request, &replyTo, sizeof replyTo));
        zorClient_msg_free(&reply);
    }
    EXPECT_EQ(2u, requester.tx(ZORCLIENT_STATS_TX_REQUEST_SENT));
    EXPECT_EQ(2u, requester.rx(ZORCLIENT_STATS_RX_REPLY_MSG));
    EXPECT_EQ(0u, requester.count());  // replies do not reach the receive callback
    // Anything else on the inbox does.
    const std::string inbox = property(requester.session, "SESSION_REPLY_TO_DEFAULT_DEST");
    ASSERT_EQ(ZORCLIENT_OK, send(replier.session, inbox.c_str(), "plain"));
    ASSERT_TRUE(requester.waitFor(1));
    EXPECT_EQ("plain", requester.received()[0].attachment);
}

TEST_F(DirectTest, ALateReplyIsDiscardedAndCounted) {
    Peer replier(context());
    replier.subscribe("slow/>");
    std::atomic<zorClient_opaqueMsg_pt> held{nullptr};
    replier.onMessage = [&](zorClient_opaqueMsg_pt request) {
        held = request;
        return true;  // answered later, by the test
    };
    Peer requester(context());
    OutMsg request("slow/x", "ping");
    zorClient_opaqueMsg_pt reply = nullptr;
    EXPECT_EQ(ZORCLIENT_INCOMPLETE,
              zorClient_session_sendRequest(requester.session, request, &reply, 50));
    EXPECT_EQ(ZORCLIENT_SUBCODE_TIMEOUT, lastError().subCode);
    EXPECT_EQ(nullptr, reply);
    EXPECT_EQ(1u, requester.tx(ZORCLIENT_STATS_TX_REQUEST_TIMEOUT));
    ASSERT_TRUE(waitUntil([&] { return held.load() != nullptr; }));
    zorClient_opaqueMsg_pt late = held.load();
    ASSERT_EQ(ZORCLIENT_OK, zorClient_session_sendReply(replier.session, late, late));
    EXPECT_EQ(1u, requester.rx(ZORCLIENT_STATS_RX_REPLY_MSG_DISCARD));
    EXPECT_EQ(0u, requester.count());
    // A message that was never a request cannot be answered.
    OutMsg plain("x");
    EXPECT_EQ(ZORCLIENT_FAIL, zorClient_session_sendReply(replier.session, plain, plain));
    EXPECT_EQ(ZORCLIENT_SUBCODE_PARAM_CONFLICT, lastError().subCode);
    EXPECT_EQ(ZORCLIENT_FAIL, zorClient_session_sendRequest(requester.session, request, &reply, 0));
    zorClient_msg_free(&late);
}

TEST_F(DirectTest, DestroyingTheSessionEndsAWaitingRequest) {
    LoggedSession session(context());
    ASSERT_EQ(ZORCLIENT_OK, zorClient_session_connect(session));
    std::atomic<zorClient_returnCode_t> result{ZORCLIENT_OK};
    std::thread requester([&, handle = session.handle] {
        OutMsg request("nobody/listens");
        zorClient_opaqueMsg_pt reply = nullptr;
        result = zorClient_session_sendRequest(handle, request, &reply, 10000);
    });
    std::this_thread::sleep_for(50ms);
    const auto start = std::chrono::steady_clock::now();
    ASSERT_EQ(ZORCLIENT_OK, zorClient_session_destroy(&session.handle));
    requester.join();
    EXPECT_LT(std::chrono::steady_clock::now() - start, 2s);
    EXPECT_EQ(ZORCLIENT_FAIL, result.load());
}

}  // namespace
