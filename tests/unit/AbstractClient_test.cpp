#include "client/AbstractClient.h"

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <string>
#include <thread>
#include <vector>

#include "common/CRC.h"
#include "common/MsgProperties.h"
#include "common/OS.h"
#include "common/PubSubException.h"
#include "tests/unit/LogCapture.h"
#include "tests/unit/TestClient.h"

namespace zorvane::pubsub {
namespace {

using namespace std::chrono_literals;

constexpr auto clientProps = NullClient::defaultProps;

std::unique_ptr<TestClient> makeClient(const ClientProperties& props, INT32 clientId = 1,
                                       const StatsCustomizationProperties& stats = {}) {
    return std::make_unique<TestClient>(props, clientId, 1000000, stats, nullptr);
}

// The skip lines of repeated calls are checked through the binding's client.
TEST(AbstractClientConnection, AdminFlagMakesRepeatedCallsHarmlessAndAFailedConnectRetryable) {
    auto client = makeClient(clientProps());
    client->disconnect();  // never connected
    EXPECT_EQ(client->disconnects_m, 0);
    client->connectThrows_m = true;
    EXPECT_THROW(client->connect(), PubSubException);
    EXPECT_EQ(client->getChannelState(), AbstractClient::CLIENT_STATE_CONNECTING);
    EXPECT_FALSE(client->isAdminConnected());

    client->connectThrows_m = false;
    client->connect();
    client->setChannelState(AbstractClient::CLIENT_STATE_CONNECTED);  // the up event
    client->connect();
    EXPECT_EQ(client->connects_m, 2);
    EXPECT_EQ(client->getChannelState(), AbstractClient::CLIENT_STATE_CONNECTED);
    client->disconnect();
    client->disconnect();
    EXPECT_EQ(client->disconnects_m, 1);
    EXPECT_FALSE(client->isAdminConnected());
}

TEST(AbstractClientLastError, SlotHoldsIndependentWholeCopies) {
    auto client = makeClient(clientProps());
    EXPECT_EQ(client->getLastError(), nullptr);
    client->updateLastError("SUBCODE_A", 503, "Service Unavailable", -1);
    auto first = client->getLastError();
    ASSERT_NE(first, nullptr);
    EXPECT_STREQ(first->what(), "PubSubErrorResponseException: 503: Service Unavailable");
    EXPECT_EQ(first->getSubCode() + std::to_string(first->getReturnCode()), "SUBCODE_A-1");

    // A callback thread writes while a traffic thread reads.
    std::atomic<bool> done{false};
    std::thread writer([&] {
        for (int i = 0; i < 2000; ++i) {
            client->updateLastError("W", i, "phrase " + std::to_string(i), i);
        }
        done = true;
    });
    int torn = 0;
    while (!done) {
        auto copy = client->getLastError();
        torn += copy->getResponsePhrase() != "phrase " + std::to_string(copy->getResponseCode()) &&
                copy->getResponseCode() != 503;
    }
    writer.join();
    EXPECT_EQ(torn, 0);
    EXPECT_EQ(first->getResponseCode(), 503) << "a copy does not follow the slot";
    client->clearLastError();
    EXPECT_EQ(client->getLastError(), nullptr);
}

TEST(AbstractClientPublish, CallbackErrorStopsPublishingOnlyWithStopOnError) {
    ClientProperties props = clientProps();
    props.setStopOnError(true);
    auto client = makeClient(props, 2);
    MsgProperties msg;
    std::vector<MsgProperties> batch(2);
    client->raiseAsyncError();  // the refusal's text is the binding test's
    EXPECT_THROW(client->publishMsg(&msg, 0), PubSubException);
    EXPECT_THROW(client->publishSendMultiple(batch, true, 0), PubSubException);
    client->setPublishProps(PublishProperties(), 0, "");
    client->publishSendMultiple(batch, true, 0);
    EXPECT_EQ(client->publishes_m, 1);

    props.setStopOnError(false);
    auto tolerant = makeClient(props);
    tolerant->raiseAsyncError();
    tolerant->publishMsg(&msg, 0);
    EXPECT_EQ(tolerant->publishes_m, 1);
}

TEST(AbstractClientPublish, PublishPropsTakeTheOffsetOfThisClientsStream) {
    auto client = makeClient(clientProps(), 3);
    PublishProperties publish;
    publish.setStreamIdOffset(10);
    publish.setOrderOffset(5);
    publish.setOrderOffsetsForAllPublisherStreams({{12, 700}, {13, 900}});
    client->setPublishProps(publish, 4, "xa1");
    EXPECT_EQ(client->getPubStreamIdInPublishProperties(), 13);
    EXPECT_EQ(client->lastAcked_m, 900U);
    EXPECT_EQ(client->implCall_m, "900/4/xa1");
}

// Client 3 with stream offset 10 and order offset 100.
std::unique_ptr<TestClient> publisher(bool wantPayloadCheck, bool userPropForm = false) {
    ClientProperties props = clientProps();
    props.setWantUserPropToolData(userPropForm);
    auto client = makeClient(props, 3);
    PublishProperties publish;
    publish.setStreamIdOffset(10);
    publish.setOrderOffset(100);
    client->setPublishProps(publish, 0, "");
    StatsCustomizationProperties tx;
    tx.setWantOrderCheckPublisherStreamNumber(true);
    tx.setWantLatency(true);
    tx.setWantPayloadCheck(wantPayloadCheck);
    client->setPublishStatsProps(tx);
    return client;
}

ToolData decodeAttachment(const MsgProperties& msg) {
    ToolData td;
    td.decode(msg.getAttachment().data(), msg.getAttachment().data() + msg.getAttachmentSize());
    return td;
}

TEST(AbstractClientToolData, RecordOfAMessageNumberIsWrittenOverTheAttachment) {
    auto client = publisher(true);
    MsgProperties msg;
    msg.setMsgBody("<body/>");
    std::string attachment;
    for (int i = 0; i < 64; ++i) {
        attachment += static_cast<char>('A' + i % 26);
    }
    msg.setAttachment(attachment);
    client->updateToolData(&msg, 7, 0);
    msg.setRepublished(true);  // the publisher marks a repeated id afterwards
    const ToolData& filled = *msg.getToolData();
    const UINT32 recordSize = filled.getEncodedSize();
    EXPECT_EQ(filled.getCrcXmlPayload(), CRC::crc32("<body/>"));
    EXPECT_EQ(filled.getCrcBinAttach(), CRC::crc32(attachment.substr(recordSize)));

    const UINT64 before = OS::numClockCycles();
    client->setToolDataAsAttachment(&msg);
    ASSERT_EQ(msg.getAttachmentSize(), 64U);
    ToolData received = decodeAttachment(msg);
    EXPECT_EQ(received.getDecodedSize(), recordSize);
    EXPECT_EQ(received.getMsgId(), 107U);
    EXPECT_EQ(received.getStreamId(), 13);
    EXPECT_TRUE(received.getRepublished());
    EXPECT_GE(received.getLatency(), before) << "stamped at send";
    EXPECT_EQ(msg.getAttachment().substr(recordSize), attachment.substr(recordSize));

    client->updateToolData(&msg, 8, 12345);  // a time stamp from the schedule is kept
    client->setToolDataAsAttachment(&msg);
    received = decodeAttachment(msg);
    EXPECT_EQ(received.getLatency(), 12345U);
    EXPECT_FALSE(received.getRepublished());
}

TEST(AbstractClientToolData, ShortAttachmentBecomesTheRecordAndPropertyFormChecksItAll) {
    auto client = publisher(true);
    MsgProperties shortOne;
    shortOne.setAttachment(std::string(10, 'z'));
    client->updateToolData(&shortOne, 1, 0);
    EXPECT_FALSE(shortOne.getToolData()->hasCrcBinAttach()) << "no user bytes behind the record";
    client->setToolDataAsAttachment(&shortOne);
    EXPECT_EQ(shortOne.getAttachmentSize(), 28U);
    EXPECT_EQ(decodeAttachment(shortOne).getMsgId(), 101U);

    auto properties = publisher(true, true);
    properties->updateToolData(&shortOne, 1, 0);
    EXPECT_EQ(shortOne.getToolData()->getCrcBinAttach(), CRC::crc32(shortOne.getAttachment()));

    auto quiet = makeClient(clientProps());
    EXPECT_FALSE(quiet->publishWantToolData());
    MsgProperties plain;
    plain.setAttachment("user bytes");
    quiet->updateToolData(&plain, 3, 0);
    quiet->setToolDataAsAttachment(&plain);
    EXPECT_EQ(plain.getAttachment(), "user bytes");
}

TEST(AbstractClientConstruction, SubscriberOrderOffsetsAreTakenByClientNumber) {
    ClientProperties props = clientProps();
    props.setSubOrderOffsets({{{1, 50}}, {{1, 70}, {4, 9}}});
    EXPECT_EQ(makeClient(props, 2)->getSubOrderOffsets(),
              (std::map<INT32, UINT64>{{1, 70}, {4, 9}}));
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    const char* expected =
        "ERROR: Illegal values used for subscriber order offsets.\n"
        "       What was read is equivalent to 1@50 ; 1@70,4@9\n";
    EXPECT_EXIT(makeClient(props, 3), ::testing::ExitedWithCode(255), expected);
    EXPECT_EXIT(makeClient(props, 0), ::testing::ExitedWithCode(255), expected);
}

// The features that open the slow path show in what the receive tests count;
// here the conditions that a count cannot show.
TEST(AbstractClientConstruction, SlowPathIsChosenByTheFeaturesInForce) {
    ClientProperties props = clientProps();
    props.setSlowSubDelayInMillis(-5);
    EXPECT_FALSE(makeClient(props)->wantSlowPath()) << "a negative delay alone";
    props.setSlowSubDelayCount(1);
    EXPECT_TRUE(makeClient(props)->wantSlowPath());

    StatsCustomizationProperties fanout;
    fanout.setFirstLastLatencyFanout(3);
    fanout.setWantOrderCheckPublisherStreamNumber(true);
    fanout.setWantOrderCheckTopicSequenceNumber(true);
    EXPECT_FALSE(makeClient(clientProps(), 1, fanout)->wantSlowPath())
        << "order checks are off under a fan-out";
}

// The count down of a delay is checked by the receive tests.
TEST(AbstractClientSlowSubscriber, DelayEndsWhenSwitchedOffOrDisconnected) {
    ClientProperties props = clientProps();
    props.setSlowSubDelayInMillis(3000);
    props.setSlowSubDelayCount(-1);
    auto slow = makeClient(props);
    slow->connect();
    const auto start = std::chrono::steady_clock::now();
    std::thread context([&] { slow->slowSubDelayImpl(); });
    std::this_thread::sleep_for(150ms);
    slow->slowSubEnable(false);
    context.join();
    const auto took = std::chrono::steady_clock::now() - start;
    EXPECT_GE(took, 150ms);
    EXPECT_LT(took, 1000ms) << "a switched-off delay ends within a piece";
    EXPECT_EQ(slow->slowSubCount(), -1);

    slow->slowSubEnable(true);
    slow->disconnect();
    const auto again = std::chrono::steady_clock::now();
    slow->slowSubDelayImpl();
    EXPECT_LT(std::chrono::steady_clock::now() - again, 100ms) << "no delay once disconnected";
}

}  // namespace
}  // namespace zorvane::pubsub
