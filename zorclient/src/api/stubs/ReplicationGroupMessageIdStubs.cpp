// Replication group message id entry points not built yet.
#include "api/stubs/NotSupported.h"

extern "C" {

ZC_NOT_SUPPORTED_RC(zorClient_replicationGroupMessageId_toString,
                    (const zorClient_replicationGroupMessageId_t*, size_t, char*, size_t))
ZC_NOT_SUPPORTED_RC(zorClient_replicationGroupMessageId_fromString,
                    (zorClient_replicationGroupMessageId_t*, size_t, const char*))
ZC_NOT_SUPPORTED_RC(zorClient_replicationGroupMessageId_compare,
                    (const zorClient_replicationGroupMessageId_t*,
                     const zorClient_replicationGroupMessageId_t*, int*))

}  // extern "C"
