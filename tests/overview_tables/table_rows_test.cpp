#include "tests/overview_tables/table_stream.h"

#include <gtest/gtest.h>

struct rows : testing::Test {
    const tables_facts &tables() { return stream.tables->rows().facts(); }
    const table_facts &row(size_t number) { return tables().rows.at(number); }

    static bytes eit(unsigned table_id, unsigned service, unsigned ts, unsigned network)
    {
        return long_section(
            table_id, service,
            join({big_endian(ts, 2), big_endian(network, 2), hex("00"), big_endian(table_id, 1)}));
    }

    static bytes sdt(unsigned table_id, unsigned ts, unsigned network)
    {
        return long_section(table_id, ts, join({big_endian(network, 2), hex("FF")}));
    }

    table_stream stream;
    const bytes nit = long_section(0x40, 0x3001, hex("F000 F000"));
};

TEST_F(rows, a_row_is_a_pid_a_table_and_an_extension)
{
    stream.section(0, 0x10, nit);
    stream.section(0, 0x11, nit);
    stream.section(0, 0x10, long_section(0x41, 0x3001, hex("F000 F000")));
    stream.section(0, 0x10, long_section(0x40, 0x3002, hex("F000 F000")));
    stream.section(0, 0x10, nit);
    ASSERT_EQ(tables().rows.size(), 4u);
    EXPECT_EQ(row(0).pid, 0x10);
    EXPECT_EQ(row(0).table_id, 0x40);
    EXPECT_EQ(row(0).table_id_extension, 0x3001);
    EXPECT_EQ(row(0).name, "NIT");
    EXPECT_EQ(row(0).sections, 2u);
    EXPECT_EQ(row(1).pid, 0x11);
    EXPECT_EQ(row(2).table_id, 0x41);
    EXPECT_EQ(row(3).table_id_extension, 0x3002);
    EXPECT_EQ(tables().not_kept, 0u);
}

TEST_F(rows, eit_rows_differ_by_transport_stream_and_network)
{
    for (const unsigned table_id : {0x4Eu, 0x4Fu, 0x50u, 0x6Fu}) {
        stream.section(0, 0x12, eit(table_id, 1, 1, 1));
        stream.section(0, 0x12, eit(table_id, 1, 2, 1));
        stream.section(0, 0x12, eit(table_id, 1, 1, 2));
        stream.section(0, 0x12, eit(table_id, 1, 1, 1));
    }
    ASSERT_EQ(tables().rows.size(), 12u);
    EXPECT_EQ(row(1).transport_stream_id, 2);
    EXPECT_EQ(row(2).original_network_id, 2);
    EXPECT_EQ(row(0).sections, 2u);
}

TEST_F(rows, sdt_rows_differ_by_network)
{
    stream.section(0, 0x11, sdt(0x42, 1, 1)).section(0, 0x11, sdt(0x42, 1, 2));
    stream.section(0, 0x11, sdt(0x46, 1, 1)).section(0, 0x11, sdt(0x46, 1, 2));
    ASSERT_EQ(tables().rows.size(), 4u);
    EXPECT_EQ(row(1).original_network_id, 2);
    EXPECT_FALSE(row(1).transport_stream_id);
}

TEST_F(rows, ett_rows_differ_by_etm_id)
{
    stream.section(0, 0x1FFB, long_section(0xCC, 0, hex("00 00010002")));
    stream.section(0, 0x1FFB, long_section(0xCC, 0, hex("00 00010003")));
    ASSERT_EQ(tables().rows.size(), 2u);
    EXPECT_EQ(row(0).ETM_id, 0x00010002u);
}

TEST_F(rows, what_a_section_is_too_short_for_is_not_in_its_key)
{
    stream.section(0, 0x12, long_section(0x4E, 1, hex("0001 00")));
    stream.section(0, 0x11, long_section(0x42, 1, hex("00")));
    stream.section(0, 0x1FFB, long_section(0xCC, 0, hex("00 000100")));
    EXPECT_FALSE(row(0).transport_stream_id);
    EXPECT_FALSE(row(1).original_network_id);
    EXPECT_FALSE(row(2).ETM_id);
}

TEST_F(rows, short_sections_have_no_extension_and_no_versions)
{
    stream.section(0, 0x14, short_section(0x70, hex("C079124500")));
    stream.section(1, 0x14, short_section(0x70, hex("C079124501")));
    ASSERT_EQ(tables().rows.size(), 1u);
    EXPECT_FALSE(row(0).table_id_extension);
    EXPECT_TRUE(row(0).versions.empty());
    EXPECT_EQ(row(0).sections, 2u);
    EXPECT_EQ(row(0).interval_ticks.count, 1u);
    EXPECT_EQ(row(0).changed_under_same_version, 0u);
}

TEST_F(rows, intervals_lie_between_arrivals_of_the_same_number)
{
    section_fields second;
    second.section_number = second.last_section_number = 1;
    const bytes other = long_section(0x40, 0x3001, hex("F000 F000"), second);
    stream.section(0, 0x10, nit).section(1, 0x10, other).section(3, 0x10, nit).section(9, 0x10, other);
    EXPECT_EQ(row(0).interval_ticks.count, 2u);
    EXPECT_EQ(row(0).interval_ticks.min, ticks_at(3));
    EXPECT_EQ(row(0).interval_ticks.max, ticks_at(8));
    EXPECT_EQ(row(0).interval_ticks.sum, ticks_at(11));
}

