#include "mpeg_ts_overview/driver/survey.h"

#include "mpeg_ts_overview/model/series_buckets.h"

namespace {

// The limits of ETSI TR 101 290 5.2.2.
constexpr int64_t pcr_interval_limit_ticks = ticks_per_second / 10; // 100 ms
constexpr double pcr_accuracy_limit_ns = 500;
constexpr int64_t pts_interval_limit_ticks = ticks_per_second / 10 * 7; // 700 ms

} // namespace

survey::survey(const overview_request &request, unsigned packet_size)
    : stride(packet_size), sections(directory), programs(directory),
      pcr(request.other_limits.pcr_interval_ticks.value_or(pcr_interval_limit_ticks),
          request.other_limits.pcr_accuracy_ns.value_or(pcr_accuracy_limit_ns)),
      time_stamps(request.other_limits.pts_interval_ticks.value_or(pts_interval_limit_ticks))
{
}

void survey::begin_times(const packet_times &next)
{
    times = &next;
    pids.begin(next);
    rates.begin(next);
}

void survey::end_times()
{
    pids.end();
    rates.end();
}

void survey::begin_stretch(const moment &) {}

void survey::on_break(const time_break &ended)
{
    if (breaks.kept.size() < time_break_limit)
        breaks.kept.push_back(ended);
    else
        breaks.not_kept++;
    pcr.on_disturbance();
    if (ended.kind != time_break_kind::sync_loss) return;
    faults.on_sync_loss(ended.at);
    continuity.on_sync_loss();
    sections.on_sync_loss();
}

void survey::on_run(const packet_run &run, const uint8_t *start)
{
    rates.on_packets(run.pid, run.first, run.count);
    pids.on_run(run);
    continuity.on_run(run);
    if (run.transport_scrambling_control != 0) time_stamps.on_scrambled(run.pid);
    if (!directory.collects(run.pid)) return;

    for (uint64_t i = 0; i < run.count; ++i, start += stride) {
        ts_packet packet = read_packet(start);
        packet.at = times->moment_of(run.first + i, start);
        sections.on_packet(packet, {}, *this);
    }
}

void survey::on_packet(const ts_packet &packet)
{
    rates.on_packets(packet.pid, packet.at.packet, 1);
    pids.on_packet(packet);
    const packet_sequence sequence = continuity.on_packet(packet);

    if (packet.transport_error_indicator) faults.on_transport_error(packet.pid, packet.at);
    if (packet.transport_scrambling_control != 0 && !packet.transport_error_indicator)
        time_stamps.on_scrambled(packet.pid);
    if (directory.collects(packet.pid)) sections.on_packet(packet, sequence, *this);
    if (sequence.error && !sequence.duplicate) pcr.on_continuity_error(sequence.packet_before);
    pcr.on_packet(packet, sequence, programs.is_program_clock(packet.pid));
    time_stamps.on_packet(packet, sequence, programs.role_of(packet.pid));
}

void survey::on_bad_slot(const moment &at)
{
    rates.on_bad_slot(at.packet);
    faults.on_bad_sync_byte(at);
    pcr.on_disturbance();
}

void survey::on_section(const table_section &section)
{
    programs.on_section(section);
}

recording_end survey::end_of(const timeline &known, const moment &end) const
{
    recording_end result;
    result.at = end;
    result.constant_bitrate = known.clock().is_bitrate_constant();
    if (known.base() == time_base_kind::pcr) result.clock_pids = known.clock().clock_pids();
    if (const auto last_ticks = rates.last_packet_ticks()) {
        result.bucket_ticks = bucket_ticks_of(*last_ticks);
        result.buckets = buckets_up_to(*last_ticks, result.bucket_ticks);
    }
    return result;
}

void survey::finish(const timeline &known, const moment &end, overview &found)
{
    const recording_end at_end = end_of(known, end);

    found.pids = pids.finish();
    for (pid_facts &row : found.pids) {
        continuity.add_to(row);
        row.crc_errors = sections.crc_errors(row.pid);
        row.incomplete_sections = sections.incomplete_sections(row.pid);
    }
    found.rates = rates.finish(found.recording.duration_ticks);
    found.pcr = pcr.finish(at_end, [&](uint16_t pid) { return programs.is_program_clock(pid); });
    found.time_stamps = time_stamps.finish(at_end, [&](uint16_t pid) { return programs.role_of(pid); });
    found.programs = programs.facts();
    found.transport_stream.transport_stream_id = programs.transport_stream_id();
    found.breaks = breaks;
}
