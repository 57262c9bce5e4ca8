// The option table as one list, and how an argument is matched against a row.
#include <cctype>
#include <vector>

#include "common/CliOption.h"

namespace zorvane::pubsub {

namespace {

char upperOf(char c) {
    return static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
}

// True when arg begins with word, spelled as it stands or all in upper case.
bool beginsWith(std::string_view arg, std::string_view word, bool upper) {
    if (arg.size() < word.size()) {
        return false;
    }
    for (size_t i = 0; i < word.size(); ++i) {
        if (arg[i] != (upper ? upperOf(word[i]) : word[i])) {
            return false;
        }
    }
    return true;
}

bool matchesSpelling(const CliOption& option, std::string_view arg, bool upper,
                     std::string& value) {
    const std::string_view word(option.word_mp);
    switch (option.match_m) {
        case CliMatch::FLAG:
            if (arg.size() != word.size() || !beginsWith(arg, word, upper)) {
                return false;
            }
            value.clear();
            return true;
        case CliMatch::FIRST_FOUR:
            // Only "-ibd" is compared; the value starts one character later
            // than the four, as if an "=" stood there.
            if (!beginsWith(arg, word.substr(0, 4), upper)) {
                return false;
            }
            value.assign(arg.size() > 5 ? arg.substr(5) : std::string_view());
            return true;
        case CliMatch::VALUE:
        case CliMatch::FLAG_PREFIX:
        case CliMatch::OPTIONAL_VALUE:
            if (!beginsWith(arg, word, upper)) {
                return false;
            }
            value.assign(arg.substr(word.size()));
            return true;
    }
    return false;
}

std::vector<CliOption> joinParts() {
    std::vector<CliOption> table;
    for (const std::span<const CliOption> part :
         {cliClientOptions(), cliMessageOptions(), cliPublishOptions(), cliSubscribeOptions(),
          cliMeasureOptions(), cliSessionOptions(), cliGeneralOptions()}) {
        table.insert(table.end(), part.begin(), part.end());
    }
    return table;
}

}  // namespace

std::span<const CliOption> cliOptionTable() {
    static const std::vector<CliOption> table_s = joinParts();
    return table_s;
}

bool cliOptionMatches(const CliOption& option, std::string_view arg, std::string& value) {
    return matchesSpelling(option, arg, false, value) ||
           (option.upperTwin_m && matchesSpelling(option, arg, true, value));
}

std::string cliOptionUpperWord(const CliOption& option) {
    std::string word(option.word_mp);
    for (char& c : word) {
        c = upperOf(c);
    }
    return word;
}

}  // namespace zorvane::pubsub
