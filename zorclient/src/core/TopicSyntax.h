// Topics: text levels separated by "/", such as "orders/eu/fr". A subscription may hold
// wildcards:
//   "*"    as a whole level matches exactly one level of any text;
//   "ab*"  a level ending in "*" matches any one level that begins with "ab" ("ab" included);
//   ">"    as the last level matches one or more further levels.
// A published topic has no wildcards: its "*" and ">" are plain characters.
//
// Both kinds are 1 to MAX_SIZE bytes without empty levels (no leading, trailing or doubled "/").
// In a subscription "*" may only end a level and ">" may only be the whole last level, so that
// nothing in a subscription is ambiguous.
//
// Stateless; any thread.
#pragma once

#include <cstddef>
#include <string_view>

#include "zorClient.h"

namespace zorvane::zorclient {

class TopicSyntax {
  public:
    static constexpr std::size_t MAX_SIZE = ZORCLIENT_TOPIC_MAX_SIZE - 1;

    // ZORCLIENT_OK, or ZORCLIENT_FAIL with ZORCLIENT_SUBCODE_INVALID_TOPIC_SYNTAX or
    // _TOPIC_TOO_LARGE and a text naming function_p, the topic and what is wrong with it.
    static zorClient_returnCode_t checkSubscription(std::string_view topic,
                                                    const char* function_p) noexcept;
    static zorClient_returnCode_t checkPublish(std::string_view topic,
                                               const char* function_p) noexcept;

    // True when a valid subscription has a wildcard level (it then cannot be found by its text).
    static bool hasWildcard(std::string_view subscription) noexcept;

    // The first level of topic, and the rest behind its "/" into *rest_p (empty with *last_p
    // true when topic was the last level).
    static std::string_view firstLevel(std::string_view topic, std::string_view* rest_p,
                                       bool* last_p) noexcept {
        const std::size_t slash = topic.find('/');
        if (slash == std::string_view::npos) {
            *rest_p = std::string_view();
            *last_p = true;
            return topic;
        }
        *rest_p = topic.substr(slash + 1);
        *last_p = false;
        return topic.substr(0, slash);
    }
};

}  // namespace zorvane::zorclient
