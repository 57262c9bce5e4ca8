// Context entry points not built yet.
#include "api/stubs/NotSupported.h"

extern "C" {

ZC_NOT_SUPPORTED_RC(zorClient_context_create,
                    (zorClient_propertyArray_pt, zorClient_opaqueContext_pt*,
                     zorClient_context_createFuncInfo_t*, size_t))
ZC_NOT_SUPPORTED_RC(zorClient_context_processEvents, (zorClient_opaqueContext_pt))
ZC_NOT_SUPPORTED_RC(zorClient_context_destroy, (zorClient_opaqueContext_pt*))
ZC_NOT_SUPPORTED_RC(_zorClient_messageDispatcher_invokeUserCallback,
                    (zorClient_opaqueTransactedSession_pt,
                     zorClient_messageDispatcher_userCallbackFunc_t, void*))

}  // extern "C"
