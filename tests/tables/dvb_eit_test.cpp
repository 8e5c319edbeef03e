#include "tests/support/report_test.h"

struct dvb_eit : report_test {
    static constexpr unsigned eit_pid = 0x0012;
};

namespace {

/// service_id 0x2345, version 7, section 1 of 3.
bytes eit_section(unsigned table_id, const bytes &body, unsigned current_next_indicator = 1)
{
    return long_section(table_id, 0x2345, body, {7, current_next_indicator, 1, 3});
}

/// The four fields ahead of the events.
bytes eit_body(const bytes &events = {})
{
    return join({hex("1122 3344 05 4E"), events});
}

/// 12 bytes, descriptors_loop_length to be given; the reserved descriptors follow.
bytes event(unsigned event_id, const bytes &start_time, const bytes &duration, unsigned status_and_length)
{
    return join({big_endian(event_id, 2), start_time, duration, big_endian(status_and_length, 2)});
}

const std::string service_lines = "    Service ID:                       0x2345\n"
                                  "    Version:                          7\n"
                                  "    Section:                          1 / 3\n";
const std::string fixed_lines = "    Transport stream ID:              0x1122\n"
                                "    Original network ID:              0x3344\n"
                                "    Segment last section number:      5\n"
                                "    Last table ID:                    0x4e\n";

const bytes some_event = event(0xABCD, hex("C079 123456"), hex("013015"), 0x8000);
const std::string some_event_lines = "    - event_id:                 0xabcd\n"
                                     "      start_time:               0xc079123456 1993/10/13 12:34:56 UTC\n"
                                     "      duration:                 0x013015 01:30:15\n"
                                     "      running_status:           4\n"
                                     "      free_CA_mode:             0\n"
                                     "      descriptors_loop_length:  0\n";

} // namespace

TEST_F(dvb_eit, a_present_following_section_prints_its_event)
{
    EXPECT_EQ(report_of_section(eit_pid, eit_section(0x4E, eit_body(some_event))),
              "* Event Information Section(0x4e) len=18\n" + service_lines + fixed_lines + some_event_lines);
}

TEST_F(dvb_eit, a_schedule_section_is_named_so)
{
    EXPECT_EQ(report_of_section(eit_pid, eit_section(0x50, eit_body(some_event))),
              "* Scheduled Event Information Section(0x50) len=18\n" + service_lines + fixed_lines +
                  some_event_lines);
    EXPECT_EQ(report_of_section(eit_pid, eit_section(0x5F, eit_body())),
              "* Scheduled Event Information Section(0x5f) len=6\n" + service_lines + fixed_lines);
}

TEST_F(dvb_eit, a_section_that_is_not_current_has_next_in_place_of_its_length)
{
    EXPECT_EQ(report_of_section(eit_pid, eit_section(0x4E, eit_body(some_event), 0)),
              "* Event Information Section(0x4e) [next]\n" + service_lines + fixed_lines + some_event_lines);
    EXPECT_EQ(report_of_section(eit_pid, eit_section(0x51, eit_body(), 0)),
              "* Scheduled Event Information Section(0x51) [next]\n" + service_lines + fixed_lines);
}

TEST_F(dvb_eit, a_short_section_prints_zeros_for_the_fields_it_does_not_have)
{
    EXPECT_EQ(report_of_section(eit_pid, short_section(0x4E, eit_body(some_event))),
              "* Event Information Section(0x4e) [next]\n"
              "    Service ID:                       0x0000\n"
              "    Version:                          0\n"
              "    Section:                          0 / 0\n" +
                  fixed_lines + some_event_lines);
}

TEST_F(dvb_eit, a_body_below_6_bytes_ends_behind_the_section_lines)
{
    for (unsigned length = 0; length < 6; ++length)
        EXPECT_EQ(report_of_section(eit_pid, eit_section(0x4E, repeated(0xAA, length))),
                  "* Event Information Section(0x4e) len=" + std::to_string(length) + "\n" + service_lines);
}

TEST_F(dvb_eit, a_body_of_exactly_6_bytes_has_the_four_header_lines_and_no_events)
{
    EXPECT_EQ(report_of_section(eit_pid, eit_section(0x4E, eit_body())),
              "* Event Information Section(0x4e) len=6\n" + service_lines + fixed_lines);
}

TEST_F(dvb_eit, a_body_below_18_bytes_has_no_events)
{
    for (unsigned length = 7; length < 18; ++length)
        EXPECT_EQ(report_of_section(eit_pid, eit_section(0x4E, eit_body(repeated(0xAA, length - 6)))),
                  "* Event Information Section(0x4e) len=" + std::to_string(length) + "\n" + service_lines +
                      fixed_lines);
}

