// Container entry points that read: walks, fields by name (or the next stream entry), typed
// getters, sub-containers and the encoded size.
#include <cstring>

#include "api/LastError.h"
#include "api/MessageHandles.h"
#include "api/RecordArgs.h"

using namespace zorvane::zorclient;

namespace {

using Handle = zorClient_opaqueContainer_pt;
using Value = zorClient_fieldValue_t;

const char* typeName(zorClient_fieldType_t type) noexcept {
    static const char* const names_s[] = {"bool",   "uint8",      "int8",        "uint16", "int16",
                                          "uint32", "int32",      "uint64",      "int64",  "wchar",
                                          "string", "byte array", "float",       "double", "map",
                                          "stream", "null",       "destination", "QWF",    "char"};
    return type >= ZORCLIENT_BOOL && type <= ZORCLIENT_CHAR ? names_s[type] : "unknown field";
}

zorClient_returnCode_t checkField(zorClient_field_t* field_p, size_t fieldSize,
                                  const char* function_p) {
    return checkRecord(field_p, "field_p", fieldSize, "fieldSize", "zorClient_field_t", function_p);
}

// Reads field name_p (a stream's next entry when null) and checks its type. A char field also
// reads as a wide char, and a wide char below 256 as a char: the two differ in width only.
zorClient_returnCode_t readTyped(Container& c, const char* name_p, zorClient_fieldType_t wanted,
                                 zorClient_field_t* field_p, const char* function_p) {
    const zorClient_returnCode_t rc = c.find(function_p, name_p, field_p);
    if (rc != ZORCLIENT_OK) {
        return rc;
    }
    if (field_p->type == wanted) {
        return ZORCLIENT_OK;
    }
    if (wanted == ZORCLIENT_WCHAR && field_p->type == ZORCLIENT_CHAR) {
        field_p->value.wchar = static_cast<unsigned char>(field_p->value.char8);
        return ZORCLIENT_OK;
    }
    if (wanted == ZORCLIENT_CHAR && field_p->type == ZORCLIENT_WCHAR &&
        field_p->value.wchar < 256) {
        field_p->value.char8 = static_cast<char>(field_p->value.wchar);
        return ZORCLIENT_OK;
    }
    if (field_p->type == ZORCLIENT_MAP || field_p->type == ZORCLIENT_STREAM) {
        // Not what was asked for: the view made for it goes at once.
        Container::close(Container::lookup(field_p->value.map));
    }
    return LastError::fail(ZORCLIENT_SUBCODE_FIELD_TYPE_MISMATCH,
                           "%s: field '%s' is a %s, not a %s", function_p,
                           name_p != nullptr ? name_p : "(next stream entry)",
                           typeName(field_p->type), typeName(wanted));
}

// Reads the field of type Wanted into *value_p from union member Member of its value.
template <zorClient_fieldType_t Wanted, auto Member, typename Out>
zorClient_returnCode_t getTyped(Handle container, Out* value_p, const char* name_p,
                                const char* function_p) {
    if (value_p == nullptr) {
        return LastError::failNullArgument(function_p, "value_p");
    }
    return withContainer(container, function_p, [&](Container& c) {
        zorClient_field_t field;
        const zorClient_returnCode_t rc = readTyped(c, name_p, Wanted, &field, function_p);
        if (rc == ZORCLIENT_OK) {
            *value_p = field.value.*Member;
        }
        return rc;
    });
}

}  // namespace

