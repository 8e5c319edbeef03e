// Frame rates as video headers give them.
#pragma once

#include <numeric>
#include <optional>

#include "mpeg_ts_overview/model/codec_details.h"

/// num / den frames per second in lowest terms; nothing when that is not between 1 and 300, as of headers
/// whose clock is not that of their frames.
inline std::optional<frame_rate> frame_rate_of(unsigned long long num, unsigned long long den)
{
    if (den == 0 || num < den || num > 300 * den) return {};
    const unsigned long long divisor = std::gcd(num, den);
    return frame_rate{num / divisor, den / divisor};
}
