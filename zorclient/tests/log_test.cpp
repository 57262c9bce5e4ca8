// The library's logger as an application sees it: filter levels per category, the exported
// APP level, the output file, and whole lines under concurrency.
#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdio>
#include <cstring>
#include <fstream>
#include <regex>
#include <string>
#include <thread>
#include <vector>

#include "zorClient.h"

namespace {

constexpr int APP = ZORCLIENT_LOG_CATEGORY_APP;
constexpr int SDK = ZORCLIENT_LOG_CATEGORY_SDK;

// Each test writes into a file of its own and reads it back line by line.
class LogFileTest : public ::testing::Test {
  protected:
    void SetUp() override {
        path_m = ::testing::TempDir() + "zorclient_log_" + std::to_string(getpid()) + "_" +
                 ::testing::UnitTest::GetInstance()->current_test_info()->name() + ".log";
        std::remove(path_m.c_str());
        ASSERT_EQ(ZORCLIENT_OK, zorClient_log_setFile(path_m.c_str()));
        ASSERT_EQ(ZORCLIENT_OK,
                  zorClient_log_setFilterLevel(ZORCLIENT_LOG_CATEGORY_ALL, ZORCLIENT_LOG_NOTICE));
    }
    void TearDown() override {
        zorClient_log_setFile(nullptr);
        std::remove(path_m.c_str());
    }
    std::vector<std::string> lines() const {
        std::ifstream in(path_m);
        std::vector<std::string> result;
        for (std::string line; std::getline(in, line);) {
            result.push_back(line);
        }
        return result;
    }
    std::string path_m;
};

TEST_F(LogFileTest, LineCarriesTimeLevelCategoryPlaceAndWholeText) {
    std::string longText(5000, 'q');
    longText += "END";
    _zorClient_log_output_detail(APP, ZORCLIENT_LOG_WARNING, "/src/dir/Some.cpp", 42,
                                 "value %d of %s\n", 7, "x");
    _zorClient_log_output_detail(SDK, ZORCLIENT_LOG_ERROR, "Other.cpp", 3, "plain");
    _zorClient_log_output_detail(APP, ZORCLIENT_LOG_NOTICE, "f.cpp", 1, "%s", longText.c_str());
    std::vector<std::string> written = lines();
    ASSERT_EQ(3u, written.size());
    const std::string stamp = R"(\d{4}-\d\d-\d\dT\d\d:\d\d:\d\d\.\d{6}Z )";
    EXPECT_TRUE(
        std::regex_match(written[0], std::regex(stamp + "WARNING APP Some\\.cpp:42 value 7 of x")))
        << written[0];
    EXPECT_TRUE(std::regex_match(written[1], std::regex(stamp + "ERROR SDK Other\\.cpp:3 plain")))
        << written[1];
    EXPECT_NE(std::string::npos, written[2].find(longText));
}

TEST_F(LogFileTest, LineAboveTheFilterLevelIsNotWritten) {
    ASSERT_EQ(ZORCLIENT_OK,
              zorClient_log_setFilterLevel(ZORCLIENT_LOG_CATEGORY_APP, ZORCLIENT_LOG_WARNING));
    ASSERT_EQ(ZORCLIENT_OK,
              zorClient_log_setFilterLevel(ZORCLIENT_LOG_CATEGORY_SDK, ZORCLIENT_LOG_DEBUG));
    _zorClient_log_output_detail(APP, ZORCLIENT_LOG_NOTICE, "f.cpp", 1, "app notice hidden");
    _zorClient_log_output_detail(APP, ZORCLIENT_LOG_WARNING, "f.cpp", 2, "app warning shown");
    _zorClient_log_output_detail(SDK, ZORCLIENT_LOG_DEBUG, "f.cpp", 3, "sdk debug shown");
    std::vector<std::string> written = lines();
    ASSERT_EQ(2u, written.size());
    EXPECT_NE(std::string::npos, written[0].find("app warning shown"));
    EXPECT_NE(std::string::npos, written[1].find("sdk debug shown"));
}

TEST_F(LogFileTest, ConcurrentLinesNeverMix) {
    constexpr int THREADS = 6;
    constexpr int LINES = 300;
    std::vector<std::thread> writers;
    for (int t = 0; t < THREADS; ++t) {
        writers.emplace_back([t] {
            for (int i = 0; i < LINES; ++i) {
                _zorClient_log_output_detail(APP, ZORCLIENT_LOG_NOTICE, "t.cpp", t,
                                             "writer %d line %d %s", t, i,
                                             "0123456789abcdefghijklmnopqrstuvwxyz");
            }
        });
    }
    for (std::thread& writer : writers) {
        writer.join();
    }
    std::vector<std::string> written = lines();
    ASSERT_EQ(static_cast<std::size_t>(THREADS * LINES), written.size());
    const std::regex whole(
        R"(.* NOTICE APP t\.cpp:(\d) writer (\d) line \d+ 0123456789abcdefghijklmnopqrstuvwxyz)");
    std::vector<int> perWriter(THREADS, 0);
    for (const std::string& line : written) {
        std::smatch match;
        ASSERT_TRUE(std::regex_match(line, match, whole)) << line;
        ASSERT_EQ(match[1], match[2]);
        ++perWriter[std::stoi(match[2])];
    }
    EXPECT_EQ(std::vector<int>(THREADS, LINES), perWriter);
}

TEST_F(LogFileTest, NullFileAndCleanupSendLinesBackToStandardError) {
    ASSERT_EQ(ZORCLIENT_OK, zorClient_log_setFile(nullptr));
    ::testing::internal::CaptureStderr();
    _zorClient_log_output_detail(APP, ZORCLIENT_LOG_ERROR, "f.cpp", 1, "to stderr");
    EXPECT_NE(std::string::npos, ::testing::internal::GetCapturedStderr().find("to stderr"));

    ASSERT_EQ(ZORCLIENT_OK, zorClient_log_setFile(path_m.c_str()));
    ASSERT_EQ(ZORCLIENT_OK, zorClient_cleanup());
    ::testing::internal::CaptureStderr();
    _zorClient_log_output_detail(APP, ZORCLIENT_LOG_ERROR, "f.cpp", 2, "after cleanup");
    EXPECT_NE(std::string::npos, ::testing::internal::GetCapturedStderr().find("after cleanup"));
    EXPECT_TRUE(lines().empty());
}

TEST_F(LogFileTest, FileThatCannotBeOpenedFailsNamingItAndKeepsTheOutput) {
    const char* bad_p = "/nonexistent-zorclient-dir/x.log";
    ASSERT_EQ(ZORCLIENT_FAIL, zorClient_log_setFile(bad_p));
    EXPECT_EQ(ZORCLIENT_SUBCODE_OS_ERROR, zorClient_getLastErrorInfo()->subCode);
    EXPECT_NE(nullptr, std::strstr(zorClient_getLastErrorInfo()->errorStr, bad_p));
    _zorClient_log_output_detail(APP, ZORCLIENT_LOG_ERROR, "f.cpp", 1, "still here");
    ASSERT_EQ(1u, lines().size());
}

TEST(LogFilterLevel, CategoryAllAndAppMoveTheExportedLevelAndBadInputChangesNothing) {
    // Applications read the level through an int pointer.
    const int* appLevel_p = reinterpret_cast<const int*>(&_zorClient_log_appFilterLevel_g);
    ASSERT_EQ(ZORCLIENT_OK,
              zorClient_log_setFilterLevel(ZORCLIENT_LOG_CATEGORY_ALL, ZORCLIENT_LOG_DEBUG));
    EXPECT_EQ(ZORCLIENT_LOG_DEBUG, *appLevel_p);
    ASSERT_EQ(ZORCLIENT_OK,
              zorClient_log_setFilterLevel(ZORCLIENT_LOG_CATEGORY_SDK, ZORCLIENT_LOG_ERROR));
    EXPECT_EQ(ZORCLIENT_LOG_DEBUG, *appLevel_p);
    ASSERT_EQ(ZORCLIENT_OK,
              zorClient_log_setFilterLevel(ZORCLIENT_LOG_CATEGORY_APP, ZORCLIENT_LOG_CRITICAL));
    EXPECT_EQ(ZORCLIENT_LOG_CRITICAL, *appLevel_p);
    EXPECT_EQ(ZORCLIENT_FAIL, zorClient_log_setFilterLevel(static_cast<zorClient_log_category_t>(3),
                                                           ZORCLIENT_LOG_DEBUG));
    EXPECT_EQ(ZORCLIENT_SUBCODE_PARAM_OUT_OF_RANGE, zorClient_getLastErrorInfo()->subCode);
    EXPECT_EQ(ZORCLIENT_FAIL, zorClient_log_setFilterLevel(ZORCLIENT_LOG_CATEGORY_ALL,
                                                           static_cast<zorClient_log_level_t>(8)));
    EXPECT_EQ(ZORCLIENT_FAIL, zorClient_log_setFilterLevel(ZORCLIENT_LOG_CATEGORY_APP,
                                                           static_cast<zorClient_log_level_t>(-1)));
    EXPECT_EQ(ZORCLIENT_LOG_CRITICAL, *appLevel_p);
}

}  // namespace
