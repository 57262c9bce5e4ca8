#include "common/SdmProperties.h"

#include <cstdio>
#include <sstream>

namespace zorvane::pubsub {

namespace {

void printBytesAsHex(std::ostream& out, const std::string& bytes) {
    char pair[3];
    for (unsigned char byte : bytes) {
        std::snprintf(pair, sizeof pair, "%02x", byte);
        out << pair;
    }
}

// One field after its name (if any): type label and value.
void printField(std::ostream& out, const SdmField& field) {
    const SdmFieldValue& value = field.value_m;
    switch (field.type_m) {
        case SDM_FIELD_TYPE_BOOL:
            out << " T: BOOL   V: " << (value.boolean ? "true" : "false");
            break;
        case SDM_FIELD_TYPE_UINT8:
            out << " T: UINT8 V: " << static_cast<unsigned>(value.uint8);
            break;
        case SDM_FIELD_TYPE_INT8:
            out << " T: INT8  V: " << static_cast<int>(value.int8);
            break;
        case SDM_FIELD_TYPE_UINT16:
            out << " T: UINT16 V: " << value.uint16;
            break;
        case SDM_FIELD_TYPE_INT16:
            out << " T: INT16  V: " << value.int16;
            break;
        case SDM_FIELD_TYPE_UINT32:
            out << " T: UINT32 V: " << value.uint32;
            break;
        case SDM_FIELD_TYPE_INT32:
            out << " T: INT32  V: " << value.int32;
            break;
        case SDM_FIELD_TYPE_UINT64:
            out << " T: UINT64 V: " << value.uint64;
            break;
        case SDM_FIELD_TYPE_INT64:
            out << " T: INT64  V: " << value.int64;
            break;
        case SDM_FIELD_TYPE_WCHAR:
            out << " T: WCHAR V: " << value.wchar;
            break;
        case SDM_FIELD_TYPE_STRING:
            out << " T: STRING V: " << field.text();
            break;
        case SDM_FIELD_TYPE_BYTEARRAY:
            out << " T: BYTEARRAY V: ";
            printBytesAsHex(out, field.text());
            break;
        case SDM_FIELD_TYPE_FLOAT:
            out << " T: FLOAT  V: " << value.float32;
            break;
        case SDM_FIELD_TYPE_DOUBLE:
            out << " T: DOUBLE V: " << value.float64;
            break;
        case SDM_FIELD_TYPE_MAP:
            out << " T: MAP V: Num Loops = " << value.numLoops;
            break;
        case SDM_FIELD_TYPE_STREAM:
            out << " T: STREAM V: Num Loops = " << value.numLoops;
            break;
        case SDM_FIELD_TYPE_NULL:
            out << " T: NULL V: -";
            break;
        case SDM_FIELD_TYPE_DESTINATION:
            out << " T: DESTINATION V: " << field.text() << " / " << value.destType;
            break;
        case SDM_FIELD_TYPE_QWF:
            out << " T: QWF V: " << field.text();
            break;
    }
}

}  // namespace

SdmProperties::SdmProperties()
    : sdmMsgId_m(PUBSUB_SDM_ID_NULL),
      isMapMsg_m(false),
      useBinAttach_m(false),
      streamFields_m(),
      mapFields_m(),
      hdrPropCorrelationId_m(),
      hdrPropMessageId_m(),
      hdrPropMessageType_m(),
      hdrPropTimestamp_m(-1),
      hdrPropReplyTo_m(),
      hdrPropReplyToDestType_m(SDM_DEST_TYPE_TOPIC),
      hdrPropTopicSequence_m(0),
      hdrPropUserData_m(),
      hdrPropSequenceNumber_m(-1),
      hdrPropSenderId_m() {}

std::unique_ptr<SdmProperties> SdmProperties::clone() const {
    return std::make_unique<SdmProperties>(*this);
}

std::string SdmProperties::toString() const {
    std::ostringstream out;
    out << "{\n"
        << " Msg ID        : " << sdmMsgId_m
        << " (Note -1 NULL, 0..50 is famous types, ie ignore rest of print out) \n"
        << " Msg Location  : " << (useBinAttach_m ? "Binary Attachment" : "Binary Meta - User Map")
        << "\n"
        << " Msg Type      : " << (isMapMsg_m ? "MAP" : "STREAM") << "\n"
        << " Hdr ReplyTo            : " << hdrPropReplyTo_m << "\n"
        << " Hdr ReplyTo Dest Type  : " << hdrPropReplyToDestType_m << "\n"
        << " Hdr Cor Id    : " << hdrPropCorrelationId_m << "\n"
        << " Hdr Msg Id    : " << hdrPropMessageId_m << "\n"
        << " Hdr Msg Type  : " << hdrPropMessageType_m << "\n"
        << " Hdr Timestamp : " << hdrPropTimestamp_m << "\n"
        << " Hdr Topic Seq : " << hdrPropTopicSequence_m << "\n"
        << " Hdr User Data : " << hdrPropUserData_m << "\n"
        << " Sequence Number : " << hdrPropSequenceNumber_m << "\n"
        << " Sender Id : " << hdrPropSenderId_m << "\n"
        << " Structured Fields   : \n";
    if (isMapMsg_m) {
        for (const auto& [name, field] : mapFields_m) {
            out << " N: " << name;
            printField(out, field);
            out << "\n";
        }
    } else {
        for (const SdmField& field : streamFields_m) {
            printField(out, field);
            out << "\n";
        }
    }
    out << "}";
    return out.str();
}

}  // namespace zorvane::pubsub
