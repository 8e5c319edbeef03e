#include "tests/support/report_test.h"

#include "mpeg_ts_analysis/tables/splice_insert.h"

#include <algorithm>
#include <memory>

struct splice_insert : report_test {
    /// The report of a command in a block of exactly its size, all of which it must take.
    std::string report_of(const bytes &command) { return report_of(command, scte35_splice_insert); }

    using part = const uint8_t *(*)(const uint8_t *, const uint8_t *);

    std::string report_of(const bytes &content, part decode)
    {
        const std::unique_ptr<uint8_t[]> block(new uint8_t[content.size()]);
        uint8_t *const fence = std::copy(content.begin(), content.end(), block.get());
        EXPECT_EQ(decode(block.get(), fence), fence);
        return report();
    }

    std::string report_of_avail(const bytes &body)
    {
        const std::unique_ptr<uint8_t[]> block(new uint8_t[body.size()]);
        scte35_avail_descriptor(block.get(), std::copy(body.begin(), body.end(), block.get()));
        return report();
    }
};

namespace {

const std::string cancelled_lines = "    splice_insert() [ANSI/SCTE-35 2016 Table 9 Section 9.3.3]\n"
                                    "        splice_event_id:                0x12345678\n"
                                    "        splice_event_cancel_indicator:  1\n"
                                    "        reserved:                       0x7f\n";

/// The lines of a command that is not cancelled, up to the flags.
std::string flag_lines(unsigned out, unsigned program, unsigned duration, unsigned immediate)
{
    return "    splice_insert() [ANSI/SCTE-35 2016 Table 9 Section 9.3.3]\n"
           "        splice_event_id:                0x00000001\n"
           "        splice_event_cancel_indicator:  0\n"
           "        reserved:                       0x7f\n"
           "        out_of_network_indicator:       " +
           std::to_string(out) + "\n        program_splice_flag:            " + std::to_string(program) +
           "\n        duration_flag:                  " + std::to_string(duration) +
           "\n        splice_immediate_flag:          " + std::to_string(immediate) +
           "\n        reserved:                       0xf\n";
}

const std::string time_lines = "    splice_time() [ANSI/SCTE-35 2016 Table 13 Section 9.4.1]\n"
                               "        time_specified_flag:                1\n"
                               "        reserved:                           0x3f\n"
                               "        pts_time:                           900000 (10.000 sec)\n";

const std::string no_time_lines = "    splice_time() [ANSI/SCTE-35 2016 Table 13 Section 9.4.1]\n"
                                  "        time_specified_flag:                0\n";

const std::string duration_lines = "    break_duration() [ANSI/SCTE-35 3016 Table 14 Section 9.4.2]\n"
                                   "        auto_return:                    1\n"
                                   "        reserved:                       0x3f\n"
                                   "        duration:                       2700000 (30.000 sec)\n";

const std::string last_lines = "        unique program id:              0xabcd\n"
                               "        avail_num:                      0x01\n"
                               "        avails_expected:                0x02\n";

} // namespace

TEST_F(splice_insert, a_cancelled_event_has_three_fields_in_5_bytes)
{
    EXPECT_EQ(report_of(hex("12345678 FF")), cancelled_lines);
}

TEST_F(splice_insert, reserved_fields_are_printed_as_they_are)
{
    EXPECT_EQ(report_of(hex("FFFFFFFF 80")), "    splice_insert() [ANSI/SCTE-35 2016 Table 9 Section 9.3.3]\n"
                                             "        splice_event_id:                0xffffffff\n"
                                             "        splice_event_cancel_indicator:  1\n"
                                             "        reserved:                       0x00\n");
    EXPECT_EQ(report_of(hex("00000000 05 55 0000 FE FF")),
              "    splice_insert() [ANSI/SCTE-35 2016 Table 9 Section 9.3.3]\n"
              "        splice_event_id:                0x00000000\n"
              "        splice_event_cancel_indicator:  0\n"
              "        reserved:                       0x05\n"
              "        out_of_network_indicator:       0\n"
              "        program_splice_flag:            1\n"
              "        duration_flag:                  0\n"
              "        splice_immediate_flag:          1\n"
              "        reserved:                       0x5\n"
              "        unique program id:              0x0000\n"
              "        avail_num:                      0xfe\n"
              "        avails_expected:                0xff\n");
}

TEST_F(splice_insert, an_immediate_program_splice_has_no_time)
{
    EXPECT_EQ(report_of(hex("00000001 7F DF ABCD 01 02")), flag_lines(1, 1, 0, 1) + last_lines);
}

TEST_F(splice_insert, a_program_splice_with_a_time)
{
    EXPECT_EQ(report_of(hex("00000001 7F CF FE000DBBA0 ABCD 01 02")),
              flag_lines(1, 1, 0, 0) + time_lines + last_lines);
}

TEST_F(splice_insert, a_program_splice_without_a_time)
{
    EXPECT_EQ(report_of(hex("00000001 7F 4F 7F ABCD 01 02")),
              flag_lines(0, 1, 0, 0) + no_time_lines + last_lines);
}

TEST_F(splice_insert, a_duration_comes_behind_the_time)
{
    EXPECT_EQ(report_of(hex("00000001 7F EF FE000DBBA0 FE002932E0 ABCD 01 02")),
              flag_lines(1, 1, 1, 0) + time_lines + duration_lines + last_lines);
    EXPECT_EQ(report_of(hex("00000001 7F 7F FE002932E0 ABCD 01 02")),
              flag_lines(0, 1, 1, 1) + duration_lines + last_lines);
}

