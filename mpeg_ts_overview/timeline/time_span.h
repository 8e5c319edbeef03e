// A stretch of packets whose times follow one line.
#pragma once

#include "mpeg_ts_overview/model/moment.h"
#include "mpeg_ts_overview/model/time_break.h"
#include "mpeg_ts_overview/timeline/scaled.h"

#include <cstdint>
#include <limits>
#include <optional>

constexpr uint64_t no_last_packet = std::numeric_limits<uint64_t>::max();

enum class time_source : uint8_t {
    none,    ///< the packets have no time
    line,    ///< ticks for packets, from an origin on
    arrival, ///< each packet has the time of its arrival
};

/// Packets [first, fence).
struct time_span {
    uint64_t first = 0;
    uint64_t fence = no_last_packet;
    time_source source = time_source::none;
    bool inside_break = false;
    bool extrapolated = false; ///< before the first clock point or behind the last
    /// The break that ends with the first packet.
    std::optional<time_break_kind> break_before;
    std::optional<int64_t> pcr_jump_ticks;
    // A line: origin_ticks at the packet origin, then ticks for each packets packets. Before the origin it
    // counts back.
    uint64_t origin = 0;
    int64_t origin_ticks = 0;
    int64_t ticks = 0;
    int64_t packets = 1;

    /// The time of a packet; only of a line.
    int64_t on_line(uint64_t packet) const
    {
        return origin_ticks + scaled(static_cast<int64_t>(packet - origin), ticks, packets);
    }
};
