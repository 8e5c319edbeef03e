// Times of ATSC A/65: GPS seconds, shown in the time zone of the analysing machine.
#pragma once

#include <ctime>

/// Unix time, seconds, of a GPS time: seconds since 1980-01-06 00:00:00 UTC, which is gps_utc_offset seconds
/// ahead of UTC.
long long unix_time_of_gps(long long gps_seconds, int gps_utc_offset);

/// The local date and time of a Unix time, as the C library's localtime gives it; zeros when it has none.
struct tm local_time_of(long long unix_time);
