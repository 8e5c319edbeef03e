#include "mpeg_ts_overview/tables/dvb_time.h"

namespace {

constexpr int64_t mjd_of_1970 = 40587;
constexpr int64_t seconds_a_day = 86400;

/// The next two BCD digits, 0 to 99; nothing when they are none.
std::optional<unsigned> read_two_digits(bit_reader &in)
{
    const unsigned tens = in.bits(4);
    const unsigned units = in.bits(4);
    if (tens > 9 || units > 9) return std::nullopt;
    return 10 * tens + units;
}

} // namespace

std::optional<int64_t> read_utc_time(bit_reader &in)
{
    const auto modified_julian_date = static_cast<int64_t>(in.bits(16));
    const std::optional<unsigned> hours = read_two_digits(in);
    const std::optional<unsigned> minutes = read_two_digits(in);
    const std::optional<unsigned> seconds = read_two_digits(in);

    if (!hours || !minutes || !seconds) return std::nullopt;
    if (*hours > 23 || *minutes > 59 || *seconds > 59) return std::nullopt;
    const int64_t time_of_day = 3600 * int64_t{*hours} + 60 * int64_t{*minutes} + int64_t{*seconds};
    return (modified_julian_date - mjd_of_1970) * seconds_a_day + time_of_day;
}

std::optional<uint32_t> read_bcd_duration(bit_reader &in)
{
    const std::optional<unsigned> hours = read_two_digits(in);
    const std::optional<unsigned> minutes = read_two_digits(in);
    const std::optional<unsigned> seconds = read_two_digits(in);

    if (!hours || !minutes || !seconds) return std::nullopt;
    return 3600 * *hours + 60 * *minutes + *seconds;
}
