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
// the first of the next). A text whose length is not a multiple of eight ends with a word that
// overlaps the one before: looking at bytes twice finds no pair that is not there.
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
    const char* const data_p = text.data();
    const std::size_t size = text.size();
    if (size < 8) {
        for (std::size_t i = 1; i < size; ++i) {
            if (data_p[i] == '/' && data_p[i - 1] == '/') {
                return true;
            }
        }
        return false;
    }
    std::uint64_t carry = 0;  // 0x80 when the word before ended with a "/"
    auto pairIn = [&](std::size_t at) {
        std::uint64_t word = 0;
        std::memcpy(&word, data_p + at, 8);
        const std::uint64_t found = slashes(word);
        const bool pair = (found & ((found >> 8) | carry)) != 0;
        carry = found >> 56;
        return pair;
    };
    std::size_t at = 0;
    for (; at + 8 <= size; at += 8) {
        if (pairIn(at)) {
            return true;
        }
    }
    if (at < size) {
        carry = 0;  // the last word starts inside the one before, which was looked at whole
        return pairIn(size - 8);
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
