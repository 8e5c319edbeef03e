#include "tests/support/report_test.h"

struct atsc_a65_caption_service : report_test {};

TEST_F(atsc_a65_caption_service, length_0_is_reported_in_every_dump_mode)
{
    EXPECT_EQ(report_of_descriptors(descriptor(0x86, {})),
              "        caption_service_descriptor() [ATSC A/65:2009 6.9.2]\n"
              "!!! caption_service_descriptor() length is zer0\n");

    settings.dump_descriptors_mode = dump_descriptors_raw;
    EXPECT_EQ(report_of_descriptors(descriptor(0x86, {})),
              "        caption_service_descriptor() [ATSC A/65:2009 6.9.2]\n"
              "!!! caption_service_descriptor() length is zer0\n"
              "        TAG 0x86 LEN 00:\n");

    settings.dump_descriptors_mode = dump_descriptors_none;
    EXPECT_EQ(report_of_descriptors(descriptor(0x86, {})),
              "!!! caption_service_descriptor() length is zer0\n");
}

TEST_F(atsc_a65_caption_service, no_services_end_the_decoding_whatever_follows)
{
    EXPECT_EQ(report_of_descriptors(descriptor(0x86, hex("E0"))),
              "        caption_service_descriptor() [ATSC A/65:2009 6.9.2]\n"
              "            number_of_services=0\n");
    EXPECT_EQ(report_of_descriptors(descriptor(0x86, hex("E0 65 6E 67 C1 3F FF"))),
              "        caption_service_descriptor() [ATSC A/65:2009 6.9.2]\n"
              "            number_of_services=0\n");
}

TEST_F(atsc_a65_caption_service, one_service_of_length_7_is_printed)
{
    EXPECT_EQ(report_of_descriptors(descriptor(0x86, hex("E1  65 6E 67 C1 BF FF"))),
              "        caption_service_descriptor() [ATSC A/65:2009 6.9.2]\n"
              "            number_of_services=1\n"
              "                service #1\n"
              "                    language: 'eng'\n"
              "                    digital_cc=1\n"
              "                    caption_service_number=1\n"
              "                    easy_reader=1\n"
              "                    wide_aspect_ratio=0\n");
}

TEST_F(atsc_a65_caption_service, one_service_of_length_6_is_reported_as_overflowed)
{
    EXPECT_EQ(report_of_descriptors(descriptor(0x86, hex("E1  65 6E 67 C1 3F"))),
              "        caption_service_descriptor() [ATSC A/65:2009 6.9.2]\n"
              "            number_of_services=1\n"
              "!!! caption_service_descriptor() overflowed descriptor while parsing\n");
}

TEST_F(atsc_a65_caption_service, a_line_21_service_shows_its_field)
{
    EXPECT_EQ(report_of_descriptors(descriptor(0x86, hex("E2  65 6E 67 7E 7F FF  66 72 61 7F FF FF"))),
              "        caption_service_descriptor() [ATSC A/65:2009 6.9.2]\n"
              "            number_of_services=2\n"
              "                service #1\n"
              "                    language: 'eng'\n"
              "                    digital_cc=0\n"
              "                    line21_field=0\n"
              "                    easy_reader=0\n"
              "                    wide_aspect_ratio=1\n"
              "                service #2\n"
              "                    language: 'fra'\n"
              "                    digital_cc=0\n"
              "                    line21_field=1\n"
              "                    easy_reader=1\n"
              "                    wide_aspect_ratio=1\n");
}

TEST_F(atsc_a65_caption_service, a_second_service_that_does_not_fit_is_reported)
{
    EXPECT_EQ(report_of_descriptors(descriptor(0x86, hex("E2  65 6E 67 FF 3F FF  66 72 61 7F FF"))),
              "        caption_service_descriptor() [ATSC A/65:2009 6.9.2]\n"
              "            number_of_services=2\n"
              "                service #1\n"
              "                    language: 'eng'\n"
              "                    digital_cc=1\n"
              "                    caption_service_number=63\n"
              "                    easy_reader=0\n"
              "                    wide_aspect_ratio=0\n"
              "!!! caption_service_descriptor() overflowed descriptor while parsing\n");
}

