#include "common/ClientProperties.h"

#include <cstdio>
#include <sstream>
#include <stdexcept>

#include "common/CliProperties.h"
#include "common/PubSubException.h"
#include "common/cliWords.h"

namespace zorvane::pubsub {

namespace {

// The whole file, byte for byte: a password file may end in a line end and
// that line end is part of the password. Reading happens while the record is
// built, so a bad path ends the run before any client exists.
std::string readWholeFile(const std::string& path) {
    std::FILE* file_p = std::fopen(path.c_str(), "rb");
    if (file_p == nullptr) {
        throw PubSubException("File not found. " + path);
    }
    std::string content;
    char buffer[4096];
    size_t got = 0;
    while ((got = std::fread(buffer, 1, sizeof buffer, file_p)) > 0) {
        content.append(buffer, got);
    }
    // A directory opens fine but fails on the first read.
    const bool failed = std::ferror(file_p) != 0;
    std::fclose(file_p);
    if (failed) {
        throw PubSubException("File could not be read. " + path);
    }
    return content;
}

// The index in a field of six digits with leading zeros; a wider number
// keeps all its digits.
std::string sixDigits(INT32 index) {
    char text[16];
    std::snprintf(text, sizeof text, "%06d", index);
    return text;
}

}  // namespace

ClientProperties::ClientProperties(const CliProperties& cli)
    : numClients_m(cli.getIntegerProperty(CliProperties::NUM_CLIENTS)),
      host_m(cli.getStringProperty(CliProperties::CLIENT_IP_ADDR)),
      clientUsername_m(cli.getStringProperty(CliProperties::CLIENT_USERNAME)),
      clientVpn_m(cli.getStringProperty(CliProperties::CLIENT_VPN)),
      clientPrefix_m(cli.getStringProperty(CliProperties::CLIENT_NAME_PREFIX)),
      password_m(cli.getStringProperty(CliProperties::CLIENT_PASSWORD)),
      clientDescription_m(),
      clientMode_m(cli.getStringProperty(CliProperties::CLIENT_MODE)),
      clientReflectTopic_m(),
      isTcpNoDelay_m(cli.getBooleanProperty(CliProperties::WANT_TCP_NODELAY)),
      reconnectRetries_m(cli.getIntegerProperty(CliProperties::RETRY_COUNT)),
      reconnectFailAction_m(cli.getStringProperty(CliProperties::RECONNECT_FAIL_ACTION)),
      reconnectRetryWaitInMillis_m(cli.getIntegerProperty(CliProperties::RECONNECT_INTERVAL)),
      readTimeoutInMillis_m(-1),
      keepAliveInMillis_m(cli.getIntegerProperty(CliProperties::KEEP_ALIVE_INT_MS)),
      keepAliveLimit_m(cli.getIntegerProperty(CliProperties::KEEP_ALIVE_LIMIT)),
      pubAckWinSize_m(cli.getIntegerProperty(CliProperties::AD_PUB_WINDOW_SIZE)),
      pubAckTimeout_m(cli.getIntegerProperty(CliProperties::AD_PUB_ACK_TIMEOUT)),
      pubMaxResends_m(cli.getIntegerProperty(CliProperties::AD_PUB_MAX_RESEND)),
      rateCheckInterval_m(cli.getIntegerProperty(CliProperties::RATE_CHECK_INTERVAL)),
      subAckWinSize_m(cli.getIntegerProperty(CliProperties::AD_SUB_WINDOW_SIZE)),
      subAckTimeout_m(cli.getIntegerProperty(CliProperties::AD_SUB_ACK_TIMEOUT)),
      subAckThreshold_m(cli.getIntegerProperty(CliProperties::AD_SUB_WINDOW_THRESHOLD)),
      sockRcvBuf_m(cli.getIntegerProperty(CliProperties::SOCKET_RCV_BUF_SIZE)),
      sockSndBuf_m(cli.getIntegerProperty(CliProperties::SOCKET_SND_BUF_SIZE)),
      sessionBufSize_m(cli.getIntegerProperty(CliProperties::SESSION_BUF_SIZE)),
      blockingWriteTimeout_m(cli.getIntegerProperty(CliProperties::BLOCK_WRITE_TIMEOUT)),
      wantSmoothPubCalcLat_m(cli.getBooleanProperty(CliProperties::WANT_SMOOTH_PUB_CALC_LAT)),
      verbose_m(cli.getBooleanProperty(CliProperties::WANT_VERBOSE)),
      slowSubDelayInMillis_m(cli.getIntegerProperty(CliProperties::SLOW_SUB_DELAY_IN_MS)),
      slowSubDelayCount_m(cli.getIntegerProperty(CliProperties::SLOW_SUB_DELAY_COUNT)),
      wantStopOnError_m(cli.getBooleanProperty(CliProperties::WANT_STOP_ON_ERROR)),
      dtoLocalPri_m(cli.getIntegerProperty(CliProperties::CLIENT_DTO_LOCAL_PRIORITY)),
      dtoNetworkPri_m(cli.getIntegerProperty(CliProperties::CLIENT_DTO_NETWORK_PRIORITY)),
      compressionLevel_m(cli.getIntegerProperty(CliProperties::COMPRESSION_LEVEL)),
      payloadCompressionLevel_m(cli.getIntegerProperty(CliProperties::PAYLOAD_COMPRESSION_LEVEL)),
      cacheName_m(cli.getStringProperty(CliProperties::CACHE_PROP_NAME)),
      cacheMaxMsgsPerTopic_m(cli.getIntegerProperty(CliProperties::CACHE_PROP_MAX_MSGS_PER_TOPIC)),
      cacheMaxAge_m(cli.getIntegerProperty(CliProperties::CACHE_PROP_MAX_AGE)),
      cacheTimeoutInMsec_m(cli.getIntegerProperty(CliProperties::CACHE_PROP_TIMEOUT_IN_MSEC)),
      subMsgQueueDepth_m(cli.getIntegerProperty(CliProperties::SUB_MSG_QUEUE_DEPTH)),
      changeClientName_m(cli.getBooleanProperty(CliProperties::CHANGE_CLIENT_NAMES_FLAG)),
      wantSubscriptionMem_m(cli.getBooleanProperty(CliProperties::WANT_SUBSCRIPTION_MEMORY)),
      extraPropsList_m(cli.getVectorProperty(CliProperties::EXTRA_PROPS_LIST)),
      contextThreadAffinity_m(cli.getInt64Property(CliProperties::CONTEXT_AFFINITY_MASK)),
      wantContextPerClient_m(cli.getBooleanProperty(CliProperties::WANT_CONTEXT_PER_CLIENT)),
      numClientsPerContext_m(cli.getIntegerProperty(CliProperties::NUM_CLIENTS_PER_CONTEXT)),
      maxFlows_m(-1),
      wantMsgDump_m(cli.getBooleanProperty(CliProperties::WANT_MSG_DUMP)),
      msgDumpBufferSize_m(cli.getIntegerProperty(CliProperties::MSG_DUMP_BUFFER_SIZE)),
      wantMsgDumpTimeStamp_m(cli.getBooleanProperty(CliProperties::WANT_MSG_DUMP_TIME_STAMP)),
      msgObjTypeCheck_m(cli.getBooleanProperty(CliProperties::MSG_OBJ_TYPE_CHECK)),
      wantDispatchSession_m(cli.getBooleanProperty(CliProperties::WANT_DISPATCH_SESSION)),
      wantNonBlockingConnect_m(cli.getBooleanProperty(CliProperties::WANT_NON_BLOCKING_CONNECT)),
      numPubsPerClient_m(cli.getIntegerProperty(CliProperties::NUM_PUBS_PER_SESSION)),
      wantUserPropToolData_m(cli.getBooleanProperty(CliProperties::WANT_USER_PROP_TOOL_DATA)),
      ignoreExistsErrors_m(true),
      wantNoLocal_m(cli.getBooleanProperty(CliProperties::WANT_NO_LOCAL)),
      wantClientAck_m(cli.getBooleanProperty(CliProperties::WANT_CLIENT_ACK)),
      wantClientAckThread_m(cli.getBooleanProperty(CliProperties::WANT_CLIENT_ACK_THREAD)),
      clientAckRateLimit_m(cli.getDoubleProperty(CliProperties::CLIENT_ACK_RATE_LIMIT)),
      clientAckSkipNum_m(cli.getIntegerProperty(CliProperties::CLIENT_ACK_SKIP_NUM)),
      subMsgQueueFlush_m(cli.getBooleanProperty(CliProperties::WANT_SUB_MSG_QUEUE_FLUSH)),
      subMsgQueueReverse_m(cli.getBooleanProperty(CliProperties::SUB_MSG_QUEUE_REVERSE)),
      clientAckMaxRandom_m(cli.getIntegerProperty(CliProperties::CLIENT_ACK_RANDOM_DEPTH)),
      randomizationSeed_m(cli.getInt64Property(CliProperties::RANDOMIZATION_SEED)),
      wantReplyTo_m(cli.getBooleanProperty(CliProperties::WANT_REPLY_TOPIC)),
      replyToPostfix_m(cli.getStringProperty(CliProperties::PUB_REPLY_POSTFIX)),
      subOrderOffsets_m(cli.getVectorMapInt32Uint64Property(CliProperties::SUB_ORDER_OFFSETS)),
      ackEventMode_m(cli.getStringProperty(CliProperties::AD_ACK_EVENT_MODE)),
      wantPubAckOrderCheck_m(cli.getBooleanProperty(CliProperties::AD_WANT_PUB_ACK_ORDER_CHECK)),
      transportProtocol_m(cli.getStringProperty(CliProperties::TRANSPORT_PROTOCOL)),
      webTransportProtocolList_m(cli.getStringProperty(CliProperties::WEB_TRANSPORT_PROTOCOL_LIST)),
      transportProtocolDowngradeTimeoutMs_m(
          cli.getStringProperty(CliProperties::TRANSPORT_PROTOCOL_DOWNGRADE_TIMEOUT_MS)),
      sessionBindIp_m(cli.getStringProperty(CliProperties::SESSION_BIND_IP)),
      wantReplicationReconnect_m(cli.getBooleanProperty(CliProperties::WANT_REPLICATION_RECONNECT)),
      settlementPattern_m(cli.getStringProperty(CliProperties::SETTLEMENT_PATTERN)),
      requiredSettlements_m(cli.getStringProperty(CliProperties::REQUIRED_SETTLEMENTS)),
      sslProtocol_m(cli.getStringProperty(CliProperties::SSL_PROTOCOL)),
      sslExcludedProtocols_m(cli.getStringProperty(CliProperties::SSL_EXCLUDED_PROTOCOLS)),
      maxSslProtocolVersion_m(cli.getStringProperty(CliProperties::SSL_MAX_PROTOCOL_VERSION)),
      minSslProtocolVersion_m(cli.getStringProperty(CliProperties::SSL_MIN_PROTOCOL_VERSION)),
      sslValidateCertificate_m(cli.getBooleanProperty(CliProperties::SSL_VALIDATE_CERTIFICATE)),
      sslValidateCertificateDate_m(
          cli.getBooleanProperty(CliProperties::SSL_VALIDATE_CERTIFICATE_DATE)),
      sslValidateCertificateHostname_m(
          cli.getBooleanProperty(CliProperties::SSL_VALIDATE_CERTIFICATE_HOSTNAME)),
      sslCipherSuites_m(cli.getStringProperty(CliProperties::SSL_CIPHER_SUITES)),
      sslTrustStoreDir_m(cli.getStringProperty(CliProperties::SSL_TRUST_STORE_DIR)),
      sslTrustedCommonNameList_m(
          cli.getStringProperty(CliProperties::SSL_TRUSTED_COMMON_NAME_LIST)),
      sslClientCertificateFile_m(cli.getStringProperty(CliProperties::SSL_CLIENT_CERTIFICATE_FILE)),
      sslClientPrivateKeyFile_m(cli.getStringProperty(CliProperties::SSL_CLIENT_PRIVATE_KEY_FILE)),
      sslClientPrivateKeyFilePassword_m(
          cli.getStringProperty(CliProperties::SSL_CLIENT_PRIVATE_KEY_FILE_PASSWORD)),
      sslConnectionDowngradeTo_m(cli.getStringProperty(CliProperties::SSL_CONNECTION_DOWNGRADE_TO)),
      authenticationScheme_m(cli.getStringProperty(CliProperties::AUTHENTICATION_SCHEME)),
      oauthAccessToken_m(cli.getStringProperty(CliProperties::OAUTH_ACCESS_TOKEN)),
      oidcIdToken_m(cli.getStringProperty(CliProperties::OIDC_ID_TOKEN)),
      oauthIssuerId_m(cli.getStringProperty(CliProperties::OAUTH_ISSUER_ID)),
      wantTraceDecodeCheck_m(cli.getBooleanProperty(CliProperties::WANT_TRACE_DECODE_CHECK)),
      wantCreateContextThread_m(cli.getBooleanProperty(CliProperties::WANT_CONTEXT_CREATE_THREAD)),
      contextThreadAffinityList_m(
          cli.getStringProperty(CliProperties::CONTEXT_THREAD_AFFINITY_LIST)),
      wantClientTaskThread_m(cli.getBooleanProperty(CliProperties::WANT_CLIENT_TASK_THREAD)) {
    // An explicit password wins over the file, even an empty file name given
    // later on the line; the file is only opened when it is needed.
    if (password_m.empty()) {
        const std::string passwordFile = cli.getStringProperty(CliProperties::CLIENT_PASSWORD_FILE);
        if (!passwordFile.empty()) {
            password_m = readWholeFile(passwordFile);
        }
    }

    // Reflecting needs a destination; the parser makes sure the first topic
    // exists in reflect mode. In other modes it may be missing.
    const std::vector<std::vector<std::string>> pubTopics =
        cli.getVectorVectorProperty(CliProperties::PUB_TOPICS_ARRAY);
    if (!pubTopics.empty() && !pubTopics[0].empty()) {
        clientReflectTopic_m = pubTopics[0][0];
    }

    // Each temporary endpoint binds one flow, and the session needs one more
    // for its default flow. The queue count is compared with the flows
    // already asked for, not with the topic count, so 5 topic and 6 queue
    // endpoints ask for 6 flows. With neither, the library's limit stays.
    const INT32 numTte = cli.getIntegerProperty(CliProperties::NUM_TEMP_TOPIC_ENDPOINTS);
    if (numTte > 0 && numTte > maxFlows_m) {
        maxFlows_m = numTte + 1;
    }
    const INT32 numTqe = cli.getIntegerProperty(CliProperties::NUM_TEMP_QUEUE_ENDPOINTS);
    if (numTqe > 0 && numTqe > maxFlows_m) {
        maxFlows_m = numTqe + 1;
    }
}

std::unique_ptr<ClientProperties> ClientProperties::clone() const {
    return std::make_unique<ClientProperties>(*this);
}

void ClientProperties::setNumClients(INT32 numClients) {
    if (numClients < 1) {
        throw std::invalid_argument("num clients < 1");
    }
    numClients_m = numClients;
}

std::string ClientProperties::generateClientIdStr(INT32 index) const {
    return clientPrefix_m + sixDigits(index);
}

std::string ClientProperties::generateClientName(INT32 index) const {
    return (clientPrefix_m.empty() ? std::string(DEF_CLIENT) : clientPrefix_m) + sixDigits(index);
}

std::string ClientProperties::generateClientUsername(INT32 index) const {
    // One configured user name serves every client; the broker tells the
    // sessions apart by their client names.
    if (!clientUsername_m.empty()) {
        return clientUsername_m;
    }
    return generateClientName(index);
}

std::string ClientProperties::toString() const {
    std::ostringstream out;
    out << "{\n"
        << "  number clients         = " << numClients_m << "\n"
        << "  Host                   = " << host_m << "\n"
        << "  client username        = " << clientUsername_m << "\n"
        << "  client vpn name        = " << clientVpn_m << "\n"
        << "  client prefix          = " << clientPrefix_m << "\n"
        << "  client password        = " << password_m << "\n"
        << "  client description     = " << clientDescription_m << "\n"
        << "  Client Mode            = " << clientMode_m << "\n"
        << "  Client Reflect Topic   = " << clientReflectTopic_m << "\n"
        << "  is tcpnodelay          = " << isTcpNoDelay_m << "\n"
        << "  Reconnect Retries      = " << reconnectRetries_m << "\n"
        << "  Reconnect Fail Action  = " << reconnectFailAction_m << "\n"
        << "  Retry Wait in Millis   = " << reconnectRetryWaitInMillis_m << "\n"
        << "  Read timeout in Millis = " << readTimeoutInMillis_m << "\n"
        << "  Keep Alive in Millis   = " << keepAliveInMillis_m << "\n"
        << "  Pub Ack Window Size    = " << pubAckWinSize_m << "\n"
        << "  Pub Ack Timeout        = " << pubAckTimeout_m << "\n"
        << "  Pub Max Resends        = " << pubMaxResends_m << "\n"
        << "  Rate Check Interval    = " << rateCheckInterval_m << "\n"
        << "  Sub Ack Window Size    = " << subAckWinSize_m << "\n"
        << "  Sub Ack Timeout        = " << subAckTimeout_m << "\n"
        << "  Sub Ack Threshold      = " << subAckThreshold_m << "\n"
        << "  Socket Recv Buffer     = " << sockRcvBuf_m << "\n"
        << "  Socket Send Buffer     = " << sockSndBuf_m << "\n"
        << "  Session buffer size    = " << sessionBufSize_m << "\n"
        << "  Blocking write timeout = " << blockingWriteTimeout_m << "\n"
        << "  Want PSM w Calc Lat    = " << wantSmoothPubCalcLat_m << "\n"
        << "  Verbose                = " << verbose_m << "\n"
        << "  Slow sub delay (msec)  = " << slowSubDelayInMillis_m << "\n"
        << "  Slow sub delay count   = " << slowSubDelayCount_m << "\n"
        << "  Want stop on error     = " << wantStopOnError_m << "\n"
        << "  Client DTO Local Pri   = " << dtoLocalPri_m << "\n"
        << "  Client DTO Network Pri = " << dtoNetworkPri_m << "\n"
        << "  Compression Level      = " << compressionLevel_m << "\n"
        << "  Payload Compression Level = " << payloadCompressionLevel_m << "\n"
        << "  Cache Name             = " << cacheName_m << "\n"
        << "  Cache Max Msgs Per Top = " << cacheMaxMsgsPerTopic_m << "\n"
        << "  Cache Max Age          = " << cacheMaxAge_m << "\n"
        << "  Cache Timeout in Millis= " << cacheTimeoutInMsec_m << "\n"
        << "  Sub Msg Queue Depth    = " << subMsgQueueDepth_m << "\n"
        << "  Want Sub Msg Q Flush   = " << subMsgQueueFlush_m << "\n"
        << "  Sub Msg Q Reverse      = " << subMsgQueueReverse_m << "\n"
        << "  Change client name flag= " << changeClientName_m << "\n"
        << "  Want subscription mem  = " << wantSubscriptionMem_m << "\n"
        << "  Extra props list len   = " << extraPropsList_m.size() << "\n"
        << "  Context thread affinity= " << contextThreadAffinity_m << "\n"
        << "  Context Per Client     = " << wantContextPerClient_m << "\n"
        << "  Num Clients Per Context= " << numClientsPerContext_m << "\n"
        << "  Max Flows              = " << maxFlows_m << "\n"
        << "  Want Dump Msgs         = " << wantMsgDump_m << "\n"
        << "  Message Object Type Check = " << msgObjTypeCheck_m << "\n"
        << "  Want dispatch session  = " << wantDispatchSession_m << "\n"
        << "  Want Non Blocking Conn = " << wantNonBlockingConnect_m << "\n"
        << "  Num Pubs Per Client    = " << numPubsPerClient_m << "\n"
        << "  Want Prop Tool Data    = " << wantUserPropToolData_m << "\n"
        << "  Ignore already exists  = " << ignoreExistsErrors_m << "\n"
        << "  Want no local          = " << wantNoLocal_m << "\n"
        << "  Want Client Ack        = " << wantClientAck_m << "\n"
        << "  Want Client Ack Thread = " << wantClientAckThread_m << "\n"
        << "  Client Ack Rate Limit  = " << clientAckRateLimit_m << "\n"
        << "  Client Ack Skip Num    = " << clientAckSkipNum_m << "\n"
        << "  Client Ack Max Random  = " << clientAckMaxRandom_m << "\n"
        << "  Want Reply To          = " << wantReplyTo_m << "\n"
        << "  Reply To Postfix       = " << replyToPostfix_m << "\n"
        << "  Randomization Seed     = " << randomizationSeed_m << "\n"
        << "  Sub Order Offsets      = ";
    // Members in the form of the resume argument, so that the debug text can
    // be compared with what the report prints: stream@offset pairs, one group
    // per subscriber.
    for (size_t group = 0; group < subOrderOffsets_m.size(); ++group) {
        if (group > 0) {
            out << " ; ";
        }
        bool first = true;
        for (const auto& [streamId, offset] : subOrderOffsets_m[group]) {
            out << (first ? "" : ",") << streamId << "@" << offset;
            first = false;
        }
    }
    out << "\n"
        << "  Ack Event Mode         = " << ackEventMode_m << "\n"
        << "  Pub Ack Order Check    = " << wantPubAckOrderCheck_m << "\n"
        << "  Transport Protocol     = " << transportProtocol_m << "\n"
        << "  Web Transport Prtcl List = " << webTransportProtocolList_m << "\n"
        << "  Transport Prtcl Downgrade Timeout = " << transportProtocolDowngradeTimeoutMs_m << "\n"
        << "  Session Bind IP        = " << sessionBindIp_m << "\n"
        << "  Want Repl Reconnect    = " << wantReplicationReconnect_m << "\n"
        << "  SSL Protocol           = " << sslProtocol_m << "\n"
        << "  SSL Excluded Protocols = " << sslExcludedProtocols_m << "\n"
        << "  SSL Max Protocol Version = " << maxSslProtocolVersion_m << "\n"
        << "  SSL Min Protocol Version = " << minSslProtocolVersion_m << "\n"
        << "  SSL Validate Cert      = " << sslValidateCertificate_m << "\n"
        << "  SSL Validate Cert Date = " << sslValidateCertificateDate_m << "\n"
        << "  SSL Validate Cert Host = " << sslValidateCertificateHostname_m << "\n"
        << "  SSL Cipher Suites      = " << sslCipherSuites_m << "\n"
        << "  SSL Trust Store Dir    = " << sslTrustStoreDir_m << "\n"
        << "  SSL Trusted CNs        = " << sslTrustedCommonNameList_m << "\n"
        << "  SSL Client Cert File   = " << sslClientCertificateFile_m << "\n"
        << "  SSL Private Key File   = " << sslClientPrivateKeyFile_m << "\n"
        << "  SSL Private Key Passwd = " << sslClientPrivateKeyFilePassword_m << "\n"
        << "  SSL Conn Downgrade To  = " << sslConnectionDowngradeTo_m << "\n"
        << "  Authentication Scheme  = " << authenticationScheme_m << "\n"
        << "  OAuth Access Token     = " << oauthAccessToken_m << "\n"
        << "  OAuth OIDC ID Token    = " << oidcIdToken_m << "\n"
        << "  OAuth Issuer Id        = " << oauthIssuerId_m << "\n"
        << "  Want Trace Decode Check = " << wantTraceDecodeCheck_m << "\n"
        << "  Want Create Context Thread = " << wantCreateContextThread_m << "\n"
        << "  Context Thread Affinity CPU List = " << contextThreadAffinityList_m << "\n"
        << "  Want Client Task Thread       = " << wantClientTaskThread_m << "\n"
        << "}";
    return out.str();
}

}  // namespace zorvane::pubsub
