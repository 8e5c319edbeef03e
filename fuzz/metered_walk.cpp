#include "fuzz/metered_walk.h"

#include "fuzz/support.h"

#include "mpeg_ts_overview/model/series_buckets.h"

namespace {

constexpr int64_t limit_ticks = ticks_per_second / 10;
constexpr uint16_t watched_pid = 0x101;

/// 0x100 and 0x101 are video and audio of one program, 0x102 is the video of another.
stream_role role_of(uint16_t pid)
{
    stream_role role;
    if (pid < 0x100 || pid > 0x102) return role;
    role.kind = pid == watched_pid ? stream_kind::audio : stream_kind::video;
    role.pcr_pid = pid == 0x102 ? 0x102 : 0x100;
    role.program = 1;
    return role;
}

bool is_program_clock(uint16_t pid)
{
    return pid == 0x100 || pid == 0x102;
}

} // namespace

metered_walk::metered_walk(unsigned packet_size)
    : stride(packet_size), stretches(limit_ticks), absence(stretches, limit_ticks),
      pcr(stretches, limit_ticks, 500), time_stamps(clocks, stretches, limit_ticks)
{
}

void metered_walk::tell(uint64_t first, uint64_t count)
{
    fuzz_promise(first == next_packet && first >= times.first && first + count <= times.fence);
    next_packet += count;
    for (uint64_t i = first; times.known() && i < next_packet; ++i) {
        fuzz_promise(times.at(i) >= last_ticks);
        last_ticks = times.at(i);
    }
    if (times.stretch < 0) return;
    fuzz_promise(times.stretch >= last_stretch);
    last_stretch = times.stretch;
}

void metered_walk::begin_times(const packet_times &next)
{
    fuzz_promise(next.first == next_packet && next.first < next.fence);
    times = next;
    in_times = true;
    pids.begin(times);
    rates.begin(times);
    absence.begin_times(times);
}

void metered_walk::end_times()
{
    fuzz_promise(times.fence == next_packet);
    in_times = false;
    stretches.see(times.moment_of(times.fence - 1));
    pids.end();
    rates.end();
    absence.end_times();
}

void metered_walk::begin_stretch(const moment &at)
{
    fuzz_promise(at.packet == next_packet);
    stretches.see(at);
}

void metered_walk::on_break(const time_break &ended)
{
    fuzz_promise(ended.at.packet == next_packet);
    // Behind a loss of sync that lasts to the end, nothing comes that would be apart.
    fuzz_promise(!in_times || ended.at.stretch < 0 || ended.at.stretch > last_stretch);
    if (breaks.kept.size() < time_break_limit)
        breaks.kept.push_back(ended);
    else
        breaks.not_kept++;
    const bool is_in_times = ended.at.packet > times.first && ended.at.packet < times.fence;
    if (is_in_times) stretches.see(times.moment_of(ended.at.packet - 1));
    absence.end_times();
    times.stretch = ended.at.stretch;
    absence.begin_times(times);
    pcr.on_disturbance();
    if (ended.kind != time_break_kind::sync_loss) return;
    faults.on_sync_loss(ended.at);
    continuity.on_sync_loss();
}

void metered_walk::on_run(const packet_run &run, const uint8_t *start)
{
    tell(run.first, run.count);
    for (uint64_t i = 0; i < run.count; ++i, start += stride) {
        const ts_packet packet = read_packet(start);
        fuzz_promise(packet.pid == run.pid && packet.adaptation_field_control == 1);
        fuzz_promise((packet.transport_scrambling_control != 0) == (run.transport_scrambling_control != 0));
        fuzz_promise(!packet.payload_unit_start_indicator && !packet.transport_error_indicator);
        // Null packets have counters of any value.
        fuzz_promise(run.pid == mpeg_ts_padding_pid ||
                     packet.continuity_counter == ((run.last_counter - (run.count - 1 - i)) & 0xF));
    }
    rates.on_packets(run.pid, run.first, run.count);
    pids.on_run(run);
    continuity.on_run(run);
    if (absence.watches(run.pid)) absence.on_packets(run.pid, run.first, run.count);
    if (run.transport_scrambling_control != 0) time_stamps.on_scrambled(run.pid);
}

