// One structured message description: which container a message carries (a
// map or a stream, in the binary attachment or in the user property map),
// the typed fields in it, and the header fields of the message. Users write
// descriptions in a small line-oriented language ("-sdm="); parseInputFile
// reads one file of it.
//
// The description is plain data. Building a library message from it and
// checking a received message against it happen in client/zcore, which
// walks the fields and header values read through the getters here.
//
// Ownership and threads: a value; copies share the texts of their fields
// (see SdmField). A description is written only while it is parsed, on the
// main thread before traffic starts; afterwards any number of threads read
// it without a lock. Parsing reads a file and may block on the disk.
#pragma once

#include <functional>
#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "common/SdmField.h"
#include "common/dataTypes.h"

namespace zorvane::pubsub {

class SdmProperties {
  public:
    // Keywords of the destination notation: name<TOPIC_END/>DT=queue.
    static constexpr const char* TOPIC_END = "<TOPIC_END/>";
    static constexpr const char* DESTINATION_TYPE = "DT=";
    static constexpr const char* C_DEST_TYPE_TOPIC = "topic";
    static constexpr const char* C_DEST_TYPE_QUEUE = "queue";
    static constexpr const char* C_DEST_TYPE_TEMP_TOPIC = "tempTopic";
    static constexpr const char* C_DEST_TYPE_TEMP_QUEUE = "tempQueue";

    // Field type keywords of the description language.
    static constexpr const char* C_FIELD_TYPE_BOOL = "bool";
    static constexpr const char* C_FIELD_TYPE_UINT8 = "uint8";
    static constexpr const char* C_FIELD_TYPE_INT8 = "int8";
    static constexpr const char* C_FIELD_TYPE_UINT16 = "uint16";
    static constexpr const char* C_FIELD_TYPE_INT16 = "int16";
    static constexpr const char* C_FIELD_TYPE_UINT32 = "uint32";
    static constexpr const char* C_FIELD_TYPE_INT32 = "int32";
    static constexpr const char* C_FIELD_TYPE_UINT64 = "uint64";
    static constexpr const char* C_FIELD_TYPE_INT64 = "int64";
    static constexpr const char* C_FIELD_TYPE_WCHAR = "wchar";
    static constexpr const char* C_FIELD_TYPE_STRING = "string";
    static constexpr const char* C_FIELD_TYPE_BYTEARRAY = "bytearray";
    static constexpr const char* C_FIELD_TYPE_FLOAT = "float";
    static constexpr const char* C_FIELD_TYPE_DOUBLE = "double";
    static constexpr const char* C_FIELD_TYPE_MAP = "map";
    static constexpr const char* C_FIELD_TYPE_STREAM = "stream";
    static constexpr const char* C_FIELD_TYPE_NULL = "null";
    static constexpr const char* C_FIELD_TYPE_DESTINATION = "destination";
    static constexpr const char* C_FIELD_TYPE_QWF = "qwf";

    // Most bytes of generated QWF content one description may hold. The
    // content is generated when the description is read and lives as long
    // as the description, so a size meant as a message count or a typo of a
    // few digits must not take the process's memory.
    static constexpr UINT64 MAX_QWF_CONTENT_BYTES = 32ULL * 1024 * 1024;

    // Id -1 (no structured message), a stream in the user property map (a
    // combination that cannot be built: a stream exists only in the binary
    // attachment), no fields, no header fields.
    SdmProperties();
    SdmProperties(const SdmProperties&) = default;
    SdmProperties& operator=(const SdmProperties&) = default;
    SdmProperties(SdmProperties&&) = default;
    SdmProperties& operator=(SdmProperties&&) = default;
    virtual ~SdmProperties() = default;

    // A copy on the heap; the caller owns it.
    std::unique_ptr<SdmProperties> clone() const;

    // The id travels as the first byte of the user data of a message.
    void setSdmMsgId(int id) { sdmMsgId_m = id; }
    int getSdmId() const { return sdmMsgId_m; }

