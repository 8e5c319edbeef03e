#include "mpeg_ts_analysis/health/truncate.h"

#include <gtest/gtest.h>
#include <limits>

TEST(truncate, drops_the_fraction)
{
    EXPECT_EQ(truncate_to_64_bits(0.0), 0u);
    EXPECT_EQ(truncate_to_64_bits(0.999), 0u);
    EXPECT_EQ(truncate_to_64_bits(1e15 + 0.5), 1000000000000000u);
}

TEST(truncate, keeps_values_of_64_bits)
{
    EXPECT_EQ(truncate_to_64_bits(9223372036854775808.0), 1ull << 63);
    EXPECT_EQ(truncate_to_64_bits(18446744073709549568.0), 18446744073709549568u);
}

TEST(truncate, gives_negative_values_in_two_s_complement)
{
    EXPECT_EQ(truncate_to_64_bits(-0.5), 0u);
    EXPECT_EQ(truncate_to_64_bits(-1.5), ~0ull);
    EXPECT_EQ(truncate_to_64_bits(-9223372036854775808.0), 1ull << 63);
}

TEST(truncate, is_defined_beyond_64_bits)
{
    EXPECT_EQ(truncate_to_64_bits(18446744073709551616.0), 0u);
    EXPECT_EQ(truncate_to_64_bits(1e300), 0u);
    EXPECT_EQ(truncate_to_64_bits(-1e300), 1ull << 63);
    EXPECT_EQ(truncate_to_64_bits(std::numeric_limits<double>::infinity()), 0u);
    EXPECT_EQ(truncate_to_64_bits(std::numeric_limits<double>::quiet_NaN()), 1ull << 63);
}
