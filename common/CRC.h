// CRC-32 of message contents (IEEE 802.3: reflected polynomial 0xEDB88320,
// initial value all ones, final complement), the checksum that publisher
// and subscriber compare to prove a body or attachment arrived intact.
//
// Threads: stateless, callable from any thread. Never allocates or blocks.
#pragma once

#include <array>
#include <cstddef>
#include <string_view>

#include "common/dataTypes.h"

namespace zorvane::pubsub {

class CRC {
  public:
    static constexpr UINT32 POLYNOMIAL = 0xEDB88320U;

    // The classic 256-entry table: entry i is the CRC register after
    // feeding the byte i into a zero register.
    static constexpr std::array<UINT32, 256> crcTable = [] {
        std::array<UINT32, 256> table{};
        for (UINT32 i = 0; i < 256; ++i) {
            UINT32 crc = i;
            for (int bit = 0; bit < 8; ++bit) {
                crc = (crc & 1U) != 0 ? (crc >> 1) ^ POLYNOMIAL : crc >> 1;
            }
            table[i] = crc;
        }
        return table;
    }();

    // CRC-32 of the bytes from begin up to end. An empty range (or a null
    // begin) gives 0 without any calculation.
    static UINT32 crc32(const char* begin, const char* end);

    static UINT32 crc32(std::string_view bytes) {
        return crc32(bytes.data(), bytes.data() + bytes.size());
    }

    // Byte-at-a-time reference over crcTable alone; crc32 must agree with it
    // for every input. Kept for tests and as the readable definition.
    static UINT32 crc32Bytewise(const char* begin, const char* end);
};

}  // namespace zorvane::pubsub
