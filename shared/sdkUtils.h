// Data of the canned structured messages: two tables of typed elements that
// fill (and, for the first, check) a map or stream, the fixed byte values the
// catalogue sends, and the list of message numbers the catalogue builds.
//
// Pure constant data, no library types, so any thread reads it without a
// lock. The building and checking code is in client/zcore/CannedMessages.
#pragma once

#include <cstddef>
#include <cstdint>

namespace zorvane::pubsub {

// The kind of one table element; decides the container operation used.
enum getSetTypes_t {
    EOG_TYPE = -1,  // ends a table
    API_BOOLEAN = 0,
    API_UINT8 = 1,
    API_INT8 = 2,
    API_UINT16 = 3,
    API_INT16 = 4,
    API_UINT32 = 5,
    API_INT32 = 6,
    API_UINT64 = 7,
    API_INT64 = 8,
    API_CHAR = 9,
    API_WCHAR = 10,
    API_ARRAYPTR = 11,
    API_FLOAT = 12,
    API_DOUBLE = 13,
    API_STRINGPTR = 14,
    API_DESTINATION = 15,
    API_NULL = 16,
    NUMAPI_TYPE = 17,
};

// One element: its kind and its value as text (null for API_NULL).
struct sdkTestContainerElement {
    getSetTypes_t type;
    const char* value;
};

// Rows in each table, without the EOG_TYPE end row.
constexpr std::size_t SDK_CONTAINER_ROWS = 40;

// What the catalogue sends and checks.
extern const sdkTestContainerElement sdkContainer1[SDK_CONTAINER_ROWS + 1];
// The same kinds with other values, for the modified variant of the catalogue.
extern const sdkTestContainerElement sdkContainer2[SDK_CONTAINER_ROWS + 1];

// An encoded field (tag, length, value) of a type the library does not know.
constexpr std::size_t APP_TLV_BYTES = 6;
extern const std::uint8_t appTlv[APP_TLV_BYTES];

// Bytes 01 to 08.
constexpr std::size_t TEST_BYTE_ARRAY_BYTES = 8;
extern const std::uint8_t testByteArray[TEST_BYTE_ARRAY_BYTES];

// The highest number of the catalogue.
constexpr int SDK_MAX_MSG_NUM = 24;

// Non-zero for the numbers the catalogue builds: 1 to 4, 6 to 9, 11 to 15,
// 18 to 22 and 24.
int structuredMsgNumIsSupported(int num);

}  // namespace zorvane::pubsub
