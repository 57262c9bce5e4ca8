#include <gtest/gtest.h>

#include <signal.h>

#include <sstream>

#include "common/genReleaseVersion.h"
#include "vexload/ClockCheck.h"
#include "vexload/Driver.h"

using namespace zorvane::pubsub;

TEST(VersionText, ToolAndLibraryBlocksInOrder) {
    std::string text = getVersionStr();
    const std::string rule(50, '=');
    std::string expectedHead = "\n" + rule + "\nvexload Version Information: \n\tVersion      : " +
                               GenReleaseVersion::onlyInstance()->getVersion() + "\n";
    ASSERT_EQ(text.rfind(expectedHead, 0), 0U) << text;
    std::size_t dependency = text.find("\n\n\n" + rule +
                                       "\nDependency Build Information:\n\n"
                                       "zorClient Version Information:\n\tVersion      : ");
    ASSERT_NE(dependency, std::string::npos) << text;
    EXPECT_NE(text.find("\tBuild Variant: ", dependency), std::string::npos);
    EXPECT_EQ(text.back(), '\n');
    EXPECT_EQ(GenReleaseVersion::onlyInstance()->getVersion().find_first_not_of("0123456789."),
              std::string::npos);
}

TEST(VersionText, ReleasePartsJoinWithTheirSuffixes) {
    GenReleaseVersion version("3", "2", "b", "1", "x", "42", "host", "me", "abc", "2026-01-01");
    EXPECT_EQ(version.getVersion(), "3.2b.1x.42");
    EXPECT_EQ(version.getDateTime(), "2026-01-01");
}

namespace {
// A tick rate of 1 MHz makes ticks equal microseconds, so durations read
// directly in the calls below.
constexpr UINT64 kHz = 1000000;

std::string check(UINT64 usElapsed, UINT64 ticksElapsed, bool fixed = false) {
    std::ostringstream out;
    if (fixed) {
        out << std::fixed;
    }
    ClockCheck::report(out, 1000, 1000 + usElapsed, 500, 500 + ticksElapsed, kHz);
    return out.str();
}
}  // namespace

TEST(ClockCheck, ComparesTruncatedWholeSeconds) {
    EXPECT_EQ(check(1001000, 1999000), "");
    EXPECT_EQ(check(999999, 0), "");
    EXPECT_EQ(check(5000000, 5999999), "");
}

TEST(ClockCheck, ReportTextUsesPrecisionSixAndKeepsTheStreamNotation) {
    EXPECT_EQ(check(1999000, 2001000),
              "Error in clock.  Runtime calculation different by more than 1 second between "
              "timeofday and cycles (in sec)\n"
              "\tVia time of day: 1.999\n"
              "\tVia cycles     : 2.001\n");
    std::string fixed = check(1999000, 2001000, true);
    EXPECT_NE(fixed.find("\tVia time of day: 1.999000\n"), std::string::npos) << fixed;
}

TEST(ClockCheck, UnknownTickRateReportsNothing) {
    std::ostringstream out;
    EXPECT_FALSE(ClockCheck::report(out, 0, 5000000, 0, 1, 0));
    EXPECT_EQ(out.str(), "");
}

TEST(Signals, FirstInterruptAsksForShutdownAndRestoresTheDefault) {
    ASSERT_NE(signal(SIGINT, sigHdlr), SIG_ERR);
    shutdownFlag_s.store(false);
    sigHdlr(SIGINT);
    EXPECT_TRUE(shutdownFlag_s.load());
    struct sigaction current {};
    sigaction(SIGINT, nullptr, &current);
    EXPECT_EQ(current.sa_handler, SIG_DFL) << "a second Ctrl-C must end the process";
    shutdownFlag_s.store(false);
}

TEST(Signals, AlarmsAreCountedAndTheHandlerStays) {
    INT64 before = numAlarms_s.load();
    signal(SIGALRM, SIG_DFL);
    sigHdlr(SIGALRM);
    sigHdlr(SIGALRM);
    EXPECT_EQ(numAlarms_s.load(), before + 2);
    struct sigaction current {};
    sigaction(SIGALRM, nullptr, &current);
    EXPECT_EQ(current.sa_handler, &sigHdlr);
    signal(SIGALRM, SIG_DFL);
}
