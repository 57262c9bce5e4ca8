#include "core/Part.h"

#include <cstring>
#include <new>

#include "core/PoolStats.h"

namespace zorvane::zorclient {

namespace {
const std::uint8_t emptyBytes_s[1] = {0};
}  // namespace

void Part::releaseBlock() noexcept {
    DataBlockPools::release(block_mp);
    block_mp = nullptr;
}

void Part::emptyForWrite() noexcept {
    if (storage_m != PartStorage::BLOCK) {
        clear();
        return;
    }
    size_m = 0;
    storage_m = PartStorage::NONE;
    data_mp = nullptr;
}

void Part::setView(const void* data_p, std::uint32_t size, PartStorage storage) noexcept {
    clear();
    data_mp = data_p != nullptr ? static_cast<const std::uint8_t*>(data_p) : emptyBytes_s;
    size_m = size;
    storage_m = storage;
}

void Part::moveToNewBlock(std::size_t capacity, const void* from_p, std::uint32_t copySize) {
    DataBlock* next_p = DataBlockPools::acquire(capacity, BlockOwner::APPLICATION);
    if (copySize > 0) {
        std::memcpy(next_p->bytes(), from_p, copySize);
    }
    if (block_mp != nullptr) {
        // A part outgrew its block: worth knowing when sizing the quanta.
        PoolStats::add(ZORCLIENT_MSG_STATS_MSG_REALLOCS, 0, 1);
        DataBlockPools::release(block_mp);
    }
    block_mp = next_p;
    data_mp = next_p->bytes();
    storage_m = PartStorage::BLOCK;
}

void Part::setCopy(const void* data_p, std::uint32_t size, bool terminate) {
    const std::size_t needed = static_cast<std::size_t>(size) + (terminate ? 1 : 0);
    if (size == 0) {
        data_p = emptyBytes_s;
    }
    if (needed <= INLINE_CAPACITY) {
        // memmove: the source may be this part's own bytes.
        std::memmove(inline_m, data_p, size);
        DataBlockPools::release(block_mp);
        block_mp = nullptr;
        data_mp = inline_m;
        storage_m = PartStorage::INLINE;
    } else if (block_mp != nullptr && block_mp->capacity() >= needed) {
        std::memmove(block_mp->bytes(), data_p, size);
        data_mp = block_mp->bytes();
        storage_m = PartStorage::BLOCK;
    } else {
        moveToNewBlock(needed, data_p, size);
    }
    if (terminate) {
        const_cast<std::uint8_t*>(data_mp)[size] = 0;
    }
    size_m = size;
}

std::uint8_t* Part::reserve(std::size_t extra) {
    const std::size_t needed = static_cast<std::size_t>(size_m) + extra;
    if (needed > DataBlockPools::MAX_BLOCK_SIZE) {
        throw std::bad_alloc();
    }
    // An own block (kept by emptyForWrite() too) is used when large enough.
    if (block_mp == nullptr || block_mp->capacity() < needed) {
        // Growing by half at least keeps the copies of a container that grows field by field
        // few once it is beyond the largest quantum, where blocks have exactly the asked size.
        std::size_t capacity = needed;
        if (block_mp != nullptr) {
            const std::size_t half = size_m + size_m / 2;
            capacity = half > capacity && half <= DataBlockPools::MAX_BLOCK_SIZE ? half : capacity;
        }
        moveToNewBlock(capacity, data_mp, size_m);
    }
    data_mp = block_mp->bytes();
    storage_m = PartStorage::BLOCK;
    return block_mp->bytes();
}

}  // namespace zorvane::zorclient
