// The Backend of "embedded" and "embedded://NAME" hosts: a session's way into the in-process
// broker instance NAME, shared by every session of the process that names it.
//
// Now: connect, disconnect, rename, dropConnection (forced failures), identity, peer,
// capabilities, and direct messaging (topic subscriptions, publishing, requests and replies).
// The endpoint, transaction and cache operations answer ZORCLIENT_SUBCODE_NOT_SUPPORTED until
// that work builds them.
//
// Threads: as Backend. The instance pointer is set by the first connect and kept until the
// backend goes, so that publishing threads may use it without a lock once they have seen the
// backend connected; core serialises the four connection operations.
#pragma once

#include <atomic>
#include <memory>
#include <string>

#include "core/Backend.h"
#include "embedded/BrokerInstance.h"
#include "embedded/ClientConnection.h"

namespace zorvane::zorclient {

class EmbeddedBackend final : public Backend {
  public:
    // Instance names: 1 to 64 characters of letters, digits, '_', '-' and '.'.
    static constexpr std::size_t MAX_INSTANCE_NAME = 64;
    // Largest message the broker takes, direct or guaranteed.
    static constexpr std::uint32_t MAX_MESSAGE_SIZE = 30u * 1024u * 1024u;

    // A backend for instance instanceName; null with the error info set when the name is not
    // valid.
    static std::unique_ptr<Backend> create(const std::string& instanceName,
                                           BackendListener& listener);

    EmbeddedBackend(const std::string& instanceName, BackendListener& listener);
    ~EmbeddedBackend() override;

    zorClient_returnCode_t connect(const ConnectRequest& request,
                                   SessionIdentity* identity_p) override;
    void disconnect() noexcept override;
    zorClient_returnCode_t rename(const std::string& clientName,
                                  SessionIdentity* identity_p) override;
    void dropConnection(ConnectionLoss* loss_p) noexcept override;
    bool isConnected() const noexcept override {
        return connected_m.load(std::memory_order_acquire);
    }
    const PeerInfo& peer() const noexcept override { return peer_m; }
    int capability(std::string_view name) const noexcept override;

    zorClient_returnCode_t subscribe(const SubscriptionRequest& request) override;
    zorClient_returnCode_t unsubscribe(const SubscriptionRequest& request) override;
    zorClient_returnCode_t publish(const PublishRequest& request) override;
    zorClient_returnCode_t request(const PublishRequest& request, std::uint64_t requestId) override;
    void endRequest(std::uint64_t requestId) noexcept override;
    zorClient_returnCode_t reply(const PublishRequest& request) override;
    zorClient_returnCode_t bindFlow(const FlowBindRequest& request,
                                    FlowBinding* binding_p) override;
    zorClient_returnCode_t unbindFlow(std::uint64_t flowId) override;
    zorClient_returnCode_t setFlowStarted(std::uint64_t flowId, bool started) override;
    zorClient_returnCode_t ack(std::uint64_t flowId, std::uint64_t msgId) override;
    zorClient_returnCode_t settle(std::uint64_t flowId, std::uint64_t msgId,
                                  zorClient_msgOutcome_t outcome) override;
    zorClient_returnCode_t provision(const EndpointRequest& request) override;
    zorClient_returnCode_t deprovision(const EndpointRequest& request) override;
    zorClient_returnCode_t commit(std::uint64_t transactionId) override;
    zorClient_returnCode_t rollback(std::uint64_t transactionId) override;
    zorClient_returnCode_t cacheRequest(const CacheRequest& request) override;

  private:
    SessionIdentity identityOf(const std::string& clientName) const;
    zorClient_returnCode_t failNotConnected() const;
    zorClient_returnCode_t publishDirect(const PublishRequest& request,
                                         const WireOverrides& overrides);

    const std::string instanceName_m;
    ClientConnection connection_m;
    // From the first connect on; an instance is forgotten at zorClient_cleanup once no backend
    // holds it.
    std::shared_ptr<BrokerInstance> instance_m;
    std::atomic<bool> connected_m{false};
    ConnectionLoss lastLoss_m;
    PeerInfo peer_m;
};

}  // namespace zorvane::zorclient
