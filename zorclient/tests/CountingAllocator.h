// Counting replacements of the global allocation functions, for the tests
// that prove a hot path allocates nothing: the library's, and the tool's on
// top of it.
//
// Include this header in exactly one source file of a test program: it
// defines the replaceable operator new and delete forms (which must not be
// inline), and every allocation of the program, the library loaded into it
// included, goes through them. Memory comes from malloc and goes back to
// free as before; only the counting is added.
//
// Counting is armed by an AllocationCount and disarmed when the last one
// ends, so that what the test does around the measured part (setting up,
// reporting) costs nothing and disturbs no count. An AllocationCount counts
// the allocations of every thread, or of the thread that made it only; a
// per-thread count is read on that thread.
#pragma once

#include <atomic>
#include <cstddef>
#include <cstdlib>
#include <new>

namespace zctest {

namespace counting_allocator_detail {
inline std::atomic<int> armed_s{0};
inline std::atomic<long> allAllocations_s{0};
inline thread_local long threadAllocations_s = 0;

inline void count() noexcept {
    if (armed_s.load(std::memory_order_relaxed) > 0) {
        allAllocations_s.fetch_add(1, std::memory_order_relaxed);
        ++threadAllocations_s;
    }
}

inline void* allocate(std::size_t size) {
    count();
    if (void* p = std::malloc(size == 0 ? 1 : size)) {
        return p;
    }
    throw std::bad_alloc();
}

inline void* allocateAligned(std::size_t size, std::align_val_t alignment) {
    count();
    const auto align = static_cast<std::size_t>(alignment);
    // aligned_alloc wants a size that is a multiple of the alignment.
    const std::size_t rounded = (size == 0 ? align : (size + align - 1) / align * align);
    if (void* p = std::aligned_alloc(align, rounded)) {
        return p;
    }
    throw std::bad_alloc();
}
}  // namespace counting_allocator_detail

// Counted allocations since the start of the program, while armed.
inline long countedAllocations() {
    return counting_allocator_detail::allAllocations_s.load(std::memory_order_relaxed);
}
// The same for the calling thread.
inline long countedThreadAllocations() {
    return counting_allocator_detail::threadAllocations_s;
}

// Arms the counting while it lives and tells how many allocations were made
// since it was made: by all threads, or by the thread that made it.
class AllocationCount {
  public:
    enum Scope { ALL_THREADS, THIS_THREAD };

    explicit AllocationCount(Scope scope = ALL_THREADS) : scope_m(scope) {
        counting_allocator_detail::armed_s.fetch_add(1, std::memory_order_relaxed);
        start_m = now();
    }
    ~AllocationCount() {
        counting_allocator_detail::armed_s.fetch_sub(1, std::memory_order_relaxed);
    }
    AllocationCount(const AllocationCount&) = delete;
    AllocationCount& operator=(const AllocationCount&) = delete;

    long allocations() const { return now() - start_m; }
    // Starts counting afresh, as a new count would.
    void restart() { start_m = now(); }

  private:
    long now() const {
        return scope_m == ALL_THREADS ? countedAllocations() : countedThreadAllocations();
    }

    Scope scope_m;
    long start_m = 0;
};

}  // namespace zctest

// The replacements come as a whole (new takes from malloc, every delete gives
// back to free); once they are inlined into the including program's code the
// compiler cannot see that, so the warning stays off for that program.
#pragma GCC diagnostic ignored "-Wmismatched-new-delete"

void* operator new(std::size_t size) {
    return zctest::counting_allocator_detail::allocate(size);
}
void* operator new[](std::size_t size) {
    return zctest::counting_allocator_detail::allocate(size);
}
void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
    try {
        return zctest::counting_allocator_detail::allocate(size);
    } catch (const std::bad_alloc&) {
        return nullptr;
    }
}
void* operator new[](std::size_t size, const std::nothrow_t&) noexcept {
    return operator new(size, std::nothrow);
}
void* operator new(std::size_t size, std::align_val_t alignment) {
    return zctest::counting_allocator_detail::allocateAligned(size, alignment);
}
void* operator new[](std::size_t size, std::align_val_t alignment) {
    return zctest::counting_allocator_detail::allocateAligned(size, alignment);
}
void operator delete(void* p) noexcept {
    std::free(p);
}
void operator delete[](void* p) noexcept {
    std::free(p);
}
void operator delete(void* p, std::size_t) noexcept {
    std::free(p);
}
void operator delete[](void* p, std::size_t) noexcept {
    std::free(p);
}
void operator delete(void* p, const std::nothrow_t&) noexcept {
    std::free(p);
}
void operator delete[](void* p, const std::nothrow_t&) noexcept {
    std::free(p);
}
void operator delete(void* p, std::align_val_t) noexcept {
    std::free(p);
}
void operator delete[](void* p, std::align_val_t) noexcept {
    std::free(p);
}
void operator delete(void* p, std::size_t, std::align_val_t) noexcept {
    std::free(p);
}
void operator delete[](void* p, std::size_t, std::align_val_t) noexcept {
    std::free(p);
}
