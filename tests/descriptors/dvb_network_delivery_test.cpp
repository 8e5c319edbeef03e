// The delivery systems: satellite and terrestrial.
#include "tests/descriptors/descriptor_test.h"

struct dvb_network_delivery : descriptor_test {
    /// The report of a satellite descriptor whose byte 6 and FEC_inner are given.
    std::string satellite(unsigned flags, unsigned FEC_inner)
    {
        return contents(
            0x43, join({hex("01172750 0192"), big_endian(flags, 1), big_endian(0x02750000u | FEC_inner, 4)}));
    }

    /// The report of a terrestrial descriptor whose bytes 4, 5 and 6 are given.
    std::string terrestrial(unsigned byte_4, unsigned byte_5, unsigned byte_6)
    {
        return contents(0x5A, join({hex("02FAF080"), big_endian(byte_4, 1), big_endian(byte_5, 1),
                                    big_endian(byte_6, 1), hex("FFFFFFFF")}));
    }
};

namespace {

struct satellite_texts {
    const char *west_east = "0 west";
    const char *polarization = "0 linear - horizontal";
    const char *roll_off = "0 alpha=0.35";
    const char *modulation_system = "0 DVB-S";
    const char *modulation_type = "0 Auto";
    const char *FEC_inner = "0 ";
};

std::string satellite_report(const satellite_texts &texts)
{
    return std::string("        satellite_delivery_system_descriptor() [DVB A38 6.2.13.2]\n"
                       "            frequency=11.72750GHz\n"
                       "            orbital_position=19.2 degrees\n"
                       "            west_east_flag=") +
           texts.west_east + "\n            polarization=" + texts.polarization +
           "\n            roll_off=" + texts.roll_off +
           "\n            modulation_system=" + texts.modulation_system +
           "\n            modulation_type=" + texts.modulation_type +
           "\n            symbol_rate=27.5000 mega-symbols/sec"
           "\n            FEC_inner=" +
           texts.FEC_inner + "\n";
}

struct terrestrial_texts {
    const char *bandwidth = "0 8MHz";
    const char *priority = "0";
    const char *time_slicing = "0 (at least one elementary stream uses time slicing)";
    const char *MPE_FEC = "0";
    const char *reserved = "";
    const char *constellation = "0 QPSK";
    const char *hierarchy = "0 non-hierarchical, native interleaver";
    const char *code_rate_HP = "0 1/2";
    const char *code_rate_LP = "0 1/2";
    const char *guard_interval = "0 1/32";
    const char *transmission_mode = "0 2k";
    const char *other_frequency = "0";
};

std::string terrestrial_report(const terrestrial_texts &texts)
{
    return std::string("        terrestrial_delivery_system_descriptor() [DVB A38 6.2.13.4]\n"
                       "            centre_frequency=500000000Hz\n"
                       "            bandwidth=") +
           texts.bandwidth + "\n            priority=" + texts.priority +
           "\n            Time_Slicing_indicator=" + texts.time_slicing +
           "\n            MPE-FEC_indicator=" + texts.MPE_FEC + "\n" + texts.reserved +
           "            constellation=" + texts.constellation +
           "\n            hierarchy_information=" + texts.hierarchy +
           "\n            code_rate-HP_stream=" + texts.code_rate_HP +
           "\n            code_rate-LP_stream=" + texts.code_rate_LP +
           "\n            guard_interval=" + texts.guard_interval +
           "\n            transmission_mode=" + texts.transmission_mode +
           "\n            other_frequency_flag=" + texts.other_frequency + "\n";
}

constexpr const char *code_rates[] = {"0 1/2", "1 2/3", "2 3/4", "3 5/6", "4 7/8", "5 ", "6 ", "7 "};

} // namespace

TEST_F(dvb_network_delivery, satellite_prints_digits_of_BCD)
{
    EXPECT_EQ(contents(0x43, hex("01172750 0192 81 02750003")),
              "        satellite_delivery_system_descriptor() [DVB A38 6.2.13.2]\n"
              "            frequency=11.72750GHz\n"
              "            orbital_position=19.2 degrees\n"
              "            west_east_flag=1 east\n"
              "            polarization=0 linear - horizontal\n"
              "            roll_off=0 alpha=0.35\n"
              "            modulation_system=0 DVB-S\n"
              "            modulation_type=1 QPSK\n"
              "            symbol_rate=27.5000 mega-symbols/sec\n"
              "            FEC_inner=3 3/4 conv. code rate\n");
    EXPECT_EQ(none(0x43, hex("01172750 0192 81 02750003")), "");
}

