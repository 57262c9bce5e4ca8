#include "common/ProcessExit.h"

#include <cstdio>
#include <cstdlib>

namespace zorvane::pubsub {

namespace {
void defaultExit(int status) {
    std::exit(status);
}

ProcessExitHook exitHook_s = &defaultExit;
}  // namespace

ProcessExitHook setProcessExitHook(ProcessExitHook hook) {
    const ProcessExitHook previous = exitHook_s;
    exitHook_s = hook != nullptr ? hook : &defaultExit;
    return previous;
}

void processExit(int status) {
    // Help goes to standard output and the fault to standard error; a hook
    // that throws must still find both written in the order they were made.
    std::fflush(stdout);
    std::fflush(stderr);
    exitHook_s(status);
    std::exit(status);
}

}  // namespace zorvane::pubsub
