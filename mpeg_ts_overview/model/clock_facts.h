// What the recording says of the time of day: TDT and TOT, EN 300 468 5.2.5 and 5.2.6; STT, A/65 6.1.
#pragma once

#include "mpeg_ts_overview/model/moment.h"

#include <cstdint>
#include <optional>

struct clock_reading {
    int64_t utc_s = 0;       ///< seconds since 1970-01-01T00:00:00Z
    const char *source = ""; ///< "TDT", "TOT" or "STT"
    moment at;
};

struct clock_facts {
    std::optional<clock_reading> first;
    std::optional<clock_reading> last;
};
