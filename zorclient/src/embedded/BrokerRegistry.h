// The embedded broker instances of the process, by name. An instance is made by the first
// session that connects to it, with that session's configuration, and lives until
// zorClient_cleanup finds it without clients (one run of an application is one process; the
// broker keeps no state on disk).
//
// Threads: thread-safe.
#pragma once

#include <memory>
#include <string>

#include "embedded/BrokerInstance.h"

namespace zorvane::zorclient {

class BrokerRegistry {
  public:
    // The instance called name; made with config when there is none. *created_p tells which.
    static std::shared_ptr<BrokerInstance> obtain(const std::string& name,
                                                  const EmbeddedConfig& config, bool* created_p);

    // Forgets the instances that no session is connected to.
    static void forgetIdle();
};

}  // namespace zorvane::zorclient
