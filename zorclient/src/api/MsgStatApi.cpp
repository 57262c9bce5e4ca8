// zorClient_msg_getStat: the message pool statistics kept by core/PoolStats.
#include "api/LastError.h"
#include "core/PoolStats.h"
#include "zorClientMsg.h"

using namespace zorvane::zorclient;

extern "C" {

zorClient_returnCode_t zorClient_msg_getStat(zorClient_msg_stats_t stat,
                                             zorClient_uint32_t poolIndex,
                                             zorClient_uint64_t* value_p) {
    if (value_p == nullptr) {
        return LastError::failNullArgument(__func__, "value_p");
    }
    if (!PoolStats::isValid(stat, poolIndex)) {
        return LastError::fail(ZORCLIENT_SUBCODE_PARAM_OUT_OF_RANGE,
                               "%s: no statistic %d for pool index %u (pool index is 0, or "
                               "0..%d for FREE_DATA_BLOCKS, 0..%d for ALLOC_DATA_BLOCKS)",
                               __func__, static_cast<int>(stat), poolIndex,
                               ZORCLIENT_MSG_NUM_DBQUANTA - 1,
                               ZORCLIENT_MSG_NUM_DATA_BLOCK_POOLS - 1);
    }
    *value_p = PoolStats::read(stat, poolIndex);
    return ZORCLIENT_OK;
}

}  // extern "C"
