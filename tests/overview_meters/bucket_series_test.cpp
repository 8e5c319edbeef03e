#include "mpeg_ts_overview/meters/bucket_series.h"

#include <gtest/gtest.h>

namespace {

constexpr int64_t tenth = first_bucket_ticks;

} // namespace

TEST(bucket_series, a_bucket_has_the_least_and_the_greatest_of_its_values)
{
    bucket_series series;
    series.add(0, 5);
    series.add(tenth - 1, -3);
    series.add(tenth, 7);
    const auto buckets = series.finish(tenth, 2);
    ASSERT_EQ(buckets.size(), 2u);
    EXPECT_EQ(buckets[0].min, -3);
    EXPECT_EQ(buckets[0].max, 5);
    EXPECT_EQ(buckets[1].min, 7);
    EXPECT_EQ(buckets[1].max, 7);
}

TEST(bucket_series, a_bucket_without_values_is_empty_and_so_are_those_behind_the_last_value)
{
    bucket_series series;
    series.add(2 * tenth, 1);
    const auto buckets = series.finish(tenth, 5);
    ASSERT_EQ(buckets.size(), 5u);
    for (const size_t i : {0u, 1u, 3u, 4u}) EXPECT_FALSE(buckets[i].min || buckets[i].max) << i;
    EXPECT_EQ(buckets[2].max, 1);
}

TEST(bucket_series, the_thousandth_bucket_still_fits_and_the_next_doubles_the_width)
{
    bucket_series series;
    series.add(0, 1);
    series.add(tenth, 2);
    series.add(1000 * tenth - 1, 3);
    EXPECT_EQ(series.finish(tenth, 1000)[1].min, 2);
    EXPECT_EQ(series.finish(tenth, 1000)[999].min, 3);

    series.add(1000 * tenth, 4);
    const auto buckets = series.finish(2 * tenth, 501);
    EXPECT_EQ(buckets[0].min, 1);
    EXPECT_EQ(buckets[0].max, 2);
    EXPECT_EQ(buckets[499].max, 3);
    EXPECT_EQ(buckets[500].min, 4);
}

TEST(bucket_series, an_odd_number_of_buckets_is_joined_without_loss)
{
    bucket_series series;
    series.add(2 * tenth, 9);
    series.add(1500 * tenth, 1);
    const auto buckets = series.finish(2 * tenth, 751);
    EXPECT_EQ(buckets[1].min, 9);
    EXPECT_EQ(buckets[750].min, 1);
}

TEST(bucket_series, a_longer_recording_joins_buckets_at_the_end)
{
    bucket_series series;
    series.add(0, 1);
    series.add(3 * tenth, 5);
    series.add(4 * tenth, 8);
    const auto buckets = series.finish(4 * tenth, 1000);
    EXPECT_EQ(buckets[0].min, 1);
    EXPECT_EQ(buckets[0].max, 5);
    EXPECT_EQ(buckets[1].min, 8);
}

TEST(bucket_series, times_before_the_start_go_nowhere_and_far_times_need_no_more_room)
{
    bucket_series series;
    series.add(-1, 1);
    series.add(int64_t{1} << 61, 2);
    const auto buckets = series.finish(bucket_ticks_of(int64_t{1} << 61), 1000);
    size_t filled = 0;
    for (const bucket_extent &bucket : buckets) filled += bucket.min ? 1 : 0;
    EXPECT_EQ(filled, 1u);
}

TEST(bucket_series, a_value_at_the_very_end_goes_into_the_last_bucket)
{
    bucket_series series;
    series.add(1000 * tenth, 6);
    EXPECT_EQ(series.finish(tenth, 1000)[999].min, 6);
}

TEST(bucket_series, without_a_duration_there_is_no_series)
{
    bucket_series series;
    series.add(0, 1);
    EXPECT_TRUE(series.finish(tenth, 0).empty());
}
