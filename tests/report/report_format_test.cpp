#include "tests/support/report_test.h"

#include <cfloat>
#include <climits>
#include <cmath>
#include <cstdio>
#include <limits>
#include <random>

struct report_formats : report_test {
    std::mt19937_64 random{20100401};

    /// Numbers of every size, the extremes of every integer type among them.
    std::vector<unsigned long long> numbers()
    {
        std::vector<unsigned long long> out = {0, 1, 9, 10, 99, 100, 12345678, 123456789};
        for (unsigned bit = 0; bit < 64; ++bit)
            for (const int step : {-1, 0, 1})
                out.push_back((1ull << bit) + static_cast<unsigned long long>(step));
        for (int i = 0; i < 2000; ++i) out.push_back(random() >> (random() % 64));
        const size_t count = out.size();
        for (size_t i = 0; i < count; ++i) out.push_back(0 - out[i]);
        return out;
    }

    std::vector<double> reals()
    {
        std::vector<double> out = {0.0,     -0.0,     0.5,      1.5,      2.5,   -0.5,
                                   -1.0,    1e9,      DBL_MAX,  -DBL_MAX, 1e300, std::nextafter(0.5, 1),
                                   DBL_MIN, INFINITY, -INFINITY};
        for (const unsigned long long number : numbers()) {
            out.push_back(static_cast<double>(number) / 27000000.0);
            out.push_back(static_cast<double>(static_cast<long long>(number)) / 90000.0);
        }
        return out;
    }
};

/// Prints the same with the C library and with the report and compares.
#define EXPECT_AS_PRINTF(format, ...)                                             \
    do {                                                                          \
        char expected[1024];                                                      \
        ASSERT_LT(std::snprintf(expected, sizeof(expected), format, __VA_ARGS__), \
                  static_cast<int>(sizeof(expected)));                            \
        report_printf(format, __VA_ARGS__);                                       \
        ASSERT_EQ(report(), expected) << format;                                  \
    } while (false)

TEST_F(report_formats, unsigned_decimals_are_those_of_the_c_library)
{
    for (const unsigned long long number : numbers()) {
        const auto n = static_cast<unsigned>(number);
        EXPECT_AS_PRINTF("%u", n);
        EXPECT_AS_PRINTF("%-2u|", n);
        EXPECT_AS_PRINTF("%02u", n);
        EXPECT_AS_PRINTF("%03u", n);
        EXPECT_AS_PRINTF("%04u", n);
        EXPECT_AS_PRINTF("%12u", n);
        EXPECT_AS_PRINTF("%-12u|", n);
        EXPECT_AS_PRINTF("%u", static_cast<uint8_t>(number));
        EXPECT_AS_PRINTF("%u", static_cast<uint16_t>(number));
        EXPECT_AS_PRINTF("%u", static_cast<int>(n));
    }
}

TEST_F(report_formats, signed_decimals_are_those_of_the_c_library)
{
    for (const unsigned long long number : numbers()) {
        EXPECT_AS_PRINTF("%d", static_cast<int>(number));
        EXPECT_AS_PRINTF("%12d", static_cast<int>(number));
        EXPECT_AS_PRINTF("%012d", static_cast<int>(number));
        EXPECT_AS_PRINTF("%-12d|", static_cast<int>(number));
        EXPECT_AS_PRINTF("%d", static_cast<unsigned>(number));
        EXPECT_AS_PRINTF("%d", static_cast<int8_t>(number));
        EXPECT_AS_PRINTF("%d", static_cast<int16_t>(number));
        EXPECT_AS_PRINTF("%d", static_cast<uint8_t>(number));
        EXPECT_AS_PRINTF("%d", static_cast<uint16_t>(number));
    }
}

TEST_F(report_formats, hexadecimals_are_those_of_the_c_library)
{
    for (const unsigned long long number : numbers()) {
        const auto n = static_cast<unsigned>(number);
        EXPECT_AS_PRINTF("%x", n);
        EXPECT_AS_PRINTF("%1x", n);
        EXPECT_AS_PRINTF("%01x", n);
        EXPECT_AS_PRINTF("%02x", n);
        EXPECT_AS_PRINTF("%03x", n);
        EXPECT_AS_PRINTF("%04x", n);
        EXPECT_AS_PRINTF("%05x", n);
        EXPECT_AS_PRINTF("%06x", n);
        EXPECT_AS_PRINTF("%08x", n);
        EXPECT_AS_PRINTF("%X", n);
        EXPECT_AS_PRINTF("%4X", n);
        EXPECT_AS_PRINTF("%08X", n);
        EXPECT_AS_PRINTF("%02x", static_cast<uint8_t>(number));
        EXPECT_AS_PRINTF("%04x", static_cast<uint16_t>(number));
        EXPECT_AS_PRINTF("%x", static_cast<int>(n));
    }
}

TEST_F(report_formats, numbers_of_64_bits_are_those_of_the_c_library)
{
    for (const unsigned long long number : numbers()) {
        EXPECT_AS_PRINTF("%llu", number);
        EXPECT_AS_PRINTF("%-8llu|", number);
        EXPECT_AS_PRINTF("%24llu", number);
        EXPECT_AS_PRINTF("%lld", number);
        EXPECT_AS_PRINTF("%lld", static_cast<long long>(number));
        EXPECT_AS_PRINTF("%024lld", static_cast<long long>(number));
        EXPECT_AS_PRINTF("%-24lld|", static_cast<long long>(number));
        EXPECT_AS_PRINTF("%llx", number);
        EXPECT_AS_PRINTF("%010llx", number);
        EXPECT_AS_PRINTF("%llX", number);
    }
}

