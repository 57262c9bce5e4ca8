#include "common/RandomIndexSampler.h"

#include <algorithm>

#include "common/Log.h"
#include "common/OS.h"
#include "common/PubSubException.h"

namespace zorvane::pubsub {

RandomIndexSampler::RandomIndexSampler(UINT16* state_p, const std::vector<double>& weights)
    : borrowedRandomizationState_m(state_p), size_m(static_cast<INT32>(weights.size())) {
    if (weights.empty()) {
        return;
    }
    if (std::any_of(weights.begin(), weights.end(), [](double w) { return w < 0.0; })) {
        throw PubSubException(
            "Invalid list of weights passed to RandomIndexSampler. Cannot have negative weights.");
    }
    usable_m = true;
    if (std::all_of(weights.begin(), weights.end(), [&](double w) { return w == weights[0]; })) {
        // Equal weights need no search, and all-zero weights have no
        // shares to divide by: both draw uniformly.
        usingUniformDistribution_m = true;
        if (weights[0] == 0.0) {
            LOG_NOTICE(
                "It is not recommended to use weights that are all 0.0 for RandomIndexSampler.\n "
                "It works, but this should normally be a sign that something was not initialized "
                "correctly.");
        }
        return;
    }
    double total = 0.0;
    for (double w : weights) {
        total += w;
    }
    normalizedCumulativeSums_m.reserve(weights.size());
    double running = 0.0;
    for (double w : weights) {
        running += w;
        normalizedCumulativeSums_m.push_back(running / total);
    }
    // Rounding may leave the last sum a hair below 1.0; pin it (and the sums
    // of zero weights behind it, which equal it) to 1.0, so that every draw
    // below 1.0 lands on an index that has a weight.
    const double last = normalizedCumulativeSums_m.back();
    for (double& sum : normalizedCumulativeSums_m) {
        if (sum == last) {
            sum = 1.0;
        }
    }
}

INT32 RandomIndexSampler::sampleIndex() {
    if (!usable_m) {
        return -1;
    }
    if (usingUniformDistribution_m) {
        return OS::randomGetNum(borrowedRandomizationState_m, 0, size_m);
    }
    return internalBinarySearch(OS::randomGetDouble(borrowedRandomizationState_m));
}

INT32 RandomIndexSampler::internalBinarySearch(double r) const {
    // upper_bound finds the first sum strictly above r, which skips entries
    // of weight 0 (their sum equals the one before them).
    auto found =
        std::upper_bound(normalizedCumulativeSums_m.begin(), normalizedCumulativeSums_m.end(), r);
    if (found == normalizedCumulativeSums_m.end()) {
        return size_m - 1;
    }
    return static_cast<INT32>(found - normalizedCumulativeSums_m.begin());
}

}  // namespace zorvane::pubsub
