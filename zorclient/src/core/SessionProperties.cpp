// Session: properties, capabilities and the publisher state log.
#include <cstring>

#include "api/LastError.h"
#include "api/Logger.h"
#include "core/Session.h"

namespace zorvane::zorclient {

namespace {

zorClient_returnCode_t copyOut(const std::string& value, const char* name_p, char* buffer_p,
                               std::size_t size, const char* function_p) {
    if (value.size() + 1 > size) {
        return LastError::fail(ZORCLIENT_SUBCODE_INSUFFICIENT_SPACE,
                               "%s: the value of %s needs %zu bytes; the buffer has %zu",
                               function_p, name_p, value.size() + 1, size);
    }
    std::memcpy(buffer_p, value.c_str(), value.size() + 1);
    return ZORCLIENT_OK;
}

zorClient_returnCode_t failNotConnectedYet(const char* function_p, const char* what_p) {
    return LastError::fail(ZORCLIENT_SUBCODE_SESSION_NOT_ESTABLISHED,
                           "%s: %s is known once the session has connected", function_p, what_p);
}

const char* stateName(Session::State state) {
    switch (state) {
        case Session::State::Idle:
            return "not connected";
        case Session::State::Up:
            return "up";
        case Session::State::Reconnecting:
            return "reconnecting";
        case Session::State::Down:
            return "down";
    }
    return "?";
}

}  // namespace

zorClient_returnCode_t Session::getProperty(const char* name_p, char* buffer_p, std::size_t size,
                                            const char* function_p) {
    std::lock_guard<std::mutex> lock(mutex_m);
    if (std::strcmp(name_p, ZORCLIENT_SESSION_PROP_REPLY_TO_DEFAULT_DEST) == 0) {
        if (identity_m.inboxTopic.empty()) {
            return failNotConnectedYet(function_p, "the reply topic");
        }
        return copyOut(identity_m.inboxTopic, name_p, buffer_p, size, function_p);
    }
    if (SessionConfig::isSecret(name_p)) {
        return LastError::fail(ZORCLIENT_SUBCODE_PERMISSION_NOT_ALLOWED,
                               "%s: %s is a secret the library does not give out", function_p,
                               name_p);
    }
    const std::string* value_p = config_m.value(name_p);
    if (value_p == nullptr) {
        return LastError::fail(ZORCLIENT_SUBCODE_PARAM_OUT_OF_RANGE,
                               "%s: \"%s\" is not a session property", function_p, name_p);
    }
    return copyOut(*value_p, name_p, buffer_p, size, function_p);
}

zorClient_returnCode_t Session::modifyProperties(const PropertyList& list, const char* function_p) {
    SessionConfig::Changes changes;
    zorClient_returnCode_t rc =
        SessionConfig::check(list, SessionConfig::Purpose::Modify, function_p, &changes);
    if (rc != ZORCLIENT_OK) {
        return rc;
    }
    std::lock_guard<std::mutex> lock(mutex_m);
    for (const PropertyList::Entry& change : changes) {
        // A connected session takes its new name on the broker first, so that the name stays
        // unique there; if the broker refuses, nothing changes.
        if (change.first == ZORCLIENT_SESSION_PROP_CLIENT_NAME && connectedBackend() != nullptr) {
            SessionIdentity identity;
            rc = connectedBackend()->rename(change.second, &identity);
            if (rc != ZORCLIENT_OK) {
                const zorClient_errorInfo failure = LastError::get();
                LastError::set(failure.subCode, failure.responseCode, "%s: %s", function_p,
                               failure.errorStr);
                return rc;
            }
            identity_m = std::move(identity);
        }
    }
    config_m.commit(changes);
    return ZORCLIENT_OK;
}

int Session::isCapable(const char* name_p, const char* function_p) {
    std::lock_guard<std::mutex> lock(mutex_m);
    Backend* active_p = active_m.load(std::memory_order_acquire);
    if (active_p == nullptr) {
        failNotConnectedYet(function_p, "what the broker can do");
        return -1;
    }
    const int answer = active_p->capability(name_p);
    if (answer < 0) {
        LastError::fail(ZORCLIENT_SUBCODE_PARAM_OUT_OF_RANGE, "%s: \"%s\" is not a capability",
                        function_p, name_p);
    }
    return answer;
}

zorClient_returnCode_t Session::getCapability(const char* name_p, zorClient_field_t* field_p,
                                              const char* function_p) {
    std::lock_guard<std::mutex> lock(mutex_m);
    Backend* active_p = active_m.load(std::memory_order_acquire);
    if (active_p == nullptr) {
        return failNotConnectedYet(function_p, "what the broker can do");
    }
    const PeerInfo& peer = active_p->peer();
    const struct {
        const char* name_p;
        const std::string* text_p;
        std::uint32_t number;
    } fields[] = {
        {ZORCLIENT_SESSION_PEER_ROUTER_NAME, &peer.routerName, 0},
        {ZORCLIENT_SESSION_PEER_PLATFORM, &peer.platform, 0},
        {ZORCLIENT_SESSION_PEER_SOFTWARE_DATE, &peer.softwareDate, 0},
        {ZORCLIENT_SESSION_PEER_SOFTWARE_VERSION, &peer.softwareVersion, 0},
        {ZORCLIENT_SESSION_PEER_PORT_TYPE, &peer.portType, 0},
        {ZORCLIENT_SESSION_PEER_PORT_SPEED, nullptr, peer.portSpeed},
        {ZORCLIENT_SESSION_CAPABILITY_MAX_GUARANTEED_MSG_SIZE, nullptr, peer.maxGuaranteedMsgSize},
        {ZORCLIENT_SESSION_CAPABILITY_MAX_DIRECT_MSG_SIZE, nullptr, peer.maxDirectMsgSize},
    };
    for (const auto& field : fields) {
        if (std::strcmp(name_p, field.name_p) != 0) {
            continue;
        }
        if (field.text_p != nullptr) {
            field_p->type = ZORCLIENT_STRING;
            field_p->length = static_cast<zorClient_uint32_t>(field.text_p->size() + 1);
            field_p->value.string = field.text_p->c_str();
        } else {
            field_p->type = ZORCLIENT_UINT32;
            field_p->length = sizeof(zorClient_uint32_t);
            field_p->value.uint32 = field.number;
        }
        return ZORCLIENT_OK;
    }
    // The yes/no capabilities read as booleans here too.
    const int answer = active_p->capability(name_p);
    if (answer < 0) {
        return LastError::fail(ZORCLIENT_SUBCODE_PARAM_OUT_OF_RANGE,
                               "%s: \"%s\" is not a capability", function_p, name_p);
    }
    field_p->type = ZORCLIENT_BOOL;
    field_p->length = sizeof(zorClient_bool_t);
    field_p->value.boolean = static_cast<zorClient_bool_t>(answer);
    return ZORCLIENT_OK;
}

void Session::logPublisherState(zorClient_log_level_t level) {
    if (!Logger::isEnabled(ZORCLIENT_LOG_CATEGORY_SDK, level)) {
        return;
    }
    std::lock_guard<std::mutex> lock(mutex_m);
    Logger::write(ZORCLIENT_LOG_CATEGORY_SDK, level, __FILE__, __LINE__,
                  "guaranteed publisher of client %s: session %s, window size %lld, "
                  "unacknowledged messages 0, acknowledgement timer %lld ms, acknowledgement "
                  "events %s",
                  config_m.clientName().c_str(), stateName(state_m.load()),
                  static_cast<long long>(config_m.integer(ZORCLIENT_SESSION_PROP_PUB_WINDOW_SIZE)),
                  static_cast<long long>(config_m.integer(ZORCLIENT_SESSION_PROP_PUB_ACK_TIMER)),
                  config_m.text(ZORCLIENT_SESSION_PROP_ACK_EVENT_MODE).c_str());
}

}  // namespace zorvane::zorclient
