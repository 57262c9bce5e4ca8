// The pool of library messages: allocation, duplication and freeing of messages, and the
// handles the application holds for them (see PoolHandleTable). Counts
// ZORCLIENT_MSG_STATS_MSG_ALLOCS, _MSG_FREES, _MSG_DUPS, _ALLOC_MSGS and _FREE_MSGS; a message made
// for a delivery counts as an allocation, so that a received message the application took and never
// freed shows as a leak.
//
// Threads: any thread may allocate, look up and free; a message itself is used by one thread at
// a time.
#pragma once

#include "core/Message.h"

namespace zorvane::zorclient {

class MessagePool {
  public:
    // A fresh message with its handle set. Throws std::bad_alloc.
    static Message* allocate();

    // A fresh message holding a copy of original. Throws std::bad_alloc (nothing is then
    // allocated).
    static Message* duplicate(const Message& original);

    // Clears the message and gives its slot back; its handle goes stale.
    static void free(Message* msg_p) noexcept;

    // The message of a live handle; null for null, stale or foreign handles.
    static Message* lookup(zorClient_opaqueMsg_pt handle) noexcept;
};

}  // namespace zorvane::zorclient
