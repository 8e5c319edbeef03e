// Bit order and error detection of EBU Teletext bytes, ETSI EN 300 472 and EN 300 706 8.
#pragma once

#include <cstdint>

/// A byte of a data unit, which is carried in transmission order, with its bits put the other way round.
constexpr uint8_t reverse_bits(uint8_t byte)
{
    unsigned reversed = 0;
    for (unsigned bit = 0; bit < 8; ++bit) reversed |= ((byte >> bit) & 1u) << (7 - bit);
    return static_cast<uint8_t>(reversed);
}

constexpr bool has_odd_parity(uint8_t byte)
{
    unsigned ones = 0;
    for (unsigned bit = 0; bit < 8; ++bit) ones += (byte >> bit) & 1u;
    return (ones & 1) != 0;
}

/// The tests of a Hamming 8/4 byte that fail.
constexpr unsigned hamming_test_A = 1;
constexpr unsigned hamming_test_B = 2;
constexpr unsigned hamming_test_C = 4;
constexpr unsigned hamming_test_D = 8;

/// The tests that fail for a byte already reversed, as a sum of the values above. A test fails on even
/// parity.
constexpr unsigned hamming_8_4_failures(uint8_t reversed)
{
    unsigned failures = 0;
    // kept: A and B take b3 and b5 the other way round than EN 300 706 8.2, so that half of the standard's
    // code words fail.
    if (!has_odd_parity(reversed & 0x8B)) failures |= hamming_test_A; // b0 b1 b3 b7
    if (!has_odd_parity(reversed & 0xA6)) failures |= hamming_test_B; // b1 b2 b5 b7
    if (!has_odd_parity(reversed & 0x3A)) failures |= hamming_test_C; // b1 b3 b4 b5
    if (!has_odd_parity(reversed)) failures |= hamming_test_D;
    return failures;
}

/// The data nibble of a byte already reversed, as it stands.
constexpr uint8_t hamming_8_4_nibble(uint8_t reversed)
{
    return static_cast<uint8_t>(((reversed >> 1) & 1) | ((reversed >> 2) & 2) | ((reversed >> 3) & 4) |
                                ((reversed >> 4) & 8));
}

/// The data nibble, or 0xFF when a test fails.
constexpr uint8_t hamming_8_4_checked_nibble(uint8_t reversed)
{
    return hamming_8_4_failures(reversed) == 0 ? hamming_8_4_nibble(reversed) : uint8_t{0xFF};
}
