#include "mpeg_ts_overview/meters/rates.h"

#include "mpeg_ts_overview/model/moment.h"
#include "mpeg_ts_overview/timeline/scaled.h"

#include <algorithm>

namespace {

constexpr int64_t bits_of_a_packet = int64_t{mpeg_ts_packet_size} * 8;
constexpr int64_t buckets_of_a_second = ticks_per_second / first_bucket_ticks;

/// Packets in ticks of 27 MHz as bit/s.
uint64_t bits_per_second(uint64_t packets, int64_t ticks)
{
    return static_cast<uint64_t>(
        scaled(static_cast<int64_t>(packets), bits_of_a_packet * ticks_per_second, ticks));
}

void add_window(std::optional<uint64_t> &min, std::optional<uint64_t> &max, uint64_t packets)
{
    min = std::min(min.value_or(packets), packets);
    max = std::max(max.value_or(packets), packets);
}

} // namespace

rates_meter::rates_meter() : states(mpeg_ts_pid_count + 1)
{
    whole.has_series = true;
}

void rates_meter::begin(const packet_times &next)
{
    const bool ends_bucket = !next.known() || bucket != next.at(next.first) / first_bucket_ticks;
    if (ends_bucket) end_bucket();
    times = next;
    begin_bucket(times.first);
}

/// The bucket that the packet lies in, and where it ends.
void rates_meter::begin_bucket(uint64_t first)
{
    if (!times.known()) {
        bucket = -1;
        next_bucket = times.fence;
        return;
    }
    bucket = times.at(first) / first_bucket_ticks;
    next_bucket = times.first_at_or_after((bucket + 1) * first_bucket_ticks);
}

/// Packet first is the PID's first in the bucket in hand.
void rates_meter::note_first(uint16_t pid, uint64_t first)
{
    rate_state &state = states[pid];
    if (state.packets == 0 && pid != no_pid) {
        state.has_series = order.size() < rate_series_limit;
        order.push_back(pid);
    }
    if (touched.empty()) note_first_time(whole, first);
    note_first_time(state, first);
    touched.push_back(pid);
}

/// Whole seconds count from the first packet with a time on.
void rates_meter::note_first_time(rate_state &state, uint64_t first) const
{
    if (state.window >= 0 || !times.known()) return;
    const int64_t ticks = times.at(first);
    state.window = ticks / ticks_per_second;
    state.first_window = (ticks + ticks_per_second - 1) / ticks_per_second;
}

void rates_meter::end_bucket()
{
    uint64_t all = 0;
    for (const uint16_t pid : touched) {
        all += in_bucket[pid];
        end_bucket_of(states[pid], in_bucket[pid]);
        in_bucket[pid] = 0;
    }
    touched.clear();
    end_bucket_of(whole, all);
}

void rates_meter::end_bucket_of(rate_state &state, uint64_t packets)
{
    state.packets += packets;
    if (bucket < 0 || packets == 0) return;

    const int64_t window = bucket / buckets_of_a_second;
    if (window != state.window) {
        if (state.window >= state.first_window)
            add_window(state.min_window, state.max_window, state.in_window);
        const int64_t first_empty = std::max(state.window + 1, state.first_window);
        if (first_empty < window) add_window(state.min_window, state.max_window, 0);
        state.window = window;
        state.in_window = 0;
    }
    state.in_window += packets;
    if (!state.has_series) return;
    while (static_cast<uint64_t>(bucket) / joined >= bucket_limit) double_width();
    const auto place = static_cast<size_t>(static_cast<uint64_t>(bucket) / joined);
    if (state.series.size() <= place) state.series.resize(place + 1);
    state.series[place] += packets;
}

/// Joins neighbours in every series.
void rates_meter::double_width()
{
    joined *= 2;
    const auto join = [](std::vector<uint64_t> &series) {
        for (size_t i = 0; i < series.size(); ++i) {
            const uint64_t packets = series[i];
            series[i] = 0;
            series[i / 2] += packets;
        }
        series.resize((series.size() + 1) / 2);
    };
    join(whole.series);
    for (const uint16_t pid : order) join(states[pid].series);
}

rates_facts rates_meter::finish(std::optional<int64_t> duration_ticks)
{
    rates_facts found;
    const int64_t duration = duration_ticks.value_or(0);
    size_t buckets = 0;

    end_bucket();
    if (last_ticks) found.bucket_ticks = bucket_ticks_of(*last_ticks);
    if (last_ticks && duration > 0)
        buckets = static_cast<size_t>(buckets_up_to(*last_ticks, found.bucket_ticks));
    found.whole = facts_of(whole, duration, buckets);
    for (const uint16_t pid : order) found.pids.push_back({pid, facts_of(states[pid], duration, buckets)});
    return found;
}

rate_facts rates_meter::facts_of(rate_state &state, int64_t duration_ticks, size_t buckets) const
{
    rate_facts rate;
    if (state.min_window) rate.min_bps = *state.min_window * bits_of_a_packet;
    if (state.max_window) rate.max_bps = *state.max_window * bits_of_a_packet;
    if (duration_ticks > 0) rate.mean_bps = bits_per_second(state.packets, duration_ticks);
    if (buckets == 0 || !state.has_series) return rate;

    const auto width = static_cast<int64_t>(joined) * first_bucket_ticks;
    state.series.resize(buckets);
    for (const uint64_t packets : state.series)
        rate.series_bps.push_back(static_cast<uint64_t>(scaled(static_cast<int64_t>(packets),
                                                               bits_of_a_packet * buckets_of_a_second,
                                                               static_cast<int64_t>(joined))));
    const int64_t covered = std::min(width, duration_ticks - static_cast<int64_t>(buckets - 1) * width);
    if (covered > 0) rate.series_bps.back() = bits_per_second(state.series.back(), covered);
    return rate;
}
