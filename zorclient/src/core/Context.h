// A context: the event engine of a group of sessions. Every callback of its sessions (receive
// callbacks, session, flow and cache events, dispatcher callbacks) runs on the context thread,
// one after another: the application's thread in zorClient_context_processEvents, or the
// context's own thread ("CONTEXT_CREATE_THREAD" "1").
//
// Work reaches the context three ways, all from any thread:
// - events in the EventQueue (post, tryPost), each addressed to an EventTarget;
// - timers (addTimer), for waits such as reconnect retries;
// - attention (requestAttention): "look at your sessions' flags". The one way in from a signal
//   handler, since it only sets an atomic flag and wakes the thread.
//
// The context never holds a lock while it runs a callback, so callbacks may call any library
// function, blocking ones included.
//
// Lifetime: counted (Ref). Sessions hold a reference to their context.
#pragma once

#include <atomic>
#include <chrono>
#include <cstddef>
#include <mutex>
#include <thread>
#include <vector>

#include "core/ContextConfig.h"
#include "core/ControlRecordPool.h"
#include "core/EventQueue.h"
#include "core/RefCounted.h"
#include "core/TimerQueue.h"
#include "core/Waker.h"

namespace zorvane::zorclient {

class Session;

class Context final : public RefCounted {
  public:
    // Slots of the event queue. Deliveries beyond this are discarded (and counted by the
    // broker); other events overflow into a list.
    static constexpr std::size_t QUEUE_CAPACITY = 16384;
    // Longest wait of one processEvents call.
    static constexpr std::chrono::milliseconds MAX_WAIT{50};
    // Events handled per pass before the caller gets control back.
    static constexpr std::size_t BATCH = 1024;
    // Looks at the queue between two clock reads while busy-polling.
    static constexpr int SPIN_LOOKS_PER_CLOCK_READ = 64;
    // Looks at the queue before the thread goes to sleep, also without busy-poll: a few
    // microseconds at most. A receiver that keeps up with its sender finds the queue empty
    // between most two messages; sleeping then would cost both sides a system call each time.
    static constexpr int LOOKS_BEFORE_SLEEP = 128;

    // Makes a context and, with config.createThread, starts its thread. Fails (error info
    // naming function_p) when the thread cannot start or be pinned.
    static zorClient_returnCode_t create(const ContextConfig& config, const char* function_p,
                                         Ref<Context>* context_p);

    const ContextConfig& config() const noexcept { return config_m; }

    // --- Producers: any thread -------------------------------------------------------------

    // An event that must arrive. Takes over the event's references.
    void post(const Event& event);
    // A delivery: false when the queue has no room; the references then stay the caller's.
    bool tryPost(const Event& event) noexcept;
    ControlRecord* takeRecord() { return records_m.take(); }
    void giveRecord(ControlRecord* record_p) noexcept { records_m.give(record_p); }
    // Makes the context call Session::onAttention for its sessions soon. Async-signal-safe.
    void requestAttention() noexcept;
    // target->onTimer(token) on the context thread after delay.
    void addTimer(std::chrono::milliseconds delay, Ref<EventTarget> target, std::uint64_t token);

    // --- The loop ---------------------------------------------------------------------------

    // One pass of the application's loop: waits up to MAX_WAIT for work, runs what is due.
    // Fails for a context with its own thread, and when called while a pass of this context
    // runs (from another thread, or from inside one of its callbacks).
    zorClient_returnCode_t processEvents(const char* function_p);

    // True on the thread that is running this context's callbacks right now.
    bool isDispatchThread() const noexcept;
    // Returns once no callback of session runs on the context thread. Not on that thread.
    void waitWhileDispatching(const Session* session_p) const noexcept;

    // --- Sessions ---------------------------------------------------------------------------

    // Fails with ZORCLIENT_SUBCODE_TOO_MANY_SESSIONS beyond "CONTEXT_MAX_SESSIONS".
    zorClient_returnCode_t addSession(const Ref<Session>& session, const char* function_p);
    // Call once the session can receive no more deliveries (its broker connection is gone):
    // queued deliveries borrow the context's reference, which is dropped behind them.
    void removeSession(const Session* session_p);
    std::vector<Ref<Session>> sessions();

    // Stops the own thread, drops what is queued and the timers. Call after the sessions are
    // closed and no thread runs processEvents any more.
    void shutdown();

  private:
    explicit Context(const ContextConfig& config);
    ~Context() override;

    void runOwnThread();
    // One pass: run due work, or wait for it up to maxWait and then run it.
    void runPass(std::chrono::nanoseconds maxWait);
    bool hasWork() const noexcept;
    // Looks at the queue up to looks times; runs the due work and returns true when some came.
    bool runWorkWithin(int looks);
    std::size_t runDueWork();
    void dispatch(Event& event) noexcept;
    void discardQueued() noexcept;

    const ContextConfig config_m;
    EventQueue queue_m;
    ControlRecordPool records_m;
    TimerQueue timers_m;
    // Producers write the waker's line on every post and the context thread writes the flags
    // below on every pass: on one line, each would take it from the other every time.
    alignas(64) Waker waker_m;
    alignas(64) std::atomic<bool> attention_m{false};
    std::atomic<bool> timersChanged_m{false};
    std::atomic<bool> inPass_m{false};
    // The session whose events are being dispatched: set when the owner changes between two
    // events, cleared after each batch, so that a batch of one session's deliveries makes two
    // sequentially consistent stores instead of two per event. A closing session may wait for
    // the rest of the batch.
    std::atomic<const Session*> dispatching_m{nullptr};
    const Session* dispatchingOwner_mp = nullptr;  // context thread's copy of dispatching_m

    std::mutex sessionsMutex_m;
    std::vector<Ref<Session>> sessions_m;
    bool shutDown_m = false;  // under sessionsMutex_m
    std::mutex discardMutex_m;

    // The context thread's own scratch space, reused so that passes do not allocate.
    std::vector<Ref<Session>> attentionScratch_m;
    std::vector<TimerQueue::Timer> dueScratch_m;

    std::thread thread_m;
    std::atomic<bool> stop_m{false};
};

}  // namespace zorvane::zorclient
