#include "tests/support/report_test.h"

#include <random>

struct scte_35 : report_test {
    scte_35() { t = track(pid, TRACK_SCTE35, 0x0102); }

    /// The report of a section of exactly these bytes; the storage behind them keeps what it held.
    std::string report_of(const bytes &section)
    {
        return report_of_packets(stream_builder().unit(pid, join({hex("00"), section})).data());
    }

    static constexpr unsigned pid = 0x0300;
    mpeg_ts_pid_tracking *t;
};

namespace {

/// A splice_info_section without a CRC_32: 14 bytes of fixed fields, the command and what is behind it.
bytes splice_info(unsigned command_length, unsigned command_type, const bytes &rest)
{
    return short_section(0xFC, join({hex("00 00 00000000 FF"), big_endian(0xFFF000u | command_length, 3),
                                     big_endian(command_type, 1), rest}));
}

std::string fixed_lines(unsigned command_length, const std::string &command_type)
{
    return "* SCTE-35 message [ANSI/SCTE-35] for program 0x0102\n"
           "    Table ID:                   0xfc\n"
           "    splice_info_section() [ANSI/SCTE-35 2016 Table 5 Section 9.2]\n"
           "    protocol_version:           0x00\n"
           "    encrypted packet:           0\n"
           "    encryption algorithm:       0x00\n"
           "    pts_adjustment:             0\n"
           "    cw_index:                   0xff\n"
           "    tier:                       0xfff\n"
           "    splice_command_length:      " +
           std::to_string(command_length) + "\n    splice_command_type:        0x" + command_type + "\n";
}

const bytes cancelled = hex("00000001 FF");

const std::string cancelled_lines = "    splice_insert() [ANSI/SCTE-35 2016 Table 9 Section 9.3.3]\n"
                                    "        splice_event_id:                0x00000001\n"
                                    "        splice_event_cancel_indicator:  1\n"
                                    "        reserved:                       0x7f\n";

const std::string unknown_type = "    !! Unknown splice command type\n";

} // namespace

TEST_F(scte_35, another_table_id_prints_two_lines_and_a_fault)
{
    EXPECT_EQ(report_of(short_section(0xFD, repeated(0x00, 20))),
              "* SCTE-35 message [ANSI/SCTE-35] for program 0x0102\n"
              "    Table ID:                   0xfd\n"
              "    !!! Unknown table ID\n");
    EXPECT_EQ(report_of(short_section(0x00, {})), "* SCTE-35 message [ANSI/SCTE-35] for program 0x0102\n"
                                                  "    Table ID:                   0x00\n"
                                                  "    !!! Unknown table ID\n");
}

TEST_F(scte_35, every_fixed_field_has_its_place_and_width)
{
    EXPECT_EQ(report_of(short_section(0xFC, hex("A5 AB 12345678 9A BCD 000 00"))),
              "* SCTE-35 message [ANSI/SCTE-35] for program 0x0102\n"
              "    Table ID:                   0xfc\n"
              "    splice_info_section() [ANSI/SCTE-35 2016 Table 5 Section 9.2]\n"
              "    protocol_version:           0xa5\n"
              "    encrypted packet:           1\n"
              "    encryption algorithm:       0x15\n"
              "    pts_adjustment:             4600387192\n"
              "    cw_index:                   0x9a\n"
              "    tier:                       0xbcd\n"
              "    splice_command_length:      0\n"
              "    splice_command_type:        0x00\n" +
                  unknown_type);
    EXPECT_EQ(report_of(short_section(0xFC, hex("00 01 FFFFFFFF 00 000 000 FF"))),
              "* SCTE-35 message [ANSI/SCTE-35] for program 0x0102\n"
              "    Table ID:                   0xfc\n"
              "    splice_info_section() [ANSI/SCTE-35 2016 Table 5 Section 9.2]\n"
              "    protocol_version:           0x00\n"
              "    encrypted packet:           0\n"
              "    encryption algorithm:       0x00\n"
              "    pts_adjustment:             8589934591\n"
              "    cw_index:                   0x00\n"
              "    tier:                       0x000\n"
              "    splice_command_length:      0\n"
              "    splice_command_type:        0xff\n" +
                  unknown_type);
}

