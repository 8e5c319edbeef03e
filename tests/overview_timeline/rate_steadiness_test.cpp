#include "mpeg_ts_overview/timeline/rate_steadiness.h"

#include <gtest/gtest.h>

namespace {

constexpr int64_t tenth = 2700000; ///< 100 ms

/// So many stretches of a span each.
void add(rate_steadiness &rate, unsigned stretches, int64_t packets, int64_t ticks = tenth)
{
    for (unsigned i = 0; i < stretches; ++i) rate.add_span(packets, ticks);
}

} // namespace

TEST(steadiness, nineteen_stretches_are_too_few_and_twenty_enough)
{
    rate_steadiness rate;
    EXPECT_FALSE(rate.is_constant());
    add(rate, 19, 1000);
    EXPECT_FALSE(rate.is_constant());
    add(rate, 1, 1000);
    EXPECT_TRUE(rate.is_constant());
}

TEST(steadiness, spans_are_joined_until_they_last_100_ms)
{
    rate_steadiness rate;
    add(rate, 59, 500, tenth / 2 - 1); // each stretch takes three
    EXPECT_FALSE(rate.is_constant());
    add(rate, 1, 500, tenth / 2 - 1);
    EXPECT_TRUE(rate.is_constant());
}

TEST(steadiness, spans_of_uneven_rate_that_even_out_in_a_stretch_are_constant)
{
    rate_steadiness rate;
    for (int i = 0; i < 20; ++i) {
        rate.add_span(900, tenth / 2);
        rate.add_span(1100, tenth / 2);
    }
    EXPECT_TRUE(rate.is_constant());
}

TEST(steadiness, what_was_joined_before_a_break_is_no_stretch)
{
    rate_steadiness rate;
    for (int i = 0; i < 40; ++i) {
        rate.add_span(500, tenth / 2);
        rate.on_break();
    }
    EXPECT_FALSE(rate.is_constant());
    add(rate, 19, 1000);
    rate.add_span(100, tenth / 2); // another rate, but no stretch
    rate.on_break();
    add(rate, 1, 1000);
    EXPECT_TRUE(rate.is_constant());
}

TEST(steadiness, ninety_five_percent_are_enough)
{
    rate_steadiness rate;
    add(rate, 19, 1000);
    add(rate, 1, 2000);
    EXPECT_TRUE(rate.is_constant()); // 19 of 20
    add(rate, 1, 2000);
    EXPECT_FALSE(rate.is_constant()); // 19 of 21
    add(rate, 19, 1000);
    EXPECT_TRUE(rate.is_constant()); // 38 of 40
}

TEST(steadiness, a_hundred_ppm_from_the_median_is_steady_and_more_is_not)
{
    for (const int64_t away : {-99, 99}) {
        rate_steadiness near;
        add(near, 15, 1000000);
        add(near, 5, 1000000 + away);
        EXPECT_TRUE(near.is_constant()) << away;
    }
    for (const int64_t away : {-101, 101}) {
        rate_steadiness far;
        add(far, 15, 1000000);
        add(far, 5, 1000000 + away);
        EXPECT_FALSE(far.is_constant()) << away;
    }
}

TEST(steadiness, only_the_first_4096_stretches_count)
{
    rate_steadiness early;
    add(early, 4096, 1000);
    add(early, 4096, 2000);
    EXPECT_TRUE(early.is_constant());

    rate_steadiness late;
    add(late, 300, 2000);
    add(late, 3796, 1000);
    EXPECT_FALSE(late.is_constant());
    add(late, 10000, 1000);
    EXPECT_FALSE(late.is_constant());
}
