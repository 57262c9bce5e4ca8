// Direct messaging inside one embedded broker instance: the connections' topic subscriptions,
// and the routing of a published direct message to every session it matches.
//
// Routing rules:
// - Fan-out: every connection with at least one matching subscription receives the message
//   once, with the consumer ids of its subscriptions that matched (ascending).
// - Each connection has its inbox topic as an implicit subscription; a reply that carries a
//   request correlation and arrives on an inbox goes to BackendListener::onReply instead of the
//   receive path.
// - No-local: a connection made with noLocal does not receive what it published itself.
// - Deliver-to-one: of the matching connections one receives the message: the highest local
//   subscriber priority (1..4) wins, connections of equal priority take turns per topic. Every
//   connection whose matching subscriptions include one made with deliver-always receives it as
//   well. (The network priority ranks subscribers behind other brokers; an embedded instance
//   has only local ones.)
// - Topic sequence numbers: per exact published topic from 1, for messages whose sender set
//   none (those keep the sender's and do not advance the count).
// - Egress: each connection may have egressLimitBytes of deliveries waiting (a single message
//   always fits); beyond that the message is dropped for that connection and its next delivered
//   message carries the discard indication. A full context queue counts as a full egress.
//
// Performance: the matching connections of a published topic are worked out once and kept with
// the topic (with its sequence number) until a subscription changes anywhere in the instance;
// publishing on a known topic is then one hash lookup plus the deliveries, with no allocation.
//
// Threads: not thread-safe; every member runs under the instance's mutex. Listener methods are
// called under it; they only queue.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "core/TopicIndex.h"
#include "core/WireMessage.h"
#include "embedded/ClientConnection.h"

namespace zorvane::zorclient {

class DirectRouter {
  public:
    // What a queued delivery counts against its receiver's egress besides its content: the
    // header, as it would take room in a socket buffer.
    static constexpr std::int64_t MESSAGE_OVERHEAD = 64;

    // A connection joins: its inbox becomes routable. Throws std::bad_alloc.
    void attach(ClientConnection& connection);
    // A connection leaves with all its subscriptions; queued deliveries stay queued.
    void detach(ClientConnection& connection) noexcept;
    // The connection's inbox becomes inboxTopic (a rename). Throws std::bad_alloc (nothing is
    // then changed).
    void moveInbox(ClientConnection& connection, const std::string& inboxTopic);

    // Adds topic (a valid subscription) to connection; an existing one stays as it is. Throws
    // std::bad_alloc (nothing is then changed).
    void subscribe(ClientConnection& connection, std::string_view topic, bool deliverAlways);
    // Removes topic from connection; true when it was there.
    bool unsubscribe(ClientConnection& connection, std::string_view topic) noexcept;

    // Routes wire (a direct message to the topic wire.destination()) published by sender, and
    // takes over the caller's one reference on it (also when it throws): the caller must not
    // touch wire afterwards. Throws std::bad_alloc only when a topic is published for the first
    // time and memory runs out.
    void route(ClientConnection& sender, WireMessage& wire, PublishResult* result_p);

  private:
    // One subscription in the index; consumerId 0 is a connection's inbox.
    struct Match {
        ClientConnection* connection_p;
        std::uint32_t consumerId;
        bool deliverAlways;
        bool operator==(const Match&) const = default;
    };
    // One matching connection of a published topic.
    struct Target {
        ClientConnection* connection_p;
        std::uint32_t firstId;  // into TopicState::ids
        std::uint32_t idCount;
        bool inbox;
        bool deliverAlways;
    };
    struct TopicState {
        std::int64_t lastSequence = 0;
        std::uint64_t generation = ~std::uint64_t{0};  // of targets; never current at first
        std::uint64_t turn = 0;                        // deliver-to-one rotation
        std::vector<Target> targets;
        std::vector<std::uint32_t> ids;
    };

    void refresh(TopicState& state, std::string_view topic);
    // Queues one delivery, handing it one of the references route() gave wire; a dropped
    // delivery (false) gives its reference back. wire may be gone once this returns.
    bool deliver(ClientConnection& receiver, WireMessage& wire, const Target& target,
                 const TopicState& state, std::int64_t sequence);
    // The one target a deliver-to-one message goes to besides the deliver-always ones; null when
    // none may receive it.
    const Target* chooseOne(TopicState& state, const ClientConnection& sender) const noexcept;

    TopicIndex<Match> index_m;
    std::unordered_map<std::string, TopicState, TopicTextHash, TopicTextEqual> topics_m;
    std::uint64_t generation_m = 0;  // changes with every subscription change
    std::vector<Match> scratch_m;
    std::vector<const Target*> chosen_m;  // receivers of the message being routed
};

}  // namespace zorvane::zorclient
