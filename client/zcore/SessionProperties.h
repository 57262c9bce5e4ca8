// The session property array of a client: every pair the client record
// asks for, in a fixed order, and behind them the "-epl=" extras as they
// were given (so a key of the extras that repeats one of ours stands twice,
// the extra one last, and wins in the library).
//
// A value of -1 in an integer field, or an empty text, leaves its key out so
// that the library's own default holds; flags are "1" or "0".
#pragma once

#include <string>

#include "client/zcore/PropertyArray.h"
#include "common/ClientProperties.h"

namespace zorvane::pubsub {

struct SessionPropertyInputs {
    INT32 clientId_m = 1;
    std::string clientIdStr_m;  // for error texts
    // The client reflects every message (mode not "sink"): with no task
    // thread to take over blocked sends it must not block in a send.
    bool wantMsgReflect_m = false;
    bool wantClientTaskThread_m = false;
};

class SessionProperties {
  public:
    // Appends the pairs to array (which should be empty). Throws
    // PubSubException "CLIENT <id>: Unable to add extra props.  Array not
    // large enough. ..." when the extras do not fit behind the pairs, and a
    // like text naming the key when the pairs themselves do not fit.
    static void fill(const ClientProperties& props, const SessionPropertyInputs& inputs,
                     PropertyArray& array);
};

}  // namespace zorvane::pubsub
