// What a run publishes and how fast: a plain value record built once from
// the finished property store and copied into every client and publish
// thread, each of which then works on its own copy.
//
// Ownership and threads: a plain value; copies share nothing, and each copy
// owns a priority generator of its own. No locks; the constructor from the
// store runs on the main thread and never blocks beyond writing a log line.
#pragma once

#include <map>
#include <memory>
#include <string>
#include <vector>

#include "common/MessagePriorityGenerator.h"
#include "common/dataTypes.h"

namespace zorvane::pubsub {

class CliProperties;

class PublishProperties {
  public:
    // An empty record, the content of a client's publish properties before
    // any are given: everything 0, false or empty, except the message type
    // direct, class of service 1, and -1 ("not set") in both affinity
    // masks, the time to live, the stream id offset, the transaction
    // redelivery limit and both random attachment size limits.
    PublishProperties();

    // Copies the publish keys of the store. Throws PubSubException when
    // NUM_CLIENTS or NUM_PUBS_PER_SESSION is below 1, as the messages per
    // publish thread cannot be worked out then, and when PUB_PRIORITY_LIST
    // makes no priority generator (see MessagePriorityGenerator).
    explicit PublishProperties(const CliProperties& cliProperties);

    PublishProperties(const PublishProperties&) = default;
    PublishProperties& operator=(const PublishProperties&) = default;
    PublishProperties(PublishProperties&&) = default;
    PublishProperties& operator=(PublishProperties&&) = default;
    ~PublishProperties() = default;

    // A copy on the heap; the caller owns it.
    std::unique_ptr<PublishProperties> clone() const;

    // Debug text: "{\n", labelled lines, "}".
    std::string toString() const;

    // Replaces the object type list by one entry per letter of the pattern:
    // b/B bytes, t/T text, s/S stream, m/M map. Other characters are skipped.
    void setMsgObjTypeList(const std::string& pattern);
    void setMsgObjTypeList(const std::vector<PubSubMessageObjectType>& list) {
        msgObjTypeList_m = list;
    }

    // Takes the order offset of the given publisher stream when one was
    // given for it ("-poo=stream@offset"); otherwise leaves it as it is.
    void setOrderOffsetToThatOfGivenPublisherStream(INT32 streamId);

    // ---- getters and setters ----

