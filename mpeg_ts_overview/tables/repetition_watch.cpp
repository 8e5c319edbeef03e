#include "mpeg_ts_overview/tables/repetition_watch.h"

#include <algorithm>

void repetition_watch::add_limit(std::optional<int64_t> ticks, bool is_tolerant)
{
    limits.emplace_back(stretches, ticks, is_tolerant);
    shortest_limit = std::min(shortest_limit, ticks.value_or(shortest_limit));
}

repetition_clock repetition_watch::started(const moment &at) const
{
    repetition_clock clock;
    if (at.ticks && at.stretch >= 0) {
        clock.stretch = at.stretch;
        clock.run_ticks = clock.waited_ticks = *at.ticks;
    } else if (stretches.current()) {
        // Inside a break: of the stretch before it nothing counts.
        clock.stretch = stretches.current()->last.stretch;
        clock.run_ticks = clock.waited_ticks = *stretches.current()->last.ticks;
    }
    return clock;
}

repetition_clock repetition_watch::started_by_arrival(const moment &at) const
{
    repetition_clock clock = started(at);
    clock.arrived = true;
    return clock;
}

void repetition_watch::arrive(repetition_clock &clock, const moment &at, const watched_thing &thing)
{
    clock.own_ticks = 0;
    if (!at.ticks || at.stretch < 0) {
        end(clock, at, thing);
        if (stretches.current()) clock.waited_ticks = *stretches.current()->last.ticks;
        return;
    }
    settle(clock, at, true, thing);
    clock.waited_ticks = *at.ticks;
    clock.arrived = true;
}

void repetition_watch::arrive_by_own_clock(repetition_clock &clock, int64_t ticks, const moment &at,
                                           const watched_thing &thing)
{
    const int64_t own_ticks = clock.own_ticks + ticks;
    for (repetition_limit &limit : limits) {
        limit.judge_own(ticks, at, thing);
        limit.note_own_run(own_ticks);
    }
    if (at.ticks && at.stretch >= 0 && at.stretch == clock.stretch) {
        for (repetition_limit &limit : limits) limit.note_run(clock.run_ticks, at);
        clock.waited_ticks = *at.ticks;
    } else {
        clock = started_by_arrival(at);
    }
    clock.own_ticks = own_ticks;
}

void repetition_watch::end(repetition_clock &clock, const moment &at, const watched_thing &thing)
{
    if (at.ticks && at.stretch >= 0) {
        // What did not run as long as any limit tells nothing.
        if (clock.stretch == at.stretch && *at.ticks - clock.run_ticks < shortest_limit) return;
        settle(clock, at, false, thing);
    } else if (stretches.current()) {
        settle_past(clock, thing);
        end_stretch(clock, *stretches.current(), thing);
    }
}

void repetition_watch::end_absent(repetition_clock clock, const moment &at, const watched_thing &thing)
{
    repetition_watch alone(stretches);
    for (const repetition_limit &limit : limits) alone.add_limit(limit.ticks(), false);
    alone.end(clock, at, thing);
    for (size_t i = 0; i < limits.size(); ++i) limits[i].note_absence(alone.limits[i], at, thing);
}

/// Brings the clock to the stretch of the moment, and looks at the wait that ends there.
void repetition_watch::settle(repetition_clock &clock, const moment &at, bool arrives,
                              const watched_thing &thing)
{
    if (clock.stretch != at.stretch) {
        settle_past(clock, thing);
        const moment &first = starts_anew == after_break::at_once ? stretches.current()->first : at;
        clock = {first.stretch, *first.ticks, *first.ticks, false};
    }
    judge(clock, at, arrives, thing);
}

/// Looks at what the clock saw of the stretches that are over.
void repetition_watch::settle_past(repetition_clock &clock, const watched_thing &thing)
{
    const auto is_before = [](const time_stretch &over, int64_t stretch) {
        return over.first.stretch < stretch;
    };
    const auto &past = stretches.past();
    for (auto over = std::lower_bound(past.begin(), past.end(), clock.stretch, is_before); over != past.end();
         ++over)
        if (over->ticks() >= shortest_limit) end_stretch(clock, *over, thing);
}

void repetition_watch::end_stretch(repetition_clock &clock, const time_stretch &over,
                                   const watched_thing &thing)
{
    if (clock.stretch != over.first.stretch) {
        if (starts_anew == after_break::at_the_next_arrival) return;
        clock = {over.first.stretch, *over.first.ticks, *over.first.ticks, false};
    }
    judge(clock, over.last, false, thing);
}

void repetition_watch::judge(const repetition_clock &clock, const moment &to, bool arrives,
                             const watched_thing &thing)
{
    for (repetition_limit &limit : limits) {
        limit.judge(clock.waited_ticks, to, arrives && clock.arrived, thing);
        limit.note_run(clock.run_ticks, to);
    }
}
