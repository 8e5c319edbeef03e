#include "mpeg_ts_overview/contents/teletext_hamming.h"

#include <gtest/gtest.h>

TEST(teletext_hamming, the_code_words_are_those_of_the_standard)
{
    constexpr uint8_t words[16] = {0x15, 0x02, 0x49, 0x5E, 0x64, 0x73, 0x38, 0x2F,
                                   0xD0, 0xC7, 0x8C, 0x9B, 0xA1, 0xB6, 0xFD, 0xEA};
    for (unsigned value = 0; value < 16; ++value) EXPECT_EQ(hamming_8_4_code(value), words[value]);
}

TEST(teletext_hamming, one_wrong_bit_is_put_right_and_two_are_noticed)
{
    for (unsigned value = 0; value < 16; ++value) {
        const unsigned word = hamming_8_4_code(value);
        EXPECT_EQ(hamming_8_4_value(static_cast<uint8_t>(word)), value);
        for (unsigned first = 0; first < 8; ++first) {
            EXPECT_EQ(hamming_8_4_value(static_cast<uint8_t>(word ^ 1u << first)), value);
            for (unsigned second = 0; second < first; ++second)
                EXPECT_EQ(hamming_8_4_value(static_cast<uint8_t>(word ^ 1u << first ^ 1u << second)),
                          std::nullopt);
        }
    }
}

TEST(teletext_hamming, the_bit_sent_first_is_the_lowest)
{
    EXPECT_EQ(teletext_byte(0x80), 0x01);
    EXPECT_EQ(teletext_byte(0xE4), 0x27);
    EXPECT_EQ(teletext_byte(0x53), 0xCA);
}

TEST(teletext_hamming, parity_is_odd_when_the_ones_are)
{
    EXPECT_TRUE(parity_is_odd(0x80));
    EXPECT_TRUE(parity_is_odd(0x07));
    EXPECT_FALSE(parity_is_odd(0x00));
    EXPECT_FALSE(parity_is_odd(0xFF));
}
