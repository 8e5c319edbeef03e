#include "tests/support/report_test.h"

#include "mpeg_ts_analysis/descriptors/atsc_a65.h"

struct atsc_a65 : report_test {
    atsc_a65() { settings.atsc_mode = 1; }
};

TEST_F(atsc_a65, component_name_is_a_multiple_string_at_indent_12)
{
    EXPECT_EQ(report_of_descriptors(descriptor(0xA3, hex("01 65 6E 67 01 00 00 03 41 42 43"))),
              "        component_name_descriptor() [ATSC A/65:2009 6.9.7]\n"
              "            multiple_string_structure() [ATSC A/65:2009 6.39]\n"
              "                string #1/1: ISO_639_language_code='eng' number_segments=1\n"
              "                    segment #1: compression_type=0x00(none) mode=0x00(ANSI (select unicode "
              "code range 0x0000-0x00FF)) number_bytes=3\n"
              "                        string: 'ABC'\n");
}

TEST_F(atsc_a65, extended_channel_name_is_a_multiple_string_at_indent_12)
{
    EXPECT_EQ(report_of_descriptors(descriptor(0xA0, hex("01 65 6E 67 01 00 00 03 41 42 43"))),
              "        extended_channel_name_descriptor() [ATSC A/65:2009 6.9.4]\n"
              "            multiple_string_structure() [ATSC A/65:2009 6.39]\n"
              "                string #1/1: ISO_639_language_code='eng' number_segments=1\n"
              "                    segment #1: compression_type=0x00(none) mode=0x00(ANSI (select unicode "
              "code range 0x0000-0x00FF)) number_bytes=3\n"
              "                        string: 'ABC'\n");
}

TEST_F(atsc_a65, names_without_a_body_print_both_headings)
{
    EXPECT_EQ(report_of_descriptors(join({descriptor(0xA0, {}), descriptor(0xA3, {})})),
              "        extended_channel_name_descriptor() [ATSC A/65:2009 6.9.4]\n"
              "            multiple_string_structure() [ATSC A/65:2009 6.39]\n"
              "        component_name_descriptor() [ATSC A/65:2009 6.9.7]\n"
              "            multiple_string_structure() [ATSC A/65:2009 6.39]\n");
}

TEST_F(atsc_a65, names_print_all_but_their_headings_in_dump_mode_none)
{
    const char *const expected =
        "                string #1/1: ISO_639_language_code='eng' number_segments=1\n"
        "                    segment #1: compression_type=0x00(none) mode=0x00(ANSI (select unicode code range "
        "0x0000-0x00FF)) number_bytes=1\n"
        "                        string: 'A'\n";

    settings.dump_descriptors_mode = dump_descriptors_none;
    EXPECT_EQ(report_of_descriptors(descriptor(0xA0, hex("01 65 6E 67 01 00 00 01 41"))), expected);
    EXPECT_EQ(report_of_descriptors(descriptor(0xA3, hex("01 65 6E 67 01 00 00 01 41"))), expected);
}

TEST_F(atsc_a65, rc_descriptor_of_length_0_prints_only_its_heading)
{
    EXPECT_EQ(report_of_descriptors(descriptor(0xAA, {})),
              "        rc_descriptor() [ATSC A/65:2009 6.9.7]\n");
}

TEST_F(atsc_a65, rc_descriptor_prints_every_byte_on_one_line)
{
    EXPECT_EQ(report_of_descriptors(descriptor(0xAA, hex("0A"))),
              "        rc_descriptor() [ATSC A/65:2009 6.9.7]\n"
              "            RAW DATA: 0a \n");
    EXPECT_EQ(
        report_of_descriptors(descriptor(0xAA, hex("00 01 02 03 04 05 06 07 08 09 0A 0B 0C 0D 0E 0F FF"))),
        "        rc_descriptor() [ATSC A/65:2009 6.9.7]\n"
        "            RAW DATA: 00 01 02 03 04 05 06 07 08 09 0a 0b 0c 0d 0e 0f ff \n");
}

TEST_F(atsc_a65, rc_descriptor_prints_its_data_in_dump_mode_none)
{
    settings.dump_descriptors_mode = dump_descriptors_none;
    EXPECT_EQ(report_of_descriptors(descriptor(0xAA, hex("DE AD"))), "            RAW DATA: de ad \n");
    EXPECT_EQ(report_of_descriptors(descriptor(0xAA, {})), "");
}

TEST_F(atsc_a65, rc_descriptor_is_dumped_in_raw_mode)
{
    settings.dump_descriptors_mode = dump_descriptors_raw;
    EXPECT_EQ(report_of_descriptors(descriptor(0xAA, hex("DE AD"))),
              "        rc_descriptor() [ATSC A/65:2009 6.9.7]\n"
              "            RAW DATA: de ad \n"
              "        TAG 0xaa LEN 02:\n"
              "            0xde 0xad \n");
}