TEST_F(dvb_eit, events_follow_one_another_behind_their_descriptors)
{
    const bytes events = join({event(0x0001, hex("C079 000000"), hex("000100"), 0x2003), hex("FF 01 5A"),
                               event(0x0002, hex("C07A 235959"), hex("235959"), 0xF004), hex("FE 02 0102")});
    EXPECT_EQ(report_of_section(eit_pid, eit_section(0x4E, eit_body(events))),
              "* Event Information Section(0x4e) len=37\n" + service_lines + fixed_lines +
                  "    - event_id:                 0x0001\n"
                  "      start_time:               0xc079000000 1993/10/13 00:00:00 UTC\n"
                  "      duration:                 0x000100 00:01:00\n"
                  "      running_status:           1\n"
                  "      free_CA_mode:             0\n"
                  "      descriptors_loop_length:  3\n"
                  "        Unknown descriptor tag=0xff, len=1\n"
                  "    - event_id:                 0x0002\n"
                  "      start_time:               0xc07a235959 1993/10/14 23:59:59 UTC\n"
                  "      duration:                 0x235959 23:59:59\n"
                  "      running_status:           7\n"
                  "      free_CA_mode:             1\n"
                  "      descriptors_loop_length:  4\n"
                  "        Unknown descriptor tag=0xfe, len=2\n");
}

TEST_F(dvb_eit, an_event_that_does_not_fit_whole_ends_the_section)
{
    for (unsigned left = 1; left < 12; ++left)
        EXPECT_EQ(
            report_of_section(eit_pid, eit_section(0x4E, eit_body(join({some_event, repeated(0, left)})))),
            "* Event Information Section(0x4e) len=" + std::to_string(18 + left) + "\n" + service_lines +
                fixed_lines + some_event_lines);
}

TEST_F(dvb_eit, descriptors_that_run_past_the_section_are_reported_and_end_it)
{
    // Room for two more events is no help: the loop's own length counts.
    const bytes cut = join({event(0x0003, hex("C079 123456"), hex("013015"), 0x0005), hex("FF 00")});
    const std::string cut_lines = "    - event_id:                 0x0003\n"
                                  "      start_time:               0xc079123456 1993/10/13 12:34:56 UTC\n"
                                  "      duration:                 0x013015 01:30:15\n"
                                  "      running_status:           0\n"
                                  "      free_CA_mode:             0\n"
                                  "      descriptors_loop_length:  5\n"
                                  "!!! Descriptor extends past table by 3 bytes\n";
    EXPECT_EQ(report_of_section(eit_pid, eit_section(0x4E, eit_body(cut))),
              "* Event Information Section(0x4e) len=20\n" + service_lines + fixed_lines + cut_lines);
    EXPECT_EQ(report_of_section(eit_pid, eit_section(0x4E, eit_body(join({some_event, cut})))),
              "* Event Information Section(0x4e) len=32\n" + service_lines + fixed_lines + some_event_lines +
                  cut_lines);
}

TEST_F(dvb_eit, descriptors_longer_than_the_rest_end_the_section_though_more_events_would_fit)
{
    const bytes longest = join({event(0x0003, hex("C079 123456"), hex("013015"), 0x0FFF), some_event});
    EXPECT_EQ(report_of_section(eit_pid, eit_section(0x4E, eit_body(longest))),
              "* Event Information Section(0x4e) len=30\n" + service_lines + fixed_lines +
                  "    - event_id:                 0x0003\n"
                  "      start_time:               0xc079123456 1993/10/13 12:34:56 UTC\n"
                  "      duration:                 0x013015 01:30:15\n"
                  "      running_status:           0\n"
                  "      free_CA_mode:             0\n"
                  "      descriptors_loop_length:  4095\n"
                  "!!! Descriptor extends past table by 4083 bytes\n");
}

TEST_F(dvb_eit, descriptors_up_to_the_last_byte_of_the_section_fit)
{
    const bytes events = join({event(0x0003, hex("C079 123456"), hex("013015"), 0x0002), hex("FF 00")});
    EXPECT_EQ(report_of_section(eit_pid, eit_section(0x4E, eit_body(events))),
              "* Event Information Section(0x4e) len=20\n" + service_lines + fixed_lines +
                  "    - event_id:                 0x0003\n"
                  "      start_time:               0xc079123456 1993/10/13 12:34:56 UTC\n"
                  "      duration:                 0x013015 01:30:15\n"
                  "      running_status:           0\n"
                  "      free_CA_mode:             0\n"
                  "      descriptors_loop_length:  2\n"
                  "        Unknown descriptor tag=0xff, len=0\n");
}

TEST_F(dvb_eit, an_undefined_start_time_and_duration_print_as_they_stand)
{
    const bytes undefined = event(0xFFFF, hex("FFFF FFFFFF"), hex("FFFFFF"), 0x0000);
    EXPECT_EQ(report_of_section(eit_pid, eit_section(0x4E, eit_body(undefined))),
              "* Event Information Section(0x4e) len=18\n" + service_lines + fixed_lines +
                  "    - event_id:                 0xffff\n"
                  "      start_time:               0xffffffffff 2038/04/22 ff:ff:ff UTC\n"
                  "      duration:                 0xffffff ff:ff:ff\n"
                  "      running_status:           0\n"
                  "      free_CA_mode:             0\n"
                  "      descriptors_loop_length:  0\n");
}

