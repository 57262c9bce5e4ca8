// Session entry points: statistics, forced failure, publisher state.
#include <cerrno>

#include "api/ApiGuard.h"
#include "api/Handles.h"
#include "api/LastError.h"
#include "zorClient.h"

using namespace zorvane::zorclient;

namespace {

bool isLogLevel(int level) {
    return level >= ZORCLIENT_LOG_EMERGENCY && level <= ZORCLIENT_LOG_DEBUG;
}

}  // namespace

extern "C" {

zorClient_returnCode_t zorClient_session_getRxStat(zorClient_opaqueSession_pt session,
                                                   zorClient_stats_rx rxStat,
                                                   zorClient_stats_t* value_p) {
    auto lease = Handles::lookup(Handles::sessions(), session, __func__, "session");
    if (!lease) {
        return ZORCLIENT_FAIL;
    }
    if (value_p == nullptr) {
        return LastError::failNullArgument(__func__, "value_p");
    }
    if (rxStat < 0 || rxStat >= ZORCLIENT_STATS_RX_NUM_STATS) {
        return LastError::fail(ZORCLIENT_SUBCODE_PARAM_OUT_OF_RANGE,
                               "%s: %d is no receive statistic (0 to %d)", __func__,
                               static_cast<int>(rxStat), ZORCLIENT_STATS_RX_NUM_STATS - 1);
    }
    *value_p = lease->stats().rx(rxStat);
    return ZORCLIENT_OK;
}

zorClient_returnCode_t zorClient_session_getTxStat(zorClient_opaqueSession_pt session,
                                                   zorClient_stats_tx txStat,
                                                   zorClient_stats_t* value_p) {
    auto lease = Handles::lookup(Handles::sessions(), session, __func__, "session");
    if (!lease) {
        return ZORCLIENT_FAIL;
    }
    if (value_p == nullptr) {
        return LastError::failNullArgument(__func__, "value_p");
    }
    if (txStat < 0 || txStat >= ZORCLIENT_STATS_TX_NUM_STATS) {
        return LastError::fail(ZORCLIENT_SUBCODE_PARAM_OUT_OF_RANGE,
                               "%s: %d is no transmit statistic (0 to %d)", __func__,
                               static_cast<int>(txStat), ZORCLIENT_STATS_TX_NUM_STATS - 1);
    }
    *value_p = lease->stats().tx(txStat);
    return ZORCLIENT_OK;
}

zorClient_returnCode_t zorClient_session_getRxStats(zorClient_opaqueSession_pt session,
                                                    zorClient_stats_t* values_p,
                                                    zorClient_uint32_t arraySize) {
    auto lease = Handles::lookup(Handles::sessions(), session, __func__, "session");
    if (!lease) {
        return ZORCLIENT_FAIL;
    }
    if (values_p == nullptr) {
        return LastError::failNullArgument(__func__, "values_p");
    }
    for (zorClient_uint32_t id = 0; id < arraySize && id < ZORCLIENT_STATS_RX_NUM_STATS; ++id) {
        values_p[id] = lease->stats().rx(static_cast<zorClient_stats_rx>(id));
    }
    return ZORCLIENT_OK;
}

zorClient_returnCode_t zorClient_session_getTxStats(zorClient_opaqueSession_pt session,
                                                    zorClient_stats_t* values_p,
                                                    zorClient_uint32_t arraySize) {
    auto lease = Handles::lookup(Handles::sessions(), session, __func__, "session");
    if (!lease) {
        return ZORCLIENT_FAIL;
    }
    if (values_p == nullptr) {
        return LastError::failNullArgument(__func__, "values_p");
    }
    for (zorClient_uint32_t id = 0; id < arraySize && id < ZORCLIENT_STATS_TX_NUM_STATS; ++id) {
        values_p[id] = lease->stats().tx(static_cast<zorClient_stats_tx>(id));
    }
    return ZORCLIENT_OK;
}

zorClient_returnCode_t zorClient_session_clearStats(zorClient_opaqueSession_pt session) {
    auto lease = Handles::lookup(Handles::sessions(), session, __func__, "session");
    if (!lease) {
        return ZORCLIENT_FAIL;
    }
    lease->stats().clear();
    return ZORCLIENT_OK;
}

// Runs in signal handlers: only the lock-free lookup, atomics, the futex wake-up and error
// texts without formatting. errno is kept for the interrupted code.
zorClient_returnCode_t _zorClient_session_forceFailure(zorClient_opaqueSession_pt session) {
    const int savedErrno = errno;
    zorClient_returnCode_t rc = ZORCLIENT_OK;
    auto lease = Handles::sessions().acquire(session);
    if (session == nullptr) {
        LastError::setText(ZORCLIENT_SUBCODE_PARAM_NULL_PTR, 0,
                           "_zorClient_session_forceFailure: session is null");
        rc = ZORCLIENT_FAIL;
    } else if (!lease) {
        LastError::setText(ZORCLIENT_SUBCODE_INVALID_HANDLE, 0,
                           "_zorClient_session_forceFailure: session is not a valid handle "
                           "(destroyed, or of another kind)");
        rc = ZORCLIENT_FAIL;
    } else if (!lease->requestFailure()) {
        LastError::setText(ZORCLIENT_SUBCODE_SESSION_NOT_ESTABLISHED, 0,
                           "_zorClient_session_forceFailure: the session is not up");
        rc = ZORCLIENT_FAIL;
    }
    errno = savedErrno;
    return rc;
}

zorClient_returnCode_t _zorClient_session_logRelPub(zorClient_opaqueSession_pt session,
                                                    zorClient_log_level_t level) {
    const char* const function_p = __func__;
    return guarded(function_p, [&]() -> zorClient_returnCode_t {
        auto lease = Handles::lookup(Handles::sessions(), session, function_p, "session");
        if (!lease) {
            return ZORCLIENT_FAIL;
        }
        if (!isLogLevel(level)) {
            return LastError::fail(
                ZORCLIENT_SUBCODE_PARAM_OUT_OF_RANGE, "%s: %d is not a log level from %d to %d",
                function_p, static_cast<int>(level), ZORCLIENT_LOG_EMERGENCY, ZORCLIENT_LOG_DEBUG);
        }
        lease->logPublisherState(level);
        return ZORCLIENT_OK;
    });
}

}  // extern "C"
