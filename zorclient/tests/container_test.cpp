// Maps and streams through the public API: every field type round-trips, sizes follow the
// encoding that receivers check, walks keep insertion order, unknown fields pass verbatim, and
// container handles form trees that close with their parents and messages.
#include <cstring>
#include <string>
#include <type_traits>
#include <vector>

#include "MsgTestSupport.h"

namespace {

using namespace zorclient_test;
using Handle = zorClient_opaqueContainer_pt;

const zorClient_uint8_t appTlv[] = {0xE2, 0x00, 0x00, 0x06, 0xEF, 0xAD};

// The five entries that a described sub-container repeats per round.
void addRound(Handle c, bool named) {
    ASSERT_EQ(ZORCLIENT_OK, zorClient_container_addBoolean(c, 1, named ? "testBool" : nullptr));
    ASSERT_EQ(ZORCLIENT_OK,
              zorClient_container_addUint32(c, 12345, named ? "testUint32" : nullptr));
    ASSERT_EQ(ZORCLIENT_OK, zorClient_container_addInt64(c, -67890, named ? "testInt64" : nullptr));
    ASSERT_EQ(ZORCLIENT_OK,
              zorClient_container_addString(c, "testString", named ? "testString" : nullptr));
    ASSERT_EQ(ZORCLIENT_OK,
              zorClient_container_addDouble(c, 98.76, named ? "testDouble" : nullptr));
}

// Reads the next entry (of a map: the one called name) with get and compares it with expected.
template <typename T>
void expectRead(zorClient_returnCode_t (*get)(Handle, T*, const char*), Handle c, const char* name,
                std::type_identity_t<T> expected) {
    T value = expected == T{} ? T{1} : T{};  // what a read that writes nothing leaves
    EXPECT_EQ(ZORCLIENT_OK, get(c, &value, name)) << ::testing::PrintToString(expected);
    EXPECT_EQ(expected, value);
}

size_t sizeOf(Handle c) {
    size_t size = 0;
    EXPECT_EQ(ZORCLIENT_OK, zorClient_container_getSize(c, &size));
    return size;
}

class ContainerTest : public NoLeakTest {};

TEST_F(ContainerTest, SizesFollowTheEncodingReceiversCheck) {
    for (int rounds : {0, 1, 3}) {
        ScopedMsg msg;
        Handle map = nullptr, subMap = nullptr, subStream = nullptr;
        ASSERT_EQ(ZORCLIENT_OK, zorClient_msg_createBinaryAttachmentMap(msg, &map, 0));
        EXPECT_EQ(5u, sizeOf(map));
        ASSERT_EQ(ZORCLIENT_OK, zorClient_container_openSubMap(map, &subMap, "m"));
        for (int i = 0; i < rounds; ++i) {
            addRound(subMap, true);
        }
        EXPECT_EQ(104u * rounds + 5, sizeOf(subMap));
        ASSERT_EQ(ZORCLIENT_OK, zorClient_container_closeMapStream(&subMap));
        ASSERT_EQ(ZORCLIENT_OK, zorClient_container_openSubStream(map, &subStream, "s"));
        for (int i = 0; i < rounds; ++i) {
            addRound(subStream, false);
        }
        EXPECT_EQ(42u * rounds + 5, sizeOf(subStream));
        ASSERT_EQ(ZORCLIENT_OK, zorClient_container_closeMapStream(&subStream));
        // The parent counts its header, each name and each sub-container whole.
        EXPECT_EQ(5u + 4 + (104u * rounds + 5) + 4 + (42u * rounds + 5), sizeOf(map));
        zorClient_uint32_t attachmentSize = 0;
        void* bytes = nullptr;
        ASSERT_EQ(ZORCLIENT_OK, zorClient_msg_getBinaryAttachmentPtr(msg, &bytes, &attachmentSize));
        EXPECT_EQ(sizeOf(map), attachmentSize);
        // A receiver walks to the sub-map and sizes the handle the field gives it.
        zorClient_field_t field;
        const char* name = nullptr;
        ASSERT_EQ(ZORCLIENT_OK, zorClient_container_getNextField(map, &field, sizeof field, &name));
        ASSERT_EQ(ZORCLIENT_MAP, field.type);
        EXPECT_STREQ("m", name);
        EXPECT_EQ(104u * rounds + 5, sizeOf(field.value.map));
        ASSERT_EQ(ZORCLIENT_OK, zorClient_container_closeMapStream(&map));
    }
}

TEST_F(ContainerTest, EveryFieldTypeRoundTripsInMapsAndStreams) {
    std::string allCodes;
    for (int c = 1; c <= 127; ++c) {
        allCodes += static_cast<char>(c);
    }
    const std::vector<zorClient_uint8_t> big(20480, 0xEF);
    const zorClient_uint8_t qwf[] = {':', '0', '0', 'A'};
    const zorClient_destination_t topic = {ZORCLIENT_TOPIC_DESTINATION, "level1/level2"};
    const zorClient_destination_t tempQueue = {ZORCLIENT_QUEUE_TEMP_DESTINATION, "#tq/1"};
    for (bool isMap : {true, false}) {
        SCOPED_TRACE(isMap ? "map" : "stream");
        ScopedMsg msg;
        Handle c = nullptr;
        ASSERT_EQ(ZORCLIENT_OK, isMap ? zorClient_msg_createBinaryAttachmentMap(msg, &c, 0)
                                      : zorClient_msg_createBinaryAttachmentStream(msg, &c, 0));
        int n = 0;
        auto name = [&] {
            static thread_local std::string text;
            text = "f" + std::to_string(n++);
            return isMap ? text.c_str() : nullptr;
        };
        ASSERT_EQ(ZORCLIENT_OK, zorClient_container_addBoolean(c, 0, name()));
        ASSERT_EQ(ZORCLIENT_OK, zorClient_container_addUint8(c, 142, name()));
        ASSERT_EQ(ZORCLIENT_OK, zorClient_container_addInt8(c, -42, name()));
        ASSERT_EQ(ZORCLIENT_OK, zorClient_container_addUint16(c, 65535, name()));
        ASSERT_EQ(ZORCLIENT_OK, zorClient_container_addInt16(c, -32768, name()));
        ASSERT_EQ(ZORCLIENT_OK, zorClient_container_addUint32(c, 4294967295u, name()));
        ASSERT_EQ(ZORCLIENT_OK, zorClient_container_addInt32(c, INT32_MIN, name()));
        ASSERT_EQ(ZORCLIENT_OK, zorClient_container_addUint64(c, UINT64_MAX, name()));
        ASSERT_EQ(ZORCLIENT_OK, zorClient_container_addInt64(c, INT64_MIN, name()));
        ASSERT_EQ(ZORCLIENT_OK, zorClient_container_addChar(c, 'R', name()));
        ASSERT_EQ(ZORCLIENT_OK, zorClient_container_addWchar(c, 0x1F600, name()));
        ASSERT_EQ(ZORCLIENT_OK, zorClient_container_addFloat(c, 3.14159f, name()));
        ASSERT_EQ(ZORCLIENT_OK, zorClient_container_addDouble(c, -3.14159, name()));
        ASSERT_EQ(ZORCLIENT_OK, zorClient_container_addString(c, allCodes.c_str(), name()));
        ASSERT_EQ(ZORCLIENT_OK, zorClient_container_addString(c, "", name()));
        ASSERT_EQ(ZORCLIENT_OK, zorClient_container_addByteArray(c, big.data(), 20480, name()));
        ASSERT_EQ(ZORCLIENT_OK, zorClient_container_addByteArray(c, nullptr, 0, name()));
        ASSERT_EQ(ZORCLIENT_OK, zorClient_container_addNull(c, name()));
        ASSERT_EQ(ZORCLIENT_OK,
                  zorClient_container_addDestination(c, &topic, sizeof topic, name()));
        ASSERT_EQ(ZORCLIENT_OK,
                  zorClient_container_addDestination(c, &tempQueue, sizeof tempQueue, name()));
        ASSERT_EQ(ZORCLIENT_OK, zorClient_container_addQwf(c, qwf, sizeof qwf, name()));
        ASSERT_EQ(ZORCLIENT_OK, zorClient_container_closeMapStream(&c));

        ASSERT_EQ(ZORCLIENT_OK, isMap ? zorClient_msg_getBinaryAttachmentMap(msg, &c)
                                      : zorClient_msg_getBinaryAttachmentStream(msg, &c));
        n = 0;
        expectRead(zorClient_container_getBoolean, c, name(), 0);
        expectRead(zorClient_container_getUint8, c, name(), 142);
        expectRead(zorClient_container_getInt8, c, name(), -42);
        expectRead(zorClient_container_getUint16, c, name(), 65535);
        expectRead(zorClient_container_getInt16, c, name(), -32768);
        expectRead(zorClient_container_getUint32, c, name(), 4294967295u);
        expectRead(zorClient_container_getInt32, c, name(), INT32_MIN);
        expectRead(zorClient_container_getUint64, c, name(), UINT64_MAX);
        expectRead(zorClient_container_getInt64, c, name(), INT64_MIN);
        expectRead(zorClient_container_getChar, c, name(), 'R');
        expectRead(zorClient_container_getWchar, c, name(), 0x1F600u);
        expectRead(zorClient_container_getFloat, c, name(), 3.14159f);
        expectRead(zorClient_container_getDouble, c, name(), -3.14159);
        const char* s = nullptr;
        char buffer[200];
        zorClient_uint8_t* bytes = nullptr;
        zorClient_uint32_t length = 1;
        zorClient_destination_t dest{};
        EXPECT_EQ(ZORCLIENT_OK, zorClient_container_getString(c, buffer, sizeof buffer, name()));
        EXPECT_EQ(allCodes, buffer);
        EXPECT_EQ(ZORCLIENT_OK, zorClient_container_getStringPtr(c, &s, name()));
        EXPECT_STREQ("", s);
        EXPECT_EQ(ZORCLIENT_OK, zorClient_container_getByteArrayPtr(c, &bytes, &length, name()));
        ASSERT_EQ(20480u, length);
        EXPECT_EQ(0, std::memcmp(big.data(), bytes, length));
        EXPECT_EQ(ZORCLIENT_OK, zorClient_container_getByteArrayPtr(c, &bytes, &length, name()));
        EXPECT_EQ(0u, length);
        EXPECT_EQ(ZORCLIENT_OK, zorClient_container_getNull(c, name()));
        EXPECT_EQ(ZORCLIENT_OK, zorClient_container_getDestination(c, &dest, sizeof dest, name()));
        EXPECT_EQ(ZORCLIENT_TOPIC_DESTINATION, dest.destType);
        EXPECT_STREQ("level1/level2", dest.dest);
        // Temporary types come back as their plain family.
        EXPECT_EQ(ZORCLIENT_OK, zorClient_container_getDestination(c, &dest, sizeof dest, name()));
        EXPECT_EQ(ZORCLIENT_QUEUE_DESTINATION, dest.destType);
        zorClient_field_t field;
        EXPECT_EQ(ZORCLIENT_OK, zorClient_container_getField(c, &field, sizeof field, name()));
        EXPECT_EQ(ZORCLIENT_QWF, field.type);
        ASSERT_EQ(sizeof qwf, field.length);
        EXPECT_EQ(0, std::memcmp(qwf, field.value.bytes, sizeof qwf));
        if (!isMap) {
            EXPECT_EQ(ZORCLIENT_EOS,
                      zorClient_container_getField(c, &field, sizeof field, nullptr));
        }
        EXPECT_EQ(ZORCLIENT_OK, zorClient_container_closeMapStream(&c));
    }
}

TEST_F(ContainerTest, WalksKeepInsertionOrderAndCarryUnknownFieldsVerbatim) {
    ScopedMsg msg;
    Handle map = nullptr, sub = nullptr, inner = nullptr;
    ASSERT_EQ(ZORCLIENT_OK, zorClient_msg_createBinaryAttachmentMap(msg, &map, 0));
    ASSERT_EQ(ZORCLIENT_OK, zorClient_container_addInt64(map, 43112609, "zeta"));
    ASSERT_EQ(ZORCLIENT_OK, zorClient_container_addUnknownField(map, appTlv, 6, "alpha"));
    ASSERT_EQ(ZORCLIENT_OK, zorClient_container_openSubMap(map, &sub, "mid"));
    ASSERT_EQ(ZORCLIENT_OK, zorClient_container_openSubMap(sub, &inner, "mid.1"));
    ASSERT_EQ(ZORCLIENT_OK, zorClient_container_closeMapStream(&inner));
    ASSERT_EQ(ZORCLIENT_OK, zorClient_container_closeMapStream(&sub));
    ASSERT_EQ(ZORCLIENT_OK, zorClient_container_addInt64(map, -43112609, "beta"));
    // A field whose length does not match its bytes is refused.
    const zorClient_uint8_t bad[] = {0xE2, 0x00, 0x00, 0x07, 0xEF, 0xAD};
    EXPECT_EQ(ZORCLIENT_FAIL, zorClient_container_addUnknownField(map, bad, 6, "bad"));
    EXPECT_EQ(ZORCLIENT_SUBCODE_MALFORMED_DATA, lastError().subCode);
    ASSERT_EQ(ZORCLIENT_OK, zorClient_container_closeMapStream(&map));

    ASSERT_EQ(ZORCLIENT_OK, zorClient_msg_getBinaryAttachmentMap(msg, &map));
    const char* expected[] = {"zeta", "alpha", "mid", "beta"};
    zorClient_field_t field;
    const char* name = nullptr;
    for (const char* want : expected) {
        ASSERT_TRUE(zorClient_container_hasNextField(map));
        ASSERT_EQ(ZORCLIENT_OK, zorClient_container_getNextField(map, &field, sizeof field, &name));
        EXPECT_STREQ(want, name);
        if (std::strcmp(want, "alpha") == 0) {
            EXPECT_EQ(ZORCLIENT_UNKNOWN, field.type);
            ASSERT_EQ(6u, field.length);
            EXPECT_EQ(0, std::memcmp(appTlv, field.value.bytes, 6));
        } else if (std::strcmp(want, "mid") == 0) {
            zorClient_field_t innerField;
            ASSERT_EQ(ZORCLIENT_OK, zorClient_container_getNextField(field.value.map, &innerField,
                                                                     sizeof innerField, &name));
            EXPECT_STREQ("mid.1", name);
            EXPECT_EQ(ZORCLIENT_MAP, innerField.type);
        }
    }
    EXPECT_FALSE(zorClient_container_hasNextField(map));
    EXPECT_EQ(ZORCLIENT_EOS, zorClient_container_getNextField(map, &field, sizeof field, &name));
    // Closing the map closes the views its walk handed out.
    ASSERT_EQ(ZORCLIENT_OK, zorClient_container_closeMapStream(&map));
    EXPECT_EQ(0u, stat(ZORCLIENT_MSG_STATS_ALLOC_CONTAINERS));
}

TEST_F(ContainerTest, ReadersTellAbsentFromEmptyAndFromAnotherType) {
    ScopedMsg msg;
    Handle map = nullptr, stream = nullptr;
    zorClient_field_t field;
    const char* name = "x";
    ASSERT_EQ(ZORCLIENT_OK, zorClient_msg_createUserPropertyMap(msg, &map, 0));
    EXPECT_EQ(ZORCLIENT_EOS, zorClient_container_getNextField(map, &field, sizeof field, &name));
    EXPECT_EQ(nullptr, name);
    ASSERT_EQ(ZORCLIENT_OK, zorClient_container_addString(map, "MAP", "MESSAGE"));
    ASSERT_EQ(ZORCLIENT_OK, zorClient_container_addChar(map, 'X', "payloadfield"));
    zorClient_int32_t i32 = 0;
    EXPECT_EQ(ZORCLIENT_NOT_FOUND, zorClient_container_getInt32(map, &i32, "absent"));
    EXPECT_EQ(ZORCLIENT_FAIL, zorClient_container_getInt32(map, &i32, "MESSAGE"));
    EXPECT_EQ(ZORCLIENT_SUBCODE_FIELD_TYPE_MISMATCH, lastError().subCode);
    char small[3];
    EXPECT_EQ(ZORCLIENT_FAIL, zorClient_container_getString(map, small, sizeof small, "MESSAGE"));
    EXPECT_EQ(ZORCLIENT_SUBCODE_INSUFFICIENT_SPACE, lastError().subCode);
    // A char reads as a wide char too.
    zorClient_wchar_t wc = 0;
    EXPECT_EQ(ZORCLIENT_OK, zorClient_container_getWchar(map, &wc, "payloadfield"));
    EXPECT_EQ(static_cast<zorClient_wchar_t>('X'), wc);
    // Names: required in maps, refused in streams.
    EXPECT_EQ(ZORCLIENT_FAIL, zorClient_container_addInt32(map, 1, nullptr));
    EXPECT_EQ(ZORCLIENT_SUBCODE_PARAM_NULL_PTR, lastError().subCode);
    ASSERT_EQ(ZORCLIENT_OK, zorClient_msg_createBinaryAttachmentStream(msg, &stream, 0));
    EXPECT_EQ(ZORCLIENT_FAIL, zorClient_container_addInt32(stream, 1, "named"));
    EXPECT_EQ(ZORCLIENT_EOS, zorClient_container_getField(stream, &field, sizeof field, nullptr));
    ASSERT_EQ(ZORCLIENT_OK, zorClient_container_addString(stream, "STREAM_MESSAGE", nullptr));
    // Each read of a stream takes the next entry, whatever its type.
    zorClient_int32_t unused = 0;
    ASSERT_EQ(ZORCLIENT_OK, zorClient_msg_getBinaryAttachmentStream(msg, &stream));
    EXPECT_EQ(ZORCLIENT_FAIL, zorClient_container_getInt32(stream, &unused, nullptr));
    EXPECT_EQ(ZORCLIENT_EOS, zorClient_container_getField(stream, &field, sizeof field, nullptr));
    // The attachment is a stream, so it is not a map.
    EXPECT_EQ(ZORCLIENT_FAIL, zorClient_msg_getBinaryAttachmentMap(msg, &map));
    EXPECT_EQ(ZORCLIENT_SUBCODE_FIELD_TYPE_MISMATCH, lastError().subCode);
}

TEST_F(ContainerTest, UserPropertyMapReopensForFurtherAdds) {
    ScopedMsg msg;
    Handle map = nullptr;
    EXPECT_EQ(ZORCLIENT_NOT_FOUND, zorClient_msg_getUserPropertyMap(msg, &map));
    ASSERT_EQ(ZORCLIENT_OK, zorClient_msg_createUserPropertyMap(msg, &map, 100));
    ASSERT_EQ(ZORCLIENT_OK, zorClient_container_addInt64(map, 7, "l"));
    ASSERT_EQ(ZORCLIENT_OK, zorClient_container_closeMapStream(&map));
    ASSERT_EQ(ZORCLIENT_OK, zorClient_msg_getUserPropertyMap(msg, &map));
    // Enough adds to outgrow the first block: earlier fields move with it.
    for (int i = 0; i < 200; ++i) {
        ASSERT_EQ(ZORCLIENT_OK, zorClient_container_addString(map, "a value of some length",
                                                              std::to_string(i).c_str()));
    }
    // A value read from the map and added again, so large that the map must move to a larger
    // block while the value is being copied out of the old one.
    const std::string longValue(40000, 'v');
    ASSERT_EQ(ZORCLIENT_OK, zorClient_container_addString(map, longValue.c_str(), "long"));
    const char* value = nullptr;
    ASSERT_EQ(ZORCLIENT_OK, zorClient_container_getStringPtr(map, &value, "long"));
    ASSERT_EQ(ZORCLIENT_OK, zorClient_container_addString(map, value, "copy"));
    zorClient_int64_t l = 0;
    EXPECT_EQ(ZORCLIENT_OK, zorClient_container_getInt64(map, &l, "l"));
    EXPECT_EQ(7, l);
    ASSERT_EQ(ZORCLIENT_OK, zorClient_container_getStringPtr(map, &value, "copy"));
    EXPECT_EQ(longValue, value);
}

TEST_F(ContainerTest, NamesAndEncodedFieldsReadFromAMapMayBeAddedBackWhileItMoves) {
    ScopedMsg msg;
    Handle map = nullptr, sub = nullptr;
    ASSERT_EQ(ZORCLIENT_OK, zorClient_msg_createUserPropertyMap(msg, &map, 100));
    // A long name, so that each add below needs a larger block while it copies out of the old.
    const std::string longName(40000, 'n');
    ASSERT_EQ(ZORCLIENT_OK, zorClient_container_addUnknownField(map, appTlv, 6, longName.c_str()));
    ASSERT_EQ(ZORCLIENT_OK, zorClient_container_closeMapStream(&map));
    ASSERT_EQ(ZORCLIENT_OK, zorClient_msg_getUserPropertyMap(msg, &map));
    zorClient_field_t field;
    const char* name = nullptr;
    ASSERT_EQ(ZORCLIENT_OK, zorClient_container_getNextField(map, &field, sizeof field, &name));
    ASSERT_EQ(ZORCLIENT_OK,
              zorClient_container_addUnknownField(map, field.value.bytes, field.length, name));
    ASSERT_EQ(ZORCLIENT_OK, zorClient_container_getNextField(map, &field, sizeof field, &name));
    ASSERT_EQ(ZORCLIENT_OK, zorClient_container_openSubMap(map, &sub, name));
    ASSERT_EQ(ZORCLIENT_OK, zorClient_container_closeMapStream(&sub));
    ASSERT_EQ(ZORCLIENT_OK, zorClient_container_closeMapStream(&map));

    ASSERT_EQ(ZORCLIENT_OK, zorClient_msg_getUserPropertyMap(msg, &map));
    for (zorClient_fieldType_t want : {ZORCLIENT_UNKNOWN, ZORCLIENT_UNKNOWN, ZORCLIENT_MAP}) {
        ASSERT_EQ(ZORCLIENT_OK, zorClient_container_getNextField(map, &field, sizeof field, &name));
        EXPECT_EQ(longName, name);
        EXPECT_EQ(want, field.type);
        if (want == ZORCLIENT_UNKNOWN) {
            ASSERT_EQ(6u, field.length);
            EXPECT_EQ(0, std::memcmp(appTlv, field.value.bytes, 6));
        }
    }
    EXPECT_FALSE(zorClient_container_hasNextField(map));
}

TEST_F(ContainerTest, ContainersBuiltApartAreCopiedIntoMessages) {
    char buffer[20480];
    Handle stream = nullptr, sub = nullptr;
    EXPECT_EQ(ZORCLIENT_FAIL, zorClient_container_createStream(&stream, buffer, 4));
    ASSERT_EQ(ZORCLIENT_OK, zorClient_container_createStream(&stream, buffer, sizeof buffer));
    addRound(stream, false);
    ASSERT_EQ(ZORCLIENT_OK, zorClient_container_openSubMap(stream, &sub, nullptr));
    addRound(sub, true);
    ASSERT_EQ(ZORCLIENT_OK, zorClient_container_closeMapStream(&sub));
    ScopedMsg msg;
    ASSERT_EQ(ZORCLIENT_OK, zorClient_msg_setBinaryAttachmentContainer(msg, stream));
    ASSERT_EQ(ZORCLIENT_OK, zorClient_container_closeMapStream(&stream));
    std::memset(buffer, 0, sizeof buffer);  // the message has its own copy
    ASSERT_EQ(ZORCLIENT_OK, zorClient_msg_getBinaryAttachmentStream(msg, &stream));
    EXPECT_EQ(5u + 42 + 104 + 5, sizeOf(stream));
    zorClient_field_t field;
    for (int i = 0; i < 5; ++i) {
        ASSERT_EQ(ZORCLIENT_OK,
                  zorClient_container_getField(stream, &field, sizeof field, nullptr));
    }
    ASSERT_EQ(ZORCLIENT_OK, zorClient_container_getSubMap(stream, &sub, nullptr));
    zorClient_uint32_t u32 = 0;
    EXPECT_EQ(ZORCLIENT_OK, zorClient_container_getUint32(sub, &u32, "testUint32"));
    EXPECT_EQ(12345u, u32);

    // A buffer that is full says so and keeps what it holds.
    char tiny[16];
    Handle map = nullptr;
    ASSERT_EQ(ZORCLIENT_OK, zorClient_container_createMap(&map, tiny, sizeof tiny));
    ASSERT_EQ(ZORCLIENT_OK, zorClient_container_addBoolean(map, 1, "b"));
    EXPECT_EQ(ZORCLIENT_FAIL, zorClient_container_addInt64(map, 1, "i"));
    EXPECT_EQ(ZORCLIENT_SUBCODE_INSUFFICIENT_SPACE, lastError().subCode);
    EXPECT_EQ(5u + 4 + 3, sizeOf(map));
    ASSERT_EQ(ZORCLIENT_OK, zorClient_container_closeMapStream(&map));
}

TEST_F(ContainerTest, HandlesCloseWithTheirParentsAndTheirMessage) {
    Handle map = nullptr, sub = nullptr, reader = nullptr;
    zorClient_opaqueMsg_pt msg = nullptr;
    ASSERT_EQ(ZORCLIENT_OK, zorClient_msg_alloc(&msg));
    ASSERT_EQ(ZORCLIENT_OK, zorClient_msg_createBinaryAttachmentMap(msg, &map, 0));
    ASSERT_EQ(ZORCLIENT_OK, zorClient_container_openSubMap(map, &sub, "sub"));
    // The parent refuses adds while the child is open.
    EXPECT_EQ(ZORCLIENT_FAIL, zorClient_container_addInt32(map, 1, "x"));
    EXPECT_EQ(ZORCLIENT_SUBCODE_PARAM_CONFLICT, lastError().subCode);
    Handle staleSub = sub;
    ASSERT_EQ(ZORCLIENT_OK, zorClient_container_closeMapStream(&map));
    EXPECT_EQ(ZORCLIENT_FAIL, zorClient_container_addInt32(staleSub, 1, "x"));
    EXPECT_EQ(ZORCLIENT_SUBCODE_INVALID_HANDLE, lastError().subCode);
    // Replacing the attachment closes what was open on it; a message's free closes the rest.
    ASSERT_EQ(ZORCLIENT_OK, zorClient_msg_getBinaryAttachmentMap(msg, &reader));
    ASSERT_EQ(ZORCLIENT_OK, zorClient_msg_setBinaryAttachment(msg, "123", 3));
    EXPECT_EQ(ZORCLIENT_FAIL, zorClient_container_closeMapStream(&reader));
    ASSERT_EQ(ZORCLIENT_OK, zorClient_msg_createUserPropertyMap(msg, &map, 0));
    ASSERT_EQ(ZORCLIENT_OK, zorClient_container_openSubStream(map, &sub, "s"));
    EXPECT_EQ(2u, stat(ZORCLIENT_MSG_STATS_ALLOC_CONTAINERS));
    ASSERT_EQ(ZORCLIENT_OK, zorClient_msg_free(&msg));
    EXPECT_EQ(0u, stat(ZORCLIENT_MSG_STATS_ALLOC_CONTAINERS));
    EXPECT_EQ(ZORCLIENT_FAIL, zorClient_container_closeMapStream(&sub));
    EXPECT_EQ(ZORCLIENT_FAIL, zorClient_container_closeMapStream(nullptr));
    EXPECT_EQ(0, zorClient_container_hasNextField(nullptr));
    // A message handle is not a container handle.
    ScopedMsg other;
    EXPECT_EQ(ZORCLIENT_FAIL,
              zorClient_container_addNull(
                  reinterpret_cast<Handle>(static_cast<zorClient_opaqueMsg_pt>(other)), "x"));
    EXPECT_EQ(ZORCLIENT_SUBCODE_INVALID_HANDLE, lastError().subCode);
}

TEST_F(ContainerTest, StringAttachmentsAreStructuredAndMayBeEmpty) {
    ScopedMsg msg;
    const char* text = nullptr;
    EXPECT_EQ(ZORCLIENT_NOT_FOUND, zorClient_msg_getBinaryAttachmentString(msg, &text));
    ASSERT_EQ(ZORCLIENT_OK, zorClient_msg_setBinaryAttachmentString(msg, ""));
    ASSERT_EQ(ZORCLIENT_OK, zorClient_msg_getBinaryAttachmentString(msg, &text));
    EXPECT_STREQ("", text);
    ASSERT_EQ(ZORCLIENT_OK, zorClient_msg_setBinaryAttachmentString(msg, "TEXT_MESSAGE"));
    ASSERT_EQ(ZORCLIENT_OK, zorClient_msg_getBinaryAttachmentString(msg, &text));
    // Replaced by a string read from it: the text survives its own replacement.
    ASSERT_EQ(ZORCLIENT_OK, zorClient_msg_setBinaryAttachmentString(msg, text + 5));
    ASSERT_EQ(ZORCLIENT_OK, zorClient_msg_getBinaryAttachmentString(msg, &text));
    EXPECT_STREQ("MESSAGE", text);
    void* bytes = nullptr;
    zorClient_uint32_t size = 0;
    ASSERT_EQ(ZORCLIENT_OK, zorClient_msg_getBinaryAttachmentPtr(msg, &bytes, &size));
    EXPECT_EQ(2u + 8, size);
    // Raw bytes are not a string.
    ASSERT_EQ(ZORCLIENT_OK, zorClient_msg_setBinaryAttachment(msg, "123", 3));
    EXPECT_EQ(ZORCLIENT_FAIL, zorClient_msg_getBinaryAttachmentString(msg, &text));
}

}  // namespace
