// The requests of one session that wait for their replies (zorClient_session_sendRequest).
//
// The requesting thread opens a request, publishes it, and waits here. A reply reaches
// answer() on whichever thread the broker routes it (the replier's, for the embedded broker),
// which hands it to the waiter directly: no context thread is involved, so a request may be
// made from any thread. A reply for a request that no longer waits (answered, timed out,
// abandoned) is refused, and the caller discards it.
//
// Threads: all members, any thread. answer() only locks the table's own mutex briefly and
// never blocks otherwise; no lock of the table is held while anything else is called.
#pragma once

#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <mutex>
#include <vector>

#include "core/Event.h"

namespace zorvane::zorclient {

class RequestTable {
  public:
    enum class Outcome { ANSWERED, TIMED_OUT, CLOSED };

    RequestTable() = default;
    RequestTable(const RequestTable&) = delete;
    RequestTable& operator=(const RequestTable&) = delete;
    // Releases replies nobody collected.
    ~RequestTable();

    // A new request id (never 0), waiting from now on. Throws std::bad_alloc.
    std::uint64_t open();
    // The reply to request id: true when that request waits (the payload is now the table's),
    // false otherwise (the payload is still the caller's).
    bool answer(std::uint64_t id, MessagePayload payload) noexcept;
    // Waits until request id is answered (*payload_p is then the reply, the caller's to
    // release), deadline passes, or close() is called. Ends the request in every case.
    Outcome wait(std::uint64_t id, std::chrono::steady_clock::time_point deadline,
                 MessagePayload* payload_p);
    // Ends request id without waiting (it could not be sent).
    void abandon(std::uint64_t id) noexcept;
    // Wakes every waiter with CLOSED; later requests end at once with CLOSED.
    void close() noexcept;

  private:
    struct Slot {
        std::uint64_t id;
        bool answered;
        MessagePayload payload;
    };
    // Under mutex_m; removes slot id and returns it (id 0 when absent).
    Slot take(std::uint64_t id) noexcept;

    std::mutex mutex_m;
    std::condition_variable answered_m;
    std::vector<Slot> slots_m;  // few: one per waiting thread
    std::uint64_t lastId_m = 0;
    bool closed_m = false;
};

}  // namespace zorvane::zorclient
