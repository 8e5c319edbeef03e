#include "tests/support/report_test.h"

#include "mpeg_ts_analysis/tables/table_dispatch.h"

struct table_dispatch_collection : report_test {
    static constexpr unsigned sdt_pid = 0x0011;

    static bool holds_bytes(unsigned pid)
    {
        return pid_tracking[pid].tbl_asm.write != pid_tracking[pid].tbl_asm.buffer;
    }
};

namespace {

/// An SDT of size bytes in all, 15 to 4098, filled up with zeros: a service for every 5 of them.
bytes sdt_of_size(unsigned original_network_id, size_t size)
{
    return long_section(0x42, 1,
                        join({big_endian(original_network_id, 2), hex("FF"), repeated(0, size - 15)}));
}

/// What such an SDT prints.
std::string lines_of_sdt(unsigned original_network_id, size_t size)
{
    char line[64];
    snprintf(line, sizeof line, "    original_network_id=0x%04x\n", original_network_id);
    std::string lines = std::string("* Service Description Section\n") + line;
    for (size_t i = 0; i < (size - 15) / 5; ++i) lines += "      - service_id=0x0000\n";
    return lines;
}

bytes packet_of(const bytes &stream, size_t number)
{
    const auto start = stream.begin() + static_cast<long>(188 * number);
    return bytes(start, start + 188);
}

/// A packet of the SDT PID that starts a unit, with this payload and stuffing behind it.
bytes start_of_unit(const bytes &payload)
{
    return stream_builder()
        .payload(0x0011, join({payload, repeated(0xFF, 184 - payload.size())}), true)
        .data();
}

const std::string incomplete = "!!! PID 0x0011 table error: table incomplete\n";
const std::string corrupt = "!!! PID 0x0011 table error: checksum failed\n";
const std::string start = "* Starting analysis of: stream.ts\n"
                          "* Packet size: 188 bytes/packet\n";

} // namespace

TEST_F(table_dispatch_collection, a_section_inside_one_packet_is_taken_at_once)
{
    EXPECT_EQ(report_of_packets(stream_builder().section(sdt_pid, sdt_of_size(7, 20)).data()),
              lines_of_sdt(7, 20));
    EXPECT_FALSE(holds_bytes(sdt_pid));
}

TEST_F(table_dispatch_collection, a_section_over_three_packets_is_taken_with_the_third)
{
    const bytes stream = stream_builder().section(sdt_pid, sdt_of_size(7, 500)).data();
    ASSERT_EQ(stream.size(), 3u * 188u);
    EXPECT_EQ(report_of_packets(packet_of(stream, 0)), "");
    EXPECT_EQ(report_of_packets(packet_of(stream, 1)), "");
    EXPECT_TRUE(holds_bytes(sdt_pid));
    EXPECT_EQ(report_of_packets(packet_of(stream, 2)), lines_of_sdt(7, 500));
    EXPECT_FALSE(holds_bytes(sdt_pid));
}

TEST_F(table_dispatch_collection, sections_of_every_size_around_the_packet_borders_are_taken_whole)
{
    for (const size_t border : {183u, 367u, 551u})
        for (size_t size = border - 9; size <= border + 9; ++size)
            EXPECT_EQ(report_of_section(sdt_pid, sdt_of_size(7, size)), lines_of_sdt(7, size)) << size;
}

TEST_F(table_dispatch_collection, the_longest_section_is_taken)
{
    EXPECT_EQ(report_of_section(sdt_pid, sdt_of_size(7, 4098)), lines_of_sdt(7, 4098));
}

TEST_F(table_dispatch_collection, a_section_begins_where_the_pointer_field_points)
{
    for (const unsigned pointer_field : {1u, 2u, 100u, 163u}) {
        const bytes payload =
            join({big_endian(pointer_field, 1), repeated(0x42, pointer_field), sdt_of_size(7, 20)});
        EXPECT_EQ(report_of_packets(start_of_unit(payload)), lines_of_sdt(7, 20)) << pointer_field;
    }
}

TEST_F(table_dispatch_collection, a_single_byte_behind_the_pointer_field_is_the_start_of_a_section)
{
    const bytes section = sdt_of_size(7, 20);
    const bytes first = join({hex("B6"), repeated(0, 182), bytes(section.begin(), section.begin() + 1)});
    const bytes rest(section.begin() + 1, section.end());
    EXPECT_EQ(report_of_packets(start_of_unit(first)), "");
    EXPECT_EQ(report_of_packets(stream_builder().payload(sdt_pid, rest).data()), lines_of_sdt(7, 20));
}

