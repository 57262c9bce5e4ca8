// Building the catalogue messages and their modified variant. Both share one
// builder over a set of values, so the two variants cannot drift in shape.
#include <cstring>
#include <string>
#include <vector>

#include "client/zcore/CannedMessages.h"
#include "common/Log.h"

namespace zorvane::pubsub {

namespace {

// Values that differ between the catalogue and its modified variant.
struct CannedValues {
    const char* topic;
    const char* msgType;
    const char* msgId;
    const char* correlationId;
    const char* senderId;
    zorClient_int64_t sequenceNumber;
    zorClient_int64_t timestamp;
    const char* payloadField;
    const char* propField;
    const char* xml;
    const sdkTestContainerElement* table;
    const char* bigArrayName;
    zorClient_int64_t positive22;
    zorClient_int64_t negative22;
    bool deleteTimestamp11;
};

const CannedValues ORIGINAL_s = {"mytopic",    "myAppMsgType",  "myAppMsgID",  "myCorrelationID",
                                 "mySenderID", 7777777,         123456789,     "payloadfield",
                                 "propfield",  "<test></test>", sdkContainer1, "20KArray",
                                 43112609,     -43112609,       false};
const CannedValues MODIFIED_s = {"myModifiedtopic",
                                 "myModifiedAppMsgType",
                                 "myModifiedAppMsgID",
                                 "myModifiedCorrelationID",
                                 "myModifiedSenderID",
                                 8888888,
                                 987654321,
                                 "modifiedPayloadfield",
                                 "modifiedPropfield",
                                 "<test>/<test>/<modifiedTest>",
                                 sdkContainer2,
                                 "20kARRAY",
                                 77112609,
                                 -77112609,
                                 true};

// The fixed sender timestamp of the null messages (numbers 1 to 4).
constexpr zorClient_int64_t NULL_MSG_TIMESTAMP = 376099200000LL;
constexpr std::size_t BIG_ARRAY_BYTES = 20480;
constexpr std::size_t STREAM_BUFFER_BYTES = 20480;

class Builder {
  public:
    Builder(int num, zorClient_opaqueMsg_pt msg, bool close, const CannedValues& v)
        : num_m(num), msg_m(msg), close_m(close), v_m(v) {}

    int result() const { return result_m; }

    void fail(const char* format_p) {
        LOG_ERROR(format_p, num_m);
        result_m = -1;
    }
    void check(zorClient_returnCode_t rc, const char* format_p) {
        if (rc != ZORCLIENT_OK)
            fail(format_p);
    }
    void close(zorClient_opaqueContainer_pt& c) {
        if (close_m && c != nullptr)
            zorClient_container_closeMapStream(&c);
    }

    void emptyHeaders() {
        check(zorClient_msg_setApplicationMsgType(msg_m, ""), "Msg# %d: Cannot set msgType");
        check(zorClient_msg_setApplicationMessageId(msg_m, ""), "Msg# %d: Cannot set MessageId");
        check(zorClient_msg_setCorrelationId(msg_m, ""), "Msg# %d: Cannot set Correlation ID");
        check(zorClient_msg_setSenderId(msg_m, ""), "Msg# %d: Cannot set Sender ID");
    }

    void fullHeaders(const char* xml_p = nullptr) {
        check(zorClient_msg_setApplicationMsgType(msg_m, v_m.msgType),
              "Msg# %d: Cannot set msgType");
        check(zorClient_msg_setApplicationMessageId(msg_m, v_m.msgId),
              "Msg# %d: Cannot set MessageId");
        check(zorClient_msg_setCorrelationId(msg_m, v_m.correlationId),
              "Msg# %d: Cannot set Correlation ID");
        zorClient_destination_t replyTo{ZORCLIENT_TOPIC_DESTINATION, v_m.topic};
        check(zorClient_msg_setReplyTo(msg_m, &replyTo, sizeof(replyTo)),
              "Msg# %d: Cannot set ReplyTo");
        check(zorClient_msg_setSenderId(msg_m, v_m.senderId), "Msg# %d: Cannot set Sender ID");
        check(zorClient_msg_setSequenceNumber(msg_m, v_m.sequenceNumber),
              "Msg# %d: Cannot set Sequence Number");
        if (xml_p != nullptr) {
            check(zorClient_msg_setXml(msg_m, xml_p,
                                       static_cast<zorClient_uint32_t>(std::strlen(xml_p))),
                  "Msg# %d: Cannot set bufInfo");
        }
        check(zorClient_msg_setSenderTimestamp(msg_m, v_m.timestamp),
              "Msg# %d: Cannot set sender Timestamp");
    }

