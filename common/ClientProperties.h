// What a client connection is and how it behaves: a plain value record built
// once from the finished property store and then copied into every client.
// After that nobody looks at the store for these values.
//
// Ownership and threads: a plain value with no pointers; each client holds
// its own copy and reads it without locks. The constructor from the store
// runs on the main thread and may block briefly on reading the password
// file; nothing else blocks.
#pragma once

#include <map>
#include <memory>
#include <string>
#include <vector>

#include "common/dataTypes.h"

namespace zorvane::pubsub {

class CliProperties;

class ClientProperties {
  public:
    // Copies every field from the store. The password comes from
    // CLIENT_PASSWORD, or, when that is empty, from the whole content of the
    // file named by CLIENT_PASSWORD_FILE.
    // Throws PubSubException "File not found. <path>" when that file cannot
    // be opened, and "File could not be read. <path>" when reading it fails.
    explicit ClientProperties(const CliProperties& cliProperties);

    ClientProperties(const ClientProperties&) = default;
    ClientProperties& operator=(const ClientProperties&) = default;
    ClientProperties(ClientProperties&&) = default;
    ClientProperties& operator=(ClientProperties&&) = default;
    ~ClientProperties() = default;

    // A copy on the heap; the caller owns it.
    std::unique_ptr<ClientProperties> clone() const;

    // Debug text: "{\n", one labelled line per field, "}".
    std::string toString() const;

    // ---- names of client number index (client ids start at 1) ----

    // Prefix (when set) and the index in six digits: the name in log lines
    // and reports.
    std::string generateClientIdStr(INT32 index) const;
    // Prefix, or DEF_CLIENT when none is set, and the index in six digits.
    std::string generateClientName(INT32 index) const;
    // The configured user name without any index; the client name when none
    // is configured.
    std::string generateClientUsername(INT32 index) const;

    // ---- getters and setters ----

