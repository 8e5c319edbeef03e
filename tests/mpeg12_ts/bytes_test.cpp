#include "mpeg12_ts/bytes.h"

#include "tests/support/hex.h"

#include <gtest/gtest.h>

TEST(bytes, the_first_byte_is_the_most_significant)
{
    const bytes block(hex("12 34 56 78 9A BC DE F0"));
    EXPECT_EQ(big_endian_16(block.data()), 0x1234);
    EXPECT_EQ(big_endian_16(block.data() + 2), 0x5678);
    EXPECT_EQ(big_endian_32(block.data()), 0x12345678u);
    EXPECT_EQ(big_endian_64(block.data()), 0x123456789ABCDEF0u);
}

TEST(bytes, the_highest_bit_is_a_bit_like_any_other)
{
    const bytes block(hex("FF FE FD FC FB FA F9 F8"));
    EXPECT_EQ(big_endian_16(block.data()), 0xFFFE);
    EXPECT_EQ(big_endian_32(block.data()), 0xFFFEFDFCu);
    EXPECT_EQ(big_endian_64(block.data()), 0xFFFEFDFCFBFAF9F8u);
}
