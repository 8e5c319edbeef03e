#include "tests/support/report_test.h"
#include "tests/support/time_zone.h"

#include <random>

struct atsc_eit : report_test {
    atsc_eit() { track(pid, TRACK_ATSC_EIT); }

    /// The report of a table of this body behind its heading and the three lines of its section header.
    std::string report_of(const bytes &body)
    {
        const std::string head = "* event_information_table_section() [ATSC A/65:2009 6.5]\n"
                                 "    Source ID:                        0x0001\n"
                                 "    Version:                          0\n"
                                 "    Section:                          0 / 0\n";
        const std::string text = report_of_section(pid, long_section(0xCB, 0x0001, body));
        EXPECT_EQ(text.substr(0, head.size()), head);
        return text.substr(std::min(head.size(), text.size()));
    }

    static constexpr unsigned pid = 0x1D00;
    const time_zone zone{"UTC"};
};

namespace {

/// 10 bytes: event 0x0123 at GPS second 1000000000, 3600 seconds long, ETM_location 1.
bytes event(unsigned title_length)
{
    return join({hex("C123 3B9ACA00 D00E10"), big_endian(title_length, 1)});
}

const std::string one_event = "    protocol_version=0\n"
                              "    num_events_in_section=1\n";
const std::string no_times =
    "     ! not showing start-end times, I do not yet have the GPS to UTC offset from the "
    "ATSC system time table\n";

std::string event_line(unsigned number, unsigned title_length)
{
    return "    event #" + std::to_string(number) +
           ": event_id=0x0123 start_time=1000000000 length_in_seconds=3600 ETM_location=1 title_length=" +
           std::to_string(title_length) + "\n";
}

} // namespace

TEST_F(atsc_eit, an_event_before_the_first_STT_has_no_times)
{
    EXPECT_EQ(report_of(join({hex("00 01"), event(0), hex("F0 00")})),
              one_event + event_line(1, 0) + no_times);
}

TEST_F(atsc_eit, an_event_behind_an_STT_has_times)
{
    atsc_gps_utc_offset = 18;
    EXPECT_EQ(report_of(join({hex("00 01"), event(0), hex("F0 00")})),
              one_event + event_line(1, 0) +
                  "        starts at: 2011-09-14 01:46:22 (+1315964782)\n"
                  "        ends at:   2011-09-14 02:46:22 (+1315968382)\n");
}

TEST_F(atsc_eit, an_offset_of_0_is_known)
{
    atsc_gps_utc_offset = 0;
    EXPECT_EQ(report_of(join({hex("00 01"), event(0), hex("F0 00")})),
              one_event + event_line(1, 0) +
                  "        starts at: 2011-09-14 01:46:40 (+1315964800)\n"
                  "        ends at:   2011-09-14 02:46:40 (+1315968400)\n");
}

TEST_F(atsc_eit, the_offset_is_that_of_the_last_STT)
{
    const bytes eit = long_section(0xCB, 0x0001, join({hex("00 01"), event(0), hex("F0 00")}));
    const std::string head = "* event_information_table_section() [ATSC A/65:2009 6.5]\n"
                             "    Source ID:                        0x0001\n"
                             "    Version:                          0\n"
                             "    Section:                          0 / 0\n" +
                             one_event + event_line(1, 0);

    settings.atsc_mode = 1;
    EXPECT_EQ(report_of_section(pid, eit), head + no_times);
    report_of_section(0x1FFB, long_section(0xCD, 0x0000, hex("00 00000000 12 0000")));
    EXPECT_EQ(report_of_section(pid, eit), head + "        starts at: 2011-09-14 01:46:22 (+1315964782)\n"
                                                  "        ends at:   2011-09-14 02:46:22 (+1315968382)\n");
    report_of_section(0x1FFB, long_section(0xCD, 0x0000, hex("00 00000000 10 0000")));
    EXPECT_EQ(report_of_section(pid, eit), head + "        starts at: 2011-09-14 01:46:24 (+1315964784)\n"
                                                  "        ends at:   2011-09-14 02:46:24 (+1315968384)\n");
}

