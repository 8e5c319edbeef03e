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

    /// Counts one; its text is kept when it is one of the first. Takes the greatest of worst.
    void add(const moment &at, std::optional<uint16_t> pid, const char *text,
             std::optional<double> how_bad = std::nullopt)
    {
        if (count++ == 0) first = at;
        last = at;
        if (how_bad && (!worst || *how_bad > *worst)) worst = how_bad;
        if (details.size() < violation_detail_limit) details.push_back({at, pid, text});
    }
};