TEST_F(splice_insert, components_have_a_time_each_with_and_without_one)
{
    EXPECT_EQ(report_of(hex("00000001 7F 8F 02  21 FE000DBBA0  22 7F  ABCD 01 02")),
              flag_lines(1, 0, 0, 0) +
                  "        component_count:                2\n"
                  "            component_tag:              0x21\n" +
                  time_lines + "            component_tag:              0x22\n" + no_time_lines + last_lines);
}

TEST_F(splice_insert, components_of_an_immediate_splice_have_no_time)
{
    EXPECT_EQ(report_of(hex("00000001 7F 9F 03  01 02 FF  ABCD 01 02")),
              flag_lines(1, 0, 0, 1) +
                  "        component_count:                3\n"
                  "            component_tag:              0x01\n"
                  "            component_tag:              0x02\n"
                  "            component_tag:              0xff\n" +
                  last_lines);
}

TEST_F(splice_insert, no_components_and_a_duration)
{
    EXPECT_EQ(report_of(hex("00000001 7F AF 00 FE002932E0 ABCD 01 02")),
              flag_lines(1, 0, 1, 0) + "        component_count:                0\n" + duration_lines +
                  last_lines);
}

TEST_F(splice_insert, the_longest_command_is_1546_bytes)
{
    bytes command = hex("00000001 7F AF FF");
    std::string expected = flag_lines(1, 0, 1, 0) + "        component_count:                255\n";
    for (unsigned i = 0; i < 255; ++i) {
        command = join({command, hex("42 FE000DBBA0")});
        expected += "            component_tag:              0x42\n" + time_lines;
    }
    command = join({command, hex("FE002932E0 ABCD 01 02")});
    EXPECT_EQ(command.size(), 1546u);
    EXPECT_EQ(report_of(command), expected + duration_lines + last_lines);
}

TEST_F(splice_insert, a_time_has_33_bits_in_5_bytes)
{
    EXPECT_EQ(report_of(hex("FE000DBBA0"), scte35_splice_time), time_lines);
    EXPECT_EQ(report_of(hex("FFFFFFFFFF"), scte35_splice_time),
              "    splice_time() [ANSI/SCTE-35 2016 Table 13 Section 9.4.1]\n"
              "        time_specified_flag:                1\n"
              "        reserved:                           0x3f\n"
              "        pts_time:                           8589934591 (95443.718 sec)\n");
    EXPECT_EQ(report_of(hex("8000000000"), scte35_splice_time),
              "    splice_time() [ANSI/SCTE-35 2016 Table 13 Section 9.4.1]\n"
              "        time_specified_flag:                1\n"
              "        reserved:                           0x0\n"
              "        pts_time:                           0 (0.000 sec)\n");
}

TEST_F(splice_insert, a_time_that_is_not_specified_is_1_byte)
{
    EXPECT_EQ(report_of(hex("7F"), scte35_splice_time), no_time_lines);
    EXPECT_EQ(report_of(hex("00"), scte35_splice_time), no_time_lines);
}

TEST_F(splice_insert, a_break_duration_is_5_bytes)
{
    EXPECT_EQ(report_of(hex("FE002932E0"), scte35_break_duration), duration_lines);
    EXPECT_EQ(report_of(hex("0100000001"), scte35_break_duration),
              "    break_duration() [ANSI/SCTE-35 3016 Table 14 Section 9.4.2]\n"
              "        auto_return:                    0\n"
              "        reserved:                       0x0\n"
              "        duration:                       4294967297 (47721.859 sec)\n");
}

TEST_F(splice_insert, an_avail_descriptor_shows_its_numbers_as_text)
{
    EXPECT_EQ(report_of_avail(hex("43554549 31323334")),
              "        avail_descriptor() [ANSI/SCTE-35 2017 Table 17 Section 10.3.1]\n"
              "            identifier:         0x43554549 'CUEI'\n"
              "            provider_avail_id:  0x31323334 '1234'\n");
}

TEST_F(splice_insert, a_zero_byte_ends_the_text_of_an_avail_descriptor)
{
    EXPECT_EQ(report_of_avail(hex("43550049 00000135 FF")),
              "        avail_descriptor() [ANSI/SCTE-35 2017 Table 17 Section 10.3.1]\n"
              "            identifier:         0x43550049 'CU'\n"
              "            provider_avail_id:  0x00000135 ''\n");
}

TEST_F(splice_insert, an_avail_descriptor_below_8_bytes_prints_its_heading_only)
{
    for (unsigned length = 0; length < 8; ++length)
        EXPECT_EQ(report_of_avail(repeated('C', length)),
                  "        avail_descriptor() [ANSI/SCTE-35 2017 Table 17 Section 10.3.1]\n");
}

TEST_F(splice_insert, every_line_is_printed_in_dump_mode_none)
{
    settings.dump_descriptors_mode = dump_descriptors_none;
    EXPECT_EQ(report_of(hex("12345678 FF")), cancelled_lines);
    EXPECT_EQ(report_of(hex("00000001 7F EF FE000DBBA0 FE002932E0 ABCD 01 02")),
              flag_lines(1, 1, 1, 0) + time_lines + duration_lines + last_lines);
    EXPECT_EQ(report_of_avail({}),
              "        avail_descriptor() [ANSI/SCTE-35 2017 Table 17 Section 10.3.1]\n");
}
