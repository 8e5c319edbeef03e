#include "mpeg_ts_overview/meters/time_stamps.h"

#include "mpeg_ts_overview/meters/clock_arithmetic.h"
#include "mpeg_ts_overview/tables/log_violation.h"

#include <cstdlib>

namespace {

/// Stamps further from the clock have nothing to do with it.
constexpr int64_t greatest_margin_ticks = 10 * ticks_per_second;

/// True when what lies on both sides cannot be compared.
bool is_break_between(const moment &from, const moment &to)
{
    return from.stretch != to.stretch || (to.ticks && to.stretch < 0);
}

/// Adds an arrival and the interval from the one before.
void take_arrival(stamp_facts &facts, std::optional<moment> &before, const moment &at)
{
    ++facts.count;
    if (before)
        if (const auto interval = interval_between(*before, at)) facts.arrival_interval_ticks.add(*interval);
    before = at;
}

watched_thing pts_of(uint16_t pid)
{
    return {pid, 0, std::nullopt, std::nullopt, "PTS"};
}

std::string ms_of_stamps(int64_t difference)
{
    return in_ms(difference * ticks_per_time_stamp);
}

} // namespace

time_stamp_meter::time_stamp_meter(const program_clocks &followed, const time_stretches &stretches,
                                   int64_t pts_interval_limit_ticks)
    : clocks(followed), pts_repetition(stretches, after_break::at_the_next_arrival)
{
    pts_repetition.add_limit(pts_interval_limit_ticks, false);
}

void time_stamp_meter::on_packet(const ts_packet &packet, const packet_sequence &sequence,
                                 const stream_role &role)
{
    if (packet.transport_error_indicator || packet.pid == mpeg_ts_padding_pid || sequence.duplicate) return;

    if (packet.discontinuity_indicator)
        if (pid_stamps *const stamps = stamps_of(packet.pid)) stamps->decoded.reset();
    if (packet.transport_scrambling_control != 0) {
        on_scrambled(packet.pid);
        return;
    }
    if (packet.payload_unit_start_indicator) take_unit_start(packet, role);
}

void time_stamp_meter::on_scrambled(uint16_t pid)
{
    pid_stamps *const stamps = stamps_of(pid);
    if (stamps == nullptr) return;
    stamps->pts_at.reset();
    stamps->dts_at.reset();
    stamps->wait.reset();
}

void time_stamp_meter::on_unlisted(uint16_t pid, const moment &at)
{
    pid_stamps *const stamps = stamps_of(pid);
    if (stamps == nullptr) return;
    end_wait(*stamps, at);
    on_scrambled(pid);
    stamps->PTS.reset();
    stamps->decoded.reset();
}

time_stamp_meter::pid_stamps *time_stamp_meter::stamps_of(uint16_t pid)
{
    return stamps_number[pid] == 0 ? nullptr : &all_stamps[stamps_number[pid] - 1u];
}

time_stamp_meter::pid_stamps &time_stamp_meter::new_stamps_of(uint16_t pid)
{
    all_stamps.emplace_back().facts.pid = pid;
    stamps_number[pid] = static_cast<uint16_t>(all_stamps.size());
    return all_stamps.back();
}

void time_stamp_meter::take_unit_start(const ts_packet &packet, const stream_role &role)
{
    if (role.kind == stream_kind::other) return;
    pid_stamps *stamps = stamps_of(packet.pid);
    if (stamps == nullptr) stamps = &new_stamps_of(packet.pid);

    const std::optional<pes_time_stamps> read = read_time_stamps(packet.payload, packet.fence);
    if (!read) {
        ++stamps->facts.pes_not_read;
        return;
    }
    if (!read->PTS) return;
    take_arrivals(*stamps, *read, packet, role.still_pictures);
    take_order(*stamps, *read, packet, role);
    take_margin(*stamps, read->DTS.value_or(*read->PTS), packet, role);
}

void time_stamp_meter::take_arrivals(pid_stamps &stamps, const pes_time_stamps &read, const ts_packet &packet,
                                     bool still_pictures)
{
    take_arrival(stamps.facts.pts, stamps.pts_at, packet.at);
    if (read.DTS) take_arrival(stamps.facts.dts, stamps.dts_at, packet.at);
    if (still_pictures)
        stamps.wait.reset();
    else if (stamps.wait)
        pts_repetition.arrive(*stamps.wait, packet.at, pts_of(packet.pid));
    else
        stamps.wait = pts_repetition.started_by_arrival(packet.at);
}

