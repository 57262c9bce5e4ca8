// Session entry points: statistics, forced failure, publisher state.
#include <cerrno>
#include <type_traits>

#include "api/ApiGuard.h"
#include "api/Handles.h"
#include "api/LastError.h"
#include "zorClient.h"

using namespace zorvane::zorclient;

namespace {

bool isLogLevel(int level) {
    return level >= ZORCLIENT_LOG_EMERGENCY && level <= ZORCLIENT_LOG_DEBUG;
}

// The two counter tables of a session, told apart by the type of their ids: how many counters
// each has, what an error text calls them, and how one is read.
template <typename Id>
struct StatTable {
    static constexpr bool RX = std::is_same_v<Id, zorClient_stats_rx>;
    static_assert(RX || std::is_same_v<Id, zorClient_stats_tx>);
    static constexpr Id SIZE = static_cast<Id>(RX ? static_cast<int>(ZORCLIENT_STATS_RX_NUM_STATS)
                                                  : static_cast<int>(ZORCLIENT_STATS_TX_NUM_STATS));
    static constexpr const char* KIND = RX ? "receive" : "transmit";

    static zorClient_stats_t read(const SessionStats& stats, Id id) noexcept {
        if constexpr (RX) {
            return stats.rx(id);
        } else {
            return stats.tx(id);
        }
    }
};

template <typename Id>
zorClient_returnCode_t getStat(zorClient_opaqueSession_pt session, Id id,
                               zorClient_stats_t* value_p, const char* function_p) {
    auto lease = Handles::lookup(Handles::sessions(), session, function_p, "session");
    if (!lease) {
        return ZORCLIENT_FAIL;
    }
    if (value_p == nullptr) {
        return LastError::failNullArgument(function_p, "value_p");
    }
    if (id < 0 || id >= StatTable<Id>::SIZE) {
        return LastError::fail(ZORCLIENT_SUBCODE_PARAM_OUT_OF_RANGE,
                               "%s: %d is no %s statistic (0 to %d)", function_p,
                               static_cast<int>(id), StatTable<Id>::KIND, StatTable<Id>::SIZE - 1);
    }
    *value_p = StatTable<Id>::read(lease->stats(), id);
    return ZORCLIENT_OK;
}

// Fills values_p[0..arraySize) as far as the table goes; the rest of a larger array is left
// as it was.
template <typename Id>
zorClient_returnCode_t getStats(zorClient_opaqueSession_pt session, zorClient_stats_t* values_p,
                                zorClient_uint32_t arraySize, const char* function_p) {
    auto lease = Handles::lookup(Handles::sessions(), session, function_p, "session");
    if (!lease) {
        return ZORCLIENT_FAIL;
    }
    if (values_p == nullptr) {
        return LastError::failNullArgument(function_p, "values_p");
    }
    for (zorClient_uint32_t id = 0; id < arraySize && id < StatTable<Id>::SIZE; ++id) {
        values_p[id] = StatTable<Id>::read(lease->stats(), static_cast<Id>(id));
    }
    return ZORCLIENT_OK;
}

}  // namespace

extern "C" {

zorClient_returnCode_t zorClient_session_getRxStat(zorClient_opaqueSession_pt session,
                                                   zorClient_stats_rx rxStat,
                                                   zorClient_stats_t* value_p) {
    return getStat(session, rxStat, value_p, __func__);
}

zorClient_returnCode_t zorClient_session_getTxStat(zorClient_opaqueSession_pt session,
                                                   zorClient_stats_tx txStat,
                                                   zorClient_stats_t* value_p) {
    return getStat(session, txStat, value_p, __func__);
}

zorClient_returnCode_t zorClient_session_getRxStats(zorClient_opaqueSession_pt session,
                                                    zorClient_stats_t* values_p,
                                                    zorClient_uint32_t arraySize) {
    return getStats<zorClient_stats_rx>(session, values_p, arraySize, __func__);
}

zorClient_returnCode_t zorClient_session_getTxStats(zorClient_opaqueSession_pt session,
                                                    zorClient_stats_t* values_p,
                                                    zorClient_uint32_t arraySize) {
    return getStats<zorClient_stats_tx>(session, values_p, arraySize, __func__);
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
