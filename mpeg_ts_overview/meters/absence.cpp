#include "mpeg_ts_overview/meters/absence.h"

#include "mpeg_ts_overview/tables/log_violation.h"

#include <algorithm>

absence_meter::absence_meter(const time_stretches &stretches, int64_t limit_ticks) : absence(stretches)
{
    absence.add_limit(limit_ticks, false);
}

void absence_meter::begin_times(const packet_times &next)
{
    times = next;
    set_good_gap();
}

/// Notes when the PIDs occurred last: their times are not known any more once these are over.
void absence_meter::end_times()
{
    for (pid_state *const state : touched) {
        note_last(*state);
        state->last_packet = not_in_times;
    }
    touched.clear();
}

/// Notes when the PID occurred last in the times in hand.
void absence_meter::note_last(pid_state &state)
{
    const moment last = times.moment_of(state.last_packet);
    if (last.ticks && last.stretch >= 0) state.watched->clock.waited_ticks = *last.ticks;
}

/// No packets that far apart, or less, make an interval longer than the longest so far.
void absence_meter::set_good_gap()
{
    const auto longest_of = [&](bool sure) { return limit().findings(sure).longest_ticks.value_or(0); };
    // Of more than a second no use is made: the product fits.
    const int64_t good_ticks =
        std::min({longest_of(false), longest_of(true), *limit().ticks(), ticks_per_second});
    const time_span &span = *times.span;
    const bool counts = span.source == time_source::line && span.ticks > 0 && good_ticks > 0;
    good_gap = counts ? static_cast<uint64_t>((good_ticks - 1) * span.packets / span.ticks) : 0;
}

/// The packet is the PID's first in these times, or comes long behind the last.
void absence_meter::look_closer(pid_state &state, uint64_t packet)
{
    if (state.last_packet != not_in_times)
        note_last(state);
    else
        touched.push_back(&state);
    watched_pid &one = *state.watched;
    absence.arrive(one.clock, times.moment_of(packet), thing_of(one));
    set_good_gap();
}

watched_thing absence_meter::thing_of(const watched_pid &one) const
{
    watched_thing thing;
    thing.pid = one.pid;
    thing.name = "packet of the PID";
    return thing;
}

void absence_meter::start(uint16_t pid, const moment &at)
{
    ever_watched[pid] = true;
    of_pid[pid].watched = std::make_unique<watched_pid>(watched_pid{pid, absence.started(at)});
}

void absence_meter::stop(uint16_t pid, const moment &at, bool occurred)
{
    pid_state &state = of_pid[pid];
    if (state.last_packet != not_in_times) {
        note_last(state);
        std::erase(touched, &state);
    }
    if (occurred) absence.end(state.watched->clock, at, thing_of(*state.watched));
    state = {};
}

void absence_meter::finish(const moment &end, const std::function<bool(uint16_t pid)> &occurred,
                           bool all_must_occur)
{
    for (uint16_t pid = 0; pid < mpeg_ts_pid_count; ++pid) {
        if (all_must_occur && ever_watched[pid] && !occurred(pid))
            log_violation(never, end, pid, [] { return "never there"; });
        if (watches(pid)) stop(pid, end, occurred(pid));
    }
}
