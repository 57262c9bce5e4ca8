// The ControlRecords of one context. Records are made when the pool is empty and reused after:
// once a run has warmed the pool up, events cost no allocation. Records are few and events that
// need them rare, so one mutex is enough.
//
// Threads: any.
#pragma once

#include <memory>
#include <mutex>
#include <vector>

#include "core/Event.h"

namespace zorvane::zorclient {

class ControlRecordPool {
  public:
    ControlRecordPool() = default;
    ControlRecordPool(const ControlRecordPool&) = delete;
    ControlRecordPool& operator=(const ControlRecordPool&) = delete;

    // A cleared record; throws std::bad_alloc when none is free and no memory is left.
    ControlRecord* take();
    // Returns a record from take(); null is ignored.
    void give(ControlRecord* record_p) noexcept;

  private:
    std::mutex mutex_m;
    std::vector<std::unique_ptr<ControlRecord>> all_m;  // owns every record
    std::vector<ControlRecord*> free_m;
};

}  // namespace zorvane::zorclient
