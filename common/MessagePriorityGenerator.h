// Random message priorities with given weights ("-pmpl=0,50,9,50"): each
// priority is drawn with the probability of its weight among all weights.
//
// Ownership and threads: a value, immutable after construction. It draws
// from the process-wide rand(), so draws of different threads interleave in
// one sequence; each draw is cheap and allocates nothing.
#pragma once

#include <vector>

namespace zorvane::pubsub {

class MessagePriorityGenerator {
  public:
    // Most entries the weights may add up to. Weights are meant as
    // percentages; a sum far beyond this is a mistyped option, not a wish
    // for gigabytes of table.
    static constexpr long MAX_TOTAL_WEIGHT = 1L << 20;

    // Pairs of priority and weight, flat. An odd count throws
    // PubSubException; a weight below 1 adds nothing.
    explicit MessagePriorityGenerator(const std::vector<int>& priorityWeightPairs);

    // A copy of *other_p; null throws PubSubException.
    explicit MessagePriorityGenerator(const MessagePriorityGenerator* other_p);

    MessagePriorityGenerator(const MessagePriorityGenerator&) = default;
    MessagePriorityGenerator& operator=(const MessagePriorityGenerator&) = default;

    // One priority. An empty table (no weight of 1 or more) throws
    // PubSubException.
    int getRandomPriority() const;

    // Each priority repeated by its weight, in the order given.
    const std::vector<int>& getMsgPrioritiesVector() const { return msgPrioritiesVector_m; }

  private:
    std::vector<int> msgPrioritiesVector_m;
};

}  // namespace zorvane::pubsub
