#include "common/RandomIndexSampler.h"

#include <gtest/gtest.h>

#include <memory>
#include <vector>

#include "common/OS.h"
#include "common/PubSubException.h"
#include "tests/unit/LogCapture.h"

namespace zorvane::pubsub {
namespace {

// Weighted draws are checked through the publisher's random order; here the
// edges of the weight lists.
TEST(RandomIndexSampler, ZeroWeightsAreSkippedOrDrawnUniformlyAndBadListsRefused) {
    LogCapture log;
    std::unique_ptr<UINT16[]> state(OS::randomInitState(7));
    RandomIndexSampler trailingZeros(state.get(), {0.0, 1.0, 2.0, 0.0, 0.0});
    RandomIndexSampler zeros(state.get(), {0.0, 0.0, 0.0, 0.0});
    std::vector<int> skipped(5), uniform(4);
    for (int i = 0; i < 8000; ++i) {
        ++skipped[static_cast<size_t>(trailingZeros.sampleIndex())];
        ++uniform[static_cast<size_t>(zeros.sampleIndex())];
    }
    EXPECT_EQ(skipped[0] + skipped[3] + skipped[4], 0);
    EXPECT_NEAR(skipped[2], 2 * skipped[1], 800);
    for (int count : uniform) {
        EXPECT_NEAR(count, 2000, 250);
    }
    EXPECT_TRUE(log.contains(
        "It is not recommended to use weights that are all 0.0 for RandomIndexSampler.\n It works, "
        "but this should normally be a sign that something was not initialized correctly."));
    EXPECT_EQ(RandomIndexSampler().sampleIndex(), -1);
    EXPECT_EQ(RandomIndexSampler(state.get(), {}).sampleIndex(), -1);
    EXPECT_THROW(RandomIndexSampler(state.get(), {1.0, -0.5}), PubSubException);
}

}  // namespace
}  // namespace zorvane::pubsub
