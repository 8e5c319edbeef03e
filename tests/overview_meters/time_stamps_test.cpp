#include "tests/overview_meters/stamped_stream.h"

#include <gtest/gtest.h>

TEST(time_stamps, stamps_and_the_intervals_of_their_arrivals_are_counted)
{
    stamped_stream s;
    s.unit(video_pid, moment_at(0, 0), 1000, 500);
    s.unit(video_pid, moment_at(1, 40 * ms), 2000);
    s.unit(video_pid, moment_at(2, 60 * ms), 3000, 2500);
    const time_stamp_facts row = s.row();
    EXPECT_EQ(row.pid, video_pid);
    EXPECT_EQ(row.pts.count, 3u);
    EXPECT_EQ(row.pts.arrival_interval_ticks.count, 2u);
    EXPECT_EQ(row.pts.arrival_interval_ticks.min, 20 * ms);
    EXPECT_EQ(row.pts.arrival_interval_ticks.max, 40 * ms);
    EXPECT_EQ(row.dts.count, 2u);
    EXPECT_EQ(row.dts.arrival_interval_ticks.count, 1u);
    EXPECT_EQ(row.dts.arrival_interval_ticks.max, 60 * ms);
    EXPECT_EQ(row.pes_not_read, 0u);
}

TEST(time_stamps, rows_stand_in_order_of_first_arrival_and_only_for_video_and_audio)
{
    stamped_stream s;
    s.unit(0x1F0, moment_at(0, 0), 1);
    s.unit(audio_pid, moment_at(1, 0), 1);
    s.unit(video_pid, moment_at(2, 0), 1);
    const auto rows = s.finish(moment_at(3, 0));
    ASSERT_EQ(rows.size(), 2u);
    EXPECT_EQ(rows[0].pid, audio_pid);
    EXPECT_EQ(rows[1].pid, video_pid);
}

TEST(time_stamps, unit_starts_without_a_readable_header_are_counted_apart)
{
    stamped_stream s;
    s.add(s.unit_start(video_pid, moment_at(0, 0), pes_packet(0xBE, {}, 1, 1)));
    s.add(s.unit_start(video_pid, moment_at(1, 0), hex("00 00 01 E0")));
    s.add(s.unit_start(video_pid, moment_at(2, 0), {}));
    s.add(s.unit_start(video_pid, moment_at(3, 0), pes_packet(0xE0, {})));
    const time_stamp_facts row = s.row();
    EXPECT_EQ(row.pes_not_read, 3u);
    EXPECT_EQ(row.pts.count, 0u);
}

TEST(time_stamps, a_unit_start_without_payload_is_not_read_and_other_packets_give_nothing)
{
    stamped_stream s;
    ts_packet inside = s.unit_start(video_pid, moment_at(0, 0), pes_packet(0xE0, {}, 1, 1));
    inside.payload_unit_start_indicator = false;
    s.add(inside);
    EXPECT_TRUE(s.finish(moment_at(1, 0)).empty());
    ts_packet no_payload = s.unit_start(video_pid, moment_at(1, 0), {});
    no_payload.adaptation_field_control = 2;
    s.add(no_payload);
    EXPECT_EQ(s.row().pes_not_read, 1u);
}

TEST(time_stamps, copies_broken_and_scrambled_packets_give_nothing)
{
    stamped_stream s;
    ts_packet packet = s.unit_start(video_pid, moment_at(0, 0), pes_packet(0xE0, {}, 1, 1));
    s.meter.on_packet(packet, copy_of_the_packet_before(), s.role_of(video_pid));
    packet.transport_error_indicator = true;
    s.add(packet);
    packet.transport_error_indicator = false;
    packet.transport_scrambling_control = 2;
    s.add(packet);
    EXPECT_TRUE(s.finish(moment_at(1, 0)).empty());
}

