// Where the clock cannot be followed: irregular spans, a clock that ends, one that comes late.
#include "tests/overview_timeline/clock_run.h"

#include <gtest/gtest.h>

namespace {

constexpr uint64_t pcr_cycle = (uint64_t{1} << 33) * 300;
constexpr uint16_t one = 0x100;
constexpr uint16_t other = 0x200;

/// A clock of 10 ticks a packet, whose last point is packet 10.
clock_run running_clock()
{
    clock_run run;
    run.add(one, 0, 0);
    run.add(one, 10, 100);
    return run;
}

} // namespace

TEST(clock_breaks, in_an_irregular_span_time_goes_on_at_the_rate_of_the_last_regular_one)
{
    clock_run run = running_clock();
    run.add(one, 20, 5000000000);
    run.add(one, 25, 5000000500);
    run.end(26);
    EXPECT_TRUE(run.is_seamless(26));
    EXPECT_EQ(run.time(11), 110);
    EXPECT_EQ(run.time(20), 200);
    EXPECT_EQ(run.time(21), 300);
    EXPECT_EQ(run.time(25), 700);
    EXPECT_FALSE(run.inside_break(10));
    EXPECT_TRUE(run.inside_break(11));
    EXPECT_TRUE(run.inside_break(19));
    EXPECT_FALSE(run.inside_break(20));
    ASSERT_EQ(run.breaks().size(), 1u);
    EXPECT_EQ(run.breaks()[0].first, 20u);
    EXPECT_EQ(run.breaks()[0].break_before, time_break_kind::irregular_span);
    EXPECT_EQ(run.breaks()[0].pcr_jump_ticks, 5000000000 - 100);
}

TEST(clock_breaks, the_jump_is_the_signed_nearest_difference)
{
    clock_run back = running_clock();
    back.add(one, 20, 40);
    ASSERT_EQ(back.breaks().size(), 1u);
    EXPECT_EQ(back.breaks()[0].pcr_jump_ticks, -60);

    clock_run over_the_wrap = running_clock();
    over_the_wrap.add(one, 20, pcr_cycle - 900);
    ASSERT_EQ(over_the_wrap.breaks().size(), 1u);
    EXPECT_EQ(over_the_wrap.breaks()[0].pcr_jump_ticks, -1000);
}

TEST(clock_breaks, the_span_behind_a_break_sets_the_rate_again)
{
    clock_run run = running_clock();
    run.add(one, 20, 40);  // back: irregular, 10 ticks a packet
    run.add(one, 30, 340); // 30 ticks a packet
    run.add(one, 40, 40);  // back again: 30 ticks a packet
    run.end(41);
    EXPECT_EQ(run.time(20), 200);
    EXPECT_EQ(run.time(30), 500);
    EXPECT_EQ(run.time(40), 800);
}

TEST(clock_breaks, irregular_spans_before_the_first_regular_one_count_back_and_are_breaks)
{
    clock_run run;
    run.add(one, 5, 9000);
    run.add(one, 10, 1000);
    run.add(one, 20, 1200);
    run.end(21);
    EXPECT_TRUE(run.is_seamless(21));
    for (uint64_t i = 0; i <= 20; ++i) EXPECT_EQ(run.time(i), static_cast<int64_t>(20 * i));
    ASSERT_EQ(run.breaks().size(), 1u);
    EXPECT_EQ(run.breaks()[0].first, 10u);
    EXPECT_EQ(run.breaks()[0].pcr_jump_ticks, -8000);
    EXPECT_FALSE(run.inside_break(5));
    EXPECT_TRUE(run.inside_break(6));
    EXPECT_TRUE(run.span_of(4)->extrapolated);
    EXPECT_FALSE(run.span_of(5)->extrapolated);
}

TEST(clock_breaks, irregular_spans_of_pids_that_do_not_become_the_clock_are_none)
{
    clock_run run;
    run.add(other, 1, 9000);
    run.add(other, 2, 1000);
    run.add(one, 5, 100);
    run.add(one, 10, 200);
    run.end(11);
    EXPECT_TRUE(run.breaks().empty());
}

TEST(clock_breaks, the_65536th_packet_behind_a_point_may_still_be_one)
{
    clock_run run = running_clock();
    run.add(one, 10 + 65536, 65636);
    run.end(10 + 65537);
    EXPECT_TRUE(run.breaks().empty());
    EXPECT_EQ(run.time(10 + 65536), 100 + 65536);
    EXPECT_EQ(run.time(10 + 32768), 100 + 32768);
    EXPECT_TRUE(run.is_seamless(10 + 65537));
}