    const std::vector<std::string>& getXmlList() const { return xmlList_m; }
    void setXmlList(const std::vector<std::string>& value) { xmlList_m = value; }
    const std::vector<std::string>& getAttachmentList() const { return attachmentList_m; }
    void setAttachmentList(const std::vector<std::string>& value) { attachmentList_m = value; }
    const std::vector<std::vector<std::string>>& getTopicsArray() const { return topicsArray_m; }
    void setTopicsArray(const std::vector<std::vector<std::string>>& value) {
        topicsArray_m = value;
    }
    const std::vector<std::vector<double>>& getTopicsWeightsArray() const {
        return topicsWeightsArray_m;
    }
    void setTopicsWeightsArray(const std::vector<std::vector<double>>& value) {
        topicsWeightsArray_m = value;
    }
    const std::vector<std::string>& getQueuesList() const { return queuesList_m; }
    void setQueuesList(const std::vector<std::string>& value) { queuesList_m = value; }
    const std::vector<double>& getQueuesWeightsList() const { return queuesWeightsList_m; }
    void setQueuesWeightsList(const std::vector<double>& value) { queuesWeightsList_m = value; }
    PubSubMessageType getMsgType() const { return msgType_m; }
    void setMsgType(PubSubMessageType value) { msgType_m = value; }
    const std::vector<PubSubMessageObjectType>& getMsgObjTypeList() const {
        return msgObjTypeList_m;
    }
    double getMsgRate() const { return msgRate_m; }
    void setMsgRate(double value) { msgRate_m = value; }
    INT64 getNumMsgsPerClient() const { return numMsgsPerClient_m; }
    void setNumMsgsPerClient(INT64 value) { numMsgsPerClient_m = value; }
    const std::vector<INT32>& getXmlPayloadSizeList() const { return xmlMsgSizeList_m; }
    void setXmlPayloadSizeList(const std::vector<INT32>& value) { xmlMsgSizeList_m = value; }
    const std::vector<INT32>& getAttachmentSizeList() const { return attachSizeList_m; }
    void setAttachmentSizeList(const std::vector<INT32>& value) { attachSizeList_m = value; }
    const std::vector<double>& getAttachmentSizeWeightsList() const {
        return attachSizeWeightsList_m;
    }
    void setAttachmentSizeWeightsList(const std::vector<double>& value) {
        attachSizeWeightsList_m = value;
    }
    INT32 getSendVectorSize() const { return sendVector_m; }
    void setSendVectorSize(INT32 value) { sendVector_m = value; }
    PubSubCosType getCos() const { return cos_m; }
    void setCos(PubSubCosType value) { cos_m = value; }
    const std::vector<std::string>& getSdmFileList() const { return sdmFileList_m; }
    void setSdmFileList(const std::vector<std::string>& value) { sdmFileList_m = value; }
    const std::vector<std::string>& getSdmAsStringList() const { return sdmAsStringList_m; }
    void setSdmAsStringList(const std::vector<std::string>& value) { sdmAsStringList_m = value; }
    bool getSdmAutoGenFlag() const { return sdmAutoGenFlag_m; }
    void setSdmAutoGenFlag(bool value) { sdmAutoGenFlag_m = value; }
    bool getPubToOne() const { return pubToOne_m; }
    void setPubToOne(bool value) { pubToOne_m = value; }
    INT32 getPubAffinity() const { return pubAffinityMask_m; }
    void setPubAffinity(INT32 value) { pubAffinityMask_m = value; }
    INT32 getSmoothAffinity() const { return smoothAffinityMask_m; }
    void setSmoothAffinity(INT32 value) { smoothAffinityMask_m = value; }
    double getBurstDuration() const { return burstDuration_m; }
    void setBurstDuration(double value) { burstDuration_m = value; }
    double getInterBurstDuration() const { return interBurstDuration_m; }
    void setInterBurstDuration(double value) { interBurstDuration_m = value; }
    // 0 or 1, the form the send path hands on.
    INT32 getDMQEligible() const { return dmqe_m ? 1 : 0; }
    void setDMQEligible(bool value) { dmqe_m = value; }
    INT64 getTTL() const { return ttl_m; }
    void setTTL(INT64 value) { ttl_m = value; }
    // 0 or 1, the form the send path hands on.
    INT32 getEliding() const { return eliding_m ? 1 : 0; }
    void setEliding(bool value) { eliding_m = value; }
    INT32 getStreamIdOffset() const { return streamIdOffset_m; }
    void setStreamIdOffset(INT32 value) { streamIdOffset_m = value; }
    INT32 getOrderOffset() const { return orderOffset_m; }
    void setOrderOffset(INT32 value) { orderOffset_m = value; }
    const std::map<INT32, INT32>& getOrderOffsetsForAllPublisherStreams() const {
        return orderOffsetsForAllPublisherStreams_m;
    }
    void setOrderOffsetsForAllPublisherStreams(const std::map<INT32, INT32>& value) {
        orderOffsetsForAllPublisherStreams_m = value;
    }
    bool getSkipCheckForStarted() const { return skipCheckForStarted_m; }
    void setSkipCheckForStarted(bool value) { skipCheckForStarted_m = value; }
    bool getMsgRateIsMax() const { return msgRateIsMax_m; }
    void setMsgRateIsMax(bool value) { msgRateIsMax_m = value; }
    INT32 getXaSize() const { return xaSize_m; }
    void setXaSize(INT32 value) { xaSize_m = value; }
    INT32 getXaRollbackInterval() const { return xaRollbackInterval_m; }
    void setXaRollbackInterval(INT32 value) { xaRollbackInterval_m = value; }
    bool getSkipFinalCommit() const { return skipFinalCommit_m; }
    void setSkipFinalCommit(bool value) { skipFinalCommit_m = value; }
    INT32 getAckImmediatelyInterval() const { return ackImmediatelyInterval_m; }
    void setAckImmediatelyInterval(INT32 value) { ackImmediatelyInterval_m = value; }
    bool getUseRandomMessageOrder() const { return useRandomMessageOrder_m; }
    void setUseRandomMessageOrder(bool value) { useRandomMessageOrder_m = value; }
    double getAttachmentSizeJitterFactor() const { return attachmentSizeJitterFactor_m; }
    void setAttachmentSizeJitterFactor(double value) { attachmentSizeJitterFactor_m = value; }
    bool getWantToMixMessagePropertiesCollection() const {
        return wantToMixMessagePropertiesCollection_m;
    }
    void setWantToMixMessagePropertiesCollection(bool value) {
        wantToMixMessagePropertiesCollection_m = value;
    }
    bool getWantRandomNoiseAttachmentContents() const {
        return wantRandomNoiseAttachmentContents_m;
    }
    void setWantRandomNoiseAttachmentContents(bool value) {
        wantRandomNoiseAttachmentContents_m = value;
    }
    bool getWantUniqueAttachmentContents() const { return wantUniqueAttachmentContents_m; }
    void setWantUniqueAttachmentContents(bool value) { wantUniqueAttachmentContents_m = value; }
    const std::vector<std::string>& getTransactedSessionNameList() const {
        return transactedSessionNameList_m;
    }
    void setTransactedSessionNameList(const std::vector<std::string>& value) {
        transactedSessionNameList_m = value;
    }
    const std::vector<std::string>& getJsonDocFileList() const { return jsonDocFileList_m; }
    void setJsonDocFileList(const std::vector<std::string>& value) { jsonDocFileList_m = value; }
    // The random priority source of the send path; null for none.
    const MessagePriorityGenerator* getMessagePriorityGenerator() const {
        return messagePriority_m.generator_mp.get();
    }
    // Takes the generator (null for none); one it replaces is deleted.
    void setMessagePriorityGenerator(std::unique_ptr<MessagePriorityGenerator> generator);
    const std::vector<std::string>& getPartitionKeyList() const { return partitionKeyList_m; }
    void setPartitionKeyList(const std::vector<std::string>& value) { partitionKeyList_m = value; }
    INT32 getTransactionRedeliveryLimit() const { return transactionRedeliveryLimit_m; }
    void setTransactionRedeliveryLimit(INT32 value) { transactionRedeliveryLimit_m = value; }
    const std::string& getHttpContentEncoding() const { return httpContentEncoding_m; }
    void setHttpContentEncoding(const std::string& value) { httpContentEncoding_m = value; }
    const std::string& getHttpContentType() const { return httpContentType_m; }
    void setHttpContentType(const std::string& value) { httpContentType_m = value; }
    const std::vector<std::string>& getCustomPropertiesList() const {
        return customPropertiesList_m;
    }
    void setCustomPropertiesList(const std::vector<std::string>& value) {
        customPropertiesList_m = value;
    }
    INT64 getAttachSizeMin() const { return attachSizeMin_m; }
    void setAttachSizeMin(INT64 value) { attachSizeMin_m = value; }
    INT64 getAttachSizeMax() const { return attachSizeMax_m; }
    void setAttachSizeMax(INT64 value) { attachSizeMax_m = value; }

