#include "tests/support/report_test.h"

#include <random>

struct atsc_tvct : report_test {
    atsc_tvct() { settings.atsc_mode = 1; }

    /// The report of a table of this body behind its five head lines. The packet ends with the section, so
    /// that the storage behind it keeps what it held.
    std::string report_of(const bytes &body)
    {
        const std::string head = "* ATSC 0x1FFB\n"
                                 "    terrestrial_virtual_channel_table_section() [ATSC A/65:2009 6.3.1]\n"
                                 "        Transport stream ID:              0x0001\n"
                                 "        Version:                          0\n"
                                 "        Section:                          0 / 0\n";
        const std::string text = report_of_packets(
            stream_builder().unit(0x1FFB, join({hex("00"), long_section(0xC8, 0x0001, body)})).data());
        EXPECT_EQ(text.substr(0, head.size()), head);
        return text.substr(std::min(head.size(), text.size()));
    }
};

namespace {

bytes short_name(std::u16string_view name)
{
    bytes out;
    for (size_t i = 0; i < 7; ++i) out = join({out, big_endian(i < name.size() ? name[i] : u'\0', 2)});
    return out;
}

/// 16 bytes: channel 5.1, 8-VSB, program 3, service_type 2, source_id 0x0123.
const bytes fixed_part = hex("F0140104 00000000 09C5 0003 CDC2 0123");

bytes channel(std::u16string_view name, const bytes &descriptors = {})
{
    return join({short_name(name), fixed_part, big_endian(0xFC00u | descriptors.size(), 2), descriptors});
}

std::string channel_lines(const std::string &name)
{
    return "            Channel 5.1 '" + name +
           "':\n"
           "                modulation_mode=4\n"
           "                carrier_frequency=0\n"
           "                channel_TSID=0x09c5\n"
           "                program_number=3\n"
           "                ETM_location=3\n"
           "                access_controlled=0\n"
           "                hidden=0\n"
           "                hide_guide=0\n"
           "                service_type=0x02\n"
           "                source_id=0x0123\n";
}

const std::string one_channel = "        Protocol version:                 0\n"
                                "        Channels in section:              1\n";

} // namespace

TEST_F(atsc_tvct, a_channel_is_printed_field_by_field)
{
    EXPECT_EQ(report_of(join({hex("00 01"), channel(u"WABC-DT"), hex("FC 00")})),
              one_channel + channel_lines("WABC-DT") +
                  "                descriptors_length=0\n"
                  "                additional_descriptors_length=0\n");
}

TEST_F(atsc_tvct, every_field_has_its_place_and_width)
{
    EXPECT_EQ(report_of(join({hex("FF 01"), short_name(u"A"), hex("FFFFFFFF FFFFFFFF FFFF FFFF FFFF FFFF"),
                              hex("FC 00 FC 00")})),
              "        Protocol version:                 255\n"
              "        Channels in section:              1\n"
              "            Channel 1023.1023 'A':\n"
              "                modulation_mode=255\n"
              "                carrier_frequency=4294967295\n"
              "                channel_TSID=0xffff\n"
              "                program_number=65535\n"
              "                ETM_location=3\n"
              "                access_controlled=1\n"
              "                hidden=1\n"
              "                hide_guide=1\n"
              "                service_type=0x3f\n"
              "                source_id=0xffff\n"
              "                descriptors_length=0\n"
              "                additional_descriptors_length=0\n");
    EXPECT_EQ(report_of(join({hex("00 01"), short_name(u"A"), hex("F0041001 12345678 0000 0001 6DC1 0002"),
                              hex("FC 00 FC 00")})),
              one_channel + "            Channel 1.16 'A':\n"
                            "                modulation_mode=1\n"
                            "                carrier_frequency=305419896\n"
                            "                channel_TSID=0x0000\n"
                            "                program_number=1\n"
                            "                ETM_location=1\n"
                            "                access_controlled=1\n"
                            "                hidden=0\n"
                            "                hide_guide=0\n"
                            "                service_type=0x01\n"
                            "                source_id=0x0002\n"
                            "                descriptors_length=0\n"
                            "                additional_descriptors_length=0\n");
}

