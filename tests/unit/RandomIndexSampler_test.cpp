#include "common/RandomIndexSampler.h"

#include <gtest/gtest.h>

#include <memory>
#include <vector>

#include "common/OS.h"
#include "tests/unit/LogCapture.h"
#include "tests/unit/ThrownText.h"

namespace zorvane::pubsub {
namespace {

constexpr int DRAWS = 200000;

struct State {
    std::unique_ptr<UINT16[]> state_p{OS::randomInitState(12345)};
};

// Share of the draws that fell on each index.
std::vector<double> shares(const RandomIndexSampler& sampler, size_t numIndices) {
    std::vector<double> counts(numIndices, 0.0);
    for (int draw = 0; draw < DRAWS; ++draw) {
        counts.at(static_cast<size_t>(sampler.sampleIndex())) += 1.0 / DRAWS;
    }
    return counts;
}

TEST(RandomIndexSampler, DrawsFollowTheWeightsAndEqualWeightsAreUniform) {
    State state;
    LogCapture capture;
    const std::vector<std::vector<double>> cases = {
        {1.0, 0.0, 3.0, 6.0, 0.5}, {2, 2, 2, 2}, {0, 0}};
    for (const std::vector<double>& weights : cases) {
        const RandomIndexSampler sampler(state.state_p.get(), weights);
        EXPECT_EQ(sampler.isUsingUniformDistribution(), weights[0] == weights[1]);
        const std::vector<double> got = shares(sampler, weights.size());
        double sum = 0.0;
        for (double weight : weights) {
            sum += weight;
        }
        for (size_t i = 0; i < weights.size(); ++i) {
            // A weight of 0 is never drawn, unless all are 0.
            EXPECT_NEAR(got[i], sum > 0 ? weights[i] / sum : 1.0 / weights.size(), 0.01) << i;
        }
    }
    EXPECT_EQ(capture.all().size(), 1u);  // the notice about all weights being 0.0
}

TEST(RandomIndexSampler, EmptyOrNegativeWeightsGiveNoSampler) {
    State state;
    EXPECT_EQ(RandomIndexSampler().sampleIndex(), -1);
    EXPECT_EQ(RandomIndexSampler(state.state_p.get(), {}).sampleIndex(), -1);
    const auto negative = [&] { RandomIndexSampler(state.state_p.get(), {1.0, -0.5}); };
    EXPECT_EQ(
        test::messageOf(negative),
        "Invalid list of weights passed to RandomIndexSampler. Cannot have negative weights.");
}

}  // namespace
}  // namespace zorvane::pubsub
