#include "common/LastMessageDetails.h"

#include <gtest/gtest.h>

namespace zorvane::pubsub {
namespace {

// The record is reused for every message: clearing it leaves nothing of the
// one before, and the payload size reads "none".
TEST(LastMessageDetails, ClearLeavesNothingOfTheMessageBefore) {
    LastMessageDetails details;
    details.setDestination("orders/eu");
    details.setBinaryPayloadSize(12);
    details.clear();
    EXPECT_EQ(details.getDestination(), "");
    EXPECT_EQ(details.getBinaryPayloadSize(), -1);
}

}  // namespace
}  // namespace zorvane::pubsub
