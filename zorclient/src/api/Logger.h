// The library's logger: one output (standard error, or a file) for the library's own lines and
// the application's, one line per call, with a filter level per category. The filter level of
// category APP is the exported _zorClient_log_appFilterLevel_g, so that applications can test
// it before formatting.
//
// Thread-safe: levels are atomics, the output is switched and written under one mutex, so the
// lines of concurrent writers never mix.
#pragma once

#include <cstdarg>

#include "zorClient.h"

namespace zorvane::zorclient {

class Logger {
  public:
    // Filter level of category (SDK or APP; any other value reads as SDK).
    static int filterLevel(int category) noexcept;
    static bool isEnabled(int category, int level) noexcept {
        return level <= filterLevel(category);
    }

    // Sets the filter level of SDK, APP or, with ALL, both. The caller checked both values.
    static void setFilterLevel(zorClient_log_category_t category,
                               zorClient_log_level_t level) noexcept;

    // Sends lines to file path_p, opened for appending; null or "" sends them to standard error.
    // Returns 0, or the errno of a failed open (the output then stays where it was).
    static int setFile(const char* path_p) noexcept;

    // Writes one line if level passes category's filter: time, level, category, file:line, and
    // the formatted text without its trailing line end.
    static void write(int category, int level, const char* file_p, int line, const char* format_p,
                      ...) noexcept ZORCLIENT_PRINTF_LIKE(5, 6);
    static void writeV(int category, int level, const char* file_p, int line, const char* format_p,
                       va_list args) noexcept;
};

}  // namespace zorvane::zorclient

// A line of the library's own (category SDK); arguments are not evaluated when filtered out.
#define ZC_LOG(level, ...)                                                                     \
    do {                                                                                       \
        if (::zorvane::zorclient::Logger::isEnabled(ZORCLIENT_LOG_CATEGORY_SDK, (level))) {    \
            ::zorvane::zorclient::Logger::write(ZORCLIENT_LOG_CATEGORY_SDK, (level), __FILE__, \
                                                __LINE__, __VA_ARGS__);                        \
        }                                                                                      \
    } while (0)
