#include "mpeg_ts_overview/timeline/timeline.h"

#include "mpeg12_ts/packet.h"
#include "mpeg_ts_overview/input/packet.h"
#include "mpeg_ts_overview/timeline/median.h"

#include <numeric>

namespace {

constexpr int64_t bits_of_a_packet = int64_t{mpeg_ts_packet_size} * 8;

clock_packet clock_packet_of(const block &scanned, const scan_step &step)
{
    const ts_packet packet = read_packet(step.start);
    clock_packet result;

    result.index = step.index;
    result.pid = packet.pid;
    result.discontinuity_indicator = packet.discontinuity_indicator;
    if (!step.repeats_previous) result.PCR = packet.PCR;
    if (!scanned.arrival.empty()) result.arrival_ticks = scanned.arrival_of(step.index);
    return result;
}

} // namespace

timeline::timeline(std::optional<time_base_kind> wanted, int64_t bitrate_bps, bool has_arrival_stamps)
    : settled(wanted), bitrate(bitrate_bps)
{
    if (!settled && !has_arrival_stamps) settled = time_base_kind::pcr;
}

void timeline::add_block(const block &scanned)
{
    for (const uint32_t number : scanned.clock_steps) {
        const clock_packet packet = clock_packet_of(scanned, scanned.steps[number]);
        if (packet.pid != mpeg_ts_padding_pid) pcr.add(packet);
    }
    pcr.scanned_to(scanned.fence_index);
    if (!scanned.arrival.empty()) last_arrival_ticks = scanned.arrival.back();
    if (scanned.fence_index >= longest_wait) settle();
}

/// Arrival times are the time base when they agree with the PCRs.
void timeline::settle()
{
    constexpr double least_ratio = 0.9;
    constexpr double greatest_ratio = 1.1;

    if (settled) return;
    settled = time_base_kind::pcr;
    if (pcr.arrival_ratios().empty()) return;
    const double ratio = median_of(pcr.arrival_ratios());
    if (ratio >= least_ratio && ratio <= greatest_ratio) settled = time_base_kind::arrival;
}

void timeline::end(uint64_t packets, int64_t last_arrival_step)
{
    pcr.end(packets);
    settle();
    switch (*settled) {
    case time_base_kind::pcr:
        duration = pcr.duration_ticks();
        break;
    case time_base_kind::arrival:
        duration = last_arrival_ticks + last_arrival_step;
        break;
    case time_base_kind::bitrate:
        duration = scaled(static_cast<int64_t>(packets), bits_of_a_packet * ticks_per_second, bitrate);
        break;
    case time_base_kind::none:
        break;
    }
}

bool timeline::next_span(time_span *span)
{
    if (!settled) return false;
    if (*settled == time_base_kind::pcr) return pcr.next_span(span);

    // The spans of the PCRs are not asked for.
    while (pcr.next_span(span)) {
    }
    if (told_single_span) return false;
    told_single_span = true;
    *span = time_span{};
    if (*settled == time_base_kind::arrival) span->source = time_source::arrival;
    if (*settled == time_base_kind::bitrate) {
        span->source = time_source::line;
        const int64_t common = std::gcd(bits_of_a_packet * ticks_per_second, bitrate);
        span->ticks = bits_of_a_packet * ticks_per_second / common;
        span->packets = bitrate / common;
    }
    return true;
}

time_base_kind timeline::base() const
{
    const bool no_times = settled == time_base_kind::pcr && !pcr.first_clock_pid();
    return no_times ? time_base_kind::none : settled.value_or(time_base_kind::none);
}
