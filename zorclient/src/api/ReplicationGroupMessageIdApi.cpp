// Replication group message id entry points: text form and comparison.
#include "api/LastError.h"
#include "core/ReplicationGroupMessageId.h"

using namespace zorvane::zorclient;

namespace {

using Id = zorClient_replicationGroupMessageId_t;

zorClient_returnCode_t checkIdSize(size_t idSize, const char* function_p) {
    if (idSize < sizeof(Id)) {
        return LastError::fail(ZORCLIENT_SUBCODE_INSUFFICIENT_SPACE,
                               "%s: idSize %zu is less than %zu", function_p, idSize, sizeof(Id));
    }
    return ZORCLIENT_OK;
}

}  // namespace

extern "C" {

zorClient_returnCode_t zorClient_replicationGroupMessageId_toString(const Id* id_p, size_t idSize,
                                                                    char* buffer_p,
                                                                    size_t bufferSize) {
    if (id_p == nullptr || buffer_p == nullptr) {
        return LastError::failNullArgument(__func__, id_p == nullptr ? "id_p" : "buffer_p");
    }
    zorClient_returnCode_t rc = checkIdSize(idSize, __func__);
    if (rc != ZORCLIENT_OK) {
        return rc;
    }
    if (bufferSize < ReplicationGroupMessageId::TEXT_LENGTH + 1) {
        return LastError::fail(ZORCLIENT_SUBCODE_INSUFFICIENT_SPACE,
                               "%s: the text needs %zu bytes, the buffer has %zu", __func__,
                               ReplicationGroupMessageId::TEXT_LENGTH + 1, bufferSize);
    }
    ReplicationGroupMessageId::format(*id_p, buffer_p);
    return ZORCLIENT_OK;
}

zorClient_returnCode_t zorClient_replicationGroupMessageId_fromString(Id* id_p, size_t idSize,
                                                                      const char* string_p) {
    if (id_p == nullptr || string_p == nullptr) {
        return LastError::failNullArgument(__func__, id_p == nullptr ? "id_p" : "string_p");
    }
    zorClient_returnCode_t rc = checkIdSize(idSize, __func__);
    if (rc != ZORCLIENT_OK) {
        return rc;
    }
    if (!ReplicationGroupMessageId::parse(string_p, id_p)) {
        return LastError::fail(ZORCLIENT_SUBCODE_PARAM_OUT_OF_RANGE,
                               "%s: '%.64s' is not a replication group message id (rg1: and two "
                               "groups of 16 hexadecimal digits separated by ':')",
                               __func__, string_p);
    }
    return ZORCLIENT_OK;
}

zorClient_returnCode_t zorClient_replicationGroupMessageId_compare(const Id* id1_p, const Id* id2_p,
                                                                   int* compare_p) {
    if (id1_p == nullptr || id2_p == nullptr || compare_p == nullptr) {
        return LastError::failNullArgument(__func__, id1_p == nullptr   ? "id1_p"
                                                     : id2_p == nullptr ? "id2_p"
                                                                        : "compare_p");
    }
    const std::uint64_t origin1 = ReplicationGroupMessageId::origin(*id1_p);
    const std::uint64_t origin2 = ReplicationGroupMessageId::origin(*id2_p);
    if (origin1 == 0 || origin2 == 0) {
        return LastError::fail(ZORCLIENT_SUBCODE_PARAM_OUT_OF_RANGE,
                               "%s: %s is not a replication group message id (no spool)", __func__,
                               origin1 == 0 ? "id1_p" : "id2_p");
    }
    if (origin1 != origin2) {
        return LastError::fail(ZORCLIENT_SUBCODE_MESSAGE_ID_NOT_COMPARABLE,
                               "%s: the ids come from different message spools (%016llx and "
                               "%016llx)",
                               __func__, static_cast<unsigned long long>(origin1),
                               static_cast<unsigned long long>(origin2));
    }
    const std::uint64_t position1 = ReplicationGroupMessageId::position(*id1_p);
    const std::uint64_t position2 = ReplicationGroupMessageId::position(*id2_p);
    *compare_p = position1 < position2 ? -1 : position1 > position2 ? 1 : 0;
    return ZORCLIENT_OK;
}

}  // extern "C"
