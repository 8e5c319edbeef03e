#include "tests/support/time_zone.h"

#include "mpeg_ts_analysis/tables/atsc_time.h"

#include <cstdio>
#include <gtest/gtest.h>
#include <string>

namespace {

std::string local_text(long long unix_time)
{
    const struct tm local = local_time_of(unix_time);
    char text[64];
    std::snprintf(text, sizeof(text), "%04d-%02d-%02d %02d:%02d:%02d", local.tm_year + 1900, local.tm_mon + 1,
                  local.tm_mday, local.tm_hour, local.tm_min, local.tm_sec);
    return text;
}

} // namespace

TEST(atsc_time, GPS_time_begins_in_1980_and_runs_ahead_of_UTC)
{
    EXPECT_EQ(unix_time_of_gps(0, 0), 315964800);
    EXPECT_EQ(unix_time_of_gps(0, 18), 315964782);
    EXPECT_EQ(unix_time_of_gps(1000000000, 18), 1315964782);
    EXPECT_EQ(unix_time_of_gps(0xFFFFFFFFll + 0xFFFFF, 255), 4294967295ll + 1048575 + 315964800 - 255);
}

TEST(atsc_time, UTC_is_shown_as_it_is)
{
    const time_zone zone("UTC");
    EXPECT_EQ(local_text(315964800), "1980-01-06 00:00:00");
    EXPECT_EQ(local_text(1315964782), "2011-09-14 01:46:22");
    EXPECT_EQ(local_text(4610931840ll), "2116-02-12 06:24:00");
}

/// In 2021 New York changed on March 14 at 07:00 UTC and on November 7 at 06:00 UTC. The second name is the
/// rule of the same zone, which needs no time zone database.
TEST(atsc_time, New_York_goes_over_to_daylight_saving_time_and_back)
{
    for (const char *const name : {"America/New_York", "EST5EDT,M3.2.0,M11.1.0"}) {
        const time_zone zone(name);
        EXPECT_EQ(local_text(1615705199), "2021-03-14 01:59:59") << name;
        EXPECT_EQ(local_text(1615705200), "2021-03-14 03:00:00") << name;
        EXPECT_EQ(local_text(1636264799), "2021-11-07 01:59:59") << name;
        EXPECT_EQ(local_text(1636264800), "2021-11-07 01:00:00") << name;
    }
}

TEST(atsc_time, Kolkata_is_five_and_a_half_hours_ahead_all_year)
{
    for (const char *const name : {"Asia/Kolkata", "IST-5:30"}) {
        const time_zone zone(name);
        EXPECT_EQ(local_text(1615705199), "2021-03-14 12:29:59") << name;
        EXPECT_EQ(local_text(1636264800), "2021-11-07 11:30:00") << name;
        EXPECT_EQ(local_text(315964800), "1980-01-06 05:30:00") << name;
    }
}

TEST(atsc_time, a_time_beyond_the_calendar_is_all_zeros)
{
    const struct tm none = local_time_of(INT64_MAX);
    EXPECT_EQ(none.tm_year, 0);
    EXPECT_EQ(none.tm_mday, 0);
}
