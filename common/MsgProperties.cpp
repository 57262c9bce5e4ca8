#include "common/MsgProperties.h"

#include <algorithm>
#include <limits>
#include <sstream>

#include "common/ChunkedContent.h"
#include "common/OS.h"
#include "common/ToolDataFill.h"

namespace zorvane::pubsub {

MsgProperties::MsgProperties()
    : msgBody_m(),
      attachment_m(),
      topic_m(),
      queue_m(),
      userdata_m(),
      partitionKey_m(),
      sdmMsgProps_m(),
      toolData_m(),
      msgObjType_m(PUBSUB_MSG_OBJ_TYPE_NONE),
      originalAttachmentSize_m(0),
      topicProbabilityWeight_m(1.0),
      queueProbabilityWeight_m(1.0),
      attachmentProbabilityWeight_m(1.0),
      wantRandomNoiseAttachmentContents_m(false),
      wantUniqueAttachmentContents_m(false),
      ackImmediately_m(false) {}

std::unique_ptr<MsgProperties> MsgProperties::clone() const {
    return std::make_unique<MsgProperties>(*this);
}

void MsgProperties::updateAttachmentForToolData(const char* begin, const char* end) {
    if (begin == nullptr || end <= begin) {
        return;
    }
    // The attachment was sized when the message was built; the tool data
    // goes over its start in place, so the send path never reallocates.
    const size_t length = std::min(static_cast<size_t>(end - begin), attachment_m.size());
    std::copy(begin, begin + length, attachment_m.begin());
}

void MsgProperties::overlayToolDataRecord(const char* begin, const char* end) {
    ToolDataFill::overlayRecord(attachment_m, begin, end);
}

namespace {

// Draws for jitter are integers below 2^24, as fine a grain as a size
// factor needs.
constexpr INT32 JITTER_DRAW_MAX = 16777215;

constexpr INT32 UNIQUE_CHUNK_SIZE = 32;

// Sizes are INT32; a factor gone wild (or not a number) must not make the
// conversion undefined.
INT32 clampToSize(double size) {
    if (!(size > 0.0)) {
        return 0;
    }
    if (size > static_cast<double>(std::numeric_limits<INT32>::max())) {
        return std::numeric_limits<INT32>::max();
    }
    return static_cast<INT32>(size);
}

INT32 clampToSize(INT64 size) {
    return static_cast<INT32>(
        std::clamp<INT64>(size, 0, static_cast<INT64>(std::numeric_limits<INT32>::max())));
}

// Writes value in exactly numDigits lowercase hexadecimal digits,
// zero-filled, dropping higher digits.
char* writeHex(char* out_p, UINT64 value, int numDigits) {
    static constexpr char HEX_DIGITS[] = "0123456789abcdef";
    for (int digit = numDigits - 1; digit >= 0; --digit) {
        out_p[digit] = HEX_DIGITS[value & 0xF];
        value >>= 4;
    }
    return out_p + numDigits;
}

}  // namespace

void MsgProperties::generateNewAttachment(UINT16* state_p, double attachmentSizeJitterFactor,
                                          INT64 randomAttachSizeMin, INT64 randomAttachSizeMax,
                                          UINT32 streamId, UINT64 msgId) {
    INT32 size = originalAttachmentSize_m;
    if (attachmentSizeJitterFactor != 0.0) {
        const INT32 draw = OS::randomGetNum(state_p, 0, JITTER_DRAW_MAX);
        const double factor = 2.0 * (draw / static_cast<double>(JITTER_DRAW_MAX)) - 1.0;
        size = clampToSize(size * (1.0 + factor * attachmentSizeJitterFactor));
        if (size <= 0) {
            size = 1;
        }
    } else if (randomAttachSizeMin >= 0 && randomAttachSizeMax >= 0) {
        // The upper limit is part of the range.
        size = OS::randomGetNum(state_p, clampToSize(randomAttachSizeMin),
                                clampToSize(randomAttachSizeMax + 1));
    }
    if (wantRandomNoiseAttachmentContents_m) {
        generateNewAttachmentRandomNoise(size, state_p);
    } else if (wantUniqueAttachmentContents_m) {
        generateNewAttachmentUnique(size, streamId, msgId);
    } else {
        generateNewAttachmentNonRepeating(size);
    }
}

void MsgProperties::generateNewAttachmentNonRepeating(INT32 attachmentSize) {
    attachment_m.resize(static_cast<size_t>(std::max(attachmentSize, 0)));
    fillChunkedContent(attachment_m.data(), attachment_m.size(), 'A');
}

void MsgProperties::generateNewAttachmentRandomNoise(INT32 attachmentSize, UINT16* state_p) {
    attachment_m.resize(static_cast<size_t>(std::max(attachmentSize, 0)));
    for (char& byte : attachment_m) {
        byte = static_cast<char>(OS::randomGetNum(state_p, 0, 256));
    }
}

void MsgProperties::generateNewAttachmentUnique(INT32 attachmentSize, UINT32 streamId,
                                                UINT64 msgId) {
    attachment_m.resize(static_cast<size_t>(std::max(attachmentSize, 0)));
    const size_t numChunks = attachment_m.size() / UNIQUE_CHUNK_SIZE;
    char* out_p = attachment_m.data();
    for (size_t chunk = 0; chunk < numChunks; ++chunk) {
        *out_p++ = ':';
        out_p = writeHex(out_p, streamId & 0xFFFU, 3);
        *out_p++ = ':';
        out_p = writeHex(out_p, msgId & 0xFFFFFFFFULL, 11);
        *out_p++ = ':';
        // Read for each chunk, so that chunks of one attachment differ too.
        out_p = writeHex(out_p, OS::getTimeInUs(), 15);
    }
    const size_t rest = attachment_m.size() - numChunks * UNIQUE_CHUNK_SIZE;
    for (size_t letter = 0; letter < rest; ++letter) {
        *out_p++ = static_cast<char>('A' + letter);
    }
}

std::string MsgProperties::toString() const {
    std::ostringstream out;
    out << "----  MsgBody   ----\n"
        << msgBody_m << "\n"
        << "---- Attachment ----\n"
        << attachment_m << "\n"
        << "----   Topic    ----\n"
        << topic_m << "\n"
        << "----   Queue    ----\n"
        << queue_m << "\n"
        << "----- Userdata -----\n"
        << userdata_m << "\n"
        << "--- Partition Key --\n"
        << partitionKey_m << "\n"
        << "---- SDM Props -----\n"
        << sdmMsgProps_m.toString() << "\n"
        << "---- Message Object Type -----\n"
        << msgObjType_m << "\n"
        << "---- Aggregate probability weight -----\n"
        << getAggregateProbabilityWeight() << "\n"
        << "---- Using Random Noise Attachment Contents -----\n"
        << wantRandomNoiseAttachmentContents_m << "\n"
        << "---- Using Unique Attachment Contents -----\n"
        << wantUniqueAttachmentContents_m << "\n"
        << "-- ACK Immediately--\n"
        << ackImmediately_m << "\n";
    return out.str();
}

}  // namespace zorvane::pubsub