TEST_F(table_dispatch_collection, a_pointer_field_beyond_the_payload_collects_nothing)
{
    for (const char *pointer_field : {"B7", "B8", "FF"}) {
        EXPECT_EQ(report_of_packets(start_of_unit(join({hex(pointer_field), repeated(0x42, 183)}))), "");
        EXPECT_FALSE(holds_bytes(sdt_pid));
        EXPECT_EQ(report_of_packets(stream_builder().payload(sdt_pid, repeated(0x42, 184)).data()), "");
        EXPECT_FALSE(holds_bytes(sdt_pid));
    }
}

TEST_F(table_dispatch_collection, a_pointer_field_beyond_the_payload_still_ends_the_section_in_hand)
{
    const bytes stream = stream_builder().section(sdt_pid, sdt_of_size(7, 300)).data();
    EXPECT_EQ(report_of_packets(join({packet_of(stream, 0), start_of_unit(hex("FF")), packet_of(stream, 1)})),
              incomplete);
}

TEST_F(table_dispatch_collection, packets_before_the_first_start_of_a_unit_are_ignored)
{
    const bytes stream = stream_builder().section(sdt_pid, sdt_of_size(7, 500)).data();
    EXPECT_EQ(report_of_packets(join({packet_of(stream, 1), packet_of(stream, 2), stream})),
              lines_of_sdt(7, 500));
}

TEST_F(table_dispatch_collection, a_start_of_a_unit_ends_a_section_that_misses_bytes)
{
    const bytes first = stream_builder().section(sdt_pid, sdt_of_size(7, 300)).data();
    const bytes second = stream_builder().section(sdt_pid, sdt_of_size(8, 20)).data();
    EXPECT_EQ(report_of_packets(join({packet_of(first, 0), second})), incomplete + lines_of_sdt(8, 20));
}

TEST_F(table_dispatch_collection, a_section_of_less_than_three_bytes_is_incomplete_too)
{
    for (unsigned size = 1; size < 3; ++size) {
        const bytes held(size, 0x42);
        const bytes first = join({big_endian(183 - size, 1), repeated(0, 183 - size), held});
        EXPECT_EQ(report_of_packets(join({start_of_unit(first), start_of_unit(hex("FF"))})), incomplete);
    }
}

TEST_F(table_dispatch_collection, an_incomplete_section_names_its_pid)
{
    track(0x0ABC, TRACK_SCTE35);
    for (const unsigned pid : {0x0000u, 0x0010u, 0x0012u, 0x0ABCu, 0x1FFBu}) {
        const bytes stream = stream_builder().section(pid, sdt_of_size(7, 300)).data();
        char line[64];
        snprintf(line, sizeof line, "!!! PID 0x%04x table error: table incomplete\n", pid);
        EXPECT_EQ(report_of_packets(join({packet_of(stream, 0), packet_of(stream, 0)})), line);
        mpeg_ts_table_assembly_discard(&pid_tracking[pid].tbl_asm);
    }
}

TEST_F(table_dispatch_collection, a_section_that_ends_ahead_of_the_next_ones_start_is_dropped_as_incomplete)
{
    const bytes stream = stream_builder().sections(sdt_pid, {sdt_of_size(7, 250), sdt_of_size(8, 50)}).data();
    ASSERT_EQ(stream.size(), 2u * 188u);
    EXPECT_EQ(report_of_packets(stream), incomplete + lines_of_sdt(8, 50));
}

TEST_F(table_dispatch_collection, of_several_sections_in_one_packet_the_first_is_taken)
{
    const bytes stream = stream_builder()
                             .sections(sdt_pid, {sdt_of_size(7, 50), sdt_of_size(8, 50), sdt_of_size(9, 50)})
                             .data();
    ASSERT_EQ(stream.size(), 188u);
    EXPECT_EQ(report_of_packets(stream), lines_of_sdt(7, 50));
}

