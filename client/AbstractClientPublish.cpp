// The publish side of a client: the publish records, the guard against
// publishing after a callback error, and the tool data of each message.
#include <string>

#include "client/AbstractClient.h"
#include "common/MsgProperties.h"
#include "common/PubSubException.h"
#include "common/ToolDataFill.h"

namespace zorvane::pubsub {

namespace {

// Thrown instead of sending once a library callback reported an error and
// "-soe" asks to stop on errors.
[[noreturn]] void throwAsyncException(const std::string& clientIdStr) {
    throw PubSubException("CLIENT " + clientIdStr + ": " +
                          "Async exception occurred.  Aborting publish of message." + "\n");
}

}  // namespace

void AbstractClient::setPublishProps(const PublishProperties& publishProps, INT32 producerIndex,
                                     std::string xaSessionName) {
    publishProps_m = publishProps;
    publishProps_m.setOrderOffsetToThatOfGivenPublisherStream(publishProps_m.getStreamIdOffset() +
                                                              clientIdInt_m);
    // A resumed publisher ("-poo=") counts its acknowledgements from where
    // the earlier run stopped.
    setLastAckedMsgIdImpl(static_cast<UINT64>(static_cast<INT64>(publishProps_m.getOrderOffset())));
    asyncExceptionOccured_m.store(false);
    setPublishPropsImpl(publishProps_m, producerIndex, std::move(xaSessionName));
}

void AbstractClient::setPublishStatsProps(const StatsCustomizationProperties& statsProps) {
    txStatsProps_m = statsProps;
    pubWantToolData_m = publishWantToolData();
}

bool AbstractClient::publishWantToolData() const {
    return txStatsProps_m.getWantLatency() || txStatsProps_m.getWantPayloadCheck() ||
           txStatsProps_m.getWantOrderCheckPublisherStreamNumber() ||
           txStatsProps_m.getWantOrderMemory() || props_m.getWantTraceDecodeCheck();
}

void AbstractClient::publishMsg(MsgProperties* msg_p, INT32 producerIndex) {
    if (props_m.wantStopOnError() && asyncExceptionOccured_m.load()) {
        throwAsyncException(clientIdStr_m);
    }
    publishMsgImpl(msg_p, producerIndex);
}

void AbstractClient::publishSendMultiple(std::vector<MsgProperties>& msgsVect, bool wantToolData,
                                         INT32 producerIndex) {
    if (props_m.wantStopOnError() && asyncExceptionOccured_m.load()) {
        throwAsyncException(clientIdStr_m);
    }
    publishSendMultipleImpl(msgsVect, wantToolData, producerIndex);
}

void AbstractClient::updateToolData(MsgProperties* msg_p, UINT64 msgNum, UINT64 latTimestamp) {
    ToolDataFillSettings settings;
    settings.wantOrderMemory_m = txStatsProps_m.getWantOrderMemory();
    settings.wantOrderCheckPublisherStreamNumber_m =
        txStatsProps_m.getWantOrderCheckPublisherStreamNumber();
    settings.wantLatency_m = txStatsProps_m.getWantLatency();
    settings.wantPayloadCheck_m = txStatsProps_m.getWantPayloadCheck();
    // The form decides where the attachment CRC starts: behind the record
    // in the attachment, or at 0 when the record travels as properties.
    settings.toolDataType_m =
        props_m.getWantUserPropToolData() ? TOOL_DATA_TYPE_USER_PROP : TOOL_DATA_TYPE_BIN_ATTACH;
    settings.orderOffset_m =
        static_cast<UINT64>(static_cast<INT64>(publishProps_m.getOrderOffset()));
    settings.streamIdOffset_m = publishProps_m.getStreamIdOffset();
    settings.clientIdInt_m = clientIdInt_m;
    ToolDataFill::fill(*msg_p->getToolData(), settings, msgNum, latTimestamp, msg_p->getMsgBody(),
                       msg_p->getAttachment());
}

void AbstractClient::setToolDataAsAttachment(MsgProperties* msg_p) {
    char record[ToolData::MAX_ENCODED_SIZE];
    const UINT32 size = ToolDataFill::prepareAttachmentRecord(
        *msg_p->getToolData(), txStatsProps_m.getWantLatency(), record, sizeof record);
    if (size > 0) {
        msg_p->overlayToolDataRecord(record, record + size);
    }
}

}  // namespace zorvane::pubsub
