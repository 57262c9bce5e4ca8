// Helpers of the direct messaging tests: connected sessions whose received messages are
// recorded, and messages to send.
#pragma once

#include <cstring>
#include <set>
#include <string>
#include <vector>

#include "MsgTestSupport.h"
#include "SessionTestSupport.h"
#include "zorClientMsg.h"

namespace zctest {

// What a receive callback saw of one message.
struct Received {
    std::string topic;
    std::string attachment;
    std::vector<zorClient_uint32_t> consumerIds;  // read up to the end marker
    zorClient_int64_t topicSequence = 0;
    bool discardIndication = false;
    void* dispatchUser = nullptr;  // the user pointer of the callback that got it
};

inline Received describe(zorClient_opaqueMsg_pt msg, void* user_p) {
    Received r;
    r.dispatchUser = user_p;
    zorClient_destination_t destination{};
    if (zorClient_msg_getDestination(msg, &destination, sizeof destination) == ZORCLIENT_OK) {
        r.topic = destination.dest;
    }
    r.attachment = zorclient_test::attachmentOf(msg);
    zorClient_consumerId_t id = 0;
    for (zorClient_uint32_t i = 0; zorClient_msg_getConsumerId(msg, i, &id), id != 0xFFFFFFFFu;
         ++i) {
        r.consumerIds.push_back(id);
    }
    zorClient_msg_getTopicSequenceNumber(msg, &r.topicSequence);
    r.discardIndication = zorClient_msg_isDiscardIndication(msg) != 0;
    return r;
}

// A connected session that records what it receives (also through dispatch callbacks, which get
// dispatchCallback with a user pointer of the test's choice). onMessage runs inside the
// callback; returning true keeps the message (TAKE_MSG), which the test then frees.
class Peer {
  public:
    Peer(zorClient_opaqueContext_pt context, std::vector<const char*> props = {}) {
        EXPECT_EQ(ZORCLIENT_OK, createSession(context, std::move(props), &events, &session,
                                              &Peer::rxCallback, this))
            << lastError().errorStr;
        EXPECT_EQ(ZORCLIENT_OK, zorClient_session_connect(session)) << lastError().errorStr;
    }
    ~Peer() { zorClient_session_destroy(&session); }

    void subscribe(const char* topic_p, zorClient_subscribeFlags_t flags = 0) {
        EXPECT_EQ(ZORCLIENT_OK, zorClient_session_topicSubscribeExt(session, flags, topic_p))
            << lastError().errorStr;
    }
    std::vector<Received> received() const {
        std::lock_guard<std::mutex> lock(mutex_m);
        return received_m;
    }
    std::size_t count() const { return received().size(); }
    bool waitFor(std::size_t n) const {
        return waitUntil([&] { return count() >= n; });
    }
    zorClient_stats_t rx(zorClient_stats_rx id) const {
        zorClient_stats_t value = 0;
        zorClient_session_getRxStat(session, id, &value);
        return value;
    }
    zorClient_stats_t tx(zorClient_stats_tx id) const {
        zorClient_stats_t value = 0;
        zorClient_session_getTxStat(session, id, &value);
        return value;
    }

    static zorClient_rxMsgCallback_returnCode_t dispatchCallback(zorClient_opaqueSession_pt,
                                                                 zorClient_opaqueMsg_pt msg,
                                                                 void* user_p);

    zorClient_opaqueSession_pt session = nullptr;
    EventLog events;
    std::function<bool(zorClient_opaqueMsg_pt)> onMessage;

  private:
    static zorClient_rxMsgCallback_returnCode_t rxCallback(zorClient_opaqueSession_pt,
                                                           zorClient_opaqueMsg_pt msg,
                                                           void* user_p) {
        return static_cast<Peer*>(user_p)->record(msg, nullptr);
    }
    zorClient_rxMsgCallback_returnCode_t record(zorClient_opaqueMsg_pt msg, void* dispatch_p) {
        {
            std::lock_guard<std::mutex> lock(mutex_m);
            received_m.push_back(describe(msg, dispatch_p));
        }
        return onMessage && onMessage(msg) ? ZORCLIENT_CALLBACK_TAKE_MSG : ZORCLIENT_CALLBACK_OK;
    }

    mutable std::mutex mutex_m;
    std::vector<Received> received_m;
};

// Dispatch callbacks get {peer, tag}: the peer records the message with the tag.
struct DispatchTag {
    Peer* peer;
    int tag;
};
inline zorClient_rxMsgCallback_returnCode_t Peer::dispatchCallback(zorClient_opaqueSession_pt,
                                                                   zorClient_opaqueMsg_pt msg,
                                                                   void* user_p) {
    return static_cast<DispatchTag*>(user_p)->peer->record(msg, user_p);
}

// A message on topic with an attachment, freed at the end of the scope.
class OutMsg {
  public:
    explicit OutMsg(const char* topic_p, const std::string& attachment = "payload") {
        EXPECT_EQ(ZORCLIENT_OK, zorClient_msg_alloc(&msg));
        zorClient_msg_setTopicPtr(msg, topic_p);
        zorClient_msg_setBinaryAttachment(msg, attachment.data(),
                                          static_cast<zorClient_uint32_t>(attachment.size()));
    }
    ~OutMsg() { zorClient_msg_free(&msg); }
    OutMsg(const OutMsg&) = delete;
    OutMsg& operator=(const OutMsg&) = delete;
    operator zorClient_opaqueMsg_pt() const { return msg; }

    zorClient_opaqueMsg_pt msg = nullptr;
};

inline zorClient_returnCode_t send(zorClient_opaqueSession_pt session, const char* topic_p,
                                   const std::string& attachment = "payload") {
    OutMsg msg(topic_p, attachment);
    return zorClient_session_sendMsg(session, msg);
}

// Direct messaging tests: library started, one pumped context, pools checked at the end.
class DirectTest : public PumpedTest {
  protected:
    void TearDown() override {
        pumped_m.reset();
        EXPECT_EQ(0u, zorclient_test::allocated()) << "messages or blocks left allocated";
        PumpedTest::TearDown();
    }
};

}  // namespace zctest