TEST_F(scte_35, a_command_of_its_stated_length_is_followed_by_the_descriptors)
{
    EXPECT_EQ(report_of(splice_info(5, 0x05, join({cancelled, hex("0000")}))),
              fixed_lines(5, "05") + cancelled_lines + "    descriptor_loop_length:     0 bytes\n");
}

TEST_F(scte_35, a_command_of_unstated_length_ends_where_it_ends)
{
    EXPECT_EQ(report_of(splice_info(0xFFF, 0x05, join({cancelled, hex("0000")}))),
              fixed_lines(4095, "05") + cancelled_lines + "    descriptor_loop_length:     0 bytes\n");
}

TEST_F(scte_35, a_command_shorter_than_stated_differs_by_a_negative_number)
{
    EXPECT_EQ(report_of(splice_info(20, 0x05, join({cancelled, repeated(0xFF, 15), hex("0000")}))),
              fixed_lines(20, "05") + cancelled_lines +
                  "    !! splice_insert() end differs by -15 bytes\n"
                  "    descriptor_loop_length:     0 bytes\n");
}

/// The descriptors begin at the stated end, inside the command: 01 FF, then 00 00.
TEST_F(scte_35, a_command_longer_than_stated_exceeds_its_length)
{
    EXPECT_EQ(report_of(splice_info(3, 0x05, join({hex("00000001 FF"), hex("0000")}))),
              fixed_lines(3, "05") + cancelled_lines +
                  "    !! splice_insert() exceeds length by 2 bytes\n"
                  "    descriptor_loop_length:     511 bytes\n"
                  "        tag=0x00 len=0\n"
                  "        avail_descriptor() [ANSI/SCTE-35 2017 Table 17 Section 10.3.1]\n");
}

TEST_F(scte_35, a_stated_length_past_the_fence_ends_the_section)
{
    EXPECT_EQ(report_of(splice_info(9, 0x05, join({cancelled, hex("0000")}))),
              fixed_lines(9, "05") + cancelled_lines +
                  "    !! splice_insert() end differs by -4 bytes\n"
                  "    !! splice_insert() exceeds fence by 2 bytes\n");
    EXPECT_EQ(report_of(splice_info(4094, 0x05, join({cancelled, hex("0000")}))),
              fixed_lines(4094, "05") + cancelled_lines +
                  "    !! splice_insert() end differs by -4089 bytes\n"
                  "    !! splice_insert() exceeds fence by 4087 bytes\n");
}

TEST_F(scte_35, a_command_of_unstated_length_past_the_fence_ends_the_section)
{
    EXPECT_EQ(report_of(splice_info(0xFFF, 0x05, hex("00000001"))),
              fixed_lines(4095, "05") + "    splice_insert() [ANSI/SCTE-35 2016 Table 9 Section 9.3.3]\n"
                                        "        splice_event_id:                0x00000001\n"
                                        "        splice_event_cancel_indicator:  0\n"
                                        "        reserved:                       0x00\n"
                                        "        out_of_network_indicator:       0\n"
                                        "        program_splice_flag:            0\n"
                                        "        duration_flag:                  0\n"
                                        "        splice_immediate_flag:          0\n"
                                        "        reserved:                       0x0\n"
                                        "        component_count:                0\n"
                                        "        unique program id:              0x0000\n"
                                        "        avail_num:                      0x00\n"
                                        "        avails_expected:                0x00\n"
                                        "    !! splice_insert() exceeds fence by 7 bytes\n");
}

/// The same command behind a section that has left other bytes in the storage.
TEST_F(scte_35, a_command_past_the_fence_is_read_from_bytes_of_an_earlier_section)
{
    report_of(splice_info(0, 0x00, hex("FFFFFFFF 7F DF ABCD 01 02")));
    EXPECT_EQ(report_of(splice_info(0xFFF, 0x05, hex("00000001"))),
              fixed_lines(4095, "05") + "    splice_insert() [ANSI/SCTE-35 2016 Table 9 Section 9.3.3]\n"
                                        "        splice_event_id:                0x00000001\n"
                                        "        splice_event_cancel_indicator:  0\n"
                                        "        reserved:                       0x7f\n"
                                        "        out_of_network_indicator:       1\n"
                                        "        program_splice_flag:            1\n"
                                        "        duration_flag:                  0\n"
                                        "        splice_immediate_flag:          1\n"
                                        "        reserved:                       0xf\n"
                                        "        unique program id:              0xabcd\n"
                                        "        avail_num:                      0x01\n"
                                        "        avails_expected:                0x02\n"
                                        "    !! splice_insert() exceeds fence by 6 bytes\n");
}