extern "C" {

zorClient_bool_t zorClient_container_hasNextField(Handle container) {
    const Container* c = containerOf(container, __func__);
    return c != nullptr && c->hasNext() ? 1 : 0;
}

zorClient_returnCode_t zorClient_container_getNextField(Handle container,
                                                        zorClient_field_t* field_p,
                                                        size_t fieldSize, const char** name_p) {
    zorClient_returnCode_t rc = checkField(field_p, fieldSize, __func__);
    if (rc != ZORCLIENT_OK) {
        return rc;
    }
    return withContainer(container, __func__,
                         [&](Container& c) { return c.next(__func__, field_p, name_p); });
}

zorClient_returnCode_t zorClient_container_getField(Handle container, zorClient_field_t* field_p,
                                                    size_t fieldSize, const char* name_p) {
    zorClient_returnCode_t rc = checkField(field_p, fieldSize, __func__);
    if (rc != ZORCLIENT_OK) {
        return rc;
    }
    return withContainer(container, __func__,
                         [&](Container& c) { return c.find(__func__, name_p, field_p); });
}

zorClient_returnCode_t zorClient_container_getSize(Handle container, size_t* size_p) {
    if (size_p == nullptr) {
        return LastError::failNullArgument(__func__, "size_p");
    }
    return withContainer(container, __func__, [&](Container& c) {
        const std::uint8_t* bytes_p = nullptr;
        std::uint32_t size = 0;
        if (!c.encoding(&bytes_p, &size)) {
            return LastError::fail(ZORCLIENT_SUBCODE_MALFORMED_DATA,
                                   "%s: the container's bytes are not well formed", __func__);
        }
        *size_p = size;
        return ZORCLIENT_OK;
    });
}

zorClient_returnCode_t zorClient_container_getSubMap(Handle c, Handle* subContainer_p,
                                                     const char* name_p) {
    return getTyped<ZORCLIENT_MAP, &Value::map>(c, subContainer_p, name_p, __func__);
}

zorClient_returnCode_t zorClient_container_getSubStream(Handle c, Handle* subContainer_p,
                                                        const char* name_p) {
    return getTyped<ZORCLIENT_STREAM, &Value::map>(c, subContainer_p, name_p, __func__);
}

zorClient_returnCode_t zorClient_container_getBoolean(Handle c, zorClient_bool_t* value_p,
                                                      const char* name_p) {
    return getTyped<ZORCLIENT_BOOL, &Value::boolean>(c, value_p, name_p, __func__);
}
zorClient_returnCode_t zorClient_container_getUint8(Handle c, zorClient_uint8_t* value_p,
                                                    const char* name_p) {
    return getTyped<ZORCLIENT_UINT8, &Value::uint8>(c, value_p, name_p, __func__);
}
zorClient_returnCode_t zorClient_container_getInt8(Handle c, zorClient_int8_t* value_p,
                                                   const char* name_p) {
    return getTyped<ZORCLIENT_INT8, &Value::int8>(c, value_p, name_p, __func__);
}
zorClient_returnCode_t zorClient_container_getUint16(Handle c, zorClient_uint16_t* value_p,
                                                     const char* name_p) {
    return getTyped<ZORCLIENT_UINT16, &Value::uint16>(c, value_p, name_p, __func__);
}
zorClient_returnCode_t zorClient_container_getInt16(Handle c, zorClient_int16_t* value_p,
                                                    const char* name_p) {
    return getTyped<ZORCLIENT_INT16, &Value::int16>(c, value_p, name_p, __func__);
}
zorClient_returnCode_t zorClient_container_getUint32(Handle c, zorClient_uint32_t* value_p,
                                                     const char* name_p) {
    return getTyped<ZORCLIENT_UINT32, &Value::uint32>(c, value_p, name_p, __func__);
}
zorClient_returnCode_t zorClient_container_getInt32(Handle c, zorClient_int32_t* value_p,
                                                    const char* name_p) {
    return getTyped<ZORCLIENT_INT32, &Value::int32>(c, value_p, name_p, __func__);
}
zorClient_returnCode_t zorClient_container_getUint64(Handle c, zorClient_uint64_t* value_p,
                                                     const char* name_p) {
    return getTyped<ZORCLIENT_UINT64, &Value::uint64>(c, value_p, name_p, __func__);
}
zorClient_returnCode_t zorClient_container_getInt64(Handle c, zorClient_int64_t* value_p,
                                                    const char* name_p) {
    return getTyped<ZORCLIENT_INT64, &Value::int64>(c, value_p, name_p, __func__);
}
zorClient_returnCode_t zorClient_container_getChar(Handle c, char* value_p, const char* name_p) {
    return getTyped<ZORCLIENT_CHAR, &Value::char8>(c, value_p, name_p, __func__);
}
zorClient_returnCode_t zorClient_container_getWchar(Handle c, zorClient_wchar_t* value_p,
                                                    const char* name_p) {
    return getTyped<ZORCLIENT_WCHAR, &Value::wchar>(c, value_p, name_p, __func__);
}
zorClient_returnCode_t zorClient_container_getFloat(Handle c, float* value_p, const char* name_p) {
    return getTyped<ZORCLIENT_FLOAT, &Value::float32>(c, value_p, name_p, __func__);
}
zorClient_returnCode_t zorClient_container_getDouble(Handle c, double* value_p,
                                                     const char* name_p) {
    return getTyped<ZORCLIENT_DOUBLE, &Value::float64>(c, value_p, name_p, __func__);
}
zorClient_returnCode_t zorClient_container_getStringPtr(Handle c, const char** value_p,
                                                        const char* name_p) {
    return getTyped<ZORCLIENT_STRING, &Value::string>(c, value_p, name_p, __func__);
}

zorClient_returnCode_t zorClient_container_getString(Handle c, char* buffer_p, size_t bufferSize,
                                                     const char* name_p) {
    if (buffer_p == nullptr) {
        return LastError::failNullArgument(__func__, "buffer_p");
    }
    return withContainer(c, __func__, [&](Container& container) {
        zorClient_field_t field;
        const zorClient_returnCode_t rc =
            readTyped(container, name_p, ZORCLIENT_STRING, &field, __func__);
        if (rc != ZORCLIENT_OK) {
            return rc;
        }
        if (field.length > bufferSize) {
            return LastError::fail(ZORCLIENT_SUBCODE_INSUFFICIENT_SPACE,
                                   "%s: the string needs %u bytes, the buffer has %zu", __func__,
                                   field.length, bufferSize);
        }
        std::memcpy(buffer_p, field.value.string, field.length);
        return ZORCLIENT_OK;
    });
}

zorClient_returnCode_t zorClient_container_getByteArrayPtr(Handle c, zorClient_uint8_t** array_p,
                                                           zorClient_uint32_t* length_p,
                                                           const char* name_p) {
    if (array_p == nullptr || length_p == nullptr) {
        return LastError::failNullArgument(__func__, array_p == nullptr ? "array_p" : "length_p");
    }
    return withContainer(c, __func__, [&](Container& container) {
        zorClient_field_t field;
        const zorClient_returnCode_t rc =
            readTyped(container, name_p, ZORCLIENT_BYTEARRAY, &field, __func__);
        if (rc == ZORCLIENT_OK) {
            *array_p = const_cast<zorClient_uint8_t*>(field.value.bytes);
            *length_p = field.length;
        }
        return rc;
    });
}

zorClient_returnCode_t zorClient_container_getDestination(Handle c,
                                                          zorClient_destination_t* destination_p,
                                                          size_t destSize, const char* name_p) {
    const zorClient_returnCode_t rc = checkRecord(destination_p, "destination_p", destSize,
                                                  "destSize", "zorClient_destination_t", __func__);
    if (rc != ZORCLIENT_OK) {
        return rc;
    }
    return getTyped<ZORCLIENT_DESTINATION, &Value::dest>(c, destination_p, name_p, __func__);
}

zorClient_returnCode_t zorClient_container_getNull(Handle c, const char* name_p) {
    return withContainer(c, __func__, [&](Container& container) {
        zorClient_field_t field;
        return readTyped(container, name_p, ZORCLIENT_NULL, &field, __func__);
    });
}

}  // extern "C"
