// The run sequence of the tool: version text, signal handling and one run of
// traffic. main (vexload.cpp) drives these in order.
//
// Threads: everything here runs on the main thread, except sigHdlr, which
// runs in signal context and touches only lock-free atomics.
#pragma once

#include <atomic>
#include <string>

#include "common/dataTypes.h"

namespace zorvane::pubsub {

class CliProperties;

// Set by the first Ctrl-C; polled by every wait loop of runTraffic.
extern std::atomic<bool> shutdownFlag_s;
// SIGALRM deliveries so far (read by the report).
extern std::atomic<INT64> numAlarms_s;
// Whether SIGALRM is forwarded to the clients.
extern std::atomic<bool> wantSessionAction_s;

// The version block of "-v", the tool's and the messaging library's. Works
// before the library is started.
std::string getVersionStr();

// SIGINT: the first asks for an orderly end (and restores the default
// action, so that a second one ends the process at once); SIGALRM: counted
// and re-armed; any other signal: reported and reset to its default action.
extern "C" void sigHdlr(int sig);

// One whole run. Failures leave it as exceptions.
void runTraffic(const CliProperties& cliProperties);

}  // namespace zorvane::pubsub
