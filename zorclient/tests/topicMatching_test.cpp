// Topic matching as a receiver sees it: one session holds every subscription of a table, and the
// consumer ids of each delivered message say exactly which of them matched its topic.
#include <gtest/gtest.h>

#include "DirectTestSupport.h"

namespace {

using namespace zctest;
using Ids = std::vector<zorClient_uint32_t>;

// Subscription number i (1-based) gets consumer id i.
const char* const SUBSCRIPTIONS[] = {
    "a/b/c",   // 1
    "a/*/c",   // 2
    "a/b*",    // 3
    "a/>",     // 4
    ">",       // 5
    "a/b*/>",  // 6
    "*",       // 7
    "x/*",     // 8
    "a/bc/*",  // 9
};

TEST_F(DirectTest, ConsumerIdsNameTheSubscriptionsATopicMatches) {
    Peer receiver(context(), {"SESSION_IGNORE_DUP_SUBSCRIPTION_ERROR", "1"});
    for (const char* subscription_p : SUBSCRIPTIONS) {
        receiver.subscribe(subscription_p);
    }
    const std::vector<std::pair<const char*, Ids>> table = {
        {"a/b/c", {1, 2, 4, 5, 6}},
        {"a/x/c", {2, 4, 5}},
        {"a/b", {3, 4, 5}},  // "b*" takes "b" itself; ">" needs a level behind "a"
        {"a/bcd", {3, 4, 5}},
        {"a/bc/d", {4, 5, 6, 9}},
        {"a/b/c/d", {4, 5, 6}},  // ">" takes any number of levels
        {"a", {5, 7}},
        {"x/y", {5, 8}},
        {"x/y/z", {5}},   // "*" is exactly one level
        {"ab/b", {5}},    // levels compare whole, not as text prefixes
        {"a/*", {4, 5}},  // a published "*" is a plain character
    };
    Peer sender(context());
    for (const auto& [topic, ids] : table) {
        ASSERT_EQ(ZORCLIENT_OK, send(sender.session, topic)) << lastError().errorStr;
    }
    ASSERT_TRUE(receiver.waitFor(table.size()));
    const std::vector<Received> received = receiver.received();
    for (std::size_t i = 0; i < table.size(); ++i) {
        EXPECT_EQ(table[i].first, received[i].topic);
        EXPECT_EQ(table[i].second, received[i].consumerIds) << table[i].first;
    }
    // Unsubscribing "a/>" (id 4) and ">" (id 5) leaves ids unchanged for the rest.
    EXPECT_EQ(ZORCLIENT_OK, zorClient_session_topicUnsubscribeExt(receiver.session, 0, "a/>"));
    EXPECT_EQ(ZORCLIENT_OK, zorClient_session_topicUnsubscribeExt(receiver.session, 0, ">"));
    ASSERT_EQ(ZORCLIENT_OK, send(sender.session, "a/b/c"));
    ASSERT_EQ(ZORCLIENT_OK, send(sender.session, "x/y/z"));  // matches nothing now
    ASSERT_TRUE(receiver.waitFor(table.size() + 1));
    EXPECT_EQ((Ids{1, 2, 6}), receiver.received().back().consumerIds);
    EXPECT_EQ(1u, sender.tx(ZORCLIENT_STATS_TX_DISCARD_NO_MATCH));
}

TEST_F(DirectTest, MalformedTopicsAreRefusedWithTheirReason) {
    Peer peer(context());
    const std::vector<std::pair<std::string, zorClient_subCode_t>> bad = {
        {"", ZORCLIENT_SUBCODE_INVALID_TOPIC_SYNTAX},
        {"a//b", ZORCLIENT_SUBCODE_INVALID_TOPIC_SYNTAX},
        {"/a", ZORCLIENT_SUBCODE_INVALID_TOPIC_SYNTAX},
        {"a/", ZORCLIENT_SUBCODE_INVALID_TOPIC_SYNTAX},
        {"a/b*c", ZORCLIENT_SUBCODE_INVALID_TOPIC_SYNTAX},
        {"a/>/b", ZORCLIENT_SUBCODE_INVALID_TOPIC_SYNTAX},
        {std::string(256, 'a'), ZORCLIENT_SUBCODE_TOPIC_TOO_LARGE},
    };
    for (const auto& [topic, subCode] : bad) {
        EXPECT_EQ(ZORCLIENT_FAIL,
                  zorClient_session_topicSubscribeExt(peer.session, 0, topic.c_str()))
            << topic;
        EXPECT_EQ(subCode, lastError().subCode) << topic;
    }
    EXPECT_NE(nullptr, std::strstr(lastError().errorStr, "256 bytes"));
    EXPECT_EQ(ZORCLIENT_FAIL, send(peer.session, "a//b"));
    EXPECT_EQ(ZORCLIENT_SUBCODE_INVALID_TOPIC_SYNTAX, lastError().subCode);
    EXPECT_EQ(ZORCLIENT_OK,
              zorClient_session_topicSubscribeExt(peer.session, 0, std::string(255, 'a').c_str()));
}

// A send looks for "//" eight bytes at a time: a pair must be found wherever it falls against
// those words, and nothing else may look like one (bytes one bit away from "/", non-ASCII).
TEST_F(DirectTest, AnEmptyLevelIsFoundAtAnyPlaceInAPublishedTopic) {
    Peer peer(context());
    for (std::size_t size = 3; size <= 19; ++size) {
        for (std::size_t at = 1; at + 2 < size; ++at) {
            std::string topic(size, 'a');
            topic[at] = '/';
            topic[at + 1] = '/';
            EXPECT_EQ(ZORCLIENT_FAIL, send(peer.session, topic.c_str())) << topic;
            topic[at + 1] = '.';     // '/' ^ 1
            topic[at - 1] = '\xaf';  // '/' | 0x80
            EXPECT_EQ(ZORCLIENT_OK, send(peer.session, topic.c_str())) << topic;
        }
    }
}

}  // namespace
