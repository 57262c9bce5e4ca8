#include "common/DisplayUtils.h"

#include <sstream>

#include "common/ClientProperties.h"
#include "common/CommonUtils.h"
#include "common/cliWords.h"

namespace zorvane::pubsub {

std::string DisplayUtils::clientNameDetails(const ClientProperties& props) {
    // Client ids start at 1, so client 1 is the example every run can show.
    constexpr INT32 firstClientId = 1;

    // With a certificate or a Kerberos ticket and no user name configured,
    // the broker takes the name from the credentials; the tool cannot know
    // it in advance.
    const std::string& scheme = props.getAuthenticationScheme();
    const bool routerNamesUser =
        props.getClientUsername().empty() && (scheme == AUTHENTICATION_SCHEME_CLIENT_CERTIFICATE ||
                                              scheme == AUTHENTICATION_SCHEME_GSS_KRB);

    std::ostringstream out;
    out << "Client naming used:\n";
    out << "\tlogging ID   = " << props.generateClientIdStr(firstClientId) << "\n";
    out << "\tusername     = "
        << (routerNamesUser ? std::string("router generated.")
                            : props.generateClientUsername(firstClientId))
        << "\n";
    out << "\tvpn          = " << props.getClientVpn() << "\n";
    // Without a prefix the session does not pass a client name at all and
    // the messaging library makes one up.
    out << "\tclient names = "
        << (props.getClientPrefix().empty() ? std::string("sdk generated.")
                                            : props.generateClientName(firstClientId))
        << "\n";
    return out.str();
}

std::string DisplayUtils::displayPoolStats(const std::string& title) {
    struct Line {
        const char* label;
        CommonUtils::PoolStat stat;
    };
    static const Line kLines[] = {
        {"\tTOTAL_MEMORY     : ", CommonUtils::POOL_STAT_TOTAL_MEMORY},
        {"\tALLOC_MEMORY     : ", CommonUtils::POOL_STAT_ALLOC_MEMORY},
        {"\tMSG_ALLOCS       : ", CommonUtils::POOL_STAT_MSG_ALLOCS},
        {"\tMSG_FREES        : ", CommonUtils::POOL_STAT_MSG_FREES},
        {"\tMSG_DUPS         : ", CommonUtils::POOL_STAT_MSG_DUPS},
        {"\tMSG_REALLOCS     : ", CommonUtils::POOL_STAT_MSG_REALLOCS},
        {"\tFREE_MSGS        : ", CommonUtils::POOL_STAT_FREE_MSGS},
        {"\tALLOC_MSGS       : ", CommonUtils::POOL_STAT_ALLOC_MSGS},
        {"\tFREE_CONTAINERS  : ", CommonUtils::POOL_STAT_FREE_CONTAINERS},
        {"\tALLOC_CONTAINERS : ", CommonUtils::POOL_STAT_ALLOC_CONTAINERS},
    };
    auto read = [](CommonUtils::PoolStat stat, int index) {
        UINT64 value = 0;
        CommonUtils::readPoolStat(stat, index, &value);
        return value;
    };
    std::ostringstream text;
    text << title << "\n";
    for (const Line& line : kLines) {
        text << line.label << read(line.stat, 0) << "\n";
    }
    // Five pools keep free blocks; the sixth count is of blocks larger than
    // the largest pool's, which are allocated and freed directly.
    for (int pool = 0; pool < 5; ++pool) {
        text << "\tPool " << pool
             << " : FREE_DATA_BLOCKS  : " << read(CommonUtils::POOL_STAT_FREE_DATA_BLOCKS, pool)
             << "\n";
    }
    for (int pool = 0; pool < 6; ++pool) {
        text << "\tPool " << pool
             << " : ALLOC_DATA_BLOCKS : " << read(CommonUtils::POOL_STAT_ALLOC_DATA_BLOCKS, pool)
             << "\n";
    }
    return text.str();
}

std::string DisplayUtils::allApiStats(const std::function<INT64(int sdkStatId)>& sdkStatSum) {
    std::ostringstream text;
    auto block = [&](const char* heading, int firstId, int count) {
        text << heading << "\n";
        for (int id = firstId; id < firstId + count; ++id) {
            text << "\t" << CommonUtils::readSdkStatName(id) << " : " << sdkStatSum(id) << "\n";
        }
    };
    block("ZCORE RX STATS:", 0, CommonUtils::SDK_NUM_RX_STATS);
    text << "\n";
    block("ZCORE TX STATS:", CommonUtils::SDK_TX_STAT_OFFSET, CommonUtils::SDK_NUM_TX_STATS);
    return text.str();
}

}  // namespace zorvane::pubsub
