// A request to a client to add or remove endpoints, subscriptions or flows,
// with the flow and endpoint settings to use. A plain value that checks
// nothing: the client that carries out the request decides what each value
// means. -1 in an integer field means "not given": the property is then not
// passed to the messaging library and the library's default holds.
//
// Ownership and threads: a plain value; the bind thread keeps its own copy
// and a client reads the record only during the call it is given to.
#pragma once

#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "common/dataTypes.h"

namespace zorvane::pubsub {

class EpConfigProperties {
  public:
    EpConfigProperties();

    EpConfigProperties(const EpConfigProperties&) = default;
    EpConfigProperties& operator=(const EpConfigProperties&) = default;
    EpConfigProperties(EpConfigProperties&&) = default;
    EpConfigProperties& operator=(EpConfigProperties&&) = default;
    ~EpConfigProperties() = default;

    // A copy on the heap; the caller owns it.
    std::unique_ptr<EpConfigProperties> clone() const;

    // Debug text: "{\n", one labelled line per field except the selectors,
    // "}". Lists print their size, flags 0 or 1.
    std::string toString() const;

    // ---- factories: a default record with the named fields set ----

    // Add and remove are the same record: neither sets isAdding, which stays
    // false. The operation the record is handed to says what to do.
    static EpConfigProperties CreateForSubscriptionAdd(
        const std::vector<std::string>& subscriptions, const std::string& clientName,
        SubscriptionType subscriptionType);
    static EpConfigProperties CreateForSubscriptionRemove(
        const std::vector<std::string>& subscriptions, const std::string& clientName,
        SubscriptionType subscriptionType);
    static EpConfigProperties CreateForEpRemove(const std::vector<std::string>& epNames);
    static EpConfigProperties CreateForEndpointProvisioning(
        const std::vector<std::string>& epNames, bool isTopic, bool isAdding, int accessType,
        int maxMsgSize, const std::string& quota, const std::string& permission, int respectTTL,
        int discardNotifySender, int maxMsgRedelivery);
    // Leaves isTopic false; a caller that needs it calls setIsTopic(true).
    static EpConfigProperties CreateForTopicUpdate(
        const std::vector<std::string>& epNames, const std::vector<std::string>& subscriptions,
        const std::vector<std::string>& selectors, bool isAdding, bool wantTopicUnsubscribe,
        bool noLocal, bool wantActiveFlowInd, bool wantCutThroughPersistence,
        const std::string& transactedSessionName, bool wantReplay, const std::string& replayDate,
        const std::string& replayMsgId, int flowReconnectAttempts, int flowReconnectIntervalInMsecs,
        const std::vector<std::string>& settlementPatterns,
        const std::vector<std::string>& requiredSettlements);
    static EpConfigProperties CreateForQueueUpdate(
        const std::vector<std::string>& epNames, const std::vector<std::string>& selectors,
        bool isAdding, bool noLocal, bool wantActiveFlowInd, bool wantCutThroughPersistence,
        const std::string& transactedSessionName, bool wantReplay, const std::string& replayDate,
        const std::string& replayMsgId, int flowReconnectAttempts, int flowReconnectIntervalInMsecs,
        const std::vector<std::string>& settlementPatterns,
        const std::vector<std::string>& requiredSettlements);
    // No endpoint names (the library names temporary endpoints) and no
    // isAdding (temporary endpoints are only ever created by this request).
    static EpConfigProperties CreateForTempEndpointUpdate(
        bool isTopic, int numTempEndpoints, const std::vector<std::string>& subscriptions,
        const std::vector<std::string>& selectors, int maxMsgSize, const std::string& quota,
        const std::string& permission, int respectTTL, bool noLocal, bool wantActiveFlowInd,
        bool wantCutThroughPersistence, int discardNotifySender, int maxMsgRedelivery,
        const std::string& transactedSessionName, bool wantReplay, const std::string& replayDate,
        const std::string& replayMsgId, int flowReconnectAttempts, int flowReconnectIntervalInMsecs,
        const std::vector<std::string>& settlementPatterns,
        const std::vector<std::string>& requiredSettlements);

    // ---- getters and setters; list setters replace the whole list ----

