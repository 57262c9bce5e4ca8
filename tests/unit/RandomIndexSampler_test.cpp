#include "common/RandomIndexSampler.h"

#include <gtest/gtest.h>

#include <memory>
#include <vector>

#include "common/OS.h"
#include "common/PubSubException.h"
#include "tests/unit/LogCapture.h"

namespace zorvane::pubsub {
namespace {

std::vector<int> histogram(RandomIndexSampler& sampler, int size, int draws) {
    std::vector<int> counts(static_cast<size_t>(size), 0);
    for (int i = 0; i < draws; ++i) {
        const INT32 index = sampler.sampleIndex();
        EXPECT_GE(index, 0);
        EXPECT_LT(index, size);
        ++counts[static_cast<size_t>(index)];
    }
    return counts;
}

TEST(RandomIndexSampler, DrawsFollowTheWeightsAndSkipZeroWeights) {
    std::unique_ptr<UINT16[]> state(OS::randomInitState(12345));
    RandomIndexSampler sampler(state.get(), {1.0, 0.0, 3.0, 6.0, 0.0});
    const auto counts = histogram(sampler, 5, 20000);
    EXPECT_EQ(counts[1], 0);
    EXPECT_EQ(counts[4], 0) << "a trailing zero weight is never the bound";
    EXPECT_NEAR(counts[0], 2000, 300);
    EXPECT_NEAR(counts[2], 6000, 450);
    EXPECT_NEAR(counts[3], 12000, 450);
}

TEST(RandomIndexSampler, EqualOrZeroWeightsDrawUniformlyAndBadListsAreRefused) {
    LogCapture log;
    std::unique_ptr<UINT16[]> state(OS::randomInitState(7));
    RandomIndexSampler zeros(state.get(), {0.0, 0.0, 0.0, 0.0});
    EXPECT_TRUE(log.contains(
        "It is not recommended to use weights that are all 0.0 for RandomIndexSampler.\n It works, "
        "but this should normally be a sign that something was not initialized correctly."));
    for (int count : histogram(zeros, 4, 8000)) {
        EXPECT_NEAR(count, 2000, 250);
    }

    EXPECT_EQ(RandomIndexSampler().sampleIndex(), -1);
    EXPECT_EQ(RandomIndexSampler(state.get(), {}).sampleIndex(), -1);
    EXPECT_THROW(RandomIndexSampler(state.get(), {1.0, -0.5}), PubSubException);

    // The same seed draws the same sequence.
    std::unique_ptr<UINT16[]> a(OS::randomInitState(99)), b(OS::randomInitState(99));
    RandomIndexSampler first(a.get(), {1.0, 2.0, 3.0}), second(b.get(), {1.0, 2.0, 3.0});
    for (int i = 0; i < 100; ++i) {
        ASSERT_EQ(first.sampleIndex(), second.sampleIndex());
    }
}

}  // namespace
}  // namespace zorvane::pubsub