TEST(time_stamps, no_interval_lies_over_a_scrambled_packet)
{
    for (const bool in_a_run : {true, false}) {
        stamped_stream s;
        s.unit(video_pid, moment_at(0, 0), 1000, 1000);
        if (in_a_run) {
            s.meter.on_scrambled(video_pid);
        } else {
            ts_packet packet = packet_of(video_pid, moment_at(1, 10 * ms));
            packet.transport_scrambling_control = 3;
            s.add(packet);
        }
        s.unit(video_pid, moment_at(2, 900 * ms), 2000, 2000);
        s.unit(video_pid, moment_at(3, 940 * ms), 3000, 3000);
        const time_stamp_facts row = s.row();
        EXPECT_EQ(row.pts.arrival_interval_ticks.count, 1u);
        EXPECT_EQ(row.dts.arrival_interval_ticks.count, 1u);
        EXPECT_EQ(row.pts.arrival_interval_ticks.max, 40 * ms);
        EXPECT_EQ(s.meter.pts_intervals().findings(false).log.count, 0u);
    }
}

TEST(time_stamps, a_scrambled_packet_of_another_pid_changes_nothing)
{
    stamped_stream s;
    s.unit(video_pid, moment_at(0, 0), 1000);
    s.meter.on_scrambled(audio_pid);
    s.unit(video_pid, moment_at(1, 40 * ms), 2000);
    EXPECT_EQ(s.row().pts.arrival_interval_ticks.count, 1u);
}

TEST(time_stamps, no_interval_lies_over_a_time_break)
{
    stamped_stream s;
    s.unit(video_pid, moment_at(0, 0), 1000);
    s.unit(video_pid, moment_at(1, 800 * ms, 1), 2000);
    EXPECT_EQ(s.row().pts.arrival_interval_ticks.count, 0u);
    EXPECT_EQ(s.meter.pts_intervals().findings(false).log.count, 0u);
}

TEST(time_stamps, it_is_measured_only_while_a_pmt_makes_the_pid_video_or_audio)
{
    stamped_stream s;
    s.unit(video_pid, moment_at(0, 0), 1000);
    s.meter.on_unlisted(video_pid, moment_at(1, 300 * ms));
    s.meter.on_packet(s.unit_start(video_pid, moment_at(2, 400 * ms), pes_packet(0xE0, {}, 2000)), {},
                      stream_role());
    s.unit(video_pid, moment_at(3, 800 * ms), 3000);
    const time_stamp_facts row = s.row();
    EXPECT_EQ(row.pts.count, 2u);
    EXPECT_EQ(row.pts.arrival_interval_ticks.count, 0u);
    EXPECT_EQ(s.meter.pts_intervals().findings(false).log.count, 0u);
}

TEST(time_stamps, the_wait_for_a_pts_ends_where_no_pmt_names_the_pid_any_more)
{
    stamped_stream s;
    s.unit(video_pid, moment_at(0, 0), 1000);
    s.meter.on_unlisted(video_pid, moment_at(1, 701 * ms));
    EXPECT_EQ(s.meter.pts_intervals().findings(false).log.count, 1u);
}

TEST(time_stamps, pts_arrive_every_700_ms_or_break_the_limit)
{
    stamped_stream s;
    s.unit(video_pid, moment_at(0, 5000 * ms), 1000); // nothing is asked before the first
    s.unit(video_pid, moment_at(1, 5700 * ms), 2000);
    EXPECT_EQ(s.meter.pts_intervals().findings(false).log.count, 0u);
    EXPECT_TRUE(s.meter.pts_intervals().is_measured(false));
    s.unit(video_pid, moment_at(2, 6400 * ms + 1), 3000);
    EXPECT_EQ(s.meter.pts_intervals().findings(false).log.count, 1u);
    EXPECT_EQ(s.meter.pts_intervals().findings(false).log.details[0].text, "no PTS for 700.000037 ms");
}

TEST(time_stamps, behind_a_break_the_interval_starts_with_the_next_pts)
{
    stamped_stream s;
    s.unit(video_pid, moment_at(0, 0), 1000);
    s.pcr(moment_at(1, 100 * ms, 1), 0);
    s.unit(video_pid, moment_at(2, 1000 * ms, 1), 2000);
    EXPECT_EQ(s.meter.pts_intervals().findings(false).log.count, 0u);
    s.unit(video_pid, moment_at(3, 1800 * ms, 1), 3000);
    EXPECT_EQ(s.meter.pts_intervals().findings(false).log.count, 1u);
}

