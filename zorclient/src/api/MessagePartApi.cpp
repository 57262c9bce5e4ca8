// Message entry points: the body, the binary attachment (raw or structured), the user property
// map and the user data.
#include <cstring>
#include <string>

#include "api/LastError.h"
#include "api/MessageHandles.h"

using namespace zorvane::zorclient;

namespace {

using Msg = zorClient_opaqueMsg_pt;
using ContainerHandle = zorClient_opaqueContainer_pt;

zorClient_returnCode_t checkBytes(const void* data_p, zorClient_uint32_t size,
                                  const char* function_p) {
    if (data_p == nullptr && size > 0) {
        return LastError::failNullArgument(function_p, "data_p");
    }
    return ZORCLIENT_OK;
}

zorClient_returnCode_t getBytes(Msg msg, PartId id, void** data_p, zorClient_uint32_t* size_p,
                                const char* function_p, const char* partName_p) {
    if (data_p == nullptr || size_p == nullptr) {
        return LastError::failNullArgument(function_p, data_p == nullptr ? "data_p" : "size_p");
    }
    *data_p = nullptr;
    *size_p = 0;
    return withMessage(msg, function_p, [&](Message& m) {
        const Part& part = m.part(id);
        if (!part.present()) {
            return LastError::failWithResult(ZORCLIENT_NOT_FOUND, ZORCLIENT_SUBCODE_OK,
                                             "%s: the message has no %s", function_p, partName_p);
        }
        *data_p = const_cast<std::uint8_t*>(part.data());
        *size_p = part.size();
        return ZORCLIENT_OK;
    });
}

// Replaces part id by a new, empty container of kind, opened for adding into *handle_p.
zorClient_returnCode_t createContainer(Msg msg, PartId id, std::uint8_t kind,
                                       ContainerHandle* handle_p, zorClient_uint32_t sizeHint,
                                       const char* function_p) {
    if (handle_p == nullptr) {
        return LastError::failNullArgument(function_p, "the container pointer");
    }
    *handle_p = nullptr;
    return withMessage(msg, function_p, [&](Message& m) {
        Container::closeAll(m, id);
        Part& part = m.part(id);
        part.emptyForWrite();
        const std::size_t size = sizeHint > FieldCodec::CONTAINER_HEADER_SIZE
                                     ? sizeHint
                                     : FieldCodec::CONTAINER_HEADER_SIZE;
        FieldCodec::writeContainerHeader(part.reserve(size), kind,
                                         FieldCodec::CONTAINER_HEADER_SIZE);
        part.commit(FieldCodec::CONTAINER_HEADER_SIZE);
        if (id == PartId::ATTACHMENT) {
            m.header().attachmentKind =
                kind == ZORCLIENT_MAP ? AttachmentKind::MAP : AttachmentKind::STREAM;
        }
        *handle_p = Container::openOnMessage(m, id, kind, true)->handle();
        return ZORCLIENT_OK;
    });
}

// Opens the container that part id holds. It accepts further adds when its encoding can grow
// (always for containers this library built).
zorClient_returnCode_t openContainer(Message& m, PartId id, std::uint8_t kind,
                                     ContainerHandle* handle_p) {
    const Part& part = m.part(id);
    const bool writer = FieldCodec::isGrowableContainer(part.data(), part.size(), kind);
    *handle_p = Container::openOnMessage(m, id, kind, writer)->handle();
    return ZORCLIENT_OK;
}

const char* attachmentKindName(AttachmentKind kind) noexcept {
    switch (kind) {
        case AttachmentKind::MAP:
            return "a map";
        case AttachmentKind::STREAM:
            return "a stream";
        case AttachmentKind::STRING:
            return "a string";
        default:
            return "raw bytes";
    }
}

zorClient_returnCode_t getAttachmentContainer(Msg msg, AttachmentKind wanted,
                                              ContainerHandle* handle_p, const char* function_p) {
    if (handle_p == nullptr) {
        return LastError::failNullArgument(function_p, "the container pointer");
    }
    *handle_p = nullptr;
    return withMessage(msg, function_p, [&](Message& m) {
        if (!m.part(PartId::ATTACHMENT).present()) {
            return LastError::failWithResult(ZORCLIENT_NOT_FOUND, ZORCLIENT_SUBCODE_OK,
                                             "%s: the message has no binary attachment",
                                             function_p);
        }
        if (m.header().attachmentKind != wanted) {
            return LastError::fail(ZORCLIENT_SUBCODE_FIELD_TYPE_MISMATCH,
                                   "%s: the binary attachment holds %s, not %s", function_p,
                                   attachmentKindName(m.header().attachmentKind),
                                   attachmentKindName(wanted));
        }
        return openContainer(m, PartId::ATTACHMENT,
                             wanted == AttachmentKind::MAP ? ZORCLIENT_MAP : ZORCLIENT_STREAM,
                             handle_p);
    });
}

}  // namespace

