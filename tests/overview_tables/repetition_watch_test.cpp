#include "mpeg_ts_overview/tables/repetition_watch.h"

#include "tests/overview_meters/meter_packets.h"

#include <gtest/gtest.h>

namespace {

constexpr watched_thing thing = {0x100, 0, std::nullopt, std::nullopt, "thing"};

/// A limit of 100 ms on one thing, whose clock runs from the start or from its first arrival.
struct watched {
    explicit watched(after_break anew = after_break::at_once) : watch(stretches, anew)
    {
        watch.add_limit(100 * ms, false);
    }

    void pass(const moment &at) { stretches.see(at); }
    void begin(const moment &at)
    {
        stretches.see(at);
        clock = watch.started(at);
    }
    void arrive(const moment &at)
    {
        stretches.see(at);
        watch.arrive(clock, at, thing);
    }
    void arrive_first(const moment &at)
    {
        stretches.see(at);
        clock = watch.started_by_arrival(at);
    }
    void arrive_by_own_clock(const moment &at, int64_t ticks)
    {
        stretches.see(at);
        watch.arrive_by_own_clock(clock, ticks, at, thing);
    }
    void end(const moment &at)
    {
        stretches.see(at);
        watch.end(clock, at, thing);
    }
    const repetition_findings &found(bool sure = false) const { return watch.limit(0).findings(sure); }
    const violation_log &log() const { return found().log; }

    time_stretches stretches{100 * ms};
    repetition_watch watch;
    repetition_clock clock;
};

} // namespace

TEST(repetition, exactly_the_limit_is_good_and_a_tick_more_is_not)
{
    watched one;
    one.arrive(moment_at(0, 0));
    one.arrive(moment_at(1, 100 * ms));
    EXPECT_EQ(one.log().count, 0u);
    EXPECT_EQ(one.found().longest_ticks, 100 * ms);
    one.arrive(moment_at(2, 200 * ms + 1));
    EXPECT_EQ(one.log().count, 1u);
    EXPECT_EQ(one.log().first.packet, 2u);
    EXPECT_EQ(one.log().details[0].text, "no thing for 100.000037 ms");
    EXPECT_EQ(one.found().longest_ticks, 100 * ms + 1);
}

TEST(repetition, the_piece_to_the_first_arrival_counts_when_it_alone_breaks_the_limit)
{
    watched one;
    one.begin(moment_at(0, 0));
    one.arrive(moment_at(1, 100 * ms));
    EXPECT_EQ(one.log().count, 0u);
    EXPECT_FALSE(one.found().longest_ticks) << "no interval yet";
    one.begin(moment_at(2, 110 * ms));
    one.arrive(moment_at(3, 211 * ms));
    EXPECT_EQ(one.log().count, 1u);
    EXPECT_EQ(one.found().longest_ticks, 101 * ms);
}

TEST(repetition, before_the_first_arrival_nothing_counts_where_that_starts_the_clock)
{
    watched one;
    one.pass(moment_at(0, 0));
    one.arrive_first(moment_at(1, 500 * ms));
    one.arrive(moment_at(2, 580 * ms));
    EXPECT_EQ(one.log().count, 0u);
    EXPECT_EQ(one.found().longest_ticks, 80 * ms);
    EXPECT_FALSE(one.watch.limit(0).is_measured(false));
}

TEST(repetition, the_piece_to_the_end_counts_when_it_alone_breaks_the_limit)
{
    watched good;
    good.arrive(moment_at(0, 0));
    good.end(moment_at(9, 100 * ms));
    EXPECT_EQ(good.log().count, 0u);

    watched bad;
    bad.arrive(moment_at(0, 0));
    bad.end(moment_at(9, 101 * ms));
    EXPECT_EQ(bad.log().count, 1u);
    EXPECT_EQ(bad.log().first.packet, 9u);
}

TEST(repetition, an_interval_over_a_break_counts_nowhere)
{
    watched one;
    one.arrive(moment_at(0, 0));
    one.pass(moment_at(1, 90 * ms));
    one.pass(moment_at(5, 900 * ms, 1));
    one.arrive(moment_at(6, 990 * ms, 1));
    EXPECT_EQ(one.log().count, 0u);
    EXPECT_FALSE(one.found().longest_ticks);
}

