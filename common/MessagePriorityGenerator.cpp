#include "common/MessagePriorityGenerator.h"

#include <cstdlib>
#include <string>

#include "common/PubSubException.h"

namespace zorvane::pubsub {

namespace {

const std::vector<int>& nonNull(const MessagePriorityGenerator* other_p) {
    if (other_p == nullptr) {
        throw PubSubException("Cannot copy NULL MessagePriorityGenerator.");
    }
    return other_p->getMsgPrioritiesVector();
}

}  // namespace

MessagePriorityGenerator::MessagePriorityGenerator(const std::vector<int>& priorityWeightPairs)
    : msgPrioritiesVector_m() {
    if (priorityWeightPairs.size() % 2 != 0) {
        throw PubSubException("Message priority list must be dividable by two.");
    }
    // A table with one entry per unit of weight makes a draw one index.
    long total = 0;
    for (size_t index = 1; index < priorityWeightPairs.size(); index += 2) {
        total += priorityWeightPairs[index] > 0 ? priorityWeightPairs[index] : 0;
        if (total > MAX_TOTAL_WEIGHT) {
            throw PubSubException("Message priority weights add up to more than " +
                                  std::to_string(MAX_TOTAL_WEIGHT) +
                                  "; use smaller relative weights, such as percentages.");
        }
    }
    msgPrioritiesVector_m.reserve(static_cast<size_t>(total));
    for (size_t index = 0; index + 1 < priorityWeightPairs.size(); index += 2) {
        for (int copy = 0; copy < priorityWeightPairs[index + 1]; ++copy) {
            msgPrioritiesVector_m.push_back(priorityWeightPairs[index]);
        }
    }
}

MessagePriorityGenerator::MessagePriorityGenerator(const MessagePriorityGenerator* other_p)
    : msgPrioritiesVector_m(nonNull(other_p)) {}

int MessagePriorityGenerator::getRandomPriority() const {
    if (msgPrioritiesVector_m.empty()) {
        throw PubSubException("List of priorities provided is empty, cannot generate priority.");
    }
    return msgPrioritiesVector_m[static_cast<size_t>(std::rand()) % msgPrioritiesVector_m.size()];
}

}  // namespace zorvane::pubsub
