#include "tests/overview_driver/recorded.h"

#include <gtest/gtest.h>

namespace {

constexpr uint16_t clock_pid = 0x101;
constexpr uint16_t payload_pid = 0x102;
constexpr int64_t step = 27000; ///< ticks between packets: a thousand packets a second
constexpr uint64_t second = 27000000;
constexpr uint64_t packet_bits = 1504;

/// A thousand packets a second: a PCR in each 40th, a null packet in each 5th of the others.
struct steady_stream {
    /// Packets go on, the PCRs ahead of their place by so much.
    void add(unsigned packets, uint64_t ahead = 0)
    {
        for (unsigned i = 0; i < packets; ++i, ++count) {
            if (count % 40 == 0)
                stream.pcr(clock_pid, count * step + ahead);
            else if (count % 5 == 0)
                stream.padding();
            else
                stream.payload(payload_pid, repeated(0x11, 184));
        }
    }
    const bytes &data() const { return stream.data(); }

    stream_builder stream;
    uint64_t count = 0;
};

bytes steady(unsigned packets)
{
    steady_stream stream;
    stream.add(packets);
    return stream.data();
}

bytes without(bytes stream, size_t first, size_t count)
{
    stream.erase(stream.begin() + static_cast<ptrdiff_t>(first),
                 stream.begin() + static_cast<ptrdiff_t>(first + count));
    return stream;
}

} // namespace

TEST(overview, a_steady_recording_is_measured_to_the_tick)
{
    const overview found = found_in(steady(3000));
    EXPECT_EQ(found.recording.bytes, 3000u * 188);
    EXPECT_EQ(found.recording.packets, 3000u);
    EXPECT_EQ(found.recording.packet_size, 188u);
    EXPECT_EQ(found.recording.time_base, time_base_kind::pcr);
    EXPECT_EQ(found.recording.clock_pid, clock_pid);
    EXPECT_EQ(found.recording.duration_ticks, 3000 * step);
    EXPECT_TRUE(found.recording.constant_bitrate);
    EXPECT_TRUE(found.breaks.kept.empty());
    EXPECT_EQ(found.rates.whole.mean_bps, 1000 * packet_bits);
    EXPECT_EQ(found.rates.whole.min_bps, 1000 * packet_bits);
    EXPECT_EQ(found.rates.whole.series_bps, std::vector<uint64_t>(30, 1000 * packet_bits));
    EXPECT_EQ(pid_row(found, clock_pid).packets, 75u);
    EXPECT_EQ(pid_row(found, payload_pid).packets, 2400u);
    EXPECT_EQ(pid_row(found, payload_pid).first_ticks, step);
    EXPECT_EQ(pid_row(found, payload_pid).last_ticks, 2999 * step);
    EXPECT_EQ(pid_row(found, 0x1FFF).packets, 525u);
}

TEST(overview, its_pcrs_are_40_ms_apart_and_lie_on_a_line)
{
    const overview found = found_in(steady(3000));
    ASSERT_EQ(found.pcr.size(), 1u);
    const pcr_facts &pcr = found.pcr[0];
    EXPECT_EQ(pcr.count, 75u);
    EXPECT_EQ(pcr.interval_ticks.count, 74u);
    EXPECT_EQ(pcr.interval_ticks.min, 40 * step);
    EXPECT_EQ(pcr.interval_ticks.max, 40 * step);
    EXPECT_STREQ(pcr.basis, "index");
    ASSERT_TRUE(pcr.residual);
    EXPECT_NEAR(pcr.residual->rms_ns, 0, 1e-3);
    EXPECT_FALSE(pcr.rate_offset) << "it is the clock itself";
}

