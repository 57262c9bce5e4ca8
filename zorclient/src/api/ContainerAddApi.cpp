// Container entry points that add fields, open sub-containers and create containers apart.
#include <cstring>

#include "api/LastError.h"
#include "api/MessageHandles.h"
#include "api/RecordArgs.h"

using namespace zorvane::zorclient;

namespace {

using Handle = zorClient_opaqueContainer_pt;

// A number of type Code in the width the encoding gives that type (a float or double as its
// bits).
template <zorClient_fieldType_t Code, typename Value>
zorClient_returnCode_t addNumber(Handle container, Value value, const char* name_p,
                                 const char* function_p) {
    constexpr int width = FieldCodec::fixedValueSize(Code);
    static_assert(width > 0 && width <= 8, "not a fixed-size number type");
    return withContainer(container, function_p, [&](Container& c) {
        std::uint64_t bits = 0;
        if constexpr (std::is_floating_point_v<Value>) {
            if constexpr (sizeof(Value) == 4) {
                std::uint32_t narrow = 0;
                std::memcpy(&narrow, &value, sizeof narrow);
                bits = narrow;
            } else {
                std::memcpy(&bits, &value, sizeof bits);
            }
        } else {
            bits = static_cast<std::uint64_t>(value);
        }
        std::uint8_t encoded[8];
        FieldCodec::putBigEndian(encoded, bits, width);
        return c.add(function_p, name_p, Code, encoded, static_cast<std::size_t>(width));
    });
}

zorClient_returnCode_t addBytes(Handle container, std::uint8_t code, const void* data_p,
                                zorClient_uint32_t length, const char* name_p,
                                const char* function_p) {
    if (data_p == nullptr && length > 0) {
        return LastError::failNullArgument(function_p, "the bytes pointer");
    }
    return withContainer(container, function_p, [&](Container& c) {
        return c.add(function_p, name_p, code, data_p, length);
    });
}

zorClient_returnCode_t openSub(Handle container, Handle* sub_p, const char* name_p,
                               std::uint8_t kind, const char* function_p) {
    if (sub_p == nullptr) {
        return LastError::failNullArgument(function_p, "subContainer_p");
    }
    *sub_p = nullptr;
    return withContainer(container, function_p, [&](Container& c) {
        Container* sub = nullptr;
        const zorClient_returnCode_t rc = c.openSub(function_p, name_p, kind, &sub);
        if (rc == ZORCLIENT_OK) {
            *sub_p = sub->handle();
        }
        return rc;
    });
}

zorClient_returnCode_t createApart(Handle* container_p, char* buffer_p, size_t bufferSize,
                                   std::uint8_t kind, const char* function_p) {
    if (container_p == nullptr || buffer_p == nullptr) {
        return LastError::failNullArgument(function_p,
                                           container_p == nullptr ? "container_p" : "buffer_p");
    }
    *container_p = nullptr;
    if (bufferSize < FieldCodec::CONTAINER_HEADER_SIZE) {
        return LastError::fail(ZORCLIENT_SUBCODE_INSUFFICIENT_SPACE,
                               "%s: a buffer of %zu bytes cannot hold even an empty container "
                               "(%zu bytes)",
                               function_p, bufferSize, FieldCodec::CONTAINER_HEADER_SIZE);
    }
    const std::size_t capacity =
        bufferSize < FieldCodec::MAX_FIELD_SIZE ? bufferSize : FieldCodec::MAX_FIELD_SIZE;
    return guarded(function_p, [&]() -> zorClient_returnCode_t {
        *container_p =
            Container::createInBuffer(reinterpret_cast<std::uint8_t*>(buffer_p), capacity, kind)
                ->handle();
        return ZORCLIENT_OK;
    });
}

}  // namespace

