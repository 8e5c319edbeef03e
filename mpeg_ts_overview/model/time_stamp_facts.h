// Presentation and decoding time stamps of one video or audio PID, ISO/IEC 13818-1 2.4.3.7.
#pragma once

#include "mpeg_ts_overview/model/extent.h"

#include <cstdint>
#include <vector>

struct stamp_facts {
    uint64_t count = 0;
    extent arrival_interval_ticks; ///< 27 MHz
};

struct time_stamp_facts {
    uint16_t pid = 0;
    uint64_t pes_not_read = 0; ///< unit starts whose PES header gave no time stamps to read
    stamp_facts pts;
    stamp_facts dts;
    uint64_t reordered = 0;
    extent margin_ticks;    ///< DTS minus the program's clock, 27 MHz
    uint64_t unrelated = 0; ///< margins beyond 10 s
    uint64_t late = 0;
    std::vector<bucket_extent> margin_series_ticks; ///< per bucket of the rates

    /// True when a stamp was held against the clock: only then late and unrelated say something.
    bool has_margins() const { return margin_ticks.count > 0 || unrelated > 0; }
};
