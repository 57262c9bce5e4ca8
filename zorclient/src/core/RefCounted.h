// Shared ownership for the objects that several threads reach at once (contexts, sessions, and
// later flows): the handle table, the event queue and the timers each hold a counted reference,
// so an object lives until the last of them lets go, whichever thread that is.
//
// The count is intrusive so that a reference fits in one pointer: an event slot stays small and
// taking or dropping a reference allocates nothing.
#pragma once

#include <atomic>
#include <cstdint>
#include <utility>

namespace zorvane::zorclient {

class RefCounted {
  public:
    RefCounted() = default;
    RefCounted(const RefCounted&) = delete;
    RefCounted& operator=(const RefCounted&) = delete;

    void retain() const noexcept { refs_m.fetch_add(1, std::memory_order_relaxed); }

    // Deletes the object when this was the last reference. Any thread.
    void release() const noexcept {
        if (refs_m.fetch_sub(1, std::memory_order_acq_rel) == 1) {
            delete this;
        }
    }

  protected:
    virtual ~RefCounted() = default;

  private:
    mutable std::atomic<std::int32_t> refs_m{0};
};

// A counted reference, like a shared pointer whose count lives in the object.
template <typename T>
class Ref {
  public:
    Ref() noexcept = default;
    explicit Ref(T* object_p) noexcept : object_mp(object_p) {
        if (object_mp != nullptr) {
            object_mp->retain();
        }
    }
    Ref(const Ref& other) noexcept : Ref(other.object_mp) {}
    Ref(Ref&& other) noexcept : object_mp(std::exchange(other.object_mp, nullptr)) {}
    template <typename U>
    Ref(const Ref<U>& other) noexcept : Ref(other.get()) {}
    ~Ref() { reset(); }

    Ref& operator=(Ref other) noexcept {
        std::swap(object_mp, other.object_mp);
        return *this;
    }

    void reset() noexcept {
        if (T* old_p = std::exchange(object_mp, nullptr)) {
            old_p->release();
        }
    }

    // Gives up the reference without releasing it: the caller now owns one count.
    T* detach() noexcept { return std::exchange(object_mp, nullptr); }

    T* get() const noexcept { return object_mp; }
    T* operator->() const noexcept { return object_mp; }
    T& operator*() const noexcept { return *object_mp; }
    explicit operator bool() const noexcept { return object_mp != nullptr; }

  private:
    T* object_mp = nullptr;
};

template <typename T, typename... Args>
Ref<T> makeRef(Args&&... args) {
    return Ref<T>(new T(std::forward<Args>(args)...));
}

}  // namespace zorvane::zorclient
