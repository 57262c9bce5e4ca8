// Makes the Backend for one entry of a session's host list. The one place that knows which
// backends exist; Session asks it and from then on sees only the Backend interface.
//
// Threads: thread-safe.
#pragma once

#include <memory>

#include "api/PropertyList.h"
#include "core/Backend.h"
#include "core/HostList.h"

namespace zorvane::zorclient {

class BackendFactory {
  public:
    // Checks the backend configuration keys in list ("EMBEDDED_..."): a bad value fails,
    // naming function_p and the key.
    static zorClient_returnCode_t checkProperties(const PropertyList& list, const char* function_p);

    // A backend for entry, or null with the error info set: ZORCLIENT_SUBCODE_NOT_SUPPORTED
    // naming the scheme when no backend serves it, ZORCLIENT_SUBCODE_PARAM_OUT_OF_RANGE for an
    // address the backend cannot use.
    static std::unique_ptr<Backend> create(const HostEntry& entry, BackendListener& listener);

    // zorClient_cleanup: backends drop shared state that nobody uses any more.
    static void cleanup() noexcept;
};

}  // namespace zorvane::zorclient
