// One embedded broker: what every session of the process that connects to "embedded://NAME"
// shares: the connected clients and their unique names, and direct messaging (DirectRouter).
// The endpoint and cache work add their state here, under the same rules.
//
// Threads: all members are thread-safe, under the instance's mutex. The instance never calls
// the application and never calls a BackendListener in a way that could block.
#pragma once

#include <cstddef>
#include <cstdint>
#include <mutex>
#include <string>
#include <unordered_map>

#include "embedded/ClientConnection.h"
#include "embedded/DirectRouter.h"
#include "embedded/EmbeddedConfig.h"

namespace zorvane::zorclient {

class BrokerInstance {
  public:
    BrokerInstance(std::string name, const EmbeddedConfig& config)
        : name_m(std::move(name)), config_m(config) {}
    BrokerInstance(const BrokerInstance&) = delete;
    BrokerInstance& operator=(const BrokerInstance&) = delete;

    const std::string& name() const noexcept { return name_m; }
    const EmbeddedConfig& config() const noexcept { return config_m; }

    // Connects connection under clientName with inbox topic inboxTopic and settings. Fails with
    // ZORCLIENT_SUBCODE_CLIENT_NAME_ALREADY_IN_USE when another connection has that name.
    zorClient_returnCode_t attach(ClientConnection& connection, const std::string& clientName,
                                  const std::string& inboxTopic,
                                  const ConnectionSettings& settings);
    // Disconnects, with the connection's subscriptions; harmless when not attached.
    void detach(ClientConnection& connection) noexcept;
    // Changes an attached connection's name and inbox, keeping names unique.
    zorClient_returnCode_t rename(ClientConnection& connection, const std::string& clientName,
                                  const std::string& inboxTopic);

    // Direct subscriptions of an attached connection (topic checked by the caller). Subscribing
    // an existing topic and removing a missing one succeed without change. Fail with
    // ZORCLIENT_SUBCODE_SESSION_NOT_ESTABLISHED when not attached.
    zorClient_returnCode_t subscribe(ClientConnection& connection, std::string_view topic,
                                     bool deliverAlways);
    zorClient_returnCode_t unsubscribe(ClientConnection& connection, std::string_view topic);
    // The connection's inbox topic (a copy: a rename may change it).
    std::string inboxOf(ClientConnection& connection);
    // Routes direct message wire (destination checked by the caller) from sender, taking over
    // the caller's reference on it in every case (see DirectRouter::route). Fails as
    // subscribe.
    zorClient_returnCode_t publish(ClientConnection& sender, WireMessage& wire,
                                   PublishResult* result_p);

    std::size_t clientCount();

  private:
    const std::string name_m;
    const EmbeddedConfig config_m;
    std::mutex mutex_m;
    std::unordered_map<std::string, ClientConnection*> clients_m;  // by client name
    std::uint64_t lastConnectionId_m = 0;
    DirectRouter router_m;
};

}  // namespace zorvane::zorclient
