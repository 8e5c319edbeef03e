#include "tests/support/report_test.h"

#include "mpeg_ts_analysis/health/clocks.h"

struct clocks : report_test {};

TEST_F(clocks, there_is_none_at_the_start)
{
    for (unsigned program_number = 0; program_number < program_count; ++program_number)
        ASSERT_EQ(program_clock_get(static_cast<uint16_t>(program_number)), nullptr);
}

TEST_F(clocks, a_new_one_is_unlocked_and_has_no_PCR_PID)
{
    program_clock *const clock = program_clock_create(0x1234, 0x0ABC);
    ASSERT_NE(clock, nullptr);
    EXPECT_EQ(clock->program_number, 0x1234);
    EXPECT_EQ(clock->pmt_pid, 0x0ABC);
    EXPECT_EQ(clock->pcr_pid, 0);
    EXPECT_EQ(clock->last_pcr_time, -1.0);
    EXPECT_EQ(clock->base_time, -9999999999999.0);
    EXPECT_EQ(clock->base_pcr, 0u);
    EXPECT_EQ(program_clock_get(0x1234), clock);
}

TEST_F(clocks, one_that_exists_is_returned_as_it_stands)
{
    program_clock *const clock = program_clock_create(7, 0x100);
    clock->pcr_pid = 0x101;
    clock->base_time = 5.0;
    EXPECT_EQ(program_clock_create(7, 0x200), clock);
    EXPECT_EQ(clock->pmt_pid, 0x100);
    EXPECT_EQ(clock->pcr_pid, 0x101);
    EXPECT_EQ(clock->base_time, 5.0);
}

TEST_F(clocks, every_program_number_has_a_place_of_its_own)
{
    program_clock *const first = program_clock_create(0, 0x10);
    program_clock *const last = program_clock_create(0xFFFF, 0x20);
    EXPECT_NE(first, last);
    EXPECT_EQ(program_clock_get(0), first);
    EXPECT_EQ(program_clock_get(0xFFFF), last);
    EXPECT_EQ(program_clock_get(1), nullptr);
}

TEST_F(clocks, free_takes_one_and_free_all_takes_the_rest)
{
    for (const uint16_t program_number : {uint16_t{0}, uint16_t{1}, uint16_t{2}, uint16_t{0xFFFF}})
        program_clock_create(program_number, 0x100);
    program_clock *const kept = program_clock_get(2);

    program_clock_free(1);
    EXPECT_EQ(program_clock_get(1), nullptr);
    EXPECT_EQ(program_clock_get(2), kept);
    program_clock_free(1);
    EXPECT_EQ(program_clock_get(1), nullptr);

    program_clock_free_all();
    for (unsigned program_number = 0; program_number < program_count; ++program_number)
        ASSERT_EQ(program_clock_get(static_cast<uint16_t>(program_number)), nullptr);
}
