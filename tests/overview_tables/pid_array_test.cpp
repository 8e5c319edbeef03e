#include "mpeg_ts_overview/model/pid_array.h"

#include <gtest/gtest.h>

TEST(pid_array, every_pid_has_an_entry_of_its_own)
{
    pid_array<unsigned> numbers;
    for (uint16_t pid = 0; pid <= mpeg_ts_pid_count; ++pid) EXPECT_EQ(numbers[pid], 0u);
    for (uint16_t pid = 0; pid <= mpeg_ts_pid_count; ++pid) numbers[pid] = pid + 1u;
    for (uint16_t pid = 0; pid <= mpeg_ts_pid_count; ++pid) EXPECT_EQ(numbers[pid], pid + 1u);
}

TEST(pid_array, entries_of_programs_whose_pids_are_a_page_apart_lie_in_different_sets)
{
    pid_array<uint64_t> numbers;
    const auto line_in_page = [&](unsigned program) {
        const auto from_start =
            reinterpret_cast<const char *>(&numbers[static_cast<uint16_t>(program * 0x100)]) -
            reinterpret_cast<const char *>(&numbers[0]);
        return from_start % 4096 / 64;
    };
    for (unsigned a = 0; a < 32; ++a)
        for (unsigned b = 0; b < a; ++b) EXPECT_NE(line_in_page(a), line_in_page(b)) << a << " and " << b;
}