TEST(overview, a_flagged_leap_of_the_clock_is_a_break_with_its_place)
{
    steady_stream stream;
    stream.add(1000);
    stream.stream.adaptation(clock_pid, hex("80"));
    ++stream.count;
    stream.add(1999, 100 * second);
    const overview found = found_in(stream.data());
    ASSERT_EQ(found.breaks.kept.size(), 1u);
    const time_break &leap = found.breaks.kept[0];
    EXPECT_EQ(leap.kind, time_break_kind::irregular_span);
    EXPECT_EQ(leap.at.packet, 1040u);
    EXPECT_EQ(leap.at.byte, 1040u * 188);
    EXPECT_EQ(leap.at.ticks, 1040 * step);
    EXPECT_EQ(leap.pcr_jump_ticks, static_cast<int64_t>(100 * second) + 80 * step);
    EXPECT_EQ(found.recording.duration_ticks, 3000 * step);
    EXPECT_EQ(found.pcr.at(0).discontinuities_flagged, 1u);
    EXPECT_EQ(found.pcr.at(0).discontinuities_unflagged, 0u);
    EXPECT_EQ(pid_row(found, clock_pid).discontinuities, 1u);
}

TEST(overview, lost_packets_stretch_the_time_of_those_that_are_there)
{
    // Packets 1010 to 1019 are lost: 30 packets in 40 ms.
    const overview found = found_in(without(steady(3000), 1010 * 188, 10 * 188));
    EXPECT_TRUE(found.breaks.kept.empty());
    EXPECT_EQ(found.recording.packets, 2990u);
    EXPECT_EQ(pid_row(found, payload_pid).continuity_errors, 1u);
    EXPECT_EQ(pid_row(found, payload_pid).lost_packets_estimate, 8u); // two were null packets
    // Behind the last PCR, packet 2950, the mean rate goes on: 39 packets of 79920000 / 2950 ticks.
    EXPECT_EQ(pid_row(found, payload_pid).last_ticks, 79920000 + 1056569);
}

TEST(overview, lost_sync_is_a_break_at_the_packet_that_follows)
{
    // 50 bytes of packet 1500 are lost: packet 1501 is not found, 1502 is the next.
    const overview found = found_in(without(steady(3000), 1500 * 188 + 100, 50));
    EXPECT_EQ(found.recording.packets, 2999u);
    EXPECT_EQ(found.recording.sync_losses, 1u);
    EXPECT_EQ(found.recording.sync_byte_errors, 2u);
    EXPECT_EQ(found.recording.skipped_bytes, 138u);
    ASSERT_EQ(found.breaks.kept.size(), 1u);
    EXPECT_EQ(found.breaks.kept[0].kind, time_break_kind::sync_loss);
    EXPECT_EQ(found.breaks.kept[0].at.packet, 1501u);
    EXPECT_EQ(found.breaks.kept[0].at.byte, 1502u * 188 - 50);
    EXPECT_FALSE(found.breaks.kept[0].pcr_jump_ticks);
    EXPECT_EQ(pid_row(found, payload_pid).continuity_errors, 0u);
    EXPECT_EQ(check_row(found, "1.1").log.count, 1u);
    EXPECT_EQ(check_row(found, "1.2").log.count, 2u);
}

TEST(overview, sync_that_does_not_come_back_is_a_break_at_the_end)
{
    const overview found = found_in(join({steady(3000), repeated(0, 5000)}));
    ASSERT_EQ(found.breaks.kept.size(), 1u);
    EXPECT_EQ(found.breaks.kept[0].at.packet, 3000u);
    EXPECT_EQ(found.breaks.kept[0].at.byte, 3000u * 188);
    EXPECT_EQ(found.breaks.kept[0].at.ticks, 3000 * step);
    EXPECT_EQ(found.recording.skipped_bytes, 5000u);
    EXPECT_EQ(found.recording.trailing_bytes, 0u);
}