TEST_F(atsc_a65, ATSC_CA_prints_its_heading_at_any_length)
{
    EXPECT_EQ(report_of_descriptors(descriptor(0x88, {})),
              "        ATSC_CA_descriptor() [ATSC A/70:2010 Part 1 4.1.3.5]\n");
    EXPECT_EQ(report_of_descriptors(descriptor(0x88, hex("12"))),
              "        ATSC_CA_descriptor() [ATSC A/70:2010 Part 1 4.1.3.5]\n");
}

TEST_F(atsc_a65, ATSC_CA_without_private_data_prints_the_system)
{
    EXPECT_EQ(report_of_descriptors(descriptor(0x88, hex("0E AB"))),
              "        ATSC_CA_descriptor() [ATSC A/70:2010 Part 1 4.1.3.5]\n"
              "            CA_System_ID=0x0eab\n");
}

TEST_F(atsc_a65, ATSC_CA_prints_its_private_data)
{
    EXPECT_EQ(report_of_descriptors(descriptor(0x88, hex("0E AB 01"))),
              "        ATSC_CA_descriptor() [ATSC A/70:2010 Part 1 4.1.3.5]\n"
              "            CA_System_ID=0x0eab\n"
              "            Private data: 01 \n");
    EXPECT_EQ(report_of_descriptors(descriptor(0x88, hex("0E AB 01 C2 FF"))),
              "        ATSC_CA_descriptor() [ATSC A/70:2010 Part 1 4.1.3.5]\n"
              "            CA_System_ID=0x0eab\n"
              "            Private data: 01 c2 ff \n");
}

TEST_F(atsc_a65, ATSC_CA_prints_its_fields_in_dump_mode_none)
{
    settings.dump_descriptors_mode = dump_descriptors_none;
    EXPECT_EQ(report_of_descriptors(descriptor(0x88, hex("0E AB 01"))), "            CA_System_ID=0x0eab\n"
                                                                        "            Private data: 01 \n");
}

TEST_F(atsc_a65, service_location_below_3_bytes_prints_only_its_heading)
{
    for (unsigned length = 0; length < 3; ++length)
        EXPECT_EQ(report_of_descriptors(descriptor(0xA1, repeated(0x00, length))),
                  "        service_location_descriptor() [ATSC A/65:2009 6.9.5]\n");
}

TEST_F(atsc_a65, service_location_prints_its_elements)
{
    EXPECT_EQ(report_of_descriptors(descriptor(0xA1, hex("E0 31 02  02 E0 31 00 00 00  81 FF FF 65 6E 67"))),
              "        service_location_descriptor() [ATSC A/65:2009 6.9.5]\n"
              "            PCR_PID=0x0031\n"
              "            number_elements=2\n"
              "                 element #1: stream_type=0x02 elementary_PID=0x0031 language=''\n"
              "                 element #2: stream_type=0x81 elementary_PID=0x1fff language='eng'\n");
}

TEST_F(atsc_a65, service_location_of_length_8_prints_no_element)
{
    EXPECT_EQ(report_of_descriptors(descriptor(0xA1, hex("E0 31 01 02 E0 31 65 6E"))),
              "        service_location_descriptor() [ATSC A/65:2009 6.9.5]\n"
              "            PCR_PID=0x0031\n"
              "            number_elements=1\n");
}

TEST_F(atsc_a65, service_location_stops_after_its_number_of_elements)
{
    EXPECT_EQ(report_of_descriptors(descriptor(0xA1, hex("E0 31 01  02 E0 31 66 72 61  81 E0 34 65 6E 67"))),
              "        service_location_descriptor() [ATSC A/65:2009 6.9.5]\n"
              "            PCR_PID=0x0031\n"
              "            number_elements=1\n"
              "                 element #1: stream_type=0x02 elementary_PID=0x0031 language='fra'\n");
    EXPECT_EQ(report_of_descriptors(descriptor(0xA1, hex("E0 31 00  02 E0 31 66 72 61"))),
              "        service_location_descriptor() [ATSC A/65:2009 6.9.5]\n"
              "            PCR_PID=0x0031\n"
              "            number_elements=0\n");
}

TEST_F(atsc_a65, service_location_stops_silently_at_an_element_that_does_not_fit)
{
    EXPECT_EQ(report_of_descriptors(descriptor(0xA1, hex("E0 31 FF  02 E0 31 66 72 61  81 E0 34 65 6E"))),
              "        service_location_descriptor() [ATSC A/65:2009 6.9.5]\n"
              "            PCR_PID=0x0031\n"
              "            number_elements=255\n"
              "                 element #1: stream_type=0x02 elementary_PID=0x0031 language='fra'\n");
}

