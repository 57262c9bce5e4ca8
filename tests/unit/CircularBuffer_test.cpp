#include "common/CircularBuffer.h"

#include <gtest/gtest.h>

#include <stdexcept>
#include <string>

namespace zorvane::pubsub {
namespace {

TEST(CircularBuffer, KeepsTheLatestElementsInOrderAcrossTheWrap) {
    EXPECT_THROW(CircularBuffer<int>(0), std::invalid_argument);
    CircularBuffer<int> ring(4);
    EXPECT_THROW(ring.pop_front(), std::out_of_range);
    for (int i = 1; i <= 6; ++i) {
        ring.push_back(i);  // 1 and 2 are pushed out
    }
    ring.pop_front();
    ring.push_back(7);
    std::string text;
    for (int value : ring) {
        text += std::to_string(value);
    }
    EXPECT_EQ(text, "4567");
    EXPECT_EQ(ring[1] * 10 + ring.back(), 57);
}

}  // namespace
}  // namespace zorvane::pubsub
