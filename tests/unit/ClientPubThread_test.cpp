#include "vexload/ClientPubThread.h"

#include <gtest/gtest.h>

#include <map>
#include <numeric>
#include <string>
#include <vector>

#include "tests/unit/LogCapture.h"
#include "tests/unit/PubThreadTestSupport.h"
#include "zorClient.h"

namespace zorvane::pubsub {
namespace {

using testing::internal::CaptureStdout;
using testing::internal::GetCapturedStdout;
constexpr UINT64 MS = 1000000;  // nanoseconds
constexpr UINT64 T0 = FakePubClock::START_NS;

struct Rig {
    explicit Rig(const ClientProperties& props = NullClient::defaultProps(), INT64 seed = 1)
        : client(clock, props), thread(&client, 0, seed, &clock) {}
    std::vector<long long> ids() const {
        std::vector<long long> all;
        for (const SendRecord& send : client.sends_m) {
            all.insert(all.end(), send.ids.begin(), send.ids.end());
        }
        return all;
    }
    // Ids of the sends that went out marked republished.
    std::vector<long long> republishedIds() const {
        std::vector<long long> ids;
        for (const SendRecord& send : client.sends_m) {
            if (send.republished) {
                ids.push_back(send.ids.back());
            }
        }
        return ids;
    }
    FakePubClock clock;
    RecordingClient client;
    ClientPubThread thread;
};

std::vector<long long> range(long long first, long long last) {
    std::vector<long long> ids(static_cast<size_t>(last - first + 1));
    std::iota(ids.begin(), ids.end(), first);
    return ids;
}

// Send times after T0 of a run (rate check every 100) whose message stallId
// takes stallNs to send.
std::vector<UINT64> sendTimes(const PublishProperties& props, INT64 stallId = 0, UINT64 stallNs = 0,
                              const std::string& catchupLimit = "") {
    ClientProperties clientProps = NullClient::defaultProps();
    if (!catchupLimit.empty()) {
        clientProps.setExtraPropsList({ClientPubThread::MAX_CATCHUP_KEY, catchupLimit});
    }
    clientProps.setRateCheckInterval(100);
    Rig rig(clientProps);
    rig.client.costNs_m = [&](INT64 id) { return id == stallId ? stallNs : 0; };
    runToEnd(rig.thread, topicMessages(1), props);
    std::vector<UINT64> times;
    for (const SendRecord& send : rig.client.sends_m) {
        times.push_back(send.timeNs - T0);
    }
    return times;
}

TEST(ClientPubThreadSchedule, EachMessageGoesAtItsSlotWhateverTheSendCost) {
    Rig rig;
    rig.client.costNs_m = [](INT64 id) { return static_cast<UINT64>(id * 7919 % 1900000); };
    runToEnd(rig.thread, topicMessages(1), publishAt(500, 20000));
    ASSERT_EQ(rig.client.sends_m.size(), 20000u);
    for (size_t i = 0; i < rig.client.sends_m.size(); ++i) {
        ASSERT_EQ(rig.client.sends_m[i].timeNs, T0 + (i + 1) * 2 * MS) << "message " << i + 1;
    }
    EXPECT_EQ(rig.clock.waits_m, 20000);

    // Above 1000 per second only every 100th message waits, for its group.
    const std::vector<UINT64> fast = sendTimes(publishAt(5000, 250));
    for (size_t i = 0; i < fast.size(); ++i) {
        ASSERT_EQ(fast[i], (i + 1) / 100 * 20 * MS) << "message " << i + 1;
    }
    EXPECT_EQ(sendTimes(publishAt(1000, 150))[98], 99 * MS) << "1000 per second: every one";
    EXPECT_EQ(sendTimes(publishAt(1000.1, 150))[98], 0u) << "just above: in groups";
}

TEST(ClientPubThreadSchedule, StallIsCaughtUpUnlessTheRateIsACeilingAndTheLimitPassed) {
    // 100 per second; message 10 takes 1 s. 11 to 109 go at once when the
    // stall ends; from 110 on every message is on its slot again.
    const std::vector<UINT64> caughtUp = sendTimes(publishAt(100, 300), 10, 1000 * MS);
    EXPECT_EQ(caughtUp[10], 1100 * MS);
    EXPECT_EQ(caughtUp[108], 1100 * MS);
    EXPECT_EQ(caughtUp[299], 3000 * MS);

    PublishProperties ceiling = publishAt(100, 300);
    ceiling.setMsgRateIsMax(true);
    const std::vector<UINT64> restarted = sendTimes(ceiling, 10, 1000 * MS);
    EXPECT_EQ(restarted[10], 1100 * MS);
    EXPECT_EQ(restarted[299], 1100 * MS + 289 * 10 * MS) << "the plain rate from the stall on";
    EXPECT_EQ(sendTimes(ceiling, 10, 150 * MS)[24], 250 * MS) << "within 0.2 s: caught up";

    // The limit from the extra properties, in any base strtoll reads.
    EXPECT_EQ(sendTimes(ceiling, 5, 15 * MS, "0")[6], 75 * MS) << "any lateness restarts";
    EXPECT_EQ(sendTimes(publishAt(100, 9), 5, 15 * MS, "0")[6], 70 * MS);
    EXPECT_EQ(sendTimes(ceiling, 5, 40 * MS, "0x2FAF080")[9], 100 * MS);  // 50 ms
    EXPECT_EQ(sendTimes(ceiling, 5, 70 * MS, "0x2FAF080")[9], 160 * MS);
}

TEST(ClientPubThreadSchedule, BurstsAlternatePacedSendingWithSilence) {
    PublishProperties props = publishAt(1000, 300);
    props.setBurstDuration(0.05);
    props.setInterBurstDuration(0.1);
    const std::vector<UINT64> times = sendTimes(props);
    std::vector<int> burstSizes{1};
    for (size_t i = 1; i < times.size(); ++i) {
        const UINT64 gap = times[i] - times[i - 1];
        ASSERT_TRUE(gap == MS || gap == 100 * MS) << "message " << i + 1;
        if (gap == MS) {
            ++burstSizes.back();
        } else {
            burstSizes.push_back(1);
        }
    }
    // 50 ms at 1 per ms; later bursts open with a message at their start.
    EXPECT_EQ(burstSizes, (std::vector<int>{50, 51, 51, 51, 51, 46}));
}

TEST(ClientPubThreadSchedule, SmoothPublishingKeepsItsGridAndCountsLateSlots) {
    ClientProperties props = NullClient::defaultProps();
    props.setSmoothPubCalcLat(true);
    Rig rig(props);
    rig.client.costNs_m = [](INT64 id) { return id == 10 ? 2500000 : 0; };
    runToEnd(rig.thread, topicMessages(1), publishAt(1000, 100), true);
    for (size_t i = 0; i < 100; ++i) {
        ASSERT_EQ(rig.client.sends_m[i].latencyStamp, T0 + (i + 1) * MS) << "the slot is the stamp";
    }
    EXPECT_EQ(rig.client.sends_m[10].timeNs, T0 + 12500000) << "late slots go at once";
    EXPECT_EQ(rig.client.sends_m[12].timeNs, T0 + 13 * MS);
    EXPECT_EQ(rig.thread.getTxStats().getStat(PerfStats::PSM_NUM_TIMES_BEHIND), 2u);
    EXPECT_EQ(rig.thread.getTxStats().getStat(PerfStats::PSM_MAX_CYCLES_BEHIND), 1500000u);
    EXPECT_EQ(rig.clock.waits_m, 0);
}

TEST(ClientPubThreadRun, CountIsSentInListOrderAndTheRunEndsInOrder) {
    LogCapture log;
    Rig rig(NullClient::defaultProps(), 77);
    bool publishingMidRun = false;
    rig.clock.onWait_m = [&] {
        if (rig.clock.waits_m == 2) {
            publishingMidRun = rig.thread.isPublishing() && !rig.thread.isDonePublishing();
            rig.thread.resetStats();  // the measured time starts now
        }
    };
    runToEnd(rig.thread, topicMessages(2), publishAt(1000, 3));
    EXPECT_EQ(rig.ids(), range(1, 3));
    EXPECT_EQ(rig.client.sends_m[2].text.substr(0, 3), "t0|") << "the list is walked in a circle";
    EXPECT_TRUE(publishingMidRun);
    EXPECT_TRUE(rig.thread.isDonePublishing() && !rig.thread.isPublishing());
    EXPECT_EQ(rig.thread.getStartTime(), (T0 + MS) / 1000);
    EXPECT_EQ(rig.thread.getEndTime(), (T0 + 3 * MS) / 1000);
    rig.thread.resetStats();
    EXPECT_EQ(rig.thread.getStartTime() + rig.thread.getEndTime(), 0u) << "not publishing";
    EXPECT_TRUE(
        log.contains("ClientPubThread with producer index 0 initialized with random seed 77"));
    EXPECT_TRUE(log.contains("CLIENT 000001: Sent msg id 3 successfully"));
    runToEnd(rig.thread, topicMessages(2), publishAt(0, 0));
    EXPECT_TRUE(log.contains(
        "Number of messages per client was calculated to be 0. The value for -mn must be greater "
        "than and evenly divisible by -cc."));
    EXPECT_EQ(rig.client.sends_m.size(), 3u);
    EXPECT_TRUE(rig.thread.isDonePublishing());
}

TEST(ClientPubThreadRun, SendVectorsGoOutFullTheLastIdFlushesAndAStopDrops) {
    PublishProperties props = publishAt(500, 25);
    props.setSendVectorSize(10);
    Rig rig, stopped;
    runToEnd(rig.thread, topicMessages(10), props);
    ASSERT_EQ(rig.client.sends_m.size(), 3u);
    EXPECT_EQ(rig.client.sends_m[2].ids, range(21, 25));
    EXPECT_EQ(rig.ids(), range(1, 25));

    stopped.clock.onWait_m = [&] {
        if (stopped.clock.waits_m == 15) {
            stopped.thread.stopPublish();
        }
    };
    runToEnd(stopped.thread, topicMessages(10), props);
    EXPECT_EQ(stopped.ids(), range(1, 10));
}

TEST(ClientPubThreadRun, FailedSendsAreRetriedOnceTheClientIsBack) {
    LogCapture log;
    Rig rig;
    // Message 2 fails twice, message 4 every time; the client is back after
    // a second each time.
    rig.client.failWhen_m = [&](INT64 id, int attempt) {
        if ((id == 2 && attempt < 4) || id == 4) {
            rig.client.setChannelState(AbstractClient::CLIENT_STATE_RECONNECTING);
            throw PubSubException("send failed");
        }
    };
    rig.clock.onSleepSec_m = [&] {
        rig.client.setChannelState(AbstractClient::CLIENT_STATE_CONNECTED);
    };
    runToEnd(rig.thread, topicMessages(1), publishAt(0, 5));
    EXPECT_EQ(rig.ids(), (std::vector<long long>{1, 2, 3, 5}));
    EXPECT_EQ(rig.client.attempts_m, 9) << "3 passes for message 4";
    EXPECT_EQ(rig.clock.secondSleeps_m, 5);
    for (const char* line : {"CLIENT 000001: Cannot publish message due to: send failed",
                             "CLIENT 000001: Publishing resuming following publish error.",
                             "CLIENT 000001 : Unable to successfully publish message number 4. "
                             "Retries exhausted. Moving on to next message."}) {
        EXPECT_TRUE(log.contains(line)) << line;
    }

    ClientProperties noRetries = NullClient::defaultProps();
    noRetries.setReconnectRetries(0);
    Rig down(noRetries);
    down.client.failWhen_m = [&](INT64 id, int) {
        if (id == 3) {
            down.client.setChannelState(AbstractClient::CLIENT_STATE_DISCONNECTED);
            throw PubSubException("gone");
        }
    };
    runToEnd(down.thread, topicMessages(1), publishAt(0, 5));
    EXPECT_EQ(down.client.attempts_m, 3) << "down for good ends the run";

    // A failing vector is still full when the next id arrives.
    PublishProperties vector = publishAt(0, 10);
    vector.setSendVectorSize(3);
    Rig full;
    full.client.failWhen_m = [](INT64, int) { throw PubSubException("no"); };
    runToEnd(full.thread, topicMessages(3), vector);
    EXPECT_EQ(full.client.attempts_m, 3);
    EXPECT_TRUE(log.contains("CLIENT 000001: Send vector too large: 4"));
}

TEST(ClientPubThreadRun, StopOnErrorAndUnexpectedFailuresEndTheRunAndPrintTheCause) {
    LogCapture log;
    ClientProperties soe = NullClient::defaultProps();
    soe.setStopOnError(true);
    Rig stop(soe), async(soe), refused, odd;
    stop.client.failWhen_m = [](INT64 id, int) {
        if (id == 3) {
            throw PubSubException("broken pipe");
        }
    };
    refused.client.connectThrows_m = true;
    odd.client.failWhen_m = [](INT64, int) { throw 42; };
    CaptureStdout();
    runToEnd(stop.thread, topicMessages(1), publishAt(0, 10));
    runToEnd(refused.thread, topicMessages(1), publishAt(0, 10));
    runToEnd(odd.thread, topicMessages(1), publishAt(0, 10));
    async.thread.configurePublish(topicMessages(1), publishAt(0, 10), {}, "");
    async.client.raiseAsyncError();  // a library callback failed
    async.thread.start();
    async.thread.wait();
    EXPECT_EQ(GetCapturedStdout(),
              "\n\nCLIENT 000001: Cannot publish message due to: broken pipe\n\n"
              "\n\nCLIENT 000001 : Error received while connecting channel. Cause:refused\n\n"
              "\n\nCLIENT 000001 : Error received while publishing. Cause:unknown exception\n\n"
              "\n\nCLIENT 000001: Cannot publish message due to: CLIENT 000001: Async exception "
              "occurred.  Aborting publish of message.\n\n\n");
    EXPECT_EQ(stop.client.attempts_m + refused.client.attempts_m + async.client.attempts_m, 3);
    EXPECT_TRUE(refused.thread.isDonePublishing() && odd.thread.isDonePublishing());
    EXPECT_EQ(refused.thread.getEndTime(), T0 / 1000);
}

TEST(ClientPubThreadRun, StopFromTheMainThreadEndsARunOnTheRealClocks) {
    NullClient client(NullClient::defaultProps(), 1, 1000000, {}, nullptr);
    ClientPubThread thread(&client, 0, 1);
    thread.configurePublish(topicMessages(1), publishAt(1000, 1000000000), {}, "");
    thread.start();
    while (!thread.isPublishing() && !thread.isDonePublishing()) {
        OS::sleepInUs(1000);
    }
    thread.stopPublish();
    thread.wait();
    EXPECT_TRUE(thread.isDonePublishing() && !thread.isPublishing());
    EXPECT_GE(thread.getEndTime(), thread.getStartTime());
}

TEST(ClientPubThreadRun, RandomOrderFollowsTheWeightsAndRepeatsWithTheSeed) {
    std::vector<MsgProperties> msgs = topicMessages(3);
    msgs[1].setTopicProbabilityWeight(3);
    msgs[2].setQueueProbabilityWeight(6);
    PublishProperties props = publishAt(0, 10000);
    props.setUseRandomMessageOrder(true);
    Rig rig(NullClient::defaultProps(), 2024), again(NullClient::defaultProps(), 2024);
    runToEnd(rig.thread, msgs, props);
    runToEnd(again.thread, msgs, props);
    std::map<std::string, int> counts;
    for (size_t i = 0; i < rig.client.sends_m.size(); ++i) {
        ++counts[rig.client.sends_m[i].text.substr(0, 2)];
        ASSERT_EQ(rig.client.sends_m[i].text, again.client.sends_m[i].text);
    }
    EXPECT_NEAR(counts["t0"], 1000, 250);
    EXPECT_NEAR(counts["t1"], 3000, 400);
    EXPECT_NEAR(counts["t2"], 6000, 400);
}

TEST(ClientPubThreadRun, KeysTypesAcksAndAttachmentsFollowEachMessage) {
    std::vector<MsgProperties> msgs = topicMessages(2);
    for (MsgProperties& msg : msgs) {
        msg.setOriginalAttachmentSize(32);
        msg.setWantUniqueAttachmentContents(true);
    }
    PublishProperties props = publishAt(0, 4);
    props.setPartitionKeyList({"k1", "a key longer than any short string buffer", "k3"});
    props.setMsgObjTypeList("bm");
    props.setAckImmediatelyInterval(3);
    props.setWantUniqueAttachmentContents(true);
    props.setStreamIdOffset(4);
    Rig rig;
    runToEnd(rig.thread, msgs, props);
    std::string seen;
    for (const SendRecord& send : rig.client.sends_m) {
        seen += send.text.substr(0, 24) + " ";
    }
    EXPECT_EQ(seen,
              "t0|k1|1|:005:00000000001 t1|a key longer than any t0|k3|1!|:005:0000000000 "
              "t1|k1|4|:005:00000000004 ");

    // A lower size limit alone is no random size range: nothing regenerates.
    PublishProperties lowerOnly = publishAt(0, 1);
    lowerOnly.setAttachSizeMin(10);
    msgs[0].setAttachment("user bytes");
    Rig plain;
    runToEnd(plain.thread, msgs, lowerOnly);
    EXPECT_EQ(plain.client.sends_m[0].text, "t0||0|user bytes");
}

TEST(ClientPubThreadRun, ConfigurationsTheLoopCannotRunAreRefused) {
    auto refusal = [](PublishProperties props, ClientProperties clientProps, INT32 index = 0,
                      int numMsgs = 1) -> std::string {
        FakePubClock clock;
        RecordingClient client(clock, clientProps);
        ClientPubThread thread(&client, index, 1, &clock);
        try {
            thread.configurePublish(topicMessages(numMsgs), props, {}, "");
        } catch (const PubSubException& e) {
            return std::string(e.what()).substr(15);  // behind "CLIENT 000001: "
        }
        return "accepted";
    };
    const ClientProperties base = NullClient::defaultProps();
    ClientProperties slowCheck = base, catchup = base;
    slowCheck.setRateCheckInterval(0);
    catchup.setExtraPropsList({ClientPubThread::MAX_CATCHUP_KEY, "12ms"});
    PublishProperties vector = publishAt(0, 5), xa = publishAt(0, 5);
    vector.setSendVectorSize(51);
    xa.setXaSize(10);

    EXPECT_EQ(refusal(publishAt(0, 5), base, 0, 0),
              "Nothing to publish: the list of messages is empty.");
    EXPECT_EQ(refusal(vector, base), "Send vector size 51 is above the largest of 50.");
    vector.setSendVectorSize(50);
    EXPECT_EQ(refusal(vector, base), "accepted");
    EXPECT_EQ(refusal(vector, base, 1).substr(0, 56),
              "Vectored sends need a single publisher thread per client");
    EXPECT_EQ(refusal(publishAt(1e-10, 5), base).substr(0, 12), "Publish rate");
    EXPECT_EQ(refusal(publishAt(5000, 5), slowCheck).substr(0, 30),
              "Rate check interval 0 is below");
    EXPECT_EQ(refusal(publishAt(1000, 5), slowCheck), "accepted");
    EXPECT_EQ(refusal(publishAt(0, 5), catchup),
              "The value of ZORVANE_VEXLOAD_MTR_CATCHUP_NS in the extra properties must be a "
              "number of nanoseconds of 0 or more, not \"12ms\".");
    EXPECT_EQ(refusal(xa, base), "accepted");
    xa.setSendVectorSize(5);
    EXPECT_EQ(refusal(xa, base),
              "Vectored sends (send vector size 5) cannot be published in transactions "
              "(transaction size 10).");
}

std::vector<long long> concat(std::vector<std::vector<long long>> parts) {
    std::vector<long long> all;
    for (const auto& part : parts) {
        all.insert(all.end(), part.begin(), part.end());
    }
    return all;
}

TEST(ClientPubThreadTransactions, EveryNthMessageCommitsEveryMthCommitRollsBackTheRestAtTheEnd) {
    auto commits = [](INT64 numMsgs, INT32 rollbackInterval, bool skipFinal) {
        PublishProperties props = publishAt(0, numMsgs);
        props.setXaSize(10);
        props.setXaRollbackInterval(rollbackInterval);
        props.setSkipFinalCommit(skipFinal);
        Rig rig;
        runToEnd(rig.thread, topicMessages(3), props);
        std::string seen;
        for (const CommitRecord& commit : rig.client.commits_m) {
            seen += std::to_string(commit.lastId) + (commit.wantRollback ? "R " : " ");
        }
        return seen;
    };
    EXPECT_EQ(commits(25, 2, false), "10 20R 25 ");
    EXPECT_EQ(commits(20, 1, false), "10R 20R 20R ") << "the end commits even after a full one";
    EXPECT_EQ(commits(25, 0, true), "10 20 ");

    // A failed send waits a second longer for the transacted session.
    PublishProperties props = publishAt(0, 5);
    props.setXaSize(5);
    Rig rig;
    rig.client.failWhen_m = [&](INT64 id, int attempt) {
        if (id == 3 && attempt == 3) {
            rig.client.setChannelState(AbstractClient::CLIENT_STATE_RECONNECTING);
            throw PubSubException("send failed");
        }
    };
    rig.clock.onSleepSec_m = [&] {
        rig.client.setChannelState(AbstractClient::CLIENT_STATE_CONNECTED);
    };
    runToEnd(rig.thread, topicMessages(1), props);
    EXPECT_EQ(rig.ids(), range(1, 5));
    EXPECT_EQ(rig.clock.secondSleeps_m, 2);
}

TEST(ClientPubThreadTransactions, FailedCommitSendsTheTransactionAgainAsTheErrorAndLimitAllow) {
    LogCapture log;
    PublishProperties props = publishAt(0, 60);
    props.setXaSize(10);
    Rig rolledBack;
    rolledBack.client.commitFails_m = [&](int n) {
        if (n == 5) {
            rolledBack.client.updateLastError("ZORCLIENT_SUBCODE_OK", 0, "", ZORCLIENT_ROLLBACK);
            throw PubSubException("rolled back");
        }
    };
    runToEnd(rolledBack.thread, topicMessages(3), props);
    EXPECT_EQ(rolledBack.ids(), concat({range(1, 50), range(41, 60)}));
    EXPECT_EQ(rolledBack.republishedIds(), range(41, 50));
    EXPECT_TRUE(log.contains(log::LEVEL_INFO,
                             "Received rollback on commit. Resending 10 messages, no duplicated "
                             "expected. Current transaction redelivery counter=1 ."));
    EXPECT_TRUE(log.contains(log::LEVEL_INFO,
                             "CLIENT 000001 : Error received while committing. Cause:rolled back"));

    // A limit of 1 sends each transaction at most twice.
    props.setNumMsgsPerClient(20);
    props.setTransactionRedeliveryLimit(1);
    Rig timedOut;
    timedOut.client.commitFails_m = [&](int n) {
        if (n == 1 || n == 3 || n == 4) {
            timedOut.client.updateLastError("ZORCLIENT_SUBCODE_TIMEOUT", 0, "", ZORCLIENT_FAIL);
            throw PubSubException("timeout");
        }
    };
    runToEnd(timedOut.thread, topicMessages(3), props);
    EXPECT_EQ(timedOut.ids(), concat({range(1, 10), range(1, 10), range(11, 20), range(11, 20)}));
    EXPECT_EQ(log.count("Received TIMEOUT on commit. Resending 10 messages, duplicates possible. "
                        "Current transaction redelivery counter=1 ."),
              2u);
    EXPECT_TRUE(log.contains(log::LEVEL_WARNING,
                             "Received TIMEOUT on commit. NOT resending messages due to "
                             "transaction redelivery limit (1) being reached."));

    // A client without transactions: nothing is resent, and the failing
    // commit at the end is reported as the run's failure.
    Rig unavailable;
    unavailable.client.commitFails_m = [](int) {
        throw PubSubException("CLIENT 000001: Transacted sessions are not available in this build");
    };
    CaptureStdout();
    runToEnd(unavailable.thread, topicMessages(3), props);
    EXPECT_EQ(GetCapturedStdout(),
              "\n\nCLIENT 000001 : Error received while publishing. Cause:CLIENT 000001: "
              "Transacted sessions are not available in this build\n\n");
    EXPECT_EQ(unavailable.ids(), range(1, 20));
    EXPECT_EQ(unavailable.client.commits_m.size(), 3u);
    EXPECT_TRUE(unavailable.thread.isDonePublishing());
}

TEST(ClientPubThreadSwitchover, RepublishesFromTheFirstUnacknowledgedIdOnceReconnected) {
    LogCapture log;
    ClientProperties clientProps = NullClient::defaultProps();
    clientProps.setWantReplicationReconnect(true);
    PublishProperties props = publishAt(0, 150);
    props.setOrderOffset(1000);  // a resumed stream: acknowledged ids carry it
    Rig rig(clientProps);
    rig.client.costNs_m = [&](INT64 id) {
        if (id == 1120 && rig.clock.secondSleeps_m == 0) {
            rig.client.setChannelState(AbstractClient::CLIENT_STATE_RECONNECTING);
            rig.client.setReplicationReconnecting(true);
            rig.client.lastAcked_m = 1097;
        }
        return UINT64{0};
    };
    rig.clock.onSleepSec_m = [&] {
        rig.client.setChannelState(AbstractClient::CLIENT_STATE_CONNECTED);
    };
    runToEnd(rig.thread, topicMessages(7), props);
    EXPECT_EQ(rig.ids(), concat({range(1001, 1120), range(1098, 1150)}));
    EXPECT_EQ(rig.republishedIds(), range(1098, 1120));
    EXPECT_EQ(rig.client.sends_m[120].text.substr(0, 3), "t6|") << "id 98 is list element 6";
    EXPECT_EQ(rig.clock.secondSleeps_m, 1);
    EXPECT_TRUE(log.contains(log::LEVEL_INFO,
                             "CLIENT 000001 : Reconnected following replication switchover.  "
                             "Republishing msgIds: 98 - 120"));

    // A client that does not come back holds the run until it is stopped.
    Rig down(clientProps);
    down.client.costNs_m = [&](INT64 id) {
        if (id == 3) {
            down.client.setChannelState(AbstractClient::CLIENT_STATE_RECONNECTING);
        }
        return UINT64{0};
    };
    down.clock.onSleepSec_m = [&] {
        if (down.clock.secondSleeps_m == 5) {
            down.thread.stopPublish();
        }
    };
    runToEnd(down.thread, topicMessages(1), publishAt(0, 10));
    EXPECT_EQ(down.ids(), range(1, 3));
    EXPECT_TRUE(down.thread.isDonePublishing());
}

}  // namespace
}  // namespace zorvane::pubsub
