// General helpers of the tool (static operations only).
#pragma once

#include <string>
#include <vector>

#include "common/dataTypes.h"

namespace zorvane::pubsub {

class CommonUtils {
  public:
    // Message pool statistics of the messaging library, by the tool's own
    // names. client/zcore maps them onto the library.
    enum PoolStat {
        POOL_STAT_TOTAL_MEMORY,
        POOL_STAT_ALLOC_MEMORY,
        POOL_STAT_MSG_ALLOCS,
        POOL_STAT_MSG_FREES,
        POOL_STAT_MSG_DUPS,
        POOL_STAT_MSG_REALLOCS,
        POOL_STAT_FREE_MSGS,
        POOL_STAT_ALLOC_MSGS,
        POOL_STAT_FREE_CONTAINERS,
        POOL_STAT_ALLOC_CONTAINERS,
        POOL_STAT_FREE_DATA_BLOCKS,
        POOL_STAT_ALLOC_DATA_BLOCKS,
    };
    // Reads one statistic of one pool; false when the library refuses.
    using PoolStatReader = bool (*)(PoolStat stat, int poolIndex, UINT64* value_p);

    // Installed once at start-up by client/zcore, before other threads run.
    static void setPoolStatReader(PoolStatReader reader);
    // Reads through the installed reader; false when none is installed.
    static bool readPoolStat(PoolStat stat, int poolIndex, UINT64* value_p);

    // Splits str at every occurrence of the whole delimiter. Empty fields
    // count: "a,,b" gives "a", "", "b"; an empty str gives one empty token.
    static void tokenizeString(const std::string& str, std::vector<std::string>& tokens,
                               const std::string& delimiter);

    // Extra-property lists are keys and values in turn.
    static bool eplKeyIsPresent(const std::vector<std::string>& list, const std::string& key);
    // The element behind the first occurrence of key (skipping repeats of key
    // directly behind it), or "" when there is none.
    static std::string eplGetValue(const std::vector<std::string>& list, const std::string& key);

    // Empty when the library's message pools are all given back; otherwise
    // one line per finding.
    static std::string checkMsgPoolAllocsZero();
};

}  // namespace zorvane::pubsub
