#include "mpeg_ts_overview/timeline/pcr_clock.h"

#include <algorithm>

namespace {

constexpr uint64_t pcr_cycle = (uint64_t{1} << 33) * 300;
constexpr int64_t longest_span_ticks = ticks_per_second;

/// The ticks from one PCR on to another, modulo their cycle.
uint64_t pcr_difference(uint64_t from, uint64_t to)
{
    return (to % pcr_cycle + pcr_cycle - from % pcr_cycle) % pcr_cycle;
}

/// The same, signed, the nearer way.
int64_t pcr_jump(uint64_t from, uint64_t to)
{
    const uint64_t difference = pcr_difference(from, to);
    return static_cast<int64_t>(difference) -
           static_cast<int64_t>(difference > pcr_cycle / 2 ? pcr_cycle : 0);
}

bool is_regular(bool flagged, uint64_t ticks)
{
    return !flagged && ticks > 0 && ticks <= uint64_t{longest_span_ticks};
}

} // namespace

void pcr_clock::add(const clock_packet &packet)
{
    scanned_to(packet.index);
    if (!running)
        search(packet);
    else if (without_point)
        hand_over(packet);
    else if (packet.pid == clock_pid)
        follow(packet);
}

/// Looks for the first PID that completes a regular span.
void pcr_clock::search(const clock_packet &packet)
{
    point &before = points[packet.pid];
    before.flagged |= packet.discontinuity_indicator;
    if (!packet.PCR) return;

    if (before.valid && packet.index - before.index <= longest_wait) {
        const uint64_t ticks = pcr_difference(before.PCR, *packet.PCR);
        if (is_regular(before.flagged, ticks)) {
            start_clock(packet, before, static_cast<int64_t>(ticks));
            return;
        }
        if (packet.index < longest_wait)
            irregular.push_back({packet.pid, before.index, packet.index, pcr_jump(before.PCR, *packet.PCR)});
    }
    before = {packet.index, *packet.PCR, packet.arrival_ticks, true, false};
}

/// The first regular span is that from a point to this packet.
void pcr_clock::start_clock(const clock_packet &packet, const point &from, int64_t ticks)
{
    running = true;
    clock_pid = packet.pid;
    first_pid = clock_pid;
    pids.push_back(clock_pid);
    last = from;
    note_regular(from.index, from.arrival_ticks, packet, ticks);

    if (packet.index < longest_wait) {
        // Packets before count back at the same rate, so that the first has the time 0.
        last_ticks = -scaled(-static_cast<int64_t>(from.index), rate_ticks, rate_packets);
        add_lines_before(from.index);
    } else {
        last_ticks = 0;
        add_untimed(std::max(from.index, longest_wait));
    }
    irregular = {};
    add_line(told, packet.index + 1, false);
    last_ticks += ticks;
    last = {packet.index, *packet.PCR, packet.arrival_ticks, true, false};
}

/// The packets before the first regular span, and the breaks among them.
void pcr_clock::add_lines_before(uint64_t first_regular)
{
    std::erase_if(irregular, [&](const irregular_span &span) { return span.pid != clock_pid; });
    const uint64_t first_point = irregular.empty() ? first_regular : irregular.front().from;
    add_line(told, first_point, false);
    if (first_point > 0) spans.back().extrapolated = true;
    for (const irregular_span &span : irregular) {
        add_line(told, span.from + 1, false);
        add_line(span.from + 1, span.to, true);
        add_line(span.to, span.to + 1, false);
        spans.back().break_before = time_break_kind::irregular_span;
        spans.back().pcr_jump_ticks = span.jump_ticks;
    }
}

/// The next point of the clock PID, or a discontinuity on it.
void pcr_clock::follow(const clock_packet &packet)
{
    last.flagged |= packet.discontinuity_indicator;
    if (!packet.PCR) return;

    const uint64_t ticks = pcr_difference(last.PCR, *packet.PCR);
    if (is_regular(last.flagged, ticks)) {
        note_regular(last.index, last.arrival_ticks, packet, static_cast<int64_t>(ticks));
        add_line(last.index + 1, packet.index + 1, false);
        last_ticks += static_cast<int64_t>(ticks);
    } else {
        steadiness.on_break();
        add_line(last.index + 1, packet.index, true);
        add_line(packet.index, packet.index + 1, false);
        spans.back().break_before = time_break_kind::irregular_span;
        spans.back().pcr_jump_ticks = pcr_jump(last.PCR, *packet.PCR);
        last_ticks = spans.back().on_line(packet.index);
    }
    last = {packet.index, *packet.PCR, packet.arrival_ticks, true, false};
}

/// The first PCR of any PID behind a clock that stopped makes its PID the clock.
void pcr_clock::hand_over(const clock_packet &packet)
{
    if (!packet.PCR) return;

    steadiness.on_break();
    add_line(told, packet.index, true);
    add_line(packet.index, packet.index + 1, false);
    spans.back().break_before = time_break_kind::clock_change;
    last_ticks = spans.back().on_line(packet.index);
    last = {packet.index, *packet.PCR, packet.arrival_ticks, true, false};
    clock_pid = packet.pid;
    if (std::find(pids.begin(), pids.end(), clock_pid) == pids.end()) pids.push_back(clock_pid);
    without_point = false;
}

void pcr_clock::note_regular(uint64_t from, int64_t from_arrival, const clock_packet &to, int64_t ticks)
{
    rate_ticks = ticks;
    rate_packets = static_cast<int64_t>(to.index - from);
    all_ticks += rate_ticks;
    all_packets += rate_packets;
    steadiness.add_span(rate_packets, rate_ticks);
    if (to.index < longest_wait)
        ratios.push_back(static_cast<double>(to.arrival_ticks - from_arrival) / static_cast<double>(ticks));
}

/// Packets [first, fence) follow the rate of the last regular span from the last clock point on.
void pcr_clock::add_line(uint64_t first, uint64_t fence, bool inside_break)
{
    told = fence;
    if (first >= fence) return;
    time_span &span = spans.emplace_back();
    span.first = first;
    span.fence = fence;
    span.source = time_source::line;
    span.inside_break = inside_break;
    span.origin = last.index;
    span.origin_ticks = last_ticks;
    span.ticks = rate_ticks;
    span.packets = rate_packets;
}

/// The packets before fence that no span holds have no time.
void pcr_clock::add_untimed(uint64_t fence)
{
    if (fence <= told) return;
    time_span &span = spans.emplace_back();
    span.first = told;
    span.fence = told = fence;
}

void pcr_clock::scanned_to(uint64_t fence)
{
    if (!running) {
        if (fence < longest_wait) return;
        // The packet at fence may complete a span with one that far back, and nothing before that gets a
        // time.
        add_untimed(std::max(longest_wait, fence - longest_wait));
        return;
    }
    if (fence <= last.index + longest_wait) return;
    without_point = true;
    if (fence > told) add_line(told, fence, true);
}

void pcr_clock::end(uint64_t fence)
{
    scanned_to(fence);
    if (!running) {
        add_untimed(fence);
        return;
    }
    if (!without_point) {
        rate_ticks = all_ticks;
        rate_packets = all_packets;
        add_line(last.index + 1, fence, false);
        if (fence > last.index + 1) spans.back().extrapolated = true;
    }
    end_ticks = last_ticks + scaled(static_cast<int64_t>(fence - last.index), rate_ticks, rate_packets);
}

bool pcr_clock::next_span(time_span *span)
{
    if (spans.empty()) return false;
    *span = spans.front();
    spans.pop_front();
    return true;
}
