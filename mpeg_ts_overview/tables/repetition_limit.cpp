#include "mpeg_ts_overview/tables/repetition_limit.h"

#include "mpeg_ts_overview/tables/log_violation.h"
#include "mpeg_ts_overview/tables/table_name.h"

#include <algorithm>
#include <fmt/format.h>
#include <limits>
#include <string>

namespace {

constexpr int64_t tolerance_divisor = 20; // 5 %

std::string words_of(const watched_thing &thing)
{
    std::string text = "no " + (thing.name != nullptr ? thing.name : table_name(thing.table_id));
    if (thing.extension) text += fmt::format(" of 0x{:04X}", *thing.extension);
    if (thing.section_number) text += fmt::format(", section {}", *thing.section_number);
    return text;
}

} // namespace

repetition_limit::repetition_limit(const time_stretches &times, std::optional<int64_t> limit_ticks,
                                   bool is_tolerant)
    : stretches(times), limit(limit_ticks), longest_allowed(std::numeric_limits<int64_t>::max())
{
    if (limit) longest_allowed = is_tolerant ? *limit + *limit / tolerance_divisor : *limit;
}

void repetition_limit::judge(int64_t from_ticks, const moment &to, bool between_arrivals,
                             const watched_thing &thing)
{
    judge(found[0], *to.ticks - from_ticks, to, between_arrivals, thing);
    const std::optional<wait> sure = sure_part({from_ticks, &to});
    if (!sure) return;
    const bool is_whole = sure->from_ticks == from_ticks && sure->to->packet == to.packet;
    judge(found[1], *sure->to->ticks - sure->from_ticks, *sure->to, between_arrivals && is_whole, thing);
}

void repetition_limit::judge_own(int64_t ticks, const moment &to, const watched_thing &thing)
{
    for (repetition_findings &here : found) judge(here, ticks, to, true, thing);
}

void repetition_limit::judge(repetition_findings &here, int64_t ticks, const moment &to,
                             bool between_arrivals, const watched_thing &thing) const
{
    const bool is_too_long = ticks > longest_allowed;
    if (is_too_long)
        log_violation(here.log, to, thing.pid, [&] { return words_of(thing) + " for " + in_ms(ticks); });
    if (is_too_long || between_arrivals)
        here.longest_ticks = std::max(ticks, here.longest_ticks.value_or(ticks));
}

void repetition_limit::note_run(int64_t from_ticks, const moment &to)
{
    const wait whole = {from_ticks, &to};
    found[0].longest_run_ticks = std::max(found[0].longest_run_ticks, *to.ticks - from_ticks);
    if (const std::optional<wait> sure = sure_part(whole))
        found[1].longest_run_ticks =
            std::max(found[1].longest_run_ticks, *sure->to->ticks - sure->from_ticks);
}

void repetition_limit::note_own_run(int64_t ticks)
{
    for (repetition_findings &here : found) here.longest_run_ticks = std::max(here.longest_run_ticks, ticks);
}

void repetition_limit::note_absence(const repetition_limit &alone, const moment &at,
                                    const watched_thing &thing)
{
    for (size_t number = 0; number < found.size(); ++number) {
        repetition_findings &here = found[number];
        const int64_t run_ticks = alone.found[number].longest_run_ticks;
        here.longest_run_ticks = std::max(here.longest_run_ticks, run_ticks);
        if (!limit || run_ticks < *limit) continue;
        here.longest_ticks = std::max(run_ticks, here.longest_ticks.value_or(run_ticks));
        log_violation(here.log, at, thing.pid, [&] { return words_of(thing) + " at all"; });
    }
}

/// The part of a wait that lies where times are sure.
std::optional<repetition_limit::wait> repetition_limit::sure_part(const wait &whole) const
{
    if (!stretches.first_sure()) return std::nullopt;
    wait part = whole;
    part.from_ticks = std::max(part.from_ticks, *stretches.first_sure()->ticks);
    if (part.to->extrapolated && part.to->packet > stretches.last_sure()->packet)
        part.to = &*stretches.last_sure();
    if (*part.to->ticks < part.from_ticks) return std::nullopt;
    return part;
}

bool repetition_limit::is_measured(bool sure_times_only) const
{
    const repetition_findings &here = findings(sure_times_only);
    return limit ? here.reached(*limit) : here.longest_ticks.has_value();
}
