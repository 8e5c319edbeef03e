#include "tests/mpeg12_ts/assembly_test.h"

#include <climits>

// An allocation that fails returns null under the address sanitizer too.
extern "C" const char *__asan_default_options();
extern "C" const char *__asan_default_options()
{
    return "allocator_may_return_null=1";
}

struct table_assembly : assembly_test {};

TEST_F(table_assembly, a_record_of_zeros_has_no_storage_and_ignores_packets)
{
    begin(start_of(pat_section(1, {
                                      {1, 0x100}
    })));
    add(hex("01 02 03"));
    mpeg_ts_table_assembly_complete(&assembly);
    EXPECT_EQ(take(), 0);
    mpeg_ts_table_assembly_discard(&assembly);
    EXPECT_EQ(assembly.buffer, nullptr);
    EXPECT_EQ(assembly.fence, nullptr);
    EXPECT_EQ(assembly.write, nullptr);
}

TEST_F(table_assembly, size_0_releases_the_storage_any_number_of_times)
{
    init(0);
    EXPECT_NE(status, 0);
    init(16384);
    begin(start_of(pat_section(1, {
                                      {1, 0x100}
    })));
    init(0);
    EXPECT_EQ(assembly.buffer, nullptr);
    EXPECT_EQ(assembly.fence, nullptr);
    EXPECT_EQ(assembly.write, nullptr);
    EXPECT_EQ(take(), 0);
    init(0);
    EXPECT_EQ(assembly.buffer, nullptr);
}

TEST_F(table_assembly, storage_has_room_for_the_size_and_128_bytes_of_zeros)
{
    for (const unsigned long size : {1ul, 16384ul, 32768ul}) {
        init(0);
        init(size);
        EXPECT_NE(status, 0);
        ASSERT_NE(assembly.buffer, nullptr);
        EXPECT_EQ(assembly.fence, assembly.buffer + size + 128);
        EXPECT_EQ(assembly.write, assembly.buffer);
        EXPECT_EQ(bytes(assembly.buffer, assembly.fence), repeated(0x00, size + 128));
    }
}

TEST_F(table_assembly, a_second_init_starts_anew_with_other_storage)
{
    init(100);
    begin(start_of(hex("00 B0 0D")));
    mpeg_ts_table_assembly_complete(&assembly);
    init(200);
    EXPECT_EQ(assembly.fence, assembly.buffer + 200 + 128);
    EXPECT_EQ(assembly.write, assembly.buffer);
    EXPECT_EQ(assembly.buffer[0], 0);
    const bytes section = pat_section(1, {
                                             {1, 0x100}
    });
    begin(start_of(section));
    EXPECT_EQ(take(), 1);
}

TEST_F(table_assembly, without_memory_it_has_no_storage_and_ignores_packets)
{
    init(ULONG_MAX / 2);
    EXPECT_EQ(status, 0);
    EXPECT_EQ(assembly.buffer, nullptr);
    EXPECT_EQ(assembly.fence, nullptr);
    begin(start_of(pat_section(1, {
                                      {1, 0x100}
    })));
    add(hex("01"));
    EXPECT_EQ(assembly.write, nullptr);
    EXPECT_EQ(take(), 0);
}

TEST_F(table_assembly, a_short_section_of_a_unit_start_packet_is_taken_at_once)
{
    init();
    const bytes section = pat_section(0x1234, {
                                                  {1, 0x100}
    });
    begin(join({start_of(section), repeated(0xFF, 183 - section.size())}));
    ASSERT_EQ(take(), 1);
    EXPECT_EQ(header->table_id, 0x00);
    EXPECT_EQ(header->section_syntax_indicator, 1);
    EXPECT_EQ(header->private_indicator, 0);
    EXPECT_EQ(header->section_length, 13);
    EXPECT_EQ(header->table_id_extension, 0x1234);
    EXPECT_EQ(base, assembly.buffer + 8);
    EXPECT_EQ(fence, assembly.buffer + 12);
    EXPECT_EQ(body(), hex("00 01 E1 00"));
    EXPECT_EQ(slice(held(), 0, section.size()), section) << "the pointer_field is not stored";
}

TEST_F(table_assembly, a_section_over_three_packets_is_taken_after_the_third)
{
    init();
    const bytes section = long_section(0x42, 1, repeated(0x5A, 480));
    begin(start_of(slice(section, 0, 183)));
    EXPECT_EQ(take(), 0);
    add(slice(section, 183, 184));
    EXPECT_EQ(take(), 0);
    add(join({slice(section, 367, section.size() - 367), repeated(0xFF, 59)}));
    ASSERT_EQ(take(), 1);
    EXPECT_EQ(body(), repeated(0x5A, 480));
    EXPECT_EQ(header->section_length, 489);
}

