#include "tests/support/report_test.h"

struct atsc_a65_content_advisory : report_test {};

TEST_F(atsc_a65_content_advisory, length_0_is_reported_in_every_dump_mode)
{
    EXPECT_EQ(report_of_descriptors(descriptor(0x87, {})),
              "        content_advisory_descriptor() [ATSC A/65:2009 6.9.3]\n"
              "!!! content_advisory_descriptor() length is zer0\n");

    settings.dump_descriptors_mode = dump_descriptors_raw;
    EXPECT_EQ(report_of_descriptors(descriptor(0x87, {})),
              "        content_advisory_descriptor() [ATSC A/65:2009 6.9.3]\n"
              "!!! content_advisory_descriptor() length is zer0\n"
              "        TAG 0x87 LEN 00:\n");

    settings.dump_descriptors_mode = dump_descriptors_none;
    EXPECT_EQ(report_of_descriptors(descriptor(0x87, {})),
              "!!! content_advisory_descriptor() length is zer0\n");
}

TEST_F(atsc_a65_content_advisory, a_rating_with_dimensions_and_a_description)
{
    EXPECT_EQ(
        report_of_descriptors(
            descriptor(0x87, hex("C1  01 02  00 F3  05 FF  0B 01 65 6E 67 01 00 00 03 54 56 47"))),
        "        content_advisory_descriptor() [ATSC A/65:2009 6.9.3]\n"
        "            rating_region_count=1\n"
        "                rating #1: region=1 dimensions=2\n"
        "                    dimension #1: rating_dimension_j=0 rating_value=3 (dimension refers to ATSC "
        "Rating Region Table)\n"
        "                    dimension #2: rating_dimension_j=5 rating_value=15 (dimension refers to ATSC "
        "Rating Region Table)\n"
        "                    description length: 11\n"
        "                        description:\n"
        "                            multiple_string_structure() [ATSC A/65:2009 6.39]\n"
        "                                string #1/1: ISO_639_language_code='eng' number_segments=1\n"
        "                                    segment #1: compression_type=0x00(none) mode=0x00(ANSI "
        "(select unicode code range 0x0000-0x00FF)) number_bytes=3\n"
        "                                        string: 'TVG'\n");
}

TEST_F(atsc_a65_content_advisory, a_description_of_length_0_is_decoded_too)
{
    EXPECT_EQ(report_of_descriptors(descriptor(0x87, hex("C1  02 00  00"))),
              "        content_advisory_descriptor() [ATSC A/65:2009 6.9.3]\n"
              "            rating_region_count=1\n"
              "                rating #1: region=2 dimensions=0\n"
              "                    description length: 0\n"
              "                        description:\n"
              "                            multiple_string_structure() [ATSC A/65:2009 6.39]\n");
}

TEST_F(atsc_a65_content_advisory, the_fields_are_printed_in_dump_mode_none)
{
    settings.dump_descriptors_mode = dump_descriptors_none;
    EXPECT_EQ(
        report_of_descriptors(descriptor(0x87, hex("C1  02 01  04 F1  00"))),
        "            rating_region_count=1\n"
        "                rating #1: region=2 dimensions=1\n"
        "                    dimension #1: rating_dimension_j=4 rating_value=1 (dimension refers to ATSC "
        "Rating Region Table)\n"
        "                    description length: 0\n"
        "                        description:\n");
}

TEST_F(atsc_a65_content_advisory, reserved_bits_of_the_head_are_called_bytes)
{
    EXPECT_EQ(report_of_descriptors(descriptor(0x87, hex("81  02 00  00"))),
              "        content_advisory_descriptor() [ATSC A/65:2009 6.9.3]\n"
              "!!! content_advisory_descriptor() reserved bytes not '11'\n"
              "            rating_region_count=1\n"
              "                rating #1: region=2 dimensions=0\n"
              "                    description length: 0\n"
              "                        description:\n"
              "                            multiple_string_structure() [ATSC A/65:2009 6.39]\n");
}

TEST_F(atsc_a65_content_advisory, no_ratings_with_bytes_behind_report_the_bytes_left_over)
{
    EXPECT_EQ(report_of_descriptors(descriptor(0x87, hex("C0 00"))),
              "        content_advisory_descriptor() [ATSC A/65:2009 6.9.3]\n"
              "            rating_region_count=0\n"
              "!!! content_advisory_descriptor() descriptor bits end with 1 bytes left over\n");
    EXPECT_EQ(report_of_descriptors(descriptor(0x87, join({hex("C0"), repeated(0x00, 254)}))),
              "        content_advisory_descriptor() [ATSC A/65:2009 6.9.3]\n"
              "            rating_region_count=0\n"
              "!!! content_advisory_descriptor() descriptor bits end with 254 bytes left over\n");
}

