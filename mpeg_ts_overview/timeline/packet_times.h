// The times of the packets of a block that lie in one span.
#pragma once

#include "mpeg_ts_overview/input/block.h"
#include "mpeg_ts_overview/timeline/time_span.h"

#include <cstdint>
#include <optional>

struct packet_times {
    const time_span *span = nullptr;
    const block *where = nullptr;
    uint64_t first = 0;       ///< index of the first packet of both
    uint64_t fence = 0;       ///< one past the last packet of both
    int64_t stretch = 0;      ///< of the packets that come next: see moment
    unsigned sync_offset = 0; ///< bytes from a packet's start to its sync byte

    /// True when the packets have times.
    bool known() const { return span->source != time_source::none; }

    /// The time of a packet of [first, fence), which are known.
    int64_t at(uint64_t packet) const
    {
        if (span->source == time_source::arrival) return where->arrival_of(packet);
        return span->on_line(packet);
    }

    std::optional<int64_t> ticks_of(uint64_t packet) const
    {
        return known() ? std::optional(at(packet)) : std::nullopt;
    }

    /// The moment of a packet of [first, fence), but for its place in bytes.
    moment moment_of(uint64_t packet) const
    {
        moment at;
        at.packet = packet;
        at.ticks = ticks_of(packet);
        at.stretch = stretch;
        at.extrapolated = span->extrapolated;
        return at;
    }

    /// The moment of a packet of [first, fence) whose sync byte is at start.
    moment moment_of(uint64_t packet, const uint8_t *start) const
    {
        moment at = moment_of(packet);
        at.byte = where->offset_of(start - sync_offset);
        return at;
    }

    /// The first packet from first on with that time or a later one, or fence; the times are known.
    uint64_t first_at_or_after(int64_t ticks) const
    {
        uint64_t low = first;
        uint64_t high = fence;
        while (low < high) {
            const uint64_t middle = low + (high - low) / 2;
            if (at(middle) < ticks)
                low = middle + 1;
            else
                high = middle;
        }
        return low;
    }
};
