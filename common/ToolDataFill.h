// The publisher's side of the tool data: what goes into a message's record
// and how the binary form lands in the attachment. These are the parts of
// the client's updateToolData and setToolDataAsAttachment that need no
// client and no library; the client gathers the settings from its publish
// and statistics records and calls them.
//
// Threads: static operations on caller-owned objects; no shared state.
// fill computes CRCs over the body and attachment; nothing allocates.
#pragma once

#include <cstring>
#include <string_view>

#include "common/ToolData.h"
#include "common/dataTypes.h"

namespace zorvane::pubsub {

// What a publisher's configuration asks of each message's tool data.
struct ToolDataFillSettings {
    bool wantOrderMemory_m = false;
    bool wantOrderCheckPublisherStreamNumber_m = false;
    bool wantLatency_m = false;
    bool wantPayloadCheck_m = false;
    ToolDataType toolDataType_m = TOOL_DATA_TYPE_BIN_ATTACH;
    UINT64 orderOffset_m = 0;
    // Negative: messages carry no stream id.
    INT32 streamIdOffset_m = -1;
    INT32 clientIdInt_m = 0;
};

class ToolDataFill {
  public:
    // Rebuilds toolData for message number msgNum: clears it; with order
    // checking or order memory sets the message id (orderOffset + msgNum)
    // and, with a stream id offset of 0 or more, the stream id (offset plus
    // client number); with latency sets latTimestamp (0 means "stamp at
    // send", see prepareAttachmentRecord); with the payload check sets the
    // body CRC and the CRC of the attachment part behind the record.
    static void fill(ToolData& toolData, const ToolDataFillSettings& settings, UINT64 msgNum,
                     UINT64 latTimestamp, std::string_view body, std::string_view attachment);

    // Takes the send time stamp if latency is wanted and none was supplied.
    // Call as late as possible before the message goes out.
    static void stampSendTime(ToolData& toolData, bool wantLatency);

    // The binary form's last step before sending: stampSendTime, then encode
    // into buffer (at least ToolData::MAX_ENCODED_SIZE bytes). Returns the
    // record's size, 0 when there is nothing to write.
    static UINT32 prepareAttachmentRecord(ToolData& toolData, bool wantLatency, char* buffer,
                                          UINT32 size);

    // Lays the encoded record over the start of the attachment without
    // inserting: a longer attachment keeps its size and its tail, a shorter
    // one becomes the record. Buffer is any byte container with size(),
    // resize() and data() (std::string, std::vector<char>).
    template <class Buffer>
    static void overlayRecord(Buffer& attachment, const char* begin, const char* end) {
        if (begin == nullptr || end <= begin) {
            return;
        }
        const auto length = static_cast<std::size_t>(end - begin);
        if (attachment.size() < length) {
            attachment.resize(length);
        }
        std::memcpy(attachment.data(), begin, length);
    }
};

}  // namespace zorvane::pubsub
