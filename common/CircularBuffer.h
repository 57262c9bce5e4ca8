// A fixed ring of elements: the storage is allocated once, at construction,
// so that pushing and popping on a receive path never touch the heap.
// Positions count from the head, the oldest element; the ring wraps modulo
// its capacity.
//
// push_back on a full ring first drops the oldest element (and push_front
// the newest), so a ring that is fed faster than it is drained keeps the
// latest capacity() elements.
//
// Ownership: the ring owns its element array. Elements are assigned into
// slots, so T must be default-constructible and copy-assignable.
//
// Threads: none of its own; one thread at a time. Never blocks. Only
// construction and reserve() allocate.
#pragma once

#include <cstddef>
#include <iterator>
#include <memory>
#include <stdexcept>
#include <string>
#include <utility>

namespace zorvane::pubsub {

template <typename T>
class CircularBuffer {
  public:
    using value_type = T;
    using size_type = std::size_t;

    // Walks the elements from the head to the tail.
    template <typename Ring, typename Value>
    class Iterator {
      public:
        using iterator_category = std::forward_iterator_tag;
        using value_type = T;
        using difference_type = std::ptrdiff_t;
        using pointer = Value*;
        using reference = Value&;

        Iterator() = default;
        Iterator(Ring* ring_p, size_type pos) : ring_mp(ring_p), pos_m(pos) {}
        reference operator*() const { return (*ring_mp)[pos_m]; }
        pointer operator->() const { return &(*ring_mp)[pos_m]; }
        Iterator& operator++() {
            ++pos_m;
            return *this;
        }
        Iterator operator++(int) {
            Iterator before = *this;
            ++pos_m;
            return before;
        }
        bool operator==(const Iterator& other) const {
            return ring_mp == other.ring_mp && pos_m == other.pos_m;
        }

      private:
        Ring* ring_mp = nullptr;
        size_type pos_m = 0;
    };
    using iterator = Iterator<CircularBuffer, T>;
    using const_iterator = Iterator<const CircularBuffer, const T>;

    // Throws std::invalid_argument for a capacity of 0: such a ring could
    // not take the element that push_back makes room for.
    explicit CircularBuffer(size_type maxSize) : maxSize_m(maxSize) {
        if (maxSize == 0) {
            throw std::invalid_argument("CircularBuffer capacity must be at least 1");
        }
        arr_m = std::make_unique<T[]>(maxSize);
    }
    CircularBuffer(const CircularBuffer&) = delete;
    CircularBuffer& operator=(const CircularBuffer&) = delete;

    size_type size() const { return size_m; }
    size_type capacity() const { return maxSize_m; }
    bool empty() const { return size_m == 0; }
    bool full() const { return size_m == maxSize_m; }

    // Forgets every element; the storage stays.
    void clear() {
        size_m = 0;
        head_m = 0;
        tail_m = 0;
    }

    // Position from the head; unchecked, like the standard containers.
    T& operator[](size_type pos) { return arr_m[slot(pos)]; }
    const T& operator[](size_type pos) const { return arr_m[slot(pos)]; }

    // The oldest and the newest element; the ring must not be empty.
    T& front() { return arr_m[head_m]; }
    const T& front() const { return arr_m[head_m]; }
    T& back() { return arr_m[slot(size_m - 1)]; }
    const T& back() const { return arr_m[slot(size_m - 1)]; }

    void push_back(const T& value) {
        if (full()) {
            pop_front();
        }
        arr_m[tail_m] = value;
        tail_m = next(tail_m);
        ++size_m;
    }
    void push_front(const T& value) {
        if (full()) {
            pop_back();
        }
        head_m = prev(head_m);
        arr_m[head_m] = value;
        ++size_m;
    }
    // Popping an empty ring throws std::out_of_range.
    void pop_front() {
        requireElements("pop_front");
        head_m = next(head_m);
        --size_m;
    }
    void pop_back() {
        requireElements("pop_back");
        tail_m = prev(tail_m);
        --size_m;
    }

    // Removes the element at position pos (std::out_of_range beyond the
    // end), moving the shorter side of the ring to close the hole.
    void erase(size_type pos) {
        if (pos >= size_m) {
            throw std::out_of_range("CircularBuffer::erase position beyond the end");
        }
        if (pos == 0) {
            erase_from_head();
        } else if (pos == size_m - 1) {
            erase_from_tail();
        } else {
            erase_from_middle(pos);
        }
    }
    void erase_from_head() { pop_front(); }
    void erase_from_tail() { pop_back(); }
    void erase_from_middle(size_type pos) {
        if (pos < size_m / 2) {
            for (size_type i = pos; i > 0; --i) {
                (*this)[i] = (*this)[i - 1];
            }
            pop_front();
        } else {
            for (size_type i = pos; i + 1 < size_m; ++i) {
                (*this)[i] = (*this)[i + 1];
            }
            pop_back();
        }
    }

    void swap(CircularBuffer& other) noexcept {
        std::swap(maxSize_m, other.maxSize_m);
        std::swap(size_m, other.size_m);
        std::swap(head_m, other.head_m);
        std::swap(tail_m, other.tail_m);
        std::swap(arr_m, other.arr_m);
    }

    // Grows the capacity to newMaxSize, keeping the elements in order; a
    // smaller value changes nothing. Allocates.
    void reserve(size_type newMaxSize) {
        if (newMaxSize <= maxSize_m) {
            return;
        }
        auto grown = std::make_unique<T[]>(newMaxSize);
        for (size_type i = 0; i < size_m; ++i) {
            grown[i] = (*this)[i];
        }
        arr_m = std::move(grown);
        maxSize_m = newMaxSize;
        head_m = 0;
        tail_m = size_m % maxSize_m;
    }

    iterator begin() { return iterator(this, 0); }
    iterator end() { return iterator(this, size_m); }
    const_iterator begin() const { return const_iterator(this, 0); }
    const_iterator end() const { return const_iterator(this, size_m); }

  private:
    size_type slot(size_type pos) const { return (head_m + pos) % maxSize_m; }
    size_type next(size_type index) const { return index + 1 == maxSize_m ? 0 : index + 1; }
    size_type prev(size_type index) const { return index == 0 ? maxSize_m - 1 : index - 1; }
    void requireElements(const char* operation) const {
        if (size_m == 0) {
            throw std::out_of_range(std::string("CircularBuffer::") + operation +
                                    " on an empty buffer");
        }
    }

    size_type maxSize_m;
    size_type size_m = 0;
    size_type head_m = 0;  // the oldest element
    size_type tail_m = 0;  // the next free slot
    std::unique_ptr<T[]> arr_m;
};

}  // namespace zorvane::pubsub
