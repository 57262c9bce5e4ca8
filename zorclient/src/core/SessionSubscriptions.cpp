#include "core/SessionSubscriptions.h"

#include <algorithm>

namespace zorvane::zorclient {

bool SessionSubscriptions::Entry::atBroker() const noexcept {
    return plain || std::any_of(dispatch.begin(), dispatch.end(),
                                [](const DispatchEntry& entry) { return !entry.localOnly; });
}

SessionSubscriptions::Entries::iterator SessionSubscriptions::entryFor(
    std::string_view topic, zorClient_subscribeFlags_t flags, bool* created_p) {
    auto it = entries_m.find(topic);
    *created_p = it == entries_m.end();
    if (*created_p) {
        it = entries_m.emplace(std::string(topic), Entry()).first;
        it->second.order = nextOrder_m++;
        it->second.flags = flags;
    }
    return it;
}

void SessionSubscriptions::dropIfUnused(Entries::iterator entry) noexcept {
    if (!entry->second.plain && entry->second.dispatch.empty()) {
        entries_m.erase(entry);
    }
}

SessionSubscriptions::Record* SessionSubscriptions::recordFor(const DispatchTarget& target) {
    for (Record& record : records_m) {
        if (record.target == target) {
            return &record;
        }
    }
    records_m.push_back(Record{target, nextSerial_m++, 0});
    return &records_m.back();
}

SessionSubscriptions::Outcome SessionSubscriptions::addPlain(std::string_view topic,
                                                             zorClient_subscribeFlags_t flags) {
    bool created = false;
    auto it = entryFor(topic, flags, &created);
    Entry& entry = it->second;
    Outcome outcome;
    if (entry.plain) {
        outcome.alreadyThere = true;
        return outcome;
    }
    if (!entry.atBroker()) {
        // The first holder at the broker decides the flags the broker subscription has.
        entry.flags = flags;
        outcome.broker = BrokerChange::ADD;
        outcome.brokerFlags = flags;
    }
    entry.plain = true;
    return outcome;
}

SessionSubscriptions::Outcome SessionSubscriptions::removePlain(std::string_view topic) {
    Outcome outcome;
    auto it = entries_m.find(topic);
    if (it == entries_m.end() || !it->second.plain) {
        outcome.alreadyThere = true;
        return outcome;
    }
    it->second.plain = false;
    if (!it->second.atBroker()) {
        outcome.broker = BrokerChange::REMOVE;
    }
    dropIfUnused(it);
    return outcome;
}

SessionSubscriptions::Outcome SessionSubscriptions::addDispatch(std::string_view topic,
                                                                zorClient_subscribeFlags_t flags,
                                                                const DispatchTarget& target,
                                                                bool localOnly) {
    bool created = false;
    auto it = entryFor(topic, flags, &created);
    Entry& entry = it->second;
    Outcome outcome;
    for (const DispatchEntry& existing : entry.dispatch) {
        if (existing.record_p->target == target) {
            outcome.alreadyThere = true;
            return outcome;
        }
    }
    const bool wasAtBroker = entry.atBroker();
    Record* record_p = nullptr;
    try {
        record_p = recordFor(target);
        entry.dispatch.reserve(entry.dispatch.size() + 1);
        dispatchIndex_m.add(topic, record_p);
    } catch (...) {
        if (record_p != nullptr && record_p->topics == 0) {
            records_m.remove_if([record_p](const Record& r) { return &r == record_p; });
        }
        dropIfUnused(it);
        throw;
    }
    ++record_p->topics;
    entry.dispatch.push_back(DispatchEntry{record_p, localOnly});
    if (!wasAtBroker && !localOnly) {
        entry.flags = flags;
        outcome.broker = BrokerChange::ADD;
        outcome.brokerFlags = flags;
    }
    return outcome;
}

SessionSubscriptions::Outcome SessionSubscriptions::removeDispatch(std::string_view topic,
                                                                   const DispatchTarget& target) {
    Outcome outcome;
    auto it = entries_m.find(topic);
    if (it == entries_m.end()) {
        outcome.alreadyThere = true;
        return outcome;
    }
    Entry& entry = it->second;
    auto found = std::find_if(entry.dispatch.begin(), entry.dispatch.end(),
                              [&](const DispatchEntry& e) { return e.record_p->target == target; });
    if (found == entry.dispatch.end()) {
        outcome.alreadyThere = true;
        return outcome;
    }
    Record* record_p = found->record_p;
    const bool wasAtBroker = entry.atBroker();
    entry.dispatch.erase(found);
    dispatchIndex_m.remove(topic, record_p);
    if (--record_p->topics == 0) {
        records_m.remove_if([record_p](const Record& r) { return &r == record_p; });
    }
    if (wasAtBroker && !entry.atBroker()) {
        outcome.broker = BrokerChange::REMOVE;
    }
    dropIfUnused(it);
    return outcome;
}

std::vector<std::pair<std::string, zorClient_subscribeFlags_t>> SessionSubscriptions::brokerTopics()
    const {
    std::vector<std::pair<const std::string*, const Entry*>> held;
    for (const auto& [topic, entry] : entries_m) {
        if (entry.atBroker()) {
            held.emplace_back(&topic, &entry);
        }
    }
    std::sort(held.begin(), held.end(),
              [](const auto& a, const auto& b) { return a.second->order < b.second->order; });
    std::vector<std::pair<std::string, zorClient_subscribeFlags_t>> topics;
    topics.reserve(held.size());
    for (const auto& [topic_p, entry_p] : held) {
        topics.emplace_back(*topic_p, entry_p->flags);
    }
    return topics;
}

void SessionSubscriptions::forgetBroker() noexcept {
    for (auto it = entries_m.begin(); it != entries_m.end();) {
        Entry& entry = it->second;
        entry.plain = false;
        for (DispatchEntry& dispatch : entry.dispatch) {
            dispatch.localOnly = true;
        }
        if (entry.dispatch.empty()) {
            it = entries_m.erase(it);
        } else {
            ++it;
        }
    }
}

void SessionSubscriptions::matchDispatch(std::string_view topic,
                                         std::vector<DispatchTarget>* out_p) const {
    out_p->clear();
    if (dispatchIndex_m.empty()) {
        return;
    }
    // Few records match one message; a sorted insert keeps them distinct and oldest first.
    thread_local std::vector<const Record*> found_s;
    found_s.clear();
    dispatchIndex_m.match(topic, [](Record* record_p) {
        auto at = std::lower_bound(
            found_s.begin(), found_s.end(), record_p,
            [](const Record* a, const Record* b) { return a->serial < b->serial; });
        if (at == found_s.end() || *at != record_p) {
            found_s.insert(at, record_p);
        }
    });
    for (const Record* record_p : found_s) {
        out_p->push_back(record_p->target);
    }
}

}  // namespace zorvane::zorclient
