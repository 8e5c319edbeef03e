#include "tests/overview_input/memory_source.h"

#include <gtest/gtest.h>

#include <cstring>

namespace {

/// So many packets of one PID in sequence, their payload without sync bytes.
stream_builder packets(unsigned count, unsigned pid = 0x0100)
{
    stream_builder stream;
    for (unsigned i = 0; i < count; ++i) stream.payload(pid, repeated(0x11, 184));
    return stream;
}

bytes without(bytes stream, size_t first, size_t count)
{
    stream.erase(stream.begin() + static_cast<ptrdiff_t>(first),
                 stream.begin() + static_cast<ptrdiff_t>(first + count));
    return stream;
}

bytes with_zeros(bytes stream, size_t first, size_t count)
{
    stream.insert(stream.begin() + static_cast<ptrdiff_t>(first), count, 0);
    return stream;
}

} // namespace

TEST(scanner, an_empty_recording_has_no_packets)
{
    EXPECT_FALSE(scan({}).found);
}

TEST(scanner, less_than_a_packet_is_none)
{
    bytes stream = packets(1).data();
    stream.pop_back();
    EXPECT_FALSE(scan(stream).found);
}

TEST(scanner, one_packet_is_enough)
{
    const scan_result result = scan(packets(1).data());
    ASSERT_TRUE(result.found);
    EXPECT_EQ(result.counts.packets, 1u);
    EXPECT_EQ(result.grid.packet_size, 188u);
}

TEST(scanner, bytes_without_packets_are_no_recording)
{
    EXPECT_FALSE(scan(repeated(0x11, 100000)).found);
}

TEST(scanner, a_recording_that_starts_in_mid_packet_has_leading_bytes)
{
    const scan_result result = scan(without(packets(10).data(), 0, 100));
    EXPECT_EQ(result.counts.leading_bytes, 88u);
    EXPECT_EQ(result.counts.packets, 9u);
    EXPECT_EQ(result.counts.skipped_bytes, 0u);
    EXPECT_EQ(result.counts.sync_losses, 0u);
}

TEST(scanner, packets_are_looked_for_in_the_first_64_kib)
{
    EXPECT_EQ(scan(with_zeros(packets(10).data(), 0, 65535)).counts.leading_bytes, 65535u);
    EXPECT_FALSE(scan(with_zeros(packets(10).data(), 0, 65536)).found);
}

TEST(scanner, a_sync_byte_in_a_text_makes_no_packet)
{
    bytes text = repeated(0x11, 5000);
    text[4700] = 0x47;
    EXPECT_FALSE(scan(text).found);
}

TEST(scanner, an_input_of_less_than_five_packets_needs_as_many_as_it_holds)
{
    EXPECT_EQ(scan(join({packets(3).data(), repeated(0x11, 50)})).counts.packets, 3u);
    EXPECT_EQ(scan(without(packets(5).data(), 0, 100)).counts.packets, 4u);
}

TEST(scanner, a_single_sync_byte_far_before_the_packets_is_none)
{
    bytes stream = with_zeros(packets(10).data(), 0, 1000);
    stream[500] = 0x47;
    EXPECT_EQ(scan(stream).counts.leading_bytes, 1000u);
}

TEST(scanner, packets_of_192_bytes_begin_with_their_stamp)
{
    const scan_result result = scan(packets(10).avchd(1000, 300));
    EXPECT_EQ(result.grid.packet_size, 192u);
    EXPECT_EQ(result.counts.leading_bytes, 0u);
    EXPECT_EQ(result.counts.packets, 10u);
    ASSERT_EQ(result.arrival.size(), 10u);
    EXPECT_EQ(result.arrival[0], 0);
    EXPECT_EQ(result.arrival[9], 2700);
}

TEST(scanner, arrival_times_wrap_at_30_bits_and_their_upper_bits_do_not_count)
{
    const scan_result result = scan(packets(10).avchd(0x3FFFFF00, 0x80));
    EXPECT_EQ(result.arrival[9], 9 * 0x80);
    EXPECT_EQ(steps_of(result, step_kind::arrival_break), 0u);
}

TEST(scanner, an_arrival_time_that_goes_back_is_a_break_and_time_goes_on_by_the_last_good_step)
{
    bytes stream = join({packets(3).avchd(5000, 300), packets(3).avchd(1000, 200)});
    const scan_result result = scan(stream);
    EXPECT_EQ(steps_of(result, step_kind::arrival_break), 1u);
    EXPECT_EQ(result.arrival, (std::vector<int64_t>{0, 300, 600, 900, 1100, 1300}));
}

TEST(scanner, packets_of_204_bytes)
{
    const scan_result result = scan(with_parity(packets(10).data()));
    EXPECT_EQ(result.grid.packet_size, 204u);
    EXPECT_EQ(result.counts.packets, 10u);
    EXPECT_EQ(result.counts.trailing_bytes, 0u);
}

