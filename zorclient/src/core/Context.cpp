#include "core/Context.h"

#include <pthread.h>
#include <sched.h>

#include <algorithm>
#include <cerrno>
#include <cstring>

#include "api/LastError.h"
#include "api/Logger.h"
#include "core/Session.h"

namespace zorvane::zorclient {

namespace {

// The context whose callbacks the current thread is running, if any.
thread_local const Context* dispatchingContext_s = nullptr;

class DispatchThreadMark {
  public:
    explicit DispatchThreadMark(const Context* context_p) noexcept
        : previous_mp(dispatchingContext_s) {
        dispatchingContext_s = context_p;
    }
    ~DispatchThreadMark() { dispatchingContext_s = previous_mp; }
    DispatchThreadMark(const DispatchThreadMark&) = delete;
    DispatchThreadMark& operator=(const DispatchThreadMark&) = delete;

  private:
    const Context* previous_mp;
};

void cpuRelax() noexcept {
#if defined(__x86_64__) || defined(__i386__)
    __builtin_ia32_pause();
#endif
}

int pinThread(std::thread& thread, const std::vector<int>& cpus) {
    cpu_set_t set;
    CPU_ZERO(&set);
    for (int cpu : cpus) {
        CPU_SET(cpu, &set);
    }
    return pthread_setaffinity_np(thread.native_handle(), sizeof set, &set);
}

}  // namespace

Context::Context(const ContextConfig& config) : config_m(config), queue_m(QUEUE_CAPACITY) {}

Context::~Context() {
    if (thread_m.joinable()) {
        // The own thread held the last reference: it is ending and cannot join itself.
        if (thread_m.get_id() == std::this_thread::get_id()) {
            thread_m.detach();
        } else {
            thread_m.join();
        }
    }
    discardQueued();
}

zorClient_returnCode_t Context::create(const ContextConfig& config, const char* function_p,
                                       Ref<Context>* context_p) {
    Ref<Context> context(new Context(config));
    if (config.createThread) {
        try {
            // The thread holds a reference, so the context outlives the loop that uses it.
            context->thread_m = std::thread([self = context] { self->runOwnThread(); });
        } catch (const std::system_error& e) {
            return LastError::fail(ZORCLIENT_SUBCODE_OS_ERROR,
                                   "%s: the context thread could not start: %s", function_p,
                                   e.what());
        }
        pthread_setname_np(context->thread_m.native_handle(), "zorclient-ctx");
        if (!config.cpus.empty()) {
            const int error = pinThread(context->thread_m, config.cpus);
            if (error != 0) {
                context->shutdown();
                return LastError::fail(ZORCLIENT_SUBCODE_OS_ERROR,
                                       "%s: the context thread could not be pinned to the CPUs "
                                       "of %s/%s: %s",
                                       function_p, ZORCLIENT_CONTEXT_PROP_THREAD_AFFINITY,
                                       ZORCLIENT_CONTEXT_PROP_THREAD_AFFINITY_CPU_LIST,
                                       std::strerror(error));
            }
        }
    }
    *context_p = std::move(context);
    return ZORCLIENT_OK;
}

void Context::post(const Event& event) {
    queue_m.push(event);
    waker_m.wake();
}

bool Context::tryPost(const Event& event) noexcept {
    if (!queue_m.tryPush(event)) {
        return false;
    }
    waker_m.wake();
    return true;
}

void Context::requestAttention() noexcept {
    attention_m.store(true, std::memory_order_release);
    waker_m.wake();
}

void Context::addTimer(std::chrono::milliseconds delay, Ref<EventTarget> target,
                       std::uint64_t token) {
    if (timers_m.add(TimerQueue::Clock::now() + delay, std::move(target), token)) {
        timersChanged_m.store(true, std::memory_order_release);
        waker_m.wake();
    }
}

zorClient_returnCode_t Context::processEvents(const char* function_p) {
    if (config_m.createThread) {
        return LastError::fail(ZORCLIENT_SUBCODE_INVALID_SESSION_OPERATION,
                               "%s: this context runs its events on a thread of its own "
                               "(\"%s\" \"1\"); do not call it",
                               function_p, ZORCLIENT_CONTEXT_PROP_CREATE_THREAD);
    }
    if (inPass_m.exchange(true, std::memory_order_acquire)) {
        return LastError::fail(ZORCLIENT_SUBCODE_INVALID_SESSION_OPERATION,
                               "%s: the context is already processing events (on another thread, "
                               "or this call comes from inside one of its callbacks)",
                               function_p);
    }
    runPass(MAX_WAIT);
    inPass_m.store(false, std::memory_order_release);
    return ZORCLIENT_OK;
}

void Context::runOwnThread() {
    while (!stop_m.load(std::memory_order_acquire)) {
        runPass(MAX_WAIT);
    }
}

bool Context::hasWork() const noexcept {
    return queue_m.hasEvents() || attention_m.load(std::memory_order_acquire) ||
           timersChanged_m.load(std::memory_order_acquire);
}

void Context::runPass(std::chrono::nanoseconds maxWait) {
    DispatchThreadMark mark(this);
    if (runDueWork() != 0) {
        return;
    }
    // Spinning keeps the thread on its CPU, so that a latency run measures the path through
    // the broker rather than the cost of waking a thread. The clock is read only every so many
    // looks: a read costs more than a look at the queue, and the first event after a quiet spell
    // should not wait for one.
    if (config_m.busyPoll.count() > 0) {
        const auto spinEnd = TimerQueue::Clock::now() + config_m.busyPoll;
        do {
            if (runWorkWithin(SPIN_LOOKS_PER_CLOCK_READ)) {
                return;
            }
        } while (TimerQueue::Clock::now() < spinEnd);
    } else if (runWorkWithin(LOOKS_BEFORE_SLEEP)) {
        return;
    }
    const auto deadline = std::min(TimerQueue::Clock::now() + maxWait, timers_m.nextDue());
    const std::uint32_t ticket = waker_m.prepareSleep();
    if (!hasWork() && !stop_m.load(std::memory_order_acquire)) {
        waker_m.sleep(ticket, deadline - TimerQueue::Clock::now());
    }
    waker_m.endSleep();
    runDueWork();
}

bool Context::runWorkWithin(int looks) {
    for (int i = 0; i < looks; ++i) {
        if (hasWork()) {
            runDueWork();
            return true;
        }
        cpuRelax();
    }
    return false;
}

std::size_t Context::runDueWork() {
    std::size_t done = 0;
    // Looked at before the exchange: on a busy context this runs for every few events, and a
    // read leaves the line shared where a read-modify-write would take it.
    if (attention_m.load(std::memory_order_relaxed) &&
        attention_m.exchange(false, std::memory_order_acq_rel)) {
        {
            std::lock_guard<std::mutex> lock(sessionsMutex_m);
            attentionScratch_m.assign(sessions_m.begin(), sessions_m.end());
        }
        for (const Ref<Session>& session : attentionScratch_m) {
            session->onAttention();
        }
        attentionScratch_m.clear();
        ++done;
    }
    if (timersChanged_m.load(std::memory_order_relaxed)) {
        timersChanged_m.store(false, std::memory_order_release);
    }
    // Without a timer due there is no need for the clock nor the timers' lock.
    const auto nextDue = timers_m.nextDueHint();
    if (nextDue != TimerQueue::Clock::time_point::max() && nextDue <= TimerQueue::Clock::now()) {
        timers_m.takeDue(TimerQueue::Clock::now(), &dueScratch_m);
        for (TimerQueue::Timer& timer : dueScratch_m) {
            timer.target->onTimer(timer.token);
            ++done;
        }
        dueScratch_m.clear();
    }
    done += queue_m.drain(BATCH, [this](Event& event) { dispatch(event); });
    if (dispatchingOwner_mp != nullptr) {
        dispatching_m.store(nullptr, std::memory_order_seq_cst);
        dispatchingOwner_mp = nullptr;
    }
    return done;
}

void Context::dispatch(Event& event) noexcept {
    EventTarget* target_p = event.target_p;
    // Set before the target's check: a session closing on another thread either sees this and
    // waits, or this check sees the session closed (both sides use sequentially consistent
    // operations).
    const Session* owner_p = target_p->ownerSession();
    if (owner_p != dispatchingOwner_mp) {
        dispatching_m.store(owner_p, std::memory_order_seq_cst);
        dispatchingOwner_mp = owner_p;
    }
    if (target_p->acceptsEvent(event)) {
        target_p->dispatchEvent(event);
    } else {
        target_p->discardEvent(event);
    }
    if (event.kind == EventKind::SessionEvent || event.kind == EventKind::FlowEvent ||
        event.kind == EventKind::CacheEvent) {
        giveRecord(event.control_p);
    }
    if (!event.borrowsTarget) {
        target_p->release();
    }
}

bool Context::isDispatchThread() const noexcept {
    return dispatchingContext_s == this;
}

void Context::waitWhileDispatching(const Session* session_p) const noexcept {
    while (dispatching_m.load(std::memory_order_seq_cst) == session_p) {
        std::this_thread::sleep_for(std::chrono::microseconds(50));
    }
}

zorClient_returnCode_t Context::addSession(const Ref<Session>& session, const char* function_p) {
    std::lock_guard<std::mutex> lock(sessionsMutex_m);
    if (static_cast<std::int64_t>(sessions_m.size()) >= config_m.maxSessions) {
        return LastError::fail(ZORCLIENT_SUBCODE_TOO_MANY_SESSIONS,
                               "%s: the context has %zu sessions, the most its \"%s\" allows",
                               function_p, sessions_m.size(), ZORCLIENT_CONTEXT_PROP_MAX_SESSIONS);
    }
    sessions_m.push_back(session);
    return ZORCLIENT_OK;
}

void Context::removeSession(const Session* session_p) {
    Ref<Session> removed;  // released after the lock: it may be the last reference
    bool shutDown = false;
    {
        std::lock_guard<std::mutex> lock(sessionsMutex_m);
        auto it = std::find_if(sessions_m.begin(), sessions_m.end(),
                               [session_p](const Ref<Session>& s) { return s.get() == session_p; });
        if (it == sessions_m.end()) {
            return;
        }
        removed = std::move(*it);
        sessions_m.erase(it);
        shutDown = shutDown_m;
    }
    if (!shutDown) {
        // Deliveries still queued for the session borrow this reference: it goes to the queue
        // behind them and is dropped when the context thread comes to it.
        Event retired;
        retired.kind = EventKind::Retire;
        retired.target_p = removed.get();
        try {
            post(retired);
            removed.detach();
        } catch (const std::bad_alloc&) {
            // Dropping it now could free the session under a queued delivery; keeping it costs
            // one session's memory.
            ZC_LOG(ZORCLIENT_LOG_ERROR,
                   "no memory to retire session %p from its context; its memory stays",
                   static_cast<const void*>(session_p));
            removed.detach();
        }
        return;
    }
    // No thread takes events out any more: empty the queue here before the reference goes.
    discardQueued();
}

std::vector<Ref<Session>> Context::sessions() {
    std::lock_guard<std::mutex> lock(sessionsMutex_m);
    return sessions_m;
}

void Context::shutdown() {
    if (thread_m.joinable()) {
        stop_m.store(true, std::memory_order_release);
        waker_m.wake();
        thread_m.join();
    }
    {
        std::lock_guard<std::mutex> lock(sessionsMutex_m);
        shutDown_m = true;
    }
    discardQueued();
    timers_m.clear();
}

void Context::discardQueued() noexcept {
    // No thread runs this context's callbacks any more, so this thread may act as the consumer;
    // the lock keeps two threads that close sessions from doing so at once.
    std::lock_guard<std::mutex> lock(discardMutex_m);
    try {
        queue_m.drain(SIZE_MAX, [this](Event& event) {
            event.target_p->discardEvent(event);
            if (event.kind == EventKind::SessionEvent || event.kind == EventKind::FlowEvent ||
                event.kind == EventKind::CacheEvent) {
                giveRecord(event.control_p);
            }
            if (!event.borrowsTarget) {
                event.target_p->release();
            }
        });
    } catch (...) {
        // drain only throws when the overflow list cannot be swapped, which allocates nothing.
    }
}

}  // namespace zorvane::zorclient
