// Subscriptions by topic, for finding those a published topic matches (see TopicSyntax for the
// wildcards). Each subscription is a (subscription text, Value) pair; the same text may carry
// several values and the same value several texts.
//
// Subscriptions without wildcards sit in a hash table under their text, so that the common
// case costs one lookup. Wildcard subscriptions sit in a trie of levels: a node has children
// for exact levels (hashed), for level prefixes ("ab*"; "*" is the empty prefix), the values of
// subscriptions that end at it, and those that end there with ">". A match walks only the
// branches the topic's levels can take.
//
// Value: copyable, equality-comparable. Subscription texts must be valid (TopicSyntax).
// Not thread-safe; the owner guards it.
#pragma once

#include <algorithm>
#include <cstddef>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

#include "core/TopicSyntax.h"

namespace zorvane::zorclient {

// Hash and equality that let a std::string keyed table be searched with a string_view.
struct TopicTextHash {
    using is_transparent = void;
    std::size_t operator()(std::string_view text) const noexcept {
        return std::hash<std::string_view>{}(text);
    }
};
struct TopicTextEqual {
    using is_transparent = void;
    bool operator()(std::string_view a, std::string_view b) const noexcept { return a == b; }
};

template <typename Value>
class TopicIndex {
  public:
    // Adds the pair. Throws std::bad_alloc (the index is then unchanged).
    void add(std::string_view subscription, const Value& value) {
        if (!TopicSyntax::hasWildcard(subscription)) {
            auto it = exact_m.find(subscription);
            if (it == exact_m.end()) {
                it = exact_m.emplace(std::string(subscription), std::vector<Value>()).first;
            }
            try {
                it->second.push_back(value);
            } catch (...) {
                if (it->second.empty()) {
                    exact_m.erase(it);
                }
                throw;
            }
            ++size_m;
            return;
        }
        Node* node_p = &root_m;
        std::string_view rest = subscription;
        bool last = false;
        // Nodes made here are left empty when a later step throws; remove() prunes such
        // chains, and an empty node matches nothing.
        while (!last) {
            const std::string_view level = TopicSyntax::firstLevel(rest, &rest, &last);
            if (last && level == ">") {
                node_p->rest.push_back(value);
                ++size_m;
                return;
            }
            node_p = node_p->child(level, true);
        }
        node_p->here.push_back(value);
        ++size_m;
    }

    // Removes one pair; false when it is not there.
    bool remove(std::string_view subscription, const Value& value) noexcept {
        if (!TopicSyntax::hasWildcard(subscription)) {
            auto it = exact_m.find(subscription);
            if (it == exact_m.end() || !erase(it->second, value)) {
                return false;
            }
            if (it->second.empty()) {
                exact_m.erase(it);
            }
            --size_m;
            return true;
        }
        if (!removeBelow(root_m, subscription, value)) {
            return false;
        }
        --size_m;
        return true;
    }

    // Calls visit(value) once for every pair whose subscription matches topic (a published
    // topic). A value added under two matching subscriptions is visited twice.
    template <typename Visitor>
    void match(std::string_view topic, Visitor&& visit) const {
        if (auto it = exact_m.find(topic); it != exact_m.end()) {
            for (const Value& value : it->second) {
                visit(value);
            }
        }
        if (!root_m.isEmpty()) {
            walk(root_m, topic, visit);
        }
    }

    std::size_t size() const noexcept { return size_m; }
    bool empty() const noexcept { return size_m == 0; }

  private:
    struct Node {
        std::unordered_map<std::string, std::unique_ptr<Node>, TopicTextHash, TopicTextEqual> exact;
        // Level prefixes ("ab*" -> "ab", "*" -> ""), few per node.
        std::vector<std::pair<std::string, std::unique_ptr<Node>>> prefixed;
        std::vector<Value> here;  // subscriptions that end at this node
        std::vector<Value> rest;  // subscriptions that end here with ">"

        bool isEmpty() const noexcept {
            return exact.empty() && prefixed.empty() && here.empty() && rest.empty();
        }

        // The child for a subscription level; made when create is set, else null if absent.
        Node* child(std::string_view level, bool create) {
            if (!level.empty() && level.back() == '*') {
                const std::string_view prefix = level.substr(0, level.size() - 1);
                for (auto& [text, node_p] : prefixed) {
                    if (text == prefix) {
                        return node_p.get();
                    }
                }
                if (!create) {
                    return nullptr;
                }
                prefixed.emplace_back(std::string(prefix), std::make_unique<Node>());
                return prefixed.back().second.get();
            }
            auto it = exact.find(level);
            if (it != exact.end()) {
                return it->second.get();
            }
            if (!create) {
                return nullptr;
            }
            return exact.emplace(std::string(level), std::make_unique<Node>()).first->second.get();
        }

        // Drops the child for level if it has become empty.
        void pruneChild(std::string_view level) noexcept {
            if (!level.empty() && level.back() == '*') {
                const std::string_view prefix = level.substr(0, level.size() - 1);
                auto it = std::find_if(prefixed.begin(), prefixed.end(),
                                       [&](const auto& entry) { return entry.first == prefix; });
                if (it != prefixed.end() && it->second->isEmpty()) {
                    prefixed.erase(it);
                }
                return;
            }
            auto it = exact.find(level);
            if (it != exact.end() && it->second->isEmpty()) {
                exact.erase(it);
            }
        }
    };

    static bool erase(std::vector<Value>& values, const Value& value) noexcept {
        auto it = std::find(values.begin(), values.end(), value);
        if (it == values.end()) {
            return false;
        }
        values.erase(it);
        return true;
    }

    static bool removeBelow(Node& node, std::string_view subscription, const Value& value) {
        std::string_view rest;
        bool last = false;
        const std::string_view level = TopicSyntax::firstLevel(subscription, &rest, &last);
        if (last && level == ">") {
            return erase(node.rest, value);
        }
        Node* child_p = nullptr;
        try {
            child_p = node.child(level, false);
        } catch (...) {  // not reached: child() allocates only when asked to create
            return false;
        }
        if (child_p == nullptr) {
            return false;
        }
        const bool removed =
            last ? erase(child_p->here, value) : removeBelow(*child_p, rest, value);
        if (removed) {
            node.pruneChild(level);
        }
        return removed;
    }

    template <typename Visitor>
    static void walk(const Node& node, std::string_view topic, Visitor& visit) {
        // One or more levels remain: every ">" here matches.
        for (const Value& value : node.rest) {
            visit(value);
        }
        std::string_view rest;
        bool last = false;
        const std::string_view level = TopicSyntax::firstLevel(topic, &rest, &last);
        auto step = [&](const Node& child) {
            if (last) {
                for (const Value& value : child.here) {
                    visit(value);
                }
            } else if (!child.isEmpty()) {
                walk(child, rest, visit);
            }
        };
        if (!node.exact.empty()) {
            if (auto it = node.exact.find(level); it != node.exact.end()) {
                step(*it->second);
            }
        }
        for (const auto& [prefix, child_p] : node.prefixed) {
            if (level.substr(0, prefix.size()) == prefix) {
                step(*child_p);
            }
        }
    }

    std::unordered_map<std::string, std::vector<Value>, TopicTextHash, TopicTextEqual> exact_m;
    Node root_m;
    std::size_t size_m = 0;
};

}  // namespace zorvane::zorclient
