#include "client/zcore/LibraryVersion.h"

#include "zorClient.h"

namespace zorvane::pubsub {

LibraryVersion LibraryVersion::get() {
    zorClient_version_info info{};
    LibraryVersion result;
    if (zorClient_version_get(&info) == ZORCLIENT_OK) {
        result.version = info.version_p != nullptr ? info.version_p : "";
        result.dateTime = info.dateTime_p != nullptr ? info.dateTime_p : "";
        result.variant = info.variant_p != nullptr ? info.variant_p : "";
    }
    return result;
}

}  // namespace zorvane::pubsub
