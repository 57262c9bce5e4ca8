#include "api/PropertyList.h"

#include <charconv>

#include "api/LastError.h"

namespace zorvane::zorclient {

zorClient_returnCode_t PropertyList::parse(zorClient_propertyArray_pt props_p,
                                           const char* function_p, PropertyList& list) {
    list.entries_m.clear();
    if (props_p == nullptr) {
        return ZORCLIENT_OK;
    }
    for (std::size_t i = 0; props_p[i] != nullptr; i += 2) {
        if (props_p[i + 1] == nullptr) {
            return LastError::fail(ZORCLIENT_SUBCODE_PARAM_NULL_PTR,
                                   "%s: property %s has no value (null)", function_p, props_p[i]);
        }
        list.entries_m.emplace_back(props_p[i], props_p[i + 1]);
    }
    return ZORCLIENT_OK;
}

const std::string* PropertyList::find(std::string_view key) const noexcept {
    for (auto it = entries_m.rbegin(); it != entries_m.rend(); ++it) {
        if (it->first == key) {
            return &it->second;
        }
    }
    return nullptr;
}

bool PropertyList::parseDecimal(std::string_view text, std::int64_t* value_p) noexcept {
    if (text.empty()) {
        return false;
    }
    const char* end_p = text.data() + text.size();
    auto [stop_p, error] = std::from_chars(text.data(), end_p, *value_p);
    return error == std::errc() && stop_p == end_p;
}

zorClient_returnCode_t PropertyList::getInteger(std::string_view key, std::int64_t min,
                                                std::int64_t max, std::int64_t* value_p,
                                                const char* function_p) const {
    const std::string* text_p = find(key);
    if (text_p == nullptr) {
        return ZORCLIENT_OK;
    }
    std::int64_t value = 0;
    if (!parseDecimal(*text_p, &value) || value < min || value > max) {
        return LastError::fail(ZORCLIENT_SUBCODE_PARAM_OUT_OF_RANGE,
                               "%s: property %.*s has the value \"%s\"; expected a decimal number "
                               "from %lld to %lld",
                               function_p, static_cast<int>(key.size()), key.data(),
                               text_p->c_str(), static_cast<long long>(min),
                               static_cast<long long>(max));
    }
    *value_p = value;
    return ZORCLIENT_OK;
}

zorClient_returnCode_t PropertyList::getFlag(std::string_view key, bool* value_p,
                                             const char* function_p) const {
    const std::string* text_p = find(key);
    if (text_p == nullptr) {
        return ZORCLIENT_OK;
    }
    if (*text_p != "0" && *text_p != "1") {
        return LastError::fail(ZORCLIENT_SUBCODE_PARAM_OUT_OF_RANGE,
                               "%s: property %.*s has the value \"%s\"; expected \"1\" or \"0\"",
                               function_p, static_cast<int>(key.size()), key.data(),
                               text_p->c_str());
    }
    *value_p = *text_p == "1";
    return ZORCLIENT_OK;
}

}  // namespace zorvane::zorclient
