#include "vexload/ClockCheck.h"

#include <iomanip>

namespace zorvane::pubsub {

bool ClockCheck::report(std::ostream& out, UINT64 startTimeInUs, UINT64 endTimeInUs,
                        UINT64 startTimeInCycles, UINT64 endTimeInCycles, UINT64 cpuSpeedInHz) {
    if (cpuSpeedInHz == 0) {
        return false;
    }
    long double usTimeDiffInSec = static_cast<long double>(endTimeInUs - startTimeInUs) / 1e6L;
    long double cyclesTimeDiffInSec =
        static_cast<long double>(endTimeInCycles - startTimeInCycles) /
        static_cast<long double>(cpuSpeedInHz);
    // Whole seconds are compared, not the difference: a run of 1.999 s
    // against 2.001 s is reported, 1.001 s against 1.999 s is not.
    if (static_cast<UINT64>(usTimeDiffInSec) == static_cast<UINT64>(cyclesTimeDiffInSec)) {
        return false;
    }
    out << std::setprecision(6)
        << "Error in clock.  Runtime calculation different by more than 1 second between "
           "timeofday and cycles (in sec)"
        << std::endl
        << "\tVia time of day: " << usTimeDiffInSec << std::endl
        << "\tVia cycles     : " << cyclesTimeDiffInSec << std::endl;
    return true;
}

}  // namespace zorvane::pubsub
