#include "vexload/Driver.h"

#include <signal.h>
#include <unistd.h>

#include <cstdio>
#include <iostream>
#include <sstream>

#include "client/zcore/LibraryVersion.h"
#include "common/CliProperties.h"
#include "common/ClientProperties.h"
#include "common/DisplayUtils.h"
#include "common/PublishProperties.h"
#include "common/StatsCustomizationProperties.h"
#include "common/genReleaseVersion.h"

namespace zorvane::pubsub {

std::atomic<bool> shutdownFlag_s{false};
std::atomic<INT64> numAlarms_s{0};
std::atomic<bool> wantSessionAction_s{false};

static_assert(std::atomic<bool>::is_always_lock_free && std::atomic<INT64>::is_always_lock_free,
              "the signal handler may only touch lock-free state");

std::string getVersionStr() {
    const std::string rule(50, '=');
    GenReleaseVersion* release_p = GenReleaseVersion::onlyInstance();
    LibraryVersion library = LibraryVersion::get();
    std::ostringstream text;
    text << "\n"
         << rule << "\n"
         << "vexload Version Information: \n"
         << "\tVersion      : " << release_p->getVersion() << "\n"
         << "\tBuild Date   : " << release_p->getDateTime() << "\n"
         << "\n\n"
         << rule << "\n"
         << "Dependency Build Information:\n"
         << "\n"
         << "zorClient Version Information:\n"
         << "\tVersion      : " << library.version << "\n"
         << "\tBuild Date   : " << library.dateTime << "\n"
         << "\tBuild Variant: " << library.variant << "\n"
         << "\n";
    return text.str();
}

extern "C" void sigHdlr(int sig) {
    if (sig == SIGINT) {
        signal(SIGINT, SIG_DFL);
        shutdownFlag_s.store(true);
    } else if (sig == SIGALRM) {
        signal(SIGALRM, sigHdlr);
        numAlarms_s.fetch_add(1);
        // Forwarding to the clients' session action comes with the client
        // collection.
    } else {
        // Only async-signal-safe calls here: format the number by hand.
        char text[48] = "Unexpected signal: ";
        std::size_t length = 19;
        char digits[12];
        int count = 0;
        unsigned value = static_cast<unsigned>(sig);
        do {
            digits[count++] = static_cast<char>('0' + value % 10);
            value /= 10;
        } while (value != 0 && count < 11);
        while (count > 0) {
            text[length++] = digits[--count];
        }
        text[length++] = '\n';
        ssize_t written = write(STDOUT_FILENO, text, length);
        (void)written;
        signal(sig, SIG_DFL);
    }
}

void runTraffic(const CliProperties& cliProperties) {
    ClientProperties clientProps(cliProperties);
    PublishProperties publishProps(cliProperties);
    StatsCustomizationProperties statsCust(cliProperties);

    std::cout << DisplayUtils::clientNameDetails(clientProps) << std::endl;

    // This build has no client collection yet: there are no clients to
    // connect and no traffic to drive, so the run ends here instead of
    // printing a report of nothing.
    std::cerr << "No client collection in this build: no connection is made and no traffic is sent."
              << std::endl;
}

}  // namespace zorvane::pubsub
