// One row of the option table: how an option is matched, how its value is
// converted, which store key receives it, what else it sets, and where and
// how the help shows it. The parser, the help and the tests walk the same
// rows, so adding or changing an option means editing one row.
//
// Rows are compile-time constants, built with the small constexpr modifiers
// below, e.g.
//   intOpt("-ccpc=", P::NUM_CLIENTS_PER_CONTEXT).range(1, NO_MAX, "...").help(...)
// The table is cliOptionTable() (CliOptionTable.cpp); its order is the
// matching order, which decides what an option matched by its beginning hides.
//
// Plain constant data; safe to read from any thread.
#pragma once

#include <cstdint>
#include <limits>
#include <span>
#include <string>
#include <string_view>

#include "common/dataTypes.h"

namespace zorvane::pubsub {

class CliProperties;
struct CliParseState;
struct CliOption;

// How an argument is compared with the row's word.
enum class CliMatch : std::uint8_t {
    VALUE,           // word ends in "=": the argument begins with it, the rest is the value
    FLAG,            // the argument equals the word
    FLAG_PREFIX,     // the argument begins with the word; anything may follow
    FIRST_FOUR,      // the first four characters; the value starts at the sixth ("-ibd=")
    OPTIONAL_VALUE,  // the argument begins with the word; the handler reads the rest ("-lb")
};

// How the value becomes what is stored.
enum class CliConvert : std::uint8_t {
    NONE,             // a flag, or a handler does all of it
    TEXT,             // stored as it stands
    CHOICE,           // text that must be one of words_mp
    INT,              // strtol base 10, truncated to 32 bits
    INT_CHECKED,      // INT, then min_m..max_m
    NUMBER64,         // strtoll base 0; with min_m 0 a negative value is a fault
    NUMBER64_STRICT,  // strtoll base 0 with errno and leftover checks (strict_mp)
    DOUBLE,           // strtod
    LIST,             // split at ","
};

// Where the help shows an option. Each group is one heading in one of the
// two help texts; NONE keeps an option out of both.
enum class CliHelpGroup : std::uint8_t {
    NONE,
    SHORT_CLIENT,
    SHORT_MESSAGE,
    SHORT_PUBLISH,
    SHORT_SUBSCRIBE,
    SHORT_MEASURE,
    SHORT_TOOL,
    SHORT_GENERAL_PARAMS,
    SHORT_GENERAL_FLAGS,
    LONG_CLIENT,
    LONG_MESSAGE,
    LONG_PUBLISH,
    LONG_SUBSCRIBE,
    LONG_CLIENT_ACK,
    LONG_MEASURE,
    LONG_AD,
    LONG_SSL,
    LONG_CACHE,
    LONG_RANDOM,
    LONG_TOOL,
    LONG_DEBUG,
    LONG_GENERAL_PARAMS,
    LONG_GENERAL_FLAGS,
    LONG_TRACE,
};

// Which tool names show a help line.
enum class CliHelpTools : std::uint8_t { ALL, VEX_LOAD_ONLY, VEX_LOAD_OR_QUAD_MIX };

struct CliHelp {
    CliHelpGroup group_m = CliHelpGroup::NONE;
    int order_m = 0;                // position inside the group
    const char* form_mp = nullptr;  // "-mr=number"
    // Lines of text, separated by '\n'. "{name}" stands for a value known
    // only when printing (see CliPropertiesHelp.cpp).
    const char* text_mp = nullptr;
    CliHelpTools tools_m = CliHelpTools::ALL;
};

// Texts of a strict 64-bit conversion, each followed by what it names.
struct CliStrictFaults {
    const char* outOfRange_mp;  // whole line
    const char* errno_mp;       // then the errno number
    const char* badChar_mp;     // "ERROR: Invalid character " C, then this, then the argument
};

// What a handler works on: the store, the state of this parse, the row, the
// whole argument and its value part.
struct CliOptionCall {
    CliProperties& props;
    CliParseState& state;
    const CliOption& option;
    std::string_view arg;
    const std::string& value;
};
using CliOptionHandler = void (*)(CliOptionCall& call);

inline constexpr INT64 CLI_NO_MIN = std::numeric_limits<INT64>::min();
inline constexpr INT64 CLI_NO_MAX = std::numeric_limits<INT64>::max();

struct CliOption {
    const char* word_mp = "";  // lower-case form, "-cip=" or "-ccn"
    CliMatch match_m = CliMatch::FLAG;
    bool upperTwin_m = true;  // the upper-case spelling has the same effect
    CliConvert convert_m = CliConvert::NONE;
    // Receives the converted value, in the map its key type names; for a
    // flag it receives flagValue_m. Null when a handler stores.
    const char* key_mp = nullptr;
    INT64 flagValue_m = 1;  // a flag writes true (1) or false (0), or this int
    INT64 min_m = CLI_NO_MIN;
    INT64 max_m = CLI_NO_MAX;
    const char* fault_mp = nullptr;         // range or choice fault; the value follows
    const char* faultSuffix_mp = "";        // after the value, for choice faults
    const char* const* words_mp = nullptr;  // CHOICE: null-terminated
    const CliStrictFaults* strict_mp = nullptr;
    const char* alsoTrue_mp = nullptr;      // a boolean key the option also turns on
    CliOptionHandler handler_mp = nullptr;  // runs after the store
    CliHelp help_m;

