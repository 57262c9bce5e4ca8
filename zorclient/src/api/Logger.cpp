#include "api/Logger.h"

#include <atomic>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <ctime>
#include <mutex>
#include <string>

namespace zorvane::zorclient {

namespace {

std::atomic<int> sdkFilterLevel_s{ZORCLIENT_LOG_NOTICE};

std::mutex outputMutex_s;
FILE* file_s = nullptr;  // null: standard error

// The exported APP level is a plain C object that applications read without a lock; the
// library's own reads and writes of it are atomic so that they never tear.
std::atomic_ref<zorClient_log_level_t> appFilterLevel() noexcept {
    return std::atomic_ref<zorClient_log_level_t>(_zorClient_log_appFilterLevel_g);
}

const char* levelName(int level) noexcept {
    static const char* const names_s[] = {"EMERGENCY", "ALERT",  "CRITICAL", "ERROR",
                                          "WARNING",   "NOTICE", "INFO",     "DEBUG"};
    return level >= 0 && level <= ZORCLIENT_LOG_DEBUG ? names_s[level] : "LEVEL?";
}

const char* categoryName(int category) noexcept {
    return category == ZORCLIENT_LOG_CATEGORY_APP ? "APP" : "SDK";
}

const char* baseName(const char* path_p) noexcept {
    if (path_p == nullptr) {
        return "?";
    }
    const char* slash_p = std::strrchr(path_p, '/');
    return slash_p != nullptr ? slash_p + 1 : path_p;
}

// "2024-05-01T12:34:56.123456Z" into buffer_p. The text up to the seconds is
// kept per thread and made again only when the second changes: a burst of
// lines (a receiver reporting every gap of a lossy stream) would otherwise
// pay a calendar conversion per line.
void formatTime(char* buffer_p, std::size_t size) noexcept {
    struct SecondText {
        time_t second = -1;
        char text[32] = {};
        std::size_t length = 0;
    };
    thread_local SecondText cached_s;
    timespec now{};
    clock_gettime(CLOCK_REALTIME, &now);
    if (now.tv_sec != cached_s.second) {
        tm parts{};
        gmtime_r(&now.tv_sec, &parts);
        cached_s.length =
            std::strftime(cached_s.text, sizeof cached_s.text, "%Y-%m-%dT%H:%M:%S", &parts);
        cached_s.second = now.tv_sec;
    }
    const std::size_t used = cached_s.length < size ? cached_s.length : 0;
    std::memcpy(buffer_p, cached_s.text, used);
    std::snprintf(buffer_p + used, size - used, ".%06ldZ", now.tv_nsec / 1000L);
}

}  // namespace

int Logger::filterLevel(int category) noexcept {
    if (category == ZORCLIENT_LOG_CATEGORY_APP) {
        return appFilterLevel().load(std::memory_order_relaxed);
    }
    return sdkFilterLevel_s.load(std::memory_order_relaxed);
}

void Logger::setFilterLevel(zorClient_log_category_t category,
                            zorClient_log_level_t level) noexcept {
    if (category != ZORCLIENT_LOG_CATEGORY_APP) {
        sdkFilterLevel_s.store(level, std::memory_order_relaxed);
    }
    if (category != ZORCLIENT_LOG_CATEGORY_SDK) {
        appFilterLevel().store(level, std::memory_order_relaxed);
    }
}

int Logger::setFile(const char* path_p) noexcept {
    FILE* newFile_p = nullptr;
    if (path_p != nullptr && path_p[0] != '\0') {
        newFile_p = std::fopen(path_p, "ae");
        if (newFile_p == nullptr) {
            return errno != 0 ? errno : EINVAL;
        }
    }
    FILE* oldFile_p = nullptr;
    {
        std::lock_guard<std::mutex> lock(outputMutex_s);
        oldFile_p = file_s;
        file_s = newFile_p;
    }
    if (oldFile_p != nullptr) {
        std::fclose(oldFile_p);
    }
    return 0;
}

void Logger::write(int category, int level, const char* file_p, int line, const char* format_p,
                   ...) noexcept {
    va_list args;
    va_start(args, format_p);
    writeV(category, level, file_p, line, format_p, args);
    va_end(args);
}

void Logger::writeV(int category, int level, const char* file_p, int line, const char* format_p,
                    va_list args) noexcept {
    if (!isEnabled(category, level)) {
        return;
    }
    // Most lines fit the stack buffer; a longer one is formatted a second time into the heap.
    char stackText[1024];
    std::string heapText;
    const char* text_p = stackText;
    va_list again;
    va_copy(again, args);
    int length =
        format_p != nullptr ? std::vsnprintf(stackText, sizeof stackText, format_p, args) : -1;
    if (length < 0) {
        text_p = "(unformattable log text)";
        length = static_cast<int>(std::strlen(text_p));
    } else if (static_cast<std::size_t>(length) >= sizeof stackText) {
        try {
            heapText.resize(static_cast<std::size_t>(length) + 1);
            std::vsnprintf(heapText.data(), heapText.size(), format_p, again);
            text_p = heapText.c_str();
        } catch (...) {
            length = static_cast<int>(sizeof stackText) - 1;  // keep the cut text
        }
    }
    va_end(again);
    while (length > 0 && (text_p[length - 1] == '\n' || text_p[length - 1] == '\r')) {
        --length;
    }
    char timeText[40];
    formatTime(timeText, sizeof timeText);

    std::lock_guard<std::mutex> lock(outputMutex_s);
    FILE* out_p = file_s != nullptr ? file_s : stderr;
    // One fprintf per line: glibc writes it in one piece even on unbuffered standard error.
    std::fprintf(out_p, "%s %s %s %s:%d %.*s\n", timeText, levelName(level), categoryName(category),
                 baseName(file_p), line, length, text_p);
    std::fflush(out_p);
}

}  // namespace zorvane::zorclient
