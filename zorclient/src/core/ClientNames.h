// Client names the library makes up for sessions that were given none:
// "client-<host name>-<process id>-<n>", unique within the process (n counts up) and, through
// host name and process id, unlikely to clash with other processes on a shared broker.
#pragma once

#include <string>

namespace zorvane::zorclient {

class ClientNames {
  public:
    // Thread-safe. Always shorter than ZORCLIENT_CLIENT_NAME_MAX_SIZE.
    static std::string generate();
};

}  // namespace zorvane::zorclient
