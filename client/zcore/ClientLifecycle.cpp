// Construction and destruction of a client, and the features the
// constructor refuses because this build does not have them yet.
#include <string>

#include "client/zcore/Client.h"
#include "client/zcore/ClientCallbacks.h"
#include "client/zcore/LibraryError.h"
#include "client/zcore/SessionProperties.h"
#include "common/Log.h"
#include "common/OS.h"
#include "common/PubSubException.h"

namespace zorvane::pubsub {

Client::Client(INT32 clientId, UINT64 secDivisor, const ClientProperties& props, Context* context_p,
               const StatsCustomizationProperties& statsCust, TimerThread* timerThread_p,
               INT64 randomSeed)
    : AbstractClient(props, clientId, secDivisor, statsCust, timerThread_p) {
    // Before anything is created: a run that needs these must stop here
    // with a reason, not half-way through its traffic.
    refuseFeaturesNotInThisBuild();

    currentMessage_m = std::make_unique<Message>(clientIdStr_m, nullptr);
    currentMsg_mp = currentMessage_m.get();

    rxStats_m.configure(clientIdStr_m, secDivisor, statsCust.getNumLatencyBuckets(),
                        statsCust.getLatencyGranularityFactor(), statsCust.getLatencyWarmupInSec());

    randomNumOpaqueStateClientAck_mp.reset(OS::randomInitState(randomSeed));
    LOG_DEBUG("Client %d initialized with random seed %s", clientId,
              std::to_string(randomSeed).c_str());

    populateZMPLProperties();

    try {
        const INT32 numPubs = props_m.getNumPubsPerClient();
        for (INT32 i = 0; i < numPubs; ++i) {
            zorClient_opaqueMsg_pt msg = nullptr;
            if (zorClient_msg_alloc(&msg) != ZORCLIENT_OK) {
                throwClientError("Unable to allocate message to transmit");
            }
            pubMsgsList_m.push_back(msg);
            psvMsgsList_m.emplace_back(PUB_SEND_VECTOR_MAX_SIZE, nullptr);
        }
    } catch (...) {
        // The destructor does not run for a client that was never made.
        freeMessages();
        throw;
    }

    zorClient_session_createFuncInfo_t funcInfo{};
    funcInfo.eventInfo.callback_p = &clientExtern_eventFunc;
    funcInfo.eventInfo.user_p = this;
    funcInfo.rxMsgInfo.callback_p = &clientExtern_messageRxFunc;
    funcInfo.rxMsgInfo.user_p = this;
    zorClient_opaqueContext_pt context = context_p != nullptr ? context_p->getContext() : nullptr;
    if (zorClient_session_create(sdkprops_m.get(), context, &session_mp, &funcInfo,
                                 sizeof funcInfo) != ZORCLIENT_OK) {
        const LibraryError error = LibraryError::fetch();
        // Not thrown: the collection builds every client first, and the
        // first connect then fails with the library's reason.
        LOG_ERROR(
            "CLIENT %s: Error creating session.  Sub Code: %s, Response Code: %d, Error "
            "String: %s.  Setting session pointer to null.",
            clientIdStr_m.c_str(), error.subCodeText(), error.responseCode_m,
            error.errorStr_m.c_str());
        session_mp = nullptr;
        return;
    }

    maxPubRetries_m = props_m.getPubMaxResends() >= 1 ? props_m.getPubMaxResends() : 3;
}

Client::~Client() {
    freeMessages();
    // When this returns no callback of the session runs any more, so the
    // view and the statistics they use may go.
    if (session_mp != nullptr) {
        zorClient_session_destroy(&session_mp);
    }
    sdkprops_m.clear();
    randomNumOpaqueStateClientAck_mp.reset();
    currentMsg_mp = nullptr;
    currentMessage_m.reset();
}

void Client::refuseFeaturesNotInThisBuild() const {
    auto refuse = [this](const char* feature) {
        throw PubSubException("CLIENT " + clientIdStr_m + ": " + feature +
                              " not available in this build\n");
    };
    if (!props_m.getCacheName().empty()) {
        refuse("Cache sessions are");
    }
    if (props_m.getWantClientAckThread()) {
        refuse("The client acknowledgement thread is");
    }
    if (props_m.getClientAckRateLimit() > 0.0) {
        refuse("Rate-limited client acknowledgement is");
    }
    if (props_m.getWantClientTaskThread()) {
        refuse("The client task thread (background sends) is");
    }
    if (props_m.getSubMsgQueueDepth() > 0) {
        refuse("Keeping received messages for later release is");
    }
}

void Client::freeMessages() {
    for (zorClient_opaqueMsg_pt& msg : pubMsgsList_m) {
        if (msg != nullptr) {
            zorClient_msg_free(&msg);
        }
    }
    pubMsgsList_m.clear();
    for (MsgVector& vector : psvMsgsList_m) {
        for (zorClient_opaqueMsg_pt& msg : vector) {
            if (msg != nullptr) {
                zorClient_msg_free(&msg);
            }
        }
    }
    psvMsgsList_m.clear();
}

void Client::populateZMPLProperties() {
    SessionPropertyInputs inputs;
    inputs.clientId_m = clientIdInt_m;
    inputs.clientIdStr_m = clientIdStr_m;
    inputs.wantMsgReflect_m = wantMsgReflect_m;
    inputs.wantClientTaskThread_m = wantClientTaskThread_m;
    SessionProperties::fill(props_m, inputs, sdkprops_m);
}

std::size_t Client::checkedProducerIndex(INT32 producerIndex) const {
    if (producerIndex < 0 || static_cast<std::size_t>(producerIndex) >= pubMsgsList_m.size()) {
        throwClientError("No publisher with index " + std::to_string(producerIndex) +
                         " (publishers per client: " + std::to_string(pubMsgsList_m.size()) + ")");
    }
    return static_cast<std::size_t>(producerIndex);
}

void Client::throwClientError(const std::string& text) const {
    throw PubSubException("CLIENT " + clientIdStr_m + ": " + text + "\n");
}

}  // namespace zorvane::pubsub
