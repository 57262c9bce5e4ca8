// Entry point of vexload_c: parse the command line, start the messaging
// library, time one run, stop the library and compare the two clocks.
#include <signal.h>
#include <sys/time.h>

#include <exception>
#include <iostream>

#include "client/zcore/ClientInfo.h"
#include "common/CliProperties.h"
#include "common/DisplayUtils.h"
#include "common/OS.h"
#include "vexload/ClockCheck.h"
#include "vexload/Driver.h"

using namespace zorvane::pubsub;

int main(int argc, char** argv) {
    // Before anything can log: the tool's log lines go through the library.
    ClientInfo::attachLibrary();

    signal(SIGINT, sigHdlr);
    charPtr32* argVOS = OS::getArgVOS(argv, argc);

    CliProperties cliProperties(TOOL_NAME, getVersionStr());
    cliProperties.parseOptions(argc, argVOS);

    if (cliProperties.getBooleanProperty(CliProperties::WANT_SIGALRM_SESSION_ACTION)) {
        wantSessionAction_s.store(true);
    }

    ClientInfo::clientApiSpecificInit(cliProperties);

    if (cliProperties.getBooleanProperty(CliProperties::PRINT_VERSION_AND_EXIT)) {
        std::cout << getVersionStr();
        std::cout.flush();
        exit(1);
    }

    std::cout << OS::getCpuMaskStr();

    INT32 alarmIntervalInUs =
        cliProperties.getIntegerProperty(CliProperties::SIGALRM_INTERVAL_IN_US);
    if (alarmIntervalInUs != 0) {
        signal(SIGALRM, sigHdlr);
        struct itimerval timer;
        timer.it_interval.tv_sec = 0;
        timer.it_interval.tv_usec = alarmIntervalInUs;
        timer.it_value = timer.it_interval;
        setitimer(ITIMER_REAL, &timer, nullptr);
    }

    UINT64 cpuSpeedInHz = OS::getCpuSpeedInHz();
    std::cout << "CPU Speed calculated (Hz): " << cpuSpeedInHz << std::endl;

    UINT64 startTimeInUs = OS::getTimeInUs();
    UINT64 startTimeInCycles = OS::numClockCycles();

    try {
        runTraffic(cliProperties);
    } catch (const std::exception& e) {
        std::cerr << std::endl
                  << "Error caught while running traffic. Aborting. Error msg: " << std::endl
                  << e.what() << std::endl;
    }

    // The collection goes down also after a failed run: its threads and
    // sessions must end before the library does.
    try {
        deleteClientCollection();
    } catch (const std::exception& e) {
        std::cerr << std::endl
                  << "Error cleaning up clients. Error msg: " << std::endl
                  << e.what() << std::endl;
    }

    if (cliProperties.getBooleanProperty(CliProperties::WANT_VERBOSE)) {
        std::cout << DisplayUtils::displayPoolStats("End of test msg pool stats:");
    }

    ClientInfo::clientApiSpecificCleanup();

    UINT64 endTimeInUs = OS::getTimeInUs();
    UINT64 endTimeInCycles = OS::numClockCycles();
    ClockCheck::report(std::cout, startTimeInUs, endTimeInUs, startTimeInCycles, endTimeInCycles,
                       cpuSpeedInHz);
    return 0;
}
