#include "tests/support/report_test.h"

#include "mpeg_ts_analysis/descriptors/multiple_string.h"

#include <algorithm>
#include <memory>
#include <random>

struct multiple_string : report_test {
    /// The report of a structure in a block of exactly its size.
    std::string report_of(const bytes &structure, int indent)
    {
        const std::unique_ptr<uint8_t[]> block(new uint8_t[structure.size()]);
        std::copy(structure.begin(), structure.end(), block.get());
        desc_atsc_A65_2009_6_39_multiple_string_structure(block.get(),
                                                          static_cast<unsigned>(structure.size()), indent);
        return report();
    }
};

static const std::string heading = "multiple_string_structure() [ATSC A/65:2009 6.39]\n";
static const std::string eng_1_of_1 = "    string #1/1: ISO_639_language_code='eng' number_segments=1\n";
static const std::string ansi = "mode=0x00(ANSI (select unicode code range 0x0000-0x00FF))";

TEST_F(multiple_string, one_string_of_one_segment_at_indent_12)
{
    EXPECT_EQ(
        report_of(hex("01 65 6E 67 01 00 00 03 41 42 43"), 12),
        "            multiple_string_structure() [ATSC A/65:2009 6.39]\n"
        "                string #1/1: ISO_639_language_code='eng' number_segments=1\n"
        "                    segment #1: compression_type=0x00(none) mode=0x00(ANSI (select unicode code "
        "range 0x0000-0x00FF)) number_bytes=3\n"
        "                        string: 'ABC'\n");
}

TEST_F(multiple_string, every_line_moves_with_the_indent)
{
    for (const int indent : {0, 8, 16, 20, 28}) {
        const std::string blanks(static_cast<size_t>(indent), ' ');
        EXPECT_EQ(
            report_of(hex("01 65 6E 67 01 00 00 01 41"), indent),
            blanks + "multiple_string_structure() [ATSC A/65:2009 6.39]\n" + blanks +
                "    string #1/1: ISO_639_language_code='eng' number_segments=1\n" + blanks +
                "        segment #1: compression_type=0x00(none) mode=0x00(ANSI (select unicode code range "
                "0x0000-0x00FF)) number_bytes=1\n" +
                blanks + "            string: 'A'\n");
    }
}

TEST_F(multiple_string, dump_mode_none_takes_away_only_the_heading)
{
    settings.dump_descriptors_mode = dump_descriptors_none;
    EXPECT_EQ(report_of(hex("01 65 6E 67 01 00 00 01 41"), 0),
              eng_1_of_1 + "        segment #1: compression_type=0x00(none) " + ansi +
                  " number_bytes=1\n            string: 'A'\n");
    EXPECT_EQ(report_of({}, 0), "");
}

TEST_F(multiple_string, raw_mode_is_like_contents_here)
{
    settings.dump_descriptors_mode = dump_descriptors_raw;
    EXPECT_EQ(report_of(hex("01 65 6E 67 01 00 00 01 41"), 0),
              heading + eng_1_of_1 + "        segment #1: compression_type=0x00(none) " + ansi +
                  " number_bytes=1\n            string: 'A'\n");
}

TEST_F(multiple_string, a_structure_below_5_bytes_prints_only_its_heading)
{
    const bytes structure = hex("01 65 6E 67 00");
    for (size_t length = 0; length < 5; ++length)
        EXPECT_EQ(report_of(bytes(structure.begin(), structure.begin() + static_cast<long>(length)), 0),
                  heading);
    EXPECT_EQ(report_of(structure, 0),
              heading + "    string #1/1: ISO_639_language_code='eng' number_segments=0\n");
}

TEST_F(multiple_string, no_strings_end_the_decoding_whatever_follows)
{
    EXPECT_EQ(report_of(hex("00 65 6E 67 01 00 00 01 41"), 0), heading);
}

TEST_F(multiple_string, segments_are_printed_each_on_its_own_line)
{
    EXPECT_EQ(report_of(hex("01 65 6E 67 02  00 00 01 41  00 00 02 42 43"), 0),
              heading + "    string #1/1: ISO_639_language_code='eng' number_segments=2\n" +
                  "        segment #1: compression_type=0x00(none) " + ansi +
                  " number_bytes=1\n            string: 'A'\n" +
                  "        segment #2: compression_type=0x00(none) " + ansi +
                  " number_bytes=2\n            string: 'BC'\n");
}

TEST_F(multiple_string, strings_follow_each_other)
{
    EXPECT_EQ(report_of(hex("03  65 6E 67 01 00 00 01 41  73 70 61 00  66 72 61 01 00 00 01 42"), 0),
              heading + "    string #1/3: ISO_639_language_code='eng' number_segments=1\n" +
                  "        segment #1: compression_type=0x00(none) " + ansi +
                  " number_bytes=1\n            string: 'A'\n" +
                  "    string #2/3: ISO_639_language_code='spa' number_segments=0\n"
                  "    string #3/3: ISO_639_language_code='fra' number_segments=1\n" +
                  "        segment #1: compression_type=0x00(none) " + ansi +
                  " number_bytes=1\n            string: 'B'\n");
}

TEST_F(multiple_string, bytes_behind_the_last_string_are_left_alone)
{
    EXPECT_EQ(report_of(hex("01  65 6E 67 01 00 00 01 41  00 00 01 42 73 70 61 00"), 0),
              heading + eng_1_of_1 + "        segment #1: compression_type=0x00(none) " + ansi +
                  " number_bytes=1\n            string: 'A'\n");
}

TEST_F(multiple_string, a_language_ends_at_a_zero_byte)
{
    EXPECT_EQ(report_of(hex("01 65 00 67 00"), 0),
              heading + "    string #1/1: ISO_639_language_code='e' number_segments=0\n");
}

