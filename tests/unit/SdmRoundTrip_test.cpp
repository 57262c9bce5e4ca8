// Structured messages as a run sends and checks them: "-sdm=" names
// description files (or none, for the canned catalogue), the publishing
// client builds each message from its description, the embedded broker
// carries it to a second client, and that client's slow path checks it and
// counts the result. A malformed description file stops the run with a text
// that names the file, the line and what was expected there.
#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "common/DiskUtils.h"
#include "common/PubSubException.h"
#include "common/PublishProperties.h"
#include "common/StatsCustomizationProperties.h"
#include "tests/unit/CliTestSupport.h"
#include "tests/unit/ClientProbe.h"
#include "tests/unit/ThrownText.h"
#include "tests/unit/ZcoreTestSupport.h"

namespace zorvane::pubsub {
namespace {

std::string sdmFile(const std::string& name) {
    return std::string(VEXLOAD_TEST_DATA_DIR) + "/sdm/" + name;
}

// One file for each group of the description language. headers.sdm must
// stay first: its user data names id 50.
const std::vector<std::string> DESCRIPTION_FILES = {
    "headers.sdm", "integers.sdm", "text.sdm", "floats.sdm", "containers.sdm", "destinations.sdm"};

std::string sdmOption(const std::vector<std::string>& files) {
    std::string option = "-sdm=";
    for (const std::string& file : files) {
        option += (option.size() > 5 ? "," : "") + sdmFile(file);
    }
    return option;
}

class SdmRoundTripTest : public DirectMessagingFixture {
  protected:
    ClientProbe& connect(INT32 clientId, const StatsCustomizationProperties& stats,
                         const std::string& topic = "") {
        ClientProperties props = defaultClientProps();
        props.setClientMode("sink");
        return connectProbe(clientId, props, stats, topic);
    }

    // Sends every message of the list rounds times, in order, as a publisher
    // thread walks it, and waits until the receiver has analysed them all.
    static void publishAll(ClientProbe& tx, std::vector<MsgProperties>& msgs, const ClientProbe& rx,
                           int rounds = 1) {
        for (int round = 0; round < rounds; ++round) {
            for (MsgProperties& msg : msgs) {
                tx.publishMsg(&msg, 0);
            }
        }
        const UINT64 sent = msgs.size() * static_cast<UINT64>(rounds);
        EXPECT_TRUE(waitFor([&] { return rx.msgsRecv() >= sent; }));
    }

    // The receiver's statistics once its context thread has ended: they are
    // written by that thread without a lock, and the last message's counts
    // may still be under way when its arrival shows.
    const PerfStats& finalRxStats(ClientProbe& rx) {
        context_mp->stop();
        return rx.getRxStats(false);
    }