TEST(overview, a_bad_slot_counts_in_the_whole_and_is_no_break)
{
    bytes recording = steady(3000);
    recording[1501 * 188] = 0;
    const overview found = found_in(recording);
    EXPECT_EQ(found.recording.packets, 3000u);
    EXPECT_EQ(found.recording.sync_byte_errors, 1u);
    EXPECT_TRUE(found.breaks.kept.empty());
    EXPECT_EQ(found.rates.whole.mean_bps, 1000 * packet_bits);
    EXPECT_EQ(pid_row(found, payload_pid).packets, 2399u);
    EXPECT_EQ(pid_row(found, payload_pid).continuity_errors, 1u);
    EXPECT_EQ(check_row(found, "1.2").log.first.packet, 1501u);
}

TEST(overview, packets_of_204_bytes_give_the_same_figures_at_their_own_places)
{
    bytes recording = with_parity(steady(3000));
    const overview found = found_in(without(recording, 1500 * 204 + 100, 50));
    EXPECT_EQ(found.recording.packet_size, 204u);
    EXPECT_EQ(found.recording.bytes, 3000u * 204 - 50);
    ASSERT_EQ(found.breaks.kept.size(), 1u);
    EXPECT_EQ(found.breaks.kept[0].at.packet, 1501u);
    EXPECT_EQ(found.breaks.kept[0].at.byte, 1502u * 204 - 50);

    const overview whole = found_in(recording);
    EXPECT_EQ(whole.recording.duration_ticks, 3000 * step);
    EXPECT_EQ(whole.rates.whole.mean_bps, 1000 * packet_bits) << "188 bytes a packet";
}

TEST(overview, arrival_times_are_the_time_base_of_192_byte_packets_that_agree)
{
    steady_stream stream;
    stream.add(3000);
    const overview found = found_in(stream.stream.avchd(1000, step));
    EXPECT_EQ(found.recording.packet_size, 192u);
    EXPECT_EQ(found.recording.time_base, time_base_kind::arrival);
    EXPECT_FALSE(found.recording.clock_pid);
    EXPECT_EQ(found.recording.duration_ticks, 3000 * step);
    EXPECT_EQ(found.rates.whole.mean_bps, 1000 * packet_bits);
    EXPECT_TRUE(found.recording.constant_bitrate);
    ASSERT_TRUE(found.pcr.at(0).rate_offset);
    EXPECT_NEAR(found.pcr[0].rate_offset->max_ppm, 0, 1e-3);
}

TEST(overview, sync_that_does_not_come_back_ends_arrival_times_too)
{
    steady_stream stream;
    stream.add(1000);
    const overview found = found_in(join({stream.stream.avchd(1000, step), repeated(0, 600000)}));
    ASSERT_EQ(found.breaks.kept.size(), 1u);
    EXPECT_EQ(found.breaks.kept[0].at.packet, 1000u);
    EXPECT_EQ(found.breaks.kept[0].at.ticks, 1000 * step);
}

TEST(overview, an_arrival_time_that_goes_back_is_a_break_of_its_own)
{
    steady_stream stream;
    stream.add(3000);
    bytes recording = stream.stream.avchd(1u << 28, step);
    const bytes early = stream.stream.avchd(0, step);
    std::copy(early.begin() + 2000 * 192, early.end(), recording.begin() + 2000 * 192);
    const overview found = found_in(recording);
    ASSERT_EQ(found.breaks.kept.size(), 1u);
    EXPECT_EQ(found.breaks.kept[0].kind, time_break_kind::arrival);
    EXPECT_EQ(found.breaks.kept[0].at.packet, 2000u);
    EXPECT_EQ(found.breaks.kept[0].at.byte, 2000u * 192);
    EXPECT_EQ(found.breaks.kept[0].at.ticks, 2000 * step);
    EXPECT_EQ(found.recording.duration_ticks, 3000 * step);

    overview_request by_pcr;
    by_pcr.time_base = time_base_kind::pcr;
    EXPECT_TRUE(found_in(recording, by_pcr).breaks.kept.empty()) << "only time that is used can break";
}

