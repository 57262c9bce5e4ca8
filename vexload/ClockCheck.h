// End-of-run comparison of the two clocks of a run: the wall clock and the
// tick counter with the measured ticks per second. A counter that drifts from
// the wall clock makes every latency and rate figure wrong, so a run that saw
// them differ says so.
#pragma once

#include <ostream>

#include "common/dataTypes.h"

namespace zorvane::pubsub {

class ClockCheck {
  public:
    // Writes three lines to out when the run's duration, truncated to whole
    // seconds, differs between the two clocks; nothing when they agree (or no
    // tick rate is known). Differences are unsigned, divisions in extended
    // precision. Only the precision of out is set (6): its notation is left as
    // it is, so after a report that switched standard output to fixed notation
    // the figures show six decimals. Returns whether it wrote.
    static bool report(std::ostream& out, UINT64 startTimeInUs, UINT64 endTimeInUs,
                       UINT64 startTimeInCycles, UINT64 endTimeInCycles, UINT64 cpuSpeedInHz);
};

}  // namespace zorvane::pubsub
