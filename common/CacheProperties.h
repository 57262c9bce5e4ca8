// What the cache request threads ask for: topics, rate, count, sequence
// range and the live data action. A plain value that checks nothing; the
// live data word is looked at only when a request is made.
//
// Ownership and threads: a plain value; each cache request thread keeps its
// own copy. Nothing blocks.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "common/dataTypes.h"

namespace zorvane::pubsub {

class CliProperties;

class CacheProperties {
  public:
    // No topics, rate 0, count 0, no sequence range, no waiting, and the
    // live data action CACHE_LIVE_DATA_ACTION_FLOW_THRU.
    CacheProperties();

    // Sets every field from the store. The live data action is taken as the
    // store has it, so with no "-chld=" it is empty, not FLOW_THRU.
    // Throws PubSubException when requests are asked for and NUM_CLIENTS is
    // below 1, as they cannot be shared out then.
    explicit CacheProperties(const CliProperties& cliProperties);

    CacheProperties(const CacheProperties&) = default;
    CacheProperties& operator=(const CacheProperties&) = default;
    CacheProperties(CacheProperties&&) = default;
    CacheProperties& operator=(CacheProperties&&) = default;
    ~CacheProperties() = default;

    // A copy on the heap; the caller owns it.
    std::unique_ptr<CacheProperties> clone() const;

    // Debug text: "{\n", one labelled line per field, "}".
    std::string toString() const;

    const std::vector<std::string>& getTopicsList() const { return topicsList_m; }
    void setTopicsList(const std::vector<std::string>& value) { topicsList_m = value; }
    double getMsgRate() const { return msgRate_m; }
    void setMsgRate(double value) { msgRate_m = value; }
    INT64 getNumMsgsPerClient() const { return numMsgsPerClient_m; }
    void setNumMsgsPerClient(INT64 value) { numMsgsPerClient_m = value; }
    INT64 getMinTopicSequence() const { return minSeq_m; }
    void setMinTopicSequence(INT64 value) { minSeq_m = value; }
    INT64 getMaxTopicSequence() const { return maxSeq_m; }
    void setMaxTopicSequence(INT64 value) { maxSeq_m = value; }
    bool getWaitForConfirm() const { return waitForConfirm_m; }
    void setWaitForConfirm(bool value) { waitForConfirm_m = value; }
    const std::string& getLiveDataAction() const { return liveDataAction_m; }
    void setLiveDataAction(const std::string& value) { liveDataAction_m = value; }

  private:
    std::vector<std::string> topicsList_m;
    double msgRate_m;          // requests per second
    INT64 numMsgsPerClient_m;  // requests for each client
    INT64 minSeq_m;            // -1 not given
    INT64 maxSeq_m;            // -1 not given
    bool waitForConfirm_m;
    std::string liveDataAction_m;  // one of the CACHE_LIVE_DATA_ACTION_ words
};

}  // namespace zorvane::pubsub
