#include "mpeg_ts_analysis/report/fixed_point.h"

#include "mpeg_ts_analysis/report/put_number.h"

#include <bit>
#include <charconv>
#include <cstdint>

namespace {

__extension__ using uint128 = unsigned __int128;

constexpr unsigned long long powers_of_ten[] = {1,      10,      100,      1000,      10000,
                                                100000, 1000000, 10000000, 100000000, 1000000000};
constexpr unsigned mantissa_bits = 52;
constexpr unsigned exponent_bias = 1023;
constexpr unsigned longest = 330;

char *put_rare(char *w, double value, unsigned precision)
{
    return std::to_chars(w, w + longest, value, std::chars_format::fixed, static_cast<int>(precision)).ptr;
}

/// The precision is known to the compiler, so that no division is one.
template <unsigned precision>
char *put(char *w, double value)
{
    constexpr unsigned long long scale = powers_of_ten[precision];
    const auto bits = std::bit_cast<uint64_t>(value);
    const unsigned exponent = static_cast<unsigned>(bits >> mantissa_bits) & 0x7FF;
    const uint64_t fraction = bits & ((uint64_t{1} << mantissa_bits) - 1);

    // The value is mantissa / 2^shift. For shifts of 0 to 118 its product with the scale is exact in 128
    // bits. Anything else is rare: huge, tiny, not a number.
    const unsigned shift = exponent_bias + mantissa_bits - exponent;
    if (exponent == 0 ? fraction != 0 : exponent > exponent_bias + mantissa_bits || shift > 118)
        return put_rare(w, value, precision);

    unsigned long long scaled = 0;
    if (exponent != 0) {
        const uint128 product = static_cast<uint128>(fraction | (uint64_t{1} << mantissa_bits)) * scale;
        const uint128 quotient = product >> shift;
        const uint128 remainder = product - (quotient << shift);
        const uint128 half = (static_cast<uint128>(1) << shift) >> 1;
        if (quotient > UINT64_MAX - 1) return put_rare(w, value, precision);
        scaled = static_cast<unsigned long long>(quotient);
        if (remainder > half || (remainder == half && remainder != 0 && (scaled & 1) != 0)) ++scaled;
    }

    if (bits >> 63 != 0) *w++ = '-';
    w = put_decimal(w, scaled / scale);
    if (precision == 0) return w;
    *w++ = '.';
    return put_decimal_digits(w, scaled % scale, precision);
}

using put_function = char *(*)(char *w, double value);
constexpr put_function put_with_precision[] = {put<0>, put<1>, put<2>, put<3>, put<4>,
                                               put<5>, put<6>, put<7>, put<8>, put<9>};

} // namespace

char *put_fixed_point(char *w, double value, unsigned precision)
{
    return put_with_precision[precision](w, value);
}
