#include "tests/support/report_test.h"

#include <random>

struct atsc_rrt : report_test {
    atsc_rrt() { settings.atsc_mode = 1; }

    /// The report of a table of this body behind its five head lines, without the headings of texts and
    /// descriptors.
    std::string report_of(const bytes &body)
    {
        settings.dump_descriptors_mode = dump_descriptors_none;
        const std::string head = "* ATSC 0x1FFB\n"
                                 "        Table ID extension:               0xff 0x01\n"
                                 "        Version:                          0\n"
                                 "        Section:                          0 / 0\n";
        const std::string text = report_of_section(0x1FFB, long_section(0xCA, 0xFF01, body));
        EXPECT_EQ(text.substr(0, head.size()), head);
        return text.substr(std::min(head.size(), text.size()));
    }
};

namespace {

/// A text of one segment with its length byte: 8 bytes of structure and the letter.
bytes text_of(char letter)
{
    return join({hex("09 01 65 6E 67 01 00 00 01"), big_endian(static_cast<unsigned char>(letter), 1)});
}

/// Its lines without the heading.
std::string lines_of(char letter, unsigned indent)
{
    const std::string blanks(indent, ' ');
    return blanks + "    string #1/1: ISO_639_language_code='eng' number_segments=1\n" + blanks +
           "        segment #1: compression_type=0x00(none) mode=0x00(ANSI (select unicode code range "
           "0x0000-0x00FF)) number_bytes=1\n" +
           blanks + "            string: '" + letter + "'\n";
}

/// Protocol version 0 and an empty region name.
const bytes no_name = hex("00 00");

const std::string no_name_lines = "        protocol_version=0\n"
                                  "        rating_region_name_length=0\n"
                                  "        rating_region_name:\n";

} // namespace

TEST_F(atsc_rrt, a_whole_table_with_its_headings)
{
    section_fields fields;
    fields.version_number = 1;
    fields.section_number = 2;
    fields.last_section_number = 3;
    EXPECT_EQ(report_of_section(0x1FFB, long_section(0xCA, 0x1205,
                                                     join({hex("00"), text_of('R'), hex("01"), text_of('D'),
                                                           hex("F1"), text_of('a'), text_of('v'),
                                                           hex("FC 03"), descriptor(0xAA, hex("01"))}),
                                                     fields)),
              "* ATSC 0x1FFB\n"
              "    rating_region_table_section() [ATSC A/65:2009 6.4]\n"
              "        Table ID extension:               0x12 0x05\n"
              "        Version:                          1\n"
              "        Section:                          2 / 3\n"
              "        protocol_version=0\n"
              "        rating_region_name_length=9\n"
              "        rating_region_name:\n"
              "            multiple_string_structure() [ATSC A/65:2009 6.39]\n" +
                  lines_of('R', 12) +
                  "        dimensions defined=1\n"
                  "        dimension #1:\n"
                  "            name:\n"
                  "                multiple_string_structure() [ATSC A/65:2009 6.39]\n" +
                  lines_of('D', 16) +
                  "            graduated_scale=1 values_defined=1\n"
                  "            value #1:\n"
                  "                abbrev_rating_value:\n"
                  "                    multiple_string_structure() [ATSC A/65:2009 6.39]\n" +
                  lines_of('a', 20) +
                  "                rating_value:\n"
                  "                    multiple_string_structure() [ATSC A/65:2009 6.39]\n" +
                  lines_of('v', 20) +
                  "        rc_descriptor() [ATSC A/65:2009 6.9.7]\n"
                  "            RAW DATA: 01 \n");
}

TEST_F(atsc_rrt, fewer_than_2_bytes_print_the_head_only)
{
    EXPECT_EQ(report_of({}), "");
    EXPECT_EQ(report_of(hex("07")), "");
}

