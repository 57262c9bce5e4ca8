// Reader of the structured message description language.
//
// A line is one of three kinds, decided by keywords searched anywhere in it
// (what stands before a keyword is ignored, so "1) msg:type=map" works):
//   msg:key=value    a message property (container kind and place)
//   hdr:key=value    a header property of the message
//   anything else    a field: keyword [name=...] value=...
// The first kind that matches decides, so a line with both "msg:" and
// "hdr:" is a message property.
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <system_error>
#include <utility>
#include <vector>

#include "common/ChunkedContent.h"
#include "common/CommonUtils.h"
#include "common/DiskUtils.h"
#include "common/PubSubException.h"
#include "common/SdmProperties.h"

namespace zorvane::pubsub {

namespace {

constexpr char MSG_PROPERTY_KEYWORD[] = "msg:";
constexpr char HDR_PROPERTY_KEYWORD[] = "hdr:";
constexpr char NAME_KEYWORD[] = "name=";
constexpr char VALUE_KEYWORD[] = "value=";

constexpr char FIELD_TYPE_WORDS[] =
    "bool, uint8, int8, uint16, int16, uint32, int32, uint64, int64, wchar, string, bytearray, "
    "float, double, map, stream, null, destination or qwf";
constexpr char DEST_TYPE_WORDS[] = "topic, queue, tempTopic or tempQueue";

std::string trimmed(std::string text) {
    DiskUtils::trimSpaces(text);
    return text;
}

// Numbers follow the C conversions: base 0 takes decimal, "0x" hexadecimal
// and a leading 0 octal, trailing text is ignored, and out-of-range values
// clamp. Descriptions are written by hand for tests, and a lenient reading
// of numbers is what their writers have always relied on.
UINT64 toUnsigned(const std::string& value) {
    return std::strtoull(value.c_str(), nullptr, 0);
}

INT64 toSigned(const std::string& value, int base) {
    return std::strtoll(value.c_str(), nullptr, base);
}

int hexDigitValue(char digit) {
    if (digit >= '0' && digit <= '9') {
        return digit - '0';
    }
    if (digit >= 'a' && digit <= 'f') {
        return digit - 'a' + 10;
    }
    if (digit >= 'A' && digit <= 'F') {
        return digit - 'A' + 10;
    }
    return -1;
}

bool destinationTypeFromWord(const std::string& word, SdmDestinationType& type) {
    if (word == SdmProperties::C_DEST_TYPE_TOPIC) {
        type = SDM_DEST_TYPE_TOPIC;
    } else if (word == SdmProperties::C_DEST_TYPE_QUEUE) {
        type = SDM_DEST_TYPE_QUEUE;
    } else if (word == SdmProperties::C_DEST_TYPE_TEMP_TOPIC) {
        type = SDM_DEST_TYPE_TEMP_TOPIC;
    } else if (word == SdmProperties::C_DEST_TYPE_TEMP_QUEUE) {
        type = SDM_DEST_TYPE_TEMP_QUEUE;
    } else {
        return false;
    }
    return true;
}

struct FieldKeyword {
    const char* word;
    SdmFieldType type;
};

constexpr FieldKeyword FIELD_KEYWORDS[] = {
    {SdmProperties::C_FIELD_TYPE_BOOL, SDM_FIELD_TYPE_BOOL},
    {SdmProperties::C_FIELD_TYPE_UINT8, SDM_FIELD_TYPE_UINT8},
    {SdmProperties::C_FIELD_TYPE_INT8, SDM_FIELD_TYPE_INT8},
    {SdmProperties::C_FIELD_TYPE_UINT16, SDM_FIELD_TYPE_UINT16},
    {SdmProperties::C_FIELD_TYPE_INT16, SDM_FIELD_TYPE_INT16},
    {SdmProperties::C_FIELD_TYPE_UINT32, SDM_FIELD_TYPE_UINT32},
    {SdmProperties::C_FIELD_TYPE_INT32, SDM_FIELD_TYPE_INT32},
    {SdmProperties::C_FIELD_TYPE_UINT64, SDM_FIELD_TYPE_UINT64},
    {SdmProperties::C_FIELD_TYPE_INT64, SDM_FIELD_TYPE_INT64},
    {SdmProperties::C_FIELD_TYPE_WCHAR, SDM_FIELD_TYPE_WCHAR},
    {SdmProperties::C_FIELD_TYPE_STRING, SDM_FIELD_TYPE_STRING},
    {SdmProperties::C_FIELD_TYPE_BYTEARRAY, SDM_FIELD_TYPE_BYTEARRAY},
    {SdmProperties::C_FIELD_TYPE_FLOAT, SDM_FIELD_TYPE_FLOAT},
    {SdmProperties::C_FIELD_TYPE_DOUBLE, SDM_FIELD_TYPE_DOUBLE},
    {SdmProperties::C_FIELD_TYPE_MAP, SDM_FIELD_TYPE_MAP},
    {SdmProperties::C_FIELD_TYPE_STREAM, SDM_FIELD_TYPE_STREAM},
    {SdmProperties::C_FIELD_TYPE_NULL, SDM_FIELD_TYPE_NULL},
    {SdmProperties::C_FIELD_TYPE_DESTINATION, SDM_FIELD_TYPE_DESTINATION},
    {SdmProperties::C_FIELD_TYPE_QWF, SDM_FIELD_TYPE_QWF},
};

}  // namespace

void SdmProperties::parseInputFile(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    std::error_code ignored;
    // A directory opens like a file on Linux but has no lines; naming one
    // is as wrong as naming nothing.
    if (!in.is_open() || std::filesystem::is_directory(path, ignored)) {
        throw PubSubException("File not found: " + path);
    }
    std::vector<std::pair<std::size_t, std::string>> lines;
    std::string line;
    std::size_t lineNumber = 0;
    while (std::getline(in, line)) {
        ++lineNumber;
        // A file written on Windows ends its lines with CR LF; the CR is
        // part of the line end, not of the last value.
        if (!line.empty() && line.back() == '\r') {
            line.pop_back();
        }
        DiskUtils::trimSpaces(line);
        if (line.empty() || line[0] == '#') {
            continue;
        }
        lines.emplace_back(lineNumber, line);
    }
    parseNumberedLines(lines, &path);
}

void SdmProperties::parseInputString(const std::vector<std::string>& lines) {
    std::vector<std::pair<std::size_t, std::string>> numbered;
    numbered.reserve(lines.size());
    for (std::size_t index = 0; index < lines.size(); ++index) {
        numbered.emplace_back(index + 1, lines[index]);
    }
    parseNumberedLines(numbered, nullptr);
}

void SdmProperties::parseNumberedLines(
    const std::vector<std::pair<std::size_t, std::string>>& lines, const std::string* source_p) {
    for (const auto& [lineNumber, line] : lines) {
        parseLine(line, LineOrigin{source_p, lineNumber});
    }
}

void SdmProperties::fail(const LineOrigin& origin, const std::string& what,
                         const std::string& expected) {
    std::string text;
    if (origin.source_p != nullptr) {
        text = *origin.source_p + ":" + std::to_string(origin.lineNumber) + ": ";
    } else {
        text = "line " + std::to_string(origin.lineNumber) + ": ";
    }
    text += what;
    text += " (expected ";
    text += expected;
    text += ")";
    throw PubSubException(text);
}

void SdmProperties::parseLine(const std::string& line, const LineOrigin& origin) {
    const std::size_t msgPos = line.find(MSG_PROPERTY_KEYWORD);
    if (msgPos != std::string::npos) {
        parseMsgProperty(trimmed(line.substr(msgPos + sizeof MSG_PROPERTY_KEYWORD - 1)), origin);
        return;
    }
    const std::size_t hdrPos = line.find(HDR_PROPERTY_KEYWORD);
    if (hdrPos != std::string::npos) {
        parseHdrProperty(trimmed(line.substr(hdrPos + sizeof HDR_PROPERTY_KEYWORD - 1)), origin);
        return;
    }
    parseFieldLine(line, origin);
}

namespace {

// Splits "key = value" at the first "="; false when there is none.
bool splitProperty(const std::string& property, std::string& key, std::string& value) {
    const std::size_t equals = property.find('=');
    if (equals == std::string::npos) {
        return false;
    }
    key = trimmed(property.substr(0, equals));
    value = trimmed(property.substr(equals + 1));
    return true;
}

}  // namespace

void SdmProperties::parseMsgProperty(const std::string& property, const LineOrigin& origin) {
    std::string key;
    std::string value;
    if (!splitProperty(property, key, value)) {
        fail(origin, "Line not understood.  Didn't find '=' in line: " + property,
             "key=value after \"msg:\"");
    }
    if (key == "type") {
        if (value == "stream") {
            isMapMsg_m = false;
        } else if (value == "map") {
            isMapMsg_m = true;
        } else {
            fail(origin, "Type not understood: " + value, "\"stream\" or \"map\"");
        }
        // Fields read so far were read for the other kind of container (or
        // for the same kind before the writer changed their mind); the
        // type starts the container afresh.
        streamFields_m.clear();
        mapFields_m.clear();
    } else if (key == "useBinaryAttachment") {
        // Only "0" means no: "false" is a yes, as it always has been.
        useBinAttach_m = value != "0";
    } else {
        fail(origin, "Line not understood.  Didn't understand msg property: " + property,
             "\"type\" or \"useBinaryAttachment\" after \"msg:\"");
    }
}

void SdmProperties::parseHdrProperty(const std::string& property, const LineOrigin& origin) {
    std::string key;
    std::string value;
    if (!splitProperty(property, key, value)) {
        fail(origin, "Line not understood.  Didn't find '=' in line: " + property,
             "key=value after \"hdr:\"");
    }
    if (key == "replyTo") {
        hdrPropReplyTo_m = value;
    } else if (key == "replyToDestType") {
        if (!destinationTypeFromWord(value, hdrPropReplyToDestType_m)) {
            fail(origin, "Reply To Destination Type not supported:" + property, DEST_TYPE_WORDS);
        }
    } else if (key == "correlationId") {
        hdrPropCorrelationId_m = value;
    } else if (key == "messageId") {
        hdrPropMessageId_m = value;
    } else if (key == "messageType") {
        hdrPropMessageType_m = value;
    } else if (key == "timestamp") {
        hdrPropTimestamp_m = toSigned(value, 10);
    } else if (key == "topicSequence") {
        hdrPropTopicSequence_m = toSigned(value, 10);
    } else if (key == "userData") {
        hdrPropUserData_m = value;
    } else if (key == "sequenceNumber") {
        hdrPropSequenceNumber_m = toSigned(value, 10);
    } else if (key == "senderId") {
        hdrPropSenderId_m = value;
    } else {
        fail(origin, "Line not understood.  Didn't understand msg property: " + property,
             "one of replyTo, replyToDestType, correlationId, messageId, messageType, timestamp, "
             "topicSequence, userData, sequenceNumber or senderId after \"hdr:\"");
    }
}

void SdmProperties::parseFieldLine(const std::string& line, const LineOrigin& origin) {
    // Every keyword is taken at its first occurrence in the line.
    const std::size_t valuePos = line.find(VALUE_KEYWORD);
    if (valuePos == std::string::npos) {
        fail(origin, "Line not understood.  Couldn't find value: " + line,
             "a field: type keyword, then \"value=\" and the value");
    }
    std::string keyword;
    std::string name;
    if (isMapMsg_m) {
        const std::size_t namePos = line.find(NAME_KEYWORD);
        if (namePos == std::string::npos) {
            fail(origin, "Line not understood.  Couldn't find name: " + line,
                 "a map field: type keyword, \"name=\" and the name, then \"value=\"");
        }
        // The name ends one character before "value=", which is where the
        // separating blank stands in a well-written line. A "value=" that
        // comes first, or straight behind "name=", leaves no name.
        const std::size_t nameStart = namePos + sizeof NAME_KEYWORD - 1;
        if (valuePos > nameStart) {
            name = trimmed(line.substr(nameStart, valuePos - 1 - nameStart));
        }
        keyword = trimmed(line.substr(0, namePos));
    } else {
        // A stream field has no name; a "name=" here becomes part of the
        // keyword, which then matches no type.
        keyword = trimmed(line.substr(0, valuePos));
    }
    const std::string value = trimmed(line.substr(valuePos + sizeof VALUE_KEYWORD - 1));

    // QWF content counts against the description's budget; a map field that
    // is replaced gives its share back.
    UINT64 budgetInUse = qwfContentBytes();
    if (isMapMsg_m) {
        const auto existing = mapFields_m.find(name);
        if (existing != mapFields_m.end() && existing->second.type_m == SDM_FIELD_TYPE_QWF) {
            budgetInUse -= existing->second.length_m;
        }
    }
    SdmField field = makeField(keyword, value, MAX_QWF_CONTENT_BYTES - budgetInUse, origin);
    if (isMapMsg_m) {
        // A repeated name keeps the later field.
        mapFields_m.insert_or_assign(name, std::move(field));
    } else {
        streamFields_m.push_back(std::move(field));
    }
}

UINT64 SdmProperties::qwfContentBytes() const {
    UINT64 total = 0;
    for (const SdmField& field : streamFields_m) {
        total += field.type_m == SDM_FIELD_TYPE_QWF ? field.length_m : 0;
    }
    for (const auto& entry : mapFields_m) {
        total += entry.second.type_m == SDM_FIELD_TYPE_QWF ? entry.second.length_m : 0;
    }
    return total;
}

SdmField SdmProperties::makeField(const std::string& keyword, const std::string& value,
                                  UINT64 qwfBudget, const LineOrigin& origin) const {
    const FieldKeyword* found_p = nullptr;
    for (const FieldKeyword& candidate : FIELD_KEYWORDS) {
        if (keyword == candidate.word) {
            found_p = &candidate;
            break;
        }
    }
    if (found_p == nullptr) {
        fail(origin, "Field Type not supported:" + keyword, FIELD_TYPE_WORDS);
    }

    SdmField field;
    field.type_m = found_p->type;
    SdmFieldValue& out = field.value_m;
    switch (field.type_m) {
        case SDM_FIELD_TYPE_BOOL:
            // Only "0" is false; "false" is true.
            out.boolean = value != "0";
            break;
        case SDM_FIELD_TYPE_UINT8:
            out.uint8 = static_cast<std::uint8_t>(toUnsigned(value));
            break;
        case SDM_FIELD_TYPE_INT8:
            // Read as unsigned and cut to 8 bits: "255" and "-1" give the
            // same byte.
            out.int8 = static_cast<INT8>(static_cast<std::uint8_t>(toUnsigned(value)));
            break;
        case SDM_FIELD_TYPE_UINT16:
            out.uint16 = static_cast<UINT16>(toUnsigned(value));
            break;
        case SDM_FIELD_TYPE_INT16:
            out.int16 = static_cast<std::int16_t>(static_cast<UINT16>(toSigned(value, 0)));
            break;
        case SDM_FIELD_TYPE_UINT32:
            out.uint32 = static_cast<UINT32>(toUnsigned(value));
            break;
        case SDM_FIELD_TYPE_INT32:
            out.int32 = static_cast<INT32>(static_cast<UINT32>(toSigned(value, 0)));
            break;
        case SDM_FIELD_TYPE_UINT64:
            out.uint64 = toUnsigned(value);
            break;
        case SDM_FIELD_TYPE_INT64:
            out.int64 = toSigned(value, 0);
            break;
        case SDM_FIELD_TYPE_WCHAR:
            out.wchar = value.empty() ? 0 : static_cast<INT32>(static_cast<signed char>(value[0]));
            break;
        case SDM_FIELD_TYPE_STRING:
            field.text_m = std::make_shared<const std::string>(value);
            break;
        case SDM_FIELD_TYPE_BYTEARRAY: {
            // Two digits a byte; an odd last digit is dropped.
            std::string bytes(value.size() / 2, '\0');
            for (std::size_t index = 0; index < bytes.size(); ++index) {
                const int high = hexDigitValue(value[2 * index]);
                const int low = hexDigitValue(value[2 * index + 1]);
                if (high < 0 || low < 0) {
                    fail(origin, "Byte array value is not hexadecimal: " + value,
                         "two hexadecimal digits for each byte");
                }
                bytes[index] = static_cast<char>((high << 4) | low);
            }
            field.length_m = static_cast<UINT32>(bytes.size());
            field.text_m = std::make_shared<const std::string>(std::move(bytes));
            break;
        }
        case SDM_FIELD_TYPE_FLOAT:
            // Out of float range gives an infinity, never a fault.
            out.float32 = static_cast<float>(std::strtod(value.c_str(), nullptr));
            break;
        case SDM_FIELD_TYPE_DOUBLE:
            out.float64 = std::strtod(value.c_str(), nullptr);
            break;
        case SDM_FIELD_TYPE_MAP:
        case SDM_FIELD_TYPE_STREAM:
            out.numLoops = toUnsigned(value);
            break;
        case SDM_FIELD_TYPE_NULL:
            // The value is not read, though "value=" has to be there.
            break;
        case SDM_FIELD_TYPE_DESTINATION:
            parseDestination(value, field, origin);
            break;
        case SDM_FIELD_TYPE_QWF: {
            const UINT64 size = toUnsigned(value);
            if (size > qwfBudget) {
                fail(origin, "QWF size too large: " + value,
                     "a size that keeps the QWF content of one description within " +
                         std::to_string(MAX_QWF_CONTENT_BYTES) + " bytes, " +
                         std::to_string(qwfBudget) + " bytes being left");
            }
            field.length_m = static_cast<UINT32>(size);
            field.text_m = std::make_shared<const std::string>(
                makeChunkedContent(static_cast<std::size_t>(size), 'A'));
            break;
        }
    }
    return field;
}

void SdmProperties::parseDestination(const std::string& value, SdmField& field,
                                     const LineOrigin& origin) {
    const std::size_t topicEnd = value.find(TOPIC_END);
    field.value_m.destType = SDM_DEST_TYPE_TOPIC;
    if (topicEnd == std::string::npos) {
        field.text_m = std::make_shared<const std::string>(value);
        return;
    }
    field.text_m = std::make_shared<const std::string>(value.substr(0, topicEnd));
    const std::string rest = trimmed(value.substr(topicEnd + std::string(TOPIC_END).size()));
    std::vector<std::string> flags;
    CommonUtils::tokenizeString(rest, flags, ",");
    // Nothing behind the end mark is one empty flag, and so a fault too.
    for (const std::string& flag : flags) {
        const std::size_t dtPos = flag.find(DESTINATION_TYPE);
        if (dtPos == std::string::npos) {
            fail(origin, "No valid flag found after topic end:" + rest,
                 std::string("\"") + DESTINATION_TYPE + "\" and a destination type behind \"" +
                     TOPIC_END + "\"");
        }
        // The last flag decides.
        if (!destinationTypeFromWord(flag.substr(dtPos + std::string(DESTINATION_TYPE).size()),
                                     field.value_m.destType)) {
            fail(origin, "Destination Type not supported:" + rest,
                 std::string(DESTINATION_TYPE) + " with " + DEST_TYPE_WORDS);
        }
    }
}

}  // namespace zorvane::pubsub
