// The generic part of applying one matched option: convert the value as the
// row says, check it, store it under the row's key in the map of that key's
// type, turn on the row's "also" key, then run the row's handler.
#include "common/CliOptionApply.h"

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <vector>

#include "common/CliFault.h"
#include "common/CliProperties.h"
#include "common/CommonUtils.h"

namespace zorvane::pubsub {

namespace {

// Writes an integer into whichever map the key lives in: a flag's value, an
// int option stored as int64 ("-tac=") or as a double ("-carl=").
void storeInteger(CliProperties& props, const char* key, INT64 value) {
    const CliPropertyKey* row = CliProperties::findKey(key);
    if (row == nullptr) {
        return;
    }
    switch (row->type_m) {
        case CliPropertyType::BOOLEAN:
            props.setBooleanProperty(key, value != 0);
            break;
        case CliPropertyType::INTEGER:
            props.setIntegerProperty(key, static_cast<INT32>(value));
            break;
        case CliPropertyType::INT64:
            props.setInt64Property(key, value);
            break;
        case CliPropertyType::DOUBLE:
            props.setDoubleProperty(key, static_cast<double>(value));
            break;
        default:
            break;
    }
}

void checkRange(const CliOption& option, INT64 value) {
    if (option.fault_mp != nullptr && (value < option.min_m || value > option.max_m)) {
        cliFault(option.fault_mp, std::to_string(value));
    }
}

INT64 strictNumber64(const CliOption& option, std::string_view arg, const std::string& value) {
    const CliStrictFaults& faults = *option.strict_mp;
    char* end = nullptr;
    errno = 0;
    const long long number = std::strtoll(value.c_str(), &end, 0);
    if (errno == ERANGE) {
        cliFault(faults.outOfRange_mp);
    }
    if (errno != 0) {
        cliFault(faults.errno_mp, std::to_string(errno));
    }
    if (*end != '\0') {
        cliFault(std::string("ERROR: Invalid character ") + *end + faults.badChar_mp, arg);
    }
    return number;
}

void checkChoice(const CliOption& option, const std::string& value) {
    for (const char* const* word = option.words_mp; *word != nullptr; ++word) {
        if (value == *word) {
            return;
        }
    }
    cliFault(std::string(option.fault_mp) + value + option.faultSuffix_mp);
}

}  // namespace

INT32 cliIntValue(const std::string& value) {
    return static_cast<INT32>(std::strtol(value.c_str(), nullptr, 10));
}

void cliApplyOption(CliOptionCall& call) {
    const CliOption& option = call.option;
    CliProperties& props = call.props;
    const char* key = option.key_mp;
    switch (option.convert_m) {
        case CliConvert::NONE:
            if (key != nullptr) {
                storeInteger(props, key, option.flagValue_m);
            }
            break;
        case CliConvert::TEXT:
            props.setStringProperty(key, call.value);
            break;
        case CliConvert::CHOICE:
            checkChoice(option, call.value);
            if (key != nullptr) {
                props.setStringProperty(key, call.value);
            }
            break;
        case CliConvert::INT:
        case CliConvert::INT_CHECKED: {
            const INT32 number = cliIntValue(call.value);
            checkRange(option, number);
            storeInteger(props, key, number);
            break;
        }
        case CliConvert::NUMBER64: {
            const INT64 number = std::strtoll(call.value.c_str(), nullptr, 0);
            checkRange(option, number);
            storeInteger(props, key, number);
            break;
        }
        case CliConvert::NUMBER64_STRICT: {
            const INT64 number = strictNumber64(option, call.arg, call.value);
            checkRange(option, number);
            storeInteger(props, key, number);
            break;
        }
        case CliConvert::DOUBLE:
            props.setDoubleProperty(key, std::strtod(call.value.c_str(), nullptr));
            break;
        case CliConvert::LIST: {
            std::vector<std::string> tokens;
            CommonUtils::tokenizeString(call.value, tokens, ",");
            props.setVectorProperty(key, tokens);
            break;
        }
    }
    if (option.alsoTrue_mp != nullptr) {
        props.setBooleanProperty(option.alsoTrue_mp, true);
    }
    if (option.handler_mp != nullptr) {
        option.handler_mp(call);
    }
}

}  // namespace zorvane::pubsub
