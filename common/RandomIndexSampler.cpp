#include "common/RandomIndexSampler.h"

#include <algorithm>

#include "common/Log.h"
#include "common/OS.h"
#include "common/PubSubException.h"

namespace zorvane::pubsub {

RandomIndexSampler::RandomIndexSampler()
    : borrowedRandomizationState_mp(nullptr),
      normalizedCumulativeSums_m(),
      numIndices_m(0),
      usable_m(false),
      usingUniformDistribution_m(false) {}

RandomIndexSampler::RandomIndexSampler(UINT16* state_p, const std::vector<double>& weights)
    : borrowedRandomizationState_mp(state_p),
      normalizedCumulativeSums_m(),
      numIndices_m(static_cast<INT32>(weights.size())),
      usable_m(false),
      usingUniformDistribution_m(false) {
    if (weights.empty()) {
        return;
    }
    for (double weight : weights) {
        if (weight < 0.0) {
            throw PubSubException(
                "Invalid list of weights passed to RandomIndexSampler. Cannot have negative "
                "weights.");
        }
    }
    usable_m = true;
    // Equal weights need no search: a plain uniform draw is cheaper and
    // exact.
    if (std::all_of(weights.begin(), weights.end(),
                    [&weights](double weight) { return weight == weights.front(); })) {
        usingUniformDistribution_m = true;
        if (weights.front() == 0.0) {
            LOG_NOTICE(
                "It is not recommended to use weights that are all 0.0 for RandomIndexSampler.\n "
                "It works, but this should normally be a sign that something was not initialized "
                "correctly.");
        }
        return;
    }
    double sum = 0.0;
    for (double weight : weights) {
        sum += weight;
    }
    normalizedCumulativeSums_m.reserve(weights.size());
    double running = 0.0;
    for (double weight : weights) {
        running += weight / sum;
        normalizedCumulativeSums_m.push_back(running);
    }
}

INT32 RandomIndexSampler::sampleIndex() const {
    if (!usable_m) {
        return -1;
    }
    if (usingUniformDistribution_m) {
        return OS::randomGetNum(borrowedRandomizationState_mp, 0, numIndices_m);
    }
    return internalBinarySearch(OS::randomGetDouble(borrowedRandomizationState_mp));
}

INT32 RandomIndexSampler::internalBinarySearch(double draw) const {
    INT32 low = 0;
    INT32 high = numIndices_m - 1;
    while (low < high) {
        const INT32 middle = low + (high - low) / 2;
        if (normalizedCumulativeSums_m[static_cast<size_t>(middle)] > draw) {
            high = middle;
        } else {
            low = middle + 1;
        }
    }
    return low;
}

}  // namespace zorvane::pubsub
