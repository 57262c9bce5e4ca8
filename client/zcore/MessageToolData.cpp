// Reading the tool data of a received message in both of its forms.
#include <cstring>

#include "client/zcore/Message.h"
#include "common/Log.h"
#include "common/PubSubException.h"

namespace zorvane::pubsub {

namespace {

// The integer value of a map field, whatever integer type the sender used;
// false for a field of any other type.
bool integerValue(const zorClient_field_t& field, INT64* value_p) {
    switch (field.type) {
        case ZORCLIENT_INT8:
            *value_p = field.value.int8;
            return true;
        case ZORCLIENT_UINT8:
            *value_p = field.value.uint8;
            return true;
        case ZORCLIENT_INT16:
            *value_p = field.value.int16;
            return true;
        case ZORCLIENT_UINT16:
            *value_p = field.value.uint16;
            return true;
        case ZORCLIENT_INT32:
            *value_p = field.value.int32;
            return true;
        case ZORCLIENT_UINT32:
            *value_p = field.value.uint32;
            return true;
        case ZORCLIENT_INT64:
            *value_p = field.value.int64;
            return true;
        case ZORCLIENT_UINT64:
            *value_p = static_cast<INT64>(field.value.uint64);
            return true;
        default:
            return false;
    }
}

}  // namespace

void Message::decodeToolData(ToolDataType type) {
    switch (type) {
        case TOOL_DATA_TYPE_BIN_ATTACH: {
            const Bounds attachment = attachBounds();
            // Clears the record first; an absent or empty attachment leaves
            // it cleared.
            decodeToolDataFromAttachment(attachment.begin_m, attachment.end_m);
            return;
        }
        case TOOL_DATA_TYPE_USER_PROP:
            toolData_m.clear();
            readToolDataFromProperties();
            return;
    }
    toolData_m.clear();
    throwUnsupportedToolDataType(type);
}

void Message::readToolDataFromProperties() {
    toolData_m.clear();
    zorClient_opaqueContainer_pt map = nullptr;
    if (zorClient_msg_getUserPropertyMap(msg_mp, &map) != ZORCLIENT_OK) {
        throw PubSubException(
            "Message::readToolDataFromProperties: Failed to read user property map");
    }
    int failuresInARow = 0;
    while (zorClient_container_hasNextField(map) != 0) {
        zorClient_field_t field{};
        const char* name = nullptr;
        const zorClient_returnCode_t rc =
            zorClient_container_getNextField(map, &field, sizeof field, &name);
        if (rc != ZORCLIENT_OK) {
            LOG_ERROR("CLIENT %s: Could not get next field from container; rc=\"%s\"",
                      clientIdStr_m.c_str(), zorClient_returnCodeToString(rc));
            // A walk that cannot move on would otherwise never end.
            if (rc == ZORCLIENT_EOS || ++failuresInARow > 1) {
                break;
            }
            continue;
        }
        failuresInARow = 0;
        INT64 value = 0;
        if (integerValue(field, &value)) {
            // Unknown names are logged there: custom properties and trace
            // fields share the map with the tool data.
            takeToolDataUserProperty(name, value);
        } else {
            LOG_ERROR("CLIENT %s: Unrecognized user property '%s' while reading tool data",
                      clientIdStr_m.c_str(), name != nullptr ? name : "");
        }
    }
    const zorClient_returnCode_t rc = zorClient_container_closeMapStream(&map);
    if (rc != ZORCLIENT_OK) {
        LOG_ERROR("zorClient_container_closeMapStream() did not return successfully; rc=\"%s\"",
                  zorClient_returnCodeToString(rc));
    }
}

}  // namespace zorvane::pubsub
