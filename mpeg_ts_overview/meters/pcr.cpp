#include "mpeg_ts_overview/meters/pcr.h"

#include "mpeg_ts_overview/meters/clock_arithmetic.h"
#include "mpeg_ts_overview/tables/log_violation.h"

#include <algorithm>

namespace {

/// Differences beyond this are no interval.
constexpr int64_t longest_interval_ticks = 10 * ticks_per_second;

watched_thing thing_of(uint16_t pid)
{
    return {pid, 0, std::nullopt, std::nullopt, "PCR"};
}

bool is_clock(const recording_end &end, uint16_t pid)
{
    return std::find(end.clock_pids.begin(), end.clock_pids.end(), pid) != end.clock_pids.end();
}

/// Takes the points behind that packet out of windows that follow each other.
void drop_behind(std::vector<pcr_window> &windows, uint64_t packet)
{
    for (auto window = windows.rbegin(); window != windows.rend(); ++window)
        if (!window->drop_behind(packet)) return;
}

} // namespace

pcr_meter::pcr_meter(const time_stretches &stretches, int64_t interval_limit_ticks, double accuracy_limit_ns)
    : repetition(stretches), fits(accuracy_limit_ns)
{
    repetition.add_limit(interval_limit_ticks, false);
}

void pcr_meter::on_packet(const ts_packet &packet, const packet_sequence &sequence, bool is_program_clock)
{
    if (packet.transport_error_indicator) {
        close_windows();
        return;
    }
    // A copy has no PCR of its own.
    const bool has_PCR = packet.PCR && !sequence.duplicate;
    if (!has_PCR && number_of[packet.pid] == 0) return;

    pid_clock &clock = clock_of(packet.pid);
    clock.flagged |= packet.discontinuity_indicator;
    if (has_PCR) take_pcr(clock, packet, is_program_clock);
}

void pcr_meter::on_program_clock(uint16_t pid, const moment &at)
{
    if (pid == mpeg_ts_padding_pid) return;
    pid_clock &clock = clock_of(pid);
    clock.wait = repetition.started(at);
    clock.arrived = false;
}

void pcr_meter::on_program_clock_end(uint16_t pid, const moment &at)
{
    if (number_of[pid] == 0) return;
    pid_clock &clock = clock_of(pid);
    if (clock.wait && clock.facts.count > 0 && !clock.dropped) repetition.end(*clock.wait, at, thing_of(pid));
    clock.wait.reset();
}

void pcr_meter::on_continuity_error(std::optional<uint64_t> last_packet_before)
{
    for (const uint16_t place : with_points) {
        if (last_packet_before)
            clocks[place].window.drop_behind(*last_packet_before);
        else
            clocks[place].window.clear();
    }
    if (last_packet_before)
        for (const uint16_t place : with_closed) drop_behind(clocks[place].closed, *last_packet_before);
    close_windows();
}

pcr_meter::pid_clock &pcr_meter::clock_of(uint16_t pid)
{
    uint16_t &number = number_of[pid];
    if (number == 0) {
        clocks.emplace_back().facts.pid = pid;
        number = static_cast<uint16_t>(clocks.size());
    }
    return clocks[number - 1u];
}

/// Gives a PID its row with the second PCR. Returns false when there is no room for it.
bool pcr_meter::keep(pid_clock &clock)
{
    if (clock.kept || clock.facts.count == 0) return true;
    if (clock.dropped) return false;
    if (kept_count == pcr_pid_limit) {
        clock.dropped = true;
        clock.window = {};
        ++not_kept;
        return false;
    }
    clock.kept = true;
    ++kept_count;
    return true;
}

void pcr_meter::take_pcr(pid_clock &clock, const ts_packet &packet, bool is_program_clock)
{
    if (!keep(clock)) return;
    if (clock.facts.count == 0) {
        clock.first_packet = packet.at.packet;
        if (is_program_clock) take_arrival(clock, packet.at, std::nullopt);
        add_point(clock, packet, 0);
    } else {
        take_pair(clock, packet, is_program_clock);
    }
    if (!is_program_clock) clock.wait.reset();
    ++clock.facts.count;
    clock.PCR = static_cast<int64_t>(*packet.PCR);
    clock.at = packet.at;
    clock.flagged = false;
}

