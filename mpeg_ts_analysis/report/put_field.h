// A number in its field, as a format's conversion has it. What is inlined is what most lines need; the rest
// is one call. Each returns one past the last byte put.
#pragma once

#include "mpeg_ts_analysis/report/put_number.h"

#include <array>
#include <cstdint>
#include <cstring>

struct number_field {
    uint8_t width;     ///< least number of characters
    bool zero_padded;  ///< zeros in front instead of blanks
    bool left_aligned; ///< blanks behind instead of in front
};

/// "00" to "ff".
constexpr auto two_hex_digits = [] {
    std::array<std::array<char, 2>, 256> table{};
    for (size_t i = 0; i < 256; ++i) table[i] = {lower_hex_digits[i >> 4], lower_hex_digits[i & 0xF]};
    return table;
}();

/// Puts a number in decimal, a minus sign before it if it is negative, in its field.
char *put_decimal_field(char *w, unsigned long long magnitude, bool is_negative, number_field field);

/// Puts a number by the hexadecimal digits given, in its field.
char *put_hex_field(char *w, unsigned long long number, number_field field, const char *digits);

/// Puts an address with "0x" before it, in its field.
char *put_pointer_field(char *w, const void *address, number_field field);

/// put_decimal, called.
char *put_long_decimal(char *w, unsigned long long number);

template <typename number_type>
[[gnu::always_inline]] inline char *put_unsigned_field(char *w, number_type number, number_field field)
{
    if (field.width == 0 && number < 10) {
        *w = static_cast<char>('0' + number);
        return w + 1;
    }
    if (field.width == 0) return put_long_decimal(w, number);
    if (field.width == 2 && field.zero_padded && !field.left_aligned && number < 100) {
        std::memcpy(w, two_decimal_digits[static_cast<size_t>(number)].data(), 2);
        return w + 2;
    }
    return put_decimal_field(w, number, false, field);
}

/// Exactly width digits, an even number of them.
template <typename number_type>
[[gnu::always_inline]] inline char *put_hex_pairs(char *w, number_type number, size_t width)
{
    for (char *p = w + width; p > w; number >>= 8) {
        p -= 2;
        std::memcpy(p, two_hex_digits[number & 0xFF].data(), 2);
    }
    return w + width;
}

template <typename number_type>
[[gnu::always_inline]] inline char *put_lower_hex_field(char *w, number_type number, number_field field)
{
    constexpr unsigned bits = 8 * sizeof(number);
    const bool has_even_zeros = field.zero_padded && !field.left_aligned && field.width % 2 == 0;
    const unsigned field_bits = 4u * field.width;

    if (has_even_zeros && field.width > 0 && (field_bits >= bits || number >> (field_bits % bits) == 0))
        return put_hex_pairs(w, number, field.width);
    return put_hex_field(w, number, field, lower_hex_digits);
}
