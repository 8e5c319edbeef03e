#include "fuzz/overview_promises.h"

#include "fuzz/schema_check.h"
#include "fuzz/support.h"
#include "fuzz/text_promises.h"

#include "mpeg12_ts/packet.h"
#include "mpeg_ts_overview/model/series_buckets.h"
#include "mpeg_ts_overview/output/json.h"
#include "mpeg_ts_overview/output/json_values.h"

#include <algorithm>
#include <cmath>
#include <set>
#include <string_view>
#include <utility>

namespace {

void promise_order(const std::optional<int64_t> &first, const std::optional<int64_t> &last)
{
    fuzz_promise(!first || !last || *first <= *last);
}

/// Bytes are of no meaning where a limit is broken at the end of what is sure.
void promise_order(const moment &first, const moment &last)
{
    fuzz_promise(first.packet <= last.packet);
    promise_order(first.ticks, last.ticks);
}

void promise_extent(const extent &values)
{
    if (values.count == 0) return;
    fuzz_promise(values.min <= values.max);
    const double mean = static_cast<double>(values.sum) / static_cast<double>(values.count);
    fuzz_promise(static_cast<double>(values.min) <= mean + 1 && mean <= static_cast<double>(values.max) + 1);
}

void promise_series(const std::vector<bucket_extent> &series, const overview &found)
{
    fuzz_promise(series.empty() || series.size() == found.rates.whole.series_bps.size());
    for (const bucket_extent &bucket : series) {
        fuzz_promise(bucket.min.has_value() == bucket.max.has_value());
        promise_order(bucket.min, bucket.max);
    }
}

void promise_recording(const overview &found)
{
    const recording_facts &recording = found.recording;
    const uint64_t slots = recording.packets * recording.packet_size;
    fuzz_promise(recording.leading_bytes + slots + recording.skipped_bytes + recording.trailing_bytes ==
                 recording.bytes);

    // The two bad sync bytes of a loss are no slots.
    uint64_t packets = recording.sync_byte_errors - 2 * recording.sync_losses;
    for (const pid_facts &row : found.pids) packets += row.packets;
    fuzz_promise(packets == recording.packets);
    fuzz_promise(!recording.clock_pid || recording.time_base == time_base_kind::pcr);
    fuzz_promise(recording.duration_ticks.value_or(0) >= 0);
}

void promise_pid(const pid_facts &row, const overview &found)
{
    fuzz_promise(row.pid < mpeg_ts_pid_count && row.packets > 0 && row.first_packet <= row.last_packet);
    fuzz_promise(row.last_packet < found.recording.packets);
    promise_order(row.first_ticks, row.last_ticks);
    promise_order(row.last_ticks, found.recording.duration_ticks);
    for (const uint64_t part :
         {row.scrambled, row.unit_starts, row.random_access_points, row.duplicates, row.continuity_errors,
          row.discontinuities, row.without_payload + row.reserved_control})
        fuzz_promise(part + row.transport_errors <= row.packets);
    fuzz_promise(row.lost_packets_estimate <= 8 * row.continuity_errors);
    fuzz_promise(row.out_of_order <= row.continuity_errors);
}

void promise_rate(const rate_facts &rate, const rates_facts &rates)
{
    fuzz_promise(rate.min_bps.has_value() == rate.max_bps.has_value());
    fuzz_promise(rate.min_bps.value_or(0) <= rate.max_bps.value_or(0));
    fuzz_promise(rate.series_bps.empty() || rate.series_bps.size() == rates.whole.series_bps.size());
}

/// What the PIDs have in a bucket is what the whole has, but for slots of no PID. Each is rounded for itself.
void promise_rates(const overview &found)
{
    const rates_facts &rates = found.rates;
    std::vector<uint64_t> sums(rates.whole.series_bps.size());
    fuzz_promise(sums.size() <= bucket_limit);
    promise_rate(rates.whole, rates);
    for (const pid_rate_facts &row : rates.pids) {
        promise_rate(row.rate, rates);
        for (size_t i = 0; i < row.rate.series_bps.size(); ++i) sums[i] += row.rate.series_bps[i];
    }
    fuzz_promise(rates.pids.size() == found.pids.size());
    for (size_t i = 0; i < sums.size(); ++i) {
        const uint64_t whole = rates.whole.series_bps[i];
        const uint64_t rounding = rates.pids.size() + 1;
        fuzz_promise(sums[i] <= whole + rounding);
        const bool is_sure = found.recording.sync_byte_errors == 0 && rates.pids.size() <= 256;
        if (is_sure) fuzz_promise(whole <= sums[i] + rounding);
    }
}

/// Where every packet has a time, the buckets hold them all. The last counts as far as the recording covers
/// it.
void promise_whole_series(const overview &found)
{
    const std::vector<uint64_t> &series = found.rates.whole.series_bps;
    if (found.recording.time_base != time_base_kind::bitrate || series.empty()) return;
    const int64_t width = found.rates.bucket_ticks;
    const int64_t before_last = static_cast<int64_t>(series.size() - 1) * width;
    const int64_t covered = std::min(width, *found.recording.duration_ticks - before_last);
    if (covered <= 0) return;

    double bits = 0;
    for (const uint64_t rate : series)
        bits += static_cast<double>(rate) * static_cast<double>(width) / ticks_per_second;
    bits -= static_cast<double>(series.back()) * static_cast<double>(width - covered) / ticks_per_second;
    const auto expected = static_cast<double>(found.recording.packets * mpeg_ts_packet_size * 8);
    const double rounding = static_cast<double>(before_last + width) / ticks_per_second;
    fuzz_promise(std::fabs(bits - expected) <= rounding + expected * 1e-9);
}

void promise_pcr(const pcr_facts &row, const overview &found)
{
    fuzz_promise(row.count >= 2 && row.interval_ticks.count < row.count);
    promise_extent(row.interval_ticks);
    promise_series(row.interval_series_ticks, found);
    fuzz_promise(row.residual_series.size() <= bucket_limit);
    for (const residual_window &window : row.residual_series) fuzz_promise(window.min_ns <= window.max_ns);
    if (row.rate_offset) fuzz_promise(row.rate_offset->min_ppm <= row.rate_offset->max_ppm);
    if (!row.residual) return;
    const auto &[min_ns, max_ns, rms_ns] = *row.residual;
    fuzz_promise(min_ns <= max_ns && rms_ns >= 0 && std::isfinite(rms_ns));
    fuzz_promise(rms_ns <= std::max(std::fabs(min_ns), std::fabs(max_ns)) * 1.000001 + 0.001);
}

void promise_time_stamps(const time_stamp_facts &row, const overview &found)
{
    for (const stamp_facts *stamps : {&row.pts, &row.dts}) {
        fuzz_promise(stamps->arrival_interval_ticks.count <= stamps->count);
        promise_extent(stamps->arrival_interval_ticks);
    }
    fuzz_promise(row.dts.count <= row.pts.count && row.reordered <= row.pts.count);
    fuzz_promise(row.margin_ticks.count + row.unrelated <= row.pts.count);
    fuzz_promise(row.late <= row.margin_ticks.count);
    fuzz_promise((row.late > 0) == (row.margin_ticks.count > 0 && row.margin_ticks.min < 0));
    promise_extent(row.margin_ticks);
    promise_series(row.margin_series_ticks, found);
}

void promise_breaks(const overview &found)
{
    const std::vector<time_break> &breaks = found.breaks.kept;
    fuzz_promise(breaks.size() <= time_break_limit);
    fuzz_promise(found.breaks.not_kept == 0 || breaks.size() == time_break_limit);
    for (size_t i = 0; i < breaks.size(); ++i) {
        fuzz_promise(breaks[i].pcr_jump_ticks.has_value() ==
                     (breaks[i].kind == time_break_kind::irregular_span));
        if (i == 0) continue;
        promise_order(breaks[i - 1].at, breaks[i].at);
        fuzz_promise(breaks[i - 1].at.byte <= breaks[i].at.byte);
    }
}

void promise_program(const program_facts &program)
{
    fuzz_promise(program.pmt_pid < mpeg_ts_pid_count);
    for (const std::optional<std::string> *text :
         {&program.service_name, &program.provider_name, &program.channel})
        promise_utf8(text->value_or(""));
    for (const program_stream &stream : program.streams) {
        fuzz_promise(stream.pid < mpeg_ts_pid_count && !stream.name.empty() && !stream.kind.empty());
        promise_no_controls(stream.details);
        promise_utf8(stream.language);
        fuzz_promise(stream.share.value_or(0) >= 0 && stream.share.value_or(0) <= 1);
    }
}

void promise_table(const table_facts &row)
{
    std::set<unsigned> versions;
    for (const table_version &version : row.versions) {
        fuzz_promise(version.version < 32 && versions.insert(static_cast<unsigned>(version.version)).second);
    }
    fuzz_promise(row.sections > 0 && row.interval_ticks.count < row.sections);
    fuzz_promise(row.changed_under_same_version < row.sections && !row.name.empty());
    fuzz_promise(row.interval_ticks.count == 0 || row.interval_ticks.min >= 0);
    promise_extent(row.interval_ticks);
}

void promise_guide(const guide_facts &guide)
{
    std::set<std::pair<uint16_t, uint16_t>> keys;
    size_t bytes = 0;
    for (const guide_event &event : guide.events) {
        fuzz_promise(keys.emplace(event.service, event.event_id).second && event.source[0] != '\0');
        for (const std::string *text : {&event.title, &event.text, &event.language}) {
            promise_utf8(*text);
            bytes += text->size();
        }
        fuzz_promise(event.was_present || !event.present_ticks);
    }
    fuzz_promise(guide.events.size() <= 20000 && bytes <= 8 << 20);
}

void promise_cue(const cue &message)
{
    constexpr uint64_t stamp_fence = 1ull << 33;
    fuzz_promise(message.count > 0 && !message.command.empty());
    fuzz_promise(message.pts_time.value_or(0) < stamp_fence &&
                 message.break_duration.value_or(0) < stamp_fence);
    fuzz_promise(!message.pre_roll_ticks || message.pts_time);
    for (const cue_segmentation &segmentation : message.segmentations) {
        promise_utf8(segmentation.name);
        promise_utf8(segmentation.upid);
    }
}

void promise_transcript(const transcript_facts &transcript)
{
    size_t bytes = 0;
    for (const transcript_entry &entry : transcript.entries) {
        fuzz_promise(entry.count > 0 && entry.lines.starts_with(entry.heading));
        promise_order(entry.first, entry.last);
        promise_utf8(entry.lines);
        bytes += entry.lines.size();
    }
    fuzz_promise(bytes <= 4 << 20 && transcript.faults.size() <= 500);
    for (const fault_group &group : transcript.faults) {
        fuzz_promise(!group.packets.empty() && group.packets.size() <= std::min<uint64_t>(group.count, 100));
        fuzz_promise(std::is_sorted(group.packets.begin(), group.packets.end()));
        fuzz_promise(group.packets.front() == group.first.packet);
        promise_order(group.first, group.last);
        promise_utf8(group.text);
    }
}

/// Some need a decoder model; those of DVB and of ATSC are for streams of theirs.
bool may_be_measured(std::string_view check, std::string_view standard)
{
    if (check == "3.3" || check == "3.9" || check == "3.10") return false;
    if (check.starts_with("A.")) return standard == "ATSC";
    return !check.starts_with("3.") || check == "3.4a" || standard == "DVB";
}

void promise_log(const violation_log &log)
{
    fuzz_promise(log.details.size() <= std::min<uint64_t>(log.count, violation_detail_limit));
    if (log.count == 0) return;
    promise_order(log.first, log.last);
    uint64_t packet = log.first.packet;
    for (const violation &detail : log.details) {
        fuzz_promise(packet <= detail.at.packet && detail.at.packet <= log.last.packet);
        packet = detail.at.packet;
        promise_no_controls(detail.text);
    }
}

} // namespace

