#include "common/FlowStatus.h"

#include <gtest/gtest.h>

namespace zorvane::pubsub {
namespace {

TEST(FlowStatusText, StatesAndRecordText) {
    EXPECT_STREQ(FlowStatus(true, FlowStatus::AFI_ACTIVE).getAFIStateString(), "ACTIVE");
    EXPECT_STREQ(FlowStatus(true, FlowStatus::AFI_INACTIVE).getAFIStateString(), "INACTIVE");
    EXPECT_STREQ(FlowStatus().getAFIStateString(), "UNKNOWN");
    EXPECT_STREQ(FlowStatus(false, FlowStatus::NUM_AFI_TYPES).getAFIStateString(),
                 "Unsupported AFI state");
    EXPECT_EQ(FlowStatus(true, FlowStatus::AFI_INACTIVE).toString(),
              "{\n  Is Up       = 1\n  AFI State   = INACTIVE\n}");
    EXPECT_EQ(FlowStatus().toString(), "{\n  Is Up       = 0\n  AFI State   = UNKNOWN\n}");
}

}  // namespace
}  // namespace zorvane::pubsub
