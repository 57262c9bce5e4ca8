// The messaging library's version fields, for the tool's version text.
#pragma once

#include <string>

namespace zorvane::pubsub {

struct LibraryVersion {
    std::string version;
    std::string dateTime;
    std::string variant;

    // Asks the library; works before it is started.
    static LibraryVersion get();
};

}  // namespace zorvane::pubsub
