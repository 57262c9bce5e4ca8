// The run of a publisher thread: set-up, the paced loop, the end.
//
// The loop is a template over its clocks. runImpl instantiates it once on
// OsPubTimeSource, whose calls inline to OS, and once on the virtual
// PubTimeSource that tests drive; the choice is made once per run.
#include <algorithm>
#include <climits>
#include <cstdio>
#include <exception>
#include <string>

#include "common/Log.h"
#include "common/PubSubException.h"
#include "vexload/ClientPubThread.h"
#include "vexload/ClientPubThreadRun.h"

namespace zorvane::pubsub {

void* ClientPubThread::runImpl() {
    if (timeSource_mp != nullptr) {
        publishRun(*timeSource_mp);
    } else {
        OsPubTimeSource clock;
        publishRun(clock);
    }
    return nullptr;
}

template <class Clock>
void ClientPubThread::publishRun(Clock& clock) {
    PubRun run;
    setUpRun(clock, run);
    // Nothing may leave the thread: what the inner catches do not take ends
    // the loop here, and the run still ends in order.
    try {
        while (run.numMsgs < numMsgs_m && !shutdownFlag_m.load(std::memory_order_relaxed)) {
            if (wantReplicationReconnect_m) {
                waitForReconnection(clock);
                if (shutdownFlag_m.load(std::memory_order_relaxed)) {
                    break;
                }
            }
            run.numMsgs = nextMsgId(run);
            if (run.wantSmoothPubCalcLatency) {
                paceSmooth(clock, run);
            } else {
                paceOpenLoop(clock, run);
            }
            const INT32 msgIndex = prepareMessage(run);
            sendWithRetries(clock, run, msgIndex);
            finishMessage(run);
            if (xaSize_m > 0 && run.numMsgs % xaSize_m == 0) {
                commitInLoop(run);
            }
        }
        // Also after a stop, and also when the loop has just committed the
        // last transaction: the client decides what an empty one means.
        if (xaSize_m > 0 && !skipFinalCommit_m) {
            commitAtEnd(run);
        }
    } catch (const std::exception& e) {
        reportFailure("CLIENT " + client_mp->getName() + " : " +
                      "Error received while publishing. Cause:" + e.what());
    } catch (...) {
        reportFailure("CLIENT " + client_mp->getName() + " : " +
                      "Error received while publishing. Cause:" + "unknown exception");
    }
    finishRun(clock, run);
}

template <class Clock>
void ClientPubThread::setUpRun(Clock& clock, PubRun& run) {
    const ClientProperties& clientProps = client_mp->getClientProps();
    LOG_INFO("CLIENT %s: running pub thread", client_mp->getName().c_str());

    run.maxCatchupInNs = maxCatchupInNs_m;
    run.singleMsgPeriodInNanoSec = msgRate_m > 0.0 ? static_cast<INT64>(1e9 / msgRate_m) : 0;
    run.msgStrCount = static_cast<INT32>(msgs_m.size());
    run.wantToolData = client_mp->publishWantToolData();
    run.maxPubRetries = clientProps.getPubMaxResends() > 0 ? clientProps.getPubMaxResends()
                                                           : DEFAULT_MAX_PUB_RETRIES;
    run.rateCheckInterval = clientProps.getRateCheckInterval();
    run.rateCheckEveryMsg = msgRate_m <= RATE_CHECK_THRESHOLD;

    // A failed connect ends the run before its first message, but the run
    // still gets its times and its done flag, which the collection waits for.
    std::string connectError;
    try {
        client_mp->connect();
    } catch (const std::exception& e) {
        connectError = e.what();
    } catch (...) {
        connectError = "unknown exception";
    }
    if (!connectError.empty()) {
        reportFailure("CLIENT " + client_mp->getName() + " : " +
                      "Error received while connecting channel. Cause:" + connectError);
        shutdownFlag_m.store(true);
    }

    const UINT64 startTimeInUs = clock.nowInUs();
    startTime_m.store(startTimeInUs, std::memory_order_relaxed);
    run.burstStartTimeInUs = startTimeInUs;
    run.pubStartTimeInNanoSec = startTimeInUs * 1000;
    isPublishing_m.store(true, std::memory_order_release);
    run.wantSmoothPubCalcLatency = clientProps.wantSmoothPubCalcLat();
    client_mp->clearSendVector(producerIndex_m);
    run.cyclesPerMsg =
        msgRate_m > 0.0 ? static_cast<UINT64>(static_cast<long double>(cpuSpeedInHz_m) / msgRate_m)
                        : 0;
    run.startTimeInCycles = clock.numClockCycles();
}

template <class Clock>
void ClientPubThread::waitForReconnection(Clock& clock) {
    while (client_mp->getChannelState() != AbstractClient::CLIENT_STATE_CONNECTED &&
           !shutdownFlag_m.load()) {
        clock.sleepInSec(1);
    }
}

INT64 ClientPubThread::nextMsgId(PubRun& run) {
    if (!wantReplicationReconnect_m || !client_mp->getReplicationReconnecting()) {
        return run.numMsgs + 1;
    }
    // The broker that took over has what was acknowledged; everything after
    // it may be lost and goes out again. Acknowledged ids carry the order
    // offset of the stream, the run's ids do not.
    const INT64 acked = static_cast<INT64>(client_mp->getLastAckedMsgId()) -
                        client_mp->getPubOrderOffsetInPublishProperties();
    const INT64 first = std::clamp<INT64>(acked + 1, 1, run.maxMsgIdSent + 1);
    client_mp->setReplicationReconnecting(false);
    LOG_INFO(
        "CLIENT %s : Reconnected following replication switchover.  Republishing msgIds: %lld - "
        "%lld",
        client_mp->getName().c_str(), static_cast<long long>(first),
        static_cast<long long>(run.maxMsgIdSent));
    // Ids collected but not yet sent are among those pushed again.
    client_mp->clearSendVector(producerIndex_m);
    return first;
}

template <class Clock>
void ClientPubThread::paceSmooth(Clock& clock, PubRun& run) {
    // Each slot follows the previous slot, not the moment this message got
    // here: a late message is counted and sent at once, and the grid does
    // not move. The slot time is the message's send time stamp, so the
    // receiver measures the lateness too.
    const UINT64 nextPubTimeInCycles = run.startTimeInCycles + run.cyclesPerMsg;
    const UINT64 currentTimeInCycles = clock.numClockCycles();
    if (currentTimeInCycles > nextPubTimeInCycles) {
        txStats_m.incStat(PerfStats::PSM_NUM_TIMES_BEHIND);
        run.psmMaxCyclesBehind =
            std::max(run.psmMaxCyclesBehind, currentTimeInCycles - nextPubTimeInCycles);
    }
    clock.spinUntilCycles(nextPubTimeInCycles);
    run.latTimestamp = nextPubTimeInCycles;
    run.startTimeInCycles = nextPubTimeInCycles;
}

template <class Clock>
void ClientPubThread::paceOpenLoop(Clock& clock, PubRun& run) {
    const INT64 periodNs = run.singleMsgPeriodInNanoSec;
    if (burstMode_m) {
        const UINT64 nowInUs = clock.nowInUs();
        const double burstSoFar =
            static_cast<double>(static_cast<INT64>(nowInUs - run.burstStartTimeInUs)) / 1e6;
        if (burstSoFar >= burstDuration_m) {
            clock.sleepInUs(
                static_cast<int>(std::min(1e6 * interBurstDuration_m, double{INT_MAX})));
            // The silence is not owed: the schedule starts again with this
            // message due now.
            run.pubStartTimeInNanoSec =
                clock.nowInUs() * 1000 - static_cast<UINT64>(periodNs * run.numMsgs);
            run.firstSample = true;
        }
    }
    if (periodNs <= 0) {
        return;
    }
    if (run.rateCheckEveryMsg || run.numMsgs % run.rateCheckInterval == 0) {
        run.timeWaitedInNanoSec = clock.waitUntil(run.pubStartTimeInNanoSec +
                                                  static_cast<UINT64>(periodNs * run.numMsgs));
    }
    // With the rate as a ceiling, time lost beyond the limit is given up.
    // Without it the schedule stays: a publisher that fell behind sends
    // unpaced until it has caught up.
    if (msgRateIsMax_m && run.timeWaitedInNanoSec < -run.maxCatchupInNs) {
        run.pubStartTimeInNanoSec =
            clock.nowInUs() * 1000 - static_cast<UINT64>(periodNs * run.numMsgs);
    }
}

INT32 ClientPubThread::prepareMessage(PubRun& run) {
    // In list order the id picks the element, so a rewound id picks the
    // same messages again.
    const INT32 msgIndex = useRandomMessageOrder_m
                               ? singlePublishRunRandomIndexSampler_m.sampleIndex()
                               : static_cast<INT32>((run.numMsgs - 1) % run.msgStrCount);
    MsgProperties& msg = msgs_m[static_cast<size_t>(msgIndex)];

    if (generateNewAttachment_m) {
        msg.generateNewAttachment(
            randomNumberGeneratorStateClientPubThreadSpecific_m.get(), attachmentSizeJitterFactor_m,
            attachSizeMin_m, attachSizeMax_m,
            static_cast<UINT32>(client_mp->getPubStreamIdInPublishProperties()),
            static_cast<UINT64>(client_mp->getPubOrderOffsetInPublishProperties() + run.numMsgs));
    }
    if (run.wantToolData) {
        client_mp->updateToolData(&msg, static_cast<UINT64>(run.numMsgs), run.latTimestamp);
        if (run.numMsgs <= run.maxMsgIdSent) {
            msg.setRepublished(true);
        }
    }
    if (ackImmediatelyInterval_m > 0) {
        msg.setAckImmediately(run.numMsgs % ackImmediatelyInterval_m == 0);
    }
    // The running indexes wrap at the list's end, which keeps the order of
    // a modulo without its overflow on very long runs.
    if (!partitionKeyList_m.empty()) {
        msg.setPartitionKey(partitionKeyList_m[static_cast<size_t>(partitionKeyIndex_m)]);
        if (++partitionKeyIndex_m == static_cast<INT32>(partitionKeyList_m.size())) {
            partitionKeyIndex_m = 0;
        }
    }
    if (!msgObjTypeList_m.empty()) {
        msg.setMsgObjType(msgObjTypeList_m[static_cast<size_t>(msgObjTypeIndex_m)]);
        if (++msgObjTypeIndex_m == static_cast<INT32>(msgObjTypeList_m.size())) {
            msgObjTypeIndex_m = 0;
        }
    }
    if (sendVectorSize_m > 0) {
        client_mp->sendVectorPushBack(run.numMsgs, producerIndex_m);
    }
    return msgIndex;
}

template <class Clock>
void ClientPubThread::sendWithRetries(Clock& clock, PubRun& run, INT32 msgIndex) {
    // A burst is timed from its first send, not from the end of the silence
    // before it.
    auto openBurst = [&]() {
        if (burstMode_m && run.firstSample) {
            run.firstSample = false;
            run.burstStartTimeInUs = clock.nowInUs();
        }
    };
    run.sentSuccessfully = false;
    for (int pass = 0; pass < run.maxPubRetries &&
                       !shutdownFlag_m.load(std::memory_order_relaxed) && !run.sentSuccessfully;
         ++pass) {
        try {
            if (sendVectorSize_m > 0) {
                const size_t collected = client_mp->getSendVector(producerIndex_m).size();
                const auto wanted = static_cast<size_t>(sendVectorSize_m);
                if (collected > wanted) {
                    LOG_ERROR("CLIENT %s: Send vector too large: %i", client_mp->getName().c_str(),
                              static_cast<int>(collected));
                    stopPublish();
                }
                // The last message of the run flushes a partial vector.
                if (collected == wanted || run.numMsgs == numMsgs_m) {
                    openBurst();
                    client_mp->publishSendMultiple(msgs_m, run.wantToolData, producerIndex_m);
                    client_mp->clearSendVector(producerIndex_m);
                }
                // Otherwise the message waits in the vector and counts as sent.
            } else {
                openBurst();
                client_mp->publishMsg(&msgs_m[static_cast<size_t>(msgIndex)], producerIndex_m);
            }
            run.maxMsgIdSent = std::max(run.maxMsgIdSent, run.numMsgs);
            run.sentSuccessfully = true;
            LOG_DEBUG("CLIENT %s: Sent msg id %i successfully", client_mp->getName().c_str(),
                      static_cast<int>(run.numMsgs));
        } catch (const std::exception& e) {
            if (wantStopOnError_m) {
                reportFailure("CLIENT " + client_mp->getName() +
                              ": Cannot publish message due to: " + e.what());
                stopPublish();
            } else {
                LOG_WARNING("CLIENT %s: Cannot publish message due to: %s",
                            client_mp->getName().c_str(), e.what());
                waitForClientAfterError(clock);
            }
        }
    }
}

template <class Clock>
void ClientPubThread::waitForClientAfterError(Clock& clock) {
    // Without reconnect retries a client that is down stays down: waiting
    // would hold the run for ever.
    const bool mayReconnect = client_mp->getClientProps().getReconnectRetries() != 0;
    while (client_mp->getChannelState() != AbstractClient::CLIENT_STATE_CONNECTED &&
           !shutdownFlag_m.load()) {
        if (client_mp->getChannelState() == AbstractClient::CLIENT_STATE_DISCONNECTED &&
            !mayReconnect) {
            shutdownFlag_m.store(true);
        }
        clock.sleepInSec(1);
    }
    if (xaSize_m > 0) {
        // The transacted session comes back after the connection.
        clock.sleepInSec(1);
    }
    if (!shutdownFlag_m.load()) {
        LOG_WARNING("CLIENT %s: Publishing resuming following publish error.",
                    client_mp->getName().c_str());
    }
}

void ClientPubThread::finishMessage(const PubRun& run) {
    if (!run.sentSuccessfully && !shutdownFlag_m.load(std::memory_order_relaxed)) {
        LOG_WARNING(
            "CLIENT %s : Unable to successfully publish message number %lld. Retries exhausted. "
            "Moving on to next message.",
            client_mp->getName().c_str(), static_cast<long long>(run.numMsgs));
    }
}

template <class Clock>
void ClientPubThread::finishRun(Clock& clock, PubRun& run) {
    const UINT64 endTimeInUs = clock.nowInUs();
    endTime_m.store(endTimeInUs, std::memory_order_relaxed);
    lastPubTime_m.store(endTimeInUs, std::memory_order_relaxed);
    // The largest lateness of all runs since the last reset.
    if (run.psmMaxCyclesBehind > txStats_m.getStatElement(PerfStats::PSM_MAX_CYCLES_BEHIND)) {
        txStats_m.setStat(PerfStats::PSM_MAX_CYCLES_BEHIND, run.psmMaxCyclesBehind);
    }
    isPublishing_m.store(false, std::memory_order_release);
    donePublishing_m.store(true, std::memory_order_release);
    LOG_INFO("CLIENT %s: pub thread stopped", client_mp->getName().c_str());
}

void ClientPubThread::reportFailure(const std::string& text) {
    LOG_ERROR("%s", text.c_str());
    std::printf("\n\n%s\n\n", text.c_str());
    std::fflush(stdout);
}

}  // namespace zorvane::pubsub
