#include "common/QueueBrowserProperties.h"

#include <sstream>

namespace zorvane::pubsub {

QueueBrowserProperties::QueueBrowserProperties()
    : queuesList_m(),
      selector_m(),
      deleteFrequency_m(-1),
      deleteBufSize_m(-1),
      wantCutThroughPersistence_m(false),
      flowReconnectAttempts_m(-1),
      flowReconnectIntervalInMsecs_m(-1) {}

std::unique_ptr<QueueBrowserProperties> QueueBrowserProperties::clone() const {
    return std::make_unique<QueueBrowserProperties>(*this);
}

std::string QueueBrowserProperties::toString() const {
    std::ostringstream out;
    out << "{\n"
        << "  Queues List Size       = " << queuesList_m.size() << "\n"
        << "  Selector               = " << selector_m << "\n"
        << "  Delete Frequency       = " << deleteFrequency_m << "\n"
        << "  Delete Buf Size        = " << deleteBufSize_m << "\n"
        << "  Want Cut Through Persistence = " << wantCutThroughPersistence_m << "\n"
        << "  Number of flow reconnect attempts " << flowReconnectAttempts_m << "\n"
        << "  Flow reconnect interval in miliseconds " << flowReconnectIntervalInMsecs_m << "\n"
        << "}";
    return out.str();
}

}  // namespace zorvane::pubsub
