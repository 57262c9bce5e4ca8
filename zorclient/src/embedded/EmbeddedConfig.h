// The configuration of an embedded broker instance, from "EMBEDDED_..." keys:
//
//   "EMBEDDED_AUTO_PROVISION"  "1" (default): binding to a missing durable endpoint creates it;
//                              "0": the bind fails as on a real broker
//   "EMBEDDED_CACHE_DEPTH"     messages a cache keeps per topic, 1..1000000, default 10
//   "EMBEDDED_EGRESS_QUEUE_SIZE"
//                              bytes of direct messages the broker holds for one session on top
//                              of the session's own buffers, 0..2^40, default 16 MiB. A broker
//                              rides out a subscriber's short stalls this way; without it a
//                              scheduling hiccup of a receiving thread on a busy machine would
//                              already discard messages.
//   "EMBEDDED_FAULT_SESSION_DOWN_SUBCODE"
//                              the subcode with which a session's lost connection is reported
//                              (default ZORCLIENT_SUBCODE_COMMUNICATION_ERROR), for tests of
//                              applications that act on particular subcodes
//
// The first session that creates an instance fixes its configuration. Other "EMBEDDED_..." keys
// are logged and ignored.
#pragma once

#include <cstdint>
#include <vector>

#include "api/PropertyList.h"

namespace zorvane::zorclient {

struct EmbeddedConfig {
    bool autoProvision = true;
    std::int64_t cacheDepth = 10;
    std::int64_t egressQueueBytes = std::int64_t{16} << 20;
    zorClient_subCode_t sessionDownSubcode = ZORCLIENT_SUBCODE_COMMUNICATION_ERROR;

    bool operator==(const EmbeddedConfig&) const = default;

    // Reads the "EMBEDDED_..." keys of list over *config_p. A bad value fails naming
    // function_p and the key; *config_p is then unchanged. With logUnknown, keys of the prefix
    // that no version of the broker knows are logged.
    static zorClient_returnCode_t parse(const PropertyList& list, const char* function_p,
                                        bool logUnknown, EmbeddedConfig* config_p);
};

}  // namespace zorvane::zorclient
