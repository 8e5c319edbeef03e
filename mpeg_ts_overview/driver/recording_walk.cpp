#include "mpeg_ts_overview/driver/recording_walk.h"

#include "mpeg_ts_overview/input/sparse_block.h"

#include <algorithm>
#include <utility>

void recording_walk::add(std::unique_ptr<block> scanned)
{
    if (!scanned->steps.empty() && !is_sparse(*scanned, scanner.grid())) {
        waiting.push_back(std::move(scanned));
        return;
    }
    if (!scanned->steps.empty()) waiting.push_back(packets_of(*scanned, scanner.grid()));
    scanner.give_back(std::move(scanned));
}

void recording_walk::go_on(timeline &known)
{
    while (!waiting.empty() && measure(*waiting.front(), known)) {
        const bool is_from_scanner = waiting.front()->pieces.empty();
        if (is_from_scanner) scanner.give_back(std::move(waiting.front()));
        waiting.pop_front();
        next_step = 0;
    }
}

/// Returns true when the block is through.
bool recording_walk::measure(block &b, timeline &known)
{
    for (; next_step < b.steps.size(); ++next_step) {
        scan_step &step = b.steps[next_step];
        do {
            if (!begin_times(b, step, known)) return false;
            const uint32_t told_packets = tell(b, step);
            step.pass(told_packets, scanner.grid().packet_size);
            next_packet = step.index;
        } while (step.count > 0);
    }
    end_times();
    return true;
}

/// Sees to it that the times of the step are those in hand. Returns false when they are not known yet.
bool recording_walk::begin_times(const block &b, const scan_step &step, timeline &known)
{
    if (in_times && step.index < times.fence) return true;
    end_times();
    const bool is_new_span = step.index >= span.fence;
    while (step.index >= span.fence)
        if (!known.next_span(&span)) return false;

    if (is_new_span && span.break_before) ++stretch;
    times = {&span,
             &b,
             step.index,
             std::min(span.fence, b.fence_index),
             span.inside_break ? -1 : stretch,
             scanner.grid().sync_offset};
    in_times = true;
    told.begin_times(times);
    if (is_new_span) begin_span(step);
    return true;
}

void recording_walk::end_times()
{
    if (in_times) told.end_times();
    in_times = false;
}

void recording_walk::begin_span(const scan_step &step)
{
    if (span.break_before) {
        const moment at = times.moment_of(step.index, step.start);
        told.on_break({at, *span.break_before, span.pcr_jump_ticks});
        told.begin_stretch(at);
    } else if (!had_times && times.known()) {
        told.begin_stretch(times.moment_of(step.index, step.start));
    }
    had_times |= times.known();
}

/// Tells as much of the step as lies in the times in hand. Returns how many packets.
uint32_t recording_walk::tell(const block &b, const scan_step &step)
{
    switch (step.kind) {
    case step_kind::run: {
        const auto count = static_cast<uint32_t>(std::min<uint64_t>(step.count, times.fence - step.index));
        tell_run(step, count);
        return count;
    }
    case step_kind::packet:
        tell_packet(b, step);
        return 1;
    case step_kind::bad_slot:
        told.on_bad_slot(times.moment_of(step.index, step.start));
        return 1;
    case step_kind::sync_loss:
        tell_break(step, time_break_kind::sync_loss);
        return 0;
    case step_kind::arrival_break:
        if (span.source == time_source::arrival) tell_break(step, time_break_kind::arrival);
        return 0;
    }
    return 0;
}

void recording_walk::tell_packet(const block &b, const scan_step &step)
{
    ts_packet packet = read_packet(step.start);
    packet.repeats_previous = step.repeats_previous;
    packet.at = times.moment_of(step.index, step.start);
    if (!b.arrival.empty()) packet.arrival_ticks = b.arrival_of(step.index);
    told.on_packet(packet);
}

void recording_walk::tell_run(const scan_step &step, uint32_t count)
{
    packet_run run;
    run.pid = (step.header >> 8) & 0x1FFF;
    run.transport_scrambling_control = (step.header >> 6) & 3;
    run.last_counter = (step.header + count - 1) & 0xF;
    run.first = step.index;
    run.count = count;
    told.on_run(run, step.start);
}

/// A break of no length, before the packet of the step.
void recording_walk::tell_break(const scan_step &step, time_break_kind kind)
{
    ++stretch;
    if (!span.inside_break) times.stretch = stretch;
    const moment at = times.moment_of(step.index, step.start);
    told.on_break({at, kind, std::nullopt});
    if (at.ticks && at.stretch >= 0) told.begin_stretch(at);
}

moment recording_walk::end(uint64_t byte, std::optional<int64_t> ticks) const
{
    moment at;
    at.packet = next_packet;
    at.byte = byte;
    at.ticks = ticks;
    at.stretch = span.inside_break ? -1 : stretch;
    // Only where packets have the time of their arrival, or there is no time, is there no line to go on.
    at.extrapolated = span.source == time_source::line;
    return at;
}
