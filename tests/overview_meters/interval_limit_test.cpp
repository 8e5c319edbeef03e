#include "mpeg_ts_overview/meters/interval_limit.h"

#include "tests/overview_meters/meter_packets.h"

#include <gtest/gtest.h>

namespace {

/// A limit of 100 ms on things of one PID.
struct watched_thing {
    explicit watched_thing(after_break anew = after_break::at_the_break) : limit("thing", 100 * ms, anew) {}

    void pass(const moment &at) { limit.see(at); }
    void begin(const moment &at)
    {
        limit.see(at);
        interval_limit::begin(watch, at);
    }
    void arrive(const moment &at)
    {
        limit.see(at);
        limit.arrive(watch, 0x100, at);
    }
    void end(const moment &at) { limit.end(watch, 0x100, at); }
    const violation_log &log() const { return limit.log(false); }
    const violation_log &sure_log() const { return limit.log(true); }

    interval_limit limit;
    interval_watch watch;
};

} // namespace

TEST(interval_limit, exactly_the_limit_is_good_and_a_tick_more_is_not)
{
    watched_thing thing;
    thing.arrive(moment_at(0, 0));
    thing.arrive(moment_at(1, 100 * ms));
    EXPECT_EQ(thing.log().count, 0u);
    EXPECT_EQ(thing.log().worst, 0.1);
    thing.arrive(moment_at(2, 200 * ms + 1));
    EXPECT_EQ(thing.log().count, 1u);
    EXPECT_EQ(thing.log().first.packet, 2u);
    EXPECT_EQ(thing.log().details[0].text, "no thing for 100.000037 ms");
    EXPECT_DOUBLE_EQ(thing.log().worst.value(), 2700001 / 27e6);
}

TEST(interval_limit, the_piece_to_the_first_arrival_counts_when_it_alone_breaks_the_limit)
{
    watched_thing thing;
    thing.begin(moment_at(0, 0));
    thing.arrive(moment_at(1, 100 * ms));
    EXPECT_EQ(thing.log().count, 0u);
    EXPECT_FALSE(thing.log().worst); // no interval yet
    thing.begin(moment_at(2, 110 * ms));
    thing.arrive(moment_at(3, 211 * ms));
    EXPECT_EQ(thing.log().count, 1u);
    EXPECT_DOUBLE_EQ(thing.log().worst.value(), 0.101);
}

TEST(interval_limit, the_piece_to_the_end_counts_when_it_alone_breaks_the_limit)
{
    watched_thing good;
    good.arrive(moment_at(0, 0));
    good.end(moment_at(9, 100 * ms));
    EXPECT_EQ(good.log().count, 0u);

    watched_thing bad;
    bad.arrive(moment_at(0, 0));
    bad.end(moment_at(9, 101 * ms));
    EXPECT_EQ(bad.log().count, 1u);
    EXPECT_EQ(bad.log().first.packet, 9u);
    bad.end(moment_at(10, 400 * ms)); // it does not run any more
    EXPECT_EQ(bad.log().count, 1u);
}

TEST(interval_limit, an_interval_over_a_break_counts_nowhere)
{
    watched_thing thing;
    thing.arrive(moment_at(0, 0));
    thing.pass(moment_at(1, 90 * ms));
    thing.pass(moment_at(5, 900 * ms, 1));
    thing.arrive(moment_at(6, 990 * ms, 1));
    EXPECT_EQ(thing.log().count, 0u);
    EXPECT_FALSE(thing.log().worst);
}

TEST(interval_limit, the_piece_before_a_break_counts_at_the_break)
{
    watched_thing thing;
    thing.arrive(moment_at(0, 0));
    thing.pass(moment_at(1, 120 * ms));
    thing.pass(moment_at(3, 500 * ms, -1));
    thing.pass(moment_at(5, 900 * ms, 1));
    thing.arrive(moment_at(6, 910 * ms, 1));
    EXPECT_EQ(thing.log().count, 1u);
    EXPECT_EQ(thing.log().first.packet, 1u);
    EXPECT_EQ(thing.log().details[0].text, "no thing for 120 ms");
}

TEST(interval_limit, the_piece_behind_a_break_counts_where_the_clock_starts_at_the_break)
{
    for (const bool at_break : {true, false}) {
        watched_thing thing(at_break ? after_break::at_the_break : after_break::at_the_next_arrival);
        thing.arrive(moment_at(0, 0));
        thing.pass(moment_at(5, 900 * ms, 1));
        thing.arrive(moment_at(6, 1001 * ms, 1));
        EXPECT_EQ(thing.log().count, at_break ? 1u : 0u);
    }
}

