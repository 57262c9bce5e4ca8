#include "common/PublishProperties.h"

#include <sstream>
#include <utility>

#include "common/CliProperties.h"
#include "common/Log.h"
#include "common/PubSubException.h"

namespace zorvane::pubsub {

namespace {

// Every client runs the same number of publish threads and each thread
// publishes the same count, so the total is cut twice and what is left over
// is not published. Only the cut by the client count is worth a warning:
// that is the division users get wrong with "-mn" and "-cc".
INT64 messagesPerPublishThread(const CliProperties& cli) {
    const INT64 numMsgs = cli.getInt64Property(CliProperties::NUM_MSGS_TO_PUBLISH);
    const INT32 numClients = cli.getIntegerProperty(CliProperties::NUM_CLIENTS);
    const INT32 numPubsPerSession = cli.getIntegerProperty(CliProperties::NUM_PUBS_PER_SESSION);
    if (numClients < 1) {
        LOG_ERROR("Invalid value for -cc");
        throw PubSubException("Invalid value for -cc");
    }
    if (numPubsPerSession < 1) {
        LOG_ERROR("Invalid value for -cpt");
        throw PubSubException("Invalid value for -cpt");
    }
    if (numMsgs % numClients != 0) {
        LOG_WARNING(
            "Invalid values for -mn and -cc.  The -mn value must be evenly divisible by -cc");
    }
    return numMsgs / numClients / numPubsPerSession;
}

template <typename T>
void printJoined(std::ostream& out, const std::vector<T>& list) {
    for (size_t i = 0; i < list.size(); ++i) {
        out << (i == 0 ? "" : ",") << list[i];
    }
}

}  // namespace

PublishProperties::PublishProperties()
    : xmlList_m(),
      attachmentList_m(),
      topicsArray_m(),
      topicsWeightsArray_m(),
      queuesList_m(),
      queuesWeightsList_m(),
      msgType_m(PUBSUB_MSG_TYPE_DIRECT),
      msgObjTypeList_m(),
      msgRate_m(0.0),
      numMsgsPerClient_m(0),
      xmlMsgSizeList_m(),
      attachSizeList_m(),
      attachSizeWeightsList_m(),
      sendVector_m(0),
      cos_m(PUBSUB_COS_1),
      sdmFileList_m(),
      sdmAsStringList_m(),
      sdmAutoGenFlag_m(false),
      pubToOne_m(false),
      pubAffinityMask_m(-1),
      smoothAffinityMask_m(-1),
      burstDuration_m(0.0),
      interBurstDuration_m(0.0),
      dmqe_m(false),
      ttl_m(-1),
      eliding_m(false),
      streamIdOffset_m(-1),
      orderOffset_m(0),
      orderOffsetsForAllPublisherStreams_m(),
      skipCheckForStarted_m(false),
      msgRateIsMax_m(false),
      xaSize_m(0),
      xaRollbackInterval_m(0),
      skipFinalCommit_m(false),
      ackImmediatelyInterval_m(0),
      useRandomMessageOrder_m(false),
      attachmentSizeJitterFactor_m(0.0),
      wantToMixMessagePropertiesCollection_m(false),
      wantRandomNoiseAttachmentContents_m(false),
      wantUniqueAttachmentContents_m(false),
      transactedSessionNameList_m(),
      jsonDocFileList_m(),
      messagePriority_m(),
      partitionKeyList_m(),
      transactionRedeliveryLimit_m(-1),
      httpContentEncoding_m(),
      httpContentType_m(),
      customPropertiesList_m(),
      attachSizeMin_m(-1),
      attachSizeMax_m(-1) {}

PublishProperties::PublishProperties(const CliProperties& cli)
    : xmlList_m(cli.getVectorProperty(CliProperties::PUBLISH_FILE_LIST)),
      attachmentList_m(cli.getVectorProperty(CliProperties::PUBLISH_ATTACH_LIST)),
      topicsArray_m(cli.getVectorVectorProperty(CliProperties::PUB_TOPICS_ARRAY)),
      topicsWeightsArray_m(
          cli.getVectorDoubleVectorProperty(CliProperties::PUB_TOPICS_WEIGHTS_ARRAY)),
      queuesList_m(cli.getVectorProperty(CliProperties::PUB_QUEUES_LIST)),
      queuesWeightsList_m(cli.getDoubleVectorProperty(CliProperties::PUB_QUEUES_WEIGHTS_LIST)),
      msgType_m(cli.getMsgType()),
      msgObjTypeList_m(),
      msgRate_m(cli.getDoubleProperty(CliProperties::PUBLISH_RATE)),
      numMsgsPerClient_m(messagesPerPublishThread(cli)),
      xmlMsgSizeList_m(cli.getIntVectorProperty(CliProperties::XML_PAYLOAD_SIZE_LIST)),
      attachSizeList_m(cli.getIntVectorProperty(CliProperties::BINARY_ATTACH_SIZE_LIST)),
      attachSizeWeightsList_m(
          cli.getDoubleVectorProperty(CliProperties::BINARY_ATTACH_SIZE_WEIGHTS_LIST)),
      sendVector_m(cli.getIntegerProperty(CliProperties::PUB_SEND_VECTOR)),
      cos_m(static_cast<PubSubCosType>(cli.getIntegerProperty(CliProperties::PUB_COS))),
      sdmFileList_m(cli.getVectorProperty(CliProperties::SDM_FILE_LIST)),
      sdmAsStringList_m(),
      sdmAutoGenFlag_m(cli.getBooleanProperty(CliProperties::SDM_AUTO_GEN_FLAG)),
      pubToOne_m(cli.getBooleanProperty(CliProperties::PUB_TO_ONE)),
      pubAffinityMask_m(cli.getIntegerProperty(CliProperties::PUBTHREAD_AFFINITY_MASK)),
      smoothAffinityMask_m(cli.getIntegerProperty(CliProperties::SMOOTHTHREAD_AFFINITY_MASK)),
      burstDuration_m(cli.getDoubleProperty(CliProperties::BURST_DURATION)),
      interBurstDuration_m(cli.getDoubleProperty(CliProperties::INTER_BURST_DURATION)),
      dmqe_m(cli.getBooleanProperty(CliProperties::MSG_DMQ_ELIGIBLE)),
      ttl_m(cli.getInt64Property(CliProperties::MSG_TTL)),
      eliding_m(cli.getBooleanProperty(CliProperties::MSG_ELIDING_ELIGIBLE)),
      streamIdOffset_m(cli.getIntegerProperty(CliProperties::PUB_STREAM_ID_OFFSET)),
      orderOffset_m(cli.getIntegerProperty(CliProperties::PUB_ORDER_OFFSET)),
      orderOffsetsForAllPublisherStreams_m(
          cli.getMapIntIntProperty(CliProperties::PUB_ORDER_OFFSETS)),
      skipCheckForStarted_m(false),
      msgRateIsMax_m(cli.getBooleanProperty(CliProperties::MSG_RATE_IS_MAX)),
      xaSize_m(cli.getIntegerProperty(CliProperties::AD_TRANSACTION_SIZE)),
      xaRollbackInterval_m(cli.getIntegerProperty(CliProperties::AD_TRANSACTION_ROLLBACK_INTERVAL)),
      skipFinalCommit_m(false),
      ackImmediatelyInterval_m(cli.getIntegerProperty(CliProperties::AD_ACK_IMMEDIATELY_INTERVAL)),
      useRandomMessageOrder_m(
          cli.getBooleanProperty(CliProperties::RANDOMIZATION_MESSAGE_ORDER_FLAG)),
      attachmentSizeJitterFactor_m(
          cli.getDoubleProperty(CliProperties::RANDOMIZATION_ATTACHMENT_SIZE_JITTER_FACTOR)),
      wantToMixMessagePropertiesCollection_m(
          cli.getBooleanProperty(CliProperties::WANT_MIX_MSGS_PROPS)),
      wantRandomNoiseAttachmentContents_m(
          cli.getBooleanProperty(CliProperties::RANDOMIZATION_MESSAGE_ATTACHMENT_CONTENTS)),
      wantUniqueAttachmentContents_m(
          cli.getBooleanProperty(CliProperties::WANT_UNIQUE_BINARY_ATTACH)),
      transactedSessionNameList_m(),
      jsonDocFileList_m(cli.getVectorProperty(CliProperties::JSON_DOC_FILE_LIST)),
      messagePriority_m(),
      partitionKeyList_m(cli.getVectorProperty(CliProperties::PARTITION_KEY_LIST)),
      transactionRedeliveryLimit_m(
          cli.getIntegerProperty(CliProperties::TRANSACTION_REDELIVERY_LIMIT)),
      httpContentEncoding_m(cli.getStringProperty(CliProperties::HTTP_CONTENT_ENCODING)),
      httpContentType_m(cli.getStringProperty(CliProperties::HTTP_CONTENT_TYPE)),
      customPropertiesList_m(cli.getVectorProperty(CliProperties::CUSTOM_PROPERTIES_LIST)),
      attachSizeMin_m(cli.getInt64Property(CliProperties::RANDOM_ATTACH_SIZE_MIN)),
      attachSizeMax_m(cli.getInt64Property(CliProperties::RANDOM_ATTACH_SIZE_MAX)) {
    // Publishers read group 0 without looking; a run without topics has one
    // empty group rather than none.
    if (topicsArray_m.empty()) {
        topicsArray_m.emplace_back();
    }
    if (topicsWeightsArray_m.empty()) {
        topicsWeightsArray_m.emplace_back();
    }

    setMsgObjTypeList(cli.getStringProperty(CliProperties::MSG_OBJ_TYPE_PATTERN));

    const std::vector<INT32> priorityList =
        cli.getIntVectorProperty(CliProperties::PUB_PRIORITY_LIST);
    if (!priorityList.empty()) {
        messagePriority_m.generator_mp = std::make_unique<MessagePriorityGenerator>(priorityList);
    }

    // "-msar=0-0" means the same as no "-msar=" at all.
    if (attachSizeMin_m == 0 && attachSizeMax_m == 0) {
        attachSizeMin_m = -1;
        attachSizeMax_m = -1;
    }
}

std::unique_ptr<PublishProperties> PublishProperties::clone() const {
    return std::make_unique<PublishProperties>(*this);
}

void PublishProperties::setMsgObjTypeList(const std::string& pattern) {
    msgObjTypeList_m.clear();
    for (char letter : pattern) {
        switch (letter) {
            case 'b':
            case 'B':
                msgObjTypeList_m.push_back(PUBSUB_MSG_OBJ_TYPE_BYTES);
                break;
            case 't':
            case 'T':
                msgObjTypeList_m.push_back(PUBSUB_MSG_OBJ_TYPE_TEXT);
                break;
            case 's':
            case 'S':
                msgObjTypeList_m.push_back(PUBSUB_MSG_OBJ_TYPE_STREAM);
                break;
            case 'm':
            case 'M':
                msgObjTypeList_m.push_back(PUBSUB_MSG_OBJ_TYPE_MAP);
                break;
            default:
                // A stray character adds nothing; it is not worth ending
                // the run for.
                break;
        }
    }
}

void PublishProperties::setMessagePriorityGenerator(
    std::unique_ptr<MessagePriorityGenerator> generator) {
    if (messagePriority_m.generator_mp != nullptr) {
        LOG_INFO("Replacing MessagePriorityGenerator with new one, deleting existing one.");
    }
    messagePriority_m.generator_mp = std::move(generator);
}

void PublishProperties::setOrderOffsetToThatOfGivenPublisherStream(INT32 streamId) {
    const auto found = orderOffsetsForAllPublisherStreams_m.find(streamId);
    if (found != orderOffsetsForAllPublisherStreams_m.end()) {
        orderOffset_m = found->second;
    }
}

std::string PublishProperties::toString() const {
    std::ostringstream out;
    out << "{\n"
        << "  Xml msg List Size      = " << xmlList_m.size() << "\n"
        << "  Attachment List Size   = " << attachmentList_m.size() << "\n"
        << "  Topics Array Size       = " << topicsArray_m.size() << "\n";
    for (size_t group = 0; group < topicsArray_m.size(); ++group) {
        out << "    Topics List [" << group << "] size = " << topicsArray_m[group].size() << "\n";
    }
    out << "  Queues List Size       = " << queuesList_m.size() << "\n"
        << "  Msg Type               = " << msgType_m << "\n"
        << "  Message Object Type List Size  = " << msgObjTypeList_m.size() << "\n"
        << "  Msg Rate               = " << msgRate_m << "\n"
        << "  Num Msgs               = " << numMsgsPerClient_m << "\n"
        << "  Xml Size List Size     = " << xmlMsgSizeList_m.size() << "\n"
        << "  Bin Attach Size List Size = " << attachSizeList_m.size() << "\n"
        << "  Send Vector Size       = " << sendVector_m << "\n"
        << "  COS                    = " << cos_m << "\n"
        << "  SDM File List Size     = " << sdmFileList_m.size() << "\n"
        << "  SDM as Strings List    = ";
    printJoined(out, sdmAsStringList_m);
    out << "\n"
        << "  SDM Auto Generate Msgs = " << sdmAutoGenFlag_m << "\n"
        << "  Pub To One             = " << pubToOne_m << "\n"
        << "  Pub Thread Affinity    = " << pubAffinityMask_m << "\n"
        << "  Smooth Thread Affinity = " << smoothAffinityMask_m << "\n"
        << "  Burst Duration         = " << burstDuration_m << "\n"
        << "  Inter Burst Duration   = " << interBurstDuration_m << "\n"
        << "  DMQ Eligible           = " << dmqe_m << "\n"
        << "  TTL                    = " << ttl_m << "\n"
        << "  Eliding Eligible       = " << eliding_m << "\n"
        << "  Stream ID offset       = " << streamIdOffset_m << "\n"
        << "  Order offset           = " << orderOffset_m << "\n"
        << "  Skip Check For Start   = " << skipCheckForStarted_m << "\n"
        << "  Msg Rate Is Max        = " << msgRateIsMax_m << "\n"
        << "  Transaction Size       = " << xaSize_m << "\n"
        << "  Transaction Rollback Interval = " << xaRollbackInterval_m << "\n"
        << "  Skip Final Commit      = " << skipFinalCommit_m << "\n"
        << "  Using Random Message Order = " << useRandomMessageOrder_m << "\n"
        << "  Attachment Size Jitter Factor = " << attachmentSizeJitterFactor_m << "\n"
        << "  Want to Mix MsgProperties Collection = " << wantToMixMessagePropertiesCollection_m
        << "\n"
        << "  Want Random Noise Attachment Contents = " << wantRandomNoiseAttachmentContents_m
        << "\n"
        << "  Want Unique Attachment Contents = " << wantUniqueAttachmentContents_m << "\n"
        << "  Ack Immediately Interval = " << ackImmediatelyInterval_m << "\n"
        << "  XA Session List Size   = " << transactedSessionNameList_m.size() << "\n"
        << "  JSON doc file list     = ";
    printJoined(out, jsonDocFileList_m);
    out << "\n"
        << "  Partition Key List Size = " << partitionKeyList_m.size() << "\n"
        << "  Transaction Redelivery Limit = " << transactionRedeliveryLimit_m << "\n"
        << "  HTTP Content Encoding = " << httpContentEncoding_m << "\n"
        << "  HTTP Content Type = " << httpContentType_m << "\n"
        << "  Custom Properties List Size = " << customPropertiesList_m.size() << "\n"
        << "  Random Attach Size Min = " << attachSizeMin_m << "\n"
        << "  Random Attach Size Max = " << attachSizeMax_m << "\n"
        << "  Pub Priority Generator = "
        << (getMessagePriorityGenerator() != nullptr ? "YES" : "NO") << "\n"
        << "}";
    return out.str();
}

}  // namespace zorvane::pubsub
