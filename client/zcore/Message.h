// The reusable view on a received library message: each client (and later
// each transacted session) has one, bound to one library message after
// another by setMsgPointer, so that no object is allocated per message.
//
// The view never frees the library message; who owns it is decided in the
// receive callbacks. Binding clears nothing: the tool data keeps the values
// of the last decodeToolData until the next one. Pointers handed out
// (payload, attachment) live while the view is bound to the message and the
// message is unchanged.
//
// Threads: a view belongs to the one thread that delivers its messages (the
// context thread); nothing is locked.
#pragma once

#include <string>
#include <vector>

#include "client/AbstractMessage.h"
#include "zorClient.h"
#include "zorClientMsg.h"

namespace zorvane::pubsub {

class Message : public AbstractMessage {
  public:
    // Bytes of user data that are read as text; other sizes read as "".
    static constexpr zorClient_uint32_t MAX_USER_DATA_TEXT = 36;
    // Dump buffer when no limit is given, and the step by which a buffer
    // grows towards a given limit.
    static constexpr std::size_t DEFAULT_DUMP_SIZE = 1000000;
    static constexpr std::size_t DUMP_GROWTH = 10000000;
    static constexpr int DUMP_TRIES = 10;

    Message(std::string clientId, zorClient_opaqueMsg_pt msg);

    std::string getMsgId() override;
    std::string getUserData() override;
    // -1 (and an error line) when the priority cannot be read; the library's
    // "none" is -1 as well.
    INT32 getPriority() override;
    std::vector<unsigned int> getCids() override;
    void fullMsgUpdateStats(PerfStats* perfStats_p) override;
    // Binary form: the record at the start of the attachment (nothing for a
    // message without one). User-property form: readToolDataFromProperties.
    // Another form throws PubSubException "Unsupported tool data type <n>".
    void decodeToolData(ToolDataType type) override;
    const char* getPayloadBegin() override;
    const char* getPayloadEnd() override;
    const char* getAttachBegin() override;
    const char* getAttachEnd() override;
    bool isRedelivered() override;
    bool getCheckStructuredMsg(const std::vector<SdmProperties>& sdmPropsList) override;
    bool isCacheMsg() override;
    bool isSuspectMsg() override;
    // The library's text form, grown up to maxBufferSize (0: 1000000 bytes
    // and no cut). A text cut at a given limit ends in
    // "\n... [truncated] ..."; "" when the text cannot be had.
    std::string getDump(size_t maxBufferSize) override;
    bool hasDiscardIndication() override;
    INT64 getTopicSequence() override;
    void* getMsgPointer() override { return msg_mp; }
    void setMsgPointer(void* msg_p) override {
        msg_mp = static_cast<zorClient_opaqueMsg_pt>(msg_p);
    }

    // Reads the user-property form of the tool data into this view's record
    // (cleared first). Throws PubSubException when the message has no user
    // property map. Fields that are not tool data are logged and skipped.
    void readToolDataFromProperties();

  private:
    // The bytes of the body or the attachment; both null when absent.
    struct Bounds {
        const char* begin_m = nullptr;
        const char* end_m = nullptr;
    };
    Bounds payloadBounds() const;
    Bounds attachBounds() const;

    zorClient_opaqueMsg_pt msg_mp;  // not owned; null between messages
};

}  // namespace zorvane::pubsub