/// From one hour before to the second of the change of 2021-11-07 06:00:00 UTC.
TEST_F(atsc_eit, the_times_are_those_of_the_machines_time_zone)
{
    const struct {
        const char *zone;
        const char *start;
        const char *end;
    } cases[] = {
        {"UTC",              "2021-11-07 05:00:00", "2021-11-07 06:00:00"},
        {"America/New_York", "2021-11-07 01:00:00", "2021-11-07 01:00:00"},
        {"Asia/Kolkata",     "2021-11-07 10:30:00", "2021-11-07 11:30:00"},
    };
    atsc_gps_utc_offset = 18;
    for (const auto &[name, start, end] : cases) {
        const time_zone other(name);
        EXPECT_EQ(
            report_of(join({hex("00 01 C123"), big_endian(1320296418, 4), hex("D00E10 00 F000")})),
            one_event +
                "    event #1: event_id=0x0123 start_time=1320296418 length_in_seconds=3600 ETM_location=1 "
                "title_length=0\n        starts at: " +
                start + " (+1636261200)\n        ends at:   " + end + " (+1636264800)\n");
    }
}

TEST_F(atsc_eit, every_field_has_its_place_and_width)
{
    section_fields fields;
    fields.version_number = 30;
    fields.section_number = 6;
    fields.last_section_number = 7;
    atsc_gps_utc_offset = 255;
    EXPECT_EQ(
        report_of_section(pid, long_section(0xCB, 0xFEDC, hex("0A 01 FFFF FFFFFFFF FFFFFF 00 F000"), fields)),
        "* event_information_table_section() [ATSC A/65:2009 6.5]\n"
        "    Source ID:                        0xfedc\n"
        "    Version:                          30\n"
        "    Section:                          6 / 7\n"
        "    protocol_version=10\n"
        "    num_events_in_section=1\n"
        "    event #1: event_id=0x3fff start_time=4294967295 length_in_seconds=1048575 ETM_location=3 "
        "title_length=0\n"
        "        starts at: 2116-02-12 06:24:00 (+4610931840)\n"
        "        ends at:   2116-02-24 09:40:15 (+4611980415)\n");
}

TEST_F(atsc_eit, fewer_than_2_bytes_print_the_heading_only)
{
    for (unsigned length = 0; length < 2; ++length)
        EXPECT_EQ(report_of_section(pid, long_section(0xCB, 0x0001, repeated(0x01, length))),
                  "* event_information_table_section() [ATSC A/65:2009 6.5]\n");
}

TEST_F(atsc_eit, no_events_print_the_header_lines_only)
{
    EXPECT_EQ(report_of(join({hex("00 00"), event(0), hex("F0 00")})), "    protocol_version=0\n"
                                                                       "    num_events_in_section=0\n");
}

TEST_F(atsc_eit, fewer_than_12_bytes_print_the_header_lines_only)
{
    EXPECT_EQ(report_of(join({hex("00 01"), repeated(0xFF, 9)})), one_event);
}

TEST_F(atsc_eit, both_reserved_pairs_are_reported_ahead_of_the_event)
{
    const std::string fault = "!!! event_information_table_section() reserved bits are not '11'\n";

    EXPECT_EQ(report_of(hex("00 01 8123 3B9ACA00 D00E10 00 F000")),
              one_event + fault + event_line(1, 0) + no_times);
    EXPECT_EQ(report_of(hex("00 01 C123 3B9ACA00 500E10 00 F000")),
              one_event + fault + event_line(1, 0) + no_times);
    EXPECT_EQ(report_of(hex("00 01 0123 3B9ACA00 100E10 00 F000")),
              one_event + fault + fault + event_line(1, 0) + no_times);
}

TEST_F(atsc_eit, a_title_is_a_multiple_string_at_indent_12)
{
    EXPECT_EQ(
        report_of(join({hex("00 01"), event(9), hex("01 65 6E 67 01 00 00 01 41"), hex("F0 00")})),
        one_event + event_line(1, 9) + no_times +
            "        title:\n"
            "            multiple_string_structure() [ATSC A/65:2009 6.39]\n"
            "                string #1/1: ISO_639_language_code='eng' number_segments=1\n"
            "                    segment #1: compression_type=0x00(none) mode=0x00(ANSI (select unicode code "
            "range 0x0000-0x00FF)) number_bytes=1\n"
            "                        string: 'A'\n");
}

TEST_F(atsc_eit, a_title_past_the_fence_ends_the_table)
{
    EXPECT_EQ(report_of(join({hex("00 02"), event(3), hex("00 00")})), "    protocol_version=0\n"
                                                                       "    num_events_in_section=2\n" +
                                                                           event_line(1, 3) + no_times);
}

