// General helpers of the tool (static operations only).
#pragma once

#include <cstdlib>
#include <map>
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

    // The messaging library's session statistics, by the ids that
    // AbstractClient::getSdkStat takes: receive statistics from 0, transmit
    // statistics from SDK_TX_STAT_OFFSET. client/zcore checks these numbers
    // against the library's at compile time.
    static constexpr int SDK_TX_STAT_OFFSET = 1000;
    static constexpr int SDK_NUM_RX_STATS = 40;
    static constexpr int SDK_NUM_TX_STATS = 28;
    // The library's name of one statistic (static text, never null).
    using SdkStatNameReader = const char* (*)(int sdkStatId);

    // Installed once at start-up by client/zcore, before other threads run.
    static void setSdkStatNameReader(SdkStatNameReader reader);
    // The name through the installed reader. Without one (the library is
    // not attached, as in unit tests) "RX_STAT_<id>" or "TX_STAT_<id>", so
    // that a report still says which figure is which.
    static std::string readSdkStatName(int sdkStatId);

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

    // ---- list notations of the command line (CommonUtilsLists.cpp) ----
    // All run on the main thread while options are parsed. Where a function
    // says "fault", it prints the reason to standard error and ends the
    // process with status 255 through processExit.

    // Colon probability weights for names: "name" or "name:weight". A token
    // whose part after the colon holds anything but digits and dots is a
    // name as a whole (so "v:host" stays one name) with defaultWeight; an
    // empty weight part is 0.0. False when the token has two colons or more.
    static bool parseTokenStringColonDouble(const std::string& token, std::string& name,
                                            double& weight, double defaultWeight);
    // The same for sizes: "size" or "size:weight", both converted without a
    // character check. False when the token has two colons or more.
    static bool parseTokenIntColonDouble(const std::string& token, int& value, double& weight,
                                         double defaultWeight);
    // Clear names and weights, then append each usable token of in, in step.
    // True if every token was usable. With strict, an unusable token is a
    // fault; without it, it is skipped.
    static bool processWeightedStringList(const std::vector<std::string>& in,
                                          std::vector<std::string>& names,
                                          std::vector<double>& weights, bool strict);
    // As above for sizes; a weight below 0.0 is unusable too.
    static bool processWeightedIntList(const std::vector<std::string>& in, std::vector<int>& values,
                                       std::vector<double>& weights, bool strict);
    static bool doesThatStringContainAnyNonNumericalOrNonDotCharacters(const std::string& str);

    // "start,step,end": start, start+step, ... while not above end. Faults
    // when value is not three parts (with wrongFormText), when step is not
    // above 0 (the sweep would never end) and when the sweep would be longer
    // than MAX_GENERATED_ENTRIES; optionWord names the option in the last two.
    static void getSizeListFromSweep(const std::string& value, std::vector<int>& sizes,
                                     const char* wrongFormText, const char* optionWord);
    // The attachment sweep ("-msas="): the sizes of the sweep, each with the
    // weight 1.0.
    static void getAttachmentSizeListFromAttachmentSizeSweep(const std::string& value,
                                                             std::vector<int>& sizes,
                                                             std::vector<double>& weights);

    // Longest list the command line may generate from a count or a sweep,
    // so that a mistyped number is refused instead of exhausting memory.
    static constexpr long long MAX_GENERATED_ENTRIES = 10000000;

    // True when str holds only blanks and tabs (or nothing).
    static bool isBlankOrTabs(const std::string& str);

    // ---- order offsets of the resume arguments (CommonUtilsOffsets.cpp) ----

    // "key@value", both as by strtol base 10. True for exactly two parts.
    template <typename K, typename V>
    static bool parseTokenIntAtInt(const std::string& token, K& key, V& value);
    // "k@v,k@v,...": tokens of only blanks and tabs are skipped, a repeated
    // key keeps its last value. A token of another form sets error and
    // yields an empty map.
    template <typename K, typename V>
    static std::map<K, V> parseTokenListCommaIntAtIntToMapIntInt(const std::string& value,
                                                                 bool& error);
    // "-poo=" in its pair form: stream@offset,...
    static std::map<INT32, INT32> parseFullArgumentForPublisherOrderOffsets(
        const std::string& value, bool& error);
    // "-soo=": one group of stream@offset pairs per subscriber client, the
    // groups cut at ";". Empty as a whole when any group is malformed.
    static std::vector<std::map<INT32, UINT64>> parseFullArgumentForSubscriberOrderOffsets(
        const std::string& value);
    // The inverse forms the report prints for a later run: "k@v,k@v" in key
    // order, and the subscriber groups joined by " ; ".
    static std::string serializeFullArgumentForPublisherOrderOffsets(
        const std::map<INT32, INT32>& offsets);
    static std::string serializeFullArgumentForLastAckedMsgIdAndPublisherOrderOffsets(
        const std::map<INT32, UINT64>& lastAckedMsgIds);
    static std::string serializeFullArgumentForSubscriberOrderOffsets(
        const std::vector<std::map<INT32, UINT64>>& offsets);
};

template <typename K, typename V>
bool CommonUtils::parseTokenIntAtInt(const std::string& token, K& key, V& value) {
    std::vector<std::string> parts;
    tokenizeString(token, parts, "@");
    if (parts.size() != 2) {
        return false;
    }
    key = static_cast<K>(std::strtol(parts[0].c_str(), nullptr, 10));
    value = static_cast<V>(std::strtol(parts[1].c_str(), nullptr, 10));
    return true;
}

template <typename K, typename V>
std::map<K, V> CommonUtils::parseTokenListCommaIntAtIntToMapIntInt(const std::string& value,
                                                                   bool& error) {
    error = false;
    std::map<K, V> result;
    std::vector<std::string> tokens;
    tokenizeString(value, tokens, ",");
    for (const std::string& token : tokens) {
        if (isBlankOrTabs(token)) {
            continue;
        }
        K key{};
        V entry{};
        if (!parseTokenIntAtInt(token, key, entry)) {
            error = true;
            result.clear();
            return result;
        }
        result.insert_or_assign(key, entry);
    }
    return result;
}

}  // namespace zorvane::pubsub
