// The transaction boundaries of a publishing run: the commit that closes
// every xaSize-th message, the one at the end of the run, and what a failed
// commit means for the messages in it.
//
// A failed commit is judged by the client's last error. A rollback by the
// broker, a timeout or an outcome the broker could not tell all leave the
// messages possibly undelivered, so the id goes back by a transaction and
// the same messages go out again, marked republished. Anything else is
// logged and the run goes on.
#include <exception>
#include <memory>
#include <string>

#include "client/zcore/CommitOutcome.h"
#include "common/Log.h"
#include "common/PubSubErrorResponseException.h"
#include "vexload/ClientPubThread.h"
#include "vexload/ClientPubThreadRun.h"

namespace zorvane::pubsub {

void ClientPubThread::commitInLoop(PubRun& run) {
    ++run.numCommits;
    const bool wantRollback =
        xaRollbackInterval_m > 0 && run.numCommits % xaRollbackInterval_m == 0;
    try {
        client_mp->commitTransactionOnCurrPub(producerIndex_m, wantRollback);
        // The limit counts the resends of one transaction.
        run.transactionRedeliveryCount = 0;
    } catch (const std::exception& e) {
        handleCommitFailure(run, e.what());
    }
}

void ClientPubThread::commitAtEnd(const PubRun& run) {
    const bool wantRollback =
        xaRollbackInterval_m > 0 && (run.numCommits + 1) % xaRollbackInterval_m == 0;
    client_mp->commitTransactionOnCurrPub(producerIndex_m, wantRollback);
}

void ClientPubThread::handleCommitFailure(PubRun& run, const char* cause) {
    int logLvl = log::LEVEL_WARNING;
    const std::unique_ptr<PubSubErrorResponseException> commitLastError = client_mp->getLastError();
    std::string logStr;
    bool wantResend = false;
    bool isRollback = false;
    if (commitLastError != nullptr) {
        const CommitOutcome outcome = classifyCommitFailure(*commitLastError);
        if (outcome == CommitOutcome::STATUS_UNKNOWN) {
            logStr = "Received ZORCLIENT_SUBCODE_COMMIT_STATUS_UNKNOWN on commit.";
            wantResend = true;
        } else if (outcome == CommitOutcome::TIMEOUT) {
            logStr = "Received TIMEOUT on commit.";
            wantResend = true;
        } else if (outcome == CommitOutcome::ROLLBACK) {
            logStr = "Received rollback on commit.";
            logLvl = log::LEVEL_INFO;
            wantResend = true;
            isRollback = true;
        }
    }

    if (wantResend) {
        // -1 resends for ever, 0 never, n at most n times in a row.
        const bool limitPermits = transactionRedeliveryLimit_m < 0 ||
                                  run.transactionRedeliveryCount < transactionRedeliveryLimit_m;
        if (limitPermits) {
            run.numMsgs -= xaSize_m;
            ++run.transactionRedeliveryCount;
            logStr += " Resending " + std::to_string(xaSize_m) + " messages, ";
            // A rollback is known to have delivered nothing; after a timeout
            // or an unknown outcome the first copies may have arrived.
            logStr += isRollback ? "no duplicated expected." : "duplicates possible.";
            logStr += " Current transaction redelivery counter=" +
                      std::to_string(run.transactionRedeliveryCount) + " .";
        } else {
            logStr += " NOT resending messages due to transaction redelivery limit (" +
                      std::to_string(transactionRedeliveryLimit_m) + ") being reached.";
            run.transactionRedeliveryCount = 0;
        }
    }
    if (!logStr.empty()) {
        VEXLOAD_LOG(logLvl, "%s", logStr.c_str());
    }
    LOG_INFO("CLIENT %s : Error received while committing. Cause:%s", client_mp->getName().c_str(),
             cause);
}

}  // namespace zorvane::pubsub
