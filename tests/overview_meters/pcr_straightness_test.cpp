#include "mpeg_ts_overview/meters/pcr.h"

#include "tests/overview_meters/meter_packets.h"

#include <gtest/gtest.h>

#include <cmath>

namespace {

constexpr uint16_t pid = 0x100;

/// A meter, and PCRs every 10 packets and step ticks.
struct straight_meter {
    void add(int count, int64_t off = 0)
    {
        for (int i = 0; i < count; ++i) add_one(off);
    }
    void add_one(int64_t off)
    {
        ts_packet packet =
            pcr_packet(clock, moment_at(static_cast<uint64_t>(number) * 10, number * time_step, stretch),
                       number * step + off);
        stretches.see(packet.at);
        if (arrival_step != 0) packet.arrival_ticks = number * arrival_step;
        meter.on_packet(packet, {}, true);
        ++number;
    }
    pcr_facts row()
    {
        end.at = moment_at(static_cast<uint64_t>(number) * 10, number * time_step);
        return meter.finish(end, [](uint16_t) { return false; }).at(0);
    }

    time_stretches stretches{100 * ms};
    pcr_meter meter{stretches, 100 * ms, 500};
    recording_end end{.at = {}, .constant_bitrate = true, .clock_pids = {}};
    uint16_t clock = pid;
    int64_t number = 0;
    int64_t step = 10 * ms;
    int64_t time_step = 10 * ms;
    int64_t arrival_step = 0;
    int64_t stretch = 0;
};

} // namespace

TEST(pcr_straightness, pcrs_on_a_line_leave_nothing)
{
    straight_meter pcrs;
    pcrs.add(1500);
    const pcr_facts row = pcrs.row();
    ASSERT_TRUE(row.residual);
    EXPECT_LT(std::abs(row.residual->min_ns), 1e-6);
    EXPECT_LT(row.residual->max_ns, 1e-6);
    EXPECT_LT(row.residual->rms_ns, 1e-6);
    EXPECT_STREQ(row.basis, "index");
    EXPECT_EQ(pcrs.meter.residuals().count, 0u);
    EXPECT_TRUE(pcrs.meter.residuals().worst);
}

TEST(pcr_straightness, pcrs_of_the_null_pid_are_measured_but_break_no_limit)
{
    straight_meter pcrs;
    pcrs.clock = 0x1FFF;
    pcrs.add(30);
    pcrs.add_one(ms);
    pcrs.add(30);
    EXPECT_GT(pcrs.row().residual->max_ns, 900000);
    EXPECT_EQ(pcrs.meter.residuals().count, 0u);
    EXPECT_FALSE(pcrs.meter.residuals().worst);
}

TEST(pcr_straightness, a_pcr_that_is_off_by_more_than_the_limit_is_found)
{
    straight_meter pcrs;
    pcrs.add(50);
    pcrs.add(1, 17); // 629.6 ns
    pcrs.add(50);
    const pcr_facts row = pcrs.row();
    const double expected = 17 * (1e9 / 27e6) * 100 / 101; // in the middle of 101
    EXPECT_NEAR(row.residual.value().max_ns, expected, 1e-6);
    EXPECT_NEAR(row.residual.value().min_ns, -17 * (1e9 / 27e6) / 101, 1e-6);
    EXPECT_NEAR(row.residual.value().rms_ns, 17 * (1e9 / 27e6) * std::sqrt(100.0) / 101, 1e-6);
    const violation_log &log = pcrs.meter.residuals();
    EXPECT_EQ(log.count, 1u);
    EXPECT_EQ(log.first.packet, 500u);
    EXPECT_EQ(log.first.byte, 500u * 188);
    EXPECT_EQ(log.first.ticks, 500 * ms);
    EXPECT_NEAR(log.worst.value(), expected, 1e-6);
    EXPECT_EQ(log.details.at(0).text, "PCR off by 623.395673 ns");
}

