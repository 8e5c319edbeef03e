#include "mpeg_ts_analysis/tables/dvb_time.h"

namespace {

/// The quotient, rounded down.
long long floor_of(long long dividend, long long divisor)
{
    return dividend >= 0 ? dividend / divisor : -((divisor - 1 - dividend) / divisor);
}

} // namespace

// kept: a day ahead of the calendar before 1900-03-01.
dvb_date dvb_date_of_mjd(unsigned mjd)
{
    // The annex's fractions as whole numbers: (MJD - 15078.2) / 365.25, (MJD - 14956.1 - days) / 30.6001.
    const long long days = mjd;
    const long long year_index = floor_of(100 * days - 1507820, 36525);
    const long long year_days = floor_of(year_index * 36525, 100);
    const long long month_index = floor_of(10000 * (days - year_days) - 149561000, 306001);
    const long long month_days = floor_of(month_index * 306001, 10000);
    const int k = month_index == 14 || month_index == 15 ? 1 : 0;

    dvb_date date;
    date.day = static_cast<int>(days - 14956 - year_days - month_days);
    date.year = static_cast<int>(year_index) + k + 1900;
    date.month = static_cast<int>(month_index) - 1 - 12 * k;
    return date;
}
