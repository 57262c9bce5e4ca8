// The one way the command-line code ends the process.
//
// The option parser, the help and the list notations stop the process on a
// fault (status 255) or after help. They all go through processExit, so that
// a test or a fuzzing harness can install a hook that reports the status
// instead of letting the process die.
//
// Contract of a hook: it must not return. A hook that wants to regain
// control throws (the parser holds no resources that unwinding would leak).
// If a hook returns anyway, processExit falls back to std::exit.
//
// Threads: the hook is set before parsing starts, on the main thread; it is
// not guarded by a lock.
#pragma once

namespace zorvane::pubsub {

using ProcessExitHook = void (*)(int status);

// Installs hook (null restores std::exit) and returns the previous one.
ProcessExitHook setProcessExitHook(ProcessExitHook hook);

// Flushes standard output and standard error, then ends the process with
// status through the installed hook.
[[noreturn]] void processExit(int status);

// Status of every fault and of the help options: exit(-1) as the shell sees it.
inline constexpr int PROCESS_EXIT_FAULT = 255;

}  // namespace zorvane::pubsub