TEST_F(table_assembly, a_pointer_field_passes_over_the_tail_of_the_section_before)
{
    init();
    const bytes section = pat_section(7, {
                                             {1, 0x100}
    });
    begin(join({hex("03 AA BB CC"), section}));
    EXPECT_EQ(held(), section);
    ASSERT_EQ(take(), 1);
    EXPECT_EQ(header->table_id_extension, 7);
}

TEST_F(table_assembly, a_pointer_field_to_the_last_byte_collects_that_byte)
{
    init();
    begin(hex("02 AA BB 42"));
    EXPECT_EQ(held(), hex("42"));
}

TEST_F(table_assembly, a_pointer_field_past_the_payload_collects_nothing_and_drops_what_was_held)
{
    init();
    for (const char *payload : {"00", "02 AA BB", "03 AA BB", "FF AA BB"}) {
        begin(start_of(hex("00 B0 0D")));
        ASSERT_LT(assembly.buffer, assembly.write);
        begin(hex(payload));
        EXPECT_EQ(assembly.write, assembly.buffer) << payload;
    }
}

TEST_F(table_assembly, a_unit_start_drops_the_section_in_hand)
{
    init();
    const bytes first = long_section(0x42, 1, repeated(0x11, 300));
    const bytes second = pat_section(2, {
                                            {1, 0x100}
    });
    begin(start_of(slice(first, 0, 183)));
    mpeg_ts_table_assembly_complete(&assembly);
    EXPECT_EQ(take(), 0);
    begin(start_of(second));
    EXPECT_EQ(held(), second);
    ASSERT_EQ(take(), 1);
    EXPECT_EQ(header->table_id_extension, 2);
}

TEST_F(table_assembly, a_closed_collection_takes_no_more_bytes)
{
    init();
    const bytes section = pat_section(1, {
                                             {1, 0x100}
    });
    begin(start_of(slice(section, 0, 10)));
    mpeg_ts_table_assembly_complete(&assembly);
    add(slice(section, 10, section.size() - 10));
    EXPECT_EQ(held(), slice(section, 0, 10));
    EXPECT_EQ(take(), 0);
    mpeg_ts_table_assembly_discard(&assembly);
    begin(start_of(slice(section, 0, 10)));
    add(slice(section, 10, section.size() - 10));
    EXPECT_EQ(take(), 1);
}

TEST_F(table_assembly, a_discard_forgets_the_section_and_keeps_the_storage)
{
    init();
    begin(start_of(pat_section(1, {
                                      {1, 0x100}
    })));
    const uint8_t *const buffer = assembly.buffer;
    const uint8_t *const storage_fence = assembly.fence;
    mpeg_ts_table_assembly_discard(&assembly);
    EXPECT_EQ(assembly.buffer, buffer);
    EXPECT_EQ(assembly.fence, storage_fence);
    EXPECT_EQ(assembly.write, assembly.buffer);
    EXPECT_EQ(take(), 0);
}

TEST_F(table_assembly, packets_without_payload_collect_nothing)
{
    init();
    begin(start_of(hex("00 B0 0D")));
    add({});
    EXPECT_EQ(held(), hex("00 B0 0D"));
    begin({});
    EXPECT_EQ(assembly.write, assembly.buffer) << "what was held is dropped";
}

TEST_F(table_assembly, a_header_argument_changes_nothing)
{
    init();
    const bytes block = start_of(pat_section(3, {
                                                    {1, 0x100}
    }));
    const mpeg_ts_packet packet = packet_of(block);
    const mpeg_ts_pat_main_header other = {.table_id = 0x42, .table_id_extension = 9};
    mpeg_ts_table_assembly_begin(&assembly, &other, &packet);
    ASSERT_EQ(take(), 1);
    EXPECT_EQ(header->table_id, 0x00);
    EXPECT_EQ(header->table_id_extension, 3);
}

TEST_F(table_assembly, what_exceeds_the_capacity_is_dropped)
{
    init(100);
    const bytes section = long_section(0x42, 1, repeated(0x5A, 200));
    begin(start_of(slice(section, 0, 60)));
    add(slice(section, 60, 60));
    EXPECT_EQ(held(), slice(section, 0, 100));
    add(slice(section, 120, 60));
    EXPECT_EQ(held(), slice(section, 0, 100));
    EXPECT_EQ(bytes(assembly.write, assembly.fence), repeated(0x00, 128));
    EXPECT_EQ(take(), 0);

    begin(start_of(repeated(0x42, 150)));
    EXPECT_EQ(held(), repeated(0x42, 100));
}
