// Descriptions of each kind built into a message and checked against it;
// descriptions that cannot be built fail; a received message that differs in
// one place fails its check with the line that names the difference.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "client/zcore/SdmMessageBuilder.h"
#include "tests/unit/LogCapture.h"
#include "zorclient/tests/MsgTestSupport.h"

namespace zorvane::pubsub {
namespace {

using zorclient_test::NoLeakTest;
using zorclient_test::ScopedMsg;

SdmProperties describe(int id, const std::vector<std::string>& lines) {
    SdmProperties sdm;
    sdm.parseInputString(lines);
    sdm.setSdmMsgId(id);
    return sdm;
}

const std::vector<std::string> HEADERS = {
    "hdr: replyTo=reply/here", "hdr: replyToDestType=queue", "hdr: correlationId=corr",
    "hdr: messageId=mid",      "hdr: messageType=mtype",     "hdr: timestamp=1234",
    "hdr: topicSequence=99",   "hdr: sequenceNumber=0",      "hdr: senderId=me"};

std::vector<std::string> with(std::vector<std::string> lines,
                              const std::vector<std::string>& more) {
    lines.insert(lines.end(), more.begin(), more.end());
    return lines;
}

// Builds, checks the message and a duplicate of it; both must pass.
void expectRoundTrip(const SdmProperties& sdm) {
    ScopedMsg msg;
    ASSERT_EQ(0, SdmMessageBuilder::buildMsg(sdm, msg));
    EXPECT_EQ(0, SdmMessageBuilder::checkMsg(sdm, msg));
    ScopedMsg dup;
    zorClient_msg_free(dup.address());
    ASSERT_EQ(ZORCLIENT_OK, zorClient_msg_dup(msg, dup.address()));
    EXPECT_EQ(0, SdmMessageBuilder::checkMsg(sdm, dup));
}

class SdmMessageBuilderTest : public NoLeakTest {};

TEST_F(SdmMessageBuilderTest, EachKindOfDescriptionPassesItsOwnCheck) {
    LogCapture log(log::LEVEL_ERROR);
    const std::vector<std::string> everyType = {"bool name=b value=1",
                                                "uint8 name=u8 value=0x1ff",
                                                "int8 name=i8 value=-3",
                                                "uint16 name=u16 value=65535",
                                                "int16 name=i16 value=-300",
                                                "uint32 name=u32 value=7",
                                                "int32 name=i32 value=-7",
                                                "uint64 name=u64 value=12345678901",
                                                "int64 name=i64 value=-5",
                                                "wchar name=w value=Q",
                                                "string name=s value=hello there",
                                                "bytearray name=ba value=c0de01",
                                                "float name=f value=3.5",
                                                "double name=d value=98.76",
                                                "null name=n value=",
                                                "destination name=q value=a/b<TOPIC_END/>DT=queue",
                                                "destination name=t value=a/b",
                                                "qwf name=qw value=19",
                                                "map name=sm value=3",
                                                "stream name=ss value=2"};
    expectRoundTrip(describe(
        51, with(with({"msg: type=map", "msg: useBinaryAttachment=1"}, everyType), HEADERS)));
    expectRoundTrip(describe(52, with({"msg: type=map", "msg: useBinaryAttachment=0"}, everyType)));
    std::vector<std::string> stream = {"msg: type=stream", "msg: useBinaryAttachment=1"};
    for (const std::string& line : everyType) {
        stream.push_back(line.substr(0, line.find(' ')) + " " + line.substr(line.find("value=")));
    }
    expectRoundTrip(describe(53, with(stream, HEADERS)));
    expectRoundTrip(
        describe(54, {"msg: type=map", "msg: useBinaryAttachment=1", "map name=empty value=0"}));
    // Own user data: the id is compared with its first character.
    expectRoundTrip(describe('x', {"msg: type=map", "hdr: userData=xyz"}));
    EXPECT_TRUE(log.all().empty()) << log.all().front();
}

TEST_F(SdmMessageBuilderTest, AStreamInTheUserPropertiesCannotBeBuiltOrChecked) {
    LogCapture log(log::LEVEL_ERROR);
    const SdmProperties sdm = describe(60, {});
    ScopedMsg msg;
    EXPECT_EQ(-1, SdmMessageBuilder::buildMsg(sdm, msg));
    EXPECT_TRUE(log.contains("Msg# 60: Invalid config.  Cannot create stream in user props"));
    const zorClient_uint8_t id = 60;
    ASSERT_EQ(ZORCLIENT_OK, zorClient_msg_setUserData(msg, &id, 1));
    EXPECT_EQ(-1, SdmMessageBuilder::checkMsg(sdm, msg));
}

TEST_F(SdmMessageBuilderTest, ADifferenceInOnePlaceFailsWithItsLine) {
    LogCapture log(log::LEVEL_ERROR);
    const SdmProperties sent = describe(70, with({"msg: type=map", "msg: useBinaryAttachment=1",
                                                  "string name=s value=abc", "map name=m value=2"},
                                                 HEADERS));
    ScopedMsg msg;
    ASSERT_EQ(0, SdmMessageBuilder::buildMsg(sent, msg));

    EXPECT_EQ(-1, SdmMessageBuilder::checkMsg(
                      describe(70, {"msg: type=map", "msg: useBinaryAttachment=1",
                                    "hdr: correlationId=other", "hdr: replyTo=reply/here",
                                    "hdr: replyToDestType=topic", "string name=s value=abc"}),
                      msg));
    EXPECT_TRUE(log.contains("Msg 70: Found incorrect correlation ID=corr"));
    EXPECT_TRUE(log.contains("Msg 70: Did not find topic Destination"));

    EXPECT_EQ(-1, SdmMessageBuilder::checkMsg(
                      describe(70, {"msg: type=map", "msg: useBinaryAttachment=1",
                                    "string name=s value=abd", "map name=m value=2"}),
                      msg));
    EXPECT_TRUE(log.contains("String Equality failure  Exp: abd, Recv abc."));

    EXPECT_EQ(-1, SdmMessageBuilder::checkMsg(
                      describe(70, {"msg: type=map", "msg: useBinaryAttachment=1"}), msg));
    EXPECT_TRUE(log.contains("Msg# 70: Key not expected: m"));

    EXPECT_EQ(-1, SdmMessageBuilder::checkMsg(
                      describe(70, {"msg: type=map", "msg: useBinaryAttachment=1",
                                    "string name=s value=abc", "map name=m value=3"}),
                      msg));
    EXPECT_EQ(-1, SdmMessageBuilder::checkMsg(describe(70, {"msg: type=map"}), msg));
    EXPECT_TRUE(log.contains("Msg# 70: Did not find expected user property map"));
    EXPECT_EQ(-1, SdmMessageBuilder::checkMsg(
                      describe(71, {"msg: type=map", "msg: useBinaryAttachment=1",
                                    "string name=s value=abc", "map name=m value=2"}),
                      msg));
}

TEST_F(SdmMessageBuilderTest, AStreamMustEndWhereTheDescriptionEnds) {
    LogCapture log(log::LEVEL_ERROR);
    const SdmProperties sent = describe(80, {"msg: type=stream", "msg: useBinaryAttachment=1",
                                             "int32 value=1", "qwf value=20", "stream value=1"});
    ScopedMsg msg;
    ASSERT_EQ(0, SdmMessageBuilder::buildMsg(sent, msg));
    EXPECT_EQ(-1,
              SdmMessageBuilder::checkMsg(
                  describe(80, {"msg: type=stream", "msg: useBinaryAttachment=1", "int32 value=1"}),
                  msg));
    EXPECT_TRUE(log.contains("Msg# 80: Did not get EOS at end of expected fields."));
    EXPECT_EQ(-1,
              SdmMessageBuilder::checkMsg(
                  describe(80, {"msg: type=stream", "msg: useBinaryAttachment=1", "int32 value=1",
                                "qwf value=20", "stream value=1", "null value="}),
                  msg));
    EXPECT_TRUE(log.contains("Msg# 80: Not enough fields found in stream"));
    EXPECT_EQ(-1, SdmMessageBuilder::checkMsg(
                      describe(80, {"msg: type=stream", "msg: useBinaryAttachment=1",
                                    "int32 value=1", "qwf value=21", "stream value=1"}),
                      msg));
    EXPECT_EQ(1u, log.count("QWF Equality failure  Exp: "));
}

TEST_F(SdmMessageBuilderTest, ContainersThatAreNotDescribedMustBeAbsent) {
    LogCapture log(log::LEVEL_ERROR);
    const SdmProperties sdm =
        describe(90, {"msg: type=map", "msg: useBinaryAttachment=1", "int8 name=a value=1"});
    ScopedMsg msg;
    ASSERT_EQ(0, SdmMessageBuilder::buildMsg(sdm, msg));
    zorClient_opaqueContainer_pt props = nullptr;
    ASSERT_EQ(ZORCLIENT_OK, zorClient_msg_createUserPropertyMap(msg, &props, 0));
    zorClient_container_closeMapStream(&props);
    EXPECT_EQ(-1, SdmMessageBuilder::checkMsg(sdm, msg));
    EXPECT_TRUE(log.contains("Msg 90: Found unexpected User Property Map header"));
}

TEST_F(SdmMessageBuilderTest, FieldsCompareByTypeAndDestinationsByFamily) {
    LogCapture log(log::LEVEL_ERROR);
    SdmField expected;
    expected.type_m = SDM_FIELD_TYPE_DESTINATION;
    expected.value_m.destType = SDM_DEST_TYPE_TEMP_QUEUE;
    expected.text_m = std::make_shared<const std::string>("q/1");
    zorClient_field_t received{};
    received.type = ZORCLIENT_DESTINATION;
    received.value.dest = zorClient_destination_t{ZORCLIENT_QUEUE_DESTINATION, "q/1"};
    EXPECT_EQ(0, SdmMessageBuilder::checkField(expected, received));
    received.value.dest.destType = ZORCLIENT_QUEUE_TEMP_DESTINATION;
    EXPECT_EQ(-1, SdmMessageBuilder::checkField(expected, received));
    received.value.dest.destType = ZORCLIENT_TOPIC_DESTINATION;
    EXPECT_EQ(-1, SdmMessageBuilder::checkField(expected, received));

    SdmField number;
    number.type_m = SDM_FIELD_TYPE_INT16;
    number.value_m.int16 = -2;
    received.type = ZORCLIENT_UINT16;
    received.value.int16 = -2;
    EXPECT_EQ(-1, SdmMessageBuilder::checkField(number, received));
    received.type = ZORCLIENT_INT16;
    EXPECT_EQ(0, SdmMessageBuilder::checkField(number, received));

    SdmField unknown;
    unknown.type_m = static_cast<SdmFieldType>(19);
    received.type = static_cast<zorClient_fieldType_t>(19);
    EXPECT_EQ(-1, SdmMessageBuilder::checkField(unknown, received));
    ScopedMsg msg;
    zorClient_opaqueContainer_pt map = nullptr;
    ASSERT_EQ(ZORCLIENT_OK, zorClient_msg_createBinaryAttachmentMap(msg, &map, 0));
    EXPECT_EQ(-1, SdmMessageBuilder::addField(map, unknown, "x"));
    zorClient_container_closeMapStream(&map);
    EXPECT_EQ(2u, log.count("Field Type not supported:19"));
}

}  // namespace
}  // namespace zorvane::pubsub
