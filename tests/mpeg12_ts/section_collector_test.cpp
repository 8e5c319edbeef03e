#include "tests/support/stream_builder.h"

#include "mpeg12_ts/crc32.h"
#include "mpeg12_ts/section_collector.h"

#include <gtest/gtest.h>

namespace {

struct taken_section {
    mpeg_ts_section section;
    bytes data;
    bytes body;
};

bytes slice(const bytes &from, size_t start, size_t fence)
{
    return bytes(from.begin() + static_cast<long>(start), from.begin() + static_cast<long>(fence));
}

/// A short section whose last four bytes are its CRC_32.
bytes short_section_with_crc(unsigned table_id, const bytes &body)
{
    const bytes room = short_section(table_id, join({body, repeated(0, 4)}));
    const bytes start = slice(room, 0, room.size() - 4);
    return join({start, big_endian(mpeg_ts_crc32(start.data(), start.data() + start.size()), 4)});
}

} // namespace

struct section_collector : testing::Test {
    /// Hands over a payload, and takes every section that ends in it.
    std::vector<taken_section> packet(const bytes &payload, bool unit_start, uint64_t tag = 0)
    {
        in_hand = payload;
        const uint8_t *const start = in_hand.data();
        std::vector<taken_section> taken;
        mpeg_ts_section section;
        mpeg_ts_section_collector_packet(&collector, start, start + in_hand.size(), unit_start, tag);
        while (mpeg_ts_section_collector_next(&collector, &section))
            taken.push_back(
                {section, bytes(section.start, section.fence), bytes(section.body, section.body_fence)});
        return taken;
    }

    std::vector<taken_section> unit_start(const bytes &payload, uint64_t tag = 0)
    {
        return packet(join({hex("00"), payload}), true, tag);
    }

    std::vector<taken_section> unit_start_behind(unsigned pointer_field, const bytes &payload)
    {
        return packet(join({big_endian(pointer_field, 1), payload}), true);
    }

    mpeg_ts_section_collector collector;
    bytes in_hand;
    const bytes first = long_section(0x42, 0x1234, repeated(0x11, 20), {5, 1, 2, 3, 1});
    const bytes second = long_section(0x46, 0x5678, repeated(0x22, 30));
    const bytes longest = long_section(0x90, 0xFFFF, repeated(0x33, 4095 - 9));
};

TEST_F(section_collector, a_section_within_a_packet_comes_with_its_header_body_and_crc)
{
    const auto taken = unit_start(first, 77);
    ASSERT_EQ(taken.size(), 1u);
    const mpeg_ts_section &section = taken[0].section;
    EXPECT_EQ(section.header.table_id, 0x42);
    EXPECT_EQ(section.header.section_syntax_indicator, 1);
    EXPECT_EQ(section.header.private_indicator, 1);
    EXPECT_EQ(section.header.section_length, first.size() - 3);
    EXPECT_EQ(section.header.table_id_extension, 0x1234);
    EXPECT_EQ(section.header.version_number, 5);
    EXPECT_EQ(section.header.current_next_indicator, 1);
    EXPECT_EQ(section.header.section_number, 2);
    EXPECT_EQ(section.header.last_section_number, 3);
    EXPECT_EQ(taken[0].data, first);
    EXPECT_EQ(taken[0].body, repeated(0x11, 20));
    EXPECT_EQ(big_endian(section.CRC_32, 4), slice(first, first.size() - 4, first.size()));
    EXPECT_FALSE(section.CRC_error);
    EXPECT_EQ(section.begun, 77u);
}

TEST_F(section_collector, several_sections_in_a_packet_come_one_after_the_other)
{
    const auto taken = unit_start(join({first, second, first}));
    ASSERT_EQ(taken.size(), 3u);
    EXPECT_EQ(taken[0].data, first);
    EXPECT_EQ(taken[1].data, second);
    EXPECT_EQ(taken[2].data, first);
}

TEST_F(section_collector, a_section_across_packets_ends_in_the_last_and_has_begun_in_the_first)
{
    EXPECT_TRUE(unit_start(slice(first, 0, 10), 5).empty());
    EXPECT_TRUE(packet(slice(first, 10, 20), false, 6).empty());
    const auto taken = packet(slice(first, 20, first.size()), false, 7);
    ASSERT_EQ(taken.size(), 1u);
    EXPECT_EQ(taken[0].data, first);
    EXPECT_EQ(taken[0].section.begun, 5u);
    EXPECT_EQ(collector.incomplete, 0u);
}

