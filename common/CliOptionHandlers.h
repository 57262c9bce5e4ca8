// The side effects of options that a row's key, conversion and "also" key
// cannot say: notations, fields of CliProperties, the held-back lists and
// the help. Each handler runs after the generic conversion and store of its
// row (CliOptionApply.cpp). A friend of CliProperties, so that rows can reach
// the plain fields without widening the public interface.
//
// Main thread only, during parseOptions.
#pragma once

#include "common/CliOption.h"

namespace zorvane::pubsub {

class CliOptionHandlers {
  public:
    // Client control (CliOptionHandlersClient.cpp)
    static void usernameVpn(CliOptionCall& call);
    static void dtoPriority(CliOptionCall& call);
    static void refuseNoPublishThread(CliOptionCall& call);

    // Message content and publishing (CliOptionHandlersPublish.cpp)
    static void rateTarget(CliOptionCall& call);
    static void xmlSizes(CliOptionCall& call);
    static void attachSizes(CliOptionCall& call);
    static void xmlSizeSweep(CliOptionCall& call);
    static void attachSizeSweep(CliOptionCall& call);
    static void randomAttachRange(CliOptionCall& call);
    static void messageType(CliOptionCall& call);
    static void structuredMessages(CliOptionCall& call);
    static void attachFileWeights(CliOptionCall& call);
    static void publishTopicList(CliOptionCall& call);
    static void publishTopicPrefix(CliOptionCall& call);
    static void publishTopicCount(CliOptionCall& call);
    static void publishTopicFiles(CliOptionCall& call);
    static void publishQueueList(CliOptionCall& call);
    static void publishQueueFiles(CliOptionCall& call);
    static void timeOfDay(CliOptionCall& call);
    static void sendVector(CliOptionCall& call);
    static void publisherOrderOffsets(CliOptionCall& call);
    static void replayConflict(CliOptionCall& call);
    static void defaultPriorities(CliOptionCall& call);
    static void priorityList(CliOptionCall& call);

    // Subscribing (CliOptionHandlersSubscribe.cpp)
    static void holdTopicList(CliOptionCall& call);
    static void holdTopicPrefix(CliOptionCall& call);
    static void holdTopicCount(CliOptionCall& call);
    static void holdQueueList(CliOptionCall& call);
    static void holdDteList(CliOptionCall& call);
    static void holdSelectorList(CliOptionCall& call);
    static void topicFiles(CliOptionCall& call);
    static void queueFiles(CliOptionCall& call);
    static void dteFiles(CliOptionCall& call);
    static void selectorFiles(CliOptionCall& call);
    static void subRateInterval(CliOptionCall& call);
    static void subscriberOrderOffsets(CliOptionCall& call);
    static void ackRateLimitDepth(CliOptionCall& call);
    static void discardNotifySender(CliOptionCall& call);

    // Measurement, sessions and general (CliOptionHandlersGeneral.cpp)
    static void bothOrderChecks(CliOptionCall& call);
    static void latencyBuckets(CliOptionCall& call);
    static void latencyGranularity(CliOptionCall& call);
    static void minMaxTopicSeq(CliOptionCall& call);
    static void attachJitter(CliOptionCall& call);
    static void queueBrowserDelete(CliOptionCall& call);
    static void extraProps(CliOptionCall& call);
    static void shortHelp(CliOptionCall& call);
    static void moreHelp(CliOptionCall& call);
    static void exampleHelp(CliOptionCall& call);
};

}  // namespace zorvane::pubsub
