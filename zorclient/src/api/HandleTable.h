// The opaque handles that the application holds for library objects. A handle is not a pointer
// but a slot number with a generation, so that a handle of a destroyed object is recognised as
// stale instead of being followed into freed memory, and so that a handle of one kind of object
// passed where another is expected is refused.
//
// Handle value: generation (bits 63..32), slot index (31..8), kind (7..0). Never zero.
//
// Threads: every member is thread-safe. acquire() and the Lease are lock-free and allocate
// nothing, so they are async-signal-safe (a signal handler may look a session up). A Lease keeps
// the object from being retired: retire() waits until every Lease of the object has ended, so
// an entry point that holds one may use the object for the whole call. A thread must not retire
// an object while it holds a Lease of it itself.
//
// Why not core/PoolHandleTable (the messages' and containers' table): contexts and sessions are
// shared by threads (one sends while another destroys), so a lookup must keep the object alive
// for the whole call, which the pool's lookup does not promise; they are few and long-lived, so
// the counted Lease per call and the lock on create and destroy cost nothing that matters; and
// they are heap objects with references held elsewhere, not slots reset and reused in place.
#pragma once

#include <atomic>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <mutex>
#include <thread>
#include <vector>

#include "core/RefCounted.h"

namespace zorvane::zorclient {

enum class HandleKind : std::uint8_t {
    Context = 1,
    Session = 2,
    Flow = 3,
    TransactedSession = 4,
    CacheSession = 5
};

inline HandleKind handleKindOf(const void* handle_p) noexcept {
    return static_cast<HandleKind>(reinterpret_cast<std::uintptr_t>(handle_p) & 0xFFu);
}

template <typename T>
class HandleTable {
    // Slot state word: generation (63..32), alive (31), number of Leases (30..0).
    static constexpr std::uint64_t ALIVE = 1ull << 31;
    static constexpr std::uint64_t REFS_MASK = ALIVE - 1;
    static constexpr unsigned CHUNK_BITS = 10;
    static constexpr std::size_t CHUNK_SIZE = std::size_t{1} << CHUNK_BITS;
    static constexpr std::size_t MAX_CHUNKS = std::size_t{1} << (24 - CHUNK_BITS);

    struct Slot {
        std::atomic<std::uint64_t> state{1ull << 32};
        T* object_mp = nullptr;  // one counted reference while the slot is in use
    };

  public:
    // The right to use an object for the duration of one call.
    class Lease {
      public:
        Lease() noexcept = default;
        Lease(Lease&& other) noexcept
            : slot_mp(std::exchange(other.slot_mp, nullptr)),
              object_mp(std::exchange(other.object_mp, nullptr)) {}
        Lease& operator=(Lease&&) = delete;
        ~Lease() {
            if (slot_mp != nullptr) {
                slot_mp->state.fetch_sub(1, std::memory_order_release);
            }
        }
        explicit operator bool() const noexcept { return object_mp != nullptr; }
        T* get() const noexcept { return object_mp; }
        T* operator->() const noexcept { return object_mp; }
        T& operator*() const noexcept { return *object_mp; }

      private:
        friend class HandleTable;
        Lease(Slot* slot_p, T* object_p) noexcept : slot_mp(slot_p), object_mp(object_p) {}
        Slot* slot_mp = nullptr;
        T* object_mp = nullptr;
    };

    explicit constexpr HandleTable(HandleKind kind) noexcept : kind_m(kind) {}
    HandleTable(const HandleTable&) = delete;
    HandleTable& operator=(const HandleTable&) = delete;
    // Slots and the objects still in them are left to the end of the process on purpose: at
    // exit other static objects that they might reach may already be gone.
    ~HandleTable() = default;

