// Order offsets of the resume arguments "-poo=" and "-soo=", and the texts
// the report prints so that a later run can pick up where this one stopped.
// The serialisers write what the parsers read back.
#include <sstream>

#include "common/CommonUtils.h"

namespace zorvane::pubsub {

namespace {

template <typename Map>
std::string joinPairs(const Map& map) {
    std::ostringstream out;
    bool first = true;
    for (const auto& [key, value] : map) {
        out << (first ? "" : ",") << key << '@' << value;
        first = false;
    }
    return out.str();
}

}  // namespace

std::map<INT32, INT32> CommonUtils::parseFullArgumentForPublisherOrderOffsets(
    const std::string& value, bool& error) {
    return parseTokenListCommaIntAtIntToMapIntInt<INT32, INT32>(value, error);
}

std::vector<std::map<INT32, UINT64>> CommonUtils::parseFullArgumentForSubscriberOrderOffsets(
    const std::string& value) {
    std::vector<std::map<INT32, UINT64>> result;
    std::vector<std::string> groups;
    tokenizeString(value, groups, ";");
    for (const std::string& group : groups) {
        bool error = false;
        std::map<INT32, UINT64> offsets =
            parseTokenListCommaIntAtIntToMapIntInt<INT32, UINT64>(group, error);
        if (error) {
            // One bad group leaves no subscriber with a trustworthy offset.
            result.clear();
            return result;
        }
        result.push_back(std::move(offsets));
    }
    return result;
}

std::string CommonUtils::serializeFullArgumentForPublisherOrderOffsets(
    const std::map<INT32, INT32>& offsets) {
    return joinPairs(offsets);
}

std::string CommonUtils::serializeFullArgumentForLastAckedMsgIdAndPublisherOrderOffsets(
    const std::map<INT32, UINT64>& lastAckedMsgIds) {
    return joinPairs(lastAckedMsgIds);
}

std::string CommonUtils::serializeFullArgumentForSubscriberOrderOffsets(
    const std::vector<std::map<INT32, UINT64>>& offsets) {
    std::string text;
    for (size_t i = 0; i < offsets.size(); ++i) {
        // The blanks around ";" read back fine: strtol skips the leading one
        // and stops at the trailing one.
        text += (i == 0 ? "" : " ; ") + joinPairs(offsets[i]);
    }
    return text;
}

}  // namespace zorvane::pubsub
