// Sessions: connect, disconnect, forced failures and reconnects, the events each emits and in
// which order, library calls from inside callbacks, destroy, and bad handles.
#include <gtest/gtest.h>

#include <csignal>
#include <cstring>

#include "SessionTestSupport.h"
#include "zorClientMsg.h"

namespace {

using namespace zctest;
using Events = std::vector<zorClient_session_event_t>;

constexpr auto UP = ZORCLIENT_SESSION_EVENT_UP_NOTICE;
constexpr auto DOWN = ZORCLIENT_SESSION_EVENT_DOWN_ERROR;
constexpr auto CONNECT_FAILED = ZORCLIENT_SESSION_EVENT_CONNECT_FAILED_ERROR;
constexpr auto RECONNECTING = ZORCLIENT_SESSION_EVENT_RECONNECTING_NOTICE;
constexpr auto RECONNECTED = ZORCLIENT_SESSION_EVENT_RECONNECTED_NOTICE;

class SessionLifecycleTest : public PumpedTest {
  protected:
    // Nothing more arrives for a while: the events so far are all there will be.
    static void expectNoMoreEvents(const EventLog& log, std::size_t count) {
        std::this_thread::sleep_for(150ms);
        EXPECT_EQ(count, log.events().size());
    }
};

TEST_F(SessionLifecycleTest, ConnectsEmitUpNoticeOrConnectFailedWithTheReason) {
    LoggedSession blocking(context());
    LoggedSession nonBlocking(context(), {"SESSION_CONNECT_BLOCKING", "0"});
    // A blocking connect that fails says why in its return (see the host strings of the session
    // property tests); a non-blocking one in an event.
    LoggedSession failing(context(),
                          {"SESSION_HOST", "mqtt://broker", "SESSION_CONNECT_BLOCKING", "0"});
    EXPECT_EQ(ZORCLIENT_OK, zorClient_session_connect(blocking));
    EXPECT_EQ(ZORCLIENT_IN_PROGRESS, zorClient_session_connect(nonBlocking));
    EXPECT_EQ(ZORCLIENT_IN_PROGRESS, zorClient_session_connect(failing));
    for (const LoggedSession* session_p : {&blocking, &nonBlocking, &failing}) {
        ASSERT_TRUE(session_p->log.waitForCount(1));
        const RecordedEvent first = session_p->log.events()[0];
        EXPECT_EQ(session_p == &failing ? CONNECT_FAILED : UP, first.event);
        EXPECT_EQ(pumped_m->threadId(), first.thread);
        // The callback sees the reason in its thread's error info, cleared for notices.
        EXPECT_EQ(session_p == &failing ? ZORCLIENT_SUBCODE_NOT_SUPPORTED : ZORCLIENT_SUBCODE_OK,
                  first.subCode);
    }
    EXPECT_NE(std::string::npos, failing.log.events()[0].errorStr.find("scheme \"mqtt\""))
        << failing.log.events()[0].errorStr;
    // Connecting a connected session changes nothing and says nothing.
    EXPECT_EQ(ZORCLIENT_OK, zorClient_session_connect(blocking));
    // A disconnect by the application emits no DOWN_ERROR, and the session connects again.
    EXPECT_EQ(ZORCLIENT_OK, zorClient_session_disconnect(blocking));
    EXPECT_EQ(ZORCLIENT_OK, zorClient_session_disconnect(blocking));
    expectNoMoreEvents(blocking.log, 1);
    EXPECT_EQ(1u, failing.log.events().size());
    EXPECT_EQ(ZORCLIENT_OK, zorClient_session_connect(blocking));
    ASSERT_TRUE(blocking.log.waitForCount(2));
    EXPECT_EQ((Events{UP, UP}), blocking.log.kinds());
}

zorClient_opaqueSession_pt signalledSession_s = nullptr;
std::atomic<int> signalResult_s{1};

void onSignal(int) {
    signalResult_s = _zorClient_session_forceFailure(signalledSession_s);
}

TEST_F(SessionLifecycleTest, ForcedFailuresReconnectAndCountTheAttempts) {
    LoggedSession session(
        context(), {"SESSION_RECONNECT_RETRIES", "2", "SESSION_RECONNECT_RETRY_WAIT_MS", "10"});
    ASSERT_EQ(ZORCLIENT_OK, zorClient_session_connect(session));
    ASSERT_TRUE(session.log.waitForCount(1));
    EXPECT_EQ(ZORCLIENT_OK, _zorClient_session_forceFailure(session));
    ASSERT_TRUE(session.log.waitForCount(3));
    EXPECT_EQ((Events{UP, RECONNECTING, RECONNECTED}), session.log.kinds());
    EXPECT_EQ(ZORCLIENT_SUBCODE_COMMUNICATION_ERROR, session.log.events()[1].subCode);
    zorClient_stats_t attempts = 0;
    EXPECT_EQ(ZORCLIENT_OK, zorClient_session_getTxStat(
                                session, ZORCLIENT_STATS_TX_TOTAL_CONNECTION_ATTEMPTS, &attempts));
    EXPECT_EQ(2u, attempts);
    // A second failure runs the machinery again. It comes from a signal handler, where the call
    // must work and leave errno alone.
    signalledSession_s = session;
    struct sigaction action {};
    action.sa_handler = &onSignal;
    struct sigaction previous {};
    ASSERT_EQ(0, sigaction(SIGUSR1, &action, &previous));
    errno = 1234;
    ASSERT_EQ(0, raise(SIGUSR1));
    EXPECT_EQ(1234, errno);
    sigaction(SIGUSR1, &previous, nullptr);
    EXPECT_EQ(ZORCLIENT_OK, signalResult_s.load());
    ASSERT_TRUE(session.log.waitForCount(5));
    EXPECT_EQ((Events{UP, RECONNECTING, RECONNECTED, RECONNECTING, RECONNECTED}),
              session.log.kinds());
}

TEST_F(SessionLifecycleTest, WithoutRetriesAFailureIsDownAtOnceAndTheEventMayConnectAgain) {
    std::atomic<int> failAgain{0};
    std::atomic<int> failAgainSubCode{0};
    std::atomic<int> reconnect{1};
    LoggedSession session(
        context(), {"SESSION_HOST", "embedded://lifecycle-fault",
                    "EMBEDDED_FAULT_SESSION_DOWN_SUBCODE", "94", "SESSION_RECONNECT_RETRIES", "0"});
    session.log.onEvent = [&](zorClient_opaqueSession_pt self, zorClient_session_event_t event) {
        if (event == DOWN) {
            // A session that is down cannot fail again; it may connect, blocking, on the context
            // thread.
            failAgain = _zorClient_session_forceFailure(self);
            failAgainSubCode = lastError().subCode;
            reconnect = zorClient_session_connect(self);
        }
    };
    ASSERT_EQ(ZORCLIENT_OK, zorClient_session_connect(session));
    EXPECT_EQ(ZORCLIENT_OK, _zorClient_session_forceFailure(session));
    ASSERT_TRUE(session.log.waitForCount(3));
    EXPECT_EQ((Events{UP, DOWN, UP}), session.log.kinds());
    EXPECT_EQ(ZORCLIENT_SUBCODE_UNKNOWN_FLOW_NAME, session.log.events()[1].subCode);
    EXPECT_NE(std::string::npos, session.log.events()[1].errorStr.find("lifecycle-fault"));
    EXPECT_EQ(ZORCLIENT_FAIL, failAgain.load());
    EXPECT_EQ(ZORCLIENT_SUBCODE_SESSION_NOT_ESTABLISHED, failAgainSubCode.load());
    EXPECT_EQ(ZORCLIENT_OK, reconnect.load());
}

TEST_F(SessionLifecycleTest, RetriesRunOutWhenAnotherSessionTookTheName) {
    LoggedSession thief(context(), {"SESSION_CLIENT_NAME", "contested"});
    std::atomic<int> thiefConnect{1};
    LoggedSession session(context(),
                          {"SESSION_CLIENT_NAME", "contested", "SESSION_RECONNECT_RETRIES", "2",
                           "SESSION_RECONNECT_RETRY_WAIT_MS", "20"});
    // While the first session waits to reconnect, the other connects under its name: from
    // inside the callback, so the name is surely taken before the first retry.
    session.log.onEvent = [&](zorClient_opaqueSession_pt, zorClient_session_event_t event) {
        if (event == RECONNECTING) {
            thiefConnect = zorClient_session_connect(thief);
        }
    };
    ASSERT_EQ(ZORCLIENT_OK, zorClient_session_connect(session));
    EXPECT_EQ(ZORCLIENT_OK, _zorClient_session_forceFailure(session));
    ASSERT_TRUE(session.log.waitForCount(3));
    EXPECT_EQ(ZORCLIENT_OK, thiefConnect.load());
    EXPECT_EQ((Events{UP, RECONNECTING, DOWN}), session.log.kinds());
    const RecordedEvent down = session.log.events()[2];
    EXPECT_EQ(ZORCLIENT_SUBCODE_CLIENT_NAME_ALREADY_IN_USE, down.subCode);
    EXPECT_NE(std::string::npos, down.errorStr.find("2 reconnect attempts")) << down.errorStr;
    expectNoMoreEvents(session.log, 3);
}

TEST_F(SessionLifecycleTest, DisconnectWhileReconnectingEndsTheRetriesSilently) {
    LoggedSession session(
        context(), {"SESSION_RECONNECT_RETRIES", "-1", "SESSION_RECONNECT_RETRY_WAIT_MS", "400"});
    ASSERT_EQ(ZORCLIENT_OK, zorClient_session_connect(session));
    ASSERT_EQ(ZORCLIENT_OK, _zorClient_session_forceFailure(session));
    ASSERT_TRUE(session.log.waitForCount(2));
    // connect is refused while the library reconnects; disconnect ends it.
    EXPECT_EQ(ZORCLIENT_FAIL, zorClient_session_connect(session));
    EXPECT_EQ(ZORCLIENT_SUBCODE_INVALID_SESSION_OPERATION, lastError().subCode);
    EXPECT_EQ(ZORCLIENT_OK, zorClient_session_disconnect(session));
    // Past the time of the first retry: it did not happen.
    std::this_thread::sleep_for(600ms);
    EXPECT_EQ((Events{UP, RECONNECTING}), session.log.kinds());
}

// Queued events that no longer apply never reach the application. The context hands a session
// one check for all its events, notices here as much as callbacks the application posted and
// deliveries.
TEST_F(SessionLifecycleTest,
       QueuedNoticesOfAGoneConnectionAndCallbacksOfADestroyedSessionDoNotRun) {
    IdleContext idle;
    std::atomic<int> destroyed{1};
    std::atomic<bool> inCallback{false};
    std::atomic<bool> callbackDone{false};
    LoggedSession second(idle.get());
    LoggedSession first(idle.get());
    // Nobody processes the context until the first session is disconnected again: the
    // UP_NOTICE of that connect tells of a connection that is gone and must not arrive.
    ASSERT_EQ(ZORCLIENT_OK, zorClient_session_connect(first));
    ASSERT_EQ(ZORCLIENT_OK, zorClient_session_disconnect(first));
    idle.process();
    EXPECT_EQ(0u, first.log.events().size());
    // From inside a callback: the first session's UP_NOTICE destroys the second session,
    // whose own UP_NOTICE waits behind it in the queue and must not run.
    first.log.onEvent = [&](zorClient_opaqueSession_pt, zorClient_session_event_t) {
        destroyed = zorClient_session_destroy(&second.handle);
    };
    ASSERT_EQ(ZORCLIENT_OK, zorClient_session_connect(first));
    ASSERT_EQ(ZORCLIENT_OK, zorClient_session_connect(second));
    idle.process(2);
    EXPECT_EQ(ZORCLIENT_OK, destroyed.load());
    EXPECT_EQ((Events{UP}), first.log.kinds());
    EXPECT_EQ(0u, second.log.events().size());

    // From another thread while the session's callback runs: destroy waits for it to end.
    first.log.onEvent = [&](zorClient_opaqueSession_pt, zorClient_session_event_t) {
        inCallback = true;
        std::this_thread::sleep_for(100ms);
        callbackDone = true;
    };
    ASSERT_EQ(ZORCLIENT_OK, zorClient_session_disconnect(first));
    ASSERT_EQ(ZORCLIENT_OK, zorClient_session_connect(first));
    std::thread pump([&] { zorClient_context_processEvents(idle.get()); });
    ASSERT_TRUE(waitUntil([&] { return inCallback.load(); }));
    EXPECT_EQ(ZORCLIENT_OK, zorClient_session_destroy(&first.handle));
    EXPECT_TRUE(callbackDone.load());
    pump.join();
}

TEST_F(SessionLifecycleTest, StatisticsSurviveDisconnectAndClear) {
    LoggedSession session(context(), {"SESSION_HOST", "tcp://a,embedded"});
    ASSERT_EQ(ZORCLIENT_OK, zorClient_session_connect(session));
    ASSERT_EQ(ZORCLIENT_OK, zorClient_session_disconnect(session));
    zorClient_stats_t tx[ZORCLIENT_STATS_TX_NUM_STATS] = {};
    ASSERT_EQ(ZORCLIENT_OK,
              zorClient_session_getTxStats(session, tx, ZORCLIENT_STATS_TX_NUM_STATS));
    EXPECT_EQ(2u, tx[ZORCLIENT_STATS_TX_TOTAL_CONNECTION_ATTEMPTS]);  // one per host tried
    ASSERT_EQ(ZORCLIENT_OK, zorClient_session_clearStats(session));
    zorClient_stats_t value = 1;
    EXPECT_EQ(ZORCLIENT_OK, zorClient_session_getTxStat(
                                session, ZORCLIENT_STATS_TX_TOTAL_CONNECTION_ATTEMPTS, &value));
    EXPECT_EQ(0u, value);
    zorClient_stats_t rx[ZORCLIENT_STATS_RX_NUM_STATS];
    std::memset(rx, 0xff, sizeof rx);
    ASSERT_EQ(ZORCLIENT_OK,
              zorClient_session_getRxStats(session, rx, ZORCLIENT_STATS_RX_NUM_STATS));
    for (zorClient_stats_t counter : rx) {
        EXPECT_EQ(0u, counter);
    }
    // Counting goes on after a clear.
    ASSERT_EQ(ZORCLIENT_OK, zorClient_session_connect(session));
    EXPECT_EQ(ZORCLIENT_OK, zorClient_session_getTxStat(
                                session, ZORCLIENT_STATS_TX_TOTAL_CONNECTION_ATTEMPTS, &value));
    EXPECT_EQ(2u, value);
    EXPECT_EQ(ZORCLIENT_OK, _zorClient_session_logRelPub(session, ZORCLIENT_LOG_DEBUG));
    EXPECT_EQ(ZORCLIENT_FAIL,
              _zorClient_session_logRelPub(session, static_cast<zorClient_log_level_t>(8)));
}

TEST_F(SessionLifecycleTest, StatisticIdsAndArraysAreCheckedAlikeForBothTables) {
    LoggedSession session(context());
    zorClient_stats_t value = 7;
    // Ids just outside either table fail alike; the text names the call and the table's range.
    const auto expectOutOfRange = [](zorClient_returnCode_t rc, const char* call_p,
                                     const char* range_p) {
        EXPECT_EQ(ZORCLIENT_FAIL, rc) << call_p;
        EXPECT_EQ(ZORCLIENT_SUBCODE_PARAM_OUT_OF_RANGE, lastError().subCode) << call_p;
        const std::string text = lastError().errorStr;
        EXPECT_EQ(0u, text.find(std::string(call_p) + ": ")) << text;
        EXPECT_NE(std::string::npos, text.find(range_p)) << text;
    };
    for (int id : {-1, static_cast<int>(ZORCLIENT_STATS_RX_NUM_STATS)}) {
        expectOutOfRange(
            zorClient_session_getRxStat(session, static_cast<zorClient_stats_rx>(id), &value),
            "zorClient_session_getRxStat", "no receive statistic (0 to 39)");
    }
    for (int id : {-1, static_cast<int>(ZORCLIENT_STATS_TX_NUM_STATS)}) {
        expectOutOfRange(
            zorClient_session_getTxStat(session, static_cast<zorClient_stats_tx>(id), &value),
            "zorClient_session_getTxStat", "no transmit statistic (0 to 27)");
    }
    EXPECT_EQ(7u, value);
    // The last id of each table is readable; a null result names the argument.
    EXPECT_EQ(ZORCLIENT_OK,
              zorClient_session_getRxStat(session, static_cast<zorClient_stats_rx>(39), &value));
    EXPECT_EQ(ZORCLIENT_OK,
              zorClient_session_getTxStat(session, static_cast<zorClient_stats_tx>(27), &value));
    EXPECT_EQ(ZORCLIENT_FAIL,
              zorClient_session_getTxStat(session, ZORCLIENT_STATS_TX_MSGS, nullptr));
    EXPECT_NE(nullptr, std::strstr(lastError().errorStr, "value_p"));
    EXPECT_EQ(ZORCLIENT_FAIL, zorClient_session_getRxStats(session, nullptr, 1));
    EXPECT_NE(nullptr, std::strstr(lastError().errorStr, "values_p"));
    // Arrays are filled as far as both they and the table go, and no further.
    const zorClient_stats_t untouched = 0xabababababababab;
    std::vector<zorClient_stats_t> rx(ZORCLIENT_STATS_RX_NUM_STATS + 2, untouched);
    std::vector<zorClient_stats_t> tx(ZORCLIENT_STATS_TX_NUM_STATS + 2, untouched);
    ASSERT_EQ(ZORCLIENT_OK, zorClient_session_getRxStats(session, rx.data(), 3));
    ASSERT_EQ(ZORCLIENT_OK, zorClient_session_getTxStats(session, tx.data(), 3));
    EXPECT_EQ(untouched, rx[3]);
    EXPECT_EQ(untouched, tx[3]);
    EXPECT_NE(untouched, rx[2]);
    EXPECT_NE(untouched, tx[2]);
    ASSERT_EQ(ZORCLIENT_OK, zorClient_session_getRxStats(
                                session, rx.data(), static_cast<zorClient_uint32_t>(rx.size())));
    ASSERT_EQ(ZORCLIENT_OK, zorClient_session_getTxStats(
                                session, tx.data(), static_cast<zorClient_uint32_t>(tx.size())));
    EXPECT_NE(untouched, rx[ZORCLIENT_STATS_RX_NUM_STATS - 1]);
    EXPECT_NE(untouched, tx[ZORCLIENT_STATS_TX_NUM_STATS - 1]);
    EXPECT_EQ(untouched, rx[ZORCLIENT_STATS_RX_NUM_STATS]);
    EXPECT_EQ(untouched, tx[ZORCLIENT_STATS_TX_NUM_STATS]);
}

// Callbacks for the calls that take one, so that only the handle is wrong.
void noCallback(zorClient_opaqueTransactedSession_pt, void*) {}
zorClient_rxMsgCallback_returnCode_t noMessage(zorClient_opaqueSession_pt, zorClient_opaqueMsg_pt,
                                               void*) {
    return ZORCLIENT_CALLBACK_OK;
}

TEST_F(SessionLifecycleTest, NullAndStaleHandlesFail) {
    zorClient_opaqueSession_pt session = nullptr;
    EventLog log;
    ASSERT_EQ(ZORCLIENT_OK, createSession(context(), {}, &log, &session));
    zorClient_opaqueSession_pt stale = session;
    ASSERT_EQ(ZORCLIENT_OK, zorClient_session_destroy(&session));
    EXPECT_EQ(nullptr, session);
    // A new session may reuse the slot; the old handle still does not reach it.
    LoggedSession fresh(context());

    char buffer[ZORCLIENT_CLIENT_NAME_MAX_SIZE];
    zorClient_stats_t value = 0;
    zorClient_field_t field{};
    const char* props[] = {"SESSION_CLIENT_NAME", "x", nullptr};
    zorClient_opaqueMsg_pt msg = nullptr;
    ASSERT_EQ(ZORCLIENT_OK, zorClient_msg_alloc(&msg));
    ASSERT_EQ(ZORCLIENT_OK, zorClient_msg_setTopicPtr(msg, "x"));
    zorClient_opaqueMsg_pt reply = nullptr;
    zorClient_uint32_t written = 0;
    zorClient_session_rxMsgDispatchFuncInfo_t dispatch{ZORCLIENT_DISPATCH_TYPE_CALLBACK, &noMessage,
                                                       nullptr, nullptr};
    for (zorClient_opaqueSession_pt handle : {zorClient_opaqueSession_pt{nullptr}, stale}) {
        const zorClient_subCode_t expected =
            handle == nullptr ? ZORCLIENT_SUBCODE_PARAM_NULL_PTR : ZORCLIENT_SUBCODE_INVALID_HANDLE;
        const auto expectRefused = [&](zorClient_returnCode_t rc, const char* call_p) {
            EXPECT_EQ(ZORCLIENT_FAIL, rc) << call_p;
            EXPECT_EQ(expected, lastError().subCode) << call_p;
        };
        expectRefused(zorClient_session_connect(handle), "connect");
        expectRefused(zorClient_session_disconnect(handle), "disconnect");
        expectRefused(
            zorClient_session_getProperty(handle, "SESSION_CLIENT_NAME", buffer, sizeof buffer),
            "getProperty");
        expectRefused(zorClient_session_modifyProperties(handle, props), "modifyProperties");
        expectRefused(
            zorClient_session_getCapability(handle, "SESSION_PEER_PLATFORM", &field, sizeof field),
            "getCapability");
        expectRefused(zorClient_session_getRxStat(handle, ZORCLIENT_STATS_RX_MSGS, &value),
                      "getRxStat");
        expectRefused(zorClient_session_getTxStats(handle, &value, 1), "getTxStats");
        expectRefused(zorClient_session_clearStats(handle), "clearStats");
        expectRefused(_zorClient_session_logRelPub(handle, ZORCLIENT_LOG_DEBUG), "logRelPub");
        expectRefused(_zorClient_session_forceFailure(handle), "forceFailure");
        expectRefused(zorClient_session_sendMsg(handle, msg), "sendMsg");
        expectRefused(zorClient_session_sendMultipleMsg(handle, &msg, 1, &written),
                      "sendMultipleMsg");
        expectRefused(zorClient_session_sendRequest(handle, msg, &reply, 10), "sendRequest");
        expectRefused(zorClient_session_sendReply(handle, msg, msg), "sendReply");
        expectRefused(zorClient_session_topicSubscribeExt(handle, 0, "x"), "subscribe");
        expectRefused(zorClient_session_topicUnsubscribeExt(handle, 0, "x"), "unsubscribe");
        expectRefused(
            zorClient_session_topicSubscribeWithDispatch(handle, 0, "x", &dispatch, nullptr),
            "subscribeWithDispatch");
        expectRefused(_zorClient_messageDispatcher_invokeUserCallback(
                          reinterpret_cast<zorClient_opaqueTransactedSession_pt>(handle),
                          &noCallback, nullptr),
                      "invokeUserCallback");
        EXPECT_EQ(0, zorClient_session_isCapable(handle, "SESSION_CAPABILITY_JNDI"));
        EXPECT_EQ(expected, lastError().subCode);
        expectRefused(zorClient_session_destroy(&handle), "destroy");
    }
    EXPECT_EQ(ZORCLIENT_FAIL, zorClient_session_destroy(nullptr));
    EXPECT_EQ(ZORCLIENT_OK, zorClient_msg_free(&msg));
}

}  // namespace
