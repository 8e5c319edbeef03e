#include "tests/descriptors/descriptor_test.h"

#include <cstdio>

struct dvb_network : descriptor_test {};

TEST_F(dvb_network, network_name_prints_the_whole_body)
{
    EXPECT_EQ(contents(0x40, text_bytes("Freeview 7")), "        network_name_descriptor() [DVB A38 6.2.27]\n"
                                                        "            char=Freeview 7\n");
    EXPECT_EQ(none(0x40, text_bytes("Freeview 7")), "");
}

TEST_F(dvb_network, network_name_may_be_empty)
{
    EXPECT_EQ(contents(0x40, {}), "        network_name_descriptor() [DVB A38 6.2.27]\n"
                                  "            char=\n");
}

TEST_F(dvb_network, network_name_is_raw_bytes_up_to_the_first_zero)
{
    EXPECT_EQ(contents(0x40, hex("1F E9 FF 0A 41")), "        network_name_descriptor() [DVB A38 6.2.27]\n"
                                                     "            char=\x1F\xE9\xFF\nA\n");
    EXPECT_EQ(contents(0x40, hex("41 42 00 43")), "        network_name_descriptor() [DVB A38 6.2.27]\n"
                                                  "            char=AB\n");
    EXPECT_EQ(contents(0x40, hex("00 43")), "        network_name_descriptor() [DVB A38 6.2.27]\n"
                                            "            char=\n");
}

TEST_F(dvb_network, network_name_of_255_bytes_is_not_cut)
{
    EXPECT_EQ(contents(0x40, repeated('n', 255)), "        network_name_descriptor() [DVB A38 6.2.27]\n"
                                                  "            char=" +
                                                      std::string(255, 'n') + "\n");
}

TEST_F(dvb_network, linkage_prints_its_identifiers_and_drops_the_rest)
{
    EXPECT_EQ(contents(0x4A, hex("0001 233A 1044 05 AA BB")),
              "        linkage_descriptor() [DVB A38 6.2.19]\n"
              "            transport_stream_id=0x0001\n"
              "            original_network_id=0x233a\n"
              "            service_id=0x1044\n"
              "            linkage_type=0x05 Service replacement service\n");
    EXPECT_EQ(none(0x4A, hex("0001 233A 1044 05")), "");
}

TEST_F(dvb_network, linkage_names_types_1_to_14_only)
{
    const char *const names[] = {"",
                                 "Information service",
                                 "EPF service",
                                 "CA replacement service",
                                 "TS containing complete Network/Bouquet SI",
                                 "Service replacement service",
                                 "Data broadcast service",
                                 "RCS Map",
                                 "Mobile hand-over",
                                 "System Software Update Service [TS 102 006 [11]]",
                                 "TS containing SSU BAT or NIT [TS 102 006 [11]]",
                                 "IP/MAC Notification Service [EN 301 192 [4]]",
                                 "TS containing INT BAT or NIT [EN 301 192 [4]]",
                                 "Event linkage",
                                 "Extended event linkage"};
    for (unsigned type = 0; type <= 0xFF; ++type) {
        char digits[8];
        std::snprintf(digits, sizeof digits, "0x%02x ", type);
        EXPECT_EQ(contents(0x4A, join({hex("FFFF FFFE FFFD"), big_endian(type, 1)})),
                  std::string("        linkage_descriptor() [DVB A38 6.2.19]\n"
                              "            transport_stream_id=0xffff\n"
                              "            original_network_id=0xfffe\n"
                              "            service_id=0xfffd\n"
                              "            linkage_type=") +
                      digits + (type < std::size(names) ? names[type] : "") + "\n");
    }
}

TEST_F(dvb_network, stream_identifier_prints_the_component_tag)
{
    EXPECT_EQ(contents(0x52, hex("0A FF")), "        stream_identifier_descriptor() [DVB A38 6.2.39]\n"
                                            "            component_tag=0x0a\n");
    EXPECT_EQ(none(0x52, hex("0A")), "");
}

TEST_F(dvb_network, CA_identifier_separates_the_ids_by_commas)
{
    EXPECT_EQ(contents(0x53, hex("0500 0963 4AEE")), "        CA_identifier_descriptor() [DVB A38 6.2.5]\n"
                                                     "            CA_system_id=0x0500, 0x0963, 0x4aee\n");
    EXPECT_EQ(contents(0x53, hex("0001")), "        CA_identifier_descriptor() [DVB A38 6.2.5]\n"
                                           "            CA_system_id=0x0001\n");
    EXPECT_EQ(none(0x53, hex("0500 0963")), "");
}

TEST_F(dvb_network, CA_identifier_of_length_5_prints_two_ids_and_ignores_the_last_byte)
{
    EXPECT_EQ(contents(0x53, hex("0500 0963 4A")), "        CA_identifier_descriptor() [DVB A38 6.2.5]\n"
                                                   "            CA_system_id=0x0500, 0x0963\n");
}

TEST_F(dvb_network, CA_identifier_below_2_bytes_prints_the_label_alone)
{
    for (const char *body : {"", "05"})
        EXPECT_EQ(contents(0x53, hex(body)), "        CA_identifier_descriptor() [DVB A38 6.2.5]\n"
                                             "            CA_system_id=\n");
}

