#include "mpeg_ts_overview/meters/interval_limit.h"

#include "mpeg_ts_overview/tables/log_violation.h"

#include <algorithm>

namespace {

enum : size_t { all_times, sure_times };

} // namespace

interval_limit::interval_limit(const char *thing, int64_t limit_ticks, after_break anew)
    : name(thing), limit(limit_ticks), starts_anew(anew)
{
}

void interval_limit::see(const moment &at)
{
    if (!at.extrapolated) {
        if (!first_clocked) first_clocked = at;
        last_clocked = at;
    }
    if (at.stretch < 0) return;
    if (!latest || latest->stretch != at.stretch || latest->ticks.has_value() != at.ticks.has_value()) {
        break_from = latest;
        break_to = at;
    }
    latest = at;
}

void interval_limit::begin(interval_watch &watch, const moment &at)
{
    watch = {};
    watch.from = at;
}

void interval_limit::arrive(interval_watch &watch, uint16_t pid, const moment &at,
                            std::optional<int64_t> clock_ticks)
{
    if (watch.from) judge(watch, pid, {*watch.from, at, watch.arrived}, clock_ticks);
    watch.from = at;
    watch.arrived = true;
}

void interval_limit::end(interval_watch &watch, uint16_t pid, const moment &at)
{
    if (watch.from) judge(watch, pid, {*watch.from, at, false}, std::nullopt);
    watch = {};
}

/// Judges a wait for each log; what lies outside the clock points is cut off for the second.
void interval_limit::judge(interval_watch &watch, uint16_t pid, const wait &w,
                           std::optional<int64_t> clock_ticks)
{
    if (clock_ticks) {
        for (const size_t log_number : {all_times, sure_times}) {
            watch_on(log_number, watch, *clock_ticks);
            judge_ticks(log_number, pid, {*clock_ticks, w.to}, true);
        }
        return;
    }

    judge_times(all_times, watch, pid, w);
    if (!first_clocked || !last_clocked) return;
    wait sure = w;
    if (w.from.packet < first_clocked->packet) sure = {*first_clocked, w.to, false};
    if (w.to.extrapolated) sure = {sure.from, *last_clocked, false};
    if (sure.from.packet < sure.to.packet) judge_times(sure_times, watch, pid, sure);
}

/// Judges the interval, or the longer of its pieces when a break lies between.
void interval_limit::judge_times(size_t log_number, interval_watch &watch, uint16_t pid, const wait &w)
{
    if (const std::optional<int64_t> ticks = interval_between(w.from, w.to)) {
        watch_on(log_number, watch, *ticks);
        judge_ticks(log_number, pid, {*ticks, w.to}, w.between_arrivals);
        return;
    }

    const std::optional<piece> before = before_break(w);
    if (before) watch_on(log_number, watch, before->ticks);
    watch.watched[log_number] = 0;
    const std::optional<piece> behind = behind_break(w);
    if (behind) watch_on(log_number, watch, behind->ticks);

    if (before && (!behind || before->ticks > behind->ticks))
        judge_ticks(log_number, pid, *before, false);
    else if (behind)
        judge_ticks(log_number, pid, *behind, false);
}

void interval_limit::judge_ticks(size_t log_number, uint16_t pid, const piece &p, bool between_arrivals)
{
    violation_log &log = logs[log_number];
    const bool beyond = p.ticks > limit;
    if (beyond)
        log_violation(log, p.end, pid, [&] { return std::string("no ") + name + " for " + in_ms(p.ticks); });
    if (beyond || between_arrivals)
        note_worst(log, static_cast<double>(p.ticks) / static_cast<double>(ticks_per_second));
}

void interval_limit::watch_on(size_t log_number, interval_watch &watch, int64_t ticks)
{
    watch.watched[log_number] += ticks;
    longest[log_number] = std::max(longest[log_number], watch.watched[log_number]);
}

std::optional<interval_limit::piece> interval_limit::before_break(const wait &w) const
{
    for (const std::optional<moment> &end : {latest, break_from}) {
        if (!end) continue;
        if (const std::optional<int64_t> ticks = interval_between(w.from, *end)) return piece{*ticks, *end};
    }
    return std::nullopt;
}

std::optional<interval_limit::piece> interval_limit::behind_break(const wait &w) const
{
    if (starts_anew != after_break::at_the_break || !break_to) return std::nullopt;
    const std::optional<int64_t> ticks = interval_between(*break_to, w.to);
    return ticks ? std::optional(piece{*ticks, w.to}) : std::nullopt;
}