    const std::vector<std::string>& getEpNames() const { return epNames_m; }
    void setEpNames(const std::vector<std::string>& value) { epNames_m = value; }
    const std::vector<std::string>& getSubscriptions() const { return subscriptions_m; }
    void setSubscriptions(const std::vector<std::string>& value) { subscriptions_m = value; }
    const std::vector<std::string>& getSelectors() const { return selectors_m; }
    void setSelectors(const std::vector<std::string>& value) { selectors_m = value; }
    bool getIsAdding() const { return isAdding_m; }
    void setIsAdding(bool value) { isAdding_m = value; }
    bool getWantTopicUnsubscribe() const { return wantTopicUnsubscribe_m; }
    void setWantTopicUnsubscribe(bool value) { wantTopicUnsubscribe_m = value; }
    bool getNoLocal() const { return noLocal_m; }
    void setNoLocal(bool value) { noLocal_m = value; }
    const std::string& getClientName() const { return clientName_m; }
    void setClientName(const std::string& value) { clientName_m = value; }
    SubscriptionType getSubscriptionType() const { return subscriptionType_m; }
    void setSubscriptionType(SubscriptionType value) { subscriptionType_m = value; }
    int getNumTempEndpoints() const { return numTempEndpoints_m; }
    void setNumTempEndpoints(int value) { numTempEndpoints_m = value; }
    int getRespectTTL() const { return respectTTL_m; }
    void setRespectTTL(int value) { respectTTL_m = value; }
    std::string getTransactedSessionName() const { return transactedSessionName_m; }
    void setTransactedSessionName(const std::string& value) { transactedSessionName_m = value; }
    int getDiscardNotifySender() const { return discardNotifySender_m; }
    void setDiscardNotifySender(int value) { discardNotifySender_m = value; }
    bool getIsTopic() const { return isTopic_m; }
    void setIsTopic(bool value) { isTopic_m = value; }
    int getAccessType() const { return accessType_m; }
    void setAccessType(int value) { accessType_m = value; }
    int getMaxMsgSize() const { return maxMsgSize_m; }
    void setMaxMsgSize(int value) { maxMsgSize_m = value; }
    std::string getQuota() const { return quota_m; }
    void setQuota(std::string value) { quota_m = std::move(value); }
    const std::string& getPermission() const { return permission_m; }
    void setPermission(const std::string& value) { permission_m = value; }
    bool getWantActiveFlowInd() const { return wantActiveFlowInd_m; }
    void setWantActiveFlowInd(bool value) { wantActiveFlowInd_m = value; }
    bool getWantCutThroughPersistence() const { return wantCutThroughPersistence_m; }
    void setWantCutThroughPersistence(bool value) { wantCutThroughPersistence_m = value; }
    int getMaxMsgRedelivery() const { return maxMsgRedelivery_m; }
    void setMaxMsgRedelivery(int value) { maxMsgRedelivery_m = value; }
    bool getWantReplay() const { return wantReplay_m; }
    void setWantReplay(bool value) { wantReplay_m = value; }
    const std::string& getReplayDate() const { return replayDateStr_m; }
    void setReplayDate(const std::string& value) { replayDateStr_m = value; }
    const std::string& getReplayMsgId() const { return replayMsgIdStr_m; }
    void setReplayMsgId(const std::string& value) { replayMsgIdStr_m = value; }
    int getFlowReconnectAttempts() const { return flowReconnectAttempts_m; }
    void setFlowReconnectAttempts(int value) { flowReconnectAttempts_m = value; }
    int getFlowReconnectIntervalInMsecs() const { return flowReconnectIntervalInMsecs_m; }
    void setFlowReconnectIntervalInMsecs(int value) { flowReconnectIntervalInMsecs_m = value; }
    int getBindRate() const { return bindRate_m; }
    void setBindRate(int value) { bindRate_m = value; }
    bool getWantNonBlocking() const { return wantNonBlocking_m; }
    void setWantNonBlocking(bool value) { wantNonBlocking_m = value; }
    int getFlowFlapCount() const { return flowFlapCount_m; }
    void setFlowFlapCount(int value) { flowFlapCount_m = value; }
    const std::vector<std::string>& getSettlementPatterns() const { return settlementPatterns_m; }
    void setSettlementPatterns(const std::vector<std::string>& value) {
        settlementPatterns_m = value;
    }
    // Spelt so: callers across the tool use this name.
    const std::vector<std::string>& getRequiredSettelments() const { return requiredSettlements_m; }
    void setRequiredSettelments(const std::vector<std::string>& value) {
        requiredSettlements_m = value;
    }

  private:
    // The flow settings that the topic, queue and temporary endpoint
    // factories share.
    void setFlowSettings(const std::string& transactedSessionName, bool wantReplay,
                         const std::string& replayDate, const std::string& replayMsgId,
                         int flowReconnectAttempts, int flowReconnectIntervalInMsecs,
                         const std::vector<std::string>& settlementPatterns,
                         const std::vector<std::string>& requiredSettlements);

    std::vector<std::string> epNames_m;        // durable endpoints to act on
    std::vector<std::string> subscriptions_m;  // one topic per topic endpoint
    std::vector<std::string> selectors_m;      // one for all or one per endpoint
    bool isAdding_m;                           // bind or provision; false removes
    bool wantTopicUnsubscribe_m;
    bool noLocal_m;
    std::string clientName_m;  // subscribing on behalf of another client
    SubscriptionType subscriptionType_m;
    int numTempEndpoints_m;
    int respectTTL_m;                     // 0 or 1; -1 not given
    std::string transactedSessionName_m;  // empty for none
    int discardNotifySender_m;            // -1 not given
    bool isTopic_m;                       // false for a queue
    int accessType_m;                     // -1 not given
    int maxMsgSize_m;                     // -1 not given
    std::string quota_m;                  // MB, as text
    std::string permission_m;
    bool wantActiveFlowInd_m;
    bool wantCutThroughPersistence_m;
    int maxMsgRedelivery_m;  // -1 not given
    bool wantReplay_m;
    std::string replayDateStr_m;
    std::string replayMsgIdStr_m;
    int flowReconnectAttempts_m;         // -1 not given
    int flowReconnectIntervalInMsecs_m;  // -1 not given
    int bindRate_m;                      // binds per second of the bind thread
    bool wantNonBlocking_m;
    int flowFlapCount_m;  // 0: one plain pass
    std::vector<std::string> settlementPatterns_m;
    std::vector<std::string> requiredSettlements_m;
};

}  // namespace zorvane::pubsub
