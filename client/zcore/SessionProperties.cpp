#include "client/zcore/SessionProperties.h"

#include <string>

#include "common/PubSubException.h"

namespace zorvane::pubsub {

namespace {

const char* flagText(bool value) {
    return value ? "1" : "0";
}

// The option words of "-as=" in the library's terms; anything else goes as
// it is, for the library to refuse with a message that names the key.
std::string authenticationScheme(const std::string& scheme) {
    if (scheme == "basic") {
        return "AUTHENTICATION_SCHEME_BASIC";
    }
    if (scheme == "client-certificate") {
        return "AUTHENTICATION_SCHEME_CLIENT_CERTIFICATE";
    }
    if (scheme == "tls-psk") {
        return "AUTHENTICATION_SCHEME_TLS_PSK";
    }
    if (scheme == "kerberos") {
        return "AUTHENTICATION_SCHEME_GSS_KRB";
    }
    if (scheme == "oauth2") {
        return "AUTHENTICATION_SCHEME_OAUTH2";
    }
    return scheme;
}

std::string ackEventMode(const std::string& mode) {
    if (mode == "per-message") {
        return "SESSION_ACK_EVENT_MODE_PER_MSG";
    }
    if (mode == "windowed") {
        return "SESSION_ACK_EVENT_MODE_WINDOWED";
    }
    return mode;
}

std::string reconnectFailAction(const std::string& action) {
    if (action == "AUTO_RETRY" || action == "AUTO-RETRY") {
        return "GD_RECONNECT_FAIL_ACTION_AUTO_RETRY";
    }
    if (action == "DISCONNECT") {
        return "GD_RECONNECT_FAIL_ACTION_DISCONNECT";
    }
    return action;
}

// Schemes that authenticate without a user name: with none configured the
// client sends none rather than a made-up one.
bool schemeNeedsNoUsername(const std::string& scheme) {
    return scheme == "client-certificate" || scheme == "kerberos" || scheme == "oauth2";
}

class Filler {
  public:
    Filler(PropertyArray& array, const std::string& clientIdStr)
        : array_m(array), clientIdStr_m(clientIdStr) {}

    void add(const char* key, const std::string& value) {
        if (!array_m.add(key, value)) {
            throw PubSubException(
                "CLIENT " + clientIdStr_m + ": " + "Unable to add property " + key +
                ".  Array not large enough. Index: " + std::to_string(array_m.size()) +
                " Max size: " + std::to_string(ZCORE_MAX_PROPS) + "\n");
        }
    }
    void addIfSet(const char* key, const std::string& value) {
        if (!value.empty()) {
            add(key, value);
        }
    }
    void addNumber(const char* key, INT64 value) { add(key, std::to_string(value)); }

