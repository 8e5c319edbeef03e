#include "mpeg_ts_overview/meters/program_clock.h"

#include "mpeg_ts_overview/meters/clock_arithmetic.h"

#include <gtest/gtest.h>

namespace {

constexpr uint16_t clock_pid = 0x0101;

moment at_second(int64_t seconds, int64_t stretch = 0)
{
    moment at;
    at.packet = static_cast<uint64_t>(seconds) * 1000;
    at.ticks = seconds * ticks_per_second;
    at.stretch = stretch;
    return at;
}

ts_packet packet_with(std::optional<uint64_t> PCR, const moment &at)
{
    ts_packet packet;
    packet.pid = clock_pid;
    packet.PCR = PCR;
    packet.at = at;
    return packet;
}

} // namespace

struct program_clock_of : testing::Test {
    program_clocks clocks;

    void pcr(uint64_t ticks, const moment &at) { clocks.on_packet(packet_with(ticks, at), {}); }
};

TEST_F(program_clock_of, there_is_none_before_the_first_PCR)
{
    EXPECT_EQ(clocks.at(clock_pid, at_second(1)), std::nullopt);
    pcr(500, at_second(2));
    EXPECT_EQ(clocks.at(clock_pid, at_second(2)), 500);
    EXPECT_EQ(clocks.at(0x0102, at_second(2)), std::nullopt);
}

TEST_F(program_clock_of, it_is_the_last_PCR_and_the_time_since)
{
    pcr(500, at_second(2));
    pcr(10000, at_second(3));
    EXPECT_EQ(clocks.at(clock_pid, at_second(5)), 10000 + 2 * ticks_per_second);
}

TEST_F(program_clock_of, it_wraps_as_a_PCR_does)
{
    pcr(static_cast<uint64_t>(pcr_cycle_ticks) - 100, at_second(2));
    EXPECT_EQ(clocks.at(clock_pid, at_second(3)), ticks_per_second - 100);
}

TEST_F(program_clock_of, a_discontinuity_ends_it_up_to_the_next_PCR)
{
    pcr(500, at_second(2));
    ts_packet flagged = packet_with(std::nullopt, at_second(3));
    flagged.discontinuity_indicator = true;
    clocks.on_packet(flagged, {});
    EXPECT_EQ(clocks.at(clock_pid, at_second(4)), std::nullopt);

    flagged.PCR = 7;
    flagged.at = at_second(5);
    clocks.on_packet(flagged, {});
    EXPECT_EQ(clocks.at(clock_pid, at_second(5)), 7);
}

TEST_F(program_clock_of, a_time_break_ends_it_up_to_the_next_PCR)
{
    pcr(500, at_second(2));
    EXPECT_EQ(clocks.at(clock_pid, at_second(3, 1)), std::nullopt);
    pcr(600, at_second(4, 1));
    EXPECT_EQ(clocks.at(clock_pid, at_second(4, 1)), 600);
}

TEST_F(program_clock_of, without_times_it_is_known_in_the_packet_of_a_PCR_only)
{
    moment without_time = at_second(2);
    without_time.ticks.reset();
    pcr(500, without_time);
    EXPECT_EQ(clocks.at(clock_pid, without_time), 500);
    without_time.packet += 1;
    EXPECT_EQ(clocks.at(clock_pid, without_time), std::nullopt);
}

TEST_F(program_clock_of, the_indicator_and_leaps_of_more_than_100_ms_are_discontinuities)
{
    ts_packet flagged = packet_with(std::nullopt, at_second(1));
    flagged.discontinuity_indicator = true;
    clocks.on_packet(flagged, {});
    pcr(500, at_second(2));
    pcr(500 + ticks_per_second / 10, at_second(3));
    EXPECT_EQ(clocks.discontinuities_of(clock_pid), 0u);
    EXPECT_EQ(clocks.discontinuities_of(std::nullopt), 0u);
    pcr(501 + ticks_per_second / 5, at_second(4));
    EXPECT_EQ(clocks.discontinuities_of(clock_pid), 1u);
    pcr(500, at_second(5));
    EXPECT_EQ(clocks.discontinuities_of(clock_pid), 2u);

    flagged.PCR = 7 * ticks_per_second; // a leap that was announced is one discontinuity
    clocks.on_packet(flagged, {});
    EXPECT_EQ(clocks.discontinuities_of(clock_pid), 3u);
    EXPECT_EQ(clocks.discontinuities_of(0x0102), 0u);
}

TEST_F(program_clock_of, the_null_pid_is_no_clock)
{
    ts_packet null_packet = packet_with(500, at_second(2));
    null_packet.pid = mpeg_ts_padding_pid;
    clocks.on_packet(null_packet, {});
    EXPECT_EQ(clocks.at(mpeg_ts_padding_pid, at_second(2)), std::nullopt);
}

TEST_F(program_clock_of, duplicates_and_packets_with_errors_say_nothing)
{
    pcr(500, at_second(2));
    packet_sequence duplicate;
    duplicate.duplicate = true;
    clocks.on_packet(packet_with(9, at_second(3)), duplicate);
    ts_packet damaged = packet_with(9, at_second(3));
    damaged.transport_error_indicator = true;
    clocks.on_packet(damaged, {});
    EXPECT_EQ(clocks.at(clock_pid, at_second(3)), 500 + ticks_per_second);
}