TEST_F(dvb_network_delivery, satellite_pads_fractions_and_not_whole_numbers)
{
    EXPECT_EQ(contents(0x43, hex("00000001 0000 00 00000010 FF")),
              "        satellite_delivery_system_descriptor() [DVB A38 6.2.13.2]\n"
              "            frequency=0.00001GHz\n"
              "            orbital_position=0.0 degrees\n"
              "            west_east_flag=0 west\n"
              "            polarization=0 linear - horizontal\n"
              "            roll_off=0 alpha=0.35\n"
              "            modulation_system=0 DVB-S\n"
              "            modulation_type=0 Auto\n"
              "            symbol_rate=0.0001 mega-symbols/sec\n"
              "            FEC_inner=0 \n");
}

TEST_F(dvb_network_delivery, satellite_prints_nibbles_that_are_no_BCD_as_they_are)
{
    EXPECT_EQ(contents(0x43, hex("ABCDEF01 FEDC 7F ABCDEF0F")),
              "        satellite_delivery_system_descriptor() [DVB A38 6.2.13.2]\n"
              "            frequency=abc.def01GHz\n"
              "            orbital_position=fed.c degrees\n"
              "            west_east_flag=0 west\n"
              "            polarization=3 circular - right\n"
              "            roll_off=3 \n"
              "            modulation_system=1 DVB-S2\n"
              "            modulation_type=3 16-QAM or N/A for DVB-S2\n"
              "            symbol_rate=abc.def0 mega-symbols/sec\n"
              "            FEC_inner=15 No conv. coding\n");
}

TEST_F(dvb_network_delivery, satellite_names_every_flag)
{
    EXPECT_EQ(satellite(0x00, 0), satellite_report({}));
    EXPECT_EQ(satellite(0x80, 0), satellite_report({.west_east = "1 east"}));
    EXPECT_EQ(satellite(0x20, 0), satellite_report({.polarization = "1 linear - vertical"}));
    EXPECT_EQ(satellite(0x40, 0), satellite_report({.polarization = "2 circular - left"}));
    EXPECT_EQ(satellite(0x60, 0), satellite_report({.polarization = "3 circular - right"}));
    EXPECT_EQ(satellite(0x08, 0), satellite_report({.roll_off = "1 alpha=0.25"}));
    EXPECT_EQ(satellite(0x10, 0), satellite_report({.roll_off = "2 alpha=0.20"}));
    EXPECT_EQ(satellite(0x18, 0), satellite_report({.roll_off = "3 "}));
    EXPECT_EQ(satellite(0x04, 0), satellite_report({.modulation_system = "1 DVB-S2"}));
    EXPECT_EQ(satellite(0x01, 0), satellite_report({.modulation_type = "1 QPSK"}));
    EXPECT_EQ(satellite(0x02, 0), satellite_report({.modulation_type = "2 8PSK"}));
    EXPECT_EQ(satellite(0x03, 0), satellite_report({.modulation_type = "3 16-QAM or N/A for DVB-S2"}));
}

TEST_F(dvb_network_delivery, satellite_names_every_FEC_inner)
{
    const char *const names[] = {"0 ",
                                 "1 1/2 conv. code rate",
                                 "2 2/3 conv. code rate",
                                 "3 3/4 conv. code rate",
                                 "4 5/6 conv. code rate",
                                 "5 7/8 conv. code rate",
                                 "6 8/9 conv. code rate",
                                 "7 3/5 conv. code rate",
                                 "8 4/5 conv. code rate",
                                 "9 9/10 conv. code rate",
                                 "10 ",
                                 "11 ",
                                 "12 ",
                                 "13 ",
                                 "14 ",
                                 "15 No conv. coding"};
    for (unsigned FEC_inner = 0; FEC_inner < 16; ++FEC_inner)
        EXPECT_EQ(satellite(0x00, FEC_inner), satellite_report({.FEC_inner = names[FEC_inner]}));
}

TEST_F(dvb_network_delivery, terrestrial_multiplies_the_frequency_without_overflow)
{
    EXPECT_EQ(contents(0x5A, hex("FFFFFFFF 1F 00 00 FFFFFFFF 00")),
              "        terrestrial_delivery_system_descriptor() [DVB A38 6.2.13.4]\n"
              "            centre_frequency=42949672950Hz\n"
              "            bandwidth=0 8MHz\n"
              "            priority=1\n"
              "            Time_Slicing_indicator=1 (not used)\n"
              "            MPE-FEC_indicator=1\n"
              "            constellation=0 QPSK\n"
              "            hierarchy_information=0 non-hierarchical, native interleaver\n"
              "            code_rate-HP_stream=0 1/2\n"
              "            code_rate-LP_stream=0 1/2\n"
              "            guard_interval=0 1/32\n"
              "            transmission_mode=0 2k\n"
              "            other_frequency_flag=0\n");
    EXPECT_EQ(none(0x5A, hex("FFFFFFFF 1F 00 00 FFFFFFFF")), "");
}

