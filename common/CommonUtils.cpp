#include "common/CommonUtils.h"

#include <sstream>

namespace zorvane::pubsub {

namespace {
CommonUtils::PoolStatReader poolStatReader_s = nullptr;
CommonUtils::SdkStatNameReader sdkStatNameReader_s = nullptr;
}  // namespace

void CommonUtils::setPoolStatReader(PoolStatReader reader) {
    poolStatReader_s = reader;
}

bool CommonUtils::readPoolStat(PoolStat stat, int poolIndex, UINT64* value_p) {
    return poolStatReader_s != nullptr && poolStatReader_s(stat, poolIndex, value_p);
}

void CommonUtils::setSdkStatNameReader(SdkStatNameReader reader) {
    sdkStatNameReader_s = reader;
}

std::string CommonUtils::readSdkStatName(int sdkStatId) {
    if (sdkStatNameReader_s != nullptr) {
        return sdkStatNameReader_s(sdkStatId);
    }
    return sdkStatId >= SDK_TX_STAT_OFFSET
               ? "TX_STAT_" + std::to_string(sdkStatId - SDK_TX_STAT_OFFSET)
               : "RX_STAT_" + std::to_string(sdkStatId);
}

void CommonUtils::tokenizeString(const std::string& str, std::vector<std::string>& tokens,
                                 const std::string& delimiter) {
    tokens.clear();
    if (delimiter.empty()) {
        tokens.push_back(str);
        return;
    }
    std::string::size_type start = 0;
    for (;;) {
        std::string::size_type found = str.find(delimiter, start);
        if (found == std::string::npos) {
            tokens.push_back(str.substr(start));
            return;
        }
        tokens.push_back(str.substr(start, found - start));
        start = found + delimiter.size();
    }
}

bool CommonUtils::eplKeyIsPresent(const std::vector<std::string>& list, const std::string& key) {
    for (const std::string& element : list) {
        if (element == key) {
            return true;
        }
    }
    return false;
}

std::string CommonUtils::eplGetValue(const std::vector<std::string>& list, const std::string& key) {
    std::size_t i = 0;
    while (i < list.size() && list[i] != key) {
        ++i;
    }
    while (i < list.size() && list[i] == key) {
        ++i;
    }
    return i < list.size() ? list[i] : std::string();
}

std::string CommonUtils::checkMsgPoolAllocsZero() {
    std::ostringstream out;
    UINT64 value = 0;
    if (!readPoolStat(POOL_STAT_ALLOC_MSGS, 0, &value)) {
        out << "zorClient_msg_getStat(ZORCLIENT_MSG_STATS_ALLOC_MSGS) did not work\n";
    } else if (value != 0) {
        out << "ALLOC_MSGS " << value << " not equal to zero\n";
    }
    if (!readPoolStat(POOL_STAT_ALLOC_CONTAINERS, 0, &value)) {
        out << "zorClient_msg_getStat(ZORCLIENT_MSG_STATS_ALLOC_CONTAINERS) did not work\n";
    } else if (value != 0) {
        out << "ALLOC_CONTAINERS " << value << " not equal to zero\n";
    }
    for (int index = 0; index <= 5; ++index) {
        if (!readPoolStat(POOL_STAT_ALLOC_DATA_BLOCKS, index, &value)) {
            out << "zorClient_msg_getStat(ZORCLIENT_MSG_STATS_ALLOC_DATA_BLOCKS," << index
                << ",...) did not work\n";
        } else if (value != 0) {
            out << "ALLOC_DATA_BLOCKS[" << index << "] " << value << " not equal to zero\n";
        }
    }
    return out.str();
}

}  // namespace zorvane::pubsub
