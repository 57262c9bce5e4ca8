// Contexts: the wait of processEvents, the context's own thread, callbacks run on the context
// thread in the order each thread posted them, and bad input.
#include <gtest/gtest.h>
#include <sched.h>

#include <cstring>
#include <map>
#include <thread>

#include "SessionTestSupport.h"

namespace {

using namespace zctest;

// Callbacks posted through a session, each recording where and in which order it ran.
struct CallbackTrace {
    std::mutex mutex;
    std::vector<std::pair<std::thread::id, std::uintptr_t>> calls;

    static void record(zorClient_opaqueTransactedSession_pt, void* user_p) {
        auto* entry_p = static_cast<std::pair<CallbackTrace*, std::uintptr_t>*>(user_p);
        std::lock_guard<std::mutex> lock(entry_p->first->mutex);
        entry_p->first->calls.emplace_back(std::this_thread::get_id(), entry_p->second);
    }
    std::size_t size() {
        std::lock_guard<std::mutex> lock(mutex);
        return calls.size();
    }
};

class ContextTest : public LibraryTest {};

TEST_F(ContextTest, ProcessEventsReturnsOkWithinItsBoundWhenNothingHappens) {
    IdleContext idle;
    for (int i = 0; i < 3; ++i) {
        const auto start = std::chrono::steady_clock::now();
        EXPECT_EQ(ZORCLIENT_OK, zorClient_context_processEvents(idle.get()));
        const auto took = std::chrono::steady_clock::now() - start;
        EXPECT_LT(took, 150ms);
        EXPECT_GE(took, 40ms);  // it waited rather than spun
    }
    EXPECT_EQ(ZORCLIENT_OK, idle.destroy());
    EXPECT_EQ(nullptr, idle.get());
}

// Four threads post callbacks through session, enough to fill the queue's ring several times;
// returns what ran, after processEvents (by whatever thread the caller arranged) ran them all.
constexpr int POSTERS = 4;
constexpr int PER_POSTER = 12000;

void postFromThreads(zorClient_opaqueSession_pt session, CallbackTrace* trace_p,
                     std::vector<std::pair<CallbackTrace*, std::uintptr_t>>* entries_p) {
    for (std::uintptr_t i = 0; i < POSTERS * PER_POSTER; ++i) {
        entries_p->emplace_back(trace_p, i);
    }
    std::vector<std::thread> posters;
    for (int t = 0; t < POSTERS; ++t) {
        posters.emplace_back([=] {
            auto* handle = reinterpret_cast<zorClient_opaqueTransactedSession_pt>(session);
            for (int i = 0; i < PER_POSTER; ++i) {
                ASSERT_EQ(ZORCLIENT_OK,
                          _zorClient_messageDispatcher_invokeUserCallback(
                              handle, &CallbackTrace::record, &(*entries_p)[t * PER_POSTER + i]));
            }
        });
    }
    for (std::thread& poster : posters) {
        poster.join();
    }
}

void expectAllInPostingOrderOn(CallbackTrace& trace, std::thread::id contextThread) {
    std::lock_guard<std::mutex> lock(trace.mutex);
    ASSERT_EQ(static_cast<std::size_t>(POSTERS * PER_POSTER), trace.calls.size());
    std::map<std::uintptr_t, std::uintptr_t> lastPerPoster;
    for (const auto& [thread, value] : trace.calls) {
        ASSERT_EQ(contextThread, thread);
        const std::uintptr_t poster = value / PER_POSTER;
        if (lastPerPoster.count(poster) != 0) {
            ASSERT_LT(lastPerPoster[poster], value);
        }
        lastPerPoster[poster] = value;
    }
}

TEST_F(ContextTest, CallbacksRunOnTheContextThreadInPostingOrderPerThread) {
    CallbackTrace trace;
    std::vector<std::pair<CallbackTrace*, std::uintptr_t>> entries;
    entries.reserve(POSTERS * PER_POSTER);
    {
        // Posting while the context thread runs them.
        PumpedContext context;
        LoggedSession session(context.get());
        postFromThreads(session, &trace, &entries);
        ASSERT_TRUE(waitUntil([&] { return trace.size() == entries.size(); }, 20000ms));
        expectAllInPostingOrderOn(trace, context.threadId());
        EXPECT_EQ(0, context.failures());
    }
    // Posting while nobody processes events: more than the ring holds waits in the overflow,
    // and still comes out in order, on the thread that calls processEvents.
    trace.calls.clear();
    entries.clear();
    IdleContext idle;
    LoggedSession session(idle.get());
    postFromThreads(session, &trace, &entries);
    EXPECT_EQ(0u, trace.size());
    while (trace.size() < entries.size()) {
        ASSERT_EQ(ZORCLIENT_OK, zorClient_context_processEvents(idle.get()));
    }
    expectAllInPostingOrderOn(trace, std::this_thread::get_id());
}

// The first CPU this process may run on, as a CPU list.
std::string firstAllowedCpu() {
    cpu_set_t set;
    CPU_ZERO(&set);
    sched_getaffinity(0, sizeof set, &set);
    for (int cpu = 0; cpu < CPU_SETSIZE; ++cpu) {
        if (CPU_ISSET(cpu, &set)) {
            return std::to_string(cpu);
        }
    }
    return "0";
}

TEST_F(ContextTest, OwnThreadRunsTheCallbacksAndRefusesProcessEvents) {
    zorClient_opaqueContext_pt context = nullptr;
    const std::string cpu = firstAllowedCpu();
    ASSERT_EQ(ZORCLIENT_OK,
              createContext({"CONTEXT_CREATE_THREAD", "1", "CONTEXT_THREAD_AFFINITY_CPU_LIST",
                             cpu.c_str(), "CONTEXT_BUSY_POLL_US", "200"},
                            &context))
        << lastError().errorStr;
    EXPECT_EQ(ZORCLIENT_FAIL, zorClient_context_processEvents(context));
    EXPECT_EQ(ZORCLIENT_SUBCODE_INVALID_SESSION_OPERATION, lastError().subCode);

    EventLog log;
    zorClient_opaqueSession_pt session = nullptr;
    ASSERT_EQ(ZORCLIENT_OK, createSession(context, {}, &log, &session));
    ASSERT_EQ(ZORCLIENT_OK, zorClient_session_connect(session));
    ASSERT_TRUE(log.waitForCount(1));
    EXPECT_EQ(ZORCLIENT_SESSION_EVENT_UP_NOTICE, log.events()[0].event);
    EXPECT_NE(std::this_thread::get_id(), log.events()[0].thread);
    // Sessions left behind go with the context; their handles are then stale.
    EXPECT_EQ(ZORCLIENT_OK, zorClient_context_destroy(&context));
    EXPECT_EQ(ZORCLIENT_FAIL, zorClient_session_connect(session));
    EXPECT_EQ(ZORCLIENT_SUBCODE_INVALID_HANDLE, lastError().subCode);
}

TEST_F(ContextTest, DestroyFromInsideItsOwnCallbackIsRefused) {
    PumpedContext context;
    std::atomic<int> destroyResult{1};
    std::atomic<int> subCode{0};
    LoggedSession session(context.get());
    zorClient_opaqueContext_pt handle = context.get();
    session.log.onEvent = [&](zorClient_opaqueSession_pt, zorClient_session_event_t) {
        zorClient_opaqueContext_pt copy = handle;
        destroyResult = zorClient_context_destroy(&copy);
        subCode = lastError().subCode;
        // processEvents is not re-entrant either.
        EXPECT_EQ(ZORCLIENT_FAIL, zorClient_context_processEvents(handle));
    };
    ASSERT_EQ(ZORCLIENT_OK, zorClient_session_connect(session));
    ASSERT_TRUE(session.log.waitForCount(1));
    EXPECT_EQ(ZORCLIENT_FAIL, destroyResult.load());
    EXPECT_EQ(ZORCLIENT_SUBCODE_INVALID_SESSION_OPERATION, subCode.load());
}

TEST_F(ContextTest, BadPropertiesAndArgumentsFailNamingWhatIsWrong) {
    zorClient_opaqueContext_pt context = nullptr;
    const std::vector<std::pair<std::vector<const char*>, std::string>> bad = {
        {{"CONTEXT_CREATE_THREAD", "yes"}, "CONTEXT_CREATE_THREAD"},
        {{"CONTEXT_MAX_SESSIONS", "0"}, "CONTEXT_MAX_SESSIONS"},
        {{"CONTEXT_BUSY_POLL_US", "-1"}, "CONTEXT_BUSY_POLL_US"},
        {{"CONTEXT_THREAD_AFFINITY", "0x3"}, "CONTEXT_THREAD_AFFINITY"},
        {{"CONTEXT_THREAD_AFFINITY_CPU_LIST", "3-1"}, "CONTEXT_THREAD_AFFINITY_CPU_LIST"},
        {{"CONTEXT_THREAD_AFFINITY_CPU_LIST", "0,,2"}, "CONTEXT_THREAD_AFFINITY_CPU_LIST"},
    };
    for (const auto& [props, key] : bad) {
        EXPECT_EQ(ZORCLIENT_FAIL, createContext(props, &context)) << key;
        EXPECT_EQ(ZORCLIENT_SUBCODE_PARAM_OUT_OF_RANGE, lastError().subCode) << key;
        EXPECT_NE(nullptr, std::strstr(lastError().errorStr, key.c_str())) << lastError().errorStr;
        EXPECT_EQ(nullptr, context);
    }
    // The last of a repeated key wins; keys of other objects are ignored.
    ASSERT_EQ(ZORCLIENT_OK,
              createContext({"CONTEXT_MAX_SESSIONS", "bad", "SESSION_HOST", "x",
                             "ZORVANE_VEXLOAD_MTR_CATCHUP_NS", "5", "CONTEXT_MAX_SESSIONS", "1"},
                            &context));
    EventLog log;
    zorClient_opaqueSession_pt first = nullptr;
    zorClient_opaqueSession_pt second = nullptr;
    ASSERT_EQ(ZORCLIENT_OK, createSession(context, {}, &log, &first));
    EXPECT_EQ(ZORCLIENT_FAIL, createSession(context, {}, &log, &second));
    EXPECT_EQ(ZORCLIENT_SUBCODE_TOO_MANY_SESSIONS, lastError().subCode);
    // A session handle is not a context handle.
    EXPECT_EQ(ZORCLIENT_FAIL,
              zorClient_context_processEvents(reinterpret_cast<zorClient_opaqueContext_pt>(first)));
    EXPECT_EQ(ZORCLIENT_SUBCODE_INVALID_HANDLE, lastError().subCode);
    EXPECT_EQ(ZORCLIENT_OK, zorClient_session_destroy(&first));

    // Non-zero descriptor callbacks, a short record, null and stale handles.
    zorClient_context_createFuncInfo_t funcInfo{};
    funcInfo.regFdInfo.user_p = &funcInfo;
    const char* none[] = {nullptr};
    zorClient_opaqueContext_pt other = nullptr;
    EXPECT_EQ(ZORCLIENT_FAIL, zorClient_context_create(none, &other, &funcInfo, sizeof funcInfo));
    funcInfo.regFdInfo.user_p = nullptr;
    EXPECT_EQ(ZORCLIENT_FAIL, zorClient_context_create(none, &other, &funcInfo, 1));
    EXPECT_EQ(ZORCLIENT_SUBCODE_INSUFFICIENT_SPACE, lastError().subCode);
    zorClient_opaqueContext_pt stale = context;
    EXPECT_EQ(ZORCLIENT_OK, zorClient_context_destroy(&context));
    EXPECT_EQ(ZORCLIENT_FAIL, zorClient_context_processEvents(stale));
    EXPECT_EQ(ZORCLIENT_SUBCODE_INVALID_HANDLE, lastError().subCode);
    EXPECT_EQ(ZORCLIENT_FAIL, zorClient_context_destroy(&stale));
    EXPECT_EQ(ZORCLIENT_FAIL, zorClient_context_processEvents(nullptr));
    EXPECT_EQ(ZORCLIENT_SUBCODE_PARAM_NULL_PTR, lastError().subCode);
}

TEST(ContextBeforeInitialize, CreateIsRefused) {
    zorClient_opaqueContext_pt context = nullptr;
    EXPECT_EQ(ZORCLIENT_FAIL, createContext({}, &context));
    EXPECT_EQ(ZORCLIENT_SUBCODE_INIT_NOT_CALLED, lastError().subCode);
}

}  // namespace
