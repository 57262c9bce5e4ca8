#include "client/zcore/TopicExpression.h"

#include <cstdlib>
#include <vector>

#include "common/CommonUtils.h"

namespace zorvane::pubsub {

namespace {

// Whether token carries name with the value 1.
bool flagIsSet(const std::string& token, const char* name) {
    const std::string::size_type at = token.find(name);
    if (at == std::string::npos) {
        return false;
    }
    return std::strtol(token.c_str() + at + std::char_traits<char>::length(name), nullptr, 10) == 1;
}

}  // namespace

void TopicExpression::build(const std::string& expression, std::string& topicString,
                            zorClient_subscribeFlags_t& flags, std::string& demuxId) {
    demuxId.clear();
    std::string rest = expression;
    const std::string::size_type demuxAt = rest.find(DEMUX_ID);
    if (demuxAt != std::string::npos) {
        demuxId = rest.substr(0, demuxAt);
        rest = rest.substr(demuxAt + std::char_traits<char>::length(DEMUX_ID));
    }
    const std::string::size_type endAt = rest.find(TOPIC_END);
    if (endAt == std::string::npos) {
        topicString = rest;
        return;
    }
    topicString = rest.substr(0, endAt);
    std::vector<std::string> tokens;
    CommonUtils::tokenizeString(rest.substr(endAt + std::char_traits<char>::length(TOPIC_END)),
                                tokens, ",");
    for (const std::string& token : tokens) {
        if (flagIsSet(token, DELIVER_TO_ALL_FLAG)) {
            flags |= ZORCLIENT_SUBSCRIBE_FLAGS_RX_ALL_DELIVER_TO_ONE;
        } else if (flagIsSet(token, DEMUX_LOCAL_ONLY_FLAG)) {
            flags |= ZORCLIENT_SUBSCRIBE_FLAGS_LOCAL_DISPATCH_ONLY;
        } else if (flagIsSet(token, REQUEST_CONFIRM_FLAG)) {
            flags |= ZORCLIENT_SUBSCRIBE_FLAGS_REQUEST_CONFIRM;
        }
    }
}

}  // namespace zorvane::pubsub