TEST_F(atsc_rrt, a_region_name_past_the_fence_ends_the_table)
{
    EXPECT_EQ(report_of(hex("07 03 01 65")), "        protocol_version=7\n"
                                             "        rating_region_name_length=3\n");
}

TEST_F(atsc_rrt, a_table_may_end_with_the_region_name)
{
    EXPECT_EQ(report_of(no_name), no_name_lines);
    EXPECT_EQ(report_of(join({hex("00"), text_of('R')})), "        protocol_version=0\n"
                                                          "        rating_region_name_length=9\n"
                                                          "        rating_region_name:\n" +
                                                              lines_of('R', 12));
}

TEST_F(atsc_rrt, no_dimensions_are_followed_by_the_descriptors)
{
    EXPECT_EQ(report_of(join({no_name, hex("00"), hex("FC 03"), descriptor(0xAA, hex("01"))})),
              no_name_lines + "        dimensions defined=0\n"
                              "            RAW DATA: 01 \n");
}

TEST_F(atsc_rrt, dimensions_without_values)
{
    EXPECT_EQ(report_of(join({no_name, hex("02"), text_of('D'), hex("E0"), hex("00 F0"), hex("FC 00")})),
              no_name_lines +
                  "        dimensions defined=2\n"
                  "        dimension #1:\n"
                  "            name:\n" +
                  lines_of('D', 16) +
                  "            graduated_scale=0 values_defined=0\n"
                  "        dimension #2:\n"
                  "            name:\n"
                  "            graduated_scale=1 values_defined=0\n");
}

TEST_F(atsc_rrt, reserved_bits_of_a_dimension_are_reported)
{
    for (const unsigned reserved : {0u, 1u, 3u, 5u, 6u})
        EXPECT_EQ(report_of(join({no_name, hex("01 00"), big_endian(reserved << 5, 1), hex("FC 00")})),
                  no_name_lines + "        dimensions defined=1\n"
                                  "        dimension #1:\n"
                                  "            name:\n"
                                  "!!! reserved bits not '111'\n"
                                  "            graduated_scale=0 values_defined=0\n");
}

TEST_F(atsc_rrt, fifteen_values_are_numbered)
{
    bytes body = join({no_name, hex("01 00 FF")});
    std::string expected = no_name_lines + "        dimensions defined=1\n"
                                           "        dimension #1:\n"
                                           "            name:\n"
                                           "            graduated_scale=1 values_defined=15\n";
    for (unsigned value = 1; value <= 15; ++value) {
        body = join({body, text_of('a'), text_of('v')});
        expected += "            value #" + std::to_string(value) +
                    ":\n"
                    "                abbrev_rating_value:\n" +
                    lines_of('a', 20) + "                rating_value:\n" + lines_of('v', 20);
    }
    EXPECT_EQ(report_of(join({body, hex("FC 00")})), expected);
}

TEST_F(atsc_rrt, a_dimension_without_a_byte_prints_its_heading)
{
    EXPECT_EQ(report_of(join({no_name, hex("03")})), no_name_lines + "        dimensions defined=3\n"
                                                                     "        dimension #1:\n");
}

TEST_F(atsc_rrt, a_table_may_end_with_a_dimension_name)
{
    EXPECT_EQ(report_of(join({no_name, hex("03"), text_of('D')})), no_name_lines +
                                                                       "        dimensions defined=3\n"
                                                                       "        dimension #1:\n"
                                                                       "            name:\n" +
                                                                       lines_of('D', 16));
}

/// The descriptors_length is looked for at the first byte of the name that did not fit.
TEST_F(atsc_rrt, a_dimension_name_past_the_fence_ends_the_dimensions)
{
    EXPECT_EQ(report_of(join({no_name, hex("02 06"), hex("FC 03"), descriptor(0xAA, hex("01"))})),
              no_name_lines + "        dimensions defined=2\n"
                              "        dimension #1:\n"
                              "            RAW DATA: 01 \n");
    EXPECT_EQ(report_of(join({no_name, hex("02 04"), hex("00 00")})), no_name_lines +
                                                                          "        dimensions defined=2\n"
                                                                          "        dimension #1:\n"
                                                                          "!!! reserved bits not '111111'\n");
}

