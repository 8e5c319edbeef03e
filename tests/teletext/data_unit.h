// EBU Teletext data units as recipes, and an address byte worked out from the equations of its tests.
#pragma once

#include "tests/support/hex.h"

#include "mpeg_ts_analysis/teletext/teletext_unit.h"

#include <string>

inline std::string two_digits(unsigned value)
{
    const char digits[] = "0123456789abcdef";
    return {digits[value / 16 % 16], digits[value % 16]};
}

inline uint8_t reversed_bits(unsigned byte)
{
    unsigned out = 0;
    for (unsigned i = 0; i < 8; ++i) out = out * 2 + byte / (1u << i) % 2;
    return static_cast<uint8_t>(out);
}

/// By nibble: the address byte that passes all four tests, reversed.
constexpr uint8_t code_words[16] = {0x15, 0x02, 0x4C, 0x5B, 0x61, 0x76, 0x38, 0x2F,
                                    0xD0, 0xC7, 0x89, 0x9E, 0xA4, 0xB3, 0xFD, 0xEA};

/// 44 bytes: the field and line byte and the framing code as received, the address, 40 bytes as received.
inline bytes data_unit(unsigned field_byte, unsigned framing_code, unsigned magazine, unsigned row,
                       const bytes &data_block)
{
    const unsigned address = magazine + 8 * row;
    return join({big_endian(field_byte, 1), big_endian(framing_code, 1),
                 big_endian(reversed_bits(code_words[address % 16]), 1),
                 big_endian(reversed_bits(code_words[address / 16]), 1), data_block});
}

/// The 40 bytes that carry these characters with odd parity, filled up with blanks.
inline bytes data_block(const bytes &characters)
{
    bytes out;
    for (unsigned i = 0; i < 40; ++i) {
        const unsigned character = i < characters.size() ? characters[i] : 0x20u;
        unsigned ones = 0;
        for (unsigned bit = 0; bit < 7; ++bit) ones += character / (1u << bit) % 2;
        out.push_back(reversed_bits(ones % 2 == 1 ? character : character + 0x80));
    }
    return out;
}

/// What the four tests say of an address byte.
struct hamming_byte {
    explicit hamming_byte(unsigned received) : reversed(reversed_bits(received))
    {
        unsigned b[8];
        for (unsigned i = 0; i < 8; ++i) b[i] = reversed / (1u << i) % 2u;
        A_fails = (b[0] + b[1] + b[3] + b[7]) % 2 == 0;
        B_fails = (b[1] + b[2] + b[5] + b[7]) % 2 == 0;
        C_fails = (b[1] + b[3] + b[4] + b[5]) % 2 == 0;
        D_fails = (b[0] + b[1] + b[2] + b[3] + b[4] + b[5] + b[6] + b[7]) % 2 == 0;
        nibble = b[1] + 2 * b[3] + 4 * b[5] + 8 * b[7];
    }
    bool passes() const { return !A_fails && !B_fails && !C_fails && !D_fails; }

    uint8_t reversed;
    unsigned nibble;
    bool A_fails;
    bool B_fails;
    bool C_fails;
    bool D_fails;
};
