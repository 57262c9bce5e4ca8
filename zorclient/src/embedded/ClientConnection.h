// One session's connection to an embedded broker instance, as the instance sees it: the client
// name it is known by and where to report to. The routing work adds the connection's
// subscriptions and egress queue here.
//
// Threads: the instance reads and writes clientName and attached under its own mutex; the
// listener is fixed.
#pragma once

#include <cstdint>
#include <string>

#include "core/Backend.h"

namespace zorvane::zorclient {

struct ClientConnection {
    explicit ClientConnection(BackendListener& listener) : listener_m(listener) {}

    BackendListener& listener_m;
    std::string clientName_m;  // under the instance's mutex
    bool attached_m = false;   // under the instance's mutex
    std::uint64_t id_m = 0;    // per instance, from 1; set when attached
};

}  // namespace zorvane::zorclient