    constexpr CliOption range(INT64 lo, INT64 hi, const char* fault) const {
        CliOption row = *this;
        row.min_m = lo;
        row.max_m = hi;
        row.fault_mp = fault;
        return row;
    }
    constexpr CliOption choice(const char* const* words, const char* fault,
                               const char* suffix) const {
        CliOption row = *this;
        row.convert_m = CliConvert::CHOICE;
        row.words_mp = words;
        row.fault_mp = fault;
        row.faultSuffix_mp = suffix;
        return row;
    }
    constexpr CliOption strict(const CliStrictFaults* faults) const {
        CliOption row = *this;
        row.convert_m = CliConvert::NUMBER64_STRICT;
        row.strict_mp = faults;
        return row;
    }
    constexpr CliOption also(const char* boolKey) const {
        CliOption row = *this;
        row.alsoTrue_mp = boolKey;
        return row;
    }
    constexpr CliOption then(CliOptionHandler handler) const {
        CliOption row = *this;
        row.handler_mp = handler;
        return row;
    }
    constexpr CliOption matchBy(CliMatch match) const {
        CliOption row = *this;
        row.match_m = match;
        return row;
    }
    constexpr CliOption noTwin() const {
        CliOption row = *this;
        row.upperTwin_m = false;
        return row;
    }
    constexpr CliOption stores(INT64 value) const {
        CliOption row = *this;
        row.flagValue_m = value;
        return row;
    }
    constexpr CliOption help(CliHelpGroup group, int order, const char* form, const char* text,
                             CliHelpTools tools = CliHelpTools::ALL) const {
        CliOption row = *this;
        row.help_m = {group, order, form, text, tools};
        return row;
    }
};

// ---- row builders: the start of each row ----

constexpr CliOption makeRow(const char* word, CliMatch match, CliConvert convert, const char* key) {
    CliOption row;
    row.word_mp = word;
    row.match_m = match;
    row.convert_m = convert;
    row.key_mp = key;
    return row;
}
constexpr CliOption textOpt(const char* word, const char* key) {
    return makeRow(word, CliMatch::VALUE, CliConvert::TEXT, key);
}
constexpr CliOption intOpt(const char* word, const char* key) {
    return makeRow(word, CliMatch::VALUE, CliConvert::INT, key);
}
constexpr CliOption checkedOpt(const char* word, const char* key, INT64 lo, INT64 hi,
                               const char* fault) {
    return makeRow(word, CliMatch::VALUE, CliConvert::INT_CHECKED, key).range(lo, hi, fault);
}
constexpr CliOption number64Opt(const char* word, const char* key) {
    return makeRow(word, CliMatch::VALUE, CliConvert::NUMBER64, key);
}
constexpr CliOption doubleOpt(const char* word, const char* key) {
    return makeRow(word, CliMatch::VALUE, CliConvert::DOUBLE, key);
}
constexpr CliOption listOpt(const char* word, const char* key) {
    return makeRow(word, CliMatch::VALUE, CliConvert::LIST, key);
}
// A value option whose handler does the conversion.
constexpr CliOption customOpt(const char* word, CliOptionHandler handler) {
    return makeRow(word, CliMatch::VALUE, CliConvert::NONE, nullptr).then(handler);
}
// A flag matched whole; key (if any) receives true, or the value of stores().
constexpr CliOption flagOpt(const char* word, const char* key) {
    return makeRow(word, CliMatch::FLAG, CliConvert::NONE, key);
}
// A flag matched by its beginning.
constexpr CliOption prefixFlagOpt(const char* word, const char* key) {
    return makeRow(word, CliMatch::FLAG_PREFIX, CliConvert::NONE, key);
}

// The whole table in matching order.
std::span<const CliOption> cliOptionTable();

// The parts of the table, one per area, in matching order; cliOptionTable
// joins them (CliOptionTable*.cpp).
std::span<const CliOption> cliClientOptions();
std::span<const CliOption> cliMessageOptions();
std::span<const CliOption> cliPublishOptions();
std::span<const CliOption> cliSubscribeOptions();
std::span<const CliOption> cliMeasureOptions();
std::span<const CliOption> cliSessionOptions();
std::span<const CliOption> cliGeneralOptions();

// True when arg is an instance of the row, in its lower-case or (where it
// has one) upper-case spelling; value receives what follows the word.
bool cliOptionMatches(const CliOption& option, std::string_view arg, std::string& value);

// The upper-case spelling of the row's word.
std::string cliOptionUpperWord(const CliOption& option);

}  // namespace zorvane::pubsub