TEST_F(rows, the_time_of_a_section_is_that_of_its_last_packet)
{
    const bytes longer = long_section(0x4A, 1, repeated(0, 200));
    const stream_builder built = stream_builder().section(0x11, longer);
    ASSERT_EQ(built.packet_count(), 2u);
    for (const double start : {0.0, 10.0}) {
        stream.packet(start, built.data().data());
        stream.packet(start + start / 10, built.data().data() + 188);
    }
    EXPECT_EQ(row(0).interval_ticks.max, ticks_at(11));
}

TEST_F(rows, intervals_over_a_time_break_or_without_times_do_not_count)
{
    stream.section(0, 0x10, nit).time_break(1, 2).section(3, 0x10, nit).section(4, 0x10, nit);
    EXPECT_EQ(row(0).interval_ticks.count, 1u);
    stream.has_times = false;
    stream.section(5, 0x10, nit).section(6, 0x10, nit);
    EXPECT_EQ(row(0).interval_ticks.count, 1u);
    EXPECT_EQ(row(0).sections, 5u);
}

TEST_F(rows, versions_are_listed_once_each_in_order_of_arrival)
{
    for (const unsigned version : {3u, 3u, 31u, 3u, 0u}) {
        section_fields fields;
        fields.version_number = version;
        stream.section(1, 0x10, long_section(0x40, 1, hex("F000 F000"), fields));
    }
    ASSERT_EQ(row(0).versions.size(), 3u);
    EXPECT_EQ(row(0).versions[0].version, 3u);
    EXPECT_EQ(row(0).versions[0].first_packet, 0u);
    EXPECT_EQ(row(0).versions[1].version, 31u);
    EXPECT_EQ(row(0).versions[1].first_packet, 2u);
    EXPECT_EQ(row(0).versions[2].version, 0u);
}

TEST_F(rows, sections_that_are_not_current_are_counted_and_nothing_else)
{
    section_fields next;
    next.current_next_indicator = 0;
    next.version_number = 7;
    stream.section(0, 0x10, nit).section(1, 0x10, long_section(0x40, 0x3001, hex("F001 00 F000"), next));
    stream.section(2, 0x10, nit);
    EXPECT_EQ(row(0).sections, 3u);
    EXPECT_EQ(row(0).versions.size(), 1u);
    EXPECT_EQ(row(0).interval_ticks.max, ticks_at(2));
    EXPECT_EQ(row(0).changed_under_same_version, 0u);
}

TEST_F(rows, sections_with_a_wrong_crc_count_nowhere)
{
    bytes wrong = nit;
    wrong[9] ^= 1;
    stream.section(0, 0x10, wrong);
    EXPECT_TRUE(tables().rows.empty());
}

TEST_F(rows, a_change_under_the_same_version_is_counted_at_each_change)
{
    const bytes changed = long_section(0x40, 0x3001, hex("F001 00 F000"));
    stream.section(0, 0x10, nit).section(1, 0x10, changed).section(2, 0x10, changed).section(3, 0x10, nit);
    EXPECT_EQ(row(0).changed_under_same_version, 2u);
    const violation_log &log = stream.tables->rows().changed_under_same_version();
    EXPECT_EQ(log.count, 2u);
    EXPECT_EQ(log.first.packet, 1u);
    EXPECT_EQ(log.last.packet, 3u);
    EXPECT_EQ(log.details.at(0).pid, 0x10);
}

TEST_F(rows, a_change_with_another_version_or_number_is_none)
{
    stream.section(0, 0x10, nit).section(1, 0x10, long_section(0x40, 0x3001, hex("F001 00 F000"), {1}));
    section_fields second;
    second.section_number = second.last_section_number = 1;
    stream.section(2, 0x10, long_section(0x40, 0x3001, hex("F002 0000 F000"), second));
    EXPECT_EQ(row(0).changed_under_same_version, 0u);
}

TEST_F(rows, only_tables_that_have_to_change_their_version_are_compared)
{
    std::vector<unsigned> compared;
    for (unsigned table_id = 0; table_id < 0xFC; ++table_id) {
        table_stream other;
        other.section(0, 0x10, long_section(table_id, 1, hex("0000 0000 00")));
        other.section(0, 0x10, long_section(table_id, 1, hex("0000 0000 00 01")));
        if (other.tables->rows().changed_under_same_version().count > 0) compared.push_back(table_id);
    }
    std::vector<unsigned> expected = {0x00, 0x01, 0x02, 0x40, 0x41, 0x42, 0x46, 0x4A};
    for (unsigned table_id = 0x4E; table_id <= 0x6F; ++table_id) expected.push_back(table_id);
    for (unsigned table_id = 0xC7; table_id <= 0xCB; ++table_id) expected.push_back(table_id);
    EXPECT_EQ(compared, expected);
}

TEST_F(rows, rows_and_records_beyond_their_limits_are_counted)
{
    table_rows few;
    table_section section;
    section.header.section_syntax_indicator = section.header.current_next_indicator = 1;
    table_key key;
    key.table_id_extension = 0;
    for (unsigned i = 0; i < table_row_limit + 5; ++i) {
        key.table_id = static_cast<uint8_t>(i >> 16);
        key.table_id_extension = static_cast<uint16_t>(i);
        few.on_section(section, key);
    }
    EXPECT_EQ(few.facts().rows.size(), table_row_limit);
    EXPECT_EQ(few.facts().not_kept, 5u);
    key.table_id = 0;
    for (unsigned number = 1; number <= 4; ++number) {
        section.header.section_number = static_cast<uint8_t>(number);
        for (unsigned i = 0; i < table_row_limit; ++i) {
            key.table_id_extension = static_cast<uint16_t>(i);
            few.on_section(section, key);
        }
    }
    EXPECT_EQ(few.facts().not_kept, 5u + table_row_limit);
    EXPECT_EQ(few.facts().rows[0].sections, 5u);
}
