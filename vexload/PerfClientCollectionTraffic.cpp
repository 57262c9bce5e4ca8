// Starting and stopping the traffic threads of the collection.
#include "common/CacheProperties.h"
#include "common/EpConfigProperties.h"
#include "common/Log.h"
#include "common/OS.h"
#include "common/PubSubException.h"
#include "vexload/PerfClientCollection.h"

namespace zorvane::pubsub {

void PerfClientCollection::startPublishing(const PublishProperties& publishProps,
                                           const StatsCustomizationProperties& statsCust) {
    LOG_INFO("Starting Publishers");
    if (isPublishing()) {
        throw PubSubException("Already publishing.  Must stop before calling start publishing.");
    }
    if (stopPubRequired_m) {
        throw PubSubException(
            "Pubs currently stopped.  However, call to stop publishing required to be able to "
            "restart the pubs.");
    }
    _waitForAdPubAcks(publishProps);
    if (publishProps.getMsgRateIsMax() &&
        (clientProps_m.wantSmoothPubCalcLat() ||
         (publishProps.getBurstDuration() > 0 && publishProps.getInterBurstDuration() > 0))) {
        throw PubSubException(
            "Unsupported publish combination.  Cannot use message rate is max with smooth pubs or "
            "bursty pubs.");
    }

    std::vector<std::vector<MsgProperties>> msgsToPublishArray;
    _buildMsgArray(publishProps, statsCust, false, msgsToPublishArray);
    if (msgsToPublishArray.empty()) {
        throw PubSubException("No messages to publish were generated.");
    }

    const std::vector<std::string> xaNames = publishProps.getTransactedSessionNameList();
    if (publishProps.getXaSize() > 0 && xaNames.empty()) {
        throw PubSubException(
            "Error trying to publish using transaction size but no transacted session name(s) "
            "given.");
    }
    if (!xaNames.empty() && xaNames.size() != pubThreadsVect_m.size()) {
        throw PubSubException(
            "Error trying to publishing using transacted sessions.  Session names list not equal "
            "to num clients");
    }

    try {
        for (std::size_t k = 0; k < pubThreadsVect_m.size(); ++k) {
            ClientPubThread* thread = pubThreadsVect_m[k];
            // All threads of a client publish the same list, each from its
            // own copy; lists go round robin over the client ids.
            const std::size_t arrayIndex =
                static_cast<std::size_t>(thread->getClientId() - 1) % msgsToPublishArray.size();
            thread->configurePublish(msgsToPublishArray[arrayIndex], publishProps, statsCust,
                                     xaNames.empty() ? std::string() : xaNames[k]);
        }
        // Configuring hands records to the client, which its other
        // publisher threads read once they run: every thread is configured
        // before the first one starts.
        for (ClientPubThread* thread : pubThreadsVect_m) {
            thread->start();
        }
    } catch (const std::exception& e) {
        // Threads already started go on; the destructor stops them.
        throw PubSubException("Exception while starting publisher", e);
    }

    if (!publishProps.getSkipCheckForStarted()) {
        int polls = 0;
        while (!_isPublishing() && !_donePublishing()) {
            if (polls++ >= START_STOP_POLLS) {
                throw PubSubException("Publishing did not start within 3 min.");
            }
            OS::sleepInUs(POLL_INTERVAL_IN_US);
        }
    }
    stopPubRequired_m = true;
}

void PerfClientCollection::stopPublishing() {
    if (!isPublishing() && !stopPubRequired_m) {
        LOG_DEBUG("Publishing already stopped. Returning.");
        return;
    }
    LOG_INFO("Stopping Publishers");
    stopPubRequired_m = false;
    for (ClientPubThread* thread : pubThreadsVect_m) {
        thread->stopPublish();
    }
    LOG_INFO("Waiting on clients to stop publishing");
    int polls = 0;
    while (isPublishing()) {
        if (polls++ >= START_STOP_POLLS) {
            throw PubSubException("Publishing did not stop within time.");
        }
        OS::sleepInUs(POLL_INTERVAL_IN_US);
    }
    LOG_INFO("Publishers stopped");
    for (ClientPubThread* thread : pubThreadsVect_m) {
        thread->wait();
    }
    LOG_INFO("Publishing stopped ok");
}

void PerfClientCollection::startCacheRequesting(const CacheProperties& /*cacheProps*/) {
    LOG_INFO("Starting Cache Requesting");
    if (isCacheRequesting()) {
        throw PubSubException(
            "Already Cache Requesting.  Must stop before calling start Cache Requesting.");
    }
    if (stopCacheRequired_m) {
        throw PubSubException(
            "Threads currently stopped.  However, must call stop cache requesting to be able to "
            "restart requesting.");
    }
    // Without cache request threads a run that asks for cache requests
    // would report none; refuse it instead.
    throw PubSubException("Cache requesting is not available in this build.");
}

void PerfClientCollection::stopCacheRequesting() {
    if (!isCacheRequesting() && !stopCacheRequired_m) {
        LOG_DEBUG("Cache requesting already stopped. Returning.");
        return;
    }
    LOG_INFO("Stopping Cache Threads");
    stopCacheRequired_m = false;
    LOG_INFO("Waiting on clients to stop cache requesting");
    LOG_INFO("Cache threads stopped");
    LOG_INFO("cache requesting stopped ok");
}

void PerfClientCollection::startBinding(const EpConfigProperties& /*epProps*/) {
    LOG_INFO("Starting Binding");
    if (isBinding()) {
        throw PubSubException("Already Binding.  Must stop before calling start Binding.");
    }
    throw PubSubException("Binding is not available in this build.");
}

void PerfClientCollection::stopBinding() {
    if (!isBinding()) {
        LOG_DEBUG("Binding already stopped. Returning.");
        return;
    }
}

}  // namespace zorvane::pubsub
