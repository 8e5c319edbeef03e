#include "tests/overview_tables/table_stream.h"

#include "mpeg_ts_overview/tables/section_router.h"

#include <gtest/gtest.h>

struct router : testing::Test {
    /// The packets [first, fence) of a stream.
    static stream_builder part(const stream_builder &built, size_t first, size_t fence)
    {
        stream_builder packets;
        for (size_t i = first; i < fence; ++i) {
            const auto start = built.data().begin() + static_cast<long>(188 * i);
            packets.raw(bytes(start, start + 188));
        }
        return packets;
    }

    /// Hands over the packets of a stream, with the sequence that the test gives for some of them.
    void feed(const stream_builder &built)
    {
        for (size_t i = 0; i < built.packet_count(); ++i) {
            ts_packet packet = read_packet(built.data().data() + 188 * i);
            packet.at.packet = next;
            packet.at.byte = 188 * next;
            const auto special = sequences.find(i);
            routed.on_packet(packet, special != sequences.end() ? special->second : packet_sequence{}, notes);
            ++next;
        }
    }

    pid_directory uses;
    section_router routed{uses};
    section_notes notes;
    std::map<size_t, packet_sequence> sequences; ///< by packet
    uint64_t next = 100;
    const bytes shorter = long_section(0x42, 1, repeated(0x11, 50));
    const bytes longer = long_section(0x42, 2, repeated(0x22, 400)); ///< three packets
};

TEST_F(router, a_section_has_the_moments_of_its_first_and_last_packet)
{
    feed(stream_builder().section(0x11, longer).section(0x11, shorter));
    ASSERT_EQ(notes.good.size(), 2u);
    const table_section &section = notes.good[0].section;
    EXPECT_EQ(notes.good[0].data, longer);
    EXPECT_EQ(section.pid, 0x11);
    EXPECT_EQ(section.header.table_id_extension, 2);
    EXPECT_EQ(section.begun.packet, 100u);
    EXPECT_EQ(section.begun.byte, 18800u);
    EXPECT_EQ(section.at.packet, 102u);
    EXPECT_EQ(big_endian(section.crc_32, 4), bytes(longer.end() - 4, longer.end()));
    EXPECT_EQ(section.body_fence - section.body, 400);
    EXPECT_EQ(notes.good[1].section.begun.packet, 103u);
    EXPECT_EQ(notes.good[1].section.at.packet, 103u);
}

TEST_F(router, what_goes_on_in_further_packets_is_told_of_when_it_begins)
{
    const stream_builder built = stream_builder().section(0x11, shorter).section(0x11, longer);
    feed(part(built, 0, 1));
    EXPECT_TRUE(notes.begun.empty());
    feed(part(built, 1, 2));
    ASSERT_EQ(notes.begun.size(), 1u);
    EXPECT_EQ(notes.begun[0].section.pid, 0x11);
    EXPECT_EQ(notes.begun[0].section.header.table_id_extension, 2);
    EXPECT_EQ(notes.begun[0].section.at.packet, 101u);
    EXPECT_EQ(notes.begun[0].data, repeated(0x22, 183 - 8));
    feed(part(built, 2, 4));
    EXPECT_EQ(notes.begun.size(), 1u);
    EXPECT_EQ(notes.good.size(), 2u);
}

TEST_F(router, sections_back_to_back_begin_where_the_last_one_ends)
{
    feed(stream_builder().sections(0x11, {shorter, longer, shorter}));
    ASSERT_EQ(notes.good.size(), 3u);
    EXPECT_EQ(notes.good[1].section.begun.packet, notes.good[0].section.at.packet);
    EXPECT_EQ(notes.good[2].section.begun.packet, notes.good[1].section.at.packet);
}

TEST_F(router, pids_are_collected_each_by_itself)
{
    const stream_builder one = stream_builder().section(0x11, longer);
    const stream_builder other = stream_builder().section(0x12, longer);
    for (size_t i = 0; i < 3; ++i) {
        feed(part(one, i, i + 1));
        feed(part(other, i, i + 1));
    }
    ASSERT_EQ(notes.good.size(), 2u);
    EXPECT_EQ(notes.good[0].section.begun.packet, 100u);
    EXPECT_EQ(notes.good[1].section.begun.packet, 101u);
}

TEST_F(router, duplicates_are_passed_over)
{
    const stream_builder built = stream_builder().section(0x11, longer);
    packet_sequence copy;
    copy.duplicate = true;
    packet_sequence further_copy = copy;
    further_copy.error = true;
    feed(part(built, 0, 2));
    sequences[0] = copy;
    feed(part(built, 1, 2));
    sequences[0] = further_copy;
    feed(part(built, 1, 2));
    sequences.clear();
    feed(part(built, 2, 3));
    ASSERT_EQ(notes.good.size(), 1u);
    EXPECT_EQ(notes.good[0].data, longer);
    EXPECT_EQ(routed.incomplete_sections(0x11), 0u);
}

