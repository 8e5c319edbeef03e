#include "mpeg_ts_overview/meters/residual_record.h"

#include <gtest/gtest.h>

TEST(residual_record, without_a_window_there_is_no_residual)
{
    EXPECT_FALSE(residual_record().facts());
    EXPECT_TRUE(residual_record().series().empty());
}

TEST(residual_record, least_greatest_and_root_of_the_mean_square_are_those_of_all_windows)
{
    residual_record record;
    record.add_window(5, {-27, 0});
    record.add_window(9, {0, 27});
    const residual_facts facts = record.facts().value();
    EXPECT_DOUBLE_EQ(facts.min_ns, -1000);
    EXPECT_DOUBLE_EQ(facts.max_ns, 1000);
    EXPECT_DOUBLE_EQ(facts.rms_ns, 1000 * 0.70710678118654757);
    ASSERT_EQ(record.series().size(), 2u);
    EXPECT_EQ(record.series()[0].ticks, 5);
    EXPECT_DOUBLE_EQ(record.series()[0].min_ns, -1000);
    EXPECT_DOUBLE_EQ(record.series()[0].max_ns, 0);
    EXPECT_EQ(record.series()[1].ticks, 9);
}

TEST(residual_record, a_thousand_windows_stand_alone_and_the_next_joins_neighbours)
{
    residual_record record;
    for (int i = 0; i < 1000; ++i) record.add_window(i, {0, i * 0.027});
    ASSERT_EQ(record.series().size(), 1000u);
    record.add_window(1000, {0, 27});
    ASSERT_EQ(record.series().size(), 501u);
    EXPECT_EQ(record.series()[499].ticks, 998);
    EXPECT_DOUBLE_EQ(record.series()[499].max_ns, 999);
    EXPECT_EQ(record.series()[500].ticks, 1000);
    record.add_window(1001, {-27, 0});
    ASSERT_EQ(record.series().size(), 501u);
    EXPECT_DOUBLE_EQ(record.series()[500].min_ns, -1000);
    record.add_window(1002, {0});
    EXPECT_EQ(record.series().size(), 502u);
}

TEST(residual_record, the_series_never_has_more_than_a_thousand_entries)
{
    residual_record record;
    for (int i = 0; i < 10000; ++i) record.add_window(i, {0});
    EXPECT_EQ(record.series().size(), 625u); // 16 windows each
    EXPECT_EQ(record.series()[624].ticks, 9984);
}