TEST_F(dvb_network, teletext_prints_the_page_number_in_decimal)
{
    EXPECT_EQ(contents(0x56, hex("656E67 09 00 656E67 17 88")),
              "        teletext_descriptor() [DVB A38 6.2.43]. 2 entries.\n"
              "          - ISO_639_language_code=eng\n"
              "            teletext_type=1 Initial teletext page\n"
              "            teletext_magazine_number=1\n"
              "            teletext_page_number=0\n"
              "          - ISO_639_language_code=eng\n"
              "            teletext_type=2 Teletext subtitle page\n"
              "            teletext_magazine_number=7\n"
              "            teletext_page_number=136\n");
    EXPECT_EQ(none(0x56, hex("656E67 09 00")), "");
}

TEST_F(dvb_network, teletext_names_types_1_to_5_only)
{
    const char *const names[32] = {"",
                                   "Initial teletext page",
                                   "Teletext subtitle page",
                                   "Additional information page",
                                   "Programme schedule page",
                                   "Teletext subtitle page for hearing impaired people"};
    for (unsigned type = 0; type < 32; ++type)
        EXPECT_EQ(contents(0x56, join({text_bytes("fra"), big_endian(type << 3, 1), hex("FF")})),
                  "        teletext_descriptor() [DVB A38 6.2.43]. 1 entries.\n"
                  "          - ISO_639_language_code=fra\n"
                  "            teletext_type=" +
                      std::to_string(type) + " " + (names[type] != nullptr ? names[type] : "") +
                      "\n"
                      "            teletext_magazine_number=0\n"
                      "            teletext_page_number=255\n");
}

TEST_F(dvb_network, teletext_warns_of_a_length_that_is_no_multiple_of_5_and_ignores_the_remainder)
{
    EXPECT_EQ(contents(0x56, hex("656E67 09 00 656E67 17")),
              "!!! teletext_descriptor() length not a multiple of 5 bytes\n"
              "        teletext_descriptor() [DVB A38 6.2.43]. 1 entries.\n"
              "          - ISO_639_language_code=eng\n"
              "            teletext_type=1 Initial teletext page\n"
              "            teletext_magazine_number=1\n"
              "            teletext_page_number=0\n");
    EXPECT_EQ(contents(0x56, hex("656E67 09")),
              "!!! teletext_descriptor() length not a multiple of 5 bytes\n"
              "        teletext_descriptor() [DVB A38 6.2.43]. 0 entries.\n");
    EXPECT_EQ(contents(0x56, {}), "        teletext_descriptor() [DVB A38 6.2.43]. 0 entries.\n");
    EXPECT_EQ(none(0x56, hex("656E67 09")), "!!! teletext_descriptor() length not a multiple of 5 bytes\n");
}

TEST_F(dvb_network, private_data_specifier_prints_32_bits)
{
    EXPECT_EQ(contents(0x5F, hex("0000 0028")),
              "        private_data_specifier_descriptor() [DVB A38 6.2.31]\n"
              "            private_data_specifier=0x00000028\n");
    EXPECT_EQ(contents(0x5F, hex("FEDC BA98 FF")),
              "        private_data_specifier_descriptor() [DVB A38 6.2.31]\n"
              "            private_data_specifier=0xfedcba98\n");
    EXPECT_EQ(none(0x5F, hex("0000 0028")), "");
}

TEST_F(dvb_network, data_broadcast_id_lists_the_selector_bytes)
{
    EXPECT_EQ(contents(0x66, hex("0106 01 02 FF")),
              "        data_broadcast_id_descriptor() [DVB A38 6.2.12]\n"
              "            data_broadcast_id=0x0106\n"
              "            id_selector_byte=[0x01 0x02 0xff]\n");
    EXPECT_EQ(contents(0x66, hex("F000 0A")), "        data_broadcast_id_descriptor() [DVB A38 6.2.12]\n"
                                              "            data_broadcast_id=0xf000\n"
                                              "            id_selector_byte=[0x0a]\n");
    EXPECT_EQ(contents(0x66, hex("0106")), "        data_broadcast_id_descriptor() [DVB A38 6.2.12]\n"
                                           "            data_broadcast_id=0x0106\n"
                                           "            id_selector_byte=[]\n");
}

TEST_F(dvb_network, data_broadcast_id_prints_the_selector_bytes_even_in_the_dump_mode_none)
{
    EXPECT_EQ(none(0x66, hex("0106 01 02")), "            id_selector_byte=[0x01 0x02]\n");
    EXPECT_EQ(none(0x66, hex("0106")), "            id_selector_byte=[]\n");
}

TEST_F(dvb_network, carousel_identifier_prints_the_format)
{
    EXPECT_EQ(contents(0x13, hex("0000 001E 00")),
              "        carousel_identifier_descriptor() [ETSI TR 101 202 4.7.7.1]\n"
              "            carousel_id=0x0000001e\n"
              "            format_id=0x00\n");
    EXPECT_EQ(contents(0x13, hex("FFFF FFFE FF 01 02")),
              "        carousel_identifier_descriptor() [ETSI TR 101 202 4.7.7.1]\n"
              "            carousel_id=0xfffffffe\n"
              "            format_id=0xff\n");
}

TEST_F(dvb_network, carousel_identifier_leaves_the_specifier_of_format_1_undecoded)
{
    EXPECT_EQ(contents(0x13, hex("0000 0001 01 00 00")),
              "        carousel_identifier_descriptor() [ETSI TR 101 202 4.7.7.1]\n"
              "            carousel_id=0x00000001\n"
              "            format_id=0x01\n"
              "??? TODO: Decoding of FormatSpecifier with format_id=0x01 [table 4.1.7a]\n");
    EXPECT_EQ(none(0x13, hex("0000 0001 01 00 00")), "");
}