TEST(pcr_straightness, a_jitter_of_600_ns_breaks_the_limit_on_both_sides)
{
    straight_meter pcrs;
    for (int i = 0; i < 50; ++i) {
        pcrs.add(1, 16); // 592.6 ns
        pcrs.add(1, -16);
    }
    EXPECT_NEAR(pcrs.row().residual.value().rms_ns, 592.6, 1);
    EXPECT_EQ(pcrs.meter.residuals().count, 100u);
}

TEST(pcr_straightness, a_jitter_below_the_limit_breaks_nothing)
{
    straight_meter pcrs;
    for (int i = 0; i < 50; ++i) {
        pcrs.add(1, 13); // 481.5 ns
        pcrs.add(1, -13);
    }
    pcrs.row();
    EXPECT_EQ(pcrs.meter.residuals().count, 0u);
    // The line leans by 650 / 83325 ticks a PCR; the last but one is 48.5 PCRs from the middle.
    EXPECT_NEAR(pcrs.meter.residuals().worst.value(), (13 + 48.5 * 650 / 83325) * (1e9 / 27e6), 1e-6);
}

TEST(pcr_straightness, below_20_pcrs_a_window_is_not_measured)
{
    for (const int count : {19, 20}) {
        straight_meter pcrs;
        pcrs.add(count);
        const pcr_facts row = pcrs.row();
        EXPECT_EQ(row.residual.has_value(), count == 20);
        EXPECT_EQ(row.residual_series.size(), count == 20 ? 1u : 0u);
        EXPECT_EQ(pcrs.meter.residuals().worst.has_value(), count == 20);
    }
}

TEST(pcr_straightness, a_window_closes_when_it_reaches_10_s_and_the_next_begins_with_the_next_pcr)
{
    for (const int more : {19, 20}) {
        straight_meter pcrs;
        pcrs.add(1001 + more); // 1000 intervals of 10 ms
        const pcr_facts row = pcrs.row();
        ASSERT_EQ(row.residual_series.size(), more == 20 ? 2u : 1u);
        EXPECT_EQ(row.residual_series[0].ticks, 0);
        EXPECT_EQ(row.residual_series.back().ticks, more == 20 ? 1001 * 10 * ms : 0);
    }
}

TEST(pcr_straightness, a_window_closes_when_it_passes_10_s)
{
    straight_meter pcrs;
    pcrs.step = pcrs.time_step = 30 * ms; // 10.02 s after 334 intervals
    pcrs.add(335 + 20);
    const pcr_facts row = pcrs.row();
    ASSERT_EQ(row.residual_series.size(), 2u);
    EXPECT_EQ(row.residual_series[1].ticks, 335 * 30 * ms);
}

TEST(pcr_straightness, a_window_closes_when_it_holds_4096_points)
{
    straight_meter pcrs;
    pcrs.step = pcrs.time_step = ms;
    pcrs.add(4096 + 20);
    const pcr_facts row = pcrs.row();
    ASSERT_EQ(row.residual_series.size(), 2u);
    EXPECT_EQ(row.residual_series[1].ticks, 4096 * ms);
}

TEST(pcr_straightness, a_window_closes_at_a_discontinuity_and_what_is_left_counts)
{
    for (const bool with_flag : {true, false}) {
        straight_meter pcrs;
        pcrs.add(20);
        const ts_packet flag = flagged(packet_of(pid, moment_at(195, 195 * ms)));
        if (with_flag) pcrs.meter.on_packet(flag, {}, true);
        if (!with_flag) pcrs.number += 10; // a leap of 110 ms
        pcrs.add(20, with_flag ? 0 : 1000);
        EXPECT_EQ(pcrs.row().residual_series.size(), 2u);
        EXPECT_EQ(pcrs.meter.residuals().count, 0u);
    }
}

TEST(pcr_straightness, a_window_closes_at_bad_slots_breaks_and_transport_errors_of_any_pid)
{
    for (const bool transport_error : {false, true}) {
        straight_meter pcrs;
        pcrs.add(20);
        if (!transport_error) pcrs.meter.on_disturbance();
        if (transport_error) {
            ts_packet broken = packet_of(0x1FFF, moment_at(195, 195 * ms));
            broken.transport_error_indicator = true;
            pcrs.meter.on_packet(broken, {}, false);
        }
        pcrs.add(20);
        EXPECT_EQ(pcrs.row().residual_series.size(), 2u) << transport_error;
    }
}

