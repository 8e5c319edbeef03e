#include "tests/mpeg12_ts/assembly_test.h"

#include "mpeg12_ts/crc32.h"

#include <algorithm>

struct table_assembly_section : assembly_test {};

TEST_F(table_assembly_section, every_field_of_the_header_is_read)
{
    init();
    const section_fields fields = {.version_number = 31,
                                   .current_next_indicator = 0,
                                   .section_number = 0xAB,
                                   .last_section_number = 0xCD,
                                   .private_indicator = 1};
    begin(start_of(long_section(0x4E, 0xFEDC, hex("01 02 03"), fields)));
    ASSERT_EQ(take(), 1);
    EXPECT_EQ(header->table_id, 0x4E);
    EXPECT_EQ(header->section_syntax_indicator, 1);
    EXPECT_EQ(header->private_indicator, 1);
    EXPECT_EQ(header->section_length, 12);
    EXPECT_EQ(header->table_id_extension, 0xFEDC);
    EXPECT_EQ(header->version_number, 31);
    EXPECT_EQ(header->current_next_indicator, 0);
    EXPECT_EQ(header->section_number, 0xAB);
    EXPECT_EQ(header->last_section_number, 0xCD);
    EXPECT_EQ(body(), hex("01 02 03"));

    begin(start_of(long_section(0x02, 1, {}, {.version_number = 1})));
    ASSERT_EQ(take(), 1);
    EXPECT_EQ(header->version_number, 1);
    EXPECT_EQ(header->current_next_indicator, 1);
    EXPECT_EQ(header->private_indicator, 0);
}

TEST_F(table_assembly_section, a_section_is_whole_with_its_last_byte)
{
    init();
    const bytes section = pat_section(1, {
                                             {1, 0x100}
    });
    begin(start_of({section[0]}));
    for (size_t i = 1; i < section.size(); ++i) {
        EXPECT_EQ(take(), 0) << i;
        add({section[i]});
    }
    EXPECT_EQ(take(), 1);
}

TEST_F(table_assembly_section, bytes_behind_the_section_are_not_part_of_it)
{
    init();
    const bytes first = pat_section(1, {
                                           {1, 0x100}
    });
    begin(join({
        start_of(first), pat_section(2, {{2, 0x200}, {3, 0x300}}
          )
    }));
    ASSERT_EQ(take(), 1);
    EXPECT_EQ(header->table_id_extension, 1);
    EXPECT_EQ(body(), hex("00 01 E1 00"));
}

TEST_F(table_assembly_section, a_closed_whole_section_is_still_taken)
{
    init();
    begin(start_of(pat_section(1, {
                                      {1, 0x100}
    })));
    mpeg_ts_table_assembly_complete(&assembly);
    EXPECT_EQ(take(), 1);
}

TEST_F(table_assembly_section, any_flipped_bit_behind_the_length_fails_the_checksum)
{
    init();
    const bytes section = pat_section(1, {
                                             {1, 0x100}
    });
    for (size_t bit = 8 * 3; bit < 8 * section.size(); ++bit) {
        bytes broken = section;
        broken[bit / 8] ^= static_cast<uint8_t>(0x80 >> bit % 8);
        begin(start_of(broken));
        EXPECT_EQ(take(), -1) << bit;
    }
}

TEST_F(table_assembly_section, a_long_section_without_room_for_header_and_checksum_fails_when_it_is_whole)
{
    init();
    for (unsigned length = 0; length < 9; ++length) {
        begin(start_of(join({hex("00"), big_endian(0xB000u + length, 2), repeated(0x00, length)})));
        EXPECT_EQ(take(), -1) << length;
        if (length == 0) continue;
        begin(start_of(join({hex("00"), big_endian(0xB000u + length, 2), repeated(0x00, length - 1)})));
        EXPECT_EQ(take(), 0) << length;
    }
    begin(start_of(long_section(0x00, 1, {})));
    ASSERT_EQ(take(), 1);
    EXPECT_EQ(base, fence);
}

