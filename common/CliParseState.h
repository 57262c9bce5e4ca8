// What one run of parseOptions keeps between options. The subscription and
// publish-topic lists are held back here until the whole line is read,
// because how they spread over clients depends on "-cc=", which may come
// later on the line.
//
// Lives on the stack of parseOptions; main thread only.
#pragma once

#include <string>

#include "common/dataTypes.h"

namespace zorvane::pubsub {

struct CliParseState {
    std::string stlStr;  // "-stl="
    std::string sdlStr;  // "-sdl="
    std::string sqlStr;  // "-sql="
    std::string sslStr;  // "-ssl="
    std::string stpStr;  // "-stp="
    std::string ptpStr;  // "-ptp="
    // Counts of generated names; refused below 1 only when their prefix is
    // used, since they divide the names among themselves.
    INT32 stc = 1;         // "-stc="
    INT32 ptc = 1;         // "-ptc="
    bool psvFlag = false;  // "-psv=" has been seen
    bool sdmFlag = false;  // "-sdm=" has been seen
};

}  // namespace zorvane::pubsub
