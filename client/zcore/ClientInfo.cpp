#include "client/zcore/ClientInfo.h"

#include <string.h>
#include <strings.h>

#include <cstdio>
#include <cstdlib>
#include <iostream>
#include <string>
#include <vector>

#include "client/AbstractClient.h"
#include "common/CliProperties.h"
#include "common/CommonUtils.h"
#include "common/Log.h"
#include "zorClient.h"
#include "zorClientMsg.h"

namespace zorvane::pubsub {

namespace {

static_assert(sizeof(zorClient_log_level_t) == sizeof(int),
              "the tool's log guard reads the library's filter level as an int");

bool readLibraryPoolStat(CommonUtils::PoolStat stat, int poolIndex, UINT64* value_p) {
    static const zorClient_msg_stats_t kLibraryStat[] = {
        ZORCLIENT_MSG_STATS_TOTAL_MEMORY,     ZORCLIENT_MSG_STATS_ALLOC_MEMORY,
        ZORCLIENT_MSG_STATS_MSG_ALLOCS,       ZORCLIENT_MSG_STATS_MSG_FREES,
        ZORCLIENT_MSG_STATS_MSG_DUPS,         ZORCLIENT_MSG_STATS_MSG_REALLOCS,
        ZORCLIENT_MSG_STATS_FREE_MSGS,        ZORCLIENT_MSG_STATS_ALLOC_MSGS,
        ZORCLIENT_MSG_STATS_FREE_CONTAINERS,  ZORCLIENT_MSG_STATS_ALLOC_CONTAINERS,
        ZORCLIENT_MSG_STATS_FREE_DATA_BLOCKS, ZORCLIENT_MSG_STATS_ALLOC_DATA_BLOCKS,
    };
    zorClient_stats_t value = 0;
    if (zorClient_msg_getStat(kLibraryStat[stat], poolIndex, &value) != ZORCLIENT_OK) {
        return false;
    }
    *value_p = static_cast<UINT64>(value);
    return true;
}

static_assert(AbstractClient::TX_STAT_OFFSET == CommonUtils::SDK_TX_STAT_OFFSET &&
                  ZORCLIENT_STATS_RX_NUM_STATS == CommonUtils::SDK_NUM_RX_STATS &&
                  ZORCLIENT_STATS_TX_NUM_STATS == CommonUtils::SDK_NUM_TX_STATS,
              "the report names the library's statistics by these ids");

const char* libraryStatName(int sdkStatId) {
    if (sdkStatId >= CommonUtils::SDK_TX_STAT_OFFSET) {
        return zorClient_txStatToString(
            static_cast<zorClient_stats_tx>(sdkStatId - CommonUtils::SDK_TX_STAT_OFFSET));
    }
    return zorClient_rxStatToString(static_cast<zorClient_stats_rx>(sdkStatId));
}

// The global property array owns heap copies of its strings until the
// library has taken its own.
class PropertyArray {
  public:
    ~PropertyArray() {
        for (char* entry_p : entries_m) {
            std::free(entry_p);
        }
    }
    void add(const std::string& key, const std::string& value) {
        entries_m.push_back(strdup(key.c_str()));
        entries_m.push_back(strdup(value.c_str()));
    }
    // The global array is closed by two nulls.
    char** closeWithTwoNulls() {
        entries_m.push_back(nullptr);
        entries_m.push_back(nullptr);
        return entries_m.data();
    }

  private:
    std::vector<char*> entries_m;
};

struct LogWord {
    const char* word;
    zorClient_log_level_t level;
};

const LogWord kLogWords[] = {
    {"critical", ZORCLIENT_LOG_CRITICAL}, {"error", ZORCLIENT_LOG_ERROR},
    {"warning", ZORCLIENT_LOG_WARNING},   {"notice", ZORCLIENT_LOG_NOTICE},
    {"info", ZORCLIENT_LOG_INFO},         {"debug", ZORCLIENT_LOG_DEBUG},
};

}  // namespace

void ClientInfo::attachLibrary() {
    log::attach(reinterpret_cast<const int*>(&_zorClient_log_appFilterLevel_g),
                &_zorClient_log_output_detail);
    CommonUtils::setPoolStatReader(&readLibraryPoolStat);
    CommonUtils::setSdkStatNameReader(&libraryStatName);
}

void ClientInfo::clientApiSpecificInit(CliProperties& cliProperties) {
    PropertyArray globalProps;

    INT32 quantum = cliProperties.getIntegerProperty(CliProperties::GLOBAL_DBQUANTA0_SIZE);
    if (quantum >= 1) {
        // Computed in 32-bit integers, like the option value itself.
        INT32 size = quantum;
        for (int pool = 0; pool < 5; ++pool) {
            globalProps.add("GLOBAL_DBQUANTA_SIZE_" + std::to_string(pool), std::to_string(size));
            size = static_cast<INT32>(static_cast<UINT32>(size) * 4U);
        }
    }
    struct LibraryPath {
        const char* key;
        const char* banner;
    };
    static const LibraryPath kLibraries[] = {
        {CliProperties::GLOBAL_GSS_KRB_LIB, "GSS Kerberos Library initialized to "},
        {CliProperties::GLOBAL_SSL_LIB, "SSL Library initialized to "},
        {CliProperties::GLOBAL_CRYPTO_LIB, "Crypto Library initialized to "},
    };
    for (const LibraryPath& library : kLibraries) {
        std::string path = cliProperties.getStringProperty(library.key);
        if (!path.empty()) {
            globalProps.add(library.key, path);
            std::cout << library.banner << path << std::endl;
        }
    }
    // A failed start is not looked at here: every later library call fails
    // on its own and says why.
    zorClient_initialize(ZORCLIENT_LOG_NOTICE, globalProps.closeWithTwoNulls());

    std::string logFile = cliProperties.getStringProperty(CliProperties::LOG_FILE);
    if (!logFile.empty()) {
        zorClient_log_setFile(logFile.c_str());
    }

    std::string logLevel = cliProperties.getStringProperty(CliProperties::LOG_LEVEL);
    if (!logLevel.empty()) {
        for (const LogWord& entry : kLogWords) {
            if (strcasecmp(entry.word, logLevel.c_str()) == 0) {
                zorClient_log_setFilterLevel(ZORCLIENT_LOG_CATEGORY_ALL, entry.level);
                std::cout << "Logging initialized to " << logLevel << " ("
                          << static_cast<int>(entry.level) << ")" << std::endl;
                return;
            }
        }
        std::cerr << "ERROR: Unrecognized parameter for -log: " << logLevel << std::endl;
        std::cerr << "Valid values are (debug, info, warning, notice, error, critical)"
                  << std::endl;
        std::exit(1);
    }
}

void ClientInfo::clientApiSpecificCleanup() {
    std::string leaks = CommonUtils::checkMsgPoolAllocsZero();
    if (!leaks.empty()) {
        std::cerr << std::endl << "Memory error detected." << std::endl << leaks << std::endl;
    }
    zorClient_cleanup();
}

}  // namespace zorvane::pubsub
