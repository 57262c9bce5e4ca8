#include "common/ToolDataFill.h"

#include "common/CRC.h"
#include "common/OS.h"

namespace zorvane::pubsub {

void ToolDataFill::fill(ToolData& toolData, const ToolDataFillSettings& settings, UINT64 msgNum,
                        UINT64 latTimestamp, std::string_view body, std::string_view attachment) {
    toolData.clear();
    if (settings.wantOrderMemory_m || settings.wantOrderCheckPublisherStreamNumber_m) {
        toolData.setMsgId(settings.orderOffset_m + msgNum);
        // Every publishing client is a stream of its own, numbered from the
        // offset; the default offset of -1 numbers them by client index from
        // 0. Messages of several clients on one stream would read as
        // duplicates and losses to every subscriber.
        const INT64 streamId =
            static_cast<INT64>(settings.streamIdOffset_m) + settings.clientIdInt_m;
        if (streamId >= 0) {
            toolData.setStreamId(static_cast<INT32>(streamId));
        }
    }
    if (settings.wantLatency_m) {
        toolData.setLatency(latTimestamp);
    }
    if (!settings.wantPayloadCheck_m) {
        return;
    }
    if (!body.empty()) {
        toolData.setCrcXmlPayload(CRC::crc32(body));
    }
    if (attachment.empty()) {
        return;
    }
    std::size_t offset = 0;
    if (settings.toolDataType_m == TOOL_DATA_TYPE_BIN_ATTACH) {
        // The record's own size depends on whether the attachment CRC is in
        // it, and the CRC must cover exactly the bytes behind the record:
        // count the field with a placeholder first, then take the size.
        toolData.setCrcBinAttach(1);
        offset = toolData.getEncodedSize();
    }
    if (offset < attachment.size()) {
        toolData.setCrcBinAttach(CRC::crc32(attachment.substr(offset)));
    } else {
        // Nothing of the user's is left behind the record to protect.
        toolData.setCrcBinAttach(0);
    }
}

void ToolDataFill::stampSendTime(ToolData& toolData, bool wantLatency) {
    // A publisher that scheduled the message supplies its own non-zero
    // stamp; otherwise the stamp is taken here, as late as possible.
    if (wantLatency && toolData.getLatency() == 0) {
        toolData.setLatency(OS::numClockCycles());
    }
}

UINT32 ToolDataFill::prepareAttachmentRecord(ToolData& toolData, bool wantLatency, char* buffer,
                                             UINT32 size) {
    stampSendTime(toolData, wantLatency);
    if (!toolData.hasData()) {
        return 0;
    }
    return toolData.encode(buffer, size);
}

}  // namespace zorvane::pubsub
