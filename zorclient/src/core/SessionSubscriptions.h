// The direct topic subscriptions of one session as the session itself keeps them: what the
// broker must hold for it (and hold again after a reconnect), and the dispatch entries that
// send matching messages to a callback of their own instead of the session's receive callback.
//
// A topic is held at the broker while it has a plain subscription (topicSubscribeExt) or at
// least one dispatch entry that is not local-only; the last of them going removes it there.
// Dispatch entries are grouped in records by (callback, user pointer): two topics with the same
// callback and user pointer share one record, so a message matching both reaches the callback
// once. Local-only entries (ZORCLIENT_SUBSCRIBE_FLAGS_LOCAL_DISPATCH_ONLY) only steer messages
// that other subscriptions bring in.
//
// Not thread-safe: Session guards it with a mutex of its own.
#pragma once

#include <cstddef>
#include <cstdint>
#include <list>
#include <map>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

#include "core/TopicIndex.h"
#include "zorClient.h"

namespace zorvane::zorclient {

class SessionSubscriptions {
  public:
    struct DispatchTarget {
        zorClient_session_rxMsgCallbackFunc_t callback_p = nullptr;
        void* user_p = nullptr;
        bool operator==(const DispatchTarget&) const = default;
    };

    // What an add or remove means for the broker.
    enum class BrokerChange { NONE, ADD, REMOVE };
    struct Outcome {
        bool alreadyThere = false;  // add: it existed; remove: it was not there
        BrokerChange broker = BrokerChange::NONE;
        zorClient_subscribeFlags_t brokerFlags = 0;  // with ADD: the flags to subscribe with
    };

    // Plain subscriptions. Throw std::bad_alloc (nothing is then changed).
    Outcome addPlain(std::string_view topic, zorClient_subscribeFlags_t flags);
    Outcome removePlain(std::string_view topic);

    // Dispatch entries; localOnly: no broker subscription for this entry.
    Outcome addDispatch(std::string_view topic, zorClient_subscribeFlags_t flags,
                        const DispatchTarget& target, bool localOnly);
    Outcome removeDispatch(std::string_view topic, const DispatchTarget& target);

    // The topics the broker must hold, with their flags, in the order they were first added.
    std::vector<std::pair<std::string, zorClient_subscribeFlags_t>> brokerTopics() const;
    // The broker has forgotten the session's subscriptions and they are not to be applied
    // again: plain subscriptions go; dispatch entries stay, steering what arrives later.
    void forgetBroker() noexcept;

    std::size_t dispatchEntries() const noexcept { return dispatchIndex_m.size(); }
    // The records whose topics match published topic, each once, oldest first, into *out_p
    // (cleared first).
    void matchDispatch(std::string_view topic, std::vector<DispatchTarget>* out_p) const;

  private:
    struct Record {
        DispatchTarget target;
        std::uint64_t serial = 0;
        std::size_t topics = 0;
    };
    struct DispatchEntry {
        Record* record_p;
        bool localOnly;
    };
    struct Entry {
        std::uint64_t order = 0;
        zorClient_subscribeFlags_t flags = 0;
        bool plain = false;
        std::vector<DispatchEntry> dispatch;

        bool atBroker() const noexcept;
    };

    using Entries = std::unordered_map<std::string, Entry, TopicTextHash, TopicTextEqual>;

    Entries::iterator entryFor(std::string_view topic, zorClient_subscribeFlags_t flags,
                               bool* created_p);
    // Drops entry when nothing holds it any more.
    void dropIfUnused(Entries::iterator entry) noexcept;
    Record* recordFor(const DispatchTarget& target);

    Entries entries_m;
    std::uint64_t nextOrder_m = 0;
    std::list<Record> records_m;  // stable addresses for the index
    std::uint64_t nextSerial_m = 0;
    TopicIndex<Record*> dispatchIndex_m;
};

}  // namespace zorvane::zorclient
