#include "mpeg_ts_analysis/tables/dvb_time.h"

#include <cmath>

// kept: a day ahead of the calendar before 1900-03-01.
dvb_date dvb_date_of_mjd(unsigned mjd)
{
    const double days = mjd;
    const double year_index = std::floor((days - 15078.2) / 365.25);
    const double year_days = std::floor(year_index * 365.25);
    const double month_index = std::floor((days - 14956.1 - year_days) / 30.6001);
    const double month_days = std::floor(month_index * 30.6001);
    const int k = month_index == 14 || month_index == 15 ? 1 : 0;

    dvb_date date;
    date.day = static_cast<int>(days - 14956 - year_days - month_days);
    date.year = static_cast<int>(year_index) + k + 1900;
    date.month = static_cast<int>(month_index) - 1 - 12 * k;
    return date;
}
