#include "core/TopicSyntax.h"

#include <bit>
#include <cstdint>
#include <cstring>

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

// Whether text has two "/" in a row. This runs for every message sent, so it looks at eight
// bytes at a time: a byte of a word is 0x80 in slashes(word) exactly when it is a "/", and a
// pair shows as two such bytes side by side (within the word, or the last byte of one word and
// the first of the next).
bool hasDoubleSlash(std::string_view text) noexcept {
    static_assert(std::endian::native == std::endian::little,
                  "byte i of the text is byte i of a word");
    constexpr std::uint64_t LOW7 = 0x7F7F7F7F7F7F7F7Full;
    constexpr std::uint64_t SLASHES = 0x2F2F2F2F2F2F2F2Full;
    auto slashes = [](std::uint64_t word) {
        const std::uint64_t zeroIfSlash = word ^ SLASHES;
        // Exact per byte (no borrow between bytes): 0x80 where the byte is 0, else 0.
        return ~(((zeroIfSlash & LOW7) + LOW7) | zeroIfSlash | LOW7);
    };
    const char* at_p = text.data();
    std::size_t left = text.size();
    bool previousEndsWithSlash = false;
    while (left > 0) {
        std::uint64_t word = 0;
        const std::size_t take = left < 8 ? left : 8;
        std::memcpy(&word, at_p, take);  // little-endian: byte i of the text is byte i of word
        std::uint64_t found = slashes(word);
        if (take < 8) {
            found &= (std::uint64_t{1} << (8 * take)) - 1;  // the zero bytes behind the text
        }
        if ((found & (found >> 8)) != 0 || (previousEndsWithSlash && (found & 0x80) != 0)) {
            return true;
        }
        previousEndsWithSlash = (found >> 56) != 0;
        at_p += take;
        left -= take;
    }
    return false;
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
    const bool emptyLevel = topic.front() == '/' || topic.back() == '/' || hasDoubleSlash(topic);
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
