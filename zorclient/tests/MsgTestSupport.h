// Helpers shared by the message and container tests: statistics reads, and a fixture that fails a
// test which leaves a message, container or data block allocated.
#pragma once

#include <gtest/gtest.h>

#include "zorClient.h"
#include "zorClientMsg.h"

namespace zorclient_test {

inline const zorClient_errorInfo& lastError() {
    return *zorClient_getLastErrorInfo();
}

inline zorClient_uint64_t stat(zorClient_msg_stats_t which, zorClient_uint32_t pool = 0) {
    zorClient_uint64_t value = 0;
    EXPECT_EQ(ZORCLIENT_OK, zorClient_msg_getStat(which, pool, &value));
    return value;
}

// Everything the application holds: messages, containers and data blocks of every pool.
inline zorClient_uint64_t allocated() {
    zorClient_uint64_t sum = stat(ZORCLIENT_MSG_STATS_ALLOC_MSGS) +
                             stat(ZORCLIENT_MSG_STATS_ALLOC_CONTAINERS) +
                             stat(ZORCLIENT_MSG_STATS_ALLOC_MEMORY);
    for (zorClient_uint32_t pool = 0; pool < ZORCLIENT_MSG_NUM_DATA_BLOCK_POOLS; ++pool) {
        sum += stat(ZORCLIENT_MSG_STATS_ALLOC_DATA_BLOCKS, pool);
    }
    return sum;
}

// Each test must give back all it took.
class NoLeakTest : public ::testing::Test {
  protected:
    void TearDown() override { EXPECT_EQ(0u, allocated()) << "a test leaked pool objects"; }
};

// A message freed at the end of the scope.
class ScopedMsg {
  public:
    ScopedMsg() { EXPECT_EQ(ZORCLIENT_OK, zorClient_msg_alloc(&msg_m)); }
    ~ScopedMsg() {
        if (msg_m != nullptr) {
            zorClient_msg_free(&msg_m);
        }
    }
    ScopedMsg(const ScopedMsg&) = delete;
    ScopedMsg& operator=(const ScopedMsg&) = delete;
    operator zorClient_opaqueMsg_pt() const { return msg_m; }
    zorClient_opaqueMsg_pt* address() { return &msg_m; }

  private:
    zorClient_opaqueMsg_pt msg_m = nullptr;
};

}  // namespace zorclient_test
