// What the embedded broker answers to zorClient_session_isCapable. Each capability is true
// once the broker implements the feature behind it; the features that an in-process broker
// never offers (JNDI, compression, cut-through, ...) stay false.
#pragma once

#include <string_view>

namespace zorvane::zorclient {

class EmbeddedCapabilities {
  public:
    // 1, 0, or -1 for a name that is not a capability.
    static int answer(std::string_view name) noexcept;
};

}  // namespace zorvane::zorclient
