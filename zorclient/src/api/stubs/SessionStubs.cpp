// Session entry points not built yet: endpoints, subscriptions on endpoints and for other
// clients, and the objects made on a session.
#include "api/stubs/NotSupported.h"

extern "C" {

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