TEST_F(table_assembly_section, without_room_it_fails_even_when_its_residue_is_zero)
{
    init();
    for (unsigned length = 4; length < 9; ++length) {
        const bytes start = join({hex("00"), big_endian(0xB000u + length, 2), repeated(0x00, length - 4)});
        const uint32_t crc = mpeg_ts_crc32(start.data(), start.data() + start.size());
        begin(start_of(join({start, big_endian(crc, 4)})));
        EXPECT_EQ(take(), -1) << length;
    }
}

TEST_F(table_assembly_section, the_body_of_a_short_section_runs_from_the_length_to_the_end)
{
    init();
    begin(start_of(short_section(0xFC, hex("11 22 33 44 55 66"), 1)));
    ASSERT_EQ(take(), 1);
    EXPECT_EQ(header->table_id, 0xFC);
    EXPECT_EQ(header->section_syntax_indicator, 0);
    EXPECT_EQ(header->private_indicator, 1);
    EXPECT_EQ(header->section_length, 6);
    EXPECT_EQ(base, assembly.buffer + 3);
    EXPECT_EQ(body(), hex("11 22 33 44 55 66"));
}

TEST_F(table_assembly_section, the_header_of_a_short_section_has_zeros_behind_the_length)
{
    init();
    begin(start_of(long_section(0x42, 0x1234, hex("01"),
                                {.version_number = 5, .section_number = 6, .last_section_number = 7})));
    ASSERT_EQ(take(), 1);
    begin(start_of(short_section(0xFC, repeated(0xFF, 20))));
    ASSERT_EQ(take(), 1);
    EXPECT_EQ(header->table_id_extension, 0);
    EXPECT_EQ(header->version_number, 0);
    EXPECT_EQ(header->current_next_indicator, 0);
    EXPECT_EQ(header->section_number, 0);
    EXPECT_EQ(header->last_section_number, 0);
}

TEST_F(table_assembly_section, a_short_section_of_length_0_has_an_empty_body)
{
    init();
    begin(start_of(hex("C0 30 00")));
    ASSERT_EQ(take(), 1);
    EXPECT_EQ(base, fence);
}

TEST_F(table_assembly_section, stuffing_is_neither_ready_nor_incomplete_nor_corrupt)
{
    init();
    begin(start_of(hex("FF")));
    EXPECT_EQ(take(), 2);
    begin(start_of(repeated(0xFF, 183)));
    EXPECT_EQ(take(), 2);
}

TEST_F(table_assembly_section, fewer_than_three_bytes_are_incomplete)
{
    init();
    begin(start_of(hex("00")));
    EXPECT_EQ(take(), 0);
    begin(start_of(hex("00 30")));
    EXPECT_EQ(take(), 0);
}

TEST_F(table_assembly_section, the_longest_section_ends_128_bytes_before_the_storage)
{
    init(4098);
    const bytes section = long_section(0x42, 1, repeated(0x5A, 4095 - 9));
    begin(start_of(slice(section, 0, 183)));
    for (size_t done = 183; done < section.size(); done += 184)
        add(slice(section, done, std::min(size_t{184}, section.size() - done)));
    ASSERT_EQ(take(), 1);
    EXPECT_EQ(header->section_length, 4095);
    EXPECT_EQ(fence + 4 + 128, assembly.fence);
    EXPECT_LE(base, assembly.fence);
}

TEST_F(table_assembly_section, bytes_of_an_earlier_section_stay_behind_a_shorter_one)
{
    init();
    begin(start_of(repeated(0x42, 100)));
    begin(start_of(hex("C0 30 00")));
    EXPECT_EQ(bytes(assembly.buffer, assembly.buffer + 5), hex("C0 30 00 42 42"));
    EXPECT_EQ(held(), hex("C0 30 00"));
}

TEST_F(table_assembly_section, taking_twice_gives_the_same_section)
{
    init();
    begin(start_of(pat_section(1, {
                                      {1, 0x100}
    })));
    ASSERT_EQ(take(), 1);
    const uint8_t *const first_fence = fence;
    ASSERT_EQ(take(), 1);
    EXPECT_EQ(fence, first_fence);
    EXPECT_EQ(header->version_number, 0);
}