TEST(interval_limit, one_gap_with_a_break_in_it_counts_once_by_its_longer_piece)
{
    watched_thing thing;
    thing.arrive(moment_at(0, 0));
    thing.pass(moment_at(1, 150 * ms));
    thing.pass(moment_at(5, 900 * ms, 1));
    thing.arrive(moment_at(6, 1100 * ms, 1));
    EXPECT_EQ(thing.log().count, 1u);
    EXPECT_EQ(thing.log().first.packet, 6u);
    EXPECT_DOUBLE_EQ(thing.log().worst.value(), 0.2);
}

TEST(interval_limit, an_arrival_inside_a_break_ends_the_piece_before_it)
{
    watched_thing thing;
    thing.arrive(moment_at(0, 0));
    thing.pass(moment_at(1, 50 * ms));
    thing.arrive(moment_at(2, 700 * ms, -1));
    thing.arrive(moment_at(3, 900 * ms, -1));
    EXPECT_EQ(thing.log().count, 0u);
}

TEST(interval_limit, the_clock_starts_at_the_first_packet_with_a_time)
{
    watched_thing thing;
    thing.begin(moment_at(0, std::nullopt));
    thing.pass(moment_at(5, 0));
    thing.arrive(moment_at(6, 101 * ms));
    EXPECT_EQ(thing.log().count, 1u);
}

TEST(interval_limit, without_times_nothing_is_measured)
{
    watched_thing thing;
    thing.arrive(moment_at(0, std::nullopt));
    thing.arrive(moment_at(1000, std::nullopt));
    thing.end(moment_at(5000, std::nullopt));
    EXPECT_EQ(thing.log().count, 0u);
    EXPECT_FALSE(thing.limit.measured(false));
}

TEST(interval_limit, it_is_measured_once_a_clock_ran_as_long_as_the_limit_without_a_break)
{
    watched_thing thing;
    thing.arrive(moment_at(0, 0));
    thing.arrive(moment_at(1, 60 * ms));
    thing.arrive(moment_at(2, 200 * ms, 1));
    thing.arrive(moment_at(3, 260 * ms, 1));
    EXPECT_FALSE(thing.limit.measured(false));
    thing.end(moment_at(4, 300 * ms, 1));
    EXPECT_TRUE(thing.limit.measured(false));
}

TEST(interval_limit, sure_times_lie_between_the_first_clock_point_and_the_last)
{
    watched_thing thing;
    thing.arrive(extrapolated(moment_at(0, 0)));
    thing.pass(moment_at(5, 150 * ms));   // the first clock point
    thing.arrive(moment_at(6, 200 * ms)); // 50 ms behind it
    thing.pass(moment_at(9, 280 * ms));   // the last clock point, 80 ms on
    thing.arrive(extrapolated(moment_at(20, 500 * ms)));
    thing.end(extrapolated(moment_at(30, 900 * ms)));
    EXPECT_EQ(thing.log().count, 3u);
    EXPECT_EQ(thing.sure_log().count, 0u);
    EXPECT_TRUE(thing.limit.measured(true));
}

TEST(interval_limit, what_is_cut_off_at_the_clock_points_counts_when_it_alone_breaks_the_limit)
{
    watched_thing thing;
    thing.arrive(extrapolated(moment_at(0, 0)));
    thing.pass(moment_at(5, 50 * ms));
    thing.arrive(moment_at(6, 151 * ms));
    thing.pass(moment_at(9, 252 * ms));
    thing.end(extrapolated(moment_at(30, 260 * ms)));
    EXPECT_EQ(thing.sure_log().count, 2u);
    EXPECT_EQ(thing.sure_log().first.packet, 6u);
    EXPECT_EQ(thing.sure_log().last.packet, 9u);
}

TEST(interval_limit, ticks_of_a_clock_go_before_those_of_the_times)
{
    watched_thing thing;
    thing.arrive(moment_at(0, 0));
    thing.limit.arrive(thing.watch, 0x100, moment_at(1, 900 * ms, 7), 40 * ms);
    EXPECT_EQ(thing.log().count, 0u);
    thing.limit.arrive(thing.watch, 0x100, moment_at(2, std::nullopt), 101 * ms);
    EXPECT_EQ(thing.log().count, 1u);
    EXPECT_EQ(thing.sure_log().count, 1u);
    EXPECT_TRUE(thing.limit.measured(true));
}
