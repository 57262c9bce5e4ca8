#include "common/DiskUtils.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "common/MessageArrayBuilder.h"
#include "common/StatsCustomizationProperties.h"
#include "tests/unit/LogCapture.h"
#include "tests/unit/MessageContentTestSupport.h"
#include "tests/unit/ThrownText.h"

namespace zorvane::pubsub {
namespace {

using contenttest::tempFile;
using contenttest::withTopics;
using test::messageOf;

// ---- generated contents ----

TEST(DiskUtilsContent, BodiesAreTaggedChunksAndAttachmentsPlainChunks) {
    EXPECT_EQ(DiskUtils::generateXmlBody(7), "<x></x>");
    EXPECT_EQ(DiskUtils::generateXmlBody(14), "<x>xxxxxxx</x>");
    EXPECT_EQ(DiskUtils::generateXmlBody(15), "<x>:0000000</x>");
    EXPECT_EQ(DiskUtils::generateXmlBody(16), "<x>:0000000x</x>");
    const std::string big = DiskUtils::generateXmlBody(7 + 8 * 300 + 3);
    EXPECT_EQ(big.substr(big.size() - 15), ":000012bxxx</x>");
    EXPECT_EQ(messageOf([] { DiskUtils::generateXmlBody(6); }),
              "GenMsgList: Payload size 6 is too short.  Minimum is 7");
    // Attachments are the same chunks filled with "A".
    EXPECT_EQ(DiskUtils::generateAttachment(7), "AAAAAAA");
    EXPECT_EQ(DiskUtils::generateAttachment(16), ":0000000:0000001");
    EXPECT_EQ(DiskUtils::generateAttachment(19), ":0000000:0000001AAA");
    EXPECT_EQ(DiskUtils::generateAttachment(-4), "");
}

// ---- files ----

TEST(DiskUtilsFiles, ContentsAndLinesComeBackAsWritten) {
    const std::string contents("a b\r\n\tc\n\nlast\0byte", 18);
    const std::string path = tempFile("disk_lines.txt", contents);
    EXPECT_EQ(DiskUtils::readFile(path), contents);
    EXPECT_EQ(DiskUtils::readFileAsList(path),
              (std::vector<std::string>{"a b", "\tc", "", std::string("last\0byte", 9)}));
    const std::string dir = ::testing::TempDir();
    EXPECT_EQ(messageOf([&] { DiskUtils::readFile(dir + "none"); }),
              "File not found. " + dir + "none");
    EXPECT_EQ(messageOf([&] { DiskUtils::readFileAsList(dir); }), "File not found. " + dir);
    EXPECT_EQ(messageOf([&] { DiskUtils::writeFile(dir + "no/dir", ""); }),
              "File not able to be open. " + dir + "no/dir");
    std::string padded = " \t a \t b\t ";
    DiskUtils::trimSpaces(padded);
    EXPECT_EQ(padded, "a \t b");
}

// ---- message lists ----

std::vector<MsgProperties> onlyList(const PublishProperties& props, int minSize = -1) {
    std::vector<std::vector<MsgProperties>> lists;
    DiskUtils::genMsgArray(props, lists, minSize);
    EXPECT_EQ(lists.size(), 1u);
    return lists.empty() ? std::vector<MsgProperties>() : lists[0];
}

TEST(DiskUtilsGenMsgArray, CountsWithAndWithoutMixing) {
    struct Case {
        size_t bodies, attachments, topics;
        size_t plain, mixed;
    };
    const Case cases[] = {{2, 3, 0, 6, 6}, {2, 2, 0, 2, 4}, {3, 0, 3, 3, 9},
                          {0, 2, 1, 2, 2}, {3, 0, 1, 3, 3}, {2, 2, 2, 2, 8}};
    for (const Case& c : cases) {
        for (bool mix : {false, true}) {
            PublishProperties props = withTopics(std::vector<std::string>(c.topics, "t"));
            props.setXmlPayloadSizeList(std::vector<INT32>(c.bodies, 8));
            props.setAttachmentSizeList(std::vector<INT32>(c.attachments, 8));
            props.setAttachmentSizeWeightsList(std::vector<double>(c.attachments, 1.0));
            props.setWantToMixMessagePropertiesCollection(mix);
            EXPECT_EQ(onlyList(props).size(), mix ? c.mixed : c.plain)
                << c.bodies << "/" << c.attachments << "/" << c.topics << " mix " << mix;
        }
    }
}

// Each message as body index, topic index and queue index.
std::string walkOf(const std::vector<MsgProperties>& list) {
    std::string walk;
    for (const MsgProperties& msg : list) {
        walk += std::to_string(msg.getMsgBody().size() - 7) + msg.getTopic().back() +
                (msg.getQueue().empty() ? "" : msg.getQueue().substr(1)) + " ";
    }
    return walk;
}

TEST(DiskUtilsGenMsgArray, PartsAdvanceInStepOrLikeAnOdometer) {
    PublishProperties props = withTopics({"t0", "t1", "t2"});
    props.setXmlPayloadSizeList({7, 8, 9});
    EXPECT_EQ(walkOf(onlyList(props)), "00 11 22 ");
    // With mixing bodies turn fastest and queues slowest; every combination once.
    props.setWantToMixMessagePropertiesCollection(true);
    props.setQueuesList({"q0", "q1"});
    EXPECT_EQ(walkOf(onlyList(props)),
              "000 100 200 010 110 210 020 120 220 001 101 201 011 111 211 021 121 221 ");
}

TEST(DiskUtilsGenMsgArray, WeightsTravelWithTheirPartsAndMissingOnesAreNoticed) {
    LogCapture capture;
    PublishProperties props = withTopics({"a", "b"});
    props.setTopicsWeightsArray({{95.0, 5.0}});
    props.setAttachmentSizeList({16, 8});
    props.setAttachmentSizeWeightsList({0.5, 2.0});
    props.setQueuesList({"q"});
    props.setWantUniqueAttachmentContents(true);
    std::vector<MsgProperties> list = onlyList(props);
    ASSERT_EQ(list.size(), 2u);
    EXPECT_DOUBLE_EQ(list[0].getAggregateProbabilityWeight(), 47.5);
    EXPECT_DOUBLE_EQ(list[1].getAggregateProbabilityWeight(), 10.0);
    EXPECT_EQ(list[1].getOriginalAttachmentSize(), 8);
    EXPECT_TRUE(list[1].getWantUniqueAttachmentContents());
    ASSERT_EQ(capture.all().size(), 2u);  // one per message for the queue
    EXPECT_TRUE(capture.contains(log::LEVEL_NOTICE,
                                 "Missing probability weight value for message queues list. This "
                                 "message should NOT be displayed, but it's a better alternative "
                                 "to a segmentation fault."));
}

TEST(DiskUtilsGenMsgArray, MismatchedWeightListsAreRefused) {
    LogCapture capture;
    std::vector<std::vector<MsgProperties>> lists;
    PublishProperties props = withTopics({"a", "b"});
    props.setTopicsWeightsArray({{1.0}});
    EXPECT_THROW(DiskUtils::genMsgArray(props, lists, -1), PubSubException);
    EXPECT_EQ(capture.all().back(),
              "GenMsgList: List size mismatch at index 0; topic list size 2; weight list size 1");

    props.setTopicsWeightsArray({{1.0, 1.0}, {}});
    EXPECT_EQ(messageOf([&] { DiskUtils::genMsgArray(props, lists, -1); }),
              "Error reading documents to publish. caused by: Mismatch between the number of "
              "topic lists and number of weights lists.");
    EXPECT_EQ(capture.all().back(),
              "GenMsgList: Different number of topic lists (1) than weight lists (2)");

    props = withTopics({"a"});
    props.setXmlList({::testing::TempDir() + "missing.xml"});
    EXPECT_THROW(DiskUtils::genMsgArray(props, lists, -1), PubSubException);
    EXPECT_TRUE(lists.empty());
}

TEST(DiskUtilsGenMsgArray, StructuredMessagesComeFromTheCatalogueFilesOrStrings) {
    LogCapture capture;
    PublishProperties props = withTopics({"t"});
    props.setSdmAutoGenFlag(true);
    std::vector<MsgProperties> list = onlyList(props);
    std::string ids;
    for (const MsgProperties& msg : list) {
        ids += std::to_string(msg.getSdmMsgProps().getSdmId()) + " ";
    }
    EXPECT_EQ(ids, "1 2 3 4 6 7 8 9 11 12 13 14 15 18 19 20 21 ");
    EXPECT_EQ(capture.all().size(), 4u);
    EXPECT_EQ(capture.all()[0], "GenMsgList: Skipping unsupported SDM msg Id in list gen: 5");

    const std::string file = tempFile("list.sdm", "msg:type=map\n");
    props.setSdmFileList({file, file});
    list = onlyList(props);
    ASSERT_EQ(list.size(), 2u);
    EXPECT_EQ(list[1].getSdmMsgProps().getSdmId(), 51);
    EXPECT_TRUE(list[1].getSdmMsgProps().isMapMsg());

    props.setSdmAsStringList({"msg:useBinaryAttachment=1"});
    list = onlyList(props);
    ASSERT_EQ(list.size(), 1u);
    EXPECT_EQ(list[0].getSdmMsgProps().getSdmId(), 50);
    EXPECT_TRUE(list[0].getSdmMsgProps().useBinAttach());
}

TEST(DiskUtilsGenMsgArray, ListsGrowPastTheVectorAndEachTopicGroupGetsOne) {
    PublishProperties props = withTopics({"a", "b", "c"});
    EXPECT_EQ(onlyList(props, 0).size(), 3u);
    EXPECT_EQ(onlyList(props, 3).size(), 6u);
    EXPECT_EQ(onlyList(props, 13).size(), 24u);
    EXPECT_EQ(onlyList(props, 1000000).size(), 3u * 1024);  // ten doublings at most

    props.setTopicsArray({{"a"}, {"b", "c"}});
    props.setTopicsWeightsArray({{1.0}, {1.0, 1.0}});
    std::vector<std::vector<MsgProperties>> lists;
    DiskUtils::genMsgArray(props, lists, -1);
    ASSERT_EQ(lists.size(), 2u);
    EXPECT_EQ(lists[1][1].getTopic(), "c");
    DiskUtils::genMsgArray(PublishProperties(), lists, -1);
    EXPECT_TRUE(lists.empty());
}

// ---- the lists of a run ----

TEST(MessageArrayBuilder, ConfigurationsNoListCanServeAreRefusedInOrder) {
    StatsCustomizationProperties stats;
    stats.setWantStructMsgCheck(true);
    stats.setWantLatency(true);
    PublishProperties props = withTopics({});
    props.setSendVectorSize(4);
    props.setXmlPayloadSizeList({8});
    std::vector<std::vector<MsgProperties>> lists;
    const auto fault = [&] {
        return messageOf([&] { MessageArrayBuilder::buildMsgArray(props, stats, false, lists); });
    };
    EXPECT_EQ(fault(),
              "Cannot use order check, latency or payload check with structured messages.");
    stats.setWantLatency(false);
    EXPECT_EQ(fault(), "Only binary attachments are supported with vectored send.");
    props.setXmlPayloadSizeList({});
    stats.setWantUD(true);
    EXPECT_EQ(fault(), "Userdata not supported with vectored send.");
    stats.setWantUD(false);
    EXPECT_EQ(fault(), "Must use topic interface when using vectored send.");
    props.setSendVectorSize(0);
    EXPECT_EQ(fault(), "Must specify at least one routable component.  Ie topic or xml etc.");
    props.setQueuesList({"q"});
    EXPECT_EQ(fault(), "(nothing thrown)");
}

TEST(MessageArrayBuilder, VectoredSendsGetLongListsAndUserDataIsSetEverywhere) {
    StatsCustomizationProperties stats;
    PublishProperties props = withTopics({"a", "b"});
    props.setSendVectorSize(5);
    std::vector<std::vector<MsgProperties>> lists;
    MessageArrayBuilder::buildMsgArray(props, stats, false, lists);
    EXPECT_EQ(lists.at(0).size(), 8u);
    MessageArrayBuilder::buildMsgArray(props, stats, true, lists);
    EXPECT_EQ(lists.at(0).size(), 2u);

    props.setSendVectorSize(0);
    props.setTopicsArray({{"a"}, {"b", "c"}});
    props.setTopicsWeightsArray({{1.0}, {1.0, 1.0}});
    stats.setWantUD(true);
    MessageArrayBuilder::buildMsgArray(props, stats, false, lists);
    EXPECT_EQ(lists.at(1).at(1).getUserdata(), "abcdefghijklmnopqrstuvwxyz0123456789");
}

}  // namespace
}  // namespace zorvane::pubsub
