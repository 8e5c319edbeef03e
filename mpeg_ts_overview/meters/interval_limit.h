// A limit on the interval between arrivals of one thing on a PID: what breaks it, and whether it could be
// broken at all. Intervals over a time break do not count; the pieces before and behind one do when they
// alone break the limit, and so does the piece from the last arrival to the end.
#pragma once

#include "mpeg_ts_overview/model/violation_log.h"

#include <array>
#include <cstdint>
#include <optional>

/// Where the clock starts anew behind a time break.
enum class after_break { at_the_break, at_the_next_arrival };

/// The clock of one PID.
struct interval_watch {
    std::optional<moment> from; ///< the last arrival, or where the rule began; none while it does not run
    bool arrived = false;       ///< from is an arrival
    std::array<int64_t, 2> watched = {}; ///< ticks without a break so far; one for each log
};

class interval_limit {
public:
    /// thing is what the intervals are of, as in the words "no PCR for 120 ms".
    interval_limit(const char *thing, int64_t limit_ticks, after_break anew);

    /// Takes the moment of each packet that comes by, before anything that arrives in it.
    void see(const moment &at);

    /// The rule begins.
    static void begin(interval_watch &watch, const moment &at);

    /// The thing arrives; the clock starts when it does not run. The interval from the last arrival is
    /// clock_ticks where given, else that of the times.
    void arrive(interval_watch &watch, uint16_t pid, const moment &at,
                std::optional<int64_t> clock_ticks = std::nullopt);

    /// The rule ends, or the recording.
    void end(interval_watch &watch, uint16_t pid, const moment &at);

    /// What broke the limit; with only_between_clock_points by sure times alone. Its worst is in seconds.
    const violation_log &log(bool only_between_clock_points) const
    {
        return logs[only_between_clock_points ? 1 : 0];
    }

    /// False when no clock ran as long as the limit without a break.
    bool measured(bool only_between_clock_points) const
    {
        return longest[only_between_clock_points ? 1 : 0] >= limit;
    }

private:
    struct piece {
        int64_t ticks = 0;
        moment end;
    };
    struct wait {
        moment from;
        moment to;
        bool between_arrivals = false;
    };

    void judge(interval_watch &watch, uint16_t pid, const wait &w, std::optional<int64_t> clock_ticks);
    void judge_times(size_t log_number, interval_watch &watch, uint16_t pid, const wait &w);
    void judge_ticks(size_t log_number, uint16_t pid, const piece &p, bool between_arrivals);
    void watch_on(size_t log_number, interval_watch &watch, int64_t ticks);
    std::optional<piece> before_break(const wait &w) const;
    std::optional<piece> behind_break(const wait &w) const;

    const char *name;
    int64_t limit;
    after_break starts_anew;
    std::optional<moment> latest;        ///< the last moment outside of breaks
    std::optional<moment> break_from;    ///< the last moment before the last break
    std::optional<moment> break_to;      ///< the first behind it, or the first of all
    std::optional<moment> first_clocked; ///< the first clock point
    std::optional<moment> last_clocked;
    std::array<violation_log, 2> logs; ///< of all, and of what lies between clock points
    std::array<int64_t, 2> longest = {};
};
