#include "tests/support/report_test.h"

struct sdt : report_test {
    static constexpr unsigned sdt_pid = 0x0011;
};

namespace {

/// transport_stream_id 0x0401, version 6.
bytes sdt_section(const bytes &body, unsigned current_next_indicator = 1)
{
    return long_section(0x42, 0x0401, body, {6, current_next_indicator});
}

/// Two services: one running and clear with a descriptor, one off-air and scrambled without.
const bytes services = hex("3085 FF"
                           "0101 FE 8003 FF01AA"
                           "0102 FD B000");

} // namespace

TEST_F(sdt, prints_the_network_and_each_service_with_its_descriptors_by_default)
{
    EXPECT_EQ(report_of_section(sdt_pid, sdt_section(services)),
              "* Service Description Section\n"
              "    original_network_id=0x3085\n"
              "      - service_id=0x0101\n"
              "        Unknown descriptor tag=0xff, len=1\n"
              "      - service_id=0x0102\n");
}

TEST_F(sdt, a_section_that_is_not_current_is_printed_in_full)
{
    EXPECT_EQ(report_of_section(sdt_pid, sdt_section(services, 0)),
              "* Service Description Section [next]\n"
              "    original_network_id=0x3085\n"
              "      - service_id=0x0101\n"
              "        Unknown descriptor tag=0xff, len=1\n"
              "      - service_id=0x0102\n");
}

TEST_F(sdt, without_descriptor_contents_only_the_heading_is_left)
{
    settings.dump_descriptors_mode = dump_descriptors_none;
    EXPECT_EQ(report_of_section(sdt_pid, sdt_section(services)), "* Service Description Section\n");
}

TEST_F(sdt, the_raw_mode_follows_each_descriptor_with_its_bytes)
{
    settings.dump_descriptors_mode = dump_descriptors_raw;
    EXPECT_EQ(report_of_section(sdt_pid, sdt_section(services)),
              "* Service Description Section\n"
              "    original_network_id=0x3085\n"
              "      - service_id=0x0101\n"
              "        Unknown descriptor tag=0xff, len=1\n"
              "        TAG 0xff LEN 01:\n"
              "            0xaa \n"
              "      - service_id=0x0102\n");
}

TEST_F(sdt, the_packet_dump_shows_the_fields_of_each_service)
{
    const std::string expected = "* Service Description Section\n"
                                 "    original_network_id=0x3085\n"
                                 "      - service_id=0x0101\n"
                                 "        EIT_schedule_flag=1\n"
                                 "        EIT_present_following_flag=0\n"
                                 "        running_status=4 Running\n"
                                 "        free_CA_mode=0 Not scrambled\n"
                                 "        Unknown descriptor tag=0xff, len=1\n"
                                 "\n"
                                 "      - service_id=0x0102\n"
                                 "        EIT_schedule_flag=0\n"
                                 "        EIT_present_following_flag=1\n"
                                 "        running_status=5 Service off-air\n"
                                 "        free_CA_mode=1 At least one elementary stream is scrambled\n"
                                 "\n";
    settings.dump_ts_mode = dump_ts_header;
    EXPECT_EQ(report_of_section(sdt_pid, sdt_section(services)), expected);
    settings.dump_ts_mode = dump_ts_contents;
    EXPECT_EQ(report_of_section(sdt_pid, sdt_section(services)), expected);
}

TEST_F(sdt, the_packet_dump_without_descriptor_contents_shows_the_fields_and_no_service_id)
{
    settings.dump_ts_mode = dump_ts_header;
    settings.dump_descriptors_mode = dump_descriptors_none;
    EXPECT_EQ(report_of_section(sdt_pid, sdt_section(services)),
              "* Service Description Section\n"
              "    original_network_id=0x3085\n"
              "        EIT_schedule_flag=1\n"
              "        EIT_present_following_flag=0\n"
              "        running_status=4 Running\n"
              "        free_CA_mode=0 Not scrambled\n"
              "\n"
              "        EIT_schedule_flag=0\n"
              "        EIT_present_following_flag=1\n"
              "        running_status=5 Service off-air\n"
              "        free_CA_mode=1 At least one elementary stream is scrambled\n"
              "\n");
}

TEST_F(sdt, the_table_dump_adds_the_raw_contents_only)
{
    settings.dump_tables = true;
    EXPECT_EQ(report_of_section(sdt_pid, sdt_section(hex("3085 FF 0101 FE 8000"))),
              "PID 0x0  11 TABLE raw contents. length=8 table_id=0x42 priv=0 syntax=1:\n"
              "   30 85 ff 01 01 fe 80 00                           0.......        \n"
              "* Service Description Section\n"
              "    original_network_id=0x3085\n"
              "      - service_id=0x0101\n");
}

TEST_F(sdt, every_running_status_has_its_name_or_a_trailing_blank)
{
    const char *const names[] = {
        "", "Not running", "Starts in a few seconds", "Pausing", "Running", "Service off-air", "", ""};
    settings.dump_ts_mode = dump_ts_header;
    for (unsigned status = 0; status < 8; ++status) {
        const bytes body = join({hex("3085 FF 0101 FC"), big_endian(status << 13, 2)});
        EXPECT_EQ(report_of_section(sdt_pid, sdt_section(body)), "* Service Description Section\n"
                                                                 "    original_network_id=0x3085\n"
                                                                 "      - service_id=0x0101\n"
                                                                 "        EIT_schedule_flag=0\n"
                                                                 "        EIT_present_following_flag=0\n"
                                                                 "        running_status=" +
                                                                     std::to_string(status) + " " +
                                                                     names[status] +
                                                                     "\n"
                                                                     "        free_CA_mode=0 Not scrambled\n"
                                                                     "\n");
    }
}

