// A clock, packets for it, and the times that it then knows.
#pragma once

#include "mpeg_ts_overview/timeline/pcr_clock.h"

#include <optional>
#include <vector>

struct clock_run {
    void add(uint16_t pid, uint64_t index, std::optional<uint64_t> PCR, bool flag = false,
             int64_t arrival_ticks = 0)
    {
        clock_packet packet;
        packet.index = index;
        packet.pid = pid;
        packet.PCR = PCR;
        packet.discontinuity_indicator = flag;
        packet.arrival_ticks = arrival_ticks;
        clock.add(packet);
        collect();
    }
    void flag(uint16_t pid, uint64_t index) { add(pid, index, std::nullopt, true); }
    void end(uint64_t fence)
    {
        clock.end(fence);
        collect();
    }
    void collect()
    {
        time_span span;
        while (clock.next_span(&span)) spans.push_back(span);
    }

    const time_span *span_of(uint64_t packet) const
    {
        for (const time_span &span : spans)
            if (span.first <= packet && packet < span.fence) return &span;
        return nullptr;
    }
    std::optional<int64_t> time(uint64_t packet) const
    {
        const time_span *const span = span_of(packet);
        if (span == nullptr || span->source != time_source::line) return std::nullopt;
        return span->on_line(packet);
    }
    bool inside_break(uint64_t packet) const { return span_of(packet)->inside_break; }

    /// The spans that a break comes before.
    std::vector<time_span> breaks() const
    {
        std::vector<time_span> found;
        for (const time_span &span : spans)
            if (span.break_before) found.push_back(span);
        return found;
    }
    /// True when each span begins where the one before ended, and the last ends at fence.
    bool is_seamless(uint64_t fence) const
    {
        uint64_t next = 0;
        for (const time_span &span : spans) {
            if (span.first != next || span.fence <= span.first) return false;
            next = span.fence;
        }
        return next == fence;
    }

    pcr_clock clock;
    std::vector<time_span> spans;
};
