// The residuals of one PID over all its windows, and their series.
#pragma once

#include "mpeg_ts_overview/model/pcr_facts.h"

#include <cstdint>
#include <optional>
#include <vector>

constexpr size_t residual_series_limit = 1000;

class residual_record {
public:
    /// The residuals of a window in 27 MHz ticks, at least one, and the time of its first PCR.
    void add_window(std::optional<int64_t> ticks, const std::vector<double> &residual_ticks);

    /// Of all windows, or none when there was none.
    std::optional<residual_facts> facts() const;

    /// One entry a window; beyond the limit neighbours are joined, again and again.
    const std::vector<residual_window> &series() const { return entries; }

private:
    void add_entry(const residual_window &window);

    double min_ns = 0;
    double max_ns = 0;
    double sum_of_squares = 0;
    uint64_t count = 0;
    std::vector<residual_window> entries;
    uint64_t windows_per_entry = 1;
    uint64_t windows_in_last = 0;
};
