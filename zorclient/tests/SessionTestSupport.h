// Helpers of the context and session tests: a context driven by a thread of the test (as an
// application drives one) or by the test itself, sessions whose events are recorded with the
// error info the callback saw, and waiting with a deadline.
#pragma once

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include "zorClient.h"

namespace zctest {

using namespace std::chrono_literals;

inline const zorClient_errorInfo& lastError() {
    return *zorClient_getLastErrorInfo();
}

// Waits until done() or the time is up; true when done.
inline bool waitUntil(const std::function<bool()>& done, std::chrono::milliseconds limit = 5000ms) {
    const auto end = std::chrono::steady_clock::now() + limit;
    while (!done()) {
        if (std::chrono::steady_clock::now() > end) {
            return false;
        }
        std::this_thread::sleep_for(1ms);
    }
    return true;
}

// Starts the library for a test and stops it afterwards.
class LibraryTest : public ::testing::Test {
  protected:
    void SetUp() override {
        ASSERT_EQ(ZORCLIENT_OK, zorClient_initialize(ZORCLIENT_LOG_ERROR, nullptr));
    }
    void TearDown() override { zorClient_cleanup(); }
};

// A context whose events a thread of the test processes, until stop() or destruction.
class PumpedContext {
  public:
    explicit PumpedContext(std::vector<const char*> props = {}) {
        props.push_back(nullptr);
        zorClient_context_createFuncInfo_t funcInfo{};
        EXPECT_EQ(ZORCLIENT_OK,
                  zorClient_context_create(props.data(), &context_m, &funcInfo, sizeof funcInfo))
            << lastError().errorStr;
        thread_m = std::thread([this] {
            threadId_m = std::this_thread::get_id();
            started_m = true;
            while (!stop_m) {
                if (zorClient_context_processEvents(context_m) != ZORCLIENT_OK) {
                    ++failures_m;
                }
            }
        });
        waitUntil([this] { return started_m.load(); });
    }
    ~PumpedContext() {
        stop();
        zorClient_context_destroy(&context_m);
    }
    void stop() {
        stop_m = true;
        if (thread_m.joinable()) {
            thread_m.join();
        }
    }
    zorClient_opaqueContext_pt get() const { return context_m; }
    std::thread::id threadId() const { return threadId_m; }
    int failures() const { return failures_m; }

  private:
    zorClient_opaqueContext_pt context_m = nullptr;
    std::thread thread_m;
    std::thread::id threadId_m;
    std::atomic<bool> started_m{false};
    std::atomic<bool> stop_m{false};
    std::atomic<int> failures_m{0};
};

// Library started and one context pumped by a thread of the test.
class PumpedTest : public LibraryTest {
  protected:
    void SetUp() override {
        LibraryTest::SetUp();
        pumped_m = std::make_unique<PumpedContext>();
    }
    void TearDown() override {
        pumped_m.reset();
        LibraryTest::TearDown();
    }
    zorClient_opaqueContext_pt context() const { return pumped_m->get(); }

    std::unique_ptr<PumpedContext> pumped_m;
};

// Creates a context with props (closed here by a null) and no descriptor callbacks.
inline zorClient_returnCode_t createContext(std::vector<const char*> props,
                                            zorClient_opaqueContext_pt* context_p) {
    props.push_back(nullptr);
    zorClient_context_createFuncInfo_t funcInfo{};
    return zorClient_context_create(props.data(), context_p, &funcInfo, sizeof funcInfo);
}

// A context whose events run only when the test calls process(); destroyed at the end of the
// scope unless the test destroyed it before.
class IdleContext {
  public:
    IdleContext() {
        EXPECT_EQ(ZORCLIENT_OK, createContext({}, &context_m)) << lastError().errorStr;
    }
    ~IdleContext() {
        if (context_m != nullptr) {
            EXPECT_EQ(ZORCLIENT_OK, zorClient_context_destroy(&context_m));
        }
    }
    IdleContext(const IdleContext&) = delete;
    IdleContext& operator=(const IdleContext&) = delete;
    zorClient_opaqueContext_pt get() const { return context_m; }
    void process(int passes = 1) {
        for (int i = 0; i < passes; ++i) {
            EXPECT_EQ(ZORCLIENT_OK, zorClient_context_processEvents(context_m));
        }
    }
    zorClient_returnCode_t destroy() { return zorClient_context_destroy(&context_m); }

