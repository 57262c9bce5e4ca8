// Once its pools are warm, the plain direct path allocates nothing: a message goes from
// zorClient_session_sendMsg through the broker to the receive callback and back to the pools
// without touching the heap. The pools grow with the most messages ever in flight at once, so
// the warm-up holds the receiver until more are in flight than any measured round allows;
// after it, every round must allocate nothing. This program replaces the global allocation
// functions with counting ones (CountingAllocator.h); the library, loaded into it, allocates
// through them.
#include <gtest/gtest.h>

#include <atomic>
#include <cstdlib>
#include <new>
#include <vector>

#include "CountingAllocator.h"
#include "DirectTestSupport.h"

namespace {

using namespace zctest;

std::atomic<std::uint64_t> received_s{0};
// While set, the receive callback waits: the sender then has a whole window in flight, however
// the two threads are scheduled.
std::atomic<bool> gate_s{false};

zorClient_rxMsgCallback_returnCode_t count(zorClient_opaqueSession_pt, zorClient_opaqueMsg_pt,
                                           void*) {
    while (gate_s.load(std::memory_order_acquire)) {
        std::this_thread::yield();
    }
    received_s.fetch_add(1, std::memory_order_relaxed);
    return ZORCLIENT_CALLBACK_OK;
}

zorClient_opaqueSession_pt connectCounting(zorClient_opaqueContext_pt context, EventLog& log,
                                           const char* noLocal) {
    zorClient_session_createFuncInfo_t funcInfo{};
    funcInfo.rxMsgInfo.callback_p = &count;
    funcInfo.eventInfo.callback_p = &EventLog::callback;
    funcInfo.eventInfo.user_p = &log;
    zorClient_opaqueSession_pt session = nullptr;
    const char* props[] = {ZORCLIENT_SESSION_PROP_NO_LOCAL, noLocal, nullptr};
    EXPECT_EQ(ZORCLIENT_OK,
              zorClient_session_create(props, context, &session, &funcInfo, sizeof funcInfo));
    EXPECT_EQ(ZORCLIENT_OK, zorClient_session_connect(session));
    EXPECT_EQ(ZORCLIENT_OK, zorClient_session_topicSubscribeExt(session, 0, "warm/>"));
    return session;
}

// Sends rounds of messages, each a cycle through msgs, and holds each round to zero
// allocations after a warm-up. A round keeps at most window deliveries in flight and starts
// with the receivers held until a whole window is in flight, so that every round reaches the
// peak the pools must serve. deliveriesPerCycle: what one cycle through msgs delivers.
void expectWarmRoundsAllocateNothing(zorClient_opaqueSession_pt sender,
                                     const std::vector<zorClient_opaqueMsg_pt>& msgs,
                                     std::uint64_t deliveriesPerCycle) {
    received_s.store(0);
    std::uint64_t expected = 0;
    auto run = [&](int cycles, std::uint64_t window) {
        gate_s.store(true, std::memory_order_release);
        for (int i = 0; i < cycles; ++i) {
            for (zorClient_opaqueMsg_pt msg : msgs) {
                ASSERT_EQ(ZORCLIENT_OK, zorClient_session_sendMsg(sender, msg));
            }
            expected += deliveriesPerCycle;
            if (expected - received_s.load(std::memory_order_relaxed) >= window) {
                gate_s.store(false, std::memory_order_release);
            }
            while (expected - received_s.load(std::memory_order_relaxed) > window) {
                std::this_thread::yield();
            }
        }
        gate_s.store(false, std::memory_order_release);
        while (received_s.load(std::memory_order_relaxed) < expected) {
            std::this_thread::yield();
        }
    };
    {
        const AllocationCount warmUp;
        run(20000, 1000);  // fills the pools and the per-thread caches beyond what follows needs
        EXPECT_GT(warmUp.allocations(), 0) << "the counting allocator does not count";
    }
    for (int round = 0; round < 3; ++round) {
        const AllocationCount warm;
        run(20000, 200);
        EXPECT_EQ(0, warm.allocations()) << "round " << round;
    }
    EXPECT_EQ(expected, received_s.load());
}

TEST_F(DirectTest, TheWarmDirectPathAllocatesNothing) {
    EventLog log;
    zorClient_opaqueSession_pt session = connectCounting(context(), log, "0");
    OutMsg msg("warm/topic", std::string(100, 'a'));
    expectWarmRoundsAllocateNothing(session, {msg}, 1);
    zorClient_session_destroy(&session);
}

// Every way a message's broker copy is shared or dropped gives it back to its pool: a copy
// that lingered would make the pools grow, round after round.
TEST_F(DirectTest, FanOutDeliverToOneAndUnmatchedSendsGiveEveryCopyBack) {
    EventLog log;
    zorClient_opaqueSession_pt sender = connectCounting(context(), log, "1");  // not to itself
    zorClient_opaqueSession_pt first = connectCounting(context(), log, "0");
    zorClient_opaqueSession_pt second = connectCounting(context(), log, "0");
    OutMsg fanOut("warm/all", std::string(100, 'a'));
    OutMsg toOne("warm/one", std::string(100, 'b'));
    ASSERT_EQ(ZORCLIENT_OK, zorClient_msg_setDeliverToOne(toOne, 1));
    OutMsg unmatched("cold/none", std::string(100, 'c'));
    OutMsg large("warm/large", std::string(2000, 'd'));  // parts in a data block
    expectWarmRoundsAllocateNothing(sender, {fanOut, toOne, unmatched, large}, 2 + 1 + 0 + 2);
    zorClient_session_destroy(&second);
    zorClient_session_destroy(&first);
    zorClient_session_destroy(&sender);
}

}  // namespace
