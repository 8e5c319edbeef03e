#include "mpeg_ts_analysis/tables/dvb_time.h"

#include <chrono>
#include <gtest/gtest.h>
#include <tuple>

namespace {

constexpr unsigned mjd_of_1900_03_01 = 15079;

using calendar_date = std::tuple<int, int, int>;

calendar_date date_of_mjd(unsigned mjd)
{
    const dvb_date date = dvb_date_of_mjd(mjd);
    return {date.year, date.month, date.day};
}

/// By the calendar: Modified Julian Date 0 is 1858-11-17.
calendar_date calendar_date_of_mjd(unsigned mjd)
{
    using namespace std::chrono;
    const year_month_day date = sys_days{year{1858} / November / 17} + days{mjd};
    return {int{date.year()}, static_cast<int>(unsigned{date.month()}),
            static_cast<int>(unsigned{date.day()})};
}

} // namespace

TEST(dvb_time, the_example_of_the_annex)
{
    EXPECT_EQ(date_of_mjd(45218), calendar_date(1982, 9, 6));
    EXPECT_EQ(date_of_mjd(0xC079), calendar_date(1993, 10, 13));
}

TEST(dvb_time, january_and_february_belong_to_the_year_that_has_begun)
{
    EXPECT_EQ(date_of_mjd(51543), calendar_date(1999, 12, 31));
    EXPECT_EQ(date_of_mjd(51544), calendar_date(2000, 1, 1));
    EXPECT_EQ(date_of_mjd(51603), calendar_date(2000, 2, 29));
    EXPECT_EQ(date_of_mjd(51604), calendar_date(2000, 3, 1));
}

TEST(dvb_time, the_largest_value_is_a_date_like_any_other)
{
    EXPECT_EQ(date_of_mjd(0xFFFF), calendar_date(2038, 4, 22));
}

TEST(dvb_time, every_date_from_march_1900_on_is_that_of_the_calendar)
{
    EXPECT_EQ(calendar_date_of_mjd(mjd_of_1900_03_01), calendar_date(1900, 3, 1));
    for (unsigned mjd = mjd_of_1900_03_01; mjd <= 0xFFFF; ++mjd)
        ASSERT_EQ(date_of_mjd(mjd), calendar_date_of_mjd(mjd)) << mjd;
}

/// The annex's arithmetic takes every fourth year for a leap year, 1900 too, so that it has a 1900-02-29 and
/// is one day ahead before it.
TEST(dvb_time, every_date_before_march_1900_is_the_next_day_with_1900_as_a_leap_year)
{
    EXPECT_EQ(date_of_mjd(0), calendar_date(1858, 11, 18));
    EXPECT_EQ(date_of_mjd(mjd_of_1900_03_01 - 1), calendar_date(1900, 2, 29));
    for (unsigned mjd = 0; mjd < mjd_of_1900_03_01 - 1; ++mjd)
        ASSERT_EQ(date_of_mjd(mjd), calendar_date_of_mjd(mjd + 1)) << mjd;
}
