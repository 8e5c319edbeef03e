// Writing down what breaks a limit.
#pragma once

#include "mpeg_ts_overview/model/violation_log.h"

#include <algorithm>
#include <cstdint>
#include <string>

/// Where a violation stands among the details, which are in order of packets, or the limit when they are full
/// of earlier ones.
size_t place_of_detail(const violation_log &log, const moment &at);

/// Counts a violation. text_of() gives the words and is asked only for the details that are kept.
template <typename text_maker>
void log_violation(violation_log &log, const moment &at, std::optional<uint16_t> pid,
                   const text_maker &text_of)
{
    if (log.count == 0 || at.packet < log.first.packet) log.first = at;
    if (log.count == 0 || at.packet >= log.last.packet) log.last = at;
    ++log.count;
    const size_t place = place_of_detail(log, at);
    if (place >= violation_detail_limit) return;
    if (log.details.size() == violation_detail_limit) log.details.pop_back();
    log.details.insert(log.details.begin() + static_cast<std::ptrdiff_t>(place), {at, pid, text_of()});
}

/// Makes the worst of a log at least so bad.
inline void note_worst(violation_log &log, double value)
{
    log.worst = std::max(value, log.worst.value_or(value));
}

/// A number with up to six decimals and its unit: "40.5 ms".
std::string with_unit(double value, const char *unit);

/// 27 MHz ticks in milliseconds, with the unit.
std::string in_ms(int64_t ticks);