TEST(overview, the_stamp_of_a_bad_slot_is_not_read)
{
    steady_stream stream;
    stream.add(3000);
    bytes recording = stream.stream.avchd(1u << 28, step);
    std::fill_n(recording.begin() + 2001 * 192, 5, uint8_t{0});
    const overview found = found_in(recording);
    EXPECT_TRUE(found.breaks.kept.empty());
    EXPECT_EQ(found.recording.sync_byte_errors, 1u);
    EXPECT_EQ(check_row(found, "1.2").log.first.ticks, 2000 * step);
    EXPECT_EQ(found.recording.duration_ticks, 3000 * step);
}

TEST(overview, one_packet_is_a_recording_without_times)
{
    const overview found = found_in(steady(1));
    EXPECT_EQ(found.recording.packets, 1u);
    EXPECT_EQ(found.recording.time_base, time_base_kind::none);
    EXPECT_FALSE(found.recording.duration_ticks);
    EXPECT_FALSE(found.rates.whole.mean_bps);
    EXPECT_EQ(pid_row(found, clock_pid).packets, 1u);
    EXPECT_TRUE(found.pcr.empty()) << "two PCRs make a row";
}

TEST(overview, a_clock_that_ends_hands_over_to_the_next_pcr_of_any_pid)
{
    stream_builder stream;
    stream.pcr(0x101, 0).padding(9).pcr(0x101, 10 * step).padding(65536 + 9);
    stream.pcr(0x202, 77 * second).padding(9).pcr(0x202, 77 * second + 20 * step);
    const overview found = found_in(stream.data());
    ASSERT_EQ(found.breaks.kept.size(), 1u);
    const time_break &change = found.breaks.kept[0];
    EXPECT_EQ(change.kind, time_break_kind::clock_change);
    EXPECT_EQ(change.at.packet, 65556u);
    EXPECT_EQ(change.at.ticks, 65556 * step);
    EXPECT_FALSE(change.pcr_jump_ticks);
    EXPECT_EQ(pid_row(found, 0x202).last_ticks, 65556 * step + 20 * step);
    EXPECT_EQ(found.recording.clock_pid, 0x101);
}

TEST(overview, without_pcrs_nothing_has_a_time)
{
    stream_builder stream;
    stream.section(0, pat_section(1, {
                                         {1, 0x1000}
    }));
    stream.section(0x1000, pmt_section(1, payload_pid, {}, {}));
    for (int i = 0; i < 200; ++i) stream.payload(payload_pid, repeated(0x11, 184));
    const overview found = found_in(without(stream.data(), 100 * 188 + 100, 50));
    EXPECT_EQ(found.recording.time_base, time_base_kind::none);
    EXPECT_FALSE(found.recording.duration_ticks || found.rates.whole.mean_bps);
    EXPECT_FALSE(pid_row(found, payload_pid).first_ticks || pid_row(found, payload_pid).last_ticks);
    ASSERT_EQ(found.breaks.kept.size(), 1u);
    EXPECT_FALSE(found.breaks.kept[0].at.ticks);
    EXPECT_EQ(check_row(found, "1.6").why, "no times");
}

TEST(overview, times_can_be_given_by_a_bitrate_or_left_out)
{
    overview_request request;
    request.time_base = time_base_kind::bitrate;
    request.bitrate_bps = 15040;
    const overview by_bitrate = found_in(steady(3000), request);
    EXPECT_EQ(by_bitrate.recording.duration_ticks, static_cast<int64_t>(300 * second));
    EXPECT_EQ(by_bitrate.rates.whole.mean_bps, 15040u);
    EXPECT_FALSE(by_bitrate.recording.clock_pid);
    EXPECT_TRUE(by_bitrate.recording.constant_bitrate) << "measured whatever the time base";
    ASSERT_TRUE(by_bitrate.pcr.at(0).rate_offset);
    EXPECT_NEAR(by_bitrate.pcr[0].rate_offset->max_ppm, -990000, 1e-3);

    request.time_base = time_base_kind::none;
    EXPECT_FALSE(found_in(steady(3000), request).recording.duration_ticks);
}

