#include "mpeg_ts_overview/tables/time_stretches.h"

namespace {

constexpr size_t kept_stretches = 1024;

} // namespace

void time_stretches::begin(const moment &at)
{
    if (in_hand && in_hand->ticks() >= shortest && over.size() < kept_stretches) over.push_back(*in_hand);
    in_hand = time_stretch{at, at};
}
