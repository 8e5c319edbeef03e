#include "tests/overview_meters/stamped_stream.h"

#include "mpeg_ts_overview/meters/clock_arithmetic.h"

#include <gtest/gtest.h>

TEST(time_stamps_margin, it_is_the_dts_minus_the_last_pcr_and_the_time_since)
{
    stamped_stream s;
    s.pcr(moment_at(0, 1000 * ms), 0);
    s.unit(video_pid, moment_at(1, 1010 * ms), 300 * stamp_ms, 100 * stamp_ms);
    s.unit(video_pid, moment_at(2, 1030 * ms), 130 * stamp_ms); // the PTS without it
    const time_stamp_facts row = s.row();
    EXPECT_EQ(row.margin_ticks.count, 2u);
    EXPECT_EQ(row.margin_ticks.min, 90 * ms);
    EXPECT_EQ(row.margin_ticks.max, 100 * ms);
    EXPECT_EQ(row.late, 0u);
}

TEST(time_stamps_margin, clock_and_stamp_wrap_together)
{
    stamped_stream s;
    s.pcr(moment_at(0, 0), pcr_cycle_ticks - 50 * ms);
    s.unit(video_pid, moment_at(1, 10 * ms), 100 * stamp_ms);
    s.unit(video_pid, moment_at(2, 20 * ms), time_stamp_cycle - 20 * stamp_ms);
    const time_stamp_facts row = s.row();
    EXPECT_EQ(row.margin_ticks.max, 140 * ms);
    EXPECT_EQ(row.margin_ticks.min, 10 * ms);
}

TEST(time_stamps_margin, a_stamp_a_tick_behind_the_clock_is_late)
{
    stamped_stream s;
    s.pcr(moment_at(0, 0), 40 * ms);
    s.unit(video_pid, moment_at(1, 0), 40 * stamp_ms);
    EXPECT_EQ(s.row().late, 0u);
    EXPECT_EQ(s.meter.late().count, 0u);
    s.unit(video_pid, moment_at(2, 1), 40 * stamp_ms);
    EXPECT_EQ(s.row().late, 1u);
    ASSERT_EQ(s.meter.late().count, 1u);
    EXPECT_EQ(s.meter.late().first.packet, 2u);
    EXPECT_EQ(s.meter.late().details[0].text, "late by 0.000037 ms");
}

TEST(time_stamps_margin, beyond_10_s_to_either_side_it_is_unrelated_and_goes_nowhere)
{
    stamped_stream s;
    s.pcr(moment_at(0, 0), 20000 * ms);
    s.unit(audio_pid, moment_at(1, 0), 30000 * stamp_ms);
    s.unit(audio_pid, moment_at(2, 0), 30000 * stamp_ms + 1);
    s.unit(video_pid, moment_at(3, 0), 10000 * stamp_ms);
    s.unit(video_pid, moment_at(4, 0), 10000 * stamp_ms - 1);
    const auto rows = s.finish(moment_at(5, 1));
    for (const time_stamp_facts &row : rows) {
        EXPECT_EQ(row.unrelated, 1u);
        EXPECT_EQ(row.margin_ticks.count, 1u);
    }
    EXPECT_EQ(rows[0].margin_ticks.max, 10000 * ms);
    EXPECT_EQ(rows[1].margin_ticks.min, -10000 * ms);
    EXPECT_EQ(rows[0].late, 0u);
    EXPECT_EQ(rows[1].late, 1u);
}

TEST(time_stamps_margin, there_is_none_before_the_first_pcr_of_the_program)
{
    stamped_stream s;
    s.add(pcr_packet(0x1E0, moment_at(0, 0), 0));
    s.unit(video_pid, moment_at(1, 0), 1000);
    EXPECT_EQ(s.row().margin_ticks.count, 0u);
}

TEST(time_stamps_margin, the_pcr_in_the_packet_itself_counts_in_a_break_too_but_not_without_times)
{
    for (const moment &at : {moment_at(7, 0), moment_at(7, std::nullopt), moment_at(7, 0, -1)}) {
        stamped_stream s;
        s.pcr_pid = video_pid;
        ts_packet packet = s.unit_start(video_pid, at, pes_packet(0xE0, {}, 30 * stamp_ms));
        packet.PCR = uint64_t{10 * ms};
        s.add(packet);
        EXPECT_EQ(s.row().margin_ticks.count, at.ticks ? 1u : 0u);
        EXPECT_EQ(s.row().margin_ticks.max, at.ticks ? 20 * ms : 0);
    }
}

