// What is known of a recording once it has been read, for meters that decide at its end.
#pragma once

#include "mpeg_ts_overview/model/moment.h"

#include <cstddef>
#include <cstdint>
#include <vector>

struct recording_end {
    moment at;                ///< behind the last packet, extrapolated as that is; its ticks are the duration
    int64_t bucket_ticks = 0; ///< width of the buckets of every series, 27 MHz; 0 without times
    size_t buckets = 0;       ///< in every series
    bool constant_bitrate = false;
    bool has_arrival_times = false;   ///< packets are of 192 bytes
    std::vector<uint16_t> clock_pids; ///< PIDs that were the clock; empty unless the time base is pcr

    /// Where the bit rate varies, times by PCR are sure from the first clock point to the last only.
    bool sure_between_clock_points_only() const { return !clock_pids.empty() && !constant_bitrate; }
};
