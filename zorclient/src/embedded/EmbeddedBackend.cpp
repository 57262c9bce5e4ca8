#include "embedded/EmbeddedBackend.h"

#include <cctype>

#include "api/LastError.h"
#include "api/Logger.h"
#include "core/Message.h"
#include "core/WireMessage.h"
#include "embedded/BrokerRegistry.h"
#include "embedded/EmbeddedCapabilities.h"
#include "zorclientBuildInfo.h"

namespace zorvane::zorclient {

namespace {

constexpr const char* INBOX_PREFIX = "#INBOX/";

bool isValidInstanceName(const std::string& name) {
    if (name.empty() || name.size() > EmbeddedBackend::MAX_INSTANCE_NAME) {
        return false;
    }
    for (unsigned char c : name) {
        if (!std::isalnum(c) && c != '_' && c != '-' && c != '.') {
            return false;
        }
    }
    return true;
}

zorClient_returnCode_t notBuilt(const char* operation_p) {
    return LastError::fail(ZORCLIENT_SUBCODE_NOT_SUPPORTED,
                           "%s is not available in the embedded broker of this build", operation_p);
}

}  // namespace

std::unique_ptr<Backend> EmbeddedBackend::create(const std::string& instanceName,
                                                 BackendListener& listener) {
    if (!isValidInstanceName(instanceName)) {
        LastError::fail(ZORCLIENT_SUBCODE_PARAM_OUT_OF_RANGE,
                        "\"%s\" is not a valid embedded broker name: 1 to %zu letters, digits, "
                        "'_', '-' or '.'",
                        instanceName.c_str(), MAX_INSTANCE_NAME);
        return nullptr;
    }
    return std::make_unique<EmbeddedBackend>(instanceName, listener);
}

EmbeddedBackend::EmbeddedBackend(const std::string& instanceName, BackendListener& listener)
    : instanceName_m(instanceName), connection_m(listener) {
    peer_m.routerName = instanceName;
    peer_m.platform = "embedded";
    peer_m.softwareVersion = ZORCLIENT_VERSION_TEXT;
    peer_m.softwareDate = ZORCLIENT_BUILD_DATE;
    peer_m.portType = "inproc";
    peer_m.portSpeed = 0;
    peer_m.maxGuaranteedMsgSize = MAX_MESSAGE_SIZE;
    peer_m.maxDirectMsgSize = MAX_MESSAGE_SIZE;
}

EmbeddedBackend::~EmbeddedBackend() {
    disconnect();
}

SessionIdentity EmbeddedBackend::identityOf(const std::string& clientName) const {
    return SessionIdentity{clientName, INBOX_PREFIX + instanceName_m + "/" + clientName};
}

zorClient_returnCode_t EmbeddedBackend::connect(const ConnectRequest& request,
                                                SessionIdentity* identity_p) {
    if (connected_m.load(std::memory_order_relaxed)) {
        *identity_p = identityOf(connection_m.clientName_m);
        return ZORCLIENT_OK;
    }
    if (instance_m == nullptr) {
        EmbeddedConfig config;
        zorClient_returnCode_t rc = EmbeddedConfig::parse(
            PropertyList(request.backendProperties), "zorClient_session_connect", false, &config);
        if (rc != ZORCLIENT_OK) {
            return rc;
        }
        bool created = false;
        std::shared_ptr<BrokerInstance> instance =
            BrokerRegistry::obtain(instanceName_m, config, &created);
        if (!created && !(instance->config() == config)) {
            ZC_LOG(ZORCLIENT_LOG_NOTICE,
                   "embedded broker \"%s\" keeps the configuration of the session that created "
                   "it; the \"EMBEDDED_...\" properties of client \"%s\" are ignored",
                   instanceName_m.c_str(), request.clientName.c_str());
        }
        // Kept from now on: publishing threads read it without a lock once they have seen the
        // backend connected, so it is written only this once.
        instance_m = std::move(instance);
    }
    ConnectionSettings settings;
    settings.noLocal = request.noLocal;
    settings.localPriority = request.subscriberLocalPriority;
    settings.egressLimitBytes = request.egressLimitBytes + instance_m->config().egressQueueBytes;
    const SessionIdentity identity = identityOf(request.clientName);
    zorClient_returnCode_t rc =
        instance_m->attach(connection_m, request.clientName, identity.inboxTopic, settings);
    if (rc != ZORCLIENT_OK) {
        return rc;
    }
    connected_m.store(true, std::memory_order_release);
    *identity_p = identity;
    return ZORCLIENT_OK;
}

void EmbeddedBackend::disconnect() noexcept {
    if (instance_m != nullptr) {
        instance_m->detach(connection_m);
    }
    connected_m.store(false, std::memory_order_release);
}

zorClient_returnCode_t EmbeddedBackend::rename(const std::string& clientName,
                                               SessionIdentity* identity_p) {
    if (!connected_m.load(std::memory_order_acquire)) {
        return failNotConnected();
    }
    SessionIdentity identity = identityOf(clientName);
    zorClient_returnCode_t rc = instance_m->rename(connection_m, clientName, identity.inboxTopic);
    if (rc == ZORCLIENT_OK) {
        *identity_p = std::move(identity);
    }
    return rc;
}

void EmbeddedBackend::dropConnection(ConnectionLoss* loss_p) noexcept {
    if (connected_m.load(std::memory_order_acquire)) {
        lastLoss_m.subCode = instance_m->config().sessionDownSubcode;
        lastLoss_m.responseCode = 0;
        try {
            lastLoss_m.reason = "the connection to embedded broker \"" + instanceName_m +
                                "\" was lost (failure forced by the application)";
        } catch (...) {
            lastLoss_m.reason.clear();
        }
        disconnect();
    }
    try {
        *loss_p = lastLoss_m;
    } catch (...) {
        loss_p->subCode = lastLoss_m.subCode;
        loss_p->responseCode = lastLoss_m.responseCode;
    }
}

int EmbeddedBackend::capability(std::string_view name) const noexcept {
    return EmbeddedCapabilities::answer(name);
}

zorClient_returnCode_t EmbeddedBackend::failNotConnected() const {
    return LastError::fail(ZORCLIENT_SUBCODE_SESSION_NOT_ESTABLISHED,
                           "the session is not connected to embedded broker \"%s\"",
                           instanceName_m.c_str());
}

zorClient_returnCode_t EmbeddedBackend::subscribe(const SubscriptionRequest& request) {
    if (!request.queueName.empty() || !request.onBehalfOfClient.empty()) {
        return notBuilt("adding topic subscriptions to endpoints or other clients");
    }
    if (!connected_m.load(std::memory_order_acquire)) {
        return failNotConnected();
    }
    return instance_m->subscribe(
        connection_m, request.topic,
        (request.flags & ZORCLIENT_SUBSCRIBE_FLAGS_RX_ALL_DELIVER_TO_ONE) != 0);
}

zorClient_returnCode_t EmbeddedBackend::unsubscribe(const SubscriptionRequest& request) {
    if (!request.queueName.empty() || !request.onBehalfOfClient.empty()) {
        return notBuilt("removing topic subscriptions of endpoints or other clients");
    }
    if (!connected_m.load(std::memory_order_acquire)) {
        return failNotConnected();
    }
    return instance_m->unsubscribe(connection_m, request.topic);
}

zorClient_returnCode_t EmbeddedBackend::publishDirect(const PublishRequest& request,
                                                      const WireOverrides& overrides) {
    const Message& msg = *request.message_p;
    const zorClient_destinationType_t destinationType = overrides.destination_p != nullptr
                                                            ? overrides.destinationType
                                                            : msg.header().destinationType;
    if (destinationType == ZORCLIENT_QUEUE_DESTINATION ||
        destinationType == ZORCLIENT_QUEUE_TEMP_DESTINATION) {
        return LastError::fail(ZORCLIENT_SUBCODE_NOT_SUPPORTED,
                               "the message is addressed to a queue; the embedded broker of this "
                               "build delivers direct messages to topics only");
    }
    if (msg.header().deliveryMode != ZORCLIENT_DELIVERY_MODE_DIRECT) {
        return LastError::fail(ZORCLIENT_SUBCODE_NOT_SUPPORTED,
                               "the message is persistent or non-persistent; the embedded broker "
                               "of this build carries direct messages only");
    }
    if (request.transactionId != 0) {
        return notBuilt("transacted publishing");
    }
    if (!connected_m.load(std::memory_order_acquire)) {
        return failNotConnected();
    }
    WireMessage* wire_p = WireMessage::snapshot(msg, overrides);
    if (wire_p->contentSize() > MAX_MESSAGE_SIZE) {
        const std::size_t size = wire_p->contentSize();
        wire_p->release();
        return LastError::fail(ZORCLIENT_SUBCODE_MESSAGE_TOO_BIG,
                               "the message has %zu bytes; embedded broker \"%s\" takes at most %u",
                               size, instanceName_m.c_str(), MAX_MESSAGE_SIZE);
    }
    // The broker takes the copy over, with the one reference it has.
    return instance_m->publish(connection_m, *wire_p, request.result_p);
}

zorClient_returnCode_t EmbeddedBackend::publish(const PublishRequest& request) {
    static const WireOverrides none_s;
    return publishDirect(request, request.overrides_p != nullptr ? *request.overrides_p : none_s);
}

zorClient_returnCode_t EmbeddedBackend::request(const PublishRequest& request,
                                                std::uint64_t requestId) {
    if (!connected_m.load(std::memory_order_acquire)) {
        return failNotConnected();
    }
    const std::string inbox = instance_m->inboxOf(connection_m);
    WireOverrides overrides =
        request.overrides_p != nullptr ? *request.overrides_p : WireOverrides();
    overrides.replyTo_p = inbox.c_str();
    overrides.replyToType = ZORCLIENT_TOPIC_DESTINATION;
    overrides.requestCorrelation = requestId;
    return publishDirect(request, overrides);
}

// The embedded broker keeps no state per request: a reply finds its waiter through core.
void EmbeddedBackend::endRequest(std::uint64_t) noexcept {}

zorClient_returnCode_t EmbeddedBackend::reply(const PublishRequest& request) {
    return publish(request);
}

zorClient_returnCode_t EmbeddedBackend::bindFlow(const FlowBindRequest&, FlowBinding*) {
    return notBuilt("binding a flow");
}
zorClient_returnCode_t EmbeddedBackend::unbindFlow(std::uint64_t) {
    return notBuilt("unbinding a flow");
}
zorClient_returnCode_t EmbeddedBackend::setFlowStarted(std::uint64_t, bool) {
    return notBuilt("starting and stopping a flow");
}
zorClient_returnCode_t EmbeddedBackend::ack(std::uint64_t, std::uint64_t) {
    return notBuilt("acknowledgement");
}
zorClient_returnCode_t EmbeddedBackend::settle(std::uint64_t, std::uint64_t,
                                               zorClient_msgOutcome_t) {
    return notBuilt("settlement");
}
zorClient_returnCode_t EmbeddedBackend::provision(const EndpointRequest&) {
    return notBuilt("endpoint provisioning");
}
zorClient_returnCode_t EmbeddedBackend::deprovision(const EndpointRequest&) {
    return notBuilt("endpoint deprovisioning");
}
zorClient_returnCode_t EmbeddedBackend::commit(std::uint64_t) {
    return notBuilt("transactions");
}
zorClient_returnCode_t EmbeddedBackend::rollback(std::uint64_t) {
    return notBuilt("transactions");
}
zorClient_returnCode_t EmbeddedBackend::cacheRequest(const CacheRequest&) {
    return notBuilt("cache requests");
}

}  // namespace zorvane::zorclient
