#include "embedded/DirectRouter.h"

#include <algorithm>
#include <new>
#include <string>

namespace zorvane::zorclient {

void DirectRouter::attach(ClientConnection& connection) {
    connection.lastTopic_m.reserve(TopicSyntax::MAX_SIZE);
    connection.subscriptions_m.clear();
    connection.nextConsumerId_m = 1;
    connection.discardPending_m = false;
    index_m.add(connection.inboxTopic_m, Match{&connection, 0, false});
    ++generation_m;
}

void DirectRouter::detach(ClientConnection& connection) noexcept {
    index_m.remove(connection.inboxTopic_m, Match{&connection, 0, false});
    for (const auto& [topic, subscription] : connection.subscriptions_m) {
        index_m.remove(topic,
                       Match{&connection, subscription.consumerId, subscription.deliverAlways});
    }
    connection.subscriptions_m.clear();
    ++generation_m;
}

void DirectRouter::moveInbox(ClientConnection& connection, const std::string& inboxTopic) {
    std::string moved = inboxTopic;
    index_m.add(moved, Match{&connection, 0, false});
    index_m.remove(connection.inboxTopic_m, Match{&connection, 0, false});
    connection.inboxTopic_m.swap(moved);
    ++generation_m;
}

void DirectRouter::subscribe(ClientConnection& connection, std::string_view topic,
                             bool deliverAlways) {
    auto [entry, added] = connection.subscriptions_m.try_emplace(
        std::string(topic), DirectSubscription{connection.nextConsumerId_m, deliverAlways});
    if (!added) {
        return;
    }
    try {
        index_m.add(topic, Match{&connection, entry->second.consumerId, deliverAlways});
    } catch (...) {
        connection.subscriptions_m.erase(entry);
        throw;
    }
    ++connection.nextConsumerId_m;
    ++generation_m;
}

bool DirectRouter::unsubscribe(ClientConnection& connection, std::string_view topic) noexcept {
    auto entry = connection.subscriptions_m.find(topic);
    if (entry == connection.subscriptions_m.end()) {
        return false;
    }
    index_m.remove(topic,
                   Match{&connection, entry->second.consumerId, entry->second.deliverAlways});
    connection.subscriptions_m.erase(entry);
    ++generation_m;
    return true;
}

void DirectRouter::refresh(TopicState& state, std::string_view topic) {
    scratch_m.clear();
    index_m.match(topic, [this](const Match& match) { scratch_m.push_back(match); });
    // By connection (in the order they connected, so that deliver-to-one turns are fair and
    // repeatable), then consumer id: each connection's ids come out ascending.
    std::sort(scratch_m.begin(), scratch_m.end(), [](const Match& a, const Match& b) {
        return a.connection_p->id_m != b.connection_p->id_m
                   ? a.connection_p->id_m < b.connection_p->id_m
                   : a.consumerId < b.consumerId;
    });
    state.targets.clear();
    state.ids.clear();
    for (const Match& match : scratch_m) {
        if (state.targets.empty() || state.targets.back().connection_p != match.connection_p) {
            state.targets.push_back(Target{
                match.connection_p, static_cast<std::uint32_t>(state.ids.size()), 0, false, false});
        }
        Target& target = state.targets.back();
        if (match.consumerId == 0) {
            target.inbox = true;
        } else if (target.idCount == 0 || state.ids.back() != match.consumerId) {
            state.ids.push_back(match.consumerId);
            ++target.idCount;
        }
        target.deliverAlways = target.deliverAlways || match.deliverAlways;
    }
    state.generation = generation_m;
}

const DirectRouter::Target* DirectRouter::chooseOne(TopicState& state,
                                                    const ClientConnection& sender) const noexcept {
    std::int64_t best = INT64_MIN;
    std::size_t tied = 0;
    for (const Target& target : state.targets) {
        if (target.connection_p == &sender && sender.settings_m.noLocal) {
            continue;
        }
        const std::int64_t priority = target.connection_p->settings_m.localPriority;
        if (priority > best) {
            best = priority;
            tied = 1;
        } else if (priority == best) {
            ++tied;
        }
    }
    if (tied == 0) {
        return nullptr;
    }
    std::size_t pick = static_cast<std::size_t>(state.turn++ % tied);
    for (const Target& target : state.targets) {
        if ((target.connection_p == &sender && sender.settings_m.noLocal) ||
            target.connection_p->settings_m.localPriority != best) {
            continue;
        }
        if (pick-- == 0) {
            return &target;
        }
    }
    return nullptr;
}

bool DirectRouter::deliver(ClientConnection& receiver, WireMessage& wire, const Target& target,
                           const TopicState& state, std::int64_t sequence) {
    DeliveryEnvelope::Direct info;
    info.topicSequenceNumber = sequence;
    info.consumerIds_p = state.ids.data() + target.firstId;
    info.consumerIdCount = target.idCount;
    const CarriedHeader& header = wire.header();
    if (target.inbox && header.isReply && header.requestCorrelation != 0) {
        // A reply to a request: it ends a wait rather than queueing for the receive callback.
        const std::uint64_t correlation = header.requestCorrelation;
        MessagePayload payload{};
        try {
            payload = DeliveryEnvelope::make(&wire, info, nullptr, 0);
        } catch (const std::bad_alloc&) {
            wire.release();
            return false;
        }
        if (!receiver.listener_m.onReply(correlation, payload)) {
            payload.release();
        }
        return true;
    }
    const std::int64_t size = static_cast<std::int64_t>(wire.contentSize()) + MESSAGE_OVERHEAD;
    if (!receiver.egress_m.admits(size, receiver.settings_m.egressLimitBytes)) {
        receiver.discardPending_m = true;
        wire.release();
        return false;
    }
    info.discardIndication = receiver.discardPending_m;
    MessagePayload payload{};
    try {
        payload = DeliveryEnvelope::make(&wire, info, &receiver.egress_m, size);
    } catch (const std::bad_alloc&) {
        receiver.discardPending_m = true;
        wire.release();
        return false;
    }
    if (!receiver.listener_m.onDelivery(nullptr, payload)) {
        payload.release();
        receiver.discardPending_m = true;
        return false;
    }
    if (receiver.discardPending_m) {  // written only when it changes: the line is shared
        receiver.discardPending_m = false;
    }
    return true;
}

void DirectRouter::route(ClientConnection& sender, WireMessage& wire, PublishResult* result_p) {
    const std::string_view topic = wire.destinationView();
    TopicState* state_p = static_cast<TopicState*>(sender.lastTopicState_mp);
    try {
        if (state_p == nullptr || sender.lastTopic_m != topic) {
            auto it = topics_m.find(topic);
            if (it == topics_m.end()) {
                it = topics_m.emplace(std::string(topic), TopicState()).first;
            }
            // States are never removed and the table's nodes do not move, so the pointer stays
            // good.
            state_p = &it->second;
            sender.lastTopic_m.assign(topic);
            sender.lastTopicState_mp = state_p;
        }
        if (state_p->generation != generation_m) {
            refresh(*state_p, topic);
        }
    } catch (...) {
        wire.release();
        throw;
    }
    TopicState& state = *state_p;
    const std::int64_t sequence =
        wire.header().senderTopicSequenceNumber != 0 ? 0 : ++state.lastSequence;
    // The receivers first, then one reference on the copy for each, handed over with its
    // delivery: the sender keeps none, so that it never touches the copy's count again after
    // the receivers have started on it.
    chosen_m.clear();
    auto local = [&](const Target& target) {
        return target.connection_p == &sender && sender.settings_m.noLocal;
    };
    if (wire.header().deliverToOne) {
        const Target* one_p = chooseOne(state, sender);
        for (const Target& target : state.targets) {
            if (&target == one_p || (target.deliverAlways && !local(target))) {
                chosen_m.push_back(&target);
            }
        }
    } else {
        for (const Target& target : state.targets) {
            if (!local(target)) {
                chosen_m.push_back(&target);
            }
        }
    }
    if (result_p != nullptr) {
        result_p->bytes = wire.contentSize();
        result_p->noMatch = chosen_m.empty();
    }
    if (chosen_m.empty()) {
        wire.release();
        return;
    }
    wire.shareAmong(static_cast<std::uint32_t>(chosen_m.size()));
    for (const Target* target_p : chosen_m) {
        deliver(*target_p->connection_p, wire, *target_p, state, sequence);
    }
}

}  // namespace zorvane::zorclient
