#include "vexload/Report.h"

#include <iomanip>
#include <sstream>

#include "common/CliProperties.h"
#include "common/CommonUtils.h"
#include "common/DisplayUtils.h"

namespace zorvane::pubsub {

namespace {

// Library statistics the report names by id (see ReportSource::sdkStat).
constexpr int SDK_RX_DISCARD_IND = 3;
constexpr int SDK_RX_REPLY_MSG_DISCARD = 20;
constexpr int SDK_RX_SETTLE_ACCEPTED = 37;
constexpr int SDK_RX_SETTLE_FAILED = 38;
constexpr int SDK_RX_SETTLE_REJECTED = 39;
constexpr int SDK_TX_MSGS = CommonUtils::SDK_TX_STAT_OFFSET + 1;

// Everything a section needs besides the output stream.
struct ReportContext {
    const CliProperties& props;
    const ReportSource& source;
    const PerfStats& aggregate;
    INT32 numClients;

    bool flag(const char* key) const { return props.getBooleanProperty(key); }
    bool hasText(const char* key) const { return !props.getStringProperty(key).empty(); }
};

void printDiscardIndications(const ReportContext& ctx, std::ostream& out) {
    const INT64 bySdk = ctx.source.sdkStat(SDK_RX_DISCARD_IND);
    out << "Messages received with discard indication  = " << bySdk << "\n";
    // The tool counts the indications itself only when asked to; then its
    // count must match the library's, and a mismatch is worth a look.
    const UINT64 byTool = ctx.aggregate.getStat(PerfStats::NUM_MSGS_DISCARD_INDICATION);
    if (ctx.flag(CliProperties::WANT_DI_STATS) && static_cast<UINT64>(bySdk) != byTool) {
        out << "Discard indication discrepancy:\n"
            << "  Reported by SDK: " << bySdk << "\n"
            << "  Reported by Tool: " << byTool << "\n";
    }
}

void printAckStats(const ReportContext& ctx, std::ostream& out) {
    if (ctx.hasText(CliProperties::AD_ACK_EVENT_MODE)) {
        out << "AD Pub ACK/NACK stats:\n"
            << "  Total ACK Events     = " << ctx.aggregate.getStat(PerfStats::NUM_ACK_EVENTS)
            << "\n"
            << "  Total NACK Events    = " << ctx.aggregate.getStat(PerfStats::NUM_NACK_EVENTS)
            << "\n";
        // Acknowledged message counts are only known when messages carry
        // publisher stream numbers.
        if (ctx.flag(CliProperties::WANT_ORDER_CHECK_PUBLISHER_STREAM_NUMBER)) {
            out << "  Total ACKED Messages = "
                << ctx.aggregate.getStat(PerfStats::NUM_PUB_MSGS_ACKED) << "\n";
        }
    }
    if (ctx.hasText(CliProperties::SETTLEMENT_PATTERN) ||
        ctx.hasText(CliProperties::REQUIRED_SETTLEMENTS)) {
        out << "AD Sub ACK/NACK stats:\n"
            << "  Messages Received Accepted  = " << ctx.source.sdkStat(SDK_RX_SETTLE_ACCEPTED)
            << "\n"
            << "  Messages Received Rejected  = " << ctx.source.sdkStat(SDK_RX_SETTLE_REJECTED)
            << "\n"
            << "  Messages Received Failed    = " << ctx.source.sdkStat(SDK_RX_SETTLE_FAILED)
            << "\n";
    }
}

void printOrderBlock(const ReportContext& ctx, std::ostream& out) {
    out << "\n"
        << DisplayUtils::orderCheckSummary(ctx.aggregate, "Message Order Check Summary:") << "\n";
    out << "Out-of-Order Msgs by Client:\n";
    for (INT32 i = 0; i < ctx.numClients; ++i) {
        out << DisplayUtils::orderCheckDetails(ctx.source.rxStats(i, false));
    }
    // Only guaranteed messages are acknowledged, so only they have a point
    // to resume publishing from.
    if (ctx.props.getMsgType() == PUBSUB_MSG_TYPE_PERSISTENT) {
        out << "\n"
            << "To resume publishing at this point on all publisher streams, use the argument\n"
            << "    -poo='"
            << CommonUtils::serializeFullArgumentForLastAckedMsgIdAndPublisherOrderOffsets(
                   ctx.source.lastAckedMsgIdByPubStreamId())
            << "'\n\n";
    }
    const bool wantPrintSooAtExit =
        ctx.flag(CliProperties::SUB_ORDER_OFFSETS_PRINT_RESUMING_ARG_AT_EXIT);
    if (wantPrintSooAtExit) {
        out << "\n"
            << "To resume the subscriber message order tracking next time, use the following "
               "argument.\n"
            << "    -soo='"
            << CommonUtils::serializeFullArgumentForSubscriberOrderOffsets(
                   ctx.source.subOrderOffsets())
            << "'\n\n";
    }
}

void printThroughputs(const ReportContext& ctx, std::ostream& out) {
    // Rates here are written straight to out and so keep its 2 decimals.
    if (ctx.flag(CliProperties::WANT_PER_SUB_THRU_STATS)) {
        out << "\nClient,Msgs,Throughput:\n";
        for (INT32 i = 0; i < ctx.numClients; ++i) {
            const PerfStats stat = ctx.source.rxStats(i, false);
            out << stat.getName() << "," << stat.getStat(PerfStats::NUM_MSGS_RECV) << ","
                << stat.getThruPut(PerfStats::NUM_TPUT_MSGS) << "\n";
        }
    }
    if (ctx.flag(CliProperties::WANT_PER_PRI_THRU_STATS)) {
        out << "\nCoS Stats (Message Class, Messages Received, Message Rage (msg/sec)\n";
        for (INT32 msgPri = 0; msgPri <= 9; ++msgPri) {
            const UINT64 count = ctx.aggregate.getPriorityStat(msgPri);
            if (count != 0) {
                out << "Priority " << msgPri << "," << count << ","
                    << ctx.aggregate.getPriorityThruPut(msgPri) << "\n";
            }
        }
    }
}

// One latency section, or the line that says it has no samples.
void printLatencyOf(const ReportContext& ctx, const PerfStats& stats, const char* noSamples,
                    const char* title, const char* debugHeading, std::ostream& out) {
    if (stats.getStat(PerfStats::NUM_LATENCY_MSGS) == 0) {
        out << noSamples << "\n";
        return;
    }
    out << "\n"
        << DisplayUtils::latency(stats, title, ctx.flag(CliProperties::WANT_LATENCY_FULL_STATS),
                                 ctx.props.getIntegerProperty(CliProperties::LATENCY_PRECISION));
    if (ctx.flag(CliProperties::WANT_VERBOSE)) {
        out << debugHeading << "\n" << stats.toString() << "\n";
    }
}

void printLatencyBlock(const ReportContext& ctx, std::ostream& out) {
    printLatencyOf(ctx, ctx.aggregate, "No latency samples collected",
                   "Latency Stats: ", "Debug information for latency: ", out);
    if (ctx.props.getIntegerProperty(CliProperties::LATENCY_FIRST_TO_LAST_FANOUT) >= 1) {
        const PerfStats firstLastLat = ctx.source.rxStats(ALL_CLIENTS_INDEX, true);
        printLatencyOf(
            ctx, firstLastLat, "No first to last latency samples collected",
            "First Last Latency Stats: ", "Debug information for First Last latency: ", out);
    }
}

// Sections whose text comes whole from DisplayUtils, each after a blank.
void printCheckSections(const ReportContext& ctx, std::ostream& out) {
    const PerfStats& aggregate = ctx.aggregate;
    if (ctx.flag(CliProperties::MSG_OBJ_TYPE_CHECK)) {
        out << "\n" << DisplayUtils::msgObjTypeCheck(aggregate, "Message Object Type Checking:");
    }
    if (ctx.flag(CliProperties::WANT_CID_STATS)) {
        out << "\n" << DisplayUtils::cid(aggregate, "Msgs Received Per Consumer ID:");
    }
    if (ctx.flag(CliProperties::WANT_FULL_MSG_INSPECTION)) {
        out << "\n"
            << DisplayUtils::msgContentCheck(aggregate, "Message Content Inspection Stats:");
    }
    if (ctx.hasText(CliProperties::CACHE_PROP_NAME) &&
        aggregate.getStat(PerfStats::NUM_CACHE_REQ_SENT) != 0) {
        const INT64 numDiscardedResp = ctx.source.sdkStat(SDK_RX_REPLY_MSG_DISCARD);
        out << "\n" << DisplayUtils::cacheStats(aggregate, numDiscardedResp, "Cache Stats:");
    }
    if (ctx.flag(CliProperties::WANT_PRIORITY_STATS)) {
        out << "\n" << DisplayUtils::priorityStats(aggregate);
    }
    // Demultiplexing is a property of the subscriptions, not an option: the
    // section shows whenever messages were counted by subscription.
    if (!aggregate.getDemuxStatsMap().empty()) {
        out << "\n" << DisplayUtils::demux(aggregate, "Msgs Received Per Demux ID:");
    }
}

}  // namespace

void displayClientStats(const CliProperties& cliProperties, const ReportSource& source,
                        std::ostream& out) {
    const INT32 numClients = cliProperties.getIntegerProperty(CliProperties::NUM_CLIENTS);
    const double txRate = source.txThroughput();
    const INT64 txCount = source.sdkStat(SDK_TX_MSGS);

    // 1: what was sent. The rate is the report's first floating-point figure
    // and sets out's notation for the rest of the report.
    out << "\n" << DisplayUtils::RULE << "\n";
    out << "Aggregate Msgs Sent Stats (Total # clients: " << numClients << ")\n";
    out << "Total Messages transmitted                 = " << txCount << "\n";
    out << "Computed publish rate (msg/sec)            = " << std::fixed << std::setprecision(2)
        << txRate << "\n\n";

    // 2, 3, 4: what was received. The aggregate is asked for only now, so
    // that a collection that fails to build it still leaves the send figures
    // printed.
    const PerfStats aggregateStats = source.rxStats(ALL_CLIENTS_INDEX, false);
    const ReportContext ctx{cliProperties, source, aggregateStats, numClients};
    std::ostringstream title;
    title << "Aggregate Msgs Recv Stats (Total # clients: " << numClients << ")";
    out << DisplayUtils::summary(aggregateStats, title.str());
    printDiscardIndications(ctx, out);

    // 5, 6: acknowledgements of guaranteed messages.
    printAckStats(ctx, out);

    // 7, 8: order.
    if (ctx.flag(CliProperties::WANT_ORDER_CHECK_PUBLISHER_STREAM_NUMBER) ||
        ctx.flag(CliProperties::WANT_ORDER_CHECK_TOPIC_SEQUENCE_NUMBER)) {
        printOrderBlock(ctx, out);
    }
    if (ctx.flag(CliProperties::WANT_ORDER_MEMORY)) {
        out << DisplayUtils::orderMemory(aggregateStats, "Message Order Memory:");
    }

    // 9, 10: throughput by client and by priority.
    printThroughputs(ctx, out);

    // 11: content checks.
    if (ctx.flag(CliProperties::WANT_PAYLOAD_CHECK) ||
        !cliProperties.getVectorProperty(CliProperties::SDM_FILE_LIST).empty() ||
        ctx.flag(CliProperties::SDM_AUTO_GEN_FLAG)) {
        out << "\n" << DisplayUtils::msgIntegrity(aggregateStats, "Message Integrity Checking:");
    }

    // 12: latency.
    if (ctx.flag(CliProperties::WANT_LATENCY_MEASUREMENT)) {
        printLatencyBlock(ctx, out);
    }

    // 13 to 18.
    printCheckSections(ctx, out);

    // 19 to 22.
    if (cliProperties.getIntegerProperty(CliProperties::SIGALRM_INTERVAL_IN_US) != 0) {
        out << "SIGALRM events handled: " << source.numAlarms() << "\n";
    }
    out << "\nCPU usage = " << std::fixed << std::setprecision(3) << source.cpuUsage() * 100.0
        << "%\n\n";
    if (ctx.flag(CliProperties::WANT_API_STATS)) {
        out << "\n"
            << DisplayUtils::allApiStats([&source](int id) { return source.sdkStat(id); }) << "\n";
    }
    out << "\n";
    out.flush();
}

}  // namespace zorvane::pubsub
