// The run sequence of the tool: version text, signal handling and one run of
// traffic. main (vexload.cpp) drives these in order.
//
// Threads: everything here runs on the main thread, except sigHdlr, which
// runs in signal context and touches only lock-free atomics (and, for
// SIGALRM with the session action, the collection; see sigHdlr).
#pragma once

#include <atomic>
#include <string>

#include "common/dataTypes.h"

namespace zorvane::pubsub {

class CliProperties;
class PerfClientCollection;

// Set by the first Ctrl-C; polled by every wait loop of runTraffic.
extern std::atomic<bool> shutdownFlag_s;
// SIGALRM deliveries so far (read by the report).
extern std::atomic<INT64> numAlarms_s;
// Whether SIGALRM is forwarded to the clients.
extern std::atomic<bool> wantSessionAction_s;
// The run's client collection: null until runTraffic has built it; set
// once, as soon as the constructor returns, so that an alarm from then on
// reaches the clients. Owned by main, which deletes it through
// deleteClientCollection() after the run, also after a failed one.
extern std::atomic<PerfClientCollection*> clients_sp;

// The version block of "-v", the tool's and the messaging library's. Works
// before the library is started.
std::string getVersionStr();

// SIGINT: the first asks for an orderly end (and restores the default
// action, so that a second one ends the process at once); SIGALRM: counted,
// re-armed and, when wantSessionAction_s is set, forwarded to every client
// of clients_sp; any other signal: reported and reset to its default
// action.
extern "C" void sigHdlr(int sig);

// One whole run: connect, subscribe, traffic, drain, tear down, report.
// Leaves clients_sp for main to delete. Failures leave it as exceptions,
// and then no report is printed.
void runTraffic(const CliProperties& cliProperties);

// Takes clients_sp away from the signal handler and deletes it; nothing
// when there is none. Errors of the teardown pass to the caller.
void deleteClientCollection();

}  // namespace zorvane::pubsub