TEST_F(atsc_a65_content_advisory, no_ratings_and_no_bytes_are_cut_off_in_the_first_of_none)
{
    EXPECT_EQ(report_of_descriptors(descriptor(0x87, hex("C0"))),
              "        content_advisory_descriptor() [ATSC A/65:2009 6.9.3]\n"
              "            rating_region_count=0\n"
              "!!! content_advisory_descriptor() cut off in 1/0th rating\n");
}

TEST_F(atsc_a65_content_advisory, fewer_than_2_bytes_behind_the_count_are_cut_off_in_the_first_rating)
{
    const char *const expected = "        content_advisory_descriptor() [ATSC A/65:2009 6.9.3]\n"
                                 "            rating_region_count=63\n"
                                 "!!! content_advisory_descriptor() cut off in 1/63th rating\n";

    EXPECT_EQ(report_of_descriptors(descriptor(0x87, hex("FF"))), expected);
    EXPECT_EQ(report_of_descriptors(descriptor(0x87, hex("FF 01"))), expected);
}

TEST_F(atsc_a65_content_advisory, a_dimension_that_does_not_fit_is_named)
{
    EXPECT_EQ(
        report_of_descriptors(descriptor(0x87, hex("C2  01 03  00 F3  05"))),
        "        content_advisory_descriptor() [ATSC A/65:2009 6.9.3]\n"
        "            rating_region_count=2\n"
        "                rating #1: region=1 dimensions=3\n"
        "                    dimension #1: rating_dimension_j=0 rating_value=3 (dimension refers to ATSC "
        "Rating Region Table)\n"
        "!!! content_advisory_descriptor() cut off in 1/2th rating 2/3th dimension\n");
    EXPECT_EQ(report_of_descriptors(descriptor(0x87, hex("C1  01 FF"))),
              "        content_advisory_descriptor() [ATSC A/65:2009 6.9.3]\n"
              "            rating_region_count=1\n"
              "                rating #1: region=1 dimensions=255\n"
              "!!! content_advisory_descriptor() cut off in 1/1th rating 1/255th dimension\n");
}

TEST_F(atsc_a65_content_advisory, reserved_bits_of_a_dimension_are_reported_ahead_of_it)
{
    EXPECT_EQ(
        report_of_descriptors(descriptor(0x87, hex("C1  01 01  00 73  00"))),
        "        content_advisory_descriptor() [ATSC A/65:2009 6.9.3]\n"
        "            rating_region_count=1\n"
        "                rating #1: region=1 dimensions=1\n"
        "!!! content_advisory_descriptor() reserved bits not '1111'\n"
        "                    dimension #1: rating_dimension_j=0 rating_value=3 (dimension refers to ATSC "
        "Rating Region Table)\n"
        "                    description length: 0\n"
        "                        description:\n"
        "                            multiple_string_structure() [ATSC A/65:2009 6.39]\n");
}

TEST_F(atsc_a65_content_advisory, equal_dimensions_are_not_in_order)
{
    EXPECT_EQ(
        report_of_descriptors(descriptor(0x87, hex("C1  01 02  01 F0  01 F0  00"))),
        "        content_advisory_descriptor() [ATSC A/65:2009 6.9.3]\n"
        "            rating_region_count=1\n"
        "                rating #1: region=1 dimensions=2\n"
        "                    dimension #1: rating_dimension_j=1 rating_value=0 (dimension refers to ATSC "
        "Rating Region Table)\n"
        "                    dimension #2: rating_dimension_j=1 rating_value=0 (dimension refers to ATSC "
        "Rating Region Table)\n"
        "!!! content_advisory_descriptor() rating_dimension_j is not listed in numerical order\n"
        "                    description length: 0\n"
        "                        description:\n"
        "                            multiple_string_structure() [ATSC A/65:2009 6.39]\n");
}