TEST_F(atsc_eit, without_a_title_the_descriptors_follow)
{
    EXPECT_EQ(report_of(join({hex("00 01"), event(0), hex("F0 02"), descriptor(0xFE, {})})),
              one_event + event_line(1, 0) + no_times +
                  "        Unknown descriptor tag=0xfe, len=0\n"
                  "\n");
}

TEST_F(atsc_eit, the_descriptors_are_decoded_in_the_context_of_the_PID)
{
    settings.atsc_mode = 1;
    EXPECT_EQ(report_of(join({hex("00 01"), event(0), hex("F0 03"), descriptor(0xAA, hex("01"))})),
              one_event + event_line(1, 0) + no_times +
                  "        rc_descriptor() [ATSC A/65:2009 6.9.7]\n"
                  "            RAW DATA: 01 \n"
                  "\n");
}

TEST_F(atsc_eit, a_missing_descriptors_length_ends_the_table)
{
    EXPECT_EQ(report_of(join({hex("00 02"), event(0), hex("F0")})), "    protocol_version=0\n"
                                                                    "    num_events_in_section=2\n" +
                                                                        event_line(1, 0) + no_times);
}

TEST_F(atsc_eit, reserved_bits_of_the_descriptors_length_are_reported)
{
    EXPECT_EQ(report_of(join({hex("00 01"), event(0), hex("70 02"), descriptor(0xFE, {})})),
              one_event + event_line(1, 0) + no_times +
                  "!!! event_information_table_section() reserved bits are not '1111'\n"
                  "        Unknown descriptor tag=0xfe, len=0\n"
                  "\n");
}

TEST_F(atsc_eit, descriptors_past_the_fence_end_the_table)
{
    EXPECT_EQ(report_of(join({hex("00 02"), event(0), hex("F0 0D"), event(0), hex("F0 00")})),
              "    protocol_version=0\n"
              "    num_events_in_section=2\n" +
                  event_line(1, 0) + no_times);
}

TEST_F(atsc_eit, events_are_numbered_up_to_their_count)
{
    EXPECT_EQ(report_of(join(
                  {hex("00 02"), event(0), hex("F0 00"), event(0), hex("F0 00"), event(0), hex("F0 00")})),
              "    protocol_version=0\n"
              "    num_events_in_section=2\n" +
                  event_line(1, 0) + no_times + event_line(2, 0) + no_times);
}

TEST_F(atsc_eit, fewer_than_10_bytes_for_the_next_event_end_the_table)
{
    EXPECT_EQ(report_of(join({hex("00 FF"), event(0), hex("F0 00"), repeated(0x00, 9)})),
              "    protocol_version=0\n"
              "    num_events_in_section=255\n" +
                  event_line(1, 0) + no_times);
}

TEST_F(atsc_eit, dump_mode_none_takes_away_only_headings)
{
    settings.dump_descriptors_mode = dump_descriptors_none;
    EXPECT_EQ(
        report_of_section(pid, long_section(0xCB, 0x0001,
                                            join({hex("00 01"), event(9), hex("01 65 6E 67 01 00 00 01 41"),
                                                  hex("F0 02"), descriptor(0xFE, {})}))),
        "    Source ID:                        0x0001\n"
        "    Version:                          0\n"
        "    Section:                          0 / 0\n" +
            one_event + event_line(1, 9) + no_times +
            "        title:\n"
            "                string #1/1: ISO_639_language_code='eng' number_segments=1\n"
            "                    segment #1: compression_type=0x00(none) mode=0x00(ANSI (select unicode code "
            "range 0x0000-0x00FF)) number_bytes=1\n"
            "                        string: 'A'\n"
            "\n");
}

TEST_F(atsc_eit, random_bodies_are_read_to_their_end)
{
    std::mt19937 random(67);
    for (unsigned length = 0; length <= 600; ++length) {
        bytes body(length);
        for (uint8_t &byte : body) byte = static_cast<uint8_t>(random() % (length % 2 == 0 ? 256 : 8));
        if (length % 3 == 0) atsc_gps_utc_offset = static_cast<int32_t>(length % 256);
        EXPECT_EQ(report_of_section(pid, long_section(0xCB, 0x0001, body)).substr(0, 57),
                  "* event_information_table_section() [ATSC A/65:2009 6.5]\n");
    }
}
