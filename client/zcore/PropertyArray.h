// A property array as the messaging library takes it: key and value in
// turn, all text, closed by a null entry. The strings are heap copies owned
// by the array and freed with it; the library copies what it keeps, so an
// array may go as soon as the call that took it returns (the session's own
// array is kept for the life of its client all the same).
//
// The array has ZCORE_MAX_PROPS entries for pairs and one more for the
// closing null, so that a full array still ends in null.
//
// Ownership and threads: a value of one thread; not copyable.
#pragma once

#include <array>
#include <string>
#include <vector>

#include "common/dataTypes.h"

namespace zorvane::pubsub {

class PropertyArray {
  public:
    PropertyArray() = default;
    ~PropertyArray() { clear(); }
    PropertyArray(const PropertyArray&) = delete;
    PropertyArray& operator=(const PropertyArray&) = delete;

    // Appends key and value. False (and nothing added) when the pair does
    // not fit into ZCORE_MAX_PROPS entries.
    bool add(const char* key, const std::string& value);

    // Entries (keys and values) used so far: the index the next key goes to.
    int size() const { return size_m; }
    // Whether count more entries still fit.
    bool hasRoomFor(std::size_t count) const {
        return static_cast<std::size_t>(size_m) + count <=
               static_cast<std::size_t>(ZCORE_MAX_PROPS);
    }

    // The array for the library: null-terminated; valid until the next add
    // or clear.
    char** get() { return entries_m.data(); }
    // Entry i as text ("" past the end); for logs and tests.
    std::string at(int i) const;
    // The value of the last pair with this key, or null when there is none.
    const char* valueOf(const std::string& key) const;
    // The keys in order.
    std::vector<std::string> keys() const;

    // Frees every string up to the first null.
    void clear();

  private:
    std::array<char*, ZCORE_MAX_PROPS + 1> entries_m{};
    int size_m = 0;
};

}  // namespace zorvane::pubsub
