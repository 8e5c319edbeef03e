#include "mpeg_ts_overview/driver/limit_value.h"

#include <fmt/format.h>

#include <charconv>
#include <cmath>

namespace {

struct time_unit {
    std::string_view name;
    double seconds;
};

constexpr time_unit nanoseconds = {"ns", 1e-9};
constexpr time_unit milliseconds = {"ms", 1e-3};
constexpr time_unit seconds = {"s", 1.0};
constexpr time_unit units[] = {
    nanoseconds, {"us", 1e-6},
     milliseconds, seconds
};

struct limit_name {
    std::string_view name;
    time_unit own_unit;
    std::optional<int64_t> limits::*ticks; ///< null for the one that is kept in nanoseconds
};

constexpr limit_name names[] = {
    {"pcr_interval",   milliseconds, &limits::pcr_interval_ticks  },
    {"pcr_accuracy",   nanoseconds,  nullptr                      },
    {"pts_interval",   milliseconds, &limits::pts_interval_ticks  },
    {"pat_interval",   milliseconds, &limits::pat_interval_ticks  },
    {"pmt_interval",   milliseconds, &limits::pmt_interval_ticks  },
    {"pid_absence",    seconds,      &limits::pid_absence_ticks   },
    {"sdt_interval",   seconds,      &limits::sdt_interval_ticks  },
    {"nit_interval",   seconds,      &limits::nit_interval_ticks  },
    {"eit_schedule",   seconds,      &limits::eit_schedule_ticks  },
    {"si_minimum_gap", milliseconds, &limits::si_minimum_gap_ticks},
};

constexpr double longest_s = 1e6;
constexpr double ticks_of_second = 27e6;

/// The seconds that the text says, or nothing.
std::optional<double> read_seconds(std::string_view text, time_unit own_unit)
{
    double number = 0;
    const char *const fence = text.data() + text.size();
    const auto [end, error] = std::from_chars(text.data(), fence, number, std::chars_format::fixed);
    if (error != std::errc()) return std::nullopt;
    const std::string_view unit_name(end, static_cast<size_t>(fence - end));
    if (unit_name.empty()) return number * own_unit.seconds;
    for (const time_unit &unit : units)
        if (unit.name == unit_name) return number * unit.seconds;
    return std::nullopt;
}

} // namespace

std::string set_limit(std::string_view text, limits *values)
{
    const size_t equals = text.find('=');
    if (equals == std::string_view::npos) return fmt::format("'{}' is no limit: NAME=VALUE", text);
    const std::string_view name = text.substr(0, equals);
    for (const limit_name &limit : names) {
        if (limit.name != name) continue;
        const std::optional<double> value = read_seconds(text.substr(equals + 1), limit.own_unit);
        if (!value) return fmt::format("the limit '{}' has no value such as 40ms", text);
        // Not the other way round, for the sake of what is no number.
        if (!(*value >= nanoseconds.seconds && *value <= longest_s))
            return fmt::format("the limit '{}' is not within 1 ns and 1000000 s", text);
        if (limit.ticks != nullptr)
            values->*limit.ticks = std::llround(*value * ticks_of_second);
        else
            values->pcr_accuracy_ns = std::round(*value * 1e12) / 1e3; // whole picoseconds
        return "";
    }
    return fmt::format("there is no limit named '{}'", name);
}
