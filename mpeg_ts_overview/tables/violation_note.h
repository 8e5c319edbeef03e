// Logs of violations that are not found in the order of time: the details are the earliest.
#pragma once

#include "mpeg_ts_overview/model/violation_log.h"

#include <algorithm>
#include <cstdint>
#include <optional>

/// Counts a violation; text_of() gives its words, and is asked for those that are kept.
template <typename text_maker>
void note_violation(violation_log &log, const moment &at, std::optional<uint16_t> pid,
                    const text_maker &text_of)
{
    if (log.count == 0 || at.packet < log.first.packet) log.first = at;
    if (log.count == 0 || at.packet >= log.last.packet) log.last = at;
    ++log.count;

    const auto is_before = [](const moment &a, const violation &b) { return a.packet < b.at.packet; };
    const auto place = std::upper_bound(log.details.begin(), log.details.end(), at, is_before);
    if (place == log.details.end() && log.details.size() == violation_detail_limit) return;
    log.details.insert(place, {at, pid, text_of()});
    if (log.details.size() > violation_detail_limit) log.details.pop_back();
}
