#include "mpeg_ts_overview/output/figures.h"

#include "mpeg_ts_overview/model/moment.h"

#include <fmt/format.h>

#include <cmath>
#include <cstdlib>

namespace {

/// Three digits that count: "1.08", "25.3", "256".
std::string three_digits(double value)
{
    if (value < 9.995) return fmt::format("{:.2f}", value);
    return value < 99.95 ? fmt::format("{:.1f}", value) : fmt::format("{:.0f}", value);
}

} // namespace

std::string size_text(uint64_t bytes)
{
    if (bytes < 1000) return fmt::format("{} bytes", bytes);
    constexpr const char *units[] = {"kB", "MB", "GB", "TB", "PB", "EB"};
    double value = static_cast<double>(bytes) / 1000;
    const char *const *unit = units;
    while (value >= 999.5) {
        value /= 1000;
        ++unit;
    }
    return fmt::format("{} {}", three_digits(value), *unit);
}

std::string rate_text(uint64_t bps)
{
    const auto value = static_cast<double>(bps);
    return bps < 10000 ? fmt::format("{:.2f} kbit/s", value / 1e3)
                       : fmt::format("{:.2f} Mbit/s", value / 1e6);
}

std::string duration_text(int64_t ticks)
{
    const double exact = static_cast<double>(ticks) / static_cast<double>(ticks_per_second);
    if (exact < 59.95) return exact < 9.995 ? fmt::format("{:.2f} s", exact) : fmt::format("{:.1f} s", exact);
    const int64_t seconds = std::llround(exact);
    const int64_t minutes = seconds / 60;
    if (minutes < 60) return fmt::format("{} min {} s", minutes, seconds % 60);
    return fmt::format("{} h {} min {} s", minutes / 60, minutes % 60, seconds % 60);
}

std::string clock_text(int64_t ticks)
{
    constexpr double ticks_per_millisecond = static_cast<double>(ticks_per_second) / 1000;
    const int64_t milliseconds = std::llabs(std::llround(static_cast<double>(ticks) / ticks_per_millisecond));
    const int64_t seconds = milliseconds / 1000;
    return fmt::format("{}{}:{:02}:{:02}.{:03}", ticks < 0 ? "-" : "", seconds / 3600, seconds / 60 % 60,
                       seconds % 60, milliseconds % 1000);
}

std::string interval_text(double milliseconds)
{
    if (milliseconds >= 999.5e3) return fmt::format("{:.0f} s", milliseconds / 1000);
    if (milliseconds >= 999.5) return fmt::format("{:.3g} s", milliseconds / 1000);
    return milliseconds < 9.95 ? fmt::format("{:.1f} ms", milliseconds)
                               : fmt::format("{:.0f} ms", milliseconds);
}

std::string count_text(uint64_t count, const char *one, const char *more)
{
    return fmt::format("{} {}", count, count == 1 ? one : more);
}
