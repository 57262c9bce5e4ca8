// Names of return codes, subcodes, session events and statistics: every known value has its
// own non-empty name, and any other value gets a clear "unknown" text, never null.
#include <gtest/gtest.h>

#include <set>
#include <string>
#include <utility>

#include "zorClient.h"

namespace {

// Calls toString for every value in [from, to]; returns the names that are not unknownText,
// checking on the way that none is null or empty and that no two known values share a name.
template <typename Enum>
std::set<std::string> knownNames(const char* (*toString)(Enum), int from, int to,
                                 const std::string& unknownText, std::set<int>* values_p) {
    std::set<std::string> names;
    for (int value = from; value <= to; ++value) {
        const char* name_p = toString(static_cast<Enum>(value));
        EXPECT_NE(nullptr, name_p) << value;
        if (name_p == nullptr || name_p == unknownText) {
            continue;
        }
        EXPECT_NE('\0', name_p[0]) << value;
        EXPECT_TRUE(names.insert(name_p).second) << "name repeated: " << name_p;
        values_p->insert(value);
    }
    return names;
}

TEST(Names, ReturnCodesAreTheirConstantNames) {
    std::set<int> values;
    knownNames(zorClient_returnCodeToString, -50, 50, "Unknown return code", &values);
    EXPECT_EQ((std::set<int>{-1, 0, 1, 2, 3, 4, 5, 6, 7, 8}), values);
    EXPECT_STREQ("ZORCLIENT_FAIL", zorClient_returnCodeToString(ZORCLIENT_FAIL));
    EXPECT_STREQ("ZORCLIENT_ROLLBACK", zorClient_returnCodeToString(ZORCLIENT_ROLLBACK));
}

TEST(Names, SubcodesAreDistinctConstantNamesWithTheFixedValuesInPlace) {
    std::set<int> values;
    std::set<std::string> names =
        knownNames(zorClient_subCodeToString, -10, 1000, "Unknown subcode", &values);
    for (const std::string& name : names) {
        EXPECT_EQ(0u, name.rfind("ZORCLIENT_SUBCODE_", 0)) << name;
    }
    // The values that outside parties rely on, and the texts compared as text.
    const std::pair<int, const char*> fixed[] = {
        {51, "ZORCLIENT_SUBCODE_CACHE_NO_DATA"},
        {52, "ZORCLIENT_SUBCODE_CACHE_SUSPECT_DATA"},
        {55, "ZORCLIENT_SUBCODE_CACHE_TIMEOUT"},
        {94, "ZORCLIENT_SUBCODE_UNKNOWN_FLOW_NAME"},
        {95, "ZORCLIENT_SUBCODE_REPLICATION_IS_STANDBY"},
        {107, "ZORCLIENT_SUBCODE_CACHE_REQUEST_CANCELLED"},
        {ZORCLIENT_SUBCODE_COMMIT_STATUS_UNKNOWN, "ZORCLIENT_SUBCODE_COMMIT_STATUS_UNKNOWN"},
        {ZORCLIENT_SUBCODE_TIMEOUT, "ZORCLIENT_SUBCODE_TIMEOUT"},
        {ZORCLIENT_SUBCODE_NOT_SUPPORTED, "ZORCLIENT_SUBCODE_NOT_SUPPORTED"},
    };
    for (const auto& [value, name] : fixed) {
        EXPECT_STREQ(name, zorClient_subCodeToString(static_cast<zorClient_subCode_t>(value)));
    }
    // The library's own codes run from 0 without gaps and stay clear of the fixed ones.
    for (int value = 0; value <= ZORCLIENT_SUBCODE_CACHE_ERROR_RESPONSE; ++value) {
        EXPECT_EQ(1u, values.count(value)) << value;
    }
    EXPECT_EQ(static_cast<std::size_t>(ZORCLIENT_SUBCODE_CACHE_ERROR_RESPONSE + 1 + 6),
              values.size());
}

TEST(Names, EverySessionEventHasItsOwnName) {
    std::set<int> values;
    knownNames(zorClient_session_eventToString, -5, 40, "Unknown session event", &values);
    EXPECT_EQ(21u, values.size());
    EXPECT_EQ(0, *values.begin());
    EXPECT_EQ(ZORCLIENT_SESSION_EVENT_REPUBLISH_UNACKED_MESSAGES, *values.rbegin());
    EXPECT_STREQ("SUBSCRIPTION_OK",
                 zorClient_session_eventToString(ZORCLIENT_SESSION_EVENT_SUBSCRIPTION_OK));
}

TEST(Names, EveryStatisticIdHasItsOwnNameAndNoOtherIdHasOne) {
    std::set<int> rxValues;
    std::set<std::string> rxNames =
        knownNames(zorClient_rxStatToString, -5, 100, "Unknown receive statistic", &rxValues);
    EXPECT_EQ(static_cast<std::size_t>(ZORCLIENT_STATS_RX_NUM_STATS), rxValues.size());
    EXPECT_EQ(ZORCLIENT_STATS_RX_NUM_STATS - 1, *rxValues.rbegin());
    std::set<int> txValues;
    std::set<std::string> txNames =
        knownNames(zorClient_txStatToString, -5, 100, "Unknown transmit statistic", &txValues);
    EXPECT_EQ(static_cast<std::size_t>(ZORCLIENT_STATS_TX_NUM_STATS), txValues.size());
    EXPECT_EQ(ZORCLIENT_STATS_TX_NUM_STATS - 1, *txValues.rbegin());
    for (const std::string& name : txNames) {
        EXPECT_EQ(0u, rxNames.count(name)) << name;
    }
    EXPECT_STREQ("RX_SETTLE_REJECTED",
                 zorClient_rxStatToString(ZORCLIENT_STATS_RX_SETTLE_REJECTED));
    EXPECT_STREQ("TX_TOTAL_DATA_MSGS", zorClient_txStatToString(ZORCLIENT_STATS_TX_MSGS));
}

}  // namespace
