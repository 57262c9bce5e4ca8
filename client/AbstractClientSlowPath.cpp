// The slow path of the per-message analysis: everything optional that a
// received message can go through (order checks, CRC and user data checks,
// counters, dump, reflection, slow-subscriber delay), and the object type
// check of typed messages. Runs on the context thread; only the features
// the constructor found in force cost anything.
#include <cstdio>
#include <ctime>
#include <string>
#include <string_view>

#include "client/AbstractClient.h"
#include "client/AbstractMessage.h"
#include "common/CRC.h"
#include "common/Log.h"
#include "common/OS.h"

namespace zorvane::pubsub {

namespace {

// The user data that publishers of this tool send.
constexpr std::string_view DEFAULT_USER_DATA = "abcdefghijklmnopqrstuvwxyz0123456789";

// Whether a line at this level would be written: for work that is only
// worth doing for the log (fetching a whole message dump).
bool logEnabled(int level) {
    return level <= *log::appFilterLevel_p;
}

// What a typed message of each kind carries, as its peer builds it; null
// for a kind that no peer sends.
const char* expectedObjectTypeContent(const std::string& type) {
    if (type == "b") {
        return "123";
    }
    if (type == "t") {
        return "TEXT_MESSAGE";
    }
    if (type == "s") {
        return "STREAM_MESSAGE";
    }
    if (type == "m") {
        return "MESSAGE";
    }
    return nullptr;
}

}  // namespace

void AbstractClient::processMessageSlowPath(AbstractMessage* msg_p, PerfStats* perfStats_p,
                                            bool toolDataDecoded) {
    const StatsCustomizationProperties& rx = rxStatsProps_m;

    // The latency step may be off, and then this is the only decode. Nothing
    // between the two steps changes the record, so a clean first decode is
    // kept as it is.
    if (!toolDataDecoded) {
        decodeReceivedToolData(msg_p);
    }
    const ToolData& toolData = *msg_p->getToolData();

    if (wantTimeToFirstMsg_m.load(std::memory_order_acquire)) {
        reportTimeToFirstMsg();
    }

    const UINT64 msgId = toolData.getMsgId();
    const bool republished = toolData.getRepublished();
    const INT64 topicSeq = msg_p->getTopicSequence();
    const bool redelivered = msg_p->isRedelivered();
    if (redelivered) {
        perfStats_p->incStat(PerfStats::NUM_MSGS_REDELIVERED);
    }

    // With a fan-out every id arrives several times on purpose: order
    // checking would see nothing but duplicates.
    const bool noFanout = rx.getFirstLastLatencyFanout() == 0;
    bool orderChecked = false;
    if (rx.getWantOrderCheckPublisherStreamNumber() && toolData.hasMsgId() && noFanout) {
        orderChecked = true;
        if (!perfStats_p->checkOrderPublisherStreamNumber(toolData.getStreamId(), msgId,
                                                          redelivered, republished)) {
            LOG_WARNING("CLIENT %s: Order error detected for msg: %llu", clientIdStr_m.c_str(),
                        static_cast<unsigned long long>(msgId));
        }
    }
    if (rx.getWantOrderCheckTopicSequenceNumber() && topicSeq >= 1 && noFanout) {
        orderChecked = true;
        if (!perfStats_p->checkOrderTopicSequenceNumber(topicSeq, redelivered, republished)) {
            LOG_WARNING(
                "CLIENT %s: Topic sequence number order error detected for msg: %llu   with topic "
                "sequence number %lld",
                clientIdStr_m.c_str(), static_cast<unsigned long long>(msgId),
                static_cast<long long>(topicSeq));
        }
    }
    if (orderChecked) {
        perfStats_p->incStat(PerfStats::NUM_MSGS_ORDER_CHECKED);
    }

    if (rx.getWantOrderMemory() && toolData.hasStreamId()) {
        if (toolData.hasMsgId()) {
            perfStats_p->updateOrderMemory(msgId, toolData.getStreamId());
        } else {
            LOG_ERROR("CLIENT %s: order memory failed due to missing items.  Tooldata: %s",
                      clientIdStr_m.c_str(), toolData.toString().c_str());
        }
    }

    if (rx.getWantPayloadCheck()) {
        checkPayload(msg_p, toolData, perfStats_p);
    }

    if (rx.getWantPerPriorityStats()) {
        perfStats_p->incPriorityStat(msg_p->getPriority(), 1);
    }
    if (rx.getWantPriorityStats()) {
        perfStats_p->incSubPriorityStat(msg_p->getPriority(), 1);
    }
    if (rx.getWantCidStats()) {
        perfStats_p->incCidStats(msg_p->getCids());
    }
    if (rx.getWantFullMsgInspection()) {
        msg_p->fullMsgUpdateStats(perfStats_p);
    }

    if (rx.getWantStructMsgCheck()) {
        // Counted with the CRC results too: a structured message proves its
        // integrity by its fields instead of a checksum.
        if (checkStructuredMsgImpl(msg_p)) {
            perfStats_p->incStat(PerfStats::NUM_MSGS_CRC_OK);
            perfStats_p->incStat(PerfStats::NUM_MSGS_CRC_SDM_OK);
        } else {
            perfStats_p->incStat(PerfStats::NUM_MSGS_CRC_FAIL);
            perfStats_p->incStat(PerfStats::NUM_MSGS_CRC_SDM_FAIL);
        }
    }

    if (rx.getWantCacheMsgStats()) {
        perfStats_p->incStat(msg_p->isCacheMsg() ? PerfStats::NUM_CACHE_MSGS_RECV
                                                 : PerfStats::NUM_LIVE_MSGS_RECV);
        if (msg_p->isSuspectMsg()) {
            perfStats_p->incStat(PerfStats::NUM_CACHE_SUSPECT_RECV);
        }
    }

    if (rx.getWantDIStats() && msg_p->hasDiscardIndication()) {
        perfStats_p->incStat(PerfStats::NUM_MSGS_DISCARD_INDICATION);
    }

    if (rx.getWantPerMessageDetails()) {
        setLastMessageDetails(msg_p);
    }

    if (props_m.getWantMsgDump()) {
        dumpMessage(msg_p, toolData);
    }

    if (wantMsgReflect_m) {
        reflectMsgImpl(msg_p);
    }

    // Last of all, after the reflection: the delay blocks this client's
    // context thread, which is what makes the client a slow consumer.
    if (isChannelAdminConnected_m.load() && slowSubDelayInMillis_m != 0 &&
        slowSubDelayCount_m != 0 && slowSubDelayEnabled_m.load()) {
        slowSubDelayImpl();
    }
}

void AbstractClient::reportTimeToFirstMsg() {
    const UINT64 elapsed = OS::getTimeInUs() - firstSubscriptionAddTime_m;
    const double rate =
        static_cast<double>(numSubscriptions_m) * 1e6 / static_cast<double>(elapsed);
    std::printf(
        "\n%s:  Time from 1st subscription add to 1st msg rx = %llu us,\nEffective subscripton "
        "update rate = %g subscriptions/sec\n\n",
        clientIdStr_m.c_str(), static_cast<unsigned long long>(elapsed), rate);
    // Once per batch of subscriptions: the next setFirstSubscriptionAddTime
    // arms it again.
    wantTimeToFirstMsg_m.store(false, std::memory_order_relaxed);
}

void AbstractClient::checkPayload(AbstractMessage* msg_p, const ToolData& toolData,
                                  PerfStats* perfStats_p) {
    const unsigned long long msgId = toolData.getMsgId();
    bool ok = true;
    bool checked = false;

    if (toolData.hasCrcXmlPayload()) {
        const char* begin = msg_p->getPayloadBegin();
        const char* end = msg_p->getPayloadEnd();
        // A body CRC on a message without a body is no failure: there is
        // nothing to compare it with.
        if (begin != nullptr && end > begin) {
            const unsigned long received = toolData.getCrcXmlPayload();
            const unsigned long calculated = CRC::crc32(begin, end);
            LOG_DEBUG("CLIENT %s: MsgId: %llu, XML Payload Received CRC: %lu, Calculated CRC: %lu",
                      clientIdStr_m.c_str(), msgId, received, calculated);
            if (received == calculated) {
                perfStats_p->incStat(PerfStats::NUM_MSGS_CRC_XMLPAYLOAD_OK);
            } else {
                perfStats_p->incStat(PerfStats::NUM_MSGS_CRC_XMLPAYLOAD_FAIL);
                ok = false;
                LOG_WARNING(
                    "SUB %s: MsgId: %llu, CRC XML payload error. Msg ID: %s. Received CRC: %lu, "
                    "Calculated CRC: %lu",
                    clientIdStr_m.c_str(), msgId, msg_p->getMsgId().c_str(), received, calculated);
            }
            checked = true;
        }
    }

    if (toolData.hasCrcBinAttach()) {
        const char* begin = msg_p->getAttachBegin();
        const char* end = msg_p->getAttachEnd();
        const std::size_t length =
            (begin != nullptr && end > begin) ? static_cast<std::size_t>(end - begin) : 0;
        const std::size_t recordSize = toolData.getDecodedSize();
        // The CRC covers what follows the record; an attachment that is only
        // the record has nothing to check.
        if (recordSize != length) {
            const char* userBytes = begin + (recordSize < length ? recordSize : length);
            const unsigned long received = toolData.getCrcBinAttach();
            const unsigned long calculated =
                CRC::crc32(userBytes, begin == nullptr ? userBytes : end);
            LOG_DEBUG(
                "CLIENT %s: MsgId: %llu, Bin Attachment Received CRC: %lu, Calculated CRC: %lu",
                clientIdStr_m.c_str(), msgId, received, calculated);
            if (received == calculated) {
                perfStats_p->incStat(PerfStats::NUM_MSGS_CRC_BINATTACH_OK);
            } else {
                perfStats_p->incStat(PerfStats::NUM_MSGS_CRC_BINATTACH_FAIL);
                ok = false;
                LOG_WARNING(
                    "CLIENT %s: MsgId: %llu, CRC bin attachment error. Msg ID: %s. Received CRC: "
                    "%lu, Calculated CRC: %lu",
                    clientIdStr_m.c_str(), msgId, msg_p->getMsgId().c_str(), received, calculated);
            }
        }
    }

    const std::string userData = msg_p->getUserData();
    bool userDataFailed = false;
    if (!userData.empty()) {
        if (userData == DEFAULT_USER_DATA) {
            perfStats_p->incStat(PerfStats::NUM_MSGS_CRC_USERDATA_OK);
        } else {
            perfStats_p->incStat(PerfStats::NUM_MSGS_CRC_USERDATA_FAIL);
            userDataFailed = true;
            LOG_WARNING("CLIENT %s: MsgId: %llu, UD Recv: %s", clientIdStr_m.c_str(), msgId,
                        userData.c_str());
        }
    }

    // A message that carried nothing to check is neither good nor bad.
    if (!toolData.hasCrcBinAttach() && userData.empty() && !checked) {
        return;
    }
    if (!userDataFailed && ok) {
        perfStats_p->incStat(PerfStats::NUM_MSGS_CRC_OK);
        return;
    }
    perfStats_p->incStat(PerfStats::NUM_MSGS_CRC_FAIL);
    if (!logEnabled(log::LEVEL_WARNING)) {
        return;  // the dump is costly and would only be dropped
    }
    // One entry per line, so that the log's line prefixes stay readable.
    const std::string dump = msg_p->getDump(0);
    std::size_t start = 0;
    while (start < dump.size()) {
        std::size_t stop = dump.find('\n', start);
        if (stop == std::string::npos) {
            stop = dump.size();
        }
        LOG_WARNING("%.*s", static_cast<int>(stop - start), dump.data() + start);
        start = stop + 1;
    }
}

void AbstractClient::dumpMessage(AbstractMessage* msg_p, const ToolData& toolData) {
    const INT32 bufferSize = props_m.getMsgDumpBufferSize();
    const std::string dump =
        msg_p->getDump(bufferSize > 0 ? static_cast<std::size_t>(bufferSize) : 0);
    if (dump.empty()) {
        std::printf("Skipping dump of null message.\n");
        return;
    }
    if (props_m.getWantMsgDumpTimeStamp()) {
        const std::time_t now = std::time(nullptr);
        std::tm utc{};
        gmtime_r(&now, &utc);
        char stamp[64];
        std::strftime(stamp, sizeof stamp, "%Y-%m-%dT%H:%M:%SZ ", &utc);
        std::printf("Time: %s\n", stamp);
    }
    std::printf("^^^^^^^^^^^^^^^^^^ Start Message ^^^^^^^^^^^^^^^^^^^^^^^^^^^\n");
    std::fwrite(dump.data(), 1, dump.size(), stdout);
    std::printf("\n");
    if (toolData.hasData()) {
        std::printf("Tool Data:\n%s\n", toolData.toString().c_str());
    }
    std::printf("^^^^^^^^^^^^^^^^^^ End Message ^^^^^^^^^^^^^^^^^^^^^^^^^^^\n");
}

void AbstractClient::processMessageObjectType(AbstractMessage* msg_p, PerfStats* perfStats_p) {
    MsgObjectTypeReading& reading = objectTypeReading_m;
    reading.outcome_m = MsgObjectTypeReading::TYPE_UNREADABLE;
    reading.type_m.clear();
    reading.content_m.clear();
    readMsgObjectTypeImpl(msg_p, reading);

    switch (reading.outcome_m) {
        case MsgObjectTypeReading::TYPE_UNREADABLE:
            // Not a typed message as far as we can tell: nothing to judge.
            return;
        case MsgObjectTypeReading::CONTENT_UNREADABLE:
            perfStats_p->incStat(PerfStats::NUM_MSGS_RECEIVED_OBJECT_TYPE_FAIL);
            return;
        case MsgObjectTypeReading::READ:
            break;
    }
    const char* expected = expectedObjectTypeContent(reading.type_m);
    if (expected != nullptr && reading.content_m == expected) {
        perfStats_p->incStat(PerfStats::NUM_MSGS_RECEIVED_OBJECT_TYPE_OK);
    } else {
        perfStats_p->incStat(PerfStats::NUM_MSGS_RECEIVED_OBJECT_TYPE_FAIL);
    }
}

}  // namespace zorvane::pubsub