    static std::vector<MsgProperties> messagesOf(const PublishProperties& pub) {
        std::vector<std::vector<MsgProperties>> arrays;
        DiskUtils::genMsgArray(pub, arrays, -1);
        return arrays.empty() ? std::vector<MsgProperties>() : arrays.front();
    }
};

TEST_F(SdmRoundTripTest, EachDescriptionFileArrivesIntactThroughTheBroker) {
    const CliProperties run = test::parsedStore({sdmOption(DESCRIPTION_FILES), "-ptl=sdm/files"});
    const StatsCustomizationProperties stats(run);
    ASSERT_TRUE(stats.getWantStructMsgCheck());
    ASSERT_EQ(stats.getSdmPropsList().size(), DESCRIPTION_FILES.size());
    const PublishProperties pub(run);
    std::vector<MsgProperties> msgs = messagesOf(pub);
    ASSERT_EQ(msgs.size(), DESCRIPTION_FILES.size());

    ClientProbe& rx = connect(2, stats, "sdm/files");
    ClientProbe& tx = connect(1, stats);
    tx.setPublishProps(pub, 0, "");
    // Twice over the list: the reused library message carries nothing of
    // the message before into the next.
    publishAll(tx, msgs, rx, 2);

    const PerfStats& got = finalRxStats(rx);
    EXPECT_EQ(got.getStat(PerfStats::NUM_MSGS_CRC_SDM_OK), 2 * msgs.size());
    EXPECT_EQ(got.getStat(PerfStats::NUM_MSGS_CRC_OK), 2 * msgs.size());
    EXPECT_EQ(got.getStat(PerfStats::NUM_MSGS_CRC_SDM_FAIL), 0U);
    EXPECT_EQ(log_m.count("Msg"), 0U) << log_m.all().back();
}

TEST_F(SdmRoundTripTest, TheCannedCatalogueArrivesIntactThroughTheBroker) {
    const CliProperties run = test::parsedStore({"-sdm=", "-ptl=sdm/canned"});
    const StatsCustomizationProperties stats(run);
    ASSERT_TRUE(stats.getWantStructMsgCheck());
    const PublishProperties pub(run);
    std::vector<MsgProperties> msgs = messagesOf(pub);
    ASSERT_EQ(msgs.size(), 17U);  // 1 to 21 without 5, 10, 16 and 17

    ClientProbe& rx = connect(2, stats, "sdm/canned");
    ClientProbe& tx = connect(1, stats);
    tx.setPublishProps(pub, 0, "");
    publishAll(tx, msgs, rx);

    const PerfStats& got = finalRxStats(rx);
    EXPECT_EQ(got.getStat(PerfStats::NUM_MSGS_CRC_SDM_OK), msgs.size());
    EXPECT_EQ(got.getStat(PerfStats::NUM_MSGS_CRC_SDM_FAIL), 0U);
}

TEST_F(SdmRoundTripTest, AMessageThatDiffersFromItsDescriptionCountsAsFailedAndSaysWhy) {
    // The sender describes ids 50 and 51 by headers.sdm and integers.sdm;
    // the receiver knows only id 50, and by another file.
    const CliProperties sending =
        test::parsedStore({sdmOption({"headers.sdm", "integers.sdm"}), "-ptl=sdm/differ"});
    const CliProperties receiving = test::parsedStore({sdmOption({"integers.sdm"})});
    const StatsCustomizationProperties stats(receiving);
    const PublishProperties pub(sending);
    std::vector<MsgProperties> msgs = messagesOf(pub);

    ClientProbe& rx = connect(2, stats, "sdm/differ");
    ClientProbe& tx = connect(1, stats);
    tx.setPublishProps(pub, 0, "");
    publishAll(tx, msgs, rx);

    const PerfStats& got = finalRxStats(rx);
    EXPECT_EQ(got.getStat(PerfStats::NUM_MSGS_CRC_SDM_FAIL), 2U);
    EXPECT_EQ(got.getStat(PerfStats::NUM_MSGS_CRC_FAIL), 2U);
    EXPECT_EQ(got.getStat(PerfStats::NUM_MSGS_CRC_SDM_OK), 0U);
    EXPECT_TRUE(log_m.contains(log::LEVEL_ERROR, "Msg# 50: Key not expected: body"));
    EXPECT_TRUE(log_m.contains(log::LEVEL_DEBUG,
                               "CLIENT 000002: sdm message ID received out of range. 51. "));
}

TEST_F(SdmRoundTripTest, AStructuredMessageThatCannotBeBuiltIsNotSent) {
    ClientProbe& tx = connect(1, StatsCustomizationProperties());
    tx.setPublishProps(PublishProperties(), 0, "");
    MsgProperties msg;
    msg.setTopic("sdm/never");
    SdmProperties streamInProperties;  // the defaults: a stream in the user properties
    streamInProperties.setSdmMsgId(50);
    msg.setSdmMsgProps(streamInProperties);
    EXPECT_EQ(test::messageOf([&] { tx.publishMsg(&msg, 0); }),
              "CLIENT 000001: Unable to build msg contents in SDM message type: 50\n");
    EXPECT_TRUE(log_m.contains(log::LEVEL_ERROR,
                               "Msg# 50: Invalid config.  Cannot create stream in user props"));
    SdmProperties reserved;
    reserved.setSdmMsgId(5);  // a canned number without a message
    msg.setSdmMsgProps(reserved);
    EXPECT_EQ(test::messageOf([&] { tx.publishMsg(&msg, 0); }),
              "CLIENT 000001: Unable to set msg contents in SDM message type: 5\n");
}

TEST(SdmDescriptionFiles, AMalformedFileNamesItselfTheLineAndWhatWasExpected) {
    struct Case {
        const char* file;
        const char* fault;  // behind "<path>:"
    };
    const Case cases[] = {
        {"no_equals.sdm",
         "3: Line not understood.  Didn't find '=' in line: type (expected key=value after "
         "\"msg:\")"},
        {"container_type.sdm", "2: Type not understood: list (expected \"stream\" or \"map\")"},
        {"header_key.sdm",
         "3: Line not understood.  Didn't understand msg property: priority=1 (expected one of "
         "replyTo, replyToDestType, correlationId, messageId, messageType, timestamp, "
         "topicSequence, userData, sequenceNumber or senderId after \"hdr:\")"},
        {"reply_to_type.sdm",
         "1: Reply To Destination Type not supported:replyToDestType=Queue (expected topic, "
         "queue, tempTopic or tempQueue)"},
        {"map_field_name.sdm",
         "5: Line not understood.  Couldn't find name: int32 value=5 (expected a map field: type "
         "keyword, \"name=\" and the name, then \"value=\")"},
        {"field_value.sdm",
         "3: Line not understood.  Couldn't find value: int32 5 (expected a field: type keyword, "
         "then \"value=\" and the value)"},
        {"field_type.sdm",
         "3: Field Type not supported:long (expected bool, uint8, int8, uint16, int16, uint32, "
         "int32, uint64, int64, wchar, string, bytearray, float, double, map, stream, null, "
         "destination or qwf)"},
        {"bytearray_digits.sdm",
         "3: Byte array value is not hexadecimal: 0g (expected two hexadecimal digits for each "
         "byte)"},
        {"destination_flag.sdm",
         "3: No valid flag found after topic end: (expected \"DT=\" and a destination type "
         "behind \"<TOPIC_END/>\")"},
        {"destination_type.sdm",
         "3: Destination Type not supported:DT=Queue (expected DT= with topic, queue, tempTopic "
         "or tempQueue)"},
    };
    for (const Case& c : cases) {
        const std::string path = sdmFile(std::string("bad/") + c.file);
        // A good file ahead of the bad one does not hide it.
        EXPECT_EQ(test::messageOf([&] {
                      DiskUtils::genSdmPropsListFromFiles({sdmFile("integers.sdm"), path});
                  }),
                  path + ":" + c.fault);
    }
    // The option is where a run meets the fault, before any client exists.
    const CliProperties run = test::parsedStore({sdmOption({"bad/field_type.sdm"})});
    EXPECT_EQ(test::messageOf([&] { StatsCustomizationProperties stats(run); }),
              sdmFile("bad/field_type.sdm") + ":" + cases[6].fault);
}

}  // namespace
}  // namespace zorvane::pubsub
