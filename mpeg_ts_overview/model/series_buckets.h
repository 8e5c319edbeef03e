// Buckets of time that every series shares: 0.1 s wide, and twice as wide each time there would be more than
// 1000.
#pragma once

#include <cstddef>
#include <cstdint>

constexpr int64_t first_bucket_ticks = 2700000; ///< 0.1 s
constexpr size_t bucket_limit = 1000;

/// The number of buckets up to the one that holds a packet of that time.
constexpr uint64_t buckets_up_to(int64_t last_ticks, int64_t bucket_ticks)
{
    return static_cast<uint64_t>(last_ticks / bucket_ticks) + 1;
}

/// The width of the buckets, 27 MHz ticks, of a recording whose last packet has that time: there are at most
/// bucket_limit of them.
constexpr int64_t bucket_ticks_of(int64_t last_ticks)
{
    int64_t width = first_bucket_ticks;
    while (buckets_up_to(last_ticks, width) > bucket_limit) width *= 2;
    return width;
}
