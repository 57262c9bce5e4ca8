// Session entry points not built yet.
#include "api/stubs/NotSupported.h"

extern "C" {

ZC_NOT_SUPPORTED_RC(zorClient_session_create,
                    (zorClient_propertyArray_pt, zorClient_opaqueContext_pt,
                     zorClient_opaqueSession_pt*, zorClient_session_createFuncInfo_t*, size_t))
ZC_NOT_SUPPORTED_RC(zorClient_session_connect, (zorClient_opaqueSession_pt))
ZC_NOT_SUPPORTED_RC(zorClient_session_disconnect, (zorClient_opaqueSession_pt))
ZC_NOT_SUPPORTED_RC(zorClient_session_destroy, (zorClient_opaqueSession_pt*))
ZC_NOT_SUPPORTED_RC(zorClient_session_getProperty,
                    (zorClient_opaqueSession_pt, const char*, char*, size_t))
ZC_NOT_SUPPORTED_RC(zorClient_session_modifyProperties,
                    (zorClient_opaqueSession_pt, zorClient_propertyArray_pt))
ZC_NOT_SUPPORTED_BOOL(zorClient_session_isCapable, (zorClient_opaqueSession_pt, const char*))
ZC_NOT_SUPPORTED_RC(zorClient_session_getCapability,
                    (zorClient_opaqueSession_pt, const char*, zorClient_field_t*, size_t))
ZC_NOT_SUPPORTED_RC(zorClient_session_getRxStat,
                    (zorClient_opaqueSession_pt, zorClient_stats_rx, zorClient_stats_t*))
ZC_NOT_SUPPORTED_RC(zorClient_session_getTxStat,
                    (zorClient_opaqueSession_pt, zorClient_stats_tx, zorClient_stats_t*))
ZC_NOT_SUPPORTED_RC(zorClient_session_getRxStats,
                    (zorClient_opaqueSession_pt, zorClient_stats_t*, zorClient_uint32_t))
ZC_NOT_SUPPORTED_RC(zorClient_session_getTxStats,
                    (zorClient_opaqueSession_pt, zorClient_stats_t*, zorClient_uint32_t))
ZC_NOT_SUPPORTED_RC(zorClient_session_clearStats, (zorClient_opaqueSession_pt))
ZC_NOT_SUPPORTED_RC(_zorClient_session_forceFailure, (zorClient_opaqueSession_pt))
ZC_NOT_SUPPORTED_RC(_zorClient_session_logRelPub,
                    (zorClient_opaqueSession_pt, zorClient_log_level_t))

ZC_NOT_SUPPORTED_RC(zorClient_session_sendMsg, (zorClient_opaqueSession_pt, zorClient_opaqueMsg_pt))
ZC_NOT_SUPPORTED_RC(zorClient_session_sendMultipleMsg,
                    (zorClient_opaqueSession_pt, zorClient_opaqueMsg_pt*, zorClient_uint32_t,
                     zorClient_uint32_t*))
ZC_NOT_SUPPORTED_RC(zorClient_session_sendRequest,
                    (zorClient_opaqueSession_pt, zorClient_opaqueMsg_pt, zorClient_opaqueMsg_pt*,
                     zorClient_uint32_t))

ZC_NOT_SUPPORTED_RC(zorClient_session_topicSubscribeExt,
                    (zorClient_opaqueSession_pt, zorClient_subscribeFlags_t, const char*))
ZC_NOT_SUPPORTED_RC(zorClient_session_topicUnsubscribeExt,
                    (zorClient_opaqueSession_pt, zorClient_subscribeFlags_t, const char*))
ZC_NOT_SUPPORTED_RC(zorClient_session_topicSubscribeWithDispatch,
                    (zorClient_opaqueSession_pt, zorClient_subscribeFlags_t, const char*,
                     zorClient_session_rxMsgDispatchFuncInfo_t*, void*))
ZC_NOT_SUPPORTED_RC(zorClient_session_topicUnsubscribeWithDispatch,
                    (zorClient_opaqueSession_pt, zorClient_subscribeFlags_t, const char*,
                     zorClient_session_rxMsgDispatchFuncInfo_t*, void*))
ZC_NOT_SUPPORTED_RC(zorClient_session_endpointTopicSubscribe,
                    (zorClient_propertyArray_pt, zorClient_opaqueSession_pt,
                     zorClient_subscribeFlags_t, const char*, void*))
ZC_NOT_SUPPORTED_RC(zorClient_session_endpointTopicUnsubscribe,
                    (zorClient_propertyArray_pt, zorClient_opaqueSession_pt,
                     zorClient_subscribeFlags_t, const char*, void*))
ZC_NOT_SUPPORTED_RC(zorClient_session_endpointProvision,
                    (zorClient_propertyArray_pt, zorClient_opaqueSession_pt,
                     zorClient_provisionFlags_t, void*, char*, size_t))
ZC_NOT_SUPPORTED_RC(zorClient_session_endpointDeprovision,
                    (zorClient_propertyArray_pt, zorClient_opaqueSession_pt,
                     zorClient_provisionFlags_t, void*))
ZC_NOT_SUPPORTED_RC(zorClient_session_dteUnsubscribe,
                    (zorClient_opaqueSession_pt, const char*, void*))
ZC_NOT_SUPPORTED_RC(zorClient_session_createTemporaryTopicName,
                    (zorClient_opaqueSession_pt, char*, size_t))
ZC_NOT_SUPPORTED_RC(zorClient_session_createFlow,
                    (zorClient_propertyArray_pt, zorClient_opaqueSession_pt,
                     zorClient_opaqueFlow_pt*, zorClient_flow_createFuncInfo_t*, size_t))
ZC_NOT_SUPPORTED_RC(zorClient_session_createTransactedSession,
                    (zorClient_propertyArray_pt, zorClient_opaqueSession_pt,
                     zorClient_opaqueTransactedSession_pt*, void*))
ZC_NOT_SUPPORTED_RC(zorClient_session_createCacheSession,
                    (zorClient_propertyArray_pt, zorClient_opaqueSession_pt,
                     zorClient_opaqueCacheSession_pt*))

}  // extern "C"