TEST_F(dvb_eit, start_time_duration_month_and_day_keep_their_leading_zeros)
{
    const bytes early = event(0x0000, hex("0000 010203"), hex("000405"), 0x1000);
    EXPECT_EQ(report_of_section(eit_pid, eit_section(0x4E, eit_body(early))),
              "* Event Information Section(0x4e) len=18\n" + service_lines + fixed_lines +
                  "    - event_id:                 0x0000\n"
                  "      start_time:               0x0000010203 1858/11/18 01:02:03 UTC\n"
                  "      duration:                 0x000405 00:04:05\n"
                  "      running_status:           0\n"
                  "      free_CA_mode:             1\n"
                  "      descriptors_loop_length:  0\n");
    const bytes first_of_month = event(0x0001, hex("9E8B 213000"), hex("003000"), 0x0000);
    EXPECT_EQ(report_of_section(eit_pid, eit_section(0x4E, eit_body(first_of_month))),
              "* Event Information Section(0x4e) len=18\n" + service_lines + fixed_lines +
                  "    - event_id:                 0x0001\n"
                  "      start_time:               0x9e8b213000 1970/01/01 21:30:00 UTC\n"
                  "      duration:                 0x003000 00:30:00\n"
                  "      running_status:           0\n"
                  "      free_CA_mode:             0\n"
                  "      descriptors_loop_length:  0\n");
}

TEST_F(dvb_eit, every_running_status_prints_as_a_number_only)
{
    for (unsigned status = 0; status < 8; ++status) {
        const bytes one = event(0xABCD, hex("C079 123456"), hex("013015"), status << 13);
        EXPECT_EQ(report_of_section(eit_pid, eit_section(0x4E, eit_body(one))),
                  "* Event Information Section(0x4e) len=18\n" + service_lines + fixed_lines +
                      "    - event_id:                 0xabcd\n"
                      "      start_time:               0xc079123456 1993/10/13 12:34:56 UTC\n"
                      "      duration:                 0x013015 01:30:15\n"
                      "      running_status:           " +
                      std::to_string(status) +
                      "\n"
                      "      free_CA_mode:             0\n"
                      "      descriptors_loop_length:  0\n");
    }
}

TEST_F(dvb_eit, the_event_lines_are_printed_in_every_dump_mode)
{
    const bytes events = join({event(0xABCD, hex("C079 123456"), hex("013015"), 0x8003), hex("FF 01 5A")});
    const std::string event_lines = "    - event_id:                 0xabcd\n"
                                    "      start_time:               0xc079123456 1993/10/13 12:34:56 UTC\n"
                                    "      duration:                 0x013015 01:30:15\n"
                                    "      running_status:           4\n"
                                    "      free_CA_mode:             0\n"
                                    "      descriptors_loop_length:  3\n";
    const std::string head =
        "* Event Information Section(0x4e) len=21\n" + service_lines + fixed_lines + event_lines;
    settings.dump_descriptors_mode = dump_descriptors_none;
    EXPECT_EQ(report_of_section(eit_pid, eit_section(0x4E, eit_body(events))), head);
    settings.dump_descriptors_mode = dump_descriptors_contents;
    EXPECT_EQ(report_of_section(eit_pid, eit_section(0x4E, eit_body(events))),
              head + "        Unknown descriptor tag=0xff, len=1\n");
    settings.dump_descriptors_mode = dump_descriptors_raw;
    EXPECT_EQ(report_of_section(eit_pid, eit_section(0x4E, eit_body(events))),
              head + "        Unknown descriptor tag=0xff, len=1\n"
                     "        TAG 0xff LEN 01:\n"
                     "            0x5a \n");
}

TEST_F(dvb_eit, an_event_without_descriptors_calls_no_descriptor_decoding_in_raw_mode)
{
    settings.dump_descriptors_mode = dump_descriptors_raw;
    EXPECT_EQ(report_of_section(eit_pid, eit_section(0x4E, eit_body(some_event))),
              "* Event Information Section(0x4e) len=18\n" + service_lines + fixed_lines + some_event_lines);
}

TEST_F(dvb_eit, a_private_data_specifier_of_an_event_stays_with_the_pid)
{
    const bytes events =
        join({event(0xABCD, hex("C079 123456"), hex("013015"), 0x8006), hex("5F 04 00003201")});
    report_of_section(eit_pid, eit_section(0x4E, eit_body(events)));
    EXPECT_EQ(mpeg_ts_pid_tracking_get(eit_pid)->private_data_specifier, 0x00003201u);
}

TEST_F(dvb_eit, the_version_is_not_stored)
{
    report_of_section(eit_pid, eit_section(0x4E, eit_body(some_event)));
    EXPECT_EQ(mpeg_ts_pid_tracking_get(eit_pid)->last_version, 255);
}
