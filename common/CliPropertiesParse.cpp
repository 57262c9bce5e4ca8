// Command-line parser, first step: only the options the entry point needs to
// start up (version and logging) are known. The full option chain replaces
// the body of parseOptions; the matching rules and the unknown-option fault
// below already behave as the full parser will. Until then an argument
// without a leading minus is refused as unknown too.
#include <cstdio>
#include <cstdlib>
#include <string>
#include <string_view>

#include "common/CliProperties.h"

namespace zorvane::pubsub {

namespace {

// Every fault of the parse ends the process with this status, before any
// thread, file or connection exists that would need cleaning up.
constexpr int PARSE_FAULT_EXIT_STATUS = 255;

// An option with a value matches by its text up to and including "=", in
// its lower- or upper-case spelling; the value is everything after it and
// may be empty.
bool matchValueOption(std::string_view arg, std::string_view lower, std::string_view upper,
                      std::string& value) {
    for (const std::string_view form : {lower, upper}) {
        if (arg.starts_with(form)) {
            value.assign(arg.substr(form.size()));
            return true;
        }
    }
    return false;
}

// A flag matches only as the whole argument.
bool matchFlag(std::string_view arg, std::string_view lower, std::string_view upper) {
    return arg == lower || arg == upper;
}

[[noreturn]] void failUnknownOption(std::string_view arg, const std::string& toolName) {
    std::fprintf(stderr, "ERROR: Unknown option '%.*s'\n\ntype %s -h for the option list\n",
                 static_cast<int>(arg.size()), arg.data(), toolName.c_str());
    std::exit(PARSE_FAULT_EXIT_STATUS);
}

}  // namespace

void CliProperties::parseOptions(int argC, char** argV) {
    // With no arguments every default stands, which is a valid run.
    for (int parmIndex = 1; parmIndex < argC; ++parmIndex) {
        const std::string_view arg(argV[parmIndex] != nullptr ? argV[parmIndex] : "");
        std::string value;
        // "-log=" is tried before "-logf=", as in the full chain; neither is
        // a prefix of the other, so the order does not hide either.
        if (matchValueOption(arg, "-log=", "-LOG=", value)) {
            setStringProperty(LOG_LEVEL, value);
        } else if (matchValueOption(arg, "-logf=", "-LOGF=", value)) {
            setStringProperty(LOG_FILE, value);
        } else if (matchFlag(arg, "-v", "-V")) {
            // Not acted on here: the parse runs to its end and the entry
            // point prints the version.
            setBooleanProperty(PRINT_VERSION_AND_EXIT, true);
        } else {
            failUnknownOption(arg, toolNameStr_m);
        }
    }
}

}  // namespace zorvane::pubsub
