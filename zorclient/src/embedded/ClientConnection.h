// One session's connection to an embedded broker instance, as the instance sees it: the client
// name it is known by, where to report to, its direct subscriptions, and its bounded egress.
//
// Threads: everything but the listener and the egress is read and written under the instance's
// mutex only (the connect settings too: a publisher of the same session may still be routing
// while the session connects again). Egress bytes also go down on the receiving context thread
// (DeliveryEnvelope), hence atomic.
#pragma once

#include <cstdint>
#include <string>
#include <unordered_map>

#include "core/Backend.h"
#include "core/DeliveryEnvelope.h"
#include "core/TopicIndex.h"

namespace zorvane::zorclient {

// A direct topic subscription of one connection.
struct DirectSubscription {
    std::uint32_t consumerId = 0;  // 1-based, in the order the connection subscribed
    bool deliverAlways = false;    // also receives every deliver-to-one message it matches
};

// What a connect sets on a connection.
struct ConnectionSettings {
    bool noLocal = false;
    std::int64_t localPriority = 1;
    std::int64_t egressLimitBytes = 0;
};

struct ClientConnection {
    explicit ClientConnection(BackendListener& listener) : listener_m(listener) {}

    BackendListener& listener_m;
    std::string clientName_m;  // under the instance's mutex
    bool attached_m = false;   // under the instance's mutex
    std::uint64_t id_m = 0;    // per instance, from 1; set when attached

    // Settings of the connect, fixed while attached.
    ConnectionSettings settings_m;
    std::string inboxTopic_m;

    // Direct messaging state, under the instance's mutex.
    std::unordered_map<std::string, DirectSubscription, TopicTextHash, TopicTextEqual>
        subscriptions_m;  // by topic
    std::uint32_t nextConsumerId_m = 1;
    // Messages for this connection were dropped since its last delivery: the next one is
    // marked.
    bool discardPending_m = false;
    // The topic this connection published on last and the router's state of it: a publisher
    // that stays on one topic finds it without hashing the text.
    std::string lastTopic_m;
    void* lastTopicState_mp = nullptr;

    DeliveryEnvelope::Egress egress_m;
};

}  // namespace zorvane::zorclient