extern "C" {

// ---- Body ----------------------------------------------------------------------------------

zorClient_returnCode_t zorClient_msg_setXmlPtr(Msg msg, const void* data_p,
                                               zorClient_uint32_t size) {
    zorClient_returnCode_t rc = checkBytes(data_p, size, __func__);
    if (rc != ZORCLIENT_OK) {
        return rc;
    }
    return withMessage(msg, __func__, [&](Message& m) {
        m.part(PartId::XML).setView(data_p, size, PartStorage::CALLER);
        return ZORCLIENT_OK;
    });
}

zorClient_returnCode_t zorClient_msg_setXml(Msg msg, const void* data_p, zorClient_uint32_t size) {
    zorClient_returnCode_t rc = checkBytes(data_p, size, __func__);
    if (rc != ZORCLIENT_OK) {
        return rc;
    }
    return withMessage(msg, __func__, [&](Message& m) {
        m.part(PartId::XML).setCopy(data_p, size, false);
        return ZORCLIENT_OK;
    });
}

zorClient_returnCode_t zorClient_msg_getXmlPtr(Msg msg, void** data_p, zorClient_uint32_t* size_p) {
    return getBytes(msg, PartId::XML, data_p, size_p, __func__, "XML part");
}

// ---- Binary attachment -------------------------------------------------------------------------

zorClient_returnCode_t zorClient_msg_setBinaryAttachmentPtr(Msg msg, const void* data_p,
                                                            zorClient_uint32_t size) {
    zorClient_returnCode_t rc = checkBytes(data_p, size, __func__);
    if (rc != ZORCLIENT_OK) {
        return rc;
    }
    return withMessage(msg, __func__, [&](Message& m) {
        m.clearAttachment();
        m.part(PartId::ATTACHMENT).setView(data_p, size, PartStorage::CALLER);
        return ZORCLIENT_OK;
    });
}

zorClient_returnCode_t zorClient_msg_setBinaryAttachment(Msg msg, const void* data_p,
                                                         zorClient_uint32_t size) {
    zorClient_returnCode_t rc = checkBytes(data_p, size, __func__);
    if (rc != ZORCLIENT_OK) {
        return rc;
    }
    return withMessage(msg, __func__, [&](Message& m) {
        // Not clearAttachment(): data_p may point into the attachment being replaced.
        Container::closeAll(m, PartId::ATTACHMENT);
        m.part(PartId::ATTACHMENT).setCopy(data_p, size, false);
        m.header().attachmentKind = AttachmentKind::RAW;
        return ZORCLIENT_OK;
    });
}

zorClient_returnCode_t zorClient_msg_getBinaryAttachmentPtr(Msg msg, void** data_p,
                                                            zorClient_uint32_t* size_p) {
    return getBytes(msg, PartId::ATTACHMENT, data_p, size_p, __func__, "binary attachment");
}

zorClient_returnCode_t zorClient_msg_setBinaryAttachmentString(Msg msg, const char* string_p) {
    if (string_p == nullptr) {
        return LastError::failNullArgument(__func__, "string_p");
    }
    return withMessage(msg, __func__, [&](Message& m) {
        Part& part = m.part(PartId::ATTACHMENT);
        // The text may lie in the attachment it replaces: then it is copied out first.
        std::string saved;
        if (part.present() && string_p >= part.text() && string_p < part.text() + part.size()) {
            saved = string_p;
            string_p = saved.c_str();
        }
        const std::size_t length = std::strlen(string_p) + 1;
        const std::size_t size = FieldCodec::fieldSize(length);
        if (size == 0 || size > DataBlockPools::MAX_BLOCK_SIZE) {
            return LastError::fail(ZORCLIENT_SUBCODE_PARAM_OUT_OF_RANGE,
                                   "%s: a string of %zu bytes is too long", __func__, length);
        }
        Container::closeAll(m, PartId::ATTACHMENT);
        part.emptyForWrite();
        std::uint8_t* value_p =
            FieldCodec::writeHeader(part.reserve(size), ZORCLIENT_STRING, length);
        std::memcpy(value_p, string_p, length);
        part.commit(static_cast<std::uint32_t>(size));
        m.header().attachmentKind = AttachmentKind::STRING;
        return ZORCLIENT_OK;
    });
}

zorClient_returnCode_t zorClient_msg_getBinaryAttachmentString(Msg msg, const char** string_p) {
    if (string_p == nullptr) {
        return LastError::failNullArgument(__func__, "string_p");
    }
    *string_p = nullptr;
    return withMessage(msg, __func__, [&](Message& m) {
        const Part& part = m.part(PartId::ATTACHMENT);
        if (!part.present()) {
            return LastError::failWithResult(ZORCLIENT_NOT_FOUND, ZORCLIENT_SUBCODE_OK,
                                             "%s: the message has no binary attachment", __func__);
        }
        if (m.header().attachmentKind != AttachmentKind::STRING) {
            return LastError::fail(ZORCLIENT_SUBCODE_FIELD_TYPE_MISMATCH,
                                   "%s: the binary attachment holds %s, not a string", __func__,
                                   attachmentKindName(m.header().attachmentKind));
        }
        FieldCodec::RawField field;
        if (FieldCodec::read(part.data(), part.size(), &field) != FieldCodec::Result::OK ||
            field.code != ZORCLIENT_STRING || field.size != part.size()) {
            return LastError::fail(ZORCLIENT_SUBCODE_MALFORMED_DATA,
                                   "%s: the binary attachment is not a well-formed string",
                                   __func__);
        }
        *string_p = reinterpret_cast<const char*>(field.value_p);
        return ZORCLIENT_OK;
    });
}

zorClient_returnCode_t zorClient_msg_createBinaryAttachmentMap(Msg msg, ContainerHandle* map_p,
                                                               zorClient_uint32_t sizeHint) {
    return createContainer(msg, PartId::ATTACHMENT, ZORCLIENT_MAP, map_p, sizeHint, __func__);
}

zorClient_returnCode_t zorClient_msg_createBinaryAttachmentStream(Msg msg,
                                                                  ContainerHandle* stream_p,
                                                                  zorClient_uint32_t sizeHint) {
    return createContainer(msg, PartId::ATTACHMENT, ZORCLIENT_STREAM, stream_p, sizeHint, __func__);
}

zorClient_returnCode_t zorClient_msg_getBinaryAttachmentMap(Msg msg, ContainerHandle* map_p) {
    return getAttachmentContainer(msg, AttachmentKind::MAP, map_p, __func__);
}

zorClient_returnCode_t zorClient_msg_getBinaryAttachmentStream(Msg msg, ContainerHandle* stream_p) {
    return getAttachmentContainer(msg, AttachmentKind::STREAM, stream_p, __func__);
}

zorClient_returnCode_t zorClient_msg_setBinaryAttachmentContainer(Msg msg,
                                                                  ContainerHandle container) {
    Container* source_p = containerOf(container, __func__);
    if (source_p == nullptr) {
        return ZORCLIENT_FAIL;
    }
    return withMessage(msg, __func__, [&](Message& m) {
        if (source_p->message() == &m && source_p->part() == PartId::ATTACHMENT) {
            return LastError::fail(ZORCLIENT_SUBCODE_PARAM_CONFLICT,
                                   "%s: the container is this message's binary attachment "
                                   "already",
                                   __func__);
        }
        const std::uint8_t* bytes_p = nullptr;
        std::uint32_t size = 0;
        if (!source_p->encoding(&bytes_p, &size)) {
            return LastError::fail(ZORCLIENT_SUBCODE_MALFORMED_DATA,
                                   "%s: the container's bytes are not well formed", __func__);
        }
        Container::closeAll(m, PartId::ATTACHMENT);
        m.part(PartId::ATTACHMENT).setCopy(bytes_p, size, false);
        m.header().attachmentKind =
            source_p->isMap() ? AttachmentKind::MAP : AttachmentKind::STREAM;
        return ZORCLIENT_OK;
    });
}

// ---- User property map ---------------------------------------------------------------------

zorClient_returnCode_t zorClient_msg_createUserPropertyMap(Msg msg, ContainerHandle* map_p,
                                                           zorClient_uint32_t sizeHint) {
    return createContainer(msg, PartId::USER_PROPERTIES, ZORCLIENT_MAP, map_p, sizeHint, __func__);
}

zorClient_returnCode_t zorClient_msg_getUserPropertyMap(Msg msg, ContainerHandle* map_p) {
    if (map_p == nullptr) {
        return LastError::failNullArgument(__func__, "map_p");
    }
    *map_p = nullptr;
    return withMessage(msg, __func__, [&](Message& m) {
        if (!m.part(PartId::USER_PROPERTIES).present()) {
            return LastError::failWithResult(ZORCLIENT_NOT_FOUND, ZORCLIENT_SUBCODE_OK,
                                             "%s: the message has no user property map", __func__);
        }
        return openContainer(m, PartId::USER_PROPERTIES, ZORCLIENT_MAP, map_p);
    });
}

// ---- User data -----------------------------------------------------------------------------

namespace {

zorClient_returnCode_t checkUserData(const void* data_p, zorClient_uint32_t size,
                                     const char* function_p) {
    if (size > ZORCLIENT_USER_DATA_MAX_SIZE) {
        return LastError::fail(ZORCLIENT_SUBCODE_USER_DATA_TOO_LARGE,
                               "%s: %u bytes of user data; at most %u are carried", function_p,
                               size, ZORCLIENT_USER_DATA_MAX_SIZE);
    }
    return checkBytes(data_p, size, function_p);
}

}  // namespace

zorClient_returnCode_t zorClient_msg_setUserDataPtr(Msg msg, const void* data_p,
                                                    zorClient_uint32_t size) {
    zorClient_returnCode_t rc = checkUserData(data_p, size, __func__);
    if (rc != ZORCLIENT_OK) {
        return rc;
    }
    return withMessage(msg, __func__, [&](Message& m) {
        m.part(PartId::USER_DATA).setView(data_p, size, PartStorage::CALLER);
        return ZORCLIENT_OK;
    });
}

zorClient_returnCode_t zorClient_msg_setUserData(Msg msg, const void* data_p,
                                                 zorClient_uint32_t size) {
    zorClient_returnCode_t rc = checkUserData(data_p, size, __func__);
    if (rc != ZORCLIENT_OK) {
        return rc;
    }
    return withMessage(msg, __func__, [&](Message& m) {
        m.part(PartId::USER_DATA).setCopy(data_p, size, false);
        return ZORCLIENT_OK;
    });
}

zorClient_returnCode_t zorClient_msg_getUserDataPtr(Msg msg, void** data_p,
                                                    zorClient_uint32_t* size_p) {
    return getBytes(msg, PartId::USER_DATA, data_p, size_p, __func__, "user data");
}

}  // extern "C"
