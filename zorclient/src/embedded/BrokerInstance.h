// One embedded broker: what every session of the process that connects to "embedded://NAME"
// shares. Now: the connected clients and their unique names; the routing, endpoint and cache
// work add their state here, under the same rules.
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

    // Connects connection under clientName. Fails with
    // ZORCLIENT_SUBCODE_CLIENT_NAME_ALREADY_IN_USE when another connection has that name.
    zorClient_returnCode_t attach(ClientConnection& connection, const std::string& clientName);
    // Disconnects; harmless when not attached.
    void detach(ClientConnection& connection) noexcept;
    // Changes an attached connection's name, keeping names unique.
    zorClient_returnCode_t rename(ClientConnection& connection, const std::string& clientName);

    std::size_t clientCount();

  private:
    const std::string name_m;
    const EmbeddedConfig config_m;
    std::mutex mutex_m;
    std::unordered_map<std::string, ClientConnection*> clients_m;  // by client name
    std::uint64_t lastConnectionId_m = 0;
};

}  // namespace zorvane::zorclient
