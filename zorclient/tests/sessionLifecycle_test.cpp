// Sessions: connect, disconnect, forced failures and reconnects, the events each emits and in
// which order, library calls from inside callbacks, destroy, and bad handles.
#include <gtest/gtest.h>

#include <csignal>
#include <cstring>

#include "SessionTestSupport.h"

namespace {

using namespace zctest;
using Events = std::vector<zorClient_session_event_t>;

constexpr auto UP = ZORCLIENT_SESSION_EVENT_UP_NOTICE;
constexpr auto DOWN = ZORCLIENT_SESSION_EVENT_DOWN_ERROR;
constexpr auto CONNECT_FAILED = ZORCLIENT_SESSION_EVENT_CONNECT_FAILED_ERROR;
constexpr auto RECONNECTING = ZORCLIENT_SESSION_EVENT_RECONNECTING_NOTICE;
constexpr auto RECONNECTED = ZORCLIENT_SESSION_EVENT_RECONNECTED_NOTICE;

class SessionLifecycleTest : public LibraryTest {
  protected:
    void SetUp() override {
        LibraryTest::SetUp();
        pumped_m = std::make_unique<PumpedContext>();
    }
    void TearDown() override {
        pumped_m.reset();
        LibraryTest::TearDown();
    }

    // Nothing more arrives for a while: the events so far are all there will be.
    void expectNoMoreEvents(const EventLog& log, std::size_t count) {
        std::this_thread::sleep_for(150ms);
        EXPECT_EQ(count, log.events().size());
    }

