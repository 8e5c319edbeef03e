// The stretches of a recording in which time runs without a break, and the part of it whose times are sure.
#pragma once

#include "mpeg_ts_overview/model/moment.h"

#include <algorithm>
#include <cstdint>
#include <optional>
#include <vector>

struct time_stretch {
    moment first;
    moment last;

    int64_t ticks() const { return *last.ticks - *first.ticks; }
};

class time_stretches {
public:
    /// Stretches below that length are of no interest once they are over.
    explicit time_stretches(int64_t shortest_ticks) : shortest(shortest_ticks) {}

    /// Takes the moments of the recording that matter, in order: the first of each stretch, the clock points,
    /// and any others. Of those inside a break or without a time nothing is kept.
    void see(const moment &at)
    {
        if (at.stretch < 0 || !at.ticks) return;
        if (!in_hand || in_hand->first.stretch != at.stretch) begin(at);
        in_hand->last = at;
        longest = std::max(longest, in_hand->ticks());
        if (at.extrapolated) return;
        if (!sure_from) sure_from = at;
        sure_to = at;
        longest_sure = std::max(longest_sure, *at.ticks - std::max(*sure_from->ticks, *in_hand->first.ticks));
    }

    /// The length of the longest stretch, or of its part whose times are sure.
    int64_t longest_ticks(bool sure_times_only) const { return sure_times_only ? longest_sure : longest; }

    /// The stretch that goes on; none before the first moment with a time.
    const std::optional<time_stretch> &current() const { return in_hand; }

    /// The first stretches that are over and were long enough, in order. Their number is limited, so that no
    /// clock ever looks at more; what stays away in later ones is a fault missed.
    const std::vector<time_stretch> &past() const { return over; }

    /// The first and the last moment whose times are sure, be the bit rate constant or not.
    const std::optional<moment> &first_sure() const { return sure_from; }
    const std::optional<moment> &last_sure() const { return sure_to; }

private:
    void begin(const moment &at);

    int64_t shortest;
    std::optional<time_stretch> in_hand;
    std::vector<time_stretch> over;
    std::optional<moment> sure_from;
    std::optional<moment> sure_to;
    int64_t longest = 0;
    int64_t longest_sure = 0;
};
