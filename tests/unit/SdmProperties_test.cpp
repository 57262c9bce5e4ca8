#include "common/SdmProperties.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tests/unit/MessageContentTestSupport.h"
#include "tests/unit/ThrownText.h"

namespace zorvane::pubsub {
namespace {

using contenttest::tempFile;
using test::messageOf;

SdmProperties parsed(const std::vector<std::string>& lines) {
    SdmProperties props;
    props.parseInputString(lines);
    return props;
}

// ---- message and header properties ----

TEST(SdmPropertiesMsgProperties, TypeRestartsTheFieldsAndOnlyZeroMeansNoAttachment) {
    // Text before a keyword is ignored; "msg:" wins over "hdr:".
    const SdmProperties map =
        parsed({"int32 value=1", "x) msg: type = map", "hdr:msg:useBinaryAttachment=false",
                "string name=s value=t"});
    EXPECT_TRUE(map.isMapMsg());
    EXPECT_TRUE(map.useBinAttach());
    EXPECT_TRUE(map.getStreamFields().empty());
    EXPECT_EQ(map.getMapFields().size(), 1u);

    const SdmProperties back = parsed({"msg:type=map", "string name=s value=t", "msg:type=stream"});
    EXPECT_TRUE(back.getMapFields().empty());
    EXPECT_FALSE(parsed({"msg:useBinaryAttachment=0"}).useBinAttach());
}

// ---- field lines ----

// The field lines of the text dump, which show each field's type and value.
std::string fieldsOf(const SdmProperties& props) {
    const std::string text = props.toString();
    const std::string head = " Structured Fields   : \n";
    return text.substr(text.find(head) + head.size());
}

TEST(SdmPropertiesFields, StreamValuesAreReadAsTheirTypeSays) {
    // clang-format off
    const SdmProperties props = parsed({
        "bool value=false", "bool value=0", "uint8 value=0x1ff", "int8 value=255",
        "uint16 value=65537", "int16 value=-2", "uint32 value=010", "int32 value=-0x10",
        "uint64 value=18446744073709551615", "int64 value=-5abc", "wchar value=\xc3\xa9",
        "wchar value=", "string value= two words ", "bytearray value=0aFf1", "float value=1.5",
        "double value=-2.25", "map value=3", "stream value=0x2", "null value=", "qwf value=19",
        "destination value=a/b", "destination value=q1<TOPIC_END/>DT=queue",
        "destination value=t<TOPIC_END/> DT=queue,x DT=tempTopic"});
    // clang-format on
    EXPECT_EQ(fieldsOf(props),
              " T: BOOL   V: true\n T: BOOL   V: false\n T: UINT8 V: 255\n T: INT8  V: -1\n"
              " T: UINT16 V: 1\n T: INT16  V: -2\n T: UINT32 V: 8\n T: INT32  V: -16\n"
              " T: UINT64 V: 18446744073709551615\n T: INT64  V: -5\n T: WCHAR V: -61\n"
              " T: WCHAR V: 0\n T: STRING V: two words\n T: BYTEARRAY V: 0aff\n"
              " T: FLOAT  V: 1.5\n T: DOUBLE V: -2.25\n T: MAP V: Num Loops = 3\n"
              " T: STREAM V: Num Loops = 2\n T: NULL V: -\n T: QWF V: :0000000:0000001AAA\n"
              " T: DESTINATION V: a/b / 0\n T: DESTINATION V: q1 / 1\n"
              " T: DESTINATION V: t / 2\n}");
    EXPECT_EQ(props.getStreamFields()[13].length_m, 2u);  // an odd last digit is dropped
    EXPECT_EQ(props.getStreamFields()[19].length_m, 19u);
}

TEST(SdmPropertiesFields, MapNamesEndBeforeTheBlankAheadOfValueAndTheLaterNameWins) {
    const SdmProperties props =
        parsed({"msg:type=map", "int32 name= b  value=1", "string name=a value=x",
                "int32 name=b value=2", "null name=value=", "string name=myvalue=x value=3"});
    const auto& fields = props.getMapFields();
    ASSERT_EQ(fields.size(), 4u);
    EXPECT_EQ(fields.at("b").value_m.int32, 2);
    EXPECT_EQ(fields.at("a").text(), "x");
    EXPECT_EQ(fields.count(""), 1u);  // "value=" straight behind "name=" leaves no name
    EXPECT_EQ(fields.at("m").text(), "x value=3");  // the first "value=" counts
}

// ---- files ----

TEST(SdmPropertiesFile, CommentsAndBlankLinesAreSkippedAndFaultsNameFileAndLine) {
    const std::string path =
        tempFile("desc.sdm", "# a map\r\n\n  msg:type=map\t\r\n string name=n value=v \nbad\n");
    SdmProperties props;
    EXPECT_EQ(messageOf([&] { props.parseInputFile(path); }),
              path +
                  ":5: Line not understood.  Couldn't find value: bad (expected a field: type "
                  "keyword, then \"value=\" and the value)");
    EXPECT_EQ(props.getMapFields().at("n").text(), "v");
    EXPECT_EQ(messageOf([&] { props.parseInputFile(path + ".none"); }),
              "File not found: " + path + ".none");

    // An empty file leaves every default.
    props = SdmProperties();
    props.parseInputFile(tempFile("empty.sdm", ""));
    EXPECT_EQ(props.toString(), SdmProperties().toString());
}

// ---- faults ----

// The fault of each kind of line, with its whole text, is checked on the
// description files of the round-trip test; here the faults no file there
// has, and the line numbers of a description given as strings.
TEST(SdmPropertiesFaults, EachFaultSaysWhatWasWrongAndWhere) {
    struct Case {
        std::vector<std::string> lines;
        std::string fault;  // the start of the text
    };
    const Case cases[] = {
        {{"msg:colour=red"},
         "line 1: Line not understood.  Didn't understand msg property: colour=red (expected"},
        {{"int32 name=x value=5"}, "line 1: Field Type not supported:int32 name=x (expected bool,"},
        {{"destination value=t<TOPIC_END/>DT=queue,"},
         "line 1: No valid flag found after topic end:DT=queue, (expected"},
        {{"qwf value=33554433"}, "line 1: QWF size too large: 33554433 (expected"},
        {{"qwf value=33554432", "qwf value=1"}, "line 2: QWF size too large: 1 (expected"},
    };
    for (const Case& c : cases) {
        const std::string fault = messageOf([&] { parsed(c.lines); });
        EXPECT_EQ(fault.substr(0, c.fault.size()), c.fault) << fault;
    }
    // A replaced map field gives its QWF share back.
    EXPECT_EQ(
        messageOf([] {
            parsed({"msg:type=map", "qwf name=q value=33554432", "qwf name=q value=33554432"});
        }),
        "(nothing thrown)");
}

// ---- text ----

TEST(SdmPropertiesText, HeaderValuesAndMapFieldsShowInTheDump) {
    SdmProperties props = parsed(
        {"msg:type=map", "msg:useBinaryAttachment=1", "hdr:replyTo = r/1",
         "hdr:replyToDestType=tempQueue", "hdr:correlationId=c", "hdr:messageId=m",
         "hdr:messageType=t", "hdr:timestamp=010", "hdr:topicSequence=-3", "hdr:userData=ud x",
         "hdr:sequenceNumber=0x10", "hdr:senderId=me", "bool name=z value=1",
         "destination name=d value=q<TOPIC_END/>DT=queue", "bytearray name=b value=00ff"});
    props.setSdmMsgId(50);
    // Header numbers are decimal only: "010" is ten and "0x10" stops at the "x".
    EXPECT_EQ(
        props.toString(),
        "{\n Msg ID        : 50 (Note -1 NULL, 0..50 is famous types, ie ignore rest of print "
        "out) \n Msg Location  : Binary Attachment\n Msg Type      : MAP\n"
        " Hdr ReplyTo            : r/1\n Hdr ReplyTo Dest Type  : 3\n Hdr Cor Id    : c\n"
        " Hdr Msg Id    : m\n Hdr Msg Type  : t\n Hdr Timestamp : 10\n Hdr Topic Seq : -3\n"
        " Hdr User Data : ud x\n Sequence Number : 0\n Sender Id : me\n Structured Fields   : \n"
        " N: b T: BYTEARRAY V: 00ff\n N: d T: DESTINATION V: q / 1\n N: z T: BOOL   V: true\n}");
    EXPECT_EQ(
        parsed({}).toString().substr(0, 153),
        "{\n Msg ID        : -1 (Note -1 NULL, 0..50 is famous types, ie ignore rest of print "
        "out) \n Msg Location  : Binary Meta - User Map\n Msg Type      : STREAM");
}

}  // namespace
}  // namespace zorvane::pubsub
