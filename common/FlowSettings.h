// The endpoint and flow settings of the command line, read once, as the
// endpoint configuration factories take them. Settlement lists are never
// given on the command line, so the bindings made here carry none.
#pragma once

#include <string>
#include <vector>

#include "common/CliProperties.h"
#include "common/EpConfigProperties.h"

namespace zorvane::pubsub {

struct FlowSettings {
    explicit FlowSettings(const CliProperties& cli)
        : noLocal(cli.getBooleanProperty(CliProperties::WANT_NO_LOCAL)),
          wantActiveFlowInd(cli.getBooleanProperty(CliProperties::WANT_ACTIVE_FLOW_INDICATION)),
          wantCutThroughPersistence(
              cli.getBooleanProperty(CliProperties::WANT_CUT_THROUGH_PERSISTENCE)),
          wantReplay(cli.getBooleanProperty(CliProperties::AD_WANT_REPLAY)),
          replayDate(cli.getStringProperty(CliProperties::AD_REPLAY_DATE)),
          replayMsgId(cli.getStringProperty(CliProperties::AD_REPLAY_MSG_ID)),
          flowReconnectAttempts(cli.getIntegerProperty(CliProperties::AD_FLOW_RECONNECT_ATTEMPTS)),
          flowReconnectIntervalInMsecs(
              cli.getIntegerProperty(CliProperties::AD_FLOW_RECONNECT_INTERVAL_IN_MSECS)),
          maxMsgSize(cli.getIntegerProperty(CliProperties::PE_MAXMSG_SIZE)),
          quota(cli.getStringProperty(CliProperties::PE_QUOTA_MB)),
          permission(cli.getStringProperty(CliProperties::PE_PERMISSION)),
          respectTTL(cli.getIntegerProperty(CliProperties::PE_RESPECT_TTL)),
          discardNotifySender(cli.getIntegerProperty(CliProperties::PE_DISCARD_NOTIFY_SENDER)),
          maxMsgRedelivery(cli.getIntegerProperty(CliProperties::PE_MAX_MSG_REDELIVERY)),
          accessType(cli.getIntegerProperty(CliProperties::PE_ACCESS_TYPE)) {}

    // Provisioning (isAdding) or deprovisioning of the named endpoints.
    EpConfigProperties provisioning(const std::vector<std::string>& names, bool isTopic,
                                    bool isAdding) const {
        return EpConfigProperties::CreateForEndpointProvisioning(
            names, isTopic, isAdding, accessType, maxMsgSize, quota, permission, respectTTL,
            discardNotifySender, maxMsgRedelivery);
    }
    // Binding to queues with these settings.
    EpConfigProperties queueBind(const std::vector<std::string>& queues,
                                 const std::vector<std::string>& selectors,
                                 const std::string& transactedSessionName) const {
        return EpConfigProperties::CreateForQueueUpdate(
            queues, selectors, true, noLocal, wantActiveFlowInd, wantCutThroughPersistence,
            transactedSessionName, wantReplay, replayDate, replayMsgId, flowReconnectAttempts,
            flowReconnectIntervalInMsecs, {}, {});
    }
    // Binding to durable topic endpoints, endpoint e subscribing topic e.
    EpConfigProperties topicEndpointBind(const std::vector<std::string>& endpoints,
                                         const std::vector<std::string>& topics,
                                         const std::vector<std::string>& selectors,
                                         const std::string& transactedSessionName) const {
        return EpConfigProperties::CreateForTopicUpdate(
            endpoints, topics, selectors, true, false, noLocal, wantActiveFlowInd,
            wantCutThroughPersistence, transactedSessionName, wantReplay, replayDate, replayMsgId,
            flowReconnectAttempts, flowReconnectIntervalInMsecs, {}, {});
    }

    bool noLocal;
    bool wantActiveFlowInd;
    bool wantCutThroughPersistence;
    bool wantReplay;
    std::string replayDate;
    std::string replayMsgId;
    int flowReconnectAttempts;
    int flowReconnectIntervalInMsecs;
    int maxMsgSize;
    std::string quota;
    std::string permission;
    int respectTTL;
    int discardNotifySender;
    int maxMsgRedelivery;
    int accessType;
};

}  // namespace zorvane::pubsub