TEST(scanner, a_packet_size_that_is_given_is_the_only_one_tried)
{
    EXPECT_FALSE(scan(packets(10).data(), 204).found);
    EXPECT_EQ(scan(with_parity(packets(10).data()), 204).counts.packets, 10u);
}

TEST(scanner, bytes_behind_the_last_whole_packet_are_trailing)
{
    const scan_result result = scan(join({packets(10).data(), repeated(0x47, 187)}));
    EXPECT_EQ(result.counts.packets, 10u);
    EXPECT_EQ(result.counts.trailing_bytes, 187u);
}

TEST(scanner, one_bad_sync_byte_is_a_bad_slot_and_sync_is_kept)
{
    bytes stream = packets(10).data();
    stream[7 * 188] = 0;
    const scan_result result = scan(stream);
    EXPECT_EQ(result.counts.packets, 10u);
    EXPECT_EQ(result.counts.sync_byte_errors, 1u);
    EXPECT_EQ(result.counts.sync_losses, 0u);
    EXPECT_EQ(steps_of(result, step_kind::bad_slot), 1u);
}

TEST(scanner, a_bad_sync_byte_in_the_last_slot_is_a_bad_slot)
{
    bytes stream = packets(10).data();
    stream[9 * 188] = 0;
    const scan_result result = scan(stream);
    EXPECT_EQ(result.counts.packets, 10u);
    EXPECT_EQ(result.counts.sync_byte_errors, 1u);
    EXPECT_EQ(result.counts.sync_losses, 0u);
}

TEST(scanner, bytes_lost_shift_the_grid_and_sync_is_found_again)
{
    // Ten bytes of packet 4 are lost: the slot of packet 5 is the first bad one.
    const scan_result result = scan(without(packets(20).data(), 4 * 188 + 100, 10));
    EXPECT_EQ(result.counts.sync_losses, 1u);
    EXPECT_EQ(result.counts.sync_byte_errors, 2u);
    EXPECT_EQ(result.counts.skipped_bytes, 178u);
    EXPECT_EQ(result.counts.packets, 19u); // packet 5 begins before the search does
}

TEST(scanner, bytes_put_in_are_skipped)
{
    const scan_result result = scan(with_zeros(packets(20).data(), 5 * 188, 10));
    EXPECT_EQ(result.counts.sync_losses, 1u);
    EXPECT_EQ(result.counts.skipped_bytes, 10u);
    EXPECT_EQ(result.counts.packets, 20u);
    EXPECT_EQ(result.counts.trailing_bytes, 0u);
}

TEST(scanner, sync_that_is_never_found_again_skips_the_rest)
{
    const scan_result result = scan(join({packets(10).data(), repeated(0, 1000)}));
    EXPECT_EQ(result.counts.packets, 10u);
    EXPECT_EQ(result.counts.sync_losses, 1u);
    EXPECT_EQ(result.counts.skipped_bytes, 1000u);
    EXPECT_EQ(result.counts.trailing_bytes, 0u);
    EXPECT_EQ(result.lost_for_good, 1880u);
}

TEST(scanner, four_packets_are_too_few_to_find_sync_again)
{
    const scan_result result = scan(join({packets(10).data(), repeated(0, 400), packets(4).data()}));
    EXPECT_EQ(result.counts.packets, 10u);
    EXPECT_EQ(result.counts.skipped_bytes, 400u + 4 * 188);
}

TEST(scanner, packets_in_sequence_are_one_run_behind_the_first)
{
    const scan_result result = scan(packets(100).data());
    ASSERT_EQ(result.steps.size(), 2u);
    EXPECT_EQ(result.steps[0].kind, step_kind::packet);
    EXPECT_EQ(result.steps[1].kind, step_kind::run);
    EXPECT_EQ(result.steps[1].index, 1u);
    EXPECT_EQ(result.steps[1].count, 99u);
}

TEST(scanner, a_lost_packet_ends_the_run)
{
    stream_builder stream = packets(10);
    stream.lose_packets(0x0100, 1).payload(0x0100, repeated(0x11, 184));
    const scan_result result = scan(stream.data());
    ASSERT_EQ(result.steps.size(), 3u);
    EXPECT_EQ(result.steps[1].count, 9u);
    EXPECT_EQ(result.steps[2].kind, step_kind::packet);
}

TEST(scanner, a_packet_that_repeats_the_one_before_of_its_pid_is_told)
{
    stream_builder stream = packets(2);
    const bytes copy(stream.data().end() - 188, stream.data().end());
    stream.padding(3).raw(copy);
    const scan_result result = scan(stream.data());
    EXPECT_TRUE(result.steps.back().repeats_previous);
}