TEST(overview, a_recording_shorter_than_a_tick_has_no_series)
{
    stream_builder stream;
    stream.pcr(0x100, 0).pcr(0x100, 2700000);
    overview_request request;
    request.time_base = time_base_kind::bitrate;
    request.bitrate_bps = 1000000000000;
    const overview found = found_in(stream.data(), request);
    ASSERT_EQ(found.pcr.size(), 1u);
    EXPECT_EQ(found.recording.duration_ticks, 0);
    EXPECT_TRUE(found.rates.whole.series_bps.empty());
    EXPECT_TRUE(found.pcr[0].interval_series_ticks.empty());
}

TEST(overview, what_cannot_be_read_is_told)
{
    overview found;
    EXPECT_EQ(overview_of(source_of(repeated(0x11, 5000)), {}, found), reading_outcome::no_packets);
    EXPECT_EQ(overview_of(source_of({}), {}, found), reading_outcome::no_packets);
    overview_request request;
    request.time_base = time_base_kind::arrival;
    EXPECT_EQ(overview_of(source_of(steady(100)), request, found), reading_outcome::no_arrival_time_stamps);
    EXPECT_EQ(overview_of(source_of(steady(100)), {}, found), reading_outcome::done);
    const auto failing = [](uint8_t *, size_t) { return ptrdiff_t{-1}; };
    EXPECT_EQ(overview_of(failing, {}, found), reading_outcome::read_error);
}

TEST(overview, what_was_read_before_a_read_failed_is_there)
{
    byte_source whole = source_of(steady(3000));
    const auto failing = [&](uint8_t *to, size_t size) {
        const ptrdiff_t got = whole(to, size);
        return got > 0 ? got : -1;
    };
    overview found;
    EXPECT_EQ(overview_of(failing, {}, found), reading_outcome::read_error);
    EXPECT_EQ(found.recording.packets, 3000u);
    EXPECT_EQ(found.recording.duration_ticks, 3000 * step);
}

TEST(overview, breaks_beyond_a_thousand_are_counted)
{
    stream_builder stream;
    stream.pcr(clock_pid, 0).pcr(clock_pid, 1000);
    for (unsigned i = 0; i < 1007; ++i) stream.pcr(clock_pid, (1007 - i) * second * 10);
    const overview found = found_in(stream.data());
    EXPECT_EQ(found.breaks.kept.size(), 1000u);
    ASSERT_EQ(found.limits_reached.size(), 1u);
    EXPECT_EQ(found.limits_reached[0].what, "breaks");
    EXPECT_EQ(found.limits_reached[0].limit, 1000u);
    EXPECT_EQ(found.limits_reached[0].dropped, 7u);
}

TEST(overview, pids_beyond_256_have_no_series_and_that_is_said)
{
    steady_stream stream;
    stream.add(40);
    for (unsigned pid = 0x400; pid < 0x400 + 300; ++pid) stream.stream.payload(pid, repeated(0x11, 184));
    stream.add(41);
    const overview found = found_in(stream.data());
    ASSERT_EQ(found.limits_reached.size(), 1u);
    EXPECT_EQ(found.limits_reached[0].what, "rate series");
    EXPECT_EQ(found.limits_reached[0].dropped, 303u - 256);
    EXPECT_FALSE(found.rates.pids.at(255).rate.series_bps.empty());
    EXPECT_TRUE(found.rates.pids.at(256).rate.series_bps.empty());
}

TEST(overview, what_stands_before_the_first_packet_and_behind_the_last_is_no_fault)
{
    const overview found = found_in(join({repeated(0, 1000), steady(3000), repeated(0x47, 100)}));
    EXPECT_EQ(found.recording.leading_bytes, 1000u);
    EXPECT_EQ(found.recording.trailing_bytes, 100u);
    EXPECT_EQ(found.recording.skipped_bytes, 0u);
    EXPECT_EQ(found.recording.sync_byte_errors, 0u);
    EXPECT_TRUE(found.breaks.kept.empty());
    EXPECT_EQ(found.recording.duration_ticks, 3000 * step);
}
