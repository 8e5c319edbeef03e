// Differences of clocks that wrap, ISO/IEC 13818-1 2.4.2.2 and 2.4.3.7.
#pragma once

#include "mpeg_ts_overview/model/moment.h"

#include <cstdint>

constexpr int64_t time_stamp_cycle = int64_t{1} << 33; ///< of PTS and DTS, 90 kHz
constexpr int64_t ticks_per_time_stamp = 300;
constexpr int64_t pcr_cycle_ticks = time_stamp_cycle * ticks_per_time_stamp;
/// The greatest difference of successive PCRs that is no discontinuity, ISO/IEC 13818-1 2.7.2.
constexpr int64_t longest_good_pcr_ticks = ticks_per_second / 10;

/// (to - from) mod cycle, 0 to cycle - 1.
constexpr int64_t forward_difference(int64_t from, int64_t to, int64_t cycle)
{
    const int64_t difference = (to - from) % cycle;
    return difference < 0 ? difference + cycle : difference;
}

/// The same, the nearer way: below 0 when to is behind from; half a cycle counts forward.
constexpr int64_t nearest_difference(int64_t from, int64_t to, int64_t cycle)
{
    const int64_t difference = forward_difference(from, to, cycle);
    return difference > cycle / 2 ? difference - cycle : difference;
}