TEST_F(scte_35, fixed_fields_of_a_cut_section_are_read_from_the_storage)
{
    EXPECT_EQ(report_of(short_section(0xFC, {})),
              "* SCTE-35 message [ANSI/SCTE-35] for program 0x0102\n"
              "    Table ID:                   0xfc\n"
              "    splice_info_section() [ANSI/SCTE-35 2016 Table 5 Section "
              "9.2]\n"
              "    protocol_version:           0x00\n"
              "    encrypted packet:           0\n"
              "    encryption algorithm:       0x00\n"
              "    pts_adjustment:             0\n"
              "    cw_index:                   0x00\n"
              "    tier:                       0x000\n"
              "    splice_command_length:      0\n"
              "    splice_command_type:        0x00\n" +
                  unknown_type);
    report_of(splice_info(5, 0x05, join({cancelled, hex("0000")})));
    EXPECT_EQ(report_of(short_section(0xFC, {})),
              fixed_lines(5, "05") + cancelled_lines + "    !! splice_insert() exceeds fence by 16 bytes\n");
}

/// 1546 bytes of command read behind a section that ends with its command type.
TEST_F(scte_35, the_longest_command_stays_inside_the_storage)
{
    bytes longest = hex("00000001 7F AF FF");
    for (unsigned i = 0; i < 255; ++i) longest = join({longest, hex("42 FE000DBBA0")});
    longest = join({longest, hex("FE002932E0 ABCD 01 02")});
    report_of(splice_info(0, 0x00, longest));

    const std::string text = report_of(splice_info(0xFFF, 0x05, {}));
    const std::string end = "        unique program id:              0xabcd\n"
                            "        avail_num:                      0x01\n"
                            "        avails_expected:                0x02\n"
                            "    !! splice_insert() exceeds fence by 1546 bytes\n";
    EXPECT_EQ(text.substr(text.size() - std::min(text.size(), end.size())), end);
    EXPECT_LT(14u + 1546u, private_section_storage);
}

TEST_F(scte_35, other_commands_are_passed_over_to_the_descriptors)
{
    for (unsigned type = 0; type <= 0xFF; ++type) {
        if (type == 0x05) continue;
        const char digits[] = "0123456789abcdef";
        const std::string name = {digits[type / 16], digits[type % 16]};
        EXPECT_EQ(report_of(splice_info(5, type, join({repeated(0xFF, 5), hex("0002 FE 00")}))),
                  fixed_lines(5, name) + unknown_type +
                      "    descriptor_loop_length:     2 bytes\n"
                      "        tag=0xfe len=0\n");
    }
}

TEST_F(scte_35, other_commands_of_unstated_length_end_the_section)
{
    EXPECT_EQ(report_of(splice_info(0xFFF, 0x06, hex("FF 0002 FE 00"))),
              fixed_lines(4095, "06") + unknown_type);
}

TEST_F(scte_35, other_commands_past_the_fence_end_the_section_silently)
{
    EXPECT_EQ(report_of(splice_info(6, 0x06, repeated(0xFF, 5))), fixed_lines(6, "06") + unknown_type);
    EXPECT_EQ(report_of(splice_info(5, 0x06, repeated(0xFF, 6))), fixed_lines(5, "06") + unknown_type);
}

TEST_F(scte_35, descriptors_are_listed_and_avails_decoded)
{
    EXPECT_EQ(report_of(splice_info(0, 0x06,
                                    join({hex("0013"), descriptor(0x00, hex("43554549 31323334")),
                                          descriptor(0x02, hex("43554549 01")), descriptor(0x00, hex("43")),
                                          descriptor(0xFF, {})}))),
              fixed_lines(0, "06") + unknown_type +
                  "    descriptor_loop_length:     19 bytes\n"
                  "        tag=0x00 len=8\n"
                  "        avail_descriptor() [ANSI/SCTE-35 2017 Table 17 Section 10.3.1]\n"
                  "            identifier:         0x43554549 'CUEI'\n"
                  "            provider_avail_id:  0x31323334 '1234'\n"
                  "        tag=0x02 len=5\n"
                  "        tag=0x00 len=1\n"
                  "        avail_descriptor() [ANSI/SCTE-35 2017 Table 17 Section 10.3.1]\n"
                  "        tag=0xff len=0\n");
}