/// Takes a PCR that follows another.
void pcr_meter::take_pair(pid_clock &clock, const ts_packet &packet, bool is_program_clock)
{
    const auto PCR = static_cast<int64_t>(*packet.PCR);
    const int64_t difference = forward_difference(clock.PCR, PCR, pcr_cycle_ticks);
    const bool unflagged = !clock.flagged && difference > longest_good_pcr_ticks;
    const bool by_difference = !clock.flagged && difference > 0 && difference <= longest_interval_ticks;
    const std::optional<int64_t> clock_ticks = by_difference ? std::optional(difference) : std::nullopt;
    const std::optional<int64_t> interval =
        by_difference ? clock_ticks : interval_between(clock.at, packet.at);

    if (interval) clock.facts.interval_ticks.add(*interval);
    if (interval && packet.at.ticks) clock.intervals.add(*packet.at.ticks, *interval);
    if (clock.flagged) ++clock.facts.discontinuities_flagged;
    if (unflagged) ++clock.facts.discontinuities_unflagged;

    has_program_clock |= is_program_clock;
    if (is_program_clock && unflagged) {
        const int64_t leap = nearest_difference(clock.PCR, PCR, pcr_cycle_ticks);
        log_violation(leaps, packet.at, packet.pid,
                      [&] { return "PCR leaps by " + in_ms(leap) + " without discontinuity_indicator"; });
    }
    if (is_program_clock) take_arrival(clock, packet.at, clock_ticks);

    if (clock.flagged || unflagged) close_window(clock);
    add_point(clock, packet, difference);
}

/// A PCR of a program's clock arrives, where its PCRs tell so many ticks behind the last one.
void pcr_meter::take_arrival(pid_clock &clock, const moment &at, std::optional<int64_t> clock_ticks)
{
    const watched_thing PCR = thing_of(clock.facts.pid);
    if (!clock.wait)
        clock.wait = repetition.started_by_arrival(at);
    else if (clock_ticks && clock.arrived)
        repetition.arrive_by_own_clock(*clock.wait, *clock_ticks, at, PCR);
    else
        repetition.arrive(*clock.wait, at, PCR);
    clock.arrived = true;
}

void pcr_meter::add_point(pid_clock &clock, const ts_packet &packet, int64_t difference)
{
    clock.window.add(packet, difference);
    if (!clock.listed) with_points.push_back(static_cast<uint16_t>(number_of[packet.pid] - 1));
    clock.listed = true;
    if (clock.window.full()) close_window(clock);
}

/// The window is measured later: a loss may show that began while it was open.
void pcr_meter::close_window(pid_clock &clock)
{
    if (clock.window.size() >= least_window_points) {
        if (!clock.waits) with_closed.push_back(static_cast<uint16_t>(number_of[clock.facts.pid] - 1));
        clock.waits = true;
        clock.closed.push_back(std::move(clock.window));
        measure_closed(clock, waiting_point_limit);
    }
    clock.window.clear();
}

/// Measures the first of the windows that have closed, until no more points than these wait.
void pcr_meter::measure_closed(pid_clock &clock, size_t points_that_wait)
{
    size_t points = 0;
    for (const pcr_window &window : clock.closed) points += window.size();
    auto next = clock.closed.begin();
    for (; points > points_that_wait; ++next) {
        fits.measure(*next, clock.facts.pid, &clock.straightness);
        points -= next->size();
    }
    clock.closed.erase(clock.closed.begin(), next);
}

void pcr_meter::close_windows()
{
    for (const uint16_t place : with_points) {
        close_window(clocks[place]);
        clocks[place].listed = false;
    }
    with_points.clear();
}

std::vector<pcr_facts> pcr_meter::finish(const recording_end &end,
                                         const std::function<bool(uint16_t pid)> &is_program_clock)
{
    close_windows();
    for (const uint16_t place : with_closed) measure_closed(clocks[place], 0);
    std::vector<pid_clock *> kept;
    for (pid_clock &clock : clocks) {
        if (clock.wait && clock.facts.count > 0 && !clock.dropped && is_program_clock(clock.facts.pid))
            repetition.end(*clock.wait, end.at, thing_of(clock.facts.pid));
        if (clock.kept) kept.push_back(&clock);
    }
    std::sort(kept.begin(), kept.end(),
              [](const pid_clock *a, const pid_clock *b) { return a->first_packet < b->first_packet; });

    std::vector<pcr_facts> rows;
    rows.reserve(kept.size());
    for (const pid_clock *clock : kept) rows.push_back(row_of(*clock, end));
    return rows;
}

pcr_facts pcr_meter::row_of(const pid_clock &clock, const recording_end &end)
{
    pcr_facts row = clock.facts;
    if (end.at.ticks) {
        row.interval_series_ticks = clock.intervals.finish(end.bucket_ticks, end.buckets);
    }
    const residual_record &record =
        end.constant_bitrate ? clock.straightness.over_index : clock.straightness.over_arrival;
    row.residual = record.facts();
    row.residual_series = record.series();
    if (end.constant_bitrate)
        row.basis = "index";
    else if (end.has_arrival_times)
        row.basis = "arrival";
    if (!is_clock(end, row.pid)) row.rate_offset = clock.straightness.rate_offset;
    return row;
}
