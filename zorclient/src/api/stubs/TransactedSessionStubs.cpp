// Transacted session entry points not built yet.
#include "api/stubs/NotSupported.h"

extern "C" {

ZC_NOT_SUPPORTED_RC(zorClient_transactedSession_getSessionName,
                    (zorClient_opaqueTransactedSession_pt, char*, size_t))
ZC_NOT_SUPPORTED_RC(zorClient_transactedSession_sendMsg,
                    (zorClient_opaqueTransactedSession_pt, zorClient_opaqueMsg_pt))
ZC_NOT_SUPPORTED_RC(zorClient_transactedSession_createFlow,
                    (zorClient_propertyArray_pt, zorClient_opaqueTransactedSession_pt,
                     zorClient_opaqueFlow_pt*, zorClient_flow_createFuncInfo_t*, size_t))
ZC_NOT_SUPPORTED_RC(zorClient_transactedSession_commit, (zorClient_opaqueTransactedSession_pt))
ZC_NOT_SUPPORTED_RC(zorClient_transactedSession_rollback, (zorClient_opaqueTransactedSession_pt))
ZC_NOT_SUPPORTED_RC(zorClient_transactedSession_destroy, (zorClient_opaqueTransactedSession_pt*))

}  // extern "C"
