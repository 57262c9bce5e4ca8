// Per-client lists, list files and the two-part values of the store.
#include <gtest/gtest.h>

#include <cstdio>
#include <fstream>

#include "tests/unit/CliTestSupport.h"
#include "tests/unit/TempPath.h"

namespace zorvane::pubsub {
namespace {

using P = CliProperties;
using Outer = std::vector<std::vector<std::string>>;
using test::runCaptured;

class CliPropertiesListsTest : public ::testing::Test {
  protected:
    void TearDown() override {
        for (const std::string& file : files_m) {
            std::remove(file.c_str());
        }
    }
    std::string writeFile(const std::string& text) {
        const std::string name = test::tempPath("lists_" + std::to_string(files_m.size()));
        std::ofstream(name) << text;
        files_m.push_back(name);
        return name;
    }

    CliProperties props_m{TOOL_NAME, "1"};
    std::vector<std::string> files_m;
};

// How "-stl=", "-stp=" and "-ptp=" deal their names out is checked with the
// options; here the edges the option tests do not reach.
TEST_F(CliPropertiesListsTest, ListsAreDealtOutToTheClientsInTurn) {
    props_m.setIntegerProperty(P::NUM_CLIENTS, 3);
    Outer outer;
    props_m.loadSubscriptionsFromList(outer, "a,b,c,d,e");
    EXPECT_EQ(outer, (Outer{{"a", "d"}, {"b", "e"}, {"c"}}));
    EXPECT_TRUE(props_m.getBooleanProperty(P::WANT_ADD_SUBSCRIPTIONS));

    // Fewer items than clients leave the last clients without any.
    outer.clear();
    props_m.loadSubscriptionsFromList(outer, "x<TOPIC_END/>DA=1");
    EXPECT_EQ(outer, (Outer{{"x<TOPIC_END/>DA=1"}}));

    // Generated names keep every digit of a count beyond six.
    props_m.setIntegerProperty(P::NUM_CLIENTS, 1);
    props_m.loadPublishTopicsFromPrefixAndCount("q", 1000000);
    EXPECT_EQ(props_m.getVectorVectorProperty(P::PUB_TOPICS_ARRAY)[0].back(), "q1000000");
}

TEST_F(CliPropertiesListsTest, CountsThatCannotBeDealtOutAreRefused) {
    Outer outer;
    auto outcome = runCaptured([&] { props_m.loadSubscriptionsFromPrefixAndCount(outer, "t", 0); });
    EXPECT_EQ(outcome.status, 255);
    EXPECT_EQ(outcome.err, "ERROR: Invalid count of generated names, (1..) is valid: 0\n\n");
    outcome = runCaptured([&] { props_m.loadPublishTopicsFromPrefixAndCount("t", 10000001); });
    EXPECT_EQ(outcome.err,
              "ERROR: Too many generated names for prefix t, (1..10000000) is valid: 10000001\n\n");
    props_m.setIntegerProperty(P::NUM_CLIENTS, 0);
    outcome = runCaptured([&] { props_m.loadSubscriptionsFromList(outer, "a"); });
    EXPECT_EQ(outcome.status, 255);
    EXPECT_EQ(outcome.err, "ERROR: Invalid # of clients, (1..) is valid: 0\n\n");
    EXPECT_TRUE(outer.empty());
}

TEST_F(CliPropertiesListsTest, EachFileFeedsOneClientUpToItsLineLimit) {
    const std::string first = writeFile("a\n\nb\nc\n");
    const std::string second = writeFile("x\ny");
    const std::string empty = writeFile("");
    Outer outer;
    props_m.loadSubscriptionsFromFile(outer, first, 2);
    props_m.loadSubscriptionsFromFile(outer, second, 0);
    props_m.loadSubscriptionsFromFile(outer, empty, -1);
    props_m.loadSubscriptionsFromFile(outer, first, -1);
    EXPECT_EQ(outer, (Outer{{"a", ""}, {"x", "y"}, {}, {"a", "", "b", "c"}}));

    const auto outcome =
        runCaptured([&] { props_m.loadSubscriptionsFromFile(outer, first + ".missing", -1); });
    EXPECT_EQ(outcome.status, 255);
    EXPECT_EQ(outcome.err, "Cannot open the subscriptions file: " + first + ".missing\n\n");
}

TEST_F(CliPropertiesListsTest, TwoPartValuesSplitAtTheirFirstSeparator) {
    props_m.parseUsernameVpn("user@vpn@x", P::CLIENT_USERNAME, P::CLIENT_VPN);
    EXPECT_EQ(props_m.getStringProperty(P::CLIENT_USERNAME), "user");
    EXPECT_EQ(props_m.getStringProperty(P::CLIENT_VPN), "vpn@x");
    props_m.parseUsernameVpn("other", P::CLIENT_USERNAME, P::CLIENT_VPN);
    EXPECT_EQ(props_m.getStringProperty(P::CLIENT_USERNAME), "other");
    EXPECT_EQ(props_m.getStringProperty(P::CLIENT_VPN), "vpn@x");

    const struct {
        const char* value;
        INT32 local;
        INT32 network;
    } priorities[] = {{"3", 3, -1}, {"3:", 3, 0}, {"2:4x", 2, 4}, {"0x3:010", 3, 8}};
    for (const auto& c : priorities) {
        SCOPED_TRACE(c.value);
        props_m.parseDTOPriority(c.value);
        EXPECT_EQ(props_m.getIntegerProperty(P::CLIENT_DTO_LOCAL_PRIORITY), c.local);
        EXPECT_EQ(props_m.getIntegerProperty(P::CLIENT_DTO_NETWORK_PRIORITY), c.network);
    }
    props_m.parseQBDelete("0x10,2");
    EXPECT_EQ(props_m.getIntegerProperty(P::QB_DELETE_FREQUENCY), 16);
    EXPECT_EQ(props_m.getIntegerProperty(P::QB_MSG_BUFFER_SIZE), 2);
    props_m.parseQBDelete("5");
    EXPECT_EQ(props_m.getIntegerProperty(P::QB_MSG_BUFFER_SIZE), -1);
    props_m.parseMinMaxTopicSeq("-1:9000000000");
    EXPECT_EQ(props_m.getInt64Property(P::CACHE_REQ_MIN_SEQ), -1);
    EXPECT_EQ(props_m.getInt64Property(P::CACHE_REQ_MAX_SEQ), 9000000000);
    const auto outcome = runCaptured([&] { props_m.parseMinMaxTopicSeq("12-14"); });
    EXPECT_EQ(outcome.status, 255);
    EXPECT_EQ(outcome.err, "Cache Request Topic Sequence format not understood: 12-14\n\n");
}

}  // namespace
}  // namespace zorvane::pubsub
