#include "client/AbstractMessage.h"

#include <string>
#include <utility>

#include "common/Log.h"
#include "common/PubSubException.h"

namespace zorvane::pubsub {

AbstractMessage::AbstractMessage(std::string clientId) : clientIdStr_m(std::move(clientId)) {}

void AbstractMessage::decodeToolDataFromAttachment(const char* begin, const char* end) {
    // Cleared first in every case: the view is reused, and a message without
    // an attachment must not show the tool data of the one before it.
    toolData_m.clear();
    if (begin == nullptr || end <= begin) {
        return;
    }
    toolData_m.decode(begin, end);
}

bool AbstractMessage::takeToolDataUserProperty(const char* name, INT64 value) {
    if (toolData_m.setFromUserProperty(name, value)) {
        return true;
    }
    // Custom properties and trace fields share the map with the tool data,
    // so this is expected for every such field of a message.
    LOG_ERROR("CLIENT %s: Unrecognized user property '%s' while reading tool data",
              clientIdStr_m.c_str(), name != nullptr ? name : "");
    return false;
}

void AbstractMessage::throwUnsupportedToolDataType(int type) {
    throw PubSubException("Unsupported tool data type " + std::to_string(type));
}

}  // namespace zorvane::pubsub