  private:
    PropertyArray& array_m;
    const std::string& clientIdStr_m;
};

}  // namespace

void SessionProperties::fill(const ClientProperties& props, const SessionPropertyInputs& inputs,
                             PropertyArray& array) {
    Filler out(array, inputs.clientIdStr_m);

    out.add("SESSION_HOST", props.getHost());
    if (!(props.getClientUsername().empty() &&
          schemeNeedsNoUsername(props.getAuthenticationScheme()))) {
        out.add("SESSION_USERNAME", props.generateClientUsername(inputs.clientId_m));
    }
    out.add("SESSION_PASSWORD", props.getPassword());
    // With "-ccn" the client takes its name only when connected (connectImpl).
    if (!props.getClientPrefix().empty() && !props.getChangeClientNameFlag()) {
        out.add("SESSION_CLIENT_NAME", props.generateClientName(inputs.clientId_m));
    }
    out.addIfSet("SESSION_VPN_NAME", props.getClientVpn());
    out.addIfSet("SESSION_APPLICATION_DESCRIPTION", props.getDescription());
    out.add("SESSION_TCP_NODELAY", flagText(props.isTcpNoDelay()));
    out.add("SESSION_IGNORE_DUP_SUBSCRIPTION_ERROR", flagText(props.wantIgnoreExistsErrors()));
    out.add("SESSION_CONNECT_BLOCKING", flagText(!props.getWantNonBlockingConnect()));
    out.add("SESSION_SUBSCRIBE_BLOCKING", "1");
    // A reflecting client sends from the context thread, which must never
    // wait for room: a full window would stop its own acknowledgements.
    out.add("SESSION_SEND_BLOCKING",
            flagText(!(inputs.wantMsgReflect_m && !inputs.wantClientTaskThread_m)));
    if (props.getWantSubscriptionMem()) {
        out.add("SESSION_REAPPLY_SUBSCRIPTIONS", "1");
    }
    if (props.getSessionBufSize() >= 0) {
        out.addNumber("SESSION_BUFFER_SIZE", props.getSessionBufSize());
    }
    if (props.getBlockingWriteTimeout() >= 0) {
        out.addNumber("SESSION_WRITE_TIMEOUT_MS", props.getBlockingWriteTimeout());
    }
    if (props.getKeepAliveIntervalInMillis() >= 0) {
        out.addNumber("SESSION_KEEP_ALIVE_INTERVAL_MS", props.getKeepAliveIntervalInMillis());
    }
    if (props.getSocketRcvBuf() > 0) {
        out.addNumber("SESSION_SOCKET_RCV_BUF_SIZE", props.getSocketRcvBuf());
    }
    if (props.getSocketSndBuf() > 0) {
        out.addNumber("SESSION_SOCKET_SEND_BUF_SIZE", props.getSocketSndBuf());
    }
    if (props.getPubAckWinSize() != -1) {
        out.addNumber("SESSION_PUB_WINDOW_SIZE", props.getPubAckWinSize());
    }
    if (props.getPubAckTimeout() != -1) {
        out.addNumber("SESSION_PUB_ACK_TIMER", props.getPubAckTimeout());
    }
    if (props.getDtoLocalPri() != -1) {
        out.addNumber("SESSION_SUBSCRIBER_LOCAL_PRIORITY", props.getDtoLocalPri());
    }
    if (props.getDtoNetworkPri() != -1) {
        out.addNumber("SESSION_SUBSCRIBER_NETWORK_PRIORITY", props.getDtoNetworkPri());
    }
    if (props.getCompressionLevel() != -1) {
        out.addNumber("SESSION_COMPRESSION_LEVEL", props.getCompressionLevel());
    }
    if (props.getPayloadCompressionLevel() != -1) {
        out.addNumber("SESSION_PAYLOAD_COMPRESSION_LEVEL", props.getPayloadCompressionLevel());
    }
    // -1 is a value here (retry for ever, the default wait), not "unset".
    if (props.getReconnectRetries() >= -1) {
        out.addNumber("SESSION_RECONNECT_RETRIES", props.getReconnectRetries());
    }
    if (props.getReconnectRetryWaitInMillis() >= -1) {
        out.addNumber("SESSION_RECONNECT_RETRY_WAIT_MS", props.getReconnectRetryWaitInMillis());
    }
    if (props.getMaxFlows() != -1) {
        out.addNumber("SESSION_MAX_FLOWS", props.getMaxFlows());
    }
    if (props.getWantDispatchSession()) {
        out.add("SESSION_TOPIC_DISPATCH", "1");
    }
    if (props.getWantNoLocal()) {
        out.add("SESSION_NO_LOCAL", "1");
    }
    if (!props.getAckEventMode().empty()) {
        out.add("SESSION_ACK_EVENT_MODE", ackEventMode(props.getAckEventMode()));
    }
    out.addIfSet("SESSION_WEB_TRANSPORT_PROTOCOL", props.getTransportProtocol());
    out.addIfSet("SESSION_SSL_PROTOCOL", props.getSslProtocol());
    out.addIfSet("SESSION_SSL_EXCLUDED_PROTOCOLS", props.getExcludedSslProtocols());
    out.addIfSet("SESSION_MAXIMUM_TLS_PROTOCOL_VERSION", props.getMaxSslProtocolVersion());
    out.addIfSet("SESSION_MINIMUM_TLS_PROTOCOL_VERSION", props.getMinSslProtocolVersion());
    // Validation is the library's default; only switching it off is said.
    if (!props.getSslValidateCertificate()) {
        out.add("SESSION_SSL_VALIDATE_CERTIFICATE", "0");
    }
    if (!props.getSslValidateCertificateDate()) {
        out.add("SESSION_SSL_VALIDATE_CERTIFICATE_DATE", "0");
    }
    if (!props.getSslValidateCertificateHostname()) {
        out.add("SESSION_SSL_VALIDATE_CERTIFICATE_HOST", "0");
    }
    out.addIfSet("SESSION_SSL_CIPHER_SUITES", props.getSslCipherSuites());
    out.addIfSet("SESSION_SSL_TRUST_STORE_DIR", props.getSslTrustStoreDir());
    out.addIfSet("SESSION_SSL_TRUSTED_COMMON_NAME_LIST", props.getSslTrustedCommonNameList());
    out.addIfSet("SESSION_SSL_CLIENT_CERTIFICATE_FILE", props.getSslClientCertificateFile());
    out.addIfSet("SESSION_SSL_CLIENT_PRIVATE_KEY_FILE", props.getSslClientPrivateKeyFile());
    out.addIfSet("SESSION_SSL_CLIENT_PRIVATE_KEY_FILE_PASSWORD",
                 props.getSslClientPrivateKeyFilePassword());
    out.addIfSet("SESSION_SSL_CONNECTION_DOWNGRADE_TO", props.getSslConnectionDowngradeTo());
    if (!props.getAuthenticationScheme().empty()) {
        out.add("SESSION_AUTHENTICATION_SCHEME",
                authenticationScheme(props.getAuthenticationScheme()));
    }
    out.addIfSet("SESSION_WEB_TRANSPORT_PROTOCOL_LIST", props.getWebTransportProtocolList());
    out.addIfSet("SESSION_TRANSPORT_PROTOCOL_DOWNGRADE_TIMEOUT_MS",
                 props.getTransportProtocolDowngradeTimeoutMs());
    out.addIfSet("SESSION_BIND_IP", props.getSessionBindIp());
    if (!props.getReconnectFailAction().empty()) {
        out.add("SESSION_GD_RECONNECT_FAIL_ACTION",
                reconnectFailAction(props.getReconnectFailAction()));
    }
    out.addIfSet("SESSION_OAUTH2_ACCESS_TOKEN", props.getOauthAccessToken());
    out.addIfSet("SESSION_OIDC_ID_TOKEN", props.getOidcIdToken());
    out.addIfSet("SESSION_OAUTH2_ISSUER_IDENTIFIER", props.getOauthIssuerId());

    const std::vector<std::string>& extras = props.getExtraPropsList();
    if (!array.hasRoomFor(extras.size())) {
        throw PubSubException("CLIENT " + inputs.clientIdStr_m + ": " +
                              "Unable to add extra props.  Array not large enough. Index: " +
                              std::to_string(array.size()) +
                              " Max size: " + std::to_string(ZCORE_MAX_PROPS) +
                              " Num Props: " + std::to_string(extras.size()) + "\n");
    }
    // Copied unexamined: the list already alternates key and value. A key
    // without its value (an odd list) goes with an empty one.
    for (std::size_t i = 0; i < extras.size(); i += 2) {
        out.add(extras[i].c_str(), i + 1 < extras.size() ? extras[i + 1] : std::string());
    }
}

}  // namespace zorvane::pubsub
