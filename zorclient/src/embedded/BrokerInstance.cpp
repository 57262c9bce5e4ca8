#include "embedded/BrokerInstance.h"

#include <new>

#include "api/LastError.h"

namespace zorvane::zorclient {

namespace {

// A broker refuses a name in use as a conflict with the client that holds it.
constexpr zorClient_session_responseCode_t NAME_IN_USE_RESPONSE = 409;

zorClient_returnCode_t failNameInUse(const std::string& instance, const std::string& name) {
    LastError::set(ZORCLIENT_SUBCODE_CLIENT_NAME_ALREADY_IN_USE, NAME_IN_USE_RESPONSE,
                   "client name \"%s\" is already in use by another session connected to "
                   "embedded broker \"%s\"",
                   name.c_str(), instance.c_str());
    return ZORCLIENT_FAIL;
}

zorClient_returnCode_t failNotAttached(const std::string& instance) {
    return LastError::fail(ZORCLIENT_SUBCODE_SESSION_NOT_ESTABLISHED,
                           "the session is not connected to embedded broker \"%s\"",
                           instance.c_str());
}

}  // namespace

zorClient_returnCode_t BrokerInstance::attach(ClientConnection& connection,
                                              const std::string& clientName,
                                              const std::string& inboxTopic,
                                              const ConnectionSettings& settings) {
    std::lock_guard<std::mutex> lock(mutex_m);
    if (connection.attached_m) {
        return ZORCLIENT_OK;
    }
    if (clients_m.count(clientName) != 0) {
        return failNameInUse(name_m, clientName);
    }
    auto entry = clients_m.emplace(clientName, &connection).first;
    try {
        connection.inboxTopic_m = inboxTopic;
        connection.settings_m = settings;
        router_m.attach(connection);
    } catch (...) {
        clients_m.erase(entry);
        throw;
    }
    connection.clientName_m = clientName;
    connection.attached_m = true;
    connection.id_m = ++lastConnectionId_m;
    return ZORCLIENT_OK;
}

void BrokerInstance::detach(ClientConnection& connection) noexcept {
    std::lock_guard<std::mutex> lock(mutex_m);
    if (!connection.attached_m) {
        return;
    }
    clients_m.erase(connection.clientName_m);
    router_m.detach(connection);
    connection.attached_m = false;
}

zorClient_returnCode_t BrokerInstance::rename(ClientConnection& connection,
                                              const std::string& clientName,
                                              const std::string& inboxTopic) {
    std::lock_guard<std::mutex> lock(mutex_m);
    if (!connection.attached_m) {
        return failNotAttached(name_m);
    }
    if (clientName == connection.clientName_m) {
        return ZORCLIENT_OK;
    }
    if (clients_m.count(clientName) != 0) {
        return failNameInUse(name_m, clientName);
    }
    // The inbox follows the name: the old one stops being routable at once.
    auto entry = clients_m.emplace(clientName, &connection).first;
    try {
        router_m.moveInbox(connection, inboxTopic);
    } catch (...) {
        clients_m.erase(entry);
        throw;
    }
    clients_m.erase(connection.clientName_m);
    connection.clientName_m = clientName;
    return ZORCLIENT_OK;
}

zorClient_returnCode_t BrokerInstance::subscribe(ClientConnection& connection,
                                                 std::string_view topic, bool deliverAlways) {
    std::lock_guard<std::mutex> lock(mutex_m);
    if (!connection.attached_m) {
        return failNotAttached(name_m);
    }
    router_m.subscribe(connection, topic, deliverAlways);
    return ZORCLIENT_OK;
}

zorClient_returnCode_t BrokerInstance::unsubscribe(ClientConnection& connection,
                                                   std::string_view topic) {
    std::lock_guard<std::mutex> lock(mutex_m);
    if (!connection.attached_m) {
        return failNotAttached(name_m);
    }
    router_m.unsubscribe(connection, topic);
    return ZORCLIENT_OK;
}

std::string BrokerInstance::inboxOf(ClientConnection& connection) {
    std::lock_guard<std::mutex> lock(mutex_m);
    return connection.inboxTopic_m;
}

zorClient_returnCode_t BrokerInstance::publish(ClientConnection& sender, WireMessage& wire,
                                               PublishResult* result_p) {
    std::lock_guard<std::mutex> lock(mutex_m);
    if (!sender.attached_m) {
        wire.release();
        return failNotAttached(name_m);
    }
    router_m.route(sender, wire, result_p);
    return ZORCLIENT_OK;
}

std::size_t BrokerInstance::clientCount() {
    std::lock_guard<std::mutex> lock(mutex_m);
    return clients_m.size();
}

}  // namespace zorvane::zorclient
