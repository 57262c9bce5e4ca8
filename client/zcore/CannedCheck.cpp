// Checking a received catalogue message. Every finding is logged and the
// check goes on, so one run names every fault of a message at once.
#include <cstring>
#include <string>

#include "client/zcore/CannedMessages.h"
#include "common/Log.h"

namespace zorvane::pubsub {

namespace {

constexpr zorClient_int64_t NULL_MSG_TIMESTAMP = 376099200000LL;
constexpr zorClient_int64_t THREE_DAYS_MS = 259200000LL;
constexpr zorClient_uint32_t BIG_ARRAY_BYTES = 20480;
constexpr zorClient_uint64_t MAX_UINT64 = 18446744073709551615ULL;

class Checker {
  public:
    Checker(int num, zorClient_opaqueMsg_pt msg, zorClient_uint32_t missingOk, bool close)
        : num_m(num), msg_m(msg), missingOk_m(missingOk), close_m(close) {}

    int run();

  private:
    void fail(const char* format_p) {
        LOG_ERROR(format_p, num_m);
        result_m = -1;
    }
    void close(zorClient_opaqueContainer_pt& c) {
        if (close_m && c != nullptr)
            zorClient_container_closeMapStream(&c);
    }
    bool tolerated(zorClient_uint32_t bit) const { return (missingOk_m & bit) != 0; }

    void mustBeAbsent(zorClient_returnCode_t rc, const char* format_p) {
        if (rc != ZORCLIENT_NOT_FOUND)
            fail(format_p);
    }
    void noXml(const char* format_p) {
        void* data_p = nullptr;
        zorClient_uint32_t size = 0;
        mustBeAbsent(zorClient_msg_getXmlPtr(msg_m, &data_p, &size), format_p);
    }
    void noCorrelationTag() {
        void* tag_p = nullptr;
        zorClient_uint32_t size = 0;
        mustBeAbsent(zorClient_msg_getCorrelationTagPtr(msg_m, &tag_p, &size),
                     "Msg %d: Found Correlation Tag in null message");
    }
    void timestamp(bool fixed);
    void nullMessage();
    void emptyHeaderMessage();
    void fullHeaderMessage();
    void emptyContainer(bool map);
    void containerMessage();
    void checkUnknownField();
    void checkNestedMaps();

    template <typename Get>
    void textHeader(Get get, const char* expected_p, zorClient_uint32_t bit, const char* absent_p,
                    const char* wrong_p) {
        const char* got_p = nullptr;
        if (get(msg_m, &got_p) != ZORCLIENT_OK) {
            if (!tolerated(bit))
                fail(absent_p);
        } else if (std::strcmp(got_p, expected_p) != 0) {
            LOG_ERROR(wrong_p, num_m, got_p);
            result_m = -1;
        }
    }

