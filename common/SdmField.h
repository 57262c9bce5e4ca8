// One typed field of a structured message description, kept as plain data.
//
// The numbering of the types and destination types is the messaging
// library's own, so that client/zcore, which alone sees the library, turns a
// field into the library's field record by a cast per member and back. This
// folder never includes the library.
//
// Ownership and threads: a value. Texts and bytes sit behind a shared
// pointer to const, so copies of a description (one per message of every
// publish list) share them instead of copying large generated contents;
// nothing writes to a field after the parse, so any number of threads read
// it without a lock.
#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "common/dataTypes.h"

namespace zorvane::pubsub {

enum SdmFieldType {
    SDM_FIELD_TYPE_BOOL = 0,
    SDM_FIELD_TYPE_UINT8 = 1,
    SDM_FIELD_TYPE_INT8 = 2,
    SDM_FIELD_TYPE_UINT16 = 3,
    SDM_FIELD_TYPE_INT16 = 4,
    SDM_FIELD_TYPE_UINT32 = 5,
    SDM_FIELD_TYPE_INT32 = 6,
    SDM_FIELD_TYPE_UINT64 = 7,
    SDM_FIELD_TYPE_INT64 = 8,
    SDM_FIELD_TYPE_WCHAR = 9,
    SDM_FIELD_TYPE_STRING = 10,
    SDM_FIELD_TYPE_BYTEARRAY = 11,
    SDM_FIELD_TYPE_FLOAT = 12,
    SDM_FIELD_TYPE_DOUBLE = 13,
    SDM_FIELD_TYPE_MAP = 14,
    SDM_FIELD_TYPE_STREAM = 15,
    SDM_FIELD_TYPE_NULL = 16,
    SDM_FIELD_TYPE_DESTINATION = 17,
    SDM_FIELD_TYPE_QWF = 18,  // pre-encoded bytes, carried as they are
};

enum SdmDestinationType {
    SDM_DEST_TYPE_NULL = -1,
    SDM_DEST_TYPE_TOPIC = 0,
    SDM_DEST_TYPE_QUEUE = 1,
    SDM_DEST_TYPE_TEMP_TOPIC = 2,
    SDM_DEST_TYPE_TEMP_QUEUE = 3,
};

// The number, flag or count of a field; the member that counts is the one
// of the field's type.
union SdmFieldValue {
    bool boolean;
    std::uint8_t uint8;
    INT8 int8;
    UINT16 uint16;
    std::int16_t int16;
    UINT32 uint32;
    INT32 int32;
    UINT64 uint64;
    INT64 int64;
    INT32 wchar;
    float float32;
    double float64;
    // Map and stream fields describe no container of their own: they stand
    // for a sub-container of a fixed set of five entries, repeated this many
    // times.
    UINT64 numLoops;
    SdmDestinationType destType;  // destination fields; the name is the text
};

struct SdmField {
    SdmFieldType type_m = SDM_FIELD_TYPE_NULL;
    // Bytes of a byte array or QWF field; 0 for every other type.
    UINT32 length_m = 0;
    SdmFieldValue value_m{};
    // The text of a string field, the bytes of a byte array or QWF field,
    // the name of a destination field; null for the other types.
    std::shared_ptr<const std::string> text_m;

    // The text, or an empty text when the field has none.
    const std::string& text() const {
        static const std::string EMPTY;
        return text_m ? *text_m : EMPTY;
    }
};

}  // namespace zorvane::pubsub
