// Colon probability weights and size sweeps.
#include "common/CommonUtils.h"

#include <gtest/gtest.h>

#include "tests/unit/CliTestSupport.h"

namespace zorvane::pubsub {
namespace {

using test::runCaptured;

TEST(CommonUtilsListsTest, NameTokensKeepColonsThatCarryNoWeight) {
    struct Case {
        const char* token;
        const char* name;
        double weight;
    };
    const Case cases[] = {
        {"a", "a", 2.0},            // no colon: the default weight
        {"a:95", "a", 95.0},        // a weight
        {"a:0.5", "a", 0.5},        // digits and dots only
        {"a:", "a", 0.0},           // empty weight converts to 0
        {"v:host", "v:host", 2.0},  // a letter after the colon: all of it is the name
        {"a:-5", "a:-5", 2.0},      // a minus is no digit either
        {"", "", 2.0},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.token);
        std::string name;
        double weight = -1;
        ASSERT_TRUE(CommonUtils::parseTokenStringColonDouble(c.token, name, weight, 2.0));
        EXPECT_EQ(name, c.name);
        EXPECT_EQ(weight, c.weight);
    }
    std::string name;
    double weight = 0;
    EXPECT_FALSE(CommonUtils::parseTokenStringColonDouble("a:1:2", name, weight, 1.0));
    EXPECT_FALSE(CommonUtils::doesThatStringContainAnyNonNumericalOrNonDotCharacters("12.5."));
    EXPECT_TRUE(CommonUtils::doesThatStringContainAnyNonNumericalOrNonDotCharacters("1e5"));
}

TEST(CommonUtilsListsTest, WeightedListsFillParallelListsOrFault) {
    std::vector<std::string> names{"stale"};
    std::vector<double> weights{9};
    EXPECT_TRUE(CommonUtils::processWeightedStringList({"a:95", "b", "#P2P/v:h/#c/Q"}, names,
                                                       weights, true));
    EXPECT_EQ(names, (std::vector<std::string>{"a", "b", "#P2P/v:h/#c/Q"}));
    EXPECT_EQ(weights, (std::vector<double>{95.0, 1.0, 1.0}));

    std::vector<int> sizes;
    EXPECT_TRUE(
        CommonUtils::processWeightedIntList({"10:0.78", "20x", "30:0"}, sizes, weights, true));
    EXPECT_EQ(sizes, (std::vector<int>{10, 20, 30}));
    EXPECT_EQ(weights, (std::vector<double>{0.78, 1.0, 0.0}));

    // Without strict, unusable tokens are skipped and reported by the result.
    EXPECT_FALSE(
        CommonUtils::processWeightedIntList({"1:2:3", "4:-1", "5"}, sizes, weights, false));
    EXPECT_EQ(sizes, std::vector<int>{5});
    EXPECT_FALSE(CommonUtils::processWeightedStringList({"a:1:2", "b"}, names, weights, false));
    EXPECT_EQ(names, std::vector<std::string>{"b"});

    auto strictInts = [&](std::vector<std::string> in) {
        return runCaptured([&] { CommonUtils::processWeightedIntList(in, sizes, weights, true); });
    };
    auto outcome = strictInts({"100:-2.5"});
    EXPECT_EQ(outcome.status, 255);
    EXPECT_EQ(outcome.err, "ERROR: Must use a positive value for the weights.  Found (-2.5)\n\n");
    outcome = strictInts({"1", "2:3:4"});
    EXPECT_EQ(outcome.err,
              "ERROR: Unable to parse correctly one of the values for a list of integers that "
              "involves probability weights. Got 2:3:4.\n\n");
    outcome =
        runCaptured([&] { CommonUtils::processWeightedStringList({"a::"}, names, weights, true); });
    EXPECT_EQ(outcome.status, 255);
    EXPECT_EQ(outcome.err,
              "ERROR: Unable to parse correctly one of the values for a list of strings that "
              "involves probability weights. Got a::.\n\n");
}

TEST(CommonUtilsListsTest, SweepsStepToTheEndAndRefuseEndlessOnes) {
    std::vector<int> sizes;
    std::vector<double> weights;
    CommonUtils::getAttachmentSizeListFromAttachmentSizeSweep("100,50,260", sizes, weights);
    EXPECT_EQ(sizes, (std::vector<int>{100, 150, 200, 250}));
    EXPECT_EQ(weights, (std::vector<double>{1.0, 1.0, 1.0, 1.0}));
    CommonUtils::getAttachmentSizeListFromAttachmentSizeSweep("5,1,4", sizes, weights);
    EXPECT_TRUE(sizes.empty() && weights.empty());
    // The running size may pass the largest int on its last step.
    CommonUtils::getSizeListFromSweep("2147483640,5,2147483647", sizes, "form", "-msxs");
    EXPECT_EQ(sizes, (std::vector<int>{2147483640, 2147483645}));

    const struct {
        const char* value;
        const char* err;
    } faults[] = {
        {"1,2", "ERROR: Must specify start,step,end in bytes for attachment size sweep\n\n"},
        {"1,0,5", "ERROR: The step of -msas must be above 0, as in start,step,end.  Found (0)\n\n"},
        {"9,-1,5",
         "ERROR: The step of -msas must be above 0, as in start,step,end.  Found (-1)\n\n"},
        {"0,1,20000000",
         "ERROR: The sweep of -msas would give more than 10000000 sizes.  Found "
         "(0,1,20000000)\n\n"},
    };
    for (const auto& fault : faults) {
        SCOPED_TRACE(fault.value);
        const auto outcome = runCaptured([&] {
            CommonUtils::getAttachmentSizeListFromAttachmentSizeSweep(fault.value, sizes, weights);
        });
        EXPECT_EQ(outcome.status, 255);
        EXPECT_EQ(outcome.err, fault.err);
    }
}

}  // namespace
}  // namespace zorvane::pubsub