    // Reads a description file. Blanks and tabs are trimmed from each line;
    // empty lines and lines starting with "#" are skipped. Throws
    // PubSubException when the file cannot be read ("File not found: ") or
    // a line is faulty; the text then names the file, the line number and
    // what was expected there.
    void parseInputFile(const std::string& path);

    // Parses lines as they are given (no trimming or skipping of comments),
    // into this object. Faults throw PubSubException naming the line number.
    void parseInputString(const std::vector<std::string>& lines);

    // Debug text, one line per property and field.
    std::string toString() const;

    // ---- read by the builder and checker in client/zcore ----

    bool isMapMsg() const { return isMapMsg_m; }
    bool useBinAttach() const { return useBinAttach_m; }
    // Stream fields in line order.
    const std::vector<SdmField>& getStreamFields() const { return streamFields_m; }
    // Map fields by name, in name order. Looked up by a received field's
    // name without making a string of it: the check runs per message.
    using MapFields = std::map<std::string, SdmField, std::less<>>;
    const MapFields& getMapFields() const { return mapFields_m; }
    const std::string& getHdrPropCorrelationId() const { return hdrPropCorrelationId_m; }
    const std::string& getHdrPropMessageId() const { return hdrPropMessageId_m; }
    const std::string& getHdrPropMessageType() const { return hdrPropMessageType_m; }
    // Negative: not set.
    long long getHdrPropTimestamp() const { return hdrPropTimestamp_m; }
    // Empty: not set.
    const std::string& getHdrPropReplyTo() const { return hdrPropReplyTo_m; }
    SdmDestinationType getHdrPropReplyToDestType() const { return hdrPropReplyToDestType_m; }
    // 0 or less: not set.
    long long getHdrPropTopicSequence() const { return hdrPropTopicSequence_m; }
    // Empty: the user data is the single id byte.
    const std::string& getHdrPropUserData() const { return hdrPropUserData_m; }
    // Negative: not set.
    long long getHdrPropSequenceNumber() const { return hdrPropSequenceNumber_m; }
    const std::string& getHdrPropSenderId() const { return hdrPropSenderId_m; }

  private:
    // Where a line came from, for the text of a fault.
    struct LineOrigin {
        const std::string* source_p;  // file name, or null for given lines
        std::size_t lineNumber;       // from 1
    };

    void parseNumberedLines(const std::vector<std::pair<std::size_t, std::string>>& lines,
                            const std::string* source_p);
    void parseLine(const std::string& line, const LineOrigin& origin);
    void parseMsgProperty(const std::string& property, const LineOrigin& origin);
    void parseHdrProperty(const std::string& property, const LineOrigin& origin);
    void parseFieldLine(const std::string& line, const LineOrigin& origin);
    // qwfBudget: QWF content bytes the description may still take.
    SdmField makeField(const std::string& keyword, const std::string& value, UINT64 qwfBudget,
                       const LineOrigin& origin) const;
    static void parseDestination(const std::string& value, SdmField& field,
                                 const LineOrigin& origin);
    UINT64 qwfContentBytes() const;
    [[noreturn]] static void fail(const LineOrigin& origin, const std::string& what,
                                  const std::string& expected);

    int sdmMsgId_m;
    bool isMapMsg_m;      // a map (true) or a stream (false)
    bool useBinAttach_m;  // in the binary attachment (true) or the user property map (false)
    std::vector<SdmField> streamFields_m;
    MapFields mapFields_m;
    std::string hdrPropCorrelationId_m;
    std::string hdrPropMessageId_m;
    std::string hdrPropMessageType_m;
    long long hdrPropTimestamp_m;  // negative: not set
    std::string hdrPropReplyTo_m;
    SdmDestinationType hdrPropReplyToDestType_m;
    long long hdrPropTopicSequence_m;  // 0 or less: not set
    std::string hdrPropUserData_m;
    long long hdrPropSequenceNumber_m;  // negative: not set
    std::string hdrPropSenderId_m;
};

}  // namespace zorvane::pubsub