TEST_F(section_collector, the_section_in_hand_is_described_once_its_header_is_there)
{
    mpeg_ts_section section;
    EXPECT_FALSE(mpeg_ts_section_collector_in_hand(&collector, &section));
    unit_start(slice(first, 0, 7), 5);
    EXPECT_FALSE(mpeg_ts_section_collector_in_hand(&collector, &section));
    packet(slice(first, 7, 12), false, 6);
    ASSERT_TRUE(mpeg_ts_section_collector_in_hand(&collector, &section));
    EXPECT_EQ(section.header.table_id, 0x42);
    EXPECT_EQ(section.header.table_id_extension, 0x1234);
    EXPECT_EQ(section.header.section_number, 2);
    EXPECT_EQ(bytes(section.start, section.fence), slice(first, 0, 12));
    EXPECT_EQ(bytes(section.body, section.body_fence), repeated(0x11, 4));
    EXPECT_EQ(section.CRC_32, 0u);
    EXPECT_EQ(section.begun, 5u);
    EXPECT_EQ(packet(slice(first, 12, first.size()), false).size(), 1u);
    EXPECT_FALSE(mpeg_ts_section_collector_in_hand(&collector, &section));
}

TEST_F(section_collector, a_section_cut_anywhere_is_put_together)
{
    for (size_t cut = 1; cut < first.size(); ++cut) {
        EXPECT_TRUE(unit_start(slice(first, 0, cut)).empty());
        const auto taken = packet(slice(first, cut, first.size()), false);
        ASSERT_EQ(taken.size(), 1u) << cut;
        EXPECT_EQ(taken[0].data, first);
        EXPECT_FALSE(taken[0].section.CRC_error);
    }
}

TEST_F(section_collector, bytes_one_a_packet_make_a_section)
{
    unit_start(slice(second, 0, 1));
    for (size_t i = 1; i + 1 < second.size(); ++i)
        EXPECT_TRUE(packet(slice(second, i, i + 1), false).empty());
    const auto taken = packet(slice(second, second.size() - 1, second.size()), false);
    ASSERT_EQ(taken.size(), 1u);
    EXPECT_EQ(taken[0].data, second);
}

TEST_F(section_collector, the_longest_section_fits)
{
    ASSERT_EQ(longest.size(), mpeg_ts_section_max_size);
    std::vector<taken_section> taken = unit_start(slice(longest, 0, 183));
    for (size_t i = 183; i < longest.size(); i += 184) {
        EXPECT_TRUE(taken.empty());
        taken = packet(slice(longest, i, std::min(i + 184, longest.size())), false);
    }
    ASSERT_EQ(taken.size(), 1u);
    EXPECT_EQ(taken[0].data, longest);
    EXPECT_FALSE(taken[0].section.CRC_error);
}

TEST_F(section_collector, the_pointer_field_lets_one_end_and_the_next_begin)
{
    unit_start(slice(first, 0, 10));
    const bytes rest = slice(first, 10, first.size());
    const auto taken = unit_start_behind(static_cast<unsigned>(rest.size()), join({rest, second}));
    ASSERT_EQ(taken.size(), 2u);
    EXPECT_EQ(taken[0].data, first);
    EXPECT_EQ(taken[1].data, second);
    EXPECT_EQ(collector.incomplete, 0u);
}

TEST_F(section_collector, the_pointer_field_passes_over_the_end_of_a_section_never_begun)
{
    const auto taken = unit_start_behind(10, join({repeated(0x42, 10), second}));
    ASSERT_EQ(taken.size(), 1u);
    EXPECT_EQ(taken[0].data, second);
    EXPECT_EQ(collector.incomplete, 0u);
}

TEST_F(section_collector, a_unit_start_drops_what_its_pointer_field_does_not_complete)
{
    unit_start(slice(first, 0, 10));
    const bytes rest = slice(first, 10, first.size() - 1);
    const auto taken = unit_start_behind(static_cast<unsigned>(rest.size()), join({rest, second}));
    ASSERT_EQ(taken.size(), 1u);
    EXPECT_EQ(taken[0].data, second);
    EXPECT_EQ(collector.incomplete, 1u);
}

TEST_F(section_collector, what_lies_between_the_end_of_a_section_and_the_pointer_is_passed_over)
{
    unit_start(slice(first, 0, 10));
    const bytes rest = slice(first, 10, first.size());
    const auto taken =
        unit_start_behind(static_cast<unsigned>(rest.size() + 5), join({rest, repeated(0x42, 5), second}));
    ASSERT_EQ(taken.size(), 2u);
    EXPECT_EQ(taken[0].data, first);
    EXPECT_EQ(taken[1].data, second);
}

TEST_F(section_collector, a_pointer_field_past_the_packet_begins_nothing)
{
    EXPECT_TRUE(unit_start_behind(200, first).empty());
    EXPECT_TRUE(unit_start_behind(static_cast<unsigned>(first.size()), first).empty());
    EXPECT_TRUE(packet(second, false).empty());
    EXPECT_EQ(collector.incomplete, 0u);
}

TEST_F(section_collector, stuffing_goes_on_to_the_end_of_the_packet)
{
    const auto taken = unit_start(join({first, hex("FF"), second}));
    ASSERT_EQ(taken.size(), 1u);
    EXPECT_TRUE(packet(second, false).empty());
    EXPECT_EQ(collector.incomplete, 0u);
}

