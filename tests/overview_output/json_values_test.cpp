#include "mpeg_ts_overview/output/json_values.h"

#include "mpeg_ts_overview/model/moment.h"

#include <gtest/gtest.h>

#include <cstdint>

TEST(json_values, numbers_have_six_decimals_and_the_shortest_form)
{
    EXPECT_EQ(ordered_json(six_decimals(1.0 / 3)).dump(), "0.333333");
    EXPECT_EQ(ordered_json(six_decimals(2.0 / 3)).dump(), "0.666667");
    EXPECT_EQ(ordered_json(six_decimals(0.1 + 0.2)).dump(), "0.3");
    EXPECT_EQ(ordered_json(six_decimals(-1e-9)).dump(), "0.0");
    EXPECT_EQ(ordered_json(six_decimals(-2.5)).dump(), "-2.5");
    EXPECT_EQ(ordered_json(six_decimals(1e18)).dump(), "1e+18");
}

TEST(json_values, seconds_and_milliseconds_are_those_of_27_mhz)
{
    EXPECT_EQ(seconds_of(0), 0.0);
    EXPECT_EQ(seconds_of(ticks_per_second * 3 / 2), 1.5);
    EXPECT_EQ(seconds_of(13), 0.0);
    EXPECT_EQ(seconds_of(14), 0.000001);
    EXPECT_EQ(seconds_of(-14), -0.000001);
    EXPECT_EQ(milliseconds_of(27000), 1.0);
    EXPECT_EQ(milliseconds_of(1), 0.000037);
    EXPECT_EQ(json_seconds(std::nullopt), nullptr);
    EXPECT_EQ(json_seconds(27), 0.000001);
}

TEST(json_values, a_mean_is_of_the_exact_sum)
{
    extent interval;
    for (const int64_t ticks : {27000, 27000, 27001}) interval.add(ticks);
    EXPECT_EQ(json_milliseconds(interval).dump(), R"({"min":1.0,"mean":1.000012,"max":1.000037})");
}

TEST(json_values, a_bucket_without_a_value_is_null_and_none_at_all_is_too)
{
    bucket_extent bucket;
    bucket.min = -27000;
    bucket.max = 54000;
    EXPECT_EQ(json_milliseconds({bucket, bucket_extent()}).dump(), R"({"min":[-1.0,null],"max":[2.0,null]})");
    EXPECT_EQ(json_milliseconds(std::vector<bucket_extent>()), nullptr);
}

TEST(json_values, dates_are_those_of_the_calendar)
{
    EXPECT_EQ(utc_text(0), "1970-01-01T00:00:00Z");
    EXPECT_EQ(utc_text(-1), "1969-12-31T23:59:59Z");
    EXPECT_EQ(utc_text(1700000000), "2023-11-14T22:13:20Z");
    EXPECT_EQ(utc_text(951782400), "2000-02-29T00:00:00Z");
    EXPECT_EQ(utc_text(-3506716800), "1858-11-17T00:00:00Z");
    EXPECT_EQ(utc_text(4294967295), "2106-02-07T06:28:15Z");
}