    int num_m;
    zorClient_opaqueMsg_pt msg_m;
    zorClient_uint32_t missingOk_m;
    bool close_m;
    int result_m = 0;
};

void Checker::timestamp(bool fixed) {
    zorClient_int64_t ts = 0;
    const zorClient_returnCode_t rc = zorClient_msg_getSenderTimestamp(msg_m, &ts);
    if (rc == ZORCLIENT_NOT_FOUND) {
        return;  // a null message need not carry one
    }
    if (rc != ZORCLIENT_OK) {
        // A broker may drop it on the way; never a reason to fail.
        if (!tolerated(MISSING_OK_SENDER_TIMESTAMP))
            LOG_ERROR("Msg %d: Error reading sender Timestamp", num_m);
        return;
    }
    if (fixed) {
        if (ts != NULL_MSG_TIMESTAMP) {
            LOG_ERROR("Msg %d: Send Timestamp (%lld) in message not as expected (%lld) ", num_m,
                      static_cast<long long>(ts), static_cast<long long>(NULL_MSG_TIMESTAMP));
            result_m = -1;
        }
        return;
    }
    const zorClient_int64_t nowMs = getTimeInUs() / 1000;
    if (ts > nowMs) {
        LOG_ERROR("Msg %d: Send Timestamp (%lld) in message ahead of current time(%lld)", num_m,
                  static_cast<long long>(ts), static_cast<long long>(nowMs));
        result_m = -1;
    } else if (ts < nowMs - THREE_DAYS_MS) {
        LOG_ERROR(
            "Msg %d: Send Timestamp (%lld) in message more than 3 days before current time(%lld)",
            num_m, static_cast<long long>(ts), static_cast<long long>(nowMs));
        result_m = -1;
    }
}

void Checker::nullMessage() {
    void* data_p = nullptr;
    zorClient_uint32_t size = 0;
    mustBeAbsent(zorClient_msg_getBinaryAttachmentPtr(msg_m, &data_p, &size),
                 "Msg %d: Found binary attachment in null message");
    noXml("Msg %d: Found Xml attachment in null message");
    noCorrelationTag();
    const char* text_p = nullptr;
    mustBeAbsent(zorClient_msg_getApplicationMsgType(msg_m, &text_p),
                 "Msg %d: Found MsgType header in null message");
    mustBeAbsent(zorClient_msg_getCorrelationId(msg_m, &text_p),
                 "Msg %d: Found CorrelationId header in null message");
    zorClient_destination_t dest{};
    mustBeAbsent(zorClient_msg_getReplyTo(msg_m, &dest, sizeof(dest)),
                 "Msg %d: Found ReplyTo header in null message");
    mustBeAbsent(zorClient_msg_getSenderId(msg_m, &text_p),
                 "Msg %d: Found SenderId header in null message");
    zorClient_int64_t seq = 0;
    mustBeAbsent(zorClient_msg_getSequenceNumber(msg_m, &seq),
                 "Msg %d: Found SequenceNum header in null message");
    zorClient_opaqueContainer_pt props = nullptr;
    const zorClient_returnCode_t rc = zorClient_msg_getUserPropertyMap(msg_m, &props);
    if (rc == ZORCLIENT_OK) {
        fail("Msg %d: Found User Property Map header in null message");
        zorClient_container_closeMapStream(&props);
    } else if (rc != ZORCLIENT_NOT_FOUND) {
        fail("Msg %d: Error reading USER_PROPERTY");
    }
    timestamp(num_m == 4);
}

void Checker::emptyContainer(bool map) {
    zorClient_opaqueContainer_pt c = nullptr;
    const zorClient_returnCode_t rc = map ? zorClient_msg_getBinaryAttachmentMap(msg_m, &c)
                                          : zorClient_msg_getBinaryAttachmentStream(msg_m, &c);
    if (rc != ZORCLIENT_OK) {
        fail("Msg %d: Did not find structured data in message");
        return;
    }
    zorClient_field_t field;
    if (zorClient_container_getNextField(c, &field, sizeof(field), nullptr) != ZORCLIENT_EOS) {
        fail("Msg %d: Found data in  container that should be empty");
    }
    close(c);
}

void Checker::emptyHeaderMessage() {
    if (num_m == 6 || num_m == 7) {
        emptyContainer(num_m == 6);
    } else if (num_m == 8) {
        const char* text_p = nullptr;
        if (zorClient_msg_getBinaryAttachmentString(msg_m, &text_p) != ZORCLIENT_OK) {
            fail("Msg %d: Did not find JMS string in message");
        }
    }
    noXml("Msg %d: Found Xml attachment in null message");
    noCorrelationTag();
    const char* text_p = nullptr;
    if (zorClient_msg_getApplicationMsgType(msg_m, &text_p) != ZORCLIENT_OK &&
        !tolerated(MISSING_OK_MSG_TYPE)) {
        fail("Msg %d: Did not find MsgType header in message");
    }
    if (zorClient_msg_getCorrelationId(msg_m, &text_p) != ZORCLIENT_OK &&
        !tolerated(MISSING_OK_CORRELATION_ID)) {
        fail("Msg %d: Did not find CorrelationId header in message");
    }
    zorClient_destination_t dest{};
    mustBeAbsent(zorClient_msg_getReplyTo(msg_m, &dest, sizeof(dest)),
                 "Msg %d: Found ReplyTo header in null message");
    if (zorClient_msg_getSenderId(msg_m, &text_p) != ZORCLIENT_OK &&
        !tolerated(MISSING_OK_SENDER_ID)) {
        fail("Msg %d: Did not find SenderId header in message");
    }
    zorClient_int64_t seq = 0;
    mustBeAbsent(zorClient_msg_getSequenceNumber(msg_m, &seq),
                 "Msg %d: Found SequenceNum header in null message");
    timestamp(false);
    zorClient_opaqueContainer_pt props = nullptr;
    if (zorClient_msg_getUserPropertyMap(msg_m, &props) != ZORCLIENT_OK) {
        fail("Msg %d: Did not find Property Map header in message");
    } else {
        close(props);
    }
}

void Checker::fullHeaderMessage() {
    if (num_m != 16)
        noXml("Msg %d: Found Xml attachment in header test message");
    noCorrelationTag();
    textHeader(zorClient_msg_getApplicationMsgType, "myAppMsgType", MISSING_OK_MSG_TYPE,
               "Msg %d: Did not find MsgType header", "Msg %d: Found MsgType=%s");
    textHeader(zorClient_msg_getApplicationMessageId, "myAppMsgID", MISSING_OK_MESSAGE_ID,
               "Msg %d: Did not find MessageId header", "Msg %d: Found MessageID=%s");
    textHeader(zorClient_msg_getCorrelationId, "myCorrelationID", MISSING_OK_CORRELATION_ID,
               "Msg %d: Did not find CorrelationId header", "Msg %d: Found CorrelationID=%s");
    zorClient_destination_t dest{};
    if (zorClient_msg_getReplyTo(msg_m, &dest, sizeof(dest)) != ZORCLIENT_OK) {
        if (!tolerated(MISSING_OK_REPLY_TO))
            fail("Msg %d: Did not find ReplyTo header");
    } else if (dest.destType != ZORCLIENT_TOPIC_DESTINATION) {
        fail("Msg %d: Did not find topic Destination");
    } else if (dest.dest == nullptr || std::strcmp(dest.dest, "mytopic") != 0) {
        LOG_ERROR("Msg %d: Found Destination=%s", num_m, dest.dest != nullptr ? dest.dest : "");
        result_m = -1;
    }
    textHeader(zorClient_msg_getSenderId, "mySenderID", MISSING_OK_SENDER_ID,
               "Msg %d: Did not find SenderId header", "Msg %d: Found SenderID=%s");
    zorClient_int64_t number = 0;
    if (zorClient_msg_getSequenceNumber(msg_m, &number) != ZORCLIENT_OK) {
        if (!tolerated(MISSING_OK_SEQUENCE_NUMBER))
            fail("Msg %d: Did not find SequenceNum");
    } else if (number != 7777777) {
        LOG_ERROR("Msg %d: Found SequenceNum=%lld", num_m, static_cast<long long>(number));
        result_m = -1;
    }
    if (zorClient_msg_getSenderTimestamp(msg_m, &number) != ZORCLIENT_OK) {
        if (!tolerated(MISSING_OK_SENDER_TIMESTAMP))
            fail("Msg %d: Did not find senderTimestamp");
    } else if (number != 123456789) {
        LOG_ERROR("Msg %d: Found Sender Timestamp=%lld", num_m, static_cast<long long>(number));
        result_m = -1;
    }

    zorClient_opaqueContainer_pt props = nullptr;
    zorClient_opaqueContainer_pt map = nullptr;
    zorClient_field_t field;
    if (num_m == 11) {
        if (zorClient_msg_getUserPropertyMap(msg_m, &props) != ZORCLIENT_OK) {
            fail("Msg %d: Did not find User Property Map header");
        } else {
            if (zorClient_container_getNextField(props, &field, sizeof(field), nullptr) !=
                ZORCLIENT_EOS) {
                fail("Msg %d: Found data in  user property that should be empty");
            }
            close(props);
        }
        emptyContainer(true);
    } else if (num_m == 12) {
        zorClient_uint8_t value = 0;
        if (zorClient_msg_getUserPropertyMap(msg_m, &props) != ZORCLIENT_OK ||
            zorClient_container_getUint8(props, &value, "propfield") != ZORCLIENT_OK) {
            fail("Msg %d: propfield not found in property map");
        } else if (value != 255) {
            LOG_ERROR("Msg %d: propfield type = 'uint8', value = %d, should be 255 ", num_m,
                      static_cast<int>(value));
            result_m = -1;
        }
        close(props);
        char payload = 0;
        if (zorClient_msg_getBinaryAttachmentMap(msg_m, &map) != ZORCLIENT_OK ||
            zorClient_container_getChar(map, &payload, "payloadfield") != ZORCLIENT_OK) {
            fail("Msg %d: Did not find payloadfield in map");
        } else if (payload != 'X') {
            LOG_ERROR("Msg %d: payloadfield = '%lc', should be 'X'", num_m,
                      static_cast<wint_t>(payload));
            result_m = -1;
        }
        close(map);
    } else if (num_m == 13) {
        if (zorClient_msg_getUserPropertyMap(msg_m, &props) != ZORCLIENT_OK ||
            zorClient_container_getField(props, &field, sizeof(field), "propfield") !=
                ZORCLIENT_OK) {
            fail("Msg %d: propfield not found in property map");
        } else if (field.type != ZORCLIENT_NULL) {
            LOG_ERROR("Msg %d: propfield type = %d , should be NULL ", num_m,
                      static_cast<int>(field.type));
            result_m = -1;
        }
        close(props);
    }
}

void Checker::checkUnknownField() {
    zorClient_opaqueContainer_pt map = nullptr;
    if (zorClient_msg_getBinaryAttachmentMap(msg_m, &map) != ZORCLIENT_OK) {
        fail("Msg %d: Cannot get map");
    } else {
        static const char* const NAMES[3] = {"field_1", "field_2", "field_3"};
        static const char* const MISSING[3] = {
            "Msg %d: Did not find field_1 in container that should not  be empty",
            "Msg %d: Did not find field_2 in container that should not  be empty",
            "Msg %d: Did not find field_3 in container that should not  be empty"};
        static const char* const WRONG_NAME[3] = {"Msg %d: found field %s, expected field_1",
                                                  "Msg %d: found field %s, expected field_2",
                                                  "Msg %d: found field %s, expected field_3"};
        for (int i = 0; i < 3; ++i) {
            zorClient_field_t field;
            const char* name_p = nullptr;
            if (zorClient_container_getNextField(map, &field, sizeof(field), &name_p) !=
                ZORCLIENT_OK) {
                fail(MISSING[i]);
                break;
            }
            if (name_p == nullptr || std::strcmp(name_p, NAMES[i]) != 0) {
                LOG_ERROR(WRONG_NAME[i], num_m, name_p != nullptr ? name_p : "");
                result_m = -1;
            }
            if (i == 1) {
                if (field.type != ZORCLIENT_UNKNOWN) {
                    LOG_ERROR("Msg %d: Found field type %d, expected unknown", num_m,
                              static_cast<int>(field.type));
                    result_m = -1;
                    continue;
                }
                for (zorClient_uint32_t b = 0; b < APP_TLV_BYTES; ++b) {
                    if (b >= field.length || field.value.bytes[b] != appTlv[b]) {
                        LOG_ERROR("Msg %d: Found byte %02x, expected %02x at offset %d", num_m,
                                  b < field.length ? field.value.bytes[b] : 0u, appTlv[b],
                                  static_cast<int>(b));
                        result_m = -1;
                        break;
                    }
                }
                continue;
            }
            const zorClient_int64_t expected = i == 0 ? 43112609 : -43112609;
            if (field.type != ZORCLIENT_INT64 || field.value.int64 != expected) {
                LOG_ERROR(i == 0 ? "Msg %d: Found value %lld, expected 43112609"
                                 : "Msg %d: Found value %lld, expected -43112609",
                          num_m, static_cast<long long>(field.value.int64));
                result_m = -1;
            }
        }
        close(map);
    }
    zorClient_opaqueContainer_pt props = nullptr;
    if (zorClient_msg_getUserPropertyMap(msg_m, &props) != ZORCLIENT_OK) {
        fail("Msg %d: Cannot get user property map");
        return;
    }
    zorClient_uint8_t* big_p = nullptr;
    zorClient_uint32_t length = 0;
    if (zorClient_container_getByteArrayPtr(props, &big_p, &length, "20KArray") != ZORCLIENT_OK) {
        fail("Msg %d: Cannot get big array ptr");
    } else if (length != BIG_ARRAY_BYTES) {
        LOG_ERROR("Msg %d: big array size (%d) incorrect, expected 20480", num_m,
                  static_cast<int>(length));
        result_m = -1;
    } else {
        for (zorClient_uint32_t b = 0; b < length; ++b) {
            if (big_p[b] != 0xEF) {
                LOG_ERROR("Msg %d: contents of big array incorrect at offset %d, found %02x", num_m,
                          static_cast<int>(b), big_p[b]);
                result_m = -1;
                break;
            }
        }
    }
    close(props);
}

void Checker::checkNestedMaps() {
    zorClient_opaqueContainer_pt map = nullptr;
    if (zorClient_msg_getBinaryAttachmentMap(msg_m, &map) != ZORCLIENT_OK) {
        fail("Msg %d: Cannot get map");
        return;
    }
    zorClient_field_t field;
    const char* name_p = nullptr;
    auto nextMap = [&](zorClient_opaqueContainer_pt c, const char* expectedName_p,
                       const char* missing_p, const char* wrongName_p, const char* wrongType_p) {
        if (zorClient_container_getNextField(c, &field, sizeof(field), &name_p) != ZORCLIENT_OK) {
            fail(missing_p);
            return false;
        }
        if (name_p == nullptr || std::strcmp(name_p, expectedName_p) != 0) {
            LOG_ERROR(wrongName_p, num_m, name_p != nullptr ? name_p : "");
            result_m = -1;
        }
        if (field.type != ZORCLIENT_MAP) {
            LOG_ERROR(wrongType_p, num_m, static_cast<int>(field.type));
            result_m = -1;
            return false;
        }
        return true;
    };
    if (nextMap(map, "field_1",
                "Msg %d: Did not find field_1 in container that should not  be empty",
                "Msg %d: found field %s, expected field_1",
                "Msg %d: Found type %d, expected ZORCLIENT_MAP (14)")) {
        zorClient_container_closeMapStream(&field.value.map);
    }
    if (nextMap(map, "field_2",
                "Msg %d: Did not find field_2 in container that should not  be empty",
                "Msg %d: found field %s, expected field_2",
                "Msg %d: Found field type %d, expected ZORCLIENT_MAP (14)")) {
        zorClient_opaqueContainer_pt second = field.value.map;
        if (nextMap(second, "field_2.1",
                    "Msg %d: Did not find field_2.1 in container that should not  be empty",
                    "Msg %d: found field %s, expected field_2.1",
                    "Msg %d: Found field type %d, expected ZORCLIENT_MAP (14)")) {
            zorClient_container_closeMapStream(&field.value.map);
        }
        zorClient_container_closeMapStream(&second);
    }
    close(map);
}

void Checker::containerMessage() {
    zorClient_opaqueContainer_pt c = nullptr;
    zorClient_opaqueContainer_pt sub = nullptr;
    zorClient_field_t field;
    const char* name_p = nullptr;
    switch (num_m) {
        case 18:
            if (zorClient_msg_getBinaryAttachmentStream(msg_m, &c) != ZORCLIENT_OK) {
                fail("Msg %d: Cannot get stream");
                return;
            }
            if (checkContainer(c, 0, nullptr) != 0)
                result_m = -1;
            if (zorClient_container_getSubMap(c, &sub, nullptr) != ZORCLIENT_OK) {
                fail("Msg %d: Cannot get subMap");
            } else {
                if (checkContainer(sub, 1, nullptr) != 0)
                    result_m = -1;
                close(sub);
            }
            close(c);
            return;
        case 19: {
            if (zorClient_msg_getBinaryAttachmentMap(msg_m, &c) != ZORCLIENT_OK) {
                fail("Msg %d: Cannot get map");
                return;
            }
            int next = 0;
            if (checkContainer(c, 1, &next) != 0)
                result_m = -1;
            const std::string name = "field_" + std::to_string(next);
            if (zorClient_container_getSubStream(c, &sub, name.c_str()) != ZORCLIENT_OK) {
                fail("Msg %d: Cannot get subMap");
            } else {
                if (checkContainer(sub, 0, nullptr) != 0)
                    result_m = -1;
                close(sub);
            }
            close(c);
            return;
        }
        case 20:
        case 21: {
            const bool map = num_m == 20;
            if ((map ? zorClient_msg_getBinaryAttachmentMap(msg_m, &c)
                     : zorClient_msg_getBinaryAttachmentStream(msg_m, &c)) != ZORCLIENT_OK) {
                fail(map ? "Msg %d: Cannot get map" : "Msg %d: Cannot get stream");
                return;
            }
            if (zorClient_container_getNextField(c, &field, sizeof(field), &name_p) !=
                ZORCLIENT_OK) {
                fail("Msg %d: Did not find data in container that should not  be empty");
            } else {
                if (map && (name_p == nullptr || std::strcmp(name_p, "field_1") != 0)) {
                    LOG_ERROR("Msg %d: Found field %s, expected field_1", num_m,
                              name_p != nullptr ? name_p : "");
                    result_m = -1;
                } else if (!map && name_p != nullptr) {
                    LOG_ERROR("Msg %d: Found field %s, expected NULL", num_m, name_p);
                    result_m = -1;
                }
                if (field.type != ZORCLIENT_UINT64 || field.value.uint64 != MAX_UINT64) {
                    LOG_ERROR("Msg %d: Found value %lld, expected 18446744073709551615", num_m,
                              static_cast<long long>(field.value.int64));
                    result_m = -1;
                }
            }
            close(c);
            return;
        }
        case 22:
            checkUnknownField();
            return;
        case 24:
            checkNestedMaps();
            return;
        default:
            return;  // 23: nothing is sent under it, so nothing is wrong with it
    }
}

int Checker::run() {
    if (num_m >= 1 && num_m <= 5) {
        nullMessage();
    } else if (num_m >= 6 && num_m <= 10) {
        emptyHeaderMessage();
    } else if (num_m >= 11 && num_m <= 17) {
        fullHeaderMessage();
    } else if (num_m >= 18 && num_m <= SDK_MAX_MSG_NUM) {
        containerMessage();
    } else {
        fail("Msg %d: Unrecognized test message");
    }
    return result_m;
}

}  // namespace

int checkStructuredMsg(zorClient_opaqueMsg_pt msg_p, zorClient_uint32_t missingFieldsOk) {
    return checkStructuredMsgWithCloseOption(msg_p, missingFieldsOk, 1);
}

int checkStructuredMsgWithCloseOption(zorClient_opaqueMsg_pt msg_p,
                                      zorClient_uint32_t missingFieldsOk,
                                      zorClient_bool_t closeContainers) {
    void* data_p = nullptr;
    zorClient_uint32_t size = 0;
    if (zorClient_msg_getUserDataPtr(msg_p, &data_p, &size) != ZORCLIENT_OK || size == 0) {
        return -1;
    }
    Checker checker(*static_cast<const zorClient_uint8_t*>(data_p), msg_p, missingFieldsOk,
                    closeContainers != 0);
    return checker.run();
}

}  // namespace zorvane::pubsub