/// 7, 3, 4: 3 is out of order, 4 is greater than the one before it. The second rating begins anew.
TEST_F(atsc_a65_content_advisory, the_order_is_that_of_neighbours_in_one_rating)
{
    EXPECT_EQ(
        report_of_descriptors(descriptor(0x87, hex("C2  01 03  07 F0  03 F0  04 F0  00  02 01  00 F0  00"))),
        "        content_advisory_descriptor() [ATSC A/65:2009 6.9.3]\n"
        "            rating_region_count=2\n"
        "                rating #1: region=1 dimensions=3\n"
        "                    dimension #1: rating_dimension_j=7 rating_value=0 (dimension refers to ATSC "
        "Rating Region Table)\n"
        "                    dimension #2: rating_dimension_j=3 rating_value=0 (dimension refers to ATSC "
        "Rating Region Table)\n"
        "!!! content_advisory_descriptor() rating_dimension_j is not listed in numerical order\n"
        "                    dimension #3: rating_dimension_j=4 rating_value=0 (dimension refers to ATSC "
        "Rating Region Table)\n"
        "                    description length: 0\n"
        "                        description:\n"
        "                            multiple_string_structure() [ATSC A/65:2009 6.39]\n"
        "                rating #2: region=2 dimensions=1\n"
        "                    dimension #1: rating_dimension_j=0 rating_value=0 (dimension refers to ATSC "
        "Rating Region Table)\n"
        "                    description length: 0\n"
        "                        description:\n"
        "                            multiple_string_structure() [ATSC A/65:2009 6.39]\n");
}

TEST_F(atsc_a65_content_advisory, a_missing_description_length_is_reported)
{
    EXPECT_EQ(report_of_descriptors(descriptor(0x87, hex("C1  01 00"))),
              "        content_advisory_descriptor() [ATSC A/65:2009 6.9.3]\n"
              "            rating_region_count=1\n"
              "                rating #1: region=1 dimensions=0\n"
              "!!! content_advisory_descriptor() cut off at rating_description_length field\n");
}

TEST_F(atsc_a65_content_advisory, a_description_that_does_not_fit_is_reported)
{
    EXPECT_EQ(report_of_descriptors(descriptor(0x87, hex("C1  01 00  02 00"))),
              "        content_advisory_descriptor() [ATSC A/65:2009 6.9.3]\n"
              "            rating_region_count=1\n"
              "                rating #1: region=1 dimensions=0\n"
              "                    description length: 2\n"
              "!!! content_advisory_descriptor() rating_description_length field is too long to fit within "
              "descriptor\n");
}

TEST_F(atsc_a65_content_advisory, bytes_behind_the_last_rating_are_counted)
{
    EXPECT_EQ(report_of_descriptors(descriptor(0x87, hex("C1  01 00  00  01 02 03"))),
              "        content_advisory_descriptor() [ATSC A/65:2009 6.9.3]\n"
              "            rating_region_count=1\n"
              "                rating #1: region=1 dimensions=0\n"
              "                    description length: 0\n"
              "                        description:\n"
              "                            multiple_string_structure() [ATSC A/65:2009 6.39]\n"
              "!!! content_advisory_descriptor() descriptor bits end with 3 bytes left over\n");
}

TEST_F(atsc_a65_content_advisory, a_next_rating_that_does_not_fit_is_named)
{
    const char *const expected =
        "        content_advisory_descriptor() [ATSC A/65:2009 6.9.3]\n"
        "            rating_region_count=2\n"
        "                rating #1: region=1 dimensions=0\n"
        "                    description length: 0\n"
        "                        description:\n"
        "                            multiple_string_structure() [ATSC A/65:2009 6.39]\n"
        "!!! content_advisory_descriptor() cut off in 2/2th rating\n";

    EXPECT_EQ(report_of_descriptors(descriptor(0x87, hex("C2  01 00  00"))), expected);
    EXPECT_EQ(report_of_descriptors(descriptor(0x87, hex("C2  01 00  00  02"))), expected);
}

TEST_F(atsc_a65_content_advisory, the_faults_are_printed_in_dump_mode_none)
{
    settings.dump_descriptors_mode = dump_descriptors_none;
    EXPECT_EQ(
        report_of_descriptors(descriptor(0x87, hex("41  01 02  02 F0  02 03"))),
        "!!! content_advisory_descriptor() reserved bytes not '11'\n"
        "            rating_region_count=1\n"
        "                rating #1: region=1 dimensions=2\n"
        "                    dimension #1: rating_dimension_j=2 rating_value=0 (dimension refers to ATSC "
        "Rating Region Table)\n"
        "!!! content_advisory_descriptor() reserved bits not '1111'\n"
        "                    dimension #2: rating_dimension_j=2 rating_value=3 (dimension refers to ATSC "
        "Rating Region Table)\n"
        "!!! content_advisory_descriptor() rating_dimension_j is not listed in numerical order\n"
        "!!! content_advisory_descriptor() cut off at rating_description_length field\n");
}
