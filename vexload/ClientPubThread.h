// One publisher thread of a client: turns a message list and a rate into
// traffic.
//
// Pacing is open loop. Message n (counted from 1) is due at
// start + n * period, the period being 1e9 / rate nanoseconds, truncated; a
// late send does not move the times of the messages after it, so a stall
// is followed by back-to-back sends until the schedule is met again, and
// the rate holds as an average over the run. Above RATE_CHECK_THRESHOLD
// messages per second only every rate-check-interval-th message (from the
// client record) reads the clock and waits; the messages in between go out
// back to back. With the rate as a ceiling (msgRateIsMax_m) a schedule more
// than the catch-up limit behind is given up and restarted from now instead
// of being caught up. A rate of 0 publishes unpaced.
//
// Other modes: smooth publishing spins on the cycle counter and steps each
// slot from the previous slot (latency runs; the slot's time travels in
// the message as its send time stamp); bursts alternate a burst duration of
// paced sending with silence; a send vector collects messages and sends
// them in one call; random order draws messages by weight.
//
// Transactions: every xaSize-th message closes a transaction, every
// rollback-interval-th of them as a rollback, and the run commits what is
// left at its end unless told to leave it open. A commit that fails with a
// rollback, a timeout or an unknown outcome moves the id back to the first
// message of the transaction, which is sent again marked republished, as
// often as the redelivery limit allows. After a replication switchover the
// id moves back to the first message the broker has not acknowledged.
// Both go through the client's transaction and acknowledgement operations;
// a client that cannot do them says so through the exception it throws.
//
// Ownership: the client is not owned and must outlive the thread; the
// message list is the thread's own copy; the time source (tests) is not
// owned. The creating collection owns the thread.
//
// Threads: configurePublish, start, stopPublish and the getters are called
// by the main thread; runImpl runs on the thread. The flags and times that
// the main thread polls are atomics. getTxStats is meant to be read after
// the thread has ended, and resetStats races with a smooth publisher that
// is counting (PerfStats takes no lock). Several publisher threads of one
// client share that client without a lock of their own.
//
// Hot path: the loop allocates nothing per message; configurePublish
// reserves what attachment regeneration and partition keys need.
#pragma once

#include <atomic>
#include <memory>
#include <string>
#include <vector>

#include "client/AbstractClient.h"
#include "common/MsgProperties.h"
#include "common/OSThread.h"
#include "common/PerfStats.h"
#include "common/PublishProperties.h"
#include "common/RandomIndexSampler.h"
#include "common/StatsCustomizationProperties.h"
#include "common/dataTypes.h"
#include "vexload/PubTimeSource.h"

namespace zorvane::pubsub {

class ClientPubThread : public OSThread {
  public:
    // How far behind its schedule a publisher with the rate as a ceiling
    // may fall before the schedule is restarted: 0.2 seconds, unless the
    // client's extra properties ("-epl=") give MAX_CATCHUP_KEY.
    static constexpr INT64 DEFAULT_MAX_CATCHUP_IN_NS = 200000000;
    static constexpr const char* MAX_CATCHUP_KEY = "ZORVANE_VEXLOAD_MTR_CATCHUP_NS";
    // Up to this rate every message waits for its time.
    static constexpr double RATE_CHECK_THRESHOLD = 1000.0;
    // Send attempts per message when the client record gives none.
    static constexpr int DEFAULT_MAX_PUB_RETRIES = 3;

    // Thread number producerIndex (from 0) of client_p, drawing its random
    // choices from a state seeded with randomSeed. timeSource_p null means
    // the real clocks; a test passes its own (not owned). Logs the seed at
    // debug level.
    ClientPubThread(AbstractClient* client_p, INT32 producerIndex, INT64 randomSeed,
                    PubTimeSource* timeSource_p = nullptr);
    // Stops the run and joins the thread.
    ~ClientPubThread() override;

    ClientPubThread(const ClientPubThread&) = delete;
    ClientPubThread& operator=(const ClientPubThread&) = delete;

    // Prepares a run; call before start(), while the thread does not run.
    // Hands the statistics and publish records to the client, copies msgs,
    // and takes the rate, count, send vector, bursts, transactions, random
    // order, attachment regeneration, partition keys and object types from
    // publishProps, stop-on-error and republishing after a switchover from
    // the client record. A count of 0 is logged and gives a run that publishes
    // nothing.
    //
    // Throws PubSubException, before anything is changed, for a
    // configuration the loop cannot run: an empty message list with
    // messages to send, a send vector above PUB_SEND_VECTOR_MAX_SIZE or on
    // a client with more than one publisher thread (the client keeps one
    // send vector), a rate that is negative or too small for a period in
    // nanoseconds, smooth publishing without a rate, a rate check interval
    // below 1 above the threshold, a catch-up limit that is not a number of
    // 0 or more, an empty random attachment size range, and vectored sends
    // in transactions (the vectored send knows no transaction).
    void configurePublish(const std::vector<MsgProperties>& msgs,
                          const PublishProperties& publishProps,
                          const StatsCustomizationProperties& statsCust,
                          const std::string& xaSessionName);

    // Asks the run to end after the message in hand; any thread. Messages
    // collected for a send vector are dropped.
    void stopPublish();

