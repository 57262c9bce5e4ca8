#include "common/ToolData.h"

#include <cstring>
#include <sstream>
#include <stdexcept>

namespace zorvane::pubsub {

namespace {

// Wire integers are big-endian; the host is little-endian x86-64. memcpy
// keeps unaligned access defined (the block sits anywhere in the attachment).
inline UINT32 readBe32(const char* pos) {
    UINT32 value;
    std::memcpy(&value, pos, sizeof value);
    return __builtin_bswap32(value);
}

inline UINT64 readBe64(const char* pos) {
    UINT64 value;
    std::memcpy(&value, pos, sizeof value);
    return __builtin_bswap64(value);
}

inline char* writeBe32(char* pos, UINT32 value) {
    value = __builtin_bswap32(value);
    std::memcpy(pos, &value, sizeof value);
    return pos + sizeof value;
}

inline char* writeBe64(char* pos, UINT64 value) {
    value = __builtin_bswap64(value);
    std::memcpy(pos, &value, sizeof value);
    return pos + sizeof value;
}

}  // namespace

UINT32 ToolData::getEncodedSize() const {
    if (!hasData()) {
        return 0;
    }
    UINT32 size = HEADER_SIZE;
    size += hasLatency_m ? 8 : 0;
    size += msgId_m != 0 ? 8 : 0;
    size += crcBinAttach_m != 0 ? 4 : 0;
    size += crcXmlPayload_m != 0 ? 4 : 0;
    size += streamId_m >= 0 ? 4 : 0;
    return size;
}

UINT32 ToolData::encode(char* dest, UINT32 size) const {
    const UINT32 needed = getEncodedSize();
    if (needed > size) {
        throw std::invalid_argument("Encode destination too small");
    }
    if (needed == 0) {
        return 0;
    }
    if (dest == nullptr) {
        throw std::invalid_argument("Encode destination is null");
    }
    UINT32 flags = 0;
    flags |= crcXmlPayload_m != 0 ? TOOLDATA_BIT_CRC_XMLBODY : 0;
    flags |= streamId_m >= 0 ? TOOLDATA_BIT_STREAM_ID : 0;
    flags |= crcBinAttach_m != 0 ? TOOLDATA_BIT_CRC_BINATTACH : 0;
    flags |= msgId_m != 0 ? TOOLDATA_BIT_MSG_ID : 0;
    flags |= hasLatency_m ? TOOLDATA_BIT_LATENCY : 0;
    flags |= republished_m ? TOOLDATA_BIT_REPUBLISHED : 0;

    std::memcpy(dest, MAGIC, sizeof MAGIC);
    char* pos = writeBe32(dest + sizeof MAGIC, flags);
    if ((flags & TOOLDATA_BIT_CRC_XMLBODY) != 0) {
        pos = writeBe32(pos, crcXmlPayload_m);
    }
    if ((flags & TOOLDATA_BIT_STREAM_ID) != 0) {
        pos = writeBe32(pos, static_cast<UINT32>(streamId_m));
    }
    if ((flags & TOOLDATA_BIT_CRC_BINATTACH) != 0) {
        pos = writeBe32(pos, crcBinAttach_m);
    }
    if ((flags & TOOLDATA_BIT_MSG_ID) != 0) {
        pos = writeBe64(pos, msgId_m);
    }
    if ((flags & TOOLDATA_BIT_LATENCY) != 0) {
        pos = writeBe64(pos, latency_m);
    }
    return static_cast<UINT32>(pos - dest);
}

void ToolData::failDecode(const char* text) {
    // A half-read record must not pass for a good one: the receive path goes
    // on with an empty record after reporting this.
    clear();
    throw std::invalid_argument(text);
}

void ToolData::decode(const char* begin, const char* end) {
    clear();
    // Exactly 8 bytes is not recognised: a header alone carries nothing a
    // receiver could use, and a short attachment from some other sender is
    // far likelier than an empty record.
    if (begin == nullptr || end == nullptr || end - begin <= static_cast<long>(HEADER_SIZE) ||
        std::memcmp(begin, MAGIC, sizeof MAGIC) != 0) {
        return;
    }
    const UINT32 flags = readBe32(begin + sizeof MAGIC);
    const char* pos = begin + HEADER_SIZE;
    if ((flags & TOOLDATA_BIT_CRC_XMLBODY) != 0) {
        if (end - pos < 4) {
            failDecode("Invalid tool data.  Out of bounds parsing msg xml payload integrity");
        }
        crcXmlPayload_m = readBe32(pos);
        pos += 4;
    }
    if ((flags & TOOLDATA_BIT_STREAM_ID) != 0) {
        if (end - pos < 4) {
            failDecode("Invalid tool data.  Out of bounds parsing stream id");
        }
        streamId_m = static_cast<INT32>(readBe32(pos));
        pos += 4;
    }
    if ((flags & TOOLDATA_BIT_CRC_BINATTACH) != 0) {
        if (end - pos < 4) {
            failDecode("Invalid tool data.  Out of bounds parsing msg binary attachment integrity");
        }
        crcBinAttach_m = readBe32(pos);
        pos += 4;
    }
    if ((flags & TOOLDATA_BIT_MSG_ID) != 0) {
        if (end - pos < 8) {
            failDecode("Invalid tool data.  Out of bounds parsing msg id");
        }
        msgId_m = readBe64(pos);
        pos += 8;
    }
    if ((flags & TOOLDATA_BIT_LATENCY) != 0) {
        if (end - pos < 8) {
            failDecode("Invalid tool data.  Out of bounds parsing latency");
        }
        latency_m = readBe64(pos);
        hasLatency_m = true;
        pos += 8;
    }
    republished_m = (flags & TOOLDATA_BIT_REPUBLISHED) != 0;
    decodedSize_m = static_cast<UINT32>(pos - begin);
}

UINT32 ToolData::getUserProperties(bool wantPayloadCheck, bool wantLatency,
                                   ToolDataUserProp* props_p) const {
    UINT32 count = 0;
    auto add = [&](const char* name, INT64 value, bool isInt64) {
        props_p[count++] = ToolDataUserProp{name, value, isInt64};
    };
    // CRCs go into Int32 fields bit for bit; setFromUserProperty undoes it.
    if (wantPayloadCheck && crcXmlPayload_m != 0) {
        add(PROP_CRC_XML_PAYLOAD, static_cast<INT32>(crcXmlPayload_m), false);
    }
    if (wantPayloadCheck && crcBinAttach_m != 0) {
        add(PROP_CRC_BIN_ATTACH, static_cast<INT32>(crcBinAttach_m), false);
    }
    if (streamId_m >= 0) {
        add(PROP_STREAM_ID, streamId_m, false);
    }
    if (streamId_m >= 0 || msgId_m != 0) {
        add(PROP_MESSAGE_ID, static_cast<INT64>(msgId_m), true);
    }
    if (wantLatency) {
        add(PROP_LATENCY, static_cast<INT64>(latency_m), true);
    }
    return count;
}

bool ToolData::setFromUserProperty(const char* name, INT64 value) {
    if (name == nullptr || name[0] == '\0' || std::strlen(name) > PROP_MAX_LENGTH) {
        return false;
    }
    switch (name[0]) {
        case 'x':
            crcXmlPayload_m = static_cast<UINT32>(value);
            return true;
        case 'b':
            crcBinAttach_m = static_cast<UINT32>(value);
            return true;
        case 's':
            streamId_m = static_cast<INT32>(value);
            return true;
        case 'm':
            msgId_m = static_cast<UINT64>(value);
            return true;
        case 'l':
            setLatency(static_cast<UINT64>(value));
            return true;
        default:
            return false;
    }
}

std::string ToolData::toString() const {
    std::ostringstream out;
    if (crcXmlPayload_m != 0) {
        out << " XML Payload Integrity   = " << crcXmlPayload_m << "\n";
    }
    if (crcBinAttach_m != 0) {
        out << " Bin attachment Integrity= " << crcBinAttach_m << "\n";
    }
    if (streamId_m >= 0) {
        out << " Stream ID               = " << streamId_m << "\n";
    }
    if (msgId_m != 0) {
        out << " Msg ID                  = " << msgId_m << "\n";
    }
    if (republished_m) {
        out << " Republished             = " << 1 << "\n";
    }
    if (hasLatency_m) {
        out << " Latency Time Stamp      = " << latency_m << "\n";
    }
    return out.str();
}

}  // namespace zorvane::pubsub
