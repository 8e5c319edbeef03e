#include "mpeg_ts_overview/tables/time_stretches.h"

namespace {

constexpr size_t kept_stretches = 4096;

} // namespace

void time_stretches::begin(const moment &at)
{
    if (in_hand && in_hand->ticks() >= shortest) {
        if (over.size() == kept_stretches) over.pop_front();
        over.push_back(*in_hand);
    }
    in_hand = time_stretch{at, at};
}
