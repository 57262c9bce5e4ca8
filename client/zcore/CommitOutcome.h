// What a failed commit left behind, told from the error the client layer
// recorded for it. The publisher thread decides from this whether the
// messages of the transaction go out again; the library's return and sub
// codes stay behind this header, in the binding.
#pragma once

#include "common/PubSubErrorResponseException.h"

namespace zorvane::pubsub {

enum class CommitOutcome {
    OTHER,           // anything else: logged, not resent
    STATUS_UNKNOWN,  // the broker could not tell whether the commit took
    TIMEOUT,         // no answer in time
    ROLLBACK,        // the broker rolled the transaction back
};

// Classifies the last error of a failed commit. Pure; any thread.
CommitOutcome classifyCommitFailure(const PubSubErrorResponseException& error);

}  // namespace zorvane::pubsub
