#include "core/FieldCodec.h"

#include <cstring>

namespace zorvane::zorclient {

namespace {

constexpr int CONTAINER_LENGTH_BYTES = 4;

bool hasValidValue(const FieldCodec::RawField& field) noexcept {
    const int fixed = FieldCodec::fixedValueSize(field.code);
    if (fixed >= 0) {
        return field.valueSize == static_cast<std::uint32_t>(fixed);
    }
    switch (field.code) {
        case ZORCLIENT_STRING:
            return field.valueSize >= 1 && field.value_p[field.valueSize - 1] == 0;
        case ZORCLIENT_DESTINATION:
            return field.valueSize >= 2 && field.value_p[0] <= 1 &&
                   field.value_p[field.valueSize - 1] == 0;
        default:  // byte arrays, QWF, containers (checked as they are walked), unknown types
            return true;
    }
}

}  // namespace

std::size_t FieldCodec::fieldSize(std::size_t valueSize) noexcept {
    for (int lengthBytes = 1; lengthBytes <= 4; ++lengthBytes) {
        const std::uint64_t total = 1u + static_cast<std::uint64_t>(lengthBytes) + valueSize;
        const std::uint64_t limit = (std::uint64_t{1} << (8 * lengthBytes)) - 1;
        if (total <= limit) {
            return static_cast<std::size_t>(total);
        }
    }
    return 0;
}

std::uint8_t* FieldCodec::writeHeader(std::uint8_t* out_p, std::uint8_t code,
                                      std::size_t valueSize) noexcept {
    const std::size_t total = fieldSize(valueSize);
    const int lengthBytes = static_cast<int>(total - valueSize - 1);
    out_p[0] = static_cast<std::uint8_t>((code << 2) | (lengthBytes - 1));
    putBigEndian(out_p + 1, total, lengthBytes);
    return out_p + 1 + lengthBytes;
}

void FieldCodec::writeContainerHeader(std::uint8_t* out_p, std::uint8_t code,
                                      std::uint32_t size) noexcept {
    out_p[0] = static_cast<std::uint8_t>((code << 2) | (CONTAINER_LENGTH_BYTES - 1));
    putBigEndian(out_p + 1, size, CONTAINER_LENGTH_BYTES);
}

bool FieldCodec::isGrowableContainer(const std::uint8_t* header_p, std::size_t available,
                                     std::uint8_t code) noexcept {
    return available >= CONTAINER_HEADER_SIZE &&
           header_p[0] == static_cast<std::uint8_t>((code << 2) | (CONTAINER_LENGTH_BYTES - 1));
}

FieldCodec::Result FieldCodec::read(const std::uint8_t* p_p, std::size_t available,
                                    RawField* field_p) noexcept {
    if (available == 0) {
        return Result::END;
    }
    const int lengthBytes = (p_p[0] & 3) + 1;
    if (available < static_cast<std::size_t>(1 + lengthBytes)) {
        return Result::MALFORMED;
    }
    const std::uint64_t size = getBigEndian(p_p + 1, lengthBytes);
    if (size < static_cast<std::uint64_t>(1 + lengthBytes) || size > available) {
        return Result::MALFORMED;
    }
    field_p->code = static_cast<std::uint8_t>(p_p[0] >> 2);
    field_p->begin_p = p_p;
    field_p->size = static_cast<std::uint32_t>(size);
    field_p->value_p = p_p + 1 + lengthBytes;
    field_p->valueSize =
        static_cast<std::uint32_t>(size) - 1 - static_cast<std::uint32_t>(lengthBytes);
    if (isKnownCode(field_p->code) && !hasValidValue(*field_p)) {
        return Result::MALFORMED;
    }
    return Result::OK;
}

bool FieldCodec::toPublicField(const RawField& raw, zorClient_field_t* field_p) noexcept {
    std::memset(field_p, 0, sizeof *field_p);
    field_p->length = raw.valueSize;
    zorClient_fieldValue_t& value = field_p->value;
    const std::uint8_t* v_p = raw.value_p;
    if (!isKnownCode(raw.code)) {
        field_p->type = ZORCLIENT_UNKNOWN;
        field_p->length = raw.size;
        value.bytes = raw.begin_p;
        return true;
    }
    field_p->type = static_cast<zorClient_fieldType_t>(raw.code);
    switch (raw.code) {
        case ZORCLIENT_BOOL:
            value.boolean = v_p[0] != 0 ? 1 : 0;
            break;
        case ZORCLIENT_UINT8:
            value.uint8 = v_p[0];
            break;
        case ZORCLIENT_INT8:
            value.int8 = static_cast<zorClient_int8_t>(v_p[0]);
            break;
        case ZORCLIENT_CHAR:
            value.char8 = static_cast<char>(v_p[0]);
            break;
        case ZORCLIENT_UINT16:
            value.uint16 = static_cast<zorClient_uint16_t>(getBigEndian(v_p, 2));
            break;
        case ZORCLIENT_INT16:
            value.int16 = static_cast<zorClient_int16_t>(getBigEndian(v_p, 2));
            break;
        case ZORCLIENT_UINT32:
        case ZORCLIENT_WCHAR:
            value.uint32 = static_cast<zorClient_uint32_t>(getBigEndian(v_p, 4));
            break;
        case ZORCLIENT_INT32:
            value.int32 = static_cast<zorClient_int32_t>(getBigEndian(v_p, 4));
            break;
        case ZORCLIENT_UINT64:
            value.uint64 = getBigEndian(v_p, 8);
            break;
        case ZORCLIENT_INT64:
            value.int64 = static_cast<zorClient_int64_t>(getBigEndian(v_p, 8));
            break;
        case ZORCLIENT_FLOAT: {
            const auto bits = static_cast<std::uint32_t>(getBigEndian(v_p, 4));
            std::memcpy(&value.float32, &bits, sizeof bits);
            break;
        }
        case ZORCLIENT_DOUBLE: {
            const std::uint64_t bits = getBigEndian(v_p, 8);
            std::memcpy(&value.float64, &bits, sizeof bits);
            break;
        }
        case ZORCLIENT_STRING:
            value.string = reinterpret_cast<const char*>(v_p);
            break;
        case ZORCLIENT_BYTEARRAY:
        case ZORCLIENT_QWF:
            value.bytes = v_p;
            break;
        case ZORCLIENT_DESTINATION:
            // Read back as the plain family: a temporary topic is a topic to a receiver.
            value.dest.destType =
                v_p[0] == 0 ? ZORCLIENT_TOPIC_DESTINATION : ZORCLIENT_QUEUE_DESTINATION;
            value.dest.dest = reinterpret_cast<const char*>(v_p + 1);
            field_p->length = raw.valueSize - 1;
            break;
        case ZORCLIENT_MAP:
        case ZORCLIENT_STREAM:
            field_p->length = raw.size;
            value.map = nullptr;
            break;
        default:  // ZORCLIENT_NULL
            break;
    }
    return true;
}

bool FieldCodec::isSingleField(const std::uint8_t* bytes_p, std::size_t size) noexcept {
    RawField field;
    return read(bytes_p, size, &field) == Result::OK && field.size == size;
}

}  // namespace zorvane::zorclient
