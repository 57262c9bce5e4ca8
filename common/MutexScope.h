// Holds a mutex_t for one scope, through the OS wrappers (which log a
// failing lock or unlock at error level).
//
// Threads: the usual rules of a POSIX mutex; not copyable.
#pragma once

#include "common/OS.h"
#include "common/dataTypes.h"

namespace zorvane::pubsub {

class MutexScope {
  public:
    explicit MutexScope(mutex_t* mutex_p) : mutex_mp(mutex_p) { OS::mutexLock(mutex_mp); }
    ~MutexScope() { OS::mutexUnlock(mutex_mp); }
    MutexScope(const MutexScope&) = delete;
    MutexScope& operator=(const MutexScope&) = delete;

  private:
    mutex_t* mutex_mp;  // not owned
};

}  // namespace zorvane::pubsub