TEST(time_stamps, still_pictures_are_in_no_hurry)
{
    stamped_stream s;
    s.still_pictures = true;
    s.unit(video_pid, moment_at(0, 0), 1000);
    s.unit(video_pid, moment_at(1, 5000 * ms), 2000);
    EXPECT_EQ(s.finish(moment_at(9, 9000 * ms)).at(0).pts.arrival_interval_ticks.max, 5000 * ms);
    EXPECT_EQ(s.meter.pts_intervals().findings(false).log.count, 0u);
}

TEST(time_stamps, the_piece_to_the_end_is_judged_for_streams_that_are_still_there)
{
    stamped_stream s;
    s.unit(video_pid, moment_at(0, 0), 1000);
    s.finish(moment_at(9, 701 * ms));
    EXPECT_EQ(s.meter.pts_intervals().findings(false).log.count, 1u);

    stamped_stream gone;
    gone.unit(video_pid, moment_at(0, 0), 1000);
    gone.end.at = moment_at(9, 701 * ms);
    gone.meter.finish(gone.end, [](uint16_t) { return stream_role(); });
    EXPECT_EQ(gone.meter.pts_intervals().findings(false).log.count, 0u);
}

TEST(time_stamps, pts_that_go_back_are_reordered_and_no_fault)
{
    stamped_stream s;
    s.unit(video_pid, moment_at(0, 0), 4000, 1000);
    s.unit(video_pid, moment_at(1, 1), 2000);
    s.unit(video_pid, moment_at(2, 2), 3000);
    s.unit(video_pid, moment_at(3, 3), 3000);
    EXPECT_EQ(s.row().reordered, 1u);
    EXPECT_EQ(s.meter.decoding_order().count, 0u);
}

TEST(time_stamps, stamps_that_wrap_do_not_go_back)
{
    stamped_stream s;
    s.unit(video_pid, moment_at(0, 0), (1ll << 33) - 100, (1ll << 33) - 200);
    s.unit(video_pid, moment_at(1, 1), 50, (1ll << 33) - 10);
    s.unit(video_pid, moment_at(2, 2), 150, 100);
    EXPECT_EQ(s.row().reordered, 0u);
    EXPECT_EQ(s.meter.decoding_order().count, 0u);
    EXPECT_TRUE(s.meter.decoding_order_measured());
}

TEST(time_stamps, a_dts_above_its_pts_is_a_fault)
{
    stamped_stream s;
    s.unit(video_pid, moment_at(0, 0), 1000, 1000);
    EXPECT_EQ(s.meter.decoding_order().count, 0u);
    s.unit(video_pid, moment_at(1, 1), 2000, 2090);
    EXPECT_EQ(s.meter.decoding_order().count, 1u);
    EXPECT_EQ(s.meter.decoding_order().details[0].text, "DTS above PTS by 1 ms");
    EXPECT_EQ(s.meter.decoding_order().details[0].pid, video_pid);
}

TEST(time_stamps, a_dts_that_goes_back_is_a_fault)
{
    stamped_stream s;
    s.unit(video_pid, moment_at(0, 0), 9000, 1090);
    s.unit(video_pid, moment_at(1, 1), 9000, 1090);
    EXPECT_EQ(s.meter.decoding_order().count, 0u);
    s.unit(video_pid, moment_at(2, 2), 9000, 1000);
    ASSERT_EQ(s.meter.decoding_order().count, 1u);
    EXPECT_EQ(s.meter.decoding_order().details[0].text, "DTS goes back by 1 ms");
}

