#include "mpeg_ts_analysis/report/direct_line.h"

#include "tests/support/report_test.h"

#include <cstdio>
#include <random>

struct direct_lines : report_test {};

TEST_F(direct_lines, parts_follow_one_another)
{
    direct_line()
        .text("@")
        .decimal_left_aligned(188, 8)
        .text(" t=")
        .fixed_point(-1.0, 7)
        .text(" PID=0x")
        .hexadecimal(0x1ABC, 4);
    direct_line().digit(0).digit(9).text("\n");
    EXPECT_EQ(report(), "@188      t=-1.0000000 PID=0x1abc09\n");
}

TEST_F(direct_lines, every_part_is_what_its_format_prints)
{
    std::mt19937_64 random(10);
    for (int i = 0; i < 20000; ++i) {
        const unsigned long long number = random() >> (random() % 64);
        const auto small = static_cast<unsigned>(number & 0xFFFF);
        const double time = static_cast<double>(number) / 27000000.0;
        char expected[512];
        std::snprintf(expected, sizeof(expected), "%-8llu|%-2llu|%02llu|%010llu|%04x|%.7f|%u\n", number,
                      number % 100, number % 60, number, small, time, small % 10);
        direct_line()
            .decimal_left_aligned(number, 8)
            .text("|")
            .decimal_left_aligned(number % 100, 2)
            .text("|")
            .decimal(number % 60, 2)
            .text("|")
            .decimal(number, 10)
            .text("|")
            .hexadecimal(small, 4)
            .text("|")
            .fixed_point(time, 7)
            .text("|")
            .digit(small % 10)
            .text("\n");
        ASSERT_EQ(report(), expected);
    }
}
