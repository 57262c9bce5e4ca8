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
    const std::vector<std::pair<std::string, std::function<zorClient_returnCode_t()>>> calls = {
        {"zorClient_session_endpointProvision",
         [] {
             return zorClient_session_endpointProvision(nullptr, nullptr, 0, nullptr, nullptr, 0);
         }},
        {"zorClient_session_createTemporaryTopicName",
         [] { return zorClient_session_createTemporaryTopicName(nullptr, nullptr, 0); }},
        {"zorClient_flow_start", [] { return zorClient_flow_start(nullptr); }},
        {"zorClient_transactedSession_commit",
         [] { return zorClient_transactedSession_commit(nullptr); }},
        {"zorClient_cacheSession_cancelCacheRequests",
         [] { return zorClient_cacheSession_cancelCacheRequests(nullptr); }},
    };
    for (const auto& [name, call] : calls) {
        zorClient_uint64_t value = 0;
        zorClient_msg_getStat(ZORCLIENT_MSG_STATS_ALLOC_MSGS, 3, &value);  // some other error
        EXPECT_EQ(ZORCLIENT_FAIL, call()) << name;
        EXPECT_EQ(ZORCLIENT_SUBCODE_NOT_SUPPORTED, lastError().subCode) << name;
        EXPECT_NE(nullptr, std::strstr(lastError().errorStr, name.c_str())) << lastError().errorStr;
    }
}

TEST(NotBuiltYet, NullHandlesAndArgumentsDoNotCrash) {
    zorClient_opaqueContext_pt context = nullptr;
    zorClient_opaqueSession_pt session = nullptr;
    zorClient_opaqueFlow_pt flow = nullptr;
    EXPECT_EQ(ZORCLIENT_FAIL, zorClient_context_destroy(nullptr));
    EXPECT_EQ(ZORCLIENT_FAIL, zorClient_context_destroy(&context));
    EXPECT_EQ(ZORCLIENT_FAIL, zorClient_context_processEvents(nullptr));
    EXPECT_EQ(ZORCLIENT_FAIL, zorClient_session_destroy(&session));
    EXPECT_EQ(ZORCLIENT_FAIL, zorClient_session_sendMsg(nullptr, nullptr));
    EXPECT_EQ(ZORCLIENT_FAIL, zorClient_session_getProperty(nullptr, nullptr, nullptr, 0));
    EXPECT_EQ(ZORCLIENT_FAIL, zorClient_flow_destroy(&flow));
    // Results that are not return codes give their type's failure value.
    EXPECT_EQ(0, zorClient_session_isCapable(nullptr, nullptr));
    EXPECT_EQ(ZORCLIENT_SUBCODE_PARAM_NULL_PTR, lastError().subCode);
}

}  // namespace
