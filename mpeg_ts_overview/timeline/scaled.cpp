#include "mpeg_ts_overview/timeline/scaled.h"

namespace {

struct division {
    uint64_t quotient = 0;
    uint64_t remainder = 0;
};

/// a * b / c where a * b may need more than 64 bits: bit by bit from the top of a, so that it is the same on
/// machines without wider integers.
division divide_product(uint64_t a, uint64_t b, uint64_t c)
{
    division result;
    const auto add = [&](uint64_t remainder) {
        const bool carries = result.remainder >= c - remainder;
        result.quotient += carries;
        result.remainder = carries ? result.remainder - (c - remainder) : result.remainder + remainder;
    };

    for (int bit = 63; bit >= 0; --bit) {
        result.quotient *= 2;
        add(result.remainder);
        if (((a >> bit) & 1) == 0) continue;
        result.quotient += b / c;
        add(b % c);
    }
    return result;
}

} // namespace

int64_t scaled(int64_t count, int64_t numerator, int64_t denominator)
{
    constexpr int64_t small = int64_t{1} << 30;
    const auto magnitude = static_cast<uint64_t>(count < 0 ? -count : count);
    const auto c = static_cast<uint64_t>(denominator);
    division exact;

    if (magnitude <= small && numerator <= small) {
        const uint64_t product = magnitude * static_cast<uint64_t>(numerator);
        exact = {product / c, product % c};
    } else {
        exact = divide_product(magnitude, static_cast<uint64_t>(numerator), c);
    }
    // Halves go up: away from zero when the result is positive, towards it when it is negative.
    const uint64_t rest = c - exact.remainder;
    if (count >= 0) return static_cast<int64_t>(exact.quotient + (exact.remainder >= rest));
    return -static_cast<int64_t>(exact.quotient + (exact.remainder > rest));
}