TEST_F(router, a_packet_out_of_sequence_drops_the_section_in_hand)
{
    sequences[1].broken = true;
    feed(stream_builder().section(0x11, longer).section(0x11, shorter));
    ASSERT_EQ(notes.good.size(), 1u);
    EXPECT_EQ(notes.good[0].data, shorter);
    EXPECT_EQ(routed.incomplete_sections(0x11), 1u);
    EXPECT_EQ(routed.crc_errors(0x11), 0u);
}

TEST_F(router, a_packet_out_of_sequence_may_begin_a_section)
{
    sequences[0].broken = true;
    feed(stream_builder().section(0x11, shorter));
    EXPECT_EQ(notes.good.size(), 1u);
    EXPECT_EQ(routed.incomplete_sections(0x11), 0u);
}

TEST_F(router, a_scrambled_packet_is_told_and_drops_the_section_in_hand)
{
    const stream_builder built = stream_builder().section(0x11, longer);
    feed(part(built, 0, 1));
    feed(part(built, 1, 2).scramble(2));
    feed(part(built, 2, 3));
    EXPECT_TRUE(notes.good.empty());
    EXPECT_EQ(notes.scrambled, std::vector<uint16_t>{0x11});
    EXPECT_EQ(routed.incomplete_sections(0x11), 1u);
}

TEST_F(router, a_packet_with_transport_error_drops_the_section_in_hand)
{
    const stream_builder built = stream_builder().section(0x11, longer);
    feed(part(built, 0, 1));
    feed(part(built, 1, 2).flip_bit(1, 7));
    feed(part(built, 2, 3));
    EXPECT_TRUE(notes.good.empty());
    EXPECT_TRUE(notes.scrambled.empty());
    EXPECT_EQ(routed.incomplete_sections(0x11), 1u);
}

TEST_F(router, a_loss_of_sync_drops_every_section_in_hand)
{
    const stream_builder one = stream_builder().section(0x11, longer);
    const stream_builder other = stream_builder().section(0x12, longer);
    feed(part(one, 0, 1));
    feed(part(other, 0, 1));
    routed.on_sync_loss();
    routed.on_sync_loss();
    feed(part(one, 1, 3));
    EXPECT_TRUE(notes.good.empty());
    EXPECT_EQ(routed.incomplete_sections(0x11), 1u);
    EXPECT_EQ(routed.incomplete_sections(0x12), 1u);
    EXPECT_EQ(routed.incomplete_sections(0x13), 0u);
}

TEST_F(router, a_wrong_crc_is_counted_and_told_apart)
{
    bytes wrong = shorter;
    wrong[20] ^= 1;
    feed(stream_builder().section(0x11, wrong).section(0x11, shorter));
    EXPECT_EQ(notes.good.size(), 1u);
    ASSERT_EQ(notes.bad.size(), 1u);
    EXPECT_EQ(notes.bad[0].data, wrong);
    EXPECT_EQ(routed.crc_errors(0x11), 1u);
    EXPECT_EQ(routed.incomplete_sections(0x11), 0u);
}

TEST_F(router, sections_of_other_tables_on_0x24_leave_no_trace)
{
    bytes wrong = shorter;
    wrong[20] ^= 1;
    feed(stream_builder().section(0x24, longer).section(0x24, wrong));
    const stream_builder built = stream_builder().section(0x24, longer);
    feed(part(built, 0, 1));
    feed(stream_builder().section(0x24, long_section(0xC4, 1, {})));
    ASSERT_EQ(notes.good.size(), 1u);
    EXPECT_EQ(notes.good[0].section.header.table_id, 0xC4);
    EXPECT_TRUE(notes.bad.empty());
    EXPECT_EQ(routed.crc_errors(0x24), 0u);
    EXPECT_EQ(routed.incomplete_sections(0x24), 0u);
}

TEST_F(router, what_was_begun_before_the_pid_was_collected_anew_is_forgotten)
{
    uses.add(0x100, pid_use::map);
    const stream_builder built = stream_builder().section(0x100, longer);
    feed(part(built, 0, 1));
    uses.remove(0x100, pid_use::map);
    uses.add(0x100, pid_use::map);
    feed(part(built, 1, 3));
    EXPECT_TRUE(notes.good.empty());
    EXPECT_EQ(routed.incomplete_sections(0x100), 0u);
}

TEST_F(router, what_was_begun_before_the_pid_was_named_otherwise_is_no_loss_of_sync_s)
{
    uses.add(0x100, pid_use::map);
    const stream_builder built = stream_builder().section(0x100, longer);
    feed(part(built, 0, 1));
    uses.remove(0x100, pid_use::map);
    routed.on_sync_loss();
    EXPECT_EQ(routed.incomplete_sections(0x100), 0u);
    uses.add(0x100, pid_use::map);
    routed.on_sync_loss();
    EXPECT_EQ(routed.incomplete_sections(0x100), 0u);
}

TEST_F(router, packets_seen_are_known)
{
    EXPECT_FALSE(routed.has_seen(0x11));
    feed(stream_builder().section(0x11, shorter));
    EXPECT_TRUE(routed.has_seen(0x11));
    EXPECT_FALSE(routed.has_seen(0x12));
}
