#include "common/ClientProperties.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdio>
#include <fstream>
#include <stdexcept>
#include <string>
#include <vector>

#include "common/CliProperties.h"
#include "common/PubSubException.h"

namespace zorvane::pubsub {
namespace {

CliProperties makeStore() {
    return CliProperties(CliProperties::VEX_LOAD, "1.0.0");
}

// A file under the test's temporary directory, removed again at the end.
class TempFile {
  public:
    explicit TempFile(const std::string& content) {
        char name[] = "/tmp/clientPropsXXXXXX";
        int fd = mkstemp(name);
        if (fd < 0) {
            throw std::runtime_error("mkstemp failed");
        }
        path_m = name;
        if (write(fd, content.data(), content.size()) != static_cast<ssize_t>(content.size())) {
            close(fd);
            throw std::runtime_error("write failed");
        }
        close(fd);
    }
    ~TempFile() { std::remove(path_m.c_str()); }
    const std::string& path() const { return path_m; }

  private:
    std::string path_m;
};

// ---- the store's keys land in the right fields ----

TEST(ClientPropertiesFromStore, DefaultStoreGivesFixedAndDerivedDefaults) {
    const ClientProperties props(makeStore());
    EXPECT_EQ(props.getNumClients(), 1);
    EXPECT_EQ(props.getClientMode(), "sink");
    EXPECT_TRUE(props.isTcpNoDelay());
    EXPECT_EQ(props.getReconnectRetryWaitInMillis(), 3000);
    EXPECT_EQ(props.getReadTimeoutInMillis(), -1);
    EXPECT_TRUE(props.wantIgnoreExistsErrors());
    EXPECT_EQ(props.getDescription(), "");
    EXPECT_EQ(props.getMaxFlows(), -1);
    EXPECT_EQ(props.getClientReflectTopic(), "");
    EXPECT_EQ(props.getPassword(), "");
    EXPECT_EQ(props.getContextThreadAffinity(), -1);
    EXPECT_TRUE(props.getWantPubAckOrderCheck());
}

TEST(ClientPropertiesFromStore, NeighbouringKeysAreNotMixedUp) {
    // Pairs of keys with similar names and types get distinct values, so a
    // field read from its neighbour's key shows.
    CliProperties cli = makeStore();
    cli.setIntegerProperty(CliProperties::CLIENT_DTO_LOCAL_PRIORITY, 3);
    cli.setIntegerProperty(CliProperties::CLIENT_DTO_NETWORK_PRIORITY, 4);
    cli.setIntegerProperty(CliProperties::SOCKET_RCV_BUF_SIZE, 1000);
    cli.setIntegerProperty(CliProperties::SOCKET_SND_BUF_SIZE, 2000);
    cli.setIntegerProperty(CliProperties::AD_PUB_WINDOW_SIZE, 11);
    cli.setIntegerProperty(CliProperties::AD_SUB_WINDOW_SIZE, 12);
    cli.setIntegerProperty(CliProperties::AD_PUB_ACK_TIMEOUT, 13);
    cli.setIntegerProperty(CliProperties::AD_SUB_ACK_TIMEOUT, 14);
    cli.setIntegerProperty(CliProperties::COMPRESSION_LEVEL, 5);
    cli.setIntegerProperty(CliProperties::PAYLOAD_COMPRESSION_LEVEL, 6);
    cli.setIntegerProperty(CliProperties::NUM_PUBS_PER_SESSION, 4);
    cli.setStringProperty(CliProperties::SSL_MAX_PROTOCOL_VERSION, "tlsv1.3");
    cli.setStringProperty(CliProperties::SSL_MIN_PROTOCOL_VERSION, "tlsv1.1");
    cli.setBooleanProperty(CliProperties::WANT_SUB_MSG_QUEUE_FLUSH, true);
    cli.setBooleanProperty(CliProperties::WANT_MSG_DUMP_TIME_STAMP, true);
    cli.setBooleanProperty(CliProperties::WANT_CLIENT_TASK_THREAD, true);
    cli.setVectorMapInt32Uint64Property(CliProperties::SUB_ORDER_OFFSETS, {{{1, 11}}, {{2, 10}}});

    const ClientProperties props(cli);
    EXPECT_EQ(props.getDtoLocalPri(), 3);
    EXPECT_EQ(props.getDtoNetworkPri(), 4);
    EXPECT_EQ(props.getSocketRcvBuf(), 1000);
    EXPECT_EQ(props.getSocketSndBuf(), 2000);
    EXPECT_EQ(props.getPubAckWinSize(), 11);
    EXPECT_EQ(props.getSubAckWinSize(), 12);
    EXPECT_EQ(props.getPubAckTimeout(), 13);
    EXPECT_EQ(props.getSubAckTimeout(), 14);
    EXPECT_EQ(props.getCompressionLevel(), 5);
    EXPECT_EQ(props.getPayloadCompressionLevel(), 6);
    EXPECT_EQ(props.getNumPubsPerClient(), 4);
    EXPECT_EQ(props.getMaxSslProtocolVersion(), "tlsv1.3");
    EXPECT_EQ(props.getMinSslProtocolVersion(), "tlsv1.1");
    EXPECT_TRUE(props.getWantSubMsgQueueFlush());
    EXPECT_FALSE(props.getSubMsgQueueReverse());
    EXPECT_TRUE(props.getWantMsgDumpTimeStamp());
    EXPECT_FALSE(props.getWantMsgDump());
    EXPECT_TRUE(props.getWantClientTaskThread());
    EXPECT_FALSE(props.getWantClientAckThread());
    ASSERT_EQ(props.getSubOrderOffsets().size(), 2u);
    EXPECT_EQ(props.getSubOrderOffsets()[1].at(2), 10u);
}

TEST(ClientPropertiesFromStore, ReflectTopicIsFirstTopicOfFirstGroup) {
    CliProperties cli = makeStore();
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
        CliProperties cli = makeStore();
        cli.setIntegerProperty(CliProperties::NUM_TEMP_TOPIC_ENDPOINTS, c.topicEndpoints);
        cli.setIntegerProperty(CliProperties::NUM_TEMP_QUEUE_ENDPOINTS, c.queueEndpoints);
        EXPECT_EQ(ClientProperties(cli).getMaxFlows(), c.maxFlows)
            << "tte " << c.topicEndpoints << " tqe " << c.queueEndpoints;
    }
}

// ---- password ----

TEST(ClientPropertiesPassword, FileContentIsTakenWholeWithItsLineEnd) {
    TempFile file("s3cret\n");
    CliProperties cli = makeStore();
    cli.setStringProperty(CliProperties::CLIENT_PASSWORD_FILE, file.path());
    EXPECT_EQ(ClientProperties(cli).getPassword(), "s3cret\n");
}

TEST(ClientPropertiesPassword, BinaryFileContentIsKept) {
    const std::string content("a\0b\r\n", 5);
    TempFile file(content);
    CliProperties cli = makeStore();
    cli.setStringProperty(CliProperties::CLIENT_PASSWORD_FILE, file.path());
    EXPECT_EQ(ClientProperties(cli).getPassword(), content);
}

TEST(ClientPropertiesPassword, ExplicitPasswordWinsAndFileIsNotOpened) {
    CliProperties cli = makeStore();
    cli.setStringProperty(CliProperties::CLIENT_PASSWORD, "given");
    cli.setStringProperty(CliProperties::CLIENT_PASSWORD_FILE, "/nonexistent/dir/password");
    EXPECT_EQ(ClientProperties(cli).getPassword(), "given");
}

TEST(ClientPropertiesPassword, MissingFileNamesTheFile) {
    CliProperties cli = makeStore();
    cli.setStringProperty(CliProperties::CLIENT_PASSWORD_FILE, "/nonexistent/dir/password");
    try {
        ClientProperties props(cli);
        FAIL() << "no exception";
    } catch (const PubSubException& e) {
        EXPECT_STREQ(e.what(), "File not found. /nonexistent/dir/password");
    }
}

TEST(ClientPropertiesPassword, UnreadableFileNamesTheFile) {
    CliProperties cli = makeStore();
    cli.setStringProperty(CliProperties::CLIENT_PASSWORD_FILE, "/tmp");
    try {
        ClientProperties props(cli);
        FAIL() << "no exception";
    } catch (const PubSubException& e) {
        EXPECT_STREQ(e.what(), "File could not be read. /tmp");
    }
}

// ---- names ----

TEST(ClientPropertiesNames, WithoutPrefixNamesUseDefaultRootAndIdsAreDigitsOnly) {
    const ClientProperties props(makeStore());
    EXPECT_EQ(props.generateClientName(1), "perf_client000001");
    EXPECT_EQ(props.generateClientName(2), "perf_client000002");
    EXPECT_EQ(props.generateClientIdStr(1), "000001");
    EXPECT_EQ(props.generateClientUsername(3), "perf_client000003");
}

TEST(ClientPropertiesNames, PrefixReplacesRootAndWideIndexesKeepAllDigits) {
    CliProperties cli = makeStore();
    cli.setStringProperty(CliProperties::CLIENT_NAME_PREFIX, "abc");
    const ClientProperties props(cli);
    EXPECT_EQ(props.generateClientName(42), "abc000042");
    EXPECT_EQ(props.generateClientIdStr(42), "abc000042");
    EXPECT_EQ(props.generateClientName(1234567), "abc1234567");
}

TEST(ClientPropertiesNames, ConfiguredUserNameIsSharedWithoutIndex) {
    CliProperties cli = makeStore();
    cli.setIntegerProperty(CliProperties::NUM_CLIENTS, 3);
    cli.setStringProperty(CliProperties::CLIENT_USERNAME, "me");
    const ClientProperties props(cli);
    for (INT32 id = 1; id <= 3; ++id) {
        EXPECT_EQ(props.generateClientUsername(id), "me");
    }
}

// ---- setters with checks, copies ----

TEST(ClientPropertiesRecord, NumClientsBelowOneIsRefused) {
    ClientProperties props(makeStore());
    try {
        props.setNumClients(0);
        FAIL() << "no exception";
    } catch (const std::invalid_argument& e) {
        EXPECT_STREQ(e.what(), "num clients < 1");
    }
    EXPECT_EQ(props.getNumClients(), 1);
    EXPECT_THROW(props.setNumClients(-5), std::invalid_argument);
}

TEST(ClientPropertiesRecord, StoreIsTakenAsGivenWithoutTheSetterCheck) {
    CliProperties cli = makeStore();
    cli.setIntegerProperty(CliProperties::NUM_CLIENTS, 0);
    EXPECT_EQ(ClientProperties(cli).getNumClients(), 0);
}

TEST(ClientPropertiesRecord, CloneIsIndependentAndComplete) {
    CliProperties cli = makeStore();
    cli.setStringProperty(CliProperties::CLIENT_NAME_PREFIX, "abc");
    cli.setVectorProperty(CliProperties::EXTRA_PROPS_LIST, {"SESSION_MAX_FLOWS", "501"});
    cli.setIntegerProperty(CliProperties::NUM_TEMP_TOPIC_ENDPOINTS, 9);
    const ClientProperties original(cli);

    std::unique_ptr<ClientProperties> copy = original.clone();
    EXPECT_EQ(copy->toString(), original.toString());

    copy->setClientPrefix("xyz");
    copy->setExtraPropsList({});
    copy->setMaxFlows(2);
    EXPECT_EQ(original.generateClientName(1), "abc000001");
    EXPECT_EQ(original.getExtraPropsList().size(), 2u);
    EXPECT_EQ(original.getMaxFlows(), 10);
}

// ---- debug text ----

TEST(ClientPropertiesText, ToStringHasEveryLabelInOrder) {
    CliProperties cli = makeStore();
    cli.setIntegerProperty(CliProperties::NUM_CLIENTS, 3);
    cli.setStringProperty(CliProperties::CLIENT_IP_ADDR, "tcp://10.0.0.1:55555");
    cli.setVectorProperty(CliProperties::EXTRA_PROPS_LIST, {"A", "1", "B", "2"});
    cli.setVectorMapInt32Uint64Property(CliProperties::SUB_ORDER_OFFSETS,
                                        {{{1, 11}, {2, 10}}, {{1, 10}}});
    cli.setBooleanProperty(CliProperties::WANT_CLIENT_TASK_THREAD, true);
    const std::string text = ClientProperties(cli).toString();

    EXPECT_EQ(text.rfind("{\n  number clients         = 3\n"
                         "  Host                   = tcp://10.0.0.1:55555\n",
                         0),
              0u);
    EXPECT_NE(text.find("\n  Extra props list len   = 4\n"), std::string::npos);
    EXPECT_NE(text.find("\n  Sub Order Offsets      = 1@11,2@10 ; 1@10\n"), std::string::npos);
    EXPECT_NE(text.find("\n  Ignore already exists  = 1\n  Want no local          = 0\n"),
              std::string::npos);
    const std::string tail = "  Want Client Task Thread       = 1\n}";
    ASSERT_GE(text.size(), tail.size());
    EXPECT_EQ(text.substr(text.size() - tail.size()), tail);

    // 95 labelled lines after the opening brace's line.
    size_t lines = 0;
    for (char c : text) {
        lines += c == '\n' ? 1 : 0;
    }
    EXPECT_EQ(lines, 96u);
}

}  // namespace
}  // namespace zorvane::pubsub
