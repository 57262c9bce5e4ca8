#include "core/BackendFactory.h"

#include "api/LastError.h"
#include "embedded/BrokerRegistry.h"
#include "embedded/EmbeddedBackend.h"
#include "embedded/EmbeddedConfig.h"

namespace zorvane::zorclient {

zorClient_returnCode_t BackendFactory::checkProperties(const PropertyList& list,
                                                       const char* function_p) {
    EmbeddedConfig config;
    return EmbeddedConfig::parse(list, function_p, true, &config);
}

std::unique_ptr<Backend> BackendFactory::create(const HostEntry& entry, BackendListener& listener) {
    if (entry.scheme == HostList::EMBEDDED_SCHEME) {
        return EmbeddedBackend::create(entry.address, listener);
    }
    if (entry.scheme.empty() && entry.address.empty()) {
        LastError::fail(ZORCLIENT_SUBCODE_PARAM_OUT_OF_RANGE,
                        "the host list has an empty entry; give \"embedded\", "
                        "\"embedded://NAME\" or a host between the commas");
    } else if (entry.scheme.empty()) {
        LastError::fail(ZORCLIENT_SUBCODE_NOT_SUPPORTED,
                        "host \"%s\": scheme \"tcp\" (what a host without a scheme means) is not "
                        "supported by this build of the library; use \"embedded\" or "
                        "\"embedded://NAME\"",
                        entry.text.c_str());
    } else {
        LastError::fail(ZORCLIENT_SUBCODE_NOT_SUPPORTED,
                        "host \"%s\": scheme \"%s\" is not supported by this build of the "
                        "library; use \"embedded\" or \"embedded://NAME\"",
                        entry.text.c_str(), entry.scheme.c_str());
    }
    return nullptr;
}

void BackendFactory::cleanup() noexcept {
    try {
        BrokerRegistry::forgetIdle();
    } catch (...) {
        // Nothing to undo: instances that could not be forgotten stay usable.
    }
}

}  // namespace zorvane::zorclient