TEST(repetition, the_piece_before_a_break_counts_at_the_break)
{
    watched one;
    one.arrive(moment_at(0, 0));
    one.pass(moment_at(1, 120 * ms));
    one.pass(moment_at(3, 500 * ms, -1));
    one.pass(moment_at(5, 900 * ms, 1));
    one.arrive(moment_at(6, 910 * ms, 1));
    EXPECT_EQ(one.log().count, 1u);
    EXPECT_EQ(one.log().first.packet, 1u);
    EXPECT_EQ(one.log().details[0].text, "no thing for 120 ms");
}

TEST(repetition, the_piece_before_a_break_counts_when_another_break_follows_it)
{
    for (const after_break anew : {after_break::at_once, after_break::at_the_next_arrival}) {
        watched one(anew);
        one.arrive_first(moment_at(0, 0));
        one.pass(moment_at(1, 120 * ms));
        one.pass(moment_at(5, 900 * ms, 1));
        one.pass(moment_at(6, 1150 * ms, 1));
        one.arrive(moment_at(9, 2000 * ms, 2));
        EXPECT_EQ(one.log().count, anew == after_break::at_once ? 2u : 1u);
        EXPECT_EQ(one.log().first.packet, 1u);
    }
}

TEST(repetition, the_piece_behind_a_break_counts_where_the_clock_starts_at_the_break)
{
    for (const after_break anew : {after_break::at_once, after_break::at_the_next_arrival}) {
        watched one(anew);
        one.arrive_first(moment_at(0, 0));
        one.pass(moment_at(5, 900 * ms, 1));
        one.arrive(moment_at(6, 1001 * ms, 1));
        EXPECT_EQ(one.log().count, anew == after_break::at_once ? 1u : 0u);
        one.end(moment_at(9, 1102 * ms, 1));
        EXPECT_EQ(one.log().count, anew == after_break::at_once ? 2u : 1u);
    }
}

TEST(repetition, the_pieces_on_both_sides_of_a_break_count_each)
{
    watched one;
    one.arrive(moment_at(0, 0));
    one.pass(moment_at(1, 150 * ms));
    one.pass(moment_at(5, 900 * ms, 1));
    one.arrive(moment_at(6, 1100 * ms, 1));
    EXPECT_EQ(one.log().count, 2u);
    EXPECT_EQ(one.log().first.packet, 1u);
    EXPECT_EQ(one.log().last.packet, 6u);
    EXPECT_EQ(one.found().longest_ticks, 200 * ms);
}

TEST(repetition, an_arrival_inside_a_break_is_none)
{
    watched one;
    one.arrive(moment_at(0, 0));
    one.pass(moment_at(1, 50 * ms));
    one.arrive(moment_at(2, 700 * ms, -1));
    one.arrive(moment_at(3, 900 * ms, -1));
    EXPECT_EQ(one.log().count, 0u);
    EXPECT_FALSE(one.found().longest_ticks);
}

TEST(repetition, the_clock_starts_at_the_first_packet_with_a_time)
{
    watched one;
    one.begin(moment_at(0, std::nullopt));
    one.pass(moment_at(5, 0));
    one.arrive(moment_at(6, 101 * ms));
    EXPECT_EQ(one.log().count, 1u);
}

TEST(repetition, without_times_nothing_is_measured)
{
    watched one;
    one.arrive(moment_at(0, std::nullopt));
    one.arrive(moment_at(1000, std::nullopt));
    one.end(moment_at(5000, std::nullopt));
    EXPECT_EQ(one.log().count, 0u);
    EXPECT_FALSE(one.watch.limit(0).is_measured(false));
}

TEST(repetition, it_is_measured_once_a_clock_ran_as_long_as_the_limit_without_a_break)
{
    watched one;
    one.arrive(moment_at(0, 0));
    one.arrive(moment_at(1, 60 * ms));
    one.arrive(moment_at(2, 200 * ms, 1));
    one.arrive(moment_at(3, 260 * ms, 1));
    EXPECT_FALSE(one.watch.limit(0).is_measured(false));
    one.end(moment_at(4, 300 * ms, 1));
    EXPECT_TRUE(one.watch.limit(0).is_measured(false));
}