TEST_F(report_formats, fixed_point_numbers_are_those_of_the_c_library)
{
    for (const double number : reals()) {
        EXPECT_AS_PRINTF("%f", number);
        EXPECT_AS_PRINTF("%.0f", number);
        EXPECT_AS_PRINTF("%.1f", number);
        EXPECT_AS_PRINTF("%.3f", number);
        EXPECT_AS_PRINTF("%.6f", number);
        EXPECT_AS_PRINTF("%.7f", number);
        EXPECT_AS_PRINTF("%.9f", number);
    }
}

TEST_F(report_formats, texts_are_put_whole)
{
    char place[] = "in an array";
    EXPECT_AS_PRINTF("<%s>", "");
    EXPECT_AS_PRINTF("%s", "eng");
    EXPECT_AS_PRINTF("%s", static_cast<char *>(place));
    EXPECT_AS_PRINTF("%s%s%s", "a", "", "b");
    EXPECT_AS_PRINTF("%s", "100% \xE2\x82\xAC");
}

TEST_F(report_formats, every_character_is_put_as_it_is)
{
    for (int c = 0; c <= 0xFF; ++c) {
        report_printf("<%c>", c);
        EXPECT_EQ(report(), (std::string{'<', static_cast<char>(c), '>'})) << c;
        report_printf("%c", static_cast<char>(c));
        EXPECT_EQ(report(), (std::string{static_cast<char>(c)})) << c;
        report_printf("%c", static_cast<uint8_t>(c));
        EXPECT_EQ(report(), (std::string{static_cast<char>(c)})) << c;
    }
}

TEST_F(report_formats, pointers_are_those_of_the_c_library)
{
    const uint8_t byte = 0;
    EXPECT_AS_PRINTF("nxt=%p s=%p", static_cast<const void *>(&byte), static_cast<const void *>(&byte + 1));
    for (const unsigned long long number : numbers()) {
        const auto address = static_cast<uintptr_t>(number);
        if (address != 0) EXPECT_AS_PRINTF("%p", reinterpret_cast<const void *>(address));
    }
}

TEST_F(report_formats, constant_text_stands_around_and_between_conversions)
{
    report_printf("no conversion at all\n");
    EXPECT_EQ(report(), "no conversion at all\n");
    report_printf("");
    EXPECT_EQ(report(), "");
    EXPECT_AS_PRINTF("%u%x%s%c%d%llu%.3f%lld", 1u, 255u, "text", 'c', -7, 1ull << 40, 2.5, -(1ll << 40));
    EXPECT_AS_PRINTF("@%-8llu (t=%.7f) TS PACKET: PID=0x%04x CONT=%-2u ERR=%u PRI=%u SCRAM=%u\n", 188ull,
                     -1.0, 0x1FFFu, 7u, 0u, 1u, 3u);
    EXPECT_AS_PRINTF("PID 0x0%4X TABLE raw contents. length=%u\n", 0x12u, 13u);
}

TEST_F(report_formats, a_conversion_takes_only_what_it_can_print)
{
    using enum report_conversion;
    for (const report_conversion number :
         {unsigned_decimal, signed_decimal, hexadecimal, upper_hexadecimal}) {
        EXPECT_TRUE(report_accepts<unsigned>(number, false));
        EXPECT_TRUE(report_accepts<int>(number, false));
        EXPECT_TRUE(report_accepts<uint8_t>(number, false));
        EXPECT_TRUE(report_accepts<uint16_t>(number, false));
        EXPECT_TRUE(report_accepts<unsigned long long>(number, true));
        EXPECT_TRUE(report_accepts<long long>(number, true));
        EXPECT_FALSE(report_accepts<unsigned long long>(number, false));
        EXPECT_FALSE(report_accepts<unsigned>(number, true));
        EXPECT_FALSE(report_accepts<double>(number, false));
        EXPECT_FALSE(report_accepts<const char *>(number, false));
    }
    EXPECT_TRUE(report_accepts<char>(character, false));
    EXPECT_TRUE(report_accepts<int>(character, false));
    EXPECT_FALSE(report_accepts<long long>(character, false));
    EXPECT_FALSE(report_accepts<int>(character, true));
    EXPECT_TRUE(report_accepts<const char *>(text, false));
    EXPECT_TRUE(report_accepts<char *>(text, false));
    EXPECT_FALSE(report_accepts<const uint8_t *>(text, false));
    EXPECT_FALSE(report_accepts<std::nullptr_t>(text, false));
    EXPECT_TRUE(report_accepts<const void *>(pointer, false));
    EXPECT_TRUE(report_accepts<const uint8_t *>(pointer, false));
    EXPECT_FALSE(report_accepts<unsigned>(pointer, false));
    EXPECT_TRUE(report_accepts<double>(fixed_point, false));
    EXPECT_FALSE(report_accepts<int>(fixed_point, false));
    EXPECT_FALSE(report_accepts<unsigned>(none, false));
}
