#include "tests/support/report_test.h"

#include "mpeg_ts_analysis/tables/atsc_mgt.h"

struct atsc_mgt : report_test {
    atsc_mgt() { settings.atsc_mode = 1; }

    /// The report of a master guide table of this body behind its five head lines.
    std::string report_of(const bytes &body)
    {
        const std::string head =
            "* ATSC 0x1FFB\n"
            "    master_guide_table_section() [ATSC A/65:2009 6.2]\n"
            "        table_id_extension:               0x0000 (in place of Transport Stream ID field)\n"
            "        Version:                          0\n"
            "        Section:                          0 / 0\n";
        const std::string text = report_of_section(0x1FFB, long_section(0xC7, 0x0000, body));
        EXPECT_EQ(text.substr(0, head.size()), head);
        return text.substr(std::min(head.size(), text.size()));
    }
};

namespace {

bytes entry(unsigned table_type, unsigned pid, const bytes &descriptors = {})
{
    return join({big_endian(table_type, 2), big_endian(0xE000u | pid, 2), hex("E3 00 00 04 D2"),
                 big_endian(0xF000u | descriptors.size(), 2), descriptors});
}

bytes tables(unsigned count)
{
    return join({hex("00"), big_endian(count, 2)});
}

/// The name, or "-" when there is none.
std::string name_of_table_type(unsigned table_type)
{
    const char *const name = atsc_mgt_table_type_name(table_type);
    return name != nullptr ? name : "-";
}

std::string two_digits(unsigned value)
{
    const char digits[] = "0123456789abcdef";
    return {digits[value / 16], digits[value % 16]};
}

} // namespace

TEST_F(atsc_mgt, every_table_type_is_named)
{
    const char *const fixed[] = {"Terrestrial VCT with current_next_indicator=1",
                                 "Terrestrial VCT with current_next_indicator=0",
                                 "Cable VCT with current_next_indicator=1",
                                 "Cable VCT with current_next_indicator=0",
                                 "Channel ETT",
                                 "DCCSCT"};
    for (unsigned type = 0; type <= 0xFFFF; ++type) {
        std::string expected = "-";
        if (type <= 5) expected = fixed[type];
        if (type >= 0x0100 && type <= 0x017F) expected = "EIT-" + std::to_string(type - 0x0100);
        if (type >= 0x0200 && type <= 0x027F) expected = "Event ETT-" + std::to_string(type - 0x0200);
        if (type >= 0x0301 && type <= 0x03FF)
            expected = "RRT with rating_region-" + std::to_string(type - 0x0300);
        if (type >= 0x1400 && type <= 0x14FF) expected = "DCCT with dcc_id 0x" + two_digits(type - 0x1400);
        ASSERT_EQ(name_of_table_type(type), expected) << type;
    }
}

TEST_F(atsc_mgt, a_formatted_name_stays_until_the_next_call)
{
    const char *const name = atsc_mgt_table_type_name(0x0100);
    EXPECT_STREQ(name, "EIT-0");
    atsc_mgt_table_type_name(0x1405);
    EXPECT_STREQ(name, "DCCT with dcc_id 0x05");
}

TEST_F(atsc_mgt, the_head_shows_extension_version_and_section)
{
    section_fields fields;
    fields.version_number = 31;
    fields.section_number = 1;
    fields.last_section_number = 255;
    EXPECT_EQ(report_of_section(0x1FFB, long_section(0xC7, 0xBEEF, hex("01 00 00 F0 00"), fields)),
              "* ATSC 0x1FFB\n"
              "    master_guide_table_section() [ATSC A/65:2009 6.2]\n"
              "        table_id_extension:               0xbeef (in place of Transport Stream ID field)\n"
              "        Version:                          31\n"
              "        Section:                          1 / 255\n"
              "        Protocol version:                 1\n"
              "        Tables defined:                   0\n"
              "        descriptors_length=0\n");
}

TEST_F(atsc_mgt, fewer_than_3_bytes_print_the_head_only)
{
    for (unsigned length = 0; length < 3; ++length) EXPECT_EQ(report_of(repeated(0x01, length)), "");
    EXPECT_EQ(report_of(hex("01 00 02")), "        Protocol version:                 1\n"
                                          "        Tables defined:                   2\n");
}

