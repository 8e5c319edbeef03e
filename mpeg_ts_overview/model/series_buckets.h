// Buckets of time that every series shares: 0.1 s wide, and twice as wide each time there would be more than
// 1000.
#pragma once

#include <cstdint>

constexpr int64_t first_bucket_ticks = 2700000; ///< 0.1 s
constexpr uint64_t bucket_limit = 1000;

/// How many buckets of that width a duration fills, the last one perhaps in part.
constexpr uint64_t buckets_in(int64_t duration_ticks, int64_t bucket_ticks)
{
    return static_cast<uint64_t>((duration_ticks + bucket_ticks - 1) / bucket_ticks);
}

/// The width of the buckets of a recording of that duration, 27 MHz.
constexpr int64_t bucket_ticks_of(int64_t duration_ticks)
{
    int64_t width = first_bucket_ticks;
    while (buckets_in(duration_ticks, width) > bucket_limit) width *= 2;
    return width;
}
