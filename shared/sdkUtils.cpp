#include "shared/sdkUtils.h"

namespace zorvane::pubsub {

// The rows cover every kind at its limits (zero, maximum, minimum) so that a
// round trip shows each encoding width carried unharmed; strings that look
// like numbers make sure no side converts them.
const sdkTestContainerElement sdkContainer1[SDK_CONTAINER_ROWS + 1] = {
    {API_BOOLEAN, "0"},
    {API_BOOLEAN, "1"},
    {API_UINT8, "42"},
    {API_UINT8, "142"},
    {API_INT8, "42"},
    {API_INT8, "-42"},
    {API_UINT16, "42"},
    {API_INT16, "-42"},
    {API_UINT16, "1042"},
    {API_INT16, "-142"},
    {API_UINT16, "65535"},
    {API_INT16, "-32768"},
    {API_UINT32, "255"},
    {API_INT32, "-80"},
    {API_UINT32, "65535"},
    {API_INT32, "-32768"},
    {API_UINT32, "4294967295"},
    {API_INT32, "-2147483648"},
    {API_UINT64, "255"},
    {API_INT64, "-80"},
    {API_UINT64, "65535"},
    {API_INT64, "-32768"},
    {API_UINT64, "4294967295"},
    {API_INT64, "-2147483648"},
    {API_UINT64, "9223372036854775807"},
    {API_INT64, "-9223372036854775808"},
    {API_INT64, "43112609"},
    {API_CHAR, "R"},
    {API_WCHAR, "R"},
    {API_ARRAYPTR, "C0DEBEADADDEEFBE23445577"},
    {API_FLOAT, "3.14159"},
    {API_DOUBLE, "3.14159"},
    {API_STRINGPTR, "A short quick fox"},
    {API_STRINGPTR, "43112609"},
    {API_STRINGPTR, "3.14159"},
    {API_STRINGPTR, "true"},
    {API_STRINGPTR, "0"},
    {API_STRINGPTR, "-43112609"},
    {API_DESTINATION, "0 level1/level2"},
    {API_NULL, nullptr},
    {EOG_TYPE, nullptr},
};

const sdkTestContainerElement sdkContainer2[SDK_CONTAINER_ROWS + 1] = {
    {API_BOOLEAN, "0"},
    {API_BOOLEAN, "1"},
    {API_UINT8, "77"},
    {API_UINT8, "177"},
    {API_INT8, "77"},
    {API_INT8, "-77"},
    {API_UINT16, "77"},
    {API_INT16, "-77"},
    {API_UINT16, "1077"},
    {API_INT16, "-177"},
    {API_UINT16, "67777"},
    {API_INT16, "-3777"},
    {API_UINT32, "2577"},
    {API_INT32, "-8077"},
    {API_UINT32, "655777"},
    {API_INT32, "-32777"},
    {API_UINT32, "4294967292"},
    {API_INT32, "-2147483644"},
    {API_UINT64, "77777255"},
    {API_INT64, "-8077777"},
    {API_UINT64, "655357777"},
    {API_INT64, "-327687777"},
    {API_UINT64, "4294967295077"},
    {API_INT64, "-2147483648777"},
    {API_UINT64, "92233720368775807"},
    {API_INT64, "-92233720354775808"},
    {API_INT64, "431126097777"},
    {API_CHAR, "W"},
    {API_WCHAR, "W"},
    {API_ARRAYPTR, "C0DEBEADADDEEFBE2344557788"},
    {API_FLOAT, "3.1415927"},
    {API_DOUBLE, "3.1415927"},
    {API_STRINGPTR, "A modified short quick fox"},
    {API_STRINGPTR, "4311260977"},
    {API_STRINGPTR, "3.1415927"},
    {API_STRINGPTR, "false"},
    {API_STRINGPTR, "1"},
    {API_STRINGPTR, "-73112609"},
    {API_DESTINATION, "0 level1/level2/modified"},
    {API_NULL, nullptr},
    {EOG_TYPE, nullptr},
};

const std::uint8_t appTlv[APP_TLV_BYTES] = {0xE2, 0x00, 0x00, 0x06, 0xEF, 0xAD};

const std::uint8_t testByteArray[TEST_BYTE_ARRAY_BYTES] = {1, 2, 3, 4, 5, 6, 7, 8};

int structuredMsgNumIsSupported(int num) {
    switch (num) {
        case 1:
        case 2:
        case 3:
        case 4:
        case 6:
        case 7:
        case 8:
        case 9:
        case 11:
        case 12:
        case 13:
        case 14:
        case 15:
        case 18:
        case 19:
        case 20:
        case 21:
        case 22:
        case 24:
            return 1;
        default:
            return 0;
    }
}

}  // namespace zorvane::pubsub
