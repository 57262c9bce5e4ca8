// Weighted random choice of an index into a list, on a generator state that
// the caller owns (a publisher thread draws its message order from its own
// state, so that a given seed repeats the same run).
//
// Ownership: the state is borrowed and must outlive the sampler; the sampler
// only keeps the running sums of the weights.
// Threads: none of its own; use it on the thread that owns the state.
// sampleIndex() allocates nothing.
#pragma once

#include <vector>

#include "common/dataTypes.h"

namespace zorvane::pubsub {

class RandomIndexSampler {
  public:
    // Not usable: sampleIndex() returns -1.
    RandomIndexSampler() = default;

    // One weight per index. An empty list gives a sampler that is not
    // usable. Equal weights (all 0.0 included, after a notice) draw
    // uniformly. Throws PubSubException for a negative weight.
    RandomIndexSampler(UINT16* state_p, const std::vector<double>& weights);

    // An index from 0 to size - 1, each with the probability of its share
    // of the total weight; -1 when the sampler is not usable.
    INT32 sampleIndex();

    bool isUsable() const { return usable_m; }

  private:
    // The lowest index whose running sum is above r (0.0 <= r < 1.0).
    INT32 internalBinarySearch(double r) const;

    UINT16* borrowedRandomizationState_m = nullptr;
    std::vector<double> normalizedCumulativeSums_m;  // empty when uniform
    INT32 size_m = 0;
    bool usable_m = false;
    bool usingUniformDistribution_m = false;
};

}  // namespace zorvane::pubsub
