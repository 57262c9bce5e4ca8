#include "common/EpConfigProperties.h"

#include <sstream>

namespace zorvane::pubsub {

EpConfigProperties::EpConfigProperties()
    : epNames_m(),
      subscriptions_m(),
      selectors_m(),
      isAdding_m(false),
      wantTopicUnsubscribe_m(false),
      noLocal_m(false),
      clientName_m(),
      subscriptionType_m(SUBSCRIPTION_TYPE_UNKNOWN),
      numTempEndpoints_m(0),
      respectTTL_m(-1),
      transactedSessionName_m(),
      discardNotifySender_m(-1),
      isTopic_m(false),
      accessType_m(-1),
      maxMsgSize_m(-1),
      quota_m(),
      permission_m(),
      wantActiveFlowInd_m(false),
      wantCutThroughPersistence_m(false),
      maxMsgRedelivery_m(-1),
      wantReplay_m(false),
      replayDateStr_m(),
      replayMsgIdStr_m(),
      flowReconnectAttempts_m(-1),
      flowReconnectIntervalInMsecs_m(-1),
      bindRate_m(0),
      wantNonBlocking_m(false),
      flowFlapCount_m(0),
      settlementPatterns_m(),
      requiredSettlements_m() {}

std::unique_ptr<EpConfigProperties> EpConfigProperties::clone() const {
    return std::make_unique<EpConfigProperties>(*this);
}

EpConfigProperties EpConfigProperties::CreateForSubscriptionAdd(
    const std::vector<std::string>& subscriptions, const std::string& clientName,
    SubscriptionType subscriptionType) {
    EpConfigProperties props;
    props.setSubscriptions(subscriptions);
    props.setClientName(clientName);
    props.setSubscriptionType(subscriptionType);
    return props;
}

EpConfigProperties EpConfigProperties::CreateForSubscriptionRemove(
    const std::vector<std::string>& subscriptions, const std::string& clientName,
    SubscriptionType subscriptionType) {
    return CreateForSubscriptionAdd(subscriptions, clientName, subscriptionType);
}

EpConfigProperties EpConfigProperties::CreateForEpRemove(const std::vector<std::string>& epNames) {
    EpConfigProperties props;
    props.setEpNames(epNames);
    return props;
}

EpConfigProperties EpConfigProperties::CreateForEndpointProvisioning(
    const std::vector<std::string>& epNames, bool isTopic, bool isAdding, int accessType,
    int maxMsgSize, const std::string& quota, const std::string& permission, int respectTTL,
    int discardNotifySender, int maxMsgRedelivery) {
    EpConfigProperties props;
    props.setEpNames(epNames);
    props.setIsTopic(isTopic);
    props.setIsAdding(isAdding);
    props.setAccessType(accessType);
    props.setMaxMsgSize(maxMsgSize);
    props.setQuota(quota);
    props.setPermission(permission);
    props.setRespectTTL(respectTTL);
    props.setDiscardNotifySender(discardNotifySender);
    props.setMaxMsgRedelivery(maxMsgRedelivery);
    return props;
}

void EpConfigProperties::setFlowSettings(const std::string& transactedSessionName, bool wantReplay,
                                         const std::string& replayDate,
                                         const std::string& replayMsgId, int flowReconnectAttempts,
                                         int flowReconnectIntervalInMsecs,
                                         const std::vector<std::string>& settlementPatterns,
                                         const std::vector<std::string>& requiredSettlements) {
    setTransactedSessionName(transactedSessionName);
    setWantReplay(wantReplay);
    setReplayDate(replayDate);
    setReplayMsgId(replayMsgId);
    setFlowReconnectAttempts(flowReconnectAttempts);
    setFlowReconnectIntervalInMsecs(flowReconnectIntervalInMsecs);
    setSettlementPatterns(settlementPatterns);
    setRequiredSettelments(requiredSettlements);
}

EpConfigProperties EpConfigProperties::CreateForTopicUpdate(
    const std::vector<std::string>& epNames, const std::vector<std::string>& subscriptions,
    const std::vector<std::string>& selectors, bool isAdding, bool wantTopicUnsubscribe,
    bool noLocal, bool wantActiveFlowInd, bool wantCutThroughPersistence,
    const std::string& transactedSessionName, bool wantReplay, const std::string& replayDate,
    const std::string& replayMsgId, int flowReconnectAttempts, int flowReconnectIntervalInMsecs,
    const std::vector<std::string>& settlementPatterns,
    const std::vector<std::string>& requiredSettlements) {
    EpConfigProperties props;
    props.setEpNames(epNames);
    props.setSubscriptions(subscriptions);
    props.setSelectors(selectors);
    props.setIsAdding(isAdding);
    props.setWantTopicUnsubscribe(wantTopicUnsubscribe);
    props.setNoLocal(noLocal);
    props.setWantActiveFlowInd(wantActiveFlowInd);
    props.setWantCutThroughPersistence(wantCutThroughPersistence);
    props.setFlowSettings(transactedSessionName, wantReplay, replayDate, replayMsgId,
                          flowReconnectAttempts, flowReconnectIntervalInMsecs, settlementPatterns,
                          requiredSettlements);
    return props;
}

EpConfigProperties EpConfigProperties::CreateForQueueUpdate(
    const std::vector<std::string>& epNames, const std::vector<std::string>& selectors,
    bool isAdding, bool noLocal, bool wantActiveFlowInd, bool wantCutThroughPersistence,
    const std::string& transactedSessionName, bool wantReplay, const std::string& replayDate,
    const std::string& replayMsgId, int flowReconnectAttempts, int flowReconnectIntervalInMsecs,
    const std::vector<std::string>& settlementPatterns,
    const std::vector<std::string>& requiredSettlements) {
    EpConfigProperties props;
    props.setEpNames(epNames);
    props.setSelectors(selectors);
    props.setIsAdding(isAdding);
    props.setNoLocal(noLocal);
    props.setWantActiveFlowInd(wantActiveFlowInd);
    props.setWantCutThroughPersistence(wantCutThroughPersistence);
    props.setFlowSettings(transactedSessionName, wantReplay, replayDate, replayMsgId,
                          flowReconnectAttempts, flowReconnectIntervalInMsecs, settlementPatterns,
                          requiredSettlements);
    return props;
}

EpConfigProperties EpConfigProperties::CreateForTempEndpointUpdate(
    bool isTopic, int numTempEndpoints, const std::vector<std::string>& subscriptions,
    const std::vector<std::string>& selectors, int maxMsgSize, const std::string& quota,
    const std::string& permission, int respectTTL, bool noLocal, bool wantActiveFlowInd,
    bool wantCutThroughPersistence, int discardNotifySender, int maxMsgRedelivery,
    const std::string& transactedSessionName, bool wantReplay, const std::string& replayDate,
    const std::string& replayMsgId, int flowReconnectAttempts, int flowReconnectIntervalInMsecs,
    const std::vector<std::string>& settlementPatterns,
    const std::vector<std::string>& requiredSettlements) {
    EpConfigProperties props;
    props.setIsTopic(isTopic);
    props.setNumTempEndpoints(numTempEndpoints);
    props.setSubscriptions(subscriptions);
    props.setSelectors(selectors);
    props.setMaxMsgSize(maxMsgSize);
    props.setQuota(quota);
    props.setPermission(permission);
    props.setRespectTTL(respectTTL);
    props.setNoLocal(noLocal);
    props.setWantActiveFlowInd(wantActiveFlowInd);
    props.setWantCutThroughPersistence(wantCutThroughPersistence);
    props.setDiscardNotifySender(discardNotifySender);
    props.setMaxMsgRedelivery(maxMsgRedelivery);
    props.setFlowSettings(transactedSessionName, wantReplay, replayDate, replayMsgId,
                          flowReconnectAttempts, flowReconnectIntervalInMsecs, settlementPatterns,
                          requiredSettlements);
    return props;
}

std::string EpConfigProperties::toString() const {
    std::ostringstream out;
    out << "{\n"
        << "  EP Names Size = " << epNames_m.size() << "\n"
        << "  Subscriptions Size = " << subscriptions_m.size() << "\n"
        << "  Is Adding = " << isAdding_m << "\n"
        << "  Want Topic Unsubscribe = " << wantTopicUnsubscribe_m << "\n"
        << "  No Local = " << noLocal_m << "\n"
        << "  Client Name = " << clientName_m << "\n"
        << "  Subscription Type = " << subscriptionType_m << "\n"
        << "  Number of Temporary Endpoints = " << numTempEndpoints_m << "\n"
        << "  Respect TTL = " << respectTTL_m << "\n"
        << "  Transacted Session Name = " << transactedSessionName_m << "\n"
        << "  Discard Notify Sender = " << discardNotifySender_m << "\n"
        << "  Is Topic = " << isTopic_m << "\n"
        << "  Access Type = " << accessType_m << "\n"
        << "  Max Msg Size = " << maxMsgSize_m << "\n"
        << "  Quota = " << quota_m << "\n"
        << "  Permission = " << permission_m << "\n"
        << "  Want Active Flow Ind " << wantActiveFlowInd_m << "\n"
        << "  Want Cut Through Persistence " << wantCutThroughPersistence_m << "\n"
        << "  Max Msg Redelivery " << maxMsgRedelivery_m << "\n"
        << "  Want Replay " << wantReplay_m << "\n"
        << "  Replay Date " << replayDateStr_m << "\n"
        << "  Replay Msg Id " << replayMsgIdStr_m << "\n"
        << "  Number of flow reconnect attempts " << flowReconnectAttempts_m << "\n"
        << "  Flow reconnect interval in miliseconds " << flowReconnectIntervalInMsecs_m << "\n"
        << "  Bind Rate " << bindRate_m << "\n"
        << "  Want Non-Blocking Bind " << wantNonBlocking_m << "\n"
        << "  Flow Flap Count " << flowFlapCount_m << "\n"
        << "  Settlement Patterns Size " << settlementPatterns_m.size() << "\n"
        << "  Required Settlemts Size " << requiredSettlements_m.size() << "\n"
        << "}";
    return out.str();
}

}  // namespace zorvane::pubsub