TEST(pcr_straightness, a_window_goes_on_into_an_irregular_span_to_its_end)
{
    straight_meter pcrs;
    pcrs.add(20);
    pcrs.stretch = -1;
    pcrs.add(25);
    pcrs.stretch = 1;
    pcrs.meter.on_disturbance();
    pcrs.add(30);
    const pcr_facts row = pcrs.row();
    ASSERT_EQ(row.residual_series.size(), 2u);
    EXPECT_EQ(row.residual_series[1].ticks, 450 * ms);
}

TEST(pcr_straightness, copies_close_no_window)
{
    straight_meter pcrs;
    pcrs.add(20);
    pcrs.meter.on_packet(pcr_packet(pid, moment_at(191, 191 * ms), 0), copy_of_the_packet_before(), true);
    pcrs.add(20);
    EXPECT_EQ(pcrs.row().residual_series.size(), 1u);
}

TEST(pcr_straightness, pcrs_behind_the_last_packet_before_a_continuity_error_are_dropped)
{
    for (const uint64_t last_before : {189u, 190u}) {
        straight_meter pcrs;
        pcrs.add(20);     // up to packet 190
        pcrs.add(15, 90); // late by a loss that shows later
        pcrs.meter.on_continuity_error(last_before);
        pcrs.add(10, 90);
        const pcr_facts row = pcrs.row();
        EXPECT_EQ(row.residual_series.size(), last_before == 190 ? 1u : 0u);
        EXPECT_EQ(pcrs.meter.residuals().count, 0u);
    }
}

TEST(pcr_straightness, a_loss_that_shows_later_takes_pcrs_out_of_windows_that_have_closed)
{
    for (const uint64_t last_before : {189u, 190u, 600u}) {
        straight_meter pcrs;
        pcrs.add(20);     // up to packet 190
        pcrs.add(15, 90); // late by a loss that shows later
        pcrs.meter.on_disturbance();
        pcrs.add(25, 90);
        pcrs.meter.on_continuity_error(last_before);
        pcrs.add(10, 90);
        const pcr_facts row = pcrs.row();
        EXPECT_EQ(row.residual_series.size(), last_before == 600 ? 2u : last_before == 190 ? 1u : 0u);
        EXPECT_EQ(pcrs.meter.residuals().count > 0, last_before == 600);
    }
}

TEST(pcr_straightness, windows_that_closed_long_ago_are_measured)
{
    straight_meter pcrs;
    for (int i = 0; i < 60; ++i) {
        pcrs.add(20);
        pcrs.meter.on_disturbance();
    }
    pcrs.meter.on_continuity_error(0);
    EXPECT_EQ(pcrs.row().residual_series.size(), 60 - waiting_point_limit / 20);
}

TEST(pcr_straightness, a_continuity_error_of_a_pid_without_a_packet_before_drops_the_window)
{
    straight_meter pcrs;
    pcrs.add(30);
    pcrs.meter.on_continuity_error(std::nullopt);
    EXPECT_FALSE(pcrs.row().residual);
}

TEST(pcr_straightness, where_the_bitrate_varies_the_residual_is_that_over_the_arrival_times)
{
    straight_meter pcrs;
    pcrs.end.constant_bitrate = false;
    pcrs.end.has_arrival_times = true;
    pcrs.arrival_step = 10 * ms;
    pcrs.add(40);
    pcrs.add(1, 27);
    const pcr_facts row = pcrs.row();
    EXPECT_STREQ(row.basis, "arrival");
    EXPECT_GT(row.residual.value().max_ns, 800);
    EXPECT_EQ(row.residual_series.size(), 1u);
}

