// Connecting and disconnecting the session, and starting or stopping the
// flow of messages.
#include "client/zcore/Client.h"
#include "client/zcore/LibraryError.h"
#include "common/Log.h"

namespace zorvane::pubsub {

void Client::connectImpl() {
    const zorClient_returnCode_t rc = zorClient_session_connect(session_mp);
    // A non-blocking connect answers IN_PROGRESS; its outcome comes as an
    // event, like the up notice of a blocking one.
    if (rc != ZORCLIENT_OK && rc != ZORCLIENT_IN_PROGRESS) {
        handleErrorWithException(rc);
    }
    if (!props_m.getWantNonBlockingConnect() &&
        zorClient_session_isCapable(session_mp, "SESSION_CAPABILITY_SUPPORTS_XPE_SUBSCRIPTIONS") &&
        zorClient_session_isCapable(session_mp, "SESSION_CAPABILITY_SUB_FLOW_GUARANTEED")) {
        registerDefaultFlow();
    }
    // With "-ccn" no name went with the session's creation: the client
    // takes its name now, on every connect.
    if (!props_m.getClientPrefix().empty() && props_m.getChangeClientNameFlag()) {
        setClientName(clientIdStr_m);
    }
}

void Client::disconnectImpl() {
    if (session_mp != nullptr) {
        const zorClient_returnCode_t rc = zorClient_session_disconnect(session_mp);
        if (rc != ZORCLIENT_OK) {
            const LibraryError error = LibraryError::fetch();
            LOG_WARNING("CLIENT %s: Failed to disconnect. Error code: %s; Details - %s",
                        clientIdStr_m.c_str(), zorClient_returnCodeToString(rc),
                        error.details().c_str());
        }
    }
    setChannelState(CLIENT_STATE_DISCONNECTED);
    // Temporary endpoints and their flows go with the session; this build
    // creates none (see ClientNotAvailable.cpp).
    if (processKeptMsgs(0, false) != ZORCLIENT_OK) {
        LOG_ERROR(
            "CLIENT %s: Error cleaning up kept messages on channel disconnect. Possible msg "
            "leak",
            clientIdStr_m.c_str());
    }
}

// Starting and stopping data acts on the client's flows. Direct messages
// are not held back by a flow, and this build binds no flows, so there is
// nothing to start or stop.
void Client::startDataImpl() {
    LOG_DEBUG("CLIENT %s: No flows to start", clientIdStr_m.c_str());
}

void Client::stopDataImpl() {
    LOG_DEBUG("CLIENT %s: No flows to stop", clientIdStr_m.c_str());
}

}  // namespace zorvane::pubsub
