// Order figures of the report: totals over all streams, the findings of one
// client stream by stream, and the receive order as a list.
#include <iomanip>
#include <sstream>

#include "common/DisplayUtils.h"
#include "common/PerfStats.h"

namespace zorvane::pubsub {

namespace {

// Event counts summed over the streams of one statistics object. 32 bits
// are plenty: each event is an entry held in memory.
struct OrderTotals {
    INT32 outOfOrder = 0;
    INT32 lost = 0;
    INT32 duplicate = 0;
    INT32 redeliveredDuplicate = 0;
    INT32 republishedDuplicate = 0;
};

OrderTotals sumOverStreams(const PerfStats& stats) {
    OrderTotals totals;
    for (const auto& entry : stats.getOrderData()) {
        const SingleStreamOrderStats& stream = entry.second;
        totals.outOfOrder += static_cast<INT32>(stream.getOoOMsgs().size());
        totals.lost += static_cast<INT32>(stream.getLostMsgs().size());
        totals.duplicate += static_cast<INT32>(stream.getDuplicateMsgs().size());
        totals.redeliveredDuplicate +=
            static_cast<INT32>(stream.getRedeliveredDuplicateMsgs().size());
        totals.republishedDuplicate +=
            static_cast<INT32>(stream.getRepublishedDuplicateMsgs().size());
    }
    return totals;
}

}  // namespace

std::string DisplayUtils::orderCheckSummary(const PerfStats& stats, const std::string& title) {
    const OrderTotals totals = sumOverStreams(stats);
    std::ostringstream text;
    text << title << "\n";
    text << "Total Msgs Order Checked        : " << stats.getStat(PerfStats::NUM_MSGS_ORDER_CHECKED)
         << "\n";
    text << "Total Out of Order Msgs         : " << totals.outOfOrder << "\n";
    text << "Total Missing Msgs              : " << totals.lost << "\n";
    text << "Total Duplicate Msgs            : " << totals.duplicate << "\n";
    text << "Total Redelivered Msgs          : " << stats.getStat(PerfStats::NUM_MSGS_REDELIVERED)
         << "\n";
    text << "Total Redelivered Duplicate Msgs: " << totals.redeliveredDuplicate << "\n";
    text << "Total Republished Duplicate Msgs: " << totals.republishedDuplicate << "\n";
    text << "Total Replication Group Message Id Duplicate Msgs: "
         << stats.getStat(PerfStats::NUM_REPLICATION_GROUP_MESSAGE_ID_DUPLICATES) << "\n";
    text << "Total Replication Group Message Spool Id Changes : "
         << stats.getStat(PerfStats::NUM_REPLICATION_GROUP_MESSAGE_ID_SPOOL_ID_CHANGES) << "\n";
    return text.str();
}

std::string DisplayUtils::orderCheckDetails(const PerfStats& stats) {
    // Republished duplicates are the publisher's deliberate resends: a
    // client with only those has nothing to explain.
    const OrderTotals totals = sumOverStreams(stats);
    if (totals.outOfOrder <= 0 && totals.lost <= 0 && totals.duplicate <= 0 &&
        totals.redeliveredDuplicate <= 0) {
        return {};
    }
    const auto& streams = stats.getOrderData();
    std::ostringstream text;
    text << "Message Order Details Client: " << stats.getName() << "\n";
    // The two streams without a publisher stream id come first, by name.
    auto special = [&](INT32 streamId, const char* heading) {
        auto found = streams.find(streamId);
        if (found != streams.end()) {
            text << heading << "\n" << found->second.toString();
        }
    };
    special(PerfStats::STREAM_ID_TOPIC_SEQUENCE, "  Stream: TOPIC_SEQUENCE ");
    special(PerfStats::STREAM_ID_DEFAULT, "  Stream: DEFAULT ");
    for (const auto& [streamId, stream] : streams) {
        if (streamId == PerfStats::STREAM_ID_TOPIC_SEQUENCE ||
            streamId == PerfStats::STREAM_ID_DEFAULT) {
            continue;
        }
        text << "  Stream: " << streamId << "\n" << stream.toString();
    }
    return text.str();
}

std::string DisplayUtils::orderMemory(const PerfStats& stats, const std::string& title) {
    std::ostringstream text;
    text << title << "\n";
    // Full width with leading zeros keeps the stream id (top 16 bits) and
    // the message id (low 24 bits) in fixed columns.
    text << std::hex << std::setfill('0');
    for (UINT64 entry : stats.getOrderMemory()) {
        text << " 0x" << std::setw(16) << entry << ",";
    }
    text << "\n";
    return text.str();
}

}  // namespace zorvane::pubsub
