// Container entry points that read: walks, fields by name (or the next stream entry), typed
// getters, sub-containers and the encoded size.
#include <cstring>

#include "api/LastError.h"
#include "api/MessageHandles.h"

using namespace zorvane::zorclient;

namespace {

using Handle = zorClient_opaqueContainer_pt;

const char* typeName(zorClient_fieldType_t type) noexcept {
    static const char* const names_s[] = {"bool",   "uint8",      "int8",        "uint16", "int16",
                                          "uint32", "int32",      "uint64",      "int64",  "wchar",
                                          "string", "byte array", "float",       "double", "map",
                                          "stream", "null",       "destination", "QWF",    "char"};
    return type >= ZORCLIENT_BOOL && type <= ZORCLIENT_CHAR ? names_s[type] : "unknown field";
}

zorClient_returnCode_t checkField(zorClient_field_t* field_p, size_t fieldSize,
                                  const char* function_p) {
    if (field_p == nullptr) {
        return LastError::failNullArgument(function_p, "field_p");
    }
    if (fieldSize < sizeof(zorClient_field_t)) {
        return LastError::fail(ZORCLIENT_SUBCODE_INSUFFICIENT_SPACE,
                               "%s: fieldSize %zu is less than sizeof(zorClient_field_t) %zu",
                               function_p, fieldSize, sizeof(zorClient_field_t));
    }
    return ZORCLIENT_OK;
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

template <typename Value, typename Extract>
zorClient_returnCode_t getTyped(Handle container, Value* value_p, const char* name_p,
                                zorClient_fieldType_t wanted, const char* function_p,
                                Extract extract) {
    if (value_p == nullptr) {
        return LastError::failNullArgument(function_p, "value_p");
    }
    return withContainer(container, function_p, [&](Container& c) {
        zorClient_field_t field;
        const zorClient_returnCode_t rc = readTyped(c, name_p, wanted, &field, function_p);
        if (rc == ZORCLIENT_OK) {
            *value_p = extract(field.value);
        }
        return rc;
    });
}

zorClient_returnCode_t getSub(Handle container, Handle* sub_p, const char* name_p,
                              zorClient_fieldType_t wanted, const char* function_p) {
    return getTyped(container, sub_p, name_p, wanted, function_p,
                    [](const zorClient_fieldValue_t& v) { return v.map; });
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
    return getSub(c, subContainer_p, name_p, ZORCLIENT_MAP, __func__);
}

zorClient_returnCode_t zorClient_container_getSubStream(Handle c, Handle* subContainer_p,
                                                        const char* name_p) {
    return getSub(c, subContainer_p, name_p, ZORCLIENT_STREAM, __func__);
}

zorClient_returnCode_t zorClient_container_getBoolean(Handle c, zorClient_bool_t* value_p,
                                                      const char* name_p) {
    return getTyped(c, value_p, name_p, ZORCLIENT_BOOL, __func__,
                    [](const zorClient_fieldValue_t& v) { return v.boolean; });
}
zorClient_returnCode_t zorClient_container_getUint8(Handle c, zorClient_uint8_t* value_p,
                                                    const char* name_p) {
    return getTyped(c, value_p, name_p, ZORCLIENT_UINT8, __func__,
                    [](const zorClient_fieldValue_t& v) { return v.uint8; });
}
zorClient_returnCode_t zorClient_container_getInt8(Handle c, zorClient_int8_t* value_p,
                                                   const char* name_p) {
    return getTyped(c, value_p, name_p, ZORCLIENT_INT8, __func__,
                    [](const zorClient_fieldValue_t& v) { return v.int8; });
}
zorClient_returnCode_t zorClient_container_getUint16(Handle c, zorClient_uint16_t* value_p,
                                                     const char* name_p) {
    return getTyped(c, value_p, name_p, ZORCLIENT_UINT16, __func__,
                    [](const zorClient_fieldValue_t& v) { return v.uint16; });
}
zorClient_returnCode_t zorClient_container_getInt16(Handle c, zorClient_int16_t* value_p,
                                                    const char* name_p) {
    return getTyped(c, value_p, name_p, ZORCLIENT_INT16, __func__,
                    [](const zorClient_fieldValue_t& v) { return v.int16; });
}
zorClient_returnCode_t zorClient_container_getUint32(Handle c, zorClient_uint32_t* value_p,
                                                     const char* name_p) {
    return getTyped(c, value_p, name_p, ZORCLIENT_UINT32, __func__,
                    [](const zorClient_fieldValue_t& v) { return v.uint32; });
}
zorClient_returnCode_t zorClient_container_getInt32(Handle c, zorClient_int32_t* value_p,
                                                    const char* name_p) {
    return getTyped(c, value_p, name_p, ZORCLIENT_INT32, __func__,
                    [](const zorClient_fieldValue_t& v) { return v.int32; });
}
zorClient_returnCode_t zorClient_container_getUint64(Handle c, zorClient_uint64_t* value_p,
                                                     const char* name_p) {
    return getTyped(c, value_p, name_p, ZORCLIENT_UINT64, __func__,
                    [](const zorClient_fieldValue_t& v) { return v.uint64; });
}
zorClient_returnCode_t zorClient_container_getInt64(Handle c, zorClient_int64_t* value_p,
                                                    const char* name_p) {
    return getTyped(c, value_p, name_p, ZORCLIENT_INT64, __func__,
                    [](const zorClient_fieldValue_t& v) { return v.int64; });
}
zorClient_returnCode_t zorClient_container_getChar(Handle c, char* value_p, const char* name_p) {
    return getTyped(c, value_p, name_p, ZORCLIENT_CHAR, __func__,
                    [](const zorClient_fieldValue_t& v) { return v.char8; });
}
zorClient_returnCode_t zorClient_container_getWchar(Handle c, zorClient_wchar_t* value_p,
                                                    const char* name_p) {
    return getTyped(c, value_p, name_p, ZORCLIENT_WCHAR, __func__,
                    [](const zorClient_fieldValue_t& v) { return v.wchar; });
}
zorClient_returnCode_t zorClient_container_getFloat(Handle c, float* value_p, const char* name_p) {
    return getTyped(c, value_p, name_p, ZORCLIENT_FLOAT, __func__,
                    [](const zorClient_fieldValue_t& v) { return v.float32; });
}
zorClient_returnCode_t zorClient_container_getDouble(Handle c, double* value_p,
                                                     const char* name_p) {
    return getTyped(c, value_p, name_p, ZORCLIENT_DOUBLE, __func__,
                    [](const zorClient_fieldValue_t& v) { return v.float64; });
}
zorClient_returnCode_t zorClient_container_getStringPtr(Handle c, const char** value_p,
                                                        const char* name_p) {
    return getTyped(c, value_p, name_p, ZORCLIENT_STRING, __func__,
                    [](const zorClient_fieldValue_t& v) { return v.string; });
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
    if (destination_p == nullptr) {
        return LastError::failNullArgument(__func__, "destination_p");
    }
    if (destSize < sizeof(zorClient_destination_t)) {
        return LastError::fail(ZORCLIENT_SUBCODE_INSUFFICIENT_SPACE,
                               "%s: destSize %zu is less than sizeof(zorClient_destination_t) %zu",
                               __func__, destSize, sizeof(zorClient_destination_t));
    }
    return getTyped(c, destination_p, name_p, ZORCLIENT_DESTINATION, __func__,
                    [](const zorClient_fieldValue_t& v) { return v.dest; });
}

zorClient_returnCode_t zorClient_container_getNull(Handle c, const char* name_p) {
    return withContainer(c, __func__, [&](Container& container) {
        zorClient_field_t field;
        return readTyped(container, name_p, ZORCLIENT_NULL, &field, __func__);
    });
}

}  // extern "C"
