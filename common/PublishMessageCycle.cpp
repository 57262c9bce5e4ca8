#include "common/PublishMessageCycle.h"

#include "common/PubSubException.h"
#include "common/PublishProperties.h"

namespace zorvane::pubsub {

PublishMessageCycle::PublishMessageCycle()
    : msgs_m(),
      randomState_mp(nullptr),
      useRandomMessageOrder_m(false),
      useSomeFormOfRandomization_m(false),
      generateNewAttachment_m(false),
      attachmentSizeJitterFactor_m(0.0),
      attachSizeMin_m(-1),
      attachSizeMax_m(-1),
      singlePublishRunRandomIndexSampler_m(),
      partitionKeyIndex_m(0),
      partitionKeyList_m(),
      msgObjTypeIndex_m(0),
      msgObjTypeList_m() {}

void PublishMessageCycle::configure(const std::vector<MsgProperties>& msgs,
                                    const PublishProperties& publishProps, UINT16* state_p) {
    msgs_m = msgs;
    randomState_mp = state_p;
    useRandomMessageOrder_m = publishProps.getUseRandomMessageOrder();
    attachmentSizeJitterFactor_m = publishProps.getAttachmentSizeJitterFactor();
    attachSizeMin_m = publishProps.getAttachSizeMin();
    attachSizeMax_m = publishProps.getAttachSizeMax();
    useSomeFormOfRandomization_m = useRandomMessageOrder_m || attachmentSizeJitterFactor_m != 0.0 ||
                                   publishProps.getWantRandomNoiseAttachmentContents() ||
                                   (attachSizeMin_m >= 0 && attachSizeMax_m >= 0);
    generateNewAttachment_m =
        useSomeFormOfRandomization_m || publishProps.getWantUniqueAttachmentContents();
    partitionKeyIndex_m = 0;
    partitionKeyList_m = publishProps.getPartitionKeyList();
    msgObjTypeIndex_m = 0;
    msgObjTypeList_m = publishProps.getMsgObjTypeList();

    singlePublishRunRandomIndexSampler_m = RandomIndexSampler();
    if (useSomeFormOfRandomization_m) {
        std::vector<double> weights;
        weights.reserve(msgs_m.size());
        for (const MsgProperties& msg : msgs_m) {
            weights.push_back(msg.getAggregateProbabilityWeight());
        }
        singlePublishRunRandomIndexSampler_m = RandomIndexSampler(randomState_mp, weights);
    }
}

MsgProperties& PublishMessageCycle::nextMessage(INT64 numMsgs, UINT32 streamId, UINT64 msgId) {
    if (msgs_m.empty()) {
        throw PubSubException("No messages to publish: the message list is empty.");
    }
    size_t msgIndex = 0;
    if (useRandomMessageOrder_m) {
        msgIndex = static_cast<size_t>(singlePublishRunRandomIndexSampler_m.sampleIndex());
    } else {
        // A rewind of the message id (republishing after a switchover)
        // rewinds the walk with it.
        msgIndex = static_cast<size_t>(numMsgs - 1) % msgs_m.size();
    }
    MsgProperties& msg = msgs_m[msgIndex];
    if (generateNewAttachment_m) {
        msg.generateNewAttachment(randomState_mp, attachmentSizeJitterFactor_m, attachSizeMin_m,
                                  attachSizeMax_m, streamId, msgId);
    }
    if (!partitionKeyList_m.empty()) {
        msg.setPartitionKey(partitionKeyList_m[partitionKeyIndex_m % partitionKeyList_m.size()]);
        ++partitionKeyIndex_m;
    }
    if (!msgObjTypeList_m.empty()) {
        msg.setMsgObjType(msgObjTypeList_m[msgObjTypeIndex_m % msgObjTypeList_m.size()]);
        ++msgObjTypeIndex_m;
    }
    return msg;
}

}  // namespace zorvane::pubsub