  private:
    std::vector<std::string> xmlList_m;         // files with message bodies
    std::vector<std::string> attachmentList_m;  // files with binary attachments
    // Groups of publish topics and their weights. Built from the store they
    // always hold at least one (possibly empty) group, so group 0 can be read.
    std::vector<std::vector<std::string>> topicsArray_m;
    std::vector<std::vector<double>> topicsWeightsArray_m;
    std::vector<std::string> queuesList_m;
    std::vector<double> queuesWeightsList_m;
    PubSubMessageType msgType_m;
    std::vector<PubSubMessageObjectType> msgObjTypeList_m;
    double msgRate_m;          // messages per second per client
    INT64 numMsgsPerClient_m;  // messages for each publish thread
    std::vector<INT32> xmlMsgSizeList_m;
    std::vector<INT32> attachSizeList_m;
    std::vector<double> attachSizeWeightsList_m;
    INT32 sendVector_m;   // messages per send call; 0 for single sends
    PubSubCosType cos_m;  // 0 from "-cos=" is carried unchanged
    std::vector<std::string> sdmFileList_m;
    std::vector<std::string> sdmAsStringList_m;
    bool sdmAutoGenFlag_m;
    bool pubToOne_m;
    INT32 pubAffinityMask_m;      // -1 for none
    INT32 smoothAffinityMask_m;   // -1 for none
    double burstDuration_m;       // seconds
    double interBurstDuration_m;  // seconds
    bool dmqe_m;
    INT64 ttl_m;  // milliseconds; -1 for none
    bool eliding_m;
    INT32 streamIdOffset_m;  // -1 for none
    INT32 orderOffset_m;
    std::map<INT32, INT32> orderOffsetsForAllPublisherStreams_m;  // stream id -> offset
    bool skipCheckForStarted_m;
    bool msgRateIsMax_m;
    INT32 xaSize_m;
    INT32 xaRollbackInterval_m;
    bool skipFinalCommit_m;
    INT32 ackImmediatelyInterval_m;
    bool useRandomMessageOrder_m;
    double attachmentSizeJitterFactor_m;
    bool wantToMixMessagePropertiesCollection_m;
    bool wantRandomNoiseAttachmentContents_m;
    bool wantUniqueAttachmentContents_m;
    std::vector<std::string> transactedSessionNameList_m;  // one per client, set by the run
    std::vector<std::string> jsonDocFileList_m;
    // Owns the priority generator and gives each copy of the record a
    // generator of its own, so that the record keeps its default copies.
    struct OwnedPriorityGenerator {
        OwnedPriorityGenerator() = default;
        OwnedPriorityGenerator(const OwnedPriorityGenerator& other) : generator_mp(copyOf(other)) {}
        OwnedPriorityGenerator& operator=(const OwnedPriorityGenerator& other) {
            if (this != &other) {
                generator_mp = copyOf(other);
            }
            return *this;
        }
        OwnedPriorityGenerator(OwnedPriorityGenerator&&) = default;
        OwnedPriorityGenerator& operator=(OwnedPriorityGenerator&&) = default;
        ~OwnedPriorityGenerator() = default;

        static std::unique_ptr<MessagePriorityGenerator> copyOf(
            const OwnedPriorityGenerator& other) {
            return other.generator_mp != nullptr
                       ? std::make_unique<MessagePriorityGenerator>(other.generator_mp.get())
                       : nullptr;
        }

        std::unique_ptr<MessagePriorityGenerator> generator_mp;  // null for none
    };
    OwnedPriorityGenerator messagePriority_m;
    std::vector<std::string> partitionKeyList_m;
    INT32 transactionRedeliveryLimit_m;  // -1 for no limit
    std::string httpContentEncoding_m;
    std::string httpContentType_m;
    std::vector<std::string> customPropertiesList_m;  // type, name, value triples
    INT64 attachSizeMin_m;                            // -1: no random attachment sizes
    INT64 attachSizeMax_m;                            // -1: no random attachment sizes
};

}  // namespace zorvane::pubsub