TEST_F(table_dispatch_collection, a_second_section_that_goes_on_in_the_next_packet_is_lost_silently)
{
    const bytes stream = stream_builder().sections(sdt_pid, {sdt_of_size(7, 50), sdt_of_size(8, 300)}).data();
    ASSERT_EQ(stream.size(), 2u * 188u);
    EXPECT_EQ(report_of_packets(join({stream, stream})), lines_of_sdt(7, 50) + lines_of_sdt(7, 50));
}

TEST_F(table_dispatch_collection, what_follows_a_section_in_its_last_packet_is_dropped)
{
    const bytes stream = stream_builder().section(sdt_pid, sdt_of_size(7, 300)).data();
    bytes last = packet_of(stream, 1);
    const bytes other = sdt_of_size(8, 20);
    std::copy(other.begin(), other.end(), last.begin() + 4 + (300 - 183));
    EXPECT_EQ(report_of_packets(join({packet_of(stream, 0), last})), lines_of_sdt(7, 300));
    EXPECT_FALSE(holds_bytes(sdt_pid));
}

TEST_F(table_dispatch_collection, stuffing_in_place_of_a_section_is_silent)
{
    EXPECT_EQ(report_of_packets(join({start_of_unit(hex("00")), start_of_unit(hex("00")),
                                      stream_builder().payload(sdt_pid, repeated(0xFF, 184)).data()})),
              "");
    EXPECT_FALSE(holds_bytes(sdt_pid));
}

TEST_F(table_dispatch_collection, stuffing_behind_a_section_is_no_part_of_it)
{
    const bytes payload = join({hex("05"), repeated(0xFF, 5), sdt_of_size(7, 20), repeated(0xFF, 100)});
    EXPECT_EQ(report_of_packets(start_of_unit(payload)), lines_of_sdt(7, 20));
}

TEST_F(table_dispatch_collection, packets_without_payload_do_not_disturb_a_section)
{
    const bytes stream = stream_builder().section(sdt_pid, sdt_of_size(7, 300)).data();
    const bytes without_payload = stream_builder().adaptation(sdt_pid, hex("00")).data();
    EXPECT_EQ(report_of_packets(
                  join({packet_of(stream, 0), without_payload, packet_of(stream, 1), without_payload})),
              lines_of_sdt(7, 300));
}

TEST_F(table_dispatch_collection, a_start_of_a_unit_without_payload_ends_the_section_in_hand)
{
    const bytes stream = stream_builder().section(sdt_pid, sdt_of_size(7, 300)).data();
    const bytes without_payload = stream_builder().adaptation(sdt_pid, hex("00"), {}, true).data();
    EXPECT_EQ(report_of_packets(join({packet_of(stream, 0), without_payload, packet_of(stream, 1)})),
              incomplete);
}

TEST_F(table_dispatch_collection, an_adaptation_field_ahead_of_the_payload_is_no_part_of_a_section)
{
    const bytes section = sdt_of_size(7, 20);
    const bytes packet = stream_builder().payload(sdt_pid, join({hex("00"), section}), true).data();
    EXPECT_EQ(report_of_packets(packet), lines_of_sdt(7, 20));
}

TEST_F(table_dispatch_collection, sections_of_two_pids_do_not_mix)
{
    const bytes one = stream_builder().section(sdt_pid, sdt_of_size(7, 300)).data();
    const bytes other = stream_builder().section(0x0010, sdt_of_size(8, 300)).data();
    EXPECT_EQ(report_of_packets(
                  join({packet_of(one, 0), packet_of(other, 0), packet_of(one, 1), packet_of(other, 1)})),
              lines_of_sdt(7, 300) + lines_of_sdt(8, 300));
}

TEST_F(table_dispatch_collection, a_wrong_checksum_is_reported_whichever_bit_is_wrong)
{
    const bytes section = sdt_of_size(7, 20);
    for (unsigned byte = 3; byte < section.size(); ++byte)
        for (unsigned bit = 0; bit < 8; ++bit)
            EXPECT_EQ(
                report_of_packets(stream_builder().section(sdt_pid, section).flip_bit(5 + byte, bit).data()),
                corrupt);
}

TEST_F(table_dispatch_collection, a_wrong_checksum_is_reported_with_the_last_packet_and_names_its_pid)
{
    track(0x0ABC, TRACK_SCTE35);
    const bytes stream = stream_builder().section(0x0ABC, sdt_of_size(7, 300)).flip_bit(100, 7).data();
    EXPECT_EQ(report_of_packets(packet_of(stream, 0)), "");
    EXPECT_EQ(report_of_packets(packet_of(stream, 1)), "!!! PID 0x0abc table error: checksum failed\n");
    EXPECT_FALSE(holds_bytes(0x0ABC));
}

