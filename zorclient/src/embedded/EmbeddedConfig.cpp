#include "embedded/EmbeddedConfig.h"

#include <algorithm>
#include <cstring>
#include <string_view>

#include "api/LastError.h"
#include "api/Logger.h"

namespace zorvane::zorclient {

namespace {

constexpr const char* FAULT_SESSION_DOWN_SUBCODE = "EMBEDDED_FAULT_SESSION_DOWN_SUBCODE";

constexpr std::string_view KNOWN_KEYS[] = {
    ZORCLIENT_EMBEDDED_PROP_AUTO_PROVISION, ZORCLIENT_EMBEDDED_PROP_CACHE_DEPTH,
    ZORCLIENT_EMBEDDED_PROP_EGRESS_QUEUE_SIZE, FAULT_SESSION_DOWN_SUBCODE};

bool isSubcode(std::int64_t value) {
    // Every subcode has a name; other numbers get the "unknown" text.
    return value > 0 &&
           std::strcmp(zorClient_subCodeToString(static_cast<zorClient_subCode_t>(value)),
                       "Unknown subcode") != 0;
}

}  // namespace

zorClient_returnCode_t EmbeddedConfig::parse(const PropertyList& list, const char* function_p,
                                             bool logUnknown, EmbeddedConfig* config_p) {
    EmbeddedConfig next = *config_p;
    zorClient_returnCode_t rc =
        list.getFlag(ZORCLIENT_EMBEDDED_PROP_AUTO_PROVISION, &next.autoProvision, function_p);
    if (rc == ZORCLIENT_OK) {
        rc = list.getInteger(ZORCLIENT_EMBEDDED_PROP_CACHE_DEPTH, 1, 1000000, &next.cacheDepth,
                             function_p);
    }
    if (rc == ZORCLIENT_OK) {
        rc = list.getInteger(ZORCLIENT_EMBEDDED_PROP_EGRESS_QUEUE_SIZE, 0, std::int64_t{1} << 40,
                             &next.egressQueueBytes, function_p);
    }
    std::int64_t subcode = next.sessionDownSubcode;
    if (rc == ZORCLIENT_OK) {
        rc = list.getInteger(FAULT_SESSION_DOWN_SUBCODE, 1, INT32_MAX, &subcode, function_p);
    }
    if (rc != ZORCLIENT_OK) {
        return rc;
    }
    if (!isSubcode(subcode)) {
        return LastError::fail(ZORCLIENT_SUBCODE_PARAM_OUT_OF_RANGE,
                               "%s: property %s has the value \"%lld\", which is no subcode",
                               function_p, FAULT_SESSION_DOWN_SUBCODE,
                               static_cast<long long>(subcode));
    }
    next.sessionDownSubcode = static_cast<zorClient_subCode_t>(subcode);
    for (const PropertyList::Entry& entry : list.entries()) {
        if (logUnknown && PropertyList::hasPrefix(entry.first, ZORCLIENT_EMBEDDED_PROP_PREFIX) &&
            std::find(std::begin(KNOWN_KEYS), std::end(KNOWN_KEYS), entry.first) ==
                std::end(KNOWN_KEYS)) {
            ZC_LOG(ZORCLIENT_LOG_NOTICE, "%s: unknown embedded broker property %s ignored",
                   function_p, entry.first.c_str());
        }
    }
    *config_p = next;
    return ZORCLIENT_OK;
}

}  // namespace zorvane::zorclient
