// How the command line reports what it refuses.
//
// Faults go to standard error and end the process with status 255 through
// processExit (so a test harness can intercept them); warnings go to
// standard error and the run goes on. A value is appended to the text as it
// stands, so texts keep their trailing blanks.
//
// Main thread only, during parsing.
#pragma once

#include <initializer_list>
#include <string_view>

namespace zorvane::pubsub {

// One fault line followed by an empty line, then exit 255.
[[noreturn]] void cliFault(std::string_view text);

// The same for a text made of a prefix and the offending value.
[[noreturn]] void cliFault(std::string_view text, std::string_view value);

// Several lines, each ended by a line end, then exit 255.
[[noreturn]] void cliFaultLines(std::initializer_list<std::string_view> lines);

// Several lines to standard error; returns.
void cliWarningLines(std::initializer_list<std::string_view> lines);

}  // namespace zorvane::pubsub