TEST_F(atsc_tvct, head_lines_show_version_and_section)
{
    section_fields fields;
    fields.version_number = 17;
    fields.section_number = 2;
    fields.last_section_number = 5;
    EXPECT_EQ(report_of_section(0x1FFB, long_section(0xC8, 0xCAFE, hex("00 00 FC 00"), fields)),
              "* ATSC 0x1FFB\n"
              "    terrestrial_virtual_channel_table_section() [ATSC A/65:2009 6.3.1]\n"
              "        Transport stream ID:              0xcafe\n"
              "        Version:                          17\n"
              "        Section:                          2 / 5\n"
              "        Protocol version:                 0\n"
              "        Channels in section:              0\n"
              "                additional_descriptors_length=0\n");
}

TEST_F(atsc_tvct, fewer_than_2_bytes_print_the_head_only)
{
    EXPECT_EQ(report_of({}), "");
    EXPECT_EQ(report_of(hex("00")), "");
}

TEST_F(atsc_tvct, a_short_name_of_zeros_is_empty)
{
    EXPECT_EQ(report_of(join({hex("00 01"), channel(u""), hex("FC 00")})),
              one_channel + channel_lines("") +
                  "                descriptors_length=0\n"
                  "                additional_descriptors_length=0\n");
}

TEST_F(atsc_tvct, a_short_name_becomes_UTF8_unit_by_unit)
{
    EXPECT_EQ(report_of(join({hex("00 01"), channel(u"\u00E9\u20ACx"), hex("FC 00")})),
              one_channel + channel_lines("\xC3\xA9\xE2\x82\xACx") +
                  "                descriptors_length=0\n"
                  "                additional_descriptors_length=0\n");
}

/// U+1F4FA as its two surrogates: each is replaced on its own.
TEST_F(atsc_tvct, surrogates_of_a_short_name_are_not_paired)
{
    EXPECT_EQ(report_of(join({hex("00 01"), channel(u"\U0001F4FA"), hex("FC 00")})),
              one_channel + channel_lines("\xEF\xBF\xBD\xEF\xBF\xBD") +
                  "                descriptors_length=0\n"
                  "                additional_descriptors_length=0\n");
}

TEST_F(atsc_tvct, each_reserved_field_is_reported)
{
    const std::string begin = "!!! terrestrial_virtual_channel_table_section() reserved bits not ";
    const auto report_of_channel = [&](const char *fixed, const char *lengths) {
        return report_of(join({hex("00 01"), short_name(u"A"), hex(fixed), hex(lengths)}));
    };
    const std::string lengths = "                descriptors_length=0\n"
                                "                additional_descriptors_length=0\n";

    EXPECT_EQ(report_of_channel("70140104 00000000 09C5 0003 CDC2 0123", "FC00 FC00"),
              one_channel + begin + "'1111'\n" + channel_lines("A") + lengths);
    EXPECT_EQ(report_of_channel("F0140104 00000000 09C5 0003 C5C2 0123", "FC00 FC00"),
              one_channel + begin + "'11'\n" + channel_lines("A") + lengths);
    EXPECT_EQ(report_of_channel("F0140104 00000000 09C5 0003 CD82 0123", "FC00 FC00"),
              one_channel + begin + "'111'\n" + channel_lines("A") + lengths);
    EXPECT_EQ(report_of_channel("F0140104 00000000 09C5 0003 CDC2 0123", "7C00 FC00"),
              one_channel + channel_lines("A") + begin + "'111111'\n" + lengths);
    EXPECT_EQ(report_of_channel("F0140104 00000000 09C5 0003 CDC2 0123", "FC00 F800"),
              one_channel + channel_lines("A") + "                descriptors_length=0\n" + begin +
                  "'111111'\n                additional_descriptors_length=0\n");
    EXPECT_EQ(report_of_channel("00140104 00000000 09C5 0003 C002 0123", "0000 0000"),
              one_channel + begin + "'1111'\n" + begin + "'11'\n" + begin + "'111'\n" + channel_lines("A") +
                  begin + "'111111'\n                descriptors_length=0\n" + begin +
                  "'111111'\n                additional_descriptors_length=0\n");
}

