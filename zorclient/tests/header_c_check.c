/* The public headers compiled as strict C11, and the library used from C: callback shapes take
 * plain C functions, property arrays take const char* arrays, and the calls link and behave. */
#include <stdio.h>
#include <string.h>

#include "zorClient.h" /* a second time: the include guards must hold */
#include "zorClientMsg.h"

static zorClient_rxMsgCallback_returnCode_t onMessage(zorClient_opaqueSession_pt session,
                                                      zorClient_opaqueMsg_pt msg, void* user_p) {
    (void)session;
    (void)msg;
    (void)user_p;
    return ZORCLIENT_CALLBACK_OK;
}

static void onEvent(zorClient_opaqueSession_pt session,
                    zorClient_session_eventCallbackInfo_pt eventInfo_p, void* user_p) {
    (void)session;
    (void)eventInfo_p;
    (void)user_p;
}

static int failures = 0;

static void expect(int condition, const char* what_p) {
    if (!condition) {
        fprintf(stderr, "failed: %s\n", what_p);
        ++failures;
    }
}

int main(void) {
    const char* props[] = {ZORCLIENT_GLOBAL_PROP_DBQUANTASIZE_0, "512", NULL, NULL};
    zorClient_version_info_t info;
    zorClient_session_createFuncInfo_t funcInfo;
    zorClient_opaqueSession_pt session = NULL;
    zorClient_uint64_t allocMsgs = 1;

    memset(&funcInfo, 0, sizeof funcInfo);
    funcInfo.rxMsgInfo.callback_p = onMessage;
    funcInfo.eventInfo.callback_p = onEvent;

    /* Before anything else: the APP filter level is notice, read through an int pointer. */
    expect(*(const int*)&_zorClient_log_appFilterLevel_g == ZORCLIENT_LOG_NOTICE,
           "initial APP filter level is notice");
    expect(zorClient_version_get(&info) == ZORCLIENT_OK && info.version_p != NULL &&
               info.dateTime_p != NULL && info.variant_p != NULL,
           "version before initialize");

    expect(zorClient_initialize(ZORCLIENT_LOG_WARNING, props) == ZORCLIENT_OK, "initialize");
    expect(_zorClient_log_appFilterLevel_g == ZORCLIENT_LOG_WARNING,
           "initialize sets the APP filter level");
    expect(zorClient_msg_getStat(ZORCLIENT_MSG_STATS_ALLOC_MSGS, 0, &allocMsgs) == ZORCLIENT_OK &&
               allocMsgs == 0,
           "no messages allocated");
    expect(zorClient_session_create(NULL, NULL, &session, &funcInfo, sizeof funcInfo) ==
                   ZORCLIENT_FAIL &&
               session == NULL,
           "session create without a context fails");
    expect(strcmp(zorClient_subCodeToString(ZORCLIENT_SUBCODE_CACHE_REQUEST_CANCELLED),
                  "ZORCLIENT_SUBCODE_CACHE_REQUEST_CANCELLED") == 0,
           "subcode names");
    expect(sizeof(zorClient_replicationGroupMessageId_t) == 16, "replication group id size");
    expect(zorClient_cleanup() == ZORCLIENT_OK, "cleanup");
    return failures == 0 ? 0 : 1;
}
