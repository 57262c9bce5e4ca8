#include "core/MessagePool.h"

#include "core/PoolHandleTable.h"
#include "core/PoolStats.h"

namespace zorvane::zorclient {

namespace {

constexpr std::uint8_t MESSAGE_TAG = 0x4D;

// Never destroyed: messages may be freed by threads that run past static destruction.
PoolHandleTable<Message>& table() {
    static auto* table_s = new PoolHandleTable<Message>(MESSAGE_TAG, ZORCLIENT_MSG_STATS_FREE_MSGS,
                                                        ZORCLIENT_MSG_STATS_ALLOC_MSGS);
    return *table_s;
}

Message* acquire() {
    std::uintptr_t handle = 0;
    Message* msg_p = table().acquire(&handle);
    msg_p->setHandle(reinterpret_cast<zorClient_opaqueMsg_pt>(handle));
    return msg_p;
}

}  // namespace

Message* MessagePool::allocate() {
    Message* msg_p = acquire();
    PoolStats::add(ZORCLIENT_MSG_STATS_MSG_ALLOCS, 0, 1);
    return msg_p;
}

Message* MessagePool::duplicate(const Message& original) {
    Message* copy_p = acquire();
    try {
        copy_p->copyFrom(original);
    } catch (...) {
        copy_p->clear();
        table().release(reinterpret_cast<std::uintptr_t>(copy_p->handle()));
        throw;
    }
    PoolStats::add(ZORCLIENT_MSG_STATS_MSG_DUPS, 0, 1);
    return copy_p;
}

void MessagePool::free(Message* msg_p) noexcept {
    msg_p->clear();
    const auto handle = reinterpret_cast<std::uintptr_t>(msg_p->handle());
    msg_p->setHandle(nullptr);
    PoolStats::add(ZORCLIENT_MSG_STATS_MSG_FREES, 0, 1);
    table().release(handle);
}

Message* MessagePool::lookup(zorClient_opaqueMsg_pt handle) noexcept {
    return table().lookup(reinterpret_cast<std::uintptr_t>(handle));
}

}  // namespace zorvane::zorclient
