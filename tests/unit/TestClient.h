// A client without a library, for tests and benchmarks of AbstractClient:
// on top of NullClient, the Impl operations record what the wrappers hand
// over, and the receive-side operations that need the library read a
// TestMessage instead. Protected state that tests look at is exposed by small
// accessors.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "client/AbstractClient.h"
#include "common/MutexScope.h"
#include "common/PubSubException.h"
#include "tests/unit/NullClient.h"
#include "tests/unit/TestMessage.h"

namespace zorvane::pubsub {

class TestClient : public NullClient {
  public:
    using NullClient::NullClient;
    // Counted, then the real delay; public so that tests can run it.
    void slowSubDelayImpl() override {
        ++slowSubDelays_m;
        AbstractClient::slowSubDelayImpl();
    }
    bool wantSlowPath() const { return wantSlowPathMsgProcess_m; }
    INT32 slowSubCount() const { return slowSubDelayCount_m; }
    UINT64 msgsRecv() const { return msgsRecv_m; }
    // Where the binding counts messages outside transacted sessions.
    PerfStats* receiveStats() { return &stats_m; }
    // What the binding does with each message outside transacted sessions.
    void receive(AbstractMessage& msg) { processMessage(&msg, &stats_m); }
    UINT64 stat(int statType) const { return stats_m.getStatElement(statType); }

    int connects_m = 0, disconnects_m = 0, publishes_m = 0;
    bool connectThrows_m = false;
    std::string implCall_m;
    // The receive side.
    int reflects_m = 0, slowSubDelays_m = 0;
    bool structuredMsgOk_m = true;

  protected:
    void connectImpl() override {
        ++connects_m;
        if (connectThrows_m) {
            throw PubSubException("connect refused");
        }
    }
    void disconnectImpl() override { ++disconnects_m; }
    void setPublishPropsImpl(const PublishProperties& p, INT32 index, std::string xa) override {
        implCall_m = std::to_string(p.getOrderOffset()) + "/" + std::to_string(index) + "/" + xa;
    }
    void publishMsgImpl(MsgProperties*, INT32) override { ++publishes_m; }
    void publishSendMultipleImpl(std::vector<MsgProperties>&, bool, INT32) override {
        ++publishes_m;
    }
    const PerfStats& getRxStatsImpl(bool wantFirstLastStats) override {
        return wantFirstLastStats && firstLastData_mp ? firstLastData_mp->getRxStats() : stats_m;
    }

    void reflectMsgImpl(AbstractMessage*) override { ++reflects_m; }
    bool checkStructuredMsgImpl(AbstractMessage*) override { return structuredMsgOk_m; }
    void readMsgObjectTypeImpl(AbstractMessage* msg_p, MsgObjectTypeReading& reading) override {
        auto* msg = static_cast<TestMessage*>(msg_p);
        if (!msg->objectTypeReadable_m) {
            return;
        }
        reading.type_m = msg->objectType_m;
        if (!msg->objectContentReadable_m) {
            reading.outcome_m = MsgObjectTypeReading::CONTENT_UNREADABLE;
            return;
        }
        reading.content_m = msg->objectContent_m;
        reading.outcome_m = MsgObjectTypeReading::READ;
    }
    // What a binding does, from the parts the view offers.
    void setLastMessageDetails(AbstractMessage* msg_p) override {
        MutexScope lock(&lastMessageDetailsMutex_m);
        lastMessageDetails_m->clear();
        lastMessageDetails_m->setMessageId(msg_p->getMsgId());
        lastMessageDetails_m->setPriority(msg_p->getPriority());
        lastMessageDetails_m->setRedelivered(msg_p->isRedelivered() ? 1 : -1);
        lastMessageDetails_m->setBinaryPayloadSize(
            static_cast<INT32>(msg_p->getAttachEnd() - msg_p->getAttachBegin()));
        appendLastMessageDetailsToHistory();
    }
};

}  // namespace zorvane::pubsub