TEST_F(atsc_a65_caption_service, bytes_behind_the_last_service_are_left_alone)
{
    EXPECT_EQ(report_of_descriptors(descriptor(0x86, hex("E1  65 6E 67 C0 3F FF  66 72 61 7F FF FF"))),
              "        caption_service_descriptor() [ATSC A/65:2009 6.9.2]\n"
              "            number_of_services=1\n"
              "                service #1\n"
              "                    language: 'eng'\n"
              "                    digital_cc=1\n"
              "                    caption_service_number=0\n"
              "                    easy_reader=0\n"
              "                    wide_aspect_ratio=0\n");
}

TEST_F(atsc_a65_caption_service, every_reserved_field_is_reported_beside_its_neighbours)
{
    EXPECT_EQ(report_of_descriptors(descriptor(0x86, hex("C2  65 6E 67 81 3E FE  66 00 61 3D 9F 00"))),
              "        caption_service_descriptor() [ATSC A/65:2009 6.9.2]\n"
              "!!! caption_service_descriptor() reserved bits not '111'\n"
              "            number_of_services=2\n"
              "                service #1\n"
              "                    language: 'eng'\n"
              "                    digital_cc=1\n"
              "!!! caption_service_descriptor() reserved bit not '1'\n"
              "                    caption_service_number=1\n"
              "                    easy_reader=0\n"
              "                    wide_aspect_ratio=0\n"
              "!!! caption_service_descriptor() reserved bits not '111111'\n"
              "!!! caption_service_descriptor() reserved bits not '11111111'\n"
              "                service #2\n"
              "                    language: 'f'\n"
              "                    digital_cc=0\n"
              "!!! caption_service_descriptor() reserved bit not '1'\n"
              "!!! caption_service_descriptor() reserved bits not '11111'\n"
              "                    line21_field=1\n"
              "                    easy_reader=1\n"
              "                    wide_aspect_ratio=0\n"
              "!!! caption_service_descriptor() reserved bits not '111111'\n"
              "!!! caption_service_descriptor() reserved bits not '11111111'\n");
}

TEST_F(atsc_a65_caption_service, the_fields_are_printed_in_dump_mode_none)
{
    settings.dump_descriptors_mode = dump_descriptors_none;
    EXPECT_EQ(report_of_descriptors(descriptor(0x86, hex("E1  65 6E 67 C1 BF FF"))),
              "            number_of_services=1\n"
              "                service #1\n"
              "                    language: 'eng'\n"
              "                    digital_cc=1\n"
              "                    caption_service_number=1\n"
              "                    easy_reader=1\n"
              "                    wide_aspect_ratio=0\n");
}

TEST_F(atsc_a65_caption_service, the_ATSC_mode_and_the_private_data_specifier_do_not_matter)
{
    settings.atsc_mode = 0;
    EXPECT_EQ(
        report_of_descriptors(join({descriptor(0x5F, hex("00 00 00 28")), descriptor(0x86, hex("E0"))})),
        "        private_data_specifier_descriptor() [DVB A38 6.2.31]\n"
        "            private_data_specifier=0x00000028\n"
        "        caption_service_descriptor() [ATSC A/65:2009 6.9.2]\n"
        "            number_of_services=0\n");
}

TEST_F(atsc_a65_caption_service, thirty_one_services_fit)
{
    bytes body = hex("FF");
    std::string expected = "        caption_service_descriptor() [ATSC A/65:2009 6.9.2]\n"
                           "            number_of_services=31\n";
    for (unsigned service = 1; service <= 31; ++service) {
        body = join({body, hex("73 70 61 C0"), hex("3F FF")});
        body[body.size() - 3] = static_cast<uint8_t>(0xC0 | service);
        expected += "                service #" + std::to_string(service) +
                    "\n"
                    "                    language: 'spa'\n"
                    "                    digital_cc=1\n"
                    "                    caption_service_number=" +
                    std::to_string(service) +
                    "\n"
                    "                    easy_reader=0\n"
                    "                    wide_aspect_ratio=0\n";
    }
    EXPECT_EQ(report_of_descriptors(descriptor(0x86, body)), expected);
}
