// The structured message check of a received message: which description
// its first user data byte names, and whether the contents match it.
#include "client/zcore/CannedMessages.h"
#include "client/zcore/Message.h"
#include "client/zcore/SdmMessageBuilder.h"
#include "common/Log.h"
#include "common/SdmProperties.h"

namespace zorvane::pubsub {

bool Message::getCheckStructuredMsg(const std::vector<SdmProperties>& sdmPropsList) {
    void* data_p = nullptr;
    zorClient_uint32_t size = 0;
    if (zorClient_msg_getUserDataPtr(msg_mp, &data_p, &size) != ZORCLIENT_OK || data_p == nullptr ||
        size == 0) {
        return false;
    }
    const int sdmId = *static_cast<const unsigned char*>(data_p);
    if (sdmId < PUBSUB_SDM_ID_USER_DEF_BASE) {
        // A broker may relay a message without its sender timestamp; that
        // one header is tolerated, every other part is compared.
        return checkStructuredMsg(msg_mp, MISSING_OK_SENDER_TIMESTAMP) == 0;
    }
    const std::size_t index = static_cast<std::size_t>(sdmId - PUBSUB_SDM_ID_USER_DEF_BASE);
    if (index >= sdmPropsList.size()) {
        LOG_DEBUG("CLIENT %s: sdm message ID received out of range. %i. ", clientIdStr_m.c_str(),
                  sdmId);
        return false;
    }
    return SdmMessageBuilder::checkMsg(sdmPropsList[index], msg_mp) == 0;
}

}  // namespace zorvane::pubsub
