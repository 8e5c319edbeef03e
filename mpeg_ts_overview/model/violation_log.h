// What broke one limit: how often, where first and last, how badly, and the first few in detail.
#pragma once

#include "mpeg_ts_overview/model/moment.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

/// Details beyond these are only counted.
constexpr size_t violation_detail_limit = 20;

struct violation {
    moment at;
    std::optional<uint16_t> pid;
    std::string text; ///< UTF-8
};

struct violation_log {
    uint64_t count = 0;
    moment first; ///< of no meaning while count is 0
    moment last;
    std::optional<double> worst; ///< in the unit of its check
    std::vector<violation> details;
};
