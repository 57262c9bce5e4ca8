#include "client/zcore/PropertyArray.h"

#include <cstdlib>
#include <cstring>

namespace zorvane::pubsub {

bool PropertyArray::add(const char* key, const std::string& value) {
    if (key == nullptr || !hasRoomFor(2)) {
        return false;
    }
    entries_m[static_cast<std::size_t>(size_m)] = strdup(key);
    entries_m[static_cast<std::size_t>(size_m) + 1] = strdup(value.c_str());
    size_m += 2;
    return true;
}

std::string PropertyArray::at(int i) const {
    if (i < 0 || i >= size_m || entries_m[static_cast<std::size_t>(i)] == nullptr) {
        return std::string();
    }
    return entries_m[static_cast<std::size_t>(i)];
}

const char* PropertyArray::valueOf(const std::string& key) const {
    const char* found = nullptr;
    for (int i = 0; i + 1 < size_m; i += 2) {
        if (key == entries_m[static_cast<std::size_t>(i)]) {
            found = entries_m[static_cast<std::size_t>(i) + 1];
        }
    }
    return found;
}

std::vector<std::string> PropertyArray::keys() const {
    std::vector<std::string> result;
    for (int i = 0; i + 1 < size_m; i += 2) {
        result.emplace_back(entries_m[static_cast<std::size_t>(i)]);
    }
    return result;
}

void PropertyArray::clear() {
    for (char*& entry_p : entries_m) {
        if (entry_p == nullptr) {
            break;
        }
        std::free(entry_p);
        entry_p = nullptr;
    }
    size_m = 0;
}

}  // namespace zorvane::pubsub
