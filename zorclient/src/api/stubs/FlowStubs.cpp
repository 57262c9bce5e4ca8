// Flow entry points not built yet.
#include "api/stubs/NotSupported.h"

extern "C" {

ZC_NOT_SUPPORTED_RC(zorClient_flow_destroy, (zorClient_opaqueFlow_pt*))
ZC_NOT_SUPPORTED_RC(zorClient_flow_start, (zorClient_opaqueFlow_pt))
ZC_NOT_SUPPORTED_RC(zorClient_flow_stop, (zorClient_opaqueFlow_pt))
ZC_NOT_SUPPORTED_RC(zorClient_flow_sendAck, (zorClient_opaqueFlow_pt, zorClient_msgId_t))
ZC_NOT_SUPPORTED_RC(zorClient_flow_settleMsg,
                    (zorClient_opaqueFlow_pt, zorClient_msgId_t, zorClient_msgOutcome_t))
ZC_NOT_SUPPORTED_RC(zorClient_flow_getDestination,
                    (zorClient_opaqueFlow_pt, zorClient_destination_t*, size_t))
ZC_NOT_SUPPORTED_RC(zorClient_flow_getProperty,
                    (zorClient_opaqueFlow_pt, const char*, char*, size_t))
ZC_NOT_SUPPORTED_RC(zorClient_flow_getRxStat,
                    (zorClient_opaqueFlow_pt, zorClient_stats_rx, zorClient_stats_t*))
ZC_NOT_SUPPORTED_RC(zorClient_flow_logStats, (zorClient_opaqueFlow_pt, zorClient_log_level_t))
ZC_NOT_SUPPORTED_RC(_zorClient_flow_logState, (zorClient_opaqueFlow_pt, zorClient_log_level_t))
ZC_NOT_SUPPORTED_RC(zorClient_flow_topicSubscribeWithDispatch,
                    (zorClient_opaqueFlow_pt, zorClient_subscribeFlags_t, const char*,
                     zorClient_flow_rxMsgDispatchFuncInfo_t*, void*))
ZC_NOT_SUPPORTED_RC(zorClient_flow_topicUnsubscribeWithDispatch,
                    (zorClient_opaqueFlow_pt, zorClient_subscribeFlags_t, const char*,
                     zorClient_flow_rxMsgDispatchFuncInfo_t*, void*))

}  // extern "C"