    // Enters object and returns its new handle. Throws std::bad_alloc when memory or slots run
    // out.
    void* insert(const Ref<T>& object) {
        std::lock_guard<std::mutex> lock(mutex_m);
        std::size_t index = 0;
        if (!freeSlots_m.empty()) {
            index = freeSlots_m.back();
            freeSlots_m.pop_back();
        } else {
            if (used_m == CHUNK_SIZE * MAX_CHUNKS) {
                throw std::bad_alloc();
            }
            index = used_m;
            if (index % CHUNK_SIZE == 0) {
                chunks_m[index / CHUNK_SIZE].store(new Slot[CHUNK_SIZE], std::memory_order_release);
            }
            ++used_m;
        }
        Slot& slot = slotAt(index);
        object->retain();
        slot.object_mp = object.get();
        std::uint64_t generation = slot.state.load(std::memory_order_relaxed) >> 32;
        slot.state.store((generation << 32) | ALIVE, std::memory_order_release);
        return reinterpret_cast<void*>(static_cast<std::uintptr_t>(
            (generation << 32) | (static_cast<std::uint64_t>(index) << 8) |
            static_cast<std::uint64_t>(kind_m)));
    }

    // The object of handle_p, or an empty Lease for a null, stale or foreign handle.
    // Lock-free; async-signal-safe.
    Lease acquire(const void* handle_p) noexcept {
        Slot* slot_p = find(handle_p);
        if (slot_p == nullptr) {
            return Lease();
        }
        const std::uint64_t generation = reinterpret_cast<std::uintptr_t>(handle_p) >> 32;
        std::uint64_t state = slot_p->state.load(std::memory_order_acquire);
        for (;;) {
            if ((state >> 32) != generation || (state & ALIVE) == 0 ||
                (state & REFS_MASK) == REFS_MASK) {
                return Lease();
            }
            if (slot_p->state.compare_exchange_weak(state, state + 1, std::memory_order_acquire,
                                                    std::memory_order_acquire)) {
                return Lease(slot_p, slot_p->object_mp);
            }
        }
    }

    // Takes the object out of the table: from now on its handle is stale. Waits until the Leases
    // taken before have ended, then returns the table's reference. Empty for a null, stale or
    // foreign handle, and for a handle another thread is retiring at the same time.
    Ref<T> retire(const void* handle_p) {
        Slot* slot_p = find(handle_p);
        if (slot_p == nullptr) {
            return Ref<T>();
        }
        const std::uint64_t generation = reinterpret_cast<std::uintptr_t>(handle_p) >> 32;
        std::uint64_t state = slot_p->state.load(std::memory_order_acquire);
        do {
            if ((state >> 32) != generation || (state & ALIVE) == 0) {
                return Ref<T>();
            }
        } while (
            !slot_p->state.compare_exchange_weak(state, state & ~ALIVE, std::memory_order_acq_rel));
        // Calls in progress are short (no entry point waits for long while it holds a Lease),
        // so polling costs less than a wake-up protocol on every Lease.
        for (unsigned round = 0; (slot_p->state.load(std::memory_order_acquire) & REFS_MASK) != 0;
             ++round) {
            if (round < 64) {
                std::this_thread::yield();
            } else {
                std::this_thread::sleep_for(std::chrono::microseconds(100));
            }
        }
        std::lock_guard<std::mutex> lock(mutex_m);
        Ref<T> object(slot_p->object_mp);
        slot_p->object_mp->release();  // the table's own count, now held by object
        slot_p->object_mp = nullptr;
        slot_p->state.store((generation + 1) << 32, std::memory_order_release);
        freeSlots_m.push_back(static_cast<std::size_t>(
            (reinterpret_cast<std::uintptr_t>(handle_p) >> 8) & 0xFFFFFFu));
        return object;
    }

  private:
    Slot& slotAt(std::size_t index) noexcept {
        return chunks_m[index / CHUNK_SIZE].load(std::memory_order_acquire)[index % CHUNK_SIZE];
    }

    Slot* find(const void* handle_p) const noexcept {
        const std::uintptr_t value = reinterpret_cast<std::uintptr_t>(handle_p);
        if (handle_p == nullptr || handleKindOf(handle_p) != kind_m) {
            return nullptr;
        }
        const std::size_t index = (value >> 8) & 0xFFFFFFu;
        Slot* chunk_p = chunks_m[index / CHUNK_SIZE].load(std::memory_order_acquire);
        return chunk_p != nullptr ? &chunk_p[index % CHUNK_SIZE] : nullptr;
    }

    const HandleKind kind_m;
    std::atomic<Slot*> chunks_m[MAX_CHUNKS] = {};
    std::mutex mutex_m;  // insert and the end of retire
    std::vector<std::size_t> freeSlots_m;
    std::size_t used_m = 0;
};

}  // namespace zorvane::zorclient