TEST_F(table_dispatch_collection, a_long_section_too_short_for_header_and_checksum_fails_the_check)
{
    for (unsigned length = 0; length < 9; ++length)
        EXPECT_EQ(report_of_packets(start_of_unit(join({hex("00 42 B0"), big_endian(length, 1)}))), corrupt)
            << length;
}

TEST_F(table_dispatch_collection, a_section_behind_a_corrupt_one_is_taken)
{
    const bytes bad = stream_builder().section(sdt_pid, sdt_of_size(7, 20)).flip_bit(20, 0).data();
    const bytes good = stream_builder().section(sdt_pid, sdt_of_size(8, 20)).data();
    EXPECT_EQ(report_of_packets(join({bad, good})), corrupt + lines_of_sdt(8, 20));
}

TEST_F(table_dispatch_collection, without_storage_nothing_is_collected)
{
    mpeg_ts_pid_tracking *const t = mpeg_ts_pid_tracking_get(sdt_pid);
    mpeg_ts_table_assembly_init(&t->tbl_asm, 0);
    const bytes stream = stream_builder().section(sdt_pid, sdt_of_size(7, 300)).data();
    EXPECT_EQ(report_of_packets(join({stream, stream})), "");
    mpeg_ts_packet packet;
    ASSERT_TRUE(mpeg_ts_decode(&packet, stream.data(), 188));
    take_ready_section(t, &packet, true);
    EXPECT_EQ(report(), "");
}

TEST_F(table_dispatch_collection, a_lost_packet_drops_the_section_without_a_message_of_its_own)
{
    const bytes stream =
        stream_builder().section(sdt_pid, sdt_of_size(7, 500)).section(sdt_pid, sdt_of_size(8, 20)).data();
    ASSERT_EQ(stream.size(), 4u * 188u);
    settings.packet_size_mode = 0;
    EXPECT_EQ(report_of_run(join({packet_of(stream, 0), packet_of(stream, 2), packet_of(stream, 3)})),
              start +
                  "!!! ALARM: TS continuity counter error in PID 0x0011 (expect=1 cur=2) adap=0 payload=1\n" +
                  lines_of_sdt(8, 20) +
                  "* Scan complete\n"
                  "* Priority #1 errors: 1\n"
                  "*   Continuity counter/missing packets:              1 errors\n"
                  "* Priority #2 errors: 0\n"
                  "* Priority #3 errors: 0\n");
}

TEST_F(table_dispatch_collection, a_packet_that_starts_a_unit_behind_lost_ones_starts_a_section)
{
    const bytes stream = stream_builder()
                             .section(sdt_pid, sdt_of_size(7, 300))
                             .lose_packets(sdt_pid, 3)
                             .section(sdt_pid, sdt_of_size(8, 300))
                             .data();
    settings.packet_size_mode = 0;
    EXPECT_EQ(report_of_run(join({packet_of(stream, 0), packet_of(stream, 2), packet_of(stream, 3)})),
              start +
                  "!!! ALARM: TS continuity counter error in PID 0x0011 (expect=1 cur=5) adap=0 payload=1\n" +
                  lines_of_sdt(8, 300) +
                  "* Scan complete\n"
                  "* Priority #1 errors: 1\n"
                  "*   Continuity counter/missing packets:              1 errors\n"
                  "* Priority #2 errors: 0\n"
                  "* Priority #3 errors: 0\n");
}

TEST_F(table_dispatch_collection, table_errors_are_not_counted)
{
    const bytes stream = stream_builder()
                             .section(sdt_pid, sdt_of_size(7, 20))
                             .flip_bit(20, 0)
                             .section(0x0000, long_section(0x80, 1, {}))
                             .data();
    settings.packet_size_mode = 0;
    EXPECT_EQ(report_of_run(stream), start + corrupt +
                                         "!!! PID 0x0000 table error: table_id not 0x00\n"
                                         "* Scan complete\n"
                                         "* Priority #1 errors: 0\n"
                                         "* Priority #2 errors: 0\n"
                                         "* Priority #3 errors: 0\n");
}
