// Session: creation, connect, disconnect, close, and the reconnect machinery.
#include "core/Session.h"

#include <cstdio>
#include <cstring>
#include <string>

#include "api/LastError.h"
#include "api/Logger.h"
#include "core/BackendFactory.h"
#include "core/ClientNames.h"
#include "core/HostList.h"

namespace zorvane::zorclient {

namespace {

constexpr zorClient_session_responseCode_t RESPONSE_OK = 200;

}  // namespace

Session::Session(Context& context, const SessionConfig::Changes& properties,
                 std::vector<PropertyList::Entry> backendProperties, const Callbacks& callbacks)
    : context_m(&context),
      callbacks_m(callbacks),
      backendProperties_m(std::move(backendProperties)) {
    config_m.commit(properties);
    if (config_m.clientName().empty()) {
        config_m.commit({{ZORCLIENT_SESSION_PROP_CLIENT_NAME, ClientNames::generate()}});
    }
    sendBlocking_m = config_m.flag(ZORCLIENT_SESSION_PROP_SEND_BLOCKING);
    subscribeBlocking_m = config_m.flag(ZORCLIENT_SESSION_PROP_SUBSCRIBE_BLOCKING);
    ignoreDuplicates_m = config_m.flag(ZORCLIENT_SESSION_PROP_IGNORE_DUP_SUBSCRIPTION_ERROR);
    reapplySubscriptions_m = config_m.flag(ZORCLIENT_SESSION_PROP_REAPPLY_SUBSCRIPTIONS);
    writeTimeout_m =
        std::chrono::milliseconds(config_m.integer(ZORCLIENT_SESSION_PROP_WRITE_TIMEOUT_MS));
}

ConnectRequest Session::makeConnectRequest() const {
    ConnectRequest request;
    request.clientName = config_m.clientName();
    request.username = config_m.text(ZORCLIENT_SESSION_PROP_USERNAME);
    request.password = config_m.text(ZORCLIENT_SESSION_PROP_PASSWORD);
    request.vpnName = config_m.text(ZORCLIENT_SESSION_PROP_VPN_NAME);
    request.applicationDescription = config_m.text(ZORCLIENT_SESSION_PROP_APPLICATION_DESCRIPTION);
    request.authenticationScheme = config_m.text(ZORCLIENT_SESSION_PROP_AUTHENTICATION_SCHEME);
    request.oauth2AccessToken = config_m.text(ZORCLIENT_SESSION_PROP_OAUTH2_ACCESS_TOKEN);
    request.oidcIdToken = config_m.text(ZORCLIENT_SESSION_PROP_OIDC_ID_TOKEN);
    request.noLocal = config_m.flag(ZORCLIENT_SESSION_PROP_NO_LOCAL);
    request.subscriberLocalPriority =
        config_m.integer(ZORCLIENT_SESSION_PROP_SUBSCRIBER_LOCAL_PRIORITY);
    request.subscriberNetworkPriority =
        config_m.integer(ZORCLIENT_SESSION_PROP_SUBSCRIBER_NETWORK_PRIORITY);
    request.connectTimeoutMs = config_m.integer(ZORCLIENT_SESSION_PROP_CONNECT_TIMEOUT_MS);
    // What the receiving socket and the session's buffer would hold between the broker and the
    // receive callback.
    request.egressLimitBytes = config_m.integer(ZORCLIENT_SESSION_PROP_SOCKET_RCV_BUF_SIZE) +
                               config_m.integer(ZORCLIENT_SESSION_PROP_BUFFER_SIZE);
    request.backendProperties = backendProperties_m;
    return request;
}

zorClient_returnCode_t Session::attemptConnect(const char* function_p) {
    const std::vector<HostEntry> hosts = HostList::parse(config_m.host());
    if (backends_m.size() < hosts.size()) {
        backends_m.resize(hosts.size());
    }
    const ConnectRequest request = makeConnectRequest();
    std::string failures;  // one line per host, for a list
    for (std::size_t i = 0; i < hosts.size(); ++i) {
        stats_m.addTx(ZORCLIENT_STATS_TX_TOTAL_CONNECTION_ATTEMPTS);
        if (backends_m[i] == nullptr) {
            backends_m[i] = BackendFactory::create(hosts[i], *this);
        }
        SessionIdentity identity;
        if (backends_m[i] != nullptr &&
            backends_m[i]->connect(request, &identity) == ZORCLIENT_OK) {
            active_m.store(backends_m[i].get(), std::memory_order_release);
            identity_m = std::move(identity);
            return ZORCLIENT_OK;
        }
        if (hosts.size() > 1) {
            failures += (i == 0 ? "" : "; ") + std::string("\"") + hosts[i].text +
                        "\": " + LastError::get().errorStr;
        }
    }
    const zorClient_errorInfo last = LastError::get();
    if (hosts.size() > 1) {
        LastError::set(last.subCode, last.responseCode,
                       "%s: no host of \"%s\" could be connected: %s", function_p,
                       config_m.host().c_str(), failures.c_str());
    } else {
        LastError::set(last.subCode, last.responseCode, "%s: %s", function_p, last.errorStr);
    }
    return ZORCLIENT_FAIL;
}

zorClient_returnCode_t Session::connect(const char* function_p) {
    std::lock_guard<std::mutex> lock(mutex_m);
    const State state = state_m.load(std::memory_order_relaxed);
    if (state == State::Up) {
        return ZORCLIENT_OK;
    }
    if (state == State::Reconnecting) {
        return LastError::fail(ZORCLIENT_SUBCODE_INVALID_SESSION_OPERATION,
                               "%s: the session is reconnecting; wait for its "
                               "RECONNECTED_NOTICE or DOWN_ERROR event",
                               function_p);
    }
    const bool blocking = config_m.connectBlocking();
    // A call that does not fail leaves the caller's error info as it was, also when hosts
    // before the one that connected failed.
    const zorClient_errorInfo before = LastError::get();
    if (attemptConnect(function_p) == ZORCLIENT_OK) {
        becomeUp();
        LastError::copyFrom(before);
        emitEvent(ZORCLIENT_SESSION_EVENT_UP_NOTICE, RESPONSE_OK, identity_m.clientName.c_str(),
                  nullptr);
        emitCanSendIfOwed();
        return blocking ? ZORCLIENT_OK : ZORCLIENT_IN_PROGRESS;
    }
    ZC_LOG(ZORCLIENT_LOG_INFO, "%s", LastError::get().errorStr);
    if (blocking) {
        return ZORCLIENT_FAIL;
    }
    const zorClient_errorInfo failure = LastError::get();
    LastError::copyFrom(before);
    emitEvent(ZORCLIENT_SESSION_EVENT_CONNECT_FAILED_ERROR, failure.responseCode, failure.errorStr,
              &failure);
    return ZORCLIENT_IN_PROGRESS;
}

zorClient_returnCode_t Session::disconnect(const char* /*function_p*/) {
    std::lock_guard<std::mutex> lock(mutex_m);
    // Events queued before the disconnect (an UP_NOTICE not yet delivered, a RECONNECTING_NOTICE)
    // would tell the application about a connection it has ended: they are dropped.
    epoch_m.fetch_add(1, std::memory_order_acq_rel);
    ++reconnectToken_m;
    failurePending_m.store(false, std::memory_order_relaxed);
    if (Backend* active_p = active_m.load(std::memory_order_relaxed); active_p != nullptr) {
        active_p->disconnect();
    }
    connectionEnded();
    setState(State::Idle);
    return ZORCLIENT_OK;
}

void Session::markClosing() noexcept {
    closed_m.store(true, std::memory_order_seq_cst);
    requests_m.close();
    std::lock_guard<std::mutex> lock(mutex_m);
    stateChanged_m.notify_all();
}

void Session::close() noexcept {
    closed_m.store(true, std::memory_order_seq_cst);
    requests_m.close();
    if (!context_m->isDispatchThread()) {
        context_m->waitWhileDispatching(this);
    }
    {
        std::lock_guard<std::mutex> lock(mutex_m);
        epoch_m.fetch_add(1, std::memory_order_acq_rel);
        ++reconnectToken_m;
        for (std::unique_ptr<Backend>& backend : backends_m) {
            if (backend != nullptr) {
                backend->disconnect();
            }
        }
        setState(State::Idle);
    }
    context_m->removeSession(this);
}

bool Session::requestFailure() noexcept {
    if (state_m.load(std::memory_order_acquire) != State::Up) {
        return false;
    }
    failurePending_m.store(true, std::memory_order_release);
    context_m->requestAttention();
    return true;
}

void Session::onConnectionLost(const ConnectionLoss& /*loss*/) noexcept {
    // The backend keeps the reason; dropConnection() hands it over on the context thread.
    failurePending_m.store(true, std::memory_order_release);
    context_m->requestAttention();
}

void Session::onAttention() noexcept {
    if (!failurePending_m.exchange(false, std::memory_order_acq_rel)) {
        return;
    }
    std::lock_guard<std::mutex> lock(mutex_m);
    Backend* active_p = active_m.load(std::memory_order_relaxed);
    if (closed_m.load(std::memory_order_acquire) ||
        state_m.load(std::memory_order_relaxed) != State::Up || active_p == nullptr) {
        return;
    }
    ConnectionLoss loss;
    active_p->dropConnection(&loss);
    handleLoss(loss);
}

void Session::handleLoss(const ConnectionLoss& loss) {
    zorClient_errorInfo error{};
    error.subCode = loss.subCode;
    error.responseCode = loss.responseCode;
    std::snprintf(error.errorStr, sizeof error.errorStr, "%s", loss.reason.c_str());
    if (config_m.reconnectRetries() == 0) {
        connectionEnded();
        setState(State::Down);
        emitEvent(ZORCLIENT_SESSION_EVENT_DOWN_ERROR, loss.responseCode, error.errorStr, &error);
        return;
    }
    connectionEnded();
    setState(State::Reconnecting);
    reconnectAttempts_m = 0;
    emitEvent(ZORCLIENT_SESSION_EVENT_RECONNECTING_NOTICE, loss.responseCode, error.errorStr,
              &error);
    scheduleReconnect();
}

void Session::scheduleReconnect() {
    try {
        context_m->addTimer(config_m.reconnectRetryWait(), Ref<EventTarget>(this),
                            ++reconnectToken_m);
    } catch (const std::bad_alloc&) {
        // Without a timer the session would hang in Reconnecting: end it instead.
        zorClient_errorInfo error{ZORCLIENT_SUBCODE_OUT_OF_MEMORY, 0,
                                  "no memory for the reconnect timer"};
        connectionEnded();
        setState(State::Down);
        emitEvent(ZORCLIENT_SESSION_EVENT_DOWN_ERROR, 0, error.errorStr, &error);
    }
}

void Session::onTimer(std::uint64_t token) noexcept {
    std::lock_guard<std::mutex> lock(mutex_m);
    if (closed_m.load(std::memory_order_acquire) || token != reconnectToken_m ||
        state_m.load(std::memory_order_relaxed) != State::Reconnecting) {
        return;  // a timer of an earlier loss, or the application disconnected meanwhile
    }
    ++reconnectAttempts_m;
    try {
        if (attemptConnect("reconnect") == ZORCLIENT_OK) {
            becomeUp();
            emitEvent(ZORCLIENT_SESSION_EVENT_RECONNECTED_NOTICE, RESPONSE_OK,
                      identity_m.clientName.c_str(), nullptr);
            emitCanSendIfOwed();
            return;
        }
    } catch (const std::bad_alloc&) {
        LastError::setText(ZORCLIENT_SUBCODE_OUT_OF_MEMORY, 0, "reconnect: out of memory");
    }
    const std::int64_t retries = config_m.reconnectRetries();
    if (retries >= 0 && reconnectAttempts_m >= retries) {
        zorClient_errorInfo error = LastError::get();
        std::snprintf(
            error.errorStr, sizeof error.errorStr,
            "the connection was lost and %lld reconnect attempt%s failed; the last: %.180s",
            static_cast<long long>(reconnectAttempts_m), reconnectAttempts_m == 1 ? "" : "s",
            LastError::get().errorStr);
        connectionEnded();
        setState(State::Down);
        emitEvent(ZORCLIENT_SESSION_EVENT_DOWN_ERROR, error.responseCode, error.errorStr, &error);
        return;
    }
    scheduleReconnect();
}

Backend* Session::connectedBackend() const noexcept {
    Backend* active_p = active_m.load(std::memory_order_acquire);
    return active_p != nullptr && active_p->isConnected() ? active_p : nullptr;
}

void Session::setState(State state) noexcept {
    state_m.store(state, std::memory_order_release);
    stateChanged_m.notify_all();
}

void Session::emitCanSendIfOwed() noexcept {
    if (canSendOwed_m.exchange(false, std::memory_order_acq_rel)) {
        emitEvent(ZORCLIENT_SESSION_EVENT_CAN_SEND, RESPONSE_OK, "", nullptr);
    }
}

}  // namespace zorvane::zorclient