TEST_F(scte_35, the_loop_runs_to_the_fence_whatever_its_length_says)
{
    EXPECT_EQ(report_of(splice_info(0, 0x00, hex("0000 01 00 02 01 FF"))),
              fixed_lines(0, "00") + unknown_type +
                  "    descriptor_loop_length:     0 bytes\n"
                  "        tag=0x01 len=0\n"
                  "        tag=0x02 len=1\n");
    EXPECT_EQ(report_of(splice_info(0, 0x00, hex("FFFF"))),
              fixed_lines(0, "00") + unknown_type + "    descriptor_loop_length:     65535 bytes\n");
}

TEST_F(scte_35, a_descriptor_past_the_fence_ends_the_loop_silently)
{
    EXPECT_EQ(report_of(splice_info(0, 0x00, hex("0006 01 00 00 02 FF"))),
              fixed_lines(0, "00") + unknown_type +
                  "    descriptor_loop_length:     6 bytes\n"
                  "        tag=0x01 len=0\n");
    EXPECT_EQ(report_of(splice_info(0, 0x00, hex("0003 01 00 00"))),
              fixed_lines(0, "00") + unknown_type +
                  "    descriptor_loop_length:     3 bytes\n"
                  "        tag=0x01 len=0\n");
}

/// The body of a short section runs to its end: its CRC_32 is met as one more descriptor.
TEST_F(scte_35, the_CRC_of_a_short_section_is_met_as_a_descriptor)
{
    EXPECT_EQ(report_of(splice_info(0, 0x00, hex("0000 5A 02 BE EF"))),
              fixed_lines(0, "00") + unknown_type +
                  "    descriptor_loop_length:     0 "
                  "bytes\n"
                  "        tag=0x5a len=2\n");
}

TEST_F(scte_35, a_long_section_is_read_from_its_first_byte_and_ends_at_its_CRC)
{
    EXPECT_EQ(report_of(long_section(0xFC, 0x0000, hex("FF FF FFF000 02  0002 FE 00"))),
              "* SCTE-35 message [ANSI/SCTE-35] for program 0x0102\n"
              "    Table ID:                   0xfc\n"
              "    splice_info_section() [ANSI/SCTE-35 2016 Table 5 Section 9.2]\n"
              "    protocol_version:           0x00\n"
              "    encrypted packet:           0\n"
              "    encryption algorithm:       0x00\n"
              "    pts_adjustment:             3238002943\n"
              "    cw_index:                   0xff\n"
              "    tier:                       0xfff\n"
              "    splice_command_length:      0\n"
              "    splice_command_type:        0x02\n" +
                  unknown_type +
                  "    descriptor_loop_length:     2 bytes\n"
                  "        tag=0xfe len=0\n");
}

TEST_F(scte_35, every_line_is_printed_in_every_dump_mode)
{
    const bytes section =
        splice_info(5, 0x05, join({cancelled, hex("0009"), descriptor(0x00, repeated('A', 8))}));
    const std::string contents = report_of(section);
    settings.dump_descriptors_mode = dump_descriptors_none;
    EXPECT_EQ(report_of(section), contents);
    settings.dump_descriptors_mode = dump_descriptors_raw;
    EXPECT_EQ(report_of(section), contents);
}

TEST_F(scte_35, random_sections_are_read_inside_the_storage)
{
    std::mt19937 random(35);
    for (unsigned round = 0; round < 2000; ++round) {
        bytes body(random() % 1000);
        for (uint8_t &byte : body) byte = static_cast<uint8_t>(random());
        if (body.size() > 10 && round % 2 == 0) body[10] = 0x05;
        EXPECT_EQ(report_of(short_section(0xFC, body)).substr(0, 52),
                  "* SCTE-35 message [ANSI/SCTE-35] for program 0x0102\n");
    }
}
