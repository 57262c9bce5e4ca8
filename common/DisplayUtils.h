// Texts of the report and of the start of a run. Static operations only,
// each returning finished text; nothing is printed here and no state is
// kept, so every function may be called from any thread.
#pragma once

#include <string>

namespace zorvane::pubsub {

class ClientProperties;

class DisplayUtils {
  public:
    DisplayUtils() = delete;

    // The block that shows what client number 1 will be called: its id in
    // log lines, its user name, its VPN and its client name. Each line ends
    // in a line end.
    static std::string clientNameDetails(const ClientProperties& props);

    // The messaging library's message pool statistics under a title, one
    // line each; a statistic the library does not give shows as 0.
    static std::string displayPoolStats(const std::string& title);
};

}  // namespace zorvane::pubsub