TEST(time_stamps, in_audio_a_pts_stands_for_the_dts_that_is_not_there)
{
    stamped_stream audio;
    audio.unit(audio_pid, moment_at(0, 0), 2090);
    audio.unit(audio_pid, moment_at(1, 1), 2000);
    ASSERT_EQ(audio.meter.decoding_order().count, 1u);
    EXPECT_EQ(audio.meter.decoding_order().details[0].text, "PTS goes back by 1 ms");
    EXPECT_TRUE(audio.meter.decoding_order_measured());

    stamped_stream video;
    video.unit(video_pid, moment_at(0, 0), 2090);
    video.unit(video_pid, moment_at(1, 1), 2000);
    EXPECT_EQ(video.meter.decoding_order().count, 0u);
    EXPECT_FALSE(video.meter.decoding_order_measured());
}

TEST(time_stamps, a_dts_may_go_back_behind_a_discontinuity_of_its_pid)
{
    stamped_stream s;
    s.unit(video_pid, moment_at(0, 0), 9000, 9000);
    s.add(flagged(packet_of(video_pid, moment_at(1, 1))));
    s.unit(video_pid, moment_at(2, 2), 1000, 1000);
    EXPECT_EQ(s.meter.decoding_order().count, 0u);
    s.unit(video_pid, moment_at(3, 3), 500, 500); // that was long ago
    EXPECT_EQ(s.meter.decoding_order().count, 1u);
}

TEST(time_stamps, a_dts_may_go_back_in_the_packet_with_the_discontinuity_indicator)
{
    stamped_stream s;
    s.unit(video_pid, moment_at(0, 0), 9000, 9000);
    s.add(flagged(s.unit_start(video_pid, moment_at(1, 1), pes_packet(0xE0, {}, 1000, 1000))));
    EXPECT_EQ(s.meter.decoding_order().count, 0u);
}

TEST(time_stamps, a_dts_may_go_back_behind_a_discontinuity_of_its_clock)
{
    for (const bool with_flag : {true, false}) {
        stamped_stream s;
        s.pcr(moment_at(0, 0), 5000 * ms);
        s.unit(audio_pid, moment_at(1, 1), 9000);
        const ts_packet leap = pcr_packet(clock_pid, moment_at(2, 2), 0);
        s.add(with_flag ? flagged(leap) : leap);
        s.unit(audio_pid, moment_at(3, 3), 1000);
        EXPECT_EQ(s.meter.decoding_order().count, 0u);
        s.pcr(moment_at(4, 4), 100 * ms); // no discontinuity
        s.unit(audio_pid, moment_at(5, 5), 500);
        EXPECT_EQ(s.meter.decoding_order().count, 1u);
    }
}

TEST(time_stamps, a_discontinuity_of_another_clock_excuses_nothing)
{
    stamped_stream s;
    s.unit(audio_pid, moment_at(0, 0), 9000);
    s.add(pcr_packet(0x1E0, moment_at(1, 1), 0));
    s.add(flagged(pcr_packet(0x1E0, moment_at(2, 2), 0)));
    s.unit(audio_pid, moment_at(3, 3), 1000);
    EXPECT_EQ(s.meter.decoding_order().count, 1u);
}

TEST(time_stamps, stamps_on_both_sides_of_a_break_or_in_one_have_no_order)
{
    stamped_stream s;
    s.unit(audio_pid, moment_at(0, 0), 9000);
    s.unit(audio_pid, moment_at(1, 1, -1), 8000);
    s.unit(audio_pid, moment_at(2, 2, -1), 7000);
    s.unit(audio_pid, moment_at(3, 3, 1), 6000);
    EXPECT_EQ(s.meter.decoding_order().count, 0u);
    s.unit(audio_pid, moment_at(4, 4, 1), 5000);
    EXPECT_EQ(s.meter.decoding_order().count, 1u);
}

TEST(time_stamps, the_order_needs_no_times)
{
    stamped_stream s;
    s.unit(audio_pid, moment_at(0, std::nullopt), 9000);
    s.meter.on_scrambled(audio_pid);
    s.unit(audio_pid, moment_at(1, std::nullopt), 8000);
    EXPECT_EQ(s.meter.decoding_order().count, 1u);
}
