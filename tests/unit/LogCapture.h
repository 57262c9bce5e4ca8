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
        levels().clear();
        log::attach(&level_s, &capture);
    }
    ~LogCapture() { log::detach(); }
    bool contains(const std::string& line) const {
        std::lock_guard<std::mutex> lock(mutex());
        return std::find(lines().begin(), lines().end(), line) != lines().end();
    }
    // The line was written at exactly this level.
    bool contains(int level, const std::string& line) const {
        std::lock_guard<std::mutex> lock(mutex());
        for (std::size_t i = 0; i < lines().size(); ++i) {
            if (lines()[i] == line && levels()[i] == level) {
                return true;
            }
        }
        return false;
    }
    // Lines that begin with prefix.
    std::size_t count(const std::string& prefix) const {
        std::lock_guard<std::mutex> lock(mutex());
        return static_cast<std::size_t>(
            std::count_if(lines().begin(), lines().end(),
                          [&](const std::string& line) { return line.rfind(prefix, 0) == 0; }));
    }
    std::vector<std::string> all() const {
        std::lock_guard<std::mutex> lock(mutex());
        return lines();
    }

  private:
    static void capture(int, int level, const char*, int, const char* format, ...) {
        char text[1024];
        va_list args;
        va_start(args, format);
        std::vsnprintf(text, sizeof text, format, args);
        va_end(args);
        std::lock_guard<std::mutex> lock(mutex());
        lines().emplace_back(text);
        levels().push_back(level);
    }
    static std::mutex& mutex() {
        static std::mutex mutex_s;
        return mutex_s;
    }
    static std::vector<std::string>& lines() {
        static std::vector<std::string> lines_s;
        return lines_s;
    }
    static std::vector<int>& levels() {
        static std::vector<int> levels_s;
        return levels_s;
    }
    static inline int level_s = log::LEVEL_DEBUG;
};

}  // namespace zorvane::pubsub
