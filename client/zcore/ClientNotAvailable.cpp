// What this build of the client does not provide yet: flows on endpoints,
// queue browsing, cache requests and transacted sessions. Each operation
// refuses with a PubSubException that names the feature, so that a run
// which asks for one stops with a reason instead of measuring nothing.
#include <string>

#include "client/zcore/Client.h"
#include "common/FlowStatus.h"
#include "common/Log.h"
#include "common/PubSubException.h"

namespace zorvane::pubsub {

namespace {

[[noreturn]] void notAvailable(const std::string& clientIdStr, const char* feature) {
    throw PubSubException("CLIENT " + clientIdStr + ": " + feature +
                          " not available in this build\n");
}

}  // namespace

void Client::startQueueBrowsingImpl(const QueueBrowserProperties&) {
    notAvailable(clientIdStr_m, "Queue browsing is");
}

void Client::stopQueueBrowsingImpl() {
    notAvailable(clientIdStr_m, "Queue browsing is");
}

bool Client::isQueueBrowsingImpl() {
    notAvailable(clientIdStr_m, "Queue browsing is");
}

void Client::cacheRequestImpl(const std::vector<std::string>&, bool, std::string, bool, INT64,
                              INT64) {
    notAvailable(clientIdStr_m, "Cache requests are");
}

void Client::cancelCacheRequestsImpl() {
    notAvailable(clientIdStr_m, "Cache requests are");
}

void Client::commitTransactionImpl(std::string, bool) {
    notAvailable(clientIdStr_m, "Transacted sessions are");
}

void Client::commitTransactionOnCurrPubImpl(INT32, bool) {
    notAvailable(clientIdStr_m, "Transacted sessions are");
}

std::string Client::openTransactedSessionImpl(UINT32, UINT32, UINT32) {
    notAvailable(clientIdStr_m, "Transacted sessions are");
}

void Client::closeTransactedSessionImpl(std::string) {
    notAvailable(clientIdStr_m, "Transacted sessions are");
}

void Client::topicUpdateImpl(const EpConfigProperties&) {
    notAvailable(clientIdStr_m, "Durable topic endpoint flows are");
}

void Client::queueUpdateImpl(const EpConfigProperties&) {
    notAvailable(clientIdStr_m, "Queue flows are");
}

std::vector<std::string> Client::tempEndpointUpdateImpl(const EpConfigProperties&) {
    notAvailable(clientIdStr_m, "Temporary endpoints are");
}

void Client::mapTopicsImpl(const std::string&, const std::vector<std::string>&, bool) {
    notAvailable(clientIdStr_m, "Topic to queue mapping is");
}

FlowStatus Client::getFlowStatusImpl(const std::string&, EndpointType) {
    notAvailable(clientIdStr_m, "Flow status is");
}

void Client::endpointProvisioningImpl(const EpConfigProperties&) {
    notAvailable(clientIdStr_m, "Endpoint provisioning is");
}

void Client::registerDefaultFlow() {
    notAvailable(clientIdStr_m, "The default flow is");
}

// Teardown calls these on every client; with no flows bound there is
// nothing to release.
void Client::unbindAllTempEndpointsImpl() {
    LOG_DEBUG("CLIENT %s: No temporary endpoints to unbind", clientIdStr_m.c_str());
}

void Client::clearSubscriptionMemoryImpl() {
    LOG_DEBUG("CLIENT %s: No flows to forget", clientIdStr_m.c_str());
}

}  // namespace zorvane::pubsub
