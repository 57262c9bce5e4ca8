#include "core/RequestTable.h"

#include <algorithm>

namespace zorvane::zorclient {

RequestTable::~RequestTable() {
    for (Slot& slot : slots_m) {
        slot.payload.release();
    }
}

std::uint64_t RequestTable::open() {
    std::lock_guard<std::mutex> lock(mutex_m);
    const std::uint64_t id = ++lastId_m;
    slots_m.push_back(Slot{id, false, MessagePayload{nullptr, nullptr}});
    return id;
}

bool RequestTable::answer(std::uint64_t id, MessagePayload payload) noexcept {
    {
        std::lock_guard<std::mutex> lock(mutex_m);
        auto it = std::find_if(slots_m.begin(), slots_m.end(),
                               [id](const Slot& slot) { return slot.id == id; });
        // A second reply to one request is as late as one after the timeout.
        if (closed_m || it == slots_m.end() || it->answered) {
            return false;
        }
        it->answered = true;
        it->payload = payload;
    }
    answered_m.notify_all();
    return true;
}

RequestTable::Slot RequestTable::take(std::uint64_t id) noexcept {
    auto it = std::find_if(slots_m.begin(), slots_m.end(),
                           [id](const Slot& slot) { return slot.id == id; });
    if (it == slots_m.end()) {
        return Slot{0, false, MessagePayload{nullptr, nullptr}};
    }
    Slot slot = *it;
    slots_m.erase(it);
    return slot;
}

RequestTable::Outcome RequestTable::wait(std::uint64_t id,
                                         std::chrono::steady_clock::time_point deadline,
                                         MessagePayload* payload_p) {
    std::unique_lock<std::mutex> lock(mutex_m);
    auto done = [&] {
        if (closed_m) {
            return true;
        }
        auto it = std::find_if(slots_m.begin(), slots_m.end(),
                               [id](const Slot& slot) { return slot.id == id; });
        return it == slots_m.end() || it->answered;
    };
    answered_m.wait_until(lock, deadline, done);
    Slot slot = take(id);
    if (slot.answered) {
        *payload_p = slot.payload;
        return Outcome::ANSWERED;
    }
    return closed_m ? Outcome::CLOSED : Outcome::TIMED_OUT;
}

void RequestTable::abandon(std::uint64_t id) noexcept {
    std::lock_guard<std::mutex> lock(mutex_m);
    take(id).payload.release();
}

void RequestTable::close() noexcept {
    {
        std::lock_guard<std::mutex> lock(mutex_m);
        closed_m = true;
    }
    answered_m.notify_all();
}

}  // namespace zorvane::zorclient
