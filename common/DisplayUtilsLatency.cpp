// Latency figures of the report.
#include <iomanip>
#include <sstream>

#include "common/DisplayUtils.h"
#include "common/PerfStats.h"

namespace zorvane::pubsub {

std::string DisplayUtils::latency(const PerfStats& stats, const std::string& title, bool fullStats,
                                  int precision) {
    // Without a chosen precision, latencies read best in whole microseconds,
    // while the bucket size (2048 ticks by default, below a microsecond at a
    // few GHz) needs decimals to show at all.
    const int otherPrecision = precision < 0 ? 2 : precision;
    const int latPrecision = precision < 0 ? 0 : precision;

    std::ostringstream text;
    text << std::fixed;
    text << "Latency Info: \n";
    text << "Individual latency bucket size = " << std::setprecision(otherPrecision)
         << stats.getLatencyBucketSizeInUs() << " us\n";
    text << "Latency warmup                 = " << std::setprecision(2)
         << stats.getLatencyWarmUpInSec() << " s\n";
    text << "Latency Messages received      = " << stats.getStat(PerfStats::NUM_LATENCY_MSGS)
         << "\n";
    text << "Latency msg rate (msg/sec)     = " << std::setprecision(2)
         << stats.getThruPut(PerfStats::NUM_LATENCY_MSGS) << "\n";
    text << "\n";
    text << title << "\n";

    text << std::setprecision(latPrecision);
    if (fullStats) {
        text << "Minimum latency for subs       = "
             << stats.getLatencyStatInUSec(PerfStats::LATENCY_MIN) << " us\n";
    }
    text << "Average latency for subs       = "
         << stats.getLatencyStatInUSec(PerfStats::LATENCY_AVG) << " us\n";
    struct Percentile {
        double percentile;
        const char* label;
        const char* name;
    };
    static const Percentile kPercentiles[] = {
        {50.0, "50th percentile latency        = ", "50th"},
        {95.0, "95th percentile latency        = ", "95th"},
        {99.0, "99th percentile latency        = ", "99th"},
        {99.9, "99.9th percentile latency      = ", "99.9th"},
    };
    for (const Percentile& row : kPercentiles) {
        // 0.0 is what the histogram answers when the percentile lies in the
        // overflow bucket or there are no samples; printing it as a latency
        // would be a lie.
        const double value = stats.getPercentileLatencyInUSec(row.percentile);
        if (value == 0.0) {
            text << "Cannot compute " << row.name << " percentile; not enough latency buckets\n";
        } else {
            text << row.label << value << " us\n";
        }
    }
    if (fullStats) {
        text << "Maximum latency for subs       = "
             << stats.getLatencyStatInUSec(PerfStats::LATENCY_MAX) << " us\n";
    }
    text << "Standard Deviation             = " << stats.getLatencyStdDevInUSec() << " us\n";
    return text.str();
}

}  // namespace zorvane::pubsub
