// A property array read into key/value pairs, for the checks of one call. The caller's array is
// copied, so nothing kept from it depends on the caller's memory. Lookups give the last
// occurrence of a key, so that a key repeated behind another overrides it.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "zorClient.h"

namespace zorvane::zorclient {

class PropertyList {
  public:
    using Entry = std::pair<std::string, std::string>;

    PropertyList() = default;
    // A list of pairs already read, e.g. kept from earlier arrays; the last of a key wins.
    explicit PropertyList(std::vector<Entry> entries) : entries_m(std::move(entries)) {}

    // Reads props_p (null: no properties) up to its closing null key into list. A key without a
    // value fails with ZORCLIENT_SUBCODE_PARAM_NULL_PTR naming the key and function_p.
    static zorClient_returnCode_t parse(zorClient_propertyArray_pt props_p, const char* function_p,
                                        PropertyList& list);

    // The value of the last occurrence of key, or null when absent.
    const std::string* find(std::string_view key) const noexcept;

    const std::vector<Entry>& entries() const noexcept { return entries_m; }

    // Reads key as a decimal integer in [min, max] into *value_p. Absent: ZORCLIENT_OK and
    // *value_p untouched, so that the caller's default holds. Not a decimal number in range:
    // ZORCLIENT_SUBCODE_PARAM_OUT_OF_RANGE with a text naming function_p, the key and the value.
    zorClient_returnCode_t getInteger(std::string_view key, std::int64_t min, std::int64_t max,
                                      std::int64_t* value_p, const char* function_p) const;

    // Reads key as a flag, "1" or "0", into *value_p; absent and bad values as getInteger.
    zorClient_returnCode_t getFlag(std::string_view key, bool* value_p,
                                   const char* function_p) const;

    // Strict decimal: optional '-', digits only, no blanks, no '+', must fit in int64.
    static bool parseDecimal(std::string_view text, std::int64_t* value_p) noexcept;

    static bool hasPrefix(std::string_view key, std::string_view prefix) noexcept {
        return key.substr(0, prefix.size()) == prefix;
    }

  private:
    std::vector<Entry> entries_m;
};

}  // namespace zorvane::zorclient
