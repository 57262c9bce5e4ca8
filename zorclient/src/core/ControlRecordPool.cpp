#include "core/ControlRecordPool.h"

namespace zorvane::zorclient {

ControlRecord* ControlRecordPool::take() {
    std::lock_guard<std::mutex> lock(mutex_m);
    if (free_m.empty()) {
        // Room in free_m first, so that give() never has to allocate.
        free_m.reserve(all_m.size() + 1);
        all_m.push_back(std::make_unique<ControlRecord>());
        return all_m.back().get();
    }
    ControlRecord* record_p = free_m.back();
    free_m.pop_back();
    record_p->reset();
    return record_p;
}

void ControlRecordPool::give(ControlRecord* record_p) noexcept {
    if (record_p == nullptr) {
        return;
    }
    std::lock_guard<std::mutex> lock(mutex_m);
    free_m.push_back(record_p);  // capacity reserved in take()
}

}  // namespace zorvane::zorclient