TEST(pcr_straightness, arrival_and_index_are_fitted_each_by_itself)
{
    for (const bool constant : {true, false}) {
        straight_meter pcrs;
        pcrs.end.constant_bitrate = constant;
        pcrs.step = 10 * ms;
        for (int i = 0; i < 40; ++i) {
            ts_packet packet = pcr_packet(pid, moment_at(static_cast<uint64_t>(i * i), i * ms), i * 10 * ms);
            packet.arrival_ticks = i * 10 * ms + 77;
            pcrs.meter.on_packet(packet, {}, true);
        }
        const bool straight = pcrs.row().residual.value().max_ns < 1e-6;
        EXPECT_EQ(straight, !constant);
    }
}

TEST(pcr_straightness, where_the_bitrate_varies_and_nothing_has_an_arrival_time_there_is_no_residual)
{
    straight_meter pcrs;
    pcrs.end.constant_bitrate = false;
    pcrs.add(40);
    const pcr_facts row = pcrs.row();
    EXPECT_FALSE(row.residual);
    EXPECT_EQ(row.basis, nullptr);
    EXPECT_TRUE(row.residual_series.empty());
}

TEST(pcr_straightness, arrival_times_that_stand_still_give_no_residual)
{
    straight_meter pcrs;
    pcrs.end.constant_bitrate = false;
    for (int i = 0; i < 40; ++i) {
        ts_packet packet = pcr_packet(pid, moment_at(static_cast<uint64_t>(i), i * ms), i * ms);
        packet.arrival_ticks = 0;
        pcrs.meter.on_packet(packet, {}, true);
    }
    EXPECT_FALSE(pcrs.row().residual);
}

TEST(pcr_straightness, the_rate_offset_is_the_slope_over_time_minus_1)
{
    straight_meter pcrs;
    pcrs.time_step = 1000000;
    pcrs.step = 1000010;
    pcrs.add(20);
    pcrs.meter.on_disturbance();
    pcrs.time_step = 500000;
    pcrs.number *= 2;
    pcrs.step = 500010;
    pcrs.add(20);
    const pcr_facts row = pcrs.row();
    ASSERT_TRUE(row.rate_offset);
    EXPECT_NEAR(row.rate_offset->min_ppm, 10, 1e-9);
    EXPECT_NEAR(row.rate_offset->max_ppm, 20, 1e-9);
}

TEST(pcr_straightness, the_clock_of_the_times_has_no_rate_offset)
{
    straight_meter pcrs;
    pcrs.end.clock_pids = {0x99, pid};
    pcrs.add(40);
    EXPECT_FALSE(pcrs.row().rate_offset);
}

TEST(pcr_straightness, inside_a_break_and_without_times_there_is_no_rate_offset)
{
    straight_meter inside;
    inside.stretch = -1;
    inside.add(40);
    EXPECT_FALSE(inside.row().rate_offset);

    straight_meter untimed;
    for (int i = 0; i < 40; ++i)
        untimed.meter.on_packet(pcr_packet(pid, moment_at(static_cast<uint64_t>(i), std::nullopt), i * ms),
                                {}, true);
    const pcr_facts row = untimed.row();
    EXPECT_FALSE(row.rate_offset);
    ASSERT_TRUE(row.residual);
    EXPECT_FALSE(row.residual_series[0].ticks);
}

TEST(pcr_straightness, violations_stand_in_order_of_packets_whatever_window_closes_first)
{
    straight_meter pcrs;
    pcrs.add(30);
    pcrs.add(1, 40);
    for (int i = 0; i < 41; ++i)
        pcrs.meter.on_packet(
            pcr_packet(0x200, moment_at(static_cast<uint64_t>(i), i * ms, 0), i * ms + (i == 20 ? 40 : 0)),
            {}, true);
    pcrs.add(30);
    pcrs.row();
    const violation_log &log = pcrs.meter.residuals();
    ASSERT_EQ(log.count, 2u);
    EXPECT_EQ(log.first.packet, 20u);
    EXPECT_EQ(log.details[0].pid, 0x200);
    EXPECT_EQ(log.last.packet, 300u);
}
