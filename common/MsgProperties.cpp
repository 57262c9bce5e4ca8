#include "common/MsgProperties.h"

#include <algorithm>
#include <sstream>

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
        << sdmMsgProps_m << "\n"
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
