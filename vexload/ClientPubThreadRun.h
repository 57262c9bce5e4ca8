// The state of one publishing run that outlives a message: what the loop
// of ClientPubThread carries from one message to the next. Private to the
// files that make up the thread (ClientPubThreadLoop.cpp,
// ClientPubThreadCommit.cpp); it lives on the thread's stack for one run.
#pragma once

#include "common/dataTypes.h"
#include "vexload/ClientPubThread.h"

namespace zorvane::pubsub {

struct ClientPubThread::PubRun {
    INT64 maxCatchupInNs = DEFAULT_MAX_CATCHUP_IN_NS;
    // 0 or below: unpaced.
    INT64 singleMsgPeriodInNanoSec = 0;
    // Message n is due at pubStartTimeInNanoSec + n * singleMsgPeriodInNanoSec.
    UINT64 pubStartTimeInNanoSec = 0;
    // Result of the last wait; negative: that late.
    INT64 timeWaitedInNanoSec = 0;
    INT32 rateCheckInterval = 1;
    // At or below the threshold every message waits for its time.
    bool rateCheckEveryMsg = true;
    UINT64 cyclesPerMsg = 0;
    // Smooth publishing: the slot of the last message, and the slot time
    // handed to the tool data (0 outside smooth mode: stamped at send).
    UINT64 startTimeInCycles = 0;
    UINT64 latTimestamp = 0;
    UINT64 psmMaxCyclesBehind = 0;
    UINT64 burstStartTimeInUs = 0;
    // The next send opens a burst.
    bool firstSample = false;
    // The id of the message in hand, from 1. A switchover or a failed
    // commit moves it back, so it is not a count of sends.
    INT64 numMsgs = 0;
    INT64 maxMsgIdSent = 0;
    INT64 numCommits = 0;
    // Resends of the transaction in hand; 0 again once one commits.
    int transactionRedeliveryCount = 0;
    int maxPubRetries = DEFAULT_MAX_PUB_RETRIES;
    INT32 msgStrCount = 0;
    bool wantToolData = false;
    bool wantSmoothPubCalcLatency = false;
    bool sentSuccessfully = false;
};

}  // namespace zorvane::pubsub