    std::unique_ptr<PumpedContext> pumped_m;
};

TEST_F(SessionLifecycleTest, BlockingAndNonBlockingConnectsBothEmitUpNotice) {
    EventLog blockingLog;
    EventLog nonBlockingLog;
    zorClient_opaqueSession_pt blocking = nullptr;
    zorClient_opaqueSession_pt nonBlocking = nullptr;
    ASSERT_EQ(ZORCLIENT_OK, createSession(pumped_m->get(), {}, &blockingLog, &blocking));
    ASSERT_EQ(ZORCLIENT_OK, createSession(pumped_m->get(), {"SESSION_CONNECT_BLOCKING", "0"},
                                          &nonBlockingLog, &nonBlocking));
    EXPECT_EQ(ZORCLIENT_OK, zorClient_session_connect(blocking));
    EXPECT_EQ(ZORCLIENT_IN_PROGRESS, zorClient_session_connect(nonBlocking));
    ASSERT_TRUE(blockingLog.waitForCount(1));
    ASSERT_TRUE(nonBlockingLog.waitForCount(1));
    for (const EventLog* log_p : {&blockingLog, &nonBlockingLog}) {
        const RecordedEvent up = log_p->events()[0];
        EXPECT_EQ(UP, up.event);
        EXPECT_EQ(ZORCLIENT_SUBCODE_OK, up.subCode);  // the error info is cleared for notices
        EXPECT_EQ(pumped_m->threadId(), up.thread);
    }
    // Connecting a connected session changes nothing and says nothing.
    EXPECT_EQ(ZORCLIENT_OK, zorClient_session_connect(blocking));
    // A disconnect by the application emits no DOWN_ERROR, and the session connects again.
    EXPECT_EQ(ZORCLIENT_OK, zorClient_session_disconnect(blocking));
    EXPECT_EQ(ZORCLIENT_OK, zorClient_session_disconnect(blocking));
    expectNoMoreEvents(blockingLog, 1);
    EXPECT_EQ(ZORCLIENT_OK, zorClient_session_connect(blocking));
    ASSERT_TRUE(blockingLog.waitForCount(2));
    EXPECT_EQ((Events{UP, UP}), blockingLog.kinds());
    EXPECT_EQ(ZORCLIENT_OK, zorClient_session_destroy(&blocking));
    EXPECT_EQ(ZORCLIENT_OK, zorClient_session_destroy(&nonBlocking));
}

TEST_F(SessionLifecycleTest, NoticesQueuedBeforeADisconnectAreDropped) {
    // Nobody processes this context until the session is disconnected again: the UP_NOTICE of
    // the first connect tells of a connection that is gone and must not arrive; that of the
    // second must.
    zorClient_opaqueContext_pt context = nullptr;
    zorClient_context_createFuncInfo_t funcInfo{};
    const char* none[] = {nullptr};
    ASSERT_EQ(ZORCLIENT_OK, zorClient_context_create(none, &context, &funcInfo, sizeof funcInfo));
    EventLog log;
    zorClient_opaqueSession_pt session = nullptr;
    ASSERT_EQ(ZORCLIENT_OK, createSession(context, {}, &log, &session));
    ASSERT_EQ(ZORCLIENT_OK, zorClient_session_connect(session));
    ASSERT_EQ(ZORCLIENT_OK, zorClient_session_disconnect(session));
    ASSERT_EQ(ZORCLIENT_OK, zorClient_context_processEvents(context));
    EXPECT_EQ(0u, log.events().size());
    ASSERT_EQ(ZORCLIENT_OK, zorClient_session_connect(session));
    ASSERT_EQ(ZORCLIENT_OK, zorClient_context_processEvents(context));
    EXPECT_EQ((Events{UP}), log.kinds());
    EXPECT_EQ(ZORCLIENT_OK, zorClient_session_destroy(&session));
    EXPECT_EQ(ZORCLIENT_OK, zorClient_context_destroy(&context));
}

TEST_F(SessionLifecycleTest, FailedConnectsFailOrEmitConnectFailedWithTheReason) {
    EventLog log;
    zorClient_opaqueSession_pt blocking = nullptr;
    zorClient_opaqueSession_pt nonBlocking = nullptr;
    ASSERT_EQ(ZORCLIENT_OK, createSession(pumped_m->get(), {"SESSION_HOST", "tcp://broker:55555"},
                                          &log, &blocking));
    EXPECT_EQ(ZORCLIENT_FAIL, zorClient_session_connect(blocking));
    EXPECT_EQ(ZORCLIENT_SUBCODE_NOT_SUPPORTED, lastError().subCode);
    EXPECT_NE(nullptr, std::strstr(lastError().errorStr, "scheme \"tcp\"")) << lastError().errorStr;

    ASSERT_EQ(ZORCLIENT_OK,
              createSession(pumped_m->get(),
                            {"SESSION_HOST", "mqtt://broker", "SESSION_CONNECT_BLOCKING", "0"},
                            &log, &nonBlocking));
    EXPECT_EQ(ZORCLIENT_IN_PROGRESS, zorClient_session_connect(nonBlocking));
    ASSERT_TRUE(log.waitForCount(1));
    const RecordedEvent failed = log.events()[0];
    EXPECT_EQ(CONNECT_FAILED, failed.event);
    // The callback saw the reason in its thread's error info.
    EXPECT_EQ(ZORCLIENT_SUBCODE_NOT_SUPPORTED, failed.subCode);
    EXPECT_NE(std::string::npos, failed.errorStr.find("scheme \"mqtt\"")) << failed.errorStr;
    expectNoMoreEvents(log, 1);
    EXPECT_EQ(ZORCLIENT_OK, zorClient_session_destroy(&blocking));
    EXPECT_EQ(ZORCLIENT_OK, zorClient_session_destroy(&nonBlocking));
}

TEST_F(SessionLifecycleTest, ForcedFailureReconnectsAndCountsTheAttempts) {
    EventLog log;
    zorClient_opaqueSession_pt session = nullptr;
    ASSERT_EQ(ZORCLIENT_OK, createSession(pumped_m->get(),
                                          {"SESSION_RECONNECT_RETRIES", "2",
                                           "SESSION_RECONNECT_RETRY_WAIT_MS", "10"},
                                          &log, &session));
    ASSERT_EQ(ZORCLIENT_OK, zorClient_session_connect(session));
    ASSERT_TRUE(log.waitForCount(1));
    EXPECT_EQ(ZORCLIENT_OK, _zorClient_session_forceFailure(session));
    ASSERT_TRUE(log.waitForCount(3));
    EXPECT_EQ((Events{UP, RECONNECTING, RECONNECTED}), log.kinds());
    EXPECT_EQ(ZORCLIENT_SUBCODE_COMMUNICATION_ERROR, log.events()[1].subCode);
    zorClient_stats_t attempts = 0;
    EXPECT_EQ(ZORCLIENT_OK, zorClient_session_getTxStat(
                                session, ZORCLIENT_STATS_TX_TOTAL_CONNECTION_ATTEMPTS, &attempts));
    EXPECT_EQ(2u, attempts);
    // A second failure runs the machinery again.
    EXPECT_EQ(ZORCLIENT_OK, _zorClient_session_forceFailure(session));
    ASSERT_TRUE(log.waitForCount(5));
    EXPECT_EQ((Events{UP, RECONNECTING, RECONNECTED, RECONNECTING, RECONNECTED}), log.kinds());
    EXPECT_EQ(ZORCLIENT_OK, zorClient_session_destroy(&session));
}

TEST_F(SessionLifecycleTest, WithoutRetriesAFailureIsDownAtOnceWithTheBrokersSubcode) {
    EventLog log;
    zorClient_opaqueSession_pt session = nullptr;
    ASSERT_EQ(ZORCLIENT_OK, createSession(pumped_m->get(),
                                          {"SESSION_HOST", "embedded://lifecycle-fault",
                                           "EMBEDDED_FAULT_SESSION_DOWN_SUBCODE", "94",
                                           "SESSION_RECONNECT_RETRIES", "0"},
                                          &log, &session));
    ASSERT_EQ(ZORCLIENT_OK, zorClient_session_connect(session));
    EXPECT_EQ(ZORCLIENT_OK, _zorClient_session_forceFailure(session));
    ASSERT_TRUE(log.waitForCount(2));
    EXPECT_EQ((Events{UP, DOWN}), log.kinds());
    EXPECT_EQ(ZORCLIENT_SUBCODE_UNKNOWN_FLOW_NAME, log.events()[1].subCode);
    EXPECT_NE(std::string::npos, log.events()[1].errorStr.find("lifecycle-fault"));
    // A session that is down cannot fail again.
    EXPECT_EQ(ZORCLIENT_FAIL, _zorClient_session_forceFailure(session));
    EXPECT_EQ(ZORCLIENT_SUBCODE_SESSION_NOT_ESTABLISHED, lastError().subCode);
    EXPECT_EQ(ZORCLIENT_OK, zorClient_session_destroy(&session));
}

TEST_F(SessionLifecycleTest, RetriesRunOutWhenAnotherSessionTookTheName) {
    EventLog log;
    EventLog thiefLog;
    zorClient_opaqueSession_pt session = nullptr;
    zorClient_opaqueSession_pt thief = nullptr;
    ASSERT_EQ(ZORCLIENT_OK,
              createSession(pumped_m->get(),
                            {"SESSION_CLIENT_NAME", "contested", "SESSION_RECONNECT_RETRIES", "2",
                             "SESSION_RECONNECT_RETRY_WAIT_MS", "20"},
                            &log, &session));
    ASSERT_EQ(ZORCLIENT_OK, createSession(pumped_m->get(), {"SESSION_CLIENT_NAME", "contested"},
                                          &thiefLog, &thief));
    // While the first session waits to reconnect, the other connects under its name: from
    // inside the callback, so the name is surely taken before the first retry.
    std::atomic<int> thiefConnect{1};
    log.onEvent = [&](zorClient_opaqueSession_pt, zorClient_session_event_t event) {
        if (event == RECONNECTING) {
            thiefConnect = zorClient_session_connect(thief);
        }
    };
    ASSERT_EQ(ZORCLIENT_OK, zorClient_session_connect(session));
    EXPECT_EQ(ZORCLIENT_OK, _zorClient_session_forceFailure(session));
    ASSERT_TRUE(log.waitForCount(3));
    EXPECT_EQ(ZORCLIENT_OK, thiefConnect.load());
    EXPECT_EQ((Events{UP, RECONNECTING, DOWN}), log.kinds());
    const RecordedEvent down = log.events()[2];
    EXPECT_EQ(ZORCLIENT_SUBCODE_CLIENT_NAME_ALREADY_IN_USE, down.subCode);
    EXPECT_NE(std::string::npos, down.errorStr.find("2 reconnect attempts")) << down.errorStr;
    expectNoMoreEvents(log, 3);
    EXPECT_EQ(ZORCLIENT_OK, zorClient_session_destroy(&session));
    EXPECT_EQ(ZORCLIENT_OK, zorClient_session_destroy(&thief));
}

TEST_F(SessionLifecycleTest, DisconnectWhileReconnectingEndsTheRetriesSilently) {
    EventLog log;
    zorClient_opaqueSession_pt session = nullptr;
    ASSERT_EQ(ZORCLIENT_OK, createSession(pumped_m->get(),
                                          {"SESSION_RECONNECT_RETRIES", "-1",
                                           "SESSION_RECONNECT_RETRY_WAIT_MS", "400"},
                                          &log, &session));
    ASSERT_EQ(ZORCLIENT_OK, zorClient_session_connect(session));
    ASSERT_EQ(ZORCLIENT_OK, _zorClient_session_forceFailure(session));
    ASSERT_TRUE(log.waitForCount(2));
    // connect is refused while the library reconnects; disconnect ends it.
    EXPECT_EQ(ZORCLIENT_FAIL, zorClient_session_connect(session));
    EXPECT_EQ(ZORCLIENT_SUBCODE_INVALID_SESSION_OPERATION, lastError().subCode);
    EXPECT_EQ(ZORCLIENT_OK, zorClient_session_disconnect(session));
    // Past the time of the first retry: it did not happen.
    std::this_thread::sleep_for(600ms);
    EXPECT_EQ((Events{UP, RECONNECTING}), log.kinds());
    EXPECT_EQ(ZORCLIENT_OK, zorClient_session_destroy(&session));
}

TEST_F(SessionLifecycleTest, ConnectFromInsideTheDownEvent) {
    EventLog log;
    zorClient_opaqueSession_pt session = nullptr;
    ASSERT_EQ(ZORCLIENT_OK,
              createSession(pumped_m->get(), {"SESSION_RECONNECT_RETRIES", "0"}, &log, &session));
    std::atomic<int> reconnect{1};
    log.onEvent = [&](zorClient_opaqueSession_pt self, zorClient_session_event_t event) {
        if (event == DOWN) {
            reconnect = zorClient_session_connect(self);  // blocking, on the context thread
        }
    };
    ASSERT_EQ(ZORCLIENT_OK, zorClient_session_connect(session));
    ASSERT_EQ(ZORCLIENT_OK, _zorClient_session_forceFailure(session));
    ASSERT_TRUE(log.waitForCount(3));
    EXPECT_EQ(ZORCLIENT_OK, reconnect.load());
    EXPECT_EQ((Events{UP, DOWN, UP}), log.kinds());
    EXPECT_EQ(ZORCLIENT_OK, zorClient_session_destroy(&session));
}

TEST_F(SessionLifecycleTest, NoCallbackOfADestroyedSessionRunsAfterDestroyReturns) {
    // From inside a callback: the first session's UP_NOTICE destroys the second session,
    // whose own UP_NOTICE waits behind it in the queue and must not run.
    zorClient_opaqueContext_pt context = nullptr;
    zorClient_context_createFuncInfo_t funcInfo{};
    const char* none[] = {nullptr};
    ASSERT_EQ(ZORCLIENT_OK, zorClient_context_create(none, &context, &funcInfo, sizeof funcInfo));
    EventLog firstLog;
    EventLog secondLog;
    zorClient_opaqueSession_pt first = nullptr;
    zorClient_opaqueSession_pt second = nullptr;
    ASSERT_EQ(ZORCLIENT_OK, createSession(context, {}, &firstLog, &first));
    ASSERT_EQ(ZORCLIENT_OK, createSession(context, {}, &secondLog, &second));
    std::atomic<int> destroyed{1};
    firstLog.onEvent = [&](zorClient_opaqueSession_pt, zorClient_session_event_t) {
        destroyed = zorClient_session_destroy(&second);
    };
    ASSERT_EQ(ZORCLIENT_OK, zorClient_session_connect(first));
    ASSERT_EQ(ZORCLIENT_OK, zorClient_session_connect(second));
    ASSERT_EQ(ZORCLIENT_OK, zorClient_context_processEvents(context));
    ASSERT_EQ(ZORCLIENT_OK, zorClient_context_processEvents(context));
    EXPECT_EQ(ZORCLIENT_OK, destroyed.load());
    EXPECT_EQ(1u, firstLog.events().size());
    EXPECT_EQ(0u, secondLog.events().size());

    // From another thread while the session's callback runs: destroy waits for it to end.
    std::atomic<bool> inCallback{false};
    std::atomic<bool> callbackDone{false};
    firstLog.onEvent = [&](zorClient_opaqueSession_pt, zorClient_session_event_t) {
        inCallback = true;
        std::this_thread::sleep_for(100ms);
        callbackDone = true;
    };
    ASSERT_EQ(ZORCLIENT_OK, zorClient_session_disconnect(first));
    ASSERT_EQ(ZORCLIENT_OK, zorClient_session_connect(first));
    std::thread pump([&] { zorClient_context_processEvents(context); });
    ASSERT_TRUE(waitUntil([&] { return inCallback.load(); }));
    EXPECT_EQ(ZORCLIENT_OK, zorClient_session_destroy(&first));
    EXPECT_TRUE(callbackDone.load());
    pump.join();
    EXPECT_EQ(ZORCLIENT_OK, zorClient_context_destroy(&context));
}

zorClient_opaqueSession_pt signalledSession_s = nullptr;
std::atomic<int> signalResult_s{1};

void onAlarm(int) {
    signalResult_s = _zorClient_session_forceFailure(signalledSession_s);
}

TEST_F(SessionLifecycleTest, ForceFailureWorksFromASignalHandler) {
    EventLog log;
    ASSERT_EQ(ZORCLIENT_OK, createSession(pumped_m->get(), {"SESSION_RECONNECT_RETRY_WAIT_MS", "5"},
                                          &log, &signalledSession_s));
    ASSERT_EQ(ZORCLIENT_OK, zorClient_session_connect(signalledSession_s));
    struct sigaction action {};
    action.sa_handler = &onAlarm;
    struct sigaction previous {};
    ASSERT_EQ(0, sigaction(SIGUSR1, &action, &previous));
    errno = 1234;
    ASSERT_EQ(0, raise(SIGUSR1));
    EXPECT_EQ(1234, errno);
    sigaction(SIGUSR1, &previous, nullptr);
    EXPECT_EQ(ZORCLIENT_OK, signalResult_s.load());
    ASSERT_TRUE(log.waitForCount(3));
    EXPECT_EQ((Events{UP, RECONNECTING, RECONNECTED}), log.kinds());
    EXPECT_EQ(ZORCLIENT_OK, zorClient_session_destroy(&signalledSession_s));
}

TEST_F(SessionLifecycleTest, StatisticsSurviveDisconnectAndClear) {
    EventLog log;
    zorClient_opaqueSession_pt session = nullptr;
    ASSERT_EQ(ZORCLIENT_OK,
              createSession(pumped_m->get(), {"SESSION_HOST", "tcp://a,embedded"}, &log, &session));
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
    EXPECT_EQ(ZORCLIENT_FAIL,
              zorClient_session_getRxStat(session, static_cast<zorClient_stats_rx>(40), &value));
    EXPECT_EQ(ZORCLIENT_SUBCODE_PARAM_OUT_OF_RANGE, lastError().subCode);
    EXPECT_EQ(ZORCLIENT_FAIL,
              zorClient_session_getTxStat(session, static_cast<zorClient_stats_tx>(-1), &value));
    EXPECT_EQ(ZORCLIENT_OK, _zorClient_session_logRelPub(session, ZORCLIENT_LOG_DEBUG));
    EXPECT_EQ(ZORCLIENT_FAIL,
              _zorClient_session_logRelPub(session, static_cast<zorClient_log_level_t>(8)));
    EXPECT_EQ(ZORCLIENT_OK, zorClient_session_destroy(&session));
}

TEST_F(SessionLifecycleTest, StatisticIdsAndArraysAreCheckedAlikeForBothTables) {
    EventLog log;
    zorClient_opaqueSession_pt session = nullptr;
    ASSERT_EQ(ZORCLIENT_OK, createSession(pumped_m->get(), {}, &log, &session));
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
    EXPECT_EQ(ZORCLIENT_OK, zorClient_session_destroy(&session));
}

TEST_F(SessionLifecycleTest, NullAndStaleHandlesFail) {
    EventLog log;
    zorClient_opaqueSession_pt session = nullptr;
    ASSERT_EQ(ZORCLIENT_OK, createSession(pumped_m->get(), {}, &log, &session));
    zorClient_opaqueSession_pt stale = session;
    ASSERT_EQ(ZORCLIENT_OK, zorClient_session_destroy(&session));
    EXPECT_EQ(nullptr, session);
    // A new session may reuse the slot; the old handle still does not reach it.
    zorClient_opaqueSession_pt fresh = nullptr;
    ASSERT_EQ(ZORCLIENT_OK, createSession(pumped_m->get(), {}, &log, &fresh));

    char buffer[ZORCLIENT_CLIENT_NAME_MAX_SIZE];
    zorClient_stats_t value = 0;
    zorClient_field_t field{};
    const char* props[] = {"SESSION_CLIENT_NAME", "x", nullptr};
    for (zorClient_opaqueSession_pt handle : {zorClient_opaqueSession_pt{nullptr}, stale}) {
        const zorClient_subCode_t expected =
            handle == nullptr ? ZORCLIENT_SUBCODE_PARAM_NULL_PTR : ZORCLIENT_SUBCODE_INVALID_HANDLE;
        const std::vector<zorClient_returnCode_t> results = {
            zorClient_session_connect(handle),
            zorClient_session_disconnect(handle),
            zorClient_session_getProperty(handle, "SESSION_CLIENT_NAME", buffer, sizeof buffer),
            zorClient_session_modifyProperties(handle, props),
            zorClient_session_getCapability(handle, "SESSION_PEER_PLATFORM", &field, sizeof field),
            zorClient_session_getRxStat(handle, ZORCLIENT_STATS_RX_MSGS, &value),
            zorClient_session_getTxStats(handle, &value, 1),
            zorClient_session_clearStats(handle),
            _zorClient_session_logRelPub(handle, ZORCLIENT_LOG_DEBUG),
            _zorClient_session_forceFailure(handle),
            zorClient_session_destroy(&handle),
        };
        for (std::size_t i = 0; i < results.size(); ++i) {
            EXPECT_EQ(ZORCLIENT_FAIL, results[i]) << "call " << i;
        }
        EXPECT_EQ(expected, lastError().subCode);
        EXPECT_EQ(0, zorClient_session_isCapable(handle, "SESSION_CAPABILITY_JNDI"));
        EXPECT_EQ(expected, lastError().subCode);
    }
    EXPECT_EQ(ZORCLIENT_FAIL, zorClient_session_destroy(nullptr));
    EXPECT_EQ(ZORCLIENT_OK, zorClient_session_destroy(&fresh));
}

}  // namespace
