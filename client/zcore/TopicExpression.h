// The topic notation of subscription lists, cache topics and request
// topics:
//
//   [demuxId<DEMUX_ID/>]topic[<TOPIC_END/>NAME=value,NAME=value...]
//
// The names that count are DA= (deliver always: receive every
// deliver-to-one message too), DLO= (a local dispatch entry only) and RC=
// (request a confirmation event), each with the value 1; any other token is
// skipped. Plain text in, plain values out; no library state.
#pragma once

#include <string>

#include "zorClient.h"

namespace zorvane::pubsub {

class TopicExpression {
  public:
    static constexpr const char* DEMUX_ID = "<DEMUX_ID/>";
    static constexpr const char* TOPIC_END = "<TOPIC_END/>";
    static constexpr const char* DELIVER_TO_ALL_FLAG = "DA=";
    static constexpr const char* DEMUX_LOCAL_ONLY_FLAG = "DLO=";
    static constexpr const char* REQUEST_CONFIRM_FLAG = "RC=";

    // Sets topicString and demuxId (cleared when there is none) and ors the
    // subscribe flags the expression names into flags.
    static void build(const std::string& expression, std::string& topicString,
                      zorClient_subscribeFlags_t& flags, std::string& demuxId);
};

}  // namespace zorvane::pubsub
