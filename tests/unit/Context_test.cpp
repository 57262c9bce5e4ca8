#include "client/zcore/Context.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tests/unit/ZcoreTestSupport.h"

namespace zorvane::pubsub {
namespace {

std::vector<std::string> entries(const PropertyArray& array) {
    std::vector<std::string> out;
    for (int i = 0; i < array.size(); ++i) {
        out.push_back(array.at(i));
    }
    return out;
}

TEST(ContextProperties, FlowsScaleWithClientsAndOptionalPairsFollowTheRecord) {
    ClientProperties props = defaultClientProps();
    props.setMaxFlows(5);
    props.setNumClients(3);
    PropertyArray scaled;
    Context::fillProperties(props, scaled);
    EXPECT_EQ(entries(scaled), (std::vector<std::string>{"CONTEXT_MAX_SESSIONS", "1200",
                                                         "CONTEXT_MAX_FLOWS", "15"}));

    for (INT32 unbounded : {0, -1}) {
        props.setMaxFlows(unbounded);
        PropertyArray array;
        Context::fillProperties(props, array);
        EXPECT_STREQ(array.valueOf("CONTEXT_MAX_FLOWS"), "20000") << unbounded;
    }

    props.setWantCreateContextThread(true);
    props.setContextThreadAffinity(3);
    props.setContextThreadAffinityList("0,2-3");
    props.setExtraPropsList({"SESSION_MAX_FLOWS", "501"});
    PropertyArray full;
    Context::fillProperties(props, full);
    EXPECT_EQ(full.keys(),
              (std::vector<std::string>{"CONTEXT_MAX_SESSIONS", "CONTEXT_MAX_FLOWS",
                                        "CONTEXT_CREATE_THREAD", "CONTEXT_THREAD_AFFINITY",
                                        "CONTEXT_THREAD_AFFINITY_CPU_LIST", "SESSION_MAX_FLOWS"}));
    EXPECT_STREQ(full.valueOf("CONTEXT_THREAD_AFFINITY"), "3");
}

TEST(ContextProperties, ExtrasThatDoNotFitAreLeftOutWithAnErrorLine) {
    LogCapture log;
    ClientProperties props = defaultClientProps();
    props.setExtraPropsList(std::vector<std::string>(98, "K"));  // 4 entries + 98 > 100
    PropertyArray array;
    Context::fillProperties(props, array);
    EXPECT_EQ(array.size(), 4);
    EXPECT_TRUE(log.contains(log::LEVEL_ERROR,
                             "Unable to add extra props.  Array not large enough. Index: 4 Max "
                             "size: 100 Num Props: 98"));
}

// Reaches processEvents, which the context thread calls.
class ProbeContext : public Context {
  public:
    using Context::Context;
    using Context::processEvents;
};

TEST(ContextLifecycle, RunsUntilStoppedAndStopsAgainHarmlessly) {
    ASSERT_EQ(ZORCLIENT_OK, zorClient_initialize(ZORCLIENT_LOG_ERROR, nullptr));
    {
        LogCapture log;
        ProbeContext context(defaultClientProps());
        ASSERT_NE(context.getContext(), nullptr);
        EXPECT_TRUE(context.processEvents());  // at most 50 ms without events
        ASSERT_EQ(context.start(), 1);
        EXPECT_TRUE(context.isStarted());
        EXPECT_EQ(context.stop(), 0);
        EXPECT_FALSE(context.isStarted());
        EXPECT_EQ(context.stop(), 0);
        EXPECT_EQ(log.count("Stopping Context thread"), 2U);
        EXPECT_EQ(log.count("Could not process events"), 0U);
    }
    zorClient_cleanup();
}

TEST(ContextLifecycle, AFailedCreationLeavesANullContextThatReportsEachRound) {
    ASSERT_EQ(ZORCLIENT_OK, zorClient_initialize(ZORCLIENT_LOG_ERROR, nullptr));
    {
        LogCapture log;
        ClientProperties props = defaultClientProps();
        props.setExtraPropsList({"CONTEXT_MAX_SESSIONS", "many"});  // refused by the library
        ProbeContext context(props);
        EXPECT_EQ(context.getContext(), nullptr);
        EXPECT_TRUE(log.contains(log::LEVEL_ERROR, "zorClient_context_create() failed"));
        EXPECT_EQ(log.count("Error details - Sub Code: 1, Response Code: 0, Error String: "), 1U);
        EXPECT_FALSE(context.processEvents());
        EXPECT_TRUE(log.contains("processEvents called for NULL context_mp."));
    }
    zorClient_cleanup();
}

}  // namespace
}  // namespace zorvane::pubsub