TEST(clock_breaks, behind_65536_packets_without_a_point_any_pid_takes_over)
{
    clock_run run = running_clock();
    run.add(other, 1000, 777); // not the clock yet
    run.add(other, 10 + 65537, 5000);
    run.add(one, 10 + 65540, 123456); // not the clock any more
    run.add(other, 10 + 65547, 5400);
    run.end(10 + 65548);
    ASSERT_EQ(run.breaks().size(), 1u);
    EXPECT_EQ(run.breaks()[0].first, 10u + 65537);
    EXPECT_EQ(run.breaks()[0].break_before, time_break_kind::clock_change);
    EXPECT_FALSE(run.breaks()[0].pcr_jump_ticks);
    EXPECT_EQ(run.time(10 + 65537), 100 + 655370);
    EXPECT_EQ(run.time(10 + 65547), 100 + 655370 + 400);
    EXPECT_TRUE(run.inside_break(11));
    EXPECT_TRUE(run.inside_break(10 + 65536));
    EXPECT_FALSE(run.inside_break(10 + 65537));
    EXPECT_EQ(run.clock.clock_pids(), (std::vector<uint16_t>{one, other}));
    EXPECT_EQ(run.clock.first_clock_pid(), one);
    EXPECT_TRUE(run.is_seamless(10 + 65548));
}

TEST(clock_breaks, the_new_clock_may_be_the_old_pid_again)
{
    clock_run run = running_clock();
    run.add(one, 10 + 65537, 5000);
    run.add(one, 10 + 65539, 5100);
    run.end(10 + 65540);
    ASSERT_EQ(run.breaks().size(), 1u);
    EXPECT_EQ(run.breaks()[0].break_before, time_break_kind::clock_change);
    EXPECT_EQ(run.time(10 + 65539), 100 + 655370 + 100);
    EXPECT_EQ(run.clock.clock_pids(), (std::vector<uint16_t>{one}));
}

TEST(clock_breaks, a_packet_with_a_flag_alone_takes_nothing_over)
{
    clock_run run = running_clock();
    run.flag(other, 10 + 65537);
    run.add(other, 10 + 65540, 1);
    run.end(10 + 65541);
    ASSERT_EQ(run.breaks().size(), 1u);
    EXPECT_EQ(run.breaks()[0].first, 10u + 65540);
}

TEST(clock_breaks, no_regular_span_within_65536_packets_leaves_them_without_a_time)
{
    clock_run run;
    run.add(one, 100, 0);
    run.add(one, 65536, 500);
    run.add(one, 65636, 1500);
    run.end(65637);
    EXPECT_TRUE(run.is_seamless(65637));
    EXPECT_EQ(run.time(65535), std::nullopt);
    EXPECT_TRUE(run.time(65536));
    EXPECT_EQ(*run.time(65636) - *run.time(65536), 1000);
}

TEST(clock_breaks, a_span_within_the_first_65536_packets_gives_all_of_them_a_time)
{
    clock_run run;
    run.add(one, 65534, 500);
    run.add(one, 65535, 501);
    run.end(65537);
    EXPECT_EQ(run.time(0), 0);
    EXPECT_EQ(run.time(65535), 65535);
}

TEST(clock_breaks, a_late_clock_has_the_time_0_at_the_first_point_of_its_first_regular_span)
{
    clock_run run;
    run.add(one, 70000, 100);
    run.add(one, 70010, 90); // back
    run.add(one, 70020, 190);
    run.end(70021);
    EXPECT_TRUE(run.is_seamless(70021));
    EXPECT_EQ(run.time(70009), std::nullopt);
    EXPECT_EQ(run.time(70010), 0);
    EXPECT_EQ(run.time(70020), 100);
    EXPECT_TRUE(run.breaks().empty());
    EXPECT_EQ(run.clock.duration_ticks(), 110);
}

TEST(clock_breaks, the_first_span_may_be_65536_packets_long_and_no_longer)
{
    clock_run good;
    good.add(one, 10, 0);
    good.add(one, 10 + 65536, 65536);
    good.end(10 + 65537);
    EXPECT_EQ(good.time(65535), std::nullopt);
    EXPECT_EQ(good.time(65536), 65526);
    EXPECT_EQ(good.time(10 + 65536), 65536);

    clock_run bad;
    bad.add(one, 10, 0);
    bad.add(one, 10 + 65537, 65537);
    bad.end(10 + 65538);
    EXPECT_EQ(bad.time(10 + 65537), std::nullopt);
    EXPECT_FALSE(bad.clock.first_clock_pid());
}

TEST(clock_breaks, what_was_joined_before_a_change_of_clock_is_no_stretch)
{
    // Spans of 60 ms, each behind a change of clock: none of them is joined to another.
    clock_run run;
    uint64_t index = 0;
    for (int i = 0; i < 45; ++i, index += 65537 + 10) {
        run.add(one, index, 0);
        run.add(one, index + 10, 1620000);
    }
    EXPECT_FALSE(run.clock.is_bitrate_constant());
    for (uint64_t i = 1; i <= 40; ++i) run.add(one, index - 65537 + 10 * i, 1620000 * (i + 1));
    EXPECT_TRUE(run.clock.is_bitrate_constant());
}

TEST(clock_breaks, what_was_joined_before_an_irregular_span_is_no_stretch)
{
    clock_run run;
    uint64_t index = 0;
    for (int i = 0; i < 45; ++i, index += 20) {
        run.add(one, index, 0);
        run.add(one, index + 10, 1620000);
    }
    EXPECT_FALSE(run.clock.is_bitrate_constant());
}
