#include "mpeg_ts_overview/driver/survey.h"

#include "mpeg_ts_overview/checks/checks.h"
#include "mpeg_ts_overview/model/series_buckets.h"
#include "mpeg_ts_overview/tables/psip.h"

namespace {

// The limits of ETSI TR 101 290 5.2.1 and 5.2.2.
constexpr int64_t pid_absence_limit_ticks = 5 * ticks_per_second;
constexpr int64_t pcr_interval_limit_ticks = ticks_per_second / 10; // 100 ms
constexpr double pcr_accuracy_limit_ns = 500;
constexpr int64_t pts_interval_limit_ticks = ticks_per_second / 10 * 7; // 700 ms

transcript_settings settings_of(const overview_request &request)
{
    transcript_settings settings;
    settings.assume_country = request.assume_country;
    if (request.atsc_mode) settings.atsc_mode = *request.atsc_mode ? 1 : 0;
    return settings;
}

} // namespace

survey::survey(const overview_request &how, unsigned packet_size)
    : request(how), stride(packet_size), tables(how.other_limits, how.whole_multiplex, how.atsc_mode),
      absence(tables.times(), how.other_limits.pid_absence_ticks.value_or(pid_absence_limit_ticks)),
      pcr(tables.times(), how.other_limits.pcr_interval_ticks.value_or(pcr_interval_limit_ticks),
          how.other_limits.pcr_accuracy_ns.value_or(pcr_accuracy_limit_ns)),
      time_stamps(clocks, tables.times(),
                  how.other_limits.pts_interval_ticks.value_or(pts_interval_limit_ticks)),
      words(settings_of(how)), contents(tables.uses(), tables.programs(), clocks)
{
}

void survey::begin_times(const packet_times &next)
{
    times = next;
    pids.begin(times);
    rates.begin(times);
    absence.begin_times(times);
}

void survey::end_times()
{
    tables.see(times.moment_of(times.fence - 1));
    pids.end();
    rates.end();
    absence.end_times();
}

void survey::begin_stretch(const moment &at)
{
    tables.see(at);
}

void survey::on_break(const time_break &ended)
{
    if (breaks.kept.size() < time_break_limit)
        breaks.kept.push_back(ended);
    else
        breaks.not_kept++;
    // At the end of the recording no times are in hand any more, and the last packet has been seen.
    const bool is_in_times = ended.at.packet > times.first && ended.at.packet < times.fence;
    if (is_in_times) tables.see(times.moment_of(ended.at.packet - 1));
    absence.end_times();
    times.stretch = ended.at.stretch;
    absence.begin_times(times);
    pcr.on_disturbance();
    if (ended.kind != time_break_kind::sync_loss) return;
    faults.on_sync_loss(ended.at);
    continuity.on_sync_loss();
    tables.on_sync_loss();
    contents.on_sync_loss();
}

void survey::on_run(const packet_run &run, const uint8_t *start)
{
    rates.on_packets(run.pid, run.first, run.count);
    pids.on_run(run);
    continuity.on_run(run);
    if (absence.watches(run.pid)) absence.on_packets(run.pid, run.first, run.count);
    if (run.transport_scrambling_control != 0) time_stamps.on_scrambled(run.pid);
    const bool is_collected = tables.collects(run.pid);
    const bool is_looked_into = contents.wants(run.pid);
    if (is_collected || is_looked_into) look_into(run, start, is_collected, is_looked_into);
}

/// Looks at each packet of a run: of few runs, so that the others do without the packet's record.
[[gnu::noinline]] void survey::look_into(const packet_run &run, const uint8_t *start, bool is_collected,
                                         bool is_looked_into)
{
    // Of scrambled packets the contents need no more than the first.
    const uint64_t count = is_collected || run.transport_scrambling_control == 0 ? run.count : 1;
    for (uint64_t i = 0; i < count; ++i, start += stride) {
        ts_packet packet = read_packet(start);
        packet.at = times.moment_of(run.first + i, start);
        if (is_looked_into) contents.on_packet(packet, {});
        if (is_collected) look_for_sections(packet, {});
    }
}

void survey::on_packet(const ts_packet &packet)
{
    rates.on_packets(packet.pid, packet.at.packet, 1);
    pids.on_packet(packet);
    const packet_sequence sequence = continuity.on_packet(packet);
    if (packet.pid == psip_base_pid) words.on_atsc_packet();
    if (packet.transport_error_indicator)
        faults.on_transport_error(packet.pid, packet.at);
    else if (absence.watches(packet.pid))
        absence.on_packets(packet.pid, packet.at.packet, 1);

    if (packet.PCR || packet.discontinuity_indicator) clocks.on_packet(packet, sequence);
    contents.on_packet(packet, sequence);
    if (packet.PCR) tables.see(packet.at);
    if (tables.collects(packet.pid)) look_for_sections(packet, sequence);
    if (sequence.error && !sequence.duplicate) pcr.on_continuity_error(sequence.packet_before);
    pcr.on_packet(packet, sequence, clock_pids[packet.pid]);
    time_stamps.on_packet(packet, sequence, tables.programs().role_of(packet.pid));
}

