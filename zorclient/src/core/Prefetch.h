// Asking the processor for cache lines ahead of their use. The broker's objects are written on
// one thread and read on another, so their lines keep moving between processors; fetching the
// next object's lines while the current one is handled hides part of that wait. Hints only: they
// change no memory and fault on no address.
#pragma once

#include <cstddef>

namespace zorvane::zorclient {

constexpr std::size_t CACHE_LINE = 64;

// The lines of [p, p + size) for writing: this processor takes them over (from another
// processor's cache) before the first store.
inline void prefetchForWrite(const void* p, std::size_t size) noexcept {
    const char* at_p = static_cast<const char*>(p);
    for (std::size_t offset = 0; offset < size; offset += CACHE_LINE) {
#if defined(__x86_64__)
        // PREFETCHW is a no-op hint on processors without it.
        asm volatile("prefetchw %0" : : "m"(at_p[offset]));
#else
        __builtin_prefetch(at_p + offset, 1, 3);
#endif
    }
}

// The lines of [p, p + size) for reading.
inline void prefetchForRead(const void* p, std::size_t size) noexcept {
    const char* at_p = static_cast<const char*>(p);
    for (std::size_t offset = 0; offset < size; offset += CACHE_LINE) {
        __builtin_prefetch(at_p + offset, 0, 3);
    }
}

}  // namespace zorvane::zorclient