TEST_F(atsc_mgt, only_the_low_byte_of_tables_defined_counts)
{
    EXPECT_EQ(report_of(hex("00 01 00  F0 00")), "        Protocol version:                 0\n"
                                                 "        Tables defined:                   0\n"
                                                 "        descriptors_length=0\n");
}

TEST_F(atsc_mgt, entries_are_numbered_and_printed_field_by_field)
{
    EXPECT_EQ(report_of(join({tables(2), hex("0000 FFFB E4 FFFFFFFF F000"), hex("0301 FFFB FF 00000000 F000"),
                              hex("F0 00")})),
              "        Protocol version:                 0\n"
              "        Tables defined:                   2\n"
              "        Table #1: table_type=0x0000 (Terrestrial VCT with current_next_indicator=1) PID=1ffb "
              "version=4\n"
              "            number_bytes=4294967295\n"
              "            table_type_descriptors_length=0\n"
              "        Table #2: table_type=0x0301 (RRT with rating_region-1) PID=1ffb version=31\n"
              "            number_bytes=0\n"
              "            table_type_descriptors_length=0\n"
              "        descriptors_length=0\n");
}

TEST_F(atsc_mgt, a_table_type_without_a_name_is_null)
{
    EXPECT_EQ(report_of(join({tables(2), entry(0x0300, 0x0020), entry(0x1405, 0x0020), hex("F0 00")})),
              "        Protocol version:                 0\n"
              "        Tables defined:                   2\n"
              "        Table #1: table_type=0x0300 ((null)) PID=0020 version=3\n"
              "            number_bytes=1234\n"
              "            table_type_descriptors_length=0\n"
              "        Table #2: table_type=0x1405 (DCCT with dcc_id 0x05) PID=0020 version=3\n"
              "            number_bytes=1234\n"
              "            table_type_descriptors_length=0\n"
              "        descriptors_length=0\n");
}

TEST_F(atsc_mgt, each_reserved_field_of_an_entry_is_reported_ahead_of_it)
{
    const std::string table = "        Table #1: table_type=0x0005 (DCCSCT) PID=0020 version=3\n"
                              "            number_bytes=1\n"
                              "            table_type_descriptors_length=0\n"
                              "        descriptors_length=0\n";
    const std::string first = "        Protocol version:                 0\n"
                              "        Tables defined:                   1\n";
    const std::string not_111 = "!!! master_guide_table_section() reserved bits not '111'\n";
    const std::string not_1111 = "!!! master_guide_table_section() reserved bits not '1111'\n";

    EXPECT_EQ(report_of(join({tables(1), hex("0005 C020 E3 00000001 F000 F000")})), first + not_111 + table);
    EXPECT_EQ(report_of(join({tables(1), hex("0005 E020 63 00000001 F000 F000")})), first + not_111 + table);
    EXPECT_EQ(report_of(join({tables(1), hex("0005 E020 E3 00000001 7000 F000")})), first + not_1111 + table);
    EXPECT_EQ(report_of(join({tables(1), hex("0005 0020 03 00000001 0000 F000")})),
              first + not_111 + not_111 + not_1111 + table);
}

TEST_F(atsc_mgt, descriptors_of_an_entry_are_followed_by_an_empty_line)
{
    EXPECT_EQ(
        report_of(join({tables(2), entry(0x0000, 0x1FFB, descriptor(0xAA, hex("01"))), entry(0x0002, 0x1FFB),
                        hex("F0 04"), descriptor(0xFE, hex("00 01"))})),
        "        Protocol version:                 0\n"
        "        Tables defined:                   2\n"
        "        Table #1: table_type=0x0000 (Terrestrial VCT with current_next_indicator=1) PID=1ffb "
        "version=3\n"
        "            number_bytes=1234\n"
        "            table_type_descriptors_length=3\n"
        "        rc_descriptor() [ATSC A/65:2009 6.9.7]\n"
        "            RAW DATA: 01 \n"
        "\n"
        "        Table #2: table_type=0x0002 (Cable VCT with current_next_indicator=1) PID=1ffb version=3\n"
        "            number_bytes=1234\n"
        "            table_type_descriptors_length=0\n"
        "        descriptors_length=4\n"
        "        Unknown descriptor tag=0xfe, len=2\n"
        "\n");
}

