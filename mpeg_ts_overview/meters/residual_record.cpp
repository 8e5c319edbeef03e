#include "mpeg_ts_overview/meters/residual_record.h"

#include "mpeg_ts_overview/model/moment.h"

#include <algorithm>
#include <cmath>

namespace {

constexpr double ns_per_tick = 1e9 / static_cast<double>(ticks_per_second);

/// Both as one, at the time of the first.
residual_window joined(const residual_window &first, const residual_window &second)
{
    return {first.ticks, std::min(first.min_ns, second.min_ns), std::max(first.max_ns, second.max_ns)};
}

} // namespace

void residual_record::add_window(std::optional<int64_t> ticks, const std::vector<double> &residual_ticks)
{
    const auto [least, greatest] = std::minmax_element(residual_ticks.begin(), residual_ticks.end());
    const residual_window window{ticks, *least * ns_per_tick, *greatest * ns_per_tick};

    min_ns = count == 0 ? window.min_ns : std::min(min_ns, window.min_ns);
    max_ns = count == 0 ? window.max_ns : std::max(max_ns, window.max_ns);
    for (const double rest : residual_ticks) sum_of_squares += rest * rest;
    count += residual_ticks.size();
    add_entry(window);
}

void residual_record::add_entry(const residual_window &window)
{
    if (!entries.empty() && windows_in_last < windows_per_entry) {
        entries.back() = joined(entries.back(), window);
        ++windows_in_last;
        return;
    }
    if (entries.size() == residual_series_limit) {
        for (size_t i = 0; i < entries.size() / 2; ++i)
            entries[i] = joined(entries[2 * i], entries[2 * i + 1]);
        entries.resize(entries.size() / 2);
        windows_per_entry *= 2;
    }
    entries.push_back(window);
    windows_in_last = 1;
}

std::optional<residual_facts> residual_record::facts() const
{
    if (count == 0) return std::nullopt;
    const double rms_ticks = std::sqrt(sum_of_squares / static_cast<double>(count));
    return residual_facts{min_ns, max_ns, rms_ticks * ns_per_tick};
}
