#include "common/MessageArrayBuilder.h"

#include "common/DiskUtils.h"
#include "common/PubSubException.h"
#include "common/PublishProperties.h"
#include "common/StatsCustomizationProperties.h"

namespace zorvane::pubsub {

void MessageArrayBuilder::buildMsgArray(
    const PublishProperties& publishProps, const StatsCustomizationProperties& statsCust,
    bool publishSingleMsgFlag, std::vector<std::vector<MsgProperties>>& msgsToPublishArray) {
    msgsToPublishArray.clear();

    // A structured message has no room for the tool data these checks read.
    if (statsCust.getWantStructMsgCheck() &&
        (statsCust.getWantOrderCheckPublisherStreamNumber() || statsCust.getWantLatency() ||
         statsCust.getWantPayloadCheck() || statsCust.getWantOrderMemory())) {
        throw PubSubException(
            "Cannot use order check, latency or payload check with structured messages.");
    }

    const INT32 sendVector = publishProps.getSendVectorSize();
    if (sendVector > 0) {
        if (!publishProps.getXmlList().empty() || !publishProps.getXmlPayloadSizeList().empty()) {
            throw PubSubException("Only binary attachments are supported with vectored send.");
        }
        if (statsCust.getWantUD()) {
            throw PubSubException("Userdata not supported with vectored send.");
        }
    }

    const auto& topicsArray = publishProps.getTopicsArray();
    const bool haveTopics = !topicsArray.empty() && !topicsArray.front().empty();
    if (sendVector > 0 && !haveTopics) {
        throw PubSubException("Must use topic interface when using vectored send.");
    }
    if (!haveTopics && publishProps.getXmlPayloadSizeList().empty() &&
        publishProps.getXmlList().empty() && publishProps.getQueuesList().empty()) {
        throw PubSubException(
            "Must specify at least one routable component.  Ie topic or xml etc.");
    }

    const int minMsgsListSize = sendVector > 0 && !publishSingleMsgFlag ? sendVector : -1;
    DiskUtils::genMsgArray(publishProps, msgsToPublishArray, minMsgsListSize);

    if (statsCust.getWantUD()) {
        for (std::vector<MsgProperties>& list : msgsToPublishArray) {
            for (MsgProperties& msg : list) {
                msg.setUserdata(DEFAULT_USERDATA);
            }
        }
    }
}

}  // namespace zorvane::pubsub
