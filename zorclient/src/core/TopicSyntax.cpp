#include "core/TopicSyntax.h"

#include "api/LastError.h"

namespace zorvane::zorclient {

namespace {

// Long topics are shown cut, so that the error text keeps room for the reason.
constexpr int SHOWN = 80;

zorClient_returnCode_t failSyntax(std::string_view topic, const char* function_p,
                                  const char* what_p, const char* reason_p) {
    return LastError::fail(ZORCLIENT_SUBCODE_INVALID_TOPIC_SYNTAX, "%s: %s \"%.*s%s\" %s",
                           function_p, what_p,
                           static_cast<int>(topic.size() > SHOWN ? SHOWN : topic.size()),
                           topic.data(), topic.size() > SHOWN ? "..." : "", reason_p);
}

// The checks both kinds share: size and empty levels.
zorClient_returnCode_t checkShape(std::string_view topic, const char* function_p,
                                  const char* what_p) {
    if (topic.empty()) {
        return failSyntax(topic, function_p, what_p, "is empty");
    }
    if (topic.size() > TopicSyntax::MAX_SIZE) {
        return LastError::fail(ZORCLIENT_SUBCODE_TOPIC_TOO_LARGE,
                               "%s: %s \"%.*s...\" has %zu bytes; at most %zu are allowed",
                               function_p, what_p, SHOWN, topic.data(), topic.size(),
                               TopicSyntax::MAX_SIZE);
    }
    // One pass: this runs for every message sent.
    bool emptyLevel = topic.front() == '/' || topic.back() == '/';
    for (std::size_t i = 1; i < topic.size() && !emptyLevel; ++i) {
        emptyLevel = topic[i] == '/' && topic[i - 1] == '/';
    }
    if (emptyLevel) {
        return failSyntax(topic, function_p, what_p,
                          "has an empty level (a leading, trailing or doubled \"/\")");
    }
    return ZORCLIENT_OK;
}

}  // namespace

zorClient_returnCode_t TopicSyntax::checkSubscription(std::string_view topic,
                                                      const char* function_p) noexcept {
    static constexpr const char* WHAT = "subscription";
    zorClient_returnCode_t rc = checkShape(topic, function_p, WHAT);
    if (rc != ZORCLIENT_OK) {
        return rc;
    }
    std::string_view rest = topic;
    bool last = false;
    while (!last) {
        const std::string_view level = firstLevel(rest, &rest, &last);
        const std::size_t star = level.find('*');
        if (star != std::string_view::npos && star != level.size() - 1) {
            return failSyntax(topic, function_p, WHAT,
                              "has a \"*\" inside a level; it may only end one (\"*\" or "
                              "\"ab*\")");
        }
        if (level == ">" && !last) {
            return failSyntax(topic, function_p, WHAT,
                              "has \">\" before its last level; it may only be the last level");
        }
    }
    return ZORCLIENT_OK;
}

zorClient_returnCode_t TopicSyntax::checkPublish(std::string_view topic,
                                                 const char* function_p) noexcept {
    return checkShape(topic, function_p, "topic");
}

bool TopicSyntax::hasWildcard(std::string_view subscription) noexcept {
    return subscription.find('*') != std::string_view::npos || subscription == ">" ||
           (subscription.size() >= 2 && subscription.substr(subscription.size() - 2) == "/>");
}

}  // namespace zorvane::zorclient
