// Application logging.
//
// Log lines go through the messaging library's logger, but this folder must
// not depend on the library. So the logger is reached through two hooks that
// client/zcore installs at start-up (ClientInfo::attachLogging): the output
// function and the address of the library's filter level. Until then lines
// at notice level and above go to standard error.
//
// Cost: a disabled line is one load and one compare; arguments are not
// evaluated. Thread-safe as far as the installed output function is; the
// hooks themselves are set once, before any other thread starts.
#pragma once

namespace zorvane::pubsub::log {

// Levels of the library's logger.
enum Level {
    LEVEL_CRITICAL = 2,
    LEVEL_ERROR = 3,
    LEVEL_WARNING = 4,
    LEVEL_NOTICE = 5,
    LEVEL_INFO = 6,
    LEVEL_DEBUG = 7,
};

// The category of every line the tool writes.
constexpr int CATEGORY_APP = 2;

using OutputFunc = void (*)(int category, int level, const char* file, int line, const char* format,
                            ...);

// Read by VEXLOAD_LOG before formatting; never null.
extern const int* appFilterLevel_p;
extern OutputFunc output_p;

// Installs the hooks. Must run before other threads exist.
void attach(const int* filterLevel_p, OutputFunc output);

// Restores the standard-error fallback (for tests).
void detach();

}  // namespace zorvane::pubsub::log

#define VEXLOAD_LOG(level, ...)                                                             \
    do {                                                                                    \
        if ((level) <= *::zorvane::pubsub::log::appFilterLevel_p) {                         \
            ::zorvane::pubsub::log::output_p(::zorvane::pubsub::log::CATEGORY_APP, (level), \
                                             __FILE__, __LINE__, __VA_ARGS__);              \
        }                                                                                   \
    } while (0)

#define LOG_CRITICAL(...) VEXLOAD_LOG(::zorvane::pubsub::log::LEVEL_CRITICAL, __VA_ARGS__)
#define LOG_ERROR(...) VEXLOAD_LOG(::zorvane::pubsub::log::LEVEL_ERROR, __VA_ARGS__)
#define LOG_WARNING(...) VEXLOAD_LOG(::zorvane::pubsub::log::LEVEL_WARNING, __VA_ARGS__)
#define LOG_NOTICE(...) VEXLOAD_LOG(::zorvane::pubsub::log::LEVEL_NOTICE, __VA_ARGS__)
#define LOG_INFO(...) VEXLOAD_LOG(::zorvane::pubsub::log::LEVEL_INFO, __VA_ARGS__)
#define LOG_DEBUG(...) VEXLOAD_LOG(::zorvane::pubsub::log::LEVEL_DEBUG, __VA_ARGS__)
