#include "common/LastMessageDetails.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>

namespace zorvane::pubsub {
namespace {

TEST(LastMessageDetails, TextHasEveryLabelAndFlagsAsRawBytes) {
    LastMessageDetails details;
    details.setDestination("orders/eu");
    details.setDestinationType(SUBSCRIPTION_TYPE_QUEUE);
    details.setRedelivered(1);
    details.setIsDmqEligible(-1);
    details.setBinaryPayloadSize(12);
    const std::string text = details.toString();
    EXPECT_EQ(text.substr(0, 2), "{\n");
    EXPECT_NE(text.find("\n  Destination                   = orders/eu\n"
                        "  Destination Type              = 3\n"),
              std::string::npos);
    EXPECT_NE(text.find("\n  Redelivered                   = \x01\n"), std::string::npos);
    EXPECT_NE(text.find("\n  Is DMQ Eligible               = \xFF\n"), std::string::npos);
    EXPECT_NE(text.find(std::string("\n  Is Ack Immediately            = ") + '\0' + "\n"),
              std::string::npos);
    EXPECT_TRUE(text.ends_with("\n  Binary Payload Size           = 12\n}"));
    EXPECT_EQ(std::count(text.begin(), text.end(), '\n'), 35);  // the opening line, 34 fields

    details.clear();
    EXPECT_EQ(details.getBinaryPayloadSize(), -1);
    EXPECT_EQ(details.toString().find("orders"), std::string::npos);
}

}  // namespace
}  // namespace zorvane::pubsub
