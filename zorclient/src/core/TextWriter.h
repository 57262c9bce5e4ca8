// Writes text into a caller's buffer of fixed size, always NUL-terminated. Text that does not
// fit is cut at the buffer's end (size - 1 characters and the NUL) and everything after is
// dropped, so a writer that checks full() can stop formatting early. Allocates nothing.
#pragma once

#include <cstdarg>
#include <cstddef>

#include "zorClient.h"

namespace zorvane::zorclient {

class TextWriter {
  public:
    // buffer_p of size bytes (size > 0).
    TextWriter(char* buffer_p, std::size_t size) noexcept;

    void append(const char* text_p) noexcept;
    void appendf(const char* format_p, ...) noexcept ZORCLIENT_PRINTF_LIKE(2, 3);
    // length bytes of data_p, each shown as itself when printable and as '.' otherwise.
    void appendPrintable(const void* data_p, std::size_t length) noexcept;

    bool full() const noexcept { return full_m; }

  private:
    char* buffer_mp;
    std::size_t size_m;
    std::size_t used_m = 0;
    bool full_m = false;
};

}  // namespace zorvane::zorclient
