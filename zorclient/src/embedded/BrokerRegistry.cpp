#include "embedded/BrokerRegistry.h"

#include <map>
#include <mutex>

namespace zorvane::zorclient {

namespace {

struct Registry {
    std::mutex mutex;
    std::map<std::string, std::shared_ptr<BrokerInstance>> instances;
};

Registry& registry() {
    // Never destroyed: sessions that an application leaves connected at exit still reach it.
    static Registry* registry_s = new Registry();
    return *registry_s;
}

}  // namespace

std::shared_ptr<BrokerInstance> BrokerRegistry::obtain(const std::string& name,
                                                       const EmbeddedConfig& config,
                                                       bool* created_p) {
    Registry& all = registry();
    std::lock_guard<std::mutex> lock(all.mutex);
    std::shared_ptr<BrokerInstance>& instance = all.instances[name];
    *created_p = instance == nullptr;
    if (instance == nullptr) {
        instance = std::make_shared<BrokerInstance>(name, config);
    }
    return instance;
}

void BrokerRegistry::forgetIdle() {
    Registry& all = registry();
    std::lock_guard<std::mutex> lock(all.mutex);
    for (auto it = all.instances.begin(); it != all.instances.end();) {
        // A backend that was connected holds a reference even while disconnected; it may
        // connect again, so such an instance stays.
        if (it->second.use_count() == 1 && it->second->clientCount() == 0) {
            it = all.instances.erase(it);
        } else {
            ++it;
        }
    }
}

}  // namespace zorvane::zorclient
