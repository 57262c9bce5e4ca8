// Draws indices into a list at random, each with the probability of its
// weight, for publishing messages in random order ("-rmo"). Weights are
// relative; they need not add up to anything.
//
// Ownership and threads: the generator state is borrowed from the thread
// that samples (OS::randomInitState) and must outlive the sampler; a sampler
// belongs to that one thread. sampleIndex allocates nothing and does not
// block.
#pragma once

#include <vector>

#include "common/dataTypes.h"

namespace zorvane::pubsub {

class RandomIndexSampler {
  public:
    // A sampler that is not usable: sampleIndex gives -1.
    RandomIndexSampler();

    // An empty list gives a sampler that is not usable. A negative weight
    // throws PubSubException. Equal weights (all 0.0 included, with a
    // notice) draw uniformly.
    RandomIndexSampler(UINT16* state_p, const std::vector<double>& weights);

    // An index from 0 below the number of weights, or -1 when not usable.
    INT32 sampleIndex() const;

    bool isUsable() const { return usable_m; }
    bool isUsingUniformDistribution() const { return usingUniformDistribution_m; }

  private:
    // Lowest index whose running sum is above draw; the last index when
    // rounding left every sum at or below it.
    INT32 internalBinarySearch(double draw) const;

    UINT16* borrowedRandomizationState_mp;  // not owned
    std::vector<double> normalizedCumulativeSums_m;
    INT32 numIndices_m;
    bool usable_m;
    bool usingUniformDistribution_m;
};

}  // namespace zorvane::pubsub
