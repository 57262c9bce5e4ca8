// Entry points whose behaviour is not built yet fail cleanly: ZORCLIENT_SUBCODE_NOT_SUPPORTED,
// an error text naming the function, and no crash on null handles or arguments. A few of each
// object's group stand for the rest.
#include <gtest/gtest.h>

#include <cstring>
#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "zorClient.h"
#include "zorClientMsg.h"

namespace {

const zorClient_errorInfo& lastError() {
    return *zorClient_getLastErrorInfo();
}

TEST(NotBuiltYet, FailsWithNotSupportedNamingTheFunction) {
    zorClient_opaqueMsg_pt msg = nullptr;
    zorClient_replicationGroupMessageId_t a{}, b{};
    int compare = 0;
    const std::vector<std::pair<std::string, std::function<zorClient_returnCode_t()>>> calls = {
        {"zorClient_session_sendMsg", [] { return zorClient_session_sendMsg(nullptr, nullptr); }},
        {"zorClient_session_createTemporaryTopicName",
         [] { return zorClient_session_createTemporaryTopicName(nullptr, nullptr, 0); }},
        {"zorClient_flow_start", [] { return zorClient_flow_start(nullptr); }},
        {"zorClient_transactedSession_commit",
         [] { return zorClient_transactedSession_commit(nullptr); }},
        {"zorClient_cacheSession_cancelCacheRequests",
         [] { return zorClient_cacheSession_cancelCacheRequests(nullptr); }},
        {"zorClient_msg_alloc", [&] { return zorClient_msg_alloc(&msg); }},
        {"zorClient_container_addInt32",
         [] { return zorClient_container_addInt32(nullptr, 5, "x"); }},
        {"zorClient_replicationGroupMessageId_compare",
         [&] { return zorClient_replicationGroupMessageId_compare(&a, &b, &compare); }},
    };
    for (const auto& [name, call] : calls) {
        zorClient_uint64_t value = 0;
        zorClient_msg_getStat(ZORCLIENT_MSG_STATS_ALLOC_MSGS, 3, &value);  // some other error
        EXPECT_EQ(ZORCLIENT_FAIL, call()) << name;
        EXPECT_EQ(ZORCLIENT_SUBCODE_NOT_SUPPORTED, lastError().subCode) << name;
        EXPECT_NE(nullptr, std::strstr(lastError().errorStr, name.c_str())) << lastError().errorStr;
    }
    EXPECT_EQ(nullptr, msg);
}

TEST(NotBuiltYet, NullHandlesAndArgumentsDoNotCrash) {
    zorClient_opaqueContext_pt context = nullptr;
    zorClient_opaqueSession_pt session = nullptr;
    zorClient_opaqueFlow_pt flow = nullptr;
    zorClient_opaqueMsg_pt msg = nullptr;
    zorClient_opaqueContainer_pt container = nullptr;
    EXPECT_EQ(ZORCLIENT_FAIL, zorClient_context_destroy(nullptr));
    EXPECT_EQ(ZORCLIENT_FAIL, zorClient_context_destroy(&context));
    EXPECT_EQ(ZORCLIENT_FAIL, zorClient_context_processEvents(nullptr));
    EXPECT_EQ(ZORCLIENT_FAIL, zorClient_session_destroy(&session));
    EXPECT_EQ(ZORCLIENT_FAIL, zorClient_session_sendMsg(nullptr, nullptr));
    EXPECT_EQ(ZORCLIENT_FAIL, zorClient_session_getProperty(nullptr, nullptr, nullptr, 0));
    EXPECT_EQ(ZORCLIENT_FAIL, zorClient_flow_destroy(&flow));
    EXPECT_EQ(ZORCLIENT_FAIL, zorClient_msg_free(&msg));
    EXPECT_EQ(ZORCLIENT_FAIL, zorClient_container_closeMapStream(&container));
    EXPECT_EQ(ZORCLIENT_FAIL, zorClient_container_getNextField(nullptr, nullptr, 0, nullptr));
    // Results that are not return codes give their type's failure value.
    EXPECT_EQ(0, zorClient_session_isCapable(nullptr, nullptr));
    EXPECT_EQ(0, zorClient_msg_isRedelivered(nullptr));
    EXPECT_EQ(0, zorClient_container_hasNextField(nullptr));
    EXPECT_EQ(ZORCLIENT_CACHE_INVALID_MESSAGE, zorClient_msg_isCacheMsg(nullptr));
    EXPECT_EQ(ZORCLIENT_SUBCODE_NOT_SUPPORTED, lastError().subCode);
}

TEST(NotBuiltYet, ReadersThatLoopStillGetEndMarkersAndEmptyTexts) {
    // A consumer id reader loops until the end marker; a dump reader prints the buffer.
    zorClient_consumerId_t id = 0;
    EXPECT_NE(ZORCLIENT_OK, zorClient_msg_getConsumerId(nullptr, 0, &id));
    EXPECT_EQ(ZORCLIENT_CONSUMER_ID_NONE, id);
    EXPECT_NE(ZORCLIENT_OK, zorClient_msg_getConsumerId(nullptr, 0, nullptr));
    char dump[] = "stale";
    EXPECT_NE(ZORCLIENT_OK, zorClient_msg_dump(nullptr, dump, sizeof dump));
    EXPECT_STREQ("", dump);
}

}  // namespace