TEST(time_stamps_margin, there_is_none_from_a_discontinuity_of_the_clock_to_its_next_pcr)
{
    stamped_stream s;
    s.pcr(moment_at(0, 0), 0);
    s.add(flagged(packet_of(clock_pid, moment_at(1, 0))));
    s.unit(video_pid, moment_at(2, 0), 1000);
    EXPECT_EQ(s.row().margin_ticks.count, 0u);
    s.pcr(moment_at(3, 0), 0);
    s.unit(video_pid, moment_at(4, 0), 1000);
    EXPECT_EQ(s.row().margin_ticks.count, 1u);
}

TEST(time_stamps_margin, there_is_none_from_a_time_break_to_the_next_pcr)
{
    stamped_stream s;
    s.pcr(moment_at(0, 0), 0);
    s.unit(video_pid, moment_at(1, 1, -1), 1000);
    s.unit(video_pid, moment_at(2, 2, 1), 1000);
    EXPECT_EQ(s.row().margin_ticks.count, 0u);
    s.pcr(moment_at(3, 3, 1), 0);
    s.unit(video_pid, moment_at(4, 4, 1), 1000);
    EXPECT_EQ(s.row().margin_ticks.count, 1u);
}

TEST(time_stamps_margin, copies_broken_packets_and_the_null_pid_are_no_clock)
{
    stamped_stream s;
    const ts_packet clock = pcr_packet(clock_pid, moment_at(0, 0), 0);
    s.add(clock, copy_of_the_packet_before());
    ts_packet broken = clock;
    broken.transport_error_indicator = true;
    s.add(broken);
    s.unit(video_pid, moment_at(1, 0), 1000);
    s.pcr_pid = 0x1FFF;
    s.add(pcr_packet(0x1FFF, moment_at(2, 0), 0));
    s.unit(video_pid, moment_at(3, 0), 2000);
    EXPECT_EQ(s.row().margin_ticks.count, 0u);
}

TEST(time_stamps_margin, a_scrambled_packet_may_still_have_the_clock)
{
    stamped_stream s;
    ts_packet clock = pcr_packet(clock_pid, moment_at(0, 0), 0);
    clock.transport_scrambling_control = 3;
    s.add(clock);
    s.unit(video_pid, moment_at(1, 0), 90);
    EXPECT_EQ(s.row().margin_ticks.max, ms);
}

TEST(time_stamps_margin, the_series_has_the_margins_of_each_bucket)
{
    stamped_stream s;
    s.pcr(moment_at(0, 0), 0);
    s.unit(video_pid, moment_at(1, 50 * ms), 80 * stamp_ms);
    s.unit(video_pid, moment_at(2, 60 * ms), 100 * stamp_ms);
    s.unit(video_pid, moment_at(3, 200 * ms), 190 * stamp_ms);
    const time_stamp_facts row = s.finish(moment_at(4, 300 * ms)).at(0);
    ASSERT_EQ(row.margin_series_ticks.size(), 3u);
    EXPECT_EQ(row.margin_series_ticks[0].min, 30 * ms);
    EXPECT_EQ(row.margin_series_ticks[0].max, 40 * ms);
    EXPECT_FALSE(row.margin_series_ticks[1].min);
    EXPECT_EQ(row.margin_series_ticks[2].min, -10 * ms);
}

TEST(time_stamps_margin, the_first_256_pids_with_margins_have_a_series)
{
    stamped_stream s;
    s.pcr(moment_at(0, 0), 0);
    const stream_role role = s.role_of(video_pid);
    for (uint16_t pid = 0x200; pid < 0x301; ++pid)
        for (const int64_t pts : {90, 180})
            s.meter.on_packet(s.unit_start(pid, moment_at(1, 1), pes_packet(0xE0, {}, pts)), {}, role);
    const auto rows = s.finish(moment_at(4, 300 * ms));
    ASSERT_EQ(rows.size(), 257u);
    EXPECT_FALSE(rows[255].margin_series_ticks.empty());
    EXPECT_TRUE(rows[256].margin_series_ticks.empty());
    EXPECT_EQ(rows[256].margin_ticks.count, 2u);
    EXPECT_EQ(s.meter.margin_series_not_kept(), 1u);
}
