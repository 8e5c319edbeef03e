// A limit on how long something may stay away, ETSI TR 101 290 5.2: the intervals that are longer, and
// whether it could be broken at all. Kept twice: of all times, and of the sure ones alone, because it is
// known at the end only whether the bit rate is constant.
#pragma once

#include "mpeg_ts_overview/model/moment.h"
#include "mpeg_ts_overview/model/violation_log.h"
#include "mpeg_ts_overview/tables/time_stretches.h"

#include <array>
#include <cstdint>
#include <optional>

/// What is waited for.
struct watched_thing {
    uint16_t pid = 0;
    uint8_t table_id = 0;
    std::optional<uint16_t> extension;
    std::optional<uint8_t> section_number;
    const char *name = nullptr; ///< of what is no table
};

struct repetition_findings {
    violation_log log;                    ///< worst is not set
    std::optional<int64_t> longest_ticks; ///< of the intervals; pieces before and behind count when too long
    int64_t longest_run_ticks = 0;        ///< for which a clock ran without a break

    bool reached(int64_t limit_ticks) const { return longest_run_ticks >= limit_ticks; }
};

class repetition_limit {
public:
    /// Without a limit intervals are only measured. A tolerant one counts when passed by more than 5 %.
    repetition_limit(const time_stretches &times, std::optional<int64_t> limit_ticks, bool is_tolerant);

    /// The thing stayed away from one time to the moment, without a break between. A wait that does not lie
    /// between two arrivals is a piece of an interval.
    void judge(int64_t from_ticks, const moment &to, bool between_arrivals, const watched_thing &thing);

    /// So many ticks of the thing's own clock lie between two arrivals, the second at the moment.
    void judge_own(int64_t ticks, const moment &to, const watched_thing &thing);

    /// A clock ran from one time to the moment, without a break between.
    void note_run(int64_t from_ticks, const moment &to);
    /// The thing's own clock ran so long.
    void note_own_run(int64_t ticks);

    /// The thing never came, and clocks that ran for it alone found that: one fault, where they ran as long
    /// as the limit.
    void note_absence(const repetition_limit &alone, const moment &at, const watched_thing &thing);

    const repetition_findings &findings(bool sure_times_only) const { return found[sure_times_only ? 1 : 0]; }

    /// The limit without the tolerance.
    std::optional<int64_t> ticks() const { return limit; }

    /// False when no clock ran as long as the limit; without a limit, when there was no interval.
    bool is_measured(bool sure_times_only) const;

private:
    struct wait {
        int64_t from_ticks = 0;
        const moment *to = nullptr;
    };

    std::optional<wait> sure_part(const wait &whole) const;
    void judge(repetition_findings &here, int64_t ticks, const moment &to, bool between_arrivals,
               const watched_thing &thing) const;

    const time_stretches &stretches;
    std::optional<int64_t> limit;
    int64_t longest_allowed;
    std::array<repetition_findings, 2> found; ///< by all times, and by the sure ones
};
