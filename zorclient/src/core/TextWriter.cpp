#include "core/TextWriter.h"

#include <cstdio>

namespace zorvane::zorclient {

TextWriter::TextWriter(char* buffer_p, std::size_t size) noexcept
    : buffer_mp(buffer_p), size_m(size) {
    buffer_mp[0] = '\0';
}

void TextWriter::append(const char* text_p) noexcept {
    while (!full_m && *text_p != '\0') {
        if (used_m + 1 == size_m) {
            full_m = true;
            break;
        }
        buffer_mp[used_m++] = *text_p++;
    }
    buffer_mp[used_m] = '\0';
}

void TextWriter::appendf(const char* format_p, ...) noexcept {
    if (full_m) {
        return;
    }
    va_list args;
    va_start(args, format_p);
    const int wanted = std::vsnprintf(buffer_mp + used_m, size_m - used_m, format_p, args);
    va_end(args);
    if (wanted < 0) {
        buffer_mp[used_m] = '\0';
        return;
    }
    const std::size_t room = size_m - used_m - 1;
    if (static_cast<std::size_t>(wanted) > room) {
        // vsnprintf wrote what fitted and the NUL.
        used_m += room;
        full_m = true;
    } else {
        used_m += static_cast<std::size_t>(wanted);
    }
}

void TextWriter::appendPrintable(const void* data_p, std::size_t length) noexcept {
    const auto* bytes_p = static_cast<const unsigned char*>(data_p);
    for (std::size_t i = 0; i < length && !full_m; ++i) {
        if (used_m + 1 == size_m) {
            full_m = true;
            break;
        }
        const unsigned char c = bytes_p[i];
        buffer_mp[used_m++] = c >= 0x20 && c < 0x7F ? static_cast<char>(c) : '.';
    }
    buffer_mp[used_m] = '\0';
}

}  // namespace zorvane::zorclient
