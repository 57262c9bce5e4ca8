// The command-line parser: each argument is matched against the option
// table in its order and applied; the lists that depend on the client count
// are spread once the whole line is read; then the cross-checks run.
#include <cstdio>
#include <string>
#include <string_view>

#include "common/CliFault.h"
#include "common/CliOptionApply.h"
#include "common/CliParseState.h"
#include "common/CliProperties.h"
#include "common/ProcessExit.h"

namespace zorvane::pubsub {

namespace {

const CliOption* findOption(std::string_view arg, std::string& value) {
    for (const CliOption& option : cliOptionTable()) {
        if (cliOptionMatches(option, arg, value)) {
            return &option;
        }
    }
    return nullptr;
}

}  // namespace

void CliProperties::parseOptions(int argC, char** argV) {
    // With no arguments every default stands, which is a valid run.
    CliParseState state;
    for (int parmIndex = 1; parmIndex < argC; ++parmIndex) {
        const std::string_view arg(argV[parmIndex] != nullptr ? argV[parmIndex] : "");
        if (arg.empty() || arg.front() != '-') {
            std::fputs("ERROR: Parameters must start with -\n\n", stderr);
            printHelp();
            processExit(PROCESS_EXIT_FAULT);
        }
        std::string value;
        const CliOption* option = findOption(arg, value);
        if (option == nullptr) {
            cliFaultLines({"ERROR: Unknown option '" + std::string(arg) + "'", "",
                           "type " + toolNameStr_m + " -h for the option list"});
        }
        CliOptionCall call{*this, state, *option, arg, value};
        cliApplyOption(call);
    }
    applyHeldBackLists(state);
    runCrossChecks();
}

void CliProperties::applyHeldBackLists(const CliParseState& state) {
    // "-stl=" wins over "-stp=" whatever their order on the line.
    if (!state.stlStr.empty()) {
        loadSubscriptionsFromList(topicsVector_m, state.stlStr);
    } else if (!state.stpStr.empty()) {
        if (state.stc < 1) {
            cliFault("ERROR: Invalid value for -stc with -stp, (1..) is valid: ",
                     std::to_string(state.stc));
        }
        loadSubscriptionsFromPrefixAndCount(topicsVector_m, state.stpStr, state.stc);
    }
    if (!state.sqlStr.empty()) {
        loadSubscriptionsFromList(queuesVector_m, state.sqlStr);
    }
    if (!state.sdlStr.empty()) {
        loadSubscriptionsFromList(dtesVector_m, state.sdlStr);
    }
    if (!state.sslStr.empty()) {
        loadSubscriptionsFromList(selectorVector_m, state.sslStr);
    }
    if (!state.ptpStr.empty()) {
        if (state.ptc < 1) {
            cliFault("ERROR: Invalid value for -ptc with -ptp, (1..) is valid: ",
                     std::to_string(state.ptc));
        }
        loadPublishTopicsFromPrefixAndCount(state.ptpStr, state.ptc);
    }
}

}  // namespace zorvane::pubsub
