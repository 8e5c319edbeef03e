// Numbers put down digit by digit at a place that has room for them. Each returns one past the last byte put.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>

/// Most characters of a number without its field: 20 decimal digits.
constexpr unsigned put_number_limit = 20;

/// "00" to "99".
constexpr auto two_decimal_digits = [] {
    std::array<std::array<char, 2>, 100> table{};
    for (size_t i = 0; i < 100; ++i)
        table[i] = {static_cast<char>('0' + i / 10), static_cast<char>('0' + i % 10)};
    return table;
}();

constexpr char lower_hex_digits[] = "0123456789abcdef";
constexpr char upper_hex_digits[] = "0123456789ABCDEF";

/// How many decimal digits a number has, at least 1.
inline unsigned decimal_digits(unsigned long long number)
{
    unsigned count = 1;
    for (; number >= 10000; number /= 10000) count += 4;
    return count + (number >= 10) + (number >= 100) + (number >= 1000);
}

/// Exactly count decimal digits, zeros in front.
inline char *put_decimal_digits(char *w, unsigned long long number, unsigned count)
{
    char *const end = w + count;
    char *p = end;
    for (; p - w >= 2; number /= 100) {
        p -= 2;
        std::memcpy(p, two_decimal_digits[static_cast<size_t>(number % 100)].data(), 2);
    }
    if (p > w) *w = static_cast<char>('0' + number % 10);
    return end;
}

inline char *put_decimal(char *w, unsigned long long number)
{
    return put_decimal_digits(w, number, decimal_digits(number));
}

/// How many hexadecimal digits a number has, at least 1.
inline unsigned hex_digits(unsigned long long number)
{
    unsigned count = 1;
    while ((number >>= 4) != 0) ++count;
    return count;
}

/// Exactly count hexadecimal digits, zeros in front.
inline char *put_hex_digits(char *w, unsigned long long number, unsigned count,
                            const char *digits = lower_hex_digits)
{
    for (unsigned i = count; i > 0; number >>= 4) w[--i] = digits[number & 0xF];
    return w + count;
}

/// Constant text.
template <size_t size>
char *put_literal(char *w, const char (&literal)[size])
{
    std::memcpy(w, literal, size - 1);
    return w + size - 1;
}
