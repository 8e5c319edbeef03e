#include "mpeg_ts_overview/timeline/rate_steadiness.h"

#include "mpeg_ts_overview/timeline/median.h"

#include <cmath>

namespace {

constexpr int64_t least_stretch_ticks = 2700000; // 100 ms
constexpr size_t stretch_limit = 4096;
constexpr size_t least_stretches = 20;
constexpr double tolerance = 100e-6;

} // namespace

void rate_steadiness::add_span(int64_t packets, int64_t ticks)
{
    if (rates.size() >= stretch_limit) return;
    joined_packets += packets;
    joined_ticks += ticks;
    if (joined_ticks < least_stretch_ticks) return;
    rates.push_back(static_cast<double>(joined_packets) / static_cast<double>(joined_ticks));
    on_break();
}

void rate_steadiness::on_break()
{
    joined_packets = joined_ticks = 0;
}

bool rate_steadiness::is_constant() const
{
    if (rates.size() < least_stretches) return false;
    const double middle = median_of(rates);
    size_t steady = 0;
    for (const double rate : rates) steady += std::fabs(rate - middle) <= middle * tolerance;
    return steady * 100 >= rates.size() * 95;
}
