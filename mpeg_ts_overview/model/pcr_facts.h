// The program clock references of one PID, ISO/IEC 13818-1 2.4.3.5.
#pragma once

#include "mpeg_ts_overview/model/extent.h"

#include <cstdint>
#include <optional>
#include <vector>

/// What is left of the PCRs when a straight line is taken away.
struct residual_facts {
    double min_ns = 0;
    double max_ns = 0;
    double rms_ns = 0;
};

/// The residual of one window of PCRs, or of several neighbours.
struct residual_window {
    std::optional<int64_t> ticks; ///< time of its first PCR, 27 MHz
    double min_ns = 0;
    double max_ns = 0;
};

struct ppm_extent {
    double min_ppm = 0;
    double max_ppm = 0;
};

struct pcr_facts {
    uint16_t pid = 0;
    uint64_t count = 0;
    extent interval_ticks;
    uint64_t discontinuities_flagged = 0;
    uint64_t discontinuities_unflagged = 0;
    std::vector<bucket_extent> interval_series_ticks; ///< per bucket of the rates
    std::optional<residual_facts> residual;
    const char *basis = nullptr; ///< "index" or "arrival", or null
    std::optional<ppm_extent> rate_offset;
    std::vector<residual_window> residual_series; ///< at most 1000
};
