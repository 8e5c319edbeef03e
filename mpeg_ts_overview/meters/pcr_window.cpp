#include "mpeg_ts_overview/meters/pcr_window.h"

#include "mpeg12_ts/packet.h"
#include "mpeg_ts_overview/tables/log_violation.h"

#include <algorithm>
#include <cmath>

void pcr_window::add(const ts_packet &packet, int64_t pcr_ticks)
{
    if (points.empty()) {
        stretch = packet.at.stretch;
        has_times = has_arrival = true;
    }
    has_times &= packet.at.ticks.has_value();
    has_arrival &= packet.arrival_ticks.has_value();
    const int64_t pcr = points.empty() ? 0 : points.back().pcr + pcr_ticks;
    points.push_back({packet.at.packet, packet.at.byte, packet.at.ticks.value_or(0), pcr,
                      packet.arrival_ticks.value_or(0)});
}

bool pcr_window::drop_behind(uint64_t packet)
{
    while (!points.empty() && points.back().packet > packet) points.pop_back();
    return points.empty();
}

void pcr_window::clear()
{
    points.clear();
}

bool pcr_window::full() const
{
    return points.size() >= window_points || (!points.empty() && points.back().pcr >= window_ticks);
}

moment pcr_window::moment_of(size_t i) const
{
    moment at;
    at.packet = points[i].packet;
    at.byte = points[i].byte;
    if (has_times) at.ticks = points[i].ticks;
    at.stretch = stretch;
    return at;
}

template <typename x_of_point>
bool pcr_fitter::fit(const pcr_window &window, const x_of_point &x_of)
{
    points.clear();
    for (size_t i = 0; i < window.size(); ++i)
        points.push_back({x_of(window[i]) - x_of(window[0]), window[i].pcr});
    return line.fit(points);
}

void pcr_fitter::measure(const pcr_window &window, uint16_t pid, pcr_straightness *result)
{
    if (window.size() < least_window_points) return;
    const std::optional<int64_t> ticks = window.moment_of(0).ticks;

    if (fit(window, [](const pcr_window::point &p) { return static_cast<int64_t>(p.packet); })) {
        result->over_index.add_window(ticks, line.residuals());
        if (pid != mpeg_ts_padding_pid) judge(window, pid);
    }
    if (window.arrived() && fit(window, [](const pcr_window::point &p) { return p.arrival_ticks; }))
        result->over_arrival.add_window(ticks, line.residuals());
    if (window.timed() && !window.inside_break() &&
        fit(window, [](const pcr_window::point &p) { return p.ticks; })) {
        const double ppm = line.slope_minus_one() * 1e6;
        std::optional<ppm_extent> &offset = result->rate_offset;
        if (!offset) offset = ppm_extent{ppm, ppm};
        offset = ppm_extent{std::min(offset->min_ppm, ppm), std::max(offset->max_ppm, ppm)};
    }
}

/// Writes down the residuals over the index that are beyond the limit.
void pcr_fitter::judge(const pcr_window &window, uint16_t pid)
{
    for (size_t i = 0; i < window.size(); ++i) {
        const double ns = line.residuals()[i] * 1e9 / static_cast<double>(ticks_per_second);
        note_worst(log, std::abs(ns));
        if (std::abs(ns) > limit)
            log_violation(log, window.moment_of(i), pid, [&] { return "PCR off by " + with_unit(ns, "ns"); });
    }
}
