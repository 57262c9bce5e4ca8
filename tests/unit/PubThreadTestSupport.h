// What the publisher thread tests share: a clock stepped by hand and a
// client that records every send at that clock's time. Time moves only when
// the thread waits, sleeps or spins, or when a send is charged a cost, so a
// run is exact whatever the machine's load. The thread under test is their
// only user while it runs; the test reads them after wait().
#pragma once

#include <algorithm>
#include <functional>
#include <string>
#include <vector>

#include "common/PubSubException.h"
#include "tests/unit/NullClient.h"
#include "vexload/ClientPubThread.h"

namespace zorvane::pubsub {

// A 1 GHz cycle counter that is the nanosecond clock.
class FakePubClock : public PubTimeSource {
  public:
    static constexpr UINT64 START_NS = 1000000000000000ULL;
    UINT64 cpuSpeedInHz() override { return 1000000000ULL; }
    UINT64 nowInUs() override { return nowNs_m / 1000; }
    INT64 waitUntil(UINT64 timeInNs) override {
        ++waits_m;
        if (onWait_m) {
            onWait_m();
        }
        const auto left = static_cast<INT64>(timeInNs - nowNs_m);
        nowNs_m = std::max(nowNs_m, timeInNs);
        return left;
    }
    UINT64 numClockCycles() override { return nowNs_m; }
    void spinUntilCycles(UINT64 target) override { nowNs_m = std::max(nowNs_m, target); }
    void sleepInUs(int us) override { nowNs_m += static_cast<UINT64>(us) * 1000; }
    void sleepInSec(int s) override {
        ++secondSleeps_m;
        nowNs_m += static_cast<UINT64>(s) * 1000000000ULL;
        if (onSleepSec_m) {
            onSleepSec_m();
        }
    }
    UINT64 nowNs_m = START_NS;
    int waits_m = 0, secondSleeps_m = 0;
    std::function<void()> onWait_m, onSleepSec_m;
};

struct SendRecord {
    UINT64 timeNs;
    std::vector<long long> ids;  // the message id, or the send vector's ids
    std::string text;            // topic, partition key, object type, ack mark, attachment
    UINT64 latencyStamp;
    bool republished;
};

struct CommitRecord {
    long long lastId;  // of the last send before the commit
    bool wantRollback;
};

// Records each send (message ids come from the tool data) and each commit.
// costNs_m moves the clock per send; failWhen_m may throw to fail an
// attempt; commitFails_m may throw to fail commit number n (from 1).
class RecordingClient : public NullClient {
  public:
    RecordingClient(FakePubClock& clock, const ClientProperties& props = defaultProps())
        : NullClient(props, 1, 1000000000ULL, StatsCustomizationProperties(), nullptr),
          clock_m(clock) {}
    std::vector<SendRecord> sends_m;
    int attempts_m = 0;
    bool connectThrows_m = false;
    std::function<UINT64(INT64 id)> costNs_m;
    std::function<void(INT64 id, int attempt)> failWhen_m;
    std::vector<CommitRecord> commits_m;
    std::function<void(int commitNo)> commitFails_m;

  protected:
    void connectImpl() override {
        if (connectThrows_m) {
            throw PubSubException("refused");
        }
        setChannelState(CLIENT_STATE_CONNECTED);  // the session's up event
    }
    void publishMsgImpl(MsgProperties* msg_p, INT32) override {
        const std::string text = msg_p->getTopic() + "|" + msg_p->getPartitionKey() + "|" +
                                 std::to_string(msg_p->getMsgObjType()) +
                                 (msg_p->getAckImmediately() ? "!" : "") + "|" +
                                 msg_p->getAttachment();
        record({static_cast<long long>(msg_p->getToolData()->getMsgId())}, text,
               msg_p->getToolData()->getLatency(), msg_p->getRepublished());
    }
    void publishSendMultipleImpl(std::vector<MsgProperties>&, bool, INT32) override {
        record(getSendVector(0), "", 0, false);
    }
    void commitTransactionOnCurrPubImpl(INT32, bool wantRollback) override {
        commits_m.push_back({sends_m.empty() ? 0 : sends_m.back().ids.back(), wantRollback});
        if (commitFails_m) {
            commitFails_m(static_cast<int>(commits_m.size()));
        }
    }

  private:
    void record(const std::vector<long long>& ids, const std::string& text, UINT64 stamp,
                bool republished) {
        ++attempts_m;
        if (failWhen_m) {
            failWhen_m(ids.back(), attempts_m);
        }
        sends_m.push_back({clock_m.nowNs_m, ids, text, stamp, republished});
        if (costNs_m) {
            clock_m.nowNs_m += costNs_m(ids.back());
        }
    }
    FakePubClock& clock_m;
};

// Messages whose topics name their list position: "t0", "t1", ...
inline std::vector<MsgProperties> topicMessages(int count) {
    std::vector<MsgProperties> msgs(static_cast<size_t>(count));
    for (int i = 0; i < count; ++i) {
        msgs[static_cast<size_t>(i)].setTopic("t" + std::to_string(i));
    }
    return msgs;
}

inline PublishProperties publishAt(double rate, INT64 numMsgs) {
    PublishProperties props;
    props.setMsgRate(rate);
    props.setNumMsgsPerClient(numMsgs);
    return props;
}

// Configures (with message ids in the tool data), runs and joins.
inline void runToEnd(ClientPubThread& thread, const std::vector<MsgProperties>& msgs,
                     const PublishProperties& props, bool wantLatency = false) {
    StatsCustomizationProperties stats;
    stats.setWantOrderCheckPublisherStreamNumber(true);
    stats.setWantLatency(wantLatency);
    thread.configurePublish(msgs, props, stats, "");
    thread.start();
    thread.wait();
}

}  // namespace zorvane::pubsub
