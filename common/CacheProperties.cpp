#include "common/CacheProperties.h"

#include <sstream>

#include "common/CliProperties.h"
#include "common/PubSubException.h"
#include "common/cliWords.h"

namespace zorvane::pubsub {

namespace {

// Requests are shared out evenly and the remainder is dropped; unlike the
// publish count this is not logged. A client count below 1 cannot share
// anything out, so it ends the run in order rather than dividing by it.
INT64 requestsPerClient(const CliProperties& cli) {
    const INT64 numRequests = cli.getInt64Property(CliProperties::CACHE_NUM_REQ);
    const INT32 numClients = cli.getIntegerProperty(CliProperties::NUM_CLIENTS);
    if (numRequests == 0) {
        return 0;
    }
    if (numClients < 1) {
        throw PubSubException("Invalid value for -cc");
    }
    return numRequests / numClients;
}

}  // namespace

CacheProperties::CacheProperties()
    : topicsList_m(),
      msgRate_m(0.0),
      numMsgsPerClient_m(0),
      minSeq_m(-1),
      maxSeq_m(-1),
      waitForConfirm_m(false),
      liveDataAction_m(CACHE_LIVE_DATA_ACTION_FLOW_THRU) {}

CacheProperties::CacheProperties(const CliProperties& cli)
    : topicsList_m(),
      msgRate_m(cli.getDoubleProperty(CliProperties::CACHE_REQ_MSG_RATE)),
      numMsgsPerClient_m(requestsPerClient(cli)),
      minSeq_m(cli.getInt64Property(CliProperties::CACHE_REQ_MIN_SEQ)),
      maxSeq_m(cli.getInt64Property(CliProperties::CACHE_REQ_MAX_SEQ)),
      waitForConfirm_m(cli.getBooleanProperty(CliProperties::CACHE_REQ_WAIT_FOR_CONFIRM)),
      liveDataAction_m(cli.getStringProperty(CliProperties::CACHE_LIVE_DATA_ACTION)) {
    // Cache requests go to the first group of publish topics only.
    const std::vector<std::vector<std::string>> pubTopics =
        cli.getVectorVectorProperty(CliProperties::PUB_TOPICS_ARRAY);
    if (!pubTopics.empty()) {
        topicsList_m = pubTopics[0];
    }
}

std::unique_ptr<CacheProperties> CacheProperties::clone() const {
    return std::make_unique<CacheProperties>(*this);
}

std::string CacheProperties::toString() const {
    std::ostringstream out;
    out << "{\n"
        << "  Topics list size       = " << topicsList_m.size() << "\n"
        << "  Msg Rate               = " << msgRate_m << "\n"
        << "  Num Msgs               = " << numMsgsPerClient_m << "\n"
        << "  Min Topic Sequence Num = " << minSeq_m << "\n"
        << "  Max Topic Sequence Num = " << maxSeq_m << "\n"
        << "  Wait For Confirm       = " << waitForConfirm_m << "\n"
        << "  Live Data Action       = " << liveDataAction_m << "\n"
        << "}";
    return out.str();
}

}  // namespace zorvane::pubsub
