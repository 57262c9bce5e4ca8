// Message pools through the public API: the statistics come back to 0 after a clean run and show
// a leak, blocks are taken by size from the quanta zorClient_initialize set, warm pools serve a
// message's whole life without new memory, and threads share the pools.
#include <atomic>
#include <string>
#include <thread>
#include <vector>

#include "MsgTestSupport.h"

namespace {

using namespace zorclient_test;
using Msg = zorClient_opaqueMsg_pt;

// One message's life on the send path: attachment copied, a property map, a duplicate.
void messageLife(const std::string& attachment) {
    Msg msg = nullptr;
    Msg copy = nullptr;
    zorClient_opaqueContainer_pt map = nullptr;
    ASSERT_EQ(ZORCLIENT_OK, zorClient_msg_alloc(&msg));
    ASSERT_EQ(ZORCLIENT_OK,
              zorClient_msg_setBinaryAttachment(
                  msg, attachment.data(), static_cast<zorClient_uint32_t>(attachment.size())));
    ASSERT_EQ(ZORCLIENT_OK, zorClient_msg_createUserPropertyMap(msg, &map, 100));
    ASSERT_EQ(ZORCLIENT_OK, zorClient_container_addInt64(map, 1, "l"));
    ASSERT_EQ(ZORCLIENT_OK, zorClient_container_closeMapStream(&map));
    ASSERT_EQ(ZORCLIENT_OK, zorClient_msg_dup(msg, &copy));
    ASSERT_EQ(ZORCLIENT_OK, zorClient_msg_free(&copy));
    ASSERT_EQ(ZORCLIENT_OK, zorClient_msg_free(&msg));
}

class MsgPoolTest : public NoLeakTest {
  protected:
    void TearDown() override {
        NoLeakTest::TearDown();
        zorClient_cleanup();
    }
};

TEST_F(MsgPoolTest, ACleanRunEndsAtZeroWithoutNewMemoryOnceWarmAndALeakShows) {
    ASSERT_EQ(ZORCLIENT_OK, zorClient_initialize(ZORCLIENT_LOG_ERROR, nullptr));
    const zorClient_uint64_t allocsBefore = stat(ZORCLIENT_MSG_STATS_MSG_ALLOCS);
    const zorClient_uint64_t freesBefore = stat(ZORCLIENT_MSG_STATS_MSG_FREES);
    for (size_t size : {10u, 100u, 2000u, 300000u}) {
        messageLife(std::string(size, 'x'));
    }
    EXPECT_EQ(0u, allocated());
    EXPECT_EQ(4u, stat(ZORCLIENT_MSG_STATS_MSG_ALLOCS) - allocsBefore);
    EXPECT_EQ(8u, stat(ZORCLIENT_MSG_STATS_MSG_FREES) - freesBefore);  // with the duplicates
    EXPECT_LT(0u, stat(ZORCLIENT_MSG_STATS_FREE_MSGS));
    EXPECT_LT(0u, stat(ZORCLIENT_MSG_STATS_FREE_DATA_BLOCKS, 1));  // kept for the next message
    // Warm pools serve a message's whole life without new memory.
    const zorClient_uint64_t total = stat(ZORCLIENT_MSG_STATS_TOTAL_MEMORY);
    for (int i = 0; i < 1000; ++i) {
        messageLife(std::string(100, 'w'));
    }
    EXPECT_EQ(total, stat(ZORCLIENT_MSG_STATS_TOTAL_MEMORY));

    // What an application forgets shows in the pool of its size.
    Msg leaked = nullptr;
    zorClient_opaqueContainer_pt map = nullptr;
    const std::string big(300000, 'y');
    ASSERT_EQ(ZORCLIENT_OK, zorClient_msg_alloc(&leaked));
    ASSERT_EQ(ZORCLIENT_OK, zorClient_msg_setXml(leaked, big.data(), 2000));
    ASSERT_EQ(ZORCLIENT_OK, zorClient_msg_setBinaryAttachment(leaked, big.data(), 300000));
    ASSERT_EQ(ZORCLIENT_OK, zorClient_msg_createBinaryAttachmentStream(leaked, &map, 0));
    EXPECT_EQ(1u, stat(ZORCLIENT_MSG_STATS_ALLOC_MSGS));
    EXPECT_EQ(1u, stat(ZORCLIENT_MSG_STATS_ALLOC_CONTAINERS));
    EXPECT_EQ(1u, stat(ZORCLIENT_MSG_STATS_ALLOC_DATA_BLOCKS, 1));  // the XML part
    // The stream that replaced the attachment took over its block, above the largest quantum.
    EXPECT_EQ(1u, stat(ZORCLIENT_MSG_STATS_ALLOC_DATA_BLOCKS, 5));
    EXPECT_EQ(4096u + 300000u, stat(ZORCLIENT_MSG_STATS_ALLOC_MEMORY));
    ASSERT_EQ(ZORCLIENT_OK, zorClient_msg_free(&leaked));
}

TEST_F(MsgPoolTest, BlocksComeFromTheQuantaInitializeSet) {
    const char* props[] = {"GLOBAL_DBQUANTA_SIZE_0",
                           "100",
                           "GLOBAL_DBQUANTA_SIZE_1",
                           "200",
                           "GLOBAL_DBQUANTA_SIZE_2",
                           "300",
                           "GLOBAL_DBQUANTA_SIZE_3",
                           "400",
                           "GLOBAL_DBQUANTA_SIZE_4",
                           "500",
                           nullptr,
                           nullptr};
    ASSERT_EQ(ZORCLIENT_OK, zorClient_initialize(ZORCLIENT_LOG_ERROR, props));
    const std::string bytes(600, 'b');
    Msg msg = nullptr;
    ASSERT_EQ(ZORCLIENT_OK, zorClient_msg_alloc(&msg));
    ASSERT_EQ(ZORCLIENT_OK, zorClient_msg_setXml(msg, bytes.data(), 150));
    ASSERT_EQ(ZORCLIENT_OK, zorClient_msg_setBinaryAttachment(msg, bytes.data(), 500));
    EXPECT_EQ(1u, stat(ZORCLIENT_MSG_STATS_ALLOC_DATA_BLOCKS, 1));
    EXPECT_EQ(1u, stat(ZORCLIENT_MSG_STATS_ALLOC_DATA_BLOCKS, 4));
    // Growing past a block's size moves the part to a larger one.
    const zorClient_uint64_t reallocs = stat(ZORCLIENT_MSG_STATS_MSG_REALLOCS);
    ASSERT_EQ(ZORCLIENT_OK, zorClient_msg_setXml(msg, bytes.data(), 600));
    EXPECT_EQ(reallocs + 1, stat(ZORCLIENT_MSG_STATS_MSG_REALLOCS));
    EXPECT_EQ(0u, stat(ZORCLIENT_MSG_STATS_ALLOC_DATA_BLOCKS, 1));
    EXPECT_EQ(1u, stat(ZORCLIENT_MSG_STATS_ALLOC_DATA_BLOCKS, 5));
    EXPECT_EQ(500u + 600u, stat(ZORCLIENT_MSG_STATS_ALLOC_MEMORY));
    // A block above the largest quantum goes back to the system, not to a free list.
    const zorClient_uint64_t total = stat(ZORCLIENT_MSG_STATS_TOTAL_MEMORY);
    ASSERT_EQ(ZORCLIENT_OK, zorClient_msg_free(&msg));
    EXPECT_EQ(total - 600, stat(ZORCLIENT_MSG_STATS_TOTAL_MEMORY));
}

TEST_F(MsgPoolTest, ThreadsShareThePoolsAndFreeEachOthersMessages) {
    ASSERT_EQ(ZORCLIENT_OK, zorClient_initialize(ZORCLIENT_LOG_ERROR, nullptr));
    constexpr int THREADS = 4;
    constexpr int ROUNDS = 2000;
    // Each thread frees the messages its neighbour made, as a receiver frees taken messages.
    std::vector<std::atomic<Msg>> handoff(THREADS);
    std::atomic<int> failures{0};
    std::vector<std::thread> threads;
    for (int t = 0; t < THREADS; ++t) {
        threads.emplace_back([&, t] {
            const std::string attachment(100 + 500 * t, 't');
            for (int i = 0; i < ROUNDS; ++i) {
                Msg msg = nullptr;
                if (zorClient_msg_alloc(&msg) != ZORCLIENT_OK ||
                    zorClient_msg_setBinaryAttachment(
                        msg, attachment.data(),
                        static_cast<zorClient_uint32_t>(attachment.size())) != ZORCLIENT_OK) {
                    ++failures;
                }
                Msg previous = handoff[t].exchange(msg);
                Msg theirs = handoff[(t + 1) % THREADS].exchange(nullptr);
                for (Msg m : {previous, theirs}) {
                    if (m != nullptr && zorClient_msg_free(&m) != ZORCLIENT_OK) {
                        ++failures;
                    }
                }
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    for (auto& slot : handoff) {
        Msg m = slot.exchange(nullptr);
        if (m != nullptr) {
            EXPECT_EQ(ZORCLIENT_OK, zorClient_msg_free(&m));
        }
    }
    EXPECT_EQ(0, failures.load());
}

}  // namespace
