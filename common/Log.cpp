#include "common/Log.h"

#include <cstdarg>
#include <cstdio>

namespace zorvane::pubsub::log {

namespace {

const int fallbackLevel_s = LEVEL_NOTICE;

// Used before the library's logger is attached (and in tests that run
// without it): one line per call on standard error, the same fields as the
// library writes.
void fallbackOutput(int /*category*/, int level, const char* file, int line, const char* format,
                    ...) {
    char text[1024];
    va_list args;
    va_start(args, format);
    std::vsnprintf(text, sizeof text, format, args);
    va_end(args);
    std::fprintf(stderr, "vexload_c level %d %s:%d %s\n", level, file, line, text);
}

}  // namespace

const int* appFilterLevel_p = &fallbackLevel_s;
OutputFunc output_p = &fallbackOutput;

void attach(const int* filterLevel_p, OutputFunc output) {
    appFilterLevel_p = filterLevel_p;
    output_p = output;
}

void detach() {
    appFilterLevel_p = &fallbackLevel_s;
    output_p = &fallbackOutput;
}

}  // namespace zorvane::pubsub::log
