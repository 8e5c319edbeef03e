#include "mpeg_ts_overview/timeline/median.h"

#include <gtest/gtest.h>

TEST(median, of_one_value_is_that_value)
{
    EXPECT_EQ(median_of({4.0}), 4.0);
}

TEST(median, of_an_odd_number_is_the_middle_one_in_any_order)
{
    EXPECT_EQ(median_of({9.0, 1.0, 2.0}), 2.0);
    EXPECT_EQ(median_of({1.0, 100.0, 3.0, 2.0, 0.0}), 2.0);
}

TEST(median, of_an_even_number_is_the_mean_of_the_middle_two)
{
    EXPECT_EQ(median_of({4.0, 1.0}), 2.5);
    EXPECT_EQ(median_of({100.0, 1.0, 3.0, 4.0}), 3.5);
}
