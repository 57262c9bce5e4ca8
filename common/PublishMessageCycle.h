// The walk of one publish thread over its ready-made messages: which
// message goes out next (in turn, or drawn by weight with "-rmo"), its new
// attachment when sizes or contents vary per send ("-rjit", "-rmac",
// "-msar", "-mua"), and the partition key and object type it carries, each
// taken in turn from its list.
//
// Ownership and threads: owned by one publish thread, which alone calls
// nextMessage; the generator state is borrowed from that thread and must
// outlive the cycle. nextMessage allocates nothing once every attachment
// has held its largest size and every partition key fits its message.
#pragma once

#include <string>
#include <vector>

#include "common/MsgProperties.h"
#include "common/RandomIndexSampler.h"
#include "common/dataTypes.h"

namespace zorvane::pubsub {

class PublishProperties;

class PublishMessageCycle {
  public:
    // An empty cycle; configure it before use.
    PublishMessageCycle();

    // Takes a copy of msgs and reads from publishProps what varies per send.
    // With any randomization a sampler is built over the messages' aggregate
    // weights, on state_p. Throws PubSubException for negative weights.
    void configure(const std::vector<MsgProperties>& msgs, const PublishProperties& publishProps,
                   UINT16* state_p);

    // The message for running message number numMsgs (1 for the first),
    // ready for its tool data: msgs[(numMsgs - 1) % size] or a weighted draw,
    // its attachment regenerated for streamId and msgId when asked for, and
    // the next partition key and object type set. The reference stays valid
    // until the next configure. Throws PubSubException on an empty list.
    MsgProperties& nextMessage(INT64 numMsgs, UINT32 streamId, UINT64 msgId);

    // The thread's own copy of the list (vectored sends index into it).
    std::vector<MsgProperties>& getMsgs() { return msgs_m; }

    bool getUseSomeFormOfRandomization() const { return useSomeFormOfRandomization_m; }
    bool getGenerateNewAttachment() const { return generateNewAttachment_m; }

  private:
    std::vector<MsgProperties> msgs_m;
    UINT16* randomState_mp;  // borrowed from the publish thread
    bool useRandomMessageOrder_m;
    bool useSomeFormOfRandomization_m;
    bool generateNewAttachment_m;
    double attachmentSizeJitterFactor_m;
    INT64 attachSizeMin_m;  // -1: no random sizes
    INT64 attachSizeMax_m;
    RandomIndexSampler singlePublishRunRandomIndexSampler_m;
    size_t partitionKeyIndex_m;
    std::vector<std::string> partitionKeyList_m;
    size_t msgObjTypeIndex_m;
    std::vector<PubSubMessageObjectType> msgObjTypeList_m;
};

}  // namespace zorvane::pubsub
