#include "mpeg_ts_overview/driver/overview_of.h"

#include "mpeg_ts_overview/driver/recording_walk.h"
#include "mpeg_ts_overview/driver/survey.h"

namespace {

void note_recording(const packet_scanner &scanner, const timeline &times, recording_facts &recording)
{
    const input_counts &counts = scanner.counts();
    recording.bytes = counts.bytes;
    recording.packet_size = scanner.grid().packet_size;
    recording.leading_bytes = counts.leading_bytes;
    recording.skipped_bytes = counts.skipped_bytes;
    recording.trailing_bytes = counts.trailing_bytes;
    recording.packets = counts.packets;
    recording.sync_byte_errors = counts.sync_byte_errors;
    recording.sync_losses = counts.sync_losses;
    recording.duration_ticks = times.duration_ticks();
    recording.time_base = times.base();
    if (recording.time_base == time_base_kind::pcr) recording.clock_pid = times.clock().first_clock_pid();
    recording.constant_bitrate = times.clock().is_bitrate_constant();
}

} // namespace

reading_outcome overview_of(byte_source source, const overview_request &request, overview &found)
{
    packet_scanner scanner(std::move(source), request.packet_size, request.block_bytes);
    if (!scanner.find_packets())
        return scanner.failed() ? reading_outcome::read_error : reading_outcome::no_packets;
    const bool has_stamps = scanner.grid().sync_offset != 0;
    if (request.time_base == time_base_kind::arrival && !has_stamps)
        return reading_outcome::no_arrival_time_stamps;

    timeline times(request.time_base, static_cast<int64_t>(request.bitrate_bps), has_stamps);
    survey measured(request, scanner.grid().packet_size);
    recording_walk walk(scanner, measured);
    while (std::unique_ptr<block> next = scanner.next_block()) {
        times.add_block(*next);
        walk.add(std::move(next));
        walk.go_on(times);
    }
    times.end(scanner.counts().packets, scanner.last_arrival_step());
    walk.go_on(times);
    note_recording(scanner, times, found.recording);

    const uint64_t end_byte =
        scanner.lost_for_good().value_or(scanner.counts().bytes - scanner.counts().trailing_bytes);
    const moment end = walk.end(end_byte, times.duration_ticks());
    if (scanner.lost_for_good()) measured.on_break({end, time_break_kind::sync_loss, std::nullopt});
    measured.finish(times, end, found);
    return scanner.failed() ? reading_outcome::read_error : reading_outcome::done;
}
