#include "common/LastMessageDetails.h"

#include <gtest/gtest.h>

#include <string>

namespace zorvane::pubsub {
namespace {

TEST(LastMessageDetails, TextHasEveryLabelAndFlagsAsRawBytes) {
    LastMessageDetails details;
    details.setDestination("orders/eu");
    details.setDestinationType(SUBSCRIPTION_TYPE_QUEUE);
    details.setPriority(7);
    details.setRedelivered(1);
    details.setIsDmqEligible(-1);
    details.setBinaryPayloadSize(12);
    const std::string text = details.toString();
    EXPECT_EQ(text.substr(0, 2), "{\n");
    EXPECT_EQ(text.back(), '}');
    EXPECT_NE(text.find("\n  Destination                   = orders/eu\n"
                        "  Destination Type              = 3\n"),
              std::string::npos);
    EXPECT_NE(text.find("\n  Priority                      = 7\n"), std::string::npos);
    EXPECT_NE(text.find(std::string("\n  Redelivered                   = \x01\n")),
              std::string::npos);
    EXPECT_NE(text.find("\n  Is DMQ Eligible               = \xFF\n"), std::string::npos);
    EXPECT_NE(text.find(std::string("\n  Is Ack Immediately            = ") + '\0' + "\n"),
              std::string::npos);
    EXPECT_NE(text.find("\n  Binary Payload Size           = 12\n}"), std::string::npos);
    int lines = 0;
    for (char c : text) {
        lines += c == '\n';
    }
    EXPECT_EQ(lines, 35);  // the opening line and 34 fields

    details.clear();
    EXPECT_EQ(details.getBinaryPayloadSize(), -1);
    EXPECT_EQ(details.getDestination(), "");
    EXPECT_EQ(details.getRedelivered(), 0);
}

}  // namespace
}  // namespace zorvane::pubsub
