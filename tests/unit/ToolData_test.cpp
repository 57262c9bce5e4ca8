#include "common/ToolData.h"

#include <gtest/gtest.h>

#include <random>
#include <stdexcept>
#include <string>

#include "common/CRC.h"
#include "common/ToolDataFill.h"

namespace zorvane::pubsub {
namespace {

std::string encoded(const ToolData& td) {
    char buffer[ToolData::MAX_ENCODED_SIZE];
    return std::string(buffer, td.encode(buffer, sizeof buffer));
}

ToolData decoded(const std::string& block) {
    ToolData td;
    td.setMsgId(3);  // decode must start from a clean record
    td.decode(block.data(), block.data() + block.size());
    return td;
}

// What decode found: the present fields and the bytes consumed.
std::string described(const std::string& block) {
    const ToolData td = decoded(block);
    return td.toString() + "decoded " + std::to_string(td.getDecodedSize());
}

// The send path's last step: stamp, encode, lay over the attachment.
UINT32 placeRecord(ToolData& td, std::string& attachment) {
    char buffer[ToolData::MAX_ENCODED_SIZE];
    const UINT32 size = ToolDataFill::prepareAttachmentRecord(td, true, buffer, sizeof buffer);
    ToolDataFill::overlayRecord(attachment, buffer, buffer + size);
    return size;
}

// The text of the std::invalid_argument that f throws, or "" if none.
template <class F>
std::string invalidArgumentText(F f) {
    try {
        f();
    } catch (const std::invalid_argument& e) {
        return e.what();
    }
    return "";
}

TEST(ToolDataBinary, ExampleRecordEncodesToExactBytesAndDecodesBack) {
    ToolData td;
    td.setStreamId(2);
    td.setMsgId(7);
    td.setLatency(0x0102030405060708ULL);
    const std::string expected(
        "\x7C\x3E\x9A\x01\x00\x00\x00\x32\x00\x00\x00\x02\x00\x00\x00\x00\x00\x00\x00\x07"
        "\x01\x02\x03\x04\x05\x06\x07\x08",
        28);
    ASSERT_EQ(encoded(td), expected);
    EXPECT_EQ(described(expected),
              " Stream ID               = 2\n Msg ID                  = 7\n"
              " Latency Time Stamp      = 72623859790382856\ndecoded 28");
}

TEST(ToolDataBinary, FullRecordRoundTripsAndSizesCountPresentFieldsOnly) {
    ToolData td;
    EXPECT_EQ(encoded(td), "");
    td.setLatency(0);   // a zero stamp is still a stamp
    td.setStreamId(0);  // stream 0 is a stream; message id 0 is none
    EXPECT_EQ(td.getEncodedSize(), 20u);
    td.setMsgId(~0ULL);
    td.setCrcXmlPayload(0xFFFFFFFFU);
    td.setCrcBinAttach(0x80000001U);
    td.setRepublished(true);
    const std::string block = encoded(td);
    ASSERT_EQ(block.size(), 36u);
    EXPECT_EQ(described(block + "user contents"),
              " XML Payload Integrity   = 4294967295\n Bin attachment Integrity= 2147483649\n"
              " Stream ID               = 0\n Msg ID                  = 18446744073709551615\n"
              " Republished             = 1\n Latency Time Stamp      = 0\ndecoded 36");
    char small[35];
    EXPECT_EQ(invalidArgumentText([&] { td.encode(small, sizeof small); }),
              "Encode destination too small");
}

TEST(ToolDataBinary, OnlyBlocksLongerThanTheHeaderWithMagicAreRecognised) {
    ToolData republishedOnly;
    republishedOnly.setRepublished(true);
    const std::string eight = encoded(republishedOnly);
    ASSERT_EQ(eight, std::string("\x7C\x3E\x9A\x01\x00\x00\x00\x40", 8));
    EXPECT_EQ(described(eight), "decoded 0");
    EXPECT_EQ(described(eight + '\x55'), " Republished             = 1\ndecoded 8");
    // The reserved flag has no effect.
    EXPECT_EQ(described(std::string("\x7C\x3E\x9A\x01\x00\x00\x00\x04\x55", 9)), "decoded 8");
    EXPECT_EQ(described("not tool data at all, just an attachment"), "decoded 0");
}

TEST(ToolDataBinary, TruncatedFieldThrowsItsTextAndLeavesDefaults) {
    const struct {
        char flags;
        std::size_t length;  // cut inside the last field the flags promise
        const char* text;
    } cases[] = {
        {0x01, 11, "Invalid tool data.  Out of bounds parsing msg xml payload integrity"},
        {0x03, 15, "Invalid tool data.  Out of bounds parsing stream id"},
        {0x0B, 19, "Invalid tool data.  Out of bounds parsing msg binary attachment integrity"},
        {0x1B, 24, "Invalid tool data.  Out of bounds parsing msg id"},
        {0x3B, 35, "Invalid tool data.  Out of bounds parsing latency"},
    };
    for (const auto& c : cases) {
        std::string block = std::string("\x7C\x3E\x9A\x01\x00\x00\x00", 7) + c.flags;
        block.resize(c.length, '\x01');
        ToolData td;
        EXPECT_EQ(invalidArgumentText([&] { td.decode(block.data(), block.data() + c.length); }),
                  c.text);
        EXPECT_FALSE(td.hasData()) << c.text;  // fields read before the cut are gone
        EXPECT_EQ(td.getDecodedSize(), 0u);
    }
}

TEST(Crc32, KnownValuesAndSlicedLoopAgreesWithBytewise) {
    EXPECT_EQ(CRC::crc32("abc"), 0x352441C2U);
    EXPECT_EQ(CRC::crc32("123456789"), 0xCBF43926U);
    EXPECT_EQ(CRC::crc32(""), 0U);
    std::mt19937 random(7);
    std::string data(300, '\0');
    for (char& c : data) {
        c = static_cast<char>(random());
    }
    for (std::size_t offset = 0; offset < 8; ++offset) {
        for (std::size_t length = 0; length + offset <= data.size(); length += 13) {
            const char* begin = data.data() + offset;
            ASSERT_EQ(CRC::crc32(begin, begin + length), CRC::crc32Bytewise(begin, begin + length))
                << offset << " " << length;
        }
    }
}

TEST(ToolDataUserProperties, WrittenFieldsFollowTheFlagsAndReadBack) {
    ToolData td;
    td.setCrcXmlPayload(0xFFFFFFFEU);
    td.setCrcBinAttach(5);
    td.setStreamId(4);
    td.setLatency(77);
    td.setRepublished(true);
    ToolDataUserProp props[ToolData::MAX_USER_PROPS];
    ASSERT_EQ(td.getUserProperties(true, true, props), 5u);
    std::string names;
    ToolData back;
    for (const auto& p : props) {
        names += std::string(p.name_mp) + (p.isInt64_m ? "64 " : "32 ");
        EXPECT_TRUE(back.setFromUserProperty(p.name_mp, p.value_m));
    }
    EXPECT_EQ(names, "x32 b32 s32 m64 l64 ");  // a stream id brings the message id along
    td.setRepublished(false);                  // the form does not carry it
    EXPECT_EQ(back.toString(), td.toString());
    for (const char* bad : {"r", "xx", "", "q"}) {
        EXPECT_FALSE(back.setFromUserProperty(bad, 1)) << bad;
    }
    EXPECT_EQ(td.getUserProperties(false, false, props), 2u);
}

// The binary form's record, its CRC of the bytes behind it and a short
// attachment becoming the record are checked through the client that fills
// them (AbstractClientToolData); here the property form and the stream ids.
TEST(ToolDataFill, PropertyFormChecksTheWholeAttachmentAndStreamIdsFollowTheClient) {
    ToolDataFillSettings settings{.wantOrderCheckPublisherStreamNumber_m = true,
                                  .wantLatency_m = true,
                                  .wantPayloadCheck_m = true,
                                  .toolDataType_m = TOOL_DATA_TYPE_USER_PROP,
                                  .clientIdInt_m = 3};
    std::string attachment(64, 'a');
    attachment[50] = 'z';
    ToolData td;
    ToolDataFill::fill(td, settings, 5, 0, "", attachment);
    EXPECT_EQ(td.getCrcBinAttach(), CRC::crc32(attachment));
    EXPECT_EQ(td.getStreamId(), 2);  // the default offset numbers clients from 0
    EXPECT_FALSE(td.hasCrcXmlPayload());
    settings.clientIdInt_m = 0;
    ToolDataFill::fill(td, settings, 5, 0, "", attachment);
    EXPECT_FALSE(td.hasStreamId());
    placeRecord(td, attachment);  // no stamp supplied: taken at send
    EXPECT_NE(td.getLatency(), 0u);
}

}  // namespace
}  // namespace zorvane::pubsub