TEST_F(dvb_network_delivery, terrestrial_names_byte_4)
{
    const char *const bandwidths[] = {"0 8MHz", "1 7MHz", "2 6MHz", "3 5MHz", "4 ", "5 ", "6 ", "7 "};
    for (unsigned bandwidth = 0; bandwidth < 8; ++bandwidth)
        EXPECT_EQ(terrestrial(bandwidth << 5 | 0x03, 0, 0),
                  terrestrial_report({.bandwidth = bandwidths[bandwidth]}));
    EXPECT_EQ(terrestrial(0x13, 0, 0), terrestrial_report({.priority = "1"}));
    EXPECT_EQ(terrestrial(0x0B, 0, 0), terrestrial_report({.time_slicing = "1 (not used)"}));
    EXPECT_EQ(terrestrial(0x07, 0, 0), terrestrial_report({.MPE_FEC = "1"}));
}

TEST_F(dvb_network_delivery, terrestrial_names_byte_5)
{
    const char *const constellations[] = {"0 QPSK", "1 QAM16", "2 QAM64", "3 "};
    const char *const hierarchies[] = {"0 non-hierarchical, native interleaver",
                                       "1 alpha=1, native interleaver",
                                       "2 alpha=2, native interleaver",
                                       "3 alpha=4, native interleaver",
                                       "4 non-hierarchical, in-depth interleaver",
                                       "5 alpha=1, in-depth interleaver",
                                       "6 alpha=2, in-depth interleaver",
                                       "7 alpha=4, in-depth interleaver"};
    for (unsigned constellation = 0; constellation < 4; ++constellation)
        EXPECT_EQ(terrestrial(0x03, constellation << 6, 0),
                  terrestrial_report({.constellation = constellations[constellation]}));
    for (unsigned hierarchy = 0; hierarchy < 8; ++hierarchy)
        EXPECT_EQ(terrestrial(0x03, hierarchy << 3, 0),
                  terrestrial_report({.hierarchy = hierarchies[hierarchy]}));
    for (unsigned code_rate = 0; code_rate < 8; ++code_rate)
        EXPECT_EQ(terrestrial(0x03, code_rate, 0),
                  terrestrial_report({.code_rate_HP = code_rates[code_rate]}));
}

TEST_F(dvb_network_delivery, terrestrial_names_byte_6)
{
    const char *const guard_intervals[] = {"0 1/32", "1 1/16", "2 1/8", "3 1/4"};
    const char *const transmission_modes[] = {"0 2k", "1 8k", "2 4k", "3 1/4"};
    for (unsigned code_rate = 0; code_rate < 8; ++code_rate)
        EXPECT_EQ(terrestrial(0x03, 0, code_rate << 5),
                  terrestrial_report({.code_rate_LP = code_rates[code_rate]}));
    for (unsigned guard_interval = 0; guard_interval < 4; ++guard_interval)
        EXPECT_EQ(terrestrial(0x03, 0, guard_interval << 3),
                  terrestrial_report({.guard_interval = guard_intervals[guard_interval]}));
    for (unsigned transmission_mode = 0; transmission_mode < 4; ++transmission_mode)
        EXPECT_EQ(terrestrial(0x03, 0, transmission_mode << 1),
                  terrestrial_report({.transmission_mode = transmission_modes[transmission_mode]}));
    EXPECT_EQ(terrestrial(0x03, 0, 0x01), terrestrial_report({.other_frequency = "1"}));
}

TEST_F(dvb_network_delivery, terrestrial_transmission_mode_3_has_the_text_of_the_guard_interval)
{
    EXPECT_EQ(terrestrial(0x03, 0, 0x06), terrestrial_report({.transmission_mode = "3 1/4"}));
}

TEST_F(dvb_network_delivery, terrestrial_reports_reserved_bits_of_byte_4_where_they_stand)
{
    for (unsigned bits = 0; bits < 3; ++bits)
        EXPECT_EQ(terrestrial(bits, 0, 0),
                  terrestrial_report({.reserved = "!!! reserved field has zero bits in it\n"}));
    EXPECT_EQ(none(0x5A, hex("00000000 01 00 00 FFFFFFFF")), "!!! reserved field has zero bits in it\n");
}

TEST_F(dvb_network_delivery, terrestrial_reports_the_reserved_32_bits_at_the_end)
{
    for (const char *reserved : {"7FFFFFFF", "FFFFFFFE", "00000000"})
        EXPECT_EQ(contents(0x5A, join({hex("02FAF080 03 00 00"), hex(reserved)})),
                  terrestrial_report({}) + "!!!! reserved 32-bit field has nonzero bits\n");
    EXPECT_EQ(none(0x5A, hex("00000000 03 00 00 FFFEFFFF")), "!!!! reserved 32-bit field has nonzero bits\n");
}
