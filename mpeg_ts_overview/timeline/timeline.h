// The time base of a recording: which packets have which time, told span by span as it becomes known.
#pragma once

#include "mpeg_ts_overview/input/block.h"
#include "mpeg_ts_overview/model/recording.h"
#include "mpeg_ts_overview/timeline/pcr_clock.h"
#include "mpeg_ts_overview/timeline/time_span.h"

#include <cstdint>
#include <optional>

class timeline {
public:
    /// A time base that is asked for, or none to find it; the bits per second where it is bitrate.
    timeline(std::optional<time_base_kind> wanted, int64_t bitrate_bps, bool has_arrival_stamps);

    /// Looks at the clock packets of the next block.
    void add_block(const block &scanned);

    /// The recording has so many packets; last_arrival_step are the ticks between the last two of 192 bytes.
    void end(uint64_t packets, int64_t last_arrival_step);

    /// Takes the next span whose times are known: each begins where the one before ended. Returns false when
    /// there is none yet.
    bool next_span(time_span *span);

    // What is known at the end.
    time_base_kind base() const;
    std::optional<int64_t> duration_ticks() const { return duration; }
    const pcr_clock &clock() const { return pcr; }

private:
    void settle();

    std::optional<time_base_kind> settled;
    int64_t bitrate = 0;
    bool told_single_span = false;
    int64_t last_arrival_ticks = 0;
    std::optional<int64_t> duration;
    pcr_clock pcr;
};
