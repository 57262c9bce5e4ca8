// The 40 receive and 28 transmit counters of a session.
//
// Counters only grow. A reset does not write them (that would race with the threads that
// count) but records a baseline that reads subtract, so a clear is never lost to a concurrent
// increment. Receive counters are written by the context thread and the broker, transmit
// counters by the sending threads; each group sits on cache lines of its own so that the two
// kinds of writers do not slow each other down.
//
// The data totals (ZORCLIENT_STATS_RX_TOTAL_DATA_MSGS and _BYTES, the same for TX) are not counted
// but read as the sums of their direct, persistent and non-persistent counters: each message then
// costs two locked additions on each side instead of four.
//
// Threads: all members, any thread; relaxed atomics (the counters are statistics, not
// synchronisation).
#pragma once

#include <array>
#include <atomic>
#include <cstdint>

#include "zorClient.h"

namespace zorvane::zorclient {

class SessionStats {
  public:
    void addRx(zorClient_stats_rx id, std::uint64_t amount = 1) noexcept {
        rx_m.counters[id].fetch_add(amount, std::memory_order_relaxed);
    }
    // For the counters that only the thread running the session's callbacks writes (one
    // thread at a time, as a context runs them): the data counters of received messages. A
    // plain load and store, no locked instruction on the receive path; readers on other threads
    // still see whole values.
    void addRxFromDispatch(zorClient_stats_rx id, std::uint64_t amount = 1) noexcept {
        std::atomic<std::uint64_t>& counter = rx_m.counters[id];
        counter.store(counter.load(std::memory_order_relaxed) + amount, std::memory_order_relaxed);
    }
    void addTx(zorClient_stats_tx id, std::uint64_t amount = 1) noexcept {
        tx_m.counters[id].fetch_add(amount, std::memory_order_relaxed);
    }

    // Ids must be below ZORCLIENT_STATS_RX_NUM_STATS / ZORCLIENT_STATS_TX_NUM_STATS.
    std::uint64_t rx(zorClient_stats_rx id) const noexcept {
        return rx_m.readOrSum(id, ZORCLIENT_STATS_RX_TOTAL_DATA_MSGS,
                              {ZORCLIENT_STATS_RX_DIRECT_MSGS, ZORCLIENT_STATS_RX_PERSISTENT_MSGS,
                               ZORCLIENT_STATS_RX_NONPERSISTENT_MSGS},
                              ZORCLIENT_STATS_RX_TOTAL_DATA_BYTES,
                              {ZORCLIENT_STATS_RX_DIRECT_BYTES, ZORCLIENT_STATS_RX_PERSISTENT_BYTES,
                               ZORCLIENT_STATS_RX_NONPERSISTENT_BYTES});
    }
    std::uint64_t tx(zorClient_stats_tx id) const noexcept {
        return tx_m.readOrSum(id, ZORCLIENT_STATS_TX_TOTAL_DATA_MSGS,
                              {ZORCLIENT_STATS_TX_DIRECT_MSGS, ZORCLIENT_STATS_TX_PERSISTENT_MSGS,
                               ZORCLIENT_STATS_TX_NONPERSISTENT_MSGS},
                              ZORCLIENT_STATS_TX_TOTAL_DATA_BYTES,
                              {ZORCLIENT_STATS_TX_DIRECT_BYTES, ZORCLIENT_STATS_TX_PERSISTENT_BYTES,
                               ZORCLIENT_STATS_TX_NONPERSISTENT_BYTES});
    }

    // Adds the receive counters of a destroyed flow, so that what it counted stays visible (its
    // totals come with the counters they are the sums of).
    void foldRx(
        const std::array<std::uint64_t, ZORCLIENT_STATS_RX_NUM_STATS>& flowCounters) noexcept;

    void clear() noexcept;

  private:
    template <std::size_t N>
    struct alignas(64) Group {
        std::array<std::atomic<std::uint64_t>, N> counters{};
        std::array<std::atomic<std::uint64_t>, N> baselines{};

        std::uint64_t read(std::size_t id) const noexcept {
            return counters[id].load(std::memory_order_relaxed) -
                   baselines[id].load(std::memory_order_relaxed);
        }
        // A counter, or for one of the two totals the sum of the counters it is made of.
        template <typename Id>
        std::uint64_t readOrSum(Id id, Id totalMsgs, const std::array<Id, 3>& msgs, Id totalBytes,
                                const std::array<Id, 3>& bytes) const noexcept {
            if (id != totalMsgs && id != totalBytes) {
                return read(id);
            }
            std::uint64_t sum = 0;
            for (Id part : id == totalMsgs ? msgs : bytes) {
                sum += read(part);
            }
            return sum;
        }
        void clear() noexcept {
            for (std::size_t id = 0; id < N; ++id) {
                baselines[id].store(counters[id].load(std::memory_order_relaxed),
                                    std::memory_order_relaxed);
            }
        }
    };

    Group<ZORCLIENT_STATS_RX_NUM_STATS> rx_m;
    Group<ZORCLIENT_STATS_TX_NUM_STATS> tx_m;
};

}  // namespace zorvane::zorclient
