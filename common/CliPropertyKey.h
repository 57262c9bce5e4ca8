// Description of one key of the property store: its name, the value type
// (which names the one map of CliProperties the key lives in) and its
// default. The table of all keys is CliProperties::keyTable(); code that works
// on keys generically (the default writer, the option parser) walks it instead
// of naming every key.
//
// Plain constant data, built at compile time; safe to read from any thread.
#pragma once

#include <cstdint>

#include "common/dataTypes.h"

namespace zorvane::pubsub {

// One value type per map of the store.
enum class CliPropertyType : std::uint8_t {
    BOOLEAN,                  // bool
    INTEGER,                  // INT32
    INT64,                    // INT64
    DOUBLE,                   // double
    STRING,                   // string
    VECTOR,                   // list of string
    VECTOR_VECTOR,            // list of list of string
    INT_VECTOR,               // list of INT32
    DOUBLE_VECTOR,            // list of double
    VECTOR_DOUBLE_VECTOR,     // list of list of double
    VECTOR_MAP_INT32_UINT64,  // list of (map of INT32 to UINT64)
    MAP_INT_INT,              // map of INT32 to INT32
};

// Number of CliPropertyType values, for code that loops over all of them.
inline constexpr int CLI_PROPERTY_TYPE_COUNT = 12;

struct CliPropertyKey {
    const char* name_mp;  // the key string; points at a CliProperties constant
    CliPropertyType type_m;
    // False when the store starts without the key, so that readers see the
    // getter's empty value and "never set" stays distinguishable.
    bool hasDefault_m;
    // The default of the field that matches type_m; the others are unused.
    // List and map types with a default start as an empty container.
    bool boolDefault_m;
    INT64 intDefault_m;  // INTEGER and INT64
    double doubleDefault_m;
    const char* stringDefault_mp;  // never null
};

}  // namespace zorvane::pubsub
