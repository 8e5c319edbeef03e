#include "tests/overview_timeline/clock_run.h"

#include <gtest/gtest.h>

namespace {

constexpr uint64_t pcr_cycle = (uint64_t{1} << 33) * 300;
constexpr uint16_t one = 0x100;
constexpr uint16_t other = 0x200;

} // namespace

TEST(pcr_clock, time_goes_on_evenly_between_points_and_halves_go_up)
{
    clock_run run;
    run.add(one, 0, 5000);
    run.add(one, 4, 5010);
    run.add(one, 6, 5110);
    run.end(7);
    EXPECT_TRUE(run.is_seamless(7));
    EXPECT_EQ(run.time(0), 0);
    EXPECT_EQ(run.time(1), 3); // 2.5
    EXPECT_EQ(run.time(2), 5);
    EXPECT_EQ(run.time(3), 8); // 7.5
    EXPECT_EQ(run.time(4), 10);
    EXPECT_EQ(run.time(5), 60);
    EXPECT_EQ(run.time(6), 110);
    EXPECT_TRUE(run.breaks().empty());
    EXPECT_EQ(run.clock.first_clock_pid(), one);
}

TEST(pcr_clock, the_first_pid_to_complete_a_regular_span_is_the_clock)
{
    clock_run run;
    run.add(one, 0, 1000);
    run.add(other, 1, 777000);
    run.add(other, 5, 777400);
    run.add(one, 6, 4000);
    run.add(other, 9, 777900);
    run.end(10);
    EXPECT_EQ(run.clock.first_clock_pid(), other);
    EXPECT_EQ(run.time(1), 100);
    EXPECT_EQ(run.time(5), 500);
    EXPECT_EQ(run.time(9), 1000);
    EXPECT_EQ(run.clock.clock_pids(), std::vector<uint16_t>{other});
}

TEST(pcr_clock, packets_before_the_first_point_count_back_at_the_first_rate)
{
    clock_run run;
    run.add(one, 3, 100);
    run.add(one, 5, 105);
    run.end(6);
    EXPECT_EQ(run.time(0), 0);
    EXPECT_EQ(run.time(3), 7); // -7.5 ticks back, halves up
    EXPECT_EQ(run.time(1), 2); // 7 - 5
    EXPECT_EQ(run.time(2), 5); // 7 - 2.5, halves up
    EXPECT_EQ(run.time(5), 12);
    EXPECT_TRUE(run.span_of(0)->extrapolated);
    EXPECT_TRUE(run.span_of(2)->extrapolated);
    EXPECT_FALSE(run.span_of(3)->extrapolated);
}

TEST(pcr_clock, packets_behind_the_last_point_go_on_at_the_mean_of_all_regular_spans)
{
    clock_run run;
    run.add(one, 0, 0);
    run.add(one, 1, 100);
    run.add(one, 4, 1000); // 1000 ticks in 4 packets altogether, 300 a packet at the end
    run.end(10);
    EXPECT_EQ(run.time(4), 1000);
    EXPECT_EQ(run.time(5), 1250);
    EXPECT_EQ(run.time(9), 2250);
    EXPECT_EQ(run.clock.duration_ticks(), 2500);
    EXPECT_TRUE(run.span_of(5)->extrapolated);
    EXPECT_FALSE(run.span_of(4)->extrapolated);
}

TEST(pcr_clock, the_duration_is_the_time_of_a_packet_behind_the_last)
{
    clock_run run;
    run.add(one, 0, 0);
    run.add(one, 2, 301);
    run.end(3);
    EXPECT_EQ(run.clock.duration_ticks(), 452); // 451.5
}

TEST(pcr_clock, irregular_spans_are_not_in_the_mean)
{
    clock_run run;
    run.add(one, 0, 0);
    run.add(one, 10, 1000);
    run.add(one, 20, 900000000); // more than a second
    run.add(one, 30, 900003000);
    run.end(40);
    EXPECT_EQ(run.time(30), 5000);
    EXPECT_EQ(run.clock.duration_ticks(), 5000 + 2000); // 4000 ticks in 20 packets
}

