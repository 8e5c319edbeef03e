// Bit order, Hamming 8/4 code and odd parity of EBU Teletext bytes. ETSI EN 300 472 4.3, EN 300 706 8.
#pragma once

#include <bit>
#include <cstdint>
#include <optional>

/// A byte of a data unit, where the bit sent first is the most significant, as EN 300 706 numbers its bits.
constexpr uint8_t teletext_byte(uint8_t sent)
{
    unsigned turned = 0;
    for (unsigned bit = 0; bit < 8; ++bit) turned |= ((sent >> bit) & 1u) << (7 - bit);
    return static_cast<uint8_t>(turned);
}

/// The code word of a value of 4 bits, EN 300 706 8.2: P1 D1 P2 D2 P3 D3 P4 D4 from the least significant on.
constexpr uint8_t hamming_8_4_code(unsigned value)
{
    const unsigned D1 = value & 1;
    const unsigned D2 = (value >> 1) & 1;
    const unsigned D3 = (value >> 2) & 1;
    const unsigned D4 = (value >> 3) & 1;
    const unsigned P1 = 1 ^ D1 ^ D3 ^ D4;
    const unsigned P2 = 1 ^ D1 ^ D2 ^ D4;
    const unsigned P3 = 1 ^ D1 ^ D2 ^ D3;
    const unsigned P4 = 1 ^ P1 ^ D1 ^ P2 ^ D2 ^ P3 ^ D3 ^ D4;
    return static_cast<uint8_t>(P1 | D1 << 1 | P2 << 2 | D2 << 3 | P3 << 4 | D3 << 5 | P4 << 6 | D4 << 7);
}

/// The value of a code word, one wrong bit put right; nothing for more.
constexpr std::optional<unsigned> hamming_8_4_value(uint8_t code)
{
    for (unsigned value = 0; value < 16; ++value)
        if (std::popcount(static_cast<unsigned>(hamming_8_4_code(value) ^ code)) <= 1) return value;
    return std::nullopt;
}

/// EN 300 706 8.1.
constexpr bool parity_is_odd(uint8_t byte)
{
    return std::popcount(byte) % 2 == 1;
}
