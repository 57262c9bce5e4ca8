#include "client/zcore/CommitOutcome.h"

#include "zorClient.h"

namespace zorvane::pubsub {

CommitOutcome classifyCommitFailure(const PubSubErrorResponseException& error) {
    // The client layer records the sub code by its constant's name.
    if (error.getReturnCode() == ZORCLIENT_ROLLBACK) {
        return CommitOutcome::ROLLBACK;
    }
    if (error.getReturnCode() != ZORCLIENT_FAIL) {
        return CommitOutcome::OTHER;
    }
    if (error.getSubCode() == zorClient_subCodeToString(ZORCLIENT_SUBCODE_COMMIT_STATUS_UNKNOWN)) {
        return CommitOutcome::STATUS_UNKNOWN;
    }
    if (error.getSubCode() == zorClient_subCodeToString(ZORCLIENT_SUBCODE_TIMEOUT)) {
        return CommitOutcome::TIMEOUT;
    }
    return CommitOutcome::OTHER;
}

}  // namespace zorvane::pubsub