void metered_walk::on_packet(const ts_packet &packet)
{
    tell(packet.at.packet, 1);
    rates.on_packets(packet.pid, packet.at.packet, 1);
    pids.on_packet(packet);
    const packet_sequence sequence = continuity.on_packet(packet);
    if (sequence.duplicate && !sequence.error) ++duplicates;
    if (sequence.error) ++errors_told;
    if (packet.transport_error_indicator)
        faults.on_transport_error(packet.pid, packet.at);
    else if (absence.watches(packet.pid))
        absence.on_packets(packet.pid, packet.at.packet, 1);
    if (packet.PCR || packet.discontinuity_indicator) clocks.on_packet(packet, sequence);
    if (packet.PCR) stretches.see(packet.at);
    if (sequence.error && !sequence.duplicate) pcr.on_continuity_error(sequence.packet_before);
    pcr.on_packet(packet, sequence, is_program_clock(packet.pid));
    time_stamps.on_packet(packet, sequence, role_of(packet.pid));

    // Some PID is named and named no more by units of others.
    if (!packet.payload_unit_start_indicator) return;
    if (packet.pid == 0x103 && !absence.watches(watched_pid)) absence.start(watched_pid, packet.at);
    if (packet.pid != 0x104) return;
    if (absence.watches(watched_pid)) absence.stop(watched_pid, packet.at, pids.has_packets(watched_pid));
    time_stamps.on_unlisted(0x102, packet.at);
}

void metered_walk::on_bad_slot(const moment &at)
{
    tell(at.packet, 1);
    rates.on_bad_slot(at.packet);
    faults.on_bad_sync_byte(at);
    pcr.on_disturbance();
}

void metered_walk::note_recording(const packet_scanner &scanner, const timeline &known, overview &found) const
{
    const input_counts &counts = scanner.counts();
    found.recording.bytes = counts.bytes;
    found.recording.packet_size = scanner.grid().packet_size;
    found.recording.leading_bytes = counts.leading_bytes;
    found.recording.skipped_bytes = counts.skipped_bytes;
    found.recording.trailing_bytes = counts.trailing_bytes;
    found.recording.packets = counts.packets;
    found.recording.sync_byte_errors = counts.sync_byte_errors;
    found.recording.sync_losses = counts.sync_losses;
    found.recording.duration_ticks = known.duration_ticks();
    found.recording.time_base = known.base();
    if (known.base() == time_base_kind::pcr) found.recording.clock_pid = known.clock().first_clock_pid();
    found.breaks = breaks;
}

recording_end metered_walk::end_of(const timeline &known, const moment &end) const
{
    recording_end result;
    result.at = end;
    result.has_arrival_times = stride == mpeg_ts_m2ts_packet_size;
    result.constant_bitrate = known.clock().is_bitrate_constant();
    if (known.base() == time_base_kind::pcr) result.clock_pids = known.clock().clock_pids();
    const auto last = rates.last_packet_ticks();
    if (last && end.ticks.value_or(0) > 0) {
        result.bucket_ticks = bucket_ticks_of(*last);
        result.buckets = static_cast<size_t>(buckets_up_to(*last, result.bucket_ticks));
    }
    return result;
}

void metered_walk::promise_logs(const overview &found) const
{
    uint64_t lost = 0;
    uint64_t transport_errors = 0;
    uint64_t late = 0;
    uint64_t copies = 0;
    for (const pid_facts &row : found.pids) {
        lost += row.continuity_errors;
        transport_errors += row.transport_errors;
        copies += row.duplicates;
    }
    for (const time_stamp_facts &row : found.time_stamps) late += row.late;
    fuzz_promise(continuity.errors().count == lost && lost == errors_told && copies == duplicates);
    fuzz_promise(faults.transport_errors().count == transport_errors);
    fuzz_promise(faults.sync_losses().count == found.recording.sync_losses);
    fuzz_promise(faults.sync_byte_errors().count == found.recording.sync_byte_errors);
    fuzz_promise(time_stamps.late().count == late);
}

overview metered_walk::finish(const packet_scanner &scanner, const timeline &known, const moment &end)
{
    const recording_end at_end = end_of(known, end);
    overview found;

    fuzz_promise(next_packet == scanner.counts().packets);
    fuzz_promise(!known.duration_ticks() || *known.duration_ticks() >= last_ticks);
    note_recording(scanner, known, found);
    stretches.see(end);
    absence.finish(
        end, [&](uint16_t pid) { return pids.has_packets(pid); }, true);
    found.pids = pids.finish();
    for (pid_facts &row : found.pids) continuity.add_to(row);
    found.rates = rates.finish(known.duration_ticks());
    found.pcr = pcr.finish(at_end, is_program_clock);
    found.time_stamps = time_stamps.finish(at_end, role_of);
    promise_logs(found);
    return found;
}