void promise_measurements(const overview &found)
{
    promise_recording(found);
    for (const pid_facts &row : found.pids) promise_pid(row, found);
    promise_rates(found);
    promise_whole_series(found);
    for (const pcr_facts &row : found.pcr) promise_pcr(row, found);
    for (const time_stamp_facts &row : found.time_stamps) promise_time_stamps(row, found);
    promise_breaks(found);
}

void promise_contents(const overview &found)
{
    std::set<uint16_t> numbers;
    for (const program_facts &program : found.programs) {
        fuzz_promise(numbers.insert(program.number).second);
        promise_program(program);
    }
    promise_utf8(found.transport_stream.network_name.value_or(""));
    for (const table_facts &row : found.tables.rows) promise_table(row);
    promise_guide(found.guide);
    for (const cue &message : found.cues.cues) promise_cue(message);
    promise_transcript(found.transcript);
}

void promise_checks(const overview &found)
{
    for (const check_result &row : found.checks) {
        fuzz_promise((row.outcome == check_outcome::fail) == (row.log.count > 0));
        fuzz_promise((row.outcome == check_outcome::not_measured) == !row.why.empty());
        fuzz_promise(!row.worst_unit.empty() || !row.log.worst);
        fuzz_promise(may_be_measured(row.id, found.standard) || row.outcome == check_outcome::not_measured);
        fuzz_promise(row.log.worst.value_or(0) >= 0 && row.priority >= 1 && row.priority <= 3);
        promise_log(row.log);
    }
}

std::string json_of(const overview &found)
{
    std::string text;
    const bool written = write_json(found, [&](std::string_view piece) {
        text += piece;
        return true;
    });
    fuzz_promise(written);
    return text;
}

ordered_json promised_json(const std::string &text)
{
    ordered_json value = ordered_json::parse(text);
    promise_schema(value);
    return value;
}
