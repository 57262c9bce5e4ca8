#include "common/MessagePriorityGenerator.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <functional>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "tests/unit/ThrownText.h"

namespace zorvane::pubsub {
namespace {

TEST(MessagePriorityGenerator, EachPriorityIsRepeatedByItsWeight) {
    EXPECT_EQ(MessagePriorityGenerator({1, 2, 3, 1}).getMsgPrioritiesVector(),
              (std::vector<int>{1, 1, 3}));
    EXPECT_EQ(MessagePriorityGenerator({4, 0, 5, -2, 6, 1}).getMsgPrioritiesVector(),
              std::vector<int>{6});
    const MessagePriorityGenerator original({7, 2});
    EXPECT_EQ(MessagePriorityGenerator(&original).getMsgPrioritiesVector(),
              (std::vector<int>{7, 7}));
}

TEST(MessagePriorityGenerator, DrawsComeFromTheTableInProportion) {
    std::srand(7);
    const MessagePriorityGenerator generator({0, 25, 9, 75});
    std::map<int, int> counts;
    for (int draw = 0; draw < 40000; ++draw) {
        ++counts[generator.getRandomPriority()];
    }
    ASSERT_EQ(counts.size(), 2u);
    EXPECT_NEAR(counts[9] / 40000.0, 0.75, 0.02);
}

TEST(MessagePriorityGenerator, UnusableListsAreRefusedWithTheirReason) {
    const MessagePriorityGenerator* none_p = nullptr;
    const std::vector<int> odd = {1, 2, 3}, noWeight = {1, 0}, huge = {1, 2000000000};
    const std::pair<std::function<void()>, std::string> cases[] = {
        {[&] { MessagePriorityGenerator{odd}; }, "Message priority list must be dividable by two."},
        {[&] { MessagePriorityGenerator{noWeight}.getRandomPriority(); },
         "List of priorities provided is empty, cannot generate priority."},
        {[&] { MessagePriorityGenerator{none_p}; }, "Cannot copy NULL MessagePriorityGenerator."},
        {[&] { MessagePriorityGenerator{huge}; },
         "Message priority weights add up to more than 1048576"},
    };
    for (const auto& [action, fault] : cases) {
        EXPECT_EQ(test::messageOf(action).substr(0, fault.size()), fault);
    }
}

}  // namespace
}  // namespace zorvane::pubsub
