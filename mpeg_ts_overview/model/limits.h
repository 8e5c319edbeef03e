// Other limits than the standards' for the checks, as the command line gives them.
#pragma once

#include <cstdint>
#include <optional>

struct limits {
    std::optional<int64_t> pcr_interval_ticks; ///< 27 MHz, as all ticks
    std::optional<double> pcr_accuracy_ns;
    std::optional<int64_t> pts_interval_ticks;
    std::optional<int64_t> pat_interval_ticks;
    std::optional<int64_t> pmt_interval_ticks;
    std::optional<int64_t> pid_absence_ticks;
    std::optional<int64_t> sdt_interval_ticks;
    std::optional<int64_t> nit_interval_ticks;
    std::optional<int64_t> eit_schedule_ticks;   ///< only with it is the EIT schedule judged
    std::optional<int64_t> si_minimum_gap_ticks; ///< only with it are gaps judged
};
