// The receive analysis of AbstractClient, driven through the test doubles:
// which path a message takes, what each feature counts and logs.
#include <gtest/gtest.h>

#include <atomic>
#include <cstdio>
#include <regex>
#include <string>
#include <thread>

#include "common/CRC.h"
#include "common/CliProperties.h"
#include "common/OS.h"
#include "common/PubSubException.h"
#include "tests/unit/LogCapture.h"
#include "tests/unit/TestClient.h"

namespace zorvane::pubsub {
namespace {

using P = PerfStats;
constexpr const char* GOOD_USER_DATA = "abcdefghijklmnopqrstuvwxyz0123456789";

ClientProperties clientProps() {
    return ClientProperties(CliProperties(CliProperties::VEX_LOAD, "1.0.0"));
}

// 1024 buckets of 2^11 ticks, no warm-up.
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

// A message whose attachment carries record.
struct Received {
    TestMessage msg;
    explicit Received(const ToolData& td, const std::string& userBytes = "") {
        msg.setAttachmentRecord(td, userBytes);
    }
};

UINT64 stat(TestClient& client, int id) {
    return client.getRxStats(false).getStatElement(static_cast<UINT32>(id));
}

UINT64 bucketTotal(const PerfStats& stats) {
    UINT64 total = 0;
    for (UINT64 count : stats.getLatencyBuckets()) {
        total += count;
    }
    return total;
}

void process(TestClient& client, TestMessage& msg) {
    client.processMessage(&msg, client.receiveStats());
}

TEST(ReceiveFastPath, LatencyFromBothToolDataFormsLandsInTheHistogram) {
    StatsCustomizationProperties rx = measuring();
    rx.setWantLatency(true);
    rx.setWantLatencyPerMsg(true);  // does not need the slow path
    auto sink = makeClient(rx);
    ASSERT_FALSE(sink->wantSlowPath());
    ToolData stamped;
    stamped.setLatency(OS::numClockCycles());
    Received binary(stamped, "user bytes");
    process(*sink, binary.msg);

    ClientProperties userPropForm = clientProps();
    userPropForm.setWantUserPropToolData(true);
    auto propClient = makeClient(rx, userPropForm);
    TestMessage props;
    props.userProps_m = {{"l", static_cast<INT64>(OS::numClockCycles())}};
    props.attachment_m = "not a record";
    process(*propClient, props);

    for (TestClient* client : {sink.get(), propClient.get()}) {
        const PerfStats& stats = client->getRxStats(false);
        EXPECT_EQ(stats.getStatElement(P::NUM_LATENCY_MSGS), 1U);
        EXPECT_EQ(bucketTotal(stats), 1U);
        EXPECT_EQ(stats.getStatElement(P::NUM_MSGS_RECV), 1U);
        EXPECT_EQ(stats.getStatElement(P::NUM_TPUT_MSGS), 1U);
        EXPECT_GT(stats.getEndTime(), 0U);
    }
    EXPECT_EQ(binary.msg.decodes_m, 1) << "the fast path decodes once";
    EXPECT_EQ(sink->reflects_m, 0);
}

TEST(ReceiveFastPath, MessagesWithoutOrWithDamagedToolDataAreCountedWithoutSample) {
    LogCapture log;
    StatsCustomizationProperties rx = measuring();
    rx.setWantLatency(true);
    auto client = makeClient(rx);
    TestMessage plain, damaged;
    plain.attachment_m = "from another sender";
    ToolData td = record(1, 5);
    damaged.setAttachmentRecord(td);
    damaged.attachment_m.resize(damaged.attachment_m.size() - 4);  // ends inside the id
    testing::internal::CaptureStdout();
    process(*client, plain);
    process(*client, damaged);
    const std::string out = testing::internal::GetCapturedStdout();

    const std::string text =
        "CLIENT 000001: Error decoding tool data. Cause: Invalid tool data.  Out of bounds "
        "parsing msg id";
    EXPECT_EQ(out, "\n\n" + text + "\n\n");
    EXPECT_TRUE(log.contains(log::LEVEL_ERROR, text));
    EXPECT_FALSE(damaged.getToolData()->hasData());
    EXPECT_EQ(stat(*client, P::NUM_LATENCY_MSGS), 0U);
    EXPECT_EQ(stat(*client, P::NUM_MSGS_RECV), 2U);
    EXPECT_EQ(stat(*client, P::NUM_TPUT_MSGS), 2U);
    EXPECT_EQ(client->msgsRecv(), 2U);
}

TEST(ReceiveFastPath, SenderClockAheadIsReportedAndSampledIntoTheLastBucket) {
    LogCapture log;
    StatsCustomizationProperties rx = measuring();
    rx.setWantLatency(true);
    rx.setWantLatencyPerMsg(true);
    auto client = makeClient(rx);
    ToolData ahead;
    ahead.setLatency(OS::numClockCycles() + 0x10000000000ULL);
    Received msg(ahead);
    process(*client, msg.msg);

    EXPECT_EQ(client->getRxStats(false).getLatencyBuckets().back(), 1U);
    const auto lines = log.all();
    const std::regex odd("CLIENT 000001: Odd latency\\. Msg Recv:1 Curr Time:\\d+ Send Time:" +
                         std::to_string(ahead.getLatency()) + " Diff:-\\d+");
    char hex[32];
    std::snprintf(hex, sizeof hex, "%llx", static_cast<unsigned long long>(ahead.getLatency()));
    // The huge unsigned latency shows in the per-message line as well.
    const std::regex perMsg("CLIENT 000001: Lat ID \\(recv ts\\) : " + std::string(hex) +
                            " Lat \\(us\\) +\\d+\\.\\d\\d");
    int found = 0;
    for (const auto& line : lines) {
        found += std::regex_match(line, odd) + 2 * std::regex_match(line, perMsg);
    }
    EXPECT_EQ(found, 3) << "one odd latency line and one per-message line";
}

TEST(ReceivePathChoice, SlowPathRunsOnlyWhenAFeatureNeedsItAndFanoutSilencesOrderChecks) {
    StatsCustomizationProperties rx = measuring();
    rx.setWantLatency(true);
    auto sink = makeClient(rx);
    Received redelivered(record(1, 1));
    redelivered.msg.redelivered_m = true;
    process(*sink, redelivered.msg);
    EXPECT_EQ(stat(*sink, P::NUM_MSGS_REDELIVERED), 0U) << "counted only on the slow path";

    ClientProperties reflector = clientProps();
    reflector.setClientMode("reflect");
    auto echo = makeClient(rx, reflector);
    process(*echo, redelivered.msg);
    EXPECT_EQ(echo->reflects_m, 1);
    EXPECT_EQ(stat(*echo, P::NUM_MSGS_REDELIVERED), 1U) << "even with order checking off";
    EXPECT_EQ(redelivered.msg.decodes_m, 3) << "latency and slow path each decode";

    StatsCustomizationProperties fanout = measuring();
    fanout.setFirstLastLatencyFanout(2);
    fanout.setWantOrderCheckPublisherStreamNumber(true);
    fanout.setWantOrderCheckTopicSequenceNumber(true);
    fanout.setWantCidStats(true);
    auto fan = makeClient(fanout);
    Received copy(record(1, 9));
    copy.msg.topicSequence_m = 4;
    process(*fan, copy.msg);
    process(*fan, copy.msg);
    EXPECT_EQ(stat(*fan, P::NUM_MSGS_ORDER_CHECKED), 0U);
    EXPECT_TRUE(fan->getRxStats(false).getOrderData().empty());
}

TEST(ReceivePathChoice, TimeToFirstMessageIsPrintedOnce) {
    auto sink = makeClient(measuring());
    sink->setFirstSubscriptionAddTime(OS::getTimeInUs() - 5000, 10);
    TestMessage msg;
    testing::internal::CaptureStdout();
    process(*sink, msg);
    process(*sink, msg);
    const std::string out = testing::internal::GetCapturedStdout();
    EXPECT_TRUE(std::regex_match(
        out, std::regex("\n000001:  Time from 1st subscription add to 1st msg rx = \\d+ us,\n"
                        "Effective subscripton update rate = [0-9.e+]+ subscriptions/sec\n\n")))
        << out;
}

TEST(ReceiveOrder, PublisherStreamAndTopicSequenceChecksCountAndLogEachError) {
    LogCapture log;
    StatsCustomizationProperties rx = measuring();
    rx.setWantOrderCheckPublisherStreamNumber(true);
    rx.setWantOrderCheckTopicSequenceNumber(true);
    auto client = makeClient(rx);
    struct Step {
        UINT64 id;
        INT64 topicSeq;
        bool redelivered, republished;
    };
    const Step steps[] = {{1, 1, false, false}, {2, 2, false, false}, {4, 3, false, false},
                          {3, 3, false, false}, {3, 0, false, false}, {3, 0, true, false},
                          {3, 0, false, true},  {0, 0, false, false}};
    for (const Step& step : steps) {
        ToolData td = record(2, step.id);
        td.setRepublished(step.republished);
        Received msg(td);
        msg.msg.topicSequence_m = step.topicSeq;
        msg.msg.redelivered_m = step.redelivered;
        process(*client, msg.msg);
    }
    Received noStream(record(-1, 7));
    process(*client, noStream.msg);

    const SingleStreamOrderStats& stream = client->getRxStats(false).getOrderData().at(2);
    EXPECT_TRUE(stream.getLostMsgs().empty());
    EXPECT_EQ(stream.getOoOMsgs(), (std::map<UINT64, UINT64>{{3, 4}}));
    EXPECT_EQ(stream.getDuplicateMsgs(), std::vector<UINT64>{3});
    EXPECT_EQ(stream.getRedeliveredDuplicateMsgs(), std::vector<UINT64>{3});
    EXPECT_EQ(stream.getRepublishedDuplicateMsgs(), std::vector<UINT64>{3});
    EXPECT_EQ(client->getRxStats(false).getOrderData().count(P::STREAM_ID_DEFAULT), 1U);
    const SingleStreamOrderStats& topic =
        client->getRxStats(false).getOrderData().at(P::STREAM_ID_TOPIC_SEQUENCE);
    EXPECT_EQ(topic.getDuplicateMsgs(), std::vector<UINT64>{3});
    // Eight messages with an id or a topic sequence, each counted once.
    EXPECT_EQ(stat(*client, P::NUM_MSGS_ORDER_CHECKED), 8U);
    EXPECT_EQ(stat(*client, P::NUM_MSGS_REDELIVERED), 1U);
    EXPECT_EQ(log.count("CLIENT 000001: Order error detected for msg: "), 3U);  // 4, 3, 3
    EXPECT_TRUE(log.contains(log::LEVEL_WARNING, "CLIENT 000001: Order error detected for msg: 4"));
    EXPECT_TRUE(log.contains(log::LEVEL_WARNING,
                             "CLIENT 000001: Topic sequence number order error detected for msg: "
                             "3   with topic sequence number 3"));
}

TEST(ReceiveOrder, OrderMemoryKeepsStreamAndIdOrLogsWhatIsMissing) {
    LogCapture log;
    StatsCustomizationProperties rx = measuring();
    rx.setWantOrderMemory(true);
    auto client = makeClient(rx);
    Received full(record(3, 0x1234567)), noId(record(3, 0)), noStream(record(-1, 5));
    for (TestMessage* msg : {&full.msg, &noId.msg, &noStream.msg}) {
        process(*client, *msg);
    }
    EXPECT_EQ(client->getRxStats(false).getOrderMemory(),
              std::vector<UINT64>{(3ULL << 48) | 0x234567});
    EXPECT_TRUE(log.contains(log::LEVEL_ERROR,
                             "CLIENT 000001: order memory failed due to missing items.  Tooldata: "
                             " Stream ID               = 3\n"));
}

// A message as a publisher of this tool sends it with the payload check on.
struct CheckedMessage : Received {
    CheckedMessage() : Received(withCrcs(), "attached") {
        msg.payload_m = "<body/>";
        msg.msgId_m = "99";
        msg.dump_m = "line one\nline two\n";
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

    CheckedMessage good;
    good.msg.userData_m = GOOD_USER_DATA;
    process(*client, good.msg);
    EXPECT_EQ(stat(*client, P::NUM_MSGS_CRC_XMLPAYLOAD_OK), 1U);
    EXPECT_EQ(stat(*client, P::NUM_MSGS_CRC_BINATTACH_OK), 1U);
    EXPECT_EQ(stat(*client, P::NUM_MSGS_CRC_USERDATA_OK), 1U);
    EXPECT_EQ(stat(*client, P::NUM_MSGS_CRC_OK), 1U);

    CheckedMessage badBody;
    badBody.msg.payload_m = "<bodx/>";
    process(*client, badBody.msg);
    CheckedMessage badAttach;
    badAttach.msg.attachment_m.back() = 'X';
    process(*client, badAttach.msg);
    CheckedMessage badUserData;
    badUserData.msg.userData_m = "hello";
    process(*client, badUserData.msg);
    EXPECT_EQ(stat(*client, P::NUM_MSGS_CRC_XMLPAYLOAD_FAIL), 1U);
    EXPECT_EQ(stat(*client, P::NUM_MSGS_CRC_XMLPAYLOAD_OK), 3U) << "bad user data, good CRCs";
    EXPECT_EQ(stat(*client, P::NUM_MSGS_CRC_BINATTACH_FAIL), 1U);
    EXPECT_EQ(stat(*client, P::NUM_MSGS_CRC_USERDATA_FAIL), 1U);
    EXPECT_EQ(stat(*client, P::NUM_MSGS_CRC_FAIL), 3U);

    char line[200];
    std::snprintf(line, sizeof line,
                  "SUB 000001: MsgId: 7, CRC XML payload error. Msg ID: 99. Received CRC: %lu, "
                  "Calculated CRC: %lu",
                  static_cast<unsigned long>(CRC::crc32("<body/>")),
                  static_cast<unsigned long>(CRC::crc32("<bodx/>")));
    EXPECT_TRUE(log.contains(log::LEVEL_WARNING, line));
    std::snprintf(line, sizeof line,
                  "CLIENT 000001: MsgId: 7, CRC bin attachment error. Msg ID: 99. Received CRC: "
                  "%lu, Calculated CRC: %lu",
                  static_cast<unsigned long>(CRC::crc32("attached")),
                  static_cast<unsigned long>(CRC::crc32("attacheX")));
    EXPECT_TRUE(log.contains(log::LEVEL_WARNING, line));
    EXPECT_TRUE(log.contains(log::LEVEL_WARNING, "CLIENT 000001: MsgId: 7, UD Recv: hello"));
    EXPECT_EQ(log.count("line two"), 3U) << "the dump of each failed message, line by line";
}

TEST(ReceivePayloadCheck, RecordOnlyAttachmentsAndMissingBodiesAreNotFailures) {
    StatsCustomizationProperties rx = measuring();
    rx.setWantPayloadCheck(true);
    auto client = makeClient(rx);
    ToolData td = record(1, 3);
    td.setCrcBinAttach(12345);  // present, but nothing follows the record
    Received recordOnly(td);
    process(*client, recordOnly.msg);
    EXPECT_EQ(stat(*client, P::NUM_MSGS_CRC_OK), 1U);
    EXPECT_EQ(
        stat(*client, P::NUM_MSGS_CRC_BINATTACH_OK) + stat(*client, P::NUM_MSGS_CRC_BINATTACH_FAIL),
        0U);

    ToolData bodyCrc = record(1, 4);
    bodyCrc.setCrcXmlPayload(CRC::crc32("<b/>"));
    Received noBody(bodyCrc);
    process(*client, noBody.msg);
    EXPECT_EQ(stat(*client, P::NUM_MSGS_CRC_OK) + stat(*client, P::NUM_MSGS_CRC_FAIL), 1U);
    noBody.msg.payload_m = "<b/>";
    process(*client, noBody.msg);
    EXPECT_EQ(stat(*client, P::NUM_MSGS_CRC_OK), 2U) << "a body CRC alone is judged";

    // In the property form the whole attachment is user contents.
    ClientProperties propForm = clientProps();
    propForm.setWantUserPropToolData(true);
    auto props = makeClient(rx, propForm);
    TestMessage msg;
    msg.attachment_m = "all mine";
    msg.userProps_m = {{"b", static_cast<INT64>(CRC::crc32("all mine"))}, {"m", 1}};
    process(*props, msg);
    EXPECT_EQ(stat(*props, P::NUM_MSGS_CRC_BINATTACH_OK), 1U);
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
        process(*client, *msg);
    }
    const PerfStats& stats = client->getRxStats(false);
    EXPECT_EQ(stats.getStatElement(P::NUM_MSGS_PRI_4), 1U);
    EXPECT_EQ(stats.getSubPriorityStatMap(), (std::map<int, long long>{{-1, 1}, {4, 1}, {10, 1}}));
    EXPECT_EQ(stats.getCidStatsMap(), (std::map<unsigned int, int>{{7, 2}, {9, 1}}));
    EXPECT_EQ(stats.getStatElement(P::NUM_MSGS_W_XML_PAYLOAD), 1U);
    EXPECT_EQ(stats.getStatElement(P::NUM_MSGS_W_CID), 2U);
    EXPECT_EQ(stats.getStatElement(P::NUM_LIVE_MSGS_RECV), 1U);
    EXPECT_EQ(stats.getStatElement(P::NUM_CACHE_MSGS_RECV), 2U);
    EXPECT_EQ(stats.getStatElement(P::NUM_CACHE_SUSPECT_RECV), 1U);
    EXPECT_EQ(stats.getStatElement(P::NUM_MSGS_DISCARD_INDICATION), 1U);
}

TEST(ReceiveCounters, StructuredAndTypedMessageChecks) {
    StatsCustomizationProperties rx = measuring();
    rx.setWantStructMsgCheck(true);
    ClientProperties props = clientProps();
    props.setMsgObjTypeCheck(true);
    auto client = makeClient(rx, props);
    TestMessage msg;
    process(*client, msg);  // kind unreadable: not judged
    client->structuredMsgOk_m = false;
    process(*client, msg);
    EXPECT_EQ(client->structChecks_m, 2);
    EXPECT_EQ(stat(*client, P::NUM_MSGS_CRC_SDM_OK) + stat(*client, P::NUM_MSGS_CRC_OK), 2U);
    EXPECT_EQ(stat(*client, P::NUM_MSGS_CRC_SDM_FAIL) + stat(*client, P::NUM_MSGS_CRC_FAIL), 2U);
    EXPECT_EQ(stat(*client, P::NUM_MSGS_RECEIVED_OBJECT_TYPE_OK) +
                  stat(*client, P::NUM_MSGS_RECEIVED_OBJECT_TYPE_FAIL),
              0U);

    const std::pair<const char*, const char*> good[] = {
        {"b", "123"}, {"t", "TEXT_MESSAGE"}, {"s", "STREAM_MESSAGE"}, {"m", "MESSAGE"}};
    const std::pair<const char*, const char*> bad[] = {
        {"b", "1234"}, {"t", "MESSAGE"}, {"x", "123"}, {"", "MESSAGE"}};
    msg.objectTypeReadable_m = true;
    for (const auto& [type, content] : good) {
        msg.objectType_m = type;
        msg.objectContent_m = content;
        process(*client, msg);
    }
    for (const auto& [type, content] : bad) {
        msg.objectType_m = type;
        msg.objectContent_m = content;
        process(*client, msg);
    }
    msg.objectType_m = "t";
    msg.objectContent_m = "TEXT_MESSAGE";
    msg.objectContentReadable_m = false;
    process(*client, msg);
    EXPECT_EQ(stat(*client, P::NUM_MSGS_RECEIVED_OBJECT_TYPE_OK), 4U);
    EXPECT_EQ(stat(*client, P::NUM_MSGS_RECEIVED_OBJECT_TYPE_FAIL), 5U);
}

TEST(ReceiveDump, DumpIsFramedOnStandardOutput) {
    ClientProperties props = clientProps();
    props.setWantMsgDump(true);
    props.setMsgDumpBufferSize(5);
    props.setWantMsgDumpTimeStamp(true);
    auto client = makeClient(measuring(), props);
    Received msg(record(2, 8));
    msg.msg.dump_m = "DUMP TEXT";
    TestMessage empty;
    testing::internal::CaptureStdout();
    process(*client, msg.msg);
    process(*client, empty);
    const std::string out = testing::internal::GetCapturedStdout();
    EXPECT_EQ(msg.msg.lastDumpLimit_m, 5U);
    EXPECT_TRUE(std::regex_match(
        out, std::regex("Time: \\d{4}-\\d\\d-\\d\\dT\\d\\d:\\d\\d:\\d\\dZ \n"
                        "\\^{18} Start Message \\^{27}\nDUMP \nTool Data:\n"
                        " Stream ID               = 2\n Msg ID                  = 8\n\n"
                        "\\^{18} End Message \\^{27}\nSkipping dump of null message.\n")))
        << out;
}

TEST(ReceiveSlowSubscriber, DelayComesOnlyWhileCountedEnabledAndConnected) {
    ClientProperties props = clientProps();
    props.setSlowSubDelayInMillis(1);
    props.setSlowSubDelayCount(3);
    auto client = makeClient(measuring(), props);
    TestMessage msg;
    process(*client, msg);  // not connected
    client->connect();
    client->slowSubEnable(false);
    process(*client, msg);
    EXPECT_EQ(client->slowSubCount(), 3) << "no delay, none counted down";
    client->slowSubEnable(true);
    for (int i = 0; i < 5; ++i) {
        process(*client, msg);
    }
    EXPECT_EQ(client->slowSubDelays_m, 3);
    EXPECT_EQ(client->slowSubCount(), 0);
    EXPECT_EQ(stat(*client, P::NUM_MSGS_RECV), 7U);
}

TEST(ReceiveFirstToLast, CopiesOfEachIdFeedTheFanoutStatistics) {
    StatsCustomizationProperties rx = measuring();
    rx.setFirstLastLatencyFanout(2);
    auto client = makeClient(rx);
    ASSERT_FALSE(client->wantSlowPath());
    for (UINT64 id : {1, 1, 2, 2, 3}) {
        Received copy(record(1, id));
        process(*client, copy.msg);
    }
    const PerfStats& fanout = client->getRxStats(true);
    EXPECT_EQ(fanout.getStatElement(P::NUM_LATENCY_MSGS), 2U);
    EXPECT_EQ(stat(*client, P::NUM_LATENCY_MSGS), 0U) << "no send time stamps are sampled";
    EXPECT_EQ(stat(*client, P::NUM_MSGS_RECV), 5U);

    Received later(record(1, 4));
    process(*client, later.msg);
    EXPECT_THROW(process(*client, later.msg), PubSubException) << "4 completes before 3";
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
            for (const auto& d : client->getLastMessagesDetails(3)) {
                EXPECT_EQ(d.getRedelivered(), -1);
            }
        }
    });
    TestMessage msg;
    msg.attachment_m = "12345";
    for (int i = 1; i <= 5; ++i) {
        msg.msgId_m = std::to_string(i);
        for (TestClient* each : {client.get(), detailsOnly.get(), noDetails.get()}) {
            process(*each, msg);
        }
    }
    done = true;
    reader.join();

    auto ids = [](const std::vector<LastMessageDetails>& details) {
        std::string text;
        for (const auto& d : details) {
            text += d.getMessageId();
        }
        return text;
    };
    EXPECT_EQ(ids(client->getLastMessagesDetails(2)), "45");
    EXPECT_EQ(ids(client->getLastMessagesDetails(10)), "345");
    EXPECT_EQ(ids(client->getLastMessagesDetails(1)), "5");
    EXPECT_EQ(ids(client->getLastMessagesDetails(0)), "5");
    auto last = client->getLastMessageDetails();
    ASSERT_NE(last, nullptr);
    EXPECT_EQ(last->getBinaryPayloadSize(), 5);
    const auto unfilled = detailsOnly->getLastMessagesDetails(3);
    ASSERT_EQ(unfilled.size(), 1U);
    EXPECT_EQ(unfilled[0].getBinaryPayloadSize(), -1) << "the cleared record, never filled";
    EXPECT_EQ(noDetails->getLastMessageDetails(), nullptr);
    EXPECT_TRUE(noDetails->getLastMessagesDetails(3).empty());
}

}  // namespace
}  // namespace zorvane::pubsub
