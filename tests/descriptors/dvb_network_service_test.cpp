// Services: their list, their names and the Australian channel numbers.
#include "tests/descriptors/descriptor_test.h"

#include <cstdio>

struct dvb_network_service : descriptor_test {};

namespace {

const std::string service_heading = "        service_descriptor() [DVB A38 6.2.33]\n";

/// By service_type; those from 31 on have no name either.
constexpr const char *service_types[32] = {
    "",
    "Digital television service",
    "Digital radio sound service",
    "Teletext service",
    "NVOD reference service",
    "NVOD time-shifted service",
    "Mosaic service",
    "FM radio service",
    "DVB SRM service",
    "",
    "Advanced codec digital radio sound service",
    "Advanced codec mosaic service",
    "Data broadcast service",
    "Reserved [Common Interface Usage EN 50221 [37]] service",
    "RCS Map [EN 301 790 [7]] service",
    "RCS FLS [EN 301 790 [7]] service",
    "DVB MHP service",
    "MPEG-2 HD digital television service",
    "",
    "",
    "",
    "",
    "Advanced codec SD digital television service",
    "Advanced codec SD NVOD time-shifted service",
    "Advanced codec SD NVOD reference service",
    "Advanced codec HD digital television service",
    "Advanced codec HD NVOD time-shifted service",
    "Advanced codec HD NVOD reference service",
    "Advanced codec frame compatible plano-stereoscopic HD digital television service",
    "Advanced codec frame compatible plano-stereoscopic NVOD time-shifted service",
    "Advanced codec frame compatible plano-stereoscopic NVOD reference service",
    "",
};

/// The value and the name behind "service_type=".
std::string service_type_text(unsigned service_type)
{
    char digits[8];
    std::snprintf(digits, sizeof digits, "0x%02x ", service_type);
    return std::string(digits) + (service_type < 32 ? service_types[service_type] : "");
}

} // namespace

TEST_F(dvb_network_service, both_descriptors_name_every_service_type)
{
    for (unsigned service_type = 0; service_type <= 0xFF; ++service_type) {
        EXPECT_EQ(contents(0x41, join({hex("1234"), big_endian(service_type, 1)})),
                  "        service_list_descriptor() [DVB A38 6.2.35]\n"
                  "            service_id=0x1234 service_type=" +
                      service_type_text(service_type) + "\n");
        EXPECT_EQ(contents(0x48, join({big_endian(service_type, 1), hex("00 00")})),
                  service_heading + "            service_type=" + service_type_text(service_type) +
                      "\n"
                      "            service_provider_name=\n"
                      "            service_name=\n");
    }
}

TEST_F(dvb_network_service, list_may_be_empty)
{
    EXPECT_EQ(contents(0x41, {}), "        service_list_descriptor() [DVB A38 6.2.35]\n");
    EXPECT_EQ(none(0x41, hex("0001 01")), "");
}

TEST_F(dvb_network_service, list_of_length_7_warns_and_prints_two_entries)
{
    EXPECT_EQ(contents(0x41, hex("0001 01 FFFE 02 55")),
              "!!! service_list_descriptor() length not a multiple of 3\n"
              "        service_list_descriptor() [DVB A38 6.2.35]\n"
              "            service_id=0x0001 service_type=0x01 Digital television service\n"
              "            service_id=0xfffe service_type=0x02 Digital radio sound service\n");
    EXPECT_EQ(contents(0x41, hex("0001")), "!!! service_list_descriptor() length not a multiple of 3\n"
                                           "        service_list_descriptor() [DVB A38 6.2.35]\n");
    EXPECT_EQ(none(0x41, hex("0001 01 FF")), "!!! service_list_descriptor() length not a multiple of 3\n");
}

TEST_F(dvb_network_service, names_are_printed_as_raw_bytes_up_to_the_first_zero)
{
    EXPECT_EQ(contents(0x48, join({hex("01 05"),
                                   text_bytes("\x05"
                                              "BBC\xE9"),
                                   hex("06"), text_bytes("BBC TW")})),
              service_heading + "            service_type=0x01 Digital television service\n"
                                "            service_provider_name=\x05"
                                "BBC\xE9\n"
                                "            service_name=BBC TW\n");
    EXPECT_EQ(contents(0x48, hex("02 03 41 00 42 03 00 43 44")),
              service_heading + "            service_type=0x02 Digital radio sound service\n"
                                "            service_provider_name=A\n"
                                "            service_name=\n");
    EXPECT_EQ(none(0x48, hex("02 01 41 01 42")), "");
}