TEST_F(sdt, a_body_of_exactly_3_bytes_has_no_services)
{
    EXPECT_EQ(report_of_section(sdt_pid, sdt_section(hex("3085 00"))), "* Service Description Section\n"
                                                                       "    original_network_id=0x3085\n");
}

TEST_F(sdt, a_body_below_3_bytes_is_a_decoding_error)
{
    for (const char *body : {"", "30", "3085"}) {
        EXPECT_EQ(report_of_section(sdt_pid, sdt_section(hex(body))), "!!! SDS decoding error\n") << body;
        EXPECT_EQ(report_of_section(sdt_pid, sdt_section(hex(body), 0)), "!!! SDS decoding error\n") << body;
    }
}

TEST_F(sdt, the_walk_ends_silently_at_a_service_that_does_not_fit)
{
    const std::string expected = "* Service Description Section\n"
                                 "    original_network_id=0x3085\n"
                                 "      - service_id=0x0101\n";
    EXPECT_EQ(report_of_section(sdt_pid, sdt_section(hex("3085 FF 0101 FC 8000 0102 FC 80"))), expected);
    EXPECT_EQ(report_of_section(sdt_pid, sdt_section(hex("3085 FF 0101 FC 8000 0102 FC 8003 FF00"))),
              expected);
    EXPECT_EQ(report_of_section(sdt_pid, sdt_section(hex("3085 FF 0101 FC 8000 0102 FC 8FFF"))), expected);
}

TEST_F(sdt, the_version_of_a_current_section_is_stored_also_after_an_error)
{
    const mpeg_ts_pid_tracking *const t = mpeg_ts_pid_tracking_get(sdt_pid);
    report_of_section(sdt_pid, sdt_section(services, 0));
    EXPECT_EQ(t->last_version, 255);
    report_of_section(sdt_pid, sdt_section(hex("30"), 0));
    EXPECT_EQ(t->last_version, 255);
    report_of_section(sdt_pid, sdt_section(services));
    EXPECT_EQ(t->last_version, 6);
    report_of_section(sdt_pid, long_section(0x42, 1, hex("30"), {7}));
    EXPECT_EQ(t->last_version, 7);
}

TEST_F(sdt, a_short_section_prints_as_one_that_is_not_current)
{
    EXPECT_EQ(report_of_section(sdt_pid, short_section(0x42, hex("3085 FF 0101 FC 8000"))),
              "* Service Description Section [next]\n"
              "    original_network_id=0x3085\n"
              "      - service_id=0x0101\n");
    EXPECT_EQ(mpeg_ts_pid_tracking_get(sdt_pid)->last_version, 255);
}

TEST_F(sdt, descriptors_are_decoded_with_the_specifier_of_the_pid)
{
    settings.assume_country = 0x3200;
    track(sdt_pid, TRACK_SDT);
    EXPECT_EQ(report_of_section(sdt_pid, sdt_section(hex("3085 FF 0101 FC 8002 8300"
                                                         "        0102 FC 8008 5F04 00000028 8300"))),
              "* Service Description Section\n"
              "    original_network_id=0x3085\n"
              "      - service_id=0x0101\n"
              "        logical_channel_descriptor() [Australia: Free TV OP 41 LCN Descriptor]\n"
              "      - service_id=0x0102\n"
              "        private_data_specifier_descriptor() [DVB A38 6.2.31]\n"
              "            private_data_specifier=0x00000028\n"
              "        Unknown descriptor tag=0x83, len=0\n");
    EXPECT_EQ(mpeg_ts_pid_tracking_get(sdt_pid)->private_data_specifier, 0x28u);
}

TEST_F(sdt, every_combination_of_the_dumps_adds_its_lines)
{
    const std::string raw_contents =
        "PID 0x0  11 TABLE raw contents. length=16 table_id=0x42 priv=0 syntax=1:\n"
        "   30 85 ff 01 01 fe 80 03 ff 01 aa 01 02 fd b0 00   0...............\n";
    const std::string first_of_packets = "        EIT_schedule_flag=1\n"
                                         "        EIT_present_following_flag=0\n"
                                         "        running_status=4 Running\n"
                                         "        free_CA_mode=0 Not scrambled\n";
    const std::string second_of_packets =
        "        EIT_schedule_flag=0\n"
        "        EIT_present_following_flag=1\n"
        "        running_status=5 Service off-air\n"
        "        free_CA_mode=1 At least one elementary stream is scrambled\n";
    const std::string descriptor_lines[] = {"", "        Unknown descriptor tag=0xff, len=1\n",
                                            "        Unknown descriptor tag=0xff, len=1\n"
                                            "        TAG 0xff LEN 01:\n"
                                            "            0xaa \n"};
    for (unsigned combination = 0; combination < 18; ++combination) {
        const unsigned descriptors = combination % 3;
        const unsigned packets = combination / 3 % 3;
        settings.dump_descriptors_mode = static_cast<uint8_t>(descriptors);
        settings.dump_ts_mode = static_cast<uint8_t>(packets);
        settings.dump_tables = combination >= 9;

        std::string expected = settings.dump_tables ? raw_contents : "";
        expected += "* Service Description Section\n";
        if (packets != 0 || descriptors != 0) expected += "    original_network_id=0x3085\n";
        if (descriptors != 0) expected += "      - service_id=0x0101\n";
        if (packets != 0) expected += first_of_packets;
        expected += descriptor_lines[descriptors];
        if (packets != 0) expected += "\n";
        if (descriptors != 0) expected += "      - service_id=0x0102\n";
        if (packets != 0) expected += second_of_packets + "\n";
        EXPECT_EQ(report_of_section(sdt_pid, sdt_section(services)), expected) << combination;
    }
}