void survey::on_bad_slot(const moment &at)
{
    rates.on_bad_slot(at.packet);
    faults.on_bad_sync_byte(at);
    pcr.on_disturbance();
}

void survey::on_section(const table_section &section)
{
    words.on_section(section);
    contents.on_section(section);
}

void survey::on_section_begun(const table_section &section)
{
    words.on_section_begun(section);
    contents.on_section_begun(section);
}

void survey::look_for_sections(const ts_packet &packet, const packet_sequence &sequence)
{
    tables.on_packet(packet, sequence, *this);
    for (const uint16_t pid : tables.programs().changed_pids()) on_changed_pid(pid, packet.at);
}

/// PAT or PMT make something else of the PID from now on.
void survey::on_changed_pid(uint16_t pid, const moment &at)
{
    const bool is_clock = tables.programs().is_program_clock(pid);
    const bool is_stream = tables.programs().role_of(pid).kind != stream_kind::other;
    const bool is_watched = is_clock || is_stream;

    if (is_clock && !clock_pids[pid]) pcr.on_program_clock(pid, at);
    if (!is_clock && clock_pids[pid]) pcr.on_program_clock_end(pid, at);
    if (!is_stream) time_stamps.on_unlisted(pid, at);
    clock_pids[pid] = is_clock;
    if (is_watched && !absence.watches(pid)) absence.start(pid, at);
    if (!is_watched && absence.watches(pid)) absence.stop(pid, at, pids.has_packets(pid));
}

recording_end survey::end_of(const timeline &known, const moment &end) const
{
    recording_end result;
    result.at = end;
    result.has_arrival_times = stride == mpeg_ts_m2ts_packet_size;
    result.constant_bitrate = known.clock().is_bitrate_constant();
    if (known.base() == time_base_kind::pcr) result.clock_pids = known.clock().clock_pids();
    const auto last_ticks = rates.last_packet_ticks();
    if (last_ticks && end.ticks.value_or(0) > 0) {
        result.bucket_ticks = bucket_ticks_of(*last_ticks);
        result.buckets = static_cast<size_t>(buckets_up_to(*last_ticks, result.bucket_ticks));
    }
    return result;
}

void survey::finish(const timeline &known, const moment &end, overview &found)
{
    const recording_end at_end = end_of(known, end);
    const auto occurred = [&](uint16_t pid) { return pids.has_packets(pid); };

    tables.finish(end, occurred);
    absence.finish(end, occurred, request.whole_multiplex);
    finish_meters(at_end, found);
    found.standard = tables.standard();
    found.programs = tables.programs().facts();
    contents.finish(found);
    found.tables = tables.take_rows();
    found.transcript = words.finish();
    found.breaks = breaks;
    found.checks = judge({.faults = faults,
                          .continuity = continuity,
                          .tables = tables,
                          .pcr = pcr,
                          .time_stamps = time_stamps,
                          .absence = absence,
                          .facts = found,
                          .end = at_end,
                          .other_limits = request.other_limits,
                          .whole_multiplex = request.whole_multiplex});
    note_limits_reached(found);
}

void survey::finish_meters(const recording_end &end, overview &found)
{
    found.pids = pids.finish();
    for (pid_facts &row : found.pids) {
        continuity.add_to(row);
        row.crc_errors = tables.sections().crc_errors(row.pid);
        row.incomplete_sections = tables.sections().incomplete_sections(row.pid);
    }
    found.rates = rates.finish(found.recording.duration_ticks);
    found.pcr = pcr.finish(end, [&](uint16_t pid) { return clock_pids[pid]; });
    found.time_stamps = time_stamps.finish(end, [&](uint16_t pid) { return tables.programs().role_of(pid); });
}

void survey::note_limits_reached(overview &found) const
{
    const auto add = [&](const char *what, uint64_t limit, uint64_t dropped) {
        if (dropped > 0) found.limits_reached.push_back({what, limit, dropped});
    };
    add("rate series", rate_series_limit, rates.series_not_kept());
    add("PCR PIDs", pcr_pid_limit, pcr.pids_not_kept());
    add("margin series", margin_series_limit, time_stamps.margin_series_not_kept());
    add("breaks", time_break_limit, breaks.not_kept);
    add("transcript", transcript_text_limit, found.transcript.sections_not_kept);
    add("faults", fault_group_limit, found.transcript.faults_not_kept);
    tables.add_to(found.limits_reached);
}
