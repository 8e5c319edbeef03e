#include "mpeg_ts_analysis/report/fixed_point.h"

#include <gtest/gtest.h>

#include <bit>
#include <cfloat>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <memory>
#include <random>
#include <string>
#include <string_view>

namespace {

constexpr unsigned longest = 330;
constexpr unsigned greatest_precision = 9;

std::string fixed_point_of(double value, unsigned precision)
{
    const std::unique_ptr<char[]> place(new char[longest]);
    return std::string(place.get(), put_fixed_point(place.get(), value, precision));
}

void expect_text(double value, unsigned precision, std::string_view expected)
{
    char text[longest];
    const char *const end = put_fixed_point(text, value, precision);
    ASSERT_EQ(std::string_view(text, static_cast<size_t>(end - text)), expected) << value;
}

/// Both signs at every precision. The C library is asked once for both: emulators run this a million times.
void expect_c_library_text(double value)
{
    const double magnitude = std::fabs(value);
    for (unsigned precision = 0; precision <= greatest_precision; ++precision) {
        char text[longest + 1] = "-";
        const int length = std::snprintf(text + 1, longest, "%.*f", static_cast<int>(precision), magnitude);
        const std::string_view expected(text, static_cast<size_t>(length) + 1);
        expect_text(magnitude, precision, expected.substr(1));
        expect_text(-magnitude, precision, expected);
    }
}

} // namespace

TEST(fixed_point, texts_are_as_written_here)
{
    EXPECT_EQ(fixed_point_of(0.0, 0), "0");
    EXPECT_EQ(fixed_point_of(0.0, 7), "0.0000000");
    EXPECT_EQ(fixed_point_of(-0.0, 3), "-0.000");
    EXPECT_EQ(fixed_point_of(-1.0, 7), "-1.0000000");
    EXPECT_EQ(fixed_point_of(0.125, 2), "0.12");
    EXPECT_EQ(fixed_point_of(0.375, 2), "0.38");
    EXPECT_EQ(fixed_point_of(0.5, 0), "0");
    EXPECT_EQ(fixed_point_of(1.5, 0), "2");
    EXPECT_EQ(fixed_point_of(2.5, 0), "2");
    EXPECT_EQ(fixed_point_of(0.9999999999, 9), "1.000000000");
    EXPECT_EQ(fixed_point_of(9.5, 0), "10");
    EXPECT_EQ(fixed_point_of(95443.717674, 3), "95443.718");
    EXPECT_EQ(fixed_point_of(1e22, 1), "10000000000000000000000.0");
    EXPECT_EQ(fixed_point_of(INFINITY, 3), "inf");
    EXPECT_EQ(fixed_point_of(-INFINITY, 3), "-inf");
    EXPECT_EQ(fixed_point_of(-1e-300, 6), "-0.000000");
}

TEST(fixed_point, extremes_are_those_of_the_c_library)
{
    for (const double value : {0.0, DBL_MIN, DBL_TRUE_MIN, DBL_MAX, DBL_EPSILON, 1.0 - DBL_EPSILON / 2,
                               static_cast<double>(INFINITY), static_cast<double>(NAN)})
        expect_c_library_text(value);
}

TEST(fixed_point, every_power_of_two_and_its_neighbours_are_those_of_the_c_library)
{
    for (int exponent = -1074; exponent <= 1023; ++exponent) {
        const double value = std::ldexp(1.0, exponent);
        expect_c_library_text(value);
        expect_c_library_text(std::nextafter(value, 0.0));
        expect_c_library_text(std::nextafter(value, INFINITY));
    }
}

TEST(fixed_point, every_power_of_ten_and_its_neighbours_are_those_of_the_c_library)
{
    double value = 1e-30;
    for (int exponent = -30; exponent <= 40; ++exponent, value *= 10) {
        expect_c_library_text(value);
        expect_c_library_text(std::nextafter(value, 0.0));
        expect_c_library_text(std::nextafter(value, INFINITY));
        expect_c_library_text(value / 2);
    }
}

TEST(fixed_point, halves_at_every_place_go_to_the_even_neighbour)
{
    for (unsigned places = 0; places <= greatest_precision + 1; ++places)
        for (unsigned n = 0; n < 2000; ++n) {
            const double half = std::ldexp(2.0 * n + 1, -static_cast<int>(places) - 1);
            expect_c_library_text(half);
            expect_c_library_text(std::nextafter(half, 0.0));
            expect_c_library_text(std::nextafter(half, INFINITY));
        }
}

TEST(fixed_point, random_bit_patterns_are_those_of_the_c_library)
{
    std::mt19937_64 random(1);
    for (int i = 0; i < 30000; ++i) expect_c_library_text(std::bit_cast<double>(random()));
}

TEST(fixed_point, random_numbers_of_the_size_of_times_and_rates_are_those_of_the_c_library)
{
    std::mt19937_64 random(2);
    for (int i = 0; i < 30000; ++i) {
        const uint64_t number = random() >> (random() % 64);
        expect_c_library_text(static_cast<double>(number) / 27000000.0);
        expect_c_library_text(static_cast<double>(number) / 1e9);
        expect_c_library_text(std::ldexp(static_cast<double>(number), -static_cast<int>(random() % 128)));
    }
}