TEST(pcr_clock, a_pcr_that_wraps_goes_on)
{
    clock_run run;
    run.add(one, 0, pcr_cycle - 400);
    run.add(one, 4, 400);
    run.add(one, 8, 1200);
    run.end(9);
    EXPECT_EQ(run.time(2), 400);
    EXPECT_EQ(run.time(4), 800);
    EXPECT_EQ(run.time(8), 1600);
    EXPECT_TRUE(run.breaks().empty());
}

TEST(pcr_clock, a_span_of_one_second_is_regular_and_a_tick_more_is_not)
{
    clock_run good;
    good.add(one, 0, 0);
    good.add(one, 10, 27000000);
    good.end(11);
    EXPECT_EQ(good.time(10), 27000000);
    EXPECT_EQ(good.clock.first_clock_pid(), one);

    clock_run bad;
    bad.add(one, 0, 0);
    bad.add(one, 10, 27000001);
    bad.end(11);
    EXPECT_FALSE(bad.clock.first_clock_pid());
    EXPECT_EQ(bad.time(10), std::nullopt);
    EXPECT_FALSE(bad.clock.duration_ticks());
}

TEST(pcr_clock, a_span_of_one_tick_is_regular_and_an_equal_pcr_is_not)
{
    clock_run run;
    run.add(one, 0, 7);
    run.add(one, 10, 7);
    run.add(one, 20, 8);
    run.end(21);
    EXPECT_EQ(run.time(0), 0);
    EXPECT_EQ(run.time(10), 1);
    EXPECT_EQ(run.time(20), 2);
    ASSERT_EQ(run.breaks().size(), 1u);
    EXPECT_EQ(run.breaks()[0].pcr_jump_ticks, 0);
}

TEST(pcr_clock, a_flag_behind_the_first_point_up_to_the_second_makes_a_span_irregular)
{
    clock_run between;
    between.add(one, 0, 0);
    between.flag(one, 3);
    between.add(one, 6, 600);
    between.add(one, 9, 1200);
    between.end(10);
    EXPECT_EQ(between.breaks().size(), 1u);
    EXPECT_EQ(between.time(9) ? *between.time(9) - *between.time(6) : -1, 600);

    clock_run at_the_second;
    at_the_second.add(one, 0, 0);
    at_the_second.add(one, 6, 600, true);
    at_the_second.add(one, 9, 1200);
    at_the_second.end(10);
    EXPECT_EQ(at_the_second.breaks().size(), 1u);

    clock_run at_the_first;
    at_the_first.add(one, 0, 0, true);
    at_the_first.add(one, 6, 600);
    at_the_first.end(10);
    EXPECT_TRUE(at_the_first.breaks().empty());
    EXPECT_EQ(at_the_first.time(6), 600);
}

TEST(pcr_clock, a_flag_of_another_pid_does_not_matter)
{
    clock_run run;
    run.add(one, 0, 0);
    run.flag(other, 3);
    run.add(one, 6, 600);
    run.flag(other, 8);
    run.add(one, 12, 1200);
    run.end(13);
    EXPECT_TRUE(run.breaks().empty());
    EXPECT_EQ(run.time(12), 1200);
}

TEST(pcr_clock, without_a_point_nothing_has_a_time)
{
    clock_run run;
    run.end(100);
    EXPECT_TRUE(run.is_seamless(100));
    EXPECT_EQ(run.time(0), std::nullopt);
    EXPECT_FALSE(run.clock.duration_ticks());
    EXPECT_FALSE(run.clock.first_clock_pid());
}

TEST(pcr_clock, arrival_ratios_are_those_of_the_regular_spans_of_the_first_65536_packets)
{
    clock_run run;
    run.add(one, 0, 0, false, 1000);
    run.add(one, 10, 100, false, 1110);
    run.add(one, 20, 100, false, 1300); // irregular
    run.add(one, 65535, 200, false, 1350);
    run.add(one, 65536, 300, false, 9999);
    EXPECT_EQ(run.clock.arrival_ratios(), (std::vector<double>{1.1, 0.5}));
}