TEST_F(atsc_tvct, descriptors_of_a_channel_are_followed_by_an_empty_line)
{
    EXPECT_EQ(report_of(join({hex("00 02"), channel(u"A", descriptor(0xAA, hex("01"))), channel(u"B"),
                              hex("FC 02"), descriptor(0xFE, {})})),
              "        Protocol version:                 0\n"
              "        Channels in section:              2\n" +
                  channel_lines("A") +
                  "                descriptors_length=3\n"
                  "        rc_descriptor() [ATSC A/65:2009 6.9.7]\n"
                  "            RAW DATA: 01 \n"
                  "\n" +
                  channel_lines("B") +
                  "                descriptors_length=0\n"
                  "                additional_descriptors_length=2\n"
                  "        Unknown descriptor tag=0xfe, len=0\n"
                  "\n");
}

TEST_F(atsc_tvct, without_channels_the_additional_descriptors_follow_the_count)
{
    EXPECT_EQ(report_of(join({hex("00 00 FC 02"), descriptor(0xFE, {}), channel(u"A")})),
              "        Protocol version:                 0\n"
              "        Channels in section:              0\n"
              "                additional_descriptors_length=2\n"
              "        Unknown descriptor tag=0xfe, len=0\n"
              "\n");
}

TEST_F(atsc_tvct, dump_mode_none_takes_away_only_the_heading)
{
    settings.dump_descriptors_mode = dump_descriptors_none;
    EXPECT_EQ(report_of_section(
                  0x1FFB, long_section(0xC8, 0x0001,
                                       join({hex("00 01"), channel(u"A", hex("FE 00")), hex("FC 00")}))),
              "* ATSC 0x1FFB\n"
              "        Transport stream ID:              0x0001\n"
              "        Version:                          0\n"
              "        Section:                          0 / 0\n" +
                  one_channel + channel_lines("A") +
                  "                descriptors_length=2\n"
                  "\n"
                  "                additional_descriptors_length=0\n");
}

TEST_F(atsc_tvct, the_loop_stops_after_the_announced_channels)
{
    EXPECT_EQ(report_of(join({hex("00 01"), channel(u"A"), hex("FC 00"), channel(u"B")})),
              one_channel + channel_lines("A") +
                  "                descriptors_length=0\n"
                  "                additional_descriptors_length=0\n");
}

TEST_F(atsc_tvct, fewer_than_14_bytes_end_the_channels)
{
    EXPECT_EQ(report_of(join({hex("00 02"), channel(u"A"), hex("FC 00"), repeated(0xFF, 11)})),
              "        Protocol version:                 0\n"
              "        Channels in section:              2\n" +
                  channel_lines("A") +
                  "                descriptors_length=0\n"
                  "                additional_descriptors_length=0\n");
    EXPECT_EQ(report_of(join({hex("00 01 FC 00"), repeated(0xFF, 11)})),
              one_channel + "                additional_descriptors_length=0\n");
}

/// 14 bytes are a short_name, 15 more no fixed part: the additional descriptors are looked for behind the
/// name.
TEST_F(atsc_tvct, a_fixed_part_that_does_not_fit_ends_the_loop_behind_the_name)
{
    EXPECT_EQ(report_of(join({hex("00 01"), short_name(u"A"), hex("FC 02"), descriptor(0xFE, {})})),
              one_channel + "                additional_descriptors_length=2\n"
                            "        Unknown descriptor tag=0xfe, len=0\n"
                            "\n");
    EXPECT_EQ(report_of(join({hex("00 01"), short_name(u"A"), hex("FC 00"), repeated(0x00, 13)})),
              one_channel + "                additional_descriptors_length=0\n");
}

