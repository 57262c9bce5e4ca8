// zorClient_getLastErrorInfo is per thread: failures of one thread never show in another's.
#include <gtest/gtest.h>

#include <atomic>
#include <cstring>
#include <latch>
#include <string>
#include <thread>

#include "zorClient.h"
#include "zorClientMsg.h"

namespace {

TEST(LastErrorInfo, ThreadsFailingAtTheSameTimeEachSeeTheirOwnFailure) {
    // The main thread's failure must survive the others.
    zorClient_uint64_t value = 0;
    ASSERT_EQ(ZORCLIENT_FAIL, zorClient_msg_getStat(ZORCLIENT_MSG_STATS_ALLOC_MSGS, 9, &value));
    const std::string mainText = zorClient_getLastErrorInfo()->errorStr;

    constexpr int ROUNDS = 2000;
    std::latch start(2);
    std::atomic<int> mixUps{0};
    std::thread badLevel([&] {
        start.arrive_and_wait();
        for (int i = 0; i < ROUNDS; ++i) {
            zorClient_log_setFilterLevel(static_cast<zorClient_log_category_t>(7),
                                         ZORCLIENT_LOG_NOTICE);
            const zorClient_errorInfo* info_p = zorClient_getLastErrorInfo();
            if (info_p->subCode != ZORCLIENT_SUBCODE_PARAM_OUT_OF_RANGE ||
                std::strstr(info_p->errorStr, "category 7") == nullptr) {
                ++mixUps;
            }
        }
    });
    std::thread nullSession([&] {
        start.arrive_and_wait();
        for (int i = 0; i < ROUNDS; ++i) {
            zorClient_session_connect(nullptr);
            const zorClient_errorInfo* info_p = zorClient_getLastErrorInfo();
            if (info_p->subCode != ZORCLIENT_SUBCODE_PARAM_NULL_PTR ||
                std::strstr(info_p->errorStr, "zorClient_session_connect") == nullptr) {
                ++mixUps;
            }
        }
    });
    badLevel.join();
    nullSession.join();
    EXPECT_EQ(0, mixUps.load());
    EXPECT_EQ(ZORCLIENT_SUBCODE_PARAM_OUT_OF_RANGE, zorClient_getLastErrorInfo()->subCode);
    EXPECT_EQ(mainText, zorClient_getLastErrorInfo()->errorStr);
    // Applications may keep the pointer: a thread's record stays where it is.
    EXPECT_EQ(zorClient_getLastErrorInfo(), zorClient_getLastErrorInfo());
}

TEST(LastErrorInfo, LongTextIsCutToFitTheRecord) {
    std::string path = "/nonexistent-zorclient-dir/" + std::string(600, 'p');
    ASSERT_EQ(ZORCLIENT_FAIL, zorClient_log_setFile(path.c_str()));
    const zorClient_errorInfo* info_p = zorClient_getLastErrorInfo();
    EXPECT_EQ(static_cast<std::size_t>(ZORCLIENT_ERRORINFO_STR_SIZE - 1),
              std::strlen(info_p->errorStr));
    EXPECT_EQ(0, std::strncmp(info_p->errorStr, "zorClient_log_setFile", 21));
}

}  // namespace