TEST_F(atsc_mgt, the_loop_stops_when_the_next_entry_does_not_fit)
{
    EXPECT_EQ(report_of(join({tables(3), entry(0x0000, 0x1FFB), hex("F0 00"), repeated(0xFF, 8)})),
              "        Protocol version:                 0\n"
              "        Tables defined:                   3\n"
              "        Table #1: table_type=0x0000 (Terrestrial VCT with current_next_indicator=1) PID=1ffb "
              "version=3\n"
              "            number_bytes=1234\n"
              "            table_type_descriptors_length=0\n"
              "        descriptors_length=0\n");
}

TEST_F(atsc_mgt, without_room_for_one_entry_the_descriptors_follow_the_count)
{
    EXPECT_EQ(report_of(join({tables(1), hex("F0 00"), repeated(0xFF, 8)})),
              "        Protocol version:                 0\n"
              "        Tables defined:                   1\n"
              "        descriptors_length=0\n");
}

/// The entry's descriptors should be 9 bytes; what is there is read as the final descriptors_length.
TEST_F(atsc_mgt, descriptors_of_an_entry_past_the_fence_end_the_loop_where_they_begin)
{
    EXPECT_EQ(report_of(join(
                  {tables(2), hex("0000 FFFB E3 00000001 F009"), hex("F0 03 AA 01 55"), hex("FF FF FF")})),
              "        Protocol version:                 0\n"
              "        Tables defined:                   2\n"
              "        Table #1: table_type=0x0000 (Terrestrial VCT with current_next_indicator=1) PID=1ffb "
              "version=3\n"
              "            number_bytes=1\n"
              "            table_type_descriptors_length=9\n"
              "        descriptors_length=3\n"
              "        rc_descriptor() [ATSC A/65:2009 6.9.7]\n"
              "            RAW DATA: 55 \n"
              "\n");
}

TEST_F(atsc_mgt, final_descriptors_past_the_fence_print_only_their_reserved_bits)
{
    EXPECT_EQ(report_of(join({tables(0), hex("F0 01")})), "        Protocol version:                 0\n"
                                                          "        Tables defined:                   0\n");
    EXPECT_EQ(report_of(join({tables(0), hex("00 01")})),
              "        Protocol version:                 0\n"
              "        Tables defined:                   0\n"
              "!!! master_guide_table_section() reserved bits not '1111'\n");
    EXPECT_EQ(report_of(join({tables(0), hex("F0")})), "        Protocol version:                 0\n"
                                                       "        Tables defined:                   0\n");
}

TEST_F(atsc_mgt, raw_mode_dumps_the_descriptors)
{
    settings.dump_descriptors_mode = dump_descriptors_raw;
    EXPECT_EQ(report_of(join({tables(0), hex("F0 03"), descriptor(0xAA, hex("01"))})),
              "        Protocol version:                 0\n"
              "        Tables defined:                   0\n"
              "        descriptors_length=3\n"
              "        rc_descriptor() [ATSC A/65:2009 6.9.7]\n"
              "            RAW DATA: 01 \n"
              "        TAG 0xaa LEN 01:\n"
              "            0x01 \n"
              "\n");
}

TEST_F(atsc_mgt, dump_mode_none_keeps_lines_and_empty_lines)
{
    settings.dump_descriptors_mode = dump_descriptors_none;
    EXPECT_EQ(report_of_section(
                  0x1FFB, long_section(0xC7, 0x0000, join({tables(0), hex("F0 02"), descriptor(0xFE, {})}))),
              "* ATSC 0x1FFB\n"
              "        table_id_extension:               0x0000 (in place of Transport Stream ID field)\n"
              "        Version:                          0\n"
              "        Section:                          0 / 0\n"
              "        Protocol version:                 0\n"
              "        Tables defined:                   0\n"
              "        descriptors_length=2\n"
              "\n");
}
