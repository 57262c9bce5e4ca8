#include "client/AbstractContext.h"

#include "common/Log.h"

namespace zorvane::pubsub {

AbstractContext::~AbstractContext() {
    stop();
}

int AbstractContext::stop() {
    LOG_INFO("Stopping Context thread");
    shutdownFlag_m.store(true);
    wait();
    return 0;
}

void* AbstractContext::runImpl() {
    while (!shutdownFlag_m.load(std::memory_order_relaxed)) {
        if (!processEvents()) {
            LOG_ERROR("Could not process events");
        }
        roundsDone_m.fetch_add(1, std::memory_order_release);
    }
    return nullptr;
}

}  // namespace zorvane::pubsub