    // True from just before the first message until after the last.
    bool isPublishing() const { return isPublishing_m.load(std::memory_order_acquire); }
    // True once the run has ended, however it ended.
    bool isDonePublishing() const { return donePublishing_m.load(std::memory_order_acquire); }
    // Wall-clock microseconds of the start and end of the run; 0 if none.
    UINT64 getStartTime() const { return startTime_m.load(std::memory_order_relaxed); }
    UINT64 getEndTime() const { return endTime_m.load(std::memory_order_relaxed); }
    UINT64 getLastPubTime() const { return lastPubTime_m.load(std::memory_order_relaxed); }
    void setLastPubTime(UINT64 timeInUs) { lastPubTime_m.store(timeInUs); }
    std::string getClientName() { return client_mp->getClientName(); }
    INT32 getClientId() const { return client_mp->getClientId(); }
    // The smooth publisher's lateness counters (PSM_NUM_TIMES_BEHIND,
    // PSM_MAX_CYCLES_BEHIND, in cycles).
    const PerfStats& getTxStats() const { return txStats_m; }

    // Starts the measured time anew: now when publishing, else 0; no end
    // time; counters zeroed.
    void resetStats();

  protected:
    void* runImpl() override;

  private:
    // The locals of one run that outlive a message (defined with the loop).
    struct PubRun;

    // The whole run on the given clocks: set-up, the loop, the end.
    // Instantiated for OsPubTimeSource and PubTimeSource only.
    template <class Clock>
    void publishRun(Clock& clock);
    template <class Clock>
    void setUpRun(Clock& clock, PubRun& run);
    // Waits for the message's slot: smooth, or bursts and the schedule.
    template <class Clock>
    void paceSmooth(Clock& clock, PubRun& run);
    template <class Clock>
    void paceOpenLoop(Clock& clock, PubRun& run);
    template <class Clock>
    void sendWithRetries(Clock& clock, PubRun& run, INT32 msgIndex);
    // A send failed without stop-on-error: wait until the client is back,
    // or give up when it is down for good.
    template <class Clock>
    void waitForClientAfterError(Clock& clock);
    template <class Clock>
    void finishRun(Clock& clock, PubRun& run);

    // The id of the next message: one on, or back to the first message
    // not acknowledged after a switchover.
    INT64 nextMsgId(PubRun& run);
    // Republishing after a switchover: holds the run until the client is
    // connected again.
    template <class Clock>
    void waitForReconnection(Clock& clock);
    // Chooses the message for the id in hand and makes it ready to send.
    INT32 prepareMessage(PubRun& run);
    // After the send attempts of one message.
    void finishMessage(const PubRun& run);
    // Closes the transaction that the message in hand completes.
    void commitInLoop(PubRun& run);
    // Closes the last transaction of the run; exceptions go to the caller.
    void commitAtEnd(const PubRun& run);
    // A commit in the loop failed with cause: decides from the client's
    // last error whether the transaction goes out again (moving the id
    // back), and logs why.
    void handleCommitFailure(PubRun& run, const char* cause);
    // Logs at error level and writes to standard output, framed by blank
    // lines, as every failure that ends a run is reported.
    void reportFailure(const std::string& text);

    // Throws PubSubException naming what configurePublish cannot run.
    void checkPublishConfiguration(const std::vector<MsgProperties>& msgs,
                                   const PublishProperties& publishProps) const;
    // The catch-up limit from the client's extra properties.
    INT64 readMaxCatchupInNs() const;

    AbstractClient* client_mp;     // not owned
    PubTimeSource* timeSource_mp;  // not owned; null: the real clocks
    std::vector<MsgProperties> msgs_m;
    double msgRate_m = 0.0;  // messages per second; 0: unpaced
    bool msgRateIsMax_m = false;
    INT64 numMsgs_m = 0;  // messages of this thread's run
    std::atomic<bool> shutdownFlag_m{false};
    INT32 sendVectorSize_m = 0;  // 0 or below: one send per message
    bool wantStopOnError_m = false;
    std::atomic<UINT64> startTime_m{0};  // microseconds
    std::atomic<UINT64> endTime_m{0};
    std::atomic<UINT64> lastPubTime_m{0};
    std::atomic<bool> isPublishing_m{false};
    std::atomic<bool> donePublishing_m{false};
    double burstDuration_m = 0.0;  // seconds
    double interBurstDuration_m = 0.0;
    bool burstMode_m = false;
    INT32 producerIndex_m;
    UINT64 cpuSpeedInHz_m;
    PerfStats txStats_m;
    bool wantReplicationReconnect_m = false;
    INT32 xaSize_m = 0;              // messages per transaction; 0 or below: none
    INT32 xaRollbackInterval_m = 0;  // every n-th commit rolls back; 0 or below: never
    bool skipFinalCommit_m = false;
    // Resends of one failed transaction: -1 for ever, 0 never.
    INT32 transactionRedeliveryLimit_m = -1;
    INT32 ackImmediatelyInterval_m = 0;  // 0 or below: the flag is left alone
    bool useRandomMessageOrder_m = false;
    bool useSomeFormOfRandomization_m = false;
    RandomIndexSampler singlePublishRunRandomIndexSampler_m;
    // This thread's generator state. It runs on across runs, so a second
    // run continues the sequence of choices rather than repeating it.
    std::unique_ptr<UINT16[]> randomNumberGeneratorStateClientPubThreadSpecific_m;
    double attachmentSizeJitterFactor_m = 0.0;
    bool wantUniqueBinaryAttachments_m = false;
    bool generateNewAttachment_m = false;
    INT32 partitionKeyIndex_m = 0;
    std::vector<std::string> partitionKeyList_m;
    INT32 msgObjTypeIndex_m = 0;
    std::vector<PubSubMessageObjectType> msgObjTypeList_m;
    INT64 attachSizeMin_m = -1;  // -1: no random attachment sizes
    INT64 attachSizeMax_m = -1;
    // From the client record when publishing is configured.
    INT64 maxCatchupInNs_m = DEFAULT_MAX_CATCHUP_IN_NS;
};

}  // namespace zorvane::pubsub
