// Base class of every thread of the tool (context, publisher, cache request,
// bind, acknowledgement, task and timer threads).
//
// The creating object owns the thread. start() launches runImpl() on a new
// joinable thread; wait() joins it. wait() does not stop the thread: each
// subclass stops its runImpl() through a flag of its own, then calls wait().
#pragma once

#include <pthread.h>

namespace zorvane::pubsub {

class OSThread {
  public:
    OSThread() = default;
    virtual ~OSThread() = default;
    OSThread(const OSThread&) = delete;
    OSThread& operator=(const OSThread&) = delete;

    // CPU to pin the thread to when it starts; -1 leaves it unpinned.
    void setAffinity(long cpu) { cpu_m = cpu; }

    // Returns 1 when the thread was created, 0 (and a log line) otherwise.
    int start();

    // Entry of the new thread: applies the affinity, then runs runImpl().
    void run();

    // Joins the thread if one runs; always returns 0.
    int wait();

    bool isStarted() const { return threadId_m != 0; }

  protected:
    virtual void* runImpl() = 0;

    pthread_t threadId_m = 0;
    long cpu_m = -1;
};

}  // namespace zorvane::pubsub
