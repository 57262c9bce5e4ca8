// Construction, configuration and the state the main thread reads. The run
// itself is in ClientPubThreadLoop.cpp.
#include "vexload/ClientPubThread.h"

#include <algorithm>
#include <cerrno>
#include <climits>
#include <cmath>
#include <cstdlib>
#include <string>

#include "common/CommonUtils.h"
#include "common/Log.h"
#include "common/OS.h"
#include "common/PubSubException.h"
#include "common/ToolData.h"

namespace zorvane::pubsub {

namespace {

AbstractClient* requireClient(AbstractClient* client_p) {
    if (client_p == nullptr) {
        throw PubSubException("ClientPubThread: a publisher thread needs a client.");
    }
    return client_p;
}

// The longest period the schedule can hold in nanoseconds, with room for
// adding it to a time of day.
constexpr double MAX_PERIOD_IN_NS = 1e18;

}  // namespace

ClientPubThread::ClientPubThread(AbstractClient* client_p, INT32 producerIndex, INT64 randomSeed,
                                 PubTimeSource* timeSource_p)
    : client_mp(requireClient(client_p)),
      timeSource_mp(timeSource_p),
      producerIndex_m(producerIndex),
      cpuSpeedInHz_m(timeSource_p != nullptr ? timeSource_p->cpuSpeedInHz()
                                             : OS::getCpuSpeedInHz()),
      txStats_m(client_p->getName(), cpuSpeedInHz_m, 0, 0, 0.0),
      randomNumberGeneratorStateClientPubThreadSpecific_m(OS::randomInitState(randomSeed)) {
    LOG_DEBUG("ClientPubThread with producer index %d initialized with random seed %s",
              producerIndex, std::to_string(randomSeed).c_str());
}

ClientPubThread::~ClientPubThread() {
    stopPublish();
    wait();
}

void ClientPubThread::configurePublish(const std::vector<MsgProperties>& msgs,
                                       const PublishProperties& publishProps,
                                       const StatsCustomizationProperties& statsCust,
                                       const std::string& xaSessionName) {
    checkPublishConfiguration(msgs, publishProps);
    const ClientProperties& clientProps = client_mp->getClientProps();

    client_mp->setPublishStatsProps(statsCust);

    msgs_m = msgs;
    msgRate_m = publishProps.getMsgRate();
    msgRateIsMax_m = publishProps.getMsgRateIsMax();
    numMsgs_m = publishProps.getNumMsgsPerClient();
    if (numMsgs_m == 0) {
        LOG_ERROR(
            "Number of messages per client was calculated to be 0. The value for -mn must be "
            "greater than and evenly divisible by -cc.");
    }

    sendVectorSize_m = publishProps.getSendVectorSize();
    wantStopOnError_m = clientProps.wantStopOnError();
    wantReplicationReconnect_m = clientProps.getWantReplicationReconnect();
    burstMode_m = false;

    xaSize_m = publishProps.getXaSize();
    xaRollbackInterval_m = publishProps.getXaRollbackInterval();
    skipFinalCommit_m = publishProps.getSkipFinalCommit();
    ackImmediatelyInterval_m = publishProps.getAckImmediatelyInterval();
    attachmentSizeJitterFactor_m = publishProps.getAttachmentSizeJitterFactor();
    attachSizeMin_m = publishProps.getAttachSizeMin();
    attachSizeMax_m = publishProps.getAttachSizeMax();
    useRandomMessageOrder_m = publishProps.getUseRandomMessageOrder();

    const bool wantRandomSizeRange = attachSizeMin_m >= 0 && attachSizeMax_m >= 0;
    useSomeFormOfRandomization_m = useRandomMessageOrder_m || attachmentSizeJitterFactor_m != 0.0 ||
                                   publishProps.getWantRandomNoiseAttachmentContents() ||
                                   wantRandomSizeRange;
    wantUniqueBinaryAttachments_m = publishProps.getWantUniqueAttachmentContents();
    generateNewAttachment_m = useSomeFormOfRandomization_m || wantUniqueBinaryAttachments_m;

    partitionKeyIndex_m = 0;
    partitionKeyList_m = publishProps.getPartitionKeyList();
    msgObjTypeIndex_m = 0;
    msgObjTypeList_m = publishProps.getMsgObjTypeList();
    transactionRedeliveryLimit_m = publishProps.getTransactionRedeliveryLimit();

    if (useSomeFormOfRandomization_m) {
        std::vector<double> weights;
        weights.reserve(msgs_m.size());
        for (const MsgProperties& msg : msgs_m) {
            weights.push_back(msg.getAggregateProbabilityWeight());
        }
        singlePublishRunRandomIndexSampler_m =
            RandomIndexSampler(randomNumberGeneratorStateClientPubThreadSpecific_m.get(), weights);
    }

    if (publishProps.getPubAffinity() != -1) {
        setAffinity(publishProps.getPubAffinity());
    }
    if (publishProps.getBurstDuration() > 0 && publishProps.getInterBurstDuration() > 0) {
        burstDuration_m = publishProps.getBurstDuration();
        interBurstDuration_m = publishProps.getInterBurstDuration();
        burstMode_m = true;
    }
    maxCatchupInNs_m = readMaxCatchupInNs();

    // Room for everything a send may write into a message, so that the loop
    // never grows a string: the largest regenerated attachment (and at
    // least a tool data record, which the send path lays over it), and the
    // longest partition key, assigned once here and replaced before every
    // send.
    if (generateNewAttachment_m) {
        for (MsgProperties& msg : msgs_m) {
            double largest = static_cast<double>(msg.getOriginalAttachmentSize()) *
                                 (1.0 + std::fabs(attachmentSizeJitterFactor_m)) +
                             1.0;
            if (wantRandomSizeRange) {
                largest = std::max(largest, static_cast<double>(attachSizeMax_m));
            }
            largest = std::max(largest, static_cast<double>(ToolData::MAX_ENCODED_SIZE));
            largest = std::max(largest, static_cast<double>(msg.getAttachmentSize()));
            msg.reserveAttachment(static_cast<size_t>(std::min(largest, double{INT_MAX})));
        }
    }
    if (!partitionKeyList_m.empty()) {
        const std::string& longest = *std::max_element(
            partitionKeyList_m.begin(), partitionKeyList_m.end(),
            [](const std::string& a, const std::string& b) { return a.size() < b.size(); });
        for (MsgProperties& msg : msgs_m) {
            msg.setPartitionKey(longest);
        }
    }

    client_mp->setPublishProps(publishProps, producerIndex_m, xaSessionName);

    startTime_m.store(0);
    endTime_m.store(0);
    isPublishing_m.store(false);
    donePublishing_m.store(false);
    LOG_INFO("CLIENT %s: Start client pub thread", client_mp->getName().c_str());
    // Cleared here and not when the run starts: a stop requested between
    // start() and the first message must not be lost.
    shutdownFlag_m.store(false);
}

void ClientPubThread::checkPublishConfiguration(const std::vector<MsgProperties>& msgs,
                                                const PublishProperties& publishProps) const {
    const std::string prefix = "CLIENT " + client_mp->getName() + ": ";
    const ClientProperties& clientProps = client_mp->getClientProps();

    if (publishProps.getNumMsgsPerClient() > 0 && msgs.empty()) {
        throw PubSubException(prefix + "Nothing to publish: the list of messages is empty.");
    }
    const INT32 sendVectorSize = publishProps.getSendVectorSize();
    if (sendVectorSize > PUB_SEND_VECTOR_MAX_SIZE) {
        throw PubSubException(prefix + "Send vector size " + std::to_string(sendVectorSize) +
                              " is above the largest of " +
                              std::to_string(PUB_SEND_VECTOR_MAX_SIZE) + ".");
    }
    if (sendVectorSize > 0 && producerIndex_m > 0) {
        // The client collects one list for vectored sends; two threads
        // filling it at once would corrupt it.
        throw PubSubException(
            prefix +
            "Vectored sends need a single publisher thread per client, as the client "
            "keeps one send vector.");
    }

    const double rate = publishProps.getMsgRate();
    if (!(rate >= 0.0) || std::isinf(rate)) {
        throw PubSubException(prefix + "Invalid publish rate " + std::to_string(rate) +
                              ": it must be a number of messages per second of 0 or more.");
    }
    if (rate > 0.0 && 1e9 / rate > MAX_PERIOD_IN_NS) {
        throw PubSubException(prefix + "Publish rate " + std::to_string(rate) +
                              " is too small: the time between two messages cannot be kept.");
    }
    if (rate > RATE_CHECK_THRESHOLD && clientProps.getRateCheckInterval() < 1) {
        throw PubSubException(prefix + "Rate check interval " +
                              std::to_string(clientProps.getRateCheckInterval()) +
                              " is below 1: above 1000 messages per second the rate is checked "
                              "every so many messages.");
    }
    if (clientProps.wantSmoothPubCalcLat() && rate == 0.0) {
        throw PubSubException(prefix + "Smooth publishing needs a publish rate above 0.");
    }
    readMaxCatchupInNs();

    const INT64 sizeMin = publishProps.getAttachSizeMin();
    const INT64 sizeMax = publishProps.getAttachSizeMax();
    if (sizeMin >= 0 && sizeMax >= 0 && (sizeMin > sizeMax || sizeMax >= INT_MAX)) {
        throw PubSubException(prefix + "Invalid random attachment size range " +
                              std::to_string(sizeMin) + "-" + std::to_string(sizeMax) + ".");
    }

    if (publishProps.getXaSize() > 0 && sendVectorSize > 0) {
        // The vectored send goes past the transacted session: the commits
        // would close empty transactions while the messages go out plain.
        throw PubSubException(prefix + "Vectored sends (send vector size " +
                              std::to_string(sendVectorSize) +
                              ") cannot be published in transactions (transaction size " +
                              std::to_string(publishProps.getXaSize()) + ").");
    }
}

INT64 ClientPubThread::readMaxCatchupInNs() const {
    const std::vector<std::string>& extraProps = client_mp->getClientProps().getExtraPropsList();
    if (!CommonUtils::eplKeyIsPresent(extraProps, MAX_CATCHUP_KEY)) {
        return DEFAULT_MAX_CATCHUP_IN_NS;
    }
    const std::string value = CommonUtils::eplGetValue(extraProps, MAX_CATCHUP_KEY);
    // Base 0, so that the limit may be given in hexadecimal or octal too.
    errno = 0;
    char* end_p = nullptr;
    const long long limit = std::strtoll(value.c_str(), &end_p, 0);
    if (value.empty() || *end_p != '\0' || errno == ERANGE || limit < 0) {
        throw PubSubException("CLIENT " + client_mp->getName() + ": The value of " +
                              MAX_CATCHUP_KEY + " in the extra properties must be a number of " +
                              "nanoseconds of 0 or more, not \"" + value + "\".");
    }
    return limit;
}

void ClientPubThread::stopPublish() {
    LOG_INFO("CLIENT %s: Setting stop publish", client_mp->getName().c_str());
    shutdownFlag_m.store(true);
}

void ClientPubThread::resetStats() {
    const UINT64 now = timeSource_mp != nullptr ? timeSource_mp->nowInUs() : OS::getTimeInUs();
    startTime_m.store(isPublishing() ? now : 0);
    endTime_m.store(0);
    txStats_m.resetStats();
}

}  // namespace zorvane::pubsub
