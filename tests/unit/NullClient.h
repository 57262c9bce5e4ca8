// A client that reaches no library: every Impl does nothing, the last
// acknowledged id is a plain field, and the receive statistics are the
// client's own. Tests and benchmarks derive from it and override only the
// operations they watch.
//
// Threads: as AbstractClient; the fields added here belong to whichever
// thread drives the client (the publisher thread in publishing tests).
#pragma once

#include <map>
#include <string>
#include <vector>

#include "client/AbstractClient.h"
#include "common/CliProperties.h"

namespace zorvane::pubsub {

class NullClient : public AbstractClient {
  public:
    using AbstractClient::AbstractClient;

    // A default client record, as the command line gives it without options.
    static ClientProperties defaultProps() {
        return ClientProperties(CliProperties(CliProperties::VEX_LOAD, "1.0.0"));
    }

    // What the binding does when a library callback reports an error.
    void raiseAsyncError() { asyncExceptionOccured_m = true; }

    UINT64 lastAcked_m = 0;

  protected:
    void connectImpl() override {}
    void disconnectImpl() override {}
    void setPublishPropsImpl(const PublishProperties&, INT32, std::string) override {}
    void publishMsgImpl(MsgProperties*, INT32) override {}
    void publishSendMultipleImpl(std::vector<MsgProperties>&, bool, INT32) override {}
    UINT64 getLastAckedMsgIdImpl() override { return lastAcked_m; }
    void setLastAckedMsgIdImpl(UINT64 id) override { lastAcked_m = id; }
    const PerfStats& getRxStatsImpl(bool) override { return stats_m; }

    void startDataImpl() override {}
    void stopDataImpl() override {}
    void startQueueBrowsingImpl(const QueueBrowserProperties&) override {}
    void stopQueueBrowsingImpl() override {}
    bool isQueueBrowsingImpl() override { return false; }
    void cacheRequestImpl(const std::vector<std::string>&, bool, std::string, bool, INT64,
                          INT64) override {}
    void cancelCacheRequestsImpl() override {}
    std::string requestReplyImpl(const std::string&, const std::string&) override { return ""; }
    void reflectMsgImpl(AbstractMessage*) override {}
    bool checkStructuredMsgImpl(AbstractMessage*) override { return true; }
    void readMsgObjectTypeImpl(AbstractMessage*, MsgObjectTypeReading&) override {}
    INT64 getSdkStatImpl(int) override { return 0; }
    void resetStatsImpl() override {}
    void subscriptionUpdateImpl(const std::vector<std::string>&, bool, const std::string&,
                                SubscriptionType) override {}
    void topicUpdateImpl(const EpConfigProperties&) override {}
    void queueUpdateImpl(const EpConfigProperties&) override {}
    std::vector<std::string> tempEndpointUpdateImpl(const EpConfigProperties&) override {
        return {};
    }
    void unbindAllTempEndpointsImpl() override {}
    void mapTopicsImpl(const std::string&, const std::vector<std::string>&, bool) override {}
    FlowStatus getFlowStatusImpl(const std::string&, EndpointType) override { return {}; }
    void clearSubscriptionMemoryImpl() override {}
    void endpointProvisioningImpl(const EpConfigProperties&) override {}
    std::string getClientNameImpl() override { return getName(); }
    void setClientNameImpl(std::string) override {}
    void updateAuthOnReconnectImpl(std::string, std::string) override {}
    void sigalrmActionImpl() override {}
    std::string toStringImpl() override { return ""; }
    std::map<std::string, std::string> getRtrCapabilitiesImpl() override { return {}; }
    void setLastMessageDetails(AbstractMessage*) override {}
};

}  // namespace zorvane::pubsub
