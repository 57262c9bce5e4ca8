// One ready-made message to publish. Lists of these are built before
// publishing starts; a publish thread walks its own list and only touches
// the attachment and the tool data mark of each message per send.
//
// Ownership and threads: a plain value; a list belongs to one publish
// thread, so nothing locks. updateAttachmentForToolData, setRepublished and
// the tool data record allocate nothing and may be used on the publish path;
// overlayToolDataRecord allocates only when the attachment is shorter than
// the record; the generateNewAttachment functions allocate nothing once the
// attachment has held the size asked for (they write in place and only grow
// the buffer).
#pragma once

#include <memory>
#include <string>

#include "common/SdmProperties.h"
#include "common/ToolData.h"
#include "common/dataTypes.h"

namespace zorvane::pubsub {

class MsgProperties {
  public:
    // Empty texts, object type none, all weights 1.0, all flags false.
    MsgProperties();

    MsgProperties(const MsgProperties&) = default;
    MsgProperties& operator=(const MsgProperties&) = default;
    MsgProperties(MsgProperties&&) = default;
    MsgProperties& operator=(MsgProperties&&) = default;
    ~MsgProperties() = default;

    // A copy on the heap; the caller owns it.
    std::unique_ptr<MsgProperties> clone() const;

    // Debug text with one headed section per part of the message.
    std::string toString() const;

    // Weight of this message when messages are drawn in random order: the
    // product of its topic, queue and attachment weights.
    double getAggregateProbabilityWeight() const {
        return topicProbabilityWeight_m * queueProbabilityWeight_m * attachmentProbabilityWeight_m;
    }

    // Writes the bytes [begin, end) over the start of the attachment, which
    // keeps its length: bytes that would go past its end are dropped, and a
    // range with end before begin writes nothing.
    void updateAttachmentForToolData(const char* begin, const char* end);

    // The send path's form of the above: the record must arrive whole, so an
    // attachment shorter than [begin, end) is replaced by the record and
    // becomes as long as it. A longer one keeps its length and its tail.
    void overlayToolDataRecord(const char* begin, const char* end);

    // Makes room for attachments up to capacity bytes, so that regenerating
    // them on the publish path allocates nothing.
    void reserveAttachment(size_t capacity) { attachment_m.reserve(capacity); }

    // The tool data record of this message, filled by the client before
    // each send (AbstractClient::updateToolData).
    ToolData* getToolData() { return &toolData_m; }
    const ToolData* getToolData() const { return &toolData_m; }

    // Current length of the attachment, which jitter may have changed from
    // the original size.
    size_t getAttachmentSize() const { return attachment_m.size(); }

    // ---- new attachment contents for each send ----

    // Regenerates the attachment before a send, for a message of the given
    // publisher stream and message id. The size starts at the original
    // size; a non-zero jitter factor scales it by a random factor from
    // 1 - factor up to just below 1 + factor (at least 1 byte); otherwise,
    // when both limits are 0 or more, it is drawn from min to max. The
    // contents are random bytes, unique chunks or the chunked content, as
    // the two wanted-contents flags say. state_p is the calling thread's
    // generator state (OS::randomInitState).
    void generateNewAttachment(UINT16* state_p, double attachmentSizeJitterFactor,
                               INT64 randomAttachSizeMin, INT64 randomAttachSizeMax,
                               UINT32 streamId, UINT64 msgId);
    // The chunked content: ":0000000:0000001..." filled with "A".
    void generateNewAttachmentNonRepeating(INT32 attachmentSize);
    // Every byte drawn from 0 to 255.
    void generateNewAttachmentRandomNoise(INT32 attachmentSize, UINT16* state_p);
    // 32-byte chunks ":sss:mmmmmmmmmmm:ttttttttttttttt" of the low 12 bits of
    // the stream id, the low 32 bits of the message id and the clock in
    // microseconds, read anew for each chunk, all in hexadecimal; the rest
    // is filled with the capital letters counting up from "A". No two
    // attachments of a run are alike, which defeats deduplication and
    // compression on the way.
    void generateNewAttachmentUnique(INT32 attachmentSize, UINT32 streamId, UINT64 msgId);

    // ---- getters and setters ----

    const std::string& getMsgBody() const { return msgBody_m; }
    void setMsgBody(const std::string& value) { msgBody_m = value; }
    const std::string& getAttachment() const { return attachment_m; }
    void setAttachment(const std::string& value) { attachment_m = value; }
    const std::string& getTopic() const { return topic_m; }
    void setTopic(const std::string& value) { topic_m = value; }
    const std::string& getQueue() const { return queue_m; }
    void setQueue(const std::string& value) { queue_m = value; }
    const std::string& getUserdata() const { return userdata_m; }
    void setUserdata(const std::string& value) { userdata_m = value; }
    const std::string& getPartitionKey() const { return partitionKey_m; }
    void setPartitionKey(const std::string& value) { partitionKey_m = value; }
    // The structured message description; id -1 when the message has none.
    const SdmProperties& getSdmMsgProps() const { return sdmMsgProps_m; }
    void setSdmMsgProps(const SdmProperties& value) { sdmMsgProps_m = value; }
    // The republished mark of the tool data: set when a message id is sent
    // again, after the tool data was filled for it.
    bool getRepublished() const { return toolData_m.getRepublished(); }
    void setRepublished(bool value) { toolData_m.setRepublished(value); }
    PubSubMessageObjectType getMsgObjType() const { return msgObjType_m; }
    void setMsgObjType(PubSubMessageObjectType value) { msgObjType_m = value; }
    INT32 getOriginalAttachmentSize() const { return originalAttachmentSize_m; }
    void setOriginalAttachmentSize(INT32 value) { originalAttachmentSize_m = value; }
    double getTopicProbabilityWeight() const { return topicProbabilityWeight_m; }
    void setTopicProbabilityWeight(double value) { topicProbabilityWeight_m = value; }
    double getQueueProbabilityWeight() const { return queueProbabilityWeight_m; }
    void setQueueProbabilityWeight(double value) { queueProbabilityWeight_m = value; }
    double getAttachmentProbabilityWeight() const { return attachmentProbabilityWeight_m; }
    void setAttachmentProbabilityWeight(double value) { attachmentProbabilityWeight_m = value; }
    bool getWantRandomNoiseAttachmentContents() const {
        return wantRandomNoiseAttachmentContents_m;
    }
    void setWantRandomNoiseAttachmentContents(bool value) {
        wantRandomNoiseAttachmentContents_m = value;
    }
    bool getWantUniqueAttachmentContents() const { return wantUniqueAttachmentContents_m; }
    void setWantUniqueAttachmentContents(bool value) { wantUniqueAttachmentContents_m = value; }
    bool getAckImmediately() const { return ackImmediately_m; }
    void setAckImmediately(bool value) { ackImmediately_m = value; }

  private:
    std::string msgBody_m;     // XML payload
    std::string attachment_m;  // binary attachment
    std::string topic_m;
    std::string queue_m;
    std::string userdata_m;
    std::string partitionKey_m;
    SdmProperties sdmMsgProps_m;
    ToolData toolData_m;
    PubSubMessageObjectType msgObjType_m;
    INT32 originalAttachmentSize_m;  // before jitter changed it
    double topicProbabilityWeight_m;
    double queueProbabilityWeight_m;
    double attachmentProbabilityWeight_m;
    bool wantRandomNoiseAttachmentContents_m;
    bool wantUniqueAttachmentContents_m;
    bool ackImmediately_m;
};

}  // namespace zorvane::pubsub
