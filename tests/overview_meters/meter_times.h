// Times for meters that ask for them: packets on one line.
#pragma once

#include "mpeg_ts_overview/timeline/packet_times.h"
#include "tests/overview_meters/meter_packets.h"

/// Packets [first, fence), so many ticks apart; packet 0 has the time 0.
struct line_times {
    line_times(uint64_t first, uint64_t fence, int64_t ticks_per_packet, int64_t stretch = 0)
    {
        span.source = time_source::line;
        span.ticks = ticks_per_packet;
        times = {&span, nullptr, first, fence, stretch, 0};
    }
    line_times(const line_times &) = delete;
    line_times &operator=(const line_times &) = delete;

    time_span span;
    packet_times times;
};

/// Packets without a time.
struct no_times : line_times {
    no_times(uint64_t first, uint64_t fence) : line_times(first, fence, 0)
    {
        span.source = time_source::none;
    }
};
