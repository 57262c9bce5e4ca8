// The encoding of container fields, as they travel in messages and as zorClient_container_getSize
// counts them. Every field is
//
//     tag (1 byte) | length (1 to 4 bytes, big-endian) | value
//
// where the tag holds the type code in its high 6 bits and the number of length bytes minus 1 in
// its low 2 bits, and the length counts the whole field: tag, length bytes and value. Writers use
// the fewest length bytes that hold the length, except for maps and streams, whose length is
// always 4 bytes (a 5-byte header) so that it can be patched in place while the container grows.
// Values: integers big-endian in their own width, bool 1 byte, char 1 byte, wchar 4 bytes, float
// and double IEEE big-endian, strings with their NUL, byte arrays and QWF raw, null empty, a
// destination 1 byte of type (0 topic, 1 queue) and the NUL-terminated name. A map holds pairs
// of a name (a string field) and a value field; a stream holds value fields.
//
// Type codes are the values of zorClient_fieldType_t (0..19). Any other code is a type this
// library does not know: such a field is carried byte for byte and read back as
// ZORCLIENT_UNKNOWN.
//
// Stateless; any thread.
#pragma once

#include <cstddef>
#include <cstdint>

#include "zorClient.h"

namespace zorvane::zorclient {

class FieldCodec {
  public:
    static constexpr std::size_t CONTAINER_HEADER_SIZE = 5;
    static constexpr std::size_t MAX_FIELD_SIZE = 0xFFFFFFFFu;

    // One field as found in an encoding; pointers into it.
    struct RawField {
        std::uint8_t code = 0;
        const std::uint8_t* begin_p = nullptr;  // the tag
        std::uint32_t size = 0;                 // the whole field
        const std::uint8_t* value_p = nullptr;
        std::uint32_t valueSize = 0;
    };

    enum class Result { OK, END, MALFORMED };

    static bool isKnownCode(std::uint8_t code) noexcept { return code <= ZORCLIENT_CHAR; }

    // The value size a known fixed-size type must have; -1 for types of any size.
    static constexpr int fixedValueSize(std::uint8_t code) noexcept {
        switch (code) {
            case ZORCLIENT_BOOL:
            case ZORCLIENT_UINT8:
            case ZORCLIENT_INT8:
            case ZORCLIENT_CHAR:
                return 1;
            case ZORCLIENT_UINT16:
            case ZORCLIENT_INT16:
                return 2;
            case ZORCLIENT_UINT32:
            case ZORCLIENT_INT32:
            case ZORCLIENT_WCHAR:
            case ZORCLIENT_FLOAT:
                return 4;
            case ZORCLIENT_UINT64:
            case ZORCLIENT_INT64:
            case ZORCLIENT_DOUBLE:
                return 8;
            case ZORCLIENT_NULL:
                return 0;
            default:
                return -1;
        }
    }

    // Size of a field with valueSize bytes of value; 0 when it cannot be encoded.
    static std::size_t fieldSize(std::size_t valueSize) noexcept;

    // Writes tag and length of a field of code with valueSize bytes of value (fieldSize() bytes
    // in all must be available); returns where the value goes.
    static std::uint8_t* writeHeader(std::uint8_t* out_p, std::uint8_t code,
                                     std::size_t valueSize) noexcept;

    // Writes a 5-byte container header of code (ZORCLIENT_MAP or ZORCLIENT_STREAM) and size.
    static void writeContainerHeader(std::uint8_t* out_p, std::uint8_t code,
                                     std::uint32_t size) noexcept;
    // Reads and rewrites the size of a 5-byte container header.
    static std::uint32_t containerSize(const std::uint8_t* header_p) noexcept {
        return static_cast<std::uint32_t>(getBigEndian(header_p + 1, 4));
    }
    static void setContainerSize(std::uint8_t* header_p, std::uint32_t size) noexcept {
        putBigEndian(header_p + 1, size, 4);
    }
    // True when header_p starts a container of code with a 4-byte length (one that can grow).
    static bool isGrowableContainer(const std::uint8_t* header_p, std::size_t available,
                                    std::uint8_t code) noexcept;

    // Reads the field at p_p of at most available bytes. END when available is 0; MALFORMED when
    // the field runs past available or a known type's value has the wrong shape.
    static Result read(const std::uint8_t* p_p, std::size_t available, RawField* field_p) noexcept;

    // Fills *field_p from a field read by read(): type, length (bytes of byte arrays, QWF and
    // unknown fields, strings with their NUL, the destination name with its NUL, the whole
    // encoding of a map or stream) and value, whose pointers point into the encoding. A MAP or
    // STREAM gets a null handle (containers make their own). Unknown codes give
    // ZORCLIENT_UNKNOWN with the whole field's bytes. Returns true.
    static bool toPublicField(const RawField& raw, zorClient_field_t* field_p) noexcept;

    // Checks that bytes_p holds exactly one field (as addUnknownField takes it).
    static bool isSingleField(const std::uint8_t* bytes_p, std::size_t size) noexcept;

    static void putBigEndian(std::uint8_t* out_p, std::uint64_t value, int bytes) noexcept {
        for (int i = bytes - 1; i >= 0; --i) {
            out_p[i] = static_cast<std::uint8_t>(value & 0xFF);
            value >>= 8;
        }
    }
    static std::uint64_t getBigEndian(const std::uint8_t* p_p, int bytes) noexcept {
        std::uint64_t value = 0;
        for (int i = 0; i < bytes; ++i) {
            value = (value << 8) | p_p[i];
        }
        return value;
    }
};

}  // namespace zorvane::zorclient
