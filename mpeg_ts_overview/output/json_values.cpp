#include "mpeg_ts_overview/output/json_values.h"

#include "mpeg_ts_overview/model/moment.h"

#include <fmt/format.h>

#include <chrono>
#include <cmath>

double six_decimals(double value)
{
    return std::round(value * 1e6) / 1e6 + 0.0;
}

double seconds_of(int64_t ticks)
{
    return six_decimals(static_cast<double>(ticks) / static_cast<double>(ticks_per_second));
}

double milliseconds_of(int64_t ticks)
{
    return six_decimals(static_cast<double>(ticks) / (static_cast<double>(ticks_per_second) / 1000));
}

std::string utc_text(int64_t utc_s)
{
    const std::chrono::sys_seconds time{std::chrono::seconds{utc_s}};
    const auto day = std::chrono::floor<std::chrono::days>(time);
    const std::chrono::year_month_day date{day};
    const std::chrono::hh_mm_ss clock{time - day};
    return fmt::format("{:04}-{:02}-{:02}T{:02}:{:02}:{:02}Z", static_cast<int>(date.year()),
                       static_cast<unsigned>(date.month()), static_cast<unsigned>(date.day()),
                       clock.hours().count(), clock.minutes().count(), clock.seconds().count());
}

ordered_json json_seconds(const std::optional<int64_t> &ticks)
{
    return ticks ? ordered_json(seconds_of(*ticks)) : ordered_json(nullptr);
}

ordered_json json_milliseconds(const extent &ticks)
{
    if (ticks.count == 0)
        return {
            {"min",  nullptr},
            {"mean", nullptr},
            {"max",  nullptr}
        };
    const double mean = static_cast<double>(ticks.sum) / static_cast<double>(ticks.count);
    return {
        {"min",  milliseconds_of(ticks.min)                                         },
        {"mean", six_decimals(mean / (static_cast<double>(ticks_per_second) / 1000))},
        {"max",  milliseconds_of(ticks.max)                                         }
    };
}

ordered_json json_milliseconds(const std::vector<bucket_extent> &ticks)
{
    if (ticks.empty()) return nullptr;
    const auto milliseconds = [](const std::optional<int64_t> &value) {
        return value ? ordered_json(milliseconds_of(*value)) : ordered_json(nullptr);
    };
    return {
        {"min", json_list(ticks, [&](const bucket_extent &bucket) { return milliseconds(bucket.min); })},
        {"max", json_list(ticks, [&](const bucket_extent &bucket) { return milliseconds(bucket.max); })}
    };
}

ordered_json json_text(const std::string &text)
{
    return text.empty() ? ordered_json(nullptr) : ordered_json(text);
}
