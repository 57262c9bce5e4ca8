#include "core/HostList.h"

#include <algorithm>
#include <cctype>
#include <string_view>

namespace zorvane::zorclient {

namespace {

std::string_view trim(std::string_view text) {
    while (!text.empty() && std::isspace(static_cast<unsigned char>(text.front()))) {
        text.remove_prefix(1);
    }
    while (!text.empty() && std::isspace(static_cast<unsigned char>(text.back()))) {
        text.remove_suffix(1);
    }
    return text;
}

std::string lowerCase(std::string_view text) {
    std::string result(text);
    std::transform(result.begin(), result.end(), result.begin(),
                   [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return result;
}

HostEntry parseEntry(std::string_view text) {
    HostEntry entry{std::string(text), "", ""};
    const std::size_t separator = text.find("://");
    if (separator == std::string_view::npos) {
        if (lowerCase(text) == HostList::EMBEDDED_SCHEME) {
            entry.scheme = HostList::EMBEDDED_SCHEME;
            entry.address = HostList::DEFAULT_INSTANCE;
        } else {
            entry.address = std::string(text);
        }
        return entry;
    }
    entry.scheme = lowerCase(text.substr(0, separator));
    entry.address = std::string(text.substr(separator + 3));
    return entry;
}

}  // namespace

std::vector<HostEntry> HostList::parse(const std::string& host) {
    std::vector<HostEntry> entries;
    const std::string_view whole = trim(host);
    if (whole.empty()) {
        entries.push_back(HostEntry{"", EMBEDDED_SCHEME, DEFAULT_INSTANCE});
        return entries;
    }
    std::string_view rest = whole;
    for (;;) {
        const std::size_t comma = rest.find(',');
        entries.push_back(parseEntry(trim(rest.substr(0, comma))));
        if (comma == std::string_view::npos) {
            break;
        }
        rest.remove_prefix(comma + 1);
    }
    return entries;
}

}  // namespace zorvane::zorclient
