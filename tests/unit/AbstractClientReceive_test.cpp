// The receive analysis of AbstractClient through the test doubles: which
// path a message takes, and what each feature counts and logs.
#include <gtest/gtest.h>

#include <atomic>
#include <cstdio>
#include <numeric>
#include <regex>
#include <string>
#include <thread>

#include "common/CRC.h"
#include "common/CliProperties.h"
#include "common/OS.h"
#include "tests/unit/LogCapture.h"
#include "tests/unit/TestClient.h"

namespace zorvane::pubsub {
namespace {

using P = PerfStats;

constexpr auto clientProps = NullClient::defaultProps;

// 1024 buckets of 2^11 ticks, no warm-up; no feature on.
StatsCustomizationProperties measuring() {
    StatsCustomizationProperties rx;
    rx.setNumLatencyBuckets(1024);
    rx.setLatencyGranularityFactor(11);
    return rx;
}

std::unique_ptr<TestClient> makeClient(const StatsCustomizationProperties& rx,
                                       const ClientProperties& props = clientProps()) {
    return std::make_unique<TestClient>(props, 1, 1000000, rx, nullptr);
}

ToolData record(INT32 stream, UINT64 msgId) {
    ToolData td;
    td.setStreamId(stream);
    td.setMsgId(msgId);
    return td;
}

TEST(ReceiveFastPath, BothToolDataFormsFeedTheHistogramAndBadRecordsOnlyCostTheSample) {
    LogCapture log;
    StatsCustomizationProperties rx = measuring();
    rx.setWantLatency(true);
    rx.setWantLatencyPerMsg(true);  // needs no slow path
    ClientProperties propForm = clientProps();
    propForm.setWantUserPropToolData(true);
    auto sink = makeClient(rx);
    auto propSink = makeClient(rx, propForm);
    ASSERT_FALSE(sink->wantSlowPath());

    ToolData stamped;
    stamped.setLatency(OS::numClockCycles());
    TestMessage binary(stamped, "user bytes"), props, foreign, damaged(record(1, 5));
    props.userProps_m = {{"l", static_cast<INT64>(OS::numClockCycles())}};
    foreign.attachment_m = "from another sender";
    damaged.attachment_m.resize(damaged.attachment_m.size() - 4);  // ends inside the id
    testing::internal::CaptureStdout();
    for (TestMessage* msg : {&binary, &foreign, &damaged}) {
        sink->receive(*msg);
    }
    propSink->receive(props);
    const std::string out = testing::internal::GetCapturedStdout();

    for (TestClient* client : {sink.get(), propSink.get()}) {
        const auto& buckets = client->getRxStats(false).getLatencyBuckets();
        EXPECT_EQ(client->stat(P::NUM_LATENCY_MSGS), 1U);
        EXPECT_EQ(std::accumulate(buckets.begin(), buckets.end(), 0ULL), 1U);
        EXPECT_EQ(client->stat(P::NUM_TPUT_MSGS), client->stat(P::NUM_MSGS_RECV));
    }
    EXPECT_EQ(sink->stat(P::NUM_MSGS_RECV), 3U);
    EXPECT_EQ(sink->msgsRecv(), 3U);
    EXPECT_EQ(binary.decodes_m, 1) << "the fast path decodes once";
    const std::string text =
        "CLIENT 000001: Error decoding tool data. Cause: Invalid tool data.  Out of bounds "
        "parsing msg id";
    EXPECT_EQ(out, "\n\n" + text + "\n\n");
    EXPECT_TRUE(log.contains(log::LEVEL_ERROR, text));
    EXPECT_FALSE(damaged.getToolData()->hasData());
}

TEST(ReceiveFastPath, SenderClockAheadIsReportedAndSampledIntoTheLastBucket) {
    LogCapture log;
    StatsCustomizationProperties rx = measuring();
    rx.setWantLatency(true);
    rx.setWantLatencyPerMsg(true);
    auto client = makeClient(rx);
    ToolData ahead;
    ahead.setLatency(OS::numClockCycles() + 0x10000000000ULL);
    TestMessage msg(ahead);
    client->receive(msg);

    EXPECT_EQ(client->getRxStats(false).getLatencyBuckets().back(), 1U);
    char hex[32];
    std::snprintf(hex, sizeof hex, "%llx", static_cast<unsigned long long>(ahead.getLatency()));
    EXPECT_EQ(log.count("CLIENT 000001: Odd latency. Msg Recv:1 Curr Time:"), 1U);
    EXPECT_EQ(log.count("CLIENT 000001: Lat ID (recv ts) : " + std::string(hex) + " Lat (us) "), 1U)
        << "the huge unsigned latency shows as it is";
}

TEST(ReceiveFastPath, WithoutMeasuringEachMessageIsStillTimedAndTypedMessagesJudged) {
    ClientProperties props = clientProps();
    props.setMsgObjTypeCheck(true);
    auto client = makeClient(measuring(), props);
    ASSERT_FALSE(client->wantSlowPath()) << "the object type check is not a slow path feature";
    TestMessage typed(record(1, 1));
    typed.objectTypeReadable_m = true;
    typed.objectType_m = "t";
    typed.objectContent_m = "TEXT_MESSAGE";
    client->receive(typed);
    OS::sleepInUs(1000);
    client->receive(typed);
    const PerfStats& stats = client->getRxStats(false);
    EXPECT_EQ(client->stat(P::NUM_TPUT_MSGS), 2U) << "the rate counts every message";
    EXPECT_GT(stats.getEndTime(), stats.getStartTime());
    EXPECT_NE(stats.getStartTime(), 0U);
    EXPECT_EQ(client->stat(P::NUM_MSGS_RECEIVED_OBJECT_TYPE_OK), 2U);
    EXPECT_EQ(typed.decodes_m, 0) << "no feature needs the tool data";
}

TEST(ReceivePathChoice, SlowPathRunsOnlyWhenAFeatureNeedsItAndFanoutSilencesOrderChecks) {
    StatsCustomizationProperties rx = measuring();
    rx.setWantLatency(true);
    ClientProperties reflector = clientProps();
    reflector.setClientMode("reflect");
    auto sink = makeClient(rx);
    auto echo = makeClient(rx, reflector);
    TestMessage redelivered(record(1, 1));
    redelivered.redelivered_m = true;
    sink->receive(redelivered);
    echo->receive(redelivered);
    EXPECT_EQ(sink->stat(P::NUM_MSGS_REDELIVERED), 0U) << "counted only on the slow path";
    EXPECT_EQ(echo->stat(P::NUM_MSGS_REDELIVERED), 1U) << "even with order checking off";
    EXPECT_EQ(echo->reflects_m, 1);
    EXPECT_EQ(redelivered.decodes_m, 2) << "the slow path reuses the latency step's decode";

    // A damaged record is decoded and reported again by the slow path: the
    // first decode left it empty.
    TestMessage damaged(record(1, 2));
    damaged.attachment_m.resize(damaged.attachment_m.size() - 4);
    testing::internal::CaptureStdout();
    echo->receive(damaged);
    const std::string damagedOut = testing::internal::GetCapturedStdout();
    EXPECT_EQ(damaged.decodes_m, 2);
    const std::size_t firstReport = damagedOut.find("Error decoding tool data");
    EXPECT_NE(firstReport, std::string::npos);
    EXPECT_NE(firstReport, damagedOut.rfind("Error decoding tool data")) << damagedOut;

    rx.setFirstLastLatencyFanout(2);
    rx.setWantOrderCheckPublisherStreamNumber(true);
    rx.setWantOrderCheckTopicSequenceNumber(true);
    rx.setWantCidStats(true);
    auto fan = makeClient(rx);
    redelivered.topicSequence_m = 4;
    fan->receive(redelivered);
    EXPECT_EQ(fan->stat(P::NUM_MSGS_ORDER_CHECKED), 0U);
    EXPECT_TRUE(fan->getRxStats(false).getOrderData().empty());

    auto first = makeClient(measuring());
    first->setFirstSubscriptionAddTime(OS::getTimeInUs() - 5000, 10);
    testing::internal::CaptureStdout();
    first->receive(redelivered);
    first->receive(redelivered);
    const std::string out = testing::internal::GetCapturedStdout();
    EXPECT_TRUE(std::regex_match(
        out, std::regex("\n000001:  Time from 1st subscription add to 1st msg rx = \\d+ us,\n"
                        "Effective subscripton update rate = [0-9.e+]+ subscriptions/sec\n\n")))
        << "once: " << out;
}

TEST(ReceiveOrder, StreamAndTopicSequenceChecksCountEachMessageOnceAndLogEachError) {
    LogCapture log;
    StatsCustomizationProperties rx = measuring();
    rx.setWantOrderCheckPublisherStreamNumber(true);
    rx.setWantOrderCheckTopicSequenceNumber(true);
    auto client = makeClient(rx);
    struct Step {
        UINT64 id;
        INT64 topicSeq;
        bool redelivered, republished;
    } steps[] = {{1, 1, false, false}, {2, 2, false, false}, {4, 3, false, false},
                 {3, 3, false, false}, {3, 0, false, false}, {3, 0, true, false},
                 {3, 0, false, true},  {0, 0, false, false}};
    for (const Step& step : steps) {
        ToolData td = record(2, step.id);
        td.setRepublished(step.republished);
        TestMessage msg(td);
        msg.topicSequence_m = step.topicSeq;
        msg.redelivered_m = step.redelivered;
        client->receive(msg);
    }
    TestMessage noStream(record(-1, 7));
    client->receive(noStream);

    const auto& orderData = client->getRxStats(false).getOrderData();
    const SingleStreamOrderStats& stream = orderData.at(2);
    EXPECT_TRUE(stream.getLostMsgs().empty());
    EXPECT_EQ(stream.getOoOMsgs(), (std::map<UINT64, UINT64>{{3, 4}}));
    const std::vector<UINT64> three{3};
    EXPECT_EQ(stream.getDuplicateMsgs(), three);
    EXPECT_EQ(stream.getRedeliveredDuplicateMsgs(), three);
    EXPECT_EQ(stream.getRepublishedDuplicateMsgs(), three);
    EXPECT_EQ(orderData.at(P::STREAM_ID_TOPIC_SEQUENCE).getDuplicateMsgs(), three);
    EXPECT_EQ(orderData.count(P::STREAM_ID_DEFAULT), 1U);
    EXPECT_EQ(client->stat(P::NUM_MSGS_ORDER_CHECKED), 8U);  // all but the one without either
    EXPECT_EQ(client->stat(P::NUM_MSGS_REDELIVERED), 1U);
    EXPECT_EQ(log.count("CLIENT 000001: Order error detected for msg: "), 3U);  // 4, 3, 3
    EXPECT_TRUE(log.contains(log::LEVEL_WARNING, "CLIENT 000001: Order error detected for msg: 4"));
    EXPECT_TRUE(log.contains(log::LEVEL_WARNING,
                             "CLIENT 000001: Topic sequence number order error detected for msg: "
                             "3   with topic sequence number 3"));

    rx = measuring();
    rx.setWantOrderMemory(true);
    auto memory = makeClient(rx);
    TestMessage full(record(3, 0x1234567)), noId(record(3, 0)), none(record(-1, 5));
    for (TestMessage* msg : {&full, &noId, &none}) {
        memory->receive(*msg);
    }
    EXPECT_EQ(memory->getRxStats(false).getOrderMemory(),
              std::vector<UINT64>{(3ULL << 48) | 0x234567});
    EXPECT_TRUE(log.contains(log::LEVEL_ERROR,
                             "CLIENT 000001: order memory failed due to missing items.  Tooldata: "
                             " Stream ID               = 3\n"));
}

// A message as a publisher of this tool sends it with the payload check on.
struct CheckedMessage : TestMessage {
    CheckedMessage() : TestMessage(withCrcs(), "attached") {
        payload_m = "<body/>";
        msgId_m = "99";
        dump_m = "line one\nline two\n";
    }
    static ToolData withCrcs() {
        ToolData td = record(1, 7);
        td.setCrcXmlPayload(CRC::crc32("<body/>"));
        td.setCrcBinAttach(CRC::crc32("attached"));
        return td;
    }
};

TEST(ReceivePayloadCheck, EachPartIsComparedAndTheMessageJudgedAsAWhole) {
    LogCapture log;
    StatsCustomizationProperties rx = measuring();
    rx.setWantPayloadCheck(true);
    auto client = makeClient(rx);
    CheckedMessage good, badBody, badAttach, badUserData;
    good.userData_m = "abcdefghijklmnopqrstuvwxyz0123456789";
    badBody.payload_m = "<bodx/>";
    badAttach.attachment_m.back() = 'X';
    badUserData.userData_m = "hello";
    for (TestMessage* msg : {&good, &badBody, &badAttach, &badUserData}) {
        client->receive(*msg);
    }
    EXPECT_EQ(client->stat(P::NUM_MSGS_CRC_XMLPAYLOAD_OK), 3U) << "bad user data, good CRCs";
    EXPECT_EQ(client->stat(P::NUM_MSGS_CRC_XMLPAYLOAD_FAIL), 1U);
    EXPECT_EQ(client->stat(P::NUM_MSGS_CRC_BINATTACH_OK), 3U);
    EXPECT_EQ(client->stat(P::NUM_MSGS_CRC_BINATTACH_FAIL), 1U);
    EXPECT_EQ(client->stat(P::NUM_MSGS_CRC_USERDATA_OK), 1U);
    EXPECT_EQ(client->stat(P::NUM_MSGS_CRC_USERDATA_FAIL), 1U);
    EXPECT_EQ(client->stat(P::NUM_MSGS_CRC_OK), 1U);
    EXPECT_EQ(client->stat(P::NUM_MSGS_CRC_FAIL), 3U);

    char line[200];
    std::snprintf(line, sizeof line,
                  "SUB 000001: MsgId: 7, CRC XML payload error. Msg ID: 99. Received CRC: %lu, "
                  "Calculated CRC: %lu",
                  static_cast<unsigned long>(CRC::crc32("<body/>")),
                  static_cast<unsigned long>(CRC::crc32("<bodx/>")));
    EXPECT_TRUE(log.contains(log::LEVEL_WARNING, line));
    EXPECT_EQ(log.count("CLIENT 000001: MsgId: 7, CRC bin attachment error. Msg ID: 99. "
                        "Received CRC: "),
              1U);
    EXPECT_TRUE(log.contains(log::LEVEL_WARNING, "CLIENT 000001: MsgId: 7, UD Recv: hello"));
    EXPECT_EQ(log.count("line two"), 3U) << "the dump of each failed message, line by line";
}

TEST(ReceivePayloadCheck, RecordOnlyAttachmentsAndMissingBodiesAreNotFailures) {
    StatsCustomizationProperties rx = measuring();
    rx.setWantPayloadCheck(true);
    auto client = makeClient(rx);
    ToolData td = record(1, 3);
    td.setCrcBinAttach(12345);  // present, but nothing follows the record
    TestMessage recordOnly(td);
    client->receive(recordOnly);
    EXPECT_EQ(client->stat(P::NUM_MSGS_CRC_OK), 1U);
    EXPECT_EQ(client->stat(P::NUM_MSGS_CRC_BINATTACH_OK), 0U);

    td = record(1, 4);
    td.setCrcXmlPayload(CRC::crc32("<b/>"));
    TestMessage bodyCrc(td);
    client->receive(bodyCrc);  // no body: nothing to judge
    EXPECT_EQ(client->stat(P::NUM_MSGS_CRC_OK) + client->stat(P::NUM_MSGS_CRC_FAIL), 1U);
    bodyCrc.payload_m = "<b/>";
    client->receive(bodyCrc);
    EXPECT_EQ(client->stat(P::NUM_MSGS_CRC_OK), 2U) << "a body CRC alone is judged";

    // In the property form the whole attachment is user contents.
    ClientProperties propForm = clientProps();
    propForm.setWantUserPropToolData(true);
    auto props = makeClient(rx, propForm);
    TestMessage msg;
    msg.attachment_m = "all mine";
    msg.userProps_m = {{"b", static_cast<INT64>(CRC::crc32("all mine"))}};
    props->receive(msg);
    EXPECT_EQ(props->stat(P::NUM_MSGS_CRC_BINATTACH_OK), 1U);
}

TEST(ReceiveCounters, PrioritiesConsumerIdsPartsCacheAndDiscardIndication) {
    StatsCustomizationProperties rx = measuring();
    rx.setWantPerPriorityStats(true);
    rx.setWantPriorityStats(true);
    rx.setWantCidStats(true);
    rx.setWantFullMsgInspection(true);
    rx.setWantCacheMsgStats(true);
    rx.setWantDIStats(true);
    auto client = makeClient(rx);
    TestMessage live, cached, suspect;
    live.priority_m = 4;
    live.cids_m = {7, 9};
    live.discardIndication_m = true;
    live.payload_m = "<x/>";
    cached.priority_m = 10;
    cached.cids_m = {7};
    cached.cacheMsg_m = true;
    suspect.cacheMsg_m = suspect.suspectMsg_m = true;
    for (TestMessage* msg : {&live, &cached, &suspect}) {
        client->receive(*msg);
    }
    const PerfStats& stats = client->getRxStats(false);
    EXPECT_EQ(client->stat(P::NUM_MSGS_PRI_4), 1U);
    EXPECT_EQ(stats.getSubPriorityStatMap(), (std::map<int, long long>{{-1, 1}, {4, 1}, {10, 1}}));
    EXPECT_EQ(stats.getCidStatsMap(), (std::map<unsigned int, int>{{7, 2}, {9, 1}}));
    EXPECT_EQ(client->stat(P::NUM_MSGS_W_XML_PAYLOAD) * 10 + client->stat(P::NUM_MSGS_W_CID), 12U);
    EXPECT_EQ(client->stat(P::NUM_LIVE_MSGS_RECV), 1U);
    EXPECT_EQ(client->stat(P::NUM_CACHE_MSGS_RECV), 2U);
    EXPECT_EQ(client->stat(P::NUM_CACHE_SUSPECT_RECV), 1U);
    EXPECT_EQ(client->stat(P::NUM_MSGS_DISCARD_INDICATION), 1U);
}

TEST(ReceiveCounters, StructuredAndTypedMessageChecks) {
    StatsCustomizationProperties rx = measuring();
    rx.setWantStructMsgCheck(true);
    ClientProperties props = clientProps();
    props.setMsgObjTypeCheck(true);
    auto client = makeClient(rx, props);
    TestMessage msg;
    client->receive(msg);  // kind unreadable: not judged
    client->structuredMsgOk_m = false;
    client->receive(msg);
    EXPECT_EQ(client->stat(P::NUM_MSGS_CRC_SDM_OK) + client->stat(P::NUM_MSGS_CRC_OK), 2U);
    EXPECT_EQ(client->stat(P::NUM_MSGS_CRC_SDM_FAIL) + client->stat(P::NUM_MSGS_CRC_FAIL), 2U);
    EXPECT_EQ(client->stat(P::NUM_MSGS_RECEIVED_OBJECT_TYPE_OK) +
                  client->stat(P::NUM_MSGS_RECEIVED_OBJECT_TYPE_FAIL),
              0U);

    const std::pair<const char*, const char*> typed[] = {
        {"b", "123"},     {"t", "TEXT_MESSAGE"}, {"s", "STREAM_MESSAGE"},
        {"m", "MESSAGE"},  // pass
        {"b", "1234"},    {"t", "MESSAGE"},      {"x", "123"},
        {"", "MESSAGE"}};
    msg.objectTypeReadable_m = true;
    for (const auto& [type, content] : typed) {
        msg.objectType_m = type;
        msg.objectContent_m = content;
        client->receive(msg);
    }
    msg.objectType_m = "t";
    msg.objectContent_m = "TEXT_MESSAGE";
    msg.objectContentReadable_m = false;
    client->receive(msg);
    EXPECT_EQ(client->stat(P::NUM_MSGS_RECEIVED_OBJECT_TYPE_OK), 4U);
    EXPECT_EQ(client->stat(P::NUM_MSGS_RECEIVED_OBJECT_TYPE_FAIL), 5U);
}

TEST(ReceiveDump, DumpIsFramedOnStandardOutput) {
    ClientProperties props = clientProps();
    props.setWantMsgDump(true);
    props.setMsgDumpBufferSize(5);
    props.setWantMsgDumpTimeStamp(true);
    auto client = makeClient(measuring(), props);
    TestMessage msg(record(2, 8)), empty;
    msg.dump_m = "DUMP TEXT";
    testing::internal::CaptureStdout();
    client->receive(msg);
    client->receive(empty);
    const std::string out = testing::internal::GetCapturedStdout();
    EXPECT_TRUE(std::regex_match(
        out, std::regex("Time: \\d{4}-\\d\\d-\\d\\dT\\d\\d:\\d\\d:\\d\\dZ \n"
                        "\\^{18} Start Message \\^{27}\nDUMP \nTool Data:\n"
                        " Stream ID               = 2\n Msg ID                  = 8\n\n"
                        "\\^{18} End Message \\^{27}\nSkipping dump of null message.\n")))
        << out;
}

TEST(ReceiveSlowSubscriber, DelayComesOnlyWhileCountedEnabledAndConnected) {
    LogCapture log;
    ClientProperties props = clientProps();
    props.setSlowSubDelayInMillis(1);
    props.setSlowSubDelayCount(3);
    auto client = makeClient(measuring(), props);
    TestMessage msg;
    client->receive(msg);  // not connected
    client->connect();
    client->slowSubEnable(false);
    client->receive(msg);
    EXPECT_EQ(client->slowSubCount(), 3) << "no delay, none counted down";
    client->slowSubEnable(true);
    for (int i = 0; i < 5; ++i) {
        client->receive(msg);
    }
    EXPECT_EQ(client->slowSubDelays_m, 3);
    EXPECT_EQ(client->slowSubCount(), 0);
    EXPECT_EQ(log.count("CLIENT 000001: Done Sleeping for slow subscriber."), 3U);
    EXPECT_EQ(client->stat(P::NUM_MSGS_RECV), 7U);
}

TEST(ReceiveFirstToLast, CopiesOfEachIdFeedTheFanoutStatistics) {
    StatsCustomizationProperties rx = measuring();
    rx.setFirstLastLatencyFanout(2);
    auto client = makeClient(rx);
    for (UINT64 id : {1, 1, 2, 2, 3}) {
        TestMessage copy(record(1, id));
        client->receive(copy);
    }
    EXPECT_EQ(client->getRxStats(true).getStatElement(P::NUM_LATENCY_MSGS), 2U);
    EXPECT_EQ(client->stat(P::NUM_LATENCY_MSGS), 0U) << "no send time stamps are sampled";
    EXPECT_EQ(client->stat(P::NUM_MSGS_RECV), 5U);
}

TEST(ReceiveLastMessage, HistoryKeepsTheLatestRecordsAndReadersGetCopies) {
    StatsCustomizationProperties rx = measuring();
    rx.setWantPerMessageDetails(true);
    rx.setPerMessageDetailsQueueDepth(3);
    auto detailsOnly = makeClient(rx);
    EXPECT_FALSE(detailsOnly->wantSlowPath()) << "details alone do not open the slow path";
    rx.setWantCidStats(true);  // the slow path, for another reason
    auto client = makeClient(rx);
    rx.setWantPerMessageDetails(false);
    auto noDetails = makeClient(rx);

    std::atomic<bool> done{false};
    std::thread reader([&] {  // any thread may read while messages arrive
        while (!done) {
            // Before the first message the history holds the cleared record;
            // a filled one must come whole: its id and its size together.
            for (const auto& d : client->getLastMessagesDetails(3)) {
                if (!d.getMessageId().empty()) {
                    EXPECT_EQ(d.getBinaryPayloadSize(), 5) << "whole copies";
                }
            }
        }
    });
    TestMessage msg;
    msg.attachment_m = "12345";
    for (int i = 1; i <= 5; ++i) {
        msg.msgId_m = std::to_string(i);
        for (TestClient* each : {client.get(), detailsOnly.get(), noDetails.get()}) {
            each->receive(msg);
        }
    }
    done = true;
    reader.join();

    auto ids = [&](int num) {
        std::string text;
        for (const auto& d : client->getLastMessagesDetails(num)) {
            text += d.getMessageId();
        }
        return text;
    };
    EXPECT_EQ(ids(2) + "," + ids(10) + "," + ids(1) + "," + ids(0), "45,345,5,5");
    EXPECT_EQ(client->getLastMessageDetails()->getBinaryPayloadSize(), 5);
    const auto unfilled = detailsOnly->getLastMessagesDetails(3);
    ASSERT_EQ(unfilled.size(), 1U);
    EXPECT_EQ(unfilled[0].getBinaryPayloadSize(), -1) << "the cleared record, never filled";
    EXPECT_EQ(noDetails->getLastMessageDetails(), nullptr);
    EXPECT_TRUE(noDetails->getLastMessagesDetails(3).empty());
}

}  // namespace
}  // namespace zorvane::pubsub
