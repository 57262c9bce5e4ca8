// Helpers shared by the tests of message content generation.
#pragma once

#include <gtest/gtest.h>

#include <cstdarg>
#include <cstdio>
#include <string>
#include <utility>
#include <vector>

#include "common/DiskUtils.h"
#include "common/Log.h"
#include "common/PubSubException.h"
#include "common/PublishProperties.h"
#include "tests/unit/TempPath.h"

namespace zorvane::pubsub::contenttest {

// The text of the PubSubException the action raises, or "no fault".
template <typename Action>
std::string faultOf(Action action) {
    try {
        action();
    } catch (const PubSubException& e) {
        return e.what();
    }
    return "no fault";
}

// A file in the test's temporary folder; returns its path.
inline std::string tempFile(const std::string& name, const std::string& contents) {
    const std::string path = test::tempPath(name);
    DiskUtils::writeFile(path, contents);
    return path;
}

// A record with one group of topics, each of weight 1.
inline PublishProperties withTopics(const std::vector<std::string>& topics) {
    PublishProperties props;
    props.setTopicsArray({topics});
    props.setTopicsWeightsArray({std::vector<double>(topics.size(), 1.0)});
    return props;
}

// Catches the application log, at every level, while it lives.
class LogCapture {
  public:
    LogCapture() {
        lines().clear();
        log::attach(&LEVEL, &capture);
    }
    ~LogCapture() { log::detach(); }
    static std::vector<std::pair<int, std::string>>& lines() {
        static std::vector<std::pair<int, std::string>> lines_s;
        return lines_s;
    }

  private:
    static constexpr int LEVEL = log::LEVEL_DEBUG;
    static void capture(int, int level, const char*, int, const char* format, ...) {
        char text[512];
        va_list args;
        va_start(args, format);
        std::vsnprintf(text, sizeof text, format, args);
        va_end(args);
        lines().emplace_back(level, text);
    }
};

}  // namespace zorvane::pubsub::contenttest
