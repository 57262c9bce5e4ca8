// What the parser refuses and warns about: each fault prints its text to
// standard error and ends with status 255; warnings let the parse finish.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/unit/CliTestSupport.h"

namespace zorvane::pubsub {
namespace {

using test::parseLine;

struct FaultCase {
    std::vector<std::string> args;
    std::string err;  // all of standard error
};

void expectOutcomes(const std::vector<FaultCase>& cases, int status) {
    for (const FaultCase& c : cases) {
        SCOPED_TRACE(::testing::PrintToString(c.args));
        CliProperties props(TOOL_NAME, "1");
        const auto outcome = parseLine(props, c.args);
        EXPECT_EQ(outcome.status, status);
        EXPECT_EQ(outcome.err, c.err);
        EXPECT_EQ(outcome.out, "");
    }
}

std::string range(const std::string& text, const std::string& value) {
    return "ERROR: " + text + value + "\n\n";
}

std::string unknown(const std::string& arg) {
    return "ERROR: Unknown option '" + arg + "'\n\ntype vexload_c -h for the option list\n";
}

// Range faults of the option table share one check; a lower bound, an upper
// bound and a two-value range stand for all of them.
TEST(CliOptionFaultsTest, ValuesAreCheckedWhenTheirOptionIsMet) {
    const std::string neg = "ERROR: Invalid # msgs to publish, (0..) is valid: ";
    const std::string sdmPsv =
        "ERROR: Invalid combination. Cannot perform structured messaging with send vectors.\n\n";
    const std::string replay =
        "ERROR: Cannot specify both replay from date and replication group message id\n\n";
    expectOutcomes(
        {
            {{"-cm=foo"},
             "ERROR: client mode not understood. Entered: foo.  See help for valid values. \n\n"},
            {{"-cpt=0"},
             range("Invalid # publish threads for -cpt, at least 1 is needed to share "
                   "the messages: ",
                   "0")},
            {{"-cc=x"}, range("Invalid # of clients, (1..) is valid: ", "0")},
            {{"-mrt=mean"},
             "ERROR: Invalid message rate target: mean.  See help for valid values. \n\n"},
            {{"-mn=99999999999999999999"},
             "ERROR: Error parsing -mn value.  Number out of range of 64 bit int\n\n"},
            {{"-mn=12x"}, "ERROR: Invalid character x in # msgs to publish: -mn=12x\n\n"},
            {{"-MN=-5"}, neg + "-5\n\n"},
            {{"-msx=8,7"}, "ERROR: Minumum xml msg size is 8 bytes.  Found (7)\n\n"},
            {{"-msxs=1,2"}, "ERROR: Must specify start,step,end in bytes for msxs\n\n"},
            {{"-msar=-1-5"}, "ERROR: Must specify msar in the form -msar=min-max\n\n"},
            {{"-mt=fast"},
             "ERROR: Invalid message type: fast.  See help for valid message types. \n\n"},
            {{"-aem=x"},
             "ERROR: Invalid ack event mode: x.  See help for valid ack event modes. \n\n"},
            {{"-sdm=", "-psv=0"}, sdmPsv},
            {{"-psv=2", "-SDM=f"}, sdmPsv},
            {{"-mtl=1e3"}, "ERROR: Invalid character e in TTL: -mtl=1e3\n\n"},
            {{"-psv=51"}, range("Invalid send vector size. (0..50) is valid: ", "51")},
            {{"-rci=200001"},
             range("Invalid value for rate check interval, (1..200000) is valid: ", "200001")},
            // The first bad option names the fault.
            {{"-cos=4", "-rci=0"}, range("Invalid value for cos, (0..3) is valid: ", "4")},
            {{"-fdr=a", "-fmidr=b"}, replay},
            {{"-fmidr=b", "-FDR=a"}, replay},
            {{"-pmpl=1,2,3"}, "ERROR: List of priorities must be dividable by two.\n\n"},
        },
        255);
}

TEST(CliOptionFaultsTest, SubscribingMeasurementAndSessionValues) {
    expectOutcomes(
        {
            {{"-sri=0"}, range("Invalid value for sub rate interval, (-1, >0) is valid: ", "0")},
            {{"-carl=0"}, range("Invalid value for -carl, (> 0) is valid: ", "0")},
            {{"-pea=2"},
             range("Invalid value for provision endpoint access type, (0,1) is valid: ", "2")},
            {{"-lbx"}, "ERROR: Invalid format for -lb option\n\n"},
            {{"-lb=15"}, range("Invalid # of buckets, (16..4096) is valid: ", "15")},
            {{"-lg=35"}, range("Invalid latency granularity factor, (1..34) is valid: ", "35")},
            {{"-apa=5001"},
             range("Invalid value for AD pub ack time, (0..5000) is valid: ", "5001")},
            {{"-as=plain"},
             "ERROR: Invalid authentication scheme: plain.  See help for valid authentication "
             "schemes. \n\n"},
            {{"-rseed=1x"}, "ERROR: Invalid character x in  RSEED: -rseed=1x\n\n"},
            {{"-ptf=/nonexistent/t"}, "Cannot open the topics file: /nonexistent/t\n\n"},
            {{"-pqf=/nonexistent/q"}, "Cannot open the queues file: /nonexistent/q\n\n"},
            {{"-pql=a,b:1:2"},
             "ERROR: Unable to parse correctly one of the values for a list of strings that "
             "involves probability weights. Got b:1:2.\n\n"},
            {{"-stp=p", "-stc=0"},
             range("Invalid value for -stc with -stp, (1..) is valid: ", "0")},
            {{"-ptc=-3", "-ptp=p"},
             range("Invalid value for -ptc with -ptp, (1..) is valid: ", "-3")},
            // Only whole words, in one case, with their value where they take one.
            {{"-Cc=1"}, unknown("-Cc=1")},
            {{"-x"}, unknown("-x")},
            {{"-vx"}, unknown("-vx")},
            {{"-Log=info"}, unknown("-Log=info")},
            {{"-log"}, unknown("-log")},
            {{"-logfile"}, unknown("-logfile")},
            {{"-v", "-zz"}, unknown("-zz")},
            {{"-poo=-1"},
             "ERROR: Invalid value for publisher order offset. \n"
             "       Valid values are either a single non-negative integer,\n"
             "       or a comma-separated list of pairs of non-negative integers\n"
             "       with a '@' between the values in a given pair.\n\n"
             "       -poo=3\n       -poo=1@10,3@11,2@10\n\n"},
            {{"-soo=1@10;x"},
             "ERROR: Invalid value for subcriber order offset.\n"
             "       It has to be of the form   1@10,2@10;1@11,2@10\n"
             "       Note the absence of semi-colon after the last sequence.\n\n"},
        },
        255);
}

TEST(CliOptionFaultsTest, CrossChecksRunInOrderAfterTheWholeLine) {
    const std::string use = "Use vexload_c -h to get all the options\n";
    const std::string reflect =
        "ERROR: In client mode reflect, must specify at least one topic \n"
        "       and cannot specify cache request or publish messages \n" +
        use;
    const std::string vector =
        "ERROR: Cannot use publish send vectors with randomization. \n" + use;
    const std::string palSizes =
        "ERROR: Cannot combine -pal with either -msa or -msas.\n"
        "       -pal uses a given file for the attachments and\n"
        "       -msa or -msas generate the attachments instead.\n";
    const std::string soo =
        "ERROR: When specifying the -soo option, there needs to\n"
        "       be a match between the number of clients described\n"
        "       in the -soo option and the client count -cc option.\n";
    expectOutcomes(
        {
            {{"-cm=reflect"}, reflect},
            {{"-cm=reflect", "-ptl=t", "-mn=1"}, reflect},
            {{"-chrn=2", "-cm=reflect", "-ptl=t"}, reflect},
            {{"-cm=reflect", "-psv=5", "-rmo"}, reflect},
            // A fault of the checks wins over the version.
            {{"-v", "-psv=5", "-rmo"}, vector},
            {{"-pal=f", "-msa=1"}, palSizes},
            {{"-msas=1,1,1", "-pal=f", "-rmac"}, palSizes},
            {{"-pal=f", "-rmac", "-msar=1-2"},
             "ERROR: Cannot combine -pal with -rmac.\n"
             "       -pal uses a given file for the attachments and\n"
             "       -rmac wants to make the attachments' contents random.\n"},
            {{"-soo=1@1;2@2", "-cc=3"},
             soo + "       For reference, we have 3 actual clients requested\n"
                   "       and 2 clients described in the -soo argument.\n"},
            {{"-soo=1@1;"},
             soo + "       For reference, we have 1 actual clients requested\n"
                   "       and 2 clients described in the -soo argument.\n"},
        },
        255);

    const std::string weights =
        "WARNING: Using probability weights for ptl, ptf, pql, pqf or msa requires \n"
        "         the -rmo flag to be set. Otherwise we can still proceed but \n"
        "         those weights are ignored.\n";
    const std::string jitter =
        "WARNING: The value specified to -rjit is not between [0.0, 100.0].\n"
        "         Any resulting message attachment size values that would \n"
        "         be less than 1 byte will be brought back to 1 byte.\n";
    expectOutcomes(
        {
            {{"-ptl=a:2"}, weights},
            {{"-ptl=a:2;b:3", "-msa=1:3", "-pql=q:4", "-rjit=150"}, weights + jitter},
            {{"-ptl=a:1.0,b", "-rjit=100", "-pal=f"}, ""},
            {{"-ptl=a:2", "-rmo", "-rjit=-1"}, jitter},
            {{"-cm=reflect", "-ptl=t", "-mn=0", "-soo= ", "-cc=4"}, ""},
        },
        -1);
}

TEST(CliOptionFaultsTest, HelpAndStrayWordsEndTheParseAtOnce) {
    CliProperties reference(TOOL_NAME, "1");
    const auto help = test::runCaptured([&] { reference.printHelp(); });
    CliProperties props(TOOL_NAME, "1");
    auto outcome = parseLine(props, {"-cc=2", "-h", "-zz"});
    EXPECT_EQ(outcome.status, 255);
    EXPECT_EQ(outcome.out, help.out);
    EXPECT_EQ(outcome.err, "");

    for (const std::string stray : {"x", ""}) {
        outcome = parseLine(props, {"-v", stray, "-zz"});
        EXPECT_EQ(outcome.status, 255);
        EXPECT_EQ(outcome.err, "ERROR: Parameters must start with -\n\n");
        EXPECT_EQ(outcome.out, help.out);
    }
}

TEST(CliOptionFaultsDeathTest, WithoutAHookTheProcessEndsWithStatus255) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    CliProperties props(TOOL_NAME, "1");
    std::string arg0 = "vexload_c";
    std::string arg1 = "-psv=99";
    char* argV[] = {arg0.data(), arg1.data(), nullptr};
    EXPECT_EXIT(props.parseOptions(2, argV), ::testing::ExitedWithCode(255),
                "ERROR: Invalid send vector size. \\(0..50\\) is valid: 99");
    arg1 = "-he";
    EXPECT_EXIT(props.parseOptions(2, argV), ::testing::ExitedWithCode(255), "");
}

}  // namespace
}  // namespace zorvane::pubsub