TEST_F(dvb_network_service, provider_name_past_the_body_ends_the_decoding)
{
    const std::string message = "!!! service_descriptor() service provider name extends past descriptor\n";
    EXPECT_EQ(contents(0x48, hex("01 01")),
              service_heading + "            service_type=0x01 Digital television service\n" + message);
    EXPECT_EQ(contents(0x48, hex("01 04 41 42 43")),
              service_heading + "            service_type=0x01 Digital television service\n" + message);
    EXPECT_EQ(none(0x48, hex("01 FF 41 42 43")), message);
}

TEST_F(dvb_network_service, provider_name_that_fills_the_body_leaves_the_service_name_absent)
{
    EXPECT_EQ(contents(0x48, hex("01 03 41 42 43")),
              service_heading + "            service_type=0x01 Digital television service\n"
                                "            service_provider_name=ABC\n");
    EXPECT_EQ(contents(0x48, hex("01 00")), service_heading +
                                                "            service_type=0x01 Digital television service\n"
                                                "            service_provider_name=\n");
    EXPECT_EQ(none(0x48, hex("01 00")), "");
}

TEST_F(dvb_network_service, service_name_past_the_body_ends_the_decoding)
{
    const std::string message = "!!! service_descriptor() service name extends past descriptor\n";
    const std::string lines = service_heading + "            service_type=0x01 Digital television service\n"
                                                "            service_provider_name=A\n";
    EXPECT_EQ(contents(0x48, hex("01 01 41 01")), lines + message);
    EXPECT_EQ(contents(0x48, hex("01 01 41 03 42 43")), lines + message);
    EXPECT_EQ(none(0x48, hex("01 01 41 03 42 43")), message);
}

TEST_F(dvb_network_service, bytes_behind_the_service_name_are_reported)
{
    const std::string message = "!!! service_descriptor() extra bytes at the end\n";
    EXPECT_EQ(contents(0x48, hex("01 01 41 02 42 43 00")),
              service_heading +
                  "            service_type=0x01 Digital television service\n"
                  "            service_provider_name=A\n"
                  "            service_name=BC\n" +
                  message);
    EXPECT_EQ(none(0x48, hex("01 00 00 FF FF")), message);
}

TEST_F(dvb_network_service, logical_channel_prints_the_channel_first)
{
    settings.assume_country = 0x3200;
    EXPECT_EQ(contents(0x83, hex("0261 FC02 0271 7FFF")),
              "        logical_channel_descriptor() [Australia: Free TV OP 41 LCN Descriptor]\n"
              "            Channel 2:\n"
              "                visible_service_flag=1\n"
              "                service_id=0x0261\n"
              "            Channel 1023:\n"
              "                visible_service_flag=0\n"
              "                service_id=0x0271\n");
    EXPECT_EQ(contents(0x83, {}),
              "        logical_channel_descriptor() [Australia: Free TV OP 41 LCN Descriptor]\n");
    EXPECT_EQ(none(0x83, hex("0261 FC02")), "");
}

TEST_F(dvb_network_service, logical_channel_reports_each_reserved_bit_of_0_before_the_channel)
{
    settings.assume_country = 0x3200;
    for (unsigned bit = 10; bit < 15; ++bit) {
        const bytes body = join({hex("0001"), big_endian(0xFC07u & ~(1u << bit), 2), hex("0002 7C08")});
        EXPECT_EQ(contents(0x83, body),
                  "        logical_channel_descriptor() [Australia: Free TV OP 41 LCN Descriptor]\n"
                  "!!! reserved fiels has zero bits\n"
                  "            Channel 7:\n"
                  "                visible_service_flag=1\n"
                  "                service_id=0x0001\n"
                  "            Channel 8:\n"
                  "                visible_service_flag=0\n"
                  "                service_id=0x0002\n");
        EXPECT_EQ(none(0x83, body), "!!! reserved fiels has zero bits\n");
    }
}

TEST_F(dvb_network_service, logical_channel_warns_of_a_length_that_is_no_multiple_of_4)
{
    settings.assume_country = 0x3200;
    const std::string message =
        "!!! logical_channel_descriptor() Australia Free TV OP 41 length is not a multiple of 4 bytes\n";
    EXPECT_EQ(contents(0x83, hex("0261 FC02 0271 7F")),
              message + "        logical_channel_descriptor() [Australia: Free TV OP 41 LCN Descriptor]\n"
                        "            Channel 2:\n"
                        "                visible_service_flag=1\n"
                        "                service_id=0x0261\n");
    EXPECT_EQ(contents(0x83, hex("FF")),
              message + "        logical_channel_descriptor() [Australia: Free TV OP 41 LCN Descriptor]\n");
    EXPECT_EQ(none(0x83, hex("0261 FC02 0271 7F")), message);
}
