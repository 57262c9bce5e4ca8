// The measurement record that one instance of the tool puts into each
// message for another instance (or itself) to read back: the send time
// stamp for latency, a publisher stream id and message id for order
// checking, and CRCs of the message contents. The format is the tool's own;
// the library and the broker do not know it.
//
// Two forms travel, chosen per run and not marked in the message, so sender
// and receiver must agree:
//  - binary: a big-endian block at the very start of the binary attachment
//    (encode, decode);
//  - user properties: one-character names in the user property map
//    (getUserProperties, setFromUserProperty; the map itself belongs to the
//    client, which owns the library calls).
//
// Absent fields: 0 stands for absent in the two CRCs and the message id, a
// negative stream id for no stream; the latency has its own flag because a
// time stamp of 0 is a legal value.
//
// Threads: a plain value; one thread at a time. encode and decode never
// allocate (decode does not copy the block), except for the exception
// thrown on a damaged block.
#pragma once

#include <memory>
#include <string>

#include "common/dataTypes.h"

namespace zorvane::pubsub {

enum ToolDataType {
    // A binary block at the start of the binary attachment (the default).
    TOOL_DATA_TYPE_BIN_ATTACH = 0,
    // Fields of the user property map.
    TOOL_DATA_TYPE_USER_PROP = 1,
};

// One field of the user-property form, as the client adds it to the map.
struct ToolDataUserProp {
    const char* name_mp = nullptr;  // one of ToolData::PROP_*; static storage
    INT64 value_m = 0;
    bool isInt64_m = false;  // else the map holds it as Int32
};

class ToolData {
  public:
    // Buffer size for an encoded record; the largest is in fact 36 bytes.
    static constexpr UINT32 MAX_ENCODED_SIZE = 50;
    static constexpr UINT32 HEADER_SIZE = 8;
    static constexpr unsigned char MAGIC[4] = {0x7C, 0x3E, 0x9A, 0x01};

    // Flags of the binary header: each data flag says its field follows.
    static constexpr UINT32 TOOLDATA_BIT_CRC_XMLBODY = 0x01;
    static constexpr UINT32 TOOLDATA_BIT_STREAM_ID = 0x02;
    static constexpr UINT32 TOOLDATA_BIT_RFFU2 = 0x04;  // reserved: never set, ignored
    static constexpr UINT32 TOOLDATA_BIT_CRC_BINATTACH = 0x08;
    static constexpr UINT32 TOOLDATA_BIT_MSG_ID = 0x10;
    static constexpr UINT32 TOOLDATA_BIT_LATENCY = 0x20;
    static constexpr UINT32 TOOLDATA_BIT_REPUBLISHED = 0x40;  // no data of its own

    // Names of the user-property form.
    static constexpr UINT32 PROP_MAX_LENGTH = 1;
    static constexpr const char* PROP_CRC_XML_PAYLOAD = "x";
    static constexpr const char* PROP_CRC_BIN_ATTACH = "b";
    static constexpr const char* PROP_STREAM_ID = "s";
    static constexpr const char* PROP_MESSAGE_ID = "m";
    static constexpr const char* PROP_LATENCY = "l";
    // Reserved: the user-property form does not carry the republished mark.
    static constexpr const char* PROP_REPUBLISHED = "r";
    // Most fields getUserProperties writes.
    static constexpr UINT32 MAX_USER_PROPS = 5;

    ToolData() = default;
    ToolData(const ToolData&) = default;
    ToolData& operator=(const ToolData&) = default;
    ~ToolData() = default;

    // A heap copy owned by the caller.
    std::unique_ptr<ToolData> clone() const { return std::make_unique<ToolData>(*this); }

    // Back to the defaults: nothing present, decodedSize_m 0.
    void clear() { *this = ToolData(); }

    // Setting the latency marks it present, even for 0.
    void setLatency(UINT64 latency) {
        latency_m = latency;
        hasLatency_m = true;
    }
    void setMsgId(UINT64 msgId) { msgId_m = msgId; }
    void setCrcBinAttach(UINT32 crc) { crcBinAttach_m = crc; }
    void setCrcXmlPayload(UINT32 crc) { crcXmlPayload_m = crc; }
    void setStreamId(INT32 streamId) { streamId_m = streamId; }
    void setRepublished(bool republished) { republished_m = republished; }

    UINT64 getLatency() const { return latency_m; }
    UINT64 getMsgId() const { return msgId_m; }
    UINT32 getCrcBinAttach() const { return crcBinAttach_m; }
    UINT32 getCrcXmlPayload() const { return crcXmlPayload_m; }
    INT32 getStreamId() const { return streamId_m; }
    bool getRepublished() const { return republished_m; }
    // Bytes the last decode consumed, header included: where the sender's
    // own attachment contents begin. 0 when nothing was recognised, after
    // clear, and in the user-property form.
    UINT32 getDecodedSize() const { return decodedSize_m; }

    bool hasLatency() const { return hasLatency_m; }
    bool hasMsgId() const { return msgId_m != 0; }
    bool hasCrcBinAttach() const { return crcBinAttach_m != 0; }
    bool hasCrcXmlPayload() const { return crcXmlPayload_m != 0; }
    bool hasStreamId() const { return streamId_m >= 0; }
    bool hasData() const {
        return hasLatency_m || msgId_m != 0 || crcBinAttach_m != 0 || crcXmlPayload_m != 0 ||
               streamId_m >= 0 || republished_m;
    }

    // Bytes of the binary form: 0 without data, else the header plus each
    // present field.
    UINT32 getEncodedSize() const;

    // Writes the binary form to dest and returns its size (0 without data,
    // writing nothing). Throws std::invalid_argument "Encode destination too
    // small" when the record does not fit into size bytes.
    UINT32 encode(char* dest, UINT32 size) const;

    // Reads the binary form from the block begin..end. A block of 8 bytes or
    // fewer, or one without the magic, is not tool data: the record stays
    // empty and nothing is thrown (the usual case for a message from another
    // sender). A recognised block that ends inside a field clears the record
    // and throws std::invalid_argument naming that field.
    void decode(const char* begin, const char* end);

    // The user-property form: writes into props_p (room for MAX_USER_PROPS)
    // the fields to add to the map, in the order to add them, and returns
    // their number. The CRCs travel only with wantPayloadCheck, the latency
    // only with wantLatency; the republished mark never does.
    UINT32 getUserProperties(bool wantPayloadCheck, bool wantLatency,
                             ToolDataUserProp* props_p) const;

    // Takes one field read from the user property map, whatever its integer
    // type in the map. False (nothing changed) for a name that is not one
    // of x, b, s, m, l; the caller logs it and goes on.
    bool setFromUserProperty(const char* name, INT64 value);

    // One line per present field, for dumps and debug logs.
    std::string toString() const;

  private:
    [[noreturn]] void failDecode(const char* text);

    UINT64 latency_m = 0;
    UINT64 msgId_m = 0;
    UINT32 crcBinAttach_m = 0;
    UINT32 crcXmlPayload_m = 0;
    INT32 streamId_m = -1;
    bool republished_m = false;
    bool hasLatency_m = false;
    UINT32 decodedSize_m = 0;
};

}  // namespace zorvane::pubsub
