// "SESSION_HOST" read into the brokers to try, in order:
//   absent, "" or "embedded"   -> scheme "embedded", address "default"
//   "embedded://NAME"          -> scheme "embedded", address NAME
//   "SCHEME://rest"            -> scheme (lower case), address rest
//   "host[:port]"              -> scheme "" (a plain network address), address as given
//   "a,b,c"                    -> three entries (blanks around entries are dropped)
// Whether a scheme and address are usable is for BackendFactory to say at connect.
#pragma once

#include <string>
#include <vector>

namespace zorvane::zorclient {

struct HostEntry {
    std::string text;  // the entry as given, for error texts
    std::string scheme;
    std::string address;
};

class HostList {
  public:
    static constexpr const char* EMBEDDED_SCHEME = "embedded";
    static constexpr const char* DEFAULT_INSTANCE = "default";

    static std::vector<HostEntry> parse(const std::string& host);
};

}  // namespace zorvane::zorclient