/// Nothing is waited for any more.
void time_stamp_meter::end_wait(pid_stamps &stamps, const moment &at)
{
    if (stamps.wait) pts_repetition.end(*stamps.wait, at, pts_of(stamps.facts.pid));
    stamps.wait.reset();
}

/// Looks at the order of PTS, which is free, and of decoding.
void time_stamp_meter::take_order(pid_stamps &stamps, const pes_time_stamps &read, const ts_packet &packet,
                                  const stream_role &role)
{
    if (stamps.PTS && nearest_difference(*stamps.PTS, *read.PTS, time_stamp_cycle) < 0)
        ++stamps.facts.reordered;
    stamps.PTS = read.PTS;

    if (read.DTS) {
        const int64_t delay = nearest_difference(*read.DTS, *read.PTS, time_stamp_cycle);
        if (delay < 0)
            log_violation(order_log, packet.at, packet.pid,
                          [&] { return "DTS above PTS by " + ms_of_stamps(-delay); });
    }
    const std::optional<int64_t> stamp = read.DTS || role.kind != stream_kind::audio ? read.DTS : read.PTS;
    if (!stamp) return;

    has_decoding_time = true;
    const decoding_point now{*stamp, packet.at, role.pcr_pid, clocks.discontinuities_of(role.pcr_pid)};
    const std::optional<decoding_point> &last = stamps.decoded;
    if (last && last->pcr_pid == now.pcr_pid && last->clock_discontinuities == now.clock_discontinuities &&
        !is_break_between(last->at, now.at)) {
        const int64_t step = nearest_difference(last->stamp, *stamp, time_stamp_cycle);
        if (step < 0)
            log_violation(order_log, packet.at, packet.pid, [&] {
                return (read.DTS ? "DTS goes back by " : "PTS goes back by ") + ms_of_stamps(-step);
            });
    }
    stamps.decoded = now;
}

/// How far a stamp is ahead of the program's clock.
void time_stamp_meter::take_margin(pid_stamps &stamps, int64_t stamp, const ts_packet &packet,
                                   const stream_role &role)
{
    if (!role.pcr_pid || !packet.at.ticks) return;
    const std::optional<int64_t> clock = clocks.at(*role.pcr_pid, packet.at);
    if (!clock) return;

    const int64_t margin = nearest_difference(*clock, stamp * ticks_per_time_stamp, pcr_cycle_ticks);
    count_margin(stamps, packet, margin);
    if (std::abs(margin) <= greatest_margin_ticks) add_to_series(stamps, packet.at, margin);
}

void time_stamp_meter::count_margin(pid_stamps &stamps, const ts_packet &packet, int64_t margin)
{
    time_stamp_facts &facts = stamps.facts;
    if (std::abs(margin) > greatest_margin_ticks) {
        ++facts.unrelated;
        return;
    }
    facts.margin_ticks.add(margin);
    if (margin >= 0) return;
    ++facts.late;
    log_violation(late_log, packet.at, packet.pid, [&] { return "late by " + in_ms(-margin); });
}

void time_stamp_meter::add_to_series(pid_stamps &stamps, const moment &at, int64_t margin)
{
    if (!at.ticks) return;
    if (stamps.series == series_state::none) {
        stamps.series = series_count < margin_series_limit ? series_state::kept : series_state::not_kept;
        ++(stamps.series == series_state::kept ? series_count : series_not_kept);
    }
    if (stamps.series == series_state::kept) stamps.margin_series.add(*at.ticks, margin);
}

std::vector<time_stamp_facts>
time_stamp_meter::finish(const recording_end &end, const std::function<stream_role(uint16_t pid)> &role_of)
{
    std::vector<time_stamp_facts> rows;
    for (pid_stamps &stamps : all_stamps) {
        const stream_role role = role_of(stamps.facts.pid);
        if (role.kind != stream_kind::other && !role.still_pictures) end_wait(stamps, end.at);

        time_stamp_facts &row = rows.emplace_back(stamps.facts);
        if (!end.at.ticks || stamps.series != series_state::kept) continue;
        row.margin_series_ticks = stamps.margin_series.finish(end.bucket_ticks, end.buckets);
    }
    return rows;
}
