#include "common/CRC.h"

#include <cstring>

namespace zorvane::pubsub {

namespace {

// Slicing by eight: tables 1 to 7 advance the register over a byte followed
// by 1 to 7 zero bytes, so eight bytes cost eight independent look-ups
// instead of a chain of eight dependent ones. A payload check covers whole
// bodies on both sides for every message; at a kilobyte the byte-wise loop
// alone would cap a thread well below the rates the tool must drive.
constexpr std::array<std::array<UINT32, 256>, 8> makeSliceTables() {
    std::array<std::array<UINT32, 256>, 8> tables{};
    tables[0] = CRC::crcTable;
    for (int i = 0; i < 256; ++i) {
        for (int t = 1; t < 8; ++t) {
            UINT32 prev = tables[t - 1][i];
            tables[t][i] = (prev >> 8) ^ CRC::crcTable[prev & 0xFFU];
        }
    }
    return tables;
}

constexpr std::array<std::array<UINT32, 256>, 8> sliceTables_s = makeSliceTables();

inline UINT32 updateBytewise(UINT32 crc, const unsigned char* pos, const unsigned char* end) {
    while (pos < end) {
        crc = CRC::crcTable[(crc ^ *pos++) & 0xFFU] ^ (crc >> 8);
    }
    return crc;
}

}  // namespace

UINT32 CRC::crc32(const char* begin, const char* end) {
    if (begin == nullptr || end <= begin) {
        return 0;
    }
    const auto* pos = reinterpret_cast<const unsigned char*>(begin);
    const auto* stop = reinterpret_cast<const unsigned char*>(end);
    UINT32 crc = 0xFFFFFFFFU;
    const auto& t = sliceTables_s;
    // The platform is little-endian x86-64: the first byte of a block is the
    // low byte of the loaded word, which is what the reflected CRC consumes.
    while (stop - pos >= 8) {
        UINT64 word;
        std::memcpy(&word, pos, sizeof word);
        word ^= crc;
        crc = t[7][word & 0xFF] ^ t[6][(word >> 8) & 0xFF] ^ t[5][(word >> 16) & 0xFF] ^
              t[4][(word >> 24) & 0xFF] ^ t[3][(word >> 32) & 0xFF] ^ t[2][(word >> 40) & 0xFF] ^
              t[1][(word >> 48) & 0xFF] ^ t[0][word >> 56];
        pos += 8;
    }
    return ~updateBytewise(crc, pos, stop);
}

UINT32 CRC::crc32Bytewise(const char* begin, const char* end) {
    if (begin == nullptr || end <= begin) {
        return 0;
    }
    return ~updateBytewise(0xFFFFFFFFU, reinterpret_cast<const unsigned char*>(begin),
                           reinterpret_cast<const unsigned char*>(end));
}

}  // namespace zorvane::pubsub
