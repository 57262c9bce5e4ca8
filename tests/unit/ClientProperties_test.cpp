#include "common/ClientProperties.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdio>
#include <fstream>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "common/CliProperties.h"
#include "common/PubSubException.h"
#include "tests/unit/CliTestSupport.h"
#include "tests/unit/TempPath.h"
#include "tests/unit/ThrownText.h"

namespace zorvane::pubsub {
namespace {

using test::defaultStore;
using test::messageOf;

// A file of the given content, removed again at the end of the test.
struct TempFile {
    explicit TempFile(const std::string& content) {
        std::ofstream(path_m, std::ios::binary) << content;
    }
    ~TempFile() { std::remove(path_m.c_str()); }
    const std::string path_m = test::tempPath("clientPropsPassword");
};

// ---- the store's keys land in the right fields ----

TEST(ClientPropertiesFromStore, NeighbouringKeysAreNotMixedUp) {
    // Keys with similar names and types get distinct values, so a field read
    // from its neighbour's key shows.
    CliProperties cli = defaultStore();
    cli.setIntegerProperty(CliProperties::CLIENT_DTO_LOCAL_PRIORITY, 3);
    cli.setIntegerProperty(CliProperties::CLIENT_DTO_NETWORK_PRIORITY, 4);
    cli.setIntegerProperty(CliProperties::SOCKET_RCV_BUF_SIZE, 1000);
    cli.setIntegerProperty(CliProperties::SOCKET_SND_BUF_SIZE, 2000);
    cli.setIntegerProperty(CliProperties::AD_PUB_WINDOW_SIZE, 11);
    cli.setIntegerProperty(CliProperties::AD_SUB_WINDOW_SIZE, 12);
    cli.setStringProperty(CliProperties::SSL_MAX_PROTOCOL_VERSION, "tlsv1.3");
    cli.setBooleanProperty(CliProperties::WANT_SUB_MSG_QUEUE_FLUSH, true);
    cli.setBooleanProperty(CliProperties::WANT_CLIENT_TASK_THREAD, true);

    const ClientProperties props(cli);
    using IntPair = std::pair<INT32, INT32>;
    EXPECT_EQ(IntPair(props.getDtoLocalPri(), props.getDtoNetworkPri()), IntPair(3, 4));
    EXPECT_EQ(IntPair(props.getSocketRcvBuf(), props.getSocketSndBuf()), IntPair(1000, 2000));
    EXPECT_EQ(IntPair(props.getPubAckWinSize(), props.getSubAckWinSize()), IntPair(11, 12));
    EXPECT_EQ(props.getMaxSslProtocolVersion() + "|" + props.getMinSslProtocolVersion(),
              "tlsv1.3|");
    EXPECT_TRUE(props.getWantSubMsgQueueFlush() && !props.getSubMsgQueueReverse());
    EXPECT_TRUE(props.getWantClientTaskThread() && !props.getWantClientAckThread());
}

TEST(ClientPropertiesFromStore, ReflectTopicIsFirstTopicOfFirstGroup) {
    CliProperties cli = defaultStore();
    cli.setVectorVectorProperty(CliProperties::PUB_TOPICS_ARRAY, {{"a", "b"}, {"c"}});
    EXPECT_EQ(ClientProperties(cli).getClientReflectTopic(), "a");
    cli.setVectorVectorProperty(CliProperties::PUB_TOPICS_ARRAY, {{}});
    EXPECT_EQ(ClientProperties(cli).getClientReflectTopic(), "");
}

// ---- maximum flows from temporary endpoints ----

TEST(ClientPropertiesMaxFlows, TemporaryEndpointsAskForOneFlowMore) {
    struct Case {
        INT32 topicEndpoints;
        INT32 queueEndpoints;
        INT32 maxFlows;
    };
    const Case cases[] = {
        {0, 0, -1}, {500, 0, 501}, {0, 3, 4}, {5, 6, 6}, {5, 7, 8}, {5, 2, 6}, {-4, 0, -1},
    };
    for (const Case& c : cases) {
        CliProperties cli = defaultStore();
        cli.setIntegerProperty(CliProperties::NUM_TEMP_TOPIC_ENDPOINTS, c.topicEndpoints);
        cli.setIntegerProperty(CliProperties::NUM_TEMP_QUEUE_ENDPOINTS, c.queueEndpoints);
        EXPECT_EQ(ClientProperties(cli).getMaxFlows(), c.maxFlows)
            << "tte " << c.topicEndpoints << " tqe " << c.queueEndpoints;
    }
}

// ---- password ----

TEST(ClientPropertiesPassword, FileIsTakenWholeUnlessAPasswordIsGivenAndFaultsNameIt) {
    const std::string content("s3cret\0\r\n", 9);  // line end and binary included
    TempFile file(content);
    CliProperties cli = defaultStore();
    cli.setStringProperty(CliProperties::CLIENT_PASSWORD_FILE, file.path_m);
    EXPECT_EQ(ClientProperties(cli).getPassword(), content);

    const auto buildError = [&] { return messageOf([&] { ClientProperties props(cli); }); };
    cli.setStringProperty(CliProperties::CLIENT_PASSWORD_FILE, "/nonexistent/dir/password");
    EXPECT_EQ(buildError(), "File not found. /nonexistent/dir/password");
    cli.setStringProperty(CliProperties::CLIENT_PASSWORD_FILE, "/tmp");
    EXPECT_EQ(buildError(), "File could not be read. /tmp");
    // A given password wins and the file is not opened.
    cli.setStringProperty(CliProperties::CLIENT_PASSWORD, "given");
    EXPECT_EQ(ClientProperties(cli).getPassword(), "given");
}

// ---- names ----

TEST(ClientPropertiesNames, PrefixReplacesTheRootIdsAreDigitsOnlyAndAUserNameIsShared) {
    const ClientProperties plain(defaultStore());
    EXPECT_EQ(plain.generateClientName(2), "perf_client000002");
    EXPECT_EQ(plain.generateClientIdStr(1), "000001");
    EXPECT_EQ(plain.generateClientUsername(3), "perf_client000003");

    CliProperties cli = defaultStore();
    cli.setStringProperty(CliProperties::CLIENT_NAME_PREFIX, "abc");
    cli.setIntegerProperty(CliProperties::NUM_CLIENTS, 3);
    cli.setStringProperty(CliProperties::CLIENT_USERNAME, "me");
    const ClientProperties props(cli);
    EXPECT_EQ(props.generateClientName(42), "abc000042");
    EXPECT_EQ(props.generateClientIdStr(42), "abc000042");
    EXPECT_EQ(props.generateClientName(1234567), "abc1234567");  // wide indexes keep all digits
    EXPECT_EQ(props.generateClientUsername(1) + props.generateClientUsername(3), "meme");
}

// ---- setters with checks ----

TEST(ClientPropertiesRecord, NumClientsBelowOneIsRefused) {
    ClientProperties props(defaultStore());
    EXPECT_THROW(props.setNumClients(-5), std::invalid_argument);
    try {
        props.setNumClients(0);
    } catch (const std::invalid_argument& e) {
        EXPECT_STREQ(e.what(), "num clients < 1");
    }
    EXPECT_EQ(props.getNumClients(), 1);
}

}  // namespace
}  // namespace zorvane::pubsub
