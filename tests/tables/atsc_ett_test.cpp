#include "tests/support/report_test.h"

#include <random>

struct atsc_ett : report_test {
    atsc_ett()
    {
        track(0x1E00, TRACK_ATSC_ETT);
        track(0x0021, TRACK_ATSC_ETT);
    }

    std::string report_of(const bytes &body)
    {
        return report_of_section(0x1E00, long_section(0xCC, 0x0007, body));
    }
};

TEST_F(atsc_ett, a_text_is_printed_under_its_ids)
{
    section_fields fields;
    fields.version_number = 9;
    fields.section_number = 1;
    fields.last_section_number = 2;
    EXPECT_EQ(
        report_of_section(
            0x1E00, long_section(0xCC, 0xABCD, hex("03 12345679 01 65 6E 67 01 00 00 03 41 42 43"), fields)),
        "* extended_text_table_section() [ATSC A/65:2009 6.6] PID 0x1e00\n"
        "    ETT_table_id_extension:           0xabcd\n"
        "    Version:                          9\n"
        "    Section:                          1 / 2\n"
        "    protocol_version=3\n"
        "    ETM_id=0x12345679 (source_id=0x1234,event_id=0x5679)\n"
        "    extended_text_message:\n"
        "        multiple_string_structure() [ATSC A/65:2009 6.39]\n"
        "            string #1/1: ISO_639_language_code='eng' number_segments=1\n"
        "                segment #1: compression_type=0x00(none) mode=0x00(ANSI (select unicode code range "
        "0x0000-0x00FF)) number_bytes=3\n"
        "                    string: 'ABC'\n");
}

TEST_F(atsc_ett, the_heading_shows_the_PID_that_carried_the_section)
{
    EXPECT_EQ(report_of_section(0x0021, long_section(0xCC, 0x0000, {})),
              "* extended_text_table_section() [ATSC A/65:2009 6.6] PID 0x0021\n");
}

TEST_F(atsc_ett, fewer_than_5_bytes_print_the_heading_only)
{
    for (unsigned length = 0; length < 5; ++length)
        EXPECT_EQ(report_of(repeated(0x01, length)),
                  "* extended_text_table_section() [ATSC A/65:2009 6.6] PID 0x1e00\n");
}

TEST_F(atsc_ett, a_body_of_5_bytes_has_an_empty_text)
{
    EXPECT_EQ(report_of(hex("00 FFFFFFFF")),
              "* extended_text_table_section() [ATSC A/65:2009 6.6] PID 0x1e00\n"
              "    ETT_table_id_extension:           0x0007\n"
              "    Version:                          0\n"
              "    Section:                          0 / 0\n"
              "    protocol_version=0\n"
              "    ETM_id=0xffffffff (source_id=0xffff,event_id=0xffff)\n"
              "    extended_text_message:\n"
              "        multiple_string_structure() [ATSC A/65:2009 6.39]\n");
}

TEST_F(atsc_ett, small_ids_are_filled_with_zeros)
{
    settings.dump_descriptors_mode = dump_descriptors_none;
    EXPECT_EQ(report_of(hex("00 00010002")), "    ETT_table_id_extension:           0x0007\n"
                                             "    Version:                          0\n"
                                             "    Section:                          0 / 0\n"
                                             "    protocol_version=0\n"
                                             "    ETM_id=0x00010002 (source_id=0x0001,event_id=0x0002)\n"
                                             "    extended_text_message:\n");
    EXPECT_EQ(report_of({}), "");
}

/// 4 strings of 4 segments of 250 bytes: a text over many packets, far above one descriptor.
TEST_F(atsc_ett, a_long_text_is_decoded_to_the_sections_end)
{
    settings.dump_descriptors_mode = dump_descriptors_none;
    bytes text = hex("04");
    std::string expected = "    ETT_table_id_extension:           0x0007\n"
                           "    Version:                          0\n"
                           "    Section:                          0 / 0\n"
                           "    protocol_version=0\n"
                           "    ETM_id=0x00000000 (source_id=0x0000,event_id=0x0000)\n"
                           "    extended_text_message:\n";
    for (unsigned string = 1; string <= 4; ++string) {
        text = join({text, hex("65 6E 67 04")});
        expected += "            string #" + std::to_string(string) +
                    "/4: ISO_639_language_code='eng' number_segments=4\n";
        for (unsigned segment = 1; segment <= 4; ++segment) {
            text = join({text, hex("00 00 FA"), repeated('z', 250)});
            expected +=
                "                segment #" + std::to_string(segment) +
                ": compression_type=0x00(none) mode=0x00(ANSI (select unicode code range 0x0000-0x00FF)) "
                "number_bytes=250\n                    string: '" +
                std::string(250, 'z') + "'\n";
        }
    }
    EXPECT_EQ(report_of(join({hex("00 00000000"), text})), expected);
}

TEST_F(atsc_ett, random_bodies_are_read_to_their_end)
{
    std::mt19937 random(66);
    for (unsigned length = 0; length <= 600; ++length) {
        bytes body(length);
        for (uint8_t &byte : body) byte = static_cast<uint8_t>(random() % (length % 2 == 0 ? 256 : 8));
        EXPECT_EQ(report_of(body).substr(0, 64),
                  "* extended_text_table_section() [ATSC A/65:2009 6.6] PID 0x1e00\n");
    }
}
