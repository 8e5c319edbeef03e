#include "mpeg_ts_analysis/report/put_number.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <memory>
#include <random>
#include <string>
#include <vector>

namespace {

/// What a function puts at a place of exactly this size.
template <typename put>
std::string text_of(size_t size, put function)
{
    const std::unique_ptr<char[]> place(new char[size]);
    const char *const end = function(place.get());
    EXPECT_EQ(end, place.get() + size);
    return std::string(place.get(), size);
}

std::string formatted(int width, unsigned long long number, bool hexadecimal)
{
    char text[64];
    if (hexadecimal)
        std::snprintf(text, sizeof(text), "%0*llx", width, number);
    else
        std::snprintf(text, sizeof(text), "%0*llu", width, number);
    return text;
}

/// Numbers of every size, with the bounds of every count of digits.
std::vector<unsigned long long> numbers()
{
    std::vector<unsigned long long> out = {0, ~0ull};
    for (unsigned long long power = 1; power <= 1000000000000000000ull; power *= 10) {
        out.insert(out.end(), {power - 1, power, power + 1});
        if (power == 1000000000000000000ull) out.insert(out.end(), {power * 10 - 1, power * 10});
    }
    for (unsigned bit = 0; bit < 64; ++bit) out.insert(out.end(), {(1ull << bit) - 1, 1ull << bit});
    std::mt19937_64 random(9);
    for (int i = 0; i < 20000; ++i) out.push_back(random() >> (random() % 64));
    return out;
}

} // namespace

TEST(put_number, decimal_numbers_are_those_of_the_c_library)
{
    for (const unsigned long long number : numbers()) {
        const std::string expected = std::to_string(number);
        ASSERT_EQ(decimal_digits(number), expected.size()) << number;
        ASSERT_LE(expected.size(), put_number_limit);
        ASSERT_EQ(text_of(expected.size(), [&](char *w) { return put_decimal(w, number); }), expected);
    }
}

TEST(put_number, a_count_of_decimal_digits_is_filled_with_zeros)
{
    for (const unsigned long long number : numbers())
        for (unsigned count = decimal_digits(number); count <= 24; count += 3) {
            const auto put = [&](char *w) { return put_decimal_digits(w, number, count); };
            ASSERT_EQ(text_of(count, put), formatted(static_cast<int>(count), number, false));
        }
}

TEST(put_number, every_two_digits_stand_in_their_order)
{
    for (unsigned number = 0; number < 100; ++number) {
        const auto put = [&](char *w) { return put_decimal_digits(w, number, 2); };
        EXPECT_EQ(text_of(2, put), formatted(2, number, false));
    }
}

TEST(put_number, a_count_of_no_digits_puts_nothing)
{
    EXPECT_EQ(text_of(0, [](char *w) { return put_decimal_digits(w, 0, 0); }), "");
    EXPECT_EQ(text_of(0, [](char *w) { return put_hex_digits(w, 0, 0); }), "");
}

TEST(put_number, hexadecimal_numbers_are_those_of_the_c_library)
{
    for (const unsigned long long number : numbers()) {
        const std::string expected = formatted(1, number, true);
        ASSERT_EQ(hex_digits(number), expected.size()) << number;
        for (unsigned count = hex_digits(number); count <= 20; count += 2) {
            const auto put = [&](char *w) { return put_hex_digits(w, number, count); };
            ASSERT_EQ(text_of(count, put), formatted(static_cast<int>(count), number, true));
        }
    }
}

TEST(put_number, the_digits_of_a_hexadecimal_number_may_be_upper_case)
{
    const auto put = [](char *w) { return put_hex_digits(w, 0x0123456789ABCDEF, 16, upper_hex_digits); };
    EXPECT_EQ(text_of(16, put), "0123456789ABCDEF");
}

TEST(put_number, constant_text_is_put_without_its_zero)
{
    EXPECT_EQ(text_of(5, [](char *w) { return put_literal(w, " PID="); }), " PID=");
    EXPECT_EQ(text_of(0, [](char *w) { return put_literal(w, ""); }), "");
}
