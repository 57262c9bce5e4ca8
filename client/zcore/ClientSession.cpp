// Small operations on the live session: its name, its tokens, a forced
// failure, and what the broker can do.
#include <string>

#include "client/zcore/Client.h"
#include "client/zcore/LibraryError.h"
#include "common/Log.h"
#include "common/PubSubException.h"

namespace zorvane::pubsub {

namespace {

// The yes/no capabilities, reported as "1" or "0".
const char* const FLAG_CAPABILITIES[] = {
    "SESSION_CAPABILITY_PUB_GUARANTEED",
    "SESSION_CAPABILITY_SUB_FLOW_GUARANTEED",
    "SESSION_CAPABILITY_TEMP_ENDPOINT",
    "SESSION_CAPABILITY_JNDI",
    "SESSION_CAPABILITY_COMPRESSION",
    "SESSION_CAPABILITY_SUPPORTS_XPE_SUBSCRIPTIONS",
    "SESSION_CAPABILITY_BROWSER",
    "SESSION_CAPABILITY_SELECTOR",
    "SESSION_CAPABILITY_ENDPOINT_MANAGEMENT",
    "SESSION_CAPABILITY_ENDPOINT_MESSAGE_TTL",
    "SESSION_CAPABILITY_QUEUE_SUBSCRIPTIONS",
    "SESSION_CAPABILITY_SUBSCRIPTION_MANAGER",
    "SESSION_CAPABILITY_MESSAGE_ELIDING",
    "SESSION_CAPABILITY_NO_LOCAL",
    "SESSION_CAPABILITY_ACTIVE_FLOW_INDICATION",
    "SESSION_CAPABILITY_PER_TOPIC_SEQUENCE_NUMBERING",
    "SESSION_CAPABILITY_ENDPOINT_DISCARD_BEHAVIOR",
    "SESSION_CAPABILITY_CUT_THROUGH",
    "SESSION_CAPABILITY_TRANSACTED_SESSION",
    "SESSION_CAPABILITY_OPENMAMA",
    "SESSION_CAPABILITY_MESSAGE_REPLAY",
    "SESSION_CAPABILITY_COMPRESSED_SSL",
    "SESSION_CAPABILITY_LONG_SELECTORS",
    "SESSION_CAPABILITY_SHARED_SUBSCRIPTIONS",
};

// The capabilities with a value, reported as text or as a decimal number.
const char* const VALUE_CAPABILITIES[] = {
    "SESSION_PEER_ROUTER_NAME",
    "SESSION_PEER_PLATFORM",
    "SESSION_PEER_SOFTWARE_DATE",
    "SESSION_PEER_SOFTWARE_VERSION",
    "SESSION_PEER_PORT_TYPE",
    "SESSION_PEER_PORT_SPEED",
    "SESSION_CAPABILITY_MAX_GUARANTEED_MSG_SIZE",
    "SESSION_CAPABILITY_MAX_DIRECT_MSG_SIZE",
};

std::string fieldText(const zorClient_field_t& field) {
    switch (field.type) {
        case ZORCLIENT_STRING:
            return field.value.string != nullptr ? field.value.string : "";
        case ZORCLIENT_UINT32:
            return std::to_string(field.value.uint32);
        case ZORCLIENT_INT32:
            return std::to_string(field.value.int32);
        case ZORCLIENT_UINT64:
            return std::to_string(field.value.uint64);
        case ZORCLIENT_INT64:
            return std::to_string(field.value.int64);
        case ZORCLIENT_BOOL:
            return field.value.boolean != 0 ? "1" : "0";
        default:
            return std::string();
    }
}

}  // namespace

std::string Client::getClientNameImpl() {
    char buffer[ZORCLIENT_CLIENT_NAME_MAX_SIZE] = {0};
    if (zorClient_session_getProperty(session_mp, "SESSION_CLIENT_NAME", buffer, sizeof buffer) !=
        ZORCLIENT_OK) {
        const std::string text =
            "Error getting client name. details - " + LibraryError::fetch().details();
        LOG_ERROR("%s", text.c_str());
        throw PubSubException(text);
    }
    return buffer;
}

void Client::setClientNameImpl(std::string name) {
    PropertyArray array;
    array.add("SESSION_CLIENT_NAME", name);
    if (zorClient_session_modifyProperties(session_mp, array.get()) != ZORCLIENT_OK) {
        const std::string text =
            "Error setting client name. details - " + LibraryError::fetch().details();
        LOG_ERROR("%s", text.c_str());
        throw PubSubException(text);
    }
}

void Client::updateAuthOnReconnectImpl(std::string accessToken, std::string idToken) {
    // Both go, each on its own: a refused one must not keep the other from
    // the session. Failures are on record for whoever looks; none is thrown.
    const struct {
        const char* key;
        const std::string& value;
    } updates[] = {
        {"SESSION_OAUTH2_ACCESS_TOKEN", accessToken},
        {"SESSION_OIDC_ID_TOKEN", idToken},
    };
    for (const auto& update : updates) {
        PropertyArray array;
        array.add(update.key, update.value);
        const zorClient_returnCode_t rc =
            zorClient_session_modifyProperties(session_mp, array.get());
        if (rc != ZORCLIENT_OK) {
            const LibraryError error = LibraryError::fetch();
            updateLastError(error.subCodeText(), error.responseCode_m, error.errorStr_m,
                            static_cast<INT32>(rc));
        }
    }
}

void Client::sigalrmActionImpl() {
    const zorClient_returnCode_t rc = _zorClient_session_forceFailure(session_mp);
    if (rc != ZORCLIENT_OK) {
        LOG_INFO("CLIENT %s: Bad return from _zorClient_session_getPubDataFd - RC: %s, %s",
                 clientIdStr_m.c_str(), zorClient_returnCodeToString(rc),
                 LibraryError::fetch().details().c_str());
    }
}

std::map<std::string, std::string> Client::getRtrCapabilitiesImpl() {
    std::map<std::string, std::string> capabilities;
    for (const char* name : FLAG_CAPABILITIES) {
        capabilities[name] = zorClient_session_isCapable(session_mp, name) != 0 ? "1" : "0";
    }
    for (const char* name : VALUE_CAPABILITIES) {
        zorClient_field_t field{};
        // A value the broker does not report is left out of the map.
        if (zorClient_session_getCapability(session_mp, name, &field, sizeof field) ==
            ZORCLIENT_OK) {
            capabilities[name] = fieldText(field);
        }
    }
    return capabilities;
}

}  // namespace zorvane::pubsub
