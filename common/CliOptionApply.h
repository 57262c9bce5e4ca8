// Applying one matched option row (CliOptionApply.cpp). Main thread only.
#pragma once

#include <string>

#include "common/CliOption.h"

namespace zorvane::pubsub {

// Converts, checks and stores the value as the row says, then runs the
// row's handler. A fault ends the process through processExit.
void cliApplyOption(CliOptionCall& call);

// The "int" conversion of the command line: strtol base 10, no check of
// what follows the digits, truncated to 32 bits.
INT32 cliIntValue(const std::string& value);

}  // namespace zorvane::pubsub
