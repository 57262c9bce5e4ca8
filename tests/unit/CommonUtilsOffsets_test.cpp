// Order offsets of the resume arguments: parsing, and serialising then
// parsing back.
#include <gtest/gtest.h>

#include "common/CommonUtils.h"

namespace zorvane::pubsub {
namespace {

using PubMap = std::map<INT32, INT32>;
using SubList = std::vector<std::map<INT32, UINT64>>;

TEST(CommonUtilsOffsetsTest, PairListsParseOrFailAsAWhole) {
    bool error = true;
    EXPECT_EQ(CommonUtils::parseFullArgumentForPublisherOrderOffsets("1@10, \t,3@11,1@12", error),
              (PubMap{{1, 12}, {3, 11}}));
    EXPECT_FALSE(error);
    EXPECT_TRUE(CommonUtils::parseFullArgumentForPublisherOrderOffsets("", error).empty());
    EXPECT_FALSE(error);
    for (const char* bad : {"3", "1@10,2", "1@2@3", "1@10,,x"}) {
        SCOPED_TRACE(bad);
        EXPECT_TRUE(CommonUtils::parseFullArgumentForPublisherOrderOffsets(bad, error).empty());
        EXPECT_TRUE(error);
    }
    INT32 key = 0;
    UINT64 value = 0;
    EXPECT_TRUE(CommonUtils::parseTokenIntAtInt(" 7@ 8x", key, value));
    EXPECT_EQ(key, 7);
    EXPECT_EQ(value, 8u);

    EXPECT_EQ(CommonUtils::parseFullArgumentForSubscriberOrderOffsets("1@11,2@10;1@10"),
              (SubList{{{1, 11}, {2, 10}}, {{1, 10}}}));
    // A trailing ";" makes one more, empty, group; a bad group empties all.
    EXPECT_EQ(CommonUtils::parseFullArgumentForSubscriberOrderOffsets("1@11;").size(), 2u);
    EXPECT_TRUE(CommonUtils::parseFullArgumentForSubscriberOrderOffsets("1@11;2").empty());
}

TEST(CommonUtilsOffsetsTest, SerialisedOffsetsReadBackToTheSameMaps) {
    const PubMap pub = {{3, 11}, {1, 10}, {2, 0}};
    const std::string pubText = CommonUtils::serializeFullArgumentForPublisherOrderOffsets(pub);
    EXPECT_EQ(pubText, "1@10,2@0,3@11");
    bool error = true;
    EXPECT_EQ(CommonUtils::parseFullArgumentForPublisherOrderOffsets(pubText, error), pub);
    EXPECT_FALSE(error);

    const std::map<INT32, UINT64> acked = {{5, 4000000000ULL}, {2, 7}};
    const std::string ackedText =
        CommonUtils::serializeFullArgumentForLastAckedMsgIdAndPublisherOrderOffsets(acked);
    EXPECT_EQ(ackedText, "2@7,5@4000000000");
    const auto ackedBack =
        CommonUtils::parseTokenListCommaIntAtIntToMapIntInt<INT32, UINT64>(ackedText, error);
    EXPECT_EQ(ackedBack, acked);

    const SubList sub = {{{1, 11}, {2, 10}}, {}, {{7, 1ULL << 40}}};
    const std::string subText = CommonUtils::serializeFullArgumentForSubscriberOrderOffsets(sub);
    EXPECT_EQ(subText, "1@11,2@10 ;  ; 7@1099511627776");
    EXPECT_EQ(CommonUtils::parseFullArgumentForSubscriberOrderOffsets(subText), sub);
}

}  // namespace
}  // namespace zorvane::pubsub
