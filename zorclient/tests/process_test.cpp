// Start and stop of the library, its version, and the message pool statistics.
#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <vector>

#include "zorClient.h"
#include "zorClientMsg.h"

namespace {

const zorClient_errorInfo& lastError() {
    return *zorClient_getLastErrorInfo();
}

// Every test leaves the library stopped, so the next one starts from scratch.
class InitializeTest : public ::testing::Test {
  protected:
    void TearDown() override { zorClient_cleanup(); }
};

TEST(Version, FieldsAreFilledBeforeInitialize) {
    zorClient_version_info_t info{};
    ASSERT_EQ(ZORCLIENT_OK, zorClient_version_get(&info));
    ASSERT_NE(nullptr, info.version_p);
    ASSERT_NE(nullptr, info.dateTime_p);
    ASSERT_NE(nullptr, info.variant_p);
    EXPECT_NE('\0', info.version_p[0]);
    EXPECT_NE('\0', info.dateTime_p[0]);
    EXPECT_NE('\0', info.variant_p[0]);
    EXPECT_EQ(ZORCLIENT_FAIL, zorClient_version_get(nullptr));
    EXPECT_EQ(ZORCLIENT_SUBCODE_PARAM_NULL_PTR, lastError().subCode);
}

TEST_F(InitializeTest, ASecondCallIsHarmlessAndTheGlobalKeysAreTaken) {
    ASSERT_EQ(ZORCLIENT_OK, zorClient_initialize(ZORCLIENT_LOG_ERROR, nullptr));
    EXPECT_EQ(ZORCLIENT_LOG_ERROR, _zorClient_log_appFilterLevel_g);
    // A second call changes nothing, whatever it passes.
    const char* bad[] = {"GLOBAL_DBQUANTA_SIZE_0", "junk", nullptr, nullptr};
    EXPECT_EQ(ZORCLIENT_OK, zorClient_initialize(ZORCLIENT_LOG_DEBUG, bad));
    EXPECT_EQ(ZORCLIENT_LOG_ERROR, _zorClient_log_appFilterLevel_g);
    // After a cleanup the library starts again, here with the array an application builds: five
    // rising quanta, library paths, broker keys and keys of other objects that a shared
    // extra-properties list brings along; closed by two nulls.
    ASSERT_EQ(ZORCLIENT_OK, zorClient_cleanup());
    const char* props[] = {"GLOBAL_DBQUANTA_SIZE_0",
                           "100",
                           "GLOBAL_DBQUANTA_SIZE_1",
                           "400",
                           "GLOBAL_DBQUANTA_SIZE_2",
                           "1600",
                           "GLOBAL_DBQUANTA_SIZE_3",
                           "6400",
                           "GLOBAL_DBQUANTA_SIZE_4",
                           "25600",
                           "GLOBAL_GSS_KRB_LIB",
                           "/opt/krb/libgssapi.so",
                           "GLOBAL_SSL_LIB",
                           "libssl.so.3",
                           "GLOBAL_CRYPTO_LIB",
                           "libcrypto.so.3",
                           "EMBEDDED_CACHE_DEPTH",
                           "20",
                           "SESSION_MAX_FLOWS",
                           "not a number",
                           "ZORVANE_VEXLOAD_MTR_CATCHUP_NS",
                           "5",
                           nullptr,
                           nullptr};
    EXPECT_EQ(ZORCLIENT_OK, zorClient_initialize(ZORCLIENT_LOG_INFO, props));
    EXPECT_EQ(ZORCLIENT_LOG_INFO, _zorClient_log_appFilterLevel_g);
}

TEST_F(InitializeTest, BadPropertiesFailNamingTheKeyAndChangeNothing) {
    ASSERT_EQ(ZORCLIENT_OK,
              zorClient_log_setFilterLevel(ZORCLIENT_LOG_CATEGORY_ALL, ZORCLIENT_LOG_NOTICE));
    const std::vector<std::string> badValues = {"0",    "-4096", "abc",    "12x",       " 512",
                                                "+512", "",      "4096.5", "2147483648"};
    for (int index = 0; index < ZORCLIENT_MSG_NUM_DBQUANTA; ++index) {
        const std::string key = "GLOBAL_DBQUANTA_SIZE_" + std::to_string(index);
        for (const std::string& value : badValues) {
            const char* props[] = {"GLOBAL_SSL_LIB", "libssl.so", key.c_str(),
                                   value.c_str(),    nullptr,     nullptr};
            ASSERT_EQ(ZORCLIENT_FAIL, zorClient_initialize(ZORCLIENT_LOG_DEBUG, props))
                << key << "=" << value;
            EXPECT_EQ(ZORCLIENT_SUBCODE_PARAM_OUT_OF_RANGE, lastError().subCode);
            EXPECT_NE(nullptr, std::strstr(lastError().errorStr, key.c_str()))
                << lastError().errorStr;
            EXPECT_NE(nullptr, std::strstr(lastError().errorStr, ("\"" + value + "\"").c_str()))
                << lastError().errorStr;
        }
    }
    // Quanta that do not rise, a key without a value and an unknown level are refused too.
    const char* flat[] = {
        "GLOBAL_DBQUANTA_SIZE_0", "100", "GLOBAL_DBQUANTA_SIZE_1", "100", nullptr, nullptr};
    ASSERT_EQ(ZORCLIENT_FAIL, zorClient_initialize(ZORCLIENT_LOG_DEBUG, flat));
    EXPECT_EQ(ZORCLIENT_SUBCODE_PARAM_CONFLICT, lastError().subCode);
    EXPECT_NE(nullptr, std::strstr(lastError().errorStr, "GLOBAL_DBQUANTA_SIZE_1"));
    const char* noValue[] = {"GLOBAL_SSL_LIB", nullptr, nullptr};
    ASSERT_EQ(ZORCLIENT_FAIL, zorClient_initialize(ZORCLIENT_LOG_DEBUG, noValue));
    EXPECT_EQ(ZORCLIENT_SUBCODE_PARAM_NULL_PTR, lastError().subCode);
    EXPECT_NE(nullptr, std::strstr(lastError().errorStr, "GLOBAL_SSL_LIB"));
    EXPECT_EQ(ZORCLIENT_FAIL, zorClient_initialize(static_cast<zorClient_log_level_t>(8), nullptr));
    EXPECT_EQ(ZORCLIENT_SUBCODE_PARAM_OUT_OF_RANGE, lastError().subCode);
    // The failures left the library stopped and the level alone.
    EXPECT_EQ(ZORCLIENT_LOG_NOTICE, _zorClient_log_appFilterLevel_g);
    const char* good[] = {"GLOBAL_DBQUANTA_SIZE_0", "512", nullptr, nullptr};
    EXPECT_EQ(ZORCLIENT_OK, zorClient_initialize(ZORCLIENT_LOG_DEBUG, good));
    EXPECT_EQ(ZORCLIENT_LOG_DEBUG, _zorClient_log_appFilterLevel_g);
}

TEST(MsgPoolStats, EveryValidStatisticReadsZeroWhileNoMessageExists) {
    for (int stat = 0; stat < ZORCLIENT_MSG_STATS_NUM_STATS; ++stat) {
        int pools = stat == ZORCLIENT_MSG_STATS_FREE_DATA_BLOCKS ? ZORCLIENT_MSG_NUM_DBQUANTA
                    : stat == ZORCLIENT_MSG_STATS_ALLOC_DATA_BLOCKS
                        ? ZORCLIENT_MSG_NUM_DATA_BLOCK_POOLS
                        : 1;
        for (int pool = 0; pool < pools; ++pool) {
            zorClient_uint64_t value = 99;
            ASSERT_EQ(ZORCLIENT_OK,
                      zorClient_msg_getStat(static_cast<zorClient_msg_stats_t>(stat),
                                            static_cast<zorClient_uint32_t>(pool), &value))
                << stat << "/" << pool;
            EXPECT_EQ(0u, value) << stat << "/" << pool;
        }
    }
}

TEST(MsgPoolStats, InvalidStatisticOrPoolIndexFailsWithAParameterSubcode) {
    const std::pair<int, zorClient_uint32_t> invalid[] = {
        {ZORCLIENT_MSG_STATS_ALLOC_MSGS, 1},
        {ZORCLIENT_MSG_STATS_FREE_DATA_BLOCKS, 5},
        {ZORCLIENT_MSG_STATS_ALLOC_DATA_BLOCKS, 6},
        {ZORCLIENT_MSG_STATS_NUM_STATS, 0},
        {-1, 0},
        {ZORCLIENT_MSG_STATS_TOTAL_MEMORY, 0xFFFFFFFFu}};
    for (const auto& [stat, pool] : invalid) {
        zorClient_uint64_t value = 99;
        EXPECT_EQ(ZORCLIENT_FAIL,
                  zorClient_msg_getStat(static_cast<zorClient_msg_stats_t>(stat), pool, &value))
            << stat << "/" << pool;
        EXPECT_EQ(ZORCLIENT_SUBCODE_PARAM_OUT_OF_RANGE, lastError().subCode);
        EXPECT_EQ(99u, value);
    }
    EXPECT_EQ(ZORCLIENT_FAIL, zorClient_msg_getStat(ZORCLIENT_MSG_STATS_ALLOC_MSGS, 0, nullptr));
    EXPECT_EQ(ZORCLIENT_SUBCODE_PARAM_NULL_PTR, lastError().subCode);
}

}  // namespace
