// Bit rates: of the whole recording and of each PID, 188 bytes a packet.
#pragma once

#include <cstdint>
#include <optional>
#include <vector>

struct rate_facts {
    std::optional<uint64_t> mean_bps; ///< over the whole duration
    std::optional<uint64_t> min_bps;  ///< over whole windows of a second
    std::optional<uint64_t> max_bps;
    std::vector<uint64_t>
        series_bps; ///< per bucket; empty without times, and of the PIDs beyond the first 256
};

struct pid_rate_facts {
    uint16_t pid = 0;
    rate_facts rate;
};

struct rates_facts {
    int64_t bucket_ticks = 0; ///< width of the buckets of every series, 27 MHz; 0 without times
    rate_facts whole;
    std::vector<pid_rate_facts> pids; ///< in order of first arrival
};
