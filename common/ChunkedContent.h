// The generated content of message bodies, attachments and QWF fields: a
// run of 8-byte chunks, chunk i being ":" and i in seven lowercase
// hexadecimal digits, and then a filler letter up to the size. A reader of
// a captured message can tell from any chunk how far into the content it
// lies, which makes truncation and corruption easy to spot by eye.
//
// Threads and cost: pure functions; fillChunkedContent writes in place and
// allocates nothing, so the publish path may use it.
#pragma once

#include <cstddef>
#include <string>

namespace zorvane::pubsub {

constexpr std::size_t CHUNKED_CONTENT_CHUNK_SIZE = 8;

// Writes size bytes at dest_p: size / 8 chunks, then the filler. Sizes are
// below 2 GiB here, so a chunk index never needs more than seven digits.
inline void fillChunkedContent(char* dest_p, std::size_t size, char filler) {
    static constexpr char HEX_DIGITS[] = "0123456789abcdef";
    const std::size_t numChunks = size / CHUNKED_CONTENT_CHUNK_SIZE;
    char* out_p = dest_p;
    for (std::size_t chunk = 0; chunk < numChunks; ++chunk) {
        *out_p++ = ':';
        for (int shift = 24; shift >= 0; shift -= 4) {
            *out_p++ = HEX_DIGITS[(chunk >> shift) & 0xF];
        }
    }
    for (std::size_t rest = numChunks * CHUNKED_CONTENT_CHUNK_SIZE; rest < size; ++rest) {
        *out_p++ = filler;
    }
}

inline std::string makeChunkedContent(std::size_t size, char filler) {
    std::string content(size, filler);
    fillChunkedContent(content.data(), size, filler);
    return content;
}

}  // namespace zorvane::pubsub