    INT32 getNumClients() const { return numClients_m; }
    // Throws std::invalid_argument "num clients < 1" for a value below 1.
    void setNumClients(INT32 numClients);
    const std::string& getHost() const { return host_m; }
    void setHost(const std::string& host) { host_m = host; }
    const std::string& getClientUsername() const { return clientUsername_m; }
    void setClientUsername(const std::string& value) { clientUsername_m = value; }
    const std::string& getClientVpn() const { return clientVpn_m; }
    void setClientVpn(const std::string& value) { clientVpn_m = value; }
    const std::string& getClientPrefix() const { return clientPrefix_m; }
    void setClientPrefix(const std::string& value) { clientPrefix_m = value; }
    const std::string& getPassword() const { return password_m; }
    void setPassword(const std::string& value) { password_m = value; }
    const std::string& getDescription() const { return clientDescription_m; }
    void setDescription(const std::string& value) { clientDescription_m = value; }
    const std::string& getClientMode() const { return clientMode_m; }
    void setClientMode(const std::string& value) { clientMode_m = value; }
    const std::string& getClientReflectTopic() const { return clientReflectTopic_m; }
    void setClientReflectTopic(const std::string& value) { clientReflectTopic_m = value; }
    bool isTcpNoDelay() const { return isTcpNoDelay_m; }
    void setTcpNoDelay(bool value) { isTcpNoDelay_m = value; }
    INT32 getReconnectRetries() const { return reconnectRetries_m; }
    void setReconnectRetries(INT32 value) { reconnectRetries_m = value; }
    const std::string& getReconnectFailAction() const { return reconnectFailAction_m; }
    void setReconnectFailAction(const std::string& value) { reconnectFailAction_m = value; }
    INT32 getReconnectRetryWaitInMillis() const { return reconnectRetryWaitInMillis_m; }
    void setReconnectRetryWaitInMillis(INT32 value) { reconnectRetryWaitInMillis_m = value; }
    INT32 getReadTimeoutInMillis() const { return readTimeoutInMillis_m; }
    void setReadTimeoutInMillis(INT32 value) { readTimeoutInMillis_m = value; }
    INT32 getKeepAliveIntervalInMillis() const { return keepAliveInMillis_m; }
    void setKeepAliveIntervalInMillis(INT32 value) { keepAliveInMillis_m = value; }
    INT32 getKeepAliveLimit() const { return keepAliveLimit_m; }
    void setKeepAliveLimit(INT32 value) { keepAliveLimit_m = value; }
    INT32 getPubAckWinSize() const { return pubAckWinSize_m; }
    void setPubAckWinSize(INT32 value) { pubAckWinSize_m = value; }
    INT32 getPubAckTimeout() const { return pubAckTimeout_m; }
    void setPubAckTimeout(INT32 value) { pubAckTimeout_m = value; }
    INT32 getPubMaxResends() const { return pubMaxResends_m; }
    void setPubMaxResends(INT32 value) { pubMaxResends_m = value; }
    INT32 getRateCheckInterval() const { return rateCheckInterval_m; }
    void setRateCheckInterval(INT32 value) { rateCheckInterval_m = value; }
    INT32 getSubAckWinSize() const { return subAckWinSize_m; }
    void setSubAckWinSize(INT32 value) { subAckWinSize_m = value; }
    INT32 getSubAckTimeout() const { return subAckTimeout_m; }
    void setSubAckTimeout(INT32 value) { subAckTimeout_m = value; }
    INT32 getSubAckThreshold() const { return subAckThreshold_m; }
    void setSubAckThreshold(INT32 value) { subAckThreshold_m = value; }
    INT32 getSocketRcvBuf() const { return sockRcvBuf_m; }
    void setSocketRcvBuf(INT32 value) { sockRcvBuf_m = value; }
    INT32 getSocketSndBuf() const { return sockSndBuf_m; }
    void setSocketSndBuf(INT32 value) { sockSndBuf_m = value; }
    INT32 getSessionBufSize() const { return sessionBufSize_m; }
    void setSessionBufSize(INT32 value) { sessionBufSize_m = value; }
    INT32 getBlockingWriteTimeout() const { return blockingWriteTimeout_m; }
    void setBlockingWriteTimeout(INT32 value) { blockingWriteTimeout_m = value; }
    bool wantSmoothPubCalcLat() const { return wantSmoothPubCalcLat_m; }
    void setSmoothPubCalcLat(bool value) { wantSmoothPubCalcLat_m = value; }
    bool wantVerbose() const { return verbose_m; }
    void setVerbose(bool value) { verbose_m = value; }
    INT32 getSlowSubDelayInMillis() const { return slowSubDelayInMillis_m; }
    void setSlowSubDelayInMillis(INT32 value) { slowSubDelayInMillis_m = value; }
    INT32 getSlowSubDelayCount() const { return slowSubDelayCount_m; }
    void setSlowSubDelayCount(INT32 value) { slowSubDelayCount_m = value; }
    bool wantStopOnError() const { return wantStopOnError_m; }
    void setStopOnError(bool value) { wantStopOnError_m = value; }
    INT32 getDtoLocalPri() const { return dtoLocalPri_m; }
    void setDtoLocalPri(INT32 value) { dtoLocalPri_m = value; }
    INT32 getDtoNetworkPri() const { return dtoNetworkPri_m; }
    void setDtoNetworkPri(INT32 value) { dtoNetworkPri_m = value; }
    INT32 getCompressionLevel() const { return compressionLevel_m; }
    void setCompressionLevel(INT32 value) { compressionLevel_m = value; }
    INT32 getPayloadCompressionLevel() const { return payloadCompressionLevel_m; }
    void setPayloadCompressionLevel(INT32 value) { payloadCompressionLevel_m = value; }
    const std::string& getCacheName() const { return cacheName_m; }
    void setCacheName(const std::string& value) { cacheName_m = value; }
    INT32 getCacheMaxMsgsPerTopic() const { return cacheMaxMsgsPerTopic_m; }
    void setCacheMaxMsgsPerTopic(INT32 value) { cacheMaxMsgsPerTopic_m = value; }
    INT32 getCacheMaxAge() const { return cacheMaxAge_m; }
    void setCacheMaxAge(INT32 value) { cacheMaxAge_m = value; }
    INT32 getCacheTimeoutInMillis() const { return cacheTimeoutInMsec_m; }
    void setCacheTimeoutInMillis(INT32 value) { cacheTimeoutInMsec_m = value; }
    INT32 getSubMsgQueueDepth() const { return subMsgQueueDepth_m; }
    void setSubMsgQueueDepth(INT32 value) { subMsgQueueDepth_m = value; }
    bool getChangeClientNameFlag() const { return changeClientName_m; }
    void setChangeClientNameFlag(bool value) { changeClientName_m = value; }
    bool getWantSubscriptionMem() const { return wantSubscriptionMem_m; }
    void setWantSubscriptionMem(bool value) { wantSubscriptionMem_m = value; }
    const std::vector<std::string>& getExtraPropsList() const { return extraPropsList_m; }
    void setExtraPropsList(const std::vector<std::string>& value) { extraPropsList_m = value; }
    INT64 getContextThreadAffinity() const { return contextThreadAffinity_m; }
    void setContextThreadAffinity(INT64 value) { contextThreadAffinity_m = value; }
    bool getWantContextPerClient() const { return wantContextPerClient_m; }
    void setWantContextPerClient(bool value) { wantContextPerClient_m = value; }
    INT32 getNumClientsPerContext() const { return numClientsPerContext_m; }
    void setNumClientsPerContext(INT32 value) { numClientsPerContext_m = value; }
    INT32 getMaxFlows() const { return maxFlows_m; }
    void setMaxFlows(INT32 value) { maxFlows_m = value; }
    bool getWantMsgDump() const { return wantMsgDump_m; }
    void setWantMsgDump(bool value) { wantMsgDump_m = value; }
    INT32 getMsgDumpBufferSize() const { return msgDumpBufferSize_m; }
    void setMsgDumpBufferSize(INT32 value) { msgDumpBufferSize_m = value; }
    bool getWantMsgDumpTimeStamp() const { return wantMsgDumpTimeStamp_m; }
    void setWantMsgDumpTimeStamp(bool value) { wantMsgDumpTimeStamp_m = value; }
    bool getMsgObjTypeCheck() const { return msgObjTypeCheck_m; }
    void setMsgObjTypeCheck(bool value) { msgObjTypeCheck_m = value; }
    bool getWantDispatchSession() const { return wantDispatchSession_m; }
    void setWantDispatchSession(bool value) { wantDispatchSession_m = value; }
    bool getWantNonBlockingConnect() const { return wantNonBlockingConnect_m; }
    void setWantNonBlockingConnect(bool value) { wantNonBlockingConnect_m = value; }
    INT32 getNumPubsPerClient() const { return numPubsPerClient_m; }
    void setNumPubsPerClient(INT32 value) { numPubsPerClient_m = value; }
    bool getWantUserPropToolData() const { return wantUserPropToolData_m; }
    void setWantUserPropToolData(bool value) { wantUserPropToolData_m = value; }
    bool wantIgnoreExistsErrors() const { return ignoreExistsErrors_m; }
    void setIgnoreExistsErrors(bool value) { ignoreExistsErrors_m = value; }
    bool getWantNoLocal() const { return wantNoLocal_m; }
    void setWantNoLocal(bool value) { wantNoLocal_m = value; }
    bool getWantClientAck() const { return wantClientAck_m; }
    void setWantClientAck(bool value) { wantClientAck_m = value; }
    bool getWantClientAckThread() const { return wantClientAckThread_m; }
    void setWantClientAckThread(bool value) { wantClientAckThread_m = value; }
    double getClientAckRateLimit() const { return clientAckRateLimit_m; }
    void setClientAckRateLimit(double value) { clientAckRateLimit_m = value; }
    INT32 getClientAckSkipNum() const { return clientAckSkipNum_m; }
    void setClientAckSkipNum(INT32 value) { clientAckSkipNum_m = value; }
    bool getWantSubMsgQueueFlush() const { return subMsgQueueFlush_m; }
    void setWantSubMsgQueueFlush(bool value) { subMsgQueueFlush_m = value; }
    bool getSubMsgQueueReverse() const { return subMsgQueueReverse_m; }
    void setSubMsgQueueReverse(bool value) { subMsgQueueReverse_m = value; }
    INT32 getClientAckMaxRandom() const { return clientAckMaxRandom_m; }
    void setClientAckMaxRandom(INT32 value) { clientAckMaxRandom_m = value; }
    INT64 getRandomizationSeed() const { return randomizationSeed_m; }
    void setRandomizationSeed(INT64 value) { randomizationSeed_m = value; }
    bool getWantReplyTo() const { return wantReplyTo_m; }
    void setWantReplyTo(bool value) { wantReplyTo_m = value; }
    const std::string& getReplyToPostfix() const { return replyToPostfix_m; }
    void setReplyToPostfix(const std::string& value) { replyToPostfix_m = value; }
    const std::vector<std::map<INT32, UINT64>>& getSubOrderOffsets() const {
        return subOrderOffsets_m;
    }
    void setSubOrderOffsets(const std::vector<std::map<INT32, UINT64>>& value) {
        subOrderOffsets_m = value;
    }
    const std::string& getAckEventMode() const { return ackEventMode_m; }
    void setAckEventMode(const std::string& value) { ackEventMode_m = value; }
    bool getWantPubAckOrderCheck() const { return wantPubAckOrderCheck_m; }
    void setWantPubAckOrderCheck(bool value) { wantPubAckOrderCheck_m = value; }
    const std::string& getTransportProtocol() const { return transportProtocol_m; }
    void setTransportProtocol(const std::string& value) { transportProtocol_m = value; }
    const std::string& getWebTransportProtocolList() const { return webTransportProtocolList_m; }
    void setWebTransportProtocolList(const std::string& value) {
        webTransportProtocolList_m = value;
    }
    const std::string& getTransportProtocolDowngradeTimeoutMs() const {
        return transportProtocolDowngradeTimeoutMs_m;
    }
    void setTransportProtocolDowngradeTimeoutMs(const std::string& value) {
        transportProtocolDowngradeTimeoutMs_m = value;
    }
    const std::string& getSessionBindIp() const { return sessionBindIp_m; }
    void setSessionBindIp(const std::string& value) { sessionBindIp_m = value; }
    bool getWantReplicationReconnect() const { return wantReplicationReconnect_m; }
    void setWantReplicationReconnect(bool value) { wantReplicationReconnect_m = value; }
    const std::string& getSettlementPattern() const { return settlementPattern_m; }
    void setSettlementPattern(const std::string& value) { settlementPattern_m = value; }
    const std::string& getRequiredSettlements() const { return requiredSettlements_m; }
    void setRequiredSettlements(const std::string& value) { requiredSettlements_m = value; }
    const std::string& getSslProtocol() const { return sslProtocol_m; }
    void setSslProtocol(const std::string& value) { sslProtocol_m = value; }
    const std::string& getExcludedSslProtocols() const { return sslExcludedProtocols_m; }
    void setExcludedSslProtocols(const std::string& value) { sslExcludedProtocols_m = value; }
    const std::string& getMaxSslProtocolVersion() const { return maxSslProtocolVersion_m; }
    void setMaxSslProtocolVersion(const std::string& value) { maxSslProtocolVersion_m = value; }
    const std::string& getMinSslProtocolVersion() const { return minSslProtocolVersion_m; }
    void setMinSslProtocolVersion(const std::string& value) { minSslProtocolVersion_m = value; }
    bool getSslValidateCertificate() const { return sslValidateCertificate_m; }
    void setSslValidateCertificate(bool value) { sslValidateCertificate_m = value; }
    bool getSslValidateCertificateDate() const { return sslValidateCertificateDate_m; }
    void setSslValidateCertificateDate(bool value) { sslValidateCertificateDate_m = value; }
    bool getSslValidateCertificateHostname() const { return sslValidateCertificateHostname_m; }
    void setSslValidateCertificateHostname(bool value) { sslValidateCertificateHostname_m = value; }
    const std::string& getSslCipherSuites() const { return sslCipherSuites_m; }
    void setSslCipherSuites(const std::string& value) { sslCipherSuites_m = value; }
    const std::string& getSslTrustStoreDir() const { return sslTrustStoreDir_m; }
    void setSslTrustStoreDir(const std::string& value) { sslTrustStoreDir_m = value; }
    const std::string& getSslTrustedCommonNameList() const { return sslTrustedCommonNameList_m; }
    void setSslTrustedCommonNameList(const std::string& value) {
        sslTrustedCommonNameList_m = value;
    }
    const std::string& getSslClientCertificateFile() const { return sslClientCertificateFile_m; }
    void setSslClientCertificateFile(const std::string& value) {
        sslClientCertificateFile_m = value;
    }
    const std::string& getSslClientPrivateKeyFile() const { return sslClientPrivateKeyFile_m; }
    void setSslClientPrivateKeyFile(const std::string& value) { sslClientPrivateKeyFile_m = value; }
    const std::string& getSslClientPrivateKeyFilePassword() const {
        return sslClientPrivateKeyFilePassword_m;
    }
    void setSslClientPrivateKeyFilePassword(const std::string& value) {
        sslClientPrivateKeyFilePassword_m = value;
    }
    const std::string& getSslConnectionDowngradeTo() const { return sslConnectionDowngradeTo_m; }
    void setSslConnectionDowngradeTo(const std::string& value) {
        sslConnectionDowngradeTo_m = value;
    }
    const std::string& getAuthenticationScheme() const { return authenticationScheme_m; }
    void setAuthenticationScheme(const std::string& value) { authenticationScheme_m = value; }
    const std::string& getOauthAccessToken() const { return oauthAccessToken_m; }
    void setOauthAccessToken(const std::string& value) { oauthAccessToken_m = value; }
    const std::string& getOidcIdToken() const { return oidcIdToken_m; }
    void setOidcIdToken(const std::string& value) { oidcIdToken_m = value; }
    const std::string& getOauthIssuerId() const { return oauthIssuerId_m; }
    void setOauthIssuerId(const std::string& value) { oauthIssuerId_m = value; }
    bool getWantTraceDecodeCheck() const { return wantTraceDecodeCheck_m; }
    void setWantTraceDecodeCheck(bool value) { wantTraceDecodeCheck_m = value; }
    bool getWantCreateContextThread() const { return wantCreateContextThread_m; }
    void setWantCreateContextThread(bool value) { wantCreateContextThread_m = value; }
    const std::string& getContextThreadAffinityList() const { return contextThreadAffinityList_m; }
    void setContextThreadAffinityList(const std::string& value) {
        contextThreadAffinityList_m = value;
    }
    bool getWantClientTaskThread() const { return wantClientTaskThread_m; }
    void setWantClientTaskThread(bool value) { wantClientTaskThread_m = value; }

