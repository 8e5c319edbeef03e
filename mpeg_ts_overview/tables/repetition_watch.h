// Clocks that watch how long things stay away: each starts where its rule begins, starts anew at each time
// break, and is looked at when the thing arrives and where the rule ends.
#pragma once

#include "mpeg_ts_overview/tables/repetition_limit.h"
#include "mpeg_ts_overview/tables/time_stretches.h"

#include <cstdint>
#include <limits>
#include <vector>

/// When clocks start anew behind a time break.
enum class after_break { at_once, at_the_next_arrival };

/// A clock of default values has run from the first moment with a time on.
struct repetition_clock {
    int64_t stretch = -1;     ///< in which it was looked at last; below 0: in none yet
    int64_t run_ticks = 0;    ///< since when it runs in that stretch
    int64_t waited_ticks = 0; ///< since when the thing stays away
    bool arrived = false;     ///< because it arrived then
    int64_t own_ticks = 0;    ///< for which the thing's own clock ran
};

/// All clocks of one kind of things, and their limits.
class repetition_watch {
public:
    explicit repetition_watch(const time_stretches &times, after_break anew = after_break::at_once)
        : stretches(times), starts_anew(anew)
    {
    }

    /// Without ticks intervals are only measured.
    void add_limit(std::optional<int64_t> ticks, bool is_tolerant);

    /// A clock that starts at the moment, or at the arrival of the thing.
    repetition_clock started(const moment &at) const;
    repetition_clock started_by_arrival(const moment &at) const;

    /// The thing arrives. Inside a break that is no arrival, but what was waited for before the break has
    /// come.
    void arrive(repetition_clock &clock, const moment &at, const watched_thing &thing);

    /// The thing arrives so many ticks of its own clock behind its last arrival, be there breaks and times or
    /// not.
    void arrive_by_own_clock(repetition_clock &clock, int64_t ticks, const moment &at,
                             const watched_thing &thing);

    /// The rule ends.
    void end(repetition_clock &clock, const moment &at, const watched_thing &thing);

    /// The rule ends, and the thing, which has to be there, never came.
    void end_absent(repetition_clock clock, const moment &at, const watched_thing &thing);

    const repetition_limit &limit(size_t number) const { return limits[number]; }

private:
    void settle(repetition_clock &clock, const moment &at, bool arrives, const watched_thing &thing);
    void settle_past(repetition_clock &clock, const watched_thing &thing);
    void end_stretch(repetition_clock &clock, const time_stretch &over, const watched_thing &thing);
    void judge(const repetition_clock &clock, const moment &to, bool arrives, const watched_thing &thing);

    const time_stretches &stretches;
    after_break starts_anew;
    std::vector<repetition_limit> limits;
    int64_t shortest_limit = std::numeric_limits<int64_t>::max();
};
