#include "client/zcore/Context.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tests/unit/ZcoreTestSupport.h"

namespace zorvane::pubsub {
namespace {

TEST(ContextProperties, FlowsScaleWithClientsAndExtrasFollowWhenTheyFit) {
    LogCapture log;
    ClientProperties props = defaultClientProps();
    props.setMaxFlows(5);
    props.setNumClients(3);
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
    EXPECT_STREQ(full.valueOf("CONTEXT_MAX_FLOWS"), "15");
    EXPECT_STREQ(full.valueOf("CONTEXT_THREAD_AFFINITY"), "3");

    for (INT32 unbounded : {0, -1}) {
        props.setMaxFlows(unbounded);
        props.setExtraPropsList(std::vector<std::string>(92, "K"));  // 10 entries + 92 > 100
        PropertyArray array;
        Context::fillProperties(props, array);
        EXPECT_STREQ(array.valueOf("CONTEXT_MAX_FLOWS"), "20000") << unbounded;
        EXPECT_EQ(array.size(), 10);
    }
    EXPECT_TRUE(log.contains(log::LEVEL_ERROR,
                             "Unable to add extra props.  Array not large enough. Index: 10 Max "
                             "size: 100 Num Props: 92"));
}

class ProbeContext : public Context {
  public:
    using Context::Context;
    using Context::processEvents;
};

TEST(ContextLifecycle, RunsUntilStoppedAndAFailedCreationReportsEachRound) {
    ASSERT_EQ(ZORCLIENT_OK, zorClient_initialize(ZORCLIENT_LOG_ERROR, nullptr));
    {
        LogCapture log;
        ProbeContext context(defaultClientProps());
        EXPECT_TRUE(context.processEvents());  // at most 50 ms without events
        ASSERT_EQ(context.start(), 1);
        EXPECT_EQ(context.stop(), 0);
        EXPECT_FALSE(context.isStarted());
        EXPECT_EQ(context.stop(), 0);  // harmless
        EXPECT_EQ(log.count("Could not process events"), 0U);

        ClientProperties props = defaultClientProps();
        props.setExtraPropsList({"CONTEXT_MAX_SESSIONS", "many"});  // refused by the library
        ProbeContext failed(props);
        EXPECT_EQ(failed.getContext(), nullptr);
        EXPECT_TRUE(log.contains(log::LEVEL_ERROR, "zorClient_context_create() failed"));
        EXPECT_EQ(log.count("Error details - Sub Code: 1, Response Code: 0, Error String: "), 1U);
        EXPECT_FALSE(failed.processEvents());
        EXPECT_TRUE(log.contains("processEvents called for NULL context_mp."));
    }
    zorClient_cleanup();
}

}  // namespace
}  // namespace zorvane::pubsub