TEST(repetition, sure_times_lie_between_the_first_clock_point_and_the_last)
{
    watched one;
    one.arrive(extrapolated(moment_at(0, 0)));
    one.pass(moment_at(5, 150 * ms));   // the first clock point
    one.arrive(moment_at(6, 200 * ms)); // 50 ms behind it
    one.pass(moment_at(9, 280 * ms));   // the last clock point, 80 ms on
    one.arrive(extrapolated(moment_at(20, 500 * ms)));
    one.end(extrapolated(moment_at(30, 900 * ms)));
    EXPECT_EQ(one.log().count, 3u);
    EXPECT_EQ(one.found(true).log.count, 0u);
    EXPECT_TRUE(one.watch.limit(0).is_measured(true));
}

TEST(repetition, what_is_cut_off_at_the_clock_points_counts_when_it_alone_breaks_the_limit)
{
    watched one;
    one.arrive(extrapolated(moment_at(0, 0)));
    one.pass(moment_at(5, 50 * ms));
    one.arrive(moment_at(6, 151 * ms));
    one.pass(moment_at(9, 252 * ms));
    one.end(extrapolated(moment_at(30, 260 * ms)));
    EXPECT_EQ(one.found(true).log.count, 2u);
    EXPECT_EQ(one.found(true).log.first.packet, 6u);
    EXPECT_EQ(one.found(true).log.last.packet, 9u);
}

TEST(repetition, ticks_of_its_own_clock_go_before_those_of_the_times)
{
    watched one;
    one.arrive_first(moment_at(0, 0));
    one.arrive_by_own_clock(moment_at(1, 900 * ms, 7), 40 * ms);
    EXPECT_EQ(one.log().count, 0u);
    one.arrive_by_own_clock(moment_at(2, std::nullopt), 101 * ms);
    EXPECT_EQ(one.log().count, 1u);
    EXPECT_EQ(one.found(true).log.count, 1u);
    EXPECT_TRUE(one.watch.limit(0).is_measured(true));
}

TEST(repetition, an_arrival_inside_a_break_ends_the_piece_before_it)
{
    watched one;
    one.arrive_first(moment_at(0, 0));
    one.pass(moment_at(1, 150 * ms));
    one.arrive(moment_at(2, 400 * ms, -1));
    EXPECT_EQ(one.log().count, 1u);
    EXPECT_EQ(one.log().first.packet, 1u);
    one.arrive_by_own_clock(moment_at(3, 480 * ms, -1), 80 * ms);
    one.arrive(moment_at(5, 900 * ms, 1));
    EXPECT_EQ(one.log().count, 1u);
}

TEST(repetition, its_own_clock_runs_from_arrival_to_arrival)
{
    watched one;
    one.arrive_first(moment_at(0, std::nullopt));
    one.arrive_by_own_clock(moment_at(1, std::nullopt), 60 * ms);
    EXPECT_FALSE(one.watch.limit(0).is_measured(false));
    one.arrive_by_own_clock(moment_at(2, std::nullopt), 40 * ms);
    EXPECT_TRUE(one.watch.limit(0).is_measured(false));
    EXPECT_EQ(one.found().longest_ticks, 60 * ms);
}

TEST(repetition, a_piece_behind_an_arrival_by_its_own_clock_begins_there)
{
    watched one;
    one.arrive_first(moment_at(0, 0));
    one.arrive_by_own_clock(moment_at(1, 90 * ms), 90 * ms);
    one.end(moment_at(2, 190 * ms));
    EXPECT_EQ(one.log().count, 0u);

    watched over_a_break;
    over_a_break.arrive_first(moment_at(0, 0));
    over_a_break.pass(moment_at(1, 150 * ms));
    over_a_break.arrive_by_own_clock(moment_at(5, 900 * ms, 1), 90 * ms);
    over_a_break.end(moment_at(9, 1000 * ms, 1));
    EXPECT_EQ(over_a_break.log().count, 0u);
}
