#include "api/ProcessConfig.h"

#include <atomic>
#include <mutex>

#include "api/LastError.h"
#include "api/Logger.h"

namespace zorvane::zorclient {

namespace {

constexpr const char* QUANTUM_KEYS[ZORCLIENT_MSG_NUM_DBQUANTA] = {
    ZORCLIENT_GLOBAL_PROP_DBQUANTASIZE_0, ZORCLIENT_GLOBAL_PROP_DBQUANTASIZE_1,
    ZORCLIENT_GLOBAL_PROP_DBQUANTASIZE_2, ZORCLIENT_GLOBAL_PROP_DBQUANTASIZE_3,
    ZORCLIENT_GLOBAL_PROP_DBQUANTASIZE_4};
constexpr const char* LIBRARY_KEYS[] = {ZORCLIENT_GLOBAL_PROP_GSS_KRB_LIB,
                                        ZORCLIENT_GLOBAL_PROP_SSL_LIB,
                                        ZORCLIENT_GLOBAL_PROP_CRYPTO_LIB};
// Quanta are computed in 32-bit integers by applications, so a larger value is an overflow.
constexpr std::int64_t MAX_QUANTUM = 2147483647;

struct Settings {
    std::array<std::uint32_t, ZORCLIENT_MSG_NUM_DBQUANTA> quanta = ProcessConfig::DEFAULT_QUANTA;
    std::vector<PropertyList::Entry> libraryPaths;
    std::vector<PropertyList::Entry> embedded;
};

std::mutex mutex_s;
Settings settings_s;
std::atomic<bool> initialized_s{false};

bool isKnownGlobalKey(const std::string& key) {
    for (const char* known_p : QUANTUM_KEYS) {
        if (key == known_p) {
            return true;
        }
    }
    for (const char* known_p : LIBRARY_KEYS) {
        if (key == known_p) {
            return true;
        }
    }
    return false;
}

}  // namespace

zorClient_returnCode_t ProcessConfig::begin(const PropertyList& list, const char* function_p) {
    std::lock_guard<std::mutex> lock(mutex_s);
    if (initialized_s.load()) {
        return ZORCLIENT_OK;
    }
    Settings next;
    for (int i = 0; i < ZORCLIENT_MSG_NUM_DBQUANTA; ++i) {
        std::int64_t value = next.quanta[i];
        zorClient_returnCode_t rc =
            list.getInteger(QUANTUM_KEYS[i], 1, MAX_QUANTUM, &value, function_p);
        if (rc != ZORCLIENT_OK) {
            return rc;
        }
        next.quanta[i] = static_cast<std::uint32_t>(value);
        // Pools are chosen by size, so the quanta must rise.
        if (i > 0 && next.quanta[i] <= next.quanta[i - 1]) {
            return LastError::fail(ZORCLIENT_SUBCODE_PARAM_CONFLICT,
                                   "%s: property %s (%u) must be larger than %s (%u)", function_p,
                                   QUANTUM_KEYS[i], next.quanta[i], QUANTUM_KEYS[i - 1],
                                   next.quanta[i - 1]);
        }
    }
    for (const char* key_p : LIBRARY_KEYS) {
        if (const std::string* value_p = list.find(key_p)) {
            next.libraryPaths.emplace_back(key_p, *value_p);
        }
    }
    for (const PropertyList::Entry& entry : list.entries()) {
        if (PropertyList::hasPrefix(entry.first, ZORCLIENT_EMBEDDED_PROP_PREFIX)) {
            next.embedded.push_back(entry);
        } else if (PropertyList::hasPrefix(entry.first, "GLOBAL_") &&
                   !isKnownGlobalKey(entry.first)) {
            ZC_LOG(ZORCLIENT_LOG_NOTICE, "%s: unknown global property %s ignored", function_p,
                   entry.first.c_str());
        }
    }
    settings_s = std::move(next);
    initialized_s.store(true);
    return ZORCLIENT_OK;
}

void ProcessConfig::end() {
    std::lock_guard<std::mutex> lock(mutex_s);
    settings_s = Settings();
    initialized_s.store(false);
}

bool ProcessConfig::isInitialized() noexcept {
    return initialized_s.load();
}

std::uint32_t ProcessConfig::dataBlockQuantum(int index) {
    std::lock_guard<std::mutex> lock(mutex_s);
    return settings_s.quanta.at(static_cast<std::size_t>(index));
}

std::string ProcessConfig::libraryPath(std::string_view key) {
    std::lock_guard<std::mutex> lock(mutex_s);
    for (const PropertyList::Entry& entry : settings_s.libraryPaths) {
        if (entry.first == key) {
            return entry.second;
        }
    }
    return std::string();
}

std::vector<PropertyList::Entry> ProcessConfig::embeddedProperties() {
    std::lock_guard<std::mutex> lock(mutex_s);
    return settings_s.embedded;
}

}  // namespace zorvane::zorclient