extern "C" {

zorClient_returnCode_t zorClient_container_addBoolean(Handle c, zorClient_bool_t value,
                                                      const char* name_p) {
    return addNumber<ZORCLIENT_BOOL>(c, value != 0 ? 1 : 0, name_p, __func__);
}
zorClient_returnCode_t zorClient_container_addUint8(Handle c, zorClient_uint8_t value,
                                                    const char* name_p) {
    return addNumber<ZORCLIENT_UINT8>(c, value, name_p, __func__);
}
zorClient_returnCode_t zorClient_container_addInt8(Handle c, zorClient_int8_t value,
                                                   const char* name_p) {
    return addNumber<ZORCLIENT_INT8>(c, value, name_p, __func__);
}
zorClient_returnCode_t zorClient_container_addUint16(Handle c, zorClient_uint16_t value,
                                                     const char* name_p) {
    return addNumber<ZORCLIENT_UINT16>(c, value, name_p, __func__);
}
zorClient_returnCode_t zorClient_container_addInt16(Handle c, zorClient_int16_t value,
                                                    const char* name_p) {
    return addNumber<ZORCLIENT_INT16>(c, value, name_p, __func__);
}
zorClient_returnCode_t zorClient_container_addUint32(Handle c, zorClient_uint32_t value,
                                                     const char* name_p) {
    return addNumber<ZORCLIENT_UINT32>(c, value, name_p, __func__);
}
zorClient_returnCode_t zorClient_container_addInt32(Handle c, zorClient_int32_t value,
                                                    const char* name_p) {
    return addNumber<ZORCLIENT_INT32>(c, value, name_p, __func__);
}
zorClient_returnCode_t zorClient_container_addUint64(Handle c, zorClient_uint64_t value,
                                                     const char* name_p) {
    return addNumber<ZORCLIENT_UINT64>(c, value, name_p, __func__);
}
zorClient_returnCode_t zorClient_container_addInt64(Handle c, zorClient_int64_t value,
                                                    const char* name_p) {
    return addNumber<ZORCLIENT_INT64>(c, value, name_p, __func__);
}
zorClient_returnCode_t zorClient_container_addChar(Handle c, char value, const char* name_p) {
    return addNumber<ZORCLIENT_CHAR>(c, static_cast<unsigned char>(value), name_p, __func__);
}
zorClient_returnCode_t zorClient_container_addWchar(Handle c, zorClient_wchar_t value,
                                                    const char* name_p) {
    return addNumber<ZORCLIENT_WCHAR>(c, value, name_p, __func__);
}
zorClient_returnCode_t zorClient_container_addFloat(Handle c, float value, const char* name_p) {
    return addNumber<ZORCLIENT_FLOAT>(c, value, name_p, __func__);
}
zorClient_returnCode_t zorClient_container_addDouble(Handle c, double value, const char* name_p) {
    return addNumber<ZORCLIENT_DOUBLE>(c, value, name_p, __func__);
}

zorClient_returnCode_t zorClient_container_addString(Handle c, const char* value_p,
                                                     const char* name_p) {
    if (value_p == nullptr) {
        return LastError::failNullArgument(__func__, "value_p");
    }
    return withContainer(c, __func__, [&](Container& container) {
        return container.add(__func__, name_p, ZORCLIENT_STRING, value_p, std::strlen(value_p) + 1);
    });
}

zorClient_returnCode_t zorClient_container_addByteArray(Handle c, const zorClient_uint8_t* array_p,
                                                        zorClient_uint32_t length,
                                                        const char* name_p) {
    return addBytes(c, ZORCLIENT_BYTEARRAY, array_p, length, name_p, __func__);
}

zorClient_returnCode_t zorClient_container_addQwf(Handle c, const zorClient_uint8_t* data_p,
                                                  zorClient_uint32_t length, const char* name_p) {
    return addBytes(c, ZORCLIENT_QWF, data_p, length, name_p, __func__);
}

zorClient_returnCode_t zorClient_container_addNull(Handle c, const char* name_p) {
    return withContainer(c, __func__, [&](Container& container) {
        return container.add(__func__, name_p, ZORCLIENT_NULL, nullptr, 0);
    });
}

zorClient_returnCode_t zorClient_container_addDestination(
    Handle c, const zorClient_destination_t* destination_p, size_t destSize, const char* name_p) {
    const zorClient_returnCode_t rc = checkRecord(destination_p, "destination_p", destSize,
                                                  "destSize", "zorClient_destination_t", __func__);
    if (rc != ZORCLIENT_OK) {
        return rc;
    }
    if (destination_p->dest == nullptr) {
        return LastError::fail(ZORCLIENT_SUBCODE_PARAM_NULL_PTR, "%s: destination_p->dest is null",
                               __func__);
    }
    std::uint8_t family;
    switch (destination_p->destType) {
        case ZORCLIENT_TOPIC_DESTINATION:
        case ZORCLIENT_TOPIC_TEMP_DESTINATION:
            family = 0;
            break;
        case ZORCLIENT_QUEUE_DESTINATION:
        case ZORCLIENT_QUEUE_TEMP_DESTINATION:
            family = 1;
            break;
        default:
            return LastError::fail(ZORCLIENT_SUBCODE_PARAM_OUT_OF_RANGE,
                                   "%s: destination type %d is not a topic or queue type", __func__,
                                   static_cast<int>(destination_p->destType));
    }
    return withContainer(c, __func__, [&](Container& container) {
        return container.add(__func__, name_p, ZORCLIENT_DESTINATION, &family, 1,
                             destination_p->dest, std::strlen(destination_p->dest) + 1);
    });
}

zorClient_returnCode_t zorClient_container_addUnknownField(Handle c,
                                                           const zorClient_uint8_t* field_p,
                                                           zorClient_uint32_t length,
                                                           const char* name_p) {
    if (field_p == nullptr) {
        return LastError::failNullArgument(__func__, "field_p");
    }
    return withContainer(c, __func__, [&](Container& container) {
        return container.addEncoded(__func__, name_p, field_p, length);
    });
}

zorClient_returnCode_t zorClient_container_openSubMap(Handle c, Handle* subContainer_p,
                                                      const char* name_p) {
    return openSub(c, subContainer_p, name_p, ZORCLIENT_MAP, __func__);
}

zorClient_returnCode_t zorClient_container_openSubStream(Handle c, Handle* subContainer_p,
                                                         const char* name_p) {
    return openSub(c, subContainer_p, name_p, ZORCLIENT_STREAM, __func__);
}

zorClient_returnCode_t zorClient_container_createMap(Handle* container_p, char* buffer_p,
                                                     size_t bufferSize) {
    return createApart(container_p, buffer_p, bufferSize, ZORCLIENT_MAP, __func__);
}

zorClient_returnCode_t zorClient_container_createStream(Handle* container_p, char* buffer_p,
                                                        size_t bufferSize) {
    return createApart(container_p, buffer_p, bufferSize, ZORCLIENT_STREAM, __func__);
}

zorClient_returnCode_t zorClient_container_closeMapStream(Handle* container_p) {
    if (container_p == nullptr) {
        return LastError::failNullArgument(__func__, "container_p");
    }
    Container* c = containerOf(*container_p, __func__);
    if (c == nullptr) {
        return ZORCLIENT_FAIL;
    }
    Container::close(c);
    *container_p = nullptr;
    return ZORCLIENT_OK;
}

}  // extern "C"
