// A received message without a library, for the receive analysis in tests
// and benchmarks: every part of the message is a plain field that the test
// sets, and the tool data is decoded from attachment_m or userProps_m
// through the view's own helpers, as a binding does.
//
// decodeToolData and the payload and attachment bounds allocate nothing, so
// the double can stand in on the allocation-free fast path.
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "client/AbstractMessage.h"
#include "common/PerfStats.h"
#include "common/ToolData.h"

namespace zorvane::pubsub {

class TestMessage : public AbstractMessage {
  public:
    TestMessage() : TestMessage(std::string("000001")) {}
    // A message of the client with this id, as its log lines show it.
    explicit TestMessage(const std::string& clientIdStr) : AbstractMessage(clientIdStr) {}
    // A message whose attachment starts with record, followed by userBytes.
    explicit TestMessage(const ToolData& record, const std::string& userBytes = "")
        : TestMessage() {
        setAttachmentRecord(record, userBytes);
    }

    // ---- contents, set by the test ----
    std::string msgId_m;
    std::string userData_m;
    INT32 priority_m = -1;
    std::vector<unsigned int> cids_m;
    std::string payload_m;     // the body; empty means none
    std::string attachment_m;  // the binary attachment; empty means none
    std::vector<std::pair<std::string, INT64>> userProps_m;  // the user property map
    bool redelivered_m = false;
    bool cacheMsg_m = false;
    bool suspectMsg_m = false;
    bool discardIndication_m = false;
    INT64 topicSequence_m = INVALID_TOPIC_SEQUENCE;
    std::string dump_m;  // what getDump returns, cut to its argument
    // What a binding would read for the object type check.
    bool objectTypeReadable_m = false;
    bool objectContentReadable_m = true;
    std::string objectType_m;
    std::string objectContent_m;

    // ---- observations ----
    int decodes_m = 0;

    // Puts record at the start of the attachment, ahead of userBytes.
    void setAttachmentRecord(const ToolData& record, const std::string& userBytes = "") {
        char buffer[ToolData::MAX_ENCODED_SIZE];
        attachment_m.assign(buffer, record.encode(buffer, sizeof buffer));
        attachment_m += userBytes;
    }

    std::string getMsgId() override { return msgId_m; }
    std::string getUserData() override { return userData_m; }
    INT32 getPriority() override { return priority_m; }
    std::vector<unsigned int> getCids() override { return cids_m; }
    void fullMsgUpdateStats(PerfStats* perfStats_p) override {
        if (!payload_m.empty()) {
            perfStats_p->incStat(PerfStats::NUM_MSGS_W_XML_PAYLOAD);
        }
        if (!attachment_m.empty()) {
            perfStats_p->incStat(PerfStats::NUM_MSGS_W_BIN_ATTACH);
        }
        if (!userData_m.empty()) {
            perfStats_p->incStat(PerfStats::NUM_MSGS_W_USERDATA);
        }
        if (!cids_m.empty()) {
            perfStats_p->incStat(PerfStats::NUM_MSGS_W_CID);
        }
    }
    void decodeToolData(ToolDataType type) override {
        ++decodes_m;
        switch (type) {
            case TOOL_DATA_TYPE_BIN_ATTACH:
                decodeToolDataFromAttachment(getAttachBegin(), getAttachEnd());
                return;
            case TOOL_DATA_TYPE_USER_PROP:
                toolData_m.clear();
                for (const auto& [name, value] : userProps_m) {
                    takeToolDataUserProperty(name.c_str(), value);
                }
                return;
        }
        throwUnsupportedToolDataType(type);
    }
    const char* getPayloadBegin() override { return begin(payload_m); }
    const char* getPayloadEnd() override { return end(payload_m); }
    const char* getAttachBegin() override { return begin(attachment_m); }
    const char* getAttachEnd() override { return end(attachment_m); }
    bool isRedelivered() override { return redelivered_m; }
    bool getCheckStructuredMsg(const std::vector<SdmProperties>&) override { return false; }
    bool isCacheMsg() override { return cacheMsg_m; }
    bool isSuspectMsg() override { return suspectMsg_m; }
    std::string getDump(std::size_t maxBufferSize) override {
        return maxBufferSize == 0 ? dump_m : dump_m.substr(0, maxBufferSize);
    }
    bool hasDiscardIndication() override { return discardIndication_m; }
    INT64 getTopicSequence() override { return topicSequence_m; }
    void* getMsgPointer() override { return nullptr; }
    void setMsgPointer(void*) override {}

  private:
    static const char* begin(const std::string& part) {
        return part.empty() ? nullptr : part.data();
    }
    static const char* end(const std::string& part) {
        return part.empty() ? nullptr : part.data() + part.size();
    }
};

}  // namespace zorvane::pubsub
