// A place where time cannot be followed.
#pragma once

#include "mpeg_ts_overview/model/moment.h"

#include <cstdint>
#include <optional>
#include <vector>

enum class time_break_kind { irregular_span, arrival, clock_change, sync_loss };

struct time_break {
    moment at; ///< the first packet behind the break
    time_break_kind kind = time_break_kind::irregular_span;
    std::optional<int64_t>
        pcr_jump_ticks; ///< of an irregular span: the signed nearest difference of its PCRs
};

/// Breaks beyond these are only counted.
constexpr size_t time_break_limit = 1000;

struct time_break_list {
    std::vector<time_break> kept;
    uint64_t not_kept = 0;
};
