// How the values of the model are said in JSON: what was not measured is null.
#pragma once

#include "mpeg_ts_overview/model/extent.h"

#include <nlohmann/json.hpp>

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

using nlohmann::ordered_json;

/// value with 6 decimals at most, halves away from zero; no negative zero.
double six_decimals(double value);

/// Seconds of ticks of 27 MHz.
double seconds_of(int64_t ticks);

/// Milliseconds of ticks of 27 MHz.
double milliseconds_of(int64_t ticks);

/// "YYYY-MM-DDTHH:MM:SSZ" of seconds since 1970-01-01T00:00:00Z.
std::string utc_text(int64_t utc_s);

ordered_json json_seconds(const std::optional<int64_t> &ticks);

/// {min, mean, max} in milliseconds, of ticks of 27 MHz.
ordered_json json_milliseconds(const extent &ticks);

/// {min, max} of each bucket in milliseconds, of ticks of 27 MHz; null when there are no buckets.
ordered_json json_milliseconds(const std::vector<bucket_extent> &ticks);

/// The text, or null when it is empty.
ordered_json json_text(const std::string &text);

template <class Value>
ordered_json json_value(const std::optional<Value> &value)
{
    return value ? ordered_json(*value) : ordered_json(nullptr);
}

/// A list of what row makes of each of rows.
template <class Rows, class Row>
ordered_json json_list(const Rows &rows, const Row &row)
{
    ordered_json list = ordered_json::array();
    for (const auto &each : rows) list.push_back(row(each));
    return list;
}
