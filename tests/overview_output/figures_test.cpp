#include "mpeg_ts_overview/output/figures.h"

#include "mpeg_ts_overview/model/moment.h"

#include <cstdint>
#include <gtest/gtest.h>

TEST(figures, sizes_have_three_digits_that_count)
{
    EXPECT_EQ(size_text(0), "0 bytes");
    EXPECT_EQ(size_text(999), "999 bytes");
    EXPECT_EQ(size_text(1000), "1.00 kB");
    EXPECT_EQ(size_text(25340), "25.3 kB");
    EXPECT_EQ(size_text(999499), "999 kB");
    EXPECT_EQ(size_text(999500), "1.00 MB");
    EXPECT_EQ(size_text(1080000000), "1.08 GB");
    EXPECT_EQ(size_text(UINT64_MAX), "18.4 EB");
}

TEST(figures, rates_are_in_megabits_unless_they_are_small)
{
    EXPECT_EQ(rate_text(18000000), "18.00 Mbit/s");
    EXPECT_EQ(rate_text(10000), "0.01 Mbit/s");
    EXPECT_EQ(rate_text(9999), "10.00 kbit/s");
    EXPECT_EQ(rate_text(1504), "1.50 kbit/s");
}

TEST(figures, durations_have_what_their_length_makes_worth_knowing)
{
    EXPECT_EQ(duration_text(0), "0.00 s");
    EXPECT_EQ(duration_text(3 * ticks_per_second / 2), "1.50 s");
    EXPECT_EQ(duration_text(25 * ticks_per_second / 2), "12.5 s");
    EXPECT_EQ(duration_text(59970 * (ticks_per_second / 1000)), "1 min 0 s");
    EXPECT_EQ(duration_text(480 * ticks_per_second), "8 min 0 s");
    EXPECT_EQ(duration_text(3600 * ticks_per_second - 1), "1 h 0 min 0 s");
    EXPECT_EQ(duration_text(3723 * ticks_per_second), "1 h 2 min 3 s");
}

TEST(figures, a_time_is_hours_minutes_seconds_and_milliseconds)
{
    EXPECT_EQ(clock_text(0), "0:00:00.000");
    EXPECT_EQ(clock_text(3120 * (ticks_per_second / 1000)), "0:00:03.120");
    EXPECT_EQ(clock_text(3723 * ticks_per_second - 1), "1:02:03.000");
    EXPECT_EQ(clock_text(-ticks_per_second / 2), "-0:00:00.500");
    EXPECT_EQ(clock_text(INT64_MAX), "94890658:48:55.362");
}

TEST(figures, intervals_are_in_milliseconds_below_a_second)
{
    EXPECT_EQ(interval_text(4.51), "4.5 ms");
    EXPECT_EQ(interval_text(9.96), "10 ms");
    EXPECT_EQ(interval_text(999.4), "999 ms");
    EXPECT_EQ(interval_text(999.6), "1 s");
    EXPECT_EQ(interval_text(1990), "1.99 s");
    EXPECT_EQ(interval_text(30000), "30 s");
    EXPECT_EQ(interval_text(1234567), "1235 s");
}

TEST(figures, one_is_not_many)
{
    EXPECT_EQ(count_text(0, "cue", "cues"), "0 cues");
    EXPECT_EQ(count_text(1, "cue", "cues"), "1 cue");
    EXPECT_EQ(count_text(2, "cue", "cues"), "2 cues");
}