TEST_F(multiple_string, a_segment_header_of_2_bytes_ends_the_structure_silently)
{
    EXPECT_EQ(report_of(hex("02 65 6E 67 01 00 00"), 0),
              heading + "    string #1/2: ISO_639_language_code='eng' number_segments=1\n");
    EXPECT_EQ(report_of(hex("02 65 6E 67 02 00 00 01 41 00 00"), 0),
              heading + "    string #1/2: ISO_639_language_code='eng' number_segments=2\n" +
                  "        segment #1: compression_type=0x00(none) " + ansi +
                  " number_bytes=1\n            string: 'A'\n");
}

TEST_F(multiple_string, fewer_than_4_bytes_for_the_next_string_end_the_structure_silently)
{
    EXPECT_EQ(report_of(hex("02  65 6E 67 00  73 70 61"), 0),
              heading + "    string #1/2: ISO_639_language_code='eng' number_segments=0\n");
    EXPECT_EQ(report_of(hex("02  65 6E 67 00  73 70 61 00"), 0),
              heading + "    string #1/2: ISO_639_language_code='eng' number_segments=0\n"
                        "    string #2/2: ISO_639_language_code='spa' number_segments=0\n");
}

TEST_F(multiple_string, a_data_byte_of_zero_ends_the_printed_text)
{
    EXPECT_EQ(report_of(hex("01 65 6E 67 01 00 00 03 41 00 43"), 0),
              heading + eng_1_of_1 + "        segment #1: compression_type=0x00(none) " + ansi +
                  " number_bytes=3\n            string: 'A'\n");
}

TEST_F(multiple_string, an_empty_segment_prints_an_empty_string_whatever_its_compression_and_mode)
{
    EXPECT_EQ(
        report_of(hex("01 65 6E 67 03  00 00 00  01 3F 00  FF FF 00"), 0),
        heading + "    string #1/1: ISO_639_language_code='eng' number_segments=3\n" +
            "        segment #1: compression_type=0x00(none) " + ansi +
            " number_bytes=0\n            string: ''\n"
            "        segment #2: compression_type=0x01(Huffman coding using tables defined in Table C4 and "
            "C5 in Annex C) mode=0x3f(Select Unicode, UTF-16 Form) number_bytes=0\n"
            "            string: ''\n"
            "        segment #3: compression_type=0xff() mode=0xff() number_bytes=0\n"
            "            string: ''\n");
}

TEST_F(multiple_string, a_segment_one_byte_too_long_is_reported_without_a_text)
{
    EXPECT_EQ(
        report_of(hex("01 65 6E 67 01 00 00 04 41 42 43"), 12),
        "            multiple_string_structure() [ATSC A/65:2009 6.39]\n"
        "                string #1/1: ISO_639_language_code='eng' number_segments=1\n"
        "                    segment #1: compression_type=0x00(none) mode=0x00(ANSI (select unicode code "
        "range 0x0000-0x00FF)) number_bytes=4\n"
        "!!! multiple_string_structure() number_bytes too long for descriptor by 1 bytes at 8, length is 4, "
        "3 avail\n");
}

TEST_F(multiple_string, a_segment_without_any_data_overruns_by_all_of_it)
{
    EXPECT_EQ(
        report_of(hex("01 65 6E 67 02 00 00 FF"), 0),
        heading + "    string #1/1: ISO_639_language_code='eng' number_segments=2\n" +
            "        segment #1: compression_type=0x00(none) " + ansi +
            " number_bytes=255\n"
            "!!! multiple_string_structure() number_bytes too long for descriptor by 255 bytes at 8, length is "
            "255, 0 avail\n");
}

/// The next string is read from the overrunning segment's first data byte on: 73 70 61 01, then a segment.
TEST_F(multiple_string, after_an_overrun_the_next_string_is_looked_for_in_the_data)
{
    EXPECT_EQ(
        report_of(hex("03 65 6E 67 03  00 00 40  73 70 61 01 00 00 02 41 42  66 72 61 00"), 0),
        heading + "    string #1/3: ISO_639_language_code='eng' number_segments=3\n" +
            "        segment #1: compression_type=0x00(none) " + ansi +
            " number_bytes=64\n"
            "!!! multiple_string_structure() number_bytes too long for descriptor by 51 bytes at 8, length is "
            "64, 13 avail\n"
            "    string #2/3: ISO_639_language_code='spa' number_segments=1\n" +
            "        segment #1: compression_type=0x00(none) " + ansi +
            " number_bytes=2\n            string: 'AB'\n"
            "    string #3/3: ISO_639_language_code='fra' number_segments=0\n");
}

TEST_F(multiple_string, after_an_overrun_with_3_bytes_left_nothing_follows)
{
    EXPECT_EQ(
        report_of(hex("03 65 6E 67 01  00 00 40  73 70 61"), 0),
        heading + "    string #1/3: ISO_639_language_code='eng' number_segments=1\n" +
            "        segment #1: compression_type=0x00(none) " + ansi +
            " number_bytes=64\n"
            "!!! multiple_string_structure() number_bytes too long for descriptor by 61 bytes at 8, length is "
            "64, 3 avail\n");
}

TEST_F(multiple_string, random_structures_stay_inside_their_block)
{
    std::mt19937 random(65);
    for (unsigned round = 0; round < 4000; ++round) {
        bytes structure(random() % 300);
        // Small numbers reach deeper: strings, segments and lengths then often fit.
        for (uint8_t &byte : structure) byte = static_cast<uint8_t>(random() % (round % 2 == 0 ? 256 : 6));
        EXPECT_EQ(report_of(structure, 0).substr(0, heading.size()), heading);
    }
}
