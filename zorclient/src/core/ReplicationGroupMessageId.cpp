#include "core/ReplicationGroupMessageId.h"

#include <strings.h>
#include <cstdio>
#include <cstring>

#include "core/FieldCodec.h"

namespace zorvane::zorclient {

namespace {

constexpr char PREFIX[] = "rg1:";
constexpr std::size_t PREFIX_LENGTH = sizeof PREFIX - 1;
constexpr std::size_t DIGITS = 16;

bool parseHex(const char* text_p, std::uint64_t* value_p) noexcept {
    std::uint64_t value = 0;
    for (std::size_t i = 0; i < DIGITS; ++i) {
        const char c = text_p[i];
        int digit;
        if (c >= '0' && c <= '9') {
            digit = c - '0';
        } else if (c >= 'a' && c <= 'f') {
            digit = c - 'a' + 10;
        } else if (c >= 'A' && c <= 'F') {
            digit = c - 'A' + 10;
        } else {
            return false;
        }
        value = (value << 4) | static_cast<std::uint64_t>(digit);
    }
    *value_p = value;
    return true;
}

}  // namespace

zorClient_replicationGroupMessageId_t ReplicationGroupMessageId::make(
    std::uint64_t origin, std::uint64_t position) noexcept {
    zorClient_replicationGroupMessageId_t id;
    FieldCodec::putBigEndian(id.bytes, origin, 8);
    FieldCodec::putBigEndian(id.bytes + 8, position, 8);
    return id;
}

std::uint64_t ReplicationGroupMessageId::origin(
    const zorClient_replicationGroupMessageId_t& id) noexcept {
    return FieldCodec::getBigEndian(id.bytes, 8);
}

std::uint64_t ReplicationGroupMessageId::position(
    const zorClient_replicationGroupMessageId_t& id) noexcept {
    return FieldCodec::getBigEndian(id.bytes + 8, 8);
}

void ReplicationGroupMessageId::format(const zorClient_replicationGroupMessageId_t& id,
                                       char* buffer_p) noexcept {
    std::snprintf(buffer_p, TEXT_LENGTH + 1, "%s%016llx:%016llx", PREFIX,
                  static_cast<unsigned long long>(origin(id)),
                  static_cast<unsigned long long>(position(id)));
}

bool ReplicationGroupMessageId::parse(const char* text_p,
                                      zorClient_replicationGroupMessageId_t* id_p) noexcept {
    std::uint64_t originValue = 0;
    std::uint64_t positionValue = 0;
    if (std::strlen(text_p) != TEXT_LENGTH || strncasecmp(text_p, PREFIX, PREFIX_LENGTH) != 0 ||
        !parseHex(text_p + PREFIX_LENGTH, &originValue) || text_p[PREFIX_LENGTH + DIGITS] != ':' ||
        !parseHex(text_p + PREFIX_LENGTH + DIGITS + 1, &positionValue)) {
        return false;
    }
    *id_p = make(originValue, positionValue);
    return true;
}

}  // namespace zorvane::zorclient
