#include "mpeg_ts_overview/timeline/scaled.h"

#include <gtest/gtest.h>

#include <limits>

TEST(scaled, what_divides_is_exact)
{
    EXPECT_EQ(scaled(0, 5, 7), 0);
    EXPECT_EQ(scaled(14, 5, 7), 10);
    EXPECT_EQ(scaled(-14, 5, 7), -10);
}

TEST(scaled, the_nearest_integer_is_taken)
{
    EXPECT_EQ(scaled(1, 1, 3), 0);
    EXPECT_EQ(scaled(2, 1, 3), 1);
    EXPECT_EQ(scaled(-1, 1, 3), 0);
    EXPECT_EQ(scaled(-2, 1, 3), -1);
}

TEST(scaled, halves_go_up_below_zero_too)
{
    EXPECT_EQ(scaled(1, 1, 2), 1);
    EXPECT_EQ(scaled(3, 1, 2), 2);
    EXPECT_EQ(scaled(-1, 1, 2), 0);
    EXPECT_EQ(scaled(-3, 1, 2), -1);
    EXPECT_EQ(scaled(-5, 1, 2), -2);
}

TEST(scaled, a_product_beyond_64_bits_is_exact)
{
    // 10^13 packets of 1504 bits at 10^12 bit/s: 10^13 * 1504 * 27 * 10^6 / 10^12.
    EXPECT_EQ(scaled(10000000000000, int64_t{1504} * 27000000, 1000000000000), int64_t{1504} * 270000000);
    constexpr int64_t most = std::numeric_limits<int64_t>::max();
    EXPECT_EQ(scaled(most, most, most), most);
    EXPECT_EQ(scaled(-most, most, most), -most);
    EXPECT_EQ(scaled(most, most - 1, most), most - 1);
}

TEST(scaled, halves_of_large_products_go_up_too)
{
    constexpr int64_t large = int64_t{1} << 40;
    EXPECT_EQ(scaled(large + 1, large, 2 * large), large / 2 + 1);
    EXPECT_EQ(scaled(-large - 1, large, 2 * large), -large / 2);
    EXPECT_EQ(scaled(large + 1, large - 1, 2 * large), large / 2);
}

TEST(scaled, both_ways_of_computing_agree_where_they_meet)
{
    constexpr int64_t small = int64_t{1} << 30;
    for (const int64_t denominator : {int64_t{1}, int64_t{3}, int64_t{600}, int64_t{65537}, small})
        for (const int64_t count : {small - 1, small, small + 1}) {
            // 27 / denominator in numbers that need 57 bits at most.
            const int64_t product = count * 27;
            const int64_t expected = (2 * product + denominator) / (2 * denominator);
            EXPECT_EQ(scaled(count, 27, denominator), expected);
            EXPECT_EQ(scaled(27, count, denominator), expected);
        }
}
