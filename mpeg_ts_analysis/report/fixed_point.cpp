#include "mpeg_ts_analysis/report/fixed_point.h"

#include "mpeg_ts_analysis/report/put_number.h"

#include <algorithm>
#include <bit>
#include <charconv>
#include <cstdint>

namespace {

constexpr uint64_t powers_of_ten[] = {1,      10,      100,      1000,      10000,
                                      100000, 1000000, 10000000, 100000000, 1000000000};
constexpr unsigned mantissa_bits = 52;
constexpr uint64_t mantissa_top = uint64_t{1} << mantissa_bits;
constexpr unsigned exponent_bias = 1023;
constexpr unsigned longest = 330;

char *put_huge(char *w, double value, unsigned precision)
{
    return std::to_chars(w, w + longest, value, std::chars_format::fixed, static_cast<int>(precision)).ptr;
}

/// fraction * scale / 2^shift, rounded to the nearest, halves up if whole_is_odd makes that even.
/// fraction < 2^53 and < 2^shift, scale <= 10^9, shift 0 to 95.
uint64_t scaled_fraction(uint64_t fraction, uint64_t scale, unsigned shift, bool whole_is_odd)
{
    // At least 33, so that the half lies above the low 32 bits of the product.
    if (shift < 33) {
        fraction <<= 33 - shift;
        shift = 33;
    }
    // The exact product is high * 2^32 + low: 84 bits at most.
    const uint64_t low_product = (fraction & UINT32_MAX) * scale;
    const uint64_t high = (fraction >> 32) * scale + (low_product >> 32);
    const uint64_t low = low_product & UINT32_MAX;

    const unsigned high_shift = shift - 32;
    const uint64_t half = uint64_t{1} << (high_shift - 1);
    const uint64_t rest = high & (2 * half - 1);
    const uint64_t scaled = high >> high_shift;
    const bool odd = (scaled & 1) != 0 || whole_is_odd;
    return scaled + (rest > half || (rest == half && (low != 0 || odd)));
}

/// The precision is known to the compiler, so that no division is one.
template <unsigned precision>
char *put(char *w, double value)
{
    constexpr uint64_t scale = powers_of_ten[precision];
    const auto bits = std::bit_cast<uint64_t>(value);
    const unsigned exponent = static_cast<unsigned>(bits >> mantissa_bits) & 0x7FF;
    if (exponent > exponent_bias + mantissa_bits) return put_huge(w, value, precision);

    // The value is mantissa / 2^shift. Shifts of 84 and more leave less than half of the last digit, and are
    // all the same.
    const unsigned shift = std::min(exponent_bias + mantissa_bits - exponent, 95u);
    const uint64_t mantissa = (bits & (mantissa_top - 1)) | (exponent != 0 ? mantissa_top : 0);
    const unsigned whole_shift = std::min(shift, 63u);
    uint64_t whole = mantissa >> whole_shift;
    const uint64_t fraction = mantissa - (whole << whole_shift);

    // Without digits behind the point it is the whole number that is to become even.
    uint64_t digits = scaled_fraction(fraction, scale, shift, precision == 0 && (whole & 1) != 0);
    if (digits == scale) {
        ++whole;
        digits = 0;
    }

    if (bits >> 63 != 0) *w++ = '-';
    w = put_decimal(w, whole);
    if (precision == 0) return w;
    *w++ = '.';
    return put_decimal_digits(w, digits, precision);
}

using put_function = char *(*)(char *w, double value);
constexpr put_function put_with_precision[] = {put<0>, put<1>, put<2>, put<3>, put<4>,
                                               put<5>, put<6>, put<7>, put<8>, put<9>};

} // namespace

char *put_fixed_point(char *w, double value, unsigned precision)
{
    return put_with_precision[precision](w, value);
}
