// Helpers of the tests of the library binding: the library started for
// each test against its embedded broker, a running Context, records with
// the defaults of the command line, and waiting with a deadline.
#pragma once

#include <gtest/gtest.h>

#include <chrono>
#include <functional>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include "client/zcore/Context.h"
#include "common/CliProperties.h"
#include "common/ClientProperties.h"
#include "common/StatsCustomizationProperties.h"
#include "tests/unit/ClientProbe.h"
#include "tests/unit/LogCapture.h"
#include "zorClient.h"

namespace zorvane::pubsub {

inline ClientProperties defaultClientProps() {
    return ClientProperties(CliProperties(CliProperties::VEX_LOAD, "1.0.0"));
}

// Polls done() until it holds or the time is up; true when it held.
inline bool waitFor(const std::function<bool()>& done,
                    std::chrono::milliseconds limit = std::chrono::seconds(5)) {
    const auto end = std::chrono::steady_clock::now() + limit;
    while (!done()) {
        if (std::chrono::steady_clock::now() > end) {
            return false;
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
    return true;
}

// Sending and topic subscriptions are still being built into the library:
// the traffic tests run once it answers something other than "not
// supported". The reason to skip, or "" when they can run.
inline std::string directMessagingMissing() {
    if (zorClient_session_sendMsg(nullptr, nullptr) == ZORCLIENT_FAIL &&
        zorClient_getLastErrorInfo()->subCode == ZORCLIENT_SUBCODE_NOT_SUPPORTED) {
        return "zorClient_session_sendMsg is not supported by this build of the library yet";
    }
    if (zorClient_session_topicSubscribeExt(nullptr, 0, nullptr) == ZORCLIENT_FAIL &&
        zorClient_getLastErrorInfo()->subCode == ZORCLIENT_SUBCODE_NOT_SUPPORTED) {
        return "zorClient_session_topicSubscribeExt is not supported by this build of the library "
               "yet";
    }
    return "";
}

// The library started for one test, its log lines captured, and a running
// context for the test's clients.
class LibraryFixture : public ::testing::Test {
  protected:
    void SetUp() override {
        ASSERT_EQ(ZORCLIENT_OK, zorClient_initialize(ZORCLIENT_LOG_ERROR, nullptr));
        context_mp = std::make_unique<Context>(defaultClientProps());
        ASSERT_NE(context_mp->getContext(), nullptr);
        context_mp->start();
    }
    void TearDown() override {
        // Clients go before their context, and the context before cleanup.
        destroyClients();
        context_mp.reset();
        zorClient_cleanup();
    }
    // Tests that own clients release them here.
    virtual void destroyClients() {}

    LogCapture log_m;  // attached before the context thread starts
    std::unique_ptr<Context> context_mp;
};

// A LibraryFixture for tests that send through the broker: skipped, with
// the reason, where the library cannot carry direct messages. Clients made
// with connectProbe live until the test ends, before the context goes.
class DirectMessagingFixture : public LibraryFixture {
  protected:
    void SetUp() override {
        LibraryFixture::SetUp();
        const std::string missing = directMessagingMissing();
        if (!missing.empty()) {
            GTEST_SKIP() << missing;
        }
    }
    void destroyClients() override { clients_m.clear(); }

    // A client on the fixture's context, connected, and subscribed to topic
    // unless it is empty.
    ClientProbe& connectProbe(INT32 clientId, const ClientProperties& props,
                              const StatsCustomizationProperties& stats,
                              const std::string& topic = "") {
        clients_m.push_back(std::make_unique<ClientProbe>(clientId, 1000000, props,
                                                          context_mp.get(), stats, nullptr, 1));
        ClientProbe& client = *clients_m.back();
        client.connect();
        EXPECT_TRUE(waitFor(
            [&] { return client.getChannelState() == AbstractClient::CLIENT_STATE_CONNECTED; }));
        if (!topic.empty()) {
            client.subscriptionUpdate({topic}, true, "", SUBSCRIPTION_TYPE_TOPIC);
        }
        return client;
    }

    std::vector<std::unique_ptr<ClientProbe>> clients_m;
};

}  // namespace zorvane::pubsub
