// The thread that drives the event engine behind a group of sessions.
//
// Until stop(), runImpl() calls processEvents() again and again, without a
// pause of its own: the time is meant to be spent waiting inside the
// binding's processEvents. A failed round is logged and the loop goes on.
//
// Ownership: the client collection creates a context before its clients,
// starts it (unless the library runs the events on a thread of its own),
// stops it after the clients are gone and deletes it.
//
// Threads: stop() may be called from any thread other than the context
// thread, any number of times; the stop flag is the only shared state.
#pragma once

#include <atomic>

#include "common/OSThread.h"
#include "common/dataTypes.h"

namespace zorvane::pubsub {

class AbstractContext : public OSThread {
  public:
    AbstractContext() = default;
    // Stops the thread if it still runs.
    ~AbstractContext() override;

    // Sets the stop flag and joins the thread (a context whose thread never
    // started only logs). Always 0.
    int stop();

    // Rounds of the event engine finished so far. Read with acquire: what
    // the context thread did in those rounds (receive statistics included)
    // is visible to the reader, so a caller that sees two more rounds than
    // before an event knows that a whole round ran after it.
    UINT64 getRoundsDone() const { return roundsDone_m.load(std::memory_order_acquire); }

  protected:
    void* runImpl() override;
    // One round of the event engine: true when it went well.
    virtual bool processEvents() = 0;

    std::atomic<bool> shutdownFlag_m{false};
    std::atomic<UINT64> roundsDone_m{0};
};

}  // namespace zorvane::pubsub
