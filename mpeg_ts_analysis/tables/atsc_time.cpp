#include "mpeg_ts_analysis/tables/atsc_time.h"

namespace {

/// 1980-01-06 00:00:00 UTC in Unix time.
constexpr long long gps_epoch = 315964800;

} // namespace

long long unix_time_of_gps(long long gps_seconds, int gps_utc_offset)
{
    return gps_seconds + gps_epoch - gps_utc_offset;
}

struct tm local_time_of(long long unix_time)
{
    const auto time = static_cast<time_t>(unix_time);
    const struct tm *const local = std::localtime(&time);
    return local != nullptr ? *local : tm{};
}
