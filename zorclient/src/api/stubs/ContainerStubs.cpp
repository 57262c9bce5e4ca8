// Container entry points not built yet.
#include "api/stubs/NotSupported.h"

using Container = zorClient_opaqueContainer_pt;

extern "C" {

ZC_NOT_SUPPORTED_RC(zorClient_container_addBoolean, (Container, zorClient_bool_t, const char*))
ZC_NOT_SUPPORTED_RC(zorClient_container_addUint8, (Container, zorClient_uint8_t, const char*))
ZC_NOT_SUPPORTED_RC(zorClient_container_addInt8, (Container, zorClient_int8_t, const char*))
ZC_NOT_SUPPORTED_RC(zorClient_container_addUint16, (Container, zorClient_uint16_t, const char*))
ZC_NOT_SUPPORTED_RC(zorClient_container_addInt16, (Container, zorClient_int16_t, const char*))
ZC_NOT_SUPPORTED_RC(zorClient_container_addUint32, (Container, zorClient_uint32_t, const char*))
ZC_NOT_SUPPORTED_RC(zorClient_container_addInt32, (Container, zorClient_int32_t, const char*))
ZC_NOT_SUPPORTED_RC(zorClient_container_addUint64, (Container, zorClient_uint64_t, const char*))
ZC_NOT_SUPPORTED_RC(zorClient_container_addInt64, (Container, zorClient_int64_t, const char*))
ZC_NOT_SUPPORTED_RC(zorClient_container_addChar, (Container, char, const char*))
ZC_NOT_SUPPORTED_RC(zorClient_container_addWchar, (Container, zorClient_wchar_t, const char*))
ZC_NOT_SUPPORTED_RC(zorClient_container_addString, (Container, const char*, const char*))
ZC_NOT_SUPPORTED_RC(zorClient_container_addByteArray,
                    (Container, const zorClient_uint8_t*, zorClient_uint32_t, const char*))
ZC_NOT_SUPPORTED_RC(zorClient_container_addFloat, (Container, float, const char*))
ZC_NOT_SUPPORTED_RC(zorClient_container_addDouble, (Container, double, const char*))
ZC_NOT_SUPPORTED_RC(zorClient_container_addNull, (Container, const char*))
ZC_NOT_SUPPORTED_RC(zorClient_container_addDestination,
                    (Container, const zorClient_destination_t*, size_t, const char*))
ZC_NOT_SUPPORTED_RC(zorClient_container_addQwf,
                    (Container, const zorClient_uint8_t*, zorClient_uint32_t, const char*))
ZC_NOT_SUPPORTED_RC(zorClient_container_addUnknownField,
                    (Container, const zorClient_uint8_t*, zorClient_uint32_t, const char*))

ZC_NOT_SUPPORTED_RC(zorClient_container_openSubMap, (Container, Container*, const char*))
ZC_NOT_SUPPORTED_RC(zorClient_container_openSubStream, (Container, Container*, const char*))
ZC_NOT_SUPPORTED_RC(zorClient_container_getSubMap, (Container, Container*, const char*))
ZC_NOT_SUPPORTED_RC(zorClient_container_getSubStream, (Container, Container*, const char*))
ZC_NOT_SUPPORTED_RC(zorClient_container_createMap, (Container*, char*, size_t))
ZC_NOT_SUPPORTED_RC(zorClient_container_createStream, (Container*, char*, size_t))
ZC_NOT_SUPPORTED_RC(zorClient_container_closeMapStream, (Container*))
ZC_NOT_SUPPORTED_BOOL(zorClient_container_hasNextField, (Container))
ZC_NOT_SUPPORTED_RC(zorClient_container_getNextField,
                    (Container, zorClient_field_t*, size_t, const char**))
ZC_NOT_SUPPORTED_RC(zorClient_container_getField,
                    (Container, zorClient_field_t*, size_t, const char*))
ZC_NOT_SUPPORTED_RC(zorClient_container_getSize, (Container, size_t*))

ZC_NOT_SUPPORTED_RC(zorClient_container_getBoolean, (Container, zorClient_bool_t*, const char*))
ZC_NOT_SUPPORTED_RC(zorClient_container_getUint8, (Container, zorClient_uint8_t*, const char*))
ZC_NOT_SUPPORTED_RC(zorClient_container_getInt8, (Container, zorClient_int8_t*, const char*))
ZC_NOT_SUPPORTED_RC(zorClient_container_getUint16, (Container, zorClient_uint16_t*, const char*))
ZC_NOT_SUPPORTED_RC(zorClient_container_getInt16, (Container, zorClient_int16_t*, const char*))
ZC_NOT_SUPPORTED_RC(zorClient_container_getUint32, (Container, zorClient_uint32_t*, const char*))
ZC_NOT_SUPPORTED_RC(zorClient_container_getInt32, (Container, zorClient_int32_t*, const char*))
ZC_NOT_SUPPORTED_RC(zorClient_container_getUint64, (Container, zorClient_uint64_t*, const char*))
ZC_NOT_SUPPORTED_RC(zorClient_container_getInt64, (Container, zorClient_int64_t*, const char*))
ZC_NOT_SUPPORTED_RC(zorClient_container_getChar, (Container, char*, const char*))
ZC_NOT_SUPPORTED_RC(zorClient_container_getWchar, (Container, zorClient_wchar_t*, const char*))
ZC_NOT_SUPPORTED_RC(zorClient_container_getFloat, (Container, float*, const char*))
ZC_NOT_SUPPORTED_RC(zorClient_container_getDouble, (Container, double*, const char*))
ZC_NOT_SUPPORTED_RC(zorClient_container_getString, (Container, char*, size_t, const char*))
ZC_NOT_SUPPORTED_RC(zorClient_container_getStringPtr, (Container, const char**, const char*))
ZC_NOT_SUPPORTED_RC(zorClient_container_getByteArrayPtr,
                    (Container, zorClient_uint8_t**, zorClient_uint32_t*, const char*))
ZC_NOT_SUPPORTED_RC(zorClient_container_getDestination,
                    (Container, zorClient_destination_t*, size_t, const char*))
ZC_NOT_SUPPORTED_RC(zorClient_container_getNull, (Container, const char*))

}  // extern "C"
