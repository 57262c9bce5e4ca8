// Option rows, fifth part: performance measurement, in matching order.
#include "common/CliOptionHandlers.h"
#include "common/CliProperties.h"

namespace zorvane::pubsub {

namespace {

using P = CliProperties;
using G = CliHelpGroup;
using H = CliOptionHandlers;

constexpr CliOption MEASURE_OPTIONS_s[] = {
    flagOpt("-l", P::WANT_LATENCY_MEASUREMENT)
        .help(G::SHORT_MEASURE, 1, "-l", "Enable latency measurement"),
    flagOpt("-lat", P::WANT_LATENCY_FULL_STATS)
        .stores(0)
        .also(P::WANT_LATENCY_MEASUREMENT)
        .help(G::LONG_MEASURE, 1, "-lat",
              "Latency measurement printing only the average and the\n"
              "99th percentile"),
    checkedOpt("-lfl=", P::LATENCY_FIRST_TO_LAST_FANOUT, 0, CLI_NO_MAX,
               "ERROR: Invalid value for latency first last, (>= 0) is valid: ")
        .also(P::WANT_LATENCY_MEASUREMENT)
        .then(&H::bothOrderChecks)
        .help(G::LONG_MEASURE, 2, "-lfl=number",
              "First-to-last latency with this fanout; turns on latency\n"
              "and all order checks"),
    // "-lb" alone or "-lb=number"; the handler reads what follows.
    customOpt("-lb", &H::latencyBuckets)
        .matchBy(CliMatch::OPTIONAL_VALUE)
        .help(G::SHORT_MEASURE, 2, "-lb=number",
              "Enable latency measurement with this many buckets\n"
              "(16..4096, default {NUM_LATENCY_BUCKETS})"),
    customOpt("-lg=", &H::latencyGranularity)
        .help(G::SHORT_MEASURE, 3, "-lg=number",
              "Enable latency measurement with this granularity factor\n"
              "(1..34, default {LATENCY_GRANULARITY})"),
    intOpt("-lp=", P::LATENCY_PRECISION)
        .noTwin()
        .help(G::LONG_MEASURE, 3, "-lp=number", "Digits after the decimal point in latencies"),
    doubleOpt("-lwu=", P::LATENCY_WARMUP_IN_SEC)
        .help(G::LONG_MEASURE, 4, "-lwu=number", "Latency warm-up in seconds (default 0.5)"),
    flagOpt("-lpm", P::WANT_LATENCY_PRINT_PER_MSG)
        .help(G::LONG_MEASURE, 5, "-lpm", "Print the latency of each message"),
    flagOpt("-tpp", P::WANT_PER_PRI_THRU_STATS),
    flagOpt("-tps", P::WANT_PER_SUB_THRU_STATS)
        .help(G::LONG_MEASURE, 6, "-tps", "Throughput per subscriber"),
    flagOpt("-srs", P::WANT_SUBSCRIPTION_RATE_STATS)
        .help(G::LONG_TOOL, 1, "-srs", "Subscription update rate stats",
              CliHelpTools::VEX_LOAD_ONLY),
    flagOpt("-upt", P::WANT_USER_PROP_TOOL_DATA)
        .help(G::LONG_TOOL, 10, "-upt",
              "Carry the tool data in the user property map instead of the\n"
              "binary attachment"),
    flagOpt("-crc", P::WANT_PAYLOAD_CHECK)
        .help(G::LONG_MEASURE, 7, "-crc", "CRC-32 check of the payload"),
    flagOpt("-oc", P::WANT_ORDER_CHECK_PUBLISHER_STREAM_NUMBER)
        .also(P::WANT_ORDER_CHECK_TOPIC_SEQUENCE_NUMBER)
        .help(G::LONG_MEASURE, 8, "-oc", "All order checks"),
    flagOpt("-octsn", P::WANT_ORDER_CHECK_TOPIC_SEQUENCE_NUMBER)
        .help(G::LONG_MEASURE, 10, "-octsn", "Order check by topic sequence number"),
    flagOpt("-ocpsn", P::WANT_ORDER_CHECK_PUBLISHER_STREAM_NUMBER)
        .help(G::LONG_MEASURE, 9, "-ocpsn", "Order check by message number"),
    flagOpt("-om", P::WANT_ORDER_MEMORY).help(G::LONG_MEASURE, 11, "-om", "Order memory"),
    flagOpt("-ud", P::WANT_UD).help(G::LONG_MEASURE, 12, "-ud", "Send user data in messages"),
    prefixFlagOpt("-mec", P::WANT_FULL_MSG_INSPECTION)
        .help(G::LONG_MEASURE, 13, "-mec", "Examine each part of each received message"),
    prefixFlagOpt("-cid", P::WANT_CID_STATS)
        .help(G::LONG_MEASURE, 14, "-cid", "Stats per consumer id"),
    flagOpt("-tnd", P::WANT_TCP_NODELAY).stores(0),
    flagOpt("-nagle", P::WANT_TCP_NODELAY)
        .stores(0)
        .help(G::SHORT_MEASURE, 4, "-nagle", "Enable Nagle's algorithm (TCP delay)"),
    prefixFlagOpt("-di", P::WANT_DI_STATS)
        .help(G::LONG_MEASURE, 15, "-di", "Discard indication stats"),
};

}  // namespace

std::span<const CliOption> cliMeasureOptions() {
    return MEASURE_OPTIONS_s;
}

}  // namespace zorvane::pubsub
