#include "common/CommonUtils.h"

#include <gtest/gtest.h>

#include <map>

#include "common/PubSubErrorResponseException.h"
#include "common/PubSubException.h"

using namespace zorvane::pubsub;

TEST(Tokenize, EmptyFieldsCount) {
    std::vector<std::string> tokens{"stale"};
    CommonUtils::tokenizeString("a,,b", tokens, ",");
    EXPECT_EQ(tokens, (std::vector<std::string>{"a", "", "b"}));
    CommonUtils::tokenizeString(",a,", tokens, ",");
    EXPECT_EQ(tokens, (std::vector<std::string>{"", "a", ""}));
    CommonUtils::tokenizeString("", tokens, ",");
    EXPECT_EQ(tokens, (std::vector<std::string>{""}));
    CommonUtils::tokenizeString("x::y:z", tokens, "::");
    EXPECT_EQ(tokens, (std::vector<std::string>{"x", "y:z"}));
}

TEST(ExtraProps, KeysAndValuesInTurn) {
    std::vector<std::string> list{"a", "1", "b", "2"};
    EXPECT_EQ(CommonUtils::eplGetValue(list, "b"), "2");
    EXPECT_EQ(CommonUtils::eplGetValue(list, "2"), "");
    EXPECT_EQ(CommonUtils::eplGetValue(list, "missing"), "");
    EXPECT_TRUE(CommonUtils::eplKeyIsPresent(list, "1"));
    EXPECT_FALSE(CommonUtils::eplKeyIsPresent(list, "c"));
    std::vector<std::string> repeated{"k", "k", "v"};
    EXPECT_EQ(CommonUtils::eplGetValue(repeated, "k"), "v");
}

namespace {

std::map<std::pair<int, int>, UINT64> fakeStats_s;
bool failContainers_s = false;

bool fakeReader(CommonUtils::PoolStat stat, int index, UINT64* value_p) {
    if (failContainers_s && stat == CommonUtils::POOL_STAT_ALLOC_CONTAINERS) {
        return false;
    }
    *value_p = fakeStats_s[{stat, index}];
    return true;
}

}  // namespace

TEST(PoolCheck, CleanPoolsGiveNothingAndEachLeakOrFailureALine) {
    CommonUtils::setPoolStatReader(&fakeReader);
    fakeStats_s.clear();
    failContainers_s = false;
    EXPECT_EQ(CommonUtils::checkMsgPoolAllocsZero(), "");

    fakeStats_s[{CommonUtils::POOL_STAT_ALLOC_MSGS, 0}] = 3;
    fakeStats_s[{CommonUtils::POOL_STAT_ALLOC_DATA_BLOCKS, 5}] = 7;
    failContainers_s = true;
    EXPECT_EQ(CommonUtils::checkMsgPoolAllocsZero(),
              "ALLOC_MSGS 3 not equal to zero\n"
              "zorClient_msg_getStat(ZORCLIENT_MSG_STATS_ALLOC_CONTAINERS) did not work\n"
              "ALLOC_DATA_BLOCKS[5] 7 not equal to zero\n");
    CommonUtils::setPoolStatReader(nullptr);
}

TEST(Exceptions, CauseIsChainedAndErrorRecordFormatsItsText) {
    PubSubException inner("inner trouble");
    PubSubException outer("outer context", inner);
    EXPECT_STREQ(outer.what(), "outer context caused by: inner trouble");
    EXPECT_STREQ(PubSubException().what(), "");

    std::invalid_argument standard("bad record");
    EXPECT_STREQ(PubSubException("decode", standard).getMessage(), "decode caused by: bad record");

    PubSubErrorResponseException record("ZORCLIENT_SUBCODE_TIMEOUT", 503, "Service Unavailable",
                                        -1);
    EXPECT_STREQ(record.what(), "PubSubErrorResponseException: 503: Service Unavailable");
    EXPECT_EQ(record.getSubCode(), "ZORCLIENT_SUBCODE_TIMEOUT");
}
