// Collects the tool's log lines while an object of this type lives: attaches
// a capturing logger at the given level and detaches it again. One at a
// time; attach before starting threads that log.
#pragma once

#include <algorithm>
#include <cstdarg>
#include <cstdio>
#include <mutex>
#include <string>
#include <vector>

#include "common/Log.h"

namespace zorvane::pubsub {

class LogCapture {
  public:
    explicit LogCapture(int level = log::LEVEL_DEBUG) {
        level_s = level;
        lines().clear();
        log::attach(&level_s, &capture);
    }
    ~LogCapture() { log::detach(); }
    bool contains(const std::string& line) const {
        std::lock_guard<std::mutex> lock(mutex());
        return std::find(lines().begin(), lines().end(), line) != lines().end();
    }
    std::vector<std::string> all() const {
        std::lock_guard<std::mutex> lock(mutex());
        return lines();
    }

  private:
    static void capture(int, int, const char*, int, const char* format, ...) {
        char text[1024];
        va_list args;
        va_start(args, format);
        std::vsnprintf(text, sizeof text, format, args);
        va_end(args);
        std::lock_guard<std::mutex> lock(mutex());
        lines().emplace_back(text);
    }
    static std::mutex& mutex() {
        static std::mutex mutex_s;
        return mutex_s;
    }
    static std::vector<std::string>& lines() {
        static std::vector<std::string> lines_s;
        return lines_s;
    }
    static inline int level_s = log::LEVEL_DEBUG;
};

}  // namespace zorvane::pubsub