TEST_F(section_collector, sections_begin_in_unit_starts_only)
{
    EXPECT_TRUE(packet(first, false).empty());
    unit_start(slice(first, 0, 10));
    EXPECT_EQ(packet(join({slice(first, 10, first.size()), second}), false).size(), 1u);
    EXPECT_EQ(collector.incomplete, 0u);
}

TEST_F(section_collector, an_empty_payload_changes_nothing)
{
    unit_start(slice(first, 0, 10));
    EXPECT_TRUE(packet({}, true).empty());
    EXPECT_TRUE(packet({}, false).empty());
    EXPECT_EQ(packet(slice(first, 10, first.size()), false).size(), 1u);
}

TEST_F(section_collector, a_dropped_section_is_counted_once_and_its_rest_is_passed_over)
{
    unit_start(slice(first, 0, 10));
    mpeg_ts_section_collector_drop(&collector);
    mpeg_ts_section_collector_drop(&collector);
    EXPECT_EQ(collector.incomplete, 1u);
    EXPECT_TRUE(packet(slice(first, 10, first.size()), false).empty());
    EXPECT_EQ(unit_start(second).size(), 1u);
    EXPECT_EQ(collector.incomplete, 1u);
}

TEST_F(section_collector, a_whole_section_that_was_not_taken_is_dropped)
{
    unit_start(slice(first, 0, 10));
    const bytes rest = slice(first, 10, first.size());
    mpeg_ts_section_collector_packet(&collector, rest.data(), rest.data() + rest.size(), false, 0);
    EXPECT_TRUE(packet(rest, false).empty());
    EXPECT_EQ(collector.incomplete, 1u);
}

TEST_F(section_collector, a_wrong_crc_is_told)
{
    for (size_t i = 3; i < first.size(); ++i) {
        bytes wrong = first;
        wrong[i] ^= 0x10;
        const auto taken = unit_start(wrong);
        ASSERT_EQ(taken.size(), 1u);
        EXPECT_TRUE(taken[0].section.CRC_error) << i;
    }
}

TEST_F(section_collector, a_long_section_without_room_for_a_crc_has_a_crc_error_and_no_body)
{
    for (unsigned section_length = 0; section_length < 9; ++section_length) {
        const auto taken =
            unit_start(join({hex("42 B0"), big_endian(section_length, 1), repeated(0, section_length)}));
        ASSERT_EQ(taken.size(), 1u) << section_length;
        EXPECT_TRUE(taken[0].section.CRC_error);
        EXPECT_TRUE(taken[0].body.empty());
        EXPECT_EQ(taken[0].section.CRC_32, 0u);
    }
}

TEST_F(section_collector, a_long_section_of_a_header_and_a_crc_has_an_empty_body)
{
    const auto taken = unit_start(long_section(0x42, 1, {}));
    ASSERT_EQ(taken.size(), 1u);
    EXPECT_FALSE(taken[0].section.CRC_error);
    EXPECT_TRUE(taken[0].body.empty());
}

TEST_F(section_collector, a_short_section_has_no_crc_and_zeros_behind_its_length)
{
    const auto taken = unit_start(short_section(0x70, hex("AA BB CC DD EE")));
    ASSERT_EQ(taken.size(), 1u);
    EXPECT_FALSE(taken[0].section.CRC_error);
    EXPECT_EQ(taken[0].section.CRC_32, 0u);
    EXPECT_EQ(taken[0].body, hex("AA BB CC DD EE"));
    EXPECT_EQ(taken[0].section.header.section_length, 5);
    EXPECT_EQ(taken[0].section.header.table_id_extension, 0);
    EXPECT_EQ(taken[0].section.header.version_number, 0);
    EXPECT_EQ(taken[0].section.header.last_section_number, 0);
}

TEST_F(section_collector, the_crc_of_time_offsets_and_of_splice_information_is_looked_at)
{
    for (const unsigned table_id : {0x73u, 0xFCu}) {
        bytes section = short_section_with_crc(table_id, repeated(0x55, 9));
        auto taken = unit_start(section);
        ASSERT_EQ(taken.size(), 1u);
        EXPECT_FALSE(taken[0].section.CRC_error);
        EXPECT_EQ(taken[0].body.size(), 13u);
        section[5] ^= 1;
        taken = unit_start(section);
        ASSERT_EQ(taken.size(), 1u);
        EXPECT_TRUE(taken[0].section.CRC_error);
        taken = unit_start(short_section(table_id, hex("01 02 03")));
        ASSERT_EQ(taken.size(), 1u);
        EXPECT_TRUE(taken[0].section.CRC_error);
    }
}

TEST_F(section_collector, a_section_without_anything_behind_its_length_is_one)
{
    const auto taken = unit_start(join({short_section(0x72, {}), first}));
    ASSERT_EQ(taken.size(), 2u);
    EXPECT_EQ(taken[0].data, short_section(0x72, {}));
    EXPECT_EQ(taken[1].data, first);
    EXPECT_TRUE(unit_start(hex("72 70")).empty());
    EXPECT_EQ(packet(hex("00"), false).size(), 1u);
}