TEST_F(atsc_a65, service_location_reports_reserved_bits_of_the_head_and_of_each_element)
{
    EXPECT_EQ(report_of_descriptors(descriptor(0xA1, hex("C0 31 02  02 60 31 66 72 61  81 A0 34 65 6E 67"))),
              "        service_location_descriptor() [ATSC A/65:2009 6.9.5]\n"
              "!!! service_location_descriptor() reserved bits not '111'\n"
              "            PCR_PID=0x0031\n"
              "            number_elements=2\n"
              "!!! service_location_descriptor() reserved bits not '111'\n"
              "                 element #1: stream_type=0x02 elementary_PID=0x0031 language='fra'\n"
              "!!! service_location_descriptor() reserved bits not '111'\n"
              "                 element #2: stream_type=0x81 elementary_PID=0x0034 language='eng'\n");
}

TEST_F(atsc_a65, service_location_prints_its_fields_in_dump_mode_none)
{
    settings.dump_descriptors_mode = dump_descriptors_none;
    EXPECT_EQ(report_of_descriptors(descriptor(0xA1, hex("00 31 01  02 E0 31 66 72 61"))),
              "!!! service_location_descriptor() reserved bits not '111'\n"
              "            PCR_PID=0x0031\n"
              "            number_elements=1\n"
              "                 element #1: stream_type=0x02 elementary_PID=0x0031 language='fra'\n");
}

TEST_F(atsc_a65, five_tags_are_unknown_unless_the_ATSC_mode_is_on)
{
    for (const int32_t mode : {-1, 0}) {
        settings.atsc_mode = mode;
        EXPECT_EQ(report_of_descriptors(join({descriptor(0x88, hex("0E AB")), descriptor(0xA0, {}),
                                              descriptor(0xA1, hex("E0 31 00")), descriptor(0xA3, {}),
                                              descriptor(0xAA, hex("01"))})),
                  "        Unknown descriptor tag=0x88, len=2\n"
                  "        Unknown descriptor tag=0xa0, len=0\n"
                  "        Unknown descriptor tag=0xa1, len=3\n"
                  "        Unknown descriptor tag=0xa3, len=0\n"
                  "        Unknown descriptor tag=0xaa, len=1\n");
    }
}

TEST_F(atsc_a65, five_tags_are_unknown_under_a_private_data_specifier)
{
    EXPECT_EQ(report_of_descriptors(join(
                  {descriptor(0x5F, hex("00 00 00 28")), descriptor(0x88, hex("0E AB")), descriptor(0xA0, {}),
                   descriptor(0xA1, hex("E0 31 00")), descriptor(0xA3, {}), descriptor(0xAA, hex("01"))})),
              "        private_data_specifier_descriptor() [DVB A38 6.2.31]\n"
              "            private_data_specifier=0x00000028\n"
              "        Unknown descriptor tag=0x88, len=2\n"
              "        Unknown descriptor tag=0xa0, len=0\n"
              "        Unknown descriptor tag=0xa1, len=3\n"
              "        Unknown descriptor tag=0xa3, len=0\n"
              "        Unknown descriptor tag=0xaa, len=1\n");
}

/// Every tag of this file at every length, all ones and all zeros, from blocks of exactly that size.
TEST_F(atsc_a65, no_decoder_reads_past_its_body)
{
    for (const unsigned tag : {0x86u, 0x87u, 0x88u, 0xA0u, 0xA1u, 0xA3u, 0xAAu})
        for (unsigned length = 0; length <= 0xFF; ++length)
            for (const uint8_t byte : hex("00 01 7F FF"))
                EXPECT_NE(report_of_descriptors(descriptor(tag, repeated(byte, length))), "");
}

/// The decoders that the loop calls are the ones that stand alone.
TEST_F(atsc_a65, a_decoder_called_directly_prints_what_the_loop_prints)
{
    using decoder = void (*)(const uint8_t *, unsigned);
    const struct {
        unsigned tag;
        decoder decode;
    } decoders[] = {
        {0x86, desc_atsc_A65_2009_6_9_2_caption_service_descriptor      },
        {0x87, desc_atsc_A65_2009_6_9_3_content_advisory_descriptor     },
        {0x88, desc_atsc_A70_2010_ATSC_CA_descriptor                    },
        {0xA0, desc_atsc_A65_2009_6_9_4_extended_channel_name_descriptor},
        {0xA1, desc_atsc_A65_2009_6_9_5_service_location_descriptor     },
        {0xA3, desc_atsc_A65_2009_6_9_7_component_name_descriptor       },
        {0xAA, desc_atsc_A65_2009_rc_descriptor                         },
    };
    const bytes body = hex("C1 65 6E 67 C1 3F FF");

    for (const auto &[tag, decode] : decoders) {
        const std::string by_the_loop = report_of_descriptors(descriptor(tag, body));
        decode(body.data(), static_cast<unsigned>(body.size()));
        EXPECT_EQ(report(), by_the_loop);
    }
}
