#include "embedded/BrokerInstance.h"

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

}  // namespace

zorClient_returnCode_t BrokerInstance::attach(ClientConnection& connection,
                                              const std::string& clientName) {
    std::lock_guard<std::mutex> lock(mutex_m);
    if (connection.attached_m) {
        return ZORCLIENT_OK;
    }
    if (clients_m.count(clientName) != 0) {
        return failNameInUse(name_m, clientName);
    }
    clients_m.emplace(clientName, &connection);
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
    connection.attached_m = false;
}

zorClient_returnCode_t BrokerInstance::rename(ClientConnection& connection,
                                              const std::string& clientName) {
    std::lock_guard<std::mutex> lock(mutex_m);
    if (!connection.attached_m) {
        return LastError::fail(ZORCLIENT_SUBCODE_SESSION_NOT_ESTABLISHED,
                               "the session is not connected to embedded broker \"%s\"",
                               name_m.c_str());
    }
    if (clientName == connection.clientName_m) {
        return ZORCLIENT_OK;
    }
    if (clients_m.count(clientName) != 0) {
        return failNameInUse(name_m, clientName);
    }
    clients_m.erase(connection.clientName_m);
    clients_m.emplace(clientName, &connection);
    connection.clientName_m = clientName;
    return ZORCLIENT_OK;
}

std::size_t BrokerInstance::clientCount() {
    std::lock_guard<std::mutex> lock(mutex_m);
    return clients_m.size();
}

}  // namespace zorvane::zorclient
