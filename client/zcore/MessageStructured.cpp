// The structured message check of a received message: which description
// its first user data byte names, and whether the contents match it.
#include "client/zcore/Message.h"
#include "common/Log.h"
#include "common/SdmProperties.h"

namespace zorvane::pubsub {

namespace {

// Comparing contents with a canned message or a user description needs the
// structured message builders, which this build does not have yet: every
// message then counts as a failed check, and the log says why.
bool contentsCheckNotAvailable(const std::string& clientIdStr, int sdmId) {
    LOG_ERROR("CLIENT %s: Checking structured message %d is not available in this build",
              clientIdStr.c_str(), sdmId);
    return false;
}

}  // namespace

bool Message::getCheckStructuredMsg(const std::vector<SdmProperties>& sdmPropsList) {
    void* data_p = nullptr;
    zorClient_uint32_t size = 0;
    if (zorClient_msg_getUserDataPtr(msg_mp, &data_p, &size) != ZORCLIENT_OK || data_p == nullptr ||
        size == 0) {
        return false;
    }
    const int sdmId = *static_cast<const unsigned char*>(data_p);
    if (sdmId < PUBSUB_SDM_ID_USER_DEF_BASE) {
        return contentsCheckNotAvailable(clientIdStr_m, sdmId);
    }
    const std::size_t index = static_cast<std::size_t>(sdmId - PUBSUB_SDM_ID_USER_DEF_BASE);
    if (index >= sdmPropsList.size()) {
        LOG_DEBUG("CLIENT %s: sdm message ID received out of range. %i. ", clientIdStr_m.c_str(),
                  sdmId);
        return false;
    }
    return contentsCheckNotAvailable(clientIdStr_m, sdmId);
}

}  // namespace zorvane::pubsub
