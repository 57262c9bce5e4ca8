// Filling and checking a container from an element table.
#include <cerrno>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <string>

#include "client/zcore/CannedMessages.h"
#include "common/Log.h"

namespace zorvane::pubsub {

namespace {

constexpr std::size_t MAX_ARRAY_BYTES = 1024;

// The bytes of a byte array element, held on the stack: the tables are read
// again for every message built or checked, and that must not allocate.
struct ParsedBytes {
    zorClient_uint8_t data_m[MAX_ARRAY_BYTES];
    std::size_t size_m = 0;
    const zorClient_uint8_t* data() const { return data_m; }
    std::size_t size() const { return size_m; }
    void push_back(zorClient_uint8_t byte) { data_m[size_m++] = byte; }
};

// One element's value, read from its text.
struct Parsed {
    long long s = 0;
    unsigned long long u = 0;
    double d = 0;
    char c = 0;
    ParsedBytes bytes;
    zorClient_destination_t dest{ZORCLIENT_TOPIC_DESTINATION, nullptr};
};

int hexDigit(char ch) {
    if (ch >= '0' && ch <= '9')
        return ch - '0';
    if (ch >= 'a' && ch <= 'f')
        return ch - 'a' + 10;
    if (ch >= 'A' && ch <= 'F')
        return ch - 'A' + 10;
    return 0;  // not a digit: counts as 0
}

// False when the text is no value of its kind; the caller logs it.
bool parse(const sdkTestContainerElement& e, Parsed& out) {
    const char* text = e.value != nullptr ? e.value : "";
    char* end = nullptr;
    switch (e.type) {
        case API_BOOLEAN:
        case API_INT8:
        case API_INT16:
        case API_INT32:
            out.s = std::strtol(text, &end, 0);
            return *end == '\0';
        case API_UINT8:
        case API_UINT16:
        case API_UINT32:
            out.u = std::strtoul(text, &end, 0);
            return *end == '\0';
        case API_INT64:
            out.s = std::strtoll(text, &end, 0);
            return *end == '\0';
        case API_UINT64:
            out.u = std::strtoull(text, &end, 0);
            return *end == '\0';
        case API_FLOAT:
        case API_DOUBLE:
            out.d = std::strtod(text, &end);
            return *end == '\0';
        case API_CHAR:
        case API_WCHAR:
            out.c = text[0];
            return true;
        case API_ARRAYPTR: {
            const std::size_t len = std::strlen(text);
            if (len % 2 != 0) {
                LOG_ERROR("byte array string has odd length value %s", text);
            }
            for (std::size_t i = 0; i + 1 < len && out.bytes.size() < MAX_ARRAY_BYTES; i += 2) {
                out.bytes.push_back(
                    static_cast<zorClient_uint8_t>(hexDigit(text[i]) * 16 + hexDigit(text[i + 1])));
            }
            return true;
        }
        case API_DESTINATION:
            if (text[0] != '0' && text[0] != '1') {
                LOG_ERROR("Invalid destination string %s", text);
                return false;
            }
            out.dest.destType =
                text[0] == '0' ? ZORCLIENT_TOPIC_DESTINATION : ZORCLIENT_QUEUE_DESTINATION;
            out.dest.dest = text + 1;
            while (*out.dest.dest == ' ' || *out.dest.dest == '\t')
                ++out.dest.dest;
            return true;
        default:
            return true;
    }
}

std::string fieldName(int map, int fieldNo) {
    return map != 0 ? "field_" + std::to_string(fieldNo) : std::string();
}

}  // namespace

int fillContainer(zorClient_opaqueContainer_pt cont_p, int map,
                  const sdkTestContainerElement* elements) {
    int fieldNo = 0;
    for (const sdkTestContainerElement* e = elements; e->type != EOG_TYPE; ++e) {
        const std::string nameText = fieldName(map, fieldNo);
        const char* name_p = map != 0 ? nameText.c_str() : nullptr;
        if (e->type < API_BOOLEAN || e->type > API_NULL) {
            LOG_ERROR("Unrecognized element type %d", static_cast<int>(e->type));
            continue;
        }
        Parsed v;
        if (!parse(*e, v)) {
            if (e->type != API_DESTINATION) {
                LOG_ERROR("element type %d has bad value %s", static_cast<int>(e->type), e->value);
            }
            continue;
        }
        ++fieldNo;
        switch (e->type) {
            case API_BOOLEAN:
                if (zorClient_container_addBoolean(cont_p, v.s != 0 ? 1 : 0, name_p) !=
                    ZORCLIENT_OK)
                    LOG_ERROR("Unable to add Boolean %d", static_cast<int>(v.s));
                break;
            case API_UINT8:
                if (zorClient_container_addUint8(cont_p, static_cast<zorClient_uint8_t>(v.u),
                                                 name_p) != ZORCLIENT_OK)
                    LOG_ERROR("Unable to add Uint8 %d", static_cast<int>(v.u));
                break;
            case API_INT8:
                if (zorClient_container_addInt8(cont_p, static_cast<zorClient_int8_t>(v.s),
                                                name_p) != ZORCLIENT_OK)
                    LOG_ERROR("Unable to add Int8 %d", static_cast<int>(v.s));
                break;
            case API_UINT16:
                if (zorClient_container_addUint16(cont_p, static_cast<zorClient_uint16_t>(v.u),
                                                  name_p) != ZORCLIENT_OK)
                    LOG_ERROR("Unable to add Uint16 %d", static_cast<int>(v.u));
                break;
            case API_INT16:
                if (zorClient_container_addInt16(cont_p, static_cast<zorClient_int16_t>(v.s),
                                                 name_p) != ZORCLIENT_OK)
                    LOG_ERROR("Unable to add int16 %d", static_cast<int>(v.s));
                break;
            case API_UINT32:
                if (zorClient_container_addUint32(cont_p, static_cast<zorClient_uint32_t>(v.u),
                                                  name_p) != ZORCLIENT_OK)
                    LOG_ERROR("Unable to add Uint32 %d", static_cast<int>(v.u));
                break;
            case API_INT32:
                if (zorClient_container_addInt32(cont_p, static_cast<zorClient_int32_t>(v.s),
                                                 name_p) != ZORCLIENT_OK)
                    LOG_ERROR("Unable to add Int32 %d", static_cast<int>(v.s));
                break;
            case API_UINT64:
                if (zorClient_container_addUint64(cont_p, v.u, name_p) != ZORCLIENT_OK)
                    LOG_ERROR("Unable to add Uint64 %llu", v.u);
                break;
            case API_INT64:
                if (zorClient_container_addInt64(cont_p, v.s, name_p) != ZORCLIENT_OK)
                    LOG_ERROR("Unable to add Int64 %lld", v.s);
                break;
            case API_CHAR:
                if (zorClient_container_addChar(cont_p, v.c, name_p) != ZORCLIENT_OK)
                    LOG_ERROR("Unable to add Char %d", static_cast<int>(v.c));
                break;
            case API_WCHAR:
                if (zorClient_container_addWchar(cont_p, static_cast<zorClient_wchar_t>(v.c),
                                                 name_p) != ZORCLIENT_OK)
                    LOG_ERROR("Unable to add Wchar %lc", static_cast<wint_t>(v.c));
                break;
            case API_ARRAYPTR:
                if (zorClient_container_addByteArray(
                        cont_p, v.bytes.data(), static_cast<zorClient_uint32_t>(v.bytes.size()),
                        name_p) != ZORCLIENT_OK)
                    LOG_ERROR("Unable to add ByteArray %s", e->value);
                break;
            case API_FLOAT:
                if (zorClient_container_addFloat(cont_p, static_cast<float>(v.d), name_p) !=
                    ZORCLIENT_OK)
                    LOG_ERROR("Unable to add Float %e", v.d);
                break;
            case API_DOUBLE:
                if (zorClient_container_addDouble(cont_p, v.d, name_p) != ZORCLIENT_OK)
                    LOG_ERROR("Unable to add Double %e", v.d);
                break;
            case API_STRINGPTR:
                if (zorClient_container_addString(cont_p, e->value, name_p) != ZORCLIENT_OK)
                    LOG_ERROR("Unable to add string %s", e->value);
                break;
            case API_DESTINATION:
                if (zorClient_container_addDestination(cont_p, &v.dest, sizeof(v.dest), name_p) !=
                    ZORCLIENT_OK)
                    LOG_ERROR("Unable to add Destination %s", e->value);
                break;
            default:
                if (zorClient_container_addNull(cont_p, name_p) != ZORCLIENT_OK)
                    LOG_ERROR("Unable to add Null");
                break;
        }
    }
    return map != 0 ? fieldNo : 0;
}

int checkContainer(zorClient_opaqueContainer_pt cont_p, int map, int* nextFieldNo_p) {
    int result = 0;
    int fieldNo = 0;
    for (const sdkTestContainerElement* e = sdkContainer1; e->type != EOG_TYPE; ++e) {
        const std::string nameText = fieldName(map, fieldNo);
        const char* name_p = map != 0 ? nameText.c_str() : nullptr;
        if (e->type < API_BOOLEAN || e->type > API_NULL) {
            LOG_ERROR("Unrecognized element type %d  for field %d", static_cast<int>(e->type),
                      fieldNo);
            result = -1;
            continue;
        }
        Parsed v;
        if (!parse(*e, v)) {
            LOG_ERROR("element type %d has bad value %s for field %d", static_cast<int>(e->type),
                      e->value, fieldNo);
            result = -1;
            continue;
        }
        const int f = fieldNo++;
        bool bad = false;
        switch (e->type) {
            case API_BOOLEAN: {
                zorClient_bool_t got = 0;
                if (zorClient_container_getBoolean(cont_p, &got, name_p) != ZORCLIENT_OK) {
                    LOG_ERROR("Unable to get Boolean for field %d", f);
                    bad = true;
                } else if ((got != 0) != (v.s != 0)) {
                    LOG_ERROR("Boolean: expected %d, got %d for field %d",
                              static_cast<int>(v.s != 0), static_cast<int>(got), f);
                    bad = true;
                }
                break;
            }
            case API_UINT8: {
                zorClient_uint8_t got = 0;
                if (zorClient_container_getUint8(cont_p, &got, name_p) != ZORCLIENT_OK) {
                    LOG_ERROR("Unable to get Uint8 for field %d", f);
                    bad = true;
                } else if (got != static_cast<zorClient_uint8_t>(v.u)) {
                    LOG_ERROR("Uint8: expected %u, got %u for field %d",
                              static_cast<unsigned>(static_cast<zorClient_uint8_t>(v.u)),
                              static_cast<unsigned>(got), f);
                    bad = true;
                }
                break;
            }
            case API_INT8: {
                zorClient_int8_t got = 0;
                if (zorClient_container_getInt8(cont_p, &got, name_p) != ZORCLIENT_OK) {
                    LOG_ERROR("Unable to get Int8 for field %d", f);
                    bad = true;
                } else if (got != static_cast<zorClient_int8_t>(v.s)) {
                    LOG_ERROR("Int8: expected %d, got %d for field %d",
                              static_cast<int>(static_cast<zorClient_int8_t>(v.s)),
                              static_cast<int>(got), f);
                    bad = true;
                }
                break;
            }
            case API_UINT16: {
                zorClient_uint16_t got = 0;
                if (zorClient_container_getUint16(cont_p, &got, name_p) != ZORCLIENT_OK) {
                    LOG_ERROR("Unable to get Uint16 for field %d", f);
                    bad = true;
                } else if (got != static_cast<zorClient_uint16_t>(v.u)) {
                    LOG_ERROR("Uint16: expected %u, got %u for field %d",
                              static_cast<unsigned>(static_cast<zorClient_uint16_t>(v.u)),
                              static_cast<unsigned>(got), f);
                    bad = true;
                }
                break;
            }
            case API_INT16: {
                zorClient_int16_t got = 0;
                if (zorClient_container_getInt16(cont_p, &got, name_p) != ZORCLIENT_OK) {
                    LOG_ERROR("Unable to get int16 for field %d", f);
                    bad = true;
                } else if (got != static_cast<zorClient_int16_t>(v.s)) {
                    LOG_ERROR("int16: expected %d, got %d for field %d",
                              static_cast<int>(static_cast<zorClient_int16_t>(v.s)),
                              static_cast<int>(got), f);
                    bad = true;
                }
                break;
            }
            case API_UINT32: {
                zorClient_uint32_t got = 0;
                if (zorClient_container_getUint32(cont_p, &got, name_p) != ZORCLIENT_OK) {
                    LOG_ERROR("Unable to get Uint32 for field %d", f);
                    bad = true;
                } else if (got != static_cast<zorClient_uint32_t>(v.u)) {
                    LOG_ERROR("Uint32: expected %u, got %u for field %d",
                              static_cast<unsigned>(v.u), static_cast<unsigned>(got), f);
                    bad = true;
                }
                break;
            }
            case API_INT32: {
                zorClient_int32_t got = 0;
                if (zorClient_container_getInt32(cont_p, &got, name_p) != ZORCLIENT_OK) {
                    LOG_ERROR("Unable to get Int32 for field %d", f);
                    bad = true;
                } else if (got != static_cast<zorClient_int32_t>(v.s)) {
                    LOG_ERROR("Int32: expected %d, got %d for field %d", static_cast<int>(v.s),
                              static_cast<int>(got), f);
                    bad = true;
                }
                break;
            }
            case API_UINT64: {
                zorClient_uint64_t got = 0;
                if (zorClient_container_getUint64(cont_p, &got, name_p) != ZORCLIENT_OK) {
                    LOG_ERROR("Unable to get Uint64 for field %d", f);
                    bad = true;
                } else if (got != v.u) {
                    LOG_ERROR("Uint64: expected %llu, got %llu for field %d", v.u,
                              static_cast<unsigned long long>(got), f);
                    bad = true;
                }
                break;
            }
            case API_INT64: {
                zorClient_int64_t got = 0;
                if (zorClient_container_getInt64(cont_p, &got, name_p) != ZORCLIENT_OK) {
                    LOG_ERROR("Unable to get Int64 for field %d", f);
                    bad = true;
                } else if (got != v.s) {
                    LOG_ERROR("Int64: expected %lld, got %lld for field %d", v.s,
                              static_cast<long long>(got), f);
                    bad = true;
                }
                break;
            }
            case API_CHAR: {
                char got = 0;
                if (zorClient_container_getChar(cont_p, &got, name_p) != ZORCLIENT_OK) {
                    LOG_ERROR("Unable to get Char for field %d", f);
                    bad = true;
                } else if (got != v.c) {
                    LOG_ERROR("Char: expected %d, got %d for field %d", static_cast<int>(v.c),
                              static_cast<int>(got), f);
                    bad = true;
                }
                break;
            }
            case API_WCHAR: {
                zorClient_wchar_t got = 0;
                if (zorClient_container_getWchar(cont_p, &got, name_p) != ZORCLIENT_OK) {
                    LOG_ERROR("Unable to get Wchar for field %d", f);
                    bad = true;
                } else if (got != static_cast<zorClient_wchar_t>(v.c)) {
                    LOG_ERROR("Wchar: expected %lc, got %lc for field %d", static_cast<wint_t>(v.c),
                              static_cast<wint_t>(got), f);
                    bad = true;
                }
                break;
            }
            case API_ARRAYPTR: {
                zorClient_uint8_t* got_p = nullptr;
                zorClient_uint32_t len = 0;
                if (zorClient_container_getByteArrayPtr(cont_p, &got_p, &len, name_p) !=
                    ZORCLIENT_OK) {
                    LOG_ERROR("Unable to get ByteArray for field %d", f);
                    bad = true;
                } else if (len != v.bytes.size()) {
                    LOG_ERROR("ByteArray: expected length %d, got length %d for field %d",
                              static_cast<int>(v.bytes.size()), static_cast<int>(len), f);
                    bad = true;
                } else if (len != 0 && std::memcmp(got_p, v.bytes.data(), len) != 0) {
                    LOG_ERROR("ByteArray: content mismatch for field %d", f);
                    bad = true;
                }
                break;
            }
            case API_FLOAT: {
                float got = 0;
                if (zorClient_container_getFloat(cont_p, &got, name_p) != ZORCLIENT_OK) {
                    LOG_ERROR("Unable to get Float for field %d", f);
                    bad = true;
                } else if (got != static_cast<float>(v.d)) {
                    LOG_ERROR("Float: expected %e, got %e for field %d", v.d,
                              static_cast<double>(got), f);
                    bad = true;
                }
                break;
            }
            case API_DOUBLE: {
                double got = 0;
                if (zorClient_container_getDouble(cont_p, &got, name_p) != ZORCLIENT_OK) {
                    LOG_ERROR("Unable to get Double for field %d", f);
                    bad = true;
                } else if (got != v.d) {
                    LOG_ERROR("Double: expected %e, got %e for field %d", v.d, got, f);
                    bad = true;
                }
                break;
            }
            case API_STRINGPTR: {
                const char* got_p = nullptr;
                if (zorClient_container_getStringPtr(cont_p, &got_p, name_p) != ZORCLIENT_OK) {
                    LOG_ERROR("Unable to get string for field %d", f);
                    bad = true;
                } else if (std::strcmp(got_p, e->value) != 0) {
                    LOG_ERROR("String: expected %s, got %s for field %d", e->value, got_p, f);
                    bad = true;
                }
                break;
            }
            case API_DESTINATION: {
                zorClient_destination_t got{};
                if (zorClient_container_getDestination(cont_p, &got, sizeof(got), name_p) !=
                    ZORCLIENT_OK) {
                    LOG_ERROR("Unable to get Destination for field %d", f);
                    bad = true;
                } else {
                    if (got.destType != v.dest.destType) {
                        LOG_ERROR("Destination: expected type %d, got type %d for field %d",
                                  static_cast<int>(v.dest.destType), static_cast<int>(got.destType),
                                  f);
                        bad = true;
                    }
                    if (got.dest == nullptr || std::strcmp(got.dest, v.dest.dest) != 0) {
                        LOG_ERROR("String: expected %s, got %s for field %d", v.dest.dest,
                                  got.dest != nullptr ? got.dest : "", f);
                        bad = true;
                    }
                }
                break;
            }
            default:
                if (zorClient_container_getNull(cont_p, name_p) != ZORCLIENT_OK) {
                    LOG_ERROR("Unable to get Null for field %d", f);
                    bad = true;
                }
                break;
        }
        if (bad)
            result = -1;
    }
    if (nextFieldNo_p != nullptr)
        *nextFieldNo_p = fieldNo;
    return result;
}

zorClient_int64_t getTimeInUs() {
    timespec now{};
    clock_gettime(CLOCK_REALTIME, &now);
    return static_cast<zorClient_int64_t>(now.tv_sec) * 1000000 + now.tv_nsec / 1000;
}

}  // namespace zorvane::pubsub
