// A library context and the thread that processes its events: every
// receive callback and every session, flow and cache event of the sessions
// created on it runs on this one thread, one after another.
//
// Construction builds the context's property array from the client record
// and creates the library context. A failed creation is logged and leaves
// getContext() null; nothing is thrown, and each session created on it then
// fails in the library.
//
// Ownership: created before the clients that use it and destroyed after
// them. The destructor stops the thread before it destroys the library
// context, so that processEvents never runs on a destroyed one.
//
// Threads: construction, start(), stop() and destruction on the collection's
// thread; processEvents() on the context thread only.
#pragma once

#include "client/AbstractContext.h"
#include "client/zcore/PropertyArray.h"
#include "common/ClientProperties.h"
#include "zorClient.h"

namespace zorvane::pubsub {

class Context : public AbstractContext {
  public:
    explicit Context(const ClientProperties& props);
    ~Context() override;

    // The handle for zorClient_session_create; null when creation failed.
    zorClient_opaqueContext_pt getContext() const { return context_mp; }

    // The context's property array for props: its own pairs, then the
    // "-epl=" extras. Extras that do not fit are left out (with an error
    // line): the context still comes up, and the session arrays refuse the
    // same list with an exception that reaches the user.
    static void fillProperties(const ClientProperties& props, PropertyArray& array);

  protected:
    // One call of zorClient_context_processEvents, which waits up to 50 ms
    // for events. False (and an error line with the library's reason) when
    // the context is missing or the call fails.
    bool processEvents() override;

  private:
    zorClient_opaqueContext_pt context_mp = nullptr;
};

}  // namespace zorvane::pubsub