/// The length field would need 2 bytes of which the body has 1; the CRC_32 behind it is read as the rest.
TEST_F(atsc_tvct, a_descriptors_length_that_does_not_fit_ends_the_loop_behind_source_id)
{
    EXPECT_EQ(report_of(join({hex("00 01"), short_name(u"A"), fixed_part, hex("FC")})),
              one_channel + channel_lines("A"));
}

TEST_F(atsc_tvct, descriptors_past_the_fence_end_the_loop_behind_their_length)
{
    EXPECT_EQ(report_of(join({hex("00 01"), short_name(u"A"), fixed_part, hex("FC 05"), hex("FC 02"),
                              descriptor(0xFE, {})})),
              one_channel + channel_lines("A") +
                  "                additional_descriptors_length=2\n"
                  "        Unknown descriptor tag=0xfe, len=0\n"
                  "\n");
}

TEST_F(atsc_tvct, additional_descriptors_past_the_fence_are_not_printed)
{
    EXPECT_EQ(report_of(join({hex("00 01"), channel(u"A"), hex("FC 03"), descriptor(0xFE, {})})),
              one_channel + channel_lines("A") + "                descriptors_length=0\n");
    EXPECT_EQ(report_of(join({hex("00 01"), channel(u"A"), hex("00 03"), descriptor(0xFE, {})})),
              one_channel + channel_lines("A") +
                  "                descriptors_length=0\n"
                  "!!! terrestrial_virtual_channel_table_section() reserved bits not '111111'\n");
}

/// The word is read from the storage whatever the section holds: here it is the CRC_32, whose reserved bits
/// are reported; even a length of 0 then ends past the fence.
TEST_F(atsc_tvct, an_additional_length_behind_the_fence_is_read_from_the_storage)
{
    unsigned reported = 0;
    unsigned silent = 0;
    for (unsigned source_id = 0; source_id < 200; ++source_id) {
        bytes body = join({hex("00 01"), channel(u"A")});
        body[body.size() - 3] = static_cast<uint8_t>(source_id);
        const bytes section = long_section(0xC8, 0x0001, body);
        const bool reserved_are_ones = section[section.size() - 4] >> 2 == 0x3F;
        const std::string text = report_of(body);
        EXPECT_EQ(text.find("'111111'") == std::string::npos, reserved_are_ones);
        EXPECT_EQ(text.find("additional_descriptors_length"), std::string::npos);
        ++(reserved_are_ones ? silent : reported);
    }
    EXPECT_GT(reported, 0u);
    EXPECT_GT(silent, 0u);
}

/// A short section has no CRC_32 behind it: the word is what an earlier section left there.
TEST_F(atsc_tvct, an_additional_length_may_be_bytes_of_an_earlier_section)
{
    const bytes empty = short_section(0xC8, hex("00 00"));
    const auto report_behind = [&](const bytes &earlier) {
        report_of_packets(stream_builder().unit(0x1FFB, join({hex("00"), earlier})).data());
        return report_of_packets(stream_builder().unit(0x1FFB, join({hex("00"), empty})).data());
    };
    const std::string lines = "* ATSC 0x1FFB\n"
                              "    terrestrial_virtual_channel_table_section() [ATSC A/65:2009 6.3.1]\n"
                              "        Transport stream ID:              0x0000\n"
                              "        Version:                          0\n"
                              "        Section:                          0 / 0\n"
                              "        Protocol version:                 0\n"
                              "        Channels in section:              0\n";

    EXPECT_EQ(report_behind(short_section(0xC9, hex("00 00 FC 00"))), lines);
    EXPECT_EQ(report_behind(short_section(0xC9, hex("00 00 F8 00"))),
              lines + "!!! terrestrial_virtual_channel_table_section() reserved bits not '111111'\n");
}