    zorClient_opaqueContainer_pt attachmentMap(
        const char* failure_p = "Msg# %d: Cannot create map") {
        zorClient_opaqueContainer_pt c = nullptr;
        if (zorClient_msg_createBinaryAttachmentMap(msg_m, &c, 0) != ZORCLIENT_OK)
            fail(failure_p);
        return c;
    }
    zorClient_opaqueContainer_pt attachmentStream(
        const char* failure_p = "Msg# %d: Cannot create stream") {
        zorClient_opaqueContainer_pt c = nullptr;
        if (zorClient_msg_createBinaryAttachmentStream(msg_m, &c, 0) != ZORCLIENT_OK)
            fail(failure_p);
        return c;
    }
    zorClient_opaqueContainer_pt propertyMap(const char* failure_p = "Msg# %d: Cannot create map") {
        zorClient_opaqueContainer_pt c = nullptr;
        if (zorClient_msg_createUserPropertyMap(msg_m, &c, 0) != ZORCLIENT_OK)
            fail(failure_p);
        return c;
    }
    void emptyPropertyMap() {
        zorClient_opaqueContainer_pt c = propertyMap();
        close(c);
    }

    int build();

  private:
    void buildStreamApart();
    void buildMapWithSubStream();
    void buildUnknownField();
    void buildNestedMaps();

