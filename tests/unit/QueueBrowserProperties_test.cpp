#include "common/QueueBrowserProperties.h"

#include <gtest/gtest.h>

#include <string>

namespace zorvane::pubsub {
namespace {

TEST(QueueBrowserPropertiesRecord, DefaultTextShowsNothingGiven) {
    EXPECT_EQ(QueueBrowserProperties().toString(),
              "{\n"
              "  Queues List Size       = 0\n"
              "  Selector               = \n"
              "  Delete Frequency       = -1\n"
              "  Delete Buf Size        = -1\n"
              "  Want Cut Through Persistence = 0\n"
              "  Number of flow reconnect attempts -1\n"
              "  Flow reconnect interval in miliseconds -1\n"
              "}");
}

TEST(QueueBrowserPropertiesRecord, CloneIsIndependentAndComplete) {
    QueueBrowserProperties original;
    original.setQueuesList({"q1", "q2"});
    original.setSelector("a > 1");
    original.setDeleteFrequency(16);
    original.setFlowReconnectAttempts(3);
    std::unique_ptr<QueueBrowserProperties> copy = original.clone();
    EXPECT_EQ(copy->toString(), original.toString());

    copy->setQueuesList({});
    copy->setSelector("");
    EXPECT_EQ(original.getQueuesList().size(), 2u);
    EXPECT_EQ(original.getSelector(), "a > 1");
}

}  // namespace
}  // namespace zorvane::pubsub
