// Cache session entry points not built yet.
#include "api/stubs/NotSupported.h"

extern "C" {

ZC_NOT_SUPPORTED_RC(zorClient_cacheSession_sendCacheRequest,
                    (zorClient_opaqueCacheSession_pt, const char*, zorClient_uint64_t,
                     zorClient_cacheSession_eventCallbackFunc_t, void*,
                     zorClient_cacheRequestFlags_t, zorClient_subscribeFlags_t))
ZC_NOT_SUPPORTED_RC(zorClient_cacheSession_sendCacheRequestSequence,
                    (zorClient_opaqueCacheSession_pt, const char*, zorClient_uint64_t,
                     zorClient_cacheSession_eventCallbackFunc_t, void*,
                     zorClient_cacheRequestFlags_t, zorClient_subscribeFlags_t, zorClient_int64_t,
                     zorClient_int64_t))
ZC_NOT_SUPPORTED_RC(zorClient_cacheSession_cancelCacheRequests, (zorClient_opaqueCacheSession_pt))
ZC_NOT_SUPPORTED_RC(zorClient_cacheSession_destroy, (zorClient_opaqueCacheSession_pt*))

}  // extern "C"