    int num_m;
    zorClient_opaqueMsg_pt msg_m;
    bool close_m;
    const CannedValues& v_m;
    int result_m = 0;
};

void Builder::buildStreamApart() {
    // On the stack (default thread stacks hold it many times over): the
    // publisher builds this message over and over, and must not allocate.
    char buffer[STREAM_BUFFER_BYTES];
    zorClient_opaqueContainer_pt stream = nullptr;
    if (zorClient_container_createStream(&stream, buffer, sizeof buffer) != ZORCLIENT_OK) {
        fail("Msg %d: Cannot create stream in array");
        return;
    }
    fillContainer(stream, 0, v_m.table);
    zorClient_opaqueContainer_pt sub = nullptr;
    if (zorClient_container_openSubMap(stream, &sub, nullptr) != ZORCLIENT_OK) {
        fail("Msg %d: Cannot create subMap");
    } else {
        fillContainer(sub, 1, v_m.table);
        // A sub-container must be finished before its stream is copied.
        zorClient_container_closeMapStream(&sub);
    }
    check(zorClient_msg_setBinaryAttachmentContainer(msg_m, stream),
          "Msg %d: Cannot copy Stream into message");
    // The buffer dies here, so the stream is closed whatever the caller asked.
    zorClient_container_closeMapStream(&stream);
}

void Builder::buildMapWithSubStream() {
    zorClient_opaqueContainer_pt map = attachmentMap("Msg %d: Cannot create map");
    if (map == nullptr)
        return;
    const int next = fillContainer(map, 1, v_m.table);
    const std::string name = "field_" + std::to_string(next);
    zorClient_opaqueContainer_pt sub = nullptr;
    if (zorClient_container_openSubStream(map, &sub, name.c_str()) != ZORCLIENT_OK) {
        fail("Msg %d: Cannot create stream");
    } else {
        fillContainer(sub, 0, v_m.table);
        close(sub);
    }
    close(map);
}

void Builder::buildUnknownField() {
    zorClient_opaqueContainer_pt props = propertyMap("Cannot create map");
    if (props != nullptr) {
        const std::vector<zorClient_uint8_t> big(BIG_ARRAY_BYTES, 0xEF);
        check(
            zorClient_container_addByteArray(props, big.data(), BIG_ARRAY_BYTES, v_m.bigArrayName),
            "Cannot add bigArray to map");
        close(props);
    }
    zorClient_opaqueContainer_pt map = attachmentMap("Msg %d: Cannot create map");
    if (map == nullptr)
        return;
    check(zorClient_container_addInt64(map, v_m.positive22, "field_1"),
          "Msg %d: cannot add max int64 (43112609)");
    check(zorClient_container_addUnknownField(map, appTlv, APP_TLV_BYTES, "field_2"),
          "Msg %d: cannot add app defined Field");
    check(zorClient_container_addInt64(map, v_m.negative22, "field_3"),
          "Msg %d: cannot add max int64 (-43112609)");
    close(map);
}

void Builder::buildNestedMaps() {
    zorClient_opaqueContainer_pt map = attachmentMap("Msg %d: Cannot create map");
    if (map == nullptr)
        return;
    zorClient_opaqueContainer_pt first = nullptr;
    zorClient_opaqueContainer_pt second = nullptr;
    zorClient_opaqueContainer_pt nested = nullptr;
    if (zorClient_container_openSubMap(map, &first, "field_1") != ZORCLIENT_OK) {
        fail("Msg %d: cannot add first subMap");
    } else {
        // The library opens no sibling while a sub-map is open for adding, so
        // the first one is finished whatever the caller asked.
        zorClient_container_closeMapStream(&first);
    }
    if (zorClient_container_openSubMap(map, &second, "field_2") != ZORCLIENT_OK) {
        fail("Msg %d: cannot add second subMap");
    } else {
        if (zorClient_container_openSubMap(second, &nested, "field_2.1") != ZORCLIENT_OK) {
            fail("Msg %d: cannot add nested subMap");
        }
        close(nested);
        close(second);
    }
    close(map);
}

int Builder::build() {
    switch (num_m) {
        case 1:
        case 2:
        case 3: {
            // These go out as number 4: the receiver cannot tell them apart.
            const zorClient_uint8_t four = 4;
            if (zorClient_msg_setUserData(msg_m, &four, 1) != ZORCLIENT_OK) {
                LOG_ERROR("Cannot create USER DATA");
                return -1;
            }
            check(zorClient_msg_setSenderTimestamp(msg_m, NULL_MSG_TIMESTAMP),
                  "Msg# %d: Cannot set sender Timestamp");
            break;
        }
        case 4:
            check(zorClient_msg_setSenderTimestamp(msg_m, NULL_MSG_TIMESTAMP),
                  "Msg# %d: Cannot set sender Timestamp");
            break;
        case 6:
        case 11: {
            if (num_m == 6)
                emptyHeaders();
            else
                fullHeaders();
            zorClient_opaqueContainer_pt map = attachmentMap();
            close(map);
            emptyPropertyMap();
            break;
        }
        case 7: {
            emptyHeaders();
            zorClient_opaqueContainer_pt stream = attachmentStream();
            close(stream);
            emptyPropertyMap();
            break;
        }
        case 8:
            emptyHeaders();
            check(zorClient_msg_setBinaryAttachmentString(msg_m, ""), "Cannot create string");
            emptyPropertyMap();
            break;
        case 9:
            emptyHeaders();
            emptyPropertyMap();
            break;
        case 12: {
            fullHeaders();
            zorClient_opaqueContainer_pt map = attachmentMap();
            if (map != nullptr) {
                check(zorClient_container_addChar(map, 'X', v_m.payloadField),
                      "Msg# %d: Cannot add char to payload map");
                close(map);
            }
            zorClient_opaqueContainer_pt props = propertyMap();
            if (props != nullptr) {
                check(zorClient_container_addUint8(props, 255, v_m.propField),
                      "Msg# %d: Cannot add uint8 to user property map");
                close(props);
            }
            break;
        }
        case 13: {
            fullHeaders();
            zorClient_opaqueContainer_pt stream = attachmentStream();
            if (stream != nullptr) {
                check(zorClient_container_addByteArray(stream, testByteArray, 0, nullptr),
                      "Msg# %d: Cannot add byte array to payload stream");
                check(zorClient_container_addNull(stream, nullptr),
                      "Msg# %d: Cannot add NULL to payload stream");
                close(stream);
            }
            zorClient_opaqueContainer_pt props = propertyMap();
            if (props != nullptr) {
                check(zorClient_container_addNull(props, v_m.propField),
                      "Msg# %d: Cannot add NULL to user property map");
                close(props);
            }
            break;
        }
        case 14: {
            char all[128];
            for (int i = 0; i < 127; ++i)
                all[i] = static_cast<char>(i + 1);
            all[127] = '\0';
            check(zorClient_msg_setBinaryAttachmentString(msg_m, all), "Cannot create string");
            fullHeaders();
            zorClient_opaqueContainer_pt props = propertyMap();
            if (props != nullptr) {
                check(zorClient_container_addInt64(props, 123, v_m.propField),
                      "Msg# %d: Cannot create map");
                close(props);
            }
            break;
        }
        case 15:
            fullHeaders();
            check(zorClient_msg_setBinaryAttachment(msg_m, testByteArray, 3),
                  "Msg# %d: Cannot set bufInfo");
            emptyPropertyMap();
            break;
        case 16:
            fullHeaders(v_m.xml);
            emptyPropertyMap();
            break;
        case 18:
            buildStreamApart();
            break;
        case 19:
            buildMapWithSubStream();
            break;
        case 20:
        case 21: {
            zorClient_opaqueContainer_pt c = num_m == 20
                                                 ? attachmentMap("Msg %d: Cannot create map")
                                                 : attachmentStream("Msg %d: Cannot create stream");
            if (c != nullptr) {
                check(zorClient_container_addUint64(c, 18446744073709551615ULL,
                                                    num_m == 20 ? "field_1" : nullptr),
                      "Msg %d: cannot add max uint64 (18446744073709551615)");
                close(c);
            }
            break;
        }
        case 22:
            buildUnknownField();
            break;
        case 24:
            buildNestedMaps();
            break;
        default:
            break;
    }
    if (num_m == 11 && v_m.deleteTimestamp11) {
        check(zorClient_msg_deleteSenderTimestamp(msg_m), "Msg# %d: Cannot set sender Timestamp");
    }
    return result_m;
}

int buildCanned(int messageNum, zorClient_opaqueMsg_pt msg_p, zorClient_bool_t closeContainers,
                const CannedValues& values) {
    const zorClient_uint8_t number = static_cast<zorClient_uint8_t>(messageNum);
    if (zorClient_msg_setUserData(msg_p, &number, 1) != ZORCLIENT_OK) {
        LOG_ERROR("Cannot create USER DATA");
        return -1;
    }
    if (messageNum == 5 || messageNum == 10 || messageNum == 17 || messageNum == 23) {
        return -1;  // numbers kept free in the catalogue
    }
    if (messageNum < 1 || messageNum > SDK_MAX_MSG_NUM) {
        LOG_ERROR("Msg %d: Unrecognized test message", messageNum);
        return -1;
    }
    Builder builder(messageNum, msg_p, closeContainers != 0, values);
    return builder.build();
}

}  // namespace

int createStructuredMsg(int messageNum, zorClient_opaqueMsg_pt msg_p) {
    return createStructuredMsgWithCloseOption(messageNum, msg_p, 1);
}

int createStructuredMsgWithCloseOption(int messageNum, zorClient_opaqueMsg_pt msg_p,
                                       zorClient_bool_t closeContainers) {
    return buildCanned(messageNum, msg_p, closeContainers, ORIGINAL_s);
}

int modifyStructuredMsgWithCloseOption(int messageNum, zorClient_opaqueMsg_pt msg_p,
                                       zorClient_bool_t closeContainers) {
    return buildCanned(messageNum, msg_p, closeContainers, MODIFIED_s);
}

}  // namespace zorvane::pubsub
