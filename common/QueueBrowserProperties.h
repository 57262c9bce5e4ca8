// What a queue browser reads and how often it deletes what it browsed. A
// plain value filled by setters in the run sequence; it checks nothing.
//
// Ownership and threads: a plain value; a client reads it during the call
// it is given to. Nothing blocks.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "common/dataTypes.h"

namespace zorvane::pubsub {

class QueueBrowserProperties {
  public:
    // No queues, no selector, -1 ("not given") in every number, no
    // cut-through.
    QueueBrowserProperties();

    QueueBrowserProperties(const QueueBrowserProperties&) = default;
    QueueBrowserProperties& operator=(const QueueBrowserProperties&) = default;
    QueueBrowserProperties(QueueBrowserProperties&&) = default;
    QueueBrowserProperties& operator=(QueueBrowserProperties&&) = default;
    ~QueueBrowserProperties() = default;

    // A copy on the heap; the caller owns it.
    std::unique_ptr<QueueBrowserProperties> clone() const;

    // Debug text: "{\n", one labelled line per field, "}".
    std::string toString() const;

    const std::vector<std::string>& getQueuesList() const { return queuesList_m; }
    void setQueuesList(const std::vector<std::string>& value) { queuesList_m = value; }
    const std::string& getSelector() const { return selector_m; }
    void setSelector(const std::string& value) { selector_m = value; }
    INT32 getDeleteFrequency() const { return deleteFrequency_m; }
    void setDeleteFrequency(INT32 value) { deleteFrequency_m = value; }
    INT32 getDeleteBufSize() const { return deleteBufSize_m; }
    void setDeleteBufSize(INT32 value) { deleteBufSize_m = value; }
    bool getWantCutThroughPersistence() const { return wantCutThroughPersistence_m; }
    void setWantCutThroughPersistence(bool value) { wantCutThroughPersistence_m = value; }
    int getFlowReconnectAttempts() const { return flowReconnectAttempts_m; }
    void setFlowReconnectAttempts(int value) { flowReconnectAttempts_m = value; }
    int getFlowReconnectIntervalInMsecs() const { return flowReconnectIntervalInMsecs_m; }
    void setFlowReconnectIntervalInMsecs(int value) { flowReconnectIntervalInMsecs_m = value; }

  private:
    std::vector<std::string> queuesList_m;
    std::string selector_m;   // one for all browser flows; empty for none
    INT32 deleteFrequency_m;  // one browsed message in this many is deleted
    INT32 deleteBufSize_m;    // message ids gathered before a delete pass
    bool wantCutThroughPersistence_m;
    int flowReconnectAttempts_m;         // -1 not given
    int flowReconnectIntervalInMsecs_m;  // -1 not given
};

}  // namespace zorvane::pubsub
