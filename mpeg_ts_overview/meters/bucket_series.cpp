#include "mpeg_ts_overview/meters/bucket_series.h"

#include <algorithm>

void bucket_series::range::join(const range &other)
{
    if (other.empty()) return;
    if (empty()) {
        *this = other;
        return;
    }
    min = std::min(min, other.min);
    max = std::max(max, other.max);
}

/// Joins each two neighbours.
void bucket_series::widen()
{
    const size_t joined = (buckets.size() + 1) / 2;
    for (size_t i = 0; i < joined; ++i) {
        range both = buckets[2 * i];
        if (2 * i + 1 < buckets.size()) both.join(buckets[2 * i + 1]);
        buckets[i] = both;
    }
    buckets.resize(joined);
    width *= 2;
}

void bucket_series::add(int64_t ticks, int64_t value)
{
    if (ticks < 0) return;
    while (static_cast<uint64_t>(ticks / width) >= bucket_limit) widen();
    const auto bucket = static_cast<size_t>(ticks / width);
    if (bucket >= buckets.size()) buckets.resize(bucket + 1);
    buckets[bucket].join({value, value});
}

std::vector<bucket_extent> bucket_series::finish(int64_t bucket_ticks, size_t count) const
{
    std::vector<range> joined(count);
    if (count > 0) {
        for (size_t i = 0; i < buckets.size(); ++i) {
            const auto bucket = static_cast<uint64_t>(static_cast<int64_t>(i) * width / bucket_ticks);
            joined[static_cast<size_t>(std::min<uint64_t>(bucket, count - 1))].join(buckets[i]);
        }
    }

    std::vector<bucket_extent> result(count);
    for (size_t i = 0; i < joined.size(); ++i)
        if (!joined[i].empty()) result[i] = {joined[i].min, joined[i].max};
    return result;
}
