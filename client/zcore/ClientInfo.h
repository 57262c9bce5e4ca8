// Start and stop of the messaging library for the process.
#pragma once

namespace zorvane::pubsub {

class CliProperties;

class ClientInfo {
  public:
    // Routes the tool's log lines, pool statistics and the names of the
    // library's session statistics through the library.
    // Call first in main, before any other thread exists.
    static void attachLibrary();

    // Starts the library with the global properties the options ask for,
    // then applies the log file and level. A log level word that is not
    // known ends the process with status 1.
    static void clientApiSpecificInit(CliProperties& cliProperties);

    // Reports message pool leaks on standard error, then stops the library.
    static void clientApiSpecificCleanup();
};

}  // namespace zorvane::pubsub
