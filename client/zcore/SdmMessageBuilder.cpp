#include "client/zcore/SdmMessageBuilder.h"

#include <cstring>
#include <string>
#include <string_view>

#include "common/Log.h"

namespace zorvane::pubsub {

namespace {

// Encoded bytes of one round of the five sub-container entries, and of an
// empty container's header; a received sub-container of another size did not
// come through whole.
constexpr size_t SUB_MAP_BYTES_PER_LOOP = 104;
constexpr size_t SUB_STREAM_BYTES_PER_LOOP = 42;
constexpr size_t CONTAINER_HEADER_BYTES = 5;

constexpr const char* SUB_NAMES_s[5] = {"testBool", "testUint32", "testInt64", "testString",
                                        "testDouble"};
constexpr zorClient_uint32_t SUB_UINT32_s = 12345;
constexpr zorClient_int64_t SUB_INT64_s = -67890;
constexpr const char* SUB_STRING_s = "testString";
constexpr double SUB_DOUBLE_s = 98.76;

bool isTopicFamily(int type) {
    return type == ZORCLIENT_TOPIC_DESTINATION || type == ZORCLIENT_TOPIC_TEMP_DESTINATION;
}

// A received destination keeps only topic (0) or queue (1); temporary
// endpoints arrive as their family.
bool destTypeMatches(int expected, int received) {
    return isTopicFamily(expected) ? received == ZORCLIENT_TOPIC_DESTINATION
                                   : received == ZORCLIENT_QUEUE_DESTINATION;
}

int addSubEntries(zorClient_opaqueContainer_pt sub, UINT64 numLoops, bool named) {
    for (UINT64 loop = 0; loop < numLoops; ++loop) {
        if (zorClient_container_addBoolean(sub, 1, named ? SUB_NAMES_s[0] : nullptr) !=
                ZORCLIENT_OK ||
            zorClient_container_addUint32(sub, SUB_UINT32_s, named ? SUB_NAMES_s[1] : nullptr) !=
                ZORCLIENT_OK ||
            zorClient_container_addInt64(sub, SUB_INT64_s, named ? SUB_NAMES_s[2] : nullptr) !=
                ZORCLIENT_OK ||
            zorClient_container_addString(sub, SUB_STRING_s, named ? SUB_NAMES_s[3] : nullptr) !=
                ZORCLIENT_OK ||
            zorClient_container_addDouble(sub, SUB_DOUBLE_s, named ? SUB_NAMES_s[4] : nullptr) !=
                ZORCLIENT_OK) {
            return -1;
        }
    }
    return 0;
}

int checkSubMap(zorClient_opaqueContainer_pt sub, UINT64 numLoops) {
    int result = 0;
    size_t size = 0;
    if (zorClient_container_getSize(sub, &size) != ZORCLIENT_OK ||
        size != SUB_MAP_BYTES_PER_LOOP * numLoops + CONTAINER_HEADER_BYTES) {
        result = -1;
    }
    for (UINT64 entry = 0; entry < numLoops * 5; ++entry) {
        zorClient_field_t field;
        if (zorClient_container_getNextField(sub, &field, sizeof(field), nullptr) != ZORCLIENT_OK) {
            field.type = ZORCLIENT_UNKNOWN;
        }
        switch (entry % 5) {
            case 0:
                if (field.type != ZORCLIENT_BOOL || field.value.boolean != 1) {
                    LOG_ERROR("boolean");
                    return -1;
                }
                break;
            case 1:
                if (field.type != ZORCLIENT_UINT32 || field.value.uint32 != SUB_UINT32_s) {
                    LOG_ERROR("uint32");
                    return -1;
                }
                break;
            case 2:
                if (field.type != ZORCLIENT_INT64 || field.value.int64 != SUB_INT64_s) {
                    LOG_ERROR("int64");
                    return -1;
                }
                break;
            case 3:
                if (field.type != ZORCLIENT_STRING ||
                    std::strcmp(field.value.string, SUB_STRING_s) != 0) {
                    LOG_ERROR("string");
                    return -1;
                }
                break;
            default:
                if (field.type != ZORCLIENT_DOUBLE || field.value.float64 != SUB_DOUBLE_s) {
                    LOG_ERROR("float64");
                    return -1;
                }
                break;
        }
    }
    return result;
}

std::string hex(const zorClient_uint8_t* bytes_p, zorClient_uint32_t length) {
    static const char DIGITS[] = "0123456789abcdef";
    std::string text;
    text.reserve(length * 2);
    for (zorClient_uint32_t i = 0; i < length; ++i) {
        text += DIGITS[bytes_p[i] >> 4];
        text += DIGITS[bytes_p[i] & 0xF];
    }
    return text;
}

bool sameBytes(const SdmField& expected, const zorClient_field_t& received) {
    return expected.length_m == received.length &&
           (expected.length_m == 0 ||
            std::memcmp(expected.text().data(), received.value.bytes, expected.length_m) == 0);
}

// A walk hands out a reading handle for every nested container; give it back
// so that checking many messages holds no containers.
void closeReadHandle(zorClient_field_t& field) {
    if (field.type == ZORCLIENT_MAP || field.type == ZORCLIENT_STREAM) {
        zorClient_opaqueContainer_pt sub = field.value.map;
        zorClient_container_closeMapStream(&sub);
    }
}

}  // namespace

int SdmMessageBuilder::addField(zorClient_opaqueContainer_pt container, const SdmField& field,
                                const char* name_p) {
    zorClient_returnCode_t rc = ZORCLIENT_FAIL;
    const SdmFieldValue& v = field.value_m;
    const auto* bytes_p = reinterpret_cast<const zorClient_uint8_t*>(field.text().data());
    switch (field.type_m) {
        case SDM_FIELD_TYPE_BOOL:
            rc = zorClient_container_addBoolean(container, v.boolean ? 1 : 0, name_p);
            break;
        case SDM_FIELD_TYPE_UINT8:
            rc = zorClient_container_addUint8(container, v.uint8, name_p);
            break;
        case SDM_FIELD_TYPE_INT8:
            rc = zorClient_container_addInt8(container, v.int8, name_p);
            break;
        case SDM_FIELD_TYPE_UINT16:
            rc = zorClient_container_addUint16(container, v.uint16, name_p);
            break;
        case SDM_FIELD_TYPE_INT16:
            rc = zorClient_container_addInt16(container, v.int16, name_p);
            break;
        case SDM_FIELD_TYPE_UINT32:
            rc = zorClient_container_addUint32(container, v.uint32, name_p);
            break;
        case SDM_FIELD_TYPE_INT32:
            rc = zorClient_container_addInt32(container, v.int32, name_p);
            break;
        case SDM_FIELD_TYPE_UINT64:
            rc = zorClient_container_addUint64(container, v.uint64, name_p);
            break;
        case SDM_FIELD_TYPE_INT64:
            rc = zorClient_container_addInt64(container, v.int64, name_p);
            break;
        case SDM_FIELD_TYPE_WCHAR:
            rc = zorClient_container_addWchar(container, static_cast<zorClient_wchar_t>(v.wchar),
                                              name_p);
            break;
        case SDM_FIELD_TYPE_STRING:
            rc = zorClient_container_addString(container, field.text().c_str(), name_p);
            break;
        case SDM_FIELD_TYPE_BYTEARRAY:
            rc = zorClient_container_addByteArray(container, bytes_p, field.length_m, name_p);
            break;
        case SDM_FIELD_TYPE_FLOAT:
            rc = zorClient_container_addFloat(container, v.float32, name_p);
            break;
        case SDM_FIELD_TYPE_DOUBLE:
            rc = zorClient_container_addDouble(container, v.float64, name_p);
            break;
        case SDM_FIELD_TYPE_MAP:
        case SDM_FIELD_TYPE_STREAM: {
            const bool isMap = field.type_m == SDM_FIELD_TYPE_MAP;
            zorClient_opaqueContainer_pt sub = nullptr;
            rc = isMap ? zorClient_container_openSubMap(container, &sub, name_p)
                       : zorClient_container_openSubStream(container, &sub, name_p);
            if (rc == ZORCLIENT_OK) {
                const int added = addSubEntries(sub, v.numLoops, isMap);
                rc = zorClient_container_closeMapStream(&sub);
                if (added != 0) {
                    rc = ZORCLIENT_FAIL;
                }
            }
            break;
        }
        case SDM_FIELD_TYPE_NULL:
            rc = zorClient_container_addNull(container, name_p);
            break;
        case SDM_FIELD_TYPE_DESTINATION: {
            zorClient_destination_t dest;
            dest.destType = static_cast<zorClient_destinationType_t>(v.destType);
            dest.dest = field.text().c_str();
            rc = zorClient_container_addDestination(container, &dest, sizeof(dest), name_p);
            break;
        }
        case SDM_FIELD_TYPE_QWF:
            rc = zorClient_container_addQwf(container, bytes_p, field.length_m, name_p);
            break;
        default:
            LOG_ERROR("Field Type not supported:%d", static_cast<int>(field.type_m));
            return -1;
    }
    if (rc != ZORCLIENT_OK) {
        LOG_ERROR("Error adding field type %i", static_cast<int>(field.type_m));
        return -1;
    }
    return 0;
}

int SdmMessageBuilder::buildMsg(const SdmProperties& sdm, zorClient_opaqueMsg_pt msg) {
    const int id = sdm.getSdmId();
    if (sdm.getHdrPropUserData().empty()) {
        const auto idByte = static_cast<zorClient_uint8_t>(id & 0xFF);
        if (zorClient_msg_setUserData(msg, &idByte, 1) != ZORCLIENT_OK) {
            LOG_ERROR("Cannot create USER DATA");
            return -1;
        }
    }
    zorClient_opaqueContainer_pt container = nullptr;
    if (sdm.isMapMsg() && sdm.useBinAttach()) {
        if (zorClient_msg_createBinaryAttachmentMap(msg, &container, 0) != ZORCLIENT_OK) {
            LOG_ERROR("Msg# %d: Cannot create map in bin attachment", id);
            return -1;
        }
    } else if (sdm.isMapMsg()) {
        if (zorClient_msg_createUserPropertyMap(msg, &container, 0) != ZORCLIENT_OK) {
            LOG_ERROR("Msg# %d: Cannot create map in user props", id);
            return -1;
        }
    } else if (sdm.useBinAttach()) {
        if (zorClient_msg_createBinaryAttachmentStream(msg, &container, 0) != ZORCLIENT_OK) {
            LOG_ERROR("Msg# %d: Cannot create stream in bin attachment", id);
            return -1;
        }
    } else {
        LOG_ERROR("Msg# %d: Invalid config.  Cannot create stream in user props", id);
        return -1;
    }

    int added = 0;
    if (sdm.isMapMsg()) {
        for (const auto& [name, field] : sdm.getMapFields()) {
            if ((added = addField(container, field, name.c_str())) != 0) {
                break;
            }
        }
    } else {
        for (const auto& field : sdm.getStreamFields()) {
            if ((added = addField(container, field, nullptr)) != 0) {
                break;
            }
        }
    }
    zorClient_container_closeMapStream(&container);
    if (added != 0) {
        // The same words for a stream: the user sees which message failed.
        LOG_ERROR("Msg# %d: Cannot add field to payload map", id);
        return -1;
    }

    if (!sdm.getHdrPropReplyTo().empty()) {
        zorClient_destination_t dest;
        dest.destType = static_cast<zorClient_destinationType_t>(sdm.getHdrPropReplyToDestType());
        dest.dest = sdm.getHdrPropReplyTo().c_str();
        if (zorClient_msg_setReplyTo(msg, &dest, sizeof(dest)) != ZORCLIENT_OK) {
            LOG_ERROR("Cannot create reply to hdr field");
            return -1;
        }
    }
    if (!sdm.getHdrPropCorrelationId().empty() &&
        zorClient_msg_setCorrelationId(msg, sdm.getHdrPropCorrelationId().c_str()) !=
            ZORCLIENT_OK) {
        LOG_ERROR("Cannot create correlation Id hdr field");
        return -1;
    }
    if (!sdm.getHdrPropMessageId().empty() &&
        zorClient_msg_setApplicationMessageId(msg, sdm.getHdrPropMessageId().c_str()) !=
            ZORCLIENT_OK) {
        LOG_ERROR("Cannot create message Id hdr field");
        return -1;
    }
    if (!sdm.getHdrPropMessageType().empty() &&
        zorClient_msg_setApplicationMsgType(msg, sdm.getHdrPropMessageType().c_str()) !=
            ZORCLIENT_OK) {
        LOG_ERROR("Cannot create message type hdr field");
        return -1;
    }
    if (sdm.getHdrPropTimestamp() >= 0 &&
        zorClient_msg_setSenderTimestamp(msg, sdm.getHdrPropTimestamp()) != ZORCLIENT_OK) {
        LOG_ERROR("Cannot create timestamp hdr field");
        return -1;
    }
    if (sdm.getHdrPropTopicSequence() > 0 &&
        _zorClient_msg_setTopicSequenceNumber(msg, sdm.getHdrPropTopicSequence()) != ZORCLIENT_OK) {
        LOG_ERROR("Cannot create topic sequence hdr field");
        return -1;
    }
    const std::string& userData = sdm.getHdrPropUserData();
    if (!userData.empty() && zorClient_msg_setUserData(msg, userData.data(),
                                                       static_cast<zorClient_uint32_t>(
                                                           userData.size())) != ZORCLIENT_OK) {
        LOG_ERROR("Cannot create user data hdr field");
        return -1;
    }
    if (sdm.getHdrPropSequenceNumber() >= 0 &&
        zorClient_msg_setSequenceNumber(msg, sdm.getHdrPropSequenceNumber()) != ZORCLIENT_OK) {
        LOG_ERROR("Cannot create sequence number hdr field");
        return -1;
    }
    if (!sdm.getHdrPropSenderId().empty() &&
        zorClient_msg_setSenderId(msg, sdm.getHdrPropSenderId().c_str()) != ZORCLIENT_OK) {
        LOG_ERROR("Cannot create sender id hdr field");
        return -1;
    }
    return 0;
}

int SdmMessageBuilder::checkField(const SdmField& expected, const zorClient_field_t& received) {
    if (static_cast<int>(expected.type_m) != static_cast<int>(received.type)) {
        return -1;
    }
    const SdmFieldValue& e = expected.value_m;
    const zorClient_fieldValue_t& r = received.value;
    switch (expected.type_m) {
        case SDM_FIELD_TYPE_BOOL:
            return (e.boolean ? 1 : 0) == (r.boolean ? 1 : 0) ? 0 : -1;
        case SDM_FIELD_TYPE_UINT8:
        case SDM_FIELD_TYPE_INT8:
            return e.uint8 == r.uint8 ? 0 : -1;
        case SDM_FIELD_TYPE_UINT16:
        case SDM_FIELD_TYPE_INT16:
            return e.uint16 == r.uint16 ? 0 : -1;
        case SDM_FIELD_TYPE_UINT32:
        case SDM_FIELD_TYPE_INT32:
        case SDM_FIELD_TYPE_WCHAR:
            return e.uint32 == r.uint32 ? 0 : -1;
        case SDM_FIELD_TYPE_UINT64:
        case SDM_FIELD_TYPE_INT64:
            return e.uint64 == r.uint64 ? 0 : -1;
        case SDM_FIELD_TYPE_FLOAT:
            return e.float32 == r.float32 ? 0 : -1;
        case SDM_FIELD_TYPE_DOUBLE:
            return e.float64 == r.float64 ? 0 : -1;
        case SDM_FIELD_TYPE_STRING:
            if (r.string == nullptr || expected.text() != r.string) {
                LOG_ERROR("String Equality failure  Exp: %s, Recv %s.", expected.text().c_str(),
                          r.string != nullptr ? r.string : "");
                return -1;
            }
            return 0;
        case SDM_FIELD_TYPE_BYTEARRAY:
            if (!sameBytes(expected, received)) {
                LOG_ERROR("ByteArray Equality failure  Exp: %s, Recv %s.",
                          hex(reinterpret_cast<const zorClient_uint8_t*>(expected.text().data()),
                              expected.length_m)
                              .c_str(),
                          hex(r.bytes, received.length).c_str());
                return -1;
            }
            return 0;
        case SDM_FIELD_TYPE_NULL:
            return 0;
        case SDM_FIELD_TYPE_DESTINATION:
            return (r.dest.dest != nullptr && expected.text() == r.dest.dest &&
                    destTypeMatches(e.destType, r.dest.destType))
                       ? 0
                       : -1;
        case SDM_FIELD_TYPE_MAP:
            return checkSubMap(r.map, e.numLoops);
        case SDM_FIELD_TYPE_STREAM: {
            size_t size = 0;
            return zorClient_container_getSize(r.stream, &size) == ZORCLIENT_OK &&
                           size == SUB_STREAM_BYTES_PER_LOOP * e.numLoops + CONTAINER_HEADER_BYTES
                       ? 0
                       : -1;
        }
        case SDM_FIELD_TYPE_QWF:
            if (!sameBytes(expected, received)) {
                LOG_ERROR(
                    "QWF Equality failure  Exp: %s, Recv %s.", expected.text().c_str(),
                    std::string(reinterpret_cast<const char*>(r.bytes), received.length).c_str());
                return -1;
            }
            return 0;
        default:
            LOG_ERROR("Field Type not supported:%d", static_cast<int>(expected.type_m));
            return -1;
    }
}

int SdmMessageBuilder::checkMsg(const SdmProperties& sdm, zorClient_opaqueMsg_pt msg) {
    const int id = sdm.getSdmId();
    int result = 0;
    void* userData_p = nullptr;
    zorClient_uint32_t userDataSize = 0;
    if (zorClient_msg_getUserDataPtr(msg, &userData_p, &userDataSize) != ZORCLIENT_OK ||
        userDataSize == 0) {
        return -1;
    }
    if (*static_cast<const unsigned char*>(userData_p) != id) {
        result = -1;
    }

    if (!sdm.getHdrPropReplyTo().empty() && !zorClient_msg_isReplyMsg(msg)) {
        zorClient_destination_t dest;
        if (zorClient_msg_getReplyTo(msg, &dest, sizeof(dest)) != ZORCLIENT_OK) {
            LOG_ERROR("Msg %d: Did not find ReplyTo header", id);
            result = -1;
        } else {
            if (dest.dest == nullptr || sdm.getHdrPropReplyTo() != dest.dest) {
                LOG_ERROR("Msg %d: Found incorrect destination=%s", id,
                          dest.dest != nullptr ? dest.dest : "");
                result = -1;
            }
            if (!destTypeMatches(sdm.getHdrPropReplyToDestType(), dest.destType)) {
                LOG_ERROR("Msg %d: Did not find topic Destination", id);
                result = -1;
            }
        }
    }
    const char* text_p = nullptr;
    if (!sdm.getHdrPropCorrelationId().empty()) {
        if (zorClient_msg_getCorrelationId(msg, &text_p) != ZORCLIENT_OK) {
            LOG_ERROR("Msg %d: Did not find correlation ID in header", id);
            result = -1;
        } else if (sdm.getHdrPropCorrelationId() != text_p) {
            LOG_ERROR("Msg %d: Found incorrect correlation ID=%s", id, text_p);
            result = -1;
        }
    }
    if (!sdm.getHdrPropMessageId().empty()) {
        if (zorClient_msg_getApplicationMessageId(msg, &text_p) != ZORCLIENT_OK) {
            LOG_ERROR("Msg %d: Did not find message ID in header", id);
            result = -1;
        } else if (sdm.getHdrPropMessageId() != text_p) {
            LOG_ERROR("Msg %d: Found incorrect message ID=%s", id, text_p);
            result = -1;
        }
    }
    if (!sdm.getHdrPropMessageType().empty()) {
        if (zorClient_msg_getApplicationMsgType(msg, &text_p) != ZORCLIENT_OK) {
            LOG_ERROR("Msg %d: Did not find message type in header", id);
            result = -1;
        } else if (sdm.getHdrPropMessageType() != text_p) {
            LOG_ERROR("Msg %d: Found incorrect message type=%s", id, text_p);
            result = -1;
        }
    }
    zorClient_int64_t number = 0;
    if (sdm.getHdrPropTimestamp() >= 0) {
        if (zorClient_msg_getSenderTimestamp(msg, &number) != ZORCLIENT_OK) {
            LOG_ERROR("Msg %d: Did not find timestamp in header", id);
            result = -1;
        } else if (number != sdm.getHdrPropTimestamp()) {
            LOG_ERROR("Msg %d: Found incorrect timestamp type=%lld", id,
                      static_cast<long long>(number));
            result = -1;
        }
    }
    if (sdm.getHdrPropTopicSequence() > 0) {
        if (zorClient_msg_getTopicSequenceNumber(msg, &number) != ZORCLIENT_OK) {
            LOG_ERROR("Msg %d: Did not find topic sequence in header", id);
            result = -1;
        } else if (number != sdm.getHdrPropTopicSequence()) {
            LOG_ERROR("Msg %d: Found incorrect topic sequence type=%lld", id,
                      static_cast<long long>(number));
            result = -1;
        }
    }
    if (sdm.getHdrPropSequenceNumber() >= 0) {
        if (zorClient_msg_getSequenceNumber(msg, &number) != ZORCLIENT_OK) {
            LOG_ERROR("Msg %d: Did not find sequence number in header", id);
            result = -1;
        } else if (number != sdm.getHdrPropSequenceNumber()) {
            LOG_ERROR("Msg %d: Found incorrect sequence number type=%lld", id,
                      static_cast<long long>(number));
            result = -1;
        }
    }
    if (!sdm.getHdrPropSenderId().empty()) {
        if (zorClient_msg_getSenderId(msg, &text_p) != ZORCLIENT_OK) {
            LOG_ERROR("Msg %d: Did not find sender id in header", id);
            result = -1;
        } else if (sdm.getHdrPropSenderId() != text_p) {
            LOG_ERROR("Msg %d: Found incorrect sender id type=%s", id, text_p);
            result = -1;
        }
    }

    // The containers that must not be there are opened only to prove them
    // absent, and closed at once.
    auto mustBeAbsent =
        [&](zorClient_returnCode_t (*open)(zorClient_opaqueMsg_pt, zorClient_opaqueContainer_pt*),
            const char* format_p) {
            zorClient_opaqueContainer_pt unexpected = nullptr;
            if (open(msg, &unexpected) == ZORCLIENT_OK) {
                LOG_ERROR(format_p, id);
                zorClient_container_closeMapStream(&unexpected);
                result = -1;
            }
        };
    zorClient_opaqueContainer_pt container = nullptr;
    if (sdm.isMapMsg() && sdm.useBinAttach()) {
        mustBeAbsent(zorClient_msg_getUserPropertyMap,
                     "Msg %d: Found unexpected User Property Map header");
        mustBeAbsent(zorClient_msg_getBinaryAttachmentStream,
                     "Msg %d: Found unexpected Attachment Stream header");
        if (zorClient_msg_getBinaryAttachmentMap(msg, &container) != ZORCLIENT_OK) {
            LOG_ERROR("Msg# %d: Did not find expected attachment map", id);
            return -1;
        }
    } else if (sdm.isMapMsg()) {
        mustBeAbsent(zorClient_msg_getBinaryAttachmentMap,
                     "Msg %d: Found unexpected Attachment Map header");
        mustBeAbsent(zorClient_msg_getBinaryAttachmentStream,
                     "Msg %d: Found unexpected Attachment Stream header");
        if (zorClient_msg_getUserPropertyMap(msg, &container) != ZORCLIENT_OK) {
            LOG_ERROR("Msg# %d: Did not find expected user property map", id);
            return -1;
        }
    } else if (sdm.useBinAttach()) {
        mustBeAbsent(zorClient_msg_getUserPropertyMap,
                     "Msg %d: Found unexpected User Property Map header");
        mustBeAbsent(zorClient_msg_getBinaryAttachmentMap,
                     "Msg %d: Found unexpected Attachment Map header");
        if (zorClient_msg_getBinaryAttachmentStream(msg, &container) != ZORCLIENT_OK) {
            LOG_ERROR("Msg# %d: Did not find expected attachment stream", id);
            return -1;
        }
    } else {
        LOG_ERROR("Msg# %d: Invalid config.  Cannot create stream in user props", id);
        return -1;
    }
    if (result != 0) {
        zorClient_container_closeMapStream(&container);
        return -1;
    }

    zorClient_field_t field;
    if (!sdm.isMapMsg()) {
        for (const auto& expected : sdm.getStreamFields()) {
            if (zorClient_container_getField(container, &field, sizeof(field), nullptr) !=
                ZORCLIENT_OK) {
                LOG_ERROR("Msg# %d: Not enough fields found in stream", id);
                result = -1;
                break;
            }
            const int same = checkField(expected, field);
            closeReadHandle(field);
            if (same != 0) {
                result = -1;
                break;
            }
        }
        if (zorClient_container_getField(container, &field, sizeof(field), nullptr) !=
            ZORCLIENT_EOS) {
            LOG_ERROR("Msg# %d: Did not get EOS at end of expected fields.", id);
            result = -1;
        }
    } else {
        const auto& expectedFields = sdm.getMapFields();
        size_t guard = expectedFields.size() + 10;
        const char* name_p = nullptr;
        while (zorClient_container_getNextField(container, &field, sizeof(field), &name_p) ==
               ZORCLIENT_OK) {
            if (guard-- == 0) {
                LOG_ERROR("Msg# %d: Guard hit while reading map.", id);
                result = -1;
                break;
            }
            const auto found =
                expectedFields.find(std::string_view(name_p != nullptr ? name_p : ""));
            if (found == expectedFields.end()) {
                LOG_ERROR("Msg# %d: Key not expected: %s", id, name_p != nullptr ? name_p : "");
                result = -1;
                break;
            }
            const int same = checkField(found->second, field);
            closeReadHandle(field);
            if (same != 0) {
                result = -1;
                break;
            }
        }
    }
    zorClient_container_closeMapStream(&container);
    return result;
}

}  // namespace zorvane::pubsub