TEST_F(atsc_rrt, a_value_without_a_byte_prints_its_heading_and_the_next_dimension_its_own)
{
    EXPECT_EQ(report_of(join({no_name, hex("02 00 E2")})), no_name_lines + "        dimensions defined=2\n"
                                                                           "        dimension #1:\n"
                                                                           "            name:\n"
                                                                           "            graduated_scale=0 "
                                                                           "values_defined=2\n"
                                                                           "            value #1:\n"
                                                                           "        dimension #2:\n");
}

TEST_F(atsc_rrt, a_table_may_end_with_an_abbreviated_value_or_with_a_value)
{
    const std::string first = no_name_lines +
                              "        dimensions defined=1\n"
                              "        dimension #1:\n"
                              "            name:\n"
                              "            graduated_scale=0 values_defined=2\n"
                              "            value #1:\n"
                              "                abbrev_rating_value:\n" +
                              lines_of('a', 20);

    EXPECT_EQ(report_of(join({no_name, hex("01 00 E2"), text_of('a')})), first);
    EXPECT_EQ(report_of(join({no_name, hex("01 00 E2"), text_of('a'), text_of('v')})),
              first + "                rating_value:\n" + lines_of('v', 20));
}

/// The next dimension is read from the first byte of the text that did not fit.
TEST_F(atsc_rrt, an_abbreviated_value_past_the_fence_ends_the_values)
{
    EXPECT_EQ(report_of(join({no_name, hex("02 00 E2"), hex("FF"), hex("00 E0 FC 00")})),
              no_name_lines + "        dimensions defined=2\n"
                              "        dimension #1:\n"
                              "            name:\n"
                              "            graduated_scale=0 values_defined=2\n"
                              "            value #1:\n"
                              "        dimension #2:\n"
                              "            name:\n"
                              "            graduated_scale=0 values_defined=0\n");
}

TEST_F(atsc_rrt, a_value_past_the_fence_ends_the_values)
{
    EXPECT_EQ(report_of(join({no_name, hex("02 00 E2"), text_of('a'), hex("FF"), hex("00 E0 FC 00")})),
              no_name_lines +
                  "        dimensions defined=2\n"
                  "        dimension #1:\n"
                  "            name:\n"
                  "            graduated_scale=0 values_defined=2\n"
                  "            value #1:\n"
                  "                abbrev_rating_value:\n" +
                  lines_of('a', 20) +
                  "        dimension #2:\n"
                  "            name:\n"
                  "            graduated_scale=0 values_defined=0\n");
}

TEST_F(atsc_rrt, the_descriptor_loop_runs_to_the_sections_end)
{
    EXPECT_EQ(report_of(join({no_name, hex("00"), hex("FC 00"), descriptor(0xAA, hex("01")),
                              descriptor(0xAA, hex("02"))})),
              no_name_lines + "        dimensions defined=0\n"
                              "            RAW DATA: 01 \n"
                              "            RAW DATA: 02 \n");
}

TEST_F(atsc_rrt, descriptors_past_the_fence_are_not_decoded)
{
    EXPECT_EQ(report_of(join({no_name, hex("00"), hex("FC 04"), descriptor(0xAA, hex("01"))})),
              no_name_lines + "        dimensions defined=0\n");
    EXPECT_EQ(report_of(join({no_name, hex("00"), hex("F4 00"), descriptor(0xAA, hex("01"))})),
              no_name_lines + "        dimensions defined=0\n"
                              "!!! reserved bits not '111111'\n"
                              "            RAW DATA: 01 \n");
    EXPECT_EQ(report_of(join({no_name, hex("00 FC")})), no_name_lines + "        dimensions defined=0\n");
}