TEST(scanner, a_repeated_packet_may_have_another_pcr)
{
    stream_builder original;
    original.adaptation(0x0100, hex("10 000000007E00"), repeated(0x22, 176));
    bytes copy = original.data();
    copy[8] = 0x55;
    EXPECT_TRUE(scan(join({original.data(), copy})).steps.back().repeats_previous);
    copy[150] ^= 1;
    EXPECT_FALSE(scan(join({original.data(), copy})).steps.back().repeats_previous);
}

TEST(scanner, a_copy_is_looked_for_1024_packets_back)
{
    const bytes one = packets(1).data();
    stream_builder near = packets(1);
    near.padding(1023).raw(one);
    stream_builder far = packets(1);
    far.padding(1024).raw(one);
    EXPECT_TRUE(scan(near.data()).steps.back().repeats_previous);
    EXPECT_FALSE(scan(far.data()).steps.back().repeats_previous);
}

TEST(scanner, a_copy_is_found_two_blocks_back)
{
    stream_builder stream;
    stream.padding(690).payload(0x0100, repeated(0x11, 184));
    const bytes original(stream.data().end() - 188, stream.data().end());
    stream.padding(1000).raw(original);
    EXPECT_TRUE(scan(stream.data()).steps.back().repeats_previous);
}

TEST(scanner, behind_a_transport_error_a_packet_is_looked_at_whatever_its_counter)
{
    stream_builder stream = packets(3);
    const bytes last(stream.data().end() - 188, stream.data().end());
    stream.raw(last).flip_bit(1, 7).payload(0x0100, repeated(0x11, 184));
    const scan_result result = scan(stream.data());
    EXPECT_EQ(result.steps.back().kind, step_kind::packet);

    stream_builder copied = packets(3);
    copied.raw(last).flip_bit(1, 7).raw(last);
    EXPECT_FALSE(scan(copied.data()).steps.back().repeats_previous);
}

TEST(scanner, behind_regained_sync_a_packet_is_looked_at_whatever_its_counter)
{
    const scan_result result = scan(with_zeros(packets(20).data(), 5 * 188, 10));
    ASSERT_EQ(result.steps.size(), 5u);
    EXPECT_EQ(result.steps[2].kind, step_kind::sync_loss);
    EXPECT_EQ(result.steps[3].kind, step_kind::packet);
    EXPECT_EQ(result.steps[4].kind, step_kind::run);
}

TEST(scanner, clock_packets_have_a_pcr_or_the_discontinuity_indicator)
{
    stream_builder stream;
    stream.pcr(0x0100, 1000).adaptation(0x0100, hex("80")).adaptation(0x0100, hex("00"));
    stream.pcr(0x0100, 2000).flip_bit(1, 7); // transport_error_indicator
    EXPECT_EQ(scan(stream.data()).clock_packets, (std::vector<uint64_t>{0, 1}));
}

TEST(scanner, neither_pieces_nor_blocks_change_what_is_found)
{
    bytes stream;
    for (unsigned i = 0; i < 20; ++i) {
        const bytes part = without(packets(300, 0x0100 + i).data(), 70 * 188 + i, i % 3 == 0 ? 20 : 0);
        stream.insert(stream.end(), part.begin(), part.end());
    }
    const scan_result whole = scan(stream);
    for (const size_t piece : {1u, 187u, 188u, 4096u, 70001u}) {
        const scan_result pieces = scan(stream, 0, piece);
        EXPECT_EQ(pieces.counts.packets, whole.counts.packets);
        EXPECT_EQ(pieces.counts.skipped_bytes, whole.counts.skipped_bytes);
        EXPECT_EQ(pieces.counts.sync_losses, 7u);
        EXPECT_EQ(pieces.steps.size(), whole.steps.size());
    }
    packet_scanner large(source_of(stream), 0, size_t{4} << 20);
    ASSERT_TRUE(large.find_packets());
    while (std::unique_ptr<block> b = large.next_block()) large.give_back(std::move(b));
    EXPECT_EQ(large.counts().packets, whole.counts.packets);
    EXPECT_EQ(large.counts().skipped_bytes, whole.counts.skipped_bytes);
}

TEST(scanner, a_read_that_fails_is_told_with_what_came_before)
{
    const bytes stream = packets(10).data();
    bool given = false;
    packet_scanner scanner(
        [&](uint8_t *to, size_t) -> ptrdiff_t {
            if (given) return -1;
            given = true;
            std::memcpy(to, stream.data(), stream.size());
            return static_cast<ptrdiff_t>(stream.size());
        },
        0);
    ASSERT_TRUE(scanner.find_packets());
    while (std::unique_ptr<block> b = scanner.next_block()) scanner.give_back(std::move(b));
    EXPECT_TRUE(scanner.failed());
    EXPECT_EQ(scanner.counts().packets, 10u);
}