  private:
    zorClient_opaqueContext_pt context_m = nullptr;
};

struct RecordedEvent {
    zorClient_session_event_t event;
    zorClient_subCode_t subCode;  // of the error info inside the callback
    std::string errorStr;
    std::string info;
    std::thread::id thread;
};

// The events of one session, as its callback saw them. onEvent runs inside the callback, after
// the event was recorded.
class EventLog {
  public:
    static void callback(zorClient_opaqueSession_pt session,
                         zorClient_session_eventCallbackInfo_pt info_p, void* user_p) {
        auto* log_p = static_cast<EventLog*>(user_p);
        const zorClient_errorInfo& error = lastError();
        {
            std::lock_guard<std::mutex> lock(log_p->mutex_m);
            log_p->events_m.push_back(RecordedEvent{info_p->sessionEvent, error.subCode,
                                                    error.errorStr, info_p->info_p,
                                                    std::this_thread::get_id()});
        }
        if (log_p->onEvent) {
            log_p->onEvent(session, info_p->sessionEvent);
        }
    }

    std::vector<RecordedEvent> events() const {
        std::lock_guard<std::mutex> lock(mutex_m);
        return events_m;
    }
    std::vector<zorClient_session_event_t> kinds() const {
        std::vector<zorClient_session_event_t> kinds;
        for (const RecordedEvent& event : events()) {
            kinds.push_back(event.event);
        }
        return kinds;
    }
    bool waitForCount(std::size_t count, std::chrono::milliseconds limit = 5000ms) const {
        return waitUntil([&] { return events().size() >= count; }, limit);
    }

    std::function<void(zorClient_opaqueSession_pt, zorClient_session_event_t)> onEvent;

  private:
    mutable std::mutex mutex_m;
    std::vector<RecordedEvent> events_m;
};

// Creates a session on context with props (closed here by a null), log's callback and, when
// given, a receive callback.
inline zorClient_returnCode_t createSession(
    zorClient_opaqueContext_pt context, std::vector<const char*> props, EventLog* log_p,
    zorClient_opaqueSession_pt* session_p,
    zorClient_session_rxMsgCallbackFunc_t rxCallback_p = nullptr, void* rxUser_p = nullptr) {
    props.push_back(nullptr);
    zorClient_session_createFuncInfo_t funcInfo{};
    funcInfo.eventInfo.callback_p = &EventLog::callback;
    funcInfo.eventInfo.user_p = log_p;
    funcInfo.rxMsgInfo.callback_p = rxCallback_p;
    funcInfo.rxMsgInfo.user_p = rxUser_p;
    return zorClient_session_create(props.data(), context, session_p, &funcInfo, sizeof funcInfo);
}

// A session with an event log of its own, destroyed (which must succeed) at the end of the scope
// unless the test destroyed it before. Declared after whatever its callbacks use, so that no
// callback runs on something already gone.
class LoggedSession {
  public:
    explicit LoggedSession(zorClient_opaqueContext_pt context,
                           std::vector<const char*> props = {}) {
        EXPECT_EQ(ZORCLIENT_OK, createSession(context, std::move(props), &log, &handle))
            << lastError().errorStr;
    }
    ~LoggedSession() {
        if (handle != nullptr) {
            EXPECT_EQ(ZORCLIENT_OK, zorClient_session_destroy(&handle));
        }
    }
    LoggedSession(const LoggedSession&) = delete;
    LoggedSession& operator=(const LoggedSession&) = delete;
    operator zorClient_opaqueSession_pt() const { return handle; }

    EventLog log;
    zorClient_opaqueSession_pt handle = nullptr;
};

inline std::string property(zorClient_opaqueSession_pt session, const char* name_p) {
    char buffer[ZORCLIENT_REPLY_TO_MAX_SIZE] = {0};
    if (zorClient_session_getProperty(session, name_p, buffer, sizeof buffer) != ZORCLIENT_OK) {
        return "<" + std::string(lastError().errorStr) + ">";
    }
    return buffer;
}

}  // namespace zctest
