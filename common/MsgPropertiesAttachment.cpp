// Attachment regeneration of MsgProperties: what a publisher does to a
// ready-made message before each send when sizes jitter, contents are
// random or every attachment must be unique.
#include <cstring>

#include "common/MsgProperties.h"
#include "common/OS.h"

namespace zorvane::pubsub {

namespace {

constexpr char hexDigits_s[] = "0123456789abcdef";

// Writes the low digits * 4 bits of value as lowercase hex, zero-filled.
char* putHex(char* out_p, UINT64 value, int digits) {
    for (int i = digits - 1; i >= 0; --i) {
        out_p[i] = hexDigits_s[value & 0xF];
        value >>= 4;
    }
    return out_p + digits;
}

constexpr INT32 PATTERN_CHUNK = 8;
constexpr INT32 UNIQUE_CHUNK = 32;

}  // namespace

void MsgProperties::generateNewAttachment(UINT16* state_p, double attachmentSizeJitterFactor,
                                          INT64 randomAttachSizeMin, INT64 randomAttachSizeMax,
                                          UINT32 streamId, UINT64 msgId) {
    INT64 size = originalAttachmentSize_m;
    if (attachmentSizeJitterFactor != 0.0) {
        const INT32 rn = OS::randomGetNum(state_p, 0, 16777215);
        const double r = 2.0 * (rn / 16777215.0) - 1.0;
        size =
            static_cast<INT64>(static_cast<double>(size) * (1.0 + r * attachmentSizeJitterFactor));
        if (size <= 0) {
            // An attachment that jitter shrank away would change the kind of
            // message, not just its size.
            size = 1;
        }
    } else if (randomAttachSizeMin >= 0 && randomAttachSizeMax >= 0) {
        size = OS::randomGetNum(state_p, static_cast<INT32>(randomAttachSizeMin),
                                static_cast<INT32>(randomAttachSizeMax + 1));
    }
    const INT32 newSize = static_cast<INT32>(size);
    if (wantRandomNoiseAttachmentContents_m) {
        generateNewAttachmentRandomNoise(newSize, state_p);
    } else if (wantUniqueAttachmentContents_m) {
        generateNewAttachmentUnique(newSize, streamId, msgId);
    } else {
        generateNewAttachmentNonRepeating(newSize);
    }
}

void MsgProperties::generateNewAttachmentNonRepeating(INT32 size) {
    const INT32 length = size > 0 ? size : 0;
    attachment_m.resize(static_cast<size_t>(length));
    char* out_p = attachment_m.data();
    INT32 chunks = length > 7 ? length / PATTERN_CHUNK : 0;
    for (INT32 i = 0; i < chunks; ++i) {
        *out_p++ = ':';
        out_p = putHex(out_p, static_cast<UINT64>(i), PATTERN_CHUNK - 1);
    }
    std::memset(out_p, 'A', static_cast<size_t>(length - chunks * PATTERN_CHUNK));
}

void MsgProperties::generateNewAttachmentRandomNoise(INT32 size, UINT16* state_p) {
    const INT32 length = size > 0 ? size : 0;
    attachment_m.resize(static_cast<size_t>(length));
    for (char& byte : attachment_m) {
        byte = static_cast<char>(OS::randomGetNum(state_p, 0, 256));
    }
}

void MsgProperties::generateNewAttachmentUnique(INT32 size, UINT32 streamId, UINT64 msgId) {
    const INT32 length = size > 0 ? size : 0;
    attachment_m.resize(static_cast<size_t>(length));
    char* out_p = attachment_m.data();
    const INT32 chunks = length / UNIQUE_CHUNK;
    for (INT32 i = 0; i < chunks; ++i) {
        // The clock is read for every chunk: no two chunks of a run repeat,
        // which defeats deduplication and compression on the way.
        *out_p++ = ':';
        out_p = putHex(out_p, streamId & 0xFFFU, 3);
        *out_p++ = ':';
        out_p = putHex(out_p, msgId & 0xFFFFFFFFULL, 11);
        *out_p++ = ':';
        out_p = putHex(out_p, OS::getTimeInUs(), 15);
    }
    const INT32 rest = length - chunks * UNIQUE_CHUNK;
    for (INT32 i = 0; i < rest; ++i) {
        *out_p++ = static_cast<char>('A' + i);
    }
}

}  // namespace zorvane::pubsub
