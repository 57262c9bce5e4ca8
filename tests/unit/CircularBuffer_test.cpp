#include "common/CircularBuffer.h"

#include <gtest/gtest.h>

#include <stdexcept>
#include <string>

namespace zorvane::pubsub {
namespace {

std::string contents(const CircularBuffer<int>& ring) {
    std::string text;
    for (int value : ring) {
        text += std::to_string(value) + " ";
    }
    return text;
}

TEST(CircularBuffer, KeepsTheLatestElementsInOrderAcrossTheWrap) {
    CircularBuffer<int> ring(4);
    for (int i = 1; i <= 6; ++i) {
        ring.push_back(i);  // 1 and 2 are pushed out
    }
    EXPECT_EQ(contents(ring), "3 4 5 6 ");
    EXPECT_EQ(ring[0] + ring[3], 9);
    EXPECT_TRUE(ring.full());
    ring.push_front(2);  // a full ring loses its newest to the front
    EXPECT_EQ(contents(ring), "2 3 4 5 ");
    ring.pop_front();
    ring.pop_back();
    EXPECT_EQ(ring.front() * 10 + ring.back(), 34);

    CircularBuffer<int> wrapped(5);
    for (int i = 1; i <= 8; ++i) {
        wrapped.push_back(i);
    }
    wrapped.erase(1);  // near the head: the head side moves
    wrapped.erase(2);  // near the tail: the tail side moves
    EXPECT_EQ(contents(wrapped), "4 6 8 ");
    wrapped.reserve(10);
    for (int i = 9; i <= 13; ++i) {
        wrapped.push_back(i);
    }
    EXPECT_EQ(contents(wrapped), "4 6 8 9 10 11 12 13 ");
    EXPECT_EQ(wrapped.capacity(), 10U);

    wrapped.swap(ring);
    EXPECT_EQ(contents(wrapped), "3 4 ");
    wrapped.clear();
    EXPECT_TRUE(wrapped.empty());
}

TEST(CircularBuffer, MisuseIsRefusedWithANamedError) {
    EXPECT_THROW(CircularBuffer<int>(0), std::invalid_argument);
    CircularBuffer<int> ring(2);
    EXPECT_THROW(ring.pop_front(), std::out_of_range);
    EXPECT_THROW(ring.pop_back(), std::out_of_range);
    ring.push_back(1);
    EXPECT_THROW(ring.erase(1), std::out_of_range);
}

}  // namespace
}  // namespace zorvane::pubsub
