// The gaps between the sections of a table, EN 300 468 5.1.4: from the last packet of one to the first of the
// next.
#pragma once

#include "mpeg_ts_overview/model/violation_log.h"
#include "mpeg_ts_overview/tables/section.h"
#include "mpeg_ts_overview/tables/table_key.h"

#include <array>
#include <cstdint>
#include <map>
#include <optional>

/// Of tables beyond so many gaps are not looked at.
constexpr size_t gap_table_limit = 16384;

class section_gaps {
public:
    /// Without a limit gaps are only measured. One counts when the gap is more than 5 % below it.
    explicit section_gaps(std::optional<int64_t> least_ticks) : least(least_ticks) {}

    /// Takes current sections of DVB tables on their own PIDs, whose CRC_32 is right.
    void on_section(const table_section &section, const table_key &of_table);

    /// True when a section of a table whose gaps are looked at came.
    bool came() const { return !last_of.empty(); }

    /// The least gap; none when there was none.
    std::optional<int64_t> shortest(bool sure_times_only) const
    {
        return found[sure_times_only ? 1 : 0].shortest;
    }
    uint64_t not_kept() const { return dropped; }
    const violation_log &log(bool sure_times_only) const { return found[sure_times_only ? 1 : 0].log; }

private:
    struct findings {
        violation_log log;
        std::optional<int64_t> shortest;
    };

    void judge(findings &here, int64_t gap, const table_section &section) const;

    std::optional<int64_t> least;
    std::map<table_key, moment> last_of;
    uint64_t dropped = 0;
    std::array<findings, 2> found; ///< by all times, and by sure ones
};
