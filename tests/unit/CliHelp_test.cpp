// The three help texts: their groups and order, the lines users rely on,
// values taken from the program, and the lines that depend on the tool name.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "common/CliOption.h"
#include "tests/unit/CliTestSupport.h"

namespace zorvane::pubsub {
namespace {

using test::runCaptured;
using ::testing::Contains;
using ::testing::Not;

std::vector<std::string> lines(const std::string& text) {
    std::vector<std::string> result;
    std::istringstream in(text);
    for (std::string line; std::getline(in, line);) {
        result.push_back(line);
    }
    return result;
}

std::vector<std::string> helpLines(const std::string& tool, void (CliProperties::*print)() const,
                                   std::vector<std::string> args = {}) {
    CliProperties props(tool, "1");
    if (!args.empty()) {
        test::parseLine(props, args);
    }
    return lines(runCaptured([&] { (props.*print)(); }).out);
}

// Headings of the groups in the order they appear.
std::vector<std::string> headings(const std::vector<std::string>& text) {
    std::vector<std::string> result;
    for (size_t i = 0; i + 1 < text.size(); ++i) {
        if (text[i].starts_with("  ") && !text[i].starts_with("   ") &&
            !text[i].starts_with("  -")) {
            result.push_back(text[i]);
        }
    }
    return result;
}

TEST(CliHelpTest, ShortHelpListsItsGroupsInOrder) {
    const auto text = helpLines(TOOL_NAME, &CliProperties::printHelp, {"-lb=32", "-lg=5"});
    ASSERT_GE(text.size(), 2u);
    EXPECT_EQ(text[0], "vexload_c [options] ");
    EXPECT_EQ(text[1], "");
    EXPECT_EQ(headings(text),
              (std::vector<std::string>{
                  "  Client control:", "  Message Control:",
                  "  Publishing options (All files lists are comma separated, full paths): ",
                  "  Subscribing options (All lists are comma separated) ",
                  "  Performance measurement options.  Runtime must be > 1 second:",
                  "  Tool Specific Options: ", "  General Parameters:", "  General Flags:"}));
    EXPECT_THAT(text,
                Contains("    -mr=number      Publishing rate (msg/sec per client) (default 1)"));
    EXPECT_THAT(text, Contains("    -psv=number     Configure pub send vector.  Default is 0, "
                               "meaning disabled.  Max is 50"));
    EXPECT_THAT(text, Contains("                    (16..4096, default 32)"));
    EXPECT_THAT(text, Contains("                    (1..34, default 5)"));
    EXPECT_THAT(text, Contains(::testing::HasSubstr("perf_client0001")));
    EXPECT_THAT(text, Contains("                    (default direct)"));

    const auto quad = helpLines(CliProperties::QUAD_MIX_TR, &CliProperties::printHelp);
    EXPECT_THAT(quad, Contains("  Tool Specific Options: "));
    EXPECT_THAT(quad, Not(Contains(::testing::StartsWith("    -psm "))));
    const auto other = helpLines("other_tool", &CliProperties::printHelp);
    EXPECT_EQ(other[0], "other_tool [options] ");
    EXPECT_THAT(other, Not(Contains("  Tool Specific Options: ")));
    EXPECT_THAT(other, Not(Contains(::testing::StartsWith("    -ka="))));
}

TEST(CliHelpTest, MoreHelpOpensWithItsBannerAndKeepsItsTellingLines) {
    const auto text = helpLines(TOOL_NAME, &CliProperties::printMoreHelp);
    ASSERT_GE(text.size(), 3u);
    EXPECT_EQ(text[0], "  -------------------------------------------");
    EXPECT_EQ(text[1], "  Advanced Options ");
    EXPECT_EQ(text[2], text[0]);
    const std::vector<std::string> expected = {
        "  Client control:",
        "  Message Control:",
        "  Publishing options: ",
        "  Subscribing options (All lists are comma separated) ",
        "  Client Ack Options (applies only to GD msgs)",
        "  Performance measurement options.  Runtime must be > 1 second:",
        "  Assured Delivery:",
        "  Authentication and SSL Options:",
        "  Cache Options (-ch..):",
        "  Randomization:",
        "  Tool Specific Options: ",
        "  Tool Specific Debug Options: ",
        "  General Parameters:",
        "  General Flags:",
        "  Trace Parameters:"};
    const auto found = headings(text);
    EXPECT_EQ(std::vector<std::string>(found.begin() + 1, found.end()), expected);
    EXPECT_THAT(text, Contains("    -cos=int        The cos value to use in publishing.  Valid "
                               "range (1..3) or"));
    EXPECT_THAT(text, Contains("    Some of the options use a special Colon Probability Weight "
                               "notation (CPW) to specify"));
    EXPECT_THAT(text, Contains("    -rmo            Set this flag to enable the publishing of "
                               "messages in"));
    const auto quad = helpLines(CliProperties::QUAD_MIX_TR, &CliProperties::printMoreHelp);
    for (const char* word : {"-cpc ", "-cpt=", "-crr ", "-ctt ", "-srs "}) {
        EXPECT_THAT(text, Contains(::testing::StartsWith(std::string("    ") + word)));
        EXPECT_THAT(quad, Not(Contains(::testing::StartsWith(std::string("    ") + word))));
    }
}

TEST(CliHelpTest, EveryOptionOfAGroupHasOneAlignedLine) {
    std::vector<std::string> all = helpLines(TOOL_NAME, &CliProperties::printHelp);
    const auto more = helpLines(TOOL_NAME, &CliProperties::printMoreHelp);
    all.insert(all.end(), more.begin(), more.end());
    for (const std::string& line : all) {
        if (line.starts_with("    -")) {
            SCOPED_TRACE(line);
            ASSERT_GT(line.size(), 20u);
            EXPECT_EQ(line[19], ' ');
            EXPECT_NE(line[20], ' ');
        }
    }
    for (const CliOption& row : cliOptionTable()) {
        SCOPED_TRACE(row.word_mp);
        if (row.help_m.group_m == CliHelpGroup::NONE) {
            EXPECT_EQ(row.help_m.form_mp, nullptr);
            continue;
        }
        const std::string lead = std::string("    ") + row.help_m.form_mp + " ";
        EXPECT_EQ(std::count_if(all.begin(), all.end(),
                                [&](const std::string& line) { return line.starts_with(lead); }),
                  1);
    }
    for (const char* hidden : {"    -jdfl", "    -tpp", "    -tnd"}) {
        EXPECT_THAT(all, Not(Contains(::testing::StartsWith(hidden))));
    }
}

TEST(CliHelpTest, ExamplesAreWholeCommandLines) {
    const auto text = helpLines(TOOL_NAME, &CliProperties::printExampleHelp);
    ASSERT_EQ(text.size(), 3u + 10 * 3);
    EXPECT_EQ(text[1], "  CLI Examples (for basic options see -h | -?) ");
    EXPECT_EQ(text[3], "  - Publish and receive 5 100 byte messages on a topic at 1 msg/sec:");
    EXPECT_EQ(text[4], "      vexload_c -cip=192.0.2.xx -ptl=a -stl=a -msa=100 -mn=5 -mr=1");
    EXPECT_EQ(text[5], "");
    EXPECT_EQ(text[31], "      vexload_c -cip=tcps://192.0.2.xx ");
    for (size_t i = 4; i < text.size(); i += 3) {
        SCOPED_TRACE(text[i]);
        EXPECT_TRUE(text[i].starts_with("      vexload_c -cip="));
    }
}

}  // namespace
}  // namespace zorvane::pubsub
