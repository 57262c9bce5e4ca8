// What the receive analysis sees of one received message: a reusable view
// that the library binding (Message) rebinds to each library message in
// turn. No view is allocated per message; the tool data decoded into it
// stays until the next decode.
//
// The library reads are pure virtuals; the operations with a body here are
// the defaults for a binding that lacks the feature. The protected helpers
// are the library-free halves of decoding the tool data in both forms, so
// that a binding only supplies the bytes or the property fields.
//
// Ownership: the view never owns or frees the library message (who does is
// decided in the receive callbacks). The payload and attachment pointers are
// valid while the view is bound to the message.
//
// Threads: a view belongs to the one thread that delivers its client's (or
// flow's, or transacted session's) messages; nothing is locked.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "common/ToolData.h"
#include "common/dataTypes.h"

namespace zorvane::pubsub {

class PerfStats;
class SdmProperties;

class AbstractMessage {
  public:
    // Reported by a message that carries no topic sequence number. Only
    // numbers of 1 or more are order-checked.
    static constexpr INT64 INVALID_TOPIC_SEQUENCE = 0;

    explicit AbstractMessage(std::string clientId);
    virtual ~AbstractMessage() = default;
    AbstractMessage(const AbstractMessage&) = delete;
    AbstractMessage& operator=(const AbstractMessage&) = delete;

    // The library's message id in decimal, or "" when it has none.
    virtual std::string getMsgId() = 0;
    // The user data as text up to its first zero byte; "" when absent.
    virtual std::string getUserData() = 0;
    // -1 when it cannot be read.
    virtual INT32 getPriority() = 0;
    // The consumer ids, in order.
    virtual std::vector<unsigned int> getCids() = 0;
    // Counts which parts the message has (body, attachment, user data,
    // consumer ids, topic) into perfStats_p.
    virtual void fullMsgUpdateStats(PerfStats* perfStats_p) = 0;
    // Replaces the tool data of this view by what the message carries in
    // the given form. A damaged binary block throws std::invalid_argument;
    // an unknown form throws PubSubException.
    virtual void decodeToolData(ToolDataType type) = 0;
    // Bounds of the body and the binary attachment; both null when absent.
    virtual const char* getPayloadBegin() = 0;
    virtual const char* getPayloadEnd() = 0;
    virtual const char* getAttachBegin() = 0;
    virtual const char* getAttachEnd() = 0;
    virtual bool isRedelivered() = 0;
    // Checks the contents against the structured message named by the first
    // byte of the user data: the canned catalogue below
    // PUBSUB_SDM_ID_USER_DEF_BASE, else the entry id - base of the list.
    virtual bool getCheckStructuredMsg(const std::vector<SdmProperties>& sdmPropsList) = 0;
    virtual bool isCacheMsg() { return false; }
    virtual bool isSuspectMsg() { return false; }
    // The library's text form of the message, cut to maxBufferSize (0: no
    // cut); "" when it cannot be made.
    virtual std::string getDump(size_t /*maxBufferSize*/) { return std::string(); }
    virtual bool hasDiscardIndication() { return false; }
    virtual INT64 getTopicSequence() { return INVALID_TOPIC_SEQUENCE; }
    // The library message this view is bound to; null between messages.
    virtual void* getMsgPointer() = 0;
    virtual void setMsgPointer(void* msg_p) = 0;
    // The tool data of the current message, as the last decodeToolData left
    // it. Owned by the view.
    virtual ToolData* getToolData() { return &toolData_m; }

    const std::string& getClientIdStr() const { return clientIdStr_m; }

  protected:
    // Binary form: clears the tool data, then decodes the attachment block
    // begin..end when it is not empty. A block that is not tool data leaves
    // the record empty; a damaged one throws std::invalid_argument (and the
    // record is empty).
    void decodeToolDataFromAttachment(const char* begin, const char* end);

    // User-property form, one field of the map: takes a field of the record
    // by its one-character name. Any other name logs "Unrecognized user
    // property" at error level and returns false; the walk goes on. The
    // caller clears the record before the first field.
    bool takeToolDataUserProperty(const char* name, INT64 value);

    // The PubSubException for a form that is neither of the two.
    [[noreturn]] static void throwUnsupportedToolDataType(int type);

    std::string clientIdStr_m;  // the owning client's id, for log lines
    ToolData toolData_m;        // decoded tool data of the current message
};

}  // namespace zorvane::pubsub
