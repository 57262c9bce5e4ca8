// The message lists a run publishes, with the checks that refuse
// configurations no list can serve. The client collection builds its lists
// only through buildMsgArray (its private helper _buildMsgArray calls it).
//
// Threads: runs on the main thread before publishing starts; reads files
// through DiskUtils::genMsgArray and so may block on the disk.
#pragma once

#include <vector>

#include "common/MsgProperties.h"

namespace zorvane::pubsub {

class PublishProperties;
class StatsCustomizationProperties;

class MessageArrayBuilder {
  public:
    // The user data every message carries with "-ud"; the receive side
    // compares against the same text.
    static constexpr const char* DEFAULT_USERDATA = "abcdefghijklmnopqrstuvwxyz0123456789";

    // Empties msgsToPublishArray, refuses what cannot work (PubSubException,
    // before anything is built), then builds one list per group of publish
    // topics. A vectored send, unless a single message is asked for
    // (publishSingleMsgFlag), gets lists longer than its vector.
    static void buildMsgArray(const PublishProperties& publishProps,
                              const StatsCustomizationProperties& statsCust,
                              bool publishSingleMsgFlag,
                              std::vector<std::vector<MsgProperties>>& msgsToPublishArray);
};

}  // namespace zorvane::pubsub
