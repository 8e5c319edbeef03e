#include "mpeg_ts_analysis/teletext/hamming.h"

#include <algorithm>
#include <array>
#include <gtest/gtest.h>

namespace {

/// Bits b0 to b7 of a byte.
std::array<unsigned, 8> bits_of(unsigned byte)
{
    std::array<unsigned, 8> bits{};
    for (unsigned i = 0; i < 8; ++i) bits[i] = byte / (1u << i) % 2;
    return bits;
}

} // namespace

TEST(hamming, every_byte_reverses_bit_by_bit)
{
    for (unsigned byte = 0; byte <= 0xFF; ++byte) {
        std::array<unsigned, 8> bits = bits_of(byte);
        std::reverse(bits.begin(), bits.end());
        EXPECT_EQ(bits_of(reverse_bits(static_cast<uint8_t>(byte))), bits);
    }
    EXPECT_EQ(reverse_bits(0x01), 0x80);
    EXPECT_EQ(reverse_bits(0xE4), 0x27);
}

TEST(hamming, parity_is_odd_with_an_odd_number_of_ones)
{
    for (unsigned byte = 0; byte <= 0xFF; ++byte) {
        const std::array<unsigned, 8> bits = bits_of(byte);
        EXPECT_EQ(has_odd_parity(static_cast<uint8_t>(byte)),
                  std::count(bits.begin(), bits.end(), 1u) % 2 == 1);
    }
}

TEST(hamming, each_test_fails_on_even_parity_of_its_bits)
{
    for (unsigned byte = 0; byte <= 0xFF; ++byte) {
        const std::array<unsigned, 8> b = bits_of(byte);
        unsigned failures = 0;
        if ((b[0] ^ b[1] ^ b[3] ^ b[7]) == 0) failures += 1;
        if ((b[1] ^ b[2] ^ b[5] ^ b[7]) == 0) failures += 2;
        if ((b[1] ^ b[3] ^ b[4] ^ b[5]) == 0) failures += 4;
        if ((b[0] ^ b[1] ^ b[2] ^ b[3] ^ b[4] ^ b[5] ^ b[6] ^ b[7]) == 0) failures += 8;
        EXPECT_EQ(hamming_8_4_failures(static_cast<uint8_t>(byte)), failures) << byte;

        const unsigned nibble = b[1] + 2 * b[3] + 4 * b[5] + 8 * b[7];
        EXPECT_EQ(hamming_8_4_nibble(static_cast<uint8_t>(byte)), nibble) << byte;
        EXPECT_EQ(hamming_8_4_checked_nibble(static_cast<uint8_t>(byte)), failures == 0 ? nibble : 0xFF)
            << byte;
    }
}

TEST(hamming, sixteen_bytes_pass_all_tests)
{
    const std::array<uint8_t, 16> passing = {0x15, 0x02, 0x4C, 0x5B, 0x61, 0x76, 0x38, 0x2F,
                                             0xD0, 0xC7, 0x89, 0x9E, 0xA4, 0xB3, 0xFD, 0xEA};
    for (unsigned byte = 0; byte <= 0xFF; ++byte) {
        const auto at = std::find(passing.begin(), passing.end(), byte);
        const unsigned expected = at == passing.end() ? 0xFF : static_cast<unsigned>(at - passing.begin());
        EXPECT_EQ(hamming_8_4_checked_nibble(static_cast<uint8_t>(byte)), expected) << byte;
    }
}

/// Tests A and B take the data bits D2 and D3 the other way round than EN 300 706 8.2, so the standard's code
/// words fail both of them when these two bits differ.
TEST(hamming, eight_code_words_of_the_standard_fail)
{
    const std::array<uint8_t, 16> code_words = {0x15, 0x02, 0x49, 0x5E, 0x64, 0x73, 0x38, 0x2F,
                                                0xD0, 0xC7, 0x8C, 0x9B, 0xA1, 0xB6, 0xFD, 0xEA};
    for (unsigned nibble = 0; nibble < 16; ++nibble) {
        const bool D2_is_D3 = nibble / 2 % 2 == nibble / 4 % 2;
        EXPECT_EQ(hamming_8_4_nibble(code_words[nibble]), nibble);
        EXPECT_EQ(hamming_8_4_failures(code_words[nibble]), D2_is_D3 ? 0u : hamming_test_A | hamming_test_B);
    }
}