  private:
    INT32 numClients_m;
    std::string host_m;  // unparsed: scheme and port, if any, stay in it
    std::string clientUsername_m;
    std::string clientVpn_m;
    std::string clientPrefix_m;
    std::string password_m;
    std::string clientDescription_m;
    std::string clientMode_m;
    std::string clientReflectTopic_m;
    bool isTcpNoDelay_m;
    INT32 reconnectRetries_m;
    std::string reconnectFailAction_m;
    INT32 reconnectRetryWaitInMillis_m;
    INT32 readTimeoutInMillis_m;  // -1 leaves the library's own
    INT32 keepAliveInMillis_m;
    INT32 keepAliveLimit_m;
    INT32 pubAckWinSize_m;
    INT32 pubAckTimeout_m;
    INT32 pubMaxResends_m;
    INT32 rateCheckInterval_m;
    INT32 subAckWinSize_m;
    INT32 subAckTimeout_m;
    INT32 subAckThreshold_m;
    INT32 sockRcvBuf_m;
    INT32 sockSndBuf_m;
    INT32 sessionBufSize_m;
    INT32 blockingWriteTimeout_m;
    bool wantSmoothPubCalcLat_m;
    bool verbose_m;
    INT32 slowSubDelayInMillis_m;
    INT32 slowSubDelayCount_m;
    bool wantStopOnError_m;
    INT32 dtoLocalPri_m;
    INT32 dtoNetworkPri_m;
    INT32 compressionLevel_m;
    INT32 payloadCompressionLevel_m;
    std::string cacheName_m;
    INT32 cacheMaxMsgsPerTopic_m;
    INT32 cacheMaxAge_m;
    INT32 cacheTimeoutInMsec_m;
    INT32 subMsgQueueDepth_m;
    bool changeClientName_m;
    bool wantSubscriptionMem_m;
    std::vector<std::string> extraPropsList_m;  // key, value, key, value ...
    INT64 contextThreadAffinity_m;              // -1 for none
    bool wantContextPerClient_m;
    INT32 numClientsPerContext_m;
    INT32 maxFlows_m;  // -1 leaves the library's own
    bool wantMsgDump_m;
    INT32 msgDumpBufferSize_m;  // 0: dumps are not cut
    bool wantMsgDumpTimeStamp_m;
    bool msgObjTypeCheck_m;
    bool wantDispatchSession_m;
    bool wantNonBlockingConnect_m;
    INT32 numPubsPerClient_m;
    bool wantUserPropToolData_m;
    bool ignoreExistsErrors_m;
    bool wantNoLocal_m;
    bool wantClientAck_m;
    bool wantClientAckThread_m;
    double clientAckRateLimit_m;  // acks per second; 0.0 for no limit
    INT32 clientAckSkipNum_m;
    bool subMsgQueueFlush_m;
    bool subMsgQueueReverse_m;
    INT32 clientAckMaxRandom_m;
    INT64 randomizationSeed_m;
    bool wantReplyTo_m;
    std::string replyToPostfix_m;
    std::vector<std::map<INT32, UINT64>> subOrderOffsets_m;  // one map per subscriber
    std::string ackEventMode_m;
    bool wantPubAckOrderCheck_m;
    std::string transportProtocol_m;
    std::string webTransportProtocolList_m;
    std::string transportProtocolDowngradeTimeoutMs_m;
    std::string sessionBindIp_m;
    bool wantReplicationReconnect_m;
    std::string settlementPattern_m;
    std::string requiredSettlements_m;
    std::string sslProtocol_m;
    std::string sslExcludedProtocols_m;
    std::string maxSslProtocolVersion_m;
    std::string minSslProtocolVersion_m;
    bool sslValidateCertificate_m;
    bool sslValidateCertificateDate_m;
    bool sslValidateCertificateHostname_m;
    std::string sslCipherSuites_m;
    std::string sslTrustStoreDir_m;
    std::string sslTrustedCommonNameList_m;
    std::string sslClientCertificateFile_m;
    std::string sslClientPrivateKeyFile_m;
    std::string sslClientPrivateKeyFilePassword_m;
    std::string sslConnectionDowngradeTo_m;
    std::string authenticationScheme_m;
    std::string oauthAccessToken_m;
    std::string oidcIdToken_m;
    std::string oauthIssuerId_m;
    bool wantTraceDecodeCheck_m;
    bool wantCreateContextThread_m;
    std::string contextThreadAffinityList_m;
    bool wantClientTaskThread_m;
};

}  // namespace zorvane::pubsub
