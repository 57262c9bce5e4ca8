// The option table as a whole: its matching order, the consistency of its
// rows with the key table, and that every option word is accepted in its
// lower-case form and, where it has one, in its upper-case form.
#include <gtest/gtest.h>

#include <cstdio>
#include <fstream>
#include <map>
#include <set>

#include "common/CliOption.h"
#include "tests/unit/CliTestSupport.h"
#include "tests/unit/TempPath.h"

namespace zorvane::pubsub {
namespace {

using test::parseLine;

const std::set<std::string> NO_UPPER_TWIN = {"-lp=", "-h", "-?", "-hm", "-he"};
const std::set<std::string> HELP_WORDS = {"-h", "-?", "-hm", "-he"};
// Options whose effect shows nowhere in the store on their own.
const std::set<std::string> NO_STORE_EFFECT = {"-tod", "-stc=", "-ptc="};

// Every value of the store and its plain fields as text, to compare stores.
std::string snapshot(const CliProperties& props) {
    std::string text;
    for (const CliPropertyKey& row : CliProperties::keyTable()) {
        text += std::string(row.name_mp) + "=" + test::valueOf(props, row.name_mp) + "\n";
    }
    for (const char* field :
         {"msgType", "buckets", "granularity", "topics", "queues", "dtes", "selectors"}) {
        text += test::valueOf(props, field) + "\n";
    }
    return text;
}

TEST(CliOptionTableTest, RowsStandInMatchingOrderAndFitTheKeyTable) {
    std::set<std::pair<int, int>> helpPlaces;
    const auto table = cliOptionTable();
    EXPECT_EQ(table.size(), 226u) << "an option was added or lost";
    for (std::size_t at = 0; at < table.size(); ++at) {
        const CliOption& row = table[at];
        SCOPED_TRACE(row.word_mp);
        // The order is the matching order: no row may hide a later one
        // ("-mdts" and "-mdt=" stand before "-md"), in either spelling.
        const std::string value = std::string(row.word_mp).ends_with("=") ? "1" : "";
        for (const std::string& word : {std::string(row.word_mp), cliOptionUpperWord(row)}) {
            std::size_t first = 0;
            std::string rest;
            while (first < table.size() && !cliOptionMatches(table[first], word + value, rest)) {
                ++first;
            }
            EXPECT_EQ(first, at) << word + value;
            if (!row.upperTwin_m) {
                break;  // the upper-case spelling is refused (see below)
            }
        }
        EXPECT_EQ(row.upperTwin_m, !NO_UPPER_TWIN.contains(row.word_mp));
        for (const char* key : {row.key_mp, row.alsoTrue_mp}) {
            if (key == nullptr)
                continue;
            const CliPropertyKey* found = CliProperties::findKey(key);
            ASSERT_NE(found, nullptr) << key;
            const CliPropertyType type = found->type_m;
            switch (key == row.alsoTrue_mp ? CliConvert::NONE : row.convert_m) {
                case CliConvert::TEXT:
                case CliConvert::CHOICE:
                    EXPECT_EQ(type, CliPropertyType::STRING);
                    break;
                case CliConvert::DOUBLE:
                    EXPECT_EQ(type, CliPropertyType::DOUBLE);
                    break;
                case CliConvert::LIST:
                    EXPECT_EQ(type, CliPropertyType::VECTOR);
                    break;
                case CliConvert::NONE:
                    EXPECT_TRUE(type == CliPropertyType::BOOLEAN ||
                                type == CliPropertyType::INTEGER);
                    if (key == row.alsoTrue_mp) {
                        EXPECT_EQ(type, CliPropertyType::BOOLEAN);
                    }
                    break;
                default:
                    EXPECT_TRUE(type == CliPropertyType::INTEGER ||
                                type == CliPropertyType::INT64 || type == CliPropertyType::DOUBLE);
            }
        }
        if (row.help_m.group_m != CliHelpGroup::NONE) {
            EXPECT_TRUE(std::string(row.help_m.form_mp).starts_with(row.word_mp) ||
                        row.match_m == CliMatch::OPTIONAL_VALUE);
            EXPECT_TRUE(helpPlaces.insert({int(row.help_m.group_m), row.help_m.order_m}).second);
        }
    }
}

TEST(CliOptionTableTest, EveryWordIsAcceptedInItsLowerAndUpperCaseForm) {
    const std::string file = test::tempPath("option_table_list.txt");
    std::ofstream(file) << "one\ntwo:2\n";
    std::map<std::string, std::string> samples = {
        {"-cm=", "reply"}, {"-mrt=", "max"},    {"-mt=", "persistent"}, {"-aem=", "windowed"},
        {"-as=", "basic"}, {"-msxs=", "8,1,9"}, {"-msas=", "1,1,2"},    {"-msar=", "1-2"},
        {"-chrt=", "1:2"}, {"-pedn=", "on"},    {"-soo=", "1@2"},       {"-poo=", "1@2"},
        {"-msx=", "8"},    {"-pmpl=", "1,2"},   {"-cc=", "2"},          {"-cpt=", "2"},
        {"-sri=", "2"},    {"-mr=", "2"},       {"-chrr=", "2"},        {"-ptf=", file},
        {"-pqf=", file},   {"-stf=", file},     {"-sqf=", file},        {"-sdf=", file},
        {"-ssf=", file}};
    const std::string defaults = snapshot(CliProperties(TOOL_NAME, "1"));
    for (const CliOption& row : cliOptionTable()) {
        const std::string word = row.word_mp;
        const std::string value =
            word.ends_with("=") ? (samples.contains(word) ? samples[word] : "1") : "";
        std::vector<std::string> spellings = {word + value};
        spellings.push_back(cliOptionUpperWord(row) + value);
        std::string lowerResult;
        for (const std::string& arg : spellings) {
            SCOPED_TRACE(arg);
            const bool upper = arg != spellings.front();
            CliProperties props(TOOL_NAME, "1");
            const auto outcome = parseLine(props, {arg});
            if (upper && !row.upperTwin_m) {
                EXPECT_EQ(outcome.status, 255);
                EXPECT_TRUE(outcome.err.starts_with("ERROR: Unknown option '" + arg + "'"));
            } else if (HELP_WORDS.contains(word)) {
                EXPECT_EQ(outcome.status, 255);
                EXPECT_FALSE(outcome.out.empty());
            } else {
                EXPECT_EQ(outcome.status, -1) << outcome.err;
                const std::string result = snapshot(props);
                EXPECT_EQ(result != defaults, !NO_STORE_EFFECT.contains(word));
                if (upper) {
                    EXPECT_EQ(result, lowerResult);
                }
                lowerResult = result;
            }
        }
    }
    std::remove(file.c_str());
}

}  // namespace
}  // namespace zorvane::pubsub
